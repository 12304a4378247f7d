#pragma once

#include "ut_Platform.h"

// What the headers for C use; those for C++ include ut_Export.h.

/// Marks what the shared library offers; everything else is hidden.
#define VXUT_EXPORT __attribute__((visibility("default")))
