#pragma once

#include "ut_Export.h"
#include "ut_List.h"
#include "ut_SortOrder.h"

namespace utility {

class ListContainable;

/// A walk through a list, which stays as it is meanwhile.
///
/// It owns nothing and must not outlive its list. It holds the list's read lock all its life: other threads may read
/// the list, those that write wait. It is made, used and destroyed by one thread, which must not write to the list
/// meanwhile. It does not fail.
///
///     utility::ListIterator walk(list, utility::LAST_TO_FIRST);
///     while (utility::ListContainable* element = walk.next())
///         show(*element);
class VXUT_EXPORT ListIterator {
public:
    /// Waits until nobody writes to `list`, and starts at its first element, or at its last for every order but 0.
    ListIterator(const List& list, SortOrder order);
    ListIterator(const ListIterator&) = delete;
    ListIterator& operator=(const ListIterator&) = delete;
    /// Lets writers go on.
    ~ListIterator();

    /// The next element, which stays the caller's; null when the walk is over, however often it is asked.
    ListContainable* next();

private:
    const List& m_list;
    SortOrder m_order;
    const List::ListEntry* m_current;
};

} // namespace utility
