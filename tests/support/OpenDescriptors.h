#pragma once

#include <set>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace test {

/// The descriptors of this process that are open on the file `path`, lowest first.
///
///     EXPECT_EQ(test::descriptorsOf(path).size(), 1u);
inline std::vector<int> descriptorsOf(const std::string& path) {
    std::vector<int> descriptors;
    struct stat64 file;
    if (stat64(path.c_str(), &file) != 0)
        return descriptors;
    for (int fd = 0; fd < 1024; ++fd) {
        struct stat64 open;
        if (fstat64(fd, &open) == 0 && open.st_dev == file.st_dev && open.st_ino == file.st_ino)
            descriptors.push_back(fd);
    }
    return descriptors;
}

/// Whether the descriptor has close-on-exec set.
inline bool isClosedOnExec(int fd) {
    const int flags = fcntl(fd, F_GETFD);
    return flags >= 0 && (flags & FD_CLOEXEC) != 0;
}

inline bool isOpenDescriptor(int fd) {
    return fcntl(fd, F_GETFD) >= 0;
}

/// The open descriptors of this process below 1024.
inline std::set<int> openDescriptors() {
    std::set<int> descriptors;
    for (int fd = 0; fd < 1024; ++fd)
        if (isOpenDescriptor(fd))
            descriptors.insert(fd);
    return descriptors;
}

/// The descriptor that the next `open` returns.
inline int lowestFreeDescriptor() {
    const int descriptor = open("/dev/null", O_RDONLY);
    close(descriptor);
    return descriptor;
}

/// Closes standard input, output and error. For child processes.
inline void closeStandardStreams() {
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        close(fd);
}

/// Whether the descriptors 0 to 2 are closed.
inline bool areStandardStreamsClosed() {
    return !isOpenDescriptor(STDIN_FILENO) && !isOpenDescriptor(STDOUT_FILENO) && !isOpenDescriptor(STDERR_FILENO);
}

} // namespace test
