#include "ut_FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>

namespace utility {

int openFile(const char* path, int flags, unsigned int mode) {
    if (path == nullptr) {
        errno = ENOENT;
        return -1;
    }
    const int fd = open(path, flags | O_CLOEXEC, mode);
    if (fd < 0)
        return -1;
    const int descriptorFlags = fcntl(fd, F_GETFD);
    if (descriptorFlags >= 0)
        fcntl(fd, F_SETFD, descriptorFlags | FD_CLOEXEC);
    return fd;
}

} // namespace utility
