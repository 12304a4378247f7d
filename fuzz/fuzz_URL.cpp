// Compares `URL` with a simple reference: splitting, decoding and composing, for a new object and for one that is set a
// second time. The input is two texts separated by a newline, set one after the other.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include "../tests/support/ReferenceURL.h"
#include "Bytes.h"
#include "fw_Memory.h"
#include "ut_URL.h"

namespace {

using fuzz::require;
using test::ReferenceURL;
using utility::URL;

std::optional<std::string> partOf(const char* text) {
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

void checkParts(URL& url, const ReferenceURL& expected) {
    const ReferenceURL parts = {partOf(url.GetScheme()), partOf(url.GetAuthority()), partOf(url.GetPath()),
                                partOf(url.GetQuery())};
    require(parts == expected);
    require(partOf(url.GetValue()) == expected.value());
}

void checkCopies(const URL& url, const ReferenceURL& expected) {
    URL copy(url);
    checkParts(copy, expected);
    URL assigned("a://b/c?d");
    assigned = url;
    checkParts(assigned, expected);
    assigned.clear();
    checkParts(assigned, ReferenceURL());
}

// Decoding reads exactly the given number of bytes, including NULs.
void checkDecoded(const std::uint8_t* data, std::size_t size) {
    const std::unique_ptr<char[]> bytes(new char[size]);
    std::copy_n(data, size, reinterpret_cast<std::uint8_t*>(bytes.get()));
    URL url(nullptr);
    const char* const decoded = url.decodeAndAlloc(bytes.get(), static_cast<unsigned int>(size));
    const std::string text(bytes.get(), size);
    require((decoded == nullptr) == text.empty());
    require(decoded == nullptr || test::referenceDecoded(text) == decoded);
}

// A value without separators in its parts is split into the same parts again.
void checkRoundTrip(URL& url, const ReferenceURL& parts) {
    const std::string all = parts.authority.value_or("") + parts.path.value_or("") + parts.query.value_or("");
    const bool isRooted = parts.scheme && parts.path.value_or("/")[0] == '/';
    const char* const value = url.GetValue();
    const bool isDoubled = parts.path.value_or("").compare(0, 2, "//") == 0;
    if (value == nullptr || !isRooted || isDoubled || all.find_first_of("%?") != std::string::npos)
        return;
    if (parts.authority.value_or("x").empty() || parts.query.value_or("x").empty() ||
        parts.path.value_or("x").empty() || parts.authority.value_or("").find('/') != std::string::npos)
        return;
    URL again(value);
    checkParts(again, parts);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const long outstanding = framework::Memory::staticOutstanding();
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t newline = std::min(input.find('\n'), input.size());
    const std::string first = input.substr(0, newline).c_str();
    const std::string second = input.substr(std::min(newline + 1, input.size())).c_str();
    {
        URL url(first.c_str());
        ReferenceURL expected = test::referenceURL(first);
        checkParts(url, expected);
        checkRoundTrip(url, expected);
        url.SetURL(second.c_str());
        expected = test::referenceURL(second, expected);
        checkParts(url, expected);
        checkCopies(url, expected);
        url.SetURL(url.GetQuery());
        if (expected.query)
            expected = test::referenceURL(*expected.query, expected);
        checkParts(url, expected);
    }
    checkDecoded(data, size);
    require(framework::Memory::staticOutstanding() == outstanding);
    return 0;
}
