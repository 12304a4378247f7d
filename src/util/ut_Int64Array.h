#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_Array.h"

namespace utility {

/// A growable array of signed 64-bit numbers.
///
/// The array owns its block, and the values in it are plain. One thread at a time. An index outside the array throws
/// code 1229, no memory code 1230; either leaves the array as it was.
/// Traces show a value as unsigned, and name it before its index.
///
///     utility::Int64Array offsets(4);
///     offsets.Append(-4096);
///     offsets.InsertAt(1, 0x100000000);
///     offsets[1];   // 4294967296
class VXUT_EXPORT Int64Array : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit Int64Array(unsigned int capacity);
    /// A copy with the capacity of `other`.
    Int64Array(const Int64Array& other);
    Int64Array& operator=(const Int64Array&) = delete;
    ~Int64Array() override;

    /// Adds `value` at the end.
    void Append(int64_t value);
    /// Puts `value` before the element at `index`, or at the end when `index` is the length. A greater `index` throws
    /// code 1229.
    void InsertAt(unsigned int index, int64_t value);
    /// Replaces the element at `index`. From the length on, throws code 1229.
    void SetAt(unsigned int index, int64_t value);
    /// Takes out the element at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    int64_t& operator[](unsigned int index);
    const int64_t& operator[](unsigned int index) const;

private:
    int64_t* slots() const {
        return static_cast<int64_t*>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
