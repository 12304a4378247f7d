#include "internal/ut_TokenNames.h"

#include <cstring>

#include "ut_Misc.h"

namespace utility {

TokenNames::TokenNames(const char* list) : m_names(), m_count(0) {
    if (list == nullptr)
        return;
    m_text[maxBytes] = 0;
    memccpy(m_text, list, 0, maxBytes);
    Misc::parseTokens(m_names, maxNames, m_text, ",");
    // Count the names here: the result of `parseTokens` omits the last one if the array is full.
    while (m_count < maxNames && m_names[m_count] != nullptr)
        ++m_count;
}

} // namespace utility
