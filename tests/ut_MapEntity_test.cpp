#include "ut_MapEntity.h"

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "PointerMapSuite.h"
#include "fw_FSUMemory.h"
#include "fw_Memory.h"

using test::pointer;
using utility::MapEntity;

namespace {

class TestedMapEntity : public MapEntity {
public:
    explicit TestedMapEntity(unsigned int buckets, framework::Memory* memory = nullptr) : MapEntity(buckets, memory) {}
};

struct MapEntityTraits : test::PointerKeyTraits {
    typedef TestedMapEntity Map;
    static constexpr const char* constructorName = "utility::MapEntity::MapEntity(unsigned int, framework::Memory*)";
};

typedef test::HashMapTest<MapEntityTraits> Tests;

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
        if (piece == nullptr)
            return;
        EXPECT_EQ(held.erase(piece), 1u);
        std::free(const_cast<void*>(piece));
    }

    std::vector<unsigned long> sizes;
    std::map<const void*, unsigned long> held;
    bool exhausted = false;
};

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

TEST(MapEntity, DumpPrintsALineForEachBucketInUse) {
    MapEntity map(1024, nullptr);
    for (const std::uintptr_t key : {0x3ff, 0x7ff, 0x400})
        map.Add(pointer(key), nullptr);
    EXPECT_EQ(test::dumpOf(map), "0: 0x400 \n1023: 0x3ff 0x7ff \n");
}

TEST(MapEntity, RejectedBucketCountsAllocateNothing) {
    for (const unsigned int buckets : {0u, 1u, 3u, 65535u, 65537u, 131072u, 0xFFFFFFFFu}) {
        WatchedMemory memory;
        const test::LogCapture log;
        TestedMapEntity map(buckets, &memory);
        EXPECT_EQ(log.count(), 1u);
        EXPECT_FALSE(map.inError());
        Tests::expectStaysEmpty(map);
        EXPECT_TRUE(memory.sizes.empty());
    }
}

TEST(MapEntity, IfTheGivenMemoryIsExhaustedAddChangesNothing) {
    WatchedMemory memory;
    TestedMapEntity map(2, &memory);
    for (const std::uintptr_t present : {0x20, 0x10}) {
        const Tests::Entries before = Tests::entriesOf(map);
        memory.exhausted = true;
        for (const std::uintptr_t key : {0x8, 0x18, 0x28, 0x21})
            EXPECT_FALSE(map.Add(pointer(key), pointer(1)));
        memory.exhausted = false;
        EXPECT_EQ(Tests::entriesOf(map), before);
        EXPECT_EQ(map.count(), before.size());
        EXPECT_TRUE(map.Add(pointer(present), pointer(1)));
    }
}

TEST(MapEntity, IfTheGivenMemoryHasNoSpaceForTheTableTheMapStaysEmpty) {
    WatchedMemory memory;
    memory.exhausted = true;
    TestedMapEntity map(64, &memory);
    memory.exhausted = false;
    Tests::expectStaysEmpty(map);
}

TEST(MapEntity, BehavesAsAnOrderedMapInTheGivenMemory) {
    const unsigned int seed = test::randomSeed();
    SCOPED_TRACE(test::repeatWith(seed));
    WatchedMemory memory;
    TestedMapEntity map(16, &memory);
    Tests::Model(seed, map, 16).run(100000);
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(MapEntity, HashMapTest, MapEntityTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(MapEntity, PointerMapTest, MapEntityTraits);
} // namespace test
