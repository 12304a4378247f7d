#include "console_TerminalConsole.h"

#include "console_Interruption.h"

namespace console {

TerminalConsole::TerminalConsole(int input, int output, bool keyMode)
    : utility::TerminalConsole(input, output, keyMode), m_keys(input), m_recorder(descriptorStream(), m_history) {}

char TerminalConsole::readKey() {
    m_recorder.forgetLast();
    return Interruption::waitForInput(m_keys) ? utility::TerminalConsole::readKey() : 'q';
}

void TerminalConsole::show(const std::string& text) {
    descriptorStream().SendOutputStream(text.data(), static_cast<unsigned int>(text.size()));
}

void TerminalConsole::startLine() {
    if (!descriptorStream().isAtLineStart())
        show("\n");
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

} // namespace console
