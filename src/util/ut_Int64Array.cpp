#include "ut_Int64Array.h"

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"

namespace utility {

Int64Array::Int64Array(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(int64_t));
}

Int64Array::Int64Array(const Int64Array& other) : Array(other.size()) {
    copyBlock(other, sizeof(int64_t));
}

Int64Array::~Int64Array() {
    freeBlock();
}

void Int64Array::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void Int64Array::appendTraced(int64_t value) {
    constexpr const char* function = "void utility::Int64Array::Append(int64_t)";
    growBlock(sizeof(int64_t));
    VXUT_TRACE_AS(function, TOKEN_INT64_ARRAY, "Appending [%llu] at %d", static_cast<unsigned long long>(value),
                  m_length);
    slots()[m_length] = value;
    ++m_length;
}

void Int64Array::InsertAt(unsigned int index, int64_t value) {
    VXUT_TRACE_ENTER(TOKEN_INT64_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(int64_t));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_INT64_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_INT64_ARRAY, "setting %llu = %d", static_cast<unsigned long long>(value), index);
    slots()[index] = value;
    ++m_length;
}

void Int64Array::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

} // namespace utility
