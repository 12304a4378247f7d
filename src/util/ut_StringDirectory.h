#pragma once

#include "ut_Export.h"
#include "ut_StringArray.h"

namespace utility {

class BufferStream;

/// A list of strings, in the order added: the plain base of the directories that search by name.
///
/// The directory owns a copy of every string. One thread at a time. Misses are -1 or null; only a table that cannot
/// grow throws, code 1230 of "ut_Array", and leaves the directory as it was.
///
///     utility::StringDirectory names(0);
///     names.Add("volume");    // 0
///     names.Add("port");      // 1
///     names.ElementAt(1);     // "port"
class VXUT_EXPORT StringDirectory {
public:
    /// An empty directory with room for `initialCapacity` strings, for 20 when that is below 1.
    explicit StringDirectory(int initialCapacity);
    StringDirectory(const StringDirectory&) = delete;
    StringDirectory& operator=(const StringDirectory&) = delete;
    virtual ~StringDirectory();

    /// Appends a copy of `s` and returns its index; -1 for null, and when no memory is left for the copy.
    virtual int Add(const char* s);
    /// Deletes the element at `Find(s)`, if there is one.
    virtual void Delete(const char* s);
    /// The element at `Find(s)`, or null. The directory keeps it.
    virtual const char* Lookup(const char* s);
    /// The index of the first element that differs from `s`, or -1: in this base, callers see `Find`, `Lookup` and
    /// `Delete` address the first element that is not the key.
    virtual int Find(const char* s);
    /// How many elements there are.
    virtual int NumElements();
    /// The element at index `i`, or null out of range. The directory keeps it.
    virtual const char* ElementAt(int i);

    /// Rewinds `out` and writes each element, "-null-" for a null one, with a line feed behind it. What does not fit
    /// throws code 1239, or is cut when `out` has the no-throw flag.
    void ToBuffer(BufferStream& out);

protected:
    StringArray m_strings;
};

} // namespace utility
