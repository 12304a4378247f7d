#include "console_Command.h"

namespace console {

std::string usageOf(const Command& command) {
    return std::string(command.name) + (*command.arguments != 0 ? " " : "") + command.arguments;
}

} // namespace console
