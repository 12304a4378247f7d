#include "ut_BufferStreamQueue.h"

namespace utility {

BufferStreamQueue::BufferStreamQueue() : m_head(nullptr), m_tail(nullptr), m_count(0) {}

// Every queued element except the last has a successor, so an element without one needs no search.
bool BufferStreamQueue::holds(const BufferStreamElement* e) const {
    return e == m_tail || (e->m_next != nullptr && m_head != nullptr && m_head->leadsTo(e));
}

BufferStreamQueue::~BufferStreamQueue() {
    while (BufferStreamElement* element = deQueue())
        delete element;
}

void BufferStreamQueue::enQueue(BufferStreamElement* e) {
    // Clearing the link of a queued element would lose the elements after it.
    if (e == nullptr || holds(e))
        return;
    e->m_next = nullptr;
    if (m_tail != nullptr) {
        m_tail->linkTo(e);
    } else {
        m_head = e;
    }
    m_tail = e;
    ++m_count;
}

BufferStreamElement* BufferStreamQueue::deQueue() {
    BufferStreamElement* element = m_head;
    if (element == nullptr)
        return nullptr;
    m_head = element->takeFirst();
    if (m_head == nullptr)
        m_tail = nullptr;
    --m_count;
    return element;
}

void BufferStreamQueue::reQueue(BufferStreamElement* e) {
    // Inserting a queued element again would make the queue circular.
    if (e == nullptr || holds(e))
        return;
    e->m_next = nullptr;
    if (m_head != nullptr) {
        e->linkTo(m_head);
    } else {
        m_tail = e;
    }
    m_head = e;
    ++m_count;
}

} // namespace utility
