#include "ut_TerminalConsole.h"

#include <algorithm>
#include <cerrno>
#include <climits>

#include <poll.h>
#include <unistd.h>

#include "internal/ut_KeyMode.h"
#include "ut_PagingVirtualPutStream.h"
#include "ut_Terminal.h"

namespace utility {

namespace {

constexpr char escape = 27;
constexpr int restOfKeyMilliseconds = 50;

bool waitUntilReadable(int fd, int milliseconds) {
    pollfd request = {fd, POLLIN, 0};
    int count = 0;
    do
        count = poll(&request, 1, milliseconds);
    while (count < 0 && errno == EINTR);
    return count > 0;
}

} // namespace

TerminalConsole::TerminalConsole(int input, int output, bool keyMode)
    : m_input(input),
      m_inputError(0),
      m_isShownByTerminal(isatty(output) != 0),
      m_hasKeyMode(keyMode && startKeyMode(input)),
      m_output(output),
      m_pager(nullptr) {}

TerminalConsole::~TerminalConsole() {
    if (m_hasKeyMode)
        endKeyMode();
}

framework::OutputStream& TerminalConsole::outputStream() {
    return m_output;
}

bool TerminalConsole::readByte(char* byte) {
    for (;;) {
        const ssize_t count = read(m_input, byte, 1);
        if (count < 0 && (errno == EINTR || (errno == EAGAIN && waitUntilReadable(m_input, -1))))
            continue;
        m_inputError = count < 0 ? errno : 0;
        return count == 1;
    }
}

bool TerminalConsole::readByteSoon(char* byte) {
    return waitUntilReadable(m_input, restOfKeyMilliseconds) && readByte(byte);
}

void TerminalConsole::skipRestOfKey(char first) {
    char byte = 0;
    if (first == escape && readByteSoon(&byte)) {
        if (byte == 'O')
            readByteSoon(&byte);
        // A control sequence: "ESC [", parameters, and a final byte from '@' to '~'.
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
    if (!readByte(&key))
        return 'q';
    skipRestOfKey(key);
    return key;
}

void TerminalConsole::removePrompt(int width) {
    const unsigned int right = static_cast<unsigned int>(std::max(width, 1));
    const unsigned int columns = m_output.lastSize();
    // No terminal has more rows than its size can express.
    const unsigned int rowsUp = std::min<unsigned int>(columns > 0 ? (columns - 1) / right : 0, USHRT_MAX);
    show("\r", 1, 1);
    if (columns < right) {
        show(" ", 1, columns);
    } else {
        show("\033[A", 3, rowsUp);
        show("\033[J", 3, 1);
    }
    show("\r", 1, 1);
    if (m_pager == nullptr)
        return;
    // SIGWINCH may not have arrived yet: ask for the size.
    Terminal* terminal = Terminal::instance();
    terminal->update();
    m_pager->setPageSize(terminal->width(), terminal->height());
}

void TerminalConsole::restoreMode() {
    restoreTerminal();
}

// Writes `text` `count` times.
void TerminalConsole::show(const char* text, unsigned int length, unsigned int count) {
    for (unsigned int i = 0; i < count; ++i)
        m_output.SendOutputStream(text, length);
}

} // namespace utility
