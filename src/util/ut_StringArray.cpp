#include "ut_StringArray.h"

#include <cstring>

#include "fw_Memory.h"
#include "ut_Failure.h"

namespace utility {

namespace {

const unsigned int growth = 20;

bool isSameText(const char* left, const char* right) {
    return left != nullptr && right != nullptr && std::strcmp(left, right) == 0;
}

} // namespace

StringArray::StringArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(char*));
}

StringArray::StringArray(const StringArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(char*));
    for (unsigned int index = 0; index < other.length(); ++index)
        Append(other.slots()[index]);
}

StringArray::~StringArray() {
    DeleteAll();
    framework::Memory::StaticFree(m_block);
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
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to)
        slots()[to] = slots()[to - 1];
    slots()[index] = framework::Memory::StaticAllocString(text);
    ++m_length;
}

void StringArray::SetAt(unsigned int index, const char* text) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    char*& slot = slots()[index];
    if (isSameText(slot, text))
        return;
    // `text` may point into the text that it replaces: copy before freeing.
    char* const former = slot;
    slot = framework::Memory::StaticAllocString(text);
    framework::Memory::StaticFreeString(former);
}

void StringArray::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    framework::Memory::StaticFreeString(slots()[index]);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
    slots()[m_length] = nullptr;
}

void StringArray::DeleteAll() {
    for (unsigned int index = 0; index < m_length; ++index) {
        framework::Memory::StaticFreeString(slots()[index]);
        slots()[index] = nullptr;
    }
    m_length = 0;
}

char* StringArray::ElementAt(unsigned int index) const {
    return index < m_length ? slots()[index] : nullptr;
}

char*& StringArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

char* const& StringArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

} // namespace utility
