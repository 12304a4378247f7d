// Compares the conversions of numbers, sizes and texts with the standard library.

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "Bytes.h"
#include "ut_BufferStream.h"
#include "ut_Debug.h"
#include "ut_Misc.h"

namespace {

using fuzz::Bytes;
using fuzz::codeOf;
using fuzz::require;
using utility::Misc;

// An array of `size` bytes, followed by a guard byte that must not change.
class Target {
public:
    explicit Target(std::size_t size) : m_bytes(size + 1, '#') {}

    char* array() {
        return m_bytes.data();
    }
    int size() const {
        return static_cast<int>(m_bytes.size()) - 1;
    }
    // Returns the text; all bytes if it is not NUL-terminated.
    std::string text() const {
        require(m_bytes.back() == '#');
        return std::string(m_bytes.begin(), std::find(m_bytes.begin(), m_bytes.end() - 1, '\0'));
    }

private:
    std::vector<char> m_bytes;
};

// Requires the complete text if it fits with its terminator, and its beginning otherwise.
void requireWritten(const Target& target, const std::string& expected) {
    require(target.text() == expected.substr(0, static_cast<std::size_t>(target.size())));
}

template<typename Value>
void checkHex(Value value, bool leadingZeros, std::size_t size) {
    char digits[24];
    std::snprintf(digits, sizeof digits, "%llx", static_cast<unsigned long long>(value));
    std::string expected = digits;
    // Zero has a single digit, but not as a byte.
    if (leadingZeros && (value != 0 || sizeof value == 1))
        expected.insert(0, 2 * sizeof value - expected.size(), '0');
    Target target(size);
    require(Misc::toHexString(value, leadingZeros, target.array(), target.size()) == target.array());
    requireWritten(target, expected);
    Target whole(17);
    Misc::toHexString(value, leadingZeros, whole.array(), whole.size());
    require(Misc::uint64FromHexString(whole.array()) == value);
}

// Formats into an array that is large enough, and into one that may be too small.
template<typename Format>
void checkFormatted(const std::string& expected, std::size_t size, Format format) {
    Target whole(expected.size() + 2);
    require(format(whole.array(), whole.size()) == whole.array());
    require(whole.text() == expected);
    Target target(size);
    if (codeOf([&] { format(target.array(), target.size()); }) == 0)
        require(target.size() == 0 || target.text() == expected);
    target.text();
}

std::string digitsOf(unsigned long long value) {
    return std::to_string(value);
}

template<typename Value>
unsigned long long magnitudeOf(Value value) {
    return value < 0 ? 0 - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
}

template<typename Value>
void checkGrouped(Value value, std::size_t size) {
    std::string expected = digitsOf(magnitudeOf(value));
    for (std::size_t place = expected.size(); place > 3; place -= 3)
        expected.insert(place - 3, 1, ',');
    checkFormatted((value < 0 ? "-" : "") + expected, size,
                   [&](char* buf, int bufSize) { return Misc::toDecimal(value, buf, bufSize); });
}

// Returns the leading digits of a size: whole groups with commas, the remaining digits as a fraction, and the unit.
std::string sizeText(unsigned long long value, int digits) {
    static const char* const units[] = {"", " kB", " MB", " GB", " TB", " PB", " EB"};
    const std::string all = digitsOf(value);
    std::string text;
    std::size_t unit = all.size() / 3;
    if (value == 0)
        return "0";
    digits = std::max(digits, 3);
    for (std::size_t left = all.size(); left > 0 && digits > 0; --left, --digits) {
        if (left % 3 == 0 && digits < 3) {
            text += '.';
        } else if (left % 3 == 0) {
            text += text.empty() ? "" : ",";
            --unit;
        }
        text += all[all.size() - left];
    }
    return text + units[unit];
}

std::string addressText(std::uint32_t address) {
    char text[16];
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&address);
    std::snprintf(text, sizeof text, "%u.%u.%u.%u", bytes[0], bytes[1], bytes[2], bytes[3]);
    return text;
}

void checkMac(unsigned long long value, std::size_t size) {
    unsigned char bytes[6];
    for (int i = 0; i < 6; ++i)
        bytes[i] = static_cast<unsigned char>(value >> (40 - 8 * i));
    char text[18];
    std::snprintf(text, sizeof text, "%02x:%02x:%02x:%02x:%02x:%02x", bytes[0], bytes[1], bytes[2], bytes[3], bytes[4],
                  bytes[5]);
    Target target(size);
    require(Misc::toMacAddress(value, target.array(), target.size()) == target.array());
    requireWritten(target, text);
    require(Misc::uint64FromMACAddress(bytes) == (value & 0xFFFFFFFFFFFFULL));
}

void checkNumbers(Bytes& in) {
    const std::size_t size = in.below(40);
    const bool leadingZeros = in.flag();
    const int digits = static_cast<int>(in.below(24));
    // Values of all magnitudes.
    const unsigned int shift = in.below(64);
    const unsigned long long value = in.number<unsigned long long>() >> shift;
    checkHex(value, leadingZeros, size);
    checkHex(static_cast<unsigned int>(value), leadingZeros, size);
    checkHex(static_cast<unsigned short>(value), leadingZeros, size);
    checkHex(static_cast<unsigned char>(value), leadingZeros, size);
    checkGrouped(static_cast<long long>(value), size);
    checkGrouped(static_cast<long>(value), size);
    checkMac(value, size);
    const std::uint32_t low = static_cast<std::uint32_t>(value);
    Target address(16);
    require(Misc::toIPV4String(low, address.array(), address.size()) != nullptr && address.text() == addressText(low));
    // Any size of the array, and any count of digits.
    Target narrow(size);
    codeOf([&] { Misc::toDSdecimal(static_cast<long long>(value), digits, narrow.array(), narrow.size()); });
    narrow.text();
    // The smallest power of two that is not less than the number.
    const unsigned int power = Misc::makePowerOf2(low);
    require((power & (power - 1)) == 0);
    require(low == 0 || low > 0x80000000U ? power == 0 : power >= low && power / 2 < low);
}

void checkSizes(Bytes& in) {
    const unsigned int shift = in.below(64);
    const long long value = static_cast<long long>(in.number<unsigned long long>() >> shift);
    const int digits = static_cast<int>(in.below(24));
    checkFormatted((value < 0 ? "-" : "") + sizeText(magnitudeOf(value), digits), 64,
                   [&](char* buf, int size) { return Misc::toDSdecimal(value, digits, buf, size); });
}

void checkHexTexts(Bytes& in) {
    const std::string text = in.restText();
    unsigned long long value = 0;
    bool isValid = true;
    const std::size_t prefix = text.compare(0, 2, "0x") == 0 || text.compare(0, 2, "0X") == 0 ? 2 : 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        const std::string digit(1, text[i]);
        value = (value << 4) | (std::isxdigit(c) != 0 ? std::stoul(digit, nullptr, 16) : 255U);
        const bool isHex = c <= 'A' || (c >= 'a' && c <= 'f');
        require(Misc::isHexChar(text[i]) == isHex);
        isValid = isValid && (isHex || i < prefix);
    }
    require(Misc::isValidHexNumber(text.c_str()) == isValid);
    require(Misc::uint64FromHexString(text.c_str()) == value);
    require(Misc::uint32FromHexString(text.c_str()) == static_cast<unsigned int>(value));
    require(Misc::uint16FromHexString(text.c_str()) == static_cast<std::uint16_t>(value));
    require(Misc::uint8FromHexString(text.c_str()) == static_cast<std::uint8_t>(value));
}

void checkBytes(Bytes& in) {
    const std::size_t size = in.byte();
    const std::string bytes = in.rest();
    std::string expected;
    for (const char c : bytes) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(c));
        expected += digits;
    }
    Target target(size);
    const std::unique_ptr<char[]> exact = fuzz::exactCopy(bytes);
    const char* const result = Misc::toHexString(reinterpret_cast<unsigned char*>(exact.get()),
                                                 static_cast<int>(bytes.size()), target.array(), target.size());
    require((result != nullptr) == (size > expected.size() || expected.empty()));
    require(result == nullptr || size == 0 || target.text() == expected);
    target.text();
}

void checkTexts(Bytes& in) {
    const std::string text = in.restText();
    std::string escaped;
    std::string lower;
    bool isAscii = true;
    for (const char c : text) {
        escaped += c == '"' ? "\\\"" : std::string(1, c);
        lower += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        isAscii = isAscii && c >= ' ' && c <= '~';
    }
    require(Misc::isStringPrintableAscii(text.c_str()) == isAscii);
    Target target(2 * text.size() + 1);
    require(Misc::escapeDoubleQuotes(target.array(), text.c_str()) == target.array() && target.text() == escaped);
    const std::unique_ptr<char[]> copy = fuzz::exactCopy(text + '\0');
    require(Misc::stringToLower(copy.get()) == copy.get() && copy.get() == lower);
}

void checkTokens(Bytes& in) {
    const int most = static_cast<int>(in.below(10)) + 1;
    const std::string delimiters = in.text(4);
    const std::string text = in.restText();
    std::vector<std::string> expected;
    for (std::size_t at = text.find_first_not_of(delimiters); at != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_of(delimiters, at), text.size());
        expected.push_back(text.substr(at, end - at));
        at = text.find_first_not_of(delimiters, end);
    }
    const std::unique_ptr<char[]> copy = fuzz::exactCopy(text + '\0');
    std::vector<char*> tokens(static_cast<std::size_t>(most), copy.get());
    const int count = Misc::parseTokens(tokens.data(), most, copy.get(), delimiters.c_str());
    require(count == std::min(static_cast<int>(expected.size()), most - 1));
    for (int i = 0; i <= count; ++i) {
        const std::size_t place = static_cast<std::size_t>(i);
        const bool isToken = place < expected.size();
        require(isToken ? tokens[place] != nullptr && tokens[place] == expected[place] : tokens[place] == nullptr);
    }
}

} // namespace

// The first byte chooses the conversion.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    Bytes in(data, size);
    switch (in.below(6)) {
    case 0:
        checkNumbers(in);
        break;
    case 1:
        checkSizes(in);
        break;
    case 2:
        checkHexTexts(in);
        break;
    case 3:
        checkBytes(in);
        break;
    case 4:
        checkTexts(in);
        break;
    default:
        checkTokens(in);
    }
    return 0;
}
