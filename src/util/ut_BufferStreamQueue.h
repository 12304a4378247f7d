#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_BufferStreamElement.h"
#include "ut_Waiter.h"

namespace utility {

/// A first-in-first-out queue of streams between threads.
///
/// The queue owns the elements in it. Its operations do not lock: callers hold `m_waiter` while they use them, and
/// signal it after queueing an element. No operation fails.
///
///     const utility::LockScope scope(queue.m_waiter);
///     queue.enQueue(element);
///     queue.m_waiter.signal();
class VXUT_EXPORT BufferStreamQueue {
    BufferStreamElement* m_head;
    BufferStreamElement* m_tail;
    int32_t m_count;

public:
    /// The lock and condition with which callers synchronize; the queue itself does not use it.
    Waiter m_waiter;

    /// Creates an empty queue.
    BufferStreamQueue();
    BufferStreamQueue(const BufferStreamQueue&) = delete;
    BufferStreamQueue& operator=(const BufferStreamQueue&) = delete;
    /// Deletes the elements in the queue.
    ~BufferStreamQueue();

    /// Adds `e` at the end; the queue owns it from then on. `e` must not be in another chain. Does nothing if `e` is
    /// null or already in the queue.
    void enQueue(BufferStreamElement* e);
    /// Removes and returns the first element, which the caller owns from then on, or returns null if the queue is
    /// empty.
    BufferStreamElement* deQueue();
    /// Adds `e` at the front, so that `deQueue` returns it next; the queue owns it from then on. `e` must not be in
    /// another chain. Does nothing if `e` is null or already in the queue.
    void reQueue(BufferStreamElement* e);
    /// Returns the number of elements in the queue.
    int Count() const {
        return m_count;
    }

private:
    VXUT_HIDDEN bool holds(const BufferStreamElement* e) const;
};

} // namespace utility
