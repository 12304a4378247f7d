#pragma once

#include <cstddef>
#include <string>

#include "ut_Buffer.h"

namespace test {

/// Returns the unread bytes in a buffer. Calls none of the operations that streams override, so it neither refills nor
/// flushes.
inline std::string heldBytes(const utility::Buffer& buffer) {
    return std::string(buffer.pTail(), static_cast<std::size_t>(buffer.WritePosition() - buffer.ReadPosition()));
}

} // namespace test
