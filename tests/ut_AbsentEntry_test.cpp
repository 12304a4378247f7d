#include "ut_AbsentEntry.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "ut_Map.h"
#include "ut_MapEntity.h"
#include "ut_StringMap.h"

namespace {

using utility::absentEntry;

TEST(AbsentEntry, UsageExample) {
    int port = 0;
    int added = 0;
    const auto addName = [&added](int&) {
        ++added;
    };
    utility::Map names(64);
    if (names.Lookup(&port) == utility::absentEntry())
        addName(port);
    EXPECT_EQ(added, 1);
}

TEST(AbsentEntry, IsMinusOneAsAPointer) {
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(absentEntry()), ~std::uintptr_t{0});
}

template<typename MapType>
void expectAbsentEntryAtTheEnd(MapType& map) {
    int key = 0;
    int value = 0;
    void* found = &value;
    EXPECT_EQ(map.Lookup(&key), absentEntry());
    EXPECT_EQ(map.First(found), absentEntry());
    EXPECT_EQ(map.Next(&key, found), absentEntry());
    map.Add(&key, nullptr);
    EXPECT_EQ(map.Lookup(&key), nullptr);
    EXPECT_EQ(map.Next(&key, found), absentEntry());
    EXPECT_EQ(found, &value);
}

TEST(AbsentEntry, IsReturnedByMap) {
    utility::Map map(64);
    expectAbsentEntryAtTheEnd(map);
}

TEST(AbsentEntry, IsReturnedByMapEntity) {
    utility::MapEntity map(64, nullptr);
    expectAbsentEntryAtTheEnd(map);
}

TEST(AbsentEntry, IsReturnedByStringMapOnlyFromLookup) {
    utility::StringMap map(64);
    void* found = nullptr;
    EXPECT_EQ(map.Lookup("CL1-A"), absentEntry());
    EXPECT_EQ(map.First(found), nullptr);
    EXPECT_EQ(map.Next("CL1-A", found), nullptr);
}

} // namespace
