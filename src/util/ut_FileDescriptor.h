#pragma once

// How the file streams open their files. Not for callers of the library.

namespace utility {

/// Opens `path`, close-on-exec, and returns the descriptor, or -1 with `errno` set. A null path does not exist.
int openFile(const char* path, int flags, unsigned int mode);

} // namespace utility
