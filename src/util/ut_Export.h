#pragma once

#include "fw_Export.h"
#include "ut_CExport.h"

/// Lets the compiler check printf-like arguments; `format` and `first` count from 1, `this` included. `first` is 0 for
/// operations that take a `va_list`.
#define VXUT_PRINTF(format, first) __attribute__((__format__(__printf__, format, first)))
