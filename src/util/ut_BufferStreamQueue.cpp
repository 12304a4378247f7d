#include "ut_BufferStreamQueue.h"

namespace utility {

BufferStreamQueue::BufferStreamQueue() : m_head(nullptr), m_tail(nullptr), m_count(0) {}

BufferStreamQueue::~BufferStreamQueue() {
    while (BufferStreamElement* element = deQueue())
        delete element;
}

void BufferStreamQueue::enQueue(BufferStreamElement* e) {
    // An element queued twice in a row would lead to itself.
    if (e == nullptr || e == m_tail)
        return;
    e->m_next = nullptr;
    if (m_tail != nullptr) {
        m_tail->m_next = e;
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
    m_head = element->m_next;
    element->m_next = nullptr;
    if (m_head == nullptr)
        m_tail = nullptr;
    --m_count;
    return element;
}

void BufferStreamQueue::reQueue(BufferStreamElement* e) {
    if (e == nullptr || e == m_head)
        return;
    e->m_next = m_head;
    if (m_head == nullptr)
        m_tail = e;
    m_head = e;
    ++m_count;
}

} // namespace utility
