#pragma once

#include "ut_Export.h"

#include <cstdint>

#include <pthread.h>

#include "ut_BufferStreamElement.h"

namespace utility {

/// A pool of streams that threads share.
///
/// The list owns the elements in it. The list operations do not lock: callers hold the lock (`Lock`, `UnLock`) while
/// they use them, and call `Signal` after returning an element to the pool. A failed POSIX call is logged at level 0
/// with its error number. Nothing is thrown, except code 1238 by the constructor that creates elements. Debug switch
/// 300 traces waiting.
///
///     pool.Lock();
///     utility::BufferStreamElement* element = pool.Allocate();
///     while (element == nullptr && pool.Wait(5)) element = pool.Allocate();
///     pool.UnLock();
class VXUT_EXPORT VXFW_THREADS(capability("mutex")) BufferStreamList {
public:
    /// Creates an empty list.
    BufferStreamList();
    /// Creates a list of `count` elements with `size` bytes each, or an empty list if `count` is below 1. If an element
    /// cannot be allocated, the list has one element less. If the storage of an element cannot be allocated, deletes
    /// the elements created before and throws code 1238.
    BufferStreamList(int count, int size);
    BufferStreamList(const BufferStreamList&) = delete;
    BufferStreamList& operator=(const BufferStreamList&) = delete;
    /// Deletes the elements in the list. No thread may be waiting.
    ~BufferStreamList();

    /// Initializes the list, its mutex and its condition as the default constructor does. Does not delete the elements
    /// in the list: they are leaked unless the caller has pointers to them.
    void init() VXFW_THREADS(no_thread_safety_analysis);

    /// Returns the element after `e`, or null if there is none or `e` is null.
    BufferStreamElement* Next(BufferStreamElement* e) const {
        return e != nullptr ? e->Next() : nullptr;
    }
    /// Links `e` at the end of the list, which owns it from then on; does nothing if `e` is null. If the list is empty,
    /// `e` becomes its head and keeps the elements chained after it; otherwise they are unlinked. Callers rely on the
    /// difference to hand over a whole chain.
    void Append(BufferStreamElement* e);
    /// Links `e` at the head of the list, which owns it from then on; does nothing if `e` is null. If the list is
    /// empty, `e` keeps the elements chained after it; otherwise they are unlinked.
    void Insert(BufferStreamElement* e);
    /// Unlinks `e`, which the caller owns from then on; does nothing if `e` is null or not in the list.
    void Remove(BufferStreamElement* e);
    /// Returns the number of elements in the list.
    int Count() const;
    /// Unlinks and returns the head element, which the caller owns from then on, or returns null if the list is empty.
    /// Does not wait or lock.
    BufferStreamElement* Allocate();

    /// Locks the list's mutex, which is not recursive.
    void Lock() VXFW_THREADS(acquire_capability());
    /// Unlocks the list's mutex.
    void UnLock() VXFW_THREADS(release_capability());
    /// Waits until another thread calls `Signal` or `Broadcast`, for at most `seconds`, or without a limit if `seconds`
    /// is 0. The caller must hold the lock, which is released during the wait. Returns false on a time-out and true
    /// otherwise, including after a spurious wake-up or a failed wait. The deadline is rounded down to a whole second:
    /// callers see time-outs up to one second early.
    bool Wait(long seconds) VXFW_THREADS(requires_capability(this));
    /// Wakes one waiting thread.
    void Signal();
    /// Wakes every waiting thread.
    void Broadcast();

private:
    BufferStreamElement* m_head;
    pthread_mutex_t m_mutex;
    pthread_cond_t m_condition;
    int32_t m_waiters VXFW_THREADS(guarded_by(this));
};

} // namespace utility
