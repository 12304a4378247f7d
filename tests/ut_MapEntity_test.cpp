#include "ut_MapEntity.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "FailingAllocation.h"
#include "LogCapture.h"
#include "PointerMapModel.h"
#include "RandomSeed.h"
#include "fw_FSUMemory.h"
#include "fw_Memory.h"

using test::absent;
using test::entriesOf;
using test::pointer;
using test::PointerEntries;
using utility::MapEntity;

namespace {

// A memory object that records its allocations and fails on request.
class WatchedMemory : public framework::Memory {
public:
    ~WatchedMemory() override {
        EXPECT_TRUE(held.empty());
    }
    void* allocate(unsigned long size) override {
        sizes.push_back(size);
        if (exhausted)
            return nullptr;
        void* piece = std::malloc(size);
        held[piece] = size;
        return piece;
    }
    void release(const void* piece) override {
        if (!piece)
            return;
        EXPECT_EQ(held.erase(piece), 1u);
        std::free(const_cast<void*>(piece));
    }

    std::vector<unsigned long> sizes;
    std::map<const void*, unsigned long> held;
    bool exhausted = false;
};

void expectStaysEmpty(MapEntity& map) {
    void* value = &map;
    EXPECT_FALSE(map.Add(pointer(16), pointer(1)));
    EXPECT_EQ(map.Lookup(pointer(16)), absent());
    EXPECT_FALSE(map.Delete(pointer(16)));
    EXPECT_EQ(map.First(value), absent());
    EXPECT_EQ(map.Next(pointer(16), value), absent());
    EXPECT_EQ(value, &map);
    map.DeleteAll();
    testing::internal::CaptureStdout();
    map.dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(map.count(), 0u);
}

TEST(MapEntity, UsageExample) {
    int volume = 0;
    int bytes = 1024;
    void* size = &bytes;

    framework::FSUMemory pool(4096, 4);
    utility::MapEntity sizes(64, &pool);
    sizes.Add(&volume, size);

    EXPECT_EQ(sizes.Lookup(&volume), size);
}

TEST(MapEntity, AllocatesTableAndEntriesFromTheGivenMemory) {
    WatchedMemory memory;
    const long outstanding = framework::Memory::staticOutstanding();
    {
        MapEntity map(128, &memory);
        EXPECT_EQ(memory.sizes, (std::vector<unsigned long>{128 * sizeof(void*)}));
        EXPECT_TRUE(map.Add(pointer(1), pointer(2)));
        EXPECT_TRUE(map.Add(pointer(129), pointer(3)));
        EXPECT_FALSE(map.Add(pointer(1), pointer(4)));
        // An entry is three pointers: the next entry, the key and the value.
        EXPECT_EQ(memory.sizes,
                  (std::vector<unsigned long>{128 * sizeof(void*), 3 * sizeof(void*), 3 * sizeof(void*)}));
        EXPECT_EQ(memory.held.size(), 3u);
        map.Delete(pointer(1));
        EXPECT_EQ(memory.held.size(), 2u);
        map.DeleteAll();
        EXPECT_EQ(memory.held.size(), 1u);
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
    }
    EXPECT_TRUE(memory.held.empty());
}

TEST(MapEntity, WithoutAMemoryObjectUsesTheProcessMemory) {
    const long outstanding = framework::Memory::staticOutstanding();
    const unsigned long before = test::allocationCount();
    {
        MapEntity map(16, nullptr);
        EXPECT_TRUE(map.Add(pointer(1), pointer(2)));
        EXPECT_EQ(map.Lookup(pointer(1)), pointer(2));
        EXPECT_EQ(test::allocationCount() - before, 2u);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

TEST(MapEntity, IsAnEntity) {
    WatchedMemory memory;
    std::unique_ptr<framework::Entity> entity = std::make_unique<MapEntity>(16, &memory);
    dynamic_cast<MapEntity&>(*entity).Add(pointer(1), nullptr);
    EXPECT_EQ(entity->getName(), 367u);
    EXPECT_EQ(entity->clone(), nullptr);
    EXPECT_FALSE(entity->inError());
    entity.reset();
    EXPECT_TRUE(memory.held.empty());
}

TEST(MapEntity, RejectsBucketCountsOtherThanPowersOfTwoFrom2To65536) {
    for (const unsigned int buckets : {0u, 1u, 3u, 1000u, 65535u, 65537u, 131072u, 0x80000000u, 0xFFFFFFFFu}) {
        WatchedMemory memory;
        const test::LogCapture log;
        MapEntity map(buckets, &memory);
        EXPECT_TRUE(log.contains(framework::Logger::LOG_ERROR,
                                 "utility::MapEntity::MapEntity(unsigned int, framework::Memory*)",
                                 "need to use num buckets at power of 2 instead of " + std::to_string(buckets) + "\n"));
        EXPECT_EQ(log.count(), 1u);
        EXPECT_TRUE(memory.sizes.empty());
        EXPECT_FALSE(map.inError());
        expectStaysEmpty(map);
    }
}

TEST(MapEntity, AcceptsEveryPowerOfTwoFrom2To65536) {
    const test::LogCapture log;
    for (unsigned int buckets = 2; buckets <= 65536; buckets *= 2) {
        MapEntity map(buckets, nullptr);
        EXPECT_TRUE(map.Add(pointer(buckets), pointer(1))) << buckets;
        EXPECT_TRUE(map.Add(pointer(buckets - 1), pointer(2))) << buckets;
        void* value = nullptr;
        EXPECT_EQ(map.First(value), pointer(buckets)) << buckets;
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST(MapEntity, TheKeysOfABucketAreAscending) {
    MapEntity map(4096, nullptr);
    map.Add(pointer(0x1000), pointer(1));
    map.Add(pointer(0x3000), pointer(3));
    map.Add(pointer(0x2000), pointer(2));
    EXPECT_EQ(
        entriesOf(map),
        (PointerEntries{{pointer(0x1000), pointer(1)}, {pointer(0x2000), pointer(2)}, {pointer(0x3000), pointer(3)}}));
}

TEST(MapEntity, DeleteOfAnAbsentKeyIsFalseOnlyIfItsBucketHasAGreaterOne) {
    MapEntity map(4, nullptr);
    EXPECT_TRUE(map.Delete(pointer(8)));
    map.Add(pointer(8), nullptr);
    map.Add(pointer(16), nullptr);
    EXPECT_FALSE(map.Delete(pointer(4)));
    EXPECT_FALSE(map.Delete(pointer(12)));
    EXPECT_TRUE(map.Delete(pointer(20)));
    EXPECT_EQ(map.count(), 2u);
    EXPECT_TRUE(map.Delete(pointer(16)));
    EXPECT_TRUE(map.Delete(pointer(8)));
    EXPECT_EQ(map.count(), 0u);
}

TEST(MapEntity, DeleteAllRemovesAllEntriesAndKeepsTheCount) {
    MapEntity map(4, nullptr);
    map.Add(pointer(8), nullptr);
    map.Add(nullptr, nullptr);
    map.DeleteAll();
    void* value = &map;
    EXPECT_EQ(map.First(value), absent());
    EXPECT_EQ(value, &map);
    EXPECT_EQ(map.count(), 2u);
}

TEST(MapEntity, DumpPrintsALineForEachBucketInUse) {
    MapEntity map(1024, nullptr);
    for (const std::uintptr_t key : {0x3ff, 0x7ff, 0x400})
        map.Add(pointer(key), nullptr);
    testing::internal::CaptureStdout();
    map.dump();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "0: 0x400 \n1023: 0x3ff 0x7ff \n");
}

TEST(MapEntity, PlacementTracePrintsWhereNewEntriesGo) {
    MapEntity map(16, nullptr);
    testing::internal::CaptureStdout();
    map.Add(pointer(0x25), nullptr);
    map.setPlacementTrace(true);
    map.Add(pointer(0x13), nullptr);
    map.Add(pointer(0x33), nullptr);
    map.Add(pointer(0x23), nullptr);
    map.Add(pointer(0x23), pointer(1));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "place: 0x13 @ 3\n"
                                                      "append: 0x33 @ 3\n"
                                                      "insert: 0x23 @ 3, before 0x33\n");
}

TEST(MapEntity, LookupDoesNotAllocate) {
    MapEntity map(256, nullptr);
    for (std::uintptr_t key = 0; key < 1000; ++key)
        map.Add(pointer(key), pointer(key));
    const test::FailingAllocation failing(test::failAll);
    for (std::uintptr_t key = 0; key < 1000; ++key)
        ASSERT_EQ(map.Lookup(pointer(key)), pointer(key));
    EXPECT_EQ(map.Lookup(pointer(1000)), absent());
    EXPECT_EQ(failing.failures(), 0u);
}

TEST(MapEntity, WithoutMemoryForAnEntryAddChangesNothing) {
    WatchedMemory memory;
    MapEntity map(2, &memory);
    for (const std::uintptr_t present : {0x20, 0x10}) {
        const PointerEntries before = entriesOf(map);
        memory.exhausted = true;
        for (const std::uintptr_t key : {0x8, 0x18, 0x28, 0x21})
            EXPECT_FALSE(map.Add(pointer(key), pointer(1)));
        memory.exhausted = false;
        EXPECT_EQ(entriesOf(map), before);
        EXPECT_EQ(map.count(), before.size());
        EXPECT_TRUE(map.Add(pointer(present), pointer(1)));
    }
}

TEST(MapEntity, WithoutMemoryForItsTableAMapStaysEmpty) {
    WatchedMemory memory;
    memory.exhausted = true;
    MapEntity map(64, &memory);
    memory.exhausted = false;
    expectStaysEmpty(map);

    test::FailingAllocation failing(1);
    MapEntity processMap(64, nullptr);
    failing.stop();
    EXPECT_EQ(failing.failures(), 1u);
    expectStaysEmpty(processMap);
}

TEST(MapEntity, BehavesAsAnOrderedMapUnderRandomOperations) {
    for (const unsigned int buckets : {2u, 16u, 128u}) {
        const unsigned int seed = test::randomSeed();
        SCOPED_TRACE(test::repeatWith(seed));
        WatchedMemory memory;
        MapEntity map(buckets, &memory);
        test::PointerMapModel<MapEntity>(seed, map, buckets).run(100000);
    }
}

} // namespace
