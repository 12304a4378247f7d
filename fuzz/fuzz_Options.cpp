// Compares `Options` with a simple list of eight: splitting, searching, replacing, deleting and writing. The first
// character of each input line chooses the operation for the rest of the line.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include <strings.h>

#include "../tests/support/ReferenceOptions.h"
#include "Bytes.h"
#include "fw_StableStringRepository.h"
#include "ut_BufferStream.h"
#include "ut_Options.h"

namespace {

using fuzz::require;
using test::ReferenceOptions;
using utility::Options;

unsigned int token(const std::string& key) {
    return strings::GS.toToken(key.c_str());
}

std::vector<char> copyOf(const std::string& text) {
    return std::vector<char>(text.c_str(), text.c_str() + text.size() + 1);
}

void checkLookUps(const Options& options, const ReferenceOptions& expected) {
    require(options.count() == expected.content.size());
    for (std::size_t i = 0; i < expected.content.size(); ++i) {
        const std::string& key = expected.content[i].first;
        const ReferenceOptions::Value& value = expected.content[i].second;
        const auto isSameKey = [&](const ReferenceOptions::Option& option) {
            return option.first == key;
        };
        const auto place = expected.content.begin() + static_cast<std::ptrdiff_t>(i);
        const unsigned int index = static_cast<unsigned int>(std::count_if(expected.content.begin(), place, isSameKey));
        require(options.getKey(static_cast<unsigned int>(i)) == token(key) && options.isOption(token(key)));
        const char* const text = options.getAsString(token(key), index);
        require(text != nullptr && value.value_or("") == text);
        require(options.getAsInt(token(key), index) == (value ? std::atoi(value->c_str()) : -1));
        if (value)
            require(options.isOption(token(key), text) && options.isOptionCase(token(key), text));
        const auto count = std::count_if(expected.content.begin(), expected.content.end(), isSameKey);
        require(options.getAsString(token(key), static_cast<unsigned int>(count)) == nullptr);
    }
}

// "Undefined" continues the option before it.
void checkText(const Options& options, const ReferenceOptions& expected) {
    const std::string text = expected.text();
    utility::BufferStream out(static_cast<int>(text.size()) + 64);
    options.toStream(out);
    for (const auto& [key, value] : expected.content) {
        if (key == "Undefined")
            return;
    }
    require(std::string(out.pTail(), static_cast<std::size_t>(out.ReadAvailable())) == text);
    // A key or value that was added alone may contain a separator.
    for (const auto& [key, value] : expected.content) {
        if (key.find('&') != std::string::npos || value.value_or("").find_first_of("&,") != std::string::npos)
            return;
    }
    Options again;
    again.set(copyOf(text).data());
    // The empty text adds no option, so a single empty key without a value is lost when written.
    if (!text.empty())
        checkLookUps(again, expected);
}

void apply(const std::string& line, Options& options, ReferenceOptions& expected) {
    const char action = line.empty() ? 's' : line[0];
    const std::string text = line.empty() ? "" : line.substr(1);
    const std::string key = text.substr(0, text.find('='));
    const std::string value = key.size() < text.size() ? text.substr(key.size() + 1) : "";
    const char* const given = key.size() < text.size() ? value.c_str() : nullptr;
    const ReferenceOptions::Value optional = given != nullptr ? ReferenceOptions::Value(value) : std::nullopt;
    if (action == 'a') {
        options.addOption(token(key), given);
        expected.add(key, optional);
    } else if (action == 'd') {
        options.deleteOption(token(key));
        expected.removeIf([&](const ReferenceOptions::Option& option) { return option.first == key; });
    } else if (action == 'v') {
        options.deleteOption(token(key), given);
        expected.removeIf([&](const ReferenceOptions::Option& option) {
            return given != nullptr && option.first == key && option.second == optional;
        });
    } else if (action >= '0' && action <= '9') {
        const unsigned int index = static_cast<unsigned int>(action - '0');
        const auto place = expected.at(key, index);
        options.setOption(token(key), given, index);
        if (place != expected.content.end())
            place->second = optional;
        else
            expected.add(key, optional);
    } else if (action == 'c') {
        options.clear();
        expected.content.clear();
    } else {
        options.set(copyOf(text).data());
        expected.addText(text);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string input = std::string(reinterpret_cast<const char*>(data), size).c_str();
    Options options;
    ReferenceOptions expected;
    for (const std::string& line : ReferenceOptions::pieces(input, '\n')) {
        apply(line, options, expected);
        checkLookUps(options, expected);
        checkText(options, expected);
    }
    return 0;
}
