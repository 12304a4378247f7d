#pragma once

#include "ut_CExport.h"

#ifdef __cplusplus
extern "C" {
#endif

/// @file
/// The debug switches of `utility::Debug`, for C and C++ callers.
///
/// Any thread may call these functions; it may see a change late. No operation fails.
///
///     if (IsCapiTraceOn())
///         puts("entered");

/// A flag for client code only: the library neither reads nor writes it. Initially 0x1FFFFFFF.
extern VXUT_EXPORT int DebugPrintEnable;

/// Returns 1 if debug switch `n` is on, otherwise 0, also if `n` is above 8191.
VXUT_EXPORT int IsDebugOn(unsigned int n);
/// Returns 1 if debug switch 1198 ("CapiTrace") is on, otherwise 0.
VXUT_EXPORT int IsCapiTraceOn(void);
/// Returns 1 if debug switch 1199 ("CapiPrint") is on, otherwise 0.
VXUT_EXPORT int IsCapiPrintOn(void);

#ifdef __cplusplus
}
#endif
