#include "ut_UInt64Array.h"

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"

namespace utility {

UInt64Array::UInt64Array(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(unsigned long long));
}

UInt64Array::UInt64Array(const UInt64Array& other) : Array(other.size()) {
    copyBlock(other, sizeof(unsigned long long));
}

UInt64Array::~UInt64Array() {
    freeBlock();
}

void UInt64Array::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void UInt64Array::appendTraced(unsigned long long value) {
    constexpr const char* function = "void utility::UInt64Array::Append(long long unsigned int)";
    growBlock(sizeof(unsigned long long));
    VXUT_TRACE_AS(function, TOKEN_UINT64_ARRAY, "Appending [%llu] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UInt64Array::InsertAt(unsigned int index, unsigned long long value) {
    VXUT_TRACE_ENTER(TOKEN_UINT64_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(unsigned long long));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_UINT64_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_UINT64_ARRAY, "setting %llu = %d", value, index);
    slots()[index] = value;
    ++m_length;
}

void UInt64Array::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

} // namespace utility
