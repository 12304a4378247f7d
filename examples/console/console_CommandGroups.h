#pragma once

#include "console_Command.h"

namespace console {

// Each group ends with a command without a name.
extern const Command generalCommands[];
extern const Command fileCommands[];

} // namespace console
