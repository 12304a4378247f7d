#pragma once

#include "ut_Export.h"

#include <dirent.h>

#include "ut_Path.h"

namespace utility {

/// A path that walks the entries of its directory that match a shell wildcard pattern.
///
/// File and extension become those of each match in turn. The pattern is copied. Entries come in the order in which the
/// system gives them, "." and ".." included. One thread at a time. As in `Path`, nothing is thrown but for memory: a
/// directory that cannot be opened, or fails while it is read, gives null. The first such failure of an iterator is
/// reported through the entity's error state (`inError`), which tells it from the end of the directory. Debug switch
/// 353 traces.
///
///     utility::DirIterator files("/etc", "*.conf");
///     for (const char* name = files.getFirst(nullptr); name != nullptr; name = files.getNext()) use(files.getValue());
class VXUT_EXPORT DirIterator : public Path {
public:
    /// A null pattern matches nothing.
    DirIterator(const char* directory, const char* pattern);
    DirIterator(const DirIterator&) = delete;
    DirIterator& operator=(const DirIterator&) = delete;
    ~DirIterator() override;

    /// Opens the directory part, once more when it is open: the walk is then before its first entry. False, with the
    /// error set the first time, when that fails.
    bool open();
    /// Closes the directory; the next look opens it again.
    void close();
    /// The name of the first match, or null; a `pattern` that is not null replaces the one in use. The name is valid
    /// until the next look, or until the directory is closed.
    const char* getFirst(const char* pattern);
    /// The name of the next match, or null: also where `getFirst` found none before it.
    const char* getNext();
    /// The number of matches, as `getFirst` and `getNext` find them; the walk is then at its end.
    unsigned int length(const char* pattern);
    /// Replaces the pattern.
    void setPattern(const char* pattern);
    /// The number of the current match, from 0; -1 when there is none.
    int getIndex() const {
        return m_index;
    }
    /// 0, unless the bare name of the current match does not exist in the working directory of the process: only then
    /// is its type told, and then nothing is known of it. Callers rely on the 0.
    int getType() const;

private:
    DirIterator();

    void reportError();
    const char* nextMatch(const char* function);
    const char* end();

    DIR* m_pDir;
    dirent* m_entry;
    char* m_pattern;
    int m_index;
    bool m_errorReported;
};

} // namespace utility
