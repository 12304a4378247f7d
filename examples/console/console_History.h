#pragma once

#include <string>

#include "ut_CircularStream.h"

namespace console {

/// Keeps the last 64 KiB of commands and answers.
///
/// One thread at a time.
///
///     console::History history;
///     history.add("vx> date\n");
///     history.text();   // "vx> date\n"
class History {
public:
    History();

    /// Appends `text`.
    void add(const std::string& text);
    /// Appends `text` as whole lines: adds a newline before and after it where one is missing.
    void addLines(const std::string& text);
    /// Returns the text kept, from its first complete line.
    std::string text();

private:
    utility::CircularStream m_stream;
    unsigned long long m_added;
    bool m_atLineStart;
};

} // namespace console
