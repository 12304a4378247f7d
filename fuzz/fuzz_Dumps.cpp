// Compares hex dumps and escaped text with simple renderings. The first byte chooses which.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Bytes.h"
#include "fw_Logger.h"
#include "ut_BufferStream.h"
#include "ut_Debug.h"

namespace {

using framework::Logger;
using fuzz::Bytes;
using fuzz::require;

typedef std::vector<std::string> Messages;

void collect(void* context, Logger::LogType type, const char*, int, const char* text) {
    require(type == Logger::LOG_DEBUG);
    static_cast<Messages*>(context)->push_back(text);
}

template<typename Operation>
Messages messagesOf(Operation operation) {
    Messages messages;
    Logger::setSink(collect, &messages);
    operation();
    Logger::setSink(nullptr, nullptr);
    return messages;
}

template<typename... Arguments>
std::string format(const char* text, Arguments... arguments) {
    char line[128];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
    std::snprintf(line, sizeof line, text, arguments...);
#pragma GCC diagnostic pop
    return line;
}

std::string hexOf(char c) {
    return format("%02x", static_cast<unsigned char>(c));
}

bool isBetween(char c, unsigned char first, unsigned char last) {
    const unsigned char byte = static_cast<unsigned char>(c);
    return byte >= first && byte <= last;
}

void checkPlain(const std::string& bytes) {
    const std::unique_ptr<char[]> exact = fuzz::exactCopy(bytes);
    std::string expected =
        format("hexDump of [%p], size %d\n\r", static_cast<void*>(exact.get()), static_cast<int>(bytes.size()));
    for (std::size_t start = 0; start < bytes.size(); start += 64) {
        const std::string line = bytes.substr(start, 64);
        expected += format("%04d: ", static_cast<int>(start));
        for (const char c : line)
            expected += hexOf(c) + ' ';
        expected += "\n      ";
        for (const char c : line)
            expected += (isBetween(c, 33, 126) ? std::string(1, c) : " ") + "  ";
        expected += '\n';
    }
    require(messagesOf([&] { utility::Debug::hexDump(exact.get(), static_cast<int>(bytes.size())); }) ==
            Messages{expected});
}

std::string formattedLine(const std::string& line, std::size_t start, std::size_t bytesPerLine) {
    std::string text = format("\n[%06d] ", static_cast<int>(start));
    for (std::size_t i = 0; i < bytesPerLine; ++i) {
        text += i % 4 == 0 && i > 0 ? " " : "";
        text += i < line.size() ? hexOf(line[i]) : "  ";
    }
    text += "  ";
    for (std::size_t i = 0; i < bytesPerLine; ++i) {
        const char c = i < line.size() ? line[i] : ' ';
        text += isBetween(c, 32, 126) ? c : '-';
    }
    return text;
}

void checkFormatted(const std::string& bytes, std::size_t bytesPerLine) {
    const std::size_t pageSize = 1024;
    const std::unique_ptr<char[]> exact = fuzz::exactCopy(bytes);
    Messages expected;
    for (std::size_t page = 0; page < bytes.size(); page += pageSize) {
        const std::size_t end = std::min(page + pageSize, bytes.size());
        std::string text;
        if (page == 0)
            text =
                format("\nHexDump of [%p], size %d", static_cast<void*>(exact.get()), static_cast<int>(bytes.size()));
        for (std::size_t start = page; start < end; start += bytesPerLine)
            text += formattedLine(bytes.substr(start, bytesPerLine), start, bytesPerLine);
        expected.push_back(text + "\n\r");
    }
    require(messagesOf([&] {
                utility::Debug::hexDumpFormatted(exact.get(), static_cast<unsigned int>(bytes.size()), 64,
                                                 static_cast<unsigned int>(bytesPerLine));
            }) == expected);
}

std::string readable(const std::string& bytes) {
    std::string text;
    for (const char c : bytes) {
        if (c >= 7 && c <= 13) {
            text += std::string("\\") + "abtnvfr"[c - 7];
        } else if (c == '"' || c == '\\') {
            text += std::string("\\") + c;
        } else {
            text += isBetween(c, 32, 126) ? std::string(1, c) : "\\x" + hexOf(c);
        }
    }
    return text;
}

void checkReadable(const std::string& bytes, std::size_t capacity) {
    const std::string expected = readable(bytes);
    const std::unique_ptr<char[]> exact = fuzz::exactCopy(bytes);
    utility::BufferStream out(static_cast<int>(capacity));
    const unsigned int code =
        fuzz::codeOf([&] { utility::Debug::readableString(exact.get(), &out, static_cast<int>(bytes.size())); });
    require(code == (expected.size() <= capacity ? 0 : 1239));
    const std::string seen(out.pBuffer(), static_cast<std::size_t>(out.WritePosition()));
    require(code == 0 ? seen == expected : expected.compare(0, seen.size(), seen) == 0);
}

void checkDigits(std::uint8_t byte) {
    const char c = static_cast<char>(byte);
    require(utility::Debug::hexChar(c) == (byte < 16 ? "0123456789abcdef"[byte] : '0'));
    const std::string digits = "0123456789abcdefABCDEF";
    const std::size_t place = digits.find(c);
    const std::size_t value = place == std::string::npos ? 255 : place < 16 ? place : place - 6;
    require(static_cast<unsigned char>(utility::Debug::hexFromChar(c)) == value);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Bytes in(data, size);
    const unsigned int kind = in.below(3);
    const std::uint8_t byte = in.byte();
    // Long enough for several messages.
    std::string bytes = in.rest();
    if (byte % 8 == 0)
        bytes += bytes + bytes;
    checkDigits(byte);
    switch (kind) {
    case 0:
        checkPlain(bytes);
        break;
    case 1:
        checkFormatted(bytes, byte % 70U + 1);
        break;
    default:
        checkReadable(bytes, byte);
    }
    return 0;
}
