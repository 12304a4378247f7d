#include "ut_Stack.h"

#include <new>

Stack::StackNode::StackNode(const std::string* name, const void* object, const StackNode* next)
    : m_name(name), m_object(object), m_next(next) {}

Stack::Stack() : m_top(nullptr) {}

Stack::~Stack() {
    while (m_top != nullptr)
        pop();
}

bool Stack::push(const std::string* name, const void* object) {
    const StackNode* const node = new (std::nothrow) StackNode(name, object, m_top);
    if (node == nullptr)
        return false;
    m_top = node;
    return true;
}

const std::string* Stack::pop() {
    if (m_top == nullptr)
        return nullptr;
    const StackNode* const node = m_top;
    const std::string* const name = node->Name();
    m_top = node->Next();
    delete node;
    return name;
}

const std::string* Stack::top() const {
    return m_top != nullptr ? m_top->Name() : nullptr;
}

const void* Stack::topObj() const {
    return m_top != nullptr ? m_top->Obj() : nullptr;
}

Stack::StackNode* Stack::topNode() const {
    // Safe: `push` creates every node as non-const; only the links are const.
    return const_cast<StackNode*>(m_top);
}
