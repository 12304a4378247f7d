#pragma once

#include "fw_Export.h"

/// @name Interned texts
///
/// The same pointers that `strings::StringRepository::toString` returns for their tokens. Never freed.
/// @{

extern VXFW_EXPORT const char* const pGSArguments; ///< "Arguments"
extern VXFW_EXPORT const char* const pGSEnter;     ///< "Enter"
extern VXFW_EXPORT const char* const pGSEntity;    ///< "Entity"
extern VXFW_EXPORT const char* const pGSFC;        ///< "FC"
extern VXFW_EXPORT const char* const pGSURL;       ///< "URL"
extern VXFW_EXPORT const char* const pGSfalse;     ///< "false"
extern VXFW_EXPORT const char* const pGSiSCSI;     ///< "iSCSI"
extern VXFW_EXPORT const char* const pGStrue;      ///< "true"
/// @}
