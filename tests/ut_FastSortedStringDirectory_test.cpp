#include "ut_FastSortedStringDirectory.h"

#include <algorithm>
#include <climits>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "CountedComparisons.h"
#include "DirectoryContent.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "RandomRun.h"
#include "fw_Memory.h"
#include "ut_BufferStream.h"

namespace {

using test::contentOf;
using test::fill;
using utility::FastSortedStringDirectory;
using Names = std::vector<std::string>;

constexpr const char* reallocName = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_constructible<FastSortedStringDirectory>::value, "directories are not copied");

TEST(FastSortedStringDirectory, UsageExample) {
    utility::FastSortedStringDirectory names(0);
    EXPECT_EQ(names.Add("b"), 0);
    EXPECT_EQ(names.Add("a"), 0);
    EXPECT_EQ(names.Add("ab"), 1);
    EXPECT_EQ(names.Find("b"), 2);
}

TEST(FastSortedStringDirectory, KeepsItsStringsInAscendingOrder) {
    FastSortedStringDirectory directory(1);
    fill(directory, {"b", "a", "ab", "", "zz", "A"});
    EXPECT_EQ(contentOf(directory), (Names{"", "A", "a", "ab", "b", "zz"}));
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(directory.Find(directory.ElementAt(i)), i);
        EXPECT_EQ(directory.Lookup(directory.ElementAt(i)), directory.ElementAt(i));
    }
}

TEST(FastSortedStringDirectory, AbsentStringsAreNotFound) {
    FastSortedStringDirectory directory(0);
    EXPECT_EQ(directory.Find("a"), -1);
    fill(directory, {"ab", "c", "ad"});
    for (const char* absent : {"", "a", "abc", "ac", "b", "cc", "d", "\xff"}) {
        EXPECT_EQ(directory.Find(absent), -1) << absent;
        EXPECT_EQ(directory.Lookup(absent), nullptr) << absent;
    }
}

TEST(FastSortedStringDirectory, FindDoesNotCompareIfTheRangeIsEmpty) {
    FastSortedStringDirectory directory(0);
    EXPECT_EQ(test::comparisonsToFind(directory, "a", -1), 0u);
    fill(directory, {"a", "c", "\x7f", "\xff"});
    for (const char* absent : {"", "b", "bc", "d", "\x80", "\xfe"})
        EXPECT_EQ(test::comparisonsToFind(directory, absent, -1), 0u) << absent;
}

TEST(FastSortedStringDirectory, FindComparesOncePerStepOfTheBinarySearch) {
    FastSortedStringDirectory directory(0);
    for (int i = 0; i < 1000; ++i)
        directory.Add(("a" + std::to_string(1000 + i)).c_str());
    for (int i = 0; i < 7; ++i)
        directory.Add(("b" + std::to_string(i)).c_str());
    // A binary search takes at most 10 steps in a range of 1000 names and 3 steps in a range of 7.
    for (int i = 0; i < 7; ++i) {
        const std::string name = "b" + std::to_string(i);
        EXPECT_LE(test::comparisonsToFind(directory, name, 1000 + i), 3u);
        EXPECT_LE(test::comparisonsToFind(directory, name + "x", -1), 3u);
    }
    EXPECT_EQ(test::comparisonsToFind(directory, "b3", 1003), 1u);
    for (int i = 0; i < 1000; ++i) {
        const std::string name = "a" + std::to_string(1000 + i);
        EXPECT_LE(test::comparisonsToFind(directory, name, i), 10u);
        EXPECT_LE(test::comparisonsToFind(directory, name + "x", -1), 10u);
    }
}

TEST(FastSortedStringDirectory, ANullStringIsNeitherFoundNorAdded) {
    FastSortedStringDirectory directory(0);
    fill(directory, {"", "a"});
    EXPECT_EQ(directory.Add(nullptr), -1);
    EXPECT_EQ(directory.Find(nullptr), -1);
    EXPECT_EQ(directory.Lookup(nullptr), nullptr);
    directory.Delete(nullptr);
    EXPECT_EQ(contentOf(directory), (Names{"", "a"}));
}

TEST(FastSortedStringDirectory, DuplicatesAreInsertedAfterTheirEquals) {
    FastSortedStringDirectory directory(0);
    fill(directory, {"a", "b", "c"});
    const char* const first = directory.ElementAt(1);
    EXPECT_EQ(directory.Add("b"), 2);
    EXPECT_EQ(directory.Add("b"), 3);
    EXPECT_EQ(directory.ElementAt(1), first);
    const char* const second = directory.ElementAt(2);
    directory.Delete("b");
    EXPECT_EQ(directory.ElementAt(1), second);
    EXPECT_EQ(contentOf(directory), (Names{"a", "b", "b", "c"}));
}

TEST(FastSortedStringDirectory, DeleteRemovesOnlyTheEqualString) {
    FastSortedStringDirectory directory(0);
    fill(directory, {"a", "ab", "b", "c"});
    directory.Delete("abc");
    directory.Delete("d");
    EXPECT_EQ(directory.NumElements(), 4);
    directory.Delete("ab");
    EXPECT_EQ(contentOf(directory), (Names{"a", "b", "c"}));
    EXPECT_EQ(directory.Find("ab"), -1);
    EXPECT_EQ(directory.Find("c"), 2);
    directory.Delete("a");
    directory.Delete("c");
    directory.Delete("b");
    EXPECT_EQ(directory.NumElements(), 0);
    EXPECT_EQ(directory.Add("b"), 0);
    EXPECT_EQ(directory.Find("b"), 0);
}

TEST(FastSortedStringDirectory, AnArgumentMayBeAStringOfTheDirectory) {
    FastSortedStringDirectory directory(1);
    fill(directory, {"a", "b"});
    EXPECT_EQ(directory.Add(directory.ElementAt(0)), 1);
    directory.Delete(directory.ElementAt(2));
    EXPECT_EQ(contentOf(directory), (Names{"a", "a"}));
    directory.Delete(directory.ElementAt(0));
    EXPECT_EQ(directory.Find("a"), 0);
    EXPECT_EQ(directory.Add("c"), 1);
}

TEST(FastSortedStringDirectory, BytesAbove127SortAfterTheOthers) {
    FastSortedStringDirectory directory(0);
    fill(directory, {"\xff", "z", "\x80", "\x7f", "a\xff", "a\x7f", "\xc3\xa4"});
    EXPECT_EQ(contentOf(directory), (Names{"a\x7f", "a\xff", "z", "\x7f", "\x80", "\xc3\xa4", "\xff"}));
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(directory.Find(directory.ElementAt(i)), i);
    directory.Delete("\x80");
    EXPECT_EQ(directory.Find("\xff"), 5);
    EXPECT_EQ(directory.Find("\x80"), -1);
}

TEST(FastSortedStringDirectory, AcceptsTheEmptyNameAndOneOf100000Characters) {
    FastSortedStringDirectory directory(0);
    const std::string longName(100000, 'x');
    fill(directory, {longName + "y", "", longName});
    EXPECT_EQ(directory.Find(""), 0);
    EXPECT_EQ(directory.Find(longName.c_str()), 1);
    EXPECT_EQ(directory.Find((longName + "y").c_str()), 2);
    EXPECT_EQ(directory.Find(longName.substr(1).c_str()), -1);
    directory.Delete("");
    directory.Delete(longName.c_str());
    EXPECT_EQ(contentOf(directory), Names{longName + "y"});
}

TEST(FastSortedStringDirectory, RejectsThe32768thStringAndChangesNothing) {
    FastSortedStringDirectory directory(40000);
    for (int i = 0; i < 32767; ++i)
        ASSERT_EQ(directory.Add(std::to_string(100000 + i).c_str()), i);
    EXPECT_EQ(directory.Add("0"), -1);
    EXPECT_EQ(directory.Add("z"), -1);
    EXPECT_EQ(directory.NumElements(), 32767);
    EXPECT_EQ(directory.Find("0"), -1);
    EXPECT_EQ(directory.Find("100000"), 0);
    EXPECT_EQ(directory.Find("132766"), 32766);
    directory.Delete("100005");
    EXPECT_EQ(directory.Add("z"), 32766);
    EXPECT_EQ(directory.Find("z"), 32766);
    EXPECT_EQ(directory.Find("132766"), 32765);
    EXPECT_EQ(directory.Add("z"), -1);
}

TEST(FastSortedStringDirectory, ToBufferWritesItsStringsInOrder) {
    FastSortedStringDirectory directory(0);
    fill(directory, {"b", "a"});
    utility::BufferStream out(100);
    directory.ToBuffer(out);
    EXPECT_STREQ(out.pBuffer(), "a\nb\n");
}

TEST(FastSortedStringDirectory, AddReturnsMinusOneWithoutMemoryForTheCopyAndThrowsWithoutMemoryForTheTable) {
    const long before = framework::Memory::staticOutstanding();
    {
        FastSortedStringDirectory directory(2);
        fill(directory, {"a", "c"});
        EXPECT_FAILURE(test::failNth(1, [&] { directory.Add("b"); }), 1230, "ut_Array", reallocName, "");
        EXPECT_EQ(contentOf(directory), (Names{"a", "c"}));
        {
            test::FailingAllocation failing(2);
            EXPECT_EQ(directory.Add("b"), -1);
        }
        EXPECT_EQ(contentOf(directory), (Names{"a", "c"}));
        EXPECT_EQ(directory.Find("b"), -1);
        EXPECT_EQ(directory.Find("c"), 1);
        EXPECT_EQ(directory.Add("b"), 1);
        EXPECT_EQ(directory.Find("c"), 2);
        EXPECT_FAILURE(test::failNth(1, [&] { FastSortedStringDirectory(5); }), 1230, "ut_Array", reallocName, "");
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(FastSortedStringDirectory, AddAllocatesOnlyTheCopyAndSearchesAllocateNothing) {
    FastSortedStringDirectory directory(100);
    const unsigned long before = test::allocationCount();
    EXPECT_EQ(directory.Add("b"), 0);
    EXPECT_EQ(directory.Add("a"), 0);
    EXPECT_EQ(test::allocationCount() - before, 2u);
    EXPECT_EQ(directory.Find("b"), 1);
    directory.Delete("b");
    EXPECT_EQ(test::allocationCount() - before, 2u);
}

TEST(FastSortedStringDirectory, BehavesAsASortedVectorUnderRandomOperations) {
    test::RandomRun random;
    const long before = framework::Memory::staticOutstanding();
    {
        FastSortedStringDirectory directory(static_cast<int>(random.below(30)));
        Names model;
        while (random.steps(100000)) {
            const std::string name = random.text(2, "ab\x7f\x80\xff");
            const auto range = std::equal_range(model.begin(), model.end(), name);
            const int first = static_cast<int>(range.first - model.begin());
            const int end = static_cast<int>(range.second - model.begin());
            const int found = directory.Find(name.c_str());
            if (first == end) {
                ASSERT_EQ(found, -1);
            } else {
                ASSERT_TRUE(found >= first && found < end) << found;
            }
            if (random.below(100) < (model.size() > 60 ? 40u : 60u)) {
                ASSERT_EQ(directory.Add(name.c_str()), end);
                model.insert(range.second, name);
            } else {
                directory.Delete(name.c_str());
                if (first != end)
                    model.erase(range.first);
            }
            ASSERT_EQ(contentOf(directory), model);
        }
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

} // namespace
