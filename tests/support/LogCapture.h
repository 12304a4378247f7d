#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "fw_Logger.h"

namespace test {

/// One logged message; `function` is empty and `line` 0 where the call named none.
struct LogEntry {
    framework::Logger::LogType type;
    std::string function;
    int line;
    std::string text;
};

/// Collects what is logged during its life, from every thread, instead of showing it.
///
/// One at a time. Collecting takes nothing from the heap, so that allocations can be counted or made to fail meanwhile.
///
///     test::LogCapture log;
///     framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "%d ports", 4);
///     EXPECT_TRUE(log.contains(framework::Logger::LOG_ERROR, "4 ports"));
class LogCapture {
public:
    LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture();

    /// The messages so far, oldest first.
    std::vector<LogEntry> entries() const;
    /// The texts alone, oldest first.
    std::vector<std::string> texts() const;
    unsigned int count() const;
    void clear();

    /// Whether a message with just this text was logged.
    bool contains(framework::Logger::LogType type, const std::string& text) const;
    /// Whether a message with just this signature text and text was logged, with the line of its caller.
    bool contains(framework::Logger::LogType type, const std::string& function, const std::string& text) const;

private:
    struct Record;
    struct Chunk;

    static void sink(void* context, framework::Logger::LogType type, const char* function, int line, const char* text);
    void add(framework::Logger::LogType type, const char* function, int line, const char* text);
    void* reserve(std::size_t size);
    void releaseChunks();

    mutable std::mutex m_mutex;
    Chunk* m_chunks = nullptr;
    Record* m_first = nullptr;
    Record* m_last = nullptr;
};

} // namespace test
