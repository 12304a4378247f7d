#pragma once

#include "ut_Export.h"

#include "fw_KnownTokens.h"
#include "ut_Array.h"
#include "ut_Debug.h"

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
    void Append(short value) {
        const unsigned int length = m_length;
        if (length < m_size && !Debug::isDebugOn(strings::TOKEN_SHORT_ARRAY)) {
            m_length = length + 1;
            slots()[length] = value;
        } else {
            appendTraced(value);
        }
    }
    /// Inserts `value` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, short value);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, short value) {
        if (index >= m_length)
            failIndex("void utility::ShortArray::SetAt(unsigned int, short int)");
        slots()[index] = value;
    }
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    short& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("short int& utility::ShortArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    const short& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("const short int& utility::ShortArray::operator[](unsigned int) const");
        return slots()[index];
    }
    /// Returns the element at `index`, or 0 if `index >= length()`.
    short ElementAt(unsigned int index) const {
        return index < m_length ? slots()[index] : short(0);
    }

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);
    /// Does what `Append` does, with the traces, and grows the array if it is full.
    void appendTraced(short value);

    short* slots() const {
        return static_cast<short*>(m_block);
    }
};

} // namespace utility
