#include "internal/ut_Format.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace utility {

namespace {

// One common conversion, such as "%-12s" or "%08lx".
struct Conversion {
    const char* start; // its '%'
    const char* end;
    int width;
    int precision;      // -1 if there is none
    unsigned int bytes; // of an integer
    char type;
    bool isLeftAligned;
    bool isZeroPadded;
};

// A format with more conversions is left to `vsnprintf`.
constexpr int mostConversions = 8;

// Stores as much of the text as fits in `size` bytes, at least 1, and counts all of it.
class Output {
public:
    Output(char* start, std::size_t size) : m_start(start), m_at(start), m_end(start + size - 1), m_lost(0) {}

    void put(const char* text, std::size_t length) {
        char* const at = claim(length);
        // Most pieces are short: a call would cost more than a loop.
        if (length > 16)
            std::memcpy(at, text, length);
        else
            for (std::size_t i = 0; i < length; ++i)
                at[i] = text[i];
    }
    void fill(char c, std::size_t length) {
        char* const at = claim(length);
        std::memset(at, c, length);
    }
    // Terminates the text; returns its length, or -1 if that exceeds an `int`.
    int finish() {
        *m_at = 0;
        const std::uint64_t count = m_lost + static_cast<std::size_t>(m_at - m_start);
        if (count <= INT_MAX)
            return static_cast<int>(count);
        errno = EOVERFLOW;
        return -1;
    }

private:
    // Moves past `length` bytes, which it reduces to those that fit, and returns where they start.
    char* claim(std::size_t& length) {
        char* const at = m_at;
        const std::size_t fitting = std::min(length, static_cast<std::size_t>(m_end - at));
        m_lost += length - fitting;
        m_at = at + fitting;
        length = fitting;
        return at;
    }

    char* m_start;
    char* m_at;
    char* m_end;
    std::uint64_t m_lost; // 64 bits, because a format can show one long text several times
};

// Stops at a fifth digit: such a width is left to `vsnprintf`.
const char* readNumber(const char* at, int& number) {
    for (number = 0; *at >= '0' && *at <= '9' && number < 1000; ++at)
        number = number * 10 + (*at - '0');
    return at;
}

const char* readLength(const char* at, unsigned int& bytes) {
    const bool isDouble = (*at == 'h' || *at == 'l') && at[1] == *at;
    if (*at == 'h')
        bytes = isDouble ? sizeof(char) : sizeof(short);
    else if (*at == 'l')
        bytes = isDouble ? sizeof(long long) : sizeof(long);
    else if (*at == 'z')
        bytes = sizeof(std::size_t);
    else
        return at;
    return at + (isDouble ? 2 : 1);
}

// Reads the conversion at `start`, a '%'. Returns false if it is not a common one.
bool readConversion(const char* start, Conversion& conversion) {
    conversion = {start, start + 2, 0, -1, sizeof(int), start[1], false, false};
    if (start[1] == 's' || start[1] == 'd' || start[1] == 'u')
        return true;
    const char* at = start + 1;
    for (; *at == '0' || *at == '-'; ++at)
        (*at == '0' ? conversion.isZeroPadded : conversion.isLeftAligned) = true;
    at = readNumber(at, conversion.width);
    if (*at == '.')
        at = readNumber(at + 1, conversion.precision);
    const char* const type = readLength(at, conversion.bytes);
    conversion.type = *type;
    conversion.end = type + 1;
    const bool isText = type == at && !conversion.isZeroPadded;
    switch (*type) {
    case 'd':
    case 'i':
    case 'u':
    case 'x':
    case 'X':
        return conversion.precision < 0;
    case 's':
        return isText;
    case 'c':
    case 'p':
        return isText && conversion.precision < 0;
    default:
        return *type == '%' && type == start + 1;
    }
}

// Returns the number of conversions, or -1 if one is not common or there are too many.
int readFormat(const char* at, Conversion* conversions) {
    int count = 0;
    while (*at != 0) {
        if (*at++ != '%')
            continue;
        if (count == mostConversions || !readConversion(at - 1, conversions[count]))
            return -1;
        at = conversions[count++].end;
    }
    return count;
}

// Writes a text with blanks, or a number with a prefix and zeros or blanks.
void putPadded(Output& out, const Conversion& conversion, const char* text, std::size_t length, const char* prefix = "",
               std::size_t prefixLength = 0) {
    const std::size_t shown = prefixLength + length;
    const auto width = static_cast<std::size_t>(conversion.width);
    const std::size_t padding = width > shown ? width - shown : 0;
    if (padding == 0) {
        out.put(prefix, prefixLength);
        out.put(text, length);
        return;
    }
    if (!conversion.isLeftAligned && !conversion.isZeroPadded)
        out.fill(' ', padding);
    out.put(prefix, prefixLength);
    if (!conversion.isLeftAligned && conversion.isZeroPadded)
        out.fill('0', padding);
    out.put(text, length);
    if (conversion.isLeftAligned)
        out.fill(' ', padding);
}

// The platform decides what it shows of a null pointer.
void putNull(Output& out, const Conversion& conversion) {
    char text[16];
    const char* const volatile null = nullptr; // hides the null from the compiler's format check
    const int length = conversion.type == 's' ? std::snprintf(text, sizeof text, "%.*s", conversion.precision, null)
                                              : std::snprintf(text, sizeof text, "%p", null);
    putPadded(out, conversion, text, static_cast<std::size_t>(length));
}

void putNumber(Output& out, const Conversion& conversion, std::uint64_t number, const char* prefix,
               std::size_t prefixLength) {
    char text[20]; // the digits of the largest number
    char* const end = text + sizeof text;
    char* start = end;
    if (conversion.type == 'd' || conversion.type == 'i' || conversion.type == 'u') {
        for (; number > UINT_MAX; number /= 10)
            *--start = static_cast<char>('0' + number % 10);
        // A division of 64 bits is slow on 32-bit platforms.
        auto rest = static_cast<unsigned int>(number);
        do
            *--start = static_cast<char>('0' + rest % 10);
        while ((rest /= 10) != 0);
    } else {
        const char* const digits = conversion.type == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
        do
            *--start = digits[number & 15];
        while ((number >>= 4) != 0);
    }
    putPadded(out, conversion, start, static_cast<std::size_t>(end - start), prefix, prefixLength);
}

// Writes the text at `pointer`, or its address.
void putPointer(Output& out, const Conversion& conversion, const char* pointer) {
    if (pointer == nullptr)
        putNull(out, conversion);
    else if (conversion.type == 'p')
        putNumber(out, conversion, reinterpret_cast<std::uintptr_t>(pointer), "0x", 2);
    else // without a precision, the limit is the largest size
        putPadded(out, conversion, pointer, strnlen(pointer, static_cast<std::size_t>(conversion.precision)));
}

// `number` is the argument; its bits beyond the length of the conversion are undefined.
void putInteger(Output& out, const Conversion& conversion, std::uint64_t number) {
    const unsigned int unused = 64 - 8 * conversion.bytes;
    const std::int64_t value = static_cast<std::int64_t>(number << unused) >> unused;
    if (value < 0 && (conversion.type == 'd' || conversion.type == 'i'))
        putNumber(out, conversion, -static_cast<std::uint64_t>(value), "-", 1);
    else
        putNumber(out, conversion, number << unused >> unused, "", 0);
}

} // namespace

int formatText(char* destination, std::size_t size, const char* format, va_list arguments) {
    Conversion conversions[mostConversions];
    const int count = readFormat(format, conversions);
    if (count < 0)
        return std::vsnprintf(destination, size, format, arguments);
    char nothing = 0;
    Output out(size > 0 ? destination : &nothing, size > 0 ? size : 1);
    for (int i = 0; i < count; ++i) {
        const Conversion& conversion = conversions[i];
        out.put(format, static_cast<std::size_t>(conversion.start - format));
        format = conversion.end;
        if (conversion.type == '%') {
            out.fill('%', 1);
        } else if (conversion.type == 'c') {
            const char c = static_cast<char>(va_arg(arguments, int));
            putPadded(out, conversion, &c, 1);
        } else if (conversion.type == 's' || conversion.type == 'p') {
            putPointer(out, conversion, va_arg(arguments, const char*));
        } else if (conversion.bytes > sizeof(int)) {
            putInteger(out, conversion, va_arg(arguments, std::uint64_t));
        } else {
            putInteger(out, conversion, va_arg(arguments, unsigned int));
        }
    }
    out.put(format, std::strlen(format));
    return out.finish();
}

} // namespace utility
