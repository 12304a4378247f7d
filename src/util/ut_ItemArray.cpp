#include "ut_ItemArray.h"

#include "fw_Item.h"
#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"

namespace utility {

namespace {

constexpr unsigned int notFound = 0xFFFFFFFF;

} // namespace

ItemArray::ItemArray(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(framework::Item*));
}

ItemArray::ItemArray(const ItemArray& other) : Array(other.size()) {
    copyBlock(other, sizeof(framework::Item*));
}

ItemArray::~ItemArray() {
    freeBlock();
}

void ItemArray::Append(framework::Item* item) {
    growBlock(sizeof(framework::Item*));
    VXUT_TRACE(TOKEN_ITEM_ARRAY, "Appending [%p] at %d", static_cast<void*>(item), m_length);
    slots()[m_length] = item;
    ++m_length;
}

void ItemArray::InsertAt(unsigned int index, framework::Item* item) {
    VXUT_TRACE_ENTER(TOKEN_ITEM_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growBlock(sizeof(framework::Item*));
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(TOKEN_ITEM_ARRAY, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(TOKEN_ITEM_ARRAY, "setting %d = %p", index, static_cast<void*>(item));
    slots()[index] = item;
    ++m_length;
}

void ItemArray::SetAt(unsigned int index, framework::Item* item) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = item;
}

void ItemArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

framework::Item*& ItemArray::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

framework::Item* const& ItemArray::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

void ItemArray::Append(ItemArray& other) {
    const unsigned int count = other.length();
    growBlock(sizeof(framework::Item*), count);
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
