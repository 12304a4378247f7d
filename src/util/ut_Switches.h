#pragma once

#include "ut_CExport.h"

#ifdef __cplusplus
extern "C" {
#endif

/// The debug switches of `utility::Debug`, for C and C++ callers alike.
///
/// Safe from any thread; a change may be seen late. Nothing fails.
///
///     if (IsCapiTraceOn())
///         puts("entered");

/// For client code only: the library neither reads nor writes it. Initially 0x1FFFFFFF.
extern VXUT_EXPORT int DebugPrintEnable;

/// Whether debug switch `n` is on: 1 or 0. 0 for a number above 8191.
VXUT_EXPORT int IsDebugOn(unsigned int n);
/// Whether debug switch 1198 is on: 1 or 0.
VXUT_EXPORT int IsCapiTraceOn(void);
/// Whether debug switch 1199 is on: 1 or 0.
VXUT_EXPORT int IsCapiPrintOn(void);

#ifdef __cplusplus
}
#endif
