#pragma once

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <grp.h>
#include <mntent.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "PrivateMounts.h"

namespace test {

/// Prevents this test program and the processes it starts from writing the machine's own files, so that a library that
/// ignores the root folder of a test cannot replace the machine's password file.
///
/// - An ordinary user cannot write these files.
/// - As root, the program enters a mount namespace in which everything is read-only except temporary files and the
///   build folder. If that is not permitted, it drops root privileges.
/// - If neither is possible, every test of the program is skipped with the reason.
///
///     const testing::Environment* const machine = test::protectMachine();
class ProtectedMachine : public testing::Environment {
public:
    void SetUp() override {
        if (protect())
            return;
        skip();
        // ctest recognizes a skipped test by this text, which GoogleTest prints only for single tests.
        std::printf("[  SKIPPED ] all tests\n");
    }

    /// Protects the machine's files from this process. Returns false if that is not possible.
    static bool protect() {
        return isOutOfReach() || (enterNamespace() && isOutOfReach()) || (becomeNobody() && isOutOfReach());
    }

    /// Whether this process can neither write nor replace the machine's password file.
    static bool isOutOfReach() {
        return access("/etc/passwd", W_OK) != 0 && access("/etc", W_OK) != 0 && access("/", W_OK) != 0;
    }

    /// Enters a mount namespace with a read-only view of the machine. Returns false if that is not permitted.
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
        // Ignore a mount that cannot be changed, such as one hidden by a later mount: isOutOfReach decides.
        for (const Mount& mounted : mounts)
            if (!isBelow(mounted.folder, "/proc") && !isBelow(mounted.folder, "/dev") &&
                !isBelow(mounted.folder, writable[0]) && !isBelow(mounted.folder, writable[1]))
                mount(nullptr, mounted.folder.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY | mounted.flags,
                      nullptr);
        // The working directory still refers to the old mount: enter it again.
        return chdir(here.c_str()) == 0;
    }

    /// Drops root privileges permanently. Returns false if that is not permitted or makes this program inaccessible.
    static bool becomeNobody() {
        const unsigned int nobody = 65534;
        const std::string file = program();
        // After a change of user, a process can read its descriptors in /proc only if it is dumpable.
        return setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0 &&
               prctl(PR_SET_DUMPABLE, 1, 0, 0, 0) == 0 && access(file.c_str(), X_OK) == 0;
    }

private:
    /// The path of this program, in the folder "tests" of the build folder.
    static std::filesystem::path program() {
        return std::filesystem::canonical("/proc/self/exe");
    }

    static void skip() {
        GTEST_SKIP() << "neither a read-only view of the machine's files nor an ordinary user's rights can be had";
    }

    struct Mount {
        std::string folder;
        unsigned long flags; // flags that a remount must keep
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

/// Registers the protection. Each test program that uses a root folder initializes a namespace-scope variable with the
/// result.
inline const testing::Environment* protectMachine() {
    return testing::AddGlobalTestEnvironment(new ProtectedMachine);
}

} // namespace test
