#pragma once

#include <memory>

#include <signal.h>

namespace console {

/// A stack on which the calling thread's signal handlers run, because its own may be what has overflowed.
///
/// It serves the thread that made it until the object ends there, and handlers installed with `SA_ONSTACK`.
///
///     const console::SignalStack stack;
class SignalStack {
public:
    SignalStack();
    SignalStack(const SignalStack&) = delete;
    SignalStack& operator=(const SignalStack&) = delete;
    /// Gives the thread the stack back that it had before.
    ~SignalStack();

private:
    std::unique_ptr<char[]> m_memory;
    stack_t m_former;
};

} // namespace console
