#pragma once

#include <string>
#include <vector>

#include "RecordingOutput.h"
#include "fw_Console.h"

namespace test {

/// A console that keeps what is shown on it and everything else that is asked of it, in `screen().calls`, and answers
/// prompts with the keys it was given, then with blanks.
///
///     test::RecordingConsole console("  q");   // two pages more, then the end
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
