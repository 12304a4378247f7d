#pragma once

#include "ut_Export.h"

#include "fw_StringToken.h"
#include "ut_Array.h"

namespace utility {

/// A set of string tokens, in ascending order of their numbers.
///
/// The set owns its block; the tokens are plain values. Not thread-safe. An index out of range throws code 1229, a
/// failed allocation code 1230; either leaves the set unchanged. `append`, `insertAt` and `setAt` check neither order
/// nor duplicates: their callers keep the set sorted and unique.
///
///     utility::TokenSet names("volume,port,volume", 0);
///     names.length();                               // 2
///     names.inSet(strings::GS.toToken("port"));     // true
///     names.inSet(strings::GS.toToken("console"));  // false
class VXUT_EXPORT TokenSet : public Array {
public:
    /// Creates an empty set with space for `capacity` tokens, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit TokenSet(unsigned int capacity);
    /// Creates a set with space for `capacity` tokens, or for 20 if `capacity` is 0, and calls
    /// `SetFromStringList(list)`.
    TokenSet(const char* list, unsigned int capacity);
    /// Copies the tokens and the capacity of `other`. Throws code 1230 if the allocation fails.
    TokenSet(const TokenSet& other);
    TokenSet& operator=(const TokenSet&) = delete;
    /// Frees the block.
    ~TokenSet() override;

    /// Replaces all tokens by the tokens of the names in `list`, which are separated by commas.
    ///
    /// - Null is an empty list.
    /// - Empty names are skipped.
    /// - Names after the 50th, and bytes after the 8192nd, are ignored.
    /// - A new name for which memory allocation fails gets the token 0.
    /// - Throws code 1230 if the set cannot grow; the tokens before the failure are then in the set.
    /// - Needs about 9 KB of stack.
    void SetFromStringList(const char* list);
    /// Writes the names of the tokens, in order, to `buffer` of `size` bytes as NUL-terminated text: the names without
    /// separators, then one comma. Callers rely on that form. An empty set is the empty text; a token without a name
    /// adds nothing. Throws code 1239 if the text does not fit.
    void toStringList(char* buffer, unsigned int size) const;

    /// Inserts `token` in order, unless it is in the set.
    void set(stringtoken token);
    /// Removes `token` if it is the smallest token of the set; otherwise does nothing. Callers rely on every other
    /// token staying.
    void unset(stringtoken token);
    /// Returns whether `token` is in the set.
    bool inSet(stringtoken token) const;
    /// Adds the tokens of this set to `other`: callers rely on the argument being the set that changes.
    void mergeSet(TokenSet& other) const;
    /// Removes all tokens; the capacity stays.
    void clearSet();
    /// Returns whether both sets contain the same tokens.
    bool operator==(const TokenSet& other) const;

    /// Adds `token` at the end.
    void append(stringtoken token);
    /// Inserts `token` before the token at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void insertAt(unsigned int index, stringtoken token);
    /// Replaces the token at `index`. Throws code 1229 if `index >= length()`.
    void setAt(unsigned int index, stringtoken token);
    /// Removes the token at `index`; the tokens after it move down by one. Throws code 1229 if `index >= length()`.
    void deleteAt(unsigned int index);
    /// Returns the token at `index`. Valid until the set grows. Throws code 1229 if `index >= length()`.
    stringtoken& operator[](unsigned int index);
    /// Does the same for a constant set.
    const stringtoken& operator[](unsigned int index) const;

private:
    stringtoken* slots() const {
        return static_cast<stringtoken*>(m_block);
    }
    VXUT_HIDDEN bool isInShortSet(stringtoken token) const;
};

} // namespace utility
