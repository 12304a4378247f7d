#pragma once

// Every header of both libraries includes this one first, except those that C includes too, so that an older language
// is the first error reported.
#if !defined(__cplusplus) || __cplusplus < 201703L
#error "VXut needs C++17 or later: compile with -std=c++17"
#endif

/// Marks what the shared library offers; everything else stays hidden.
#define VXFW_EXPORT __attribute__((visibility("default")))

/// Lets the compiler check printf-like arguments; the places count from 1, `this` included.
#define VXFW_PRINTF(formatPlace, firstPlace) __attribute__((format(printf, formatPlace, firstPlace)))
