#include "ut_Int64Array.h"

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
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

void Int64Array::Append(int64_t value) {
    growBlock(sizeof(int64_t));
    VXUT_TRACE(TOKEN_INT64_ARRAY, "Appending [%llu] at %d", static_cast<unsigned long long>(value), m_length);
    slots()[m_length] = value;
    ++m_length;
}

void Int64Array::InsertAt(unsigned int index, int64_t value) {
    VXUT_TRACE_ENTER(TOKEN_INT64_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(sizeof(int64_t));
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_INT64_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_INT64_ARRAY, "setting %llu = %d", static_cast<unsigned long long>(value), index);
    slots()[index] = value;
    ++m_length;
}

void Int64Array::SetAt(unsigned int index, int64_t value) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = value;
}

void Int64Array::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

int64_t& Int64Array::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

const int64_t& Int64Array::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

} // namespace utility
