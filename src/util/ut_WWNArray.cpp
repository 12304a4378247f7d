#include "ut_WWNArray.h"

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"
#include "ut_WWN.h"

namespace utility {

namespace {

constexpr size_t slotWidth = sizeof(void*);
constexpr unsigned int notFound = 0xFFFFFFFF;

} // namespace

WWNArray::WWNArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, slotWidth);
}

WWNArray::WWNArray(const WWNArray& other) : Array(other.size()) {
    copyBlock(other, slotWidth);
}

WWNArray::~WWNArray() {
    for (unsigned int index = 0; index < m_length; ++index)
        delete slots()[index];
    freeBlock();
}

void WWNArray::Append(WWN* name) {
    growBlock(slotWidth);
    VXUT_TRACE(TOKEN_WWN_ARRAY, "Appending [%p] at %d", static_cast<void*>(name), m_length);
    slots()[m_length] = name;
    ++m_length;
}

void WWNArray::InsertAt(unsigned int index, WWN* name) {
    VXUT_TRACE_ENTER(TOKEN_WWN_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(slotWidth);
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_WWN_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_WWN_ARRAY, "setting %d = %p", index, static_cast<void*>(name));
    slots()[index] = name;
    ++m_length;
}

void WWNArray::SetAt(unsigned int index, WWN* name) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = name;
}

void WWNArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

WWN*& WWNArray::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

WWN* const& WWNArray::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

void WWNArray::Append(WWNArray& other) {
    const unsigned int count = other.length();
    growBlock(slotWidth, count);
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
