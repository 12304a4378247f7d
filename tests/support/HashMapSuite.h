#pragma once

#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "FailingAllocation.h"
#include "LogCapture.h"
#include "RandomSeed.h"
#include "fw_Memory.h"

namespace test {

/// Returns a pointer with this numeric value, for use as a key or value.
inline void* pointer(std::uintptr_t number) {
    return reinterpret_cast<void*>(number);
}

/// Returns the value that a map returns for an absent key.
inline void* absent() {
    return reinterpret_cast<void*>(std::intptr_t{-1});
}

/// Returns the output of `map.dump`.
template<typename MapType>
std::string dumpOf(MapType& map) {
    testing::internal::CaptureStdout();
    map.dump();
    return testing::internal::GetCapturedStdout();
}

/// The tests of a hash map. Further tests may use its helpers and `Model`. `Traits` describes the map to test:
/// - `Map`: a class with a constructor that takes the bucket count
/// - `constructorName`: the signature text of the constructor in the log
/// - `printedCount(buckets)`: the text of a bucket count in the constructor's log line
/// - `Key`: the parameter type of its operations
/// - `end()`: the result of `First` and `Next` at the end
/// - `ModelKey`: a key that owns its content and is ordered as the keys of a bucket are
/// - `argument(key)` and `modelKey(key)`: convert between `ModelKey` and `Key`
/// - `key(number)`: a key with the hash `number`, ordered by `number`; does not allocate for numbers below 1,000
/// - `hash(key)`, `randomKey(random)`, and `printed(key)`, its text in the placement trace
/// - `piecesPerEntry`: the number of blocks of memory for one entry
/// - `deletesOnlyTheFirst`: whether `Delete` examines only the first key of a bucket
///
///     namespace test {
///     INSTANTIATE_TYPED_TEST_SUITE_P(Map, HashMapTest, MapTraits);
///     }
template<typename Traits>
class HashMapTest : public testing::Test {
public:
    typedef typename Traits::Map Map;
    typedef typename Traits::ModelKey ModelKey;
    typedef std::vector<std::pair<ModelKey, void*>> Entries;

    static bool add(Map& map, const ModelKey& key, void* value) {
        return map.Add(Traits::argument(key), value);
    }
    static bool remove(Map& map, const ModelKey& key) {
        return map.Delete(Traits::argument(key));
    }
    static void* lookup(Map& map, const ModelKey& key) {
        return map.Lookup(Traits::argument(key));
    }

    /// All entries in the order of `First` and `Next`.
    static Entries entriesOf(Map& map) {
        Entries entries;
        void* value = nullptr;
        for (typename Traits::Key key = map.First(value); key != Traits::end(); key = map.Next(key, value))
            entries.emplace_back(Traits::modelKey(key), value);
        return entries;
    }

    /// Expects that `key` is the last key of `map` or absent.
    static void expectNothingAfter(Map& map, const ModelKey& key) {
        void* value = &map;
        EXPECT_EQ(map.Next(Traits::argument(key), value), Traits::end());
        EXPECT_EQ(value, &map);
    }

    static void expectStaysEmpty(Map& map) {
        const ModelKey key = Traits::key(16);
        void* value = &map;
        EXPECT_FALSE(add(map, key, pointer(1)));
        EXPECT_EQ(lookup(map, key), absent());
        EXPECT_FALSE(remove(map, key));
        EXPECT_EQ(map.First(value), Traits::end());
        EXPECT_EQ(value, &map);
        expectNothingAfter(map, key);
        map.DeleteAll();
        map.setPlacementTrace(true);
        testing::internal::CaptureStdout();
        EXPECT_FALSE(add(map, Traits::key(65535), pointer(1)));
        map.dump();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(map.count(), 0u);
    }

    /// Applies the same random operations to a map and a `std::map`, and expects equal results. Callers rely on two
    /// special ones: what `Delete` of an absent key returns, and that deleting all entries does not change the count.
    class Model {
    public:
        Model(unsigned int seed, Map& map, unsigned int buckets) : m_random(seed), m_map(map), m_mask(buckets - 1) {}

        void run(int steps) {
            for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
                SCOPED_TRACE(step);
                takeStep(Traits::randomKey(m_random));
                EXPECT_EQ(m_map.count(), m_count);
                if (step % 64 == 0) {
                    EXPECT_EQ(entriesOf(m_map), modelEntries());
                }
            }
        }

    private:
        // The order in which a map iterates over its keys: by bucket, then by key.
        typedef std::pair<std::uintptr_t, ModelKey> Place;

        void takeStep(const ModelKey& key) {
            const Place place(Traits::hash(key) & m_mask, key);
            switch (m_random() % 10) {
            case 0:
            case 1:
            case 2:
            case 3:
                return add(place);
            case 4:
            case 5:
            case 6:
                return remove(place);
            case 7:
                return next(place);
            case 8:
                return m_random() % 200 == 0 ? clear() : next(Place(0, Traits::key(0)));
            default: {
                const auto found = m_model.find(place);
                EXPECT_EQ(lookup(m_map, key), found == m_model.end() ? absent() : found->second);
                return;
            }
            }
        }

        void add(const Place& place) {
            void* value = pointer(m_random());
            const bool isNew = m_model.count(place) == 0;
            EXPECT_EQ(HashMapTest::add(m_map, place.second, value), isNew);
            m_model[place] = value;
            m_count += isNew ? 1 : 0;
        }

        void remove(const Place& place) {
            const auto after = m_model.upper_bound(place);
            const auto atLeast = m_model.lower_bound(place);
            const bool greaterInBucket = after != m_model.end() && after->first.first == place.first;
            const bool smallerInBucket = atLeast != m_model.begin() && std::prev(atLeast)->first.first == place.first;
            const bool present = m_model.count(place) > 0;
            const bool expected = Traits::deletesOnlyTheFirst ? !smallerInBucket : present || !greaterInBucket;
            EXPECT_EQ(HashMapTest::remove(m_map, place.second), expected);
            if (expected)
                m_count -= static_cast<unsigned int>(m_model.erase(place));
        }

        void next(const Place& place) {
            const auto after = m_model.count(place) > 0 ? m_model.upper_bound(place) : m_model.end();
            if (after == m_model.end())
                return expectNothingAfter(m_map, place.second);
            void* value = this;
            const typename Traits::Key key = m_map.Next(Traits::argument(place.second), value);
            ASSERT_NE(key, Traits::end());
            EXPECT_EQ(Traits::modelKey(key), after->first.second);
            EXPECT_EQ(value, after->second);
        }

        void clear() {
            m_map.DeleteAll();
            m_model.clear();
            void* value = this;
            EXPECT_EQ(m_map.First(value), Traits::end());
            EXPECT_EQ(value, this);
        }

        Entries modelEntries() const {
            Entries entries;
            for (const auto& entry : m_model)
                entries.emplace_back(entry.first.second, entry.second);
            return entries;
        }

        std::mt19937 m_random;
        Map& m_map;
        std::uintptr_t m_mask;
        std::map<Place, void*> m_model;
        unsigned int m_count = 0;
    };
};

TYPED_TEST_SUITE_P(HashMapTest);

TYPED_TEST_P(HashMapTest, AcceptsPowersOfTwoFrom2To65536AsBucketCount) {
    const LogCapture log;
    for (unsigned int buckets = 2; buckets <= 65536; buckets *= 2) {
        typename TypeParam::Map map(buckets);
        // The bucket is the hash modulo the bucket count: 0 for the count itself, the last bucket for one less.
        const auto last = TypeParam::key(buckets - 1);
        const auto first = TypeParam::key(buckets);
        EXPECT_TRUE(this->add(map, last, pointer(1))) << buckets;
        EXPECT_TRUE(this->add(map, first, pointer(2))) << buckets;
        EXPECT_EQ(this->entriesOf(map), (typename TestFixture::Entries{{first, pointer(2)}, {last, pointer(1)}}));
        EXPECT_EQ(this->lookup(map, last), pointer(1)) << buckets;
        EXPECT_EQ(this->lookup(map, first), pointer(2)) << buckets;
    }
    EXPECT_EQ(log.count(), 0u);
}

TYPED_TEST_P(HashMapTest, RejectsEveryOtherBucketCount) {
    for (const unsigned int buckets :
         {0u, 1u, 3u, 6u, 1000u, 65535u, 65537u, 131072u, 0x40000000u, 0x80000000u, 0xFFFFFFFFu}) {
        const long outstanding = framework::Memory::staticOutstanding();
        const LogCapture log;
        typename TypeParam::Map map(buckets);
        EXPECT_TRUE(log.contains(framework::Logger::LOG_ERROR, TypeParam::constructorName,
                                 "need to use num buckets at power of 2 instead of " +
                                     TypeParam::printedCount(buckets) + "\n"));
        EXPECT_EQ(log.count(), 1u);
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
        this->expectStaysEmpty(map);
    }
}

TYPED_TEST_P(HashMapTest, TheKeysOfABucketAreAscending) {
    for (const unsigned int buckets : {2u, 1024u, 4096u}) {
        typename TypeParam::Map map(buckets);
        for (const unsigned int number : {0x1000u, 0x3000u, 0x2000u})
            EXPECT_TRUE(this->add(map, TypeParam::key(number), pointer(number)));
        EXPECT_EQ(this->entriesOf(map), (typename TestFixture::Entries{{TypeParam::key(0x1000), pointer(0x1000)},
                                                                       {TypeParam::key(0x2000), pointer(0x2000)},
                                                                       {TypeParam::key(0x3000), pointer(0x3000)}}));
        EXPECT_EQ(map.count(), 3u);
    }
}

TYPED_TEST_P(HashMapTest, AddOfAPresentKeyReplacesItsValueAndReturnsFalse) {
    typename TypeParam::Map map(64);
    EXPECT_TRUE(this->add(map, TypeParam::key(8), pointer(1)));
    EXPECT_FALSE(this->add(map, TypeParam::key(8), pointer(2)));
    EXPECT_EQ(this->lookup(map, TypeParam::key(8)), pointer(2));
    EXPECT_EQ(map.count(), 1u);
}

TYPED_TEST_P(HashMapTest, LookupOfAnAbsentKeyReturnsMinusOneAndNotNull) {
    typename TypeParam::Map map(4);
    EXPECT_EQ(this->lookup(map, TypeParam::key(4)), absent());
    this->add(map, TypeParam::key(8), nullptr);
    EXPECT_EQ(this->lookup(map, TypeParam::key(4)), absent());  // less than all keys of its bucket
    EXPECT_EQ(this->lookup(map, TypeParam::key(12)), absent()); // greater than all keys of its bucket
    EXPECT_EQ(this->lookup(map, TypeParam::key(8)), nullptr);
}

// The null pointer, or the empty text.
TYPED_TEST_P(HashMapTest, KeyZeroIsAKeyLikeAnyOther) {
    typename TypeParam::Map map(4);
    EXPECT_EQ(this->lookup(map, TypeParam::key(0)), absent());
    EXPECT_TRUE(this->add(map, TypeParam::key(4), pointer(2)));
    EXPECT_TRUE(this->add(map, TypeParam::key(0), pointer(1)));
    EXPECT_EQ(this->lookup(map, TypeParam::key(0)), pointer(1));
    EXPECT_EQ(this->entriesOf(map),
              (typename TestFixture::Entries{{TypeParam::key(0), pointer(1)}, {TypeParam::key(4), pointer(2)}}));
    EXPECT_TRUE(this->remove(map, TypeParam::key(0)));
    EXPECT_EQ(this->lookup(map, TypeParam::key(0)), absent());
}

TYPED_TEST_P(HashMapTest, DeleteOfTheFirstKeyOfABucketRemovesItAndReturnsTrue) {
    typename TypeParam::Map map(4);
    for (const unsigned int number : {4, 8, 12})
        this->add(map, TypeParam::key(number), pointer(number));
    EXPECT_TRUE(this->remove(map, TypeParam::key(4)));
    EXPECT_EQ(map.count(), 2u);
    EXPECT_EQ(this->lookup(map, TypeParam::key(4)), absent());
    EXPECT_EQ(this->entriesOf(map),
              (typename TestFixture::Entries{{TypeParam::key(8), pointer(8)}, {TypeParam::key(12), pointer(12)}}));
    EXPECT_TRUE(this->remove(map, TypeParam::key(8)));
    EXPECT_TRUE(this->remove(map, TypeParam::key(12)));
    EXPECT_EQ(map.count(), 0u);
    EXPECT_TRUE(this->entriesOf(map).empty());
}

TYPED_TEST_P(HashMapTest, DeleteWithAnEmptyBucketReturnsTrue) {
    typename TypeParam::Map map(4);
    EXPECT_TRUE(this->remove(map, TypeParam::key(8)));
    EXPECT_EQ(map.count(), 0u);
}

TYPED_TEST_P(HashMapTest, DeleteReleasesTheMemoryOfItsEntry) {
    const long outstanding = framework::Memory::staticOutstanding();
    typename TypeParam::Map map(16);
    this->add(map, TypeParam::key(8), nullptr);
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 1 + TypeParam::piecesPerEntry);
    this->remove(map, TypeParam::key(8));
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 1);
}

TYPED_TEST_P(HashMapTest, FirstAndNextIterateInBucketOrder) {
    typename TypeParam::Map map(4);
    void* value = &map;
    EXPECT_EQ(map.First(value), TypeParam::end());
    EXPECT_EQ(value, &map);
    for (const unsigned int number : {3, 9, 5, 1})
        this->add(map, TypeParam::key(number), pointer(number * 100));
    EXPECT_EQ(this->entriesOf(map), (typename TestFixture::Entries{{TypeParam::key(1), pointer(100)},
                                                                   {TypeParam::key(5), pointer(500)},
                                                                   {TypeParam::key(9), pointer(900)},
                                                                   {TypeParam::key(3), pointer(300)}}));
    this->expectNothingAfter(map, TypeParam::key(3)); // the last
    this->expectNothingAfter(map, TypeParam::key(2)); // its bucket is empty
    this->expectNothingAfter(map, TypeParam::key(7)); // greater than all keys of its bucket
    this->expectNothingAfter(map, TypeParam::key(0));
}

TYPED_TEST_P(HashMapTest, DeleteAllRemovesAllEntriesAndKeepsTheCount) {
    const long outstanding = framework::Memory::staticOutstanding();
    {
        typename TypeParam::Map map(64);
        map.DeleteAll();
        for (unsigned int number = 0; number < 100; ++number)
            this->add(map, TypeParam::key(number), nullptr);
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 1 + 100 * TypeParam::piecesPerEntry);
        map.DeleteAll();
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 1); // the table
        void* value = nullptr;
        EXPECT_EQ(map.First(value), TypeParam::end());
        EXPECT_EQ(map.count(), 100u);
        EXPECT_TRUE(this->add(map, TypeParam::key(7), nullptr));
        EXPECT_EQ(map.count(), 101u);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

TYPED_TEST_P(HashMapTest, DumpOfAnEmptyMapPrintsNothing) {
    typename TypeParam::Map map(16);
    EXPECT_EQ(dumpOf(map), "");
}

TYPED_TEST_P(HashMapTest, PlacementTracePrintsWhereNewEntriesGo) {
    typename TypeParam::Map map(16);
    testing::internal::CaptureStdout();
    this->add(map, TypeParam::key(0x25), nullptr); // not traced yet
    map.setPlacementTrace(true);
    for (const unsigned int number : {0x13, 0x33, 0x23, 0x03})
        this->add(map, TypeParam::key(number), nullptr);
    this->add(map, TypeParam::key(0x23), pointer(1)); // present
    map.setPlacementTrace(false);
    this->add(map, TypeParam::key(0x14), nullptr);
    const auto printed = [](unsigned int number) {
        return TypeParam::printed(TypeParam::key(number));
    };
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "place: " + printed(0x13) + " @ 3\n" + "append: " + printed(0x33) + " @ 3\n" +
                  "insert: " + printed(0x23) + " @ 3, before " + printed(0x33) + "\n" + "insert: " + printed(0x03) +
                  " @ 3, before " + printed(0x13) + "\n");
}

TYPED_TEST_P(HashMapTest, OnlyAddAllocates) {
    typename TypeParam::Map map(256);
    const unsigned long before = allocationCount();
    for (unsigned int number = 0; number < 999; ++number)
        this->add(map, TypeParam::key(number), pointer(number));
    EXPECT_EQ(allocationCount() - before, 999u * TypeParam::piecesPerEntry);

    const FailingAllocation failing(failAll);
    for (unsigned int number = 0; number < 999; ++number)
        ASSERT_EQ(this->lookup(map, TypeParam::key(number)), pointer(number));
    EXPECT_EQ(this->lookup(map, TypeParam::key(999)), absent());
    EXPECT_FALSE(this->add(map, TypeParam::key(1), pointer(2)));
    EXPECT_EQ(this->lookup(map, TypeParam::key(1)), pointer(2));
    void* value = nullptr;
    EXPECT_EQ(TypeParam::modelKey(map.First(value)), TypeParam::key(0));
    EXPECT_EQ(TypeParam::modelKey(map.Next(TypeParam::argument(TypeParam::key(0)), value)), TypeParam::key(256));
    EXPECT_TRUE(this->remove(map, TypeParam::key(0)));
    map.DeleteAll();
    EXPECT_EQ(failing.failures(), 0u);
}

TYPED_TEST_P(HashMapTest, WithoutMemoryForAnEntryAddChangesNothing) {
    typename TypeParam::Map map(2);
    map.setPlacementTrace(true);
    testing::internal::CaptureStdout();
    for (const unsigned int present : {0x20, 0x10}) {
        const auto entries = this->entriesOf(map);
        const long outstanding = framework::Memory::staticOutstanding();
        for (const unsigned int number : {0x8, 0x18, 0x28, 0x21}) {
            for (unsigned int nth = 1; nth <= TypeParam::piecesPerEntry; ++nth) {
                FailingAllocation failing(nth);
                EXPECT_FALSE(this->add(map, TypeParam::key(number), pointer(1)));
                failing.stop();
                EXPECT_EQ(failing.failures(), 1u);
                EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
                EXPECT_EQ(this->entriesOf(map), entries);
                EXPECT_EQ(map.count(), entries.size());
            }
        }
        EXPECT_TRUE(this->add(map, TypeParam::key(present), pointer(1)));
    }
    const auto printed = [](unsigned int number) {
        return TypeParam::printed(TypeParam::key(number));
    };
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "place: " + printed(0x20) + " @ 0\ninsert: " + printed(0x10) + " @ 0, before " + printed(0x20) + "\n");
}

TYPED_TEST_P(HashMapTest, WithoutMemoryForItsTableAMapStaysEmpty) {
    const long outstanding = framework::Memory::staticOutstanding();
    {
        FailingAllocation failing(1);
        typename TypeParam::Map map(64);
        EXPECT_EQ(failing.failures(), 1u);
        failing.stop();
        this->expectStaysEmpty(map);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

TYPED_TEST_P(HashMapTest, BehavesAsAnOrderedMapUnderRandomOperations) {
    const long outstanding = framework::Memory::staticOutstanding();
    for (const unsigned int buckets : {2u, 16u, 64u, 128u, 1024u, 65536u}) {
        const unsigned int seed = randomSeed();
        SCOPED_TRACE(repeatWith(seed));
        typename TypeParam::Map map(buckets);
        typename TestFixture::Model(seed, map, buckets).run(buckets == 65536 ? 2000 : 100000);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

REGISTER_TYPED_TEST_SUITE_P(HashMapTest, AcceptsPowersOfTwoFrom2To65536AsBucketCount, RejectsEveryOtherBucketCount,
                            TheKeysOfABucketAreAscending, AddOfAPresentKeyReplacesItsValueAndReturnsFalse,
                            LookupOfAnAbsentKeyReturnsMinusOneAndNotNull, KeyZeroIsAKeyLikeAnyOther,
                            DeleteOfTheFirstKeyOfABucketRemovesItAndReturnsTrue, DeleteWithAnEmptyBucketReturnsTrue,
                            DeleteReleasesTheMemoryOfItsEntry, FirstAndNextIterateInBucketOrder,
                            DeleteAllRemovesAllEntriesAndKeepsTheCount, DumpOfAnEmptyMapPrintsNothing,
                            PlacementTracePrintsWhereNewEntriesGo, OnlyAddAllocates,
                            WithoutMemoryForAnEntryAddChangesNothing, WithoutMemoryForItsTableAMapStaysEmpty,
                            BehavesAsAnOrderedMapUnderRandomOperations);

} // namespace test
