#pragma once

#include <cstddef>
#include <string>

namespace test {

/// Returns `size` bytes of every value. A byte differs from its neighbors, and from the bytes a page away, so a lost,
/// repeated or misplaced byte is noticed.
inline std::string bytePattern(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i * 7 + i / 251);
    return bytes;
}

} // namespace test
