#pragma once

#include "ut_Export.h"

namespace utility {

/// Iterates over the tokens of a text that are separated by one character.
///
/// The caller owns the text, which must outlive this object and is not modified. One thread at a time. Nothing fails.
///
///     char text[] = "a,,b";
///     char token[sizeof text];
///     utility::ParameterList list(text, ',');
///     while (list.nextToken(token) != nullptr) use(token);   // "a", then "b"
class VXUT_EXPORT ParameterList {
public:
    /// Starts at the beginning of `text`. Null: no tokens.
    ParameterList(char* text, char separator);

    /// Copies the next token to `destination` and returns `destination`. Empty tokens are skipped. Returns null at the
    /// end of the text, or if `destination` is null.
    /// - `destination`: must have space for the rest of the text and a terminator
    char* nextToken(char* destination);
    /// Whether any text is left. True does not guarantee another token: after the last token, the result is still true
    /// if a separator follows.
    bool hasNextToken() const {
        return m_position != nullptr;
    }

private:
    char m_separator;
    char* m_position;
};

} // namespace utility
