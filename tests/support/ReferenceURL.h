#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <optional>
#include <ostream>
#include <string>

namespace test {

/// A simple model of a URL: scheme, authority, path and query.
///
///     const test::ReferenceURL expected = test::referenceURL("a://b%20c/d");
///     EXPECT_EQ(expected.authority, "b c");
struct ReferenceURL {
    std::optional<std::string> scheme;
    std::optional<std::string> authority;
    std::optional<std::string> path;
    std::optional<std::string> query;

    bool operator==(const ReferenceURL& other) const {
        return scheme == other.scheme && authority == other.authority && path == other.path && query == other.query;
    }
    /// The expected result of `GetValue`; a missing part is empty.
    std::optional<std::string> value() const {
        if ((scheme.value_or("") + authority.value_or("") + path.value_or("") + query.value_or("")).empty())
            return std::nullopt;
        return (scheme ? *scheme + ":" : "") + (authority ? "//" + *authority : "") + path.value_or("") +
               (query ? "?" + *query : "");
    }
};

inline void PrintTo(const ReferenceURL& url, std::ostream* out) {
    for (const std::optional<std::string>& part : {url.scheme, url.authority, url.path, url.query})
        *out << (part ? "'" + *part + "' " : "none ");
}

/// The value of a hexadecimal digit; 255 for any other character.
inline int referenceDigit(char c) {
    const char* const digits = "0123456789abcdef0123456789ABCDEF";
    const char* const found = c ? std::strchr(digits, c) : nullptr;
    return found != nullptr ? static_cast<int>((found - digits) % 16) : 255;
}

/// The decoded text up to its first NUL.
inline std::string referenceDecoded(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            decoded += text[i];
            continue;
        }
        if (i + 2 >= text.size())
            break;
        decoded += static_cast<char>((referenceDigit(text[i + 1]) << 4 | referenceDigit(text[i + 2])) & 0xFF);
        i += 2;
    }
    return decoded.c_str();
}

inline std::optional<std::string> referencePart(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional<std::string>(referenceDecoded(text));
}

/// The parts of `text`; `before` is the previous content of the URL.
inline ReferenceURL referenceURL(const std::string& text, ReferenceURL before = {}) {
    const std::string letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ";
    std::size_t at = text.find_first_not_of(letters + "+-.0123456789");
    const bool isScheme =
        at != std::string::npos && at > 0 && text[at] == ':' && letters.find(text[0]) != std::string::npos;
    if (isScheme)
        before.scheme = referencePart(text.substr(0, at));
    at = isScheme ? at + 1 : 0;
    if (text.compare(at, 2, "//") == 0) {
        const std::size_t end = std::min(text.find_first_of("/?", at + 2), text.size());
        before.authority = referencePart(text.substr(at + 2, end - at - 2));
        at = end;
    }
    const std::size_t mark = std::min(text.find('?', at), text.size());
    if (mark > at)
        before.path = referencePart(text.substr(at, mark - at));
    if (mark < text.size())
        before.query = referencePart(text.substr(mark + 1));
    return before;
}

} // namespace test
