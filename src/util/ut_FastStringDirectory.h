#pragma once

#include "ut_Export.h"

#include "ut_FirstByteIndex.h"
#include "ut_ShortArray.h"
#include "ut_StringDirectory.h"

namespace utility {

/// Strings with stable slot numbers, found by binary search among the strings with the same first byte.
///
/// A slot number is a stable handle of its string until the string is deleted; the next string added reuses the slot.
/// Slot numbers have 16 bits: a directory of 32,767 strings is full, and `Add` returns -1 until one is deleted.
/// Duplicates are kept. Ownership, threads and failures are those of `StringDirectory`. The inherited `NumElements`
/// counts free slots too.
///
///     utility::FastStringDirectory names(0);
///     names.Add("a");         // slot 0
///     names.Add("b");         // slot 1
///     names.Delete("a");
///     names.ElementAt(0);     // null
///     names.Add("c");         // slot 0
class VXUT_EXPORT FastStringDirectory : public StringDirectory {
public:
    /// Creates an empty directory with space for `initialCapacity` strings, or for 20 if that is less than 1.
    explicit FastStringDirectory(int initialCapacity);
    /// Frees the strings.
    ~FastStringDirectory() override;

    /// Stores a copy of `s` in the slot freed last, or in a new slot if none is free, and returns the slot number.
    /// Returns -1 if `s` is null, if 32,767 slots are in use, or if memory for the copy cannot be allocated.
    int Add(const char* s) override;
    /// Deletes the element equal to `s` that was added first, if there is one, and frees its slot.
    void Delete(const char* s) override;
    /// Returns the slot of an element equal to `s`, or -1 if there is none.
    int Find(const char* s) override;
    /// Returns the string in `slot`, or null if the slot is free or out of range. The directory keeps ownership.
    const char* ElementAt(int slot) override;

private:
    struct SortedStrings;

    VXUT_HIDDEN bool isFreeSlot(const char* value) const;
    int takeSlot(const char* s);
    VXUT_HIDDEN void freeSlot(int slot);

    ShortArray m_sorted;
    int m_firstFree;
    FirstByteIndex m_index;
};

} // namespace utility
