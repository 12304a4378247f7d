#pragma once

#include <type_traits>
#include <vector>

namespace test {

/// Returns the elements of a typed array, read with its constant index operator.
///
///     EXPECT_EQ(test::contentOf(array), (std::vector<int>{7, 3}));
template<typename ArrayType>
auto contentOf(const ArrayType& array) {
    std::vector<std::decay_t<decltype(array[0])>> content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

/// Appends `values` to a typed array.
template<typename ArrayType, typename Value>
void appendAll(ArrayType& array, const std::vector<Value>& values) {
    for (const Value& value : values)
        array.Append(value);
}

} // namespace test
