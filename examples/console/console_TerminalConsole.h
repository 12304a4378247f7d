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

/// A console over two descriptors, which the caller owns.
///
/// In key mode the terminal delivers single keys, without line buffering and echo, until the object is destroyed. One
/// thread at a time.
///
///     console::TerminalConsole terminal(STDIN_FILENO, STDOUT_FILENO, true);
///     std::string line;
///     while (terminal.readLine("vx> ", nullptr, &line)) run(line);
class TerminalConsole : public framework::Console {
public:
    /// Switches the terminal to key mode if `keyMode` is set and `input` is a terminal.
    TerminalConsole(int input, int output, bool keyMode);

    framework::OutputStream& outputStream() override {
        return m_recorder;
    }
    /// Waits for the next key. Returns its first byte if it sends several, and 'q' at the end of the input.
    char readKey() override;
    void removePrompt(int width) override;

    /// Shows `prompt` and reads a line that the user can edit. The Tab key replaces it with `complete(line)`;
    /// `complete` may be null. Returns false at the end of the input.
    bool readLine(const char* prompt, std::string (*complete)(const std::string& line), std::string* line);

    /// Reads a line without prompt and editing. The last line may lack its newline. Returns false at the end of the
    /// input, and if a read fails: a partial line before the failure does not count.
    bool readPlainLine(std::string* line);

    /// The `errno` of the failed read; 0 if none has failed.
    int inputError() const {
        return m_inputError;
    }
    /// Whether the output is a terminal, which interprets control characters.
    bool isShownByTerminal() const {
        return m_isShownByTerminal;
    }
    /// The `errno` of the failed write; 0 if none has failed.
    int outputError() const {
        return m_output.errorNumber();
    }
    /// The commands and answers so far.
    History& history() {
        return m_history;
    }
    /// Turns on or off whether text written from now on is an answer, which goes into the history.
    void setAnswering(bool answering) {
        m_recorder.setRecording(answering);
    }
    /// Sets the stream that is told the terminal's size before each of its pages; null for none. Not owned.
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
