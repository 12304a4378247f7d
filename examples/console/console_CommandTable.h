#pragma once

#include <string>

#include "console_Command.h"
#include "ut_StringArray.h"

namespace console {

/// The commands of the console, found by their names or by unambiguous beginnings of them.
///
/// The table lives as long as the program.
///
///     utility::StringArray words(0);
///     words.Append("sh");
///     words.Append("f");
///     std::string problem;
///     unsigned int used = 0;
///     const console::Command* command = console::findCommand(words, &used, &problem);   // "show file"

/// The command that the first words name, and how many of them do; null with `problem` set when there is none.
const Command* findCommand(const utility::StringArray& words, unsigned int* used, std::string* problem);

/// The names and the summaries of all commands, in the order of the table; null ends them.
const Command* commandAt(unsigned int i);

} // namespace console
