#pragma once

#include <string>

#include "console_History.h"
#include "console_RecordingOutputStream.h"
#include "ut_TerminalConsole.h"

namespace console {

/// The console's terminal: edits lines, and keeps a history of commands and answers. One thread at a time.
///
///     console::TerminalConsole terminal(STDIN_FILENO, STDOUT_FILENO, true);
///     std::string line;
///     while (terminal.readLine("vx> ", nullptr, &line)) run(line);
class TerminalConsole : public utility::TerminalConsole {
public:
    /// Switches the terminal to key mode if `keyMode` is set and `input` is a terminal.
    TerminalConsole(int input, int output, bool keyMode);

    framework::OutputStream& outputStream() override {
        return m_recorder;
    }
    char readKey() override;

    /// Shows `prompt` and reads a line that the user can edit. The Tab key replaces it with `complete(line)`;
    /// `complete` may be null. Returns false at the end of the input.
    bool readLine(const char* prompt, std::string (*complete)(const std::string& line), std::string* line);

    /// Reads a line without prompt and editing. The last line may lack its newline. Returns false at the end of the
    /// input, and if a read fails: a partial line before the failure does not count.
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
    void erase(const std::string& text, int width);
    void replaceLine(const char* prompt, std::string* line, const std::string& text);

    History m_history;
    RecordingOutputStream m_recorder;
};

} // namespace console
