#pragma once

#include <string>

namespace console {

/// Finds the first character of a text, given byte by byte, that is not printable UTF-8.
///
///     console::Utf8Check check;
///     check.add('a');
///     check.add('\0');          // true: the text before it is printable
///     check.endCharacter();     // false
///     check.badOffset();        // 1
class Utf8Check {
public:
    /// Adds `c`. Returns whether all characters before it are printable.
    bool add(char c);
    /// Ends the last character. Returns whether it is printable.
    bool endCharacter();
    /// The offset of the first character that is not known to be printable.
    unsigned long long badOffset() const {
        return m_start;
    }

private:
    std::string m_character;
    std::size_t m_announced = 0;
    unsigned long long m_start = 0;
};

} // namespace console
