#pragma once

#include "fw_StringToken.h"
#include "ut_Export.h"
#include "ut_FirstByteIndex.h"
#include "ut_ItemArray.h"
#include "ut_UShortArray.h"

namespace framework {
class Item;
}

namespace utility {

/// Items by name, found by halving the range of the name's first byte.
///
/// The name of an item is its `getNameString`, a null one counting as the empty text; it must not change while the item
/// is held. The directory keeps the items' pointers and owns none; only `deleteAll` deletes them. Holds at most 32,767
/// items. One thread at a time. Misses are -1 or null; only a table that cannot grow throws, code 1230 of "ut_Array",
/// and leaves the directory as it was.
///
///     utility::ItemDirectory items(0);
///     framework::Item volume;                   // its name is the text "Entity"
///     items.add(&volume);                       // 0
///     items.get(volume.getName()) == &volume;   // true
class VXUT_EXPORT ItemDirectory {
public:
    /// An empty directory with room for `initialCapacity` items, for 20 when that is 0.
    explicit ItemDirectory(unsigned int initialCapacity);
    ItemDirectory(const ItemDirectory&) = delete;
    ItemDirectory& operator=(const ItemDirectory&) = delete;
    virtual ~ItemDirectory();

    /// Adds `item` and returns its position; -1 for null, and when 32,767 items are held. It must stay alive while it
    /// is held.
    virtual int add(framework::Item* item);
    /// Takes out the first item named `nameToken`, if there is one, without deleting it. The positions of those added
    /// after it go down by one.
    virtual void remove(stringtoken nameToken);
    /// Puts `item` in the place of the item named `nameToken`, which is not deleted. A null item, or a name that is not
    /// held, does nothing. Nothing is sorted anew: callers give an item of the same name.
    virtual void replace(stringtoken nameToken, framework::Item* item);
    /// The position of an item named `nameToken`, or -1. A token without a text stands for the empty name.
    virtual int find(stringtoken nameToken) const;
    /// The item named `nameToken`, or null.
    virtual framework::Item* get(stringtoken nameToken) const;
    /// How many items are held.
    virtual unsigned int length() const;
    /// The item at `i` in the order of names, those of one name in the order added; null from the length on.
    virtual framework::Item* getSorted(unsigned int i) const;

    /// Takes every item out without deleting it.
    void removeAll();
    /// Deletes every item, each once, and takes it out.
    void deleteAll();

private:
    struct SortedNames;

    void forgetRepeatedItems();

    ItemArray m_items;
    UShortArray m_sorted;
    FirstByteIndex m_index;
};

} // namespace utility
