#pragma once

#include "ut_Export.h"
#include "ut_FirstByteIndex.h"
#include "ut_StringDirectory.h"

namespace utility {

/// Strings in ascending order of their bytes, found by halving the range of their first byte.
///
/// Holds at most 32,767 strings; duplicates are kept. Ownership, threads and failures are those of `StringDirectory`.
/// The index of an element changes when others are added or deleted before it.
///
///     utility::FastSortedStringDirectory names(0);
///     names.Add("b");     // 0
///     names.Add("a");     // 0
///     names.Add("ab");    // 1
///     names.Find("b");    // 2
class VXUT_EXPORT FastSortedStringDirectory : public StringDirectory {
public:
    /// An empty directory with room for `initialCapacity` strings, for 20 when that is below 1.
    explicit FastSortedStringDirectory(int initialCapacity);
    ~FastSortedStringDirectory() override;

    /// Inserts a copy of `s` behind its equals and returns its index; -1 for null, when 32,767 strings are held, and
    /// when no memory is left for the copy.
    int Add(const char* s) override;
    /// Deletes the first element equal to `s`, if there is one.
    void Delete(const char* s) override;
    /// The index of an element equal to `s`, or -1.
    int Find(const char* s) override;

private:
    FirstByteIndex m_index;
};

} // namespace utility
