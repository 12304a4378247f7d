#include "ut_UShortArray.h"

#include <utility>

#include "fw_KnownStrings.h"
#include "fw_KnownTokens.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"

namespace utility {

UShortArray::UShortArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(unsigned short));
}

UShortArray::UShortArray(const UShortArray& other) : Array(other.size()) {
    copyBlock(other, sizeof(unsigned short));
}

UShortArray::~UShortArray() {
    freeBlock();
}

void UShortArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void UShortArray::appendTraced(unsigned short value) {
    constexpr const char* function = "void utility::UShortArray::Append(short unsigned int)";
    if (Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
        VXUT_LOG_AS(function, framework::Logger::LOG_ENTER, "%d", value);
    growBlock(sizeof(unsigned short));
    VXUT_TRACE_AS(function, TOKEN_USHORT_ARRAY, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UShortArray::InsertAt(unsigned int index, unsigned short value) {
    if (Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d, %d", index, value);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(unsigned short));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_USHORT_ARRAY, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void UShortArray::setTraced(unsigned int index, unsigned short value) {
    constexpr const char* function = "void utility::UShortArray::SetAt(unsigned int, short unsigned int)";
    if (Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
        VXUT_LOG_AS(function, framework::Logger::LOG_ENTER, "%d, %d", index, value);
    if (index >= m_length)
        failIndex(function);
    slots()[index] = value;
}

void UShortArray::DeleteAt(unsigned int index) {
    if (Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d", index);
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

unsigned int UShortArray::smallestFrom(unsigned int index) const {
    unsigned int smallest = index;
    for (unsigned int at = index + 1; at < m_length; ++at) {
        if (slots()[at] < slots()[smallest])
            smallest = at;
    }
    return smallest;
}

void UShortArray::Sort() {
    for (unsigned int index = 0; index + 1 < m_length; ++index) {
        const unsigned int smallest = smallestFrom(index);
        if (smallest > index)
            std::swap(slots()[index], slots()[smallest]);
    }
}

} // namespace utility
