#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of `unsigned int`.
///
/// The array owns its block, and the values in it are plain. One thread at a time. An index outside the array throws
/// code 1229, no memory code 1230; either leaves the array as it was.
///
///     utility::UIntArray tokens(4);
///     tokens.Append(0xFFFFFFFF);
///     tokens.Append(1);
///     tokens.sort();
///     tokens[0];   // 1
class VXUT_EXPORT UIntArray : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit UIntArray(unsigned int capacity);
    /// A copy with the capacity of `other`.
    UIntArray(const UIntArray& other);
    UIntArray& operator=(const UIntArray&) = delete;
    ~UIntArray() override;

    /// Adds `value` at the end.
    void Append(unsigned int value);
    /// Puts `value` before the element at `index`, or at the end when `index` is the length. A greater `index` throws
    /// code 1229.
    void InsertAt(unsigned int index, unsigned int value);
    /// Replaces the element at `index`. From the length on, throws code 1229.
    void SetAt(unsigned int index, unsigned int value);
    /// Takes out the element at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    unsigned int& operator[](unsigned int index);
    const unsigned int& operator[](unsigned int index) const;

    /// Sorts ascending.
    void sort() override;
    /// Orders the two `unsigned int` pointed to, as `qsort` wants it: -1, 0 or 1.
    static int compare(const void* left, const void* right);

private:
    unsigned int* slots() const {
        return static_cast<unsigned int*>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
