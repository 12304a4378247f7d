#pragma once

// Replaces the allocation functions in the test program that includes this header, and in the libraries it loads.
// Include it in only one source of a program. Programs that do not include it use the platform's functions.

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>

#include <dlfcn.h>

#include "PlatformAllocation.h"

// A sanitizer allocates before it is initialized, so these functions must not be instrumented.
#define VXTEST_UNWATCHED __attribute__((no_sanitize("address", "undefined", "thread")))

namespace test {

namespace detail {

struct AllocationState {
    unsigned long count = 0;  // allocations of this thread since its start
    unsigned long failAt = 0; // the number of the allocation that fails; 0 if none does
    bool failAll = false;     // whether every later one fails as well
    unsigned long failures = 0;
};

inline thread_local AllocationState allocationState;

VXTEST_UNWATCHED inline bool failThisAllocation() {
    AllocationState& state = allocationState;
    ++state.count;
    if (state.count != state.failAt && !(state.failAll && state.count > state.failAt))
        return false;
    ++state.failures;
    return true;
}

inline long outstandingPieces = 0;

/// Counts `piece` as taken unless it is null.
VXTEST_UNWATCHED inline void* countPiece(void* piece) {
    if (piece != nullptr)
        __atomic_fetch_add(&outstandingPieces, 1, __ATOMIC_RELAXED);
    return piece;
}

} // namespace detail

/// The number of allocations of the calling thread since its start, including failed ones.
inline unsigned long allocationCount() {
    return detail::allocationState.count;
}

/// The number of blocks that all threads have allocated and not freed. Always 0 with a checker of the heap, which
/// reports leaks by itself.
inline long outstandingAllocations() {
    return __atomic_load_n(&detail::outstandingPieces, __ATOMIC_RELAXED);
}

/// Selects the constructor that makes every allocation fail.
enum FailAll { failAll };

/// Makes allocations of the calling thread fail while it exists: all forms of `operator new`, `malloc`, `calloc`,
/// `realloc` and the aligned functions. One at a time.
///
///     test::FailingAllocation failing(1);
///     EXPECT_EQ(framework::Memory::StaticAlloc(8), nullptr);
class FailingAllocation {
public:
    /// Makes only the `nth` allocation from now on fail, counted from 1.
    explicit FailingAllocation(unsigned long nth) {
        start(allocationCount() + nth, false);
    }
    /// The `nth` allocation from now on fails, and every later one.
    FailingAllocation(unsigned long nth, FailAll) {
        start(allocationCount() + nth, true);
    }
    /// Makes every allocation fail.
    explicit FailingAllocation(FailAll) {
        start(0, true);
    }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation() {
        stop();
    }

    /// Makes allocations succeed again before the destructor runs.
    void stop() {
        detail::allocationState.failAt = 0;
        detail::allocationState.failAll = false;
    }
    /// The number of allocations that this object made fail.
    unsigned long failures() const {
        return detail::allocationState.failures;
    }

private:
    void start(unsigned long failAt, bool all) {
        detail::allocationState.failures = 0;
        detail::allocationState.failAt = failAt;
        detail::allocationState.failAll = all;
    }
};

/// Runs `operation` repeatedly, with its first, second, ... allocation failing, until each of its allocations has
/// failed once. After each failure, runs `check`, in which allocations succeed. Returns the number of failures.
template<class Operation, class Check>
unsigned long failEachAllocationOnce(Operation&& operation, Check&& check) {
    for (unsigned long nth = 1;; ++nth) {
        FailingAllocation failing(nth);
        operation();
        failing.stop();
        if (failing.failures() == 0)
            return nth - 1;
        check();
    }
}

/// Does the same without a check.
template<class Operation>
unsigned long failEachAllocationOnce(Operation&& operation) {
    return failEachAllocationOnce(operation, [] {});
}

} // namespace test

// A checker finds leaks without help.
#ifdef VXTEST_CHECKED_HEAP
#define VXTEST_COUNTED(piece) (piece)
#else
#define VXTEST_COUNTED(piece) test::detail::countPiece(piece)
#endif

// With optimization, these functions jump to the platform's (tail calls). A leak detector then sees the real caller and
// does not report the memory of the dynamic linker.
#define VXTEST_IN_PLACE_OF_PLATFORM VXTEST_UNWATCHED __attribute__((optimize("O2")))

extern "C" {

VXTEST_IN_PLACE_OF_PLATFORM void* malloc(std::size_t size) noexcept {
    if (!test::detail::failThisAllocation())
        return VXTEST_COUNTED(VXTEST_PLATFORM(malloc)(size));
    errno = ENOMEM;
    return nullptr;
}

VXTEST_IN_PLACE_OF_PLATFORM void* calloc(std::size_t count, std::size_t size) noexcept {
    if (!test::detail::failThisAllocation())
        return VXTEST_COUNTED(VXTEST_PLATFORM(calloc)(count, size));
    errno = ENOMEM;
    return nullptr;
}

VXTEST_IN_PLACE_OF_PLATFORM void* realloc(void* piece, std::size_t size) noexcept {
    if (!test::detail::failThisAllocation())
        return piece == nullptr ? VXTEST_COUNTED(VXTEST_PLATFORM(realloc)(nullptr, size))
                                : VXTEST_PLATFORM(realloc)(piece, size);
    errno = ENOMEM;
    return nullptr;
}

VXTEST_IN_PLACE_OF_PLATFORM void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    if (!test::detail::failThisAllocation())
        return VXTEST_COUNTED(VXTEST_PLATFORM(memalign)(alignment, size));
    errno = ENOMEM;
    return nullptr;
}

VXTEST_UNWATCHED int posix_memalign(void** piece, std::size_t alignment, std::size_t size) noexcept {
    if (test::detail::failThisAllocation())
        return ENOMEM;
    *piece = VXTEST_COUNTED(VXTEST_PLATFORM(memalign)(alignment, size));
    return *piece != nullptr ? 0 : ENOMEM;
}

#ifndef VXTEST_CHECKED_HEAP
void free(void* piece) noexcept {
    if (piece == nullptr)
        return;
    __atomic_fetch_sub(&test::detail::outstandingPieces, 1, __ATOMIC_RELAXED);
    VXTEST_PLATFORM(free)(piece);
}
#endif

} // extern "C"

#undef VXTEST_COUNTED

#undef VXTEST_IN_PLACE_OF_PLATFORM
#undef VXTEST_UNWATCHED

#ifdef VXTEST_CHECKED_HEAP

// The checker's own operators allocate, so that it still detects memory that is released by the wrong function.
namespace test {
namespace detail {

template<class Function>
Function* platformFunction(const char* name) {
    const AllocationState before = allocationState;
    allocationState = AllocationState();
    auto* function = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
    allocationState = before;
    return function;
}

} // namespace detail
} // namespace test

#if __SIZEOF_SIZE_T__ == 8
#define VXTEST_NEW "_Znwm"
#define VXTEST_NEW_ARRAY "_Znam"
#else
#define VXTEST_NEW "_Znwj"
#define VXTEST_NEW_ARRAY "_Znaj"
#endif

void* operator new(std::size_t size) {
    if (test::detail::failThisAllocation())
        throw std::bad_alloc();
    static const auto allocate = test::detail::platformFunction<void*(std::size_t)>(VXTEST_NEW);
    return allocate(size);
}

void* operator new[](std::size_t size) {
    if (test::detail::failThisAllocation())
        throw std::bad_alloc();
    static const auto allocate = test::detail::platformFunction<void*(std::size_t)>(VXTEST_NEW_ARRAY);
    return allocate(size);
}

void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept {
    if (test::detail::failThisAllocation())
        return nullptr;
    static const auto allocate =
        test::detail::platformFunction<void*(std::size_t, const std::nothrow_t&)>(VXTEST_NEW "RKSt9nothrow_t");
    return allocate(size, tag);
}

void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept {
    if (test::detail::failThisAllocation())
        return nullptr;
    static const auto allocate =
        test::detail::platformFunction<void*(std::size_t, const std::nothrow_t&)>(VXTEST_NEW_ARRAY "RKSt9nothrow_t");
    return allocate(size, tag);
}

void* operator new(std::size_t size, std::align_val_t alignment) {
    if (test::detail::failThisAllocation())
        throw std::bad_alloc();
    static const auto allocate =
        test::detail::platformFunction<void*(std::size_t, std::align_val_t)>(VXTEST_NEW "St11align_val_t");
    return allocate(size, alignment);
}

void* operator new[](std::size_t size, std::align_val_t alignment) {
    if (test::detail::failThisAllocation())
        throw std::bad_alloc();
    static const auto allocate =
        test::detail::platformFunction<void*(std::size_t, std::align_val_t)>(VXTEST_NEW_ARRAY "St11align_val_t");
    return allocate(size, alignment);
}

#undef VXTEST_NEW
#undef VXTEST_NEW_ARRAY

#endif
