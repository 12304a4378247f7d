#pragma once

// Replaces `strcmp` of the test program that includes it, for the libraries it loads as well. A program may include it
// in one source only.

namespace test {

namespace detail {

inline thread_local unsigned long comparisons = 0;

} // namespace detail

/// How many texts the calling thread has compared with `strcmp` since it began.
///
///     const unsigned long before = test::comparisonCount();
///     directory.Find("port");
///     EXPECT_LE(test::comparisonCount() - before, 10u);
inline unsigned long comparisonCount() {
    return detail::comparisons;
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
