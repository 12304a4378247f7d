#include "ut_StringDirectory.h"

#include <algorithm>
#include <climits>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "DirectoryContent.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "fw_Memory.h"
#include "ut_BufferStream.h"

namespace {

using test::contentOf;
using test::fill;
using utility::BufferStream;
using utility::StringDirectory;
using Names = std::vector<std::string>;

constexpr const char* reallocName = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_constructible<StringDirectory>::value, "directories are not copied");
static_assert(!std::is_copy_assignable<StringDirectory>::value, "directories are not copied");

TEST(StringDirectory, UsageExample) {
    utility::StringDirectory names(0);
    EXPECT_EQ(names.Add("volume"), 0);
    EXPECT_EQ(names.Add("port"), 1);
    EXPECT_STREQ(names.ElementAt(1), "port");
}

TEST(StringDirectory, KeepsCopiesInTheOrderAdded) {
    StringDirectory directory(1);
    char name[] = "b";
    EXPECT_EQ(directory.Add(name), 0);
    name[0] = 'a';
    EXPECT_EQ(directory.Add(name), 1);
    EXPECT_EQ(directory.Add(name), 2);
    EXPECT_EQ(contentOf(directory), (Names{"b", "a", "a"}));
}

TEST(StringDirectory, AddIgnoresNull) {
    StringDirectory directory(0);
    EXPECT_EQ(directory.Add(nullptr), -1);
    EXPECT_EQ(directory.NumElements(), 0);
}

TEST(StringDirectory, FindAndLookupReturnTheFirstElementThatIsNotTheKey) {
    StringDirectory directory(0);
    fill(directory, {"x", "y"});
    EXPECT_EQ(directory.Find("x"), 1);
    EXPECT_STREQ(directory.Lookup("x"), "y");
    EXPECT_EQ(directory.Find("y"), 0);
    EXPECT_STREQ(directory.Lookup("y"), "x");
    EXPECT_EQ(directory.Find("absent"), 0);
    EXPECT_STREQ(directory.Lookup("absent"), "x");
}

TEST(StringDirectory, FindReturnsMinusOneIfEveryElementIsTheKey) {
    StringDirectory directory(0);
    EXPECT_EQ(directory.Find("x"), -1);
    EXPECT_EQ(directory.Lookup("x"), nullptr);
    fill(directory, {"x", "x"});
    EXPECT_EQ(directory.Find("x"), -1);
    EXPECT_EQ(directory.Lookup("x"), nullptr);
    directory.Delete("x");
    EXPECT_EQ(contentOf(directory), (Names{"x", "x"}));
}

TEST(StringDirectory, DeleteRemovesTheFirstElementThatIsNotTheKey) {
    StringDirectory directory(0);
    fill(directory, {"x", "y", "z"});
    directory.Delete("x");
    EXPECT_EQ(contentOf(directory), (Names{"x", "z"}));
    directory.Delete("absent");
    EXPECT_EQ(contentOf(directory), (Names{"z"}));
}

TEST(StringDirectory, ANullKeyIsNotFound) {
    StringDirectory directory(0);
    fill(directory, {"x"});
    EXPECT_EQ(directory.Find(nullptr), -1);
    EXPECT_EQ(directory.Lookup(nullptr), nullptr);
    directory.Delete(nullptr);
    EXPECT_EQ(directory.NumElements(), 1);
}

TEST(StringDirectory, ElementsOutOfRangeAreNull) {
    StringDirectory directory(0);
    fill(directory, {"x"});
    EXPECT_EQ(directory.ElementAt(1), nullptr);
    EXPECT_EQ(directory.ElementAt(-1), nullptr);
    EXPECT_EQ(directory.ElementAt(INT_MIN), nullptr);
    EXPECT_EQ(directory.ElementAt(INT_MAX), nullptr);
}

TEST(StringDirectory, AnArgumentMayBeAStringOfTheDirectory) {
    StringDirectory directory(1);
    fill(directory, {"x", "y"});
    EXPECT_EQ(directory.Add(directory.ElementAt(0)), 2);
    directory.Delete(directory.ElementAt(1));
    EXPECT_EQ(contentOf(directory), (Names{"y", "x"}));
}

TEST(StringDirectory, AcceptsTheEmptyNameAndOneOf100000Characters) {
    StringDirectory directory(0);
    const std::string longName(100000, 'x');
    fill(directory, {"", longName});
    EXPECT_EQ(contentOf(directory), (Names{"", longName}));
    EXPECT_EQ(directory.Find(""), 1);
    EXPECT_EQ(directory.Find(longName.c_str()), 0);
}

TEST(StringDirectory, ANegativeCapacityIsTheDefault) {
    for (const int capacity : {-1, INT_MIN}) {
        StringDirectory directory(capacity);
        EXPECT_EQ(directory.Add("x"), 0);
    }
}

TEST(StringDirectory, ToBufferRewindsTheStreamAndWritesALinePerElement) {
    StringDirectory directory(0);
    BufferStream out(100);
    out.PutS("before");
    directory.ToBuffer(out);
    EXPECT_EQ(out.ReadAvailable(), 0);
    fill(directory, {"x", "", "y"});
    out.PutS("before");
    directory.ToBuffer(out);
    EXPECT_STREQ(out.pBuffer(), "x\n\ny\n");
    EXPECT_EQ(out.ReadAvailable(), 5);
}

// A directory with a null element, which only a derived class can contain.
class WithNull : public StringDirectory {
public:
    WithNull() : StringDirectory(0) {
        m_strings.Append(nullptr);
    }
};

TEST(StringDirectory, ANullElementIsWrittenAsNullAndDiffersFromEveryKey) {
    WithNull directory;
    directory.Add("x");
    BufferStream out(100);
    directory.ToBuffer(out);
    EXPECT_STREQ(out.pBuffer(), "-null-\nx\n");
    EXPECT_EQ(directory.Find("x"), 0);
    EXPECT_EQ(directory.Lookup("x"), nullptr);
    directory.Delete("x");
    EXPECT_EQ(contentOf(directory), Names{"x"});
}

TEST(StringDirectory, ATextThatDoesNotFitThrowsOrIsTruncated) {
    StringDirectory directory(0);
    fill(directory, {"xx", "yy"});
    BufferStream exact(6);
    directory.ToBuffer(exact);
    EXPECT_STREQ(exact.pBuffer(), "xx\nyy\n");
    BufferStream throwing(5);
    EXPECT_FAILURE(directory.ToBuffer(throwing), 1239, "ut_Buffer", "virtual void utility::Buffer::WriteAdvance(int)",
                   "");
    BufferStream withoutLineFeed(2);
    EXPECT_NE(CATCH_FAILURE(directory.ToBuffer(withoutLineFeed)), nullptr);
    char text[8] = "#######";
    BufferStream quiet(text, 5, true);
    test::LogCapture log;
    directory.ToBuffer(quiet);
    EXPECT_TRUE(log.contains(framework::Logger::LOG_ERROR, "PutStream::PutS: Didn't fit. remaining=1 msg='yy'"));
    EXPECT_EQ(std::string(text).compare(0, 3, "xx\n"), 0);
    EXPECT_EQ(std::string(text + 5, 2), "##");
}

TEST(StringDirectory, AddReturnsMinusOneWithoutMemoryForTheCopyAndThrowsWithoutMemoryForTheTable) {
    const long before = framework::Memory::staticOutstanding();
    {
        StringDirectory directory(1);
        directory.Add("x");
        EXPECT_FAILURE(test::failNth(1, [&] { directory.Add("y"); }), 1230, "ut_Array", reallocName, "");
        EXPECT_EQ(contentOf(directory), Names{"x"});
        {
            test::FailingAllocation failing(2);
            EXPECT_EQ(directory.Add("y"), -1);
        }
        EXPECT_EQ(contentOf(directory), Names{"x"});
        EXPECT_EQ(directory.Add("z"), 1);
        EXPECT_EQ(contentOf(directory), (Names{"x", "z"}));
        EXPECT_FAILURE(test::failNth(1, [&] { StringDirectory(5); }), 1230, "ut_Array", reallocName, "");
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(StringDirectory, SearchesAndDeletionsDoNotAllocate) {
    StringDirectory directory(0);
    fill(directory, {"x", "y"});
    test::FailingAllocation failing(test::failAll);
    EXPECT_STREQ(directory.Lookup("x"), "y");
    directory.Delete("x");
    EXPECT_EQ(directory.NumElements(), 1);
}

TEST(StringDirectory, BehavesAsAVectorUnderRandomOperations) {
    test::RandomRun random;
    const long before = framework::Memory::staticOutstanding();
    {
        StringDirectory directory(static_cast<int>(random.below(30)));
        Names model;
        while (random.steps(100000)) {
            const std::string name = random.text(1, "ab");
            const auto other = std::find_if(model.begin(), model.end(), [&](const auto& held) { return held != name; });
            const int found = other == model.end() ? -1 : static_cast<int>(other - model.begin());
            ASSERT_EQ(directory.Find(name.c_str()), found);
            if (found < 0) {
                ASSERT_EQ(directory.Lookup(name.c_str()), nullptr);
            } else {
                ASSERT_EQ(directory.Lookup(name.c_str()), *other);
            }
            if (random.below(100) < (model.size() > 60 ? 40u : 60u)) {
                ASSERT_EQ(directory.Add(name.c_str()), static_cast<int>(model.size()));
                model.push_back(name);
            } else {
                directory.Delete(name.c_str());
                if (found >= 0)
                    model.erase(other);
            }
            ASSERT_EQ(contentOf(directory), model);
        }
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

} // namespace
