#pragma once

#include "ut_Export.h"

#include <cstdio>

#include "ut_PW.h"

namespace utility {

/// Reads and rewrites the system password file.
///
/// The file is "$VX_ROOT/etc/passwd", or "/etc/passwd" if the environment variable `VX_ROOT` is not set; the variable
/// is read at the first use. All operations share one record and the file, without locks: only one thread may use this
/// class at a time, and no other process may rewrite the file at the same time. Only `std::bad_alloc` is thrown. If the
/// file cannot be opened, there are no users. Debug switch 484 traces.
///
/// A rewrite (`putUser`, `delUser`) has four steps:
/// 1. Write all entries to "<file>.new". Only its owner can open it, and its permissions are no wider than those of the
///    file.
/// 2. Sync the new file and its folder to disk.
/// 3. Copy the new file over the file with the command `cp`.
/// 4. Leave the new file in place.
///
/// A rewrite that fails logs one line at level 0, which says what happened, which file is complete, and what to do.
/// - Until the copy starts, the file is unchanged. A new file that is not complete is removed.
/// - If the copy fails, or if power fails during or soon after it, the file may be incomplete, but the new file is
///   complete. Copy the new file over the file before the next rewrite: a rewrite reads the incomplete file and
///   replaces the new file.
///
/// Limits:
/// - The path of the new file must not be longer than 255 bytes.
/// - A path that contains a double quote must not begin with one and must not contain a blank: it could not be passed
///   to `cp` as one word.
/// - If the platform cannot parse an entry, a rewrite drops it and all entries after it, and logs that at level 0.
/// - Lines that the platform skips, such as comments, are dropped without a message.
/// - If the platform can parse an entry but not write it (such as one with a ':' in the shell), every rewrite that
///   keeps the entry fails.
///
/// Example:
///
///     utility::PW* user = utility::PWService::getUser("monitor");
///     if (user != nullptr) use(user->getUid());
class VXUT_EXPORT PWService {
public:
    /// Returns the path of the password file, or null if memory is exhausted. The path does not change after the first
    /// successful call.
    static const char* getFileName();
    /// Returns the first user named `name`, or null if there is none. The returned record is overwritten by the next
    /// operation.
    static PW* getUser(const char* name);
    /// Returns the largest user ID in the file, or 0 if there are no users.
    static unsigned int getHighestUID();
    /// Replaces every entry with the name of `user` by `user`, or appends it if there is none. Does nothing if `user`
    /// or its name is null.
    static void putUser(PW* user);
    /// Removes every entry with the name of `user`. Does nothing if `user` or its name is null.
    static void delUser(PW* user);
    /// Writes the "$1$" hash (MD5-based) of `plain` to `out`, truncated to `outSize` bytes including the terminator,
    /// and returns `out`. The salt is derived from the current time.
    /// - `plain`: may overlap `out`. If it is null, cannot be hashed, or memory is exhausted, the result is empty.
    /// - `out`: if it is null or `outSize` is 0, nothing is written
    static char* encryptPassword(const char* plain, char* out, unsigned int outSize);

private:
    VXUT_HIDDEN static bool readEntry(std::FILE* file);
    static bool copyEntries(std::FILE* in, std::FILE* out, const passwd& user, bool adds, const char* function);
    static void rewrite(PW* user, bool adds, const char* function);

    static PW m_PW;
    static const char* m_pwFileName;
};

} // namespace utility
