#include "console_Secret.h"

#include <unistd.h>

#include "ut_TerminalConsole.h"

namespace console {

namespace {

constexpr char endOfInput = 4; // Ctrl-D
constexpr char lineKill = 21;  // Ctrl-U
constexpr char backspace = 8;  // Ctrl-H
constexpr char deleteKey = 127;

void show(utility::TerminalConsole& terminal, const std::string& text) {
    terminal.outputStream().SendOutputStream(text.data(), static_cast<unsigned int>(text.size()));
}

// Reads a line in key mode. Returns false at the end of the input.
bool readKeys(utility::TerminalConsole& terminal, std::string* secret) {
    char key = 0;
    while (Interruption::waitForInput(STDIN_FILENO) && terminal.readByte(&key)) {
        if (key == '\n' || key == '\r')
            return true;
        if (key == endOfInput && secret->empty())
            return false;
        if (key == lineKill) {
            secret->clear();
        } else if (key == backspace || key == deleteKey) {
            if (!secret->empty())
                secret->pop_back();
        } else {
            secret->push_back(key);
        }
    }
    return false;
}

} // namespace

bool readSecret(Invocation& call, const char* prompt, std::string* secret) {
    if (isatty(STDIN_FILENO) == 0)
        return call.fail("standard input is not a terminal: use \"password NAME -\"");
    // Switches to key mode unless the console is in it already. Prompts go to standard error, so that they do not
    // become part of an answer.
    utility::TerminalConsole terminal(STDIN_FILENO, STDERR_FILENO, true);
    secret->clear();
    show(terminal, prompt);
    const bool isRead = readKeys(terminal, secret);
    show(terminal, "\n");
    return isRead || call.fail("no password was entered");
}

} // namespace console
