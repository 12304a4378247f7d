#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace test {

/// A caller's array of `size` bytes between guard bytes. The array and the guards are initialized with `fill`.
///
///     test::GuardedBytes bytes(8);
///     in.ReceiveInputStream(bytes.array(), 8);
///     EXPECT_EQ(bytes.content(), "12345678");
///     EXPECT_TRUE(bytes.areGuardsWhole());
class GuardedBytes {
public:
    static constexpr char fill = '\x7E';

    explicit GuardedBytes(std::size_t size) : m_size(size), m_bytes(guard + size + guard, fill) {}

    char* array() {
        return m_bytes.data() + guard;
    }
    int size() const {
        return static_cast<int>(m_size);
    }
    /// All bytes of the array.
    std::string content() const {
        return std::string(m_bytes.data() + guard, m_size);
    }
    bool areGuardsWhole() const {
        const auto isFill = [](char c) {
            return c == fill;
        };
        return std::all_of(m_bytes.begin(), m_bytes.begin() + guard, isFill) &&
               std::all_of(m_bytes.end() - guard, m_bytes.end(), isFill);
    }
    bool isUntouched() const {
        return areGuardsWhole() && content() == std::string(m_size, fill);
    }

private:
    static constexpr std::ptrdiff_t guard = 64;

    std::size_t m_size;
    std::vector<char> m_bytes;
};

} // namespace test
