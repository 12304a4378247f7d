#pragma once

#include <string>

#include "console_Command.h"
#include "ut_StringArray.h"

namespace console {

// The commands of the console, found by their names or by unambiguous beginnings of the words of a name. The table
// lives as long as the program.
//
//     utility::StringArray words(0);
//     words.Append("sh");
//     words.Append("f");
//     std::string problem;
//     unsigned int used = 0;
//     const console::Command* command = console::findCommand(words, &used, &problem);   // "show file", 2 words used

/// The command that the first words name, and how many of them do; null with `problem` set when there is none.
const Command* findCommand(const utility::StringArray& words, unsigned int* used, std::string* problem);

/// Command `i` in the order in which they are listed; null behind the last.
const Command* commandAt(unsigned int i);

/// `line` with the command name that it begins written out as far as that is unambiguous; else `line` as it is.
std::string completeCommand(const std::string& line);

} // namespace console
