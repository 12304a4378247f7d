#include "ut_Map.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "FailingAllocation.h"
#include "LogCapture.h"
#include "PointerMapModel.h"
#include "RandomSeed.h"
#include "fw_Memory.h"
#include "fw_StringRepository.h"

using test::absent;
using test::entriesOf;
using test::pointer;
using test::PointerEntries;
using utility::Map;

namespace {

std::string text(void* key) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%p", key);
    return buffer;
}

void expectStaysEmpty(Map& map) {
    void* value = &map;
    EXPECT_FALSE(map.Add(pointer(16), pointer(1)));
    EXPECT_EQ(map.Lookup(pointer(16)), absent());
    EXPECT_FALSE(map.Delete(pointer(16)));
    EXPECT_EQ(map.First(value), absent());
    EXPECT_EQ(map.Next(pointer(16), value), absent());
    EXPECT_EQ(value, &map);
    map.DeleteAll();
    map.setPlacementTrace(true);
    EXPECT_FALSE(map.Add(pointer(~std::uintptr_t{0}), pointer(1)));
    testing::internal::CaptureStdout();
    map.dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(map.count(), 0u);
}

TEST(Map, UsageExample) {
    int port = 0;
    char name[] = "CL1-A";
    int added = 0;
    const auto addName = [&added](int&) {
        ++added;
    };

    utility::Map names(64);
    names.Add(&port, name);
    if (names.Lookup(&port) == utility::absentEntry())
        addName(port);

    EXPECT_EQ(added, 0);
    EXPECT_EQ(names.Lookup(&port), name);
}

TEST(Map, AcceptsPowersOfTwoFrom2To65536AsBucketCount) {
    const test::LogCapture log;
    for (unsigned int buckets = 2; buckets <= 65536; buckets *= 2) {
        Map map(buckets);
        // The bucket is the key modulo the bucket count: 0 for the count itself, the last bucket for one less.
        EXPECT_TRUE(map.Add(pointer(buckets - 1), pointer(1))) << buckets;
        EXPECT_TRUE(map.Add(pointer(buckets), pointer(2))) << buckets;
        EXPECT_EQ(entriesOf(map), (PointerEntries{{pointer(buckets), pointer(2)}, {pointer(buckets - 1), pointer(1)}}));
        EXPECT_EQ(map.Lookup(pointer(buckets)), pointer(2)) << buckets;
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST(Map, RejectsEveryOtherBucketCount) {
    for (const unsigned int buckets :
         {0u, 1u, 3u, 6u, 1000u, 65535u, 65537u, 131072u, 0x40000000u, 0x80000000u, 0xFFFFFFFFu}) {
        const long outstanding = framework::Memory::staticOutstanding();
        const test::LogCapture log;
        Map map(buckets);
        EXPECT_TRUE(log.contains(framework::Logger::LOG_ERROR, "utility::Map::Map(unsigned int)",
                                 "need to use num buckets at power of 2 instead of " + std::to_string(buckets) + "\n"));
        EXPECT_EQ(log.count(), 1u);
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
        expectStaysEmpty(map);
    }
}

TEST(Map, With1024BucketsUsesTheLowTenBitsOfTheKey) {
    Map map(1024);
    for (const std::uintptr_t key : {1024, 1023, 2047, 512})
        map.Add(pointer(key), nullptr);
    testing::internal::CaptureStdout();
    map.dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "bucket 0: 0x400[(null)] \n"
                                                      "bucket 512: 0x200[(null)] \n"
                                                      "bucket 1023: 0x3ff[(null)] 0x7ff[(null)] \n");
}

TEST(Map, TheKeysOfABucketAreAscending) {
    for (const unsigned int buckets : {2u, 1024u, 4096u}) {
        Map map(buckets);
        EXPECT_TRUE(map.Add(pointer(0x1000), pointer(1)));
        EXPECT_TRUE(map.Add(pointer(0x3000), pointer(3)));
        EXPECT_TRUE(map.Add(pointer(0x2000), pointer(2)));
        EXPECT_EQ(entriesOf(map),
                  (PointerEntries{
                      {pointer(0x1000), pointer(1)}, {pointer(0x2000), pointer(2)}, {pointer(0x3000), pointer(3)}}));
        EXPECT_EQ(map.count(), 3u);
    }
}

TEST(Map, KeysAreComparedAsUnsigned) {
    Map map(16);
    const std::uintptr_t high = ~std::uintptr_t{0} << 4;
    map.Add(pointer(high), pointer(2));
    map.Add(pointer(0x10), pointer(1));
    EXPECT_EQ(entriesOf(map), (PointerEntries{{pointer(0x10), pointer(1)}, {pointer(high), pointer(2)}}));
}

TEST(Map, AddOfAPresentKeyReplacesItsValueAndReturnsFalse) {
    Map map(64);
    EXPECT_TRUE(map.Add(pointer(8), pointer(1)));
    EXPECT_FALSE(map.Add(pointer(8), pointer(2)));
    EXPECT_EQ(map.Lookup(pointer(8)), pointer(2));
    EXPECT_EQ(map.count(), 1u);
}

TEST(Map, LookupOfAnAbsentKeyReturnsMinusOneAndNotNull) {
    Map map(4);
    EXPECT_EQ(map.Lookup(pointer(4)), absent());
    map.Add(pointer(8), nullptr);
    EXPECT_EQ(map.Lookup(pointer(4)), absent());  // less than all keys of its bucket
    EXPECT_EQ(map.Lookup(pointer(12)), absent()); // greater than all keys of its bucket
    EXPECT_EQ(map.Lookup(pointer(8)), nullptr);
}

TEST(Map, NullIsAKeyLikeAnyOther) {
    Map map(4);
    EXPECT_EQ(map.Lookup(nullptr), absent());
    EXPECT_TRUE(map.Add(nullptr, pointer(1)));
    EXPECT_TRUE(map.Add(pointer(4), pointer(2)));
    EXPECT_EQ(map.Lookup(nullptr), pointer(1));
    EXPECT_EQ(entriesOf(map), (PointerEntries{{nullptr, pointer(1)}, {pointer(4), pointer(2)}}));
    EXPECT_TRUE(map.Delete(nullptr));
    EXPECT_EQ(map.Lookup(nullptr), absent());
}

TEST(Map, DeleteOfAPresentKeyRemovesItAndReturnsTrue) {
    Map map(4);
    for (const std::uintptr_t key : {4, 8, 12})
        map.Add(pointer(key), pointer(key));
    EXPECT_TRUE(map.Delete(pointer(8)));
    EXPECT_EQ(map.count(), 2u);
    EXPECT_EQ(entriesOf(map), (PointerEntries{{pointer(4), pointer(4)}, {pointer(12), pointer(12)}}));
    EXPECT_TRUE(map.Delete(pointer(12)));
    EXPECT_TRUE(map.Delete(pointer(4)));
    EXPECT_EQ(map.count(), 0u);
    EXPECT_TRUE(entriesOf(map).empty());
}

TEST(Map, DeleteOfAnAbsentKeyIsFalseOnlyIfItsBucketHasAGreaterOne) {
    Map map(4);
    EXPECT_TRUE(map.Delete(pointer(8))); // the bucket is empty
    map.Add(pointer(8), nullptr);
    map.Add(pointer(16), nullptr);
    EXPECT_FALSE(map.Delete(pointer(4)));
    EXPECT_FALSE(map.Delete(pointer(12)));
    EXPECT_TRUE(map.Delete(pointer(20)));
    EXPECT_EQ(map.count(), 2u);
    EXPECT_EQ(entriesOf(map).size(), 2u);
}

TEST(Map, FirstAndNextIterateInBucketOrder) {
    Map map(4);
    void* value = &map;
    EXPECT_EQ(map.First(value), absent());
    EXPECT_EQ(value, &map);
    for (const std::uintptr_t key : {3, 9, 5, 1})
        map.Add(pointer(key), pointer(key * 100));
    EXPECT_EQ(map.First(value), pointer(1));
    EXPECT_EQ(value, pointer(100));
    EXPECT_EQ(map.Next(pointer(1), value), pointer(5));
    EXPECT_EQ(value, pointer(500));
    EXPECT_EQ(map.Next(pointer(5), value), pointer(9));
    EXPECT_EQ(map.Next(pointer(9), value), pointer(3));
    EXPECT_EQ(value, pointer(300));
    value = &map;
    EXPECT_EQ(map.Next(pointer(3), value), absent()); // the last
    EXPECT_EQ(map.Next(pointer(2), value), absent()); // its bucket is empty
    EXPECT_EQ(map.Next(pointer(7), value), absent()); // greater than all keys of its bucket
    EXPECT_EQ(map.Next(nullptr, value), absent());
    EXPECT_EQ(value, &map);
}

TEST(Map, DeleteAllRemovesAllEntriesAndKeepsTheCount) {
    const long outstanding = framework::Memory::staticOutstanding();
    {
        Map map(64);
        map.DeleteAll();
        for (std::uintptr_t key = 0; key < 100; ++key)
            map.Add(pointer(key), nullptr);
        map.DeleteAll();
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 1); // the table
        void* value = nullptr;
        EXPECT_EQ(map.First(value), absent());
        EXPECT_EQ(map.count(), 100u);
        EXPECT_TRUE(map.Add(pointer(7), nullptr));
        EXPECT_EQ(map.count(), 101u);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

TEST(Map, DumpShowsTheTextOfKeysThatAreStringTokens) {
    Map map(1024);
    void* token = pointer(630);
    void* other = pointer(630 + 1024 * 4096);
    ASSERT_STREQ(strings::StringRepository::toString(630), "URL");
    map.Add(other, nullptr);
    map.Add(token, nullptr);
    map.Add(nullptr, nullptr);
    testing::internal::CaptureStdout();
    map.dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "bucket 0: " + text(nullptr) + "[(null)] \n" + "bucket 630: " +
                                                          text(token) + "[URL] " + text(other) + "[(null)] \n");
}

#if UINTPTR_MAX > UINT32_MAX
TEST(Map, DumpDoesNotTreatAKeyBeyond32BitsAsAToken) {
    Map map(2);
    void* key = pointer((std::uintptr_t{1} << 32) + 630);
    map.Add(key, nullptr);
    testing::internal::CaptureStdout();
    map.dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "bucket 0: " + text(key) + "[(null)] \n");
}
#endif

TEST(Map, DumpOfAnEmptyMapPrintsNothing) {
    Map map(16);
    testing::internal::CaptureStdout();
    map.dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Map, PlacementTracePrintsWhereNewEntriesGo) {
    Map map(16);
    testing::internal::CaptureStdout();
    map.Add(pointer(0x25), nullptr); // not traced yet
    map.setPlacementTrace(true);
    map.Add(pointer(0x13), nullptr);
    map.Add(pointer(0x33), nullptr);
    map.Add(pointer(0x23), nullptr);
    map.Add(pointer(0x03), nullptr);
    map.Add(pointer(0x23), pointer(1)); // present
    map.setPlacementTrace(false);
    map.Add(pointer(0x14), nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "place: 0x13 @ 3\n"
                                                      "append: 0x33 @ 3\n"
                                                      "insert: 0x23 @ 3, before 0x33\n"
                                                      "insert: 0x3 @ 3, before 0x13\n");
}

TEST(Map, AddAllocatesOnceAndLookupNever) {
    Map map(256);
    const unsigned long before = test::allocationCount();
    for (std::uintptr_t key = 0; key < 1000; ++key)
        map.Add(pointer(key), pointer(key));
    EXPECT_EQ(test::allocationCount() - before, 1000u);

    const test::FailingAllocation failing(test::failAll);
    for (std::uintptr_t key = 0; key < 1000; ++key)
        ASSERT_EQ(map.Lookup(pointer(key)), pointer(key));
    EXPECT_EQ(map.Lookup(pointer(1000)), absent());
    EXPECT_FALSE(map.Add(pointer(1), pointer(2)));
    EXPECT_EQ(map.Lookup(pointer(1)), pointer(2));
    void* value = nullptr;
    EXPECT_EQ(map.First(value), pointer(0));
    EXPECT_EQ(map.Next(pointer(0), value), pointer(256));
    EXPECT_TRUE(map.Delete(pointer(0)));
    map.DeleteAll();
    EXPECT_EQ(failing.failures(), 0u);
}

TEST(Map, WithoutMemoryForAnEntryAddChangesNothing) {
    Map map(2);
    map.setPlacementTrace(true);
    testing::internal::CaptureStdout();
    for (const std::uintptr_t present : {0x20, 0x10}) {
        const PointerEntries before = entriesOf(map);
        for (const std::uintptr_t key : {0x8, 0x18, 0x28, 0x21}) {
            test::FailingAllocation failing(1);
            EXPECT_FALSE(map.Add(pointer(key), pointer(1)));
            failing.stop();
            EXPECT_EQ(failing.failures(), 1u);
        }
        EXPECT_EQ(entriesOf(map), before);
        EXPECT_EQ(map.count(), before.size());
        EXPECT_TRUE(map.Add(pointer(present), pointer(1)));
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "place: 0x20 @ 0\ninsert: 0x10 @ 0, before 0x20\n");
}

TEST(Map, WithoutMemoryForItsTableAMapStaysEmpty) {
    const long outstanding = framework::Memory::staticOutstanding();
    {
        test::FailingAllocation failing(1);
        Map map(64);
        EXPECT_EQ(failing.failures(), 1u);
        failing.stop();
        expectStaysEmpty(map);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

TEST(Map, BehavesAsAnOrderedMapUnderRandomOperations) {
    for (const unsigned int buckets : {2u, 16u, 128u, 65536u}) {
        const unsigned int seed = test::randomSeed();
        SCOPED_TRACE(test::repeatWith(seed));
        Map map(buckets);
        test::PointerMapModel<Map>(seed, map, buckets).run(buckets == 65536 ? 2000 : 100000);
    }
}

} // namespace
