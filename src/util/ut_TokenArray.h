#pragma once

#include "fw_StringToken.h"
#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// A growable array of string tokens, in the order given, duplicates included.
///
/// The array owns its block, and the tokens in it are plain. One thread at a time. An index outside the array throws
/// code 1229, no memory code 1230; either leaves the array as it was.
///
///     utility::TokenArray names("volume,port,volume", 0);
///     names.length();         // 3
///     names[0] == names[2];   // true
class VXUT_EXPORT TokenArray : public Array {
public:
    /// An empty array with room for `capacity` tokens, for 20 when `capacity` is 0.
    explicit TokenArray(unsigned int capacity);
    /// The same, filled with `SetFromStringList`.
    TokenArray(const char* list, unsigned int capacity);
    /// A copy with the capacity of `other`.
    TokenArray(const TokenArray& other);
    TokenArray& operator=(const TokenArray&) = delete;
    ~TokenArray() override;

    /// Replaces all tokens by those of the names in `list`, which are separated by commas. Empty names are passed over,
    /// and what lies behind the 50th name or the 8192nd byte is left out. Null is an empty list. Where no memory is
    /// left for a new name its token is 0; where none is left for the array, throws code 1230 with the tokens before it
    /// in place.
    void SetFromStringList(const char* list);

    /// Adds `token` at the end.
    void Append(stringtoken token);
    /// Puts `token` before the one at `index`, or at the end when `index` is the length. A greater `index` throws code
    /// 1229.
    void InsertAt(unsigned int index, stringtoken token);
    /// Replaces the token at `index`. From the length on, throws code 1229.
    void SetAt(unsigned int index, stringtoken token);
    /// Takes out the token at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The token at `index`, valid until the array next grows. From the length on, throws code 1229.
    stringtoken& operator[](unsigned int index);
    const stringtoken& operator[](unsigned int index) const;

private:
    stringtoken* slots() const {
        return static_cast<stringtoken*>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
