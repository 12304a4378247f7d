#pragma once

#include "ut_Export.h"

#include "ut_StringArray.h"

namespace utility {

class BufferStream;

/// A list of strings, in the order added: the base class of the directories that search by name.
///
/// The directory owns a copy of every string. Not thread-safe. A search that fails returns -1 or null. If the table
/// cannot grow, code 1230 of "ut_Array" is thrown and the directory is unchanged.
///
///     utility::StringDirectory names(0);
///     names.Add("volume");    // 0
///     names.Add("port");      // 1
///     names.ElementAt(1);     // "port"
class VXUT_EXPORT StringDirectory {
public:
    /// Creates an empty directory with space for `initialCapacity` strings, or for 20 if that is less than 1.
    explicit StringDirectory(int initialCapacity);
    StringDirectory(const StringDirectory&) = delete;
    StringDirectory& operator=(const StringDirectory&) = delete;
    /// Frees the strings.
    virtual ~StringDirectory();

    /// Adds a copy of `s` at the end and returns its index. Returns -1 if `s` is null or memory for the copy cannot be
    /// allocated.
    virtual int Add(const char* s);
    /// Deletes the element at `Find(s)`, if there is one.
    virtual void Delete(const char* s);
    /// Returns the element at `Find(s)`, or null if there is none. The directory keeps ownership.
    virtual const char* Lookup(const char* s);
    /// Returns the index of the first element that differs from `s`, or -1 if there is none or `s` is null. Callers
    /// rely on `Find`, `Lookup` and `Delete` of this class finding the first element that is not the key.
    virtual int Find(const char* s);
    /// Returns the number of elements.
    virtual int NumElements();
    /// Returns the element at index `i`, or null if `i` is out of range. The directory keeps ownership.
    virtual const char* ElementAt(int i);

    /// Rewinds `out` and writes each element followed by a newline, "-null-" for a null element. If the text does not
    /// fit, throws code 1239, or truncates it if the no-throw flag of `out` is set.
    void ToBuffer(BufferStream& out);

protected:
    /// The elements: copies of the strings, by index.
    StringArray m_strings;
};

} // namespace utility
