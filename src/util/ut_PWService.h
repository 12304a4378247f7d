#pragma once

#include <cstdio>

#include "ut_Export.h"
#include "ut_PW.h"

namespace utility {

/// Reads and rewrites the system password file.
///
/// The file is "/etc/passwd" behind the root that the environment variable `VX_ROOT` names when the file is first used.
/// All operations share one record and the file, without locks: one thread at a time, and nobody else may rewrite the
/// file meanwhile. Nothing is thrown but `std::bad_alloc` without memory; a file that cannot be opened is an empty
/// answer or no change. A rewrite makes "<file>.new", open to its owner alone and no wider to him than the file itself,
/// and copies it over only when all of it was written, so the file stays as it was otherwise; that the file itself
/// failed while it was read, or that no command can name it (a blank and a double quote in it), is also logged, at
/// level 0. A file whose new name is longer than 255 bytes is not rewritten. An entry that the platform cannot read
/// ends the reading: a rewrite drops what lies behind it, and says so at level 0; lines that the platform passes over,
/// such as comments, are dropped without a word. Debug switch 484 traces.
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
