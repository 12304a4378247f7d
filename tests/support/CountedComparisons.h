#pragma once

// Replaces `strcmp` of the test program that includes it, for the libraries it loads as well. A program may include it
// in one source only.

#include <gtest/gtest.h>

#include <string>

namespace test {

namespace detail {

inline thread_local unsigned long comparisons = 0;

} // namespace detail

/// Looks `name` up in `directory`, expects it at index `expected`, and returns how many texts were compared.
///
///     EXPECT_LE(test::comparisonsToFind(directory, "port", 7), 10u);
template<class Directory>
unsigned long comparisonsToFind(Directory& directory, const std::string& name, int expected) {
    // A sanitizer compares the names of types when a virtual operation is called for the first time.
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
