#include "ut_ShortArray.h"

#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 566;
const unsigned int growth = 20;

} // namespace

ShortArray::ShortArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(short));
}

ShortArray::ShortArray(const ShortArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(short));
    std::memcpy(m_block, other.m_block, other.length() * sizeof(short));
    m_length = other.length();
}

ShortArray::~ShortArray() {
    framework::Memory::StaticFree(m_block);
}

void ShortArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, sizeof(short));
}

void ShortArray::Append(short value) {
    if (Debug::isDebugOn(traceSwitch))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d", value);
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void ShortArray::InsertAt(unsigned int index, short value) {
    if (Debug::isDebugOn(traceSwitch))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d, %d", index, value);
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

void ShortArray::SetAt(unsigned int index, short value) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = value;
}

void ShortArray::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

short& ShortArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

const short& ShortArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

short ShortArray::ElementAt(unsigned int index) const {
    return index < m_length ? slots()[index] : short(0);
}

} // namespace utility
