#pragma once

#include <string>

#include "console_Invocation.h"

namespace console {

/// What the history keeps of a command and its answer.
enum Remembered { REMEMBER_ALL, REMEMBER_NAME, REMEMBER_NOTHING };

/// What the Tab key completes in the arguments of a command.
enum Completed { COMPLETE_NOTHING, COMPLETE_PATHS, COMPLETE_SWITCHES, COMPLETE_USERS, COMPLETE_COMMANDS };

/// An entry of the command table.
struct Command {
    const char* name;              ///< one or two words
    const char* arguments;         ///< as the help shows them; may be empty
    const char* summary;           ///< what the command does, as the help shows it
    unsigned int fewest;           ///< smallest number of arguments
    unsigned int most;             ///< largest number of arguments
    bool (*run)(Invocation& call); ///< returns false after `fail`
    Completed completed = COMPLETE_NOTHING;
    Remembered remembered = REMEMBER_ALL;
};

/// Returns the name and the arguments of a command, as "usage: " shows them.
std::string usageOf(const Command& command);

} // namespace console
