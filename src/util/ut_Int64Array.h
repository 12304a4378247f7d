#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "fw_KnownTokens.h"
#include "ut_Array.h"
#include "ut_Debug.h"

namespace utility {

/// A growable array of signed 64-bit numbers.
///
/// The array owns its block; the elements are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the array unchanged. Traces show the value first, as an unsigned number,
/// and then its index.
///
///     utility::Int64Array offsets(4);
///     offsets.Append(-4096);
///     offsets.InsertAt(1, 0x100000000);
///     offsets[1];   // 4294967296
class VXUT_EXPORT Int64Array : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit Int64Array(unsigned int capacity);
    /// Copies the elements and the capacity of `other`. Throws code 1230 if the allocation fails.
    Int64Array(const Int64Array& other);
    Int64Array& operator=(const Int64Array&) = delete;
    ~Int64Array() override;

    /// Adds `value` at the end.
    void Append(int64_t value) {
        const unsigned int length = m_length;
        if (length < m_size && !Debug::isDebugOn(strings::TOKEN_INT64_ARRAY)) {
            m_length = length + 1;
            slots()[length] = value;
        } else {
            appendTraced(value);
        }
    }
    /// Inserts `value` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, int64_t value);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, int64_t value) {
        if (index >= m_length)
            failIndex("void utility::Int64Array::SetAt(unsigned int, int64_t)");
        slots()[index] = value;
    }
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    int64_t& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("int64_t& utility::Int64Array::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    const int64_t& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("const int64_t& utility::Int64Array::operator[](unsigned int) const");
        return slots()[index];
    }

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);
    /// Does what `Append` does, with the traces, and grows the array if it is full.
    void appendTraced(int64_t value);

    int64_t* slots() const {
        return static_cast<int64_t*>(m_block);
    }
};

} // namespace utility
