#include "console_History.h"

namespace console {

namespace {

constexpr int capacity = 65536;

} // namespace

History::History() : m_stream(capacity), m_added(0), m_atLineStart(true) {}

void History::add(const std::string& text) {
    m_stream.SendOutputStream(text.data(), static_cast<unsigned int>(text.size()));
    m_added += text.size();
    if (!text.empty())
        m_atLineStart = text.back() == '\n';
}

void History::addLines(const std::string& text) {
    add((m_atLineStart ? "" : "\n") + text + (text.empty() || text.back() != '\n' ? "\n" : ""));
}

std::string History::text() {
    std::string held(capacity, 0);
    m_stream.StartInputStream();
    held.resize(static_cast<std::size_t>(m_stream.ReceiveInputStream(&held[0], capacity)));
    // The oldest line left is partly overwritten.
    if (m_added >= capacity)
        held.erase(0, held.find('\n') + 1);
    return held;
}

} // namespace console
