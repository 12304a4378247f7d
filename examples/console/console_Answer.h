#pragma once

#include <string>
#include <vector>

#include "console_Column.h"
#include "console_Value.h"

namespace console {

/// What a command answers, described once; from it either a text or a JSON object is made.
///
/// An answer consists of named values and named tables. Names are unique within an answer and in camel case. The
/// operations may be mixed: a value that follows a table belongs to the answer, not to the table. One thread at a time.
///
///     answer.field("scheme", "http");
///     answer.table("ports", {left("name", 12), right("number", 5)});
///     answer.row({"http", 80});
///     answer.row({"https", 443});
///
/// is shown as the text
///
///     scheme     http
///     http            80
///     https          443
///
/// and is in JSON
///
///     {"scheme": "http", "ports": [{"name": "http", "number": 80}, {"name": "https", "number": 443}]}
class Answer {
public:
    /// How a table is shown.
    enum Titles { WITHOUT_TITLES, WITH_TITLES };

    Answer() = default;
    Answer(const Answer&) = delete;
    Answer& operator=(const Answer&) = delete;
    virtual ~Answer() = default;

    /// Adds a value, shown as a line with its name.
    virtual void field(const char* name, const Value& value) = 0;
    /// Adds a value, shown as a line of its own without its name.
    virtual void line(const char* name, const Value& value) = 0;
    /// Adds a value that the text already shows as part of another one.
    virtual void detail(const char* name, const Value& value) = 0;
    /// Adds a piece of a long text, shown as it is. Pieces with the same name form one text.
    virtual void text(const char* name, const char* data, std::size_t size) = 0;
    /// Starts a table. With titles, the first line of the text has the names of the columns in capital letters.
    virtual void table(const char* name, const std::vector<Column>& columns, Titles titles = WITHOUT_TITLES) = 0;
    /// Adds a row to the last table. There must be a value for each column.
    virtual void row(const std::vector<Value>& values) = 0;
    /// Shows a remark in the text for what the values say without words, such as an empty table.
    virtual void remark(const char* text) = 0;
    /// Whether to go on with the answer: the user has not quit, and the output has not failed.
    virtual bool isWanted() const = 0;
};

} // namespace console
