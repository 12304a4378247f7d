#include "ut_WWNArray.h"

#include <cstddef>

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"
#include "ut_WWN.h"

namespace utility {

namespace {

constexpr std::size_t slotWidth = sizeof(void*);
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

void WWNArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void WWNArray::Append(WWN* name) {
    growIfFull(slotWidth);
    VXUT_TRACE(TOKEN_WWN_ARRAY, "Appending [%p] at %d", static_cast<void*>(name), m_length);
    slots()[m_length] = name;
    ++m_length;
}

void WWNArray::InsertAt(unsigned int index, WWN* name) {
    VXUT_TRACE_ENTER(TOKEN_WWN_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(slotWidth);
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_WWN_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_WWN_ARRAY, "setting %d = %p", index, static_cast<void*>(name));
    slots()[index] = name;
    ++m_length;
}

void WWNArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
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
