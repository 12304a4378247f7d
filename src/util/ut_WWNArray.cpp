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

const unsigned int TRACE_SWITCH = 5154;
const unsigned int GROWTH = 20;
const size_t SLOT_WIDTH = sizeof(void*);
const unsigned int NOT_FOUND = 0xFFFFFFFF;

} // namespace

WWNArray::WWNArray(unsigned int capacity) : Array(GROWTH) {
    m_block = realloc(nullptr, &m_size, capacity, SLOT_WIDTH);
}

WWNArray::WWNArray(const WWNArray& other) : Array(GROWTH) {
    m_block = realloc(nullptr, &m_size, other.size(), SLOT_WIDTH);
    std::memcpy(m_block, other.m_block, other.length() * SLOT_WIDTH);
    m_length = other.length();
}

WWNArray::~WWNArray() {
    for (unsigned int index = 0; index < m_length; ++index)
        delete slots()[index];
    framework::Memory::StaticFree(m_block);
}

void WWNArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, GROWTH, SLOT_WIDTH);
}

void WWNArray::Append(WWN* name) {
    growWhenFull();
    VXUT_TRACE(TRACE_SWITCH, "Appending [%p] at %d", static_cast<void*>(name), m_length);
    slots()[m_length] = name;
    ++m_length;
}

void WWNArray::InsertAt(unsigned int index, WWN* name) {
    VXUT_TRACE_ENTER(TRACE_SWITCH);
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TRACE_SWITCH, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TRACE_SWITCH, "setting %d = %p", index, static_cast<void*>(name));
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
        m_block = realloc(m_block, &m_size, std::max(GROWTH, count), SLOT_WIDTH);
    for (unsigned int index = 0; index < count; ++index)
        Append(other.slots()[index]);
}

unsigned int WWNArray::Find(WWN* name) const {
    for (unsigned int index = 0; index < m_length; ++index) {
        if (slots()[index] == name)
            return index;
    }
    return NOT_FOUND;
}

} // namespace utility
