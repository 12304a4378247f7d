#pragma once

#include <string>
#include <vector>

#include "LogCapture.h"

namespace test {

/// What was logged, oldest first, as "<type> <signature text>: <text>"; a message that names a function but no line
/// says so, and equals no expected one.
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
