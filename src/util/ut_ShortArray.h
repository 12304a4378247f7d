#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of `short`.
///
/// The array owns its block; the elements are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the array unchanged.
///
///     utility::ShortArray deltas(4);
///     deltas.Append(-3);
///     deltas.ElementAt(0);   // -3
///     deltas.ElementAt(1);   // 0
class VXUT_EXPORT ShortArray : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit ShortArray(unsigned int capacity);
    /// Copies the elements and the capacity of `other`. Throws code 1230 if the allocation fails.
    ShortArray(const ShortArray& other);
    ShortArray& operator=(const ShortArray&) = delete;
    ~ShortArray() override;

    /// Adds `value` at the end.
    void Append(short value);
    /// Inserts `value` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, short value);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, short value);
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    short& operator[](unsigned int index);
    /// Does the same for a const array.
    const short& operator[](unsigned int index) const;
    /// Returns the element at `index`, or 0 if `index >= length()`.
    short ElementAt(unsigned int index) const;

private:
    short* slots() const {
        return static_cast<short*>(m_block);
    }
};

} // namespace utility
