#pragma once

#include "ut_Export.h"

#include <dirent.h>

#include "ut_Path.h"

namespace utility {

/// A path that iterates over the entries of its directory that match a shell wildcard pattern (`fnmatch`).
///
/// Each match sets the file part of the path. Entries include "." and "..", in the order of `readdir`. One thread at a
/// time. As in `Path`, only `std::bad_alloc` is thrown. Null is returned at the end of the directory, and if it cannot
/// be opened or read; only the first such failure of an iterator sets the entity's error state (`inError`). Debug
/// switch 353 traces.
///
///     utility::DirIterator files("/etc", "*.conf");
///     for (const char* name = files.getFirst(nullptr); name != nullptr; name = files.getNext()) use(files.getValue());
class VXUT_EXPORT DirIterator : public Path {
public:
    /// Copies both texts. A null pattern does not match any entry.
    DirIterator(const char* directory, const char* pattern);
    DirIterator(const DirIterator&) = delete;
    DirIterator& operator=(const DirIterator&) = delete;
    ~DirIterator() override;

    /// Opens the directory part, after closing an open directory. Returns false if that fails; the first failure of an
    /// iterator sets the error state.
    bool open();
    /// Closes the directory. `getFirst` and `getNext` open it again.
    void close();
    /// Returns the name of the first match; null if there is none. The name is valid until the next call, or until the
    /// directory is closed.
    /// - `pattern`: replaces the pattern in use; null: keeps it
    const char* getFirst(const char* pattern);
    /// Returns the name of the next match; null if there is none, or without a match of `getFirst` before. The name is
    /// valid as in `getFirst`.
    const char* getNext();
    /// The number of matches. Calls `getFirst(pattern)` and `getNext()` to the end of the directory.
    unsigned int length(const char* pattern);
    /// Copies a new pattern. A null pattern does not match any entry.
    void setPattern(const char* pattern);
    /// The index of the current match, from 0; -1 if there is none.
    int getIndex() const {
        return m_index;
    }
    /// Always 0: callers rely on it. The name of the match is looked up in the working directory of the process, and
    /// its type is determined only if that fails, when nothing is known about it.
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
