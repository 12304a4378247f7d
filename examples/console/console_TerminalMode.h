#pragma once

namespace console {

/// Switches a terminal to key mode, in which single keys are read without echo, and restores the original mode.
///
/// The original mode is restored by the destructor, by `exit`, and before a signal ends or stops the process. After a
/// stop, key mode returns when the process continues in the foreground. One object at a time.
///
///     console::TerminalMode keys(STDIN_FILENO);
class TerminalMode {
public:
    /// Does nothing if `fd` is not a terminal.
    explicit TerminalMode(int fd);
    TerminalMode(const TerminalMode&) = delete;
    TerminalMode& operator=(const TerminalMode&) = delete;
    ~TerminalMode();

    /// Restores the original mode at once. Async-signal-safe.
    static void restore();
};

} // namespace console
