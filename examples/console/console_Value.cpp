#include "console_Value.h"

namespace console {

Value::Value(const std::vector<std::string>& texts) : m_content(texts) {
    for (const std::string& text : texts)
        m_shown += (m_shown.empty() ? "" : ",") + text;
    if (texts.empty())
        m_shown = "-";
}

Value::Value(double number) : m_content(number), m_shown(std::to_string(number)) {}

} // namespace console
