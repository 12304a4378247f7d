#pragma once

#include <string>

namespace test {

/// The text that `object.toBuffer` writes, up to 299 characters.
template<typename Object>
std::string textOf(const Object& object) {
    char buffer[300];
    return object.toBuffer(buffer, sizeof buffer);
}

} // namespace test
