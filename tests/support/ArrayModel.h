#pragma once

#include <cstddef>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "RandomRun.h"

namespace test {

/// Applies the same random operations, including out-of-range indices, to an array and a `std::vector`. Expects equal
/// content after each operation, and that a full array grows by 20 slots. `makeValue()` returns a value.
template<typename ArrayType, typename Value>
class ArrayModel {
public:
    ArrayModel(RandomRun& random, unsigned int capacity)
        : m_random(random), m_array(capacity), m_capacity(capacity == 0 ? 20 : capacity) {}

    template<typename MakeValue>
    void run(int steps, MakeValue&& makeValue) {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            takeStep(makeValue());
            expectEqual(m_array);
        }
    }

private:
    unsigned int below(std::size_t limit) {
        return m_random.below(static_cast<unsigned int>(limit));
    }

    auto at(unsigned int index) {
        return m_model.begin() + static_cast<std::ptrdiff_t>(index);
    }

    void takeStep(Value value) {
        const std::size_t length = m_model.size();
        switch (below(16)) {
        case 0:
            return badIndices(value);
        case 1:
            return truncate(below(length + 10));
        case 2:
            return copy();
        case 3:
        case 4:
        case 5:
            return length > 0 ? remove(below(length)) : append(value);
        case 6:
        case 7:
            return length > 0 ? replace(below(length), value) : append(value);
        case 8:
        case 9:
        case 10:
        case 11:
            return insert(below(length + 1), value);
        default:
            return append(value);
        }
    }

    void copy() {
        if constexpr (std::is_copy_constructible_v<ArrayType>)
            expectEqual(ArrayType(m_array));
    }

    void append(Value value) {
        growWhenFull();
        m_array.Append(value);
        m_model.push_back(value);
    }

    void insert(unsigned int index, Value value) {
        growWhenFull();
        m_array.InsertAt(index, value);
        m_model.insert(at(index), value);
    }

    void replace(unsigned int index, Value value) {
        m_array.SetAt(index, value);
        m_model[index] = value;
        const unsigned int other = below(m_model.size());
        m_array[other] = m_array[index];
        m_model[other] = value;
    }

    void remove(unsigned int index) {
        m_array.DeleteAt(index);
        m_model.erase(at(index));
    }

    void truncate(unsigned int length) {
        m_array.truncate(length);
        if (length < m_model.size())
            m_model.resize(length);
    }

    void badIndices(Value value) {
        const unsigned int length = m_array.length();
        EXPECT_NE(CATCH_FAILURE(m_array.InsertAt(length + 1 + below(100), value)), nullptr);
        EXPECT_NE(CATCH_FAILURE(m_array.SetAt(length + below(100), value)), nullptr);
        EXPECT_NE(CATCH_FAILURE(m_array.DeleteAt(length + below(100))), nullptr);
        EXPECT_NE(CATCH_FAILURE(m_array[length + below(100)]), nullptr);
        EXPECT_NE(CATCH_FAILURE(constant(m_array)[length + below(100)]), nullptr);
    }

    void growWhenFull() {
        if (m_model.size() == m_capacity)
            m_capacity += 20;
    }

    static const ArrayType& constant(const ArrayType& array) {
        return array;
    }

    void expectEqual(const ArrayType& array) const {
        ASSERT_EQ(array.length(), m_model.size());
        ASSERT_EQ(array.size(), m_capacity);
        for (unsigned int index = 0; index < array.length(); ++index)
            ASSERT_EQ(array[index], m_model[index]) << "at " << index;
    }

    RandomRun& m_random;
    ArrayType m_array;
    std::vector<Value> m_model;
    unsigned int m_capacity;
};

} // namespace test
