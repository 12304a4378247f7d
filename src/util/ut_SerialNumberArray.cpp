#include "ut_SerialNumberArray.h"

#include <cstddef>

#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_Trace.h"
#include "ut_SerialNumber.h"

namespace utility {

namespace {

constexpr std::size_t slotWidth = sizeof(void*);
constexpr unsigned int notFound = 0xFFFFFFFF;

} // namespace

SerialNumberArray::SerialNumberArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, slotWidth);
}

SerialNumberArray::SerialNumberArray(const SerialNumberArray& other) : Array(other.size()) {
    copyBlock(other, slotWidth);
}

SerialNumberArray::~SerialNumberArray() {
    for (unsigned int index = 0; index < m_length; ++index)
        delete slots()[index];
    freeBlock();
}

void SerialNumberArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void SerialNumberArray::Append(SerialNumber* number) {
    growIfFull(slotWidth);
    VXUT_TRACE(TOKEN_SERIAL_NUMBER_ARRAY, "Appending [%p] at %d", static_cast<void*>(number), m_length);
    slots()[m_length] = number;
    ++m_length;
}

void SerialNumberArray::InsertAt(unsigned int index, SerialNumber* number) {
    VXUT_TRACE_ENTER(TOKEN_SERIAL_NUMBER_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(slotWidth);
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_SERIAL_NUMBER_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_SERIAL_NUMBER_ARRAY, "setting %d = %p", index, static_cast<void*>(number));
    slots()[index] = number;
    ++m_length;
}

void SerialNumberArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

void SerialNumberArray::Append(SerialNumberArray& other) {
    const unsigned int count = other.length();
    growBlock(slotWidth, count);
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
