#pragma once

#include <string>
#include <vector>

namespace test {

/// What a person sees of the output of a program: the lines of a terminal that wraps.
///
/// It knows carriage return, newline, backspace, and of the escape sequences "up" and "clear to the end". Columns are
/// bytes.
///
///     test::Screen screen(20);
///     screen.show("one\rtwo");
///     EXPECT_EQ(screen.lines().back(), "two");
class Screen {
public:
    explicit Screen(std::size_t columns) : m_columns(columns) {}

    void show(const std::string& output) {
        for (std::size_t i = 0; i < output.size(); ++i) {
            if (output.compare(i, 2, "\033[") == 0) {
                i += 2;
                obey(output[i]);
            } else {
                put(output[i]);
            }
        }
    }

    /// The lines so far, without the blanks at their ends.
    std::vector<std::string> lines() const {
        std::vector<std::string> trimmed;
        for (const std::string& line : m_lines)
            trimmed.push_back(line.substr(0, line.find_last_not_of(' ') + 1));
        return trimmed;
    }

private:
    void obey(char order) {
        if (order == 'A' && m_row > 0)
            --m_row;
        if (order == 'J') {
            m_lines.resize(m_row + 1);
            m_lines[m_row].resize(m_column < m_lines[m_row].size() ? m_column : m_lines[m_row].size());
        }
    }

    void put(char c) {
        if (c == '\r') {
            m_column = 0;
        } else if (c == '\n') {
            goDown();
        } else if (c == '\b') {
            m_column -= m_column > 0 ? 1 : 0;
        } else {
            // The cursor stays behind a full line until something more is shown.
            if (m_column == m_columns) {
                m_column = 0;
                goDown();
            }
            if (m_lines[m_row].size() <= m_column)
                m_lines[m_row].resize(m_column + 1, ' ');
            m_lines[m_row][m_column++] = c;
        }
    }

    void goDown() {
        if (++m_row == m_lines.size())
            m_lines.emplace_back();
    }

    std::size_t m_columns;
    std::size_t m_row = 0;
    std::size_t m_column = 0;
    std::vector<std::string> m_lines = {""};
};

} // namespace test
