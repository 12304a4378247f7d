// Misc: checks and conversions of texts.

#include "ut_Misc.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstring>

#include "fw_Logger.h"
#include "internal/ut_Utf8.h"

namespace utility {

using framework::Logger;

bool Misc::isStringPrintableAscii(const char* text) {
    if (text == nullptr)
        return false;
    while (isPrintableAscii(static_cast<unsigned char>(*text)))
        ++text;
    return *text == 0;
}

bool Misc::isStringPrintableUtf8(const char* s, unsigned int len, const char* disallowed, const char* allowedControls) {
    return isPrintableUtf8(s, len, disallowed, allowedControls);
}

bool Misc::truncateUtf8(char* s) {
    if (s == nullptr)
        return false;
    unsigned int length = static_cast<unsigned int>(std::strlen(s));
    // The empty text is printable, so `length` does not wrap around.
    for (int attempt = 0; attempt < 4; ++attempt, --length) {
        if (!isStringPrintableUtf8(s, length, "", "\t\n\r"))
            continue;
        s[length] = 0;
        return true;
    }
    Logger::StaticLog(Logger::LOG_ERROR, "truncateUtf8: String is not a printable UTF-8 string: '%.200s'", s);
    return false;
}

char* Misc::escapeDoubleQuotes(char* out, const char* in) {
    if (out == nullptr) {
        Logger::StaticLog(Logger::LOG_ERROR, "escapeDoubleQuotes: pOutString is NULL");
        return nullptr;
    }
    if (in == nullptr) {
        Logger::StaticLog(Logger::LOG_WARNING, "escapeDoubleQuotes: pInString is NULL");
        in = "";
    }
    // Move the text to the end of the result first: `in` may overlap `out`, and writing must not overtake reading.
    const std::size_t length = std::strlen(in);
    const std::ptrdiff_t quotes = std::count(in, in + length, '"');
    const char* from = static_cast<const char*>(std::memmove(out + quotes, in, length + 1));
    for (char* at = out; at != from;) {
        if (*from == '"')
            *at++ = '\\';
        *at++ = *from++;
    }
    return out;
}

char* Misc::stringToLower(char* s) {
    for (char* at = s; at != nullptr && *at != 0; ++at) {
        *at = static_cast<char>(std::tolower(static_cast<unsigned char>(*at)));
    }
    return s;
}

int Misc::parseTokens(char** tokens, int max, char* text, const char* delimiters) {
    if (tokens == nullptr || max < 1)
        return 0;
    if (text == nullptr) {
        tokens[0] = nullptr;
        return 0;
    }
    if (delimiters == nullptr)
        delimiters = "";
    char* rest = nullptr;
    int i = 0;
    while (true) {
        tokens[i] = strtok_r(i == 0 ? text : nullptr, delimiters, &rest);
        if (tokens[i] == nullptr || i == max - 1)
            return i;
        ++i;
    }
}

} // namespace utility
