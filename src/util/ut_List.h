#pragma once

#include "ut_Export.h"

#include <atomic>

#include "fw_PosixRWLock.h"
#include "ut_SortOrder.h"
#include "ut_Waiter.h"

namespace utility {

class ListContainable;
class ListIterator;

/// A list that any thread may change, and in which a thread can wait for the next element: a simple work queue.
///
/// Elements belong to the caller and must outlive their stay in the list; only the `removeAndDelete` operations delete
/// them. Elements are the same when `ListContainable::equals` says so, wherever they lie in memory.
/// Any thread may call any operation; one writes at a time, and none writes while an iterator lives. A thread that has
/// an iterator must not write to the same list. Only `getEntry` and `removeEntry` take no lock. Nothing is thrown: an
/// element for which there is no memory is not added, which leaves the list as it was.
///
///     utility::List queue(true);
///     std::thread consumer([&queue] { delete queue.removeFirst(true); });
///     queue.addLast(new Port(4));
///     consumer.join();
class VXUT_EXPORT List {
public:
    /// One place in a list. It does not own its element.
    class ListEntry {
    public:
        /// An entry without neighbours.
        explicit ListEntry(ListContainable* element);
        ListEntry(const ListEntry&) = delete;
        ListEntry& operator=(const ListEntry&) = delete;
        /// Joins the neighbours to each other.
        virtual ~ListEntry();

        /// A new entry for `element` between this one and its predecessor, or null, with nothing changed, when there is
        /// no memory.
        ListEntry* insertBefore(ListContainable* element);
        /// A new entry for `element` between this one and its successor, or null, with nothing changed, when there is
        /// no memory.
        ListEntry* insertAfter(ListContainable* element);

        ListContainable* element() const {
            return m_element;
        }
        /// Null at the beginning.
        ListEntry* previous() const {
            return m_previous;
        }
        /// Null at the end.
        ListEntry* next() const {
            return m_next;
        }

    private:
        ListContainable* m_element;
        ListEntry* m_previous;
        ListEntry* m_next;
    };

    /// An empty list. Without `allowDuplicates`, an element that is equal to one in the list is not added.
    explicit List(bool allowDuplicates = false);
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    /// Deletes no element. No thread may be using the list.
    ~List();

    /// Puts `e` in front and wakes one waiting consumer. A null `e`, or one that is not to be added, wakes nobody.
    void addFirst(ListContainable* e);
    /// Puts `e` at the end and wakes one waiting consumer. A null `e`, or one that is not to be added, wakes nobody.
    void addLast(ListContainable* e);
    /// Adds like `addFirst` at index 0 and like `addLast` at a negative index or one from `count()` on. In between, `e`
    /// gets the position `index`, but is not counted and wakes nobody: callers rely on `count()` telling only what came
    /// in at the ends, less everything removed.
    void add(int index, ListContainable* e);

    /// The element at the beginning; null when the list is empty.
    ListContainable* getFirst() const;
    /// The element at the end; null when the list is empty.
    ListContainable* getLast() const;
    /// The element at `index`, counted from 0; null outside the list. Every element has a position, counted or not.
    ListContainable* get(int index) const;
    /// The position of the first element equal to `e`; −1 when there is none, and for null.
    int indexOf(const ListContainable* e) const;
    /// How many were added at the ends, less how many were removed: not the number of elements, and possibly negative,
    /// once `add` has put one in between.
    int count() const;

    /// Takes out the first element; null when the list is empty. With `wait`, an empty list is first waited on until
    /// something is added or `wakeAll` is called, once: null when another consumer was faster, or nothing was added.
    ListContainable* removeFirst(bool wait);
    /// Takes out the last element; null when the list is empty.
    ListContainable* removeLast();
    /// Takes out the element at `index`; null outside the list.
    ListContainable* remove(int index);
    /// Takes out the first element equal to `e`, if there is one.
    void remove(const ListContainable* e);
    /// Deletes the element at `index`, if there is one, and takes it out. It is still in the list when it is deleted,
    /// and may take itself out then. One that stands in the list more than once must not be deleted so.
    void removeAndDelete(int index);
    /// The same with the first element equal to `e`, if there is one; that need not be `e` itself.
    void removeAndDelete(ListContainable* e);
    /// Takes out all elements without deleting them.
    void removeAll();
    /// The same with all elements, from the first.
    void removeAndDeleteAll();

    /// Wakes every consumer that is blocked in `removeFirst(true)`. One that is only about to wait is not woken, so a
    /// shutdown repeats the call until its consumers have ended.
    void wakeAll() const;

    /// A new iterator, which the caller deletes in this same thread; until then writers to the list wait. Null, with
    /// nothing locked, when there is no memory.
    ListIterator* iterator(SortOrder order) const;

    /// `getEntry` and `removeEntry` take no lock: use them only while no other thread uses the list. An iterator keeps
    /// writers away, which is enough for `getEntry`.
    ///
    /// The entry at `index`; null outside the list.
    ListEntry* getEntry(int index) const;
    /// The first entry whose element equals `e`; null when there is none, and for null.
    ListEntry* getEntry(const ListContainable* e) const;
    /// Takes out and destroys `entry`, which must be an entry of this list, but not its element; null does nothing.
    void removeEntry(const ListEntry* entry);

private:
    friend class ListIterator;

    bool isEmpty() const;
    bool isWelcome(const ListContainable* e) const;
    void announce();
    void waitForElement();
    ListContainable* takeOut(const ListEntry* entry);
    void deleteAndRemove(const ListEntry* entry);

    // Written under the write lock. A consumer reads it without the lock, before it waits.
    std::atomic<ListEntry*> m_first;
    ListEntry* m_last;
    int m_count;
    bool m_allowDuplicates;
    mutable framework::thread::PosixRWLock m_lock;
    Waiter m_waiter;
};

} // namespace utility
