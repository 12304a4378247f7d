#pragma once

#include "ut_Export.h"

namespace utility {

/// Iterates over the tokens of a text that are separated by one character.
///
/// The caller owns the text, which must outlive this object and is not modified. Not thread-safe. No operation fails.
///
///     char text[] = "a,,b";
///     char token[sizeof text];
///     utility::ParameterList list(text, ',');
///     while (list.nextToken(token) != nullptr) use(token);   // "a", then "b"
class VXUT_EXPORT ParameterList {
public:
    /// Starts at the beginning of `text`. A null `text` counts as empty.
    ParameterList(char* text, char separator);

    /// Copies the next token to `destination` and returns `destination`. Empty tokens are skipped. Returns null at the
    /// end of the text, or if `destination` is null.
    /// - `destination`: must have space for the rest of the text and a terminator
    char* nextToken(char* destination);
    /// Returns whether any text is left. True does not guarantee another token: if a separator follows the last token,
    /// the result is still true after it.
    bool hasNextToken() const {
        return m_position != nullptr;
    }

private:
    char m_separator;
    char* m_position;
};

} // namespace utility
