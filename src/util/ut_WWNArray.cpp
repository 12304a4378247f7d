#include "ut_WWNArray.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_Trace.h"
#include "ut_WWN.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 5154;
const unsigned int growth = 20;
const size_t slotWidth = sizeof(void*);
const unsigned int notFound = 0xFFFFFFFF;

} // namespace

WWNArray::WWNArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, slotWidth);
}

WWNArray::WWNArray(const WWNArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), slotWidth);
    std::memcpy(m_block, other.m_block, other.length() * slotWidth);
    m_length = other.length();
}

WWNArray::~WWNArray() {
    for (unsigned int index = 0; index < m_length; ++index)
        delete slots()[index];
    framework::Memory::StaticFree(m_block);
}

void WWNArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, slotWidth);
}

void WWNArray::Append(WWN* name) {
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%p] at %d", static_cast<void*>(name), m_length);
    slots()[m_length] = name;
    ++m_length;
}

void WWNArray::InsertAt(unsigned int index, WWN* name) {
    VXUT_TRACE_ENTER(traceSwitch);
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(traceSwitch, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(traceSwitch, "setting %d = %p", index, static_cast<void*>(name));
    slots()[index] = name;
    ++m_length;
}

void WWNArray::SetAt(unsigned int index, WWN* name) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = name;
}

void WWNArray::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

WWN*& WWNArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

WWN* const& WWNArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

void WWNArray::Append(WWNArray& other) {
    const unsigned int count = other.length();
    if (uint64_t{m_length} + count >= m_size)
        m_block = realloc(m_block, &m_size, std::max(growth, count), slotWidth);
    for (unsigned int index = 0; index < count; ++index)
        Append(other.slots()[index]);
}

unsigned int WWNArray::Find(WWN* name) const {
    for (unsigned int index = 0; index < m_length; ++index) {
        if (slots()[index] == name)
            return index;
    }
    return notFound;
}

} // namespace utility
