#include "console_SignalStack.h"

namespace console {

namespace {

// Enough for a crash report with its back trace.
const std::size_t stackSize = 131072;

} // namespace

SignalStack::SignalStack() : m_memory(new char[stackSize]), m_former() {
    stack_t mine = {};
    mine.ss_sp = m_memory.get();
    mine.ss_size = stackSize;
    sigaltstack(&mine, &m_former);
}

SignalStack::~SignalStack() {
    sigaltstack(&m_former, nullptr);
}

} // namespace console
