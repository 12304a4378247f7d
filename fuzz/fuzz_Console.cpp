// Compares the console's command look-up, completion and line editor with simple references. Runs no command.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "../tests/support/ReferenceWords.h"
#include "Bytes.h"
#include "console_CommandTable.h"
#include "console_TerminalConsole.h"
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
        require(console::completeCommand(name) == name || beginsWith(console::completeCommand(name), name));
    }
}

// A completed line is a prefix of a name.
void checkCompletion(const std::string& line) {
    const std::string completed = console::completeCommand(line);
    if (completed == line)
        return;
    bool isName = false;
    for (const std::string& name : namesOf())
        isName = isName || beginsWith(name + ' ', completed);
    require(isName);
}

// Returns the read end of a pipe that contains `text`; the write end is closed.
int pipeWith(const std::string& text) {
    int ends[2];
    require(pipe2(ends, O_CLOEXEC) == 0);
    require(write(ends[1], text.data(), text.size()) == static_cast<ssize_t>(text.size()));
    close(ends[1]);
    return ends[0];
}

// Returns the lines that a sequence of keys enters; there are no escape sequences and no completion.
std::vector<std::string> editedLines(const std::string& keys) {
    std::vector<std::string> lines;
    std::string line;
    for (const char key : keys) {
        if (key == '\n' || key == '\r') {
            lines.push_back(line);
            line.clear();
        } else if (key == 4) {
            if (line.empty())
                break;
        } else if (key == 8 || key == 127) {
            while (line.size() > 1 && (static_cast<unsigned char>(line.back()) & 0xC0) == 0x80)
                line.pop_back();
            if (!line.empty())
                line.pop_back();
        } else if (key == 21) {
            line.clear();
        } else if (static_cast<unsigned char>(key) >= ' ') {
            line += key;
        }
    }
    return lines;
}

void checkKeys(const std::string& keys, bool isPlain) {
    const int input = pipeWith(keys);
    const int output = open("/dev/null", O_WRONLY | O_CLOEXEC);
    std::vector<std::string> lines;
    std::string line;
    {
        console::TerminalConsole terminal(input, output, true);
        while (terminal.readLine("vx> ", isPlain ? nullptr : console::completeCommand, &line))
            lines.push_back(line);
        require(terminal.inputError() == 0);
        // Without Ctrl-D, the lines end with the last key.
        require(keys.find('\4') != std::string::npos || terminal.readKey() == 'q');
    }
    close(input);
    close(output);
    if (isPlain)
        require(lines == editedLines(keys));
    for (const std::string& read : lines)
        require(read.find_first_of("\n\r\x1B\x7F") == std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const bool namesAreChecked = (checkNames(), true);
    static_cast<void>(namesAreChecked);
    if (size == 0)
        return 0;
    Bytes in(data, size);
    const unsigned int kind = in.below(3);
    const std::string text = in.rest();
    if (kind == 0) {
        const std::string line = text.c_str();
        test::ReferenceWords words;
        words.add(line.c_str());
        if (!words.words.empty())
            checkFinding(words.words);
        checkCompletion(line);
    } else {
        checkKeys(text, kind == 1 && text.find('\x1B') == std::string::npos);
    }
    return 0;
}
