#include "ut_ItemArray.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "fw_Item.h"
#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "ut_Failure.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 444;
const unsigned int growth = 20;
const unsigned int notFound = 0xFFFFFFFF;

} // namespace

ItemArray::ItemArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(framework::Item*));
}

ItemArray::ItemArray(const ItemArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(framework::Item*));
    std::memcpy(m_block, other.m_block, other.length() * sizeof(framework::Item*));
    m_length = other.length();
}

ItemArray::~ItemArray() {
    framework::Memory::StaticFree(m_block);
}

void ItemArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, sizeof(framework::Item*));
}

void ItemArray::Append(framework::Item* item) {
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%p] at %d", static_cast<void*>(item), m_length);
    slots()[m_length] = item;
    ++m_length;
}

void ItemArray::InsertAt(unsigned int index, framework::Item* item) {
    VXUT_TRACE_ENTER(traceSwitch);
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(traceSwitch, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(traceSwitch, "setting %d = %p", index, static_cast<void*>(item));
    slots()[index] = item;
    ++m_length;
}

void ItemArray::SetAt(unsigned int index, framework::Item* item) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = item;
}

void ItemArray::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

framework::Item*& ItemArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

framework::Item* const& ItemArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

void ItemArray::Append(ItemArray& other) {
    const unsigned int count = other.length();
    if (uint64_t{m_length} + count >= m_size)
        m_block = realloc(m_block, &m_size, std::max(growth, count), sizeof(framework::Item*));
    for (unsigned int index = 0; index < count; ++index)
        Append(other.slots()[index]);
}

unsigned int ItemArray::Find(framework::Item* item) const {
    for (unsigned int index = 0; index < m_length; ++index) {
        if (slots()[index] == item)
            return index;
    }
    return notFound;
}

} // namespace utility
