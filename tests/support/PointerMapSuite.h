#pragma once

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "HashMapSuite.h"

namespace test {

/// The traits that maps with pointers as keys have in common.
struct PointerKeyTraits {
    typedef void* Key;
    typedef std::uintptr_t ModelKey;

    static constexpr unsigned int piecesPerEntry = 1;
    static constexpr bool deletesOnlyTheFirst = false;

    static Key argument(ModelKey key) {
        return pointer(key);
    }
    static ModelKey modelKey(Key key) {
        return reinterpret_cast<std::uintptr_t>(key);
    }
    static Key end() {
        return absent();
    }
    static ModelKey key(unsigned int number) {
        return number;
    }
    static std::uintptr_t hash(ModelKey key) {
        return key;
    }
    static ModelKey randomKey(std::mt19937& random) {
        return random() % 4 == 0 ? ~std::uintptr_t{1} - random() % 200 : random() % 400;
    }
    static std::string printed(ModelKey key) {
        char text[32];
        std::snprintf(text, sizeof text, "%p", pointer(key));
        return text;
    }
    static std::string printedCount(unsigned int buckets) {
        return std::to_string(buckets);
    }
};

/// The tests that only maps with pointers as keys pass. `Traits` are those of `HashMapTest`, derived from
/// `PointerKeyTraits`.
template<typename Traits>
class PointerMapTest : public HashMapTest<Traits> {};

TYPED_TEST_SUITE_P(PointerMapTest);

TYPED_TEST_P(PointerMapTest, KeysAreComparedAsUnsigned) {
    typename TypeParam::Map map(16);
    const std::uintptr_t high = ~std::uintptr_t{0} << 4;
    map.Add(pointer(high), pointer(2));
    map.Add(pointer(0x10), pointer(1));
    EXPECT_EQ(this->entriesOf(map), (typename TestFixture::Entries{{0x10, pointer(1)}, {high, pointer(2)}}));
}

TYPED_TEST_P(PointerMapTest, AMapWithoutATableIgnoresTheHighestKey) {
    const LogCapture log;
    typename TypeParam::Map map(3);
    EXPECT_FALSE(map.Add(pointer(~std::uintptr_t{0}), pointer(1)));
    EXPECT_FALSE(map.Delete(pointer(~std::uintptr_t{0})));
    EXPECT_EQ(map.Lookup(pointer(~std::uintptr_t{0})), absent());
}

TYPED_TEST_P(PointerMapTest, DeleteOfAPresentKeyRemovesItWhereverItIs) {
    typename TypeParam::Map map(4);
    for (const std::uintptr_t key : {4, 8, 12})
        map.Add(pointer(key), pointer(key));
    EXPECT_TRUE(map.Delete(pointer(8)));
    EXPECT_EQ(map.count(), 2u);
    EXPECT_EQ(this->entriesOf(map), (typename TestFixture::Entries{{4, pointer(4)}, {12, pointer(12)}}));
    EXPECT_TRUE(map.Delete(pointer(12)));
    EXPECT_TRUE(map.Delete(pointer(4)));
    EXPECT_EQ(map.count(), 0u);
    EXPECT_TRUE(this->entriesOf(map).empty());
}

TYPED_TEST_P(PointerMapTest, DeleteOfAnAbsentKeyIsFalseOnlyIfItsBucketHasAGreaterOne) {
    typename TypeParam::Map map(4);
    map.Add(pointer(8), nullptr);
    map.Add(pointer(16), nullptr);
    EXPECT_FALSE(map.Delete(pointer(4)));
    EXPECT_FALSE(map.Delete(pointer(12)));
    EXPECT_TRUE(map.Delete(pointer(20)));
    EXPECT_EQ(map.count(), 2u);
    EXPECT_EQ(this->entriesOf(map).size(), 2u);
}

REGISTER_TYPED_TEST_SUITE_P(PointerMapTest, KeysAreComparedAsUnsigned, AMapWithoutATableIgnoresTheHighestKey,
                            DeleteOfAPresentKeyRemovesItWhereverItIs,
                            DeleteOfAnAbsentKeyIsFalseOnlyIfItsBucketHasAGreaterOne);

} // namespace test
