#pragma once

#include "ut_Export.h"

namespace utility {

/// Hands out the tokens of a text that one character separates.
///
/// The text is the caller's, is not changed, and must outlive the list. One thread at a time. Nothing fails.
///
///     char text[] = "a,,b";
///     char token[sizeof text];
///     utility::ParameterList list(text, ',');
///     while (list.nextToken(token) != nullptr) use(token);   // "a", then "b"
class VXUT_EXPORT ParameterList {
public:
    /// A null text has no tokens.
    ParameterList(char* text, char separator);

    /// Copies the next token that is not empty to `destination`, which has room for the rest of the text and a
    /// terminator, and returns it; null at the end, or when `destination` is null.
    char* nextToken(char* destination);
    /// Whether the end was not reached yet. A text that ends in a separator still says true before its end is seen.
    bool hasNextToken() const {
        return m_position != nullptr;
    }

private:
    char m_separator;
    char* m_position;
};

} // namespace utility
