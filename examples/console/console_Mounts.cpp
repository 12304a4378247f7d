#include "console_Mounts.h"

#include <sstream>

#include "console_SmallFile.h"
#include "ut_Misc.h"

namespace console {

namespace {

constexpr std::size_t octalLength = 3;
// More than any line has.
constexpr int wordCapacity = 16;

bool isOctal(const std::string& digits) {
    return digits.size() == octalLength && digits[0] <= '3' &&
           digits.find_first_not_of("01234567") == std::string::npos;
}

std::vector<std::string> partsOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> parts;
    for (std::string part; std::getline(in, part, ',');)
        parts.push_back(withoutOctal(part));
    return parts;
}

} // namespace

std::string withoutOctal(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::string digits = text[i] == '\\' ? text.substr(i + 1, octalLength) : "";
        result += isOctal(digits) ? static_cast<char>(std::stoi(digits, nullptr, 8)) : text[i];
        i += isOctal(digits) ? octalLength : 0;
    }
    return result;
}

std::vector<Mount> readMounts(const std::string& path, std::string* failure) {
    SmallFile file(path);
    if (!file.isRead())
        *failure = file.failure();
    std::vector<Mount> mounts;
    while (char* line = file.readLine()) {
        char* words[wordCapacity];
        if (utility::Misc::parseTokens(words, wordCapacity, line, " ") >= 4)
            mounts.push_back({withoutOctal(words[0]), withoutOctal(words[1]), words[2], partsOf(words[3])});
    }
    return mounts;
}

} // namespace console
