#include "ut_UIntArray.h"

#include <cstdlib>

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"

namespace utility {

UIntArray::UIntArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(unsigned int));
}

UIntArray::UIntArray(const UIntArray& other) : Array(other.size()) {
    copyBlock(other, sizeof(unsigned int));
}

UIntArray::~UIntArray() {
    freeBlock();
}

void UIntArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void UIntArray::appendTraced(unsigned int value) {
    constexpr const char* function = "void utility::UIntArray::Append(unsigned int)";
    growBlock(sizeof(unsigned int));
    VXUT_TRACE_AS(function, TOKEN_UINT_ARRAY, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UIntArray::InsertAt(unsigned int index, unsigned int value) {
    VXUT_TRACE_ENTER(TOKEN_UINT_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(unsigned int));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_UINT_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_UINT_ARRAY, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void UIntArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

void UIntArray::sort() {
    std::qsort(m_block, m_length, sizeof(unsigned int), compare);
}

int UIntArray::compare(const void* left, const void* right) {
    const unsigned int a = *static_cast<const unsigned int*>(left);
    const unsigned int b = *static_cast<const unsigned int*>(right);
    if (a < b)
        return -1;
    return a > b ? 1 : 0;
}

} // namespace utility
