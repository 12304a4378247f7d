#include "ut_IntArray.h"

#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 442;
const unsigned int growth = 20;

} // namespace

IntArray::IntArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(int));
}

IntArray::IntArray(const IntArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(int));
    std::memcpy(m_block, other.m_block, other.length() * sizeof(int));
    m_length = other.length();
}

IntArray::~IntArray() {
    framework::Memory::StaticFree(m_block);
}

void IntArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, sizeof(int));
}

void IntArray::Append(int value) {
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void IntArray::InsertAt(unsigned int index, int value) {
    VXUT_TRACE_ENTER(traceSwitch);
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(traceSwitch, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(traceSwitch, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void IntArray::SetAt(unsigned int index, int value) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = value;
}

void IntArray::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

int& IntArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

const int& IntArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

} // namespace utility
