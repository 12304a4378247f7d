#include "ut_Try.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <csignal>
#include <cstring>
#include <fstream>
#include <map>
#include <new>
#include <regex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "fw_Exception.h"
#include "ut_DateTime.h"
#include "ut_IntArray.h"

namespace {

using framework::Exception;
using utility::Failure;
using utility::tryCall;

// Counts the objects that exist.
struct Counted : Exception {
    Counted(unsigned int code, const char* message) : Exception(code, "file", 17, "void f()", message, true) {
        ++existing;
    }
    Counted(const Counted& other) : Exception(other) {
        ++existing;
    }
    ~Counted() override {
        --existing;
    }

    static std::atomic<int> existing;
};
std::atomic<int> Counted::existing(0);

struct PortFailure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

template<typename Value>
[[noreturn]] void fail(Value value) {
    throw value;
}

void expectOnlyName(const Failure& failure, Failure::Kind kind, const std::string& name) {
    EXPECT_EQ(failure.kind(), kind);
    EXPECT_EQ(failure.name(), name);
    EXPECT_EQ(failure.code(), 0U);
    EXPECT_EQ(failure.line(), 0);
    EXPECT_STREQ(failure.file(), "");
    EXPECT_STREQ(failure.function(), "");
}

TEST(Try, UsageExample) {
    const utility::IntArray ports(4);
    std::string reported;
    const auto report = [&](const char* name, const char* message) {
        reported = std::string(name) + message;
    };
    const auto port = utility::tryCall([&] { return ports[7]; });
    if (!port)
        report(port.failure().name(), port.failure().message());
    EXPECT_EQ(reported, "FAILURE_INDEX");
}

TEST(Try, ASuccessHasItsValueAndNoFailure) {
    auto result = tryCall([] { return std::string("four"); });
    ASSERT_TRUE(result);
    EXPECT_EQ(result.value(), "four");
    result.value() += "teen";
    EXPECT_EQ(result.valueOr("other"), "fourteen");
    expectOnlyName(result.failure(), Failure::KIND_NONE, "");
    EXPECT_STREQ(result.failure().message(), "");
    EXPECT_TRUE(tryCall([] {}));
}

TEST(Try, ACallableMayReturnWhatCanOnlyBeMoved) {
    auto result = tryCall([] { return std::make_unique<int>(4); });
    ASSERT_TRUE(result);
    EXPECT_EQ(*result.value(), 4);
}

TEST(Try, AThrownPointerIsAValueAndFreed) {
    const auto result = tryCall([]() -> int { throw static_cast<Exception*>(new Counted(1239, "no space")); });
    EXPECT_FALSE(result);
    EXPECT_EQ(Counted::existing, 0);
    const Failure failure = result.failure();
    EXPECT_EQ(failure.kind(), Failure::KIND_LIBRARY);
    EXPECT_EQ(failure.code(), 1239U);
    EXPECT_STREQ(failure.name(), "FAILURE_BUFFER");
    EXPECT_STREQ(failure.message(), "no space");
    EXPECT_STREQ(failure.file(), "file");
    EXPECT_EQ(failure.line(), 17);
    EXPECT_STREQ(failure.function(), "void f()");
    EXPECT_EQ(result.valueOr(-1), -1);
    EXPECT_THROW(static_cast<void>(result.value()), std::bad_optional_access);
}

TEST(Try, AThrownPointerToADerivedClassIsFreedToo) {
    EXPECT_EQ(tryCall([] { fail(new Counted(5, "")); }).failure().code(), 5U);
    EXPECT_EQ(Counted::existing, 0);
}

TEST(Try, AnExceptionThrownByValueIsNotFreedTwice) {
    const auto result = tryCall([] { throw Counted(1240, "text"); });
    EXPECT_EQ(result.failure().kind(), Failure::KIND_LIBRARY);
    EXPECT_STREQ(result.failure().name(), "FAILURE_STREAM_INDEX");
    EXPECT_STREQ(result.failure().message(), "text");
    EXPECT_EQ(Counted::existing, 0);
}

TEST(Try, ACodeOfTheProgramHasNoName) {
    const auto result = tryCall([] { fail(new Counted(77, "own")); });
    EXPECT_EQ(result.failure().code(), 77U);
    EXPECT_STREQ(result.failure().name(), "");
}

TEST(Try, TheFailureOfTheLibraryHasItsPlace) {
    const auto result = tryCall([] { return utility::DateTime("no date"); });
    EXPECT_EQ(result.failure().code(), static_cast<unsigned int>(Exception::FAILURE_DATE));
    EXPECT_STREQ(result.failure().file(), "ut_DateTime");
    EXPECT_GT(result.failure().line(), 0);
    EXPECT_NE(std::string(result.failure().function()).find("DateTime"), std::string::npos);
}

TEST(Try, StandardExceptionsHaveTheirClassAndText) {
    const Failure failure = tryCall([] { return std::string("x").at(4); }).failure();
    expectOnlyName(failure, Failure::KIND_STANDARD, "std::out_of_range");
    EXPECT_NE(std::strlen(failure.message()), 0U);
    const Failure own = tryCall([] { throw PortFailure("offline"); }).failure();
    expectOnlyName(own, Failure::KIND_STANDARD, "(anonymous namespace)::PortFailure");
    EXPECT_STREQ(own.message(), "offline");
}

TEST(Try, MissingMemoryIsAKindOfItsOwn) {
    expectOnlyName(tryCall([] { throw std::bad_alloc(); }).failure(), Failure::KIND_MEMORY, "std::bad_alloc");
    expectOnlyName(tryCall([] { throw std::bad_array_new_length(); }).failure(), Failure::KIND_MEMORY,
                   "std::bad_array_new_length");
}

TEST(Try, OtherValuesHaveTheNameOfTheirType) {
    expectOnlyName(tryCall([] { fail(4); }).failure(), Failure::KIND_OTHER, "int");
    expectOnlyName(tryCall([] { fail("text"); }).failure(), Failure::KIND_OTHER, "char const*");
    expectOnlyName(tryCall([] { fail(static_cast<Exception*>(nullptr)); }).failure(), Failure::KIND_OTHER,
                   "framework::Exception*");
    expectOnlyName(tryCall([] { fail(nullptr); }).failure(), Failure::KIND_OTHER, "decltype(nullptr)");
    std::runtime_error ofSomebody("not freed");
    expectOnlyName(tryCall([&] { fail(&ofSomebody); }).failure(), Failure::KIND_OTHER, "std::runtime_error*");
}

TEST(Try, LongTextsAreTruncated) {
    const std::string text(1000, 'x');
    EXPECT_EQ(tryCall([&] { throw std::runtime_error(text); }).failure().message(), text.substr(0, 255));
}

TEST(Try, CallsNest) {
    const auto result = tryCall([] {
        const auto inner = tryCall([] { fail(new Counted(1229, "inner")); });
        EXPECT_EQ(inner.failure().code(), 1229U);
        fail(new Counted(1230, "outer"));
    });
    EXPECT_EQ(result.failure().code(), 1230U);
    EXPECT_EQ(Counted::existing, 0);
}

TEST(Try, CurrentLeavesTheExceptionToItsOwner) {
    EXPECT_EQ(Failure::current(true).kind(), Failure::KIND_NONE);
    try {
        fail(new Counted(1239, "kept"));
    } catch (Exception* exception) {
        EXPECT_STREQ(Failure::current(false).message(), "kept");
        EXPECT_EQ(Counted::existing, 1);
        delete exception;
    }
    EXPECT_EQ(Counted::existing, 0);
}

TEST(Try, TheEndOfAThreadPasses) {
    std::atomic<bool> isPassed(true);
    const auto body = [](void* passed) -> void* {
        tryCall([] { pthread_exit(nullptr); });
        *static_cast<std::atomic<bool>*>(passed) = false;
        return nullptr;
    };
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, nullptr, body, &isPassed), 0);
    pthread_join(thread, nullptr);
    EXPECT_TRUE(isPassed);
}

// The rows "| 1229 | `FAILURE_INDEX` | ..." of the document.
std::map<unsigned int, std::string> documentedNames() {
    std::map<unsigned int, std::string> names;
    std::ifstream document(VXUT_SOURCE_DIR "/docs/failures.md");
    const std::regex row(R"(\| ([0-9]+) \| `([A-Z_]+)` \|.*)");
    std::smatch match;
    for (std::string line; std::getline(document, line);) {
        if (std::regex_match(line, match, row))
            names[static_cast<unsigned int>(std::stoul(match[1]))] = match[2];
    }
    return names;
}

TEST(FailureName, IsTheOneInTheDocuments) {
    const std::map<unsigned int, std::string> documented = documentedNames();
    EXPECT_GE(documented.size(), 6U);
    for (unsigned int code = 0; code < 20000; ++code) {
        const char* const name = utility::failureName(code);
        const auto row = documented.find(code);
        EXPECT_EQ(name != nullptr ? name : "", row != documented.end() ? row->second : "") << code;
    }
    EXPECT_EQ(utility::failureName(UINT_MAX), nullptr);
}

// Runs `body` in a child with the terminate handler, and returns the first line of standard error.
std::string firstLineOfTermination(void (*body)()) {
    const test::ChildResult child = test::runInChild([body] {
        utility::installTerminateHandler();
        // Not in the `try` of `runInChild`.
        std::thread(body).join();
    });
    EXPECT_EQ(child.signal, SIGABRT);
    return child.err.substr(0, child.err.find('\n'));
}

TEST(TerminateHandler, TellsWhatWasNotCaught) {
    EXPECT_EQ(firstLineOfTermination([] { fail(new Counted(1239, "no space")); }),
              "uncaught failure 1239 FAILURE_BUFFER at file:17 in void f(): no space");
    EXPECT_EQ(firstLineOfTermination([] { fail(new Counted(77, "")); }), "uncaught failure 77 at file:17 in void f()");
    EXPECT_EQ(firstLineOfTermination([] { throw PortFailure("offline"); }),
              "uncaught failure (anonymous namespace)::PortFailure: offline");
    EXPECT_EQ(firstLineOfTermination([] { fail(4); }), "uncaught failure int");
}

TEST(TerminateHandler, WritesTheLongestTexts) {
    const std::string line = firstLineOfTermination([] {
        const std::string text(1000, 'x');
        throw Exception(1239, std::string(200, 'f').c_str(), 2147483647, text.c_str(), text.c_str(), true);
    });
    EXPECT_EQ(line, "uncaught failure 1239 FAILURE_BUFFER at " + std::string(63, 'f') + ":2147483647 in " +
                        std::string(255, 'x') + ": " + std::string(255, 'x'));
}

TEST(TerminateHandler, CallsTheFormerHandlerAndAbortsAfterIt) {
    const test::ChildResult child = test::runInChild([] {
        std::set_terminate([] {
            const char text[] = "former\n";
            const ssize_t count = write(STDERR_FILENO, text, sizeof text - 1);
            static_cast<void>(count);
        });
        utility::installTerminateHandler();
        utility::installTerminateHandler();
        std::thread([] { fail(4); }).join();
    });
    EXPECT_EQ(child.signal, SIGABRT);
    // An emulator adds a line about the signal.
    EXPECT_EQ(child.err.rfind("uncaught failure int\nformer\n", 0), 0U) << child.err;
    EXPECT_EQ(child.err.find("uncaught failure", 1), std::string::npos) << child.err;
}

TEST(TerminateHandler, WithoutAFailureOnlyTheFormerHandlerTells) {
    const test::ChildResult child = test::runInChild([] {
        utility::installTerminateHandler();
        std::terminate();
    });
    EXPECT_EQ(child.signal, SIGABRT);
    EXPECT_EQ(child.err.find("uncaught failure"), std::string::npos);
}

} // namespace
