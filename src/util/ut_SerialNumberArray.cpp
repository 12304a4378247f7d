#include "ut_SerialNumberArray.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_SerialNumber.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 4618;
const unsigned int growth = 20;
const size_t slotWidth = sizeof(void*);
const unsigned int notFound = 0xFFFFFFFF;

} // namespace

SerialNumberArray::SerialNumberArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, slotWidth);
}

SerialNumberArray::SerialNumberArray(const SerialNumberArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), slotWidth);
    std::memcpy(m_block, other.m_block, other.length() * slotWidth);
    m_length = other.length();
}

SerialNumberArray::~SerialNumberArray() {
    for (unsigned int index = 0; index < m_length; ++index)
        delete slots()[index];
    framework::Memory::StaticFree(m_block);
}

void SerialNumberArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, slotWidth);
}

void SerialNumberArray::Append(SerialNumber* number) {
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%p] at %d", static_cast<void*>(number), m_length);
    slots()[m_length] = number;
    ++m_length;
}

void SerialNumberArray::InsertAt(unsigned int index, SerialNumber* number) {
    VXUT_TRACE_ENTER(traceSwitch);
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(traceSwitch, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(traceSwitch, "setting %d = %p", index, static_cast<void*>(number));
    slots()[index] = number;
    ++m_length;
}

void SerialNumberArray::SetAt(unsigned int index, SerialNumber* number) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = number;
}

void SerialNumberArray::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

SerialNumber*& SerialNumberArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

SerialNumber* const& SerialNumberArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

void SerialNumberArray::Append(SerialNumberArray& other) {
    const unsigned int count = other.length();
    if (uint64_t{m_length} + count >= m_size)
        m_block = realloc(m_block, &m_size, std::max(growth, count), slotWidth);
    for (unsigned int index = 0; index < count; ++index)
        Append(other.slots()[index]);
}

unsigned int SerialNumberArray::Find(SerialNumber* number) const {
    for (unsigned int index = 0; index < m_length; ++index) {
        if (slots()[index] == number)
            return index;
    }
    return notFound;
}

} // namespace utility
