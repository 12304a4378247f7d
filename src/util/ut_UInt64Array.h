#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of unsigned 64-bit numbers.
///
/// The array owns its block; the elements are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the array unchanged. Traces show the value first, and then its index.
///
///     utility::UInt64Array blocks(4);
///     blocks.Append(0xFFFFFFFFFFFFFFFF);
///     blocks.SetAt(0, 512);
///     blocks[0];   // 512
class VXUT_EXPORT UInt64Array : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit UInt64Array(unsigned int capacity);
    /// Copies the elements and the capacity of `other`. Throws code 1230 if the allocation fails.
    UInt64Array(const UInt64Array& other);
    UInt64Array& operator=(const UInt64Array&) = delete;
    ~UInt64Array() override;

    /// Adds `value` at the end.
    void Append(unsigned long long value);
    /// Inserts `value` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, unsigned long long value);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, unsigned long long value);
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    unsigned long long& operator[](unsigned int index);
    /// Does the same for a const array.
    const unsigned long long& operator[](unsigned int index) const;

private:
    unsigned long long* slots() const {
        return static_cast<unsigned long long*>(m_block);
    }
};

} // namespace utility
