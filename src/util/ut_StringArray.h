#pragma once

#include "ut_Export.h"

#include "ut_Array.h"

namespace utility {

/// A growable array of texts: the library's common list of strings.
///
/// The array owns its block and a copy of every text. Copies are made with `framework::Memory::StaticAllocString`; if a
/// copy fails, the element is null. Null elements are allowed. A full array doubles its capacity. Not thread-safe. An
/// index out of range throws code 1229, a failed allocation of the block code 1230; either leaves the array unchanged.
///
///     utility::StringArray names(0);
///     names.Append("volume");
///     names.Append("portal:3260", 6);
///     names.ElementAt(1);   // "portal"
///     names.ElementAt(2);   // null
class VXUT_EXPORT StringArray : public Array {
public:
    /// Creates an empty array with space for `capacity` texts, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit StringArray(unsigned int capacity);
    /// Copies the texts and the capacity of `other`. Throws code 1230 if the allocation of the block fails.
    StringArray(const StringArray& other);
    StringArray& operator=(const StringArray&) = delete;
    ~StringArray() override;

    /// Adds a copy of `text` at the end, or a null element if `text` is null.
    void Append(const char* text);
    /// Adds a copy of the first `length` characters of `text` at the end, or a null element if `text` is null. Stops at
    /// a NUL; otherwise `text` need not be NUL-terminated.
    void Append(const char* text, unsigned int length);
    /// Inserts a copy of `text`, or a null element if `text` is null, before the element at `index`, or at the end if
    /// `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, const char* text);
    /// Replaces the element at `index` by a copy of `text`, or by null if `text` is null, and frees the previous text.
    /// Does nothing if the texts are equal: callers rely on pointers to the element staying valid. `text` may point
    /// into a text of this array.
    /// Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, const char* text);
    /// Frees the element at `index` and removes it; the elements after it move down by one.
    /// Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Frees and removes all elements; the capacity stays.
    void DeleteAll();
    /// Returns the text at `index`, or null if `index >= length()`. The array keeps ownership.
    char* ElementAt(unsigned int index) const {
        return index < m_length ? slots()[index] : nullptr;
    }
    /// Returns a reference to the slot at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    ///
    /// The array frees the text of each slot with `framework::Memory::StaticFreeString`. A text assigned to the slot
    /// must come from `StaticAllocString`, and the caller frees the text that it replaces.
    char*& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("char*& utility::StringArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    char* const& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("char* const& utility::StringArray::operator[](unsigned int) const");
        return slots()[index];
    }

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);

    char** slots() const {
        return static_cast<char**>(m_block);
    }
    VXUT_HIDDEN void growWhenFull();
};

} // namespace utility
