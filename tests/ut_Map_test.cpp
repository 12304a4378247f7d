#include "ut_Map.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "PointerMapSuite.h"
#include "fw_StringRepository.h"

using test::pointer;
using utility::Map;

namespace {

struct MapTraits : test::PointerKeyTraits {
    typedef utility::Map Map;
    static constexpr const char* constructorName = "utility::Map::Map(unsigned int)";
};

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

TEST(Map, With1024BucketsUsesTheLowTenBitsOfTheKey) {
    Map map(1024);
    for (const std::uintptr_t key : {1024, 1023, 2047, 512})
        map.Add(pointer(key), nullptr);
    EXPECT_EQ(test::dumpOf(map), "bucket 0: 0x400[(null)] \n"
                                 "bucket 512: 0x200[(null)] \n"
                                 "bucket 1023: 0x3ff[(null)] 0x7ff[(null)] \n");
}

TEST(Map, DumpShowsTheTextOfKeysThatAreStringTokens) {
    Map map(1024);
    void* token = pointer(630);
    void* other = pointer(630 + 1024 * 4096);
    ASSERT_STREQ(strings::StringRepository::toString(630), "URL");
    map.Add(other, nullptr);
    map.Add(token, nullptr);
    map.Add(nullptr, nullptr);
    EXPECT_EQ(test::dumpOf(map), "bucket 0: " + MapTraits::printed(0) + "[(null)] \n" +
                                     "bucket 630: " + MapTraits::printed(630) + "[URL] " +
                                     MapTraits::printed(630 + 1024 * 4096) + "[(null)] \n");
}

#if UINTPTR_MAX > UINT32_MAX
TEST(Map, DumpDoesNotTreatAKeyBeyond32BitsAsAToken) {
    Map map(2);
    void* key = pointer((std::uintptr_t{1} << 32) + 630);
    map.Add(key, nullptr);
    EXPECT_EQ(test::dumpOf(map),
              "bucket 0: " + MapTraits::printed(reinterpret_cast<std::uintptr_t>(key)) + "[(null)] \n");
}
#endif

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(Map, HashMapTest, MapTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(Map, PointerMapTest, MapTraits);
} // namespace test
