#pragma once

#include "fw_StringToken.h"
#include "ut_Array.h"
#include "ut_Export.h"

namespace utility {

/// String tokens without duplicates, in ascending order of their numbers.
///
/// The set owns its block, and the tokens in it are plain. One thread at a time. An index outside the set throws code
/// 1229, no memory code 1230; either leaves the set as it was. `append`, `insertAt` and `setAt` are the building blocks
/// of the set operations and keep no order by themselves: whoever uses them keeps it.
///
///     utility::TokenSet names("volume,port,volume", 0);
///     names.length();                               // 2
///     names.inSet(strings::GS.toToken("port"));     // true
///     names.inSet(strings::GS.toToken("console"));  // false
class VXUT_EXPORT TokenSet : public Array {
public:
    /// An empty set with room for `capacity` tokens, for 20 when `capacity` is 0.
    explicit TokenSet(unsigned int capacity);
    /// The same, filled with `SetFromStringList`.
    TokenSet(const char* list, unsigned int capacity);
    /// A copy with the capacity of `other`.
    TokenSet(const TokenSet& other);
    TokenSet& operator=(const TokenSet&) = delete;
    ~TokenSet() override;

    /// Replaces all tokens by those of the names in `list`, which are separated by commas. Empty names are passed over,
    /// and what lies behind the 50th name or the 8192nd byte is left out. Null is an empty list. Where no memory is
    /// left for a new name its token is 0; where none is left for the set, throws code 1230 with the tokens before it
    /// in place.
    void SetFromStringList(const char* list);
    /// Writes the names of the tokens, in order, to `buffer` of `size` bytes, as a terminated text. The names stand
    /// without anything between them, with one comma behind the last: callers rely on that form. An empty set is the
    /// empty text; a token without a name adds nothing. What does not fit throws code 1239.
    void toStringList(char* buffer, unsigned int size) const;

    /// Adds `token` where it belongs, unless it is there.
    void set(stringtoken token);
    /// Takes `token` out if it is the smallest of the set: callers rely on every other member staying.
    void unset(stringtoken token);
    bool inSet(stringtoken token) const;
    /// Adds the tokens of this set to `other`: callers rely on the argument being the one that changes.
    void mergeSet(TokenSet& other) const;
    /// Takes everything out and keeps the block.
    void clearSet();
    /// Whether both hold the same tokens.
    bool operator==(const TokenSet& other) const;

    /// Adds `token` at the end.
    void append(stringtoken token);
    /// Puts `token` before the one at `index`, or at the end when `index` is the length. A greater `index` throws code
    /// 1229.
    void insertAt(unsigned int index, stringtoken token);
    /// Replaces the token at `index`. From the length on, throws code 1229.
    void setAt(unsigned int index, stringtoken token);
    /// Takes out the token at `index`; those behind it move up. From the length on, throws code 1229.
    void deleteAt(unsigned int index);
    /// The token at `index`, valid until the set next grows. From the length on, throws code 1229.
    stringtoken& operator[](unsigned int index);
    const stringtoken& operator[](unsigned int index) const;

private:
    stringtoken* slots() const {
        return static_cast<stringtoken*>(m_block);
    }
    void growWhenFull();
    bool isInShortSet(stringtoken token) const;
};

} // namespace utility
