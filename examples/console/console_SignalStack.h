#pragma once

#include <memory>

#include <signal.h>

namespace console {

/// An alternate signal stack for the calling thread, so that a handler can report a stack overflow. If there is no
/// memory for it, handlers run on the thread's own stack.
///
/// Handlers installed with `SA_ONSTACK` run on it. Create and destroy the object in the same thread.
///
///     const console::SignalStack stack;
class SignalStack {
public:
    SignalStack();
    SignalStack(const SignalStack&) = delete;
    SignalStack& operator=(const SignalStack&) = delete;
    /// Restores the thread's previous signal stack.
    ~SignalStack();

private:
    std::unique_ptr<char[]> m_memory;
    stack_t m_former;
    bool m_isInstalled;
};

} // namespace console
