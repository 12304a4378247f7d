#pragma once

// Every header of both libraries includes this one first, except those that C includes too, so that an older language
// is the first error reported.
#if !defined(__cplusplus) || __cplusplus < 201703L
#error "VXut needs C++17 or later: compile with -std=c++17"
#endif

/// Marks an exported symbol; all others are hidden.
#define VXFW_EXPORT __attribute__((visibility("default")))

/// Keeps a member of an exported class out of the exported symbols.
#define VXFW_HIDDEN __attribute__((visibility("hidden")))

/// Has the compiler check printf-like arguments. Positions count from 1, including `this`.
#define VXFW_PRINTF(formatPlace, firstPlace) __attribute__((format(printf, formatPlace, firstPlace)))

/// Tells Clang's thread-safety analysis what is a lock, what it guards, and which functions need or change it. Only the
/// project's own builds are analyzed.
#if defined(__clang__) && defined(VXUT_CHECK_THREADS)
#define VXFW_THREADS(attribute) __attribute__((attribute))
#else
#define VXFW_THREADS(attribute)
#endif
