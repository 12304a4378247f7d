#include "console_TextAnswer.h"

#include <algorithm>
#include <cctype>

namespace console {

namespace {

constexpr unsigned int labelWidth = 10;

std::string padded(const std::string& text, const Column& column) {
    const std::string padding(column.width - std::min<std::size_t>(column.width, text.size()), ' ');
    return column.isRight ? padding + text : text + padding;
}

} // namespace

void TextAnswer::putLine(const std::string& line) {
    // Not `PutF` or `PutS`: a line may be longer than the stream's buffer and contain NUL bytes.
    m_out.PutB(line.data(), static_cast<int>(line.size()));
    m_out.PutC('\n');
}

void TextAnswer::field(const char* name, const Value& value) {
    putLine(padded(name, left("", labelWidth)) + ' ' + value.shown());
}

void TextAnswer::line(const char*, const Value& value) {
    putLine(value.shown());
}

void TextAnswer::detail(const char*, const Value&) {}

void TextAnswer::text(const char*, const char* data, std::size_t size) {
    m_out.SendOutputStream(data, static_cast<unsigned int>(size));
}

void TextAnswer::table(const char*, const std::vector<Column>& columns, Titles titles) {
    m_columns = columns;
    if (titles == WITHOUT_TITLES)
        return;
    std::vector<Value> names;
    for (const Column& column : columns) {
        std::string name = column.name;
        std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
        names.emplace_back(name);
    }
    row(names);
}

void TextAnswer::row(const std::vector<Value>& values) {
    std::size_t count = std::min(values.size(), m_columns.size());
    // No blanks at the end of a line.
    while (count > 1 && values[count - 1].shown().empty())
        --count;
    std::string line;
    for (std::size_t i = 0; i < count; ++i) {
        const bool isLast = i + 1 == count;
        line += isLast && !m_columns[i].isRight ? values[i].shown() : padded(values[i].shown(), m_columns[i]);
        line += isLast ? "" : m_columns[i].separator;
    }
    putLine(line);
}

void TextAnswer::remark(const char* text) {
    putLine(text);
}

bool TextAnswer::isWanted() const {
    return m_out.isOutputStreamGood();
}

} // namespace console
