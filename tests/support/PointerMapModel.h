#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace test {

/// A pointer with this numeric value, for use as a key or value.
inline void* pointer(std::uintptr_t number) {
    return reinterpret_cast<void*>(number);
}

/// What a map returns for an absent key.
inline void* absent() {
    return reinterpret_cast<void*>(std::intptr_t{-1});
}

typedef std::vector<std::pair<void*, void*>> PointerEntries;

/// All entries in the order of `First` and `Next`.
template<class MapType>
PointerEntries entriesOf(MapType& map) {
    PointerEntries entries;
    void* value = nullptr;
    for (void* key = map.First(value); key != absent(); key = map.Next(key, value))
        entries.emplace_back(key, value);
    return entries;
}

/// Applies the same random operations to a map and a `std::map`, and expects equal results. Callers rely on two special
/// ones: deleting an absent key returns true unless its bucket contains a greater key, and deleting all entries does
/// not change the count.
template<class MapType>
class PointerMapModel {
public:
    PointerMapModel(unsigned int seed, MapType& map, unsigned int buckets)
        : m_random(seed), m_map(map), m_mask(buckets - 1) {}

    void run(int steps) {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            SCOPED_TRACE(step);
            takeStep();
            EXPECT_EQ(m_map.count(), m_count);
            if (step % 64 == 0) {
                EXPECT_EQ(entriesOf(m_map), modelEntries());
            }
        }
    }

private:
    // The order in which a map iterates over its keys: by bucket, then by number.
    typedef std::pair<std::uintptr_t, std::uintptr_t> Place;

    std::uintptr_t someNumber() {
        return m_random() % 4 == 0 ? ~std::uintptr_t{1} - m_random() % 200 : m_random() % 400;
    }

    Place placeOf(std::uintptr_t number) const {
        return {number & m_mask, number};
    }

    void takeStep() {
        const std::uintptr_t number = someNumber();
        const Place place = placeOf(number);
        switch (m_random() % 10) {
        case 0:
        case 1:
        case 2:
        case 3: {
            void* value = pointer(m_random());
            const bool isNew = m_model.count(place) == 0;
            EXPECT_EQ(m_map.Add(pointer(number), value), isNew);
            m_model[place] = value;
            m_count += isNew ? 1 : 0;
            return;
        }
        case 4:
        case 5:
        case 6:
            return remove(place);
        case 7:
            return next(place);
        case 8:
            if (m_random() % 200 == 0)
                return clear();
            return next(placeOf(0));
        default: {
            const auto found = m_model.find(place);
            EXPECT_EQ(m_map.Lookup(pointer(number)), found == m_model.end() ? absent() : found->second);
            return;
        }
        }
    }

    void remove(const Place& place) {
        const auto next = m_model.upper_bound(place);
        const bool greaterInBucket = next != m_model.end() && next->first.first == place.first;
        const bool present = m_model.erase(place) > 0;
        EXPECT_EQ(m_map.Delete(pointer(place.second)), present || !greaterInBucket);
        m_count -= present ? 1 : 0;
    }

    void next(const Place& place) {
        void* value = this;
        void* key = m_map.Next(pointer(place.second), value);
        const auto next = m_model.count(place) > 0 ? m_model.upper_bound(place) : m_model.end();
        EXPECT_EQ(key, next == m_model.end() ? absent() : pointer(next->first.second));
        EXPECT_EQ(value, next == m_model.end() ? this : next->second);
    }

    void clear() {
        m_map.DeleteAll();
        m_model.clear();
        void* value = this;
        EXPECT_EQ(m_map.First(value), absent());
        EXPECT_EQ(value, this);
    }

    PointerEntries modelEntries() const {
        PointerEntries entries;
        for (const auto& entry : m_model)
            entries.emplace_back(pointer(entry.first.second), entry.second);
        return entries;
    }

    std::mt19937 m_random;
    MapType& m_map;
    std::uintptr_t m_mask;
    std::map<Place, void*> m_model;
    unsigned int m_count = 0;
};

} // namespace test
