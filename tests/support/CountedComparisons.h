#pragma once

// Replaces `strcmp` in the test program that includes this header, and in the libraries it loads. Include it in only
// one source of a program.

#include <string>

#include <gtest/gtest.h>

namespace test {

namespace detail {

inline thread_local unsigned long comparisons = 0;

} // namespace detail

/// Looks up `name` in `directory`, expects it at index `expected`, and returns the number of text comparisons.
///
///     EXPECT_LE(test::comparisonsToFind(directory, "port", 7), 10u);
template<class Directory>
unsigned long comparisonsToFind(Directory& directory, const std::string& name, int expected) {
    // Call once first: a sanitizer compares type names in the first call of a virtual operation.
    directory.Find(name.c_str());
    const unsigned long before = detail::comparisons;
    const int found = directory.Find(name.c_str());
    const unsigned long comparisons = detail::comparisons - before;
    EXPECT_EQ(found, expected) << name;
    return comparisons;
}

} // namespace test

extern "C" __attribute__((no_sanitize("address", "undefined", "thread"))) int strcmp(const char* left,
                                                                                     const char* right) noexcept {
    ++test::detail::comparisons;
    while (*left != '\0' && *left == *right) {
        ++left;
        ++right;
    }
    return static_cast<unsigned char>(*left) - static_cast<unsigned char>(*right);
}
