#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace test {

/// A simple model of how texts are split into words.
///
///     test::ReferenceWords expected;
///     expected.add("a \"b c");
///     EXPECT_TRUE(expected.quoteUnmatched);
struct ReferenceWords {
    std::vector<std::string> words;
    bool quoteUnmatched = false;

    void add(const std::string& text) {
        const char* const whiteSpace = " \t\n\v\f\r";
        for (std::size_t at = 0; (at = text.find_first_not_of(whiteSpace, at)) != std::string::npos;) {
            const bool quoted = text[at] == '"';
            if (quoted)
                ++at;
            const std::size_t end = quoted ? text.find('"', at) : text.find_first_of(whiteSpace, at);
            words.push_back(text.substr(at, end == std::string::npos ? end : end - at));
            if (end == std::string::npos) {
                quoteUnmatched = quoteUnmatched || quoted;
                return;
            }
            at = quoted ? end + 1 : end;
        }
    }
    /// The words from index `first` on, joined to one text.
    std::string text(std::size_t first = 0) const {
        std::string text;
        for (std::size_t i = first; i < words.size(); ++i) {
            if (i > first)
                text += ' ';
            if (i + 1 == words.size() && quoteUnmatched)
                text += '"' + words[i];
            else if (words[i].find(' ') != std::string::npos)
                text += '"' + words[i] + '"';
            else
                text += words[i];
        }
        return text;
    }
};

} // namespace test
