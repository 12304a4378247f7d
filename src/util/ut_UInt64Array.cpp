#include "ut_UInt64Array.h"

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
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

void UInt64Array::Append(unsigned long long value) {
    growBlock(sizeof(unsigned long long));
    VXUT_TRACE(TOKEN_UINT64_ARRAY, "Appending [%llu] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UInt64Array::InsertAt(unsigned int index, unsigned long long value) {
    VXUT_TRACE_ENTER(TOKEN_UINT64_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(sizeof(unsigned long long));
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_UINT64_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_UINT64_ARRAY, "setting %llu = %d", value, index);
    slots()[index] = value;
    ++m_length;
}

void UInt64Array::SetAt(unsigned int index, unsigned long long value) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = value;
}

void UInt64Array::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

unsigned long long& UInt64Array::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

const unsigned long long& UInt64Array::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

} // namespace utility
