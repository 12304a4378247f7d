#pragma once

// Every header of both libraries includes this one first, except those that C includes too, so that an older language
// is the first error reported.
#if !defined(__cplusplus) || __cplusplus < 201703L
#error "VXut needs C++17 or later: compile with -std=c++17"
#endif

/// Marks an exported symbol; all others are hidden.
#define VXFW_EXPORT __attribute__((visibility("default")))

/// Has the compiler check printf-like arguments. Positions count from 1, including `this`.
#define VXFW_PRINTF(formatPlace, firstPlace) __attribute__((format(printf, formatPlace, firstPlace)))
