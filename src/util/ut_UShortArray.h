#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of `unsigned short`.
///
/// The array owns its block, and the values in it are plain. One thread at a time. An index outside the array throws
/// code 1229, no memory code 1230; either leaves the array as it was.
///
///     utility::UShortArray lanes(4);
///     lanes.Append(9);
///     lanes.Append(2);
///     lanes.Sort();
///     lanes.ElementAt(0);   // 2
class VXUT_EXPORT UShortArray : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit UShortArray(unsigned int capacity);
    /// A copy with the capacity of `other`.
    UShortArray(const UShortArray& other);
    UShortArray& operator=(const UShortArray&) = delete;
    ~UShortArray() override;

    /// Adds `value` at the end.
    void Append(unsigned short value);
    /// Puts `value` before the element at `index`, or at the end when `index` is the length. A greater `index` throws
    /// code 1229.
    void InsertAt(unsigned int index, unsigned short value);
    /// Replaces the element at `index`. From the length on, throws code 1229.
    void SetAt(unsigned int index, unsigned short value);
    /// Takes out the element at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    unsigned short& operator[](unsigned int index);
    const unsigned short& operator[](unsigned int index) const;
    /// The element at `index`, or 0 from the length on.
    unsigned short ElementAt(unsigned int index) const;
    /// Sorts ascending. The virtual `sort` of this class does nothing: callers who hold only an `Array` see the order
    /// kept.
    void Sort();

private:
    unsigned short* slots() const {
        return static_cast<unsigned short*>(m_block);
    }
    void growWhenFull();
    unsigned int smallestFrom(unsigned int index) const;
};

} // namespace utility
