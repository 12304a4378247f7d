#pragma once

#include <string>
#include <vector>

#include "console_CommandGroup.h"
#include "ut_StringArray.h"

namespace console {

// The commands of the console, found by name. The table lives as long as the program.
//
//     utility::StringArray words(0);
//     words.Append("sh");
//     words.Append("f");
//     const console::Lookup found = console::findCommand(words);   // "show file", 2 words used

/// What `findCommand` found.
struct Lookup {
    const Command* command; ///< null if no command matches, or more than one does
    unsigned int used;      ///< the number of words that name the command
    std::string problem;    ///< why there is no command
};

/// The rule for each word that may be abbreviated: returns the name that is equal to `word`, or else all that begin
/// with it.
std::vector<std::string> matches(const std::vector<std::string>& names, const std::string& word);

/// Returns all groups of commands, in the order of the help.
const std::vector<const CommandGroup*>& commandGroups();

/// Returns the command that the first words name. Each word of a name may be abbreviated; see `matches`.
Lookup findCommand(const utility::StringArray& words);

/// Returns the name of a command that `text` resembles: at most a third of its characters, but not more than two, are
/// wrong, missing or additional. Empty if there is none.
std::string nearestCommand(const std::string& text);

/// Returns command `i` in the order of the help; null if there are no more.
const Command* commandAt(unsigned int i);

} // namespace console
