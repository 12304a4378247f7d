#pragma once

#include <string>

#include "console_Command.h"
#include "ut_StringArray.h"

namespace console {

// The commands of the console, found by name. Each word of a name may be abbreviated to an unambiguous prefix. The
// table lives as long as the program.
//
//     utility::StringArray words(0);
//     words.Append("sh");
//     words.Append("f");
//     std::string problem;
//     unsigned int used = 0;
//     const console::Command* command = console::findCommand(words, &used, &problem);   // "show file", 2 words used

/// Returns the command that the first words name and stores their number in `used`. Returns null and sets `problem` if
/// no command matches or more than one does.
const Command* findCommand(const utility::StringArray& words, unsigned int* used, std::string* problem);

/// Returns command `i` in the order of the help; null if there are no more.
const Command* commandAt(unsigned int i);

/// Returns `line` with its abbreviated command name completed as far as that is unambiguous, or `line` unchanged.
std::string completeCommand(const std::string& line);

} // namespace console
