#include "ut_BufferStreamElement.h"

namespace utility {

// An element counts the links to it, so that a search for it in a chain can end at once if there are none. The count is
// never too low. It is too high if the element of a link was destroyed or linked elsewhere; the search then walks.

BufferStreamElement::BufferStreamElement(int size, BufferStreamElement* next)
    : BufferStream(size), m_next(nullptr), m_userValue(0), m_userWord1(0), m_userWord2(0) {
    if (next != nullptr)
        linkTo(next);
}

BufferStreamElement::~BufferStreamElement() {
    m_userValue = 0;
}

void BufferStreamElement::linkTo(BufferStreamElement* e) {
    m_next = e;
    if (e->m_links < 2)
        ++e->m_links;
}

void BufferStreamElement::linkRemoved() {
    if (m_links == 1)
        m_links = 0;
}

BufferStreamElement* BufferStreamElement::takeFirst() {
    BufferStreamElement* const next = m_next;
    m_next = nullptr;
    if (next != nullptr)
        next->linkRemoved();
    return next;
}

bool BufferStreamElement::leadsTo(const BufferStreamElement* e) const {
    if (e->m_links == 0)
        return e == this;
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
    last->linkTo(e);
    e->m_next = nullptr;
}

BufferStreamElement* BufferStreamElement::Insert(BufferStreamElement* e) {
    // Inserting an element of this chain would make the chain circular.
    if (e == nullptr || leadsTo(e))
        return this;
    e->linkTo(this);
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
        e->linkRemoved();
    }
    return this;
}

} // namespace utility
