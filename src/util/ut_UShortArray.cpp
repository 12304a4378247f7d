#include "ut_UShortArray.h"

#include <utility>

#include "fw_KnownStrings.h"
#include "fw_KnownTokens.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"

namespace utility {

UShortArray::UShortArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(unsigned short));
}

UShortArray::UShortArray(const UShortArray& other) : Array(other.size()) {
    copyBlock(other, sizeof(unsigned short));
}

UShortArray::~UShortArray() {
    freeBlock();
}

void UShortArray::Append(unsigned short value) {
    if (Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d", value);
    growBlock(sizeof(unsigned short));
    VXUT_TRACE(TOKEN_USHORT_ARRAY, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void UShortArray::InsertAt(unsigned int index, unsigned short value) {
    if (Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d, %d", index, value);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(sizeof(unsigned short));
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_USHORT_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_USHORT_ARRAY, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void UShortArray::SetAt(unsigned int index, unsigned short value) {
    if (Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d, %d", index, value);
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = value;
}

void UShortArray::DeleteAt(unsigned int index) {
    if (Debug::isDebugOn(strings::TOKEN_USHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d", index);
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

unsigned short& UShortArray::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

const unsigned short& UShortArray::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
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
