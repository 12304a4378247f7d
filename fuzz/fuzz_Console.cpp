// Compares the console's command look-up and completion with simple references. Runs no command.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "../tests/support/ReferenceWords.h"
#include "Bytes.h"
#include "console_CommandTable.h"
#include "console_Completion.h"
#include "ut_StringArray.h"

namespace {

using fuzz::Bytes;
using fuzz::require;

std::vector<std::string> namesOf() {
    std::vector<std::string> names;
    unsigned int i = 0;
    for (const console::Command* command = console::commandAt(i); command != nullptr; command = console::commandAt(++i))
        names.push_back(command->name);
    return names;
}

bool beginsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

void checkFinding(const std::vector<std::string>& words) {
    utility::StringArray array(0);
    for (const std::string& word : words)
        array.Append(word.c_str());
    const console::Lookup found = console::findCommand(array);
    require((found.command == nullptr) == !found.problem.empty());
    if (found.command == nullptr)
        return;
    // Each word used is a prefix of that word of the name.
    std::string name = found.command->name;
    require(found.used >= 1 && found.used <= words.size());
    for (unsigned int i = 0; i < found.used; ++i) {
        const std::size_t end = std::min(name.find(' '), name.size());
        require(beginsWith(name.substr(0, end), words[i]));
        name.erase(0, end + 1);
    }
}

void checkNames() {
    for (const std::string& name : namesOf()) {
        test::ReferenceWords words;
        words.add(name.c_str());
        checkFinding(words.words);
        // Each beginning of a name can be completed.
        const console::Completion completion = console::complete(name);
        require(!completion.candidates.empty() && completion.replaced <= name.size());
    }
}

// Each candidate goes on with the end of the line that it replaces.
void checkCompletion(const std::string& line) {
    const console::Completion completion = console::complete(line);
    require(completion.replaced <= line.size());
    const std::string word = line.substr(line.size() - completion.replaced);
    const std::string common = console::commonBeginning(completion.candidates);
    for (const std::string& candidate : completion.candidates) {
        require(beginsWith(candidate, word) || beginsWith(candidate, '"' + word) || beginsWith('"' + candidate, word));
        require(beginsWith(candidate, common));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool namesAreChecked = (checkNames(), true);
    static_cast<void>(namesAreChecked);
    if (size == 0)
        return 0;
    Bytes in(data, size);
    const std::string text = in.rest();
    const std::string line = text.c_str();
    test::ReferenceWords words;
    words.add(line.c_str());
    if (!words.words.empty())
        checkFinding(words.words);
    checkCompletion(line);
    return 0;
}
