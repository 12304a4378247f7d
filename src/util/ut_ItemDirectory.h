#pragma once

#include "ut_Export.h"

#include "fw_StringToken.h"
#include "ut_FirstByteIndex.h"
#include "ut_ItemArray.h"
#include "ut_UShortArray.h"

namespace framework {
class Item;
}

namespace utility {

/// Items by name, found by binary search among the items with names that have the same first byte.
///
/// - The name of an item is the result of its `getNameString`; null counts as the empty name. It must not change while
///   the item is in the directory.
/// - The directory does not own the items; only `deleteAll` deletes them. It contains at most 32,767 items.
///
/// Not thread-safe. A search that fails returns -1 or null. If a table cannot grow, code 1230 is thrown from "ut_Array"
/// and the directory is unchanged.
///
///     utility::ItemDirectory items(0);
///     framework::Item volume;                   // its name is the text "Entity"
///     items.add(&volume);                       // 0
///     items.get(volume.getName()) == &volume;   // true
class VXUT_EXPORT ItemDirectory {
public:
    /// Creates an empty directory with space for `initialCapacity` items, or for 20 if that is 0.
    explicit ItemDirectory(unsigned int initialCapacity);
    ItemDirectory(const ItemDirectory&) = delete;
    ItemDirectory& operator=(const ItemDirectory&) = delete;
    /// Does not delete the items.
    virtual ~ItemDirectory();

    /// Adds `item`, which must live as long as it is in the directory, and returns its position. Returns -1 if `item`
    /// is null or the directory contains 32,767 items.
    virtual int add(framework::Item* item);
    /// Removes the first item named `nameToken`, if there is one, without deleting it. The positions of the items added
    /// after it decrease by one.
    virtual void remove(stringtoken nameToken);
    /// Replaces the item named `nameToken` by `item`, without deleting the replaced one. Does nothing if `item` is null
    /// or no item has that name. The order is not updated, so `item` must have the same name.
    virtual void replace(stringtoken nameToken, framework::Item* item);
    /// Returns the position of an item named `nameToken`, or -1 if there is none. A token without a text counts as the
    /// empty name.
    virtual int find(stringtoken nameToken) const;
    /// Returns the item named `nameToken`, or null if there is none.
    virtual framework::Item* get(stringtoken nameToken) const;
    /// Returns the number of items.
    virtual unsigned int length() const;
    /// Returns the item at index `i` in the order of names, or null if `i >= length()`. Items with the same name are in
    /// the order added.
    virtual framework::Item* getSorted(unsigned int i) const;

    /// Removes all items without deleting them.
    void removeAll();
    /// Removes all items and deletes each of them once.
    void deleteAll();

private:
    struct SortedNames;

    VXUT_HIDDEN void clearRepeatedItems();

    ItemArray m_items;
    UShortArray m_sorted;
    FirstByteIndex m_index;
};

} // namespace utility
