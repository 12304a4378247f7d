#include "ut_Environment.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "GuardedText.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "TraceLines.h"
#include "WrittenText.h"
#include "fw_Memory.h"
#include "ut_BufferStream.h"
#include "ut_PutStream.h"

namespace {

using test::writtenText;
using utility::Environment;
using Lines = std::vector<std::string>;
using Variables = std::vector<std::pair<std::string, std::string>>;

constexpr const char* elementAtName =
    "const char* utility::Environment::ElementAt(unsigned int, char*, unsigned int) const";
constexpr const char* findName = "int utility::Environment::find(const char*) const";
constexpr unsigned int traceSwitch = 368;

static_assert(!std::is_copy_constructible<Environment>::value, "a copy would share the variables");
static_assert(!std::is_copy_assignable<Environment>::value, "an assignment would share the variables");

Variables contentOf(const Environment& set) {
    Variables content;
    for (unsigned int i = 0; i < set.length(); ++i) {
        char name[256] = "";
        const char* const value = set.ElementAt(i, name, sizeof name);
        content.push_back({name, value != nullptr ? value : "(null)"});
    }
    return content;
}

std::string textOf(const Environment& set) {
    return writtenText([&](utility::PutStream& out) { set.privateInformation(out, 0); });
}

TEST(Environment, UsageExample) {
    utility::Environment set;
    set.set("PORTS", "4");
    EXPECT_EQ(set.getAsInt("PORTS"), 4);
}

TEST(Environment, IsInitiallyEmpty) {
    const Environment set;
    EXPECT_EQ(set.length(), 0U);
    EXPECT_EQ(set.NumElements(), 0U);
    EXPECT_EQ(set.find("A"), -1);
    EXPECT_EQ(textOf(set), "");
}

TEST(Environment, ReplacingAValueKeepsTheOrder) {
    Environment set;
    set.set("A", "1");
    set.set("B", "2");
    set.set("A", "3");
    EXPECT_EQ(set.length(), 2U);
    EXPECT_EQ(set.NumElements(), 2U);
    EXPECT_STREQ(set.get("A"), "3");
    EXPECT_EQ(textOf(set), "A=3\nB=2\n");
}

TEST(Environment, RemovingAVariableKeepsTheOrder) {
    Environment set;
    set.set("A", "1");
    set.set("B", "2");
    set.set("C", "3");
    set.unset("A");
    EXPECT_EQ(set.length(), 2U);
    char name[8] = "";
    EXPECT_STREQ(set.ElementAt(0, name, sizeof name), "2");
    EXPECT_STREQ(name, "B");
    EXPECT_FALSE(set.isSet("A"));
    set.unset("A");
    set.unset(nullptr);
    set.unset("2");
    set.unset("C");
    EXPECT_EQ(contentOf(set), (Variables{{"B", "2"}}));
    set.set("A", "4");
    EXPECT_EQ(contentOf(set), (Variables{{"B", "2"}, {"A", "4"}}));
}

TEST(Environment, FindReturnsTwiceTheIndex) {
    Environment set;
    set.set("A", "B");
    set.set("B", "C");
    set.set("", "x");
    EXPECT_EQ(set.find("A"), 0);
    EXPECT_EQ(set.find("B"), 2);
    EXPECT_EQ(set.find(""), 4);
    EXPECT_EQ(set.find("C"), -1);
    EXPECT_EQ(set.find("a"), -1);
    EXPECT_EQ(set.find("AB"), -1);
    EXPECT_EQ(set.find(nullptr), -1);
}

TEST(Environment, MissingNamesReturnNullZeroAndFalse) {
    Environment set;
    set.set("A", "7");
    for (const char* const name : {"a", "", static_cast<const char*>(nullptr)}) {
        EXPECT_EQ(set.get(name), nullptr);
        EXPECT_EQ(set.getAsInt(name), 0);
        EXPECT_FALSE(set.getAsBool(name));
        EXPECT_FALSE(set.isSet(name));
    }
}

TEST(Environment, NumbersAreParsedAtTheStartOfTheValue) {
    Environment set;
    const std::pair<const char*, int> values[] = {{"12", 12}, {"-7", -7},  {" 5x", 5}, {"", 0},
                                                  {"abc", 0}, {"0x10", 0}, {"+3", 3},  {"2147483647", 2147483647},
                                                  {"1 2", 1}};
    for (const auto& [text, number] : values) {
        set.set("N", text);
        EXPECT_EQ(set.getAsInt("N"), number) << text;
        EXPECT_EQ(set.getAsBool("N"), number != 0) << text;
        EXPECT_TRUE(set.isSet("N"));
    }
}

TEST(Environment, OnlyNumbersOtherThanZeroAreTrue) {
    Environment set;
    for (const char* const text : {"true", "yes", "on", "TRUE", "0", "00", "", " ", "t1"}) {
        set.set("FLAG", text);
        EXPECT_FALSE(set.getAsBool("FLAG")) << text;
    }
    for (const char* const text : {"1", "2", "-1", "1true", " 3"}) {
        set.set("FLAG", text);
        EXPECT_TRUE(set.getAsBool("FLAG")) << text;
    }
}

TEST(Environment, NullNamesAndValuesChangeNothing) {
    Environment set;
    set.set(nullptr, "x");
    set.set("x", nullptr);
    set.set(nullptr, nullptr);
    EXPECT_EQ(set.length(), 0U);
    set.set("x", "1");
    set.set("x", nullptr);
    EXPECT_EQ(contentOf(set), (Variables{{"x", "1"}}));
}

TEST(Environment, NamesAndValuesMayBeEmpty) {
    Environment set;
    set.set("", "x");
    set.set("y", "");
    set.set("a=b", "c=d\n");
    EXPECT_EQ(contentOf(set), (Variables{{"", "x"}, {"y", ""}, {"a=b", "c=d\n"}}));
    EXPECT_STREQ(set.get(""), "x");
    EXPECT_STREQ(set.get("y"), "");
    EXPECT_TRUE(set.isSet("y"));
    EXPECT_EQ(textOf(set), "=x\ny=\na=b=c=d\n\n");
    set.unset("");
    EXPECT_EQ(set.length(), 2U);
}

TEST(Environment, StoresCopies) {
    char name[] = "NAME", value[] = "value";
    Environment set;
    set.set(name, value);
    name[0] = value[0] = '#';
    EXPECT_EQ(contentOf(set), (Variables{{"NAME", "value"}}));
}

TEST(Environment, EqualValueKeepsTheCopy) {
    Environment set;
    set.set("A", "value");
    const char* const before = set.get("A");
    set.set("A", std::string("value").c_str());
    EXPECT_EQ(set.get("A"), before);
    EXPECT_STREQ(before, "value");
}

TEST(Environment, AcceptsItsOwnTexts) {
    Environment set;
    set.set("A", "value");
    set.set("A", set.get("A"));
    set.set("B", set.get("A"));
    set.set("A", set.get("A") + 2);
    set.set(set.get("B"), set.get("B"));
    set.set("B", set.get("value"));
    for (int i = 0; i < 40; ++i)
        set.set(std::to_string(i).c_str(), set.get("A"));
    EXPECT_EQ(set.length(), 43U);
    EXPECT_STREQ(set.get("A"), "lue");
    EXPECT_STREQ(set.get("B"), "value");
    EXPECT_STREQ(set.get("39"), "lue");
    set.unset(set.get("B"));
    EXPECT_EQ(set.length(), 42U);
    EXPECT_FALSE(set.isSet("value"));
}

TEST(Environment, StoresThousandsOfVariables) {
    Environment set;
    for (int i = 0; i < 3000; ++i)
        set.set(("NAME" + std::to_string(i)).c_str(), std::to_string(i).c_str());
    ASSERT_EQ(set.length(), 3000U);
    for (int i = 0; i < 3000; i += 7)
        ASSERT_EQ(set.getAsInt(("NAME" + std::to_string(i)).c_str()), i);
    for (int i = 0; i < 3000; i += 2)
        set.unset(("NAME" + std::to_string(i)).c_str());
    ASSERT_EQ(set.length(), 1500U);
    EXPECT_EQ(set.find("NAME2999"), 2998);
    const std::string large(1000000, 'x');
    set.set(large.c_str(), large.c_str());
    EXPECT_EQ(set.get(large.c_str()), large);
}

// ElementAt

TEST(Environment, ElementAtThrowsOutOfRange) {
    Environment set;
    char name[8];
    EXPECT_FAILURE(set.ElementAt(0, name, sizeof name), 1229, "ut_Environment", elementAtName, "");
    set.set("A", "1");
    set.set("B", "2");
    for (const unsigned int i : {set.length(), 3U, 0x7FFFFFFFu, 0x80000000u, 0x80000001u, 0xFFFFFFFFu})
        EXPECT_FAILURE(set.ElementAt(i, name, sizeof name), 1229, "ut_Environment", elementAtName, "");
    EXPECT_STREQ(set.ElementAt(1, name, sizeof name), "2");
}

TEST(Environment, ElementAtTruncatesTheNameWithoutATerminator) {
    Environment set;
    set.set("NAME", "value");
    for (unsigned int size = 0; size <= 8; ++size) {
        test::GuardedText name(size);
        EXPECT_STREQ(set.ElementAt(0, name.array(), size), "value");
        EXPECT_EQ(name.text(), std::string("NAME").substr(0, size)) << size;
        EXPECT_EQ(name.isTerminated(), size > 4) << size;
        EXPECT_TRUE(name.isGuardWhole()) << size;
    }
}

TEST(Environment, ElementAtLeavesTheBytesAfterTheTerminator) {
    Environment set;
    set.set("AB", "1");
    char name[] = "#####";
    set.ElementAt(0, name, 5);
    EXPECT_EQ(std::string(name, 5), std::string("AB\0##", 5));
}

TEST(Environment, ElementAtAcceptsANullBuffer) {
    Environment set;
    set.set("A", "1");
    EXPECT_STREQ(set.ElementAt(0, nullptr, 0), "1");
    EXPECT_STREQ(set.ElementAt(0, nullptr, 8), "1");
}

// Printing

TEST(Environment, PrintedNamesAreTruncatedTo127Characters) {
    for (const std::size_t length : {126U, 127U, 128U, 129U, 1000U}) {
        Environment set;
        const std::string name(length, 'n');
        set.set(name.c_str(), "v");
        set.set("next", "w");
        EXPECT_EQ(textOf(set), name.substr(0, 127) + "=v\nnext=w\n") << length;
    }
}

TEST(Environment, PrintIgnoresTheLevel) {
    Environment set;
    set.set("A", "1");
    for (const int level : {-1, 0, 1, 100})
        EXPECT_EQ(writtenText([&](utility::PutStream& out) { set.privateInformation(out, level); }), "A=1\n");
}

TEST(Environment, PrintsPercentSignsUnchanged) {
    Environment set;
    set.set("%s%n", "%d%s%n");
    EXPECT_EQ(textOf(set), "%s%n=%d%s%n\n");
}

TEST(Environment, PrintThrowsIfTheTextDoesNotFitAndNeverOverruns) {
    Environment set;
    set.set("FIRST", "1");
    set.set("SECOND", "2");
    const unsigned int length = static_cast<unsigned int>(textOf(set).size());
    for (unsigned int size = 0; size <= length + 2; ++size) {
        test::GuardedText text(size);
        utility::PutStream out(text.array(), static_cast<int>(size));
        const std::unique_ptr<framework::Exception> failure = CATCH_FAILURE(set.privateInformation(out, 0));
        EXPECT_EQ(failure != nullptr, size <= length) << size;
        EXPECT_EQ(failure != nullptr ? failure->code() : 1239U, 1239U) << size;
        EXPECT_TRUE(text.isGuardWhole()) << size;
    }
}

// Traces

TEST(Environment, FindTracesEachStepWithItsSwitchOn) {
    Environment set;
    set.set("A", "1");
    set.set("B", "2");
    set.set("C", "3");
    const std::string where = std::string("3 ") + findName + ": ";
    const test::DebugSwitch debug(traceSwitch);
    test::LogCapture log;
    EXPECT_EQ(set.find("B"), 2);
    EXPECT_EQ(test::traceLines(log), (Lines{where + "check 0", where + "B == A", where + "check 2", where + "B == B"}));
    log.clear();
    EXPECT_EQ(set.find("D"), -1);
    EXPECT_EQ(test::traceLines(log), (Lines{where + "check 0", where + "D == A", where + "check 2", where + "D == B",
                                            where + "check 4", where + "D == C"}));
    log.clear();
    EXPECT_EQ(set.find(nullptr), -1);
    EXPECT_EQ(log.count(), 0U);
    set.get("A");
    EXPECT_EQ(test::traceLines(log), (Lines{where + "check 0", where + "A == A"}));
}

TEST(Environment, LogsNothingWithItsSwitchOff) {
    const test::LogCapture log;
    Environment set;
    set.set("A", "1");
    set.set("A", "2");
    set.find("B");
    set.unset("A");
    set.unset("A");
    textOf(set);
    EXPECT_EQ(log.count(), 0U);
}

// The process environment

TEST(Environment, ProcessVariablesAreThoseOfThePlatform) {
    const char* const name = "VXUT_ENVIRONMENT_TEST";
    ASSERT_EQ(unsetenv(name), 0);
    EXPECT_EQ(Environment::GetEnv(name), nullptr);
    EXPECT_EQ(Environment::SetEnv(name, "1"), 0);
    EXPECT_STREQ(std::getenv(name), "1");
    EXPECT_EQ(Environment::GetEnv(name), std::getenv(name));
    EXPECT_EQ(Environment::SetEnv(name, "2"), 0);
    EXPECT_STREQ(Environment::GetEnv(name), "2");
    EXPECT_EQ(Environment::SetEnv(name, ""), 0);
    EXPECT_STREQ(Environment::GetEnv(name), "");
    EXPECT_EQ(Environment::UnsetEnv(name), 0);
    EXPECT_EQ(std::getenv(name), nullptr);
    EXPECT_EQ(Environment::UnsetEnv(name), 0);
}

TEST(Environment, NamesThatThePlatformRefusesAreRefused) {
    EXPECT_EQ(Environment::SetEnv("", "x"), -1);
    EXPECT_EQ(Environment::SetEnv("A=B", "x"), -1);
    EXPECT_EQ(Environment::UnsetEnv(""), -1);
    EXPECT_EQ(Environment::UnsetEnv("A=B"), -1);
    EXPECT_EQ(Environment::GetEnv(""), nullptr);
    EXPECT_EQ(Environment::GetEnv("A=B"), nullptr);
}

TEST(Environment, NullArgumentsOfTheProcessEnvironmentReturnNullOrFail) {
    EXPECT_EQ(Environment::GetEnv(nullptr), nullptr);
    errno = 0;
    EXPECT_EQ(Environment::SetEnv(nullptr, "x"), -1);
    EXPECT_EQ(errno, EINVAL);
    errno = 0;
    EXPECT_EQ(Environment::SetEnv("VXUT_ENVIRONMENT_NULL", nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(Environment::SetEnv(nullptr, nullptr), -1);
    errno = 0;
    EXPECT_EQ(Environment::UnsetEnv(nullptr), -1);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(std::getenv("VXUT_ENVIRONMENT_NULL"), nullptr);
}

TEST(Environment, SetIsIndependentOfTheProcess) {
    ASSERT_EQ(Environment::SetEnv("VXUT_ENVIRONMENT_APART", "process"), 0);
    Environment set;
    EXPECT_FALSE(set.isSet("VXUT_ENVIRONMENT_APART"));
    set.set("VXUT_ENVIRONMENT_APART", "set");
    EXPECT_STREQ(Environment::GetEnv("VXUT_ENVIRONMENT_APART"), "process");
    set.unset("VXUT_ENVIRONMENT_APART");
    EXPECT_STREQ(Environment::GetEnv("VXUT_ENVIRONMENT_APART"), "process");
    EXPECT_EQ(Environment::UnsetEnv("VXUT_ENVIRONMENT_APART"), 0);
}

TEST(Environment, GlobalInformationWritesEveryVariableOfTheProcessInOrder) {
    std::string expected;
    for (char** entry = environ; *entry != nullptr; ++entry)
        expected += *entry + std::string("\n");
    for (const int level : {-1, 0, 7})
        EXPECT_EQ(writtenText([&](utility::PutStream& out) { Environment::globalInformation(out, level); },
                              static_cast<int>(expected.size()) + 16),
                  expected);
}

TEST(Environment, GlobalInformationOfAnEmptiedProcessEnvironmentIsEmpty) {
    const test::ChildResult child = test::runInChild([] {
        clearenv();
        const std::string none = writtenText([](utility::PutStream& out) { Environment::globalInformation(out, 0); });
        const bool absent = Environment::GetEnv("PATH") == nullptr;
        const bool set = Environment::SetEnv("%s%n", std::string(5000, 'x').c_str()) == 0;
        const std::string one = writtenText([](utility::PutStream& out) { Environment::globalInformation(out, 0); });
        return none.empty() && absent && set && one == "%s%n=" + std::string(5000, 'x') + "\n" ? 0 : 1;
    });
    EXPECT_TRUE(child.exited);
    EXPECT_EQ(child.status, 0) << child.err;
}

TEST(Environment, GlobalInformationThrowsIfTheTextDoesNotFit) {
    ASSERT_EQ(Environment::SetEnv("VXUT_ENVIRONMENT_LONG", "0123456789"), 0);
    test::GuardedText text(8);
    utility::PutStream out(text.array(), 8);
    const std::unique_ptr<framework::Exception> failure = CATCH_FAILURE(Environment::globalInformation(out, 0));
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->code(), 1239U);
    EXPECT_TRUE(text.isGuardWhole());
    EXPECT_EQ(Environment::UnsetEnv("VXUT_ENVIRONMENT_LONG"), 0);
}

// Comparison with a simple model

TEST(Environment, RandomChangesLikeTheModel) {
    test::RandomRun random;
    Environment set;
    Variables model;
    while (random.steps(50000)) {
        const std::string name = random.text(2, "ab");
        const std::string value = random.text(3, "01x");
        const auto found = std::find_if(model.begin(), model.end(), [&](const auto& v) { return v.first == name; });
        const bool isThere = found != model.end();
        ASSERT_EQ(set.find(name.c_str()), isThere ? 2 * (found - model.begin()) : -1);
        ASSERT_EQ(set.isSet(name.c_str()), isThere);
        ASSERT_STREQ(set.get(name.c_str()), isThere ? found->second.c_str() : nullptr);
        ASSERT_EQ(set.getAsInt(name.c_str()), isThere ? std::atoi(found->second.c_str()) : 0);
        if (random.below(3) == 0) {
            set.unset(name.c_str());
            if (isThere)
                model.erase(found);
        } else {
            set.set(name.c_str(), value.c_str());
            if (isThere)
                found->second = value;
            else
                model.push_back({name, value});
        }
        ASSERT_EQ(contentOf(set), model);
    }
}

// Memory

TEST(Environment, LeaksNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        Environment set;
        for (int i = 0; i < 100; ++i)
            set.set(std::to_string(i % 50).c_str(), std::to_string(i).c_str());
        for (int i = 0; i < 25; ++i)
            set.unset(std::to_string(i).c_str());
        EXPECT_GT(framework::Memory::staticOutstanding(), before);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

// Runs `operation`. If memory is exhausted, it may throw a failure of its array or `std::bad_alloc`.
template<class Operation>
void withLittleMemory(Operation&& operation) {
    try {
        operation();
    } catch (framework::Exception* failure) {
        const std::unique_ptr<framework::Exception> owner(failure);
        if (failure->code() != 1230)
            throw std::string(failure->message());
    } catch (const std::bad_alloc&) {
    }
}

TEST(Environment, ConstructionSucceedsOrThrowsIfMemoryIsExhausted) {
    const long before = framework::Memory::staticOutstanding();
    const unsigned long failed = test::failEachAllocationOnce(
        [] {
            withLittleMemory([] {
                Environment set;
                set.set("A", "1");
            });
        },
        [&] { EXPECT_EQ(framework::Memory::staticOutstanding(), before); });
    EXPECT_GE(failed, 4U);
}

TEST(Environment, SetChangesNothingWithoutMemoryForANameOrAValue) {
    const long before = framework::Memory::staticOutstanding();
    for (const int others : {0, 9, 10}) {
        Variables previous;
        for (int i = 0; i < others; ++i)
            previous.push_back({"N" + std::to_string(i), std::to_string(i)});
        previous.push_back({"A", "1"});
        for (const char* const name : {"A", "B"}) {
            unsigned long failures = 1;
            for (unsigned long nth = 1; failures > 0; ++nth) {
                ASSERT_LE(nth, 50U);
                Environment set;
                for (const auto& [previousName, value] : previous)
                    set.set(previousName.c_str(), value.c_str());
                const char* const text = set.get("A");
                {
                    test::FailingAllocation failing(nth);
                    withLittleMemory([&] { set.set(name, "2"); });
                    failures = failing.failures();
                }
                if (failures == 0) {
                    EXPECT_STREQ(set.get(name), "2");
                    break;
                }
                EXPECT_EQ(contentOf(set), previous) << nth;
                EXPECT_EQ(set.get("A"), text) << nth;
                set.set(name, "3");
                EXPECT_STREQ(set.get(name), "3") << nth;
            }
        }
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(Environment, StaysUsableWithoutMemoryForAVariable) {
    const long before = framework::Memory::staticOutstanding();
    unsigned long failures = 1;
    for (unsigned long nth = 1; failures > 0; ++nth) {
        ASSERT_LE(nth, 50U);
        Environment set;
        set.set("A", "1");
        {
            test::FailingAllocation failing(nth);
            withLittleMemory([&] { set.set("B", "2"); });
            withLittleMemory([&] { set.set("A", "3"); });
            withLittleMemory([&] { set.set("C", "4"); });
            failures = failing.failures();
        }
        EXPECT_LE(set.length(), 3U) << nth;
        EXPECT_EQ(set.find("A"), 0) << nth;
        EXPECT_EQ(set.find("D"), -1) << nth;
        for (const char* const name : {"A", "B", "C"}) {
            set.get(name);
            set.getAsInt(name);
            set.getAsBool(name);
        }
        for (unsigned int i = 0; i <= set.length(); ++i) {
            char name[8];
            const std::unique_ptr<framework::Exception> failure = CATCH_FAILURE(set.ElementAt(i, name, sizeof name));
            EXPECT_EQ(failure != nullptr ? failure->code() : 1229U, 1229U) << nth;
        }
        {
            utility::BufferStream out(1000);
            const std::unique_ptr<framework::Exception> failure = CATCH_FAILURE(set.privateInformation(out, 0));
            EXPECT_EQ(failure != nullptr ? failure->code() : 1229U, 1229U) << nth;
        }
        set.set("Z", "26");
        EXPECT_EQ(set.getAsInt("Z"), 26) << nth;
        set.unset("Z");
        set.unset("C");
        EXPECT_FALSE(set.isSet("Z")) << nth;
        EXPECT_FALSE(set.isSet("C")) << nth;
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(Environment, NamesAndValuesStayPairedWithoutMemoryForALargerTable) {
    unsigned long failures = 1;
    for (unsigned long nth = 1; failures > 0; ++nth) {
        ASSERT_LE(nth, 50U);
        Environment set;
        Variables expected;
        for (int i = 0; i < 10; ++i) {
            expected.push_back({"N" + std::to_string(i), std::to_string(i)});
            set.set(expected.back().first.c_str(), expected.back().second.c_str());
        }
        {
            test::FailingAllocation failing(nth);
            withLittleMemory([&] { set.set("X", "x"); });
            failures = failing.failures();
        }
        for (const auto& [name, value] : expected)
            EXPECT_STREQ(set.get(name.c_str()), value.c_str()) << nth;
        set.set("Y", "y");
        EXPECT_STREQ(set.get("Y"), "y") << nth;
        EXPECT_EQ(set.find("Y") % 2, 0) << nth;
    }
}

} // namespace
