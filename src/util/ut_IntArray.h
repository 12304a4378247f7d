#pragma once

#include "ut_Export.h"

#include "fw_KnownTokens.h"
#include "ut_Array.h"
#include "ut_Debug.h"

namespace utility {

/// A growable array of `int`.
///
/// The array owns its block; the elements are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the array unchanged.
///
///     utility::IntArray ports(4);
///     ports.Append(7);
///     ports.InsertAt(0, 3);
///     ports[1];   // 7
class VXUT_EXPORT IntArray : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit IntArray(unsigned int capacity);
    /// Copies the elements and the capacity of `other`. Throws code 1230 if the allocation fails.
    IntArray(const IntArray& other);
    IntArray& operator=(const IntArray&) = delete;
    ~IntArray() override;

    /// Adds `value` at the end.
    void Append(int value) {
        const unsigned int length = m_length;
        if (length < m_size && !Debug::isDebugOn(strings::TOKEN_INT_ARRAY)) {
            m_length = length + 1;
            slots()[length] = value;
        } else {
            appendTraced(value);
        }
    }
    /// Inserts `value` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, int value);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, int value) {
        if (index >= m_length)
            failIndex("void utility::IntArray::SetAt(unsigned int, int)");
        slots()[index] = value;
    }
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    int& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("int& utility::IntArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    const int& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("const int& utility::IntArray::operator[](unsigned int) const");
        return slots()[index];
    }

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);
    /// Does what `Append` does, with the traces, and grows the array if it is full.
    void appendTraced(int value);

    int* slots() const {
        return static_cast<int*>(m_block);
    }
};

} // namespace utility
