#include "ut_BufferStreamElement.h"

namespace utility {

BufferStreamElement::BufferStreamElement(int size, BufferStreamElement* next)
    : BufferStream(size), m_next(next), m_userValue(0), m_userWord1(0), m_userWord2(0) {}

BufferStreamElement::~BufferStreamElement() {
    m_userValue = 0;
}

bool BufferStreamElement::leadsTo(const BufferStreamElement* e) const {
    const BufferStreamElement* element = this;
    while (element != nullptr && element != e)
        element = element->m_next;
    return element != nullptr;
}

void BufferStreamElement::Append(BufferStreamElement* e) {
    // Appending an element of this chain would unlink the elements after it.
    if (e == nullptr || leadsTo(e))
        return;
    BufferStreamElement* last = this;
    while (last->m_next != nullptr)
        last = last->m_next;
    last->m_next = e;
    e->m_next = nullptr;
}

BufferStreamElement* BufferStreamElement::Insert(BufferStreamElement* e) {
    // Inserting an element of this chain would make the chain circular.
    if (e == nullptr || leadsTo(e))
        return this;
    e->m_next = this;
    return e;
}

BufferStreamElement* BufferStreamElement::Remove(BufferStreamElement* e) {
    if (e == nullptr)
        return this;
    if (e == this) {
        BufferStreamElement* next = m_next;
        m_next = nullptr;
        return next;
    }
    BufferStreamElement* before = this;
    while (before->m_next != nullptr && before->m_next != e)
        before = before->m_next;
    if (before->m_next == e) {
        before->m_next = e->m_next;
        e->m_next = nullptr;
    }
    return this;
}

} // namespace utility
