#include "ut_List.h"

#include <cstdint>
#include <new>

#include "ut_ListContainable.h"
#include "ut_ListIterator.h"
#include "ut_LockScope.h"
#include "ut_ReadLockGuard.h"
#include "ut_WriteLockGuard.h"

using framework::thread::ReadLockGuard;
using framework::thread::WriteLockGuard;

namespace utility {

namespace {

// Identifies an element, even after it was deleted.
std::uintptr_t addressOf(const ListContainable* element) {
    return reinterpret_cast<std::uintptr_t>(element);
}

} // namespace

List::ListEntry::ListEntry(ListContainable* element) : m_element(element), m_previous(nullptr), m_next(nullptr) {}

List::ListEntry::~ListEntry() {
    if (m_previous != nullptr)
        m_previous->m_next = m_next;
    if (m_next != nullptr)
        m_next->m_previous = m_previous;
}

List::ListEntry* List::ListEntry::insertBefore(ListContainable* element) {
    auto* entry = new (std::nothrow) ListEntry(element);
    if (entry == nullptr)
        return nullptr;
    entry->m_previous = m_previous;
    entry->m_next = this;
    if (m_previous != nullptr)
        m_previous->m_next = entry;
    m_previous = entry;
    return entry;
}

List::ListEntry* List::ListEntry::insertAfter(ListContainable* element) {
    auto* entry = new (std::nothrow) ListEntry(element);
    if (entry == nullptr)
        return nullptr;
    entry->m_previous = this;
    entry->m_next = m_next;
    if (m_next != nullptr)
        m_next->m_previous = entry;
    m_next = entry;
    return entry;
}

List::List(bool allowDuplicates) : m_first(nullptr), m_last(nullptr), m_count(0), m_allowDuplicates(allowDuplicates) {}

List::~List() {
    removeAll();
}

void List::addFirst(ListContainable* e) {
    if (e == nullptr)
        return;
    const WriteLockGuard guard(m_lock);
    if (!accepts(e))
        return;
    ListEntry* first = m_first;
    ListEntry* entry = first != nullptr ? first->insertBefore(e) : new (std::nothrow) ListEntry(e);
    if (entry == nullptr)
        return;
    m_first = entry;
    if (m_last == nullptr)
        m_last = entry;
    announce();
}

void List::addLast(ListContainable* e) {
    if (e == nullptr)
        return;
    const WriteLockGuard guard(m_lock);
    if (!accepts(e))
        return;
    ListEntry* entry = m_last != nullptr ? m_last->insertAfter(e) : new (std::nothrow) ListEntry(e);
    if (entry == nullptr)
        return;
    m_last = entry;
    if (isEmpty())
        m_first = entry;
    announce();
}

void List::add(int index, ListContainable* e) {
    if (e == nullptr)
        return;
    const WriteLockGuard guard(m_lock);
    if (!accepts(e))
        return;
    if (index == 0)
        return addFirst(e);
    ListEntry* entry = index < m_count ? getEntry(index) : nullptr;
    if (entry == nullptr)
        return addLast(e);
    entry->insertBefore(e);
}

ListContainable* List::getFirst() const {
    const ReadLockGuard guard(m_lock);
    const ListEntry* first = m_first;
    return first != nullptr ? first->element() : nullptr;
}

ListContainable* List::getLast() const {
    const ReadLockGuard guard(m_lock);
    return m_last != nullptr ? m_last->element() : nullptr;
}

ListContainable* List::get(int index) const {
    const ReadLockGuard guard(m_lock);
    const ListEntry* entry = getEntry(index);
    return entry != nullptr ? entry->element() : nullptr;
}

int List::indexOf(const ListContainable* e) const {
    if (e == nullptr)
        return -1;
    const ReadLockGuard guard(m_lock);
    int index = 0;
    for (const ListEntry* entry = m_first; entry != nullptr; entry = entry->next(), ++index) {
        if (e->equals(entry->element()))
            return index;
    }
    return -1;
}

int List::count() const {
    const ReadLockGuard guard(m_lock);
    return m_count;
}

ListContainable* List::removeFirst(bool wait) {
    if (wait && isEmpty())
        waitForElement();
    const WriteLockGuard guard(m_lock);
    return takeOut(m_first);
}

ListContainable* List::removeLast() {
    const WriteLockGuard guard(m_lock);
    return takeOut(m_last);
}

ListContainable* List::remove(int index) {
    const WriteLockGuard guard(m_lock);
    return takeOut(getEntry(index));
}

void List::remove(const ListContainable* e) {
    const WriteLockGuard guard(m_lock);
    removeEntry(getEntry(e));
}

void List::removeAndDelete(int index) {
    const WriteLockGuard guard(m_lock);
    deleteAndRemove(getEntry(index));
}

void List::removeAndDelete(ListContainable* e) {
    const WriteLockGuard guard(m_lock);
    deleteAndRemove(getEntry(e));
}

void List::removeAll() {
    const WriteLockGuard guard(m_lock);
    while (!isEmpty())
        removeEntry(m_first);
}

void List::removeAndDeleteAll() {
    const WriteLockGuard guard(m_lock);
    while (!isEmpty())
        deleteAndRemove(m_first);
}

void List::wakeAll() const {
    m_waiter.broadcast();
}

ListIterator* List::iterator(SortOrder order) const {
    return new (std::nothrow) ListIterator(*this, order);
}

List::ListEntry* List::getEntry(int index) const {
    if (index < 0)
        return nullptr;
    ListEntry* entry = m_first;
    for (; entry != nullptr && index > 0; --index)
        entry = entry->next();
    return entry;
}

List::ListEntry* List::getEntry(const ListContainable* e) const {
    if (e == nullptr)
        return nullptr;
    ListEntry* entry = m_first;
    while (entry != nullptr && !e->equals(entry->element()))
        entry = entry->next();
    return entry;
}

void List::removeEntry(const ListEntry* entry) {
    if (entry == nullptr)
        return;
    if (entry == m_first)
        m_first = entry->next();
    if (entry == m_last)
        m_last = entry->previous();
    delete entry;
    --m_count;
}

bool List::isEmpty() const {
    return m_first == nullptr;
}

bool List::accepts(const ListContainable* e) const {
    return m_allowDuplicates || getEntry(e) == nullptr;
}

// Signals under the waiter's lock to avoid a lost wake-up.
void List::announce() {
    ++m_count;
    const LockScope scope(m_waiter);
    m_waiter.signal();
}

// Checks the list again under the waiter's lock to avoid a lost wake-up. Must not lock the list here: threads that
// signal lock the list first and the waiter second, so the reverse order would deadlock.
void List::waitForElement() {
    const LockScope scope(m_waiter);
    if (isEmpty())
        m_waiter.wait(0);
}

ListContainable* List::takeOut(const ListEntry* entry) {
    if (entry == nullptr)
        return nullptr;
    ListContainable* element = entry->element();
    removeEntry(entry);
    return element;
}

void List::deleteAndRemove(const ListEntry* entry) {
    if (entry == nullptr)
        return;
    const std::uintptr_t deleted = addressOf(entry->element());
    delete entry->element();
    // The destructor may have removed the element, which destroys `entry`, and added others: look for `entry` again.
    const ListEntry* held = m_first;
    while (held != nullptr && held != entry)
        held = held->next();
    if (held != nullptr && addressOf(held->element()) == deleted)
        removeEntry(held);
}

} // namespace utility
