#pragma once

#include "ut_Platform.h"

// Included by the headers that C programs use. C++ headers include ut_Export.h.

/// Exports a symbol from the shared library; all other symbols are hidden.
#define VXUT_EXPORT __attribute__((visibility("default")))
/// Does not export this member of an exported class.
#define VXUT_HIDDEN __attribute__((visibility("hidden")))
