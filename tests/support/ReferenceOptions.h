#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// A simple model of options: at most eight keys, each with or without a value.
///
///     test::ReferenceOptions expected;
///     expected.addText("a=1,2&b");
///     EXPECT_EQ(expected.content.size(), 3u);
struct ReferenceOptions {
    using Value = std::optional<std::string>;
    using Option = std::pair<std::string, Value>;
    using Content = std::vector<Option>;

    Content content;

    void add(const std::string& key, const Value& value) {
        if (content.size() < 8)
            content.push_back({key, value});
    }
    Content::iterator at(const std::string& key, unsigned int index) {
        return std::find_if(content.begin(), content.end(),
                            [&](const Option& option) { return option.first == key && index-- == 0; });
    }
    void addText(const std::string& text) {
        if (text.empty())
            return;
        for (const std::string& item : pieces(text, '&')) {
            const std::size_t equals = item.find('=');
            if (equals == std::string::npos) {
                add(item, std::nullopt);
                continue;
            }
            for (const std::string& value : pieces(item.substr(equals + 1), ','))
                add(item.substr(0, equals), value);
        }
    }
    template<class Test>
    void removeIf(Test test) {
        content.erase(std::remove_if(content.begin(), content.end(), test), content.end());
    }
    std::string text() const {
        std::string text;
        for (const Option& option : content)
            text +=
                (&option == &content.front() ? "" : "&") + option.first + (option.second ? "=" + *option.second : "");
        return text;
    }

    static std::vector<std::string> pieces(const std::string& text, char separator) {
        std::vector<std::string> result(1);
        for (const char c : text) {
            if (c == separator)
                result.emplace_back();
            else
                result.back() += c;
        }
        return result;
    }
};

} // namespace test
