#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ut_InputStream.h"

namespace test {

/// Returns the bytes of one receive of at most `size` bytes, or the result as a number if it is negative. Expects that
/// nothing is written past the bytes received.
///
///     EXPECT_EQ(test::receiveText(stream, 10), "ports");
///     EXPECT_EQ(test::receiveText(closed, 10), "-1");
inline std::string receiveText(framework::InputStream& stream, unsigned int size) {
    std::vector<char> data(size + 16, '\x7E');
    const int count = stream.ReceiveInputStream(data.data(), size);
    if (count < 0)
        return std::to_string(count);
    if (static_cast<unsigned int>(count) > size) {
        ADD_FAILURE() << count << " bytes received, " << size << " requested";
        return "";
    }
    EXPECT_TRUE(std::all_of(data.begin() + count, data.end(), [](char c) { return c == '\x7E'; }))
        << "written past the bytes received";
    return std::string(data.data(), static_cast<unsigned int>(count));
}

} // namespace test
