#pragma once

#include <string>
#include <vector>

#include "LogCapture.h"

namespace test {

/// The messages logged, oldest first, as "<type> <signature text>: <text>". A message with a function but without a
/// line contains " (no line)", so that it differs from every expected text.
///
///     EXPECT_EQ(test::traceLines(log), (std::vector<std::string>{"3 void utility::IntArray::Append(int): ..."}));
inline std::vector<std::string> traceLines(const LogCapture& log) {
    std::vector<std::string> lines;
    for (const LogEntry& entry : log.entries()) {
        const char* where = !entry.function.empty() && entry.line <= 0 ? " (no line)" : "";
        lines.push_back(std::to_string(static_cast<int>(entry.type)) + " " + entry.function + where + ": " +
                        entry.text);
    }
    return lines;
}

} // namespace test
