#pragma once

#include "ut_Export.h"

// The version that a program is compiled with; the functions below tell the version it runs with.

/// The first number: it changes when a compiled client of the former version does not run with the new one.
#define VXUT_VERSION_MAJOR 1
/// The second number: it changes when something was added.
#define VXUT_VERSION_MINOR 0
/// The third number: it changes when something was corrected.
#define VXUT_VERSION_PATCH 0
/// The three numbers in one, 10203 for 1.2.3, for comparisons with `#if`.
#define VXUT_VERSION_NUMBER (VXUT_VERSION_MAJOR * 10000 + VXUT_VERSION_MINOR * 100 + VXUT_VERSION_PATCH)
/// The three numbers as a text.
#define VXUT_VERSION "1.0.0"

namespace utility {

/// Returns the version of the library that the process has loaded, as `VXUT_VERSION` gives it. Never null; valid as
/// long as the process.
///
///     std::printf("compiled with %s, running with %s\n", VXUT_VERSION, utility::version());
VXUT_EXPORT const char* version();

/// Returns the version of the library that the process has loaded, as `VXUT_VERSION_NUMBER` gives it.
VXUT_EXPORT int versionNumber();

} // namespace utility
