#pragma once

#include <string>
#include <vector>

namespace console {

/// What the Tab key can add to a line.
///
///     const console::Completion completion = console::complete("show f");
///     completion.replaced;     // 1: the "f"
///     completion.candidates;   // "file"
struct Completion {
    std::size_t replaced;                ///< the number of bytes at the end of the line that a candidate replaces
    std::vector<std::string> candidates; ///< in alphabetical order; each ends with a blank if the word is complete
};

/// Returns what can follow at the end of `line`: the names of commands, and for their arguments paths, debug switches,
/// users or commands.
Completion complete(const std::string& line);

/// Returns the longest text that all of `candidates` begin with; it does not end within a UTF-8 character.
std::string commonBeginning(const std::vector<std::string>& candidates);

} // namespace console
