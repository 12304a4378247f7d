#pragma once

#include <string>

#include "ut_OutputStream.h"

namespace console {

/// Collects text in memory, up to a limit: a send beyond it fails, so that an endless answer ends. One thread at a
/// time.
///
///     console::TextCollector collector(1U << 20);
///     collector.SendOutputStream("text", 4);   // collector.text() is "text"
class TextCollector : public framework::OutputStream {
public:
    explicit TextCollector(std::size_t limit) : m_limit(limit), m_isFull(false) {}

    const std::string& text() const {
        return m_text;
    }

    bool StartOutputStream() override {
        return true;
    }
    void EndOutputStream() override {}
    bool SendOutputStream(const char* data, unsigned int size) override {
        m_isFull = m_isFull || size > m_limit - m_text.size();
        if (!m_isFull)
            m_text.append(data, size);
        return !m_isFull;
    }
    bool isOutputStreamOpen() override {
        return true;
    }
    bool isOutputStreamInError() override {
        return false;
    }
    bool isOutputStreamAtEnd() override {
        return m_isFull;
    }

private:
    const std::size_t m_limit;
    std::string m_text;
    bool m_isFull;
};

} // namespace console
