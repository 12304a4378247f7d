#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

class SerialNumber;

/// A growable array of pointers to array serial numbers, which owns them.
///
/// The array deletes its elements at its end. What is replaced, taken out or cut off is not deleted: it is the caller's
/// again. Null is an element like any other. One thread at a time. An index outside the array throws code 1229, no
/// memory code 1230; either leaves the array as it was.
///
///     utility::SerialNumberArray numbers(4);
///     numbers.Append(new utility::SerialNumber("00c0ff112233aabb4455667788000000"));
///     numbers[0]->isValid();   // true
class VXUT_EXPORT SerialNumberArray : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit SerialNumberArray(unsigned int capacity);
    /// The same pointers, with the capacity of `other`. The elements are not copied, deliberately: callers cut them off
    /// one of the two arrays (`truncate`) before both would delete them.
    SerialNumberArray(const SerialNumberArray& other);
    SerialNumberArray& operator=(const SerialNumberArray&) = delete;
    ~SerialNumberArray() override;

    /// Adds `number` at the end and takes it over.
    void Append(SerialNumber* number);
    /// Puts `number` before the element at `index`, or at the end when `index` is the length, and takes it over. A
    /// greater `index` throws code 1229, with `number` still the caller's.
    void InsertAt(unsigned int index, SerialNumber* number);
    /// Puts `number` in the place of the element at `index`, which is the caller's from then on. From the length on,
    /// throws code 1229.
    void SetAt(unsigned int index, SerialNumber* number);
    /// Takes out the element at `index`, which is the caller's from then on; those behind it move up. From the length
    /// on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    SerialNumber*& operator[](unsigned int index);
    SerialNumber* const& operator[](unsigned int index) const;

    /// Adds the pointers of `other` at the end, in order; an array given to itself doubles. The elements are not
    /// copied, deliberately: callers cut one of the places off again (`truncate`) before both would delete them.
    void Append(SerialNumberArray& other);
    /// The index of the first element that is `number`, or 0xFFFFFFFF.
    unsigned int Find(SerialNumber* number) const;

private:
    SerialNumber** slots() const {
        return static_cast<SerialNumber**>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
