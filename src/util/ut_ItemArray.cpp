#include "ut_ItemArray.h"

#include "fw_Item.h"
#include "fw_KnownStrings.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
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

void ItemArray::failIndex(const char* function) {
    VXUT_THROW_AS(function, FAILURE_INDEX, "");
}

void ItemArray::Append(framework::Item* item) {
    growIfFull(sizeof(framework::Item*));
    VXUT_TRACE(TOKEN_ITEM_ARRAY, "Appending [%p] at %d", static_cast<void*>(item), m_length);
    slots()[m_length] = item;
    ++m_length;
}

void ItemArray::InsertAt(unsigned int index, framework::Item* item) {
    VXUT_TRACE_ENTER(TOKEN_ITEM_ARRAY);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(framework::Item*));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_ITEM_ARRAY), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_ITEM_ARRAY, "setting %d = %p", index, static_cast<void*>(item));
    slots()[index] = item;
    ++m_length;
}

void ItemArray::DeleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
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
