#pragma once

#include "fw_Export.h"

/// The text to show for `message` in the user's language: `message` itself where no catalogue has another. Whoever
/// owned the text before still owns it; null gives null.
extern "C" VXFW_EXPORT const char* vx_gettext(const char* message);
