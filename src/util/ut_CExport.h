#pragma once

#include "ut_Platform.h"

// For the headers that C programs include; C++ headers include ut_Export.h.

/// Exports a symbol from the shared library; all other symbols are hidden.
#define VXUT_EXPORT __attribute__((visibility("default")))
/// Hides a member of an exported class.
#define VXUT_HIDDEN __attribute__((visibility("hidden")))
