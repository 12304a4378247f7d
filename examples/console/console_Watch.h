#pragma once

#include "console_Invocation.h"

namespace console {

/// The command "watch": runs another command again and again on a terminal, until the user presses a key.
bool watch(Invocation& call);

} // namespace console
