#pragma once

#include "ut_Export.h"

#include <dirent.h>

#include "ut_Path.h"

namespace utility {

/// A path that iterates over the entries of its directory that match a shell wildcard pattern (`fnmatch`).
///
/// Each match sets the file part of the path. Entries are visited in the order of `readdir` and include "." and "..".
/// Not thread-safe. As in `Path`, only `std::bad_alloc` is thrown. An iteration returns null at the end of the
/// directory, and if the directory cannot be opened or read; only the first such failure of an iterator sets the
/// entity's error state (`inError`). Debug switch 353 traces.
///
///     utility::DirIterator files("/etc", "*.conf");
///     for (const char* name = files.getFirst(nullptr); name != nullptr; name = files.getNext()) use(files.getValue());
class VXUT_EXPORT DirIterator : public Path {
public:
    /// Copies both texts without opening the directory. A null pattern does not match any entry.
    DirIterator(const char* directory, const char* pattern);
    DirIterator(const DirIterator&) = delete;
    DirIterator& operator=(const DirIterator&) = delete;
    ~DirIterator() override;

    /// Opens the directory named by the directory part, and first closes the directory that is open. Returns false if
    /// that fails; the first failure of an iterator sets the error state.
    bool open();
    /// Closes the directory. `getFirst` and `getNext` open it again.
    void close();
    /// Starts again and returns the name of the first match, or null if there is none. The name is valid until the next
    /// call, or until the directory is closed.
    /// - `pattern`: replaces the pattern in use; null: keeps it
    const char* getFirst(const char* pattern);
    /// Returns the name of the next match, or null if there is none or if there is no current match, because `getFirst`
    /// was not called or found none. The name is valid as in `getFirst`.
    const char* getNext();
    /// Returns the number of matches. Calls `getFirst(pattern)`, then `getNext()` to the end of the directory, so there
    /// is no current match afterward.
    unsigned int length(const char* pattern);
    /// Copies a new pattern. A null pattern does not match any entry.
    void setPattern(const char* pattern);
    /// Returns the index of the current match, from 0, or -1 if there is none.
    int getIndex() const {
        return m_index;
    }
    /// Always returns 0: callers rely on it. The name of the match is looked up in the working directory of the
    /// process, and a type is derived only if that look-up fails, when there is no data to derive it from.
    int getType() const;

private:
    VXUT_HIDDEN DirIterator();

    VXUT_HIDDEN void reportError();
    const char* nextMatch(const char* function);
    VXUT_HIDDEN const char* end();

    DIR* m_pDir;
    dirent* m_entry;
    char* m_pattern;
    int m_index;
    bool m_errorReported;
};

} // namespace utility
