#pragma once

#include <cstdio>
#include <cstring>
#include <string>

namespace test {

/// The expected result and log of `utility::Misc::isStringPrintableUtf8`, computed byte by byte from all `len` bytes.
struct Utf8Verdict {
    bool printable;
    std::string log; ///< empty when printable
};

inline Utf8Verdict referenceUtf8(const unsigned char* s, unsigned int len, const char* disallowed,
                                 const char* allowedControls) {
    char log[200] = "";
    for (unsigned int i = 0; i < len && s[i] != 0; ++i) {
        const unsigned int c = s[i];
        if (c >= 32 && c <= 126) {
            if (std::strchr(disallowed, static_cast<int>(c)) == nullptr)
                continue;
            std::snprintf(log, sizeof log, "isStringPrintableUtf8: found disallowed character '%c' = 0x%02x\n",
                          static_cast<int>(c), c);
            return {false, log};
        }
        if (c < 128) {
            if (std::strchr(allowedControls, static_cast<int>(c)) != nullptr)
                continue;
            std::snprintf(log, sizeof log, "isStringPrintableUtf8: found non-printable ASCII character 0x%02x\n", c);
            return {false, log};
        }
        unsigned int count = 0;
        for (unsigned int bit = 0x40; (c & bit) != 0 && bit > 1; bit >>= 1)
            ++count;
        if (count < 1 || count > 5) {
            std::snprintf(log, sizeof log, "isStringPrintableUtf8: found illegal UTF-8 first byte 0x%02x\n", c);
            return {false, log};
        }
        if (static_cast<unsigned long long>(i) + count >= len) {
            unsigned int b[5] = {0, 0, 0, 0, 0};
            for (unsigned int j = 0; j < 5 && i + j < len && s[i + j] != 0; ++j)
                b[j] = s[i + j];
            std::snprintf(log, sizeof log,
                          "isStringPrintableUtf8: partial UTF-8 character at end of string with i=%u, utfLen=%u: "
                          "0x%02x %02x %02x %02x %02x\n",
                          i, count, b[0], b[1], b[2], b[3], b[4]);
            return {false, log};
        }
        for (unsigned int j = 0; j < count; ++j) {
            const unsigned int next = s[i + 1 + j];
            if (next >= 0x80 && next <= 0xBF)
                continue;
            std::snprintf(log, sizeof log,
                          "isStringPrintableUtf8: found illegal UTF-8 byte 0x%02x at position i=%u j=%u\n", next, i, j);
            return {false, log};
        }
        i += count;
    }
    return {true, ""};
}

} // namespace test
