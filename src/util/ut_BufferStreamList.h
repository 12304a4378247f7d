#pragma once

#include "ut_Export.h"

#include <pthread.h>

#include <cstdint>

#include "ut_BufferStreamElement.h"

namespace utility {

/// A pool of streams that threads share.
///
/// The list owns the elements that are in it. The operations take no lock: users bracket them with `Lock` and `UnLock`,
/// and `Signal` after they gave an element back. A failing POSIX call is logged at level 0 with its error number;
/// nothing is thrown, except code 1238 by the constructor that makes elements. Debug switch 300 traces waiting.
///
///     pool.Lock();
///     utility::BufferStreamElement* element = pool.Allocate();
///     while (element == nullptr && pool.Wait(5)) element = pool.Allocate();
///     pool.UnLock();
class VXUT_EXPORT BufferStreamList {
public:
    /// An empty list.
    BufferStreamList();
    /// A list of `count` elements with `size` bytes each; a count below 1 is 0. An element that cannot be had is
    /// missing; one without storage is code 1238, and those made before are deleted.
    BufferStreamList(int count, int size);
    BufferStreamList(const BufferStreamList&) = delete;
    BufferStreamList& operator=(const BufferStreamList&) = delete;
    /// Deletes the elements in the list. No thread may be waiting.
    ~BufferStreamList();

    /// Makes the list as its constructor leaves it; elements in it are forgotten, not deleted.
    void init();

    /// The element behind `e`, or null, also for a null `e`.
    BufferStreamElement* Next(BufferStreamElement* e) const {
        return e != nullptr ? e->Next() : nullptr;
    }
    /// Puts `e` at the end. In an empty list it becomes the head together with what is chained behind it; otherwise
    /// that is cut off. Callers rely on the difference to hand over a whole chain.
    void Append(BufferStreamElement* e);
    /// Puts `e` at the head, in an empty list together with what is chained behind it; otherwise that is cut off. Null
    /// does nothing.
    void Insert(BufferStreamElement* e);
    /// Takes `e` out, which the caller then owns; one that is not in the list changes nothing.
    void Remove(BufferStreamElement* e);
    /// How many elements are in the list.
    int Count() const;
    /// Takes the head element, which the caller then owns; null when the list is empty. Never waits and never locks.
    BufferStreamElement* Allocate();

    /// Takes and gives back the lock, which a thread cannot take twice.
    void Lock();
    void UnLock();
    /// Waits to be woken; the caller holds the lock. 0 seconds waits without limit. The time-out falls on a whole
    /// second: callers see it up to one second early. True when woken, also by an error; false on a time-out.
    bool Wait(long seconds);
    /// Wakes one waiting thread.
    void Signal();
    /// Wakes every waiting thread.
    void Broadcast();

private:
    BufferStreamElement* m_head;
    pthread_mutex_t m_mutex;
    pthread_cond_t m_condition;
    int32_t m_waiters;
};

} // namespace utility
