#pragma once

#include <string>

#include "console_DescriptorOutputStream.h"
#include "console_History.h"
#include "console_RecordingOutputStream.h"
#include "console_TerminalMode.h"
#include "fw_Console.h"

namespace utility {
class PagingVirtualPutStream;
}

namespace console {

/// A console over two descriptors, which stay the caller's.
///
/// In key mode keys are read one by one, without waiting for a line and without echo, until the object ends. One thread
/// at a time.
///
///     console::TerminalConsole terminal(STDIN_FILENO, STDOUT_FILENO, true);
///     std::string line;
///     while (terminal.readLine("vx> ", nullptr, &line)) run(line);
class TerminalConsole : public framework::Console {
public:
    /// With `keyMode` and a terminal as input, keys are read one by one from now on.
    TerminalConsole(int input, int output, bool keyMode);

    framework::OutputStream& outputStream() override {
        return m_recorder;
    }
    /// The next key, the first byte of one that sends several; 'q' when there will be none.
    char readKey() override;
    void removePrompt(int width) override;

    /// Shows `prompt` and lets the user edit a line; the tabulator key replaces it by what `complete` makes of it.
    /// False when there will be none.
    bool readLine(const char* prompt, std::string (*complete)(const std::string& line), std::string* line);

    /// Reads a line without prompt and editing. False when there are none left; the last one needs no newline. What
    /// comes before a failure to read is no line.
    bool readPlainLine(std::string* line);

    /// The `errno` of the failure to read, 0 when there was none.
    int inputError() const {
        return m_inputError;
    }
    /// Whether what is written is shown by a terminal, which obeys control characters.
    bool isShownByTerminal() const {
        return m_isShownByTerminal;
    }
    /// The `errno` of the failure to write, 0 when there was none.
    int outputError() const {
        return m_output.errorNumber();
    }
    /// What the user has entered and been answered.
    History& history() {
        return m_history;
    }
    /// Whether what is written from now on is an answer, which the history remembers.
    void setAnswering(bool answering) {
        m_recorder.setRecording(answering);
    }
    /// The stream that learns the terminal's size before each of its next pages; null for none.
    void setPager(utility::PagingVirtualPutStream* pager) {
        m_pager = pager;
    }

private:
    bool readByte(char* byte);
    bool readByteSoon(char* byte);
    void skipRestOfKey(char first);
    void show(const std::string& text);
    void erase(const std::string& text, int width);
    void replaceLine(const char* prompt, std::string* line, const std::string& text);

    int m_input;
    int m_inputError;
    const bool m_isShownByTerminal;
    DescriptorOutputStream m_output;
    History m_history;
    RecordingOutputStream m_recorder;
    TerminalMode m_mode;
    utility::PagingVirtualPutStream* m_pager;
    unsigned int m_promptSize;
};

} // namespace console
