#pragma once

#include "fw_Export.h"

// Interned texts that code names directly: the very pointers that `strings::StringRepository::toString` returns.
extern VXFW_EXPORT const char* const pGSArguments;
extern VXFW_EXPORT const char* const pGSEnter;
extern VXFW_EXPORT const char* const pGSEntity;
extern VXFW_EXPORT const char* const pGSFC;
extern VXFW_EXPORT const char* const pGSURL;
extern VXFW_EXPORT const char* const pGSfalse;
extern VXFW_EXPORT const char* const pGSiSCSI;
extern VXFW_EXPORT const char* const pGStrue;
