#pragma once

// Replaces the allocation functions of the test program that includes it, so that they can crash as those of a process
// with a damaged heap do. A program may include it in one source only.

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>

// A sanitizer allocates before it is ready to watch; what runs then must not be watched.
#define VXTEST_UNWATCHED __attribute__((no_sanitize("address", "undefined", "thread")))

namespace test {

/// What the allocator of the process does from now on. Only for a process that is about to end, except `ALLOCATE` and
/// `REFUSE`.
enum AllocatorState {
    ALLOCATE,          ///< its work
    REFUSE,            ///< gives no memory
    CRASH_ONCE,        ///< crashes with SIGSEGV at the next call, then does its work
    CRASH_ONCE_REFUSE, ///< crashes at the next call, then gives no memory
    CRASH_LOCKED,      ///< crashes at the next call while it holds its lock: every further call waits for ever
    CRASH_ALWAYS,      ///< crashes at every call
    LOCKED             ///< every call waits for ever
};

inline volatile sig_atomic_t allocatorState = ALLOCATE;

namespace detail {

inline int* volatile invalidAddress = reinterpret_cast<int*>(16);

VXTEST_UNWATCHED inline void crashInAllocator(AllocatorState next) {
    allocatorState = next;
    *invalidAddress = 1;
}

/// Whether the allocator may work.
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

// The platform's functions. A sanitizer has its own.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VXTEST_PLATFORM(name) __interceptor_##name
#else
#define VXTEST_PLATFORM(name) __libc_##name
#endif

// Optimised, these functions jump to the platform's, which then sees the true caller: what the dynamic linker holds is
// no leak to a sanitizer.
#define VXTEST_IN_PLACE_OF_PLATFORM VXTEST_UNWATCHED __attribute__((optimize("O2")))

extern "C" {

void* VXTEST_PLATFORM(malloc)(std::size_t size) noexcept;
void* VXTEST_PLATFORM(calloc)(std::size_t count, std::size_t size) noexcept;
void* VXTEST_PLATFORM(realloc)(void* piece, std::size_t size) noexcept;
void VXTEST_PLATFORM(free)(void* piece) noexcept;

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
    if (!piece || (test::allocatorState != test::REFUSE && !test::detail::enterAllocator()))
        return;
    VXTEST_PLATFORM(free)(piece);
}

} // extern "C"

#undef VXTEST_PLATFORM
#undef VXTEST_IN_PLACE_OF_PLATFORM
#undef VXTEST_UNWATCHED
