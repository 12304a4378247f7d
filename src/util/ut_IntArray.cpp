#include "ut_IntArray.h"

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"

namespace utility {

IntArray::IntArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(int));
}

IntArray::IntArray(const IntArray& other) : Array(other.size()) {
    copyBlock(other, sizeof(int));
}

IntArray::~IntArray() {
    freeBlock();
}

void IntArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void IntArray::appendTraced(int value) {
    constexpr const char* function = "void utility::IntArray::Append(int)";
    growBlock(sizeof(int));
    VXUT_TRACE_AS(function, TOKEN_INT_ARRAY, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void IntArray::InsertAt(unsigned int index, int value) {
    VXUT_TRACE_ENTER(TOKEN_INT_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(int));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_INT_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_INT_ARRAY, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void IntArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

} // namespace utility
