#include "ut_ShortArray.h"

#include "fw_KnownStrings.h"
#include "fw_KnownTokens.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"

namespace utility {

ShortArray::ShortArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(short));
}

ShortArray::ShortArray(const ShortArray& other) : Array(other.size()) {
    copyBlock(other, sizeof(short));
}

ShortArray::~ShortArray() {
    freeBlock();
}

void ShortArray::Append(short value) {
    if (Debug::isDebugOn(strings::TOKEN_SHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d", value);
    growBlock(sizeof(short));
    VXUT_TRACE(TOKEN_SHORT_ARRAY, "Appending [%d] at %d", value, m_length);
    slots()[m_length] = value;
    ++m_length;
}

void ShortArray::InsertAt(unsigned int index, short value) {
    if (Debug::isDebugOn(strings::TOKEN_SHORT_ARRAY))
        VXUT_LOG(framework::Logger::LOG_ENTER, "%d, %d", index, value);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(sizeof(short));
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_SHORT_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_SHORT_ARRAY, "setting %d = %d", index, value);
    slots()[index] = value;
    ++m_length;
}

void ShortArray::SetAt(unsigned int index, short value) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = value;
}

void ShortArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

short& ShortArray::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

const short& ShortArray::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

short ShortArray::ElementAt(unsigned int index) const {
    return index < m_length ? slots()[index] : short(0);
}

} // namespace utility
