#pragma once

#include <algorithm>
#include <cstddef>
#include <string>

#include "../tests/support/ReferenceUtf8.h"
#include "Bytes.h"
#include "ut_PutStream.h"

namespace fuzz {

constexpr unsigned int failureNone = 0;
constexpr unsigned int failureOverflow = 1239;

/// A model of a `utility::PutStream` over a buffer of `capacity` bytes. Each operation returns the code that the stream
/// throws, or 0. The positions are undefined after a failure, so an input ends there.
class PutModel {
public:
    PutModel(std::size_t capacity, bool noThrow) : m_capacity(capacity), m_noThrow(noThrow) {}
    PutModel(const PutModel&) = delete;
    PutModel& operator=(const PutModel&) = delete;
    virtual ~PutModel() = default;

    /// Returns the readable bytes.
    std::string readable() const {
        return m_written.substr(m_read);
    }
    std::size_t unread() const {
        return m_written.size() - m_read;
    }
    /// Removes `count` readable bytes.
    void consume(std::size_t count) {
        m_read += count;
    }
    void rewind() {
        m_written.clear();
        m_read = 0;
    }
    void consolidate() {
        m_written.erase(0, m_read);
        m_read = 0;
    }

    unsigned int putC(char c) {
        if (available() < 1)
            return overflow();
        m_written += c;
        return failureNone;
    }
    virtual unsigned int putB(const std::string& bytes) {
        const std::size_t remaining = available();
        if (bytes.size() <= remaining) {
            m_written += bytes;
            return failureNone;
        }
        if (!m_noThrow)
            return failureOverflow;
        truncate(bytes, remaining);
        return failureNone;
    }
    unsigned int putS(const std::string& text) {
        const std::size_t remaining = available();
        if (text.size() < remaining) {
            m_written += text;
            return failureNone;
        }
        if (!m_noThrow)
            return failureOverflow;
        // A text that fills the space exactly, without a byte for the NUL, discards the unread bytes.
        if (text.size() == remaining) {
            m_written.resize(m_read);
        } else {
            truncate(text, remaining);
        }
        return failureNone;
    }
    /// `text` is the complete formatted text.
    unsigned int putF(const std::string& text) {
        const std::size_t remaining = available();
        if (text.size() <= remaining) {
            m_written += text;
            return failureNone;
        }
        truncate(text, remaining);
        return overflow();
    }
    /// Writes a value of fixed width, or nothing if it does not fit.
    unsigned int putWhole(const std::string& bytes) {
        if (available() < bytes.size())
            return overflow();
        m_written += bytes;
        return failureNone;
    }

    /// Returns how many more bytes fit.
    virtual std::size_t available() {
        return m_capacity - m_written.size();
    }
    unsigned int overflow() const {
        return m_noThrow ? failureNone : failureOverflow;
    }
    bool isNoThrow() const {
        return m_noThrow;
    }

protected:
    std::size_t m_capacity;
    std::string m_written;

private:
    /// Writes the bytes that fit. If nothing is thrown, a truncated character at the end is removed.
    void truncate(const std::string& text, std::size_t remaining) {
        m_written += text.substr(0, remaining);
        if (!m_noThrow)
            return;
        const std::string all = readable();
        for (std::size_t dropped = 0; dropped < 4 && dropped <= all.size(); ++dropped) {
            const test::Utf8Verdict verdict =
                test::referenceUtf8(reinterpret_cast<const unsigned char*>(all.data()),
                                    static_cast<unsigned int>(all.size() - dropped), "", "\t\n\r");
            if (!verdict.printable)
                continue;
            m_written.resize(m_written.size() - dropped);
            return;
        }
    }

    bool m_noThrow;
    std::size_t m_read = 0;
};

/// Does one write that `in` chooses, to `stream` and to `model`. Returns false after a failure.
inline bool writeBoth(Bytes& in, utility::PutStream& stream, PutModel& model) {
    unsigned int expected = failureNone;
    unsigned int code = failureNone;
    const unsigned int kind = in.below(4);
    const std::string text = kind == 1 ? in.bytes(80) : in.text(80);
    const std::unique_ptr<char[]> exact = exactCopy(text + '\0');
    switch (kind) {
    case 0:
        expected = model.putC(text.empty() ? 'c' : text[0]);
        code = codeOf([&] { stream.PutC(text.empty() ? 'c' : text[0]); });
        break;
    case 1:
        expected = model.putB(text);
        code = codeOf([&] { stream.PutB(exactCopy(text).get(), static_cast<int>(text.size())); });
        break;
    case 2:
        expected = model.putS(text);
        code = codeOf([&] { stream.PutS(exact.get()); });
        break;
    default:
        expected = model.putF("[" + text + "]");
        code = codeOf([&] { stream.PutF("[%s]", exact.get()); });
    }
    require(code == expected);
    return code == failureNone;
}

} // namespace fuzz
