#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of texts: the library's common list of strings.
///
/// The array owns its block and a private copy of every text; null is an element like any other. Copies come from
/// `framework::Memory::StaticAllocString`; where there is no memory for one, the element is null. The array doubles
/// when it is full. One thread at a time. An index outside the array throws code 1229, no memory for the block code
/// 1230; either leaves the array as it was.
///
///     utility::StringArray names(0);
///     names.Append("volume");
///     names.Append("portal:3260", 6);
///     names.ElementAt(1);   // "portal"
///     names.ElementAt(2);   // null
class VXUT_EXPORT StringArray : public Array {
public:
    /// An empty array with room for `capacity` texts, for 20 when `capacity` is 0.
    explicit StringArray(unsigned int capacity);
    /// Copies of the texts of `other`, with its capacity.
    StringArray(const StringArray& other);
    StringArray& operator=(const StringArray&) = delete;
    ~StringArray() override;

    /// Adds a copy of `text` at the end; null adds a null element.
    void Append(const char* text);
    /// Adds a copy of the first `length` characters of `text`, of all when it is shorter; null adds a null element.
    void Append(const char* text, unsigned int length);
    /// Puts a copy of `text` before the element at `index`, or at the end when `index` is the length; null makes a null
    /// element. A greater `index` throws code 1229.
    void InsertAt(unsigned int index, const char* text);
    /// Replaces the element at `index` by a copy of `text`, or by null, and frees the former copy. An equal text
    /// changes nothing: callers rely on pointers to the element staying valid. `text` may be a text of this array, or
    /// lie inside one. From the length on, throws code 1229.
    void SetAt(unsigned int index, const char* text);
    /// Frees the element at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// Frees all elements and keeps the block.
    void DeleteAll();
    /// The text at `index`, or null from the length on. The array keeps it.
    char* ElementAt(unsigned int index) const;
    /// The slot at `index`, valid until the array next grows. The array frees what the slot points to with
    /// `framework::Memory::StaticFreeString`: a text put into it must come from `StaticAllocString`, and the caller
    /// frees the one it replaces. From the length on, throws code 1229.
    char*& operator[](unsigned int index);
    char* const& operator[](unsigned int index) const;

private:
    char** slots() const {
        return static_cast<char**>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
