// Compares `PutF` and `PutV` with `snprintf`: formats made from the input, with matching arguments, written to a stream
// that may be too small.

#include <cstdarg>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "Bytes.h"
#include "PutModel.h"
#include "ut_BufferStream.h"

namespace {

using fuzz::Bytes;
using fuzz::require;

constexpr unsigned int mostArguments = 3;

// The formats are not constants, but they are built to match their arguments.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"

void putV(utility::PutStream& stream, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    try {
        stream.PutV(format, arguments);
    } catch (framework::Exception*) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
}

// Returns the message of an overflow.
std::string overflowMessage(std::size_t wrote, std::size_t remaining, const std::string& format) {
    char text[200];
    std::snprintf(text, sizeof text, "Didn't fit. wrote=%d remaining=%d msg='%.90s'", static_cast<int>(wrote),
                  static_cast<int>(remaining), format.c_str());
    return text;
}

template<typename... Arguments>
void compare(Bytes& in, const std::string& format, Arguments... arguments) {
    std::vector<char> text(static_cast<std::size_t>(std::snprintf(nullptr, 0, format.c_str(), arguments...)) + 1);
    std::snprintf(text.data(), text.size(), format.c_str(), arguments...);
    const std::string expected(text.data(), text.size() - 1);

    const bool isQuiet = in.flag();
    const bool usesList = in.flag();
    // Half of the streams are exactly large enough, or almost.
    const std::size_t capacity = in.flag() ? expected.size() + 3 - in.below(6) % (expected.size() + 3) : in.byte();
    std::vector<char> storage(capacity + 1);
    utility::BufferStream stream(storage.data(), static_cast<int>(storage.size()), isQuiet);
    fuzz::PutModel model(capacity, isQuiet);
    if (capacity > 0) {
        stream.PutC('>');
        model.putC('>');
    }
    const std::size_t remaining = model.available();
    const unsigned int code = model.putF(expected);
    try {
        if (usesList) {
            putV(stream, format.c_str(), arguments...);
        } else {
            stream.PutF(format.c_str(), arguments...);
        }
        require(code == fuzz::failureNone);
    } catch (framework::Exception* thrown) {
        const std::unique_ptr<framework::Exception> failure(thrown);
        require(failure->code() == code);
        require(failure->message() == overflowMessage(expected.size(), remaining, format));
    }
    require(std::string(stream.pTail(), static_cast<std::size_t>(stream.ReadAvailable())) == model.readable());
    require(*stream.pHead() == 0);
}

#pragma GCC diagnostic pop

// Returns literal bytes for a format: each '%' is doubled.
std::string literal(Bytes& in) {
    std::string text;
    for (const char c : in.text(12))
        text += c == '%' ? "%%" : std::string(1, c);
    return text;
}

// Returns a '%' with flags, width and precision.
std::string prefix(Bytes& in, const char* flags) {
    std::string text = "%";
    for (unsigned int bits = in.byte(); *flags != 0; ++flags, bits >>= 1)
        text += (bits & 1) != 0 ? std::string(1, *flags) : "";
    if (in.flag())
        text += std::to_string(in.below(100) + 1);
    if (in.flag())
        text += "." + std::to_string(in.below(100));
    return text;
}

// Returns a '%' with a flag and a width.
std::string alignment(Bytes& in) {
    const std::string text = in.flag() ? "%-" : "%";
    return in.flag() ? text + std::to_string(in.below(100) + 1) : text;
}

template<typename... Arguments>
void extend(Bytes& in, std::string format, Arguments... arguments);

template<typename Value, typename... Arguments>
void addInteger(Bytes& in, const std::string& format, const char* length, Arguments... arguments) {
    const char conversion = "diuxXo"[in.below(6)];
    // '#' is undefined for decimal numbers.
    const char* const flags = conversion == 'd' || conversion == 'i' ? "-0+ '" : conversion == 'u' ? "-0'" : "-0#";
    const std::string text = prefix(in, flags) + length + conversion;
    extend(in, format + text, arguments..., in.number<Value>());
}

template<typename... Arguments>
void addConversion(Bytes& in, const std::string& format, Arguments... arguments) {
    const unsigned int kind = in.below(10);
    if (kind < 2) {
        const char* const lengths[] = {"", "h", "hh"};
        addInteger<int>(in, format, lengths[in.below(3)], arguments...);
    } else if (kind == 2) {
        addInteger<long>(in, format, "l", arguments...);
    } else if (kind == 3) {
        addInteger<long long>(in, format, in.flag() ? "ll" : "j", arguments...);
    } else if (kind == 4) {
        const std::string text = prefix(in, "-0+ #'") + "fFeEgGaA"[in.below(8)];
        extend(in, format + text, arguments..., in.number<double>());
    } else if (kind == 5) {
        extend(in, format + prefix(in, "-") + 'p', arguments..., reinterpret_cast<void*>(in.number<std::uintptr_t>()));
    } else if (kind == 6) {
        extend(in, format + "%*.*d", arguments..., static_cast<int>(in.number<std::int8_t>()),
               static_cast<int>(in.number<std::int8_t>()), in.number<int>());
    } else if (kind == 7) {
        addInteger<std::size_t>(in, format, "z", arguments...);
    } else if (kind == 8) {
        extend(in, format + alignment(in) + 'c', arguments..., in.number<int>());
    } else {
        const std::string value = in.text(30);
        const char* const text = in.below(16) == 1 ? nullptr : value.c_str();
        extend(in, format + prefix(in, "-") + 's', arguments..., text);
    }
}

template<typename... Arguments>
void extend(Bytes& in, std::string format, Arguments... arguments) {
    format += literal(in);
    if constexpr (sizeof...(Arguments) < mostArguments) {
        if (in.flag())
            return addConversion(in, format, arguments...);
    }
    compare(in, format, arguments...);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    Bytes in(data, size);
    extend(in, "");
    return 0;
}
