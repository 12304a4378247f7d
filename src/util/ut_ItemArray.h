#pragma once

#include "ut_Export.h"

#include "ut_Array.h"

namespace framework {
class Item;
}

namespace utility {

/// A growable array of pointers to items.
///
/// The array owns its block but not the items, which must live as long as they are in the array. Null elements are
/// allowed. Not thread-safe. An index out of range throws code 1229, a failed allocation code 1230; either leaves the
/// array unchanged.
///
///     framework::Item volume;
///     utility::ItemArray items(4);
///     items.Append(&volume);
///     items.Find(&volume);   // 0
class VXUT_EXPORT ItemArray : public Array {
public:
    /// Creates an empty array with space for `capacity` elements, or for 20 if `capacity` is 0.
    /// Throws code 1230 if the allocation fails.
    explicit ItemArray(unsigned int capacity);
    /// Copies the pointers and the capacity of `other`, not the items. Throws code 1230 if the allocation fails.
    ItemArray(const ItemArray& other);
    ItemArray& operator=(const ItemArray&) = delete;
    ~ItemArray() override;

    /// Adds `item` at the end.
    void Append(framework::Item* item);
    /// Inserts `item` before the element at `index`, or at the end if `index == length()`.
    /// Throws code 1229 if `index > length()`.
    void InsertAt(unsigned int index, framework::Item* item);
    /// Replaces the element at `index`. Throws code 1229 if `index >= length()`.
    void SetAt(unsigned int index, framework::Item* item) {
        if (index >= m_length)
            failIndex("void utility::ItemArray::SetAt(unsigned int, framework::Item*)");
        slots()[index] = item;
    }
    /// Removes the element at `index`; the elements after it move down by one. Throws code 1229 if `index >= length()`.
    void DeleteAt(unsigned int index);
    /// Returns a reference to the element at `index`, valid until the array grows or is destroyed. Throws code 1229 if
    /// `index >= length()`.
    framework::Item*& operator[](unsigned int index) {
        if (index >= m_length)
            failIndex("framework::Item*& utility::ItemArray::operator[](unsigned int)");
        return slots()[index];
    }
    /// Does the same for a const array.
    framework::Item* const& operator[](unsigned int index) const {
        if (index >= m_length)
            failIndex("framework::Item* const& utility::ItemArray::operator[](unsigned int) const");
        return slots()[index];
    }

    /// Adds the items of `other` at the end, in order; appending an array to itself doubles it.
    void Append(ItemArray& other);
    /// Returns the index of the first element equal to the pointer `item`, or 0xFFFFFFFF if there is none.
    unsigned int Find(framework::Item* item) const;

private:
    /// Throws code 1229 for `function`, the signature text of an operation.
    [[noreturn]] static void failIndex(const char* function);

    framework::Item** slots() const {
        return static_cast<framework::Item**>(m_block);
    }
};

} // namespace utility
