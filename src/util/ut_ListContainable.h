#pragma once

#include "ut_Export.h"

namespace utility {

/// Interface of the elements of a `List`.
///
/// The user of the list decides who owns an element. A list calls `equals` in the thread that called the list, with the
/// list locked. `equals` must not throw.
///
///     struct Port : public utility::ListContainable {
///         explicit Port(int assigned) : number(assigned) {}
///         bool equals(const utility::ListContainable* other) const override {
///             return number == static_cast<const Port*>(other)->number;
///         }
///         int number;
///     };
class VXUT_EXPORT ListContainable {
public:
    /// Allows a list to delete its elements.
    virtual ~ListContainable();

    /// Returns true if a list is to treat `other` as the same element. A list calls this on the element passed to it,
    /// with each stored element as `other`, which is never null.
    virtual bool equals(const ListContainable* other) const = 0;
};

} // namespace utility
