#pragma once

#include "fw_Export.h"

/// Returns the text of `message` in the user's language, or `message` itself if the message catalog has no translation.
/// Ownership does not change. Null returns null.
extern "C" VXFW_EXPORT const char* vx_gettext(const char* message);
