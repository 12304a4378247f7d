#pragma once

#include "ut_Export.h"

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "fw_StringToken.h"
#include "ut_DateTime.h"
#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"
#include "ut_PortAddress.h"
#include "ut_PutStream.h"
#include "ut_SerialNumber.h"
#include "ut_WWN.h"

// Conversions between the values of the library and the texts of the standard library, and comparison operators for
// times and addresses.
//
// - `toText` returns what an operation of the library writes as a `std::string` of any length.
// - `readableText` returns the readable bytes of a stream as a `std::string_view`.
// - `fromText` returns the value that a text contains, or `std::nullopt`.
//
// Stateless and thread-safe, as far as the objects are. Every conversion to a text throws `std::bad_alloc` if memory is
// exhausted; `fromText` and the operators do not throw unless they say so.
//
//     const utility::IPV4Address address("10.0.0.1");
//     std::string text = utility::toText(address);             // "10.0.0.1"
//     text += utility::toText([](utility::PutStream& out) { out.PutF("/%d", 24); });   // "10.0.0.1/24"
//     utility::fromText<utility::WWN>("500a09818d5f1234");     // a name
//     utility::fromText<utility::WWN>("500a");                 // std::nullopt
namespace utility {

class Arguments;
class Options;
class Path;
class URL;

/// Returns all that `write(out, context)` writes to a stream. If a single write is longer than the buffer of the
/// stream, which is 2 KiB at first, and throws code 1239, calls `write` again with a larger one, up to 8 MiB. Otherwise
/// throws what `write` throws. An operation that truncates a text to the space left in the stream has at least 1,023
/// bytes. `toText` with a function object is easier to use.
VXUT_EXPORT std::string textFromStream(void (*write)(PutStream& out, void* context), void* context);

/// Returns the NUL-terminated text that `write(buffer, size, context)` writes to `buffer`. Calls `write` again with a
/// larger buffer if the text fills the buffer or if `write` throws code 1239; 1 MiB is the largest. Throws what `write`
/// throws then. `toText` with a function object is easier to use.
VXUT_EXPORT std::string textFromBuffer(void (*write)(char* buffer, unsigned int size, void* context), void* context);

/// @name Detection of the operations that write a text
/// @{

/// Whether `Write` can be called with a `PutStream&`.
template<typename Write>
constexpr bool writesToStream = std::is_invocable_v<Write&, PutStream&>;

/// Whether `Write` can be called with a buffer and its size.
template<typename Write>
constexpr bool writesToBuffer = !writesToStream<Write> && std::is_invocable_v<Write&, char*, unsigned int>;

/// Whether `Object` has an operation `toPutStream(PutStream&) const`.
template<typename Object, typename = void>
struct HasToPutStream : std::false_type {};
/// The objects that have it.
template<typename Object>
struct HasToPutStream<Object,
                      std::void_t<decltype(std::declval<const Object&>().toPutStream(std::declval<PutStream&>()))>>
    : std::true_type {};

/// Whether `Object` has an operation `toBuffer(char*, unsigned int) const`.
template<typename Object, typename = void>
struct HasToBuffer : std::false_type {};
/// The objects that have it.
template<typename Object>
struct HasToBuffer<Object, std::void_t<decltype(std::declval<const Object&>().toBuffer(std::declval<char*>(), 0U))>>
    : std::true_type {};

/// @}

/// Returns all that `write(out)` writes, where `out` is a `PutStream&`. May call `write` again, as `textFromStream`
/// does, and throws what `write` throws.
template<typename Write, std::enable_if_t<writesToStream<Write>, int> = 0>
std::string toText(Write&& write) {
    using Function = std::remove_reference_t<Write>;
    const auto call = [](PutStream& out, void* context) {
        (**static_cast<Function**>(context))(out);
    };
    Function* function = &write;
    return textFromStream(call, &function);
}

/// Returns the text that `write(buffer, size)` writes to a buffer, and calls `write` again as `textFromBuffer` does.
template<typename Write, std::enable_if_t<writesToBuffer<Write>, int> = 0>
std::string toText(Write&& write) {
    using Function = std::remove_reference_t<Write>;
    const auto call = [](char* buffer, unsigned int size, void* context) {
        (**static_cast<Function**>(context))(buffer, size);
    };
    Function* function = &write;
    return textFromBuffer(call, &function);
}

/// Returns what `object.toPutStream` writes, for example the text of an address, a name or a serial number.
template<typename Object, std::enable_if_t<HasToPutStream<Object>::value, int> = 0>
std::string toText(const Object& object) {
    return toText([&object](PutStream& out) { object.toPutStream(out); });
}

/// Returns what `object.toBuffer` writes, if the object has no `toPutStream`.
template<typename Object, std::enable_if_t<HasToBuffer<Object>::value && !HasToPutStream<Object>::value, int> = 0>
std::string toText(const Object& object) {
    return toText([&object](char* buffer, unsigned int size) { object.toBuffer(buffer, size); });
}

/// Returns the text of `token`; empty if it has none. `toText` is easier to use.
VXUT_EXPORT std::string textOfToken(stringtoken token);

/// Returns the text of a token; empty if it has none. Other types of numbers are not accepted.
template<typename Token, std::enable_if_t<std::is_same_v<Token, stringtoken>, int> = 0>
std::string toText(Token token) {
    return textOfToken(token);
}

/// Returns the local time as `DateTime::ToISOBuf` writes it: "2024-03-05 09:07:03"; empty for `DateTime::Invalid()`.
VXUT_EXPORT std::string toText(const DateTime& time);
/// Returns the whole path.
VXUT_EXPORT std::string toText(const Path& path);
/// Returns the parts composed into one text, as `URL::GetValue` does; empty without parts.
VXUT_EXPORT std::string toText(const URL& url);
/// Returns the options in the form that `Options::set` parses.
VXUT_EXPORT std::string toText(const Options& options);
/// Returns the words as a command text, as `Arguments::ToString` does.
VXUT_EXPORT std::string toText(const Arguments& arguments);

/// Returns the readable bytes of `stream`, without consuming them. The view is valid until the stream is written to,
/// refilled or destroyed. A `VirtualGetStream` first reads from its source as `ReadAvailable` does. Of a
/// `CircularStream` the view contains the bytes up to the end of the ring; `ReadAdvance` makes the others the first
/// ones.
VXUT_EXPORT std::string_view readableText(const Buffer& stream);

/// Returns the result of `find(name)`, where `name` is a copy of `text`, or `std::nullopt` if that is `unknown` or if
/// `text` has more than 15 characters or a NUL. `fromText` is easier to use.
template<typename Result>
std::optional<Result> valueOfName(std::string_view text, Result (*find)(const char* name), Result unknown) {
    char name[16] = {};
    if (text.size() >= sizeof name || text.find('\0') != std::string_view::npos)
        return std::nullopt;
    text.copy(name, text.size());
    const Result result = find(name);
    return result != unknown ? std::optional<Result>(result) : std::nullopt;
}

/// Returns the value that the whole of `text` represents, or `std::nullopt` if it does not represent one. There are
/// conversions for these types:
///
/// - `IPV4Address`: four decimal numbers.
/// - `IPV6Address`: what `inet_pton` accepts; `std::nullopt` too if memory is exhausted.
/// - `WWN`: 16 hexadecimal digits. `SerialNumber`: 32, which need not be well-formed.
/// - `DateTime`: exactly what `ToISOBuf` or `ToRFC822Buf` writes, for a time that exists.
/// - `DateTime::Month`, `DateTime::Weekday`: the full or short English name, ignoring case.
/// - `PortAddress::PortType`: "FC" or "iSCSI", ignoring case.
///
/// Unlike the `fromString` operations, does not ignore characters after the value. Throws nothing, except
/// `std::bad_alloc` for a text that is not a time if memory is exhausted.
template<typename Value>
std::optional<Value> fromText(std::string_view text) = delete;

template<>
VXUT_EXPORT std::optional<IPV4Address> fromText<IPV4Address>(std::string_view text);
template<>
VXUT_EXPORT std::optional<IPV6Address> fromText<IPV6Address>(std::string_view text);
template<>
VXUT_EXPORT std::optional<WWN> fromText<WWN>(std::string_view text);
template<>
VXUT_EXPORT std::optional<SerialNumber> fromText<SerialNumber>(std::string_view text);
template<>
VXUT_EXPORT std::optional<DateTime> fromText<DateTime>(std::string_view text);
template<>
inline std::optional<DateTime::Month> fromText<DateTime::Month>(std::string_view text) {
    return valueOfName(text, DateTime::MonthFromName, static_cast<DateTime::Month>(-1));
}
template<>
inline std::optional<DateTime::Weekday> fromText<DateTime::Weekday>(std::string_view text) {
    return valueOfName(text, DateTime::WeekdayFromName, static_cast<DateTime::Weekday>(-1));
}
template<>
inline std::optional<PortAddress::PortType> fromText<PortAddress::PortType>(std::string_view text) {
    return valueOfName(text, PortAddress::StrToPortType, PortAddress::PORT_UNDEFINED);
}

/// Does the same for a NUL-terminated text; returns `std::nullopt` if `text` is null.
template<typename Value>
std::optional<Value> fromText(const char* text) {
    return text != nullptr ? fromText<Value>(std::string_view(text)) : std::nullopt;
}

/// @name Comparison of times
/// An invalid time is the time -1, the last second of 1969.
/// @{

/// Returns whether both are the same second.
VXUT_EXPORT bool operator==(const DateTime& a, const DateTime& b);
/// Returns whether `a` is earlier.
VXUT_EXPORT bool operator<(const DateTime& a, const DateTime& b);
/// Returns whether they differ.
inline bool operator!=(const DateTime& a, const DateTime& b) {
    return !(a == b);
}
/// Returns whether `a` is later.
inline bool operator>(const DateTime& a, const DateTime& b) {
    return b < a;
}
/// Returns whether `a` is not later.
inline bool operator<=(const DateTime& a, const DateTime& b) {
    return !(b < a);
}
/// Returns whether `a` is not earlier.
inline bool operator>=(const DateTime& a, const DateTime& b) {
    return !(a < b);
}

/// @}
/// @name Order of addresses and names
/// @{

/// Returns whether `a` is less, as a 32-bit number.
VXUT_EXPORT bool operator<(const IPV4Address& a, const IPV4Address& b);
/// Returns whether `a` is greater, as a 32-bit number.
inline bool operator>(const IPV4Address& a, const IPV4Address& b) {
    return b < a;
}
/// Returns whether `a` is less than or equal to `b`, as a 32-bit number.
inline bool operator<=(const IPV4Address& a, const IPV4Address& b) {
    return !(b < a);
}
/// Returns whether `a` is greater than or equal to `b`, as a 32-bit number.
inline bool operator>=(const IPV4Address& a, const IPV4Address& b) {
    return !(a < b);
}

/// Returns whether `a` is before `b`:
///
/// - Fibre Channel addresses by name, then by the type of the name.
/// - iSCSI addresses by IP version, IP address, port and name.
/// - Other kinds by their text.
/// - Different kinds by `PortAddress::PortTypeToNumeric`: others, Fibre Channel, iSCSI.
///
/// Throws `std::bad_cast` as `PortAddress::operator==` does.
VXUT_EXPORT bool operator<(const PortAddress& a, const PortAddress& b);
/// Returns whether `a` is less than or equal to `b`, as a 128-bit number.
inline bool operator<=(const IPV6Address& a, const IPV6Address& b) {
    return !(b < a);
}
/// Returns whether `a` is greater than or equal to `b`, as a 128-bit number.
inline bool operator>=(const IPV6Address& a, const IPV6Address& b) {
    return !(a < b);
}
/// Returns whether `a` is less than or equal to `b`, byte by byte.
inline bool operator<=(const WWN& a, const WWN& b) {
    return !(b < a);
}
/// Returns whether `a` is greater than or equal to `b`, byte by byte.
inline bool operator>=(const WWN& a, const WWN& b) {
    return !(a < b);
}

/// @}

} // namespace utility
