#pragma once

#include <string>
#include <vector>

#include "ut_OutputStream.h"

namespace test {

/// Sends the bytes of `text` and returns the result of `SendOutputStream`. Sends an exact copy, so that a sanitizer
/// detects a read past its end.
inline bool sendText(framework::OutputStream& stream, const std::string& text) {
    const std::vector<char> bytes(text.begin(), text.end());
    return stream.SendOutputStream(bytes.empty() ? "" : bytes.data(), static_cast<unsigned int>(bytes.size()));
}

} // namespace test
