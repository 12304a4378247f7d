#pragma once

#include <atomic>

namespace console {

/// The user's request to end the running command: Ctrl-C, or the signal SIGINT.
///
/// Commands work in blocks and ask `isRequested` between them; whoever waits for a key waits for `descriptor` too.
/// There is one for the process. Thread-safe.
///
///     console::Interruption::install();
///     while (readBlock() && !console::Interruption::isRequested()) work();
class Interruption {
public:
    /// Handles SIGINT from now on, unless it is ignored. A second SIGINT before `clear` ends the process: the command
    /// does not react.
    static void install();
    /// Forgets the request, before the next command.
    static void clear();
    /// Requests the end of the command. Async-signal-safe.
    static void request();
    /// Whether the end was requested since `clear`.
    static bool isRequested() {
        return m_isRequested;
    }
    /// Waits until `input` can be read. Returns false if the end is requested first.
    static bool waitForInput(int input);

private:
    static std::atomic<bool> m_isRequested;
};

} // namespace console
