#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <string>

namespace test {

/// Gives the process, and what it runs from now on, mounts of its own. False where it must not have them. For child
/// processes.
inline bool makeMountsPrivate() {
    return geteuid() == 0 && unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

/// Mounts an empty disk of `pages` memory pages on the directory `path`, for this process alone. False where it must
/// not. For child processes.
inline bool mountSmallDisk(const std::string& path, int pages) {
    const std::string size = "size=" + std::to_string(pages * getpagesize());
    return makeMountsPrivate() && mount("none", path.c_str(), "tmpfs", 0, size.c_str()) == 0;
}

} // namespace test
