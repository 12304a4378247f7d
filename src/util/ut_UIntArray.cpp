#include "ut_UIntArray.h"

#include <cstdlib>

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
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

void UIntArray::Append(unsigned int value) {
    growBlock(sizeof(unsigned int));
    VXUT_TRACE(TOKEN_UINT_ARRAY, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UIntArray::InsertAt(unsigned int index, unsigned int value) {
    VXUT_TRACE_ENTER(TOKEN_UINT_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(sizeof(unsigned int));
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_UINT_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_UINT_ARRAY, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void UIntArray::SetAt(unsigned int index, unsigned int value) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = value;
}

void UIntArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

unsigned int& UIntArray::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

const unsigned int& UIntArray::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
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
