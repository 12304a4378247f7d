#pragma once

#include "ut_Export.h"

#include "fw_StringToken.h"
#include "ut_Array.h"

namespace utility {

/// A growable array of string tokens, in the order given, duplicates included.
///
/// The array owns its block; the tokens are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the array unchanged.
///
///     utility::TokenArray names("volume,port,volume", 0);
///     names.length();         // 3
///     names[0] == names[2];   // true
class VXUT_EXPORT TokenArray : public Array {
public:
    /// Creates an empty array with space for `capacity` tokens, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit TokenArray(unsigned int capacity);
    /// Creates an array with space for `capacity` tokens, or for 20 if `capacity` is 0, and calls
    /// `SetFromStringList(list)`.
    TokenArray(const char* list, unsigned int capacity);
    /// Copies the tokens and the capacity of `other`. Throws code 1230 if the allocation fails.
    TokenArray(const TokenArray& other);
    TokenArray& operator=(const TokenArray&) = delete;
    /// Frees the block.
    ~TokenArray() override;

    /// Replaces all tokens by the tokens of the names in `list`, which are separated by commas.
    ///
    /// - Null is an empty list.
    /// - Empty names are skipped.
    /// - Names after the 50th, and bytes after the 8192nd, are ignored.
    /// - A new name for which memory allocation fails gets the token 0.
    /// - Throws code 1230 if the array cannot grow; the tokens before the failure are then in the array.
    /// - Needs about 9 KB of stack.
    void SetFromStringList(const char* list);

    /// Adds `token` at the end.
    void Append(stringtoken token);
    /// Inserts `token` before the token at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, stringtoken token);
    /// Replaces the token at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, stringtoken token) {
        if (index >= m_length)
            failIndex("void utility::TokenArray::SetAt(unsigned int, strings::stringtoken)");
        slots()[index] = token;
    }
    /// Removes the token at `index`; the tokens after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns the token at `index`. Valid until the array grows. Throws code 1229 if `index >= length()`.
    stringtoken& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("strings::stringtoken& utility::TokenArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a constant array.
    const stringtoken& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("const strings::stringtoken& utility::TokenArray::operator[](unsigned int) const");
        return slots()[index];
    }

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);

    stringtoken* slots() const {
        return static_cast<stringtoken*>(m_block);
    }
};

} // namespace utility
