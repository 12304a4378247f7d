#pragma once

#include <cstddef>
#include <random>
#include <string>

namespace test {

/// Returns `size` bytes from a random engine.
inline std::string randomBytes(std::mt19937& random, std::size_t size) {
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

} // namespace test
