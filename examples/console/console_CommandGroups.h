#pragma once

#include "console_Command.h"

namespace console {

// Each group ends with an entry with a null name.
extern const Command generalCommands[];
extern const Command fileCommands[];
extern const Command textCommands[];
extern const Command systemCommands[];
extern const Command pathCommands[];
extern const Command userCommands[];

} // namespace console
