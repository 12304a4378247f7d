#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of `short`.
///
/// The array owns its block, and the values in it are plain. One thread at a time. An index outside the array throws
/// code 1229, no memory code 1230; either leaves the array as it was.
///
///     utility::ShortArray deltas(4);
///     deltas.Append(-3);
///     deltas.ElementAt(0);   // -3
///     deltas.ElementAt(1);   // 0
class VXUT_EXPORT ShortArray : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit ShortArray(unsigned int capacity);
    /// A copy with the capacity of `other`.
    ShortArray(const ShortArray& other);
    ShortArray& operator=(const ShortArray&) = delete;
    ~ShortArray() override;

    /// Adds `value` at the end.
    void Append(short value);
    /// Puts `value` before the element at `index`, or at the end when `index` is the length. A greater `index` throws
    /// code 1229.
    void InsertAt(unsigned int index, short value);
    /// Replaces the element at `index`. From the length on, throws code 1229.
    void SetAt(unsigned int index, short value);
    /// Takes out the element at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    short& operator[](unsigned int index);
    const short& operator[](unsigned int index) const;
    /// The element at `index`, or 0 from the length on.
    short ElementAt(unsigned int index) const;

private:
    short* slots() const {
        return static_cast<short*>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
