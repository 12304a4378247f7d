#pragma once

#include <malloc.h>

#include <cstddef>

namespace test {

/// By how many bytes the heap has grown after `operation` ran a thousand times; what it leaks each time shows a
/// thousandfold. Always 0 with a sanitizer, which reports leaks by itself.
///
///     EXPECT_LT(test::heapGrowth([] { delete new int; }), 8000u);
template<class Operation>
std::size_t heapGrowth(Operation&& operation) {
    // Fills the caches of freed pieces, which count as taken.
    for (int i = 0; i < 20; ++i)
        operation();
    const std::size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 1000; ++i)
        operation();
    const std::size_t after = mallinfo2().uordblks;
    return after > before ? after - before : 0;
}

} // namespace test
