#pragma once

#include <string>
#include <vector>

#include "LogCapture.h"

namespace test {

/// One message as `traceLines` returns it.
inline std::string traceLine(int type, const std::string& function, const std::string& text) {
    return std::to_string(type) + " " + function + ": " + text;
}

/// The messages logged, oldest first, as "<type> <signature text>: <text>". A message with a function but without a
/// line contains " (no line)", so that it differs from every expected text.
///
///     EXPECT_EQ(test::traceLines(log), (std::vector<std::string>{test::traceLine(3, APPEND, "...")}));
inline std::vector<std::string> traceLines(const LogCapture& log) {
    std::vector<std::string> lines;
    for (const LogEntry& entry : log.entries()) {
        const char* where = !entry.function.empty() && entry.line <= 0 ? " (no line)" : "";
        lines.push_back(traceLine(entry.type, entry.function + where, entry.text));
    }
    return lines;
}

} // namespace test
