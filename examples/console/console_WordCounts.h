#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace console {

/// Counts how often each word of a text occurs. A word consists of letters, digits, "_", "'" and bytes above 127;
/// letters count as small letters.
///
///     console::WordCounts counts;
///     for (char c : text) counts.add(c);
///     counts.endWord();
///     counts.sorted().front()->first;   // the most frequent word
class WordCounts {
public:
    using Count = std::pair<const std::string, unsigned long long>;

    /// Adds the next character of the text.
    void add(char c);
    /// Ends the last word. Call it at the end of the text.
    void endWord();
    /// Returns the words by descending frequency; words of equal frequency are in alphabetical order.
    std::vector<const Count*> sorted() const;

private:
    // An ordered map: no input makes it slow, and its order is alphabetical.
    std::map<std::string, unsigned long long> m_counts;
    std::string m_word;
};

} // namespace console
