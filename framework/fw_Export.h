#pragma once

/// Marks what the shared library offers; everything else stays hidden.
#define VXFW_EXPORT __attribute__((visibility("default")))

/// Lets the compiler check printf-like arguments; the places count from 1, `this` included.
#define VXFW_PRINTF(formatPlace, firstPlace) __attribute__((format(printf, formatPlace, firstPlace)))
