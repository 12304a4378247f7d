#include "ut_UShortArray.h"

#include <cstring>
#include <utility>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 634;
const unsigned int growth = 20;

} // namespace

UShortArray::UShortArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(unsigned short));
}

UShortArray::UShortArray(const UShortArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(unsigned short));
    std::memcpy(m_block, other.m_block, other.length() * sizeof(unsigned short));
    m_length = other.length();
}

UShortArray::~UShortArray() {
    framework::Memory::StaticFree(m_block);
}

void UShortArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, sizeof(unsigned short));
}

void UShortArray::Append(unsigned short value) {
    if (Debug::isDebugOn(traceSwitch))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d", value);
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UShortArray::InsertAt(unsigned int index, unsigned short value) {
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

void UShortArray::SetAt(unsigned int index, unsigned short value) {
    if (Debug::isDebugOn(traceSwitch))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d, %d", index, value);
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = value;
}

void UShortArray::DeleteAt(unsigned int index) {
    if (Debug::isDebugOn(traceSwitch))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d", index);
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

unsigned short& UShortArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

const unsigned short& UShortArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

unsigned short UShortArray::ElementAt(unsigned int index) const {
    return index < m_length ? slots()[index] : static_cast<unsigned short>(0);
}

unsigned int UShortArray::smallestFrom(unsigned int index) const {
    unsigned int smallest = index;
    for (unsigned int at = index + 1; at < m_length; ++at) {
        if (slots()[at] < slots()[smallest])
            smallest = at;
    }
    return smallest;
}

void UShortArray::Sort() {
    for (unsigned int index = 0; index + 1 < m_length; ++index) {
        const unsigned int smallest = smallestFrom(index);
        if (smallest > index)
            std::swap(slots()[index], slots()[smallest]);
    }
}

} // namespace utility
