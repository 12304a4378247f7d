#pragma once

#include "ut_Export.h"

namespace utility {

/// What an object implements so that a `List` can hold it.
///
/// It holds nothing; who owns an element is up to the list's user. Lists ask it from whichever thread works on them,
/// under their own lock. It does not fail.
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
    virtual ~ListContainable();

    /// Whether a list is to treat `other` as this same element. Lists ask the element they are given, with each element
    /// that they hold in turn; `other` is never null then.
    virtual bool equals(const ListContainable* other) const = 0;
};

} // namespace utility
