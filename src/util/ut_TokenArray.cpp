#include "ut_TokenArray.h"

#include "fw_KnownStrings.h"
#include "fw_StableStringRepository.h"
#include "internal/ut_Failure.h"
#include "internal/ut_TokenNames.h"
#include "internal/ut_Trace.h"

namespace utility {

TokenArray::TokenArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(stringtoken));
}

TokenArray::TokenArray(const char* list, unsigned int capacity) : TokenArray(capacity) {
    SetFromStringList(list);
}

TokenArray::TokenArray(const TokenArray& other) : Array(other.size()) {
    copyBlock(other, sizeof(stringtoken));
}

TokenArray::~TokenArray() {
    freeBlock();
}

void TokenArray::SetFromStringList(const char* list) {
    const TokenNames names(list);
    m_length = 0;
    for (const char* name : names)
        Append(strings::GS.toToken(name));
}

void TokenArray::Append(stringtoken token) {
    growBlock(sizeof(stringtoken));
    VXUT_TRACE(TOKEN_TOKEN_ARRAY, "Appending [%d] at %d", token, m_length);
    slots()[m_length] = token;
    ++m_length;
}

void TokenArray::InsertAt(unsigned int index, stringtoken token) {
    VXUT_TRACE_ENTER(TOKEN_TOKEN_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(sizeof(stringtoken));
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_TOKEN_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_TOKEN_ARRAY, "setting %d = %d", index, token);
    slots()[index] = token;
    ++m_length;
}

void TokenArray::SetAt(unsigned int index, stringtoken token) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = token;
}

void TokenArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

stringtoken& TokenArray::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

const stringtoken& TokenArray::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

} // namespace utility
