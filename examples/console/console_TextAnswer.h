#pragma once

#include <string>
#include <vector>

#include "console_Answer.h"
#include "ut_PutStream.h"

namespace console {

/// Writes an answer as text, each line as soon as it is known.
///
/// The stream is not owned and must outlive the answer.
///
///     console::TextAnswer answer(out);
///     answer.field("scheme", "http");   // "scheme     http\n"
class TextAnswer : public Answer {
public:
    explicit TextAnswer(utility::PutStream& out) : m_out(out) {}

    void field(const char* name, const Value& value) override;
    void line(const char* name, const Value& value) override;
    void detail(const char* name, const Value& value) override;
    void text(const char* name, const char* data, std::size_t size) override;
    void table(const char* name, const std::vector<Column>& columns, Titles titles = WITHOUT_TITLES) override;
    void row(const std::vector<Value>& values) override;
    void remark(const char* text) override;
    bool isWanted() const override;

private:
    void putLine(const std::string& line);

    utility::PutStream& m_out;
    std::vector<Column> m_columns;
};

} // namespace console
