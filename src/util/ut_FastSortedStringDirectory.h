#pragma once

#include "ut_Export.h"

#include "ut_FirstByteIndex.h"
#include "ut_StringDirectory.h"

namespace utility {

/// Strings in ascending order of their bytes, found by binary search among the strings with the same first byte.
///
/// Contains at most 32,767 strings; duplicates are kept. Ownership, threads and failures are those of
/// `StringDirectory`. The index of an element changes when elements before it are added or deleted.
///
///     utility::FastSortedStringDirectory names(0);
///     names.Add("b");     // 0
///     names.Add("a");     // 0
///     names.Add("ab");    // 1
///     names.Find("b");    // 2
class VXUT_EXPORT FastSortedStringDirectory : public StringDirectory {
public:
    /// Creates an empty directory with space for `initialCapacity` strings, or for 20 if that is less than 1.
    explicit FastSortedStringDirectory(int initialCapacity);
    /// Frees the strings.
    ~FastSortedStringDirectory() override;

    /// Inserts a copy of `s` in order, after equal strings, and returns its index. Returns -1 if `s` is null, if the
    /// directory contains 32,767 strings, or if memory for the copy cannot be allocated.
    int Add(const char* s) override;
    /// Deletes the first element equal to `s`, if there is one.
    void Delete(const char* s) override;
    /// Returns the index of an element equal to `s`, or -1 if there is none.
    int Find(const char* s) override;

private:
    FirstByteIndex m_index;
};

} // namespace utility
