#include "internal/ut_FileDescriptor.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

#include "internal/fw_ErrnoGuard.h"
#include "internal/fw_StandardNumbers.h"

namespace utility {

int openFile(const char* path, int flags, unsigned int mode) {
    if (path == nullptr) {
        errno = ENOENT;
        return -1;
    }
    const framework::StandardNumbers occupied;
    const int fd = open(path, flags | O_CLOEXEC, mode);
    if (fd < 0)
        return -1;
    // Without a placeholder, for want of descriptors, the number may still be a low one.
    if (fd <= STDERR_FILENO) {
        const int moved = fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        closeKeepingErrno(fd);
        return moved;
    }
    const int descriptorFlags = fcntl(fd, F_GETFD);
    if (descriptorFlags >= 0)
        fcntl(fd, F_SETFD, descriptorFlags | FD_CLOEXEC);
    return fd;
}

DIR* openDirectory(const char* path) {
    const int fd = openFile(path, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    DIR* directory = fd >= 0 ? fdopendir(fd) : nullptr;
    if (directory == nullptr && fd >= 0)
        closeKeepingErrno(fd);
    return directory;
}

void closeKeepingErrno(int fd) {
    const framework::ErrnoGuard errnoGuard;
    close(fd);
}

} // namespace utility
