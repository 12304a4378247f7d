#include "ut_Arguments.h"

#include <cctype>
#include <cstdlib>
#include <cstring>

#include <strings.h>

#include "fw_StringRepository.h"
#include "ut_PutStream.h"

namespace utility {

namespace {

constexpr unsigned int initialCapacity = 20;
constexpr unsigned int notFound = 0xFFFFFFFF;

bool isBlank(char c) {
    return std::isspace(static_cast<unsigned char>(c)) != 0;
}

// A stored word is null if memory was exhausted; it equals no word.
bool isSameWord(const char* stored, const char* word) {
    return stored != nullptr && strcasecmp(stored, word) == 0;
}

} // namespace

Arguments::Arguments() : m_words(new StringArray(initialCapacity)), m_quoteUnmatched(false) {}

// Delegates, so that the destructor runs and frees the words if adding one of them throws.
Arguments::Arguments(const char* commandText) : Arguments() {
    addArgs(commandText);
}

Arguments::Arguments(int argc, char** argv) : Arguments() {
    if (argv == nullptr)
        return;
    for (int i = 0; i < argc; ++i)
        AddArg(argv[i]);
}

Arguments::~Arguments() {
    delete m_words;
}

void Arguments::addArgs(const char* text) {
    if (text == nullptr)
        return;
    while (*text != 0) {
        if (isBlank(*text)) {
            ++text;
        } else if (*text == '"') {
            text = addQuotedWord(text + 1);
        } else {
            text = addPlainWord(text);
        }
    }
}

const char* Arguments::addQuotedWord(const char* start) {
    const std::size_t length = std::strcspn(start, "\"");
    m_words->Append(start, static_cast<unsigned int>(length));
    if (start[length] != 0)
        return start + length + 1;
    m_quoteUnmatched = true;
    return start + length;
}

const char* Arguments::addPlainWord(const char* start) {
    const char* end = start;
    while (*end != 0 && !isBlank(*end))
        ++end;
    m_words->Append(start, static_cast<unsigned int>(end - start));
    return end;
}

unsigned int Arguments::ArgCount() const {
    return m_words->length();
}

const char* Arguments::ArgValue(unsigned int i) const {
    return m_words->ElementAt(i);
}

bool Arguments::isArg(const char* word) const {
    return ArgIndex(word) != notFound;
}

unsigned int Arguments::ArgIndex(const char* word) const {
    if (word == nullptr)
        return notFound;
    for (unsigned int i = 0; i < ArgCount(); ++i) {
        if (isSameWord(ArgValue(i), word))
            return i;
    }
    return notFound;
}

unsigned int Arguments::ArgIndexByToken(unsigned int token) const {
    return ArgIndex(strings::StringRepository::toString(token));
}

const char* Arguments::ArgString(const char* word) const {
    const unsigned int index = ArgIndex(word);
    return index != notFound ? ArgValue(index + 1) : nullptr;
}

long Arguments::ArgInt(const char* word) const {
    const char* value = ArgString(word);
    return value != nullptr ? std::strtol(value, nullptr, 10) : 0;
}

void Arguments::AddArg(const char* word) {
    if (word != nullptr)
        m_words->Append(word);
}

void Arguments::ModifyArg(unsigned int i, const char* word) {
    if (word != nullptr && i < ArgCount())
        m_words->SetAt(i, word);
}

void Arguments::DeleteArg(unsigned int i) {
    if (i < ArgCount())
        m_words->DeleteAt(i);
}

void Arguments::DeleteArg(const char* word) {
    if (word == nullptr)
        return;
    // Backwards, so that only words that remain are moved. If `word` is a stored word itself, delete that one last.
    unsigned int own = notFound;
    for (unsigned int i = ArgCount(); i-- > 0;) {
        if (ArgValue(i) == word) {
            own = i;
        } else if (isSameWord(ArgValue(i), word)) {
            m_words->DeleteAt(i);
            if (own != notFound)
                --own;
        }
    }
    DeleteArg(own);
}

char* Arguments::ToString(unsigned int first, PutStream& out) const {
    for (unsigned int i = first; i < ArgCount(); ++i) {
        const char* word = ArgValue(i) != nullptr ? ArgValue(i) : "";
        const bool isLast = i + 1 == ArgCount();
        if (isLast && m_quoteUnmatched) {
            out.PutF("\"%s", word);
        } else if (std::strchr(word, ' ') != nullptr) {
            out.PutF("\"%s\"", word);
        } else {
            out.PutF("%s", word);
        }
        if (!isLast)
            out.PutC(' ');
    }
    return out.pHead();
}

} // namespace utility
