#include "ut_ShortArray.h"

#include "fw_KnownStrings.h"
#include "fw_KnownTokens.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"

namespace utility {

ShortArray::ShortArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(short));
}

ShortArray::ShortArray(const ShortArray& other) : Array(other.size()) {
    copyBlock(other, sizeof(short));
}

ShortArray::~ShortArray() {
    freeBlock();
}

void ShortArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void ShortArray::appendTraced(short value) {
    constexpr const char* function = "void utility::ShortArray::Append(short int)";
    if (Debug::isDebugOn(strings::TOKEN_SHORT_ARRAY))
        VXUT_LOG_AS(function, framework::Logger::LOG_ENTER, "%d", value);
    growBlock(sizeof(short));
    VXUT_TRACE_AS(function, TOKEN_SHORT_ARRAY, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void ShortArray::InsertAt(unsigned int index, short value) {
    if (Debug::isDebugOn(strings::TOKEN_SHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d, %d", index, value);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(short));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_SHORT_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_SHORT_ARRAY, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void ShortArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

} // namespace utility
