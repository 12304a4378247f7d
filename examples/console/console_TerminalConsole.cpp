#include "console_TerminalConsole.h"

#include <algorithm>
#include <cerrno>

#include <unistd.h>

#include "ut_PagingVirtualPutStream.h"
#include "ut_Terminal.h"

namespace console {

namespace {

const char endOfInput = 4; // Ctrl-D
const char lineKill = 21;  // Ctrl-U
const char backspace = 8;  // Ctrl-H
const char deleteKey = 127;
const char tabulator = 9;
const char escape = 27;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

} // namespace

TerminalConsole::TerminalConsole(int input, int output, bool keyMode)
    : m_input(input),
      m_output(output),
      m_recorder(m_output, m_history),
      m_mode(keyMode ? input : -1),
      m_pager(nullptr) {}

bool TerminalConsole::readByte(char* byte) {
    for (;;) {
        const ssize_t count = read(m_input, byte, 1);
        if (count == 1)
            return true;
        if (count == 0 || errno != EINTR)
            return false;
    }
}

char TerminalConsole::readKey() {
    char key = 'q';
    m_recorder.forgetLast();
    return readByte(&key) ? key : 'q';
}

void TerminalConsole::removePrompt(int width) {
    show('\r' + std::string(static_cast<std::size_t>(std::max(width - 1, 0)), ' ') + '\r');
    const utility::Terminal* terminal = utility::Terminal::instance();
    if (m_pager != nullptr)
        m_pager->setPageSize(terminal->width(), terminal->height());
}

void TerminalConsole::show(const std::string& text) {
    m_output.SendOutputStream(text.data(), static_cast<unsigned int>(text.size()));
}

bool TerminalConsole::readPlainLine(std::string* line) {
    line->clear();
    char byte = 0;
    while (readByte(&byte)) {
        if (byte == '\n')
            return true;
        line->push_back(byte);
    }
    return !line->empty();
}

/// Takes the last character, of whatever length, off the line and off the screen.
void TerminalConsole::rubOut(std::string* line) {
    if (line->empty())
        return;
    while (line->size() > 1 && isContinuation(line->back()))
        line->pop_back();
    line->pop_back();
    show("\b \b");
}

bool TerminalConsole::readLine(const char* prompt, std::string (*complete)(const std::string& line),
                               std::string* line) {
    line->clear();
    show(prompt);
    char byte = 0;
    while (readByte(&byte)) {
        const unsigned char value = static_cast<unsigned char>(byte);
        if (byte == '\n' || byte == '\r') {
            show("\n");
            return true;
        }
        if (byte == endOfInput) {
            if (line->empty())
                break;
        } else if (byte == backspace || byte == deleteKey) {
            rubOut(line);
        } else if (byte == lineKill) {
            while (!line->empty())
                rubOut(line);
        } else if (byte == tabulator) {
            const std::string longer = complete != nullptr ? complete(*line) : *line;
            while (!line->empty())
                rubOut(line);
            *line = longer;
            show(*line);
        } else if (byte == escape) {
            // A cursor or function key: "ESC [" and parameters up to a letter or a tilde.
            if (!readByte(&byte) || byte != '[')
                continue;
            while (readByte(&byte) && (byte < '@' || byte > '~')) {
            }
        } else if (value >= 32) {
            line->push_back(byte);
            show(std::string(1, byte));
        }
    }
    show("\n");
    return false;
}

} // namespace console
