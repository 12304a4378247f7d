#include "LogCapture.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include <sys/mman.h>

namespace test {

namespace {

constexpr std::size_t chunkSize = std::size_t{1} << 20;

std::size_t aligned(std::size_t size) {
    return (size + alignof(std::max_align_t) - 1) & ~(alignof(std::max_align_t) - 1);
}

} // namespace

struct LogCapture::Record {
    Record* next;
    framework::Logger::LogType type;
    int line;
    const char* function;
    const char* text;
};

struct LogCapture::Chunk {
    Chunk* next;
    std::size_t size;
    std::size_t used;
};

LogCapture::LogCapture() {
    framework::Logger::setSink(sink, this);
}

LogCapture::~LogCapture() {
    framework::Logger::setSink(nullptr, nullptr);
    releaseChunks();
}

void LogCapture::sink(void* context, framework::Logger::LogType type, const char* function, int line,
                      const char* text) {
    static_cast<LogCapture*>(context)->add(type, function, line, text);
}

void LogCapture::add(framework::Logger::LogType type, const char* function, int line, const char* text) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    const char* name = function != nullptr ? function : "";
    const std::size_t nameSize = std::strlen(name) + 1;
    const std::size_t textSize = std::strlen(text) + 1;
    void* storage = reserve(sizeof(Record) + nameSize + textSize);
    char* texts = static_cast<char*>(storage) + sizeof(Record);
    std::memcpy(texts, name, nameSize);
    std::memcpy(texts + nameSize, text, textSize);
    auto* record = new (storage) Record{nullptr, type, line, texts, texts + nameSize};
    (m_last != nullptr ? m_last->next : m_first) = record;
    m_last = record;
}

void* LogCapture::reserve(std::size_t size) {
    size = aligned(size);
    if (m_chunks == nullptr || m_chunks->size - m_chunks->used < size) {
        const std::size_t header = aligned(sizeof(Chunk));
        const std::size_t mapped = std::max(chunkSize, header + size);
        void* storage = mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (storage == MAP_FAILED) {
            std::fputs("no memory to collect a log message\n", stderr);
            std::abort();
        }
        m_chunks = new (storage) Chunk{m_chunks, mapped, header};
    }
    void* piece = reinterpret_cast<char*>(m_chunks) + m_chunks->used;
    m_chunks->used += size;
    return piece;
}

void LogCapture::releaseChunks() {
    while (m_chunks != nullptr) {
        Chunk* chunk = m_chunks;
        m_chunks = chunk->next;
        munmap(chunk, chunk->size);
    }
}

std::vector<LogEntry> LogCapture::entries() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    std::vector<LogEntry> result;
    for (const Record* record = m_first; record != nullptr; record = record->next)
        result.push_back({record->type, record->function, record->line, record->text});
    return result;
}

std::vector<std::string> LogCapture::texts() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    std::vector<std::string> result;
    for (const Record* record = m_first; record != nullptr; record = record->next)
        result.push_back(record->text);
    return result;
}

unsigned int LogCapture::count() const {
    const std::lock_guard<std::mutex> guard(m_mutex);
    unsigned int result = 0;
    for (const Record* record = m_first; record != nullptr; record = record->next)
        ++result;
    return result;
}

void LogCapture::clear() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    releaseChunks();
    m_first = nullptr;
    m_last = nullptr;
}

bool LogCapture::contains(framework::Logger::LogType type, const std::string& text) const {
    const std::vector<LogEntry> all = entries();
    return std::any_of(all.begin(), all.end(),
                       [&](const LogEntry& entry) { return entry.type == type && entry.text == text; });
}

bool LogCapture::contains(framework::Logger::LogType type, const std::string& function, const std::string& text) const {
    const std::vector<LogEntry> all = entries();
    return std::any_of(all.begin(), all.end(), [&](const LogEntry& entry) {
        return entry.type == type && entry.function == function && entry.text == text && entry.line > 0;
    });
}

} // namespace test
