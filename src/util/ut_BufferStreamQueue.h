#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_BufferStreamElement.h"
#include "ut_Waiter.h"

namespace utility {

/// A first-in-first-out queue of streams between threads.
///
/// The queue owns the elements that are in it. Its operations take no lock: users hold `m_waiter` around them, and
/// signal it after they queued an element. Nothing fails.
///
///     queue.m_waiter.lock();
///     queue.enQueue(element);
///     queue.m_waiter.signal();
///     queue.m_waiter.unlock();
class VXUT_EXPORT BufferStreamQueue {
    BufferStreamElement* m_head;
    BufferStreamElement* m_tail;
    int32_t m_count;

public:
    /// For the users' locking and signalling; the queue itself never touches it.
    Waiter m_waiter;

    BufferStreamQueue();
    BufferStreamQueue(const BufferStreamQueue&) = delete;
    BufferStreamQueue& operator=(const BufferStreamQueue&) = delete;
    /// Deletes the elements in the queue.
    ~BufferStreamQueue();

    /// Puts `e`, which is in no chain, at the end and owns it from now on; null, and an element that is in the queue
    /// already, do nothing.
    void enQueue(BufferStreamElement* e);
    /// Takes the first element, which the caller then owns; null when the queue is empty.
    BufferStreamElement* deQueue();
    /// Puts `e`, which is in no chain, back at the front, to be served next, and owns it from now on; null, and an
    /// element that is in the queue already, do nothing.
    void reQueue(BufferStreamElement* e);
    /// How many elements are in the queue.
    int Count() const {
        return m_count;
    }

private:
    bool holds(const BufferStreamElement* e) const;
};

} // namespace utility
