#include "ut_UIntArray.h"

#include <cstdlib>
#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 629;
const unsigned int growth = 20;

} // namespace

UIntArray::UIntArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(unsigned int));
}

UIntArray::UIntArray(const UIntArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(unsigned int));
    std::memcpy(m_block, other.m_block, other.length() * sizeof(unsigned int));
    m_length = other.length();
}

UIntArray::~UIntArray() {
    framework::Memory::StaticFree(m_block);
}

void UIntArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, sizeof(unsigned int));
}

void UIntArray::Append(unsigned int value) {
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UIntArray::InsertAt(unsigned int index, unsigned int value) {
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

void UIntArray::SetAt(unsigned int index, unsigned int value) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = value;
}

void UIntArray::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

unsigned int& UIntArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

const unsigned int& UIntArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
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
