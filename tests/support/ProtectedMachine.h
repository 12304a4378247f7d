#pragma once

#include <gtest/gtest.h>

#include <grp.h>
#include <mntent.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "PrivateMounts.h"

namespace test {

/// Keeps the machine's own files out of reach of this test program and of every process that it starts, so that a
/// library that ignores the root folder of a test cannot replace the machine's password file.
///
/// As an ordinary user the program already cannot write them. As root it enters a mount namespace in which all is
/// read-only except temporary files and the build folder; where that is not allowed, it becomes an ordinary user. Where
/// it cannot do that either, every test of the program is skipped with the reason.
///
///     const testing::Environment* const machine = test::protectMachine();
class ProtectedMachine : public testing::Environment {
public:
    void SetUp() override {
        if (isOutOfReach() || (enterNamespace() && isOutOfReach()) || (becomeNobody() && isOutOfReach()))
            return;
        skip();
        // What ctest recognizes a skipped test by; GoogleTest writes it for single tests only.
        std::printf("[  SKIPPED ] all tests\n");
    }

    /// Whether this process cannot write the machine's password file, nor replace it.
    static bool isOutOfReach() {
        return access("/etc/passwd", W_OK) != 0 && access("/etc", W_OK) != 0 && access("/", W_OK) != 0;
    }

    /// Enters a mount namespace with a read-only view of the machine. False if that is not allowed.
    static bool enterNamespace() {
        const std::filesystem::path here = std::filesystem::current_path();
        const std::vector<std::string> writable = {std::filesystem::canonical(std::filesystem::temp_directory_path()),
                                                   program().parent_path().parent_path()};
        if (!makeMountsPrivate())
            return false;
        const std::vector<Mount> mounts = currentMounts();
        for (const std::string& folder : writable)
            if (mount(folder.c_str(), folder.c_str(), nullptr, MS_BIND | MS_REC, nullptr) != 0)
                return false;
        // A mount that cannot be changed, such as one that a later mount hides, stays as it is: isOutOfReach decides.
        for (const Mount& mounted : mounts)
            if (!isBelow(mounted.folder, "/proc") && !isBelow(mounted.folder, "/dev") &&
                !isBelow(mounted.folder, writable[0]) && !isBelow(mounted.folder, writable[1]))
                mount(nullptr, mounted.folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY | mounted.flags,
                      nullptr);
        // The working directory is still the one below the new mounts.
        return chdir(here.c_str()) == 0;
    }

    /// Gives up the rights of root for good. False if that is not allowed or leaves this program unreachable.
    static bool becomeNobody() {
        const unsigned int nobody = 65534;
        const std::string file = program();
        // A process that changed its user may not look at its own descriptors in /proc unless it may be dumped.
        return setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0 &&
               prctl(PR_SET_DUMPABLE, 1, 0, 0, 0) == 0 && access(file.c_str(), X_OK) == 0;
    }

private:
    /// This program, in the folder "tests" of the build folder.
    static std::filesystem::path program() {
        return std::filesystem::canonical("/proc/self/exe");
    }

    static void skip() {
        GTEST_SKIP() << "neither a read-only view of the machine's files nor an ordinary user's rights can be had";
    }

    struct Mount {
        std::string folder;
        unsigned long flags; // what a remount must not take away
    };

    static std::vector<Mount> currentMounts() {
        std::vector<Mount> mounts;
        std::FILE* const table = setmntent("/proc/self/mounts", "r");
        if (table == nullptr)
            return mounts;
        while (const mntent* entry = getmntent(table)) {
            unsigned long flags = 0;
            flags |= hasmntopt(entry, "nosuid") != nullptr ? MS_NOSUID : 0;
            flags |= hasmntopt(entry, "nodev") != nullptr ? MS_NODEV : 0;
            flags |= hasmntopt(entry, "noexec") != nullptr ? MS_NOEXEC : 0;
            mounts.push_back({entry->mnt_dir, flags});
        }
        endmntent(table);
        return mounts;
    }

    static bool isBelow(const std::string& path, const std::string& folder) {
        return path == folder || path.compare(0, folder.size() + 1, folder + "/") == 0;
    }
};

/// For a variable of namespace scope in each test program that works under a root folder.
inline const testing::Environment* protectMachine() {
    return testing::AddGlobalTestEnvironment(new ProtectedMachine);
}

} // namespace test
