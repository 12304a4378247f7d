#pragma once

// The allocation functions that a replacement in a test program calls: VXTEST_PLATFORM(malloc) and so on. They are the
// C library's, a sanitizer's, or, under valgrind's memcheck, those that it puts in the place of the C library's.
//
// VXTEST_CHECKED_HEAP is defined if a checker owns the heap. Its `operator new` does not call `malloc`.

#include <cstddef>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(VXUT_MEMCHECK)
#define VXTEST_CHECKED_HEAP
#endif

#ifdef VXUT_MEMCHECK

#include <dlfcn.h>

namespace test {
namespace detail {

/// Calls the function `name` of the C library. Looked up at run time, as the program has functions of these names.
template<class Result, class... Arguments>
Result callPlatform(Result (*&function)(Arguments...), const char* name, Arguments... arguments) {
    if (function == nullptr)
        function = reinterpret_cast<Result (*)(Arguments...)>(dlsym(RTLD_NEXT, name));
    return function(arguments...);
}

inline void* (*platformMalloc)(std::size_t) = nullptr;
inline void* (*platformCalloc)(std::size_t, std::size_t) = nullptr;
inline void* (*platformRealloc)(void*, std::size_t) = nullptr;
inline void* (*platformMemalign)(std::size_t, std::size_t) = nullptr;
inline void (*platformFree)(void*) = nullptr;

} // namespace detail
} // namespace test

#define VXTEST_PLATFORM(name) memcheck_##name

inline void* memcheck_malloc(std::size_t size) {
    return test::detail::callPlatform(test::detail::platformMalloc, "malloc", size);
}
inline void* memcheck_calloc(std::size_t count, std::size_t size) {
    return test::detail::callPlatform(test::detail::platformCalloc, "calloc", count, size);
}
inline void* memcheck_realloc(void* piece, std::size_t size) {
    return test::detail::callPlatform(test::detail::platformRealloc, "realloc", piece, size);
}
inline void* memcheck_memalign(std::size_t alignment, std::size_t size) {
    return test::detail::callPlatform(test::detail::platformMemalign, "memalign", alignment, size);
}
inline void memcheck_free(void* piece) {
    test::detail::callPlatform(test::detail::platformFree, "free", piece);
}

#else

#ifdef VXTEST_CHECKED_HEAP
#define VXTEST_PLATFORM(name) __interceptor_##name
#else
#define VXTEST_PLATFORM(name) __libc_##name
#endif

extern "C" {
void* VXTEST_PLATFORM(malloc)(std::size_t size) noexcept;
void* VXTEST_PLATFORM(calloc)(std::size_t count, std::size_t size) noexcept;
void* VXTEST_PLATFORM(realloc)(void* piece, std::size_t size) noexcept;
void* VXTEST_PLATFORM(memalign)(std::size_t alignment, std::size_t size) noexcept;
void VXTEST_PLATFORM(free)(void* piece) noexcept;
}

#endif
