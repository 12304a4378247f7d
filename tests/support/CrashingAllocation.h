#pragma once

// Replaces the allocation functions of the test program that includes this header, so that they can crash as they do
// in a process with a corrupted heap. Include it in only one source of a program.

#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include <signal.h>
#include <unistd.h>

#include "PlatformAllocation.h"

// A sanitizer allocates before it is initialized, so these functions must not be instrumented.
#define VXTEST_UNWATCHED __attribute__((no_sanitize("address", "undefined", "thread")))

namespace test {

/// The behavior of the process's allocator from now on. All states except `ALLOCATE` and `REFUSE` are only for a
/// process that is about to end.
enum AllocatorState {
    ALLOCATE,          ///< allocates
    REFUSE,            ///< fails
    CRASH_ONCE,        ///< crashes with SIGSEGV at the next call, then allocates
    CRASH_ONCE_REFUSE, ///< crashes at the next call, then fails
    CRASH_LOCKED,      ///< crashes at the next call with its lock held: every later call blocks forever
    CRASH_ALWAYS,      ///< crashes at every call
    LOCKED             ///< every call blocks forever
};

inline volatile sig_atomic_t allocatorState = ALLOCATE;

namespace detail {

inline int* volatile invalidAddress = reinterpret_cast<int*>(16);

VXTEST_UNWATCHED inline void crashInAllocator(AllocatorState next) {
    allocatorState = next;
    *invalidAddress = 1;
}

/// Whether the allocator may allocate or free.
VXTEST_UNWATCHED inline bool enterAllocator() {
    switch (static_cast<AllocatorState>(allocatorState)) {
    case ALLOCATE:
        return true;
    case REFUSE:
        return false;
    case CRASH_ONCE:
        crashInAllocator(ALLOCATE);
        return true;
    case CRASH_ONCE_REFUSE:
        crashInAllocator(REFUSE);
        return false;
    case CRASH_LOCKED:
        crashInAllocator(LOCKED);
        return false;
    case CRASH_ALWAYS:
        crashInAllocator(CRASH_ALWAYS);
        return false;
    case LOCKED:
        for (;;)
            pause();
    }
    return true;
}

} // namespace detail

} // namespace test

// With optimization, these functions jump to the platform's (tail calls). A leak detector then sees the real caller and
// does not report the memory of the dynamic linker.
#define VXTEST_IN_PLACE_OF_PLATFORM VXTEST_UNWATCHED __attribute__((optimize("O2")))

extern "C" {

VXTEST_IN_PLACE_OF_PLATFORM void* malloc(std::size_t size) noexcept {
    if (test::detail::enterAllocator())
        return VXTEST_PLATFORM(malloc)(size);
    errno = ENOMEM;
    return nullptr;
}

VXTEST_IN_PLACE_OF_PLATFORM void* calloc(std::size_t count, std::size_t size) noexcept {
    if (test::detail::enterAllocator())
        return VXTEST_PLATFORM(calloc)(count, size);
    errno = ENOMEM;
    return nullptr;
}

VXTEST_IN_PLACE_OF_PLATFORM void* realloc(void* piece, std::size_t size) noexcept {
    if (test::detail::enterAllocator())
        return VXTEST_PLATFORM(realloc)(piece, size);
    errno = ENOMEM;
    return nullptr;
}

VXTEST_IN_PLACE_OF_PLATFORM void free(void* piece) noexcept {
    if (piece == nullptr || (test::allocatorState != test::REFUSE && !test::detail::enterAllocator()))
        return;
    VXTEST_PLATFORM(free)(piece);
}

} // extern "C"

#undef VXTEST_IN_PLACE_OF_PLATFORM
#undef VXTEST_UNWATCHED
