#include <chrono>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/OrdinaryUser.h"
#include "support/Pty.h"
#include "support/TemporaryDirectory.h"

namespace {

namespace fs = std::filesystem;
using test::ChildResult;
using test::Pty;

constexpr unsigned int nobody = 65534;

// A tree with the scripts of this one, and programs in place of those that install and build. Nothing else is on the
// path but what the scripts need.
//
// Files in the tree control the programs: packages are missing until "installed" exists, and each program waits while
// a file "hold" exists. A program that waits has its process number in "pid".
class Tree {
public:
    Tree() {
        fs::create_directories(m_directory.path("tree/bin"));
        fs::copy(VXUT_SOURCE_DIR "/scripts", m_directory.path("tree/scripts"), fs::copy_options::recursive);
        for (const char* tool :
             {"bash",    "cat",   "chmod", "cut",      "dirname", "dpkg",    "env", "flock", "getent", "grep", "id",
              "install", "mkdir", "nproc", "readlink", "rm",      "setpriv", "sh",  "sleep", "tee",    "test", "touch"})
            fs::create_symlink(findTool(tool), path("bin/") + tool);
        // First, so that the file exists as soon as the program has printed anything.
        const std::string announce = "echo $$ >" + path("pid") + "\n";
        const std::string wait = "while [ -e " + path("hold") + " ]; do sleep 0.05; done\n";
        program("dpkg-query", "[ ! -e " + path("installed") + " ] || echo 'installed all'\n");
        program("apt-get", announce + "echo 'Get:1 http://mirror.example cmake'\n" + wait +
                               "echo 'Unpacking cmake (3.25) ...'\necho $* >" + path("installed") + "\n");
        program("cmake", "if [ $1 = --preset ]; then mkdir -p build/release; exit; fi\n" + announce +
                             "echo '[0/2] Re-checking globbed directories...'\n"
                             "echo '[1/2] Building CXX object main.cpp.o'\n" +
                             wait + "mkdir -p " + path("build/release/examples/console") + "\ncd " +
                             path("build/release/examples/console") +
                             "\nrm -f vxconsole\n"
                             "printf '#!/bin/sh\\necho \"user $(id -u): $*\"\\n' >vxconsole\n"
                             "chmod 755 vxconsole\n"
                             "echo '[2/2] Linking CXX executable vxconsole'\n");
        m_directory.write("tree/CMakeLists.txt", "");
        makeAccessible();
    }

    std::string path(const std::string& name) const {
        return m_directory.path("tree/" + name);
    }
    void write(const std::string& name) const {
        m_directory.write("tree/" + name, "");
    }
    void remove(const std::string& name) const {
        fs::remove(path(name));
    }
    std::string read(const std::string& name) const {
        return m_directory.read("tree/" + name);
    }
    // Adds a program to the path.
    void program(const std::string& name, const std::string& script) const {
        const std::string file = m_directory.write("tree/bin/" + name, "#!/bin/sh\n" + script);
        ASSERT_EQ(chmod(file.c_str(), 0755), 0);
    }
    // Lets a user install packages.
    void grantSudo() const {
        program("sudo", "[ $1 != -v ] || exit 0\nshift\nexec \"$@\"\n");
    }

    std::vector<std::string> command() const {
        return {path("scripts/console"), "-c", "two words"};
    }
    std::function<void()> environment() const {
        const std::string bin = path("bin");
        return [bin] {
            setenv("PATH", bin.c_str(), 1);
            setenv("HOME", "/", 1);
            for (const char* name : {"SUDO_UID", "SUDO_GID", "SUDO_USER"})
                unsetenv(name);
        };
    }
    // Starts the console with its output on pipes; `prepare` runs in its process before.
    ChildResult start(const std::function<void()>& prepare = {}) const {
        const std::vector<std::string> words = command();
        return test::runInChild([&] {
            environment()();
            if (prepare)
                prepare();
            execl(words[0].c_str(), words[0].c_str(), words[1].c_str(), words[2].c_str(), static_cast<char*>(nullptr));
            return 127;
        });
    }

    // Whether the program that waits has ended.
    bool isEnded() const {
        const pid_t pid = static_cast<pid_t>(std::stol(read("pid")));
        for (int i = 0; i < 1000; ++i) {
            if (kill(pid, 0) != 0)
                return true;
            usleep(10000);
        }
        return false;
    }

private:
    static std::string findTool(const std::string& name) {
        for (const char* folder : {"/usr/bin/", "/bin/", "/usr/sbin/"}) {
            if (fs::exists(folder + name))
                return folder + name;
        }
        throw std::runtime_error("no " + name);
    }

    // An ordinary user may work in the tree too.
    void makeAccessible() const {
        fs::permissions(m_directory.path(), fs::perms(0755));
        fs::permissions(m_directory.path("tree"), fs::perms(0777));
    }

    test::TemporaryDirectory m_directory;
};

std::string answerOf(unsigned int user) {
    return "user " + std::to_string(user) + ": -c two words\n";
}

void expectNoInstallation(const Tree& tree) {
    const auto begin = std::chrono::steady_clock::now();
    const ChildResult child = tree.start(test::becomeOrdinaryUser);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "");
    EXPECT_EQ(child.err,
              "Packages are missing, and installing them needs root or sudo. Ask an administrator to run:\n"
              "    apt-get install cmake ninja-build g++ libcrypt-dev googletest libedit-dev nlohmann-json3-dev\n"
              "vxconsole could not be built; the messages above say why.\n");
}

// Types Ctrl-C at a set-up that shows `sign`.
void expectInterruption(const Tree& tree, const std::string& sign) {
    Pty terminal(tree.command(), 80, 25, tree.environment());
    terminal.expect(sign);
    const auto begin = std::chrono::steady_clock::now();
    terminal.type("\003");
    EXPECT_EQ(terminal.waitForChange().status, 130);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10));
    EXPECT_EQ(terminal.pending().find("vxconsole could not be built"), std::string::npos) << terminal.pending();
}

TEST(SetUp, ShowsItsProgressOnAPipeOnce) {
    const Tree tree;
    tree.grantSudo();
    const ChildResult first = tree.start();
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.out, answerOf(geteuid()));
    EXPECT_EQ(first.err, "Installing cmake ninja-build g++ libcrypt-dev googletest libedit-dev nlohmann-json3-dev\n"
                         "Get:1 http://mirror.example cmake\n"
                         "Unpacking cmake (3.25) ...\n"
                         "Building vxconsole\n"
                         "[1/2] Building CXX object main.cpp.o\n"
                         "[2/2] Linking CXX executable vxconsole\n");
    const std::string installed = tree.read("installed");
    EXPECT_NE(installed.find("install --no-install-recommends cmake ninja-build g++ libcrypt-dev googletest "
                             "libedit-dev nlohmann-json3-dev"),
              std::string::npos)
        << installed;
}

TEST(SetUp, ShowsItsProgressInOneLineOfATerminal) {
    const Tree tree;
    tree.write("installed");
    Pty terminal(tree.command(), 80, 25, tree.environment());
    EXPECT_EQ(terminal.expect("user "), "Building vxconsole\r\n"
                                        "\r\033[K[1/2] Building CXX object main.cpp.o"
                                        "\r\033[K[2/2] Linking CXX executable vxconsole\r\033[Kuser ");
    EXPECT_EQ(terminal.waitForChange().status, 0);
}

TEST(SetUp, AFailingBuildShowsWhatItPrinted) {
    const Tree tree;
    tree.write("installed");
    tree.program("cmake", "echo '[1/1] Building'\necho 'error: no such thing'\nexit 1\n");
    const ChildResult child = tree.start();
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "");
    EXPECT_NE(child.err.find("error: no such thing\nvxconsole could not be built; the messages above say why.\n"),
              std::string::npos)
        << child.err;
}

TEST(SetUp, WithoutRootOrSudoTheAnswerComesAtOnce) {
    const Tree tree;
    expectNoInstallation(tree);
    // Also in a tree that the user cannot write.
    fs::permissions(tree.path(""), fs::perms(0555));
    expectNoInstallation(tree);
    // Also with a sudo that does not know the user.
    tree.program("sudo", "exit 1\n");
    expectNoInstallation(tree);
}

TEST(SetUp, TheInterruptKeyEndsABuild) {
    const Tree tree;
    tree.write("installed");
    tree.write("hold");
    expectInterruption(tree, "[1/2]");
    EXPECT_TRUE(tree.isEnded());
    tree.remove("hold");
    EXPECT_EQ(tree.start().out, answerOf(geteuid()));
}

TEST(SetUp, TheInterruptKeyEndsAnInstallationWithoutAnotherAttempt) {
    const Tree tree;
    tree.grantSudo();
    tree.write("hold");
    expectInterruption(tree, "Get:1");
    EXPECT_TRUE(tree.isEnded());
    tree.remove("hold");
    EXPECT_FALSE(fs::exists(tree.path("installed")));
}

TEST(SetUp, TheInterruptKeyEndsAnInstallationBetweenTwoAttempts) {
    const Tree tree;
    tree.grantSudo();
    tree.program("apt-get", "echo 'E: no network'\nexit 100\n");
    expectInterruption(tree, "Trying again in 5 s");
}

TEST(SetUp, ASecondStartSaysThatItWaitsForTheFirst) {
    const Tree tree;
    tree.write("installed");
    tree.write("hold");
    Pty first(tree.command(), 80, 25, tree.environment());
    first.expect("[1/2]");
    expectInterruption(tree, "Waiting for another set-up of this tree to end");
    Pty second(tree.command(), 80, 25, tree.environment());
    second.expect("Waiting for another set-up of this tree to end");
    tree.remove("hold");
    for (Pty* terminal : {&first, &second}) {
        terminal->expect("user ");
        EXPECT_EQ(terminal->waitForChange().status, 0);
    }
}

TEST(SetUp, ABuiltTreeThatCannotBeWrittenStillRuns) {
    const Tree tree;
    tree.write("installed");
    ASSERT_EQ(tree.start().status, 0);
    tree.remove("installed");
    for (const auto& entry : fs::recursive_directory_iterator(tree.path("build")))
        fs::permissions(entry, fs::perms(0222), fs::perm_options::remove);
    const ChildResult child = tree.start(test::becomeOrdinaryUser);
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out, answerOf(geteuid() == 0 ? nobody : geteuid()));
    EXPECT_EQ(child.err, "");
}

TEST(SetUp, UnderSudoTheBuildBelongsToTheCaller) {
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can act for another user";
    const Tree tree;
    const ChildResult child = tree.start([] {
        setenv("SUDO_UID", std::to_string(nobody).c_str(), 1);
        setenv("SUDO_GID", std::to_string(nobody).c_str(), 1);
    });
    EXPECT_EQ(child.out, answerOf(0)) << child.err;
    int count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(tree.path("build"))) {
        struct stat status = {};
        ASSERT_EQ(lstat(entry.path().c_str(), &status), 0);
        EXPECT_EQ(status.st_uid, nobody) << entry.path();
        EXPECT_EQ(status.st_gid, nobody) << entry.path();
        ++count;
    }
    EXPECT_GT(count, 4);
    struct stat installed = {};
    ASSERT_EQ(stat(tree.path("installed").c_str(), &installed), 0);
    EXPECT_EQ(installed.st_uid, 0U);
    // The user continues without sudo.
    EXPECT_EQ(tree.start(test::becomeOrdinaryUser).out, answerOf(nobody));
}

} // namespace
