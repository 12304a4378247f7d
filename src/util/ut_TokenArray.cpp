#include "ut_TokenArray.h"

#include "fw_KnownStrings.h"
#include "fw_StableStringRepository.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
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

void TokenArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void TokenArray::SetFromStringList(const char* list) {
    const TokenNames names(list);
    m_length = 0;
    for (const char* name : names)
        Append(strings::GS.toToken(name));
}

void TokenArray::Append(stringtoken token) {
    growIfFull(sizeof(stringtoken));
    VXUT_TRACE(TOKEN_TOKEN_ARRAY, "Appending [%d] at %d", token, m_length);
    slots()[m_length] = token;
    ++m_length;
}

void TokenArray::InsertAt(unsigned int index, stringtoken token) {
    VXUT_TRACE_ENTER(TOKEN_TOKEN_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(stringtoken));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_TOKEN_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_TOKEN_ARRAY, "setting %d = %d", index, token);
    slots()[index] = token;
    ++m_length;
}

void TokenArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

} // namespace utility
