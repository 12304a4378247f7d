#pragma once

#include "ut_Export.h"

#include "ut_List.h"
#include "ut_SortOrder.h"

namespace utility {

class ListContainable;

/// Iterates over a list, which is read-locked for the iterator's lifetime.
///
/// The iterator must not outlive its list. While it exists, other threads can read the list; threads that write to it
/// wait. Create, use and destroy an iterator in one thread, which must not write to the list during that time. Does not
/// throw.
///
///     utility::ListIterator walk(list, utility::LAST_TO_FIRST);
///     while (utility::ListContainable* element = walk.next())
///         show(*element);
class VXUT_EXPORT ListIterator {
public:
    /// Waits until no thread writes to `list`, then read-locks it. Starts at the first element if `order` is 0,
    /// otherwise at the last.
    ListIterator(const List& list, SortOrder order);
    ListIterator(const ListIterator&) = delete;
    ListIterator& operator=(const ListIterator&) = delete;
    /// Releases the read lock.
    ~ListIterator();

    /// Returns the next element, which the iterator does not own, or null at the end and on every later call.
    ListContainable* next();

private:
    const List& m_list;
    SortOrder m_order;
    const List::ListEntry* m_current;
};

} // namespace utility
