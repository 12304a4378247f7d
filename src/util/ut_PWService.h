#pragma once

#include "ut_Export.h"

#include <cstdio>

#include "ut_PW.h"

namespace utility {

/// Reads and rewrites the system password file.
///
/// The file is "/etc/passwd" below the root that the environment variable `VX_ROOT` names when the file is first used.
/// All operations share one record and the file, without locks: one thread at a time, and nobody else may rewrite the
/// file meanwhile. Nothing is thrown but `std::bad_alloc` without memory. A password file that cannot be opened has no
/// users. Debug switch 484 traces.
///
/// A rewrite (`putUser`, `delUser`) has four steps:
/// 1. Write all entries to "<file>.new", which only its owner can open, with no wider permissions than the file has.
/// 2. Sync the new file and its folder to disk.
/// 3. Copy the new file over the file with the command `cp`.
/// 4. Leave the new file in place.
///
/// A rewrite that fails logs one line at level 0: what happened, which file holds the complete text, and what to do.
/// - Until the copy starts, the file is unchanged. A new file that is not complete is removed.
/// - If the copy fails, or the machine loses power during it or soon after it, the file may be incomplete. The new file
///   is complete. Copy it over the file before the next rewrite: that rewrite reads the incomplete file, and replaces
///   the new file, which could have rescued it.
///
/// The name of the new file must not have more than 255 bytes, and `cp` must be able to name the file: a path that has
/// a double quote must not have a blank, nor begin with the quote. An entry that the platform cannot read ends the
/// reading: a rewrite drops it and all entries after it, and logs that at level 0. Lines that the platform skips, such
/// as comments, are dropped without a message. An entry that the platform reads but does not write (a ':' in the shell)
/// makes every rewrite fail that keeps it.
///
///     utility::PW* user = utility::PWService::getUser("monitor");
///     if (user != nullptr) use(user->getUid());
class VXUT_EXPORT PWService {
public:
    /// The name of the password file. It stays the same for the life of the process.
    static const char* getFileName();
    /// The first user with this name, in the shared record, which the next operation overwrites; null when there is
    /// none.
    static PW* getUser(const char* name);
    /// The largest user number in the file; 0 when there is none.
    static unsigned int getHighestUID();
    /// Replaces every entry of the user's name by `user`, or adds it at the end. A null record or name changes nothing.
    static void putUser(PW* user);
    /// Removes every entry of the user's name.
    static void delUser(PW* user);
    /// Writes the "$1$" hash (MD5-based) of `plain` to `out`, cut to `outSize` bytes with the terminator, and returns
    /// `out`. The salt comes from the present time. A null `plain`, one that the platform cannot hash, and a lack of
    /// memory give the empty text. `plain` may lie in `out`. A null `out` and a size of 0 write nothing.
    static char* encryptPassword(const char* plain, char* out, unsigned int outSize);

private:
    static bool readEntry(std::FILE* file);
    static bool copyEntries(std::FILE* in, std::FILE* out, const passwd& user, bool adds, const char* function);
    static void rewrite(PW* user, bool adds, const char* function);

    static PW m_PW;
    static const char* m_pwFileName;
};

} // namespace utility
