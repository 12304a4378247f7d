#pragma once

#include "ut_Export.h"
#include "ut_FirstByteIndex.h"
#include "ut_ShortArray.h"
#include "ut_StringDirectory.h"

namespace utility {

/// Strings that stay in the slot where they were added, found by halving the range of their first byte.
///
/// A slot number is a stable handle: it stays the string's until the string is deleted, and then goes to the next
/// string added. Slot numbers have 16 bits: a directory of 32,767 strings is full, and `Add` returns -1 until one is
/// deleted. Duplicates are kept. Ownership, threads and failures are those of
/// `StringDirectory`, whose `NumElements` counts free slots too.
///
///     utility::FastStringDirectory names(0);
///     names.Add("a");         // slot 0
///     names.Add("b");         // slot 1
///     names.Delete("a");
///     names.ElementAt(0);     // null
///     names.Add("c");         // slot 0
class VXUT_EXPORT FastStringDirectory : public StringDirectory {
public:
    /// An empty directory with room for `initialCapacity` strings, for 20 when that is below 1.
    explicit FastStringDirectory(int initialCapacity);
    ~FastStringDirectory() override;

    /// Puts a copy of `s` in the slot freed last, or in a new one, and returns the slot number; -1 for null, when
    /// 32,767 slots are taken, and when no memory is left for the copy.
    int Add(const char* s) override;
    /// Deletes the element equal to `s` that was added first, if there is one, and frees its slot.
    void Delete(const char* s) override;
    /// The slot of an element equal to `s`, or -1.
    int Find(const char* s) override;
    /// The string in slot `slot`, or null for a free slot and out of range. The directory keeps it.
    const char* ElementAt(int slot) override;

private:
    struct SortedStrings;

    bool isFreeSlot(const char* value) const;
    int takeSlot(const char* s);
    void freeSlot(int slot);

    ShortArray m_sorted;
    int m_firstFree;
    FirstByteIndex m_index;
};

} // namespace utility
