#pragma once

namespace console {

/// A column of a table: its name, and how the text shows its values.
///
/// The strings are not copied and must outlive the table; literals do.
///
///     answer.table("entries", {left("type", 9), right("size", 20), left("name")});
struct Column {
    const char* name;
    unsigned int width;    ///< shorter values are padded to this number of characters
    bool isRight;          ///< whether values are at the right edge of the column
    const char* separator; ///< the text between this column and the next
};

/// Returns a column with its values at the left edge.
constexpr Column left(const char* name, unsigned int width = 0, const char* separator = " ") {
    return {name, width, false, separator};
}

/// Returns a column with its values at the right edge, as numbers are shown.
constexpr Column right(const char* name, unsigned int width, const char* separator = " ") {
    return {name, width, true, separator};
}

} // namespace console
