#pragma once

#include "fw_Export.h"
#include "ut_CExport.h"

/// Makes the compiler check the arguments of a printf-like operation. Positions count from 1; in a non-static member
/// function, `this` is 1.
/// - `format`: the position of the format
/// - `first`: the position of the first argument for it; 0 for operations with a `va_list`
#define VXUT_PRINTF(format, first) __attribute__((__format__(__printf__, format, first)))
