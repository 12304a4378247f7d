#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <ctime>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <fcntl.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "console_CommandTable.h"
#include "support/ConsoleProgram.h"
#include "support/Descriptor.h"
#include "support/FailingSystemCall.h"
#include "support/TemporaryDirectory.h"
#include "support/TextLines.h"

namespace {

using test::ChildResult;
using test::linesOf;
using test::runCommand;
using test::runConsole;
using test::TemporaryDirectory;

void expectAnswer(const ChildResult& child, const std::string& answer) {
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out, answer);
    EXPECT_EQ(child.err, "");
}

// Expects one line on standard error and nothing else.
void expectFailure(const ChildResult& child, const std::string& line) {
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "");
    EXPECT_EQ(child.err, line + "\n");
}

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

// Returns what a shell command of the platform prints.
std::string outputOf(const std::string& command) {
    const ChildResult child = test::runInChild([&] {
        execl("/bin/sh", "sh", "-c", command.c_str(), static_cast<char*>(nullptr));
        return 127;
    });
    return child.out;
}

// Returns bytes of every value, in an order with a long period.
std::string binaryText(std::size_t size) {
    std::string text(size, 0);
    unsigned int value = 12345;
    for (char& c : text) {
        value = value * 1103515245 + 12345;
        c = static_cast<char>(value >> 16);
    }
    return text;
}

#ifdef __SANITIZE_THREAD__
constexpr bool isThreadSanitized = true;
#else
constexpr bool isThreadSanitized = false;
#endif
constexpr const char* unseenOrder =
    "the thread sanitizer does not see that a handler runs after what came before its signal";

void discardInFullDevice() {
    if (freopen("/dev/full", "w", stdout) == nullptr)
        _exit(126);
}

// Starting

TEST(ConsoleProgram, UsageExample) {
    const ChildResult child = runConsole({"-c", "help show"});
    EXPECT_EQ(child.status, 0);
    EXPECT_NE(child.out.find("show file PATH"), std::string::npos);
}

TEST(ConsoleProgram, PrintsItsUsageAndItsVersion) {
    const ChildResult asked = runConsole({"--help"});
    EXPECT_EQ(asked.status, 0);
    EXPECT_EQ(asked.out.compare(0, 17, "usage: vxconsole "), 0);
    EXPECT_EQ(asked.err, "");
    const std::pair<std::vector<std::string>, std::string> wrong[] = {{{"-c"}, "an argument is missing after -c"},
                                                                      {{"-x"}, "unknown option -x"},
                                                                      {{"--bogus"}, "unknown option --bogus"},
                                                                      {{"-c", "help", "help"}, "not an option: help"},
                                                                      {{"help"}, "not an option: help"}};
    for (const auto& [arguments, problem] : wrong) {
        const ChildResult child = runConsole(arguments);
        EXPECT_EQ(child.status, 2);
        EXPECT_EQ(child.out, "");
        EXPECT_EQ(child.err, "vxconsole: " + problem + "\n" + asked.out);
    }
    EXPECT_TRUE(std::regex_match(runConsole({"--version"}).out, std::regex("vxconsole [0-9]+\\.[0-9]+\\.[0-9]+\n")));
    const ChildResult full = runConsole({"--version"}, "", discardInFullDevice);
    expectFailure(full, "standard output: No space left on device");
}

// Scripts

TEST(ConsoleScript, RunsEachCommandAndFileInOrder) {
    TemporaryDirectory directory;
    const std::string script = directory.write("script", "# a comment\n\n  # another \"\nurl a:1\nbogus\nurl b:2");
    const ChildResult child = runConsole({"-c", "url c:3", "-f", script, "-c", "url d:4", "-f", "-"}, "url e:5\n");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.err, "unknown command: bogus (try help)\n");
    std::string schemes;
    for (const std::string& line : linesOf(child.out)) {
        if (line.compare(0, 7, "scheme ") == 0)
            schemes += line.back();
    }
    EXPECT_EQ(schemes, "cabde");
}

TEST(ConsoleScript, StopsAtTheFirstFailureIfAsked) {
    TemporaryDirectory directory;
    const std::string script = directory.write("script", "find x /\nurl a:1\n");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"-e", "-f", script, "-c", "url b:2"}, {"-e", "-c", "bogus", "-f", script}, {"-e"}}) {
        const ChildResult child = runConsole(arguments, "bogus\nurl c:3\n");
        EXPECT_EQ(child.status, 1);
        EXPECT_EQ(child.out, "");
        EXPECT_EQ(countOf(child.err, "\n"), 1U) << child.err;
    }
}

TEST(ConsoleScript, EndsWithQuit) {
    expectAnswer(runConsole({"-c", "quit", "-c", "url a:1", "-f", "-"}, "url b:2\n"), "");
}

TEST(ConsoleScript, AFileThatCannotBeReadIsAFailure) {
    expectFailure(runConsole({"-f", "/nonexistent"}), "/nonexistent: No such file or directory");
    expectFailure(runConsole({"-f", "/"}), "/: Is a directory");
    const ChildResult child = runConsole({"-f", "/nonexistent", "-c", "find hosts /etc"});
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "/etc/hosts\n");
}

TEST(ConsoleScript, AnotherRootIsReadInsteadOfTheSystem) {
    TemporaryDirectory directory;
    std::filesystem::create_directories(directory.path("sys/block/sda/queue"));
    std::filesystem::create_directories(directory.path("proc"));
    directory.write("sys/block/sda/size", "2000000\n");
    directory.write("sys/block/sda/queue/rotational", "1\n");
    directory.write("proc/uptime", "93784.56 1.00\n");
    const ChildResult child = runConsole({"--root", directory.path(), "-c", "show disks", "-c", "uptime"});
    EXPECT_EQ(child.status, 0) << child.err;
    const std::vector<std::string> lines = linesOf(child.out);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(std::regex_match(lines[1], std::regex("sda +1\\.02 GB +1,024 MB +rotational +-"))) << lines[1];
    EXPECT_EQ(lines[2], "1 day 02:03:04.560");
}

TEST(ConsoleProgram, AnEmptyCommandSucceedsQuietly) {
    expectAnswer(runCommand(""), "");
    expectAnswer(runCommand(" \t "), "");
}

// Commands on a pipe

TEST(ConsolePipe, ReadsCommandsToTheEndWithoutPrompts) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "one\ntwo\n");
    expectAnswer(runConsole({}, "show file " + file + "\n\n  \nshow file " + file), "one\ntwo\none\ntwo\n");
    expectAnswer(runConsole({}, ""), "");
}

TEST(ConsolePipe, ContinuesAfterAFailureAndExitsWith1) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "one\n");
    const ChildResult child = runConsole({}, "bogus\nshow file " + file + "\nshow file /nonexistent\n");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "one\n");
    EXPECT_EQ(child.err, "unknown command: bogus (try help)\nshow file: /nonexistent: No such file or directory\n");
}

TEST(ConsolePipe, AnUnreadableInputIsReported) {
    const ChildResult directory = runConsole({}, "", [] { dup2(open("/", O_RDONLY), STDIN_FILENO); });
    expectFailure(directory, "standard input: Is a directory");
    const ChildResult closed = runConsole({}, "", [] { close(STDIN_FILENO); });
    expectFailure(closed, "standard input: Bad file descriptor");
}

TEST(ConsolePipe, ReadsNothingAfterQuit) {
    const ChildResult child = runConsole({}, "quit\nbogus\n");
    expectAnswer(child, "");
}

TEST(ConsolePipe, TreatsCarriageReturnsAsBlanks) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "one\n");
    expectAnswer(runConsole({}, "show file " + file + "\r\nquit\r\n"), "one\n");
}

TEST(ConsolePipe, RefusesACommandWithANulByte) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "one\n");
    const ChildResult child =
        runConsole({}, std::string("help\0 me\n", 9) + "show file " + file + std::string("\0x\n", 3) + "quit\n");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "");
    EXPECT_EQ(child.err, "a command must not contain a NUL byte\na command must not contain a NUL byte\n");
}

TEST(ConsolePipe, ThousandsOfCommandsAreEachAnsweredInOrder) {
    TemporaryDirectory directory;
    std::string commands;
    std::string answers;
    for (int i = 0; i < 2000; ++i) {
        commands += "path n" + std::to_string(i) + "\n";
        answers += "directory  \nfile       n" + std::to_string(i) + "\nextension  \n        0  n" + std::to_string(i) +
                   "\nnormal     n" + std::to_string(i) + "\n";
    }
    expectAnswer(runConsole({}, commands), answers);
}

// Words

TEST(ConsoleWords, AnUnmatchedQuoteIsReportedOnce) {
    expectFailure(runCommand("show file \"/etc"), "a quote is not closed");
}

TEST(ConsoleWords, AQuotedWordMayContainBlanks) {
    TemporaryDirectory directory;
    const std::string file = directory.write("two words", "one\n");
    expectAnswer(runCommand("show file \"" + file + "\""), "one\n");
}

TEST(ConsoleWords, AnOverlongLineIsReportedOnceAndTheConsoleContinues) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "one\n");
    const ChildResult child = runConsole({}, "show file " + std::string(100000, 'x') + "\n" + std::string(100000, 'y') +
                                                 "\nshow file " + file + "\n");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "one\n");
    EXPECT_EQ(child.err, "the command is too long\nthe command is too long\n");
}

TEST(ConsoleWords, ALongUnknownCommandIsShownTruncated) {
    const ChildResult child = runConsole({}, std::string(20000, 'x') + "\n");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.err,
              "unknown command: " + std::string(512 - 17, 'x') + "..." + std::string(512 - 11, 'x') + " (try help)\n");
}

TEST(ConsoleWords, AFailureKeepsItsReasonHoweverLongTheName) {
    const ChildResult child = runCommand("show file " + std::string(5000, 'x'));
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.err, "show file: " + std::string(512 - 11, 'x') + "..." + std::string(512 - 20, 'x') +
                             ": File name too long\n");
}

TEST(ConsoleWords, AFailureIsOneLineWhateverTheNameContains) {
    expectFailure(runCommand("show file \"a\nb\033[2Jc\177\""),
                  "show file: a\\x0ab\\x1b[2Jc\\x7f: No such file or directory");
}

TEST(ConsoleWords, AWrongNumberShowsTheUsage) {
    expectFailure(runCommand("show file"), "usage: show file PATH");
    expectFailure(runCommand("show file a b"), "usage: show file PATH");
    expectFailure(runCommand("show environment now"), "usage: show environment");
    expectFailure(runCommand("copy a"), "usage: copy FROM TO");
    expectFailure(runCommand("ls a b c"), "usage: ls DIRECTORY [PATTERN]");
    expectFailure(runCommand("quit now"), "usage: quit");
}

TEST(ConsoleWords, OfACommandMayBeAbbreviated) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "one\n");
    expectAnswer(runCommand("sh f " + file), "one\n");
    expectAnswer(runCommand("show fil " + file), "one\n");
    expectAnswer(runCommand("q"), "");
    expectFailure(runCommand("sh fx " + file), "unknown command: sh (try help)");
    expectFailure(runCommand("Show file " + file), "unknown command: Show; did you mean show file? (try help)");
}

TEST(ConsoleWords, AnAmbiguousAbbreviationListsTheCandidates) {
    expectFailure(runCommand("sh d x"), "usage: show disks");
    expectFailure(runCommand("sh us"), "ambiguous command: show user, show users");
    expectFailure(runCommand("c a"), "ambiguous command: context, copy, crc");
    expectFailure(runCommand("show"), "ambiguous command: show addresses, show disks, show environment, show file, "
                                      "show initiator, show memory, show mounts, show ports, show processes, "
                                      "show user, show users, show wwns");
}

TEST(ConsoleWords, AnIncompleteNameWithOneMeaningShowsItsUsage) {
    expectFailure(runCommand("add"), "usage: add user NAME [REALNAME]");
    expectFailure(runCommand("count"), "usage: count words PATH");
    expectFailure(runCommand("count w"), "usage: count words PATH");
}

// help, environment, debug

TEST(ConsoleHelp, ListsEveryCommandOnOneScreen) {
    const ChildResult child = runCommand("help");
    EXPECT_EQ(child.status, 0);
    EXPECT_LT(linesOf(child.out).size(), 24U);
    for (unsigned int i = 0; console::commandAt(i) != nullptr; ++i) {
        const console::Command* const command = console::commandAt(i);
        EXPECT_NE(child.out.find(command->name), std::string::npos) << command->name;
        const ChildResult one = runCommand("help " + std::string(command->name));
        EXPECT_NE(one.out.find(console::usageOf(*command) + " "), std::string::npos) << one.out;
        EXPECT_NE(one.out.find(command->summary), std::string::npos) << one.out;
    }
}

TEST(ConsoleHelp, FindsCommandsByAWord) {
    EXPECT_EQ(runCommand("help digests").out, "md5 PATH...  show the MD5 digests of files\n");
    EXPECT_EQ(runCommand("? block").out, "show disks  show the block devices\n");
}

TEST(ConsoleHelp, ShowsTheCommandsThatBeginWithItsWords) {
    const ChildResult child = runCommand("help show f");
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out, "show file PATH  show a text file\n");
    EXPECT_EQ(countOf(runCommand("help show").out, "\n"), 12U);
    expectFailure(runCommand("help bogus"), "help: bogus: no such command (try help)");
}

TEST(ConsoleEnvironment, ShowsInheritedAndSetVariables) {
    const ChildResult child = runConsole({}, "set VX_LATER \"two words\"\nset VX_GIVEN changed\nshow environment\n",
                                         [] { setenv("VX_GIVEN", "first", 1); });
    EXPECT_EQ(child.status, 0);
    EXPECT_NE(child.out.find("VX_LATER=two words"), std::string::npos);
    EXPECT_NE(child.out.find("VX_GIVEN=changed"), std::string::npos);
    EXPECT_EQ(child.out.find("VX_GIVEN=first"), std::string::npos);
}

TEST(ConsoleEnvironment, ShowsAnEntryAsLongAsThePlatformAllows) {
    const std::string value(100000, 'v');
    const ChildResult child = runCommand("show environment", [&] { setenv("VX_LONG", value.c_str(), 1); });
    EXPECT_EQ(child.status, 0);
    EXPECT_NE(child.out.find("VX_LONG=" + value), std::string::npos);
}

TEST(ConsoleEnvironment, RefusesAnImpossibleName) {
    expectFailure(runCommand("set A=B c"), "set: A=B: Invalid argument");
}

TEST(ConsoleDebug, SwitchesAreShownOnAndOff) {
    const ChildResult child = runConsole({}, "debug on Map\ndebug on Path\ndebug\ndebug off Path\ndebug\n");
    const std::vector<std::string> lines = linesOf(child.out);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_NE(lines[0].find("Map"), std::string::npos);
    EXPECT_NE(lines[0].find("Path"), std::string::npos);
    EXPECT_NE(lines[1].find("Map"), std::string::npos);
    EXPECT_EQ(lines[1].find("Path"), std::string::npos);
    EXPECT_EQ(child.status, 0);
}

TEST(ConsoleDebug, ReportsThatNoSwitchIsOn) {
    expectAnswer(runCommand("debug"), "no debug switch is on\n");
    expectAnswer(runConsole({}, "debug on Map\ndebug off Map\ndebug\n"), "no debug switch is on\n");
}

TEST(ConsoleDebug, ASwitchTracesToStandardError) {
    const ChildResult child = runConsole({}, "debug on DirIterator\nls /\ndebug off DirIterator\n");
    EXPECT_EQ(child.status, 0);
    EXPECT_NE(child.err.find("opendir / returned"), std::string::npos);
}

TEST(ConsoleDebug, ReportsThatNoSwitchIsLeftForANewName) {
    std::string commands;
    for (int i = 0; i < 1500; ++i)
        commands += "debug on vx-made-up-" + std::to_string(i) + "\n";
    const ChildResult child = runConsole({}, commands);
    EXPECT_EQ(child.status, 1);
    EXPECT_NE(child.err.find("debug on: vx-made-up-1499: all debug switches for new names are in use\n"),
              std::string::npos);
}

// On a pipe nothing is escaped

TEST(ConsoleOnAPipe, NamesAndUrlsKeepTheirControlCharacters) {
    TemporaryDirectory directory;
    const std::string name = "name\033[2J\x9b\xc2\x9b\x7f";
    directory.write(name, "abc");
    const ChildResult listed = runCommand("ls " + directory.path());
    EXPECT_NE(listed.out.find(name + "\n"), std::string::npos);
    EXPECT_NE(runCommand("url http://host/%1b%C2%9B").out.find("\033\xc2\x9b"), std::string::npos);
    const ChildResult environment = runCommand("show environment", [&] { setenv("VX_UNSAFE", name.c_str(), 1); });
    EXPECT_NE(environment.out.find("VX_UNSAFE=" + name), std::string::npos);
}

// show file, dump

TEST(ConsoleShowFile, ShowsBinaryDataByteForByte) {
    TemporaryDirectory directory;
    const std::string text = binaryText(300001);
    const ChildResult child = runCommand("show file " + directory.write("binary", text));
    EXPECT_EQ(child.status, 0);
    EXPECT_TRUE(child.out == text);
}

TEST(ConsoleShowFile, AnEmptyFileShowsNothing) {
    TemporaryDirectory directory;
    expectAnswer(runCommand("show file " + directory.write("empty", "")), "");
    expectAnswer(runCommand("dump " + directory.path("empty")), "");
}

class ConsoleReading : public testing::TestWithParam<const char*> {};

TEST_P(ConsoleReading, AMissingFileADirectoryAndAFileWithoutPermissionAreReported) {
    const std::string name = GetParam();
    TemporaryDirectory directory;
    const std::string file = directory.write("secret", "text\n");
    ASSERT_EQ(chmod(file.c_str(), 0), 0);
    const ChildResult child =
        runConsole({},
                   name + " " + directory.path("none") + "\n" + name + " " + directory.path() + "\n" + name + " " +
                       file + "\n" + name + " " + file + "/x\nfind vx.txt " + directory.path() + "\n",
                   test::obeyPermissions);
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "");
    EXPECT_EQ(child.err, name + ": " + directory.path("none") + ": No such file or directory\n" + name + ": " +
                             directory.path() + ": Is a directory\n" + name + ": " + file + ": Permission denied\n" +
                             name + ": " + file + "/x: Not a directory\nfind: vx.txt: not found in " +
                             directory.path() + "\n");
}

INSTANTIATE_TEST_SUITE_P(Commands, ConsoleReading,
                         testing::Values("show file", "dump", "md5", "crc", "count words", "check utf8"));

TEST(ConsoleDump, ShowsOffsetsHexAndText) {
    TemporaryDirectory directory;
    const std::string file = directory.write("bytes", std::string("abc\0\n\x7f\xff~ 0123456789", 19));
    expectAnswer(runCommand("dump " + file), "00000000: 61 62 63 00 0a 7f ff 7e 20 30 31 32 33 34 35 36  "
                                             "abc....~ 0123456\n"
                                             "00000010: 37 38 39                                         789\n");
}

TEST(ConsoleDump, OfABigFileMatchesOd) {
    TemporaryDirectory directory;
    const std::string file = directory.write("bytes", binaryText(100003));
    const std::vector<std::string> lines = linesOf(runCommand("dump " + file).out);
    const std::vector<std::string> expected = linesOf(outputOf("od -A x -t x1 -v " + file));
    ASSERT_EQ(lines.size() + 1, expected.size()); // its last line is the size
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string& line = expected[i];
        ASSERT_EQ(lines[i].substr(2, 6) + lines[i].substr(9, line.size() - 6), line);
    }
}

// copy

TEST(ConsoleCopy, CopiesBinaryDataAndABigFileByteForByte) {
    TemporaryDirectory directory;
    for (const std::size_t size : {0, 1, 255, 16384, 16385, 3000001}) {
        const std::string text = binaryText(size);
        const std::string from = directory.write("from", text);
        directory.write("to", "what was there before");
        expectAnswer(runCommand("copy " + from + " " + directory.path("to")), "");
        EXPECT_TRUE(directory.read("to") == text) << size;
    }
}

TEST(ConsoleCopy, OntoItselfIsRefusedAndKeepsTheFile) {
    TemporaryDirectory directory;
    const std::string file = directory.write("file", "text");
    ASSERT_EQ(link(file.c_str(), directory.path("hard").c_str()), 0);
    ASSERT_EQ(symlink(file.c_str(), directory.path("soft").c_str()), 0);
    for (const std::string& other : {file, directory.path("hard"), directory.path("soft")})
        expectFailure(runCommand("copy " + file + " " + other),
                      "copy: " + file + " and " + other + " are the same file");
    EXPECT_EQ(directory.read("file"), "text");
}

TEST(ConsoleCopy, OntoAFullDeviceReportsTheError) {
    TemporaryDirectory directory;
    const std::string small = directory.write("small", "text");
    const std::string big = directory.write("big", std::string(100000, 'x'));
    expectFailure(runCommand("copy " + small + " /dev/full"), "copy: /dev/full: No space left on device");
    expectFailure(runCommand("copy " + big + " /dev/full"), "copy: /dev/full: No space left on device");
}

TEST(ConsoleCopy, OfAnEndlessSourceEndsWithTheFailureOfTheTarget) {
    expectFailure(runCommand("copy /dev/zero /dev/full"), "copy: /dev/full: No space left on device");
}

TEST(ConsoleCopy, StoresEachBlockAsItComes) {
    TemporaryDirectory directory;
    const std::string from = directory.path("pipe");
    const std::string to = directory.path("to");
    ASSERT_EQ(mkfifo(from.c_str(), 0600), 0);
    bool cameEarly = false;
    std::thread writer([&] {
        const test::Descriptor pipe(open(from.c_str(), O_WRONLY | O_CLOEXEC));
        ASSERT_EQ(write(pipe.number(), "first", 5), 5);
        for (int i = 0; i < 6000 && !cameEarly; ++i) {
            usleep(5000);
            cameEarly = directory.exists("to") && directory.read("to") == "first";
        }
        ASSERT_EQ(write(pipe.number(), "last", 4), 4);
    });
    const ChildResult child = runCommand("copy " + from + " " + to);
    writer.join();
    expectAnswer(child, "");
    EXPECT_TRUE(cameEarly);
    EXPECT_EQ(directory.read("to"), "firstlast");
}

constexpr int firstFreeDescriptor = 3;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(VXUT_MEMCHECK)
constexpr bool isChecked = true;
#else
constexpr bool isChecked = false;
#endif
constexpr const char* checkersCalls = "a sanitizer or valgrind makes such calls of its own";
constexpr const char* noFailingCalls = "this platform cannot make a system call fail";

TEST(ConsoleCopy, AFailureToCloseTheTargetIsReported) {
    if (isChecked)
        GTEST_SKIP() << checkersCalls;
    TemporaryDirectory directory;
    const std::string from = directory.write("from", "text");
    const std::string to = directory.path("to");
    const ChildResult child = runCommand("copy " + from + " " + to, [] {
        // The console's descriptor numbers must not depend on those of the test.
        for (int fd = firstFreeDescriptor; fd < 1024; ++fd)
            close(fd);
        // As a network file system does when a quota is exceeded.
        test::failSystemCall(SYS_close, EDQUOT, firstFreeDescriptor + 1);
    });
    if (child.status == test::cannotFilter)
        GTEST_SKIP() << noFailingCalls;
    expectFailure(child, "copy: " + to + ": Disk quota exceeded");
    EXPECT_EQ(directory.read("to"), "text");
}

TEST(ConsoleCopy, BeyondTheFileSizeLimitReportsTheError) {
    TemporaryDirectory directory;
    const std::string from = directory.write("from", std::string(100000, 'x'));
    const ChildResult child = runCommand("copy " + from + " " + directory.path("to"), [] {
        std::signal(SIGXFSZ, SIG_IGN);
        // The child's standard streams are files too, so the limit must leave space for their content.
        const rlimit limit = {50000, 50000};
        setrlimit(RLIMIT_FSIZE, &limit);
    });
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.err, "copy: " + directory.path("to") + ": File too large\n");
}

TEST(ConsoleCopy, AnUnusableSourceLeavesTheTargetUnchanged) {
    TemporaryDirectory directory;
    const std::string target = directory.write("target", "text");
    const std::string secret = directory.write("secret", "hidden");
    ASSERT_EQ(chmod(secret.c_str(), 0), 0);
    expectFailure(runCommand("copy /nonexistent " + target), "copy: /nonexistent: No such file or directory");
    expectFailure(runCommand("copy " + directory.path() + " " + target),
                  "copy: " + directory.path() + ": Is a directory");
    expectFailure(runCommand("copy " + secret + " " + target, test::obeyPermissions),
                  "copy: " + secret + ": Permission denied");
    EXPECT_EQ(directory.read("target"), "text");
}

TEST(ConsoleCopy, AnUnusableTargetIsReported) {
    TemporaryDirectory directory;
    const std::string from = directory.write("from", "text");
    const std::string closed = directory.write("closed", "kept");
    ASSERT_EQ(chmod(closed.c_str(), 0444), 0);
    expectFailure(runCommand("copy " + from + " " + directory.path()),
                  "copy: " + directory.path() + ": Is a directory");
    expectFailure(runCommand("copy " + from + " " + directory.path("no/file")),
                  "copy: " + directory.path("no/file") + ": No such file or directory");
    expectFailure(runCommand("copy " + from + " " + closed, test::obeyPermissions),
                  "copy: " + closed + ": Permission denied");
    EXPECT_EQ(directory.read("closed"), "kept");
}

// Standard output that fails

TEST(ConsoleOutput, IfClosedFailsEachCommandThatWrites) {
    const ChildResult child = runConsole({}, "set A B\nhelp\n", [] { close(STDOUT_FILENO); });
    expectFailure(child, "standard output: Bad file descriptor");
}

TEST(ConsoleOutput, OnAFullDeviceFailsEachCommandThatWrites) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "one\n");
    const ChildResult child = runConsole({}, "set A B\nshow file " + file + "\nhelp\n", discardInFullDevice);
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.err, "standard output: No space left on device\nstandard output: No space left on device\n");
}

TEST(ConsoleOutput, AnEndlessAnswerEndsWhenNobodyReadsIt) {
    for (const char* command : {"show file /dev/zero", "dump /dev/zero"}) {
        const ChildResult child = runCommand(command, discardInFullDevice);
        EXPECT_EQ(child.status, 1);
        EXPECT_EQ(child.err, "standard output: No space left on device\n");
    }
}

void writeToAClosedPipe() {
    int ends[2];
    if (pipe(ends) != 0)
        _exit(126);
    dup2(ends[1], STDOUT_FILENO);
    close(ends[0]);
    close(ends[1]);
}

TEST(ConsoleOutput, AClosedPipeEndsTheConsole) {
    const ChildResult child = runCommand("show file /dev/zero", [] {
        writeToAClosedPipe();
        std::signal(SIGPIPE, SIG_DFL);
    });
    EXPECT_EQ(child.signal, SIGPIPE);
    EXPECT_EQ(child.err, "");
}

TEST(ConsoleOutput, AClosedPipeIsAnErrorWhereTheSignalIsIgnored) {
    const ChildResult child = runCommand("show file /dev/zero", [] {
        writeToAClosedPipe();
        std::signal(SIGPIPE, SIG_IGN);
    });
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.err, "standard output: Broken pipe\n");
}

// history

TEST(ConsoleHistory, KeepsCommandsAndAnswersAndFailures) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "one\ntwo\n");
    const std::string begun = directory.write("begun", "no end");
    const ChildResult child = runConsole({}, "sh f " + file + "\nbogus secret words\nhistory\nshow file " + begun +
                                                 "\nshow file /nonexistent\nhistory\n");
    const std::string first = "vx> sh f " + file + "\none\ntwo\nvx> bogus\nunknown command: bogus (try help)\n";
    EXPECT_EQ(child.out, "one\ntwo\n" + first + "no end" + first + "vx> show file " + begun +
                             "\nno end\nvx> show file /nonexistent\n"
                             "show file: /nonexistent: No such file or directory\n");
}

TEST(ConsoleHistory, DropsTheOldestInWholeLines) {
    TemporaryDirectory directory;
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "line " + std::to_string(100000 + i) + "\n";
    const std::string file = directory.write("text", text);
    const ChildResult child = runConsole({}, "show file " + file + "\nhistory\n");
    ASSERT_GT(child.out.size(), text.size());
    const std::string held = child.out.substr(text.size());
    EXPECT_GT(held.size(), 60000U);
    EXPECT_LE(held.size(), 65536U);
    EXPECT_EQ(held, text.substr(text.size() - held.size()));
    EXPECT_EQ(held.substr(0, 5), "line ");
}

// count words, md5, crc, check utf8

TEST(ConsoleCountWords, ShowsTheMostFrequentFirst) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", "b a, c! A b\nDon't_x grün b");
    expectAnswer(runCommand("count words " + file),
                 "       3 b\n       2 a\n       1 c\n       1 don't_x\n       1 grün\n");
}

TEST(ConsoleCountWords, CountsAcrossTheBlocksOfABigFile) {
    TemporaryDirectory directory;
    std::string text;
    for (int i = 0; i < 30000; ++i)
        text += "word" + std::to_string(i % 7) + " common ";
    const std::vector<std::string> lines = linesOf(runCommand("count words " + directory.write("text", text)).out);
    ASSERT_EQ(lines.size(), 8U);
    EXPECT_EQ(lines[0], "   30000 common");
    EXPECT_EQ(lines[1], "    4286 word0");
    EXPECT_EQ(lines[7], "    4285 word6");
}

TEST(ConsoleCountWords, AnagramsAreCountedAsFastAsOtherWords) {
    TemporaryDirectory directory;
    // Permutations of the same characters: a hash that adds them up gives every word the same value.
    std::string text;
    std::string word = "abcdefghi";
    const int count = 200000;
    for (int i = 0; i < count; ++i, std::next_permutation(word.begin(), word.end()))
        text += word + "\n";
    const std::string file = directory.write("text", text);
    const auto begin = std::chrono::steady_clock::now();
    const ChildResult child = runCommand("count words " + file);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
    const std::vector<std::string> lines = linesOf(child.out);
    ASSERT_EQ(lines.size(), static_cast<std::size_t>(count));
    EXPECT_EQ(lines.front(), "       1 abcdefghi");
}

TEST(ConsoleCountWords, AWordMayBeLongerThanTheOutputBuffer) {
    TemporaryDirectory directory;
    const std::string word(1000000, 'x');
    expectAnswer(runCommand("count words " + directory.write("text", word + " y")),
                 "       1 " + word + "\n       1 y\n");
}

TEST(ConsoleMd5, MatchesThePlatform) {
    TemporaryDirectory directory;
    std::string paths;
    for (const std::size_t size : {0, 1, 55, 56, 63, 64, 65, 16384, 100001})
        paths += " " + directory.write("size" + std::to_string(size), binaryText(size));
    const std::string expected = outputOf("md5sum" + paths);
    ASSERT_FALSE(expected.empty());
    expectAnswer(runCommand("md5" + paths), expected);
}

TEST(ConsoleMd5, ContinuesAfterABadFile) {
    TemporaryDirectory directory;
    const std::string good = directory.write("good", "abc");
    const ChildResult child = runCommand("md5 /nonexistent " + good + " /");
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "900150983cd24fb0d6963f7d28e17f72  " + good + "\n");
    EXPECT_EQ(child.err, "md5: /nonexistent: No such file or directory; /: Is a directory\n");
}

TEST(ConsoleCrc, StartsWithAllBitsSet) {
    TemporaryDirectory directory;
    const std::string empty = directory.write("empty", "");
    // The initial value for an empty file, and a message that ends with its own CRC, which gives 0.
    const std::string own = directory.write("own", "\xff");
    expectAnswer(runCommand("crc " + empty + " " + own), "ff  " + empty + "\n00  " + own + "\n");
}

TEST(ConsoleCheckUtf8, FindsTheFirstBadCharacter) {
    TemporaryDirectory directory;
    const std::vector<std::pair<std::string, int>> texts = {{std::string("ab\0", 3), 2},
                                                            {"gr\xc3\xbcn \xc3", 6},
                                                            {"\x80", 0},
                                                            {"abc\xff", 3},
                                                            {"a\x1b[0m", 1},
                                                            {std::string(16383, 'x') + "\xc3\xbc\xc3(", 16385}};
    for (const auto& text : texts) {
        const std::string file = directory.write("text", text.first);
        expectFailure(runCommand("check utf8 " + file),
                      "check utf8: " + file + ": not printable UTF-8 at offset " + std::to_string(text.second));
    }
}

TEST(ConsoleCheckUtf8, AcceptsTextWhereverItsBlocksEnd) {
    TemporaryDirectory directory;
    std::string text = "x";
    while (text.size() < 100000)
        text += "\xe2\x82\xac \xc3\xa4\t\xf0\x9f\x99\x82\r\n";
    for (const std::string& good : {text, std::string(), std::string("plain\n")}) {
        const std::string file = directory.write("text", good);
        expectAnswer(runCommand("check utf8 " + file), file + ": printable UTF-8\n");
    }
}

// The system

TEST(ConsoleDate, ShowsDayAndTime) {
    // Not `time`, which may lag the clock that the console reads by some milliseconds.
    const auto presentSecond = [] {
        timespec now = {};
        clock_gettime(CLOCK_REALTIME, &now);
        return now.tv_sec;
    };
    const std::time_t before = presentSecond();
    const ChildResult child = runCommand("date", [] { setenv("TZ", "UTC0", 1); });
    const std::time_t after = presentSecond();
    EXPECT_EQ(child.status, 0);
    bool found = false;
    for (std::time_t at = before; at <= after; ++at) {
        tm fields = {};
        char text[100];
        gmtime_r(&at, &fields);
        std::strftime(text, sizeof text, "%A %B %d, %Y, %H:%M:%S UTC (+0000)\n", &fields);
        found = found || child.out == text;
    }
    EXPECT_TRUE(found) << child.out;
}

TEST(ConsoleUptime, MatchesTheSystem) {
    const auto secondsUp = [] {
        std::ifstream file("/proc/uptime");
        double seconds = -1;
        file >> seconds;
        return seconds;
    };
    const double before = secondsUp();
    const ChildResult child = runCommand("uptime");
    const double after = secondsUp();
    unsigned int hours = 0;
    unsigned int minutes = 0;
    unsigned int seconds = 0;
    unsigned int thousandths = 0;
    std::smatch parts;
    ASSERT_TRUE(std::regex_match(child.out, parts,
                                 std::regex("(?:([0-9]+) days? )?([0-2][0-9]:[0-5][0-9]:[0-5][0-9]\\.[0-9]{3})\n")))
        << child.out;
    const unsigned long long days = parts[1].matched ? std::stoull(parts[1]) : 0;
    ASSERT_EQ(std::sscanf(parts[2].str().c_str(), "%u:%u:%u.%u", &hours, &minutes, &seconds, &thousandths), 4);
    const double shown =
        static_cast<double>(days * 86400 + hours * 3600 + minutes * 60 + seconds) + thousandths / 1000.0;
    EXPECT_GE(shown, before - 0.02);
    EXPECT_LE(shown, after + 0.02);
}

TEST(ConsoleShowPorts, NamesEveryInterfaceWithEachOfItsAddresses) {
    ifaddrs* list = nullptr;
    ASSERT_EQ(getifaddrs(&list), 0);
    const ChildResult child = runCommand("show ports");
    EXPECT_EQ(child.status, 0);
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        const std::string name = entry->ifa_name;
        std::string line;
        for (const std::string& candidate : linesOf(child.out)) {
            if (candidate.compare(0, name.size() + 1, name + " ") == 0)
                line = candidate;
        }
        EXPECT_NE(line, "") << name;
        EXPECT_NE(line.back(), ' ') << line;
        if (entry->ifa_addr == nullptr)
            continue;
        char text[INET6_ADDRSTRLEN] = "";
        if (entry->ifa_addr->sa_family == AF_INET) {
            sockaddr_in address = {};
            std::memcpy(&address, entry->ifa_addr, sizeof address);
            inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
            EXPECT_NE(line.find(std::string(text) + ":3260"), std::string::npos) << line;
        } else if (entry->ifa_addr->sa_family == AF_INET6) {
            sockaddr_in6 address = {};
            std::memcpy(&address, entry->ifa_addr, sizeof address);
            inet_ntop(AF_INET6, &address.sin6_addr, text, sizeof text);
            EXPECT_NE(line.find(std::string(text) + ":3260"), std::string::npos) << line;
        }
        const ChildResult mac =
            test::runInChild([&] { execlp("cat", "cat", ("/sys/class/net/" + name + "/address").c_str(), nullptr); });
        if (mac.status == 0 && mac.out.size() == 18) {
            EXPECT_NE(line.find(mac.out.substr(0, 17)), std::string::npos) << line;
        }
    }
    freeifaddrs(list);
}

TEST(ConsoleShowDisks, NamesEveryBlockDevice) {
    const ChildResult child = runCommand("show disks");
    EXPECT_EQ(child.status, 0);
    const std::vector<std::string> lines = linesOf(child.out);
    const std::vector<std::string> names = linesOf(outputOf("ls /sys/block 2>/dev/null"));
    ASSERT_EQ(lines.size(), names.size() + 1);
    EXPECT_EQ(lines[0].compare(0, 5, "NAME "), 0);
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string rotational = outputOf("cat /sys/block/" + names[i] + "/queue/rotational 2>/dev/null");
        rotational = rotational == "1\n" ? " rotational " : rotational == "0\n" ? " solid " : " - ";
        EXPECT_EQ(lines[i + 1].compare(0, names[i].size() + 1, names[i] + " "), 0) << lines[i + 1];
        EXPECT_NE(lines[i + 1].find(rotational), std::string::npos) << lines[i + 1];
    }
}

// Paths and URLs

TEST(ConsoleLs, ShowsTypesAndSizesInOrder) {
    TemporaryDirectory directory;
    const std::string file = directory.write("b.txt", std::string(1234, 'x'));
    directory.write("a.txt", "");
    ASSERT_EQ(mkdir(directory.path("c").c_str(), 0755), 0);
    ASSERT_EQ(symlink("b.txt", directory.path("d.txt").c_str()), 0);
    ASSERT_EQ(mkfifo(directory.path("e").c_str(), 0600), 0);
    const std::vector<std::string> lines = linesOf(runCommand("ls " + directory.path()).out);
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_TRUE(std::regex_match(lines[0], std::regex("directory +[0-9,]+ \\.")));
    EXPECT_TRUE(std::regex_match(lines[1], std::regex("directory +[0-9,]+ \\.\\.")));
    EXPECT_EQ(lines[2], "file                         0 a.txt");
    EXPECT_EQ(lines[3], "file                     1,234 b.txt");
    EXPECT_TRUE(std::regex_match(lines[4], std::regex("directory +[0-9,]+ c")));
    EXPECT_EQ(lines[5], "link                         5 d.txt");
    EXPECT_EQ(lines[6], "pipe                         0 e");
    expectAnswer(runCommand("ls " + directory.path() + " [ab].txt"), lines[2] + "\n" + lines[3] + "\n");
    expectAnswer(runCommand("ls " + directory.path() + "/ *.png"), "");
}

TEST(ConsoleLs, ShowsThousandsOfEntries) {
    TemporaryDirectory directory;
    for (int i = 0; i < 3000; ++i)
        directory.write("entry" + std::to_string(i), "");
    EXPECT_EQ(countOf(runCommand("ls " + directory.path() + " entry*").out, "\n"), 3000U);
}

TEST(ConsoleLs, AnUnreadableDirectoryIsReported) {
    TemporaryDirectory directory;
    const std::string file = directory.write("file", "");
    ASSERT_EQ(mkdir(directory.path("closed").c_str(), 0), 0);
    expectFailure(runCommand("ls /nonexistent"), "ls: /nonexistent: No such file or directory");
    expectFailure(runCommand("ls " + file), "ls: " + file + ": Not a directory");
    expectFailure(runCommand("ls " + directory.path("closed"), test::obeyPermissions),
                  "ls: " + directory.path("closed") + ": Permission denied");
}

TEST(ConsolePath, ShowsPartsComponentsAndTheNormalForm) {
    expectAnswer(runCommand("path /a/../b/./c.txt"), "directory  /a/../b/./\nfile       c\nextension  txt\n"
                                                     "        0  a\n        1  ..\n        2  b\n        3  .\n"
                                                     "        4  c.txt\nnormal     /b/c.txt\n");
    const ChildResult child = runCommand("path ../../x");
    EXPECT_NE(child.out.find("(leaves its root)"), std::string::npos);
    EXPECT_EQ(child.status, 0);
}

TEST(ConsoleFind, FindsAFileInAList) {
    TemporaryDirectory directory;
    directory.write("ports.cfg", "");
    expectAnswer(runCommand("find ports.cfg /nonexistent:" + directory.path() + ":/etc"),
                 directory.path("ports.cfg") + "\n");
    expectFailure(runCommand("find ports.cfg /nonexistent"), "find: ports.cfg: not found in /nonexistent");
}

TEST(ConsoleUrl, ShowsPartsDecoded) {
    expectAnswer(runCommand("url http://array:80/a%20b?q=1"),
                 "scheme     http\nauthority  array:80\npath       /a b\nquery      q=1\n"
                 "decoded    http://array:80/a b?q=1\n");
}

TEST(ConsoleLs, ADirectoryThatCannotBeReadToItsEndIsReported) {
    if (isChecked)
        GTEST_SKIP() << checkersCalls;
    TemporaryDirectory directory;
    directory.write("file", "");
    const ChildResult child = runCommand("ls " + directory.path(), [] { test::failSystemCall(SYS_getdents64, EIO); });
    if (child.status == test::cannotFilter)
        GTEST_SKIP() << noFailingCalls;
    expectFailure(child, "ls: " + directory.path() + ": cannot be read to its end");
}

TEST(ConsoleLs, EntriesThatCannotBeLookedUpAreReported) {
    TemporaryDirectory directory;
    directory.write("file", "");
    ASSERT_EQ(chmod(directory.path().c_str(), 0444), 0);
    const ChildResult child = runCommand("ls " + directory.path(), test::obeyPermissions);
    ASSERT_EQ(chmod(directory.path().c_str(), 0755), 0);
    expectFailure(child, "ls: " + directory.path() + "/.: Permission denied");
}

TEST(Console, AThreadThatCannotStartIsReportedAndTheSessionGoesOn) {
    if (isChecked)
        GTEST_SKIP() << checkersCalls;
    const ChildResult child = runConsole({}, "path /a\npath /b\n", [] { test::failSystemCall(SYS_clone3, EAGAIN); });
    if (child.status == test::cannotFilter)
        GTEST_SKIP() << noFailingCalls;
    const std::string line = "cannot start the thread that runs commands: Resource temporarily unavailable\n";
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "");
    EXPECT_EQ(child.err, line + line);
}

// context and crashes

TEST(ConsoleContext, ShowsBothThreadsAndRemovesItsFiles) {
    if (isThreadSanitized)
        GTEST_SKIP() << unseenOrder;
    TemporaryDirectory directory;
    const ChildResult child = runCommand("context", [&] { setenv("TMPDIR", directory.path().c_str(), 1); });
    EXPECT_EQ(child.status, 0) << child.err;
    EXPECT_TRUE(std::regex_search(child.out, std::regex("^[0-9]+console\n"))) << child.out;
    EXPECT_TRUE(std::regex_search(child.out, std::regex("\n[0-9]+worker\n"))) << child.out;
    EXPECT_EQ(countOf(child.out, "Backtrace Start>>>"), 2U);
    EXPECT_EQ(countOf(child.out, "<<<Backtrace End"), 2U);
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

TEST(ConsoleContext, LeavesTheUsersOwnContextFilesUnchanged) {
    if (isThreadSanitized)
        GTEST_SKIP() << unseenOrder;
    TemporaryDirectory directory;
    ASSERT_EQ(mkdir(directory.path("vxconsoleContext").c_str(), 0755), 0);
    directory.write("vxconsoleContext/1console", "an earlier report");
    const ChildResult child = runConsole({}, "context\nshow environment\n", [&] {
        setenv("TMPDIR", directory.path().c_str(), 1);
        setenv("VX_MEM", directory.path().c_str(), 1);
    });
    EXPECT_EQ(child.status, 0) << child.err;
    EXPECT_EQ(countOf(child.out, "<<<Backtrace End"), 2U);
    EXPECT_EQ(directory.read("vxconsoleContext/1console"), "an earlier report");
    EXPECT_NE(child.out.find("VX_MEM=" + directory.path() + "\n"), std::string::npos);
}

TEST(ConsoleContext, AMissingFolderIsReported) {
    TemporaryDirectory directory;
    const ChildResult child = runCommand("context", [&] {
        setenv("TMPDIR", "/nonexistent", 1);
        setenv("VX_MEM", directory.path().c_str(), 1);
    });
    EXPECT_EQ(child.status, 1);
    EXPECT_EQ(child.out, "");
    EXPECT_TRUE(
        std::regex_match(child.err, std::regex("context: /nonexistent/vxconsole\\w{6}: No such file or directory\n")))
        << child.err;
    EXPECT_TRUE(std::filesystem::is_empty(directory.path()));
}

} // namespace
