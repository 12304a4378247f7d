#pragma once

#include <dirent.h>

// Opens files. Internal: not for callers of the library.
//
// Never uses the descriptors 0 to 2, even if the process has closed them. Otherwise, later output to standard error, or
// input from standard input, could reach a file that the library has open.

namespace utility {

/// Opens `path` with close-on-exec. Returns the descriptor, which is 3 or greater, or -1 with `errno` set. A null path
/// fails with ENOENT. `mode` is the permission bits of a new file, to which the umask applies.
int openFile(const char* path, int flags, unsigned int mode = 0);

/// Opens the directory `path` in the same way. Returns null with `errno` set on failure. The caller closes it with
/// `closedir`.
DIR* openDirectory(const char* path);

/// Closes `fd` without changing `errno`.
void closeKeepingErrno(int fd);

} // namespace utility
