#include "console_SignalStack.h"

#include <new>

namespace console {

namespace {

// Enough for a crash report with its back trace.
constexpr std::size_t stackSize = 131072;

} // namespace

SignalStack::SignalStack() : m_memory(new (std::nothrow) char[stackSize]), m_former(), m_isInstalled(false) {
    if (m_memory == nullptr)
        return;
    stack_t mine = {};
    mine.ss_sp = m_memory.get();
    mine.ss_size = stackSize;
    m_isInstalled = sigaltstack(&mine, &m_former) == 0;
}

SignalStack::~SignalStack() {
    if (m_isInstalled)
        sigaltstack(&m_former, nullptr);
}

} // namespace console
