#include "ut_Int64Array.h"

#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 441;
const unsigned int growth = 20;

} // namespace

Int64Array::Int64Array(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(int64_t));
}

Int64Array::Int64Array(const Int64Array& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(int64_t));
    std::memcpy(m_block, other.m_block, other.length() * sizeof(int64_t));
    m_length = other.length();
}

Int64Array::~Int64Array() {
    framework::Memory::StaticFree(m_block);
}

void Int64Array::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, sizeof(int64_t));
}

void Int64Array::Append(int64_t value) {
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%llu] at %d", static_cast<unsigned long long>(value), m_length);
    slots()[m_length] = value;
    ++m_length;
}

void Int64Array::InsertAt(unsigned int index, int64_t value) {
    VXUT_TRACE_ENTER(traceSwitch);
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(traceSwitch, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(traceSwitch, "setting %llu = %d", static_cast<unsigned long long>(value), index);
    slots()[index] = value;
    ++m_length;
}

void Int64Array::SetAt(unsigned int index, int64_t value) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = value;
}

void Int64Array::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

int64_t& Int64Array::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

const int64_t& Int64Array::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

} // namespace utility
