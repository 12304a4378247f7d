#pragma once

#include "ut_Export.h"

#include "fw_KnownTokens.h"
#include "ut_Array.h"
#include "ut_Debug.h"

namespace utility {

/// A growable array of `unsigned int`.
///
/// The array owns its block; the elements are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the array unchanged.
///
///     utility::UIntArray tokens(4);
///     tokens.Append(0xFFFFFFFF);
///     tokens.Append(1);
///     tokens.sort();
///     tokens[0];   // 1
class VXUT_EXPORT UIntArray : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit UIntArray(unsigned int capacity);
    /// Copies the elements and the capacity of `other`. Throws code 1230 if the allocation fails.
    UIntArray(const UIntArray& other);
    UIntArray& operator=(const UIntArray&) = delete;
    ~UIntArray() override;

    /// Adds `value` at the end.
    void Append(unsigned int value) {
        const unsigned int length = m_length;
        if (length < m_size && !Debug::isDebugOn(strings::TOKEN_UINT_ARRAY)) {
            m_length = length + 1;
            slots()[length] = value;
        } else {
            appendTraced(value);
        }
    }
    /// Inserts `value` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, unsigned int value);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, unsigned int value) {
        if (index >= m_length)
            failIndex("void utility::UIntArray::SetAt(unsigned int, unsigned int)");
        slots()[index] = value;
    }
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    unsigned int& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("unsigned int& utility::UIntArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    const unsigned int& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("const unsigned int& utility::UIntArray::operator[](unsigned int) const");
        return slots()[index];
    }

    /// Sorts the elements in ascending order.
    void sort() override;
    /// Comparison function for `qsort`: returns -1, 0 or 1 for the two `unsigned int` that `left` and `right` point to.
    static int compare(const void* left, const void* right);

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);
    /// Does what `Append` does, with the traces, and grows the array if it is full.
    void appendTraced(unsigned int value);

    unsigned int* slots() const {
        return static_cast<unsigned int*>(m_block);
    }
};

} // namespace utility
