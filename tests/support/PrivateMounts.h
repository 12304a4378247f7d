#pragma once

#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace test {

/// Moves the process, and the programs it runs, to a private mount namespace. Returns false without the permission. For
/// child processes.
inline bool makeMountsPrivate() {
    return geteuid() == 0 && unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// Mounts an empty tmpfs of `pages` memory pages on the directory `path`, for this process only. Returns false without
/// the permission. For child processes.
inline bool mountSmallDisk(const std::string& path, int pages) {
    const std::string size = "size=" + std::to_string(pages * getpagesize());
    return makeMountsPrivate() && mount("none", path.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

} // namespace test
