#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of unsigned 64-bit numbers.
///
/// The array owns its block, and the values in it are plain. One thread at a time. An index outside the array throws
/// code 1229, no memory code 1230; either leaves the array as it was.
/// Traces name a value before its index.
///
///     utility::UInt64Array blocks(4);
///     blocks.Append(0xFFFFFFFFFFFFFFFF);
///     blocks.SetAt(0, 512);
///     blocks[0];   // 512
class VXUT_EXPORT UInt64Array : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit UInt64Array(unsigned int capacity);
    /// A copy with the capacity of `other`.
    UInt64Array(const UInt64Array& other);
    UInt64Array& operator=(const UInt64Array&) = delete;
    ~UInt64Array() override;

    /// Adds `value` at the end.
    void Append(unsigned long long value);
    /// Puts `value` before the element at `index`, or at the end when `index` is the length. A greater `index` throws
    /// code 1229.
    void InsertAt(unsigned int index, unsigned long long value);
    /// Replaces the element at `index`. From the length on, throws code 1229.
    void SetAt(unsigned int index, unsigned long long value);
    /// Takes out the element at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    unsigned long long& operator[](unsigned int index);
    const unsigned long long& operator[](unsigned int index) const;

private:
    unsigned long long* slots() const {
        return static_cast<unsigned long long*>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
