#pragma once

#include <memory>
#include <string>
#include <vector>

#include "console_Answer.h"

namespace console {

/// Collects an answer and makes one JSON object of it (RFC 8259), on one line and in UTF-8.
///
/// Nothing is written before the command has ended, so that a failure never leaves a part that looks complete: the
/// object of a command that succeeded has the member "answer", that of one that failed the members "failure", a text,
/// and "partial" with what was answered before. Bytes that are not UTF-8 become U+FFFD.
///
///     console::JsonAnswer answer;
///     answer.field("scheme", "http");
///     answer.object("url", nullptr);   // {"version":1,"command":"url","answer":{"scheme":"http"}}
class JsonAnswer : public Answer {
public:
    /// The version of the answers, which is in each of them. A new member does not change it; another name, type or
    /// meaning does.
    static constexpr int version = 1;
    /// When the names and values exceed this number of bytes, the operations drop them and throw `std::length_error`.
    static constexpr std::size_t largestSize = 16777216;

    JsonAnswer();
    ~JsonAnswer() override;

    void field(const char* name, const Value& value) override;
    void line(const char* name, const Value& value) override;
    void detail(const char* name, const Value& value) override;
    void text(const char* name, const char* data, std::size_t size) override;
    void table(const char* name, const std::vector<Column>& columns, Titles titles = WITHOUT_TITLES) override;
    void row(const std::vector<Value>& values) override;
    void remark(const char* text) override;
    bool isWanted() const override;

    /// Returns the object as a line.
    /// - `command`: the name of the command; null if no command was found
    /// - `failure`: why the command failed; null if it succeeded
    std::string object(const char* command, const char* failure) const;

private:
    struct Members;

    void grow(std::size_t size);

    std::unique_ptr<Members> m_members;
};

} // namespace console
