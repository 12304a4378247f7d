#pragma once

#include "ut_Export.h"

#include "fw_KnownTokens.h"
#include "ut_Array.h"
#include "ut_Debug.h"

namespace utility {

/// A growable array of `unsigned short`.
///
/// The array owns its block; the elements are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the array unchanged.
///
///     utility::UShortArray lanes(4);
///     lanes.Append(9);
///     lanes.Append(2);
///     lanes.Sort();
///     lanes.ElementAt(0);   // 2
class VXUT_EXPORT UShortArray : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit UShortArray(unsigned int capacity);
    /// Copies the elements and the capacity of `other`. Throws code 1230 if the allocation fails.
    UShortArray(const UShortArray& other);
    UShortArray& operator=(const UShortArray&) = delete;
    ~UShortArray() override;

    /// Adds `value` at the end.
    void Append(unsigned short value) {
        const unsigned int length = m_length;
        if (length < m_size && !Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY)) {
            m_length = length + 1;
            slots()[length] = value;
        } else {
            appendTraced(value);
        }
    }
    /// Inserts `value` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, unsigned short value);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, unsigned short value) {
        if (index < m_length && !Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
            slots()[index] = value;
        else
            setTraced(index, value);
    }
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    unsigned short& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("short unsigned int& utility::UShortArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    const unsigned short& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("const short unsigned int& utility::UShortArray::operator[](unsigned int) const");
        return slots()[index];
    }
    /// Returns the element at `index`, or 0 if `index >= length()`.
    unsigned short ElementAt(unsigned int index) const {
        return index < m_length ? slots()[index] : static_cast<unsigned short>(0);
    }
    /// Sorts the elements in ascending order. The virtual `sort` of this class does nothing: callers rely on the order
    /// being kept when they sort through an `Array`.
    void Sort();

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);
    /// Does what `Append` does, with the traces, and grows the array if it is full.
    void appendTraced(unsigned short value);
    /// Does what `SetAt` does, with the trace and the check.
    void setTraced(unsigned int index, unsigned short value);

    unsigned short* slots() const {
        return static_cast<unsigned short*>(m_block);
    }
    VXUT_HIDDEN unsigned int smallestFrom(unsigned int index) const;
};

} // namespace utility
