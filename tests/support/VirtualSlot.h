#pragma once

#include <cstddef>
#include <cstring>

namespace test {

/// The index of a virtual operation in the virtual table of its class, from 0; -1 if the operation is not virtual.
/// Callers compiled earlier rely on these indices.
///
///     EXPECT_EQ(test::virtualSlot(&utility::PortAddress::clone), 0);
template<class Operation>
std::ptrdiff_t virtualSlot(Operation operation) {
    struct Representation {
        std::ptrdiff_t offset;
        std::ptrdiff_t adjustment;
    } representation;
    static_assert(sizeof operation == sizeof representation, "a pointer to a member operation has two words");
    std::memcpy(&representation, &operation, sizeof representation);
#if defined(__arm__) || defined(__aarch64__)
    const bool isVirtual = (representation.adjustment & 1) != 0;
    const std::ptrdiff_t offset = representation.offset;
#else
    const bool isVirtual = (representation.offset & 1) != 0;
    const std::ptrdiff_t offset = representation.offset - 1;
#endif
    return isVirtual ? offset / static_cast<std::ptrdiff_t>(sizeof(void*)) : -1;
}

} // namespace test
