#pragma once

#include <dirent.h>

// Opens files for the library's sources; not for callers of the library.
//
// The descriptors 0 to 2 are never used, even if the process has closed them: later output to standard error, or input
// from standard input, must not reach a file that the library has open.

namespace utility {

/// Opens `path` with close-on-exec. Returns the descriptor, which is 3 or greater, or -1 with `errno` set. A null path
/// fails with ENOENT. `mode`: the permission bits of a new file, less the umask.
int openFile(const char* path, int flags, unsigned int mode = 0);

/// Opens the directory `path` in the same way. Returns null with `errno` set on failure. The caller closes it with
/// `closedir`.
DIR* openDirectory(const char* path);

/// Closes `fd` without changing `errno`.
void closeKeepingErrno(int fd);

} // namespace utility
