// Compares `Arguments` with a simple reference: splitting, searching, changing and writing. The input consists of texts
// separated by NULs; each is added to the ones before.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include <strings.h>

#include "../tests/support/ReferenceWords.h"
#include "Bytes.h"
#include "fw_Memory.h"
#include "ut_Arguments.h"
#include "ut_BufferStream.h"

namespace {

using fuzz::require;
using utility::Arguments;
using Words = std::vector<std::string>;

constexpr unsigned int nowhere = 0xFFFFFFFFu;

Words wordsOf(const Arguments& arguments) {
    Words words;
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i)
        words.push_back(arguments.ArgValue(i));
    require(arguments.ArgValue(arguments.ArgCount()) == nullptr);
    return words;
}

unsigned int indexOf(const Words& words, const std::string& word) {
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (strcasecmp(words[i].c_str(), word.c_str()) == 0)
            return static_cast<unsigned int>(i);
    }
    return nowhere;
}

void checkLookUps(const Arguments& arguments, const Words& words) {
    for (const std::string& word : words) {
        const unsigned int index = indexOf(words, word);
        require(arguments.isArg(word.c_str()) && arguments.ArgIndex(word.c_str()) == index);
        const char* const value = arguments.ArgString(word.c_str());
        require(index + 1 < words.size() ? value != nullptr && words[index + 1] == value : value == nullptr);
        require(arguments.ArgInt(word.c_str()) == (value != nullptr ? std::atol(value) : 0));
    }
    require(arguments.ArgIndex("no such word") == indexOf(words, "no such word"));
}

std::string textOf(const Arguments& arguments, const std::string& expected) {
    utility::BufferStream out(static_cast<int>(expected.size()) + 2);
    const char* const end = arguments.ToString(0, out);
    require(end == out.pHead());
    return std::string(out.pTail(), static_cast<std::size_t>(out.ReadAvailable()));
}

// Whether the words survive being written as one text and split again.
bool isReadBack(const test::ReferenceWords& words) {
    test::ReferenceWords again;
    again.add(words.text());
    return again.words == words.words && again.quoteUnmatched == words.quoteUnmatched;
}

// Writing and splitting a text again does not change it.
void checkText(const Arguments& arguments, const test::ReferenceWords& expected) {
    const std::string text = textOf(arguments, expected.text());
    require(text == expected.text());
    if (!isReadBack(expected))
        return;
    const Arguments again(text.c_str());
    require(wordsOf(again) == expected.words && again.quoteUnmatched() == expected.quoteUnmatched);
}

void checkDeletion(Arguments& arguments, Words words) {
    while (!words.empty()) {
        const std::string word = words[words.size() / 2];
        arguments.DeleteArg(arguments.ArgValue(arguments.ArgIndex(word.c_str())));
        words.erase(
            std::remove_if(words.begin(), words.end(),
                           [&](const std::string& other) { return strcasecmp(other.c_str(), word.c_str()) == 0; }),
            words.end());
        require(wordsOf(arguments) == words);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const long outstanding = framework::Memory::staticOutstanding();
    const std::string input(reinterpret_cast<const char*>(data), size);
    {
        Arguments arguments(nullptr);
        test::ReferenceWords expected;
        for (std::size_t at = 0; at <= input.size(); at = std::min(input.find('\0', at), input.size()) + 1) {
            arguments.addArgs(input.c_str() + at);
            expected.add(input.c_str() + at);
        }
        require(wordsOf(arguments) == expected.words && arguments.quoteUnmatched() == expected.quoteUnmatched);
        checkLookUps(arguments, expected.words);
        checkText(arguments, expected);
        checkDeletion(arguments, expected.words);
    }
    require(framework::Memory::staticOutstanding() == outstanding);
    return 0;
}
