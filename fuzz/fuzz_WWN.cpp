#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "Bytes.h"
#include "ut_SerialNumber.h"
#include "ut_WWN.h"

namespace {

using fuzz::require;

size_t leadingDigits(const std::string& text) {
    const auto end = std::find_if(text.begin(), text.end(), [](unsigned char c) { return std::isxdigit(c) == 0; });
    return static_cast<size_t>(end - text.begin());
}

// Returns the value that a reader of `digits` digits stores for `text`, starting from zero.
std::string expectedText(const std::string& text, size_t digits) {
    std::string result = text.substr(0, std::min(leadingDigits(text), digits));
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    result.resize(digits, '0');
    return result;
}

void checkWWN(const std::string& text) {
    utility::WWN name;
    const size_t digits = leadingDigits(text);
    require(name.fromString(text.c_str()) == (digits >= 16));
    require(utility::WWN::isWWN(text.c_str()) == (digits == 16 && text.size() == 16));
    char printed[17];
    require(name.toBuffer(printed, sizeof printed) == expectedText(text, 16));
    require(utility::WWN(printed) == name);
}

void checkSerialNumber(const std::string& text) {
    utility::SerialNumber number(static_cast<const char*>(nullptr));
    require(number.fromString(text.c_str()) == (leadingDigits(text) >= 32));
    const std::string expected = expectedText(text, 32);
    char printed[33];
    require(number.toBuffer(printed, sizeof printed) == expected);
    require(utility::SerialNumber(printed) == number);
    require(number.isValid() == (expected.substr(0, 6) == "00c0ff" && expected.substr(26) == "000000"));
    char shortForm[17];
    require(number.toShortBuffer(shortForm, sizeof shortForm) == expected.substr(6, 6) + expected.substr(16, 10));

    if (utility::SerialNumber::isSerialNumber(text.c_str()))
        require(text.size() == 32 && text.substr(26) == "000000");
    else
        require(text != expected || !number.isValid());
}

} // namespace

// Compares the conversions of World Wide Names and serial numbers with a reader based on the standard library.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text = std::string(reinterpret_cast<const char*>(data), size).c_str();
    checkWWN(text);
    checkSerialNumber(text);
    return 0;
}
