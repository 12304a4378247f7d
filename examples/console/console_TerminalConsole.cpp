#include "console_TerminalConsole.h"

#include <algorithm>
#include <cwchar>
#include <vector>

#include <locale.h>

#include "ut_Terminal.h"

namespace console {

namespace {

constexpr char endOfInput = 4; // Ctrl-D
constexpr char lineKill = 21;  // Ctrl-U
constexpr char backspace = 8;  // Ctrl-H
constexpr char deleteKey = 127;
constexpr char tabulator = 9;
constexpr char escape = 27;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

// Removes the last UTF-8 character from `line`.
void dropLastCharacter(std::string* line) {
    while (line->size() > 1 && isContinuation(line->back()))
        line->pop_back();
    if (!line->empty())
        line->pop_back();
}

// Returns the width of each character of `text` in terminal columns.
std::vector<unsigned int> columnsOf(const std::string& text) {
    static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t former = utf8 != nullptr ? uselocale(utf8) : nullptr;
    std::vector<unsigned int> columns;
    for (std::size_t at = 0; at < text.size();) {
        wchar_t character = 0;
        mbstate_t state = {};
        const std::size_t length = std::mbrtowc(&character, &text[at], text.size() - at, &state);
        const bool known = length >= 1 && length <= text.size() - at;
        const int width = known ? wcwidth(character) : 1;
        columns.push_back(width >= 0 ? static_cast<unsigned int>(width) : 1);
        at += known ? length : 1;
    }
    if (utf8 != nullptr)
        uselocale(former);
    return columns;
}

bool isPrintable(char byte) {
    return static_cast<unsigned char>(byte) >= ' ' && byte != deleteKey;
}

} // namespace

TerminalConsole::TerminalConsole(int input, int output, bool keyMode)
    : utility::TerminalConsole(input, output, keyMode), m_recorder(descriptorStream(), m_history) {}

char TerminalConsole::readKey() {
    m_recorder.forgetLast();
    return utility::TerminalConsole::readKey();
}

// Erases `text`, which starts in the first column and ends at the cursor, from a screen of `width` columns.
void TerminalConsole::erase(const std::string& text, int width) {
    const unsigned int right = static_cast<unsigned int>(std::max(width, 1));
    unsigned int column = 0;
    std::string up;
    for (const unsigned int columns : columnsOf(text)) {
        // A character that does not fit into the row is shown in the next one.
        if (column + columns > right) {
            column = 0;
            up += "\033[A";
        }
        column += columns;
    }
    if (up.empty() && column < right) {
        show('\r' + std::string(column, ' ') + '\r');
    } else {
        show('\r' + up + "\033[J\r");
    }
}

void TerminalConsole::show(const std::string& text) {
    descriptorStream().SendOutputStream(text.data(), static_cast<unsigned int>(text.size()));
}

bool TerminalConsole::readPlainLine(std::string* line) {
    line->clear();
    char byte = 0;
    while (readByte(&byte)) {
        if (byte == '\n')
            return true;
        line->push_back(byte);
    }
    return inputError() == 0 && !line->empty();
}

// Replaces the line on the screen and in `line` with `text`.
void TerminalConsole::replaceLine(const char* prompt, std::string* line, const std::string& text) {
    if (text == *line)
        return;
    utility::Terminal* terminal = utility::Terminal::instance();
    terminal->update();
    erase(prompt + *line, terminal->width());
    *line = text;
    show(prompt + *line);
}

bool TerminalConsole::readLine(const char* prompt, std::string (*complete)(const std::string& line),
                               std::string* line) {
    line->clear();
    if (!descriptorStream().isAtLineStart())
        show("\n");
    show(prompt);
    char byte = 0;
    while (readByte(&byte)) {
        if (byte == '\n' || byte == '\r') {
            show("\n");
            return true;
        }
        if (byte == endOfInput) {
            if (line->empty())
                break;
        } else if (byte == backspace || byte == deleteKey) {
            std::string shorter = *line;
            dropLastCharacter(&shorter);
            replaceLine(prompt, line, shorter);
        } else if (byte == lineKill) {
            replaceLine(prompt, line, "");
        } else if (byte == tabulator) {
            replaceLine(prompt, line, complete != nullptr ? complete(*line) : *line);
        } else if (byte == escape) {
            skipRestOfKey(byte);
        } else if (isPrintable(byte)) {
            line->push_back(byte);
            show(std::string(1, byte));
        }
    }
    show("\n");
    return false;
}

} // namespace console
