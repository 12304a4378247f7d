#pragma once

#include "ut_Export.h"

#include <atomic>

#include "fw_PosixRWLock.h"
#include "ut_SortOrder.h"
#include "ut_Waiter.h"

namespace utility {

class ListContainable;
class ListIterator;

/// A thread-safe list in which consumers can wait for the next element: a simple work queue.
///
/// - Ownership: elements belong to the caller and must live as long as they are in the list; only the `removeAndDelete`
///   operations delete them.
/// - Equality: two elements are equal if `ListContainable::equals` returns true; their addresses are not compared.
/// - Threads: all operations except `getEntry` and `removeEntry` lock the list. Writers wait for each other and for
///   iterators to be destroyed. A thread that has an iterator must not write to the same list.
///
/// Does not throw. If memory allocation fails, an element is not added and the list is unchanged.
///
///     utility::List queue(true);
///     std::thread consumer([&queue] { delete queue.removeFirst(true); });
///     queue.addLast(new Port(4));
///     consumer.join();
class VXUT_EXPORT List {
public:
    /// A node of a list. It does not own its element.
    class ListEntry {
    public:
        /// Creates an entry without neighbors.
        explicit ListEntry(ListContainable* element);
        ListEntry(const ListEntry&) = delete;
        ListEntry& operator=(const ListEntry&) = delete;
        /// Links the neighbors to each other.
        virtual ~ListEntry();

        /// Inserts and returns a new entry for `element` before this one.
        /// Returns null, with nothing changed, if the allocation fails.
        ListEntry* insertBefore(ListContainable* element);
        /// Inserts and returns a new entry for `element` after this one.
        /// Returns null, with nothing changed, if the allocation fails.
        ListEntry* insertAfter(ListContainable* element);

        /// Returns the element.
        ListContainable* element() const {
            return m_element;
        }
        /// Returns the previous entry, or null if this is the first.
        ListEntry* previous() const {
            return m_previous;
        }
        /// Returns the next entry, or null if this is the last.
        ListEntry* next() const {
            return m_next;
        }

    private:
        ListContainable* m_element;
        ListEntry* m_previous;
        ListEntry* m_next;
    };

    /// Creates an empty list. If `allowDuplicates` is false, an element equal to a stored one is not added.
    explicit List(bool allowDuplicates = false);
    List(const List&) = delete;
    List& operator=(const List&) = delete;
    /// Does not delete the elements. No thread may be using the list.
    ~List();

    /// Adds `e` at the beginning and wakes one waiting consumer. If `e` is null or a rejected duplicate, does nothing
    /// and wakes no consumer.
    void addFirst(ListContainable* e);
    /// Adds `e` at the end and wakes one waiting consumer. If `e` is null or a rejected duplicate, does nothing and
    /// wakes no consumer.
    void addLast(ListContainable* e);
    /// Adds `e` at a position:
    ///
    /// - `index` 0: the same as `addFirst`.
    /// - `index` negative or at least `count()`: the same as `addLast`.
    /// - Otherwise: inserts `e` at position `index`, does not count it and wakes no consumer. Callers rely on `count()`
    ///   including only elements added at the ends.
    void add(int index, ListContainable* e);

    /// Returns the first element, or null if the list is empty.
    ListContainable* getFirst() const;
    /// Returns the last element, or null if the list is empty.
    ListContainable* getLast() const;
    /// Returns the element at position `index`, counted from 0, or null if `index` is out of range. Elements that
    /// `count()` does not include have positions too.
    ListContainable* get(int index) const;
    /// Returns the position of the first element equal to `e`, or -1 if there is none or `e` is null.
    int indexOf(const ListContainable* e) const;
    /// Returns the number of elements added at the ends minus the number of elements removed. After `add` has inserted
    /// an element between others, this is not the number of elements and can be negative.
    int count() const;

    /// Removes and returns the first element, or returns null if the list is empty. If `wait` is true and the list is
    /// empty, first blocks, once, until an element is added or `wakeAll` is called, and then returns null if the list
    /// is still empty.
    ListContainable* removeFirst(bool wait);
    /// Removes and returns the last element, or returns null if the list is empty.
    ListContainable* removeLast();
    /// Removes and returns the element at `index`, or returns null if `index` is out of range.
    ListContainable* remove(int index);
    /// Removes the first element equal to `e`, if there is one.
    void remove(const ListContainable* e);
    /// Deletes the element at `index`, if there is one, and removes it. The element is still in the list while its
    /// destructor runs, and may remove itself there. An element that is in the list more than once must not be deleted
    /// this way.
    void removeAndDelete(int index);
    /// Deletes the first element equal to `e`, if there is one, as `removeAndDelete(int)` does. That element need not
    /// be `e` itself.
    void removeAndDelete(ListContainable* e);
    /// Removes all elements without deleting them.
    void removeAll();
    /// Deletes and removes all elements, starting with the first, as `removeAndDelete(int)` does.
    void removeAndDeleteAll();

    /// Wakes all consumers blocked in `removeFirst(true)`. Does not wake a consumer that is about to block: at
    /// shutdown, repeat the call until all consumers have ended.
    void wakeAll() const;

    /// Returns a new iterator, which the caller deletes in the same thread; writers wait until then. Returns null, with
    /// the list unlocked, if the allocation fails.
    ListIterator* iterator(SortOrder order) const;

    /// Returns the entry at `index`, or null if `index` is out of range. Does not lock the list: call it only while no
    /// other thread writes to the list, for example while an iterator exists.
    ListEntry* getEntry(int index) const;
    /// Returns the first entry with an element equal to `e`, or null if there is none or `e` is null. Does not lock the
    /// list, like `getEntry(int)`.
    ListEntry* getEntry(const ListContainable* e) const;
    /// Removes and destroys `entry`, an entry of this list, but not its element. Does nothing if `entry` is null. Does
    /// not lock the list: call it only while no other thread uses the list.
    void removeEntry(const ListEntry* entry) VXFW_THREADS(no_thread_safety_analysis);

private:
    friend class ListIterator;

    VXUT_HIDDEN bool isEmpty() const;
    VXUT_HIDDEN bool accepts(const ListContainable* e) const VXFW_THREADS(requires_shared_capability(m_lock));
    VXUT_HIDDEN void announce() VXFW_THREADS(requires_capability(m_lock));
    void waitForElement() VXFW_THREADS(locks_excluded(m_lock));
    VXUT_HIDDEN ListContainable* takeOut(const ListEntry* entry) VXFW_THREADS(requires_capability(m_lock));
    void deleteAndRemove(const ListEntry* entry) VXFW_THREADS(requires_capability(m_lock));

    // Written with the write lock held. A consumer reads it without the lock before it waits.
    std::atomic<ListEntry*> m_first;
    ListEntry* m_last VXFW_THREADS(guarded_by(m_lock));
    int m_count VXFW_THREADS(guarded_by(m_lock));
    bool m_allowDuplicates;
    mutable framework::thread::PosixRWLock m_lock;
    Waiter m_waiter;
};

} // namespace utility
