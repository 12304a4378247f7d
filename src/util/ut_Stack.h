#pragma once

#include "ut_Export.h"

#include <string>

/// A stack of names, each with an object.
///
/// The stack owns its nodes but not the names and objects, which must live as long as they are on the stack. Not
/// thread-safe. Does not throw.
///
///     std::string name = "volume";
///     Stack stack;
///     stack.push(&name, &volume);
///     stack.topObj();   // &volume
///     stack.pop();      // &name
///     stack.pop();      // null
class VXUT_EXPORT Stack {
public:
    /// A name, its object and a link to the node below.
    class StackNode {
    public:
        /// Creates a node on top of `next`, which may be null. The node owns neither the name, nor the object, nor
        /// `next`.
        StackNode(const std::string* name, const void* object, const StackNode* next);

        /// Returns the name, which may be null.
        const std::string* Name() const {
            return m_name;
        }
        /// Returns the object, which may be null.
        const void* Obj() const {
            return m_object;
        }
        /// Returns the node below, or null.
        const StackNode* Next() const {
            return m_next;
        }
        /// Sets the node below, which is not owned by this node.
        void Next(const StackNode* next) {
            m_next = next;
        }

    private:
        const std::string* m_name;
        const void* m_object;
        const StackNode* m_next;
    };

    /// Creates an empty stack.
    Stack();
    Stack(const Stack&) = delete;
    Stack& operator=(const Stack&) = delete;
    /// Deletes the nodes, but not the names and objects.
    ~Stack();

    /// Pushes a name and an object; either may be null. Returns false, with the stack unchanged, if memory allocation
    /// fails.
    bool push(const std::string* name, const void* object);
    /// Removes the top node and returns its name, or returns null if the stack is empty. A pointer to the node returned
    /// by `topNode` is then invalid.
    const std::string* pop();
    /// Returns the top name, which may be null, or null if the stack is empty.
    const std::string* top() const;
    /// Returns the top object, which may be null, or null if the stack is empty.
    const void* topObj() const;
    /// Returns the top node, or null if the stack is empty. The pointer is valid until the node is removed.
    /// `Next(node)` on it changes the stack: the stack then owns and deletes `node` and the nodes below it, and the
    /// caller owns the nodes that were below before.
    StackNode* topNode() const;

private:
    const StackNode* m_top;
};
