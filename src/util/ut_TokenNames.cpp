#include "ut_TokenNames.h"

#include <cstring>

#include "ut_Misc.h"

namespace utility {

TokenNames::TokenNames(const char* list) : m_names(), m_count(0) {
    if (list == nullptr)
        return;
    m_text[maxBytes] = 0;
    memccpy(m_text, list, 0, maxBytes);
    Misc::parseTokens(m_names, maxNames, m_text, ",");
    // The result of the split does not count the last name when there are as many as fit.
    while (m_count < maxNames && m_names[m_count] != nullptr)
        ++m_count;
}

} // namespace utility
