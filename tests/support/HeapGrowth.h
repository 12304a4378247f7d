#pragma once

#include <cstddef>

#include <malloc.h>

namespace test {

/// The growth of the heap in bytes while `operation` runs a thousand times, so each leaked byte counts a thousand
/// times. Always 0 with a sanitizer, which reports leaks itself.
///
///     EXPECT_LT(test::heapGrowth([] { delete new int; }), 8000u);
template<class Operation>
std::size_t heapGrowth(Operation&& operation) {
    // Fill the allocator's caches first: cached pieces count as allocated.
    for (int i = 0; i < 20; ++i)
        operation();
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 1000; ++i)
        operation();
    const std::size_t after = mallinfo2().uordblks;
    return after > before ? after - before : 0;
}

} // namespace test
