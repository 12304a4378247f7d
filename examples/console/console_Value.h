#pragma once

#include <string>
#include <type_traits>
#include <variant>
#include <vector>

namespace console {

/// One value of an answer: what a program reads, and the text that a person reads.
///
///     Value(1234).shownAs("1,234")   // 1234 in JSON, "1,234" in the text
class Value {
public:
    using Content = std::variant<std::nullptr_t, bool, long long, unsigned long long, double, std::string,
                                 std::vector<std::string>>;

    /// Nothing is known: null, shown as "-".
    Value() : m_content(nullptr), m_shown("-") {}
    /// A text; a null pointer is the same as no value.
    Value(const char* text) : Value() {
        if (text != nullptr)
            *this = Value(std::string(text));
    }
    Value(const std::string& text) : m_content(text), m_shown(text) {}
    /// Several texts, shown with a comma between them; an empty list is shown as "-".
    Value(const std::vector<std::string>& texts);
    Value(double number);
    /// A truth value, shown as "yes" or "no", or an integer.
    template<typename Integer, typename = std::enable_if_t<std::is_integral_v<Integer>>>
    Value(Integer number) : m_content(contentOf(number)), m_shown(shownOf(number)) {}

    /// The same value, shown as `text`.
    Value shownAs(const std::string& text) const {
        Value copy = *this;
        copy.m_shown = text;
        return copy;
    }

    const Content& content() const {
        return m_content;
    }
    const std::string& shown() const {
        return m_shown;
    }

private:
    template<typename Integer>
    static Content contentOf(Integer number) {
        if constexpr (std::is_same_v<Integer, bool>)
            return number;
        else if constexpr (std::is_signed_v<Integer>)
            return static_cast<long long>(number);
        else
            return static_cast<unsigned long long>(number);
    }
    template<typename Integer>
    static std::string shownOf(Integer number) {
        if constexpr (std::is_same_v<Integer, bool>)
            return number ? "yes" : "no";
        else
            return std::to_string(number);
    }

    Content m_content;
    std::string m_shown;
};

} // namespace console
