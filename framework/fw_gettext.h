#pragma once

#include "fw_Export.h"

/// Returns the translation of `message` to the user's language, which the caller must not free, or `message` itself if
/// the message catalog does not have one. Returns null if `message` is null.
extern "C" VXFW_EXPORT const char* vx_gettext(const char* message);
