#pragma once

#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

namespace test {

/// The permission bits of a file, with set-user-ID, set-group-ID and sticky bit.
inline mode_t permissionsOf(const std::string& path) {
    struct stat64 status = {};
    EXPECT_EQ(stat64(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

} // namespace test
