#pragma once

#include <dirent.h>

// How the library opens files. Not for callers of the library.
//
// The standard numbers 0 to 2 stay free even where the process has closed them: whatever is written to standard error
// later, or read from standard input, must not reach a file that the library has open.

namespace utility {

/// Opens `path`, close-on-exec, and returns the descriptor, which is 3 or greater, or -1 with `errno` set. A null path
/// does not exist.
int openFile(const char* path, int flags, unsigned int mode = 0);

/// Opens the directory `path` in the same way; null with `errno` set if that fails.
DIR* openDirectory(const char* path);

/// Closes `fd` and leaves `errno` as it is.
void closeKeepingErrno(int fd);

} // namespace utility
