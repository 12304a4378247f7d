#include "ut_PWService.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <new>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <pwd.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "fw_Memory.h"
#include "support/ChildProcess.h"
#include "support/DebugSwitch.h"
#include "support/FailingAllocation.h"
#include "support/GuardedText.h"
#include "support/LogCapture.h"
#include "support/OpenDescriptors.h"
#include "support/OrdinaryUser.h"
#include "support/PermissionsOf.h"
#include "support/PrivateMounts.h"
#include "support/ProtectedMachine.h"
#include "support/TemporaryDirectory.h"
#include "support/Umask.h"
#include "ut_TimeMeasure.h"

using framework::Logger;
using test::lowestFreeDescriptor;
using test::permissionsOf;
using utility::PW;
using utility::PWService;

namespace {

// If set, called before each of the functions below. A result of 0 carries the function out; any other result is the
// `errno` with which it fails.
std::function<int(const char* call, int fd)> beforeCall;

bool fails(const char* call, int fd) {
    const int failure = beforeCall ? beforeCall(call, fd) : 0;
    if (failure != 0)
        errno = failure;
    return failure != 0;
}

} // namespace

// Replace the functions of the platform, also in the library.
extern "C" {

int fsync(int fd) {
    return fails("fsync", fd) ? -1 : static_cast<int>(syscall(SYS_fsync, fd));
}

int syncfs(int fd) noexcept {
    return fails("syncfs", fd) ? -1 : static_cast<int>(syscall(SYS_syncfs, fd));
}

int fchmod(int fd, mode_t mode) noexcept {
    return fails("fchmod", fd) ? -1 : static_cast<int>(syscall(SYS_fchmod, fd, mode));
}

int fclose(std::FILE* file) {
    static const auto platform = reinterpret_cast<int (*)(std::FILE*)>(dlsym(RTLD_NEXT, "fclose"));
    const bool hasFailed = fails("fclose", fileno(file));
    const int error = errno;
    const int result = platform(file);
    if (!hasFailed)
        return result;
    errno = error;
    return EOF;
}

} // extern "C"

// The name of the password file is computed once per process, so every scenario runs in its own process.

namespace {

const testing::Environment* const machine = test::protectMachine();

constexpr const char* threeUsers = "root:x:0:0:Root:/root:/bin/sh\n"
                                   "monitor:$1$abc$def:1001:100:The Monitor:/home/monitor:/bin/rsh\n"
                                   "guest:*:1002:100:Guest,Room 1:/home/guest:/bin/false\n";

// A root directory with a password file.
class Root {
public:
    Root() : Root("root") {}
    explicit Root(const std::string& name) : m_root(m_directory.path(name)) {
        std::filesystem::create_directories(m_root + "/etc");
    }
    Root(const std::string& name, const std::string& content) : Root(name) {
        write(content);
    }

    const std::string& root() const {
        return m_root;
    }
    const test::TemporaryDirectory& directory() const {
        return m_directory;
    }
    std::string file() const {
        return m_root + "/etc/passwd";
    }
    std::string newFile() const {
        return file() + ".new";
    }
    void write(const std::string& content) const {
        writeFile(file(), content);
    }
    std::string read() const {
        return readFile(file());
    }

    static void writeFile(const std::string& path, const std::string& content) {
        std::FILE* stream = std::fopen(path.c_str(), "w");
        ASSERT_NE(stream, nullptr) << path << ": " << std::strerror(errno);
        EXPECT_EQ(std::fwrite(content.data(), 1, content.size(), stream), content.size());
        EXPECT_EQ(std::fclose(stream), 0);
    }
    static std::string readFile(const std::string& path) {
        std::FILE* stream = std::fopen(path.c_str(), "r");
        if (stream == nullptr)
            return "cannot read " + path;
        std::string content;
        char piece[4096];
        for (std::size_t count; (count = std::fread(piece, 1, sizeof piece, stream)) > 0;)
            content.append(piece, count);
        std::fclose(stream);
        return content;
    }

    // Every path in the temporary directory, with the content of files and the target of links.
    std::map<std::string, std::string> tree() const {
        std::map<std::string, std::string> result;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_directory.path())) {
            const std::string name = entry.path().string().substr(m_directory.path().size());
            result[name] = entry.is_symlink()        ? "-> " + std::filesystem::read_symlink(entry.path()).string()
                           : entry.is_regular_file() ? readFile(entry.path().string())
                                                     : "";
        }
        return result;
    }

private:
    test::TemporaryDirectory m_directory;
    std::string m_root;
};

// The users of a password file, as `fgetpwent` parses them.
std::vector<std::string> usersOf(const std::string& path) {
    std::vector<std::string> users;
    std::FILE* stream = std::fopen(path.c_str(), "r");
    if (stream == nullptr)
        return {"cannot read " + path};
    while (const passwd* user = fgetpwent(stream))
        users.push_back(std::string(user->pw_name) + ":" + user->pw_passwd + ":" + std::to_string(user->pw_uid) + ":" +
                        std::to_string(user->pw_gid) + ":" + user->pw_gecos + ":" + user->pw_dir + ":" +
                        user->pw_shell);
    std::fclose(stream);
    return users;
}

void fill(PW& user, const char* name, unsigned int number) {
    user.m_passwd.pw_name = user.newString(name);
    user.m_passwd.pw_passwd = user.newString("pw");
    user.m_passwd.pw_uid = number;
    user.m_passwd.pw_gid = number + 1;
    user.m_passwd.pw_gecos = user.newString("Real Name");
    user.m_passwd.pw_dir = user.newString("/home");
    user.m_passwd.pw_shell = user.newString("/bin/sh");
}

std::string lineOf(const std::string& name, unsigned int number) {
    return name + ":pw:" + std::to_string(number) + ":" + std::to_string(number + 1) + ":Real Name:/home:/bin/sh\n";
}

// Runs a scenario in a child process with `root` as its `VX_ROOT`. Its failed expectations are failures here.
void inRoot(const std::string& root, const std::function<void()>& scenario) {
    const test::ChildResult child = test::runInChild([&] {
        alarm(100);
        setenv("VX_ROOT", root.c_str(), 1);
        const testing::TestResult* const result = testing::UnitTest::GetInstance()->current_test_info()->result();
        const int before = result->total_part_count();
        scenario();
        return result->total_part_count() == before ? 0 : 1;
    });
    EXPECT_TRUE(child.exited) << "ended by signal " << child.signal << "\n" << child.out << child.err;
    EXPECT_EQ(child.status, 0) << child.out << child.err;
}

void putUserInRoot(const std::string& root, const char* name = "added", unsigned int number = 2000) {
    inRoot(root, [&] {
        PW user;
        fill(user, name, number);
        PWService::putUser(&user);
    });
}

void delUserInRoot(const std::string& root, const char* name) {
    inRoot(root, [&] {
        PW user;
        fill(user, name, 1);
        PWService::delUser(&user);
    });
}

// The logged messages as "<level> <text>", oldest first.
std::vector<std::string> linesOf(const test::LogCapture& log) {
    std::vector<std::string> lines;
    for (const test::LogEntry& entry : log.entries())
        lines.push_back(std::to_string(static_cast<int>(entry.type)) + " " + entry.text);
    return lines;
}

unsigned int errorsIn(const test::LogCapture& log) {
    unsigned int count = 0;
    for (const test::LogEntry& entry : log.entries())
        count += entry.type == Logger::LOG_ERROR ? 1 : 0;
    return count;
}

constexpr const char* putUserName = "static void utility::PWService::putUser(utility::PW*)";
constexpr const char* delUserName = "static void utility::PWService::delUser(utility::PW*)";

// Expects exactly one logged line, at level 0 and in the name of the operation `function`.
void expectOneError(const test::LogCapture& log, const char* function, const std::string& text) {
    EXPECT_EQ(linesOf(log), std::vector<std::string>{"0 " + text});
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, function, text));
}

// Puts and then deletes a user in a child process. Expects that each operation logs `problem` and leaves the file and
// everything else in the root unchanged.
void expectUnchanged(
    const Root& root, const std::string& problem, const std::function<void()>& prepare = [] {}) {
    const auto before = root.tree();
    inRoot(root.root(), [&] {
        prepare();
        PW user;
        fill(user, "monitor", 2000);
        test::LogCapture log;
        PWService::putUser(&user);
        expectOneError(log, putUserName, root.file() + " is unchanged: " + problem);
        log.clear();
        PWService::delUser(&user);
        expectOneError(log, delUserName, root.file() + " is unchanged: " + problem);
    });
    EXPECT_EQ(root.tree(), before);
}

std::string notWritten(const std::string& reason) {
    return "its new file cannot be written and is removed (" + reason +
           "); free disk space, or check the disk, and try again";
}

std::string notMade(const std::string& reason) {
    return "its new file cannot be made (" + reason + "); check the permissions and the free space of its folder";
}

std::string notOpened(const std::string& reason) {
    return "it cannot be opened as a regular file (" + reason + "); provide a regular file that this process can read";
}

std::string notCopied(const Root& root) {
    return root.file() + " may be incomplete: copying over it failed; " + root.newFile() +
           " holds the complete new text: copy it by hand before the next rewrite replaces it";
}

// Creates a program with this text that replaces `cp`, in a directory of its own, and returns the directory.
std::string replaceCp(const Root& root, const std::string& text) {
    std::string commands = root.directory().path("commands");
    std::filesystem::create_directory(commands);
    Root::writeFile(commands + "/cp", "#!/bin/sh\nPATH=/usr/bin:/bin\n" + text);
    EXPECT_EQ(chmod((commands + "/cp").c_str(), 0755), 0);
    return commands;
}

std::string pathOf(int fd) {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(fd), error).string();
}

std::string manyUsers(int count) {
    std::string content;
    for (int i = 0; i < count; ++i)
        content += "user" + std::to_string(i) + ":x:" + std::to_string(i + 1) + ":100:User:/home/user:/bin/sh\n";
    return content;
}

TEST(PWService, UsageExample) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        unsigned int used = 0;
        const auto use = [&](unsigned int number) {
            used = number;
        };
        utility::PW* user = utility::PWService::getUser("monitor");
        if (user != nullptr)
            use(user->getUid());
        EXPECT_EQ(used, 1001u);
    });
}

// --- the file name

TEST(PWServiceFileName, IsInTheNamedRoot) {
    inRoot("/tmp/root", [] { EXPECT_STREQ(PWService::getFileName(), "/tmp/root/etc/passwd"); });
}

TEST(PWServiceFileName, IsTheSystemsOwnWithoutARoot) {
    inRoot("", [] {
        unsetenv("VX_ROOT");
        EXPECT_STREQ(PWService::getFileName(), "/etc/passwd");
    });
}

TEST(PWServiceFileName, FollowsTheRootDirectlyEvenWhenItIsEmpty) {
    inRoot("", [] { EXPECT_STREQ(PWService::getFileName(), "/etc/passwd"); });
    inRoot("/", [] { EXPECT_STREQ(PWService::getFileName(), "//etc/passwd"); });
    inRoot("relative%s%n", [] { EXPECT_STREQ(PWService::getFileName(), "relative%s%n/etc/passwd"); });
}

TEST(PWServiceFileName, IsMadeOnceForTheLifeOfTheProcess) {
    inRoot("/first", [] {
        const char* name = PWService::getFileName();
        setenv("VX_ROOT", "/second", 1);
        EXPECT_EQ(PWService::getFileName(), name);
        unsetenv("VX_ROOT");
        EXPECT_EQ(PWService::getFileName(), name);
        EXPECT_STREQ(name, "/first/etc/passwd");
    });
}

// --- reading

TEST(PWServiceGetUser, FindsTheFieldsOfAUser) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        const PW* user = PWService::getUser("guest");
        ASSERT_NE(user, nullptr);
        EXPECT_STREQ(user->getUserName(), "guest");
        EXPECT_STREQ(user->getPassword(), "*");
        EXPECT_EQ(user->getUid(), 1002u);
        EXPECT_EQ(user->getGid(), 100u);
        EXPECT_STREQ(user->getRealName(), "Guest,Room 1");
        EXPECT_STREQ(user->getDir(), "/home/guest");
        EXPECT_STREQ(user->getShell(), "/bin/false");
        EXPECT_EQ(user->used(), 0u);
    });
}

TEST(PWServiceGetUser, TextsOfTheRecordAreInsideIt) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        PW* user = PWService::getUser("monitor");
        ASSERT_NE(user, nullptr);
        EXPECT_LE(reinterpret_cast<char*>(user), user->getUserName());
        EXPECT_GT(reinterpret_cast<char*>(user + 1), user->getShell());
    });
}

TEST(PWServiceGetUser, ReturnsNullForAnUnknownUser) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        EXPECT_EQ(PWService::getUser("nobody"), nullptr);
        EXPECT_EQ(PWService::getUser(""), nullptr);
        EXPECT_EQ(PWService::getUser(nullptr), nullptr);
        EXPECT_EQ(PWService::getUser("Monitor"), nullptr);
        EXPECT_EQ(PWService::getUser("monito"), nullptr);
        EXPECT_EQ(PWService::getUser("monitor1"), nullptr);
        EXPECT_EQ(PWService::getUser("monitor:$1$abc$def"), nullptr);
        EXPECT_NE(PWService::getUser("monitor"), nullptr);
    });
}

TEST(PWServiceGetUser, ReturnsTheFirstOfTwoUsersWithTheSameName) {
    const Root root("root", "twin:x:1:1::/:/\nother:x:2:2::/:/\ntwin:x:3:3::/:/\n");
    inRoot(root.root(), [] {
        const PW* user = PWService::getUser("twin");
        ASSERT_NE(user, nullptr);
        EXPECT_EQ(user->getUid(), 1u);
    });
}

TEST(PWServiceGetUser, EveryReadUsesTheOneSharedRecord) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        const PW* first = PWService::getUser("root");
        const PW* second = PWService::getUser("guest");
        EXPECT_EQ(first, second);
        ASSERT_NE(second, nullptr);
        EXPECT_STREQ(second->getUserName(), "guest");
    });
}

TEST(PWServiceGetUser, AcceptsTheNameInTheSharedRecord) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        for (const char* name : {"guest", "monitor", "root"}) {
            PW* user = PWService::getUser(name);
            ASSERT_NE(user, nullptr);
            user = PWService::getUser(user->getUserName());
            ASSERT_NE(user, nullptr) << name;
            EXPECT_STREQ(user->getUserName(), name);
        }
        PW* user = PWService::getUser("guest");
        ASSERT_NE(user, nullptr);
        user = PWService::getUser(user->newString("monitor"));
        ASSERT_NE(user, nullptr);
        EXPECT_EQ(user->getUid(), 1001u);
    });
}

TEST(PWServiceGetUser, FreesTheTextsMadeInTheSharedRecord) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        PW* user = PWService::getUser("root");
        ASSERT_NE(user, nullptr);
        ASSERT_NE(user->newString("text"), nullptr);
        EXPECT_EQ(user->used(), 5u);
        user = PWService::getUser("guest");
        ASSERT_NE(user, nullptr);
        EXPECT_EQ(user->used(), 0u);
    });
}

TEST(PWServiceGetUser, ReturnsNullForAMissingOrUnreadableFile) {
    const Root empty;
    inRoot(empty.root(), [] {
        EXPECT_EQ(PWService::getUser("root"), nullptr);
        EXPECT_EQ(PWService::getHighestUID(), 0u);
    });
    inRoot("/dev/null", [] { EXPECT_EQ(PWService::getUser("root"), nullptr); });
    const Root directory;
    std::filesystem::create_directory(directory.file());
    inRoot(directory.root(), [] {
        EXPECT_EQ(PWService::getUser("root"), nullptr);
        EXPECT_EQ(PWService::getHighestUID(), 0u);
    });
}

TEST(PWServiceGetUser, LeavesNoDescriptorOpen) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        const int before = lowestFreeDescriptor();
        PW user;
        fill(user, "added", 7);
        for (int i = 0; i < 3; ++i) {
            PWService::getUser("root");
            PWService::getUser("nobody");
            PWService::getHighestUID();
            PWService::putUser(&user);
            PWService::delUser(&user);
            EXPECT_EQ(lowestFreeDescriptor(), before);
        }
    });
}

TEST(PWServiceGetHighestUID, IsTheLargestOfAll) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] { EXPECT_EQ(PWService::getHighestUID(), 1002u); });
    root.write("a:x:5000:1::/:/\nb:x:7:1::/:/\n");
    inRoot(root.root(), [] { EXPECT_EQ(PWService::getHighestUID(), 5000u); });
}

TEST(PWServiceGetHighestUID, ComparesUnsignedNumbers) {
    const Root root("root", "a:x:4294967294:1::/:/\nb:x:2147483647:1::/:/\n");
    inRoot(root.root(), [] { EXPECT_EQ(PWService::getHighestUID(), 4294967294u); });
}

TEST(PWServiceGetHighestUID, IsZeroWithoutUsers) {
    const Root root("root", "");
    inRoot(root.root(), [] { EXPECT_EQ(PWService::getHighestUID(), 0u); });
    root.write("root:x:0:0::/:/\n");
    inRoot(root.root(), [] { EXPECT_EQ(PWService::getHighestUID(), 0u); });
}

TEST(PWServiceGetHighestUID, CountsTheLastLineWithoutALineEnd) {
    const Root root("root", "a:x:5:1::/:/\nb:x:7:1::/:/");
    inRoot(root.root(), [] {
        EXPECT_EQ(PWService::getHighestUID(), 7u);
        EXPECT_NE(PWService::getUser("b"), nullptr);
    });
}

// --- lines that the platform cannot read

TEST(PWServiceOddLines, ReadingEndsAtALineThatIsTooLongForTheRecord) {
    const Root root("root", "a:x:5:1::/:/\nlong:x:6:1:" + std::string(3000, 'g') + ":/:/\nb:x:7:1::/:/\n");
    inRoot(root.root(), [] {
        EXPECT_NE(PWService::getUser("a"), nullptr);
        EXPECT_EQ(PWService::getUser("long"), nullptr);
        EXPECT_EQ(PWService::getUser("b"), nullptr);
        EXPECT_EQ(PWService::getHighestUID(), 5u);
    });
}

TEST(PWServiceOddLines, LongLineThatFitsIsRead) {
    const std::string line = "long:x:6:1:" + std::string(1900, 'g') + ":/:/\n";
    const Root root("root", line + "b:x:7:1::/:/\n");
    inRoot(root.root(), [] {
        const PW* user = PWService::getUser("long");
        ASSERT_NE(user, nullptr);
        EXPECT_EQ(user->getRealName(), std::string(1900, 'g'));
        EXPECT_NE(PWService::getUser("b"), nullptr);
    });
}

TEST(PWServiceOddLines, LinesAroundTheCapacityOfTheRecordAreReadAsByThePlatform) {
    for (std::size_t length = 2030; length <= 2060; ++length) {
        std::string line = "long:x:6:1:";
        line += std::string(length - line.size() - 5, 'g') + ":/:/\n";
        ASSERT_EQ(line.size(), length);
        const Root root("root", line + "b:x:7:1::/:/\n");
        passwd record = {};
        char texts[2048];
        passwd* found = nullptr;
        std::FILE* stream = std::fopen(root.file().c_str(), "r");
        ASSERT_NE(stream, nullptr);
        const bool readable = fgetpwent_r(stream, &record, texts, sizeof texts, &found) == 0;
        std::fclose(stream);
        inRoot(root.root(), [&] {
            SCOPED_TRACE(length);
            EXPECT_EQ(PWService::getUser("long") != nullptr, readable);
            EXPECT_EQ(PWService::getUser("b") != nullptr, readable);
        });
    }
}

TEST(PWServiceOddLines, AreReadAsThePlatformReadsThem) {
    const char* const contents[] = {
        "a:x:1:1::/:/\n# a comment\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\n\n\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\n   \t \nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\n  indented:x:9:1::/:/\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\nno colon at all\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\nfew:x:3\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\nletters:x:three:1::/:/\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\nempty:x:::::\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\nnegative:x:-3:1::/:/\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\nhuge:x:99999999999:1::/:/\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\nmore:x:3:1:g:/:/:more:fields\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\n:x:3:1::/:/\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\n+\n+nis::::::\n-b\nb:x:2:1::/:/\n",
        "a:x:1:1::/:/\r\nb:x:2:1::/:/\r\n",
        "\xEF\xBB\xBF"
        "a:x:1:1::/:/\n\xFF\xFE:x:3:1::/:/\nb:x:2:1::/:/\n",
    };
    for (const char* content : contents) {
        const Root root("root", content);
        unsigned int highest = 0;
        std::vector<std::string> names;
        std::FILE* stream = std::fopen(root.file().c_str(), "r");
        ASSERT_NE(stream, nullptr);
        while (const passwd* user = fgetpwent(stream)) {
            names.push_back(user->pw_name);
            highest = std::max<unsigned int>(highest, user->pw_uid);
        }
        std::fclose(stream);
        inRoot(root.root(), [&] {
            SCOPED_TRACE(content);
            EXPECT_EQ(PWService::getHighestUID(), highest);
            for (const char* name : {"a", "b", "few", "letters", "empty", "negative", "huge", "more", "", "+", "+nis",
                                     "-b", "indented", "# a comment", "no colon at all"}) {
                const bool expected = std::count(names.begin(), names.end(), name) > 0;
                EXPECT_EQ(PWService::getUser(name) != nullptr, expected) << "'" << name << "'";
            }
        });
    }
}

TEST(PWServiceOddLines, RewriteKeepsWhatThePlatformReads) {
    const Root root("root", "a:x:1:1::/:/\n\n# comment\nmalformed\nb:x:2:1::/:/\nshort:x:3\n+nis::::::\nc:x:4:1::/:/");
    const std::vector<std::string> before = usersOf(root.file());
    ASSERT_GE(before.size(), 1u);
    putUserInRoot(root.root());
    std::vector<std::string> expected = before;
    expected.push_back("added:pw:2000:2001:Real Name:/home:/bin/sh");
    EXPECT_EQ(usersOf(root.file()), expected);
}

TEST(PWServiceOddLines, RewriteDropsALineThatCannotBeReadAndAllAfterItAndLogsIt) {
    const std::string content = "a:x:5:1::/:/\nlong:x:6:1:" + std::string(3000, 'g') + ":/:/\nb:x:7:1::/:/\n";
    const Root root("root", content);
    inRoot(root.root(), [&] {
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        expectOneError(log, putUserName,
                       "an entry of " + root.file() + " cannot be read: it and all entries after it are dropped");
    });
    EXPECT_EQ(root.read(), "a:x:5:1::/:/\n" + lineOf("added", 2000));

    root.write(content);
    inRoot(root.root(), [&] {
        PW user;
        fill(user, "a", 1);
        const test::LogCapture log;
        PWService::delUser(&user);
        EXPECT_EQ(errorsIn(log), 1u);
    });
    EXPECT_EQ(root.read(), "");
}

TEST(PWServiceOddLines, RewriteOfReadableLinesLogsNothing) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        PWService::delUser(&user);
        EXPECT_EQ(log.count(), 0u);
    });
    EXPECT_EQ(root.read(), threeUsers);
}

TEST(PWServiceOddLines, DirectoryInPlaceOfTheFileLosesNothing) {
    const Root root;
    std::filesystem::create_directory(root.file());
    Root::writeFile(root.file() + "/passwd", threeUsers);
    Root::writeFile(root.file() + "/passwd.new", "old\n");
    putUserInRoot(root.root());
    EXPECT_EQ(Root::readFile(root.file() + "/passwd"), threeUsers);
    EXPECT_EQ(Root::readFile(root.file() + "/passwd.new"), "old\n");
}

// --- rewriting

TEST(PWServicePutUser, AddsANewUserAtTheEnd) {
    const Root root("root", threeUsers);
    putUserInRoot(root.root());
    EXPECT_EQ(root.read(), threeUsers + lineOf("added", 2000));
    EXPECT_EQ(usersOf(root.file()).back(), "added:pw:2000:2001:Real Name:/home:/bin/sh");
}

TEST(PWServicePutUser, AddsTheFirstUserOfAnEmptyFile) {
    const Root root("root", "");
    putUserInRoot(root.root());
    EXPECT_EQ(root.read(), lineOf("added", 2000));
}

TEST(PWServicePutUser, ReplacesAUserInPlace) {
    const Root root("root", threeUsers);
    putUserInRoot(root.root(), "monitor", 3000);
    EXPECT_EQ(root.read(), "root:x:0:0:Root:/root:/bin/sh\n" + lineOf("monitor", 3000) +
                               "guest:*:1002:100:Guest,Room 1:/home/guest:/bin/false\n");
}

TEST(PWServicePutUser, ReplacesEveryEntryOfTheName) {
    const Root root("root", "twin:x:1:1::/:/\nother:x:2:2::/:/\ntwin:y:3:3::/:/\nTwin:x:4:4::/:/\n");
    putUserInRoot(root.root(), "twin", 70);
    EXPECT_EQ(root.read(), lineOf("twin", 70) + "other:x:2:2::/:/\n" + lineOf("twin", 70) + "Twin:x:4:4::/:/\n");
}

TEST(PWServicePutUser, LeavesTheNewFileInPlace) {
    const Root root("root", threeUsers);
    putUserInRoot(root.root());
    EXPECT_EQ(Root::readFile(root.newFile()), root.read());
    EXPECT_EQ(root.tree().size(), 4u);
}

TEST(PWServicePutUser, OverwritesALongerNewFileThatIsLeftOver) {
    const Root root("root", threeUsers);
    Root::writeFile(root.newFile(), manyUsers(50));
    putUserInRoot(root.root());
    EXPECT_EQ(Root::readFile(root.newFile()), threeUsers + lineOf("added", 2000));
    EXPECT_EQ(root.read(), threeUsers + lineOf("added", 2000));
}

TEST(PWServicePutUser, WritesNullTextsAsEmptyFields) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        PW user;
        user.m_passwd.pw_name = user.newString("bare");
        user.m_passwd.pw_uid = 5;
        user.m_passwd.pw_gid = 6;
        PWService::putUser(&user);
    });
    EXPECT_EQ(root.read(), std::string(threeUsers) + "bare::5:6:::\n");
}

TEST(PWServicePutUser, KeepsThousandsOfUsers) {
    const std::string content = manyUsers(3000);
    const Root root("root", content);
    putUserInRoot(root.root(), "user1500", 9000);
    const std::vector<std::string> users = usersOf(root.file());
    ASSERT_EQ(users.size(), 3000u);
    EXPECT_EQ(users[1500], "user1500:pw:9000:9001:Real Name:/home:/bin/sh");
    EXPECT_EQ(users[1499], "user1499:x:1500:100:User:/home/user:/bin/sh");
    EXPECT_EQ(users[2999], "user2999:x:3000:100:User:/home/user:/bin/sh");
}

TEST(PWServicePutUser, IsSeenByTheNextRead) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        EXPECT_EQ(PWService::getUser("added"), nullptr);
        PW user;
        fill(user, "added", PWService::getHighestUID() + 1);
        PWService::putUser(&user);
        const PW* found = PWService::getUser("added");
        ASSERT_NE(found, nullptr);
        EXPECT_EQ(found->getUid(), 1003u);
        EXPECT_EQ(PWService::getHighestUID(), 1003u);
        PWService::delUser(&user);
        EXPECT_EQ(PWService::getUser("added"), nullptr);
    });
}

TEST(PWServicePutUser, LeavesTheGivenRecordAlone) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        PW user;
        fill(user, "monitor", 3000);
        const unsigned int used = user.used();
        PWService::putUser(&user);
        EXPECT_STREQ(user.getUserName(), "monitor");
        EXPECT_STREQ(user.getRealName(), "Real Name");
        EXPECT_EQ(user.getUid(), 3000u);
        EXPECT_EQ(user.used(), used);
    });
}

TEST(PWServicePutUser, AcceptsTheSharedRecord) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        PW* user = PWService::getUser("root");
        ASSERT_NE(user, nullptr);
        user->m_passwd.pw_gid = 77;
        user->m_passwd.pw_shell = user->newString("/bin/changed");
        PWService::putUser(user);
    });
    EXPECT_EQ(root.read(), "root:x:0:77:Root:/root:/bin/changed\n"
                           "monitor:$1$abc$def:1001:100:The Monitor:/home/monitor:/bin/rsh\n"
                           "guest:*:1002:100:Guest,Room 1:/home/guest:/bin/false\n");
}

TEST(PWServicePutUser, AcceptsTheSharedRecordUnderANewName) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        PW* user = PWService::getUser("guest");
        ASSERT_NE(user, nullptr);
        user->m_passwd.pw_name = user->newString("visitor");
        user->m_passwd.pw_uid = 4000;
        PWService::putUser(user);
    });
    EXPECT_EQ(root.read(), std::string(threeUsers) + "visitor:*:4000:100:Guest,Room 1:/home/guest:/bin/false\n");
}

TEST(PWServicePutUser, AcceptsTheSharedRecordWithTextsThatFillBothAreas) {
    const std::string realName(1900, 'g');
    const Root root("root", "long:x:6:1:" + realName + ":/:/\n");
    const std::string home(1000, 'h'), shell(1000, 's');
    inRoot(root.root(), [&] {
        PW* user = PWService::getUser("long");
        ASSERT_NE(user, nullptr);
        user->m_passwd.pw_dir = user->newString(home.c_str());
        user->m_passwd.pw_shell = user->newString(shell.c_str());
        PWService::putUser(user);
    });
    EXPECT_EQ(root.read(), "long:x:6:1:" + realName + ":" + home + ":" + shell + "\n");
}

TEST(PWServicePutUser, ChangesNothingForANullRecordOrName) {
    const Root root("root", threeUsers);
    const auto before = root.tree();
    inRoot(root.root(), [] {
        PW user;
        PWService::putUser(nullptr);
        PWService::delUser(nullptr);
        PWService::putUser(&user);
        PWService::delUser(&user);
    });
    EXPECT_EQ(root.tree(), before);
}

TEST(PWServiceDelUser, RemovesAllEntriesOfTheNameAndKeepsTheOrderOfTheOthers) {
    const Root root("root", "a:x:1:1::/:/\ntwin:x:2:2::/:/\nb:x:3:3::/:/\ntwin:x:4:4::/:/\nTwin:x:5:5::/:/\n");
    delUserInRoot(root.root(), "twin");
    EXPECT_EQ(root.read(), "a:x:1:1::/:/\nb:x:3:3::/:/\nTwin:x:5:5::/:/\n");
    EXPECT_EQ(Root::readFile(root.newFile()), root.read());
}

TEST(PWServiceDelUser, AddsNothingForAnAbsentName) {
    const Root root("root", threeUsers);
    delUserInRoot(root.root(), "nobody");
    EXPECT_EQ(root.read(), threeUsers);
}

TEST(PWServiceDelUser, RemovesTheLastUser) {
    const Root root("root", "only:x:1:1::/:/\n");
    delUserInRoot(root.root(), "only");
    EXPECT_EQ(root.read(), "");
    EXPECT_TRUE(std::filesystem::exists(root.file()));
}

TEST(PWServiceDelUser, AcceptsTheSharedRecord) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [] {
        PW* user = PWService::getUser("monitor");
        ASSERT_NE(user, nullptr);
        PWService::delUser(user);
    });
    EXPECT_EQ(root.read(), "root:x:0:0:Root:/root:/bin/sh\n"
                           "guest:*:1002:100:Guest,Room 1:/home/guest:/bin/false\n");
}

TEST(PWServiceRewrite, ReplacesTheContentsOfTheFileAndKeepsItsInodeAndMode) {
    const Root root("root", threeUsers);
    ASSERT_EQ(chmod(root.file().c_str(), 0640), 0);
    struct stat before = {}, after = {};
    ASSERT_EQ(stat(root.file().c_str(), &before), 0);
    putUserInRoot(root.root());
    ASSERT_EQ(stat(root.file().c_str(), &after), 0);
    EXPECT_EQ(before.st_ino, after.st_ino);
    EXPECT_EQ(before.st_mode, after.st_mode);
}

TEST(PWServiceRewrite, ReplacesTheTargetOfASymbolicLink) {
    const Root root;
    Root::writeFile(root.directory().path("real"), threeUsers);
    std::filesystem::create_symlink(root.directory().path("real"), root.file());
    putUserInRoot(root.root());
    EXPECT_TRUE(std::filesystem::is_symlink(root.file()));
    EXPECT_EQ(root.directory().read("real"), threeUsers + lineOf("added", 2000));
}

TEST(PWServiceRewrite, RunsTheCommandCpWithTheTwoNames) {
    const Root root("root", threeUsers);
    const std::string commands = root.directory().path("commands");
    std::filesystem::create_directory(commands);
    Root::writeFile(commands + "/cp", "#!/bin/sh\nfor word; do echo \"$word\"; done >\"$0.words\"\n");
    ASSERT_EQ(chmod((commands + "/cp").c_str(), 0755), 0);
    inRoot(root.root(), [&] {
        setenv("PATH", commands.c_str(), 1);
        PW user;
        fill(user, "added", 2000);
        PWService::putUser(&user);
    });
    EXPECT_EQ(Root::readFile(commands + "/cp.words"), root.newFile() + "\n" + root.file() + "\n");
    EXPECT_EQ(root.read(), threeUsers);
    EXPECT_EQ(Root::readFile(root.newFile()), threeUsers + lineOf("added", 2000));
}

TEST(PWServiceRewrite, WithoutTheCommandNothingIsLost) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        setenv("PATH", "/nonexistent", 1);
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        expectOneError(log, putUserName, notCopied(root));
    });
    EXPECT_EQ(root.read(), threeUsers);
    EXPECT_EQ(Root::readFile(root.newFile()), threeUsers + lineOf("added", 2000));
}

TEST(PWServiceRewrite, TruncatedCopyIsLoggedEvenIfTheCommandReportsSuccess) {
    for (const char* cut : {"head -c 40 \"$1\" >\"$2\"\n", "head -c 40 \"$1\" >\"$2\"; exit 1\n",
                            "head -c 40 \"$1\" >\"$2\"; kill -9 $$\n", "tr a-z A-Z <\"$1\" >\"$2\"\n", ": >\"$2\"\n",
                            "cat \"$1\" \"$1\" >\"$2\"\n", "rm \"$2\"\n", "exit 0\n"}) {
        SCOPED_TRACE(cut);
        const Root root("root", threeUsers);
        const std::string commands = replaceCp(root, cut);
        inRoot(root.root(), [&] {
            setenv("PATH", commands.c_str(), 1);
            PW user;
            fill(user, "guest", 2000);
            const test::LogCapture log;
            PWService::delUser(&user);
            expectOneError(log, delUserName, notCopied(root));
        });
        EXPECT_EQ(usersOf(root.newFile()).size(), 2u);
    }
}

TEST(PWServiceRewrite, CompleteCopyIsNotLoggedAsAFailure) {
    // A complete copy is recognized even if the command fails or the process ignores SIGCHLD.
    const Root root("root", threeUsers);
    const std::string commands = replaceCp(root, "cat \"$1\" >\"$2\"; exit 1\n");
    inRoot(root.root(), [&] {
        const std::string path = getenv("PATH");
        setenv("PATH", commands.c_str(), 1);
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        EXPECT_EQ(log.count(), 0u);
        EXPECT_EQ(root.read(), threeUsers + lineOf("added", 2000));
        setenv("PATH", path.c_str(), 1);
        signal(SIGCHLD, SIG_IGN);
        PWService::delUser(&user);
        EXPECT_EQ(log.count(), 0u);
        EXPECT_EQ(root.read(), threeUsers);
    });
}

// --- what is on the disk

TEST(PWServiceSync, NewFileAndItsFolderAreSyncedInThisOrderBeforeTheCopy) {
    const Root root("root", threeUsers);
    std::vector<std::string> synced;
    inRoot(root.root(), [&] {
        beforeCall = [&](const char* call, int fd) {
            if (std::string(call) == "fsync") {
                synced.push_back(pathOf(fd));
                EXPECT_EQ(Root::readFile(root.newFile()), threeUsers + lineOf("added", 2000));
                EXPECT_EQ(root.read(), threeUsers);
            }
            return 0;
        };
        PW user;
        fill(user, "added", 2000);
        PWService::putUser(&user);
        EXPECT_EQ(synced, (std::vector<std::string>{root.newFile(), root.root() + "/etc"}));
    });
    EXPECT_EQ(root.read(), threeUsers + lineOf("added", 2000));
}

TEST(PWServiceSync, IsRepeatedWhereASignalInterruptsIt) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        int calls = 0;
        beforeCall = [&](const char* call, int) {
            return std::string(call) == "fsync" && ++calls % 2 == 1 ? EINTR : 0;
        };
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        EXPECT_EQ(calls, 4);
        EXPECT_EQ(log.count(), 0u);
    });
    EXPECT_EQ(root.read(), threeUsers + lineOf("added", 2000));
}

TEST(PWServiceSync, FolderThatCannotBeSyncedKeepsTheNewFileAndTheFile) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        beforeCall = [&](const char* call, int fd) {
            return std::string(call) == "fsync" && pathOf(fd) == root.root() + "/etc" ? EIO : 0;
        };
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        expectOneError(log, putUserName,
                       root.file() +
                           " is unchanged: the folder of its new file cannot be synced to disk (Input/output error); " +
                           root.newFile() + " holds the complete new text: copy it by hand, or try again");
    });
    EXPECT_EQ(root.read(), threeUsers);
    EXPECT_EQ(Root::readFile(root.newFile()), threeUsers + lineOf("added", 2000));
}

TEST(PWServiceSync, FileSystemThatCannotSyncFoldersDoesNotPreventARewrite) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        beforeCall = [&](const char* call, int fd) {
            return std::string(call) == "fsync" && pathOf(fd) == root.root() + "/etc" ? EINVAL : 0;
        };
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        EXPECT_EQ(log.count(), 0u);
    });
    EXPECT_EQ(root.read(), threeUsers + lineOf("added", 2000));
}

TEST(PWServiceSync, FolderThatMayNotBeReadIsSyncedWithItsFileSystem) {
    for (const int failure : {0, EIO}) {
        const Root root("root", threeUsers);
        ASSERT_EQ(chmod(root.directory().path().c_str(), 0755), 0);
        ASSERT_EQ(chmod((root.root() + "/etc").c_str(), 0333), 0);
        ASSERT_EQ(chmod(root.file().c_str(), 0666), 0);
        inRoot(root.root(), [&] {
            test::becomeOrdinaryUser();
            int synced = 0;
            beforeCall = [&](const char* call, int fd) {
                if (std::string(call) != "syncfs")
                    return 0;
                ++synced;
                EXPECT_EQ(test::descriptorsOf(root.newFile()), std::vector<int>{fd});
                return failure;
            };
            PW user;
            fill(user, "added", 2000);
            const test::LogCapture log;
            PWService::putUser(&user);
            EXPECT_EQ(synced, 1);
            EXPECT_EQ(log.count(), failure != 0 ? 1u : 0u);
        });
        ASSERT_EQ(chmod((root.root() + "/etc").c_str(), 0755), 0);
        EXPECT_EQ(root.read(), failure != 0 ? threeUsers : threeUsers + lineOf("added", 2000));
        EXPECT_EQ(Root::readFile(root.newFile()), threeUsers + lineOf("added", 2000));
    }
}

// --- closed standard streams

TEST(PWServiceClosedStreams, WhatIsLoggedReachesNoFile) {
    // The default sink writes every trace to standard error while the new file is open.
    for (const int first : {0, 1, 2}) {
        const Root root("root", threeUsers);
        inRoot(root.root(), [&] {
            const test::DebugSwitch service(484);
            const test::DebugSwitch dump(483);
            PW user;
            fill(user, "monitor", 2000);
            for (int fd = first; fd <= STDERR_FILENO; ++fd)
                close(fd);
            EXPECT_NE(PWService::getUser("guest"), nullptr);
            PWService::putUser(&user);
            fill(user, "root", 2000);
            PWService::delUser(&user);
            for (int fd = first; fd <= STDERR_FILENO; ++fd)
                EXPECT_FALSE(test::isOpenDescriptor(fd));
        });
        EXPECT_EQ(root.read(), lineOf("monitor", 2000) + "guest:*:1002:100:Guest,Room 1:/home/guest:/bin/false\n");
        EXPECT_EQ(Root::readFile(root.newFile()), root.read());
    }
}

// --- rewrites that fail

TEST(PWServiceFailure, MissingFileIsNotCreated) {
    expectUnchanged(Root(), notOpened("No such file or directory"));
}

TEST(PWServiceFailure, FileThatIsNotRegularIsLeftAlone) {
    const Root directory;
    std::filesystem::create_directory(directory.file());
    expectUnchanged(directory, notOpened("Invalid argument"));
    const Root pipe;
    ASSERT_EQ(mkfifo(pipe.file().c_str(), 0600), 0);
    expectUnchanged(pipe, notOpened("Invalid argument"));
}

TEST(PWServiceFailure, NewFileOfWhichACallFailsIsRemoved) {
    const struct {
        const char* call;
        std::string problem;
    } cases[] = {{"fchmod", notMade("Input/output error")},
                 {"fsync", notWritten("Input/output error")},
                 {"fclose", notWritten("Input/output error")}};
    for (const auto& [call, problem] : cases) {
        SCOPED_TRACE(call);
        const Root root("root", threeUsers);
        expectUnchanged(root, problem, [&root, failing = std::string(call)] {
            beforeCall = [&root, failing](const char* each, int fd) {
                return each == failing && pathOf(fd) == root.newFile() ? EIO : 0;
            };
        });
    }
}

TEST(PWServiceFailure, NewFileThatDoesNotFitOnTheDiskIsRemoved) {
    const Root root;
    const test::ChildResult child = test::runInChild([&] { return test::mountSmallDisk(root.root(), 3) ? 0 : 1; });
    if (child.status != 0)
        GTEST_SKIP() << "this user cannot mount a small disk";
    inRoot(root.root(), [&] {
        ASSERT_TRUE(test::mountSmallDisk(root.root(), 3));
        ASSERT_TRUE(std::filesystem::create_directory(root.root() + "/etc"));
        // The file uses two pages, which leaves one for the new file.
        const std::string content = manyUsers(2 * getpagesize() / 48);
        ASSERT_GT(content.size(), static_cast<std::size_t>(getpagesize()) + 100);
        root.write(content);
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        expectOneError(log, putUserName, root.file() + " is unchanged: " + notWritten("No space left on device"));
        EXPECT_EQ(root.read(), content);
        EXPECT_FALSE(std::filesystem::exists(root.newFile()));
    });
}

TEST(PWServiceFailure, CopyThatDoesNotFitOnTheDiskLeavesTheNewFileComplete) {
    const Root root;
    const test::ChildResult child = test::runInChild([&] { return test::mountSmallDisk(root.root(), 3) ? 0 : 1; });
    if (child.status != 0)
        GTEST_SKIP() << "this user cannot mount a small disk";
    inRoot(root.root(), [&] {
        ASSERT_TRUE(test::mountSmallDisk(root.root(), 3));
        ASSERT_TRUE(std::filesystem::create_directory(root.root() + "/etc"));
        // The file uses one page, the new file two, and the longer file would need a second one.
        std::string content = manyUsers(getpagesize() / 48);
        content += "last:x:1:1:" + std::string(getpagesize() - content.size() - 20, 'g') + ":/:/\n";
        ASSERT_LE(content.size(), static_cast<std::size_t>(getpagesize()));
        root.write(content);
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        expectOneError(log, putUserName, notCopied(root));
        EXPECT_EQ(Root::readFile(root.newFile()), content + lineOf("added", 2000));
        EXPECT_LT(root.read().size(), content.size() + lineOf("added", 2000).size());
    });
}

TEST(PWServiceFailure, FullDiskLeavesTheFileAsItWas) {
    for (const rlim_t limit : {rlim_t{0}, rlim_t{1}, rlim_t{100}, rlim_t{4096}, rlim_t{20000}}) {
        SCOPED_TRACE(limit);
        const std::string content = manyUsers(limit < 4096 ? 6 : 1000);
        const Root root("root", content);
        const auto onFullDisk = [&](void (*rewrite)(PW*), const char* name) {
            inRoot(root.root(), [&] {
                signal(SIGXFSZ, SIG_IGN);
                rlimit full = {};
                ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &full), 0);
                const rlim_t former = full.rlim_cur;
                full.rlim_cur = limit;
                ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
                PW user;
                fill(user, name, 2000);
                const test::LogCapture log;
                rewrite(&user);
                full.rlim_cur = former;
                ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &full), 0);
                EXPECT_EQ(linesOf(log), std::vector<std::string>{"0 " + root.file() +
                                                                 " is unchanged: " + notWritten("File too large")});
            });
            EXPECT_FALSE(std::filesystem::exists(root.newFile()));
        };
        onFullDisk(PWService::putUser, "added");
        EXPECT_EQ(root.read(), content);
        onFullDisk(PWService::putUser, "user1");
        EXPECT_EQ(root.read(), content);
        onFullDisk(PWService::delUser, "user1");
        EXPECT_EQ(root.read(), content);
    }
}

TEST(PWServiceFailure, FileThatFailsWhileItIsReadIsNotReplaced) {
    // A regular file that can be opened, but its first byte cannot be read.
    const Root root;
    std::filesystem::create_symlink("/proc/self/mem", root.file());
    const std::string commands = root.directory().path("commands");
    std::filesystem::create_directory(commands);
    Root::writeFile(commands + "/cp", "#!/bin/sh\n: >\"$0.ran\"\n");
    ASSERT_EQ(chmod((commands + "/cp").c_str(), 0755), 0);
    inRoot(root.root(), [&] {
        setenv("PATH", commands.c_str(), 1);
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        expectOneError(log, putUserName,
                       root.file() +
                           " is unchanged: it cannot be read to its end (Input/output error); check its disk");
        PWService::delUser(&user);
    });
    EXPECT_FALSE(std::filesystem::exists(root.newFile()));
    EXPECT_FALSE(std::filesystem::exists(commands + "/cp.ran"));
}

TEST(PWServiceFailure, FieldThatTheWriterRefusesLeavesTheFileAsItWas) {
    const Root root("root", threeUsers);
    for (const char* bad : {"with:colon", "with\nline", ":", "\n", "root:x:0:0::/:/bin/sh\nx"}) {
        SCOPED_TRACE(bad);
        for (char* passwd::*field : {&passwd::pw_name, &passwd::pw_passwd, &passwd::pw_dir, &passwd::pw_shell}) {
            for (const char* name : {"monitor", "added"}) {
                inRoot(root.root(), [&] {
                    PW user;
                    fill(user, name, 2000);
                    user.m_passwd.*field = user.newString(bad);
                    const test::LogCapture log;
                    PWService::putUser(&user);
                    expectOneError(log, putUserName,
                                   root.file() + " is unchanged: the given user cannot be written (Invalid argument); "
                                                 "use fields without ':' and newline");
                });
                EXPECT_EQ(root.read(), threeUsers);
                EXPECT_FALSE(std::filesystem::exists(root.newFile()));
            }
        }
    }
}

TEST(PWServiceFailure, EntryThatIsReadButNotWrittenLeavesTheFileAsItWas) {
    // The shell is parsed as everything after the sixth colon, but must not contain a colon when it is written.
    const std::string content = std::string(threeUsers) + "more:x:3:1:g:/:/:more:fields\nlast:x:4:1::/:/\n";
    const Root root("root", content);
    ASSERT_EQ(usersOf(root.file()).size(), 5u);
    expectUnchanged(root, "the entry of user more cannot be written (Invalid argument); remove ':' from its fields, or "
                          "delete the user");
    for (const char* name : {"added", "last"}) {
        putUserInRoot(root.root(), name);
        EXPECT_EQ(root.read(), content) << name;
        delUserInRoot(root.root(), name);
        EXPECT_EQ(root.read(), content) << name;
    }
    delUserInRoot(root.root(), "more");
    EXPECT_EQ(root.read(), std::string(threeUsers) + "last:x:4:1::/:/\n");
}

TEST(PWServiceFailure, RealNameGoesThroughThePlatformsWriter) {
    const Root root("root", "");
    std::FILE* reference = std::fopen(root.directory().path("reference").c_str(), "w");
    ASSERT_NE(reference, nullptr);
    PW user;
    fill(user, "added", 2000);
    user.m_passwd.pw_gecos = user.newString("with:colon\nand line");
    const bool taken = putpwent(&user.m_passwd, reference) == 0;
    ASSERT_EQ(std::fclose(reference), 0);
    inRoot(root.root(), [&] { PWService::putUser(&user); });
    EXPECT_EQ(root.read(), taken ? root.directory().read("reference") : "");
    EXPECT_LE(usersOf(root.file()).size(), 1u);
}

TEST(PWServiceFailure, NewFileThatIsADirectoryLeavesTheFileAsItWas) {
    const Root root("root", threeUsers);
    std::filesystem::create_directory(root.newFile());
    expectUnchanged(root, notMade("File exists"));
}

TEST(PWServiceFailure, NewFileThatIsALinkToAnotherFileLeavesThatFileAsItWas) {
    const Root root("root", threeUsers);
    Root::writeFile(root.directory().path("victim"), "precious\n");
    std::filesystem::create_symlink(root.directory().path("victim"), root.newFile());
    putUserInRoot(root.root());
    EXPECT_EQ(root.directory().read("victim"), "precious\n");
    const std::string content = root.read();
    EXPECT_TRUE(content == threeUsers || content == threeUsers + lineOf("added", 2000)) << content;
}

TEST(PWServiceFailure, NewFileThatIsAHardLinkToAnotherFileLosesNoUser) {
    const Root root("root", threeUsers);
    std::filesystem::create_hard_link(root.file(), root.newFile());
    putUserInRoot(root.root());
    const std::string content = root.read();
    EXPECT_TRUE(content == threeUsers || content == threeUsers + lineOf("added", 2000)) << content;
}

TEST(PWServiceFailure, NewFileThatIsALinkToTheFileItselfLosesNoUser) {
    const Root root("root", threeUsers);
    std::filesystem::create_symlink("passwd", root.newFile());
    putUserInRoot(root.root());
    const std::string content = root.read();
    EXPECT_TRUE(content == threeUsers || content == threeUsers + lineOf("added", 2000)) << content;
}

TEST(PWServiceFailure, NewFileThatIsAPipeDoesNotBlockTheCaller) {
    const Root root("root", threeUsers);
    ASSERT_EQ(mkfifo(root.newFile().c_str(), 0600), 0);
    const test::ChildResult child = test::runInChild(
        [&] {
            setenv("VX_ROOT", root.root().c_str(), 1);
            PW user;
            fill(user, "added", 2000);
            PWService::putUser(&user);
        },
        std::chrono::seconds(30));
    EXPECT_FALSE(child.timedOut);
    const std::string content = root.read();
    EXPECT_TRUE(content == threeUsers || content == threeUsers + lineOf("added", 2000)) << content;
}

TEST(PWServiceFailure, UnwritableDirectoryLeavesTheFileAsItWas) {
    const Root root("root", threeUsers);
    // Even if the tests run as root, the scenario does not.
    ASSERT_EQ(chmod(root.directory().path().c_str(), 0755), 0);
    ASSERT_EQ(chmod(root.file().c_str(), 0666), 0);
    ASSERT_EQ(chmod((root.root() + "/etc").c_str(), 0555), 0);
    expectUnchanged(root, notMade("Permission denied"), test::becomeOrdinaryUser);
    EXPECT_EQ(root.read(), threeUsers);
    EXPECT_EQ(root.tree().size(), 3u);
    ASSERT_EQ(chmod((root.root() + "/etc").c_str(), 0755), 0);
}

TEST(PWServiceFailure, UnreadableFileIsNotReplacedByAnEmptyOne) {
    const Root root("root", threeUsers);
    ASSERT_EQ(chmod(root.directory().path().c_str(), 0755), 0);
    ASSERT_EQ(chmod((root.root() + "/etc").c_str(), 0777), 0);
    ASSERT_EQ(chmod(root.file().c_str(), 0222), 0);
    inRoot(root.root(), [&] {
        test::becomeOrdinaryUser();
        EXPECT_EQ(PWService::getUser("root"), nullptr);
        EXPECT_EQ(PWService::getHighestUID(), 0u);
        PW user;
        fill(user, "added", 2000);
        const test::LogCapture log;
        PWService::putUser(&user);
        expectOneError(log, putUserName, root.file() + " is unchanged: " + notOpened("Permission denied"));
    });
    ASSERT_EQ(chmod(root.file().c_str(), 0644), 0);
    EXPECT_EQ(root.read(), threeUsers);
    EXPECT_EQ(root.tree().size(), 3u);
}

// --- who may read the new file

TEST(PWServiceMode, NewFileIsNotMoreReadableThanTheFile) {
    for (const mode_t mode : {0600, 0640, 0644, 0400}) {
        SCOPED_TRACE(mode);
        const Root root("root", threeUsers);
        ASSERT_EQ(chmod(root.file().c_str(), mode), 0);
        inRoot(root.root(), [] {
            umask(0);
            PW user;
            fill(user, "added", 2000);
            PWService::putUser(&user);
        });
        EXPECT_TRUE(std::filesystem::exists(root.newFile()));
        EXPECT_EQ(permissionsOf(root.newFile()) & ~mode & 077u, 0u) << std::oct << permissionsOf(root.newFile());
        EXPECT_EQ(permissionsOf(root.file()), mode);
    }
}

TEST(PWServiceMode, NewFileIsOpenToItsOwnerAlone) {
    // Its group may differ from that of the file: a set-group-ID directory passes on its own.
    for (const mode_t mode : {0640, 0644, 0666, 0604, 0777}) {
        SCOPED_TRACE(mode);
        const Root root("root", threeUsers);
        ASSERT_EQ(chmod(root.file().c_str(), mode), 0);
        {
            const test::Umask mask(0);
            putUserInRoot(root.root());
        }
        EXPECT_EQ(permissionsOf(root.newFile()), 0600u) << std::oct << permissionsOf(root.newFile());
        EXPECT_EQ(permissionsOf(root.file()), mode);
        EXPECT_EQ(root.read(), threeUsers + lineOf("added", 2000));
    }
}

TEST(PWServiceMode, StaleNewFileThatAllMayReadIsClosedToThem) {
    const Root root("root", threeUsers);
    ASSERT_EQ(chmod(root.file().c_str(), 0600), 0);
    Root::writeFile(root.newFile(), "stale\n");
    ASSERT_EQ(chmod(root.newFile().c_str(), 0666), 0);
    inRoot(root.root(), [] {
        umask(0);
        PW user;
        fill(user, "added", 2000);
        PWService::putUser(&user);
    });
    EXPECT_EQ(permissionsOf(root.newFile()) & 077u, 0u) << std::oct << permissionsOf(root.newFile());
    EXPECT_EQ(root.read(), threeUsers + lineOf("added", 2000));
}

TEST(PWServiceMode, ReaderOfTheStaleNewFileSeesNoPassword) {
    const Root root("root", threeUsers);
    ASSERT_EQ(chmod(root.file().c_str(), 0600), 0);
    Root::writeFile(root.newFile(), "");
    ASSERT_EQ(chmod(root.newFile().c_str(), 0666), 0);
    std::FILE* open = std::fopen(root.newFile().c_str(), "r");
    ASSERT_NE(open, nullptr);
    putUserInRoot(root.root());
    char text[64] = "";
    EXPECT_EQ(std::fread(text, 1, sizeof text - 1, open), 0u) << text;
    std::fclose(open);
}

TEST(PWServiceMode, IsKeptWhileTheCommandRuns) {
    const Root root("root", threeUsers);
    ASSERT_EQ(chmod(root.file().c_str(), 0600), 0);
    const std::string commands = root.directory().path("commands");
    std::filesystem::create_directory(commands);
    Root::writeFile(commands + "/cp", "#!/bin/sh\nPATH=/usr/bin:/bin\nls -l \"$1\" >\"$0.mode\"\n");
    ASSERT_EQ(chmod((commands + "/cp").c_str(), 0755), 0);
    inRoot(root.root(), [&] {
        umask(0);
        setenv("PATH", commands.c_str(), 1);
        PW user;
        fill(user, "added", 2000);
        PWService::putUser(&user);
    });
    EXPECT_EQ(Root::readFile(commands + "/cp.mode").substr(0, 10), "-rw-------");
}

// --- hostile roots

// Puts and deletes users under a root named `name`, from its parent directory. Expects that only the password file and
// its new file change, and that the file is complete. Returns whether it was changed.
bool isChangedUnderRoot(const std::string& name, bool relative) {
    SCOPED_TRACE(name + (relative ? " relative" : " absolute"));
    const Root root(name, threeUsers);
    Root::writeFile(root.directory().path("a"), "precious a\n");
    Root::writeFile(root.directory().path("b"), "precious b\n");
    std::filesystem::create_directory(root.directory().path("c"));
    auto before = root.tree();
    inRoot(relative ? name : root.root(), [&] {
        ASSERT_EQ(chdir(root.directory().path().c_str()), 0);
        EXPECT_NE(PWService::getUser("root"), nullptr);
        PW user;
        fill(user, "added", 2000);
        PWService::putUser(&user);
    });
    auto after = root.tree();
    const std::string key = "/" + name + "/etc/passwd";
    const std::string content = after[key];
    EXPECT_TRUE(content == threeUsers || content == threeUsers + lineOf("added", 2000)) << content;
    EXPECT_EQ(after[key + ".new"], threeUsers + lineOf("added", 2000));
    for (auto* tree : {&before, &after}) {
        tree->erase(key);
        tree->erase(key + ".new");
    }
    EXPECT_EQ(after, before);
    return content != threeUsers;
}

TEST(PWServiceHostileRoot, ReachesNoShell) {
    for (const char* name : {"$(touch${IFS}x)",
                             "`touch${IFS}x`",
                             "r;touch${IFS}x;",
                             "r&touch",
                             "r|touch",
                             "r>x",
                             "r<x",
                             "r*",
                             "r?",
                             "r[ab]",
                             "r\\",
                             "r'q'",
                             "r\"q\"",
                             "~",
                             "#r",
                             "$HOME",
                             "r{a,b}",
                             "!r",
                             "%s%n",
                             "-",
                             "--",
                             "r=1",
                             "\xC3\xA4\xFF\x01"})
        EXPECT_TRUE(isChangedUnderRoot(name, false)) << name;
}

TEST(PWServiceHostileRoot, ReachesNoShellAndLosesNothingWithBlanksAndQuotes) {
    for (const char* name : {"a b",
                             "a b ",
                             " a",
                             "a  b",
                             "a\tb",
                             "a\nb",
                             "r\" \"q",
                             "\"r\"",
                             "\"",
                             "'",
                             "' '",
                             "\" a b \"",
                             "a;touch x",
                             "a; touch x ;",
                             "$(touch x)",
                             "`touch x`",
                             "a && touch x",
                             "a | touch x",
                             "a > x",
                             "c -t",
                             "a -t c",
                             "a c",
                             "a --target-directory=c b",
                             "a -rf",
                             "a -f b",
                             "a --remove-destination b",
                             "a -s b",
                             "a -l b",
                             "a -b -S x b"}) {
        isChangedUnderRoot(name, false);
        isChangedUnderRoot(name, true);
    }
}

TEST(PWServiceHostileRoot, ThatNoCommandCanNameIsLoggedAtLevel0) {
    for (const char* name : {"a b\"c", "\" \""}) {
        const Root root(name, threeUsers);
        const std::string complaints = root.directory().path("complaints");
        inRoot(root.root(), [&] {
            PW user;
            fill(user, "added", 2000);
            const test::LogCapture log;
            // If the command ran nevertheless, it would report an error.
            dup2(open(complaints.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600), STDERR_FILENO);
            PWService::putUser(&user);
            expectOneError(
                log, putUserName,
                root.file() + " is unchanged: no command can name it, because of a double quote in its path; " +
                    root.newFile() + " holds the complete new text: copy it by hand, or use another VX_ROOT");
        });
        EXPECT_EQ(Root::readFile(root.newFile()), threeUsers + lineOf("added", 2000));
        EXPECT_EQ(Root::readFile(complaints), "");
        EXPECT_EQ(root.read(), threeUsers);
    }
}

TEST(PWServiceHostileRoot, LosesNothingWithALeadingDash) {
    for (const char* name :
         {"-r", "-rf", "--help", "-t", "--target-directory=c", "-b", "--backup", "-s", "-l", "--", "-"})
        isChangedUnderRoot(name, true);
}

TEST(PWServiceHostileRoot, LosesNothingWhenTheNamesDoNotFit) {
    // The new name is limited to 255 characters: a longer name must not be truncated to the name of another file.
    for (std::size_t length = 240; length <= 300; ++length) {
        SCOPED_TRACE(length);
        const test::TemporaryDirectory directory;
        const std::string tail = "/etc/passwd";
        ASSERT_LT(directory.path().size() + tail.size() + 4, length);
        std::string name = directory.path() + "/";
        std::size_t filler = length - name.size() - tail.size();
        if (filler > 200) {
            name += std::string(100, 'r') + "/";
            filler -= 101;
        }
        name += std::string(filler, 'r');
        std::filesystem::create_directories(name + "/etc");
        const std::string path = name + tail;
        ASSERT_EQ(path.size(), length);
        Root::writeFile(path, threeUsers);
        // The first 255 characters of the new name, if they name another file.
        const std::string cut = (path + ".new").substr(0, 255);
        const bool victim = cut != path && cut != path + ".new" && !std::filesystem::exists(cut) &&
                            std::filesystem::is_directory(std::filesystem::path(cut).parent_path());
        if (victim)
            Root::writeFile(cut, "precious\n");
        putUserInRoot(name);
        const std::string content = Root::readFile(path);
        if (length + 4 <= 255) {
            EXPECT_EQ(content, threeUsers + lineOf("added", 2000));
            EXPECT_EQ(Root::readFile(path + ".new"), content);
        } else {
            EXPECT_TRUE(content == threeUsers || content == threeUsers + lineOf("added", 2000)) << content;
        }
        if (victim && length >= 255) {
            EXPECT_EQ(Root::readFile(cut), "precious\n");
        }
    }
}

TEST(PWServiceHostileRoot, ThatIsTooLongForThePlatformChangesNothing) {
    for (const std::size_t length : {std::size_t{4096}, std::size_t{100000}})
        inRoot("/tmp/" + std::string(length, 'r'), [&] {
            EXPECT_EQ(std::strlen(PWService::getFileName()), 5 + length + 11);
            EXPECT_EQ(PWService::getUser("root"), nullptr);
            EXPECT_EQ(PWService::getHighestUID(), 0u);
            PW user;
            fill(user, "added", 2000);
            const test::LogCapture log;
            PWService::putUser(&user);
            expectOneError(
                log, putUserName,
                std::string(PWService::getFileName()) +
                    " is unchanged: its new file cannot be made (File name too long); use a shorter VX_ROOT");
            PWService::delUser(&user);
        });
}

// --- traces

TEST(PWServiceTrace, OfGetUser) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        const test::DebugSwitch service(484);
        test::LogCapture log;
        PWService::getUser("monitor");
        EXPECT_EQ(linesOf(log),
                  (std::vector<std::string>{"3 search for monitor", "3 in file: " + root.file(), "3 found"}));
        log.clear();
        PWService::getUser("nobody");
        EXPECT_EQ(linesOf(log), (std::vector<std::string>{"3 search for nobody", "3 in file: " + root.file()}));
        log.clear();
        const test::DebugSwitch dump(483);
        PWService::getUser("monitor");
        EXPECT_EQ(linesOf(log), (std::vector<std::string>{"3 search for monitor", "3 in file: " + root.file(),
                                                          "3 PW - user: monitor, pw: $1$abc$def, uid: 1001, gid: 100, "
                                                          "rn: The Monitor, dir: /home/monitor, sh: /bin/rsh\n",
                                                          "3 found"}));
    });
}

TEST(PWServiceTrace, OfGetUserWithoutAFile) {
    const Root root;
    inRoot(root.root(), [&] {
        const test::DebugSwitch service(484);
        const test::LogCapture log;
        PWService::getUser("monitor");
        EXPECT_EQ(linesOf(log), (std::vector<std::string>{"3 search for monitor", "3 in file: " + root.file()}));
    });
}

TEST(PWServiceTrace, OfRecordsAlone) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        const test::DebugSwitch dump(483);
        const test::LogCapture log;
        PWService::getUser("root");
        PWService::getHighestUID();
        EXPECT_EQ(linesOf(log), (std::vector<std::string>{"3 PW - user: root, pw: x, uid: 0, gid: 0, rn: Root, "
                                                          "dir: /root, sh: /bin/sh\n"}));
    });
}

TEST(PWServiceTrace, OfPutUser) {
    const std::string given = "3 PW - user: twin, pw: pw, uid: 70, gid: 71, rn: Real Name, dir: /home, sh: /bin/sh\n";
    const std::string first = "3 PW - user: twin, pw: x, uid: 1, gid: 2, rn: , dir: /, sh: /\n";
    const std::string second = "3 PW - user: twin, pw: y, uid: 3, gid: 4, rn: , dir: /, sh: /\n";
    const Root root("root", "twin:x:1:2::/:/\nother:x:2:2::/:/\ntwin:y:3:4::/:/\n");
    inRoot(root.root(), [&] {
        const test::DebugSwitch service(484);
        const test::DebugSwitch dump(483);
        const test::LogCapture log;
        PW user;
        fill(user, "twin", 70);
        PWService::putUser(&user);
        EXPECT_EQ(linesOf(log), (std::vector<std::string>{given, "3 search for twin", "3 in file: " + root.newFile(),
                                                          first, "3 found", second, "3 found"}));
    });
}

TEST(PWServiceTrace, OfDelUser) {
    const std::string given = "3 PW - user: twin, pw: pw, uid: 70, gid: 71, rn: Real Name, dir: /home, sh: /bin/sh\n";
    const std::string first = "3 PW - user: twin, pw: x, uid: 1, gid: 2, rn: , dir: /, sh: /\n";
    const Root root("root", "twin:x:1:2::/:/\nother:x:2:2::/:/\n");
    inRoot(root.root(), [&] {
        const test::DebugSwitch service(484);
        const test::DebugSwitch dump(483);
        const test::LogCapture log;
        PW user;
        fill(user, "twin", 70);
        PWService::delUser(&user);
        EXPECT_EQ(linesOf(log), (std::vector<std::string>{given, "3 search for twin", "3 in file: " + root.newFile(),
                                                          first, "3 found"}));
    });
}

TEST(PWServiceTrace, IsThatOfTheOperation) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        const test::DebugSwitch service(484);
        const auto expectFrom = [](const test::LogCapture& log, const char* function) {
            EXPECT_EQ(log.count(), 3u);
            for (const test::LogEntry& entry : log.entries()) {
                EXPECT_EQ(entry.function, function) << entry.text;
                EXPECT_GT(entry.line, 0) << entry.text;
            }
        };
        test::LogCapture log;
        PW user;
        fill(user, "monitor", 70);
        PWService::getUser("monitor");
        expectFrom(log, "static utility::PW* utility::PWService::getUser(const char*)");
        log.clear();
        PWService::putUser(&user);
        expectFrom(log, "static void utility::PWService::putUser(utility::PW*)");
        log.clear();
        PWService::delUser(&user);
        expectFrom(log, "static void utility::PWService::delUser(utility::PW*)");
    });
}

TEST(PWServiceTrace, OfARewriteThatFindsNoUser) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        const test::DebugSwitch service(484);
        test::LogCapture log;
        PW user;
        fill(user, "nobody", 70);
        PWService::putUser(&user);
        EXPECT_EQ(linesOf(log), (std::vector<std::string>{"3 search for nobody", "3 in file: " + root.newFile()}));
        log.clear();
        fill(user, "absent", 70);
        PWService::delUser(&user);
        EXPECT_EQ(linesOf(log), (std::vector<std::string>{"3 search for absent", "3 in file: " + root.newFile()}));
    });
}

TEST(PWServiceTrace, IsSilentWithBothSwitchesOff) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        const test::LogCapture log;
        PW user;
        fill(user, "monitor", 70);
        char hash[64];
        PWService::getFileName();
        PWService::getUser("monitor");
        PWService::getHighestUID();
        PWService::putUser(&user);
        PWService::delUser(&user);
        PWService::encryptPassword("secret", hash, sizeof hash);
        EXPECT_EQ(log.count(), 0u);
    });
}

// --- password hashes

constexpr const char* alphabet = "./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

std::string saltAt(std::int64_t time) {
    std::string salt;
    unsigned int shift = static_cast<unsigned int>(time & 7);
    for (int i = 0; i < 8; ++i) {
        const std::uint32_t value = static_cast<std::uint32_t>(time >> (shift * 8));
        salt += alphabet[value & 63];
        shift = value & 7;
    }
    return salt;
}

std::string encrypt(const std::string& plain) {
    char hash[128];
    EXPECT_EQ(PWService::encryptPassword(plain.c_str(), hash, sizeof hash), hash);
    return hash;
}

bool isInstalled(const char* program) {
    const test::ChildResult child = test::runInChild([&] {
        execlp(program, program, "version", static_cast<char*>(nullptr));
        return 127;
    });
    return child.status == 0;
}

// The hash that another program computes from the salt and the password.
std::string hashByOpenssl(const std::string& salt, const std::string& plain) {
    const test::TemporaryDirectory directory;
    directory.write("plain", plain + "\n");
    const test::ChildResult child = test::runInChild([&] {
        execlp("openssl", "openssl", "passwd", "-1", "-salt", salt.c_str(), "-in", directory.path("plain").c_str(),
               static_cast<char*>(nullptr));
        return 127;
    });
    EXPECT_EQ(child.status, 0) << child.err;
    return child.out.substr(0, child.out.find('\n'));
}

TEST(PWServiceEncryptPassword, HasTheFormOfAnMD5Hash) {
    for (int i = 0; i < 50; ++i) {
        const std::string hash = encrypt("secret");
        ASSERT_EQ(hash.size(), 34u);
        EXPECT_EQ(hash.substr(0, 3), "$1$");
        EXPECT_EQ(hash.substr(3, 8).find_first_not_of(alphabet), std::string::npos) << hash;
        EXPECT_EQ(hash[11], '$');
        EXPECT_EQ(hash.substr(12).find_first_not_of(alphabet), std::string::npos) << hash;
    }
}

TEST(PWServiceEncryptPassword, AgreesWithAnotherProgramForTheSameSalt) {
    if (!isInstalled("openssl"))
        GTEST_SKIP() << "no openssl program is installed to compare with";
    for (const char* plain :
         {"secret", "", "a", "with blank", "-dash", "quote\"'$(x)", "0123456789abcdef0123456789abcdef",
          "a password that is a good deal longer than one block of the digest would ever be, really", "p\xC3\xA4sswort",
          "\xFF\xFE\x80"}) {
        const std::string hash = encrypt(plain);
        ASSERT_EQ(hash.size(), 34u);
        EXPECT_EQ(hash, hashByOpenssl(hash.substr(3, 8), plain)) << plain;
    }
}

TEST(PWServiceEncryptPassword, DerivesItsSaltFromTheCurrentTime) {
    for (int i = 0; i < 20; ++i) {
        const std::int64_t before = utility::TimeMeasure::getTimestamp();
        const std::string salt = encrypt("secret").substr(3, 8);
        const std::int64_t after = utility::TimeMeasure::getTimestamp();
        bool found = false;
        for (std::int64_t time = before; time <= after && !found; ++time)
            found = saltAt(time) == salt;
        EXPECT_TRUE(found) << salt << " from " << before << " to " << after;
    }
}

TEST(PWServiceEncryptPassword, IsTruncatedAndTerminated) {
    for (unsigned int size = 1; size <= 40; ++size) {
        SCOPED_TRACE(size);
        test::GuardedText out(size);
        EXPECT_EQ(PWService::encryptPassword("secret", out.array(), out.size()), out.array());
        EXPECT_TRUE(out.isTerminated());
        EXPECT_TRUE(out.isGuardWhole());
        EXPECT_EQ(out.text().size(), std::min(size - 1, 34u));
        EXPECT_EQ(out.text().substr(0, 3), std::string("$1$").substr(0, size - 1));
    }
}

TEST(PWServiceEncryptPassword, WritesNothingWithoutABuffer) {
    test::GuardedText out(8);
    EXPECT_EQ(PWService::encryptPassword("secret", out.array(), 0), out.array());
    EXPECT_TRUE(out.isUntouched());
    EXPECT_EQ(PWService::encryptPassword("secret", nullptr, 0), nullptr);
}

TEST(PWServiceEncryptPassword, PlainTextMayOverlapTheResult) {
    if (!isInstalled("openssl"))
        GTEST_SKIP() << "no openssl program is installed to compare with";
    for (const std::size_t at : {0U, 5U}) {
        char text[64] = "secret secret";
        const std::string plain = text + at;
        EXPECT_EQ(PWService::encryptPassword(text + at, text, sizeof text), text);
        EXPECT_EQ(text, hashByOpenssl(std::string(text).substr(3, 8), plain)) << at;
    }
}

TEST(PWServiceEncryptPassword, FillsTheRestOfTheBufferWithNuls) {
    char out[64];
    std::memset(out, 'x', sizeof out);
    PWService::encryptPassword("secret", out, sizeof out);
    EXPECT_EQ(std::string(out + 34, sizeof out - 34), std::string(sizeof out - 34, '\0'));
}

TEST(PWServiceEncryptPassword, IsEmptyIfThePlainTextCannotBeHashed) {
    test::GuardedText null(64);
    EXPECT_EQ(PWService::encryptPassword(nullptr, null.array(), null.size()), null.array());
    EXPECT_TRUE(null.isTerminated());
    EXPECT_EQ(null.text(), "");
    const std::string tooLong(5000, 'p');
    test::GuardedText refused(64);
    EXPECT_EQ(PWService::encryptPassword(tooLong.c_str(), refused.array(), refused.size()), refused.array());
    EXPECT_TRUE(refused.isTerminated());
    EXPECT_EQ(refused.text(), "");
}

// --- exhausted memory

// Runs `operation` under a root of its own, in one process, with each of its allocations failing once. The file name is
// computed before. Calls `check` after each run.
template<typename Operation, class Check>
void withEachAllocationFailing(const Root& root, Operation operation, Check check) {
    inRoot(root.root(), [&] {
        ASSERT_NE(PWService::getFileName(), nullptr);
        const int before = lowestFreeDescriptor();
        const long outstanding = framework::Memory::staticOutstanding();
        const unsigned long failed = test::failEachAllocationOnce(
            [&] {
                try {
                    operation();
                } catch (const std::bad_alloc&) {
                    // The names and texts that it stores are `std::string`s.
                }
            },
            [&] {
                check();
                EXPECT_EQ(lowestFreeDescriptor(), before);
                EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
            });
        EXPECT_GE(failed, 1u);
    });
}

TEST(PWServiceMemory, WithoutItThereIsNoNameYet) {
    const Root root("root", threeUsers);
    inRoot(root.root(), [&] {
        PW user;
        fill(user, "added", 2000);
        // What is logged; without memory, nothing else can keep it.
        static char logged[1024];
        Logger::setSink(
            [](void*, Logger::LogType type, const char* function, int, const char* text) {
                const std::size_t used = std::strlen(logged);
                std::snprintf(logged + used, sizeof logged - used, "%d %s: %s\n", static_cast<int>(type), function,
                              text);
            },
            nullptr);
        {
            test::FailingAllocation failing(test::failAll);
            EXPECT_EQ(PWService::getFileName(), nullptr);
            EXPECT_EQ(PWService::getHighestUID(), 0u);
            EXPECT_EQ(PWService::getUser("root"), nullptr);
            PWService::putUser(&user);
            PWService::delUser(&user);
        }
        Logger::setSink(nullptr, nullptr);
        const std::string problem =
            ": the password file is unchanged: out of memory for its name; free memory and try again\n";
        EXPECT_EQ(logged, "0 static void utility::PWService::putUser(utility::PW*)" + problem +
                              "0 static void utility::PWService::delUser(utility::PW*)" + problem);
        EXPECT_EQ(root.read(), threeUsers);
        EXPECT_EQ(PWService::getFileName(), root.file());
        EXPECT_NE(PWService::getUser("root"), nullptr);
    });
}

TEST(PWServiceMemory, WithoutItAUserIsFoundOrNot) {
    const Root root("root", threeUsers);
    const std::string absent(300, 'a');
    const PW* user = nullptr;
    withEachAllocationFailing(
        root,
        [&] {
            user = nullptr;
            user = PWService::getUser("guest");
            EXPECT_EQ(PWService::getUser(absent.c_str()), nullptr);
        },
        [&] {
            user = PWService::getUser("guest");
            ASSERT_NE(user, nullptr);
            EXPECT_EQ(user->getUid(), 1002u);
        });
}

TEST(PWServiceMemory, WithoutItTheHighestNumberIsThatOfTheFileOrZero) {
    const Root root("root", threeUsers);
    unsigned int highest = 0;
    withEachAllocationFailing(
        root, [&] { highest = PWService::getHighestUID(); },
        [&] {
            EXPECT_TRUE(highest == 0 || highest == 1002u) << highest;
            EXPECT_EQ(PWService::getHighestUID(), 1002u);
        });
}

TEST(PWServiceMemory, WithoutItTheFileIsRewrittenWholeOrNotAtAll) {
    const std::string content = manyUsers(300);
    const Root root("root", content);
    PW user;
    fill(user, "added", 2000);
    user.m_passwd.pw_gecos = user.newString(std::string(300, 'g').c_str());
    const std::string added = "added:pw:2000:2001:" + std::string(300, 'g') + ":/home:/bin/sh\n";
    withEachAllocationFailing(
        root, [&] { PWService::putUser(&user); },
        [&] {
            const std::string now = root.read();
            EXPECT_TRUE(now == content || now == content + added) << now;
            EXPECT_TRUE(!std::filesystem::exists(root.newFile()) || Root::readFile(root.newFile()) == content + added);
            root.write(content);
        });
    const std::string first = manyUsers(1);
    fill(user, "user0", 1);
    root.write(content);
    withEachAllocationFailing(
        root, [&] { PWService::delUser(&user); },
        [&] {
            const std::string now = root.read();
            EXPECT_TRUE(now == content || now == content.substr(first.size())) << now;
            root.write(content);
        });
}

TEST(PWServiceMemory, WithoutItAHashIsEmpty) {
    char out[64];
    std::memset(out, 'x', sizeof out);
    const unsigned long failed =
        test::failEachAllocationOnce([&] { EXPECT_EQ(PWService::encryptPassword("secret", out, sizeof out), out); },
                                     [&] {
                                         EXPECT_STREQ(out, "");
                                         std::memset(out, 'x', sizeof out);
                                     });
    EXPECT_GE(failed, 1u);
    EXPECT_EQ(std::strlen(out), 34u);
}

} // namespace
