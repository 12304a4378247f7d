#pragma once

#include <string>

#include "console_History.h"
#include "console_RecordingOutputStream.h"
#include "ut_TerminalConsole.h"

namespace console {

/// The console's terminal: reads lines, and keeps a history of commands and answers. One thread at a time.
///
///     console::TerminalConsole terminal(STDIN_FILENO, STDOUT_FILENO, false);
///     std::string line;
///     while (terminal.readPlainLine(&line)) run(line);
class TerminalConsole : public utility::TerminalConsole {
public:
    /// Switches the terminal to key mode if `keyMode` is set and `input` is a terminal.
    TerminalConsole(int input, int output, bool keyMode);

    framework::OutputStream& outputStream() override {
        return m_recorder;
    }
    /// Also returns 'q' if the user interrupts the command.
    char readKey() override;

    /// Starts a new line if something was written to the present one.
    void startLine();
    /// Reads a line without editing. The last line may lack its newline. Returns false at the end of the input, and if
    /// a read fails: a partial line before the failure does not count.
    bool readPlainLine(std::string* line);

    /// The commands and answers so far.
    History& history() {
        return m_history;
    }
    /// Turns on or off whether text written from now on is an answer, which goes into the history.
    void setAnswering(bool answering) {
        m_recorder.setRecording(answering);
    }

private:
    void show(const std::string& text);

    const int m_keys;
    History m_history;
    RecordingOutputStream m_recorder;
};

} // namespace console
