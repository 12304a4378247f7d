#pragma once

#include <string>
#include <vector>

#include "RecordingOutput.h"
#include "fw_Console.h"

namespace test {

/// A console that records its output and every other call in `screen().calls`. Answers prompts with the given keys, and
/// with blanks after the last key.
///
///     test::RecordingConsole console("  q");   // shows two more pages, then quits
class RecordingConsole : public framework::Console {
public:
    explicit RecordingConsole(const std::string& keys = "") : m_keys(keys) {}

    RecordingOutput& screen() {
        return m_screen;
    }
    const std::vector<std::string>& calls() const {
        return m_screen.calls;
    }

    framework::OutputStream& outputStream() override {
        return m_screen;
    }
    char readKey() override {
        m_screen.calls.push_back("key");
        return m_used < m_keys.size() ? m_keys[m_used++] : ' ';
    }
    void removePrompt(int width) override {
        m_screen.calls.push_back("remove:" + std::to_string(width));
    }

private:
    RecordingOutput m_screen;
    std::string m_keys;
    std::size_t m_used = 0;
};

} // namespace test
