#include "ut_StringArray.h"

#include <cstring>

#include "fw_Memory.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"

namespace utility {

namespace {

bool isSameText(const char* left, const char* right) {
    return left != nullptr && right != nullptr && std::strcmp(left, right) == 0;
}

} // namespace

StringArray::StringArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(char*));
}

StringArray::StringArray(const StringArray& other) : Array(other.size()) {
    allocateBlock(other.size(), sizeof(char*));
    for (unsigned int index = 0; index < other.length(); ++index)
        Append(other.slots()[index]);
}

StringArray::~StringArray() {
    DeleteAll();
    freeBlock();
}

void StringArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void StringArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, m_size, sizeof(char*));
}

void StringArray::Append(const char* text) {
    growWhenFull();
    slots()[m_length] = framework::Memory::StaticAllocString(text);
    ++m_length;
}

void StringArray::Append(const char* text, unsigned int length) {
    growWhenFull();
    slots()[m_length] = framework::Memory::StaticAllocString(text, length);
    ++m_length;
}

void StringArray::InsertAt(unsigned int index, const char* text) {
    VXUT_CHECK_INDEX(index <= m_length);
    growWhenFull();
    moveSlotsUp(slots(), index, m_length, false, nullptr);
    slots()[index] = framework::Memory::StaticAllocString(text);
    ++m_length;
}

void StringArray::SetAt(unsigned int index, const char* text) {
    VXUT_CHECK_INDEX(index < m_length);
    char*& slot = slots()[index];
    if (isSameText(slot, text))
        return;
    // `text` may point into the text that it replaces: copy before freeing.
    char* const former = slot;
    slot = framework::Memory::StaticAllocString(text);
    framework::Memory::StaticFreeString(former);
}

void StringArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    framework::Memory::StaticFreeString(slots()[index]);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
    slots()[m_length] = nullptr;
}

void StringArray::DeleteAll() {
    for (unsigned int index = 0; index < m_length; ++index) {
        framework::Memory::StaticFreeString(slots()[index]);
        slots()[index] = nullptr;
    }
    m_length = 0;
}

} // namespace utility
