#pragma once

#include <string>
#include <vector>

namespace test {

/// The visible lines of a terminal that wraps long lines.
///
/// Interprets carriage return, newline, backspace, and the escape sequences "cursor up" and "erase to the end of the
/// display". A byte is one column.
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

    /// The lines so far, without trailing blanks.
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
            // The cursor stays after a full line until the next character.
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
