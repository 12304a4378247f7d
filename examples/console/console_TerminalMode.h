#pragma once

namespace console {

/// Puts a terminal into the mode in which single keys are read without echo, and back.
///
/// The former mode comes back with the object's end, with `exit`, and before any signal that ends or stops the process
/// takes effect; after a stop the key mode returns with the process to the foreground. One object at a time.
///
///     console::TerminalMode keys(STDIN_FILENO);
class TerminalMode {
public:
    /// Does nothing when `fd` is no terminal.
    explicit TerminalMode(int fd);
    TerminalMode(const TerminalMode&) = delete;
    TerminalMode& operator=(const TerminalMode&) = delete;
    ~TerminalMode();

    /// Restores the former mode at once; safe in a signal handler.
    static void restore();
};

} // namespace console
