#pragma once

#include "ut_Export.h"

#include <cstddef>
#include <cstdint>

namespace utility {

class GetStream;

/// Base class of the typed arrays: a growable block of slots of equal size.
///
/// The typed array owns the block: it allocates the block with `realloc` and frees it; the base class stores only the
/// pointer, the length and the capacity. Not thread-safe. A failed allocation throws code 1230 and leaves the array
/// unchanged.
///
///     utility::IntArray ports(5);
///     for (int port = 0; port < 6; ++port) ports.Append(port);
///     ports.size();   // 25: the sixth element grew the 5 slots by 20
///     ports.truncate(2);
///     ports.length();   // 2
class VXUT_EXPORT Array {
public:
    /// Creates an empty array without a block, because typed arrays allocate their first block themselves. Ignores its
    /// argument.
    explicit Array(unsigned int ignored);
    Array(const Array&) = delete;
    Array& operator=(const Array&) = delete;
    /// Does not free the block: typed arrays free it in their own destructors.
    virtual ~Array();

    /// Does nothing. A typed array that can sort its elements overrides it.
    virtual void sort();

    /// Returns the number of elements.
    unsigned int length() const {
        return m_length;
    }
    /// Returns the capacity: the number of slots in the block.
    unsigned int size() const {
        return m_size;
    }
    /// Reduces the length to `length`; does nothing if `length` is greater. The capacity stays. The objects that the
    /// removed slots point to are not released, even by arrays that own their elements: release them first.
    void truncate(unsigned int length);

    /// Copies a block to a larger one and frees the old block. Returns the new block, which the caller frees with
    /// `framework::Memory::StaticFree`.
    ///
    /// - `old`: the old block of `*size` slots, or null to allocate a first block.
    /// - `size`: receives the new number of slots.
    /// - `grow`: the number of slots to add; 0 means 20.
    /// - `elementSize`: the size of a slot in bytes.
    ///
    /// The added slots are filled with zeros; the contents of a first block are indeterminate. Throws code 1230 if the
    /// allocation fails, or if the number of slots or bytes overflows; `old` and `*size` are then unchanged.
    static void* realloc(void* old, unsigned int* size, unsigned int grow, size_t elementSize);

protected:
    // The storage functions of the typed arrays. Only the library calls them.

    /// Allocates the first block, with `capacity` slots, or with 20 if `capacity` is 0.
    VXUT_HIDDEN void allocateBlock(unsigned int capacity, std::size_t elementSize);
    /// Allocates the first block, with the capacity of `other`, and copies the elements of `other` byte by byte.
    VXUT_HIDDEN void copyBlock(const Array& other, std::size_t elementSize);
    /// Grows the block if it is full, or if `count` more elements would fill it, by 20 or `count` slots, whichever is
    /// greater. Throws as `realloc` does.
    VXUT_HIDDEN void growBlock(std::size_t elementSize, unsigned int count = 0);
    /// Adds 20 slots if the block is full.
    VXUT_HIDDEN void growIfFull(std::size_t elementSize) {
        if (m_length >= m_size)
            growBlock(elementSize);
    }
    /// Frees the block.
    VXUT_HIDDEN void freeBlock();
    /// Grows the block in steps of 20 slots until it has at least `needed` slots. Returns false with no change if
    /// the allocation fails or the size overflows.
    VXUT_HIDDEN bool growInSteps(std::uint64_t needed, std::size_t elementSize);
    /// Appends `count` elements from `elements`, byte by byte, with the capacity that appending them one by one would
    /// give. Returns false and leaves the array as it is if the allocation fails or the size overflows.
    VXUT_HIDDEN bool appendBlock(const void* elements, unsigned int count, std::size_t elementSize);

    /// The number of elements.
    unsigned int m_length;
    /// The capacity in slots.
    unsigned int m_size;
    /// The block, which the typed array owns; null until it allocates one.
    void* m_block;

    friend class GetStream;
};

} // namespace utility
