#include "ut_IntArray.h"

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
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

void IntArray::Append(int value) {
    growBlock(sizeof(int));
    VXUT_TRACE(TOKEN_INT_ARRAY, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void IntArray::InsertAt(unsigned int index, int value) {
    VXUT_TRACE_ENTER(TOKEN_INT_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(sizeof(int));
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_INT_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_INT_ARRAY, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void IntArray::SetAt(unsigned int index, int value) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = value;
}

void IntArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

int& IntArray::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

const int& IntArray::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

} // namespace utility
