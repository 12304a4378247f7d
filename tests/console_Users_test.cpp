#include <cstdlib>
#include <sstream>
#include <string>
#include <thread>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/ConsoleProgram.h"
#include "support/Pty.h"
#include "support/TemporaryDirectory.h"

namespace {

using test::ChildResult;
using test::TemporaryDirectory;

const std::string rootEntry = "root:x:0:0:root:/root:/bin/bash\n";
const std::string monitorEntry = "monitor:!:1000:1000:Monitor:/home/monitor:/bin/sh\n";

// A root directory with a password file, and the console that edits it.
class Root {
public:
    explicit Root(const std::string& entries = rootEntry + monitorEntry) {
        mkdir(m_directory.path("etc").c_str(), 0755);
        m_directory.write("etc/passwd", entries);
    }

    std::string file() const {
        return m_directory.path("etc/passwd");
    }
    std::string entries() const {
        return m_directory.read("etc/passwd");
    }
    const TemporaryDirectory& directory() const {
        return m_directory;
    }

    ChildResult run(const std::string& commands) const {
        return test::runConsole({}, commands, [this] { setenv("VX_ROOT", m_directory.path().c_str(), 1); });
    }

    // Expects that a command fails with this message and leaves the file unchanged.
    void expectRefusal(const std::string& command, const std::string& line) const {
        const std::string before = entries();
        const ChildResult child = run(command);
        EXPECT_EQ(child.status, 1);
        EXPECT_EQ(child.out, "");
        EXPECT_EQ(child.err, line + "\n");
        EXPECT_EQ(entries(), before);
    }

private:
    TemporaryDirectory m_directory;
};

void expectQuiet(const ChildResult& child) {
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out, "");
    EXPECT_EQ(child.err, "");
}

std::string hashOf(const std::string& entries, const std::string& name) {
    const std::size_t at = entries.find(name + ":") + name.size() + 1;
    return entries.substr(at, entries.find(':', at) - at);
}

// Expects that the platform computes the same hash. Asserts nothing more than its form where openssl is not installed.
void expectHashOf(const std::string& password, const std::string& hash) {
    ASSERT_EQ(hash.compare(0, 3, "$1$"), 0) << hash;
    const ChildResult peer = test::runInChild([&] {
        execlp("openssl", "openssl", "passwd", "-1", "-salt", hash.substr(3, 8).c_str(), password.c_str(),
               static_cast<char*>(nullptr));
        return 127;
    });
    if (peer.status != 127) {
        EXPECT_EQ(peer.out, hash + "\n");
    }
}

const std::string tooLong = ": the entry does not fit into 2048 bytes: use shorter texts";
constexpr const char* editing[] = {"add user new", "delete user root", "password root -\nsecret"};

TEST(ConsoleUsers, AreShownFromTheFileUnderTheRoot) {
    const Root root;
    const std::string rootLine =
        "root                  0      0 root                     /root                /bin/bash\n";
    const std::string monitorLine =
        "monitor            1000   1000 Monitor                  /home/monitor        /bin/sh\n";
    EXPECT_EQ(root.run("show users\n").out, rootLine + monitorLine);
    EXPECT_EQ(root.run("show user monitor\n").out, monitorLine);
    root.expectRefusal("show user nobody", "show user: nobody: no such user in " + root.file());
}

TEST(ConsoleUsers, AreShownFromTheMachinesFileWithoutARoot) {
    const ChildResult child = test::runCommand("show user root");
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out.compare(0, 5, "root "), 0);
}

TEST(ConsoleUsers, AMissingFileIsReported) {
    TemporaryDirectory directory;
    const char* const commands[][2] = {
        {"show users", ""}, {"add user", " new"}, {"delete user", " root"}, {"password", " root -\nsecret"}};
    for (const auto& command : commands) {
        const ChildResult child = test::runConsole({}, std::string(command[0]) + command[1],
                                                   [&] { setenv("VX_ROOT", directory.path().c_str(), 1); });
        EXPECT_EQ(child.status, 1);
        EXPECT_EQ(child.err, command[0] + (": " + directory.path("etc/passwd")) + ": No such file or directory\n");
    }
}

TEST(ConsoleUsers, APartlyReadableFileIsShownUpToTheErrorAndNotRewritten) {
    const Root root(rootEntry + "long:x:1:1:" + std::string(3000, 'x') + ":/:/bin/sh\n" + monitorEntry);
    const ChildResult child = root.run("show users\n");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out.compare(0, 5, "root "), 0);
    EXPECT_EQ(child.err, "show users: " + root.file() + ": an entry does not fit into 2048 bytes: shorten it\n");
    root.expectRefusal("add user new",
                       "add user: " + root.file() + ": an entry does not fit into 2048 bytes: shorten it");
    root.expectRefusal("delete user root",
                       "delete user: " + root.file() + ": an entry does not fit into 2048 bytes: shorten it");
    root.expectRefusal("password root -\nsecret",
                       "password: " + root.file() + ": an entry does not fit into 2048 bytes: shorten it");
}

// The machine's own file is not edited by accident

TEST(ConsoleUsers, AreNotEditedWithoutARoot) {
    for (const std::string command : editing) {
        const ChildResult unset = test::runConsole({}, command);
        const ChildResult empty = test::runConsole({}, command, [] { setenv("VX_ROOT", "", 1); });
        for (const ChildResult& child : {unset, empty}) {
            EXPECT_EQ(child.status, 1);
            EXPECT_EQ(child.out, "");
            EXPECT_NE(
                child.err.find(
                    ": refused: set VX_ROOT to the folder that contains etc/passwd before starting the console\n"),
                std::string::npos)
                << child.err;
        }
    }
}

TEST(ConsoleUsers, AreNotEditedWhenTheRootWasSetTooLate) {
    TemporaryDirectory directory;
    for (const std::string command : editing) {
        const ChildResult child =
            test::runConsole({}, "show users\nset VX_ROOT " + directory.path() + "\n" + command + "\n");
        EXPECT_EQ(child.status, 1);
        EXPECT_NE(child.err.find(
                      ": refused: /etc/passwd was in use before VX_ROOT was set; set it before starting the console\n"),
                  std::string::npos)
            << child.err;
    }
}

TEST(ConsoleUsers, AreNotEditedAfterTheRootHasChanged) {
    const Root first;
    const Root second;
    for (const std::string command : editing) {
        const ChildResult child =
            first.run("show users\nset VX_ROOT " + second.directory().path() + "\n" + command + "\n");
        EXPECT_EQ(child.status, 1);
        EXPECT_NE(child.err.find(": refused: " + first.file() +
                                 " was in use before VX_ROOT was set; set it before starting the console\n"),
                  std::string::npos);
    }
    EXPECT_EQ(first.entries(), rootEntry + monitorEntry);
    EXPECT_EQ(second.entries(), rootEntry + monitorEntry);
}

TEST(ConsoleUsers, ARootSetBeforeTheFirstUseIsAccepted) {
    const Root root;
    expectQuiet(test::runConsole({}, "set VX_ROOT " + root.directory().path() + "\ndelete user monitor\n"));
    EXPECT_EQ(root.entries(), rootEntry);
}

// add user

TEST(ConsoleUsers, ANewUserHasTheNextNumberAndNoPassword) {
    const Root root;
    expectQuiet(root.run("add user ports \"Port Watcher\"\nadd user disks\n"));
    EXPECT_EQ(root.entries(), rootEntry + monitorEntry + "ports:!:1001:1001:Port Watcher:/home/ports:/bin/sh\n" +
                                  "disks:!:1002:1002::/home/disks:/bin/sh\n");
    const Root empty("");
    expectQuiet(empty.run("add user first\n"));
    EXPECT_EQ(empty.entries(), "first:!:1000:1000::/home/first:/bin/sh\n");
}

TEST(ConsoleUsers, ANewUserIsRefusedIfTheNameIsTakenOrInvalid) {
    const Root root;
    const std::string rule =
        ": invalid user name: use letters, digits, '_' and, after the first character, '-', '.', '$'";
    root.expectRefusal("add user monitor", "add user: user monitor already exists");
    root.expectRefusal("add user \"\"", "add user: the user name is empty");
    for (const std::string name : {"a:b", "+", "-x", "../x", "a/b", "two words", "gr\xc3\xbcn", ".hidden"})
        root.expectRefusal("add user \"" + name + "\"", "add user: " + name + rule);
    root.expectRefusal("add user new a:b", "add user: a:b: must not contain ':' or a newline");
    for (const std::size_t length : {2005, 2048, 3000, 30000})
        root.expectRefusal("add user new " + std::string(length, 'x'), "add user: new" + tooLong);
}

TEST(ConsoleUsers, AnEntryTooLongToBeReadAgainIsRefused) {
    const Root root;
    // The real name is as long as possible, so that the password does not fit.
    expectQuiet(root.run("add user new " + std::string(1990, 'x') + "\nadd user more\n"));
    const std::string before = root.entries();
    root.expectRefusal("password new -\nsecret", "password: new" + tooLong);
    EXPECT_EQ(root.run("show user more\n").status, 0);
    EXPECT_NE(before.find("more:!:1002:1002:"), std::string::npos);
}

TEST(ConsoleUsers, ANewUserIsRefusedIfNoNumberIsLeft) {
    const Root almost(rootEntry + "last:!:59998:59998::/:/bin/sh\nnobody:x:65534:65534::/:/bin/sh\n");
    expectQuiet(almost.run("add user new\n"));
    EXPECT_EQ(hashOf(almost.entries(), "new"), "!");
    EXPECT_NE(almost.entries().find("new:!:59999:59999:"), std::string::npos);
    almost.expectRefusal("add user more",
                         "add user: more: no user ID is left: 59999, the largest for an ordinary user, is in use");
}

// delete user

TEST(ConsoleUsers, ADeletedUserIsRemoved) {
    const Root root;
    expectQuiet(root.run("delete user root\n"));
    EXPECT_EQ(root.entries(), monitorEntry);
    root.expectRefusal("delete user root", "delete user: root: no such user");
    root.expectRefusal("delete user \"monitor:\"", "delete user: monitor:: no such user");
}

TEST(ConsoleUsers, AFileThatCannotBeReplacedIsReported) {
    const Root root;
    ASSERT_EQ(mkdir((root.file() + ".new").c_str(), 0755), 0);
    const struct {
        const char* line;
        const char* command;
        const char* operation;
    } cases[] = {{"delete user root", "delete user", "delUser"},
                 {"add user new", "add user", "putUser"},
                 {"password root -\nsecret", "password", "putUser"}};
    for (const auto& [line, command, operation] : cases) {
        // The service logs the reason; the console reports which command failed.
        const ChildResult child = root.run(std::string(line) + "\n");
        EXPECT_EQ(child.status, 1);
        const std::string start = std::string("ERROR static void utility::PWService::") + operation + "(utility::PW*):";
        EXPECT_EQ(child.err.compare(0, start.size(), start), 0) << child.err;
        EXPECT_EQ(child.err.substr(child.err.find(": /") + 2),
                  root.file() +
                      " is unchanged: its new file cannot be made (File exists); check the permissions and the free "
                      "space of its folder\n" +
                      command + ": " + root.file() + " could not be rewritten: see the log\n");
        EXPECT_EQ(root.entries(), rootEntry + monitorEntry);
    }
}

TEST(ConsoleUsers, AFileEmptiedByAFailingCopyIsReported) {
    for (const std::string command : editing) {
        const Root root;
        const std::string program = root.directory().write("cp", "#!/bin/sh\n: >\"$2\"\nexit 1\n");
        ASSERT_EQ(chmod(program.c_str(), 0755), 0);
        const ChildResult child = test::runConsole({}, command, [&] {
            setenv("VX_ROOT", root.directory().path().c_str(), 1);
            // An emulator of the console is found on the rest of the path.
            setenv("PATH", (root.directory().path() + ":" + getenv("PATH")).c_str(), 1);
        });
        EXPECT_EQ(child.status, 1) << command;
        const std::string end = ": " + root.file() + " is incomplete; " + root.file() +
                                ".new holds the complete new text: copy it by hand\n";
        EXPECT_NE(child.err.find(end), std::string::npos) << child.err;
        EXPECT_EQ(root.entries(), "");
    }
}

TEST(ConsoleUsers, AnUnwritableFileOrFolderIsReported) {
    const Root root;
    const std::string folder = root.directory().path("etc");
    for (const std::string& place : {folder, root.file()}) {
        ASSERT_EQ(chmod(place.c_str(), 0555), 0);
        for (const char* command : {"delete user root", "add user new", "password root -\nsecret"}) {
            const ChildResult child = test::runConsole({}, command, [&] {
                setenv("VX_ROOT", root.directory().path().c_str(), 1);
                test::obeyPermissions();
            });
            EXPECT_EQ(child.status, 1);
            EXPECT_NE(child.err.find(": " + place + ": Permission denied\n"), std::string::npos) << child.err;
        }
        ASSERT_EQ(chmod(place.c_str(), 0755), 0);
    }
    EXPECT_EQ(root.entries(), rootEntry + monitorEntry);
}

TEST(ConsoleUsers, WithClosedStandardStreamsNoMessageEndsUpInTheFile) {
    const Root root;
    const ChildResult child = test::runConsole({}, "debug on PW\npassword root -\nsecret\n", [&] {
        setenv("VX_ROOT", root.directory().path().c_str(), 1);
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(root.entries().find("DEBUG"), std::string::npos) << root.entries();
    EXPECT_EQ(root.entries().find("root:$1$"), 0U) << root.entries();
}

TEST(ConsoleUsers, TheFileKeepsItsPermissions) {
    const Root root;
    ASSERT_EQ(chmod(root.file().c_str(), 0600), 0);
    expectQuiet(root.run("add user new\n"));
    struct stat status = {};
    ASSERT_EQ(stat(root.file().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    if (stat((root.file() + ".new").c_str(), &status) == 0) {
        EXPECT_EQ(status.st_mode & 07777U, 0600U);
    }
}

// password

TEST(ConsoleUsers, APasswordIsHashedAsThePlatformHashesIt) {
    const Root root;
    expectQuiet(root.run("password monitor -\ns3cret $(words)\n"));
    const std::string hash = hashOf(root.entries(), "monitor");
    ASSERT_EQ(hash.compare(0, 3, "$1$"), 0) << root.entries();
    ASSERT_EQ(hash.find('$', 3), 11U);
    expectHashOf("s3cret $(words)", hash);
    EXPECT_EQ(root.entries(), rootEntry + "monitor:" + hash + ":1000:1000:Monitor:/home/monitor:/bin/sh\n");
}

TEST(ConsoleUsers, APasswordOfAnUnknownUserIsRefused) {
    const Root root;
    root.expectRefusal("password nobody -\nsecret", "password: nobody: no such user");
    root.expectRefusal("password", "usage: password NAME [-]");
}

TEST(ConsoleUsers, APasswordIsNotGivenOnTheCommandLine) {
    const Root root;
    root.expectRefusal("password monitor secret",
                       "password: a password is not given on the command line: use \"password NAME\", which asks for "
                       "it, or \"password NAME -\", which reads a line of standard input");
}

TEST(ConsoleUsers, APasswordThatIsMissingEmptyOrHasANulByteIsRefused) {
    const Root root;
    root.expectRefusal("password monitor -", "password: standard input has no line with the password");
    root.expectRefusal("password monitor -\n\n", "password: the password is empty");
    root.expectRefusal(std::string("password monitor -\na\0b\n", 23),
                       "password: a password must not contain a NUL byte");
    root.expectRefusal("password monitor", "password: standard input is not a terminal: use \"password NAME -\"");
}

TEST(ConsoleUsers, APasswordIsReadFromStandardInputBesideACommandLine) {
    const Root root;
    const ChildResult child = test::runConsole({"-c", "password monitor -", "-c", "show user monitor"}, "secret\n",
                                               [&] { setenv("VX_ROOT", root.directory().path().c_str(), 1); });
    EXPECT_EQ(child.status, 0) << child.err;
    EXPECT_EQ(hashOf(root.entries(), "monitor").compare(0, 3, "$1$"), 0);
}

TEST(ConsoleUsers, APasswordIsAskedForTwiceWithoutEcho) {
    for (const bool isInteractive : {false, true}) {
        const Root root;
        const std::vector<std::string> options =
            isInteractive ? std::vector<std::string>() : std::vector<std::string>{"-c", "password monitor"};
        test::Pty terminal(test::consoleCommand(options), 80, 25, [&] {
            test::setConsoleEnvironment();
            setenv("VX_ROOT", root.directory().path().c_str(), 1);
        });
        if (isInteractive) {
            terminal.expect("vx> ");
            terminal.type("password monitor\n");
        }
        terminal.expect("New password: ");
        terminal.type("s3crex\177t\n");
        const std::string shown = terminal.expect("The same again: ");
        terminal.type("wrong\025s3cret\n");
        if (isInteractive) {
            EXPECT_EQ(terminal.expect("vx> ").find("cre"), std::string::npos);
            terminal.type("quit\n");
        }
        EXPECT_EQ(terminal.waitForChange().status, 0) << terminal.pending();
        EXPECT_EQ((shown + terminal.pending()).find("cre"), std::string::npos);
        EXPECT_TRUE(terminal.isInFormerMode());
        const std::string hash = hashOf(root.entries(), "monitor");
        EXPECT_EQ(hash.compare(0, 3, "$1$"), 0) << root.entries();
        expectHashOf("s3cret", hash);
    }
}

TEST(ConsoleUsers, TwoDifferentPasswordsAreRefused) {
    const Root root;
    test::Pty terminal(test::consoleCommand({"-c", "password monitor"}), 80, 25, [&] {
        test::setConsoleEnvironment();
        setenv("VX_ROOT", root.directory().path().c_str(), 1);
    });
    terminal.expect("New password: ");
    terminal.type("one\n");
    terminal.expect("The same again: ");
    terminal.type("two\n");
    EXPECT_EQ(terminal.waitForChange().status, 1);
    EXPECT_NE(terminal.pending().find("password: the two passwords are different"), std::string::npos);
    EXPECT_EQ(root.entries(), rootEntry + monitorEntry);
}

TEST(ConsoleUsers, NoPasswordEntersTheHistoryEvenIfMistyped) {
    const Root root;
    const ChildResult child = root.run("password monitor s3cret1\npass monitor -\ns3cret2\npasword monitor s3cret3\n"
                                       "p monitor s3cret4\npassword monitor s3cret5 more\npassword nobody s3cret6\n"
                                       "password monitor \"s3cret7\nhistory\n");
    EXPECT_EQ(child.out.find("s3cret"), std::string::npos) << child.out;
    EXPECT_EQ(child.err.find("s3cret"), std::string::npos) << child.err;
    EXPECT_EQ(child.out.compare(0, 36, "vx> password\npassword: a password is"), 0) << child.out;
    EXPECT_EQ(root.entries().find("s3cret"), std::string::npos);
}

TEST(ConsoleUsers, AHostileRootReachesNoShell) {
    for (const std::string name : {"with blanks", "a;touch hacked", "$(touch hacked)", "`touch hacked`", "a&b|c>d"}) {
        TemporaryDirectory directory;
        ASSERT_EQ(mkdir(directory.path(name).c_str(), 0755), 0);
        ASSERT_EQ(mkdir(directory.path(name + "/etc").c_str(), 0755), 0);
        directory.write(name + "/etc/passwd", rootEntry + monitorEntry);
        const ChildResult child = test::runCommand("delete user monitor", [&] {
            setenv("VX_ROOT", directory.path(name).c_str(), 1);
            if (chdir(directory.path().c_str()) != 0)
                _exit(126);
        });
        expectQuiet(child);
        EXPECT_EQ(directory.read(name + "/etc/passwd"), rootEntry);
        EXPECT_FALSE(directory.exists("hacked"));
    }
}

} // namespace
