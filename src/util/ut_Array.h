#pragma once

#include "ut_Export.h"

#include <cstddef>

namespace utility {

/// The growable block of equal slots under every typed array of the library.
///
/// The typed arrays own the block: they take it with `realloc` and free it; the base only counts. One thread at a time.
/// A block that cannot be had throws code 1230 and leaves the array as it was.
///
///     utility::IntArray ports(5);
///     for (int port = 0; port < 6; ++port) ports.Append(port);
///     ports.size();   // 25: five slots, and twenty more for the sixth port
///     ports.truncate(2);
///     ports.length();   // 2
class VXUT_EXPORT Array {
public:
    /// An empty array without a block. The argument is ignored: typed arrays take their first block themselves.
    explicit Array(unsigned int ignored);
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    /// Frees nothing: typed arrays free their block themselves.
    virtual ~Array();

    /// Sorts the elements where the typed array says so, and does nothing everywhere else.
    virtual void sort();

    /// How many elements are in use.
    unsigned int length() const {
        return m_length;
    }
    /// How many elements the block has slots for.
    unsigned int size() const {
        return m_size;
    }
    /// Cuts the array to `length` elements; a greater `length` changes nothing. The block stays as it is, and arrays
    /// that own what their slots point to do not release what is cut off: callers who need it gone release it first.
    void truncate(unsigned int length);

    /// Moves `old`, a block of `*size` slots of `elementSize` bytes, to a new block with `grow` more slots, 20 more
    /// when `grow` is 0, and frees it. The new slots are zero, except those of a first block (`old` null), which hold
    /// no meaningful value. Returns the new block, which the caller frees with `framework::Memory::StaticFree`, and
    /// sets `*size`. No memory, or more slots or bytes than can be counted: throws code 1230, with `old` and `*size` as
    /// before.
    static void* realloc(void* old, unsigned int* size, unsigned int grow, size_t elementSize);

protected:
    unsigned int m_length;
    unsigned int m_size;
    void* m_block;
};

} // namespace utility
