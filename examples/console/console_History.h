#pragma once

#include <string>

#include "ut_CircularStream.h"

namespace console {

/// Remembers the last commands and answers, as many as fit into 64 KiB.
///
/// One thread at a time.
///
///     console::History history;
///     history.add("vx> date\n");
///     history.text();   // "vx> date\n"
class History {
public:
    History();

    void add(const std::string& text);
    /// Adds `text` as lines of its own.
    void addLines(const std::string& text);
    /// What is remembered, from the first whole line on.
    std::string text();

private:
    utility::CircularStream m_stream;
    unsigned long long m_added;
    bool m_atLineStart;
};

} // namespace console
