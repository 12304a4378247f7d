#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

// Copies short texts inline, because a call of `memcpy` costs more. Internal.

namespace utility {

/// Copies `length` bytes, as many as one `Word` to two of them, as a first and a last word that may overlap.
template<typename Word>
[[gnu::always_inline]] inline void copyEnds(char* to, const char* from, std::size_t length) {
    Word first = 0;
    Word last = 0;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + length - sizeof last, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + length - sizeof last, &last, sizeof last);
}

/// Does what `memcpy` does, fast for up to 16 bytes.
[[gnu::always_inline]] inline void copyShort(char* to, const char* from, std::size_t length) {
    if (length > 16) {
        std::memcpy(to, from, length);
    } else if (length >= 8) {
        copyEnds<std::uint64_t>(to, from, length);
    } else if (length >= 4) {
        copyEnds<std::uint32_t>(to, from, length);
    } else {
        for (std::size_t i = 0; i < length; ++i)
            to[i] = from[i];
    }
}

} // namespace utility
