#include "ut_UInt64Array.h"

#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 628;
const unsigned int growth = 20;

} // namespace

UInt64Array::UInt64Array(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(unsigned long long));
}

UInt64Array::UInt64Array(const UInt64Array& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(unsigned long long));
    std::memcpy(m_block, other.m_block, other.length() * sizeof(unsigned long long));
    m_length = other.length();
}

UInt64Array::~UInt64Array() {
    framework::Memory::StaticFree(m_block);
}

void UInt64Array::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, sizeof(unsigned long long));
}

void UInt64Array::Append(unsigned long long value) {
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%llu] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UInt64Array::InsertAt(unsigned int index, unsigned long long value) {
    VXUT_TRACE_ENTER(traceSwitch);
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(traceSwitch, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(traceSwitch, "setting %llu = %d", value, index);
    slots()[index] = value;
    ++m_length;
}

void UInt64Array::SetAt(unsigned int index, unsigned long long value) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = value;
}

void UInt64Array::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

unsigned long long& UInt64Array::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

const unsigned long long& UInt64Array::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

} // namespace utility
