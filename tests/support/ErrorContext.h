#pragma once

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "LogCapture.h"
#include "TraceLines.h"

namespace test {

/// Expects an error message with this signature text and text, followed by the error context, and nothing else.
inline void expectErrorWithContext(const LogCapture& log, const std::string& function, const std::string& text) {
    const std::vector<LogEntry> entries = log.entries();
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(traceLines(log)[0], traceLine(0, function, text));
    EXPECT_EQ(entries[1].type, framework::Logger::LOG_ERROR);
    EXPECT_EQ(entries[1].text, "ErrorContext - for diagnostic purposes.");
    EXPECT_EQ(entries[2].type, framework::Logger::LOG_ERROR);
    EXPECT_EQ(entries[2].text.find("Backtrace of "), 0U);
}

} // namespace test
