#pragma once

#include "ut_Export.h"

#include "fw_KnownTokens.h"
#include "ut_Array.h"
#include "ut_Debug.h"

namespace utility {

/// A growable array of unsigned 64-bit numbers.
///
/// The array owns its block; the elements are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the array unchanged. Traces show the value first, and then its index.
///
///     utility::UInt64Array blocks(4);
///     blocks.Append(0xFFFFFFFFFFFFFFFF);
///     blocks.SetAt(0, 512);
///     blocks[0];   // 512
class VXUT_EXPORT UInt64Array : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit UInt64Array(unsigned int capacity);
    /// Copies the elements and the capacity of `other`. Throws code 1230 if the allocation fails.
    UInt64Array(const UInt64Array& other);
    UInt64Array& operator=(const UInt64Array&) = delete;
    ~UInt64Array() override;

    /// Adds `value` at the end.
    void Append(unsigned long long value) {
        const unsigned int length = m_length;
        if (length < m_size && !Debug::isDebugOn(strings::TOKEN_UINT64_ARRAY)) {
            m_length = length + 1;
            slots()[length] = value;
        } else {
            appendTraced(value);
        }
    }
    /// Inserts `value` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, unsigned long long value);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, unsigned long long value) {
        if (index >= m_length)
            failIndex("void utility::UInt64Array::SetAt(unsigned int, long long unsigned int)");
        slots()[index] = value;
    }
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    unsigned long long& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("long long unsigned int& utility::UInt64Array::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    const unsigned long long& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("const long long unsigned int& utility::UInt64Array::operator[](unsigned int) const");
        return slots()[index];
    }

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);
    /// Does what `Append` does, with the traces, and grows the array if it is full.
    void appendTraced(unsigned long long value);

    unsigned long long* slots() const {
        return static_cast<unsigned long long*>(m_block);
    }
};

} // namespace utility
