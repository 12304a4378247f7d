#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "fw_Exception.h"
#include "fw_Logger.h"

namespace fuzz {

/// Prints the place and aborts, which is a finding, unless `holds`.
inline void require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (holds)
        return;
    std::fprintf(stderr, "%s:%d: the requirement does not hold\n", file, line);
    std::abort();
}

/// Reads an input as decisions, numbers and texts. Past the end it returns zeros and empty texts.
///
///     fuzz::Bytes in(data, size);
///     const unsigned int choice = in.below(3);
///     while (!in.isAtEnd()) takeStep(in);
class Bytes {
public:
    Bytes(const std::uint8_t* data, std::size_t size) : m_data(data), m_left(size) {}

    bool isAtEnd() const {
        return m_left == 0;
    }
    std::uint8_t byte() {
        return number<std::uint8_t>();
    }
    /// Reads one byte and returns a number less than `bound` (1 to 256).
    unsigned int below(unsigned int bound) {
        return byte() % bound;
    }
    bool flag() {
        return below(2) != 0;
    }
    /// Reads a number of type `Number` in the machine's byte order.
    template<typename Number>
    Number number() {
        Number value = 0;
        const std::size_t count = std::min(m_left, sizeof value);
        if (count > 0)
            std::memcpy(&value, m_data, count);
        skip(count);
        return value;
    }
    /// Reads a length byte, reduced to less than `bound` (1 to 256), and that many bytes.
    std::string bytes(unsigned int bound) {
        return take(below(bound));
    }
    /// As `bytes`, truncated at the first NUL.
    std::string text(unsigned int bound) {
        return bytes(bound).c_str();
    }
    /// Reads all remaining bytes.
    std::string rest() {
        return take(m_left);
    }
    /// As `rest`, truncated at the first NUL.
    std::string restText() {
        return rest().c_str();
    }

private:
    std::string take(std::size_t count) {
        count = std::min(count, m_left);
        const std::string taken(reinterpret_cast<const char*>(m_data), count);
        skip(count);
        return taken;
    }
    void skip(std::size_t count) {
        m_data += count;
        m_left -= count;
    }

    const std::uint8_t* m_data;
    std::size_t m_left;
};

/// Runs `operation`; returns the code of the failure that it throws, or 0.
template<typename Operation>
unsigned int codeOf(Operation&& operation) {
    try {
        operation();
    } catch (framework::Exception* thrown) {
        return std::unique_ptr<framework::Exception>(thrown)->code();
    }
    return 0;
}

/// Returns a copy of exactly these bytes, so that a sanitizer reports each access past them.
inline std::unique_ptr<char[]> exactCopy(const std::string& bytes) {
    std::unique_ptr<char[]> copy(new char[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), copy.get());
    return copy;
}

/// Discards log messages while it exists: hostile input would fill the log.
class SilentLog {
public:
    SilentLog() {
        framework::Logger::setSink(discard, nullptr);
    }
    SilentLog(const SilentLog&) = delete;
    SilentLog& operator=(const SilentLog&) = delete;
    ~SilentLog() {
        framework::Logger::setSink(nullptr, nullptr);
    }

private:
    static void discard(void*, framework::Logger::LogType, const char*, int, const char*) {}
};

} // namespace fuzz
