#pragma once

#include "ut_Array.h"
#include "ut_Export.h"

namespace framework {
class Item;
}

namespace utility {

/// A growable array of pointers to items.
///
/// The array owns its block and never an item: items must outlive their time in the array, and null is an element like
/// any other. One thread at a time. An index outside the array throws code 1229, no memory code 1230; either leaves the
/// array as it was.
///
///     framework::Item volume;
///     utility::ItemArray items(4);
///     items.Append(&volume);
///     items.Find(&volume);   // 0
class VXUT_EXPORT ItemArray : public Array {
public:
    /// An empty array with room for `capacity` elements, for 20 when `capacity` is 0.
    explicit ItemArray(unsigned int capacity);
    /// The same items, with the capacity of `other`.
    ItemArray(const ItemArray& other);
    ItemArray& operator=(const ItemArray&) = delete;
    ~ItemArray() override;

    /// Adds `item` at the end.
    void Append(framework::Item* item);
    /// Puts `item` before the element at `index`, or at the end when `index` is the length. A greater `index` throws
    /// code 1229.
    void InsertAt(unsigned int index, framework::Item* item);
    /// Replaces the element at `index`. From the length on, throws code 1229.
    void SetAt(unsigned int index, framework::Item* item);
    /// Takes out the element at `index`; those behind it move up. From the length on, throws code 1229.
    void DeleteAt(unsigned int index);
    /// The element at `index`, valid until the array next grows. From the length on, throws code 1229.
    framework::Item*& operator[](unsigned int index);
    framework::Item* const& operator[](unsigned int index) const;

    /// Adds the items of `other` at the end, in order. An array given to itself doubles.
    void Append(ItemArray& other);
    /// The index of the first element that is `item`, or 0xFFFFFFFF.
    unsigned int Find(framework::Item* item) const;

private:
    framework::Item** slots() const {
        return static_cast<framework::Item**>(m_block);
    }
    void growWhenFull();
};

} // namespace utility
