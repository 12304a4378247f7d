#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "fw_Logger.h"

namespace test {

/// One logged message; `function` is empty and `line` is 0 if the call had none.
struct LogEntry {
    framework::Logger::LogType type;
    std::string function;
    int line;
    std::string text;
};

/// Collects the messages logged by all threads while it exists, instead of printing them.
///
/// One at a time. Collecting does not use the heap, so a test can count allocations or make them fail.
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
    /// The number of messages so far.
    unsigned int count() const;
    /// Discards the messages so far.
    void clear();

    /// Whether a message with exactly this text was logged.
    bool contains(framework::Logger::LogType type, const std::string& text) const;
    /// Whether a message with exactly this signature text and text was logged, with a line above 0.
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
