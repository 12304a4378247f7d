#include "ut_ListIterator.h"

namespace utility {

ListIterator::ListIterator(const List& list, SortOrder order) : m_list(list), m_order(order), m_current(nullptr) {
    m_list.m_lock.readLock();
    m_current = m_order == FIRST_TO_LAST ? m_list.m_first.load() : m_list.m_last;
}

ListIterator::~ListIterator() {
    m_list.m_lock.unlock();
}

ListContainable* ListIterator::next() {
    if (m_current == nullptr)
        return nullptr;
    ListContainable* element = m_current->element();
    m_current = m_order == FIRST_TO_LAST ? m_current->next() : m_current->previous();
    return element;
}

} // namespace utility
