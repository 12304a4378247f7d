#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// Formats and parses numbers, validates text before it is stored or shown, and computes checksums.
///
/// Stateless: any thread may call any operation, but two threads must not share a buffer. Callers own all texts and
/// buffers. The last two parameters of a formatter are the caller's buffer `buf` and its `size` in bytes, and it
/// returns `buf`. No text fits if `buf` is null or `size` is below 1. If the text does not fit:
/// - `toDecimal`, `toDSdecimal` and `genpw` throw code 1239 from `PutStream`; the part that fits is written.
/// - `toHexString` of a number and `toMacAddress` truncate it.
/// - `toHexString` of bytes and `toIPV4String` return null.
///
/// `isStringPrintableUtf8` and `truncateUtf8` log at level 0 why they reject a text.
///
///     char text[32];
///     utility::Misc::toDSdecimal(1234567L, 3, text, sizeof text);       // text is "1.23 MB"
///     utility::Misc::isStringPrintableUtf8("caf\xC3\xA9", 5, "", "");   // true
class VXUT_EXPORT Misc {
public:
    /// Returns the smallest power of two that is not less than `n`, or 0 if `n` is 0 or greater than 2^31.
    static unsigned int makePowerOf2(unsigned int n);

    /// Writes `v` in lower-case hexadecimal, padded with zeros to 16 digits if `leadingZeros` is true. Zero is never
    /// padded: callers rely on the single digit 0. `buf` must have space for all digits and the terminator, at most 17
    /// bytes; in a smaller one the text is truncated and not terminated.
    static char* toHexString(unsigned long long v, bool leadingZeros, char* buf, int size);
    /// Does the same as for `unsigned long long`, with at most 8 digits (9 bytes).
    static char* toHexString(unsigned int v, bool leadingZeros, char* buf, int size);
    /// Does the same as for `unsigned long long`, with at most 4 digits (5 bytes).
    static char* toHexString(unsigned short v, bool leadingZeros, char* buf, int size);
    /// Does the same as for `unsigned long long`, with at most 2 digits (3 bytes), except that `leadingZeros` pads zero
    /// too.
    static char* toHexString(unsigned char v, bool leadingZeros, char* buf, int size);
    /// Writes two lower-case digits for each of `count` bytes and a terminator. The text is empty if `bytes` is null or
    /// `count` is below 1. Returns null if it does not fit.
    static char* toHexString(unsigned char* bytes, int count, char* buf, int size);

    /// Returns whether `isHexChar` accepts every character after an optional "0x" or "0X". Returns true if there are
    /// none, and false for null.
    static bool isValidHexNumber(const char* text);
    /// Returns true for 'a' to 'f' and for every character up to 'A', including digits, blanks, punctuation and control
    /// characters. Returns false for 'B' to 'F' and all other characters. Callers rely on exactly this set to validate
    /// identifiers.
    static bool isHexChar(char c);

    /// Parses hexadecimal digits in upper or lower case and returns the number that the last two of them form, or 0 for
    /// null. Does not validate its input: any other character, including the x of a prefix, is shifted in as a digit of
    /// value 255, which sets the low 8 bits.
    static uint8_t uint8FromHexString(const char* text);
    /// Parses as `uint8FromHexString` does, but keeps the last four digits.
    static uint16_t uint16FromHexString(const char* text);
    /// Parses as `uint8FromHexString` does, but keeps the last eight digits.
    static unsigned int uint32FromHexString(const char* text);
    /// Parses as `uint8FromHexString` does, but keeps the last sixteen digits.
    static unsigned long long uint64FromHexString(const char* text);

    /// Writes `v` in decimal with a ',' between groups of three digits. `buf` must have two bytes more than the text:
    /// one for the terminator and one that the stream reserves.
    static char* toDecimal(long v, char* buf, int size);
    /// Does the same as for `long`.
    static char* toDecimal(long long v, char* buf, int size);

    /// Writes a capacity of `v` bytes with `digits` (at least 3) significant digits and a unit: none for bytes,
    /// otherwise " kB", " MB" and so on, a power of 1000. Callers rely on the value being truncated, never rounded.
    static char* toDSdecimal(long v, int digits, char* buf, int size);
    /// Does the same as for `long`.
    static char* toDSdecimal(long long v, int digits, char* buf, int size);

    /// Writes the four bytes of `addr` in dotted decimal, the least significant byte first, which is correct for an
    /// address in network order on a little-endian host. Returns null if the text does not fit; 16 bytes hold any text
    /// with its terminator.
    static char* toIPV4String(unsigned int addr, char* buf, int size);

    /// Writes the low 48 bits of `v` as six pairs of lower-case digits separated by ':'. `buf` must have 18 bytes; in a
    /// smaller one the text is truncated and not terminated.
    static char* toMacAddress(unsigned long long v, char* buf, int size);
    /// Returns the six bytes at `mac` as a number, with the first byte as the most significant; 0 for null.
    static unsigned long long uint64FromMACAddress(unsigned char* mac);

    /// Returns whether every byte of `text` is in the range 32 to 126. Returns true for the empty text and false for
    /// null.
    static bool isStringPrintableAscii(const char* text);

    /// Returns whether `s`, up to `len` bytes or a NUL, consists of complete UTF-8 characters, without:
    /// - any printable ASCII character of `disallowed` (null: none are disallowed),
    /// - any ASCII control character except those of `allowedControls` (null: none are allowed).
    ///
    /// Logs the first violation. If `s` is null, returns whether `len` is 0 and logs nothing. Callers rely on the
    /// obsolete five- and six-byte forms, overlong forms and surrogates being accepted. `disallowed` therefore does not
    /// reject the overlong form of one of its characters, such as "\xC0\xAF" for '/'.
    static bool isStringPrintableUtf8(const char* s, unsigned int len, const char* disallowed,
                                      const char* allowedControls);

    /// Removes up to three bytes from the end of `s`, in place, to make it printable UTF-8, and returns true; tabs,
    /// carriage returns and newlines are allowed. If that does not make it printable, logs this, leaves `s` unchanged
    /// and returns false. Returns false for null.
    static bool truncateUtf8(char* s);

    /// Copies `in` to `out` with a backslash before each '"' and returns `out`.
    /// - `out`: must have space for the result and its terminator, at most 2 * strlen(in) + 1 bytes; null: logged at
    ///   level 0, returns null
    /// - `in`: may overlap `out`; null: logged at level 1, counts as empty
    static char* escapeDoubleQuotes(char* out, const char* in);

    /// Applies `tolower` to every byte of `s` in place. Returns `s`, which may be null.
    static char* stringToLower(char* s);

    /// Splits `text` in place, stores pointers to the tokens in `tokens`, followed by a null pointer, and returns the
    /// number of tokens. If the tokens fill all `max` entries, there is no null pointer and the rest of the text is not
    /// split; the result is then `max` - 1, one less than the number of tokens: callers rely on it.
    /// - `tokens`: array of `max` pointers; if it is null or `max` is below 1, stores nothing and returns 0
    /// - `text`: is modified and must outlive the tokens; null: empty
    /// - `delimiters`: the characters that separate tokens; null: none
    static int parseTokens(char** tokens, int max, char* text, const char* delimiters);

    /// Sleeps for `s` seconds, or until a signal handler has run.
    static void sleepSeconds(unsigned int s);
    /// Sleeps for `us` microseconds, or until a signal handler has run.
    static void sleepMicroseconds(unsigned long long us);

    /// Writes the platform's text for `errno` to `buf`, truncated to `size` bytes, and returns `errno`. If `errno` is
    /// 0, the text is empty. If `buf` is null, only returns `errno`.
    static int getErrnoMsg(char* buf, unsigned int size);

    /// The table of the 1-Wire CRC-8 (polynomial x^8 + x^5 + x^4 + 1, least significant bit first): entry `i` is the
    /// CRC of the byte `i` with initial value 0.
    static const unsigned char m_crc_array[256];
    /// Returns `crc` updated with the low 8 bits of `byte`.
    static unsigned char crc_table(int byte, unsigned char crc);
    /// Returns the 1-Wire CRC-8 of `len` bytes, with initial value 0xFF instead of 0. Returns 0xFF if `data` is null or
    /// `len` is below 1.
    static unsigned char calc_crc(char* data, int len);

    /// Writes the MD5 (RFC 1321) of `text` to `out` as 32 lower-case hexadecimal digits and a terminator, truncated to
    /// `size` bytes. A null `text` counts as empty. Skips the write if `out` is null. Always returns 2, the number of
    /// digits of the last byte: callers rely on it.
    static int calc_md5(const char* text, char* out, int size);
    /// Writes the first `size` bytes, at most 16, of the MD5 of `len` bytes to `out` and returns `out`. Despite the
    /// name, these are raw bytes without a terminator, not hexadecimal digits: callers rely on it. If `data` is null or
    /// `len` is below 1, the input is empty. Skips the write if `out` is null.
    static char* calc_md5_hex(const char* data, int len, char* out, int size);

    /// Derives a password of `size` - 1 lower-case hexadecimal digits from three texts and writes it to `out`,
    /// NUL-terminated. `size` - 1 must divide 32; with any other size, the password has as many digits as fit, at most
    /// 32. Null texts count as empty. If `out` is null, the password is discarded. Throws code 1239 from `PutStream` if
    /// the three texts have more than 247 characters in total.
    static void genpw(const char* a, const char* b, const char* c, char* out, int size);
};

} // namespace utility
