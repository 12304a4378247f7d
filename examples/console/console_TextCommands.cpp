#include <algorithm>
#include <cctype>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "console_CommandGroups.h"
#include "console_Files.h"
#include "fw_Logger.h"
#include "ut_Misc.h"
#include "ut_md5.h"

namespace console {

namespace {

// Counts how often each word of a text occurs.
class WordCounts {
public:
    using Count = std::pair<const std::string, unsigned long long>;

    void add(char c) {
        const unsigned char byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || byte > 127 || c == '_' || c == '\'') {
            m_word += static_cast<char>(std::tolower(byte));
        } else {
            endWord();
        }
    }

    void endWord() {
        if (m_word.empty())
            return;
        ++m_counts[m_word];
        m_word.clear();
    }

    // Returns the words by descending frequency; words of equal frequency are in alphabetical order.
    std::vector<const Count*> sorted() const {
        std::vector<const Count*> words;
        for (const Count& word : m_counts)
            words.push_back(&word);
        std::stable_sort(words.begin(), words.end(),
                         [](const Count* a, const Count* b) { return a->second > b->second; });
        return words;
    }

private:
    // An ordered map: no input makes it slow, and its order is alphabetical.
    std::map<std::string, unsigned long long> m_counts;
    std::string m_word;
};

bool countWords(Invocation& call) {
    WordCounts counts;
    const bool succeeded = readFile(call, call.word(0), [&](const char* block, int count) {
        std::for_each(block, block + count, [&](char c) { counts.add(c); });
        return true;
    });
    if (!succeeded)
        return false;
    counts.endWord();
    for (const WordCounts::Count* word : counts.sorted()) {
        call.out().PutF("%8llu ", word->second);
        call.out().PutB(word->first.data(), static_cast<int>(word->first.size()));
        call.out().PutC('\n');
    }
    return true;
}

// Runs `one` for each path, also after a failure. Returns false, with all failures joined, if any failed.
bool forEachPath(Invocation& call, bool (*one)(Invocation& call, const char* path)) {
    std::string failures;
    for (unsigned int i = 0; i < call.wordCount(); ++i) {
        if (!one(call, call.word(i)))
            failures += (failures.empty() ? "" : "; ") + call.failure();
    }
    return failures.empty() || call.fail("%s", failures.c_str());
}

bool showMd5(Invocation& call, const char* path) {
    md5_state_t state;
    unsigned char digest[16];
    char text[33];
    md5_init(&state);
    const bool succeeded = readFile(call, path, [&](const char* block, int count) {
        md5_append(&state, reinterpret_cast<const unsigned char*>(block), count);
        return true;
    });
    if (!succeeded)
        return false;
    md5_finish(&state, digest);
    call.out().PutF("%s  %s\n", utility::Misc::toHexString(digest, sizeof digest, text, sizeof text), path);
    return true;
}

bool md5(Invocation& call) {
    return forEachPath(call, showMd5);
}

bool showCrc(Invocation& call, const char* path) {
    unsigned char crc = 0xFF;
    char text[3];
    const bool succeeded = readFile(call, path, [&](const char* block, int count) {
        std::for_each(block, block + count,
                      [&](char c) { crc = utility::Misc::crc_table(static_cast<unsigned char>(c), crc); });
        return true;
    });
    if (!succeeded)
        return false;
    call.out().PutF("%s  %s\n", utility::Misc::toHexString(crc, true, text, sizeof text), path);
    return true;
}

bool crc(Invocation& call) {
    return forEachPath(call, showCrc);
}

// Returns the length that the lead byte of a UTF-8 character announces; 1 for any other byte.
std::size_t announcedLength(unsigned char lead) {
    std::size_t ones = 0;
    while (ones < 8 && (lead & (0x80U >> ones)) != 0)
        ++ones;
    return ones >= 2 && ones <= 6 ? ones : 1;
}

// Finds the first character of a text, given byte by byte, that is not printable UTF-8.
class Utf8Check {
public:
    // Adds `c`. Returns whether all characters before it are printable.
    bool add(char c) {
        const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80 && m_character.size() < m_announced;
        if (!continues && !endCharacter())
            return false;
        if (!continues)
            m_announced = announcedLength(static_cast<unsigned char>(c));
        m_character += c;
        return true;
    }

    // Ends the last character. Returns whether it is printable.
    bool endCharacter() {
        const unsigned int length = static_cast<unsigned int>(m_character.size());
        if (length > 0 &&
            (m_character[0] == 0 || !utility::Misc::isStringPrintableUtf8(m_character.data(), length, "", "\t\n\r")))
            return false;
        m_start += length;
        m_character.clear();
        m_announced = 0;
        return true;
    }

    // The offset of the first character that is not known to be printable.
    unsigned long long badOffset() const {
        return m_start;
    }

private:
    std::string m_character;
    std::size_t m_announced = 0;
    unsigned long long m_start = 0;
};

// Silences the log while it lives: the library logs each bad character, but here the offset says more.
class SilentLog {
public:
    SilentLog() {
        framework::Logger::setSink(discard, nullptr);
    }
    SilentLog(const SilentLog&) = delete;
    SilentLog& operator=(const SilentLog&) = delete;
    ~SilentLog() {
        framework::Logger::setSink(nullptr, nullptr);
    }

private:
    static void discard(void*, framework::Logger::LogType, const char*, int, const char*) {}
};

bool checkUtf8(Invocation& call) {
    const SilentLog silent;
    Utf8Check check;
    bool good = true;
    const bool read = readFile(call, call.word(0), [&](const char* block, int count) {
        for (int i = 0; good && i < count; ++i)
            good = check.add(block[i]);
        return good;
    });
    if (!read)
        return false;
    if (!good || !check.endCharacter())
        return call.fail("%s: not printable UTF-8 at offset %llu", call.word(0), check.badOffset());
    call.out().PutF("%s: printable UTF-8\n", call.word(0));
    return true;
}

} // namespace

constexpr Command textCommands[] = {
    {"count words", "PATH", "count the words of a file, the most frequent first", 1, 1, countWords},
    {"md5", "PATH...", "show the MD5 digests of files", 1, 1000, md5},
    {"crc", "PATH...", "show the CRC-8 of files", 1, 1000, crc},
    {"check utf8", "PATH", "find the first character that is not printable UTF-8", 1, 1, checkUtf8},
    {nullptr, nullptr, nullptr, 0, 0, nullptr}};

} // namespace console
