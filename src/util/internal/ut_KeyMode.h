#pragma once

// Switches a terminal to key mode, in which single keys are read without echo, and restores the original mode.
// Internal: not for callers of the library, who use `TerminalConsole`.
//
// Besides `endKeyMode`, the original mode is restored by `exit` and `quick_exit`, and before a signal with its default
// action ends or stops the process; `abort`, and so an uncaught exception, raises such a signal. After a stop, key mode
// returns when the process continues in the foreground. One terminal at a time.

namespace utility {

/// Switches the terminal `fd` to key mode. Returns false, and changes nothing, if `fd` is not a terminal or a terminal
/// is in key mode already.
bool startKeyMode(int fd);

/// Restores the original mode and the original actions of the signals. Call it only after `startKeyMode` returned true.
void endKeyMode();

/// Restores the original mode at once; does nothing if it is restored. Async-signal-safe.
void restoreTerminal();

} // namespace utility
