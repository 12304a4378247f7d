#pragma once

#include "fw_Export.h"
#include "ut_CExport.h"

/// Makes the compiler check printf-like arguments. `format` and `first` are the positions of the format and of the
/// first argument for it, counted from 1, including `this`. `first` is 0 for operations with a `va_list`.
#define VXUT_PRINTF(format, first) __attribute__((__format__(__printf__, format, first)))
