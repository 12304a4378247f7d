#pragma once

#include "ut_Export.h"

#include "ut_Array.h"

namespace utility {

class SerialNumber;

/// A growable array of pointers to array serial numbers, which owns them.
///
/// The destructor deletes the elements. An element that is replaced, removed or truncated is not deleted; its ownership
/// returns to the caller. Null elements are allowed. Not thread-safe. An index out of range throws code 1229, a failed
/// allocation code 1230; either leaves the array unchanged.
///
///     utility::SerialNumberArray numbers(4);
///     numbers.Append(new utility::SerialNumber("00c0ff112233aabb4455667788000000"));
///     numbers[0]->isValid();   // true
class VXUT_EXPORT SerialNumberArray : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit SerialNumberArray(unsigned int capacity);
    /// Copies the pointers and the capacity of `other`, but not the elements: callers rely on both arrays sharing them.
    /// Remove them from one of the arrays with `truncate` before the second destructor runs, which would delete them
    /// again.
    /// Throws code 1230 if the allocation fails.
    SerialNumberArray(const SerialNumberArray& other);
    SerialNumberArray& operator=(const SerialNumberArray&) = delete;
    ~SerialNumberArray() override;

    /// Adds `number` at the end. The array takes ownership unless the call throws.
    void Append(SerialNumber* number);
    /// Inserts `number` before the element at `index`, or at the end if `index == length()`. The array takes ownership
    /// unless the call throws.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, SerialNumber* number);
    /// Replaces the element at `index` by `number`. The array takes ownership unless the call throws; ownership of the
    /// replaced element returns to the caller. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, SerialNumber* number) {
        if (index >= m_length)
            failIndex("void utility::SerialNumberArray::SetAt(unsigned int, utility::SerialNumber*)");
        slots()[index] = number;
    }
    /// Removes the element at `index` without deleting it and moves the elements after it down by one. Ownership
    /// returns to the caller. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    SerialNumber*& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("utility::SerialNumber*& utility::SerialNumberArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    SerialNumber* const& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("utility::SerialNumber* const& utility::SerialNumberArray::operator[](unsigned int) const");
        return slots()[index];
    }

    /// Adds the pointers of `other` at the end, in order; appending an array to itself doubles it. The elements are not
    /// copied: callers rely on the pointers being shared. Remove each from one of the two places with `truncate` before
    /// it would be deleted twice.
    void Append(SerialNumberArray& other);
    /// Returns the index of the first element equal to the pointer `number`, or 0xFFFFFFFF if there is none.
    unsigned int Find(SerialNumber* number) const;

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);

    SerialNumber** slots() const {
        return static_cast<SerialNumber**>(m_block);
    }
};

} // namespace utility
