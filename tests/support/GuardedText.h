#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace test {

/// A caller's array of `size` bytes, followed by guard bytes. Shows the text written, and whether the guard changed.
///
///     test::GuardedText text(16);
///     address.toBuffer(text.array(), text.size());
///     EXPECT_EQ(text.text(), "10.0.0.1");
///     EXPECT_TRUE(text.isGuardWhole());
class GuardedText {
public:
    explicit GuardedText(unsigned int size) : m_size(size), m_bytes(size + guard, fill) {}

    char* array() {
        return m_bytes.data();
    }
    unsigned int size() const {
        return m_size;
    }
    /// The text up to its NUL, or up to the first byte that was not written.
    std::string text() const {
        return std::string(m_bytes.begin(),
                           std::find_if(m_bytes.begin(), end(), [](char c) { return c == 0 || c == fill; }));
    }
    /// Whether the text ends in a NUL.
    bool isTerminated() const {
        const std::size_t length = text().size();
        return length < m_size && m_bytes[length] == 0;
    }
    bool isUntouched() const {
        return std::all_of(m_bytes.begin(), m_bytes.end(), isFill);
    }
    bool isGuardWhole() const {
        return std::all_of(end(), m_bytes.end(), isFill);
    }

private:
    static constexpr unsigned int guard = 64;
    static constexpr char fill = '\x7E';

    static bool isFill(char c) {
        return c == fill;
    }
    std::vector<char>::const_iterator end() const {
        return m_bytes.begin() + static_cast<std::ptrdiff_t>(m_size);
    }

    unsigned int m_size;
    std::vector<char> m_bytes;
};

} // namespace test
