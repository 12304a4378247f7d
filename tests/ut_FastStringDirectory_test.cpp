#include "ut_FastStringDirectory.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map>
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
using utility::FastStringDirectory;
using Names = std::vector<std::string>;

constexpr const char* reallocName = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";
constexpr const char* freeSlot = "(free)";

static_assert(!std::is_copy_constructible<FastStringDirectory>::value, "directories are not copied");

TEST(FastStringDirectory, UsageExample) {
    utility::FastStringDirectory names(0);
    EXPECT_EQ(names.Add("a"), 0);
    EXPECT_EQ(names.Add("b"), 1);
    names.Delete("a");
    EXPECT_EQ(names.ElementAt(0), nullptr);
    EXPECT_EQ(names.Add("c"), 0);
}

TEST(FastStringDirectory, TheMembersAreTheSlotArrayTheFirstFreeSlotAndTheIndex) {
    struct Tail {
        int firstFree;
        std::int16_t index[257];
    };
    const std::size_t tailAt = sizeof(utility::StringDirectory) + sizeof(utility::ShortArray);
    static_assert(tailAt == (sizeof(void*) == 8 ? 56 : 36), "the base and the slot array come first");
    static_assert(sizeof(FastStringDirectory) == (sizeof(void*) == 8 ? 576 : 556), "nothing else is held");
    FastStringDirectory directory(0);
    const auto tail = [&directory] {
        Tail copy;
        std::memcpy(&copy, reinterpret_cast<const char*>(&directory) + tailAt, sizeof copy);
        return copy;
    };
    EXPECT_EQ(tail().firstFree, -1);
    fill(directory, {"b", "a", "b"});
    directory.Delete("a");
    EXPECT_EQ(tail().firstFree, 1);
    EXPECT_EQ(tail().index['b'], 0);
    EXPECT_EQ(tail().index['c'], 2);
    EXPECT_EQ(tail().index[256], 2);
}

TEST(FastStringDirectory, AddReusesAFreedSlot) {
    FastStringDirectory directory(0);
    EXPECT_EQ(directory.Add("a"), 0);
    EXPECT_EQ(directory.Add("b"), 1);
    directory.Delete("a");
    EXPECT_EQ(directory.Add("c"), 0);
    EXPECT_STREQ(directory.ElementAt(0), "c");
    EXPECT_EQ(directory.Find("c"), 0);
    EXPECT_EQ(directory.Find("b"), 1);
    EXPECT_EQ(directory.Find("a"), -1);
    EXPECT_EQ(directory.NumElements(), 2);
}

TEST(FastStringDirectory, StringsKeepTheirSlots) {
    FastStringDirectory directory(1);
    fill(directory, {"d", "b", "a", "c", ""});
    EXPECT_EQ(contentOf(directory), (Names{"d", "b", "a", "c", ""}));
    for (int slot = 0; slot < 5; ++slot) {
        EXPECT_EQ(directory.Find(directory.ElementAt(slot)), slot);
        EXPECT_EQ(directory.Lookup(directory.ElementAt(slot)), directory.ElementAt(slot));
    }
    EXPECT_EQ(directory.Find("ab"), -1);
    EXPECT_EQ(directory.Find("e"), -1);
    EXPECT_EQ(directory.Lookup("e"), nullptr);
}

TEST(FastStringDirectory, TheSlotFreedLastIsReusedFirst) {
    FastStringDirectory directory(0);
    fill(directory, {"a", "b", "c", "d"});
    directory.Delete("c");
    directory.Delete("a");
    directory.Delete("d");
    EXPECT_EQ(contentOf(directory), (Names{freeSlot, "b", freeSlot, freeSlot}));
    EXPECT_EQ(directory.NumElements(), 4);
    EXPECT_EQ(directory.Add("w"), 3);
    EXPECT_EQ(directory.Add("x"), 0);
    EXPECT_EQ(directory.Add("y"), 2);
    EXPECT_EQ(directory.Add("z"), 4);
    EXPECT_EQ(contentOf(directory), (Names{"x", "b", "y", "w", "z"}));
}

TEST(FastStringDirectory, FreeSlotsAndSlotsOutOfRangeAreNull) {
    FastStringDirectory directory(0);
    fill(directory, {"a", "b", "c"});
    directory.Delete("a");
    directory.Delete("b");
    directory.Delete("c");
    for (const int slot : {0, 1, 2, 3, -1, INT_MIN, INT_MAX})
        EXPECT_EQ(directory.ElementAt(slot), nullptr) << slot;
}

TEST(FastStringDirectory, DeleteRemovesTheDuplicateAddedFirst) {
    FastStringDirectory directory(0);
    fill(directory, {"a", "b", "a", "a"});
    directory.Delete("a");
    EXPECT_EQ(contentOf(directory), (Names{freeSlot, "b", "a", "a"}));
    EXPECT_EQ(directory.Add("a"), 0);
    directory.Delete("a");
    EXPECT_EQ(contentOf(directory), (Names{"a", "b", freeSlot, "a"}));
    directory.Delete("a");
    directory.Delete("a");
    directory.Delete("a");
    EXPECT_EQ(contentOf(directory), (Names{freeSlot, "b", freeSlot, freeSlot}));
    EXPECT_EQ(directory.Find("a"), -1);
}

TEST(FastStringDirectory, FindDoesNotCompareIfTheRangeIsEmpty) {
    FastStringDirectory directory(0);
    EXPECT_EQ(test::comparisonsToFind(directory, "a", -1), 0u);
    fill(directory, {"a", "c", "\x7f", "\xff"});
    for (const char* absent : {"", "b", "bc", "d", "\x80", "\xfe"})
        EXPECT_EQ(test::comparisonsToFind(directory, absent, -1), 0u) << absent;
}

TEST(FastStringDirectory, FindComparesOncePerStepOfTheBinarySearch) {
    FastStringDirectory directory(0);
    for (int i = 0; i < 1000; ++i)
        directory.Add(("a" + std::to_string(i)).c_str());
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
        const std::string name = "a" + std::to_string(i);
        EXPECT_LE(test::comparisonsToFind(directory, name, i), 10u);
        EXPECT_LE(test::comparisonsToFind(directory, name + "x", -1), 10u);
    }
}

TEST(FastStringDirectory, ANullStringIsNeitherAddedNorFound) {
    FastStringDirectory directory(0);
    fill(directory, {"", "a"});
    EXPECT_EQ(directory.Add(nullptr), -1);
    EXPECT_EQ(directory.Find(nullptr), -1);
    EXPECT_EQ(directory.Lookup(nullptr), nullptr);
    directory.Delete(nullptr);
    directory.Delete("");
    EXPECT_EQ(directory.Add(nullptr), -1);
    EXPECT_EQ(contentOf(directory), (Names{freeSlot, "a"}));
}

TEST(FastStringDirectory, AnArgumentMayBeAStringOfTheDirectory) {
    FastStringDirectory directory(1);
    fill(directory, {"b", "a"});
    EXPECT_EQ(directory.Add(directory.ElementAt(0)), 2);
    directory.Delete(directory.ElementAt(1));
    EXPECT_EQ(directory.Add(directory.ElementAt(0)), 1);
    EXPECT_EQ(contentOf(directory), (Names{"b", "b", "b"}));
}

TEST(FastStringDirectory, BytesAbove127SortAfterTheOthers) {
    FastStringDirectory directory(0);
    const Names names = {"\xff", "z", "\x80", "\x7f", "a\xff", "a\x7f", "\xc3\xa4"};
    fill(directory, names);
    for (int slot = 0; slot < 7; ++slot)
        EXPECT_EQ(directory.Find(names[static_cast<std::size_t>(slot)].c_str()), slot);
    directory.Delete("\x80");
    EXPECT_EQ(directory.Find("\x80"), -1);
    EXPECT_EQ(directory.Find("\xff"), 0);
}

TEST(FastStringDirectory, AcceptsTheEmptyNameAndOneOf100000Characters) {
    FastStringDirectory directory(0);
    const std::string longName(100000, 'x');
    fill(directory, {longName + "y", "", longName});
    EXPECT_EQ(directory.Find(""), 1);
    EXPECT_EQ(directory.Find(longName.c_str()), 2);
    EXPECT_EQ(directory.Find((longName + "y").c_str()), 0);
    directory.Delete((longName + "y").c_str());
    EXPECT_EQ(directory.Add(longName.c_str()), 0);
}

TEST(FastStringDirectory, RejectsThe32768thStringAndChangesNothing) {
    FastStringDirectory directory(40000);
    for (int i = 0; i < 32767; ++i)
        ASSERT_EQ(directory.Add(std::to_string(100000 + i).c_str()), i);
    EXPECT_EQ(directory.Add("0"), -1);
    EXPECT_EQ(directory.NumElements(), 32767);
    EXPECT_EQ(directory.Find("0"), -1);
    EXPECT_EQ(directory.Find("132766"), 32766);
    directory.Delete("100005");
    EXPECT_EQ(directory.Add("0"), 5);
    EXPECT_EQ(directory.Find("0"), 5);
    EXPECT_EQ(directory.Add("1"), -1);
}

TEST(FastStringDirectory, ANegativeCapacityIsTheDefault) {
    FastStringDirectory directory(INT_MIN);
    EXPECT_EQ(directory.Add("a"), 0);
}

TEST(FastStringDirectory, ToBufferWritesFreeSlotsAsNull) {
    FastStringDirectory directory(0);
    fill(directory, {"b", "a", "c"});
    directory.Delete("b");
    directory.Delete("c");
    utility::BufferStream out(100);
    directory.ToBuffer(out);
    EXPECT_STREQ(out.pBuffer(), "-null-\na\n-null-\n");
}

TEST(FastStringDirectory, WithoutMemoryAddReturnsMinusOneOrThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        FastStringDirectory directory(2);
        fill(directory, {"a", "c"});
        EXPECT_FAILURE(test::failNth(1, [&] { directory.Add("b"); }), 1230, "ut_Array", reallocName, "");
        EXPECT_EQ(contentOf(directory), (Names{"a", "c"}));
        {
            test::FailingAllocation failing(2);
            EXPECT_EQ(directory.Add("b"), -1);
        }
        EXPECT_EQ(contentOf(directory), (Names{"a", "c"}));
        // By now the table of strings has grown and the table of slot numbers has not.
        EXPECT_FAILURE(test::failNth(2, [&] { directory.Add("b"); }), 1230, "ut_Array", reallocName, "");
        EXPECT_EQ(contentOf(directory), (Names{"a", "c"}));
        EXPECT_EQ(directory.Find("b"), -1);
        EXPECT_EQ(directory.Add("b"), 2);
        EXPECT_EQ(directory.Find("b"), 2);
        EXPECT_EQ(directory.Find("c"), 1);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(FastStringDirectory, AFreeSlotStaysFreeWithoutMemory) {
    const long before = framework::Memory::staticOutstanding();
    {
        FastStringDirectory directory(0);
        fill(directory, {"a", "b", "c"});
        directory.Delete("a");
        directory.Delete("b");
        {
            test::FailingAllocation failing(1);
            EXPECT_EQ(directory.Add("d"), -1);
        }
        EXPECT_EQ(contentOf(directory), (Names{freeSlot, freeSlot, "c"}));
        EXPECT_EQ(directory.Find("d"), -1);
        EXPECT_EQ(directory.Add("d"), 1);
        EXPECT_EQ(directory.Add("e"), 0);
        EXPECT_EQ(directory.Add("f"), 3);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(FastStringDirectory, ConstructionThrowsWithoutMemory) {
    const long before = framework::Memory::staticOutstanding();
    for (const unsigned long nth : {1ul, 2ul}) {
        EXPECT_FAILURE(test::failNth(nth, [&] { FastStringDirectory(5); }), 1230, "ut_Array", reallocName, "");
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(FastStringDirectory, AddAllocatesOnlyTheCopyAndSearchesAllocateNothing) {
    FastStringDirectory directory(100);
    const unsigned long before = test::allocationCount();
    EXPECT_EQ(directory.Add("b"), 0);
    EXPECT_EQ(directory.Add("a"), 1);
    EXPECT_EQ(test::allocationCount() - before, 2u);
    EXPECT_EQ(directory.Find("b"), 0);
    directory.Delete("b");
    EXPECT_EQ(test::allocationCount() - before, 2u);
}

// Reference implementation with a map of names to slots and a stack of free slots.
struct SlotModel {
    int add(const std::string& name) {
        int slot = static_cast<int>(slots.size());
        if (free.empty()) {
            slots.push_back(name);
        } else {
            slot = free.back();
            free.pop_back();
            slots[static_cast<std::size_t>(slot)] = name;
        }
        byName.emplace(name, slot);
        return slot;
    }
    void remove(const std::string& name) {
        const auto first = byName.lower_bound(name);
        if (first == byName.end() || first->first != name)
            return;
        slots[static_cast<std::size_t>(first->second)] = freeSlot;
        free.push_back(first->second);
        byName.erase(first);
    }
    bool holds(const std::string& name, int slot) const {
        if (slot < 0)
            return byName.count(name) == 0;
        return static_cast<std::size_t>(slot) < slots.size() && slots[static_cast<std::size_t>(slot)] == name;
    }

    Names slots;
    std::vector<int> free;
    std::multimap<std::string, int> byName;
};

TEST(FastStringDirectory, BehavesAsAMapOfSlotsUnderRandomOperations) {
    test::RandomRun random;
    const long before = framework::Memory::staticOutstanding();
    {
        FastStringDirectory directory(static_cast<int>(random.below(30)));
        SlotModel model;
        while (random.steps(100000)) {
            const std::string name = random.text(2, "ab\x7f\x80\xff");
            ASSERT_TRUE(model.holds(name, directory.Find(name.c_str())));
            if (random.below(100) < (model.byName.size() > 60 ? 40u : 60u)) {
                ASSERT_EQ(directory.Add(name.c_str()), model.add(name));
            } else {
                directory.Delete(name.c_str());
                model.remove(name);
            }
            ASSERT_EQ(contentOf(directory), model.slots);
        }
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

} // namespace
