#include "console_EscapingOutputStream.h"

#include <algorithm>
#include <cstring>

namespace console {

namespace {

// The UTF-8 characters with a lead byte from `first` to `last`: their length and the range of the second byte.
struct Lead {
    unsigned char first;
    unsigned char last;
    unsigned char length;
    unsigned char secondFirst;
    unsigned char secondLast;
};

// Well-formed UTF-8 without control characters. The ranges exclude C1 controls, overlong forms, surrogates, and code
// points above U+10FFFF.
constexpr Lead leads[] = {{0x20, 0x7E, 1, 0, 0},       {0xC2, 0xC2, 2, 0xA0, 0xBF}, {0xC3, 0xDF, 2, 0x80, 0xBF},
                          {0xE0, 0xE0, 3, 0xA0, 0xBF}, {0xE1, 0xEC, 3, 0x80, 0xBF}, {0xED, 0xED, 3, 0x80, 0x9F},
                          {0xEE, 0xEF, 3, 0x80, 0xBF}, {0xF0, 0xF0, 4, 0x90, 0xBF}, {0xF1, 0xF3, 4, 0x80, 0xBF},
                          {0xF4, 0xF4, 4, 0x80, 0x8F}};

unsigned int byteAt(const char* text, std::size_t i) {
    return static_cast<unsigned char>(text[i]);
}

// Returns the length of the character at `text`: more than `size` if it is incomplete, 0 if it must be escaped.
std::size_t lengthOfCharacter(const char* text, std::size_t size) {
    for (const Lead& lead : leads) {
        if (byteAt(text, 0) < lead.first || byteAt(text, 0) > lead.last)
            continue;
        for (std::size_t i = 1; i < std::min<std::size_t>(lead.length, size); ++i) {
            if (byteAt(text, i) < (i == 1 ? lead.secondFirst : 0x80U) ||
                byteAt(text, i) > (i == 1 ? lead.secondLast : 0xBFU))
                return 0;
        }
        return lead.length;
    }
    return 0;
}

// Appends `text` to `safe`, escaped except for the control characters in `allowed`. Stops before an incomplete
// character at the end, which it escapes if `isEnd`. Returns the number of bytes consumed.
std::size_t escape(const std::string& text, const char* allowed, bool isEnd, std::string* safe) {
    static constexpr char digits[] = "0123456789abcdef";
    std::size_t at = 0;
    while (at < text.size()) {
        const char* character = text.data() + at;
        std::size_t length = lengthOfCharacter(character, text.size() - at);
        if (*character != 0 && std::strchr(allowed, *character) != nullptr)
            length = 1;
        if (length > text.size() - at && !isEnd)
            break;
        if (length > 0 && length <= text.size() - at) {
            safe->append(character, length);
            at += length;
        } else {
            safe->append("\\x")
                .append(1, digits[byteAt(character, 0) >> 4])
                .append(1, digits[byteAt(character, 0) & 15]);
            ++at;
        }
    }
    return at;
}

} // namespace

EscapingOutputStream::EscapingOutputStream(framework::OutputStream& target) : m_target(target) {}

bool EscapingOutputStream::StartOutputStream() {
    m_held.clear();
    return m_target.StartOutputStream();
}

void EscapingOutputStream::EndOutputStream() {
    pass(true);
    m_target.EndOutputStream();
}

bool EscapingOutputStream::SendOutputStream(const char* data, unsigned int size) {
    m_held.append(data, size);
    return pass(false);
}

bool EscapingOutputStream::pass(bool isEnd) {
    std::string safe;
    m_held.erase(0, escape(m_held, "\t\n", isEnd, &safe));
    return safe.empty() || m_target.SendOutputStream(safe.data(), static_cast<unsigned int>(safe.size()));
}

bool EscapingOutputStream::isOutputStreamOpen() {
    return m_target.isOutputStreamOpen();
}

bool EscapingOutputStream::isOutputStreamInError() {
    return m_target.isOutputStreamInError();
}

bool EscapingOutputStream::isOutputStreamAtEnd() {
    return m_target.isOutputStreamAtEnd();
}

std::string escapedLine(const std::string& text) {
    std::string line;
    escape(text, "", true, &line);
    return line;
}

} // namespace console
