#pragma once

#include "ut_Export.h"

#include <string>

/// A stack of names, each with an object.
///
/// The stack owns its nodes, never the names and objects, which must outlive their place in it. One thread at a time.
/// Nothing is thrown.
///
///     std::string name = "volume";
///     Stack stack;
///     stack.push(&name, &volume);
///     stack.topObj();   // &volume
///     stack.pop();      // &name
///     stack.pop();      // null
class VXUT_EXPORT Stack {
public:
    /// A name, its object, and the node beneath.
    class StackNode {
    public:
        StackNode(const std::string* name, const void* object, const StackNode* next);

        const std::string* Name() const {
            return m_name;
        }
        const void* Obj() const {
            return m_object;
        }
        /// The node beneath, or null.
        const StackNode* Next() const {
            return m_next;
        }
        /// Sets the node beneath; it is kept, not owned.
        void Next(const StackNode* next) {
            m_next = next;
        }

    private:
        const std::string* m_name;
        const void* m_object;
        const StackNode* m_next;
    };

    /// An empty stack.
    Stack();
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;
    ~Stack();

    /// Puts a name and an object on top; either may be null. False, with the stack unchanged, when no memory is left.
    bool push(const std::string* name, const void* object);
    /// Takes the top off and returns its name; null when the stack is empty. The node is gone then: a pointer that
    /// `topNode` gave ends here.
    const std::string* pop();
    /// The name on top; the stack should not be empty: then it is null.
    const std::string* top() const;
    /// The object on top; the stack should not be empty: then it is null.
    const void* topObj() const;
    /// The node on top, or null. Valid until it is taken off. `Next(node)` on it changes the stack: `node` and those
    /// beneath it then belong to the stack, which deletes them, and those that were beneath before to the caller.
    StackNode* topNode() const;

private:
    const StackNode* m_top;
};
