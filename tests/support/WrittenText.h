#pragma once

#include <string>

#include "HeldBytes.h"
#include "ut_BufferStream.h"

namespace test {

/// Returns what `write` writes to a stream of `capacity` bytes.
///
///     EXPECT_EQ(test::writtenText([&](utility::PutStream& out) { path.toPutStream(out); }), "/etc/passwd");
template<typename Write>
std::string writtenText(Write&& write, int capacity = 1000000) {
    utility::BufferStream out(capacity);
    write(out);
    return heldBytes(out);
}

} // namespace test
