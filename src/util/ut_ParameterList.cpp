#include "ut_ParameterList.h"

#include <cstring>

namespace utility {

ParameterList::ParameterList(char* text, char separator) : m_separator(separator), m_position(text) {}

char* ParameterList::nextToken(char* destination) {
    if (destination == nullptr)
        return nullptr;
    while (m_position != nullptr) {
        char* start = m_position;
        char* separator = m_separator != 0 ? std::strchr(start, m_separator) : nullptr;
        m_position = separator != nullptr ? separator + 1 : nullptr;
        const std::size_t length =
            separator != nullptr ? static_cast<std::size_t>(separator - start) : std::strlen(start);
        if (length == 0)
            continue;
        std::memmove(destination, start, length);
        destination[length] = 0;
        return destination;
    }
    return nullptr;
}

} // namespace utility
