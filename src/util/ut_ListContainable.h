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

    /// Returns whether a list is to treat `other` as the same element. Lists call this on the element passed to them,
    /// once for each stored element as `other`; `other` is never null.
    virtual bool equals(const ListContainable* other) const = 0;
};

} // namespace utility
