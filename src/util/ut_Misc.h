#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// Turns numbers into display text and back, vets text before it is stored or shown, and computes checksums.
///
/// Everything is static and keeps no state; texts and buffers stay the caller's. A formatter takes the caller's buffer
/// and its size in bytes last, and returns the buffer. Any thread may call at any time; two threads must not share a
/// buffer. The checks log why they refuse at level 0. `toDecimal`, `toDSdecimal` and `genpw` throw code 1239 of
/// `PutStream` for what does not fit, and leave what did. `toHexString` of numbers and `toMacAddress` cut it off,
/// `toHexString` of bytes and `toIPV4String` return null. In a null buffer, or one of a size below 1, nothing fits.
///
///     char text[32];
///     utility::Misc::toDSdecimal(1234567L, 3, text, sizeof text);       // text is "1.23 MB"
///     utility::Misc::isStringPrintableUtf8("caf\xC3\xA9", 5, "", "");   // true
class VXUT_EXPORT Misc {
public:
    /// The smallest power of two not below `n`; 0 for 0 and for what exceeds 2^31.
    static unsigned int makePowerOf2(unsigned int n);

    /// Writes `v` in lower-case hexadecimal, with `leadingZeros` in full width. Zero is always the single digit 0:
    /// callers see that `leadingZeros` has no effect on it. Contract: room for all digits and the terminator (17, 9 or
    /// 5 bytes); with less, the text is cut and not terminated.
    static char* toHexString(unsigned long long v, bool leadingZeros, char* buf, int size);
    static char* toHexString(unsigned int v, bool leadingZeros, char* buf, int size);
    static char* toHexString(unsigned short v, bool leadingZeros, char* buf, int size);
    /// The same with one digit or two; here `leadingZeros` counts for zero too (contract: 3 bytes).
    static char* toHexString(unsigned char v, bool leadingZeros, char* buf, int size);
    /// Writes two lower-case digits for each of `count` bytes; none for null or a `count` below 1. Null when they and
    /// the terminator do not fit.
    static char* toHexString(unsigned char* bytes, int count, char* buf, int size);

    /// Whether every character after an optional "0x" or "0X" passes `isHexChar`; an empty remainder passes. Null does
    /// not.
    static bool isValidHexNumber(const char* text);
    /// True for '0' to '9', 'a' to 'f', and every character up to 'A' (blanks, punctuation and controls included);
    /// false for 'B' to 'F' and the rest: callers rely on exactly this set when they vet identifiers.
    static bool isHexChar(char c);

    /// Read hexadecimal digits of either case; the last digits that fit the result count. Nothing is validated: any
    /// other character, also the x of a prefix, ORs 255 into the value. Null gives 0.
    static uint8_t uint8FromHexString(const char* text);
    static uint16_t uint16FromHexString(const char* text);
    static unsigned int uint32FromHexString(const char* text);
    static unsigned long long uint64FromHexString(const char* text);

    /// Writes `v` in decimal with a ',' between groups of three. Needs two bytes more than the text: the terminator is
    /// written through the stream, which keeps one of its own.
    static char* toDecimal(long v, char* buf, int size);
    static char* toDecimal(long long v, char* buf, int size);

    /// Writes a capacity of `v` bytes with `digits` (at least 3) significant digits and the fitting unit, a power of
    /// 1000 from " kB" up, none for plain bytes. Callers rely on the value being cut, never rounded.
    static char* toDSdecimal(long v, int digits, char* buf, int size);
    static char* toDSdecimal(long long v, int digits, char* buf, int size);

    /// Writes the four bytes of `addr` in dotted decimal, the lowest byte first: a network-order address word as a
    /// little-endian host holds it. Null when it does not fit (up to 16 bytes).
    static char* toIPV4String(unsigned int addr, char* buf, int size);

    /// Writes the low 48 bits of `v` as six pairs of lower-case digits separated by ':'. Contract: 18 bytes; with less,
    /// the text is cut and not terminated.
    static char* toMacAddress(unsigned long long v, char* buf, int size);
    /// The six bytes at `mac` as one number, the first byte being the most significant; null gives 0.
    static unsigned long long uint64FromMACAddress(unsigned char* mac);

    /// Whether every byte of `text` is from 32 to 126; true for the empty text, false for null.
    static bool isStringPrintableAscii(const char* text);

    /// Whether the first `len` bytes of `s`, or those up to a NUL, are whole UTF-8 characters without a printable ASCII
    /// character of `disallowed` and without control characters other than those of `allowedControls` (null: none).
    /// Logs the first offence. Callers see the old five- and six-byte forms, overlong forms and surrogates accepted. So
    /// `disallowed` does not refuse the overlong form of one of its characters, such as "\xC0\xAF" for a '/'.
    /// A null `s` holds no bytes: true for a `len` of 0, else false without a log line.
    static bool isStringPrintableUtf8(const char* s, unsigned int len, const char* disallowed,
                                      const char* allowedControls);

    /// Cuts up to three bytes off `s` until it is printable UTF-8 with tabs and line ends. False, logged and with `s`
    /// unchanged, when that does not help; false for null.
    static bool truncateUtf8(char* s);

    /// Copies `in` to `out` with a backslash before each '"'. Contract: `out` has room for twice the text and its
    /// terminator; `in` may lie in that room. A null `out` is logged at level 0 and returned; a null `in` is logged at
    /// level 1 and gives the empty text.
    static char* escapeDoubleQuotes(char* out, const char* in);

    /// `tolower` on every byte of `s` in place; returns `s`, also null.
    static char* stringToLower(char* s);

    /// Splits `text` in place at any of `delimiters` and points `tokens` at the pieces. When the text runs out first,
    /// the result is the count of tokens, and the entry behind them is null. When `max` entries are filled first,
    /// callers rely on the result being `max` - 1, one less than the entries filled; the text behind the last one is
    /// not split. A null `tokens` or a `max` below 1 fills nothing and gives 0. A null `text` is empty, null
    /// `delimiters` are none.
    static int parseTokens(char** tokens, int max, char* text, const char* delimiters);

    /// Sleep; a signal that is handled ends it early.
    static void sleepSeconds(unsigned int s);
    static void sleepMicroseconds(unsigned long long us);

    /// Writes the platform's text for `errno` into `buf`, cut to `size` bytes, and returns `errno`; the empty text and
    /// 0 when there is no error. A null `buf` takes nothing.
    static int getErrnoMsg(char* buf, unsigned int size);

    /// The 1-Wire CRC-8 (polynomial x^8 + x^5 + x^4 + 1, least significant bit first): entry `i` is the remainder of
    /// `i`.
    static const unsigned char m_crc_array[256];
    /// The CRC that follows `crc` after the low 8 bits of `byte`.
    static unsigned char crc_table(int byte, unsigned char crc);
    /// The 1-Wire CRC-8 over `len` bytes, started from 0xFF instead of 0; 0xFF for an empty range and for null.
    static unsigned char calc_crc(char* data, int len);

    /// Writes the MD5 (RFC 1321) of `text` into `out` as 32 lower-case hexadecimal digits and a terminator, as far as
    /// `size` bytes allow; a null `text` is empty, a null `out` takes nothing. The result is 2, whatever fits: callers
    /// see the width of the last byte formatted.
    static int calc_md5(const char* text, char* out, int size);
    /// Copies the first `size` (at most 16) raw bytes of the MD5 of `len` bytes to `out` and returns `out`; null `data`
    /// and a `len` below 1 are no bytes, a null `out` takes nothing. Callers rely on raw bytes without a terminator,
    /// not hexadecimal text.
    static char* calc_md5_hex(const char* data, int len, char* out, int size);

    /// Derives a password of `size` - 1 lower-case hexadecimal digits from three texts. Contract: `size` - 1 divides
    /// 32; with another size the text is cut to it and terminated. Null texts are empty, a null `out` takes nothing.
    /// Throws code 1239 of `PutStream` when the texts exceed 247 characters together.
    static void genpw(const char* a, const char* b, const char* c, char* out, int size);
};

} // namespace utility
