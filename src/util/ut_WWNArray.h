#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

class WWN;

/// A growable array of pointers to World Wide Names, which owns them.
///
/// The array deletes its elements at its end. What is replaced, taken out or cut off is not deleted: it is the caller's
/// again. Null is an element like any other. One thread at a time. An index outside the array throws code 1229, no
/// memory code 1230; either leaves the array as it was.
///
///     utility::WWNArray names(4);
///     names.Append(new utility::WWN("500a09818d5f1234"));
///     char text[17];
///     names[0]->toBuffer(text, sizeof text);   // "500a09818d5f1234"
class VXUT_EXPORT WWNArray : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit WWNArray(unsigned int capacity);
    /// The same pointers, with the capacity of `other`. The elements are not copied, deliberately: callers cut them off
    /// one of the two arrays (`truncate`) before both would delete them.
    WWNArray(const WWNArray& other);
    WWNArray& operator=(const WWNArray&) = delete;
    ~WWNArray() override;

    /// Adds `name` at the end and takes it over.
    void Append(WWN* name);
    /// Puts `name` before the element at `index`, or at the end when `index` is the length, and takes it over. A
    /// greater `index` throws code 1229, with `name` still the caller's.
    void InsertAt(unsigned int index, WWN* name);
    /// Puts `name` in the place of the element at `index`, which is the caller's from then on. From the length on,
    /// throws code 1229.
    void SetAt(unsigned int index, WWN* name);
    /// Takes out the element at `index`, which is the caller's from then on; those behind it move up. From the length
    /// on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    WWN*& operator[](unsigned int index);
    WWN* const& operator[](unsigned int index) const;

    /// Adds the pointers of `other` at the end, in order; an array given to itself doubles. The elements are not
    /// copied, deliberately: callers cut one of the places off again (`truncate`) before both would delete them.
    void Append(WWNArray& other);
    /// The index of the first element that is `name`, or 0xFFFFFFFF.
    unsigned int Find(WWN* name) const;

private:
    WWN** slots() const {
        return static_cast<WWN**>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
