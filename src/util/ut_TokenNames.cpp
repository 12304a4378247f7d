#include "ut_TokenNames.h"

#include <cstring>

#include "ut_Misc.h"

namespace utility {

TokenNames::TokenNames(const char* list) : m_names(), m_count(0) {
    if (list == nullptr)
        return;
    m_text[MAX_BYTES] = 0;
    memccpy(m_text, list, 0, MAX_BYTES);
    Misc::parseTokens(m_names, MAX_NAMES, m_text, ",");
    // The result of the split does not count the last name when there are as many as fit.
    while (m_count < MAX_NAMES && m_names[m_count] != nullptr)
        ++m_count;
}

} // namespace utility
