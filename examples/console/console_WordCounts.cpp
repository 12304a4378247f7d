#include "console_WordCounts.h"

#include <algorithm>
#include <cctype>

namespace console {

void WordCounts::add(char c) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (std::isalnum(byte) != 0 || byte > 127 || c == '_' || c == '\'') {
        m_word += static_cast<char>(std::tolower(byte));
    } else {
        endWord();
    }
}

void WordCounts::endWord() {
    if (m_word.empty())
        return;
    ++m_counts[m_word];
    m_word.clear();
}

std::vector<const WordCounts::Count*> WordCounts::sorted() const {
    std::vector<const Count*> words;
    for (const Count& word : m_counts)
        words.push_back(&word);
    std::stable_sort(words.begin(), words.end(), [](const Count* a, const Count* b) { return a->second > b->second; });
    return words;
}

} // namespace console
