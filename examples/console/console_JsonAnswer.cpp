#include "console_JsonAnswer.h"

#include <stdexcept>

#include <nlohmann/json.hpp>

namespace console {

namespace {

using Json = nlohmann::ordered_json;

// What a value takes in addition to its text; a rough figure.
constexpr std::size_t valueSize = 32;

Json jsonOf(const Value& value) {
    return std::visit([](const auto& content) { return Json(content); }, value.content());
}

} // namespace

// The members of the answer, and the table that rows are added to.
struct JsonAnswer::Members {
    Json all = Json::object();
    std::string table;
    std::vector<std::string> columns;
    std::size_t size = 0;
};

JsonAnswer::JsonAnswer() : m_members(std::make_unique<Members>()) {}

JsonAnswer::~JsonAnswer() = default;

void JsonAnswer::grow(std::size_t size) {
    m_members->size += size;
    if (m_members->size <= largestSize)
        return;
    m_members->all = Json::object();
    throw std::length_error("the answer is too long for a JSON object: use the text");
}

void JsonAnswer::field(const char* name, const Value& value) {
    grow(value.shown().size() + valueSize);
    m_members->all[name] = jsonOf(value);
}

void JsonAnswer::line(const char* name, const Value& value) {
    field(name, value);
}

void JsonAnswer::detail(const char* name, const Value& value) {
    field(name, value);
}

void JsonAnswer::text(const char* name, const char* data, std::size_t size) {
    grow(size);
    Json& text = m_members->all[name];
    if (text.is_null())
        text = "";
    text.get_ref<std::string&>().append(data, size);
}

void JsonAnswer::table(const char* name, const std::vector<Column>& columns, Titles) {
    m_members->table = name;
    m_members->columns.clear();
    for (const Column& column : columns)
        m_members->columns.emplace_back(column.name);
    m_members->all[name] = Json::array();
}

void JsonAnswer::row(const std::vector<Value>& values) {
    Json row = Json::object();
    for (std::size_t i = 0; i < m_members->columns.size(); ++i) {
        const Value value = i < values.size() ? values[i] : Value();
        grow(value.shown().size() + m_members->columns[i].size() + valueSize);
        row[m_members->columns[i]] = jsonOf(value);
    }
    m_members->all[m_members->table].push_back(std::move(row));
}

void JsonAnswer::remark(const char*) {}

bool JsonAnswer::isWanted() const {
    return true;
}

std::string JsonAnswer::object(const char* command, const char* failure) const {
    Json whole = {{"version", version}, {"command", command != nullptr ? Json(command) : Json()}};
    if (failure == nullptr) {
        whole["answer"] = m_members->all;
    } else {
        whole["failure"] = failure;
        whole["partial"] = m_members->all;
    }
    return whole.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

} // namespace console
