#pragma once

#include "ut_Export.h"

#include "fw_Console.h"
#include "ut_DescriptorOutputStream.h"

namespace utility {

class PagingVirtualPutStream;

/// A console over two descriptors, which the caller owns and which must stay open: a terminal, pipes or files.
///
/// In key mode the terminal delivers single keys, without line buffering and echo. The original mode is restored:
///
/// - by the destructor, and so when an exception passes it;
/// - by `exit`, `quick_exit` and the end of `main`;
/// - before a signal with its default action ends the process, which includes `abort` and an uncaught exception;
/// - before SIGTSTP (Ctrl-Z) stops it; key mode returns when the process continues in the foreground.
///
/// It is not restored by `_exit`, SIGKILL and SIGSTOP. Key mode installs handlers for signals that have their default
/// action at that time, and the destructor removes them; a program that handles such a signal itself and then ends
/// calls `restoreMode`. A process forked meanwhile never changes the terminal.
///
/// Interrupted calls are repeated, and a non-blocking descriptor is waited for. One thread at a time. Nothing is
/// thrown, logged or allocated.
///
///     utility::TerminalConsole console(STDIN_FILENO, STDOUT_FILENO, true);
///     utility::PagingVirtualPutStream out(console, 80, 25, 4096, 2048);
///     for (int i = 0; i < 100; ++i) out.PutF("port %d\n", i);
///     out.FlushOutputStream();
class VXUT_EXPORT TerminalConsole : public framework::Console {
public:
    /// Switches the terminal to key mode if `keyMode` is true, `input` is a terminal, and no other console of the
    /// process is in key mode.
    TerminalConsole(int input, int output, bool keyMode);
    TerminalConsole(const TerminalConsole&) = delete;
    TerminalConsole& operator=(const TerminalConsole&) = delete;
    /// Restores the mode of the terminal.
    ~TerminalConsole() override;

    /// Returns the stream to the output descriptor.
    framework::OutputStream& outputStream() override;
    /// Waits for the next key. Returns its first byte if it sends several, as a cursor key does, and 'q' at the end of
    /// the input.
    char readKey() override;
    /// Erases the text of the last send, which started in the first column of a row and has one column for each byte,
    /// from a terminal of `width` columns; a width below 1 counts as 1. Then tells the stream of `setPager` the
    /// terminal's size.
    void removePrompt(int width) override;

    /// Waits for the next byte of input and stores it in `byte`. Returns false at the end of the input, and if the read
    /// fails. `byte` must not be null.
    bool readByte(char* byte);
    /// Reads the other bytes of a key that began with `first`, which arrive at once: an escape sequence, or the rest of
    /// a UTF-8 character.
    void skipRestOfKey(char first);

    /// Returns the `errno` of the last read if it failed; otherwise 0.
    int inputError() const {
        return m_inputError;
    }
    /// Returns the `errno` of the failed write; 0 if none has failed.
    int outputError() const {
        return m_output.errorNumber();
    }
    /// Returns whether the output is a terminal, which interprets control characters.
    bool isShownByTerminal() const {
        return m_isShownByTerminal;
    }
    /// Returns whether this console has switched the terminal to key mode.
    bool hasKeyMode() const {
        return m_hasKeyMode;
    }
    /// Sets the stream that `removePrompt` tells the terminal's size, so that each page has the current size; null for
    /// none, as at construction. Not owned.
    void setPager(PagingVirtualPutStream* pager) {
        m_pager = pager;
    }

    /// Restores the original mode of the terminal in key mode at once; does nothing without one. Async-signal-safe.
    static void restoreMode();

protected:
    /// Returns the stream to the output descriptor, also where `outputStream` is overridden.
    DescriptorOutputStream& descriptorStream() {
        return m_output;
    }

private:
    VXUT_HIDDEN bool readByteSoon(char* byte);
    VXUT_HIDDEN void show(const char* text, unsigned int length, unsigned int count);

    int m_input;
    int m_inputError;
    const bool m_isShownByTerminal;
    const bool m_hasKeyMode;
    DescriptorOutputStream m_output;
    PagingVirtualPutStream* m_pager;
};

} // namespace utility
