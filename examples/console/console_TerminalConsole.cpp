#include "console_TerminalConsole.h"

#include <algorithm>
#include <cerrno>

#include <poll.h>
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
const int restOfKeyMilliseconds = 50;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

bool waitUntilReadable(int fd, int milliseconds) {
    pollfd request = {fd, POLLIN, 0};
    int count = 0;
    do
        count = poll(&request, 1, milliseconds);
    while (count < 0 && errno == EINTR);
    return count > 0;
}

bool isPrintable(char byte) {
    return static_cast<unsigned char>(byte) >= ' ' && byte != deleteKey;
}

} // namespace

TerminalConsole::TerminalConsole(int input, int output, bool keyMode)
    : m_input(input),
      m_inputError(0),
      m_output(output),
      m_recorder(m_output, m_history),
      m_mode(keyMode ? input : -1),
      m_pager(nullptr),
      m_promptSize(0) {}

bool TerminalConsole::readByte(char* byte) {
    for (;;) {
        const ssize_t count = read(m_input, byte, 1);
        if (count == 1)
            return true;
        if (count < 0 && (errno == EINTR || (errno == EAGAIN && waitUntilReadable(m_input, -1))))
            continue;
        m_inputError = count < 0 ? errno : 0;
        return false;
    }
}

bool TerminalConsole::readByteSoon(char* byte) {
    return waitUntilReadable(m_input, restOfKeyMilliseconds) && readByte(byte);
}

/// A cursor or function key sends an escape sequence, a letter beyond ASCII several bytes; each is one key all the
/// same.
void TerminalConsole::skipRestOfKey(char first) {
    char byte = 0;
    if (first == escape && readByteSoon(&byte)) {
        if (byte == 'O')
            readByteSoon(&byte);
        // "ESC [" and parameters up to a letter or a tilde.
        if (byte == '[') {
            while (readByteSoon(&byte) && (byte < '@' || byte > '~')) {
            }
        }
    }
    for (unsigned int lead = static_cast<unsigned char>(first); (lead & 0xC0) == 0xC0; lead <<= 1)
        readByteSoon(&byte);
}

char TerminalConsole::readKey() {
    char key = 'q';
    m_promptSize = m_recorder.forgetLast();
    if (!readByte(&key))
        return 'q';
    skipRestOfKey(key);
    return key;
}

void TerminalConsole::removePrompt(int width) {
    const unsigned int columns = static_cast<unsigned int>(std::max(width, 1));
    if (m_promptSize < columns) {
        show('\r' + std::string(m_promptSize, ' ') + '\r');
    } else {
        show("\r");
        for (unsigned int rest = m_promptSize; rest > columns; rest -= columns)
            show("\033[A");
        show("\033[J\r");
    }
    if (m_pager == nullptr)
        return;
    // The key may have been faster than the signal that tells the size.
    utility::Terminal* terminal = utility::Terminal::instance();
    terminal->update();
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
    return m_inputError == 0 && !line->empty();
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
    if (!m_output.isAtLineStart())
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
            rubOut(line);
        } else if (byte == lineKill) {
            while (!line->empty())
                rubOut(line);
        } else if (byte == tabulator) {
            const std::string longer = complete != nullptr ? complete(*line) : *line;
            if (longer == *line)
                continue;
            while (!line->empty())
                rubOut(line);
            *line = longer;
            show(*line);
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
