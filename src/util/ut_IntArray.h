#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of `int`.
///
/// The array owns its block, and the values in it are plain. One thread at a time. An index outside the array throws
/// code 1229, no memory code 1230; either leaves the array as it was.
///
///     utility::IntArray ports(4);
///     ports.Append(7);
///     ports.InsertAt(0, 3);
///     ports[1];   // 7
class VXUT_EXPORT IntArray : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit IntArray(unsigned int capacity);
    /// A copy with the capacity of `other`.
    IntArray(const IntArray& other);
    IntArray& operator=(const IntArray&) = delete;
    ~IntArray() override;

    /// Adds `value` at the end.
    void Append(int value);
    /// Puts `value` before the element at `index`, or at the end when `index` is the length. A greater `index` throws
    /// code 1229.
    void InsertAt(unsigned int index, int value);
    /// Replaces the element at `index`. From the length on, throws code 1229.
    void SetAt(unsigned int index, int value);
    /// Takes out the element at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    int& operator[](unsigned int index);
    const int& operator[](unsigned int index) const;

private:
    int* slots() const {
        return static_cast<int*>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
