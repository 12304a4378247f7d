#include <chrono>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/ConsoleProgram.h"
#include "support/HeldBackSignals.h"
#include "support/Pty.h"
#include "support/Screen.h"
#include "support/TemporaryDirectory.h"

namespace {

using test::heldBack;
using test::isHeldBack;
using test::Pty;
using test::TemporaryDirectory;

const std::string pagePrompt = "Press any key to continue (Q to quit)";
const std::string removedPrompt = "\r" + std::string(37, ' ') + "\r";

// The console of this build in a pseudo-terminal.
class Terminal : public Pty {
public:
    explicit Terminal(int columns = 80, int rows = 25)
        : Pty(test::consoleCommand({}), columns, rows, test::setConsoleEnvironment) {}

    // Returns the output up to the next prompt, without the prompt.
    std::string untilPrompt() {
        const std::string seen = expect("vx> ");
        return seen.substr(0, seen.size() - 4);
    }
    // Enters a command and returns its answer, without the echoed command line.
    std::string answerTo(const std::string& command) {
        type(command + "\r");
        expect(command + "\r\n");
        return untilPrompt();
    }
    void expectExit(int status) {
        const Change change = waitForChange();
        EXPECT_EQ(change.status, status);
        EXPECT_EQ(change.signal, 0);
        EXPECT_TRUE(isInFormerMode());
    }
};

std::string numberedLines(int first, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += "line " + std::to_string(first + i) + "\n";
    return text;
}

// Returns `text` with "\r\n" for each newline, as a terminal receives it.
std::string shown(const std::string& text) {
    std::string result;
    for (const char c : text)
        result += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return result;
}

std::size_t linesIn(const std::string& text) {
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST(Pty, UsageExample) {
    test::Pty terminal({"/bin/cat"});
    terminal.type("ports\n");
    terminal.expect("ports");
}

TEST(Screen, UsageExample) {
    test::Screen screen(20);
    screen.show("one\rtwo");
    EXPECT_EQ(screen.lines().back(), "two");
}

// Prompt and end

TEST(ConsoleTerminal, PromptsAnswersAndPromptsAgain) {
    TemporaryDirectory directory;
    Terminal terminal;
    EXPECT_EQ(terminal.untilPrompt(), "");
    EXPECT_TRUE(terminal.isInKeyMode());
    EXPECT_EQ(terminal.answerTo("show file " + directory.write("text", "one\ntwo\n")), "one\r\ntwo\r\n");
    EXPECT_EQ(terminal.answerTo(""), "");
    EXPECT_EQ(terminal.answerTo("bogus"), "unknown command: bogus (try help)\r\n");
    terminal.type("quit\r");
    terminal.expectExit(0);
}

TEST(ConsoleTerminal, APromptStartsANewLine) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    EXPECT_EQ(terminal.answerTo("show file " + directory.write("text", "no end")), "no end\r\n");
}

TEST(ConsoleTerminal, TheEndOfInputEndsItOnAnEmptyLineOnly) {
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("bog\004us\r");
    terminal.expect("us\r\nunknown command: bogus (try help)\r\n");
    terminal.untilPrompt();
    terminal.type("\004");
    terminal.expectExit(0);
}

TEST(ConsoleTerminal, AHangupEndsIt) {
    Terminal terminal;
    terminal.untilPrompt();
    terminal.hangUp();
    const Pty::Change change = terminal.waitForChange();
    EXPECT_TRUE(change.status == 0 || change.signal == SIGHUP) << change.status << ' ' << change.signal;
}

TEST(ConsoleTerminal, AHangupAtThePagePromptEndsIt) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(0, 1000)) + "\r");
    terminal.expect(pagePrompt);
    terminal.hangUp();
    const Pty::Change change = terminal.waitForChange();
    EXPECT_TRUE(change.status == 0 || change.signal == SIGHUP) << change.status << ' ' << change.signal;
}

class ConsoleTerminalSignal : public testing::TestWithParam<int> {};

TEST_P(ConsoleTerminalSignal, RestoresTheTerminalAtThePrompt) {
    if (isHeldBack(GetParam()))
        GTEST_SKIP() << heldBack;
    Terminal terminal;
    terminal.untilPrompt();
    ASSERT_TRUE(terminal.isInKeyMode());
    kill(terminal.program(), GetParam());
    EXPECT_EQ(terminal.waitForChange().signal, GetParam());
    EXPECT_TRUE(terminal.isInFormerMode());
}

TEST_P(ConsoleTerminalSignal, RestoresTheTerminalAtThePagePrompt) {
    if (isHeldBack(GetParam()))
        GTEST_SKIP() << heldBack;
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(0, 100)) + "\r");
    terminal.expect(pagePrompt);
    ASSERT_TRUE(terminal.isInKeyMode());
    kill(terminal.program(), GetParam());
    EXPECT_EQ(terminal.waitForChange().signal, GetParam());
    EXPECT_TRUE(terminal.isInFormerMode());
}

INSTANTIATE_TEST_SUITE_P(Ending, ConsoleTerminalSignal,
                         testing::Values(SIGHUP, SIGQUIT, SIGPIPE, SIGALRM, SIGTERM, SIGUSR1, SIGSEGV, SIGBUS, SIGILL,
                                         SIGFPE, SIGABRT));

// The interrupt key

TEST(ConsoleInterrupt, DropsTheLineAndKeepsTheSession) {
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("quit now\003");
    terminal.expect("^C\r\n");
    EXPECT_EQ(terminal.untilPrompt(), "");
    EXPECT_EQ(terminal.answerTo("bogus"), "unknown command: bogus (try help)\r\n");
}

TEST(ConsoleInterrupt, TheSignalDropsTheLineToo) {
    if (isHeldBack(SIGINT))
        GTEST_SKIP() << heldBack;
    Terminal terminal;
    terminal.untilPrompt();
    for (int i = 0; i < 3; ++i) {
        terminal.type("quit now");
        terminal.expect("quit now");
        kill(terminal.program(), SIGINT);
        terminal.expect("\r\n");
        EXPECT_EQ(terminal.untilPrompt(), "");
    }
    EXPECT_EQ(terminal.answerTo("bogus"), "unknown command: bogus (try help)\r\n");
}

TEST(ConsoleInterrupt, EndsARunningCommandAndKeepsTheSession) {
    TemporaryDirectory directory;
    const std::pair<std::string, std::string> commands[] = {
        {"md5 /dev/zero", "md5: /dev/zero: interrupted\r\n"},
        {"crc /dev/zero /dev/zero", "crc: /dev/zero: interrupted\r\n"},
        {"count words /dev/zero", "count words: /dev/zero: interrupted\r\n"},
        {"copy /dev/zero /dev/null", "copy: interrupted: /dev/null is incomplete\r\n"}};
    Terminal terminal;
    terminal.untilPrompt();
    for (const auto& [command, answer] : commands) {
        terminal.type(command + "\r");
        terminal.expect(command + "\r\n");
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        terminal.type("\003");
        const std::string seen = terminal.untilPrompt();
        EXPECT_NE(seen.find(answer), std::string::npos) << seen;
    }
    EXPECT_EQ(terminal.answerTo("bogus"), "unknown command: bogus (try help)\r\n");
    terminal.type("quit\r");
    terminal.expectExit(0);
}

TEST(ConsoleInterrupt, EndsAnAnswerAtThePagePrompt) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(0, 100)) + "\r");
    terminal.expect(pagePrompt);
    terminal.type("\003");
    EXPECT_EQ(terminal.untilPrompt().find("line 24"), std::string::npos);
    EXPECT_EQ(terminal.answerTo("bogus"), "unknown command: bogus (try help)\r\n");
}

TEST(ConsoleInterrupt, ASecondOneEndsAConsoleThatDoesNotReact) {
    TemporaryDirectory directory;
    const std::string pipe = directory.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    Terminal terminal;
    terminal.untilPrompt();
    // Nobody writes to the pipe.
    terminal.type("show file " + pipe + "\r");
    terminal.expect(pipe + "\r\n");
    for (int i = 0; i < 2; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        terminal.type("\003");
    }
    EXPECT_EQ(terminal.waitForChange().signal, SIGINT);
    EXPECT_TRUE(terminal.isInFormerMode());
}

TEST(ConsoleInterrupt, EndsTheQuestionForAPassword) {
    TemporaryDirectory directory;
    ASSERT_EQ(mkdir(directory.path("etc").c_str(), 0755), 0);
    directory.write("etc/passwd", "root:x:0:0:root:/root:/bin/sh\n");
    Pty terminal(test::consoleCommand({}), 80, 25, [&] {
        test::setConsoleEnvironment();
        setenv("VX_ROOT", directory.path().c_str(), 1);
    });
    terminal.expect("vx> ");
    terminal.type("password root\r");
    terminal.expect("New password: ");
    terminal.type("half\003");
    terminal.expect("password: no password was entered\r\n");
    terminal.expect("vx> ");
}

TEST(ConsoleTerminal, AnIgnoredSignalStaysIgnored) {
    Pty terminal(test::consoleCommand({}), 80, 25, [] {
        test::setConsoleEnvironment();
        std::signal(SIGHUP, SIG_IGN);
        std::signal(SIGTSTP, SIG_IGN);
    });
    terminal.expect("vx> ");
    kill(terminal.program(), SIGHUP);
    terminal.type("\032quit\r");
    EXPECT_EQ(terminal.waitForChange().status, 0);
    EXPECT_TRUE(terminal.isInFormerMode());
}

TEST(ConsoleTerminal, ACrashReportsABackTraceWithReadableNames) {
    Terminal terminal;
    terminal.untilPrompt();
    kill(terminal.program(), SIGSEGV);
    EXPECT_EQ(terminal.waitForChange().signal, SIGSEGV);
    const std::string& report = terminal.pending();
    EXPECT_NE(report.find("Received SIGNAL SIGSEGV(11)"), std::string::npos) << report;
    EXPECT_NE(report.find("Backtrace Start>>>"), std::string::npos) << report;
    EXPECT_NE(report.find("<<<Backtrace End"), std::string::npos) << report;
    EXPECT_NE(report.find(" utility::Debug::SignalCrash(int)+0x"), std::string::npos) << report;
    EXPECT_TRUE(terminal.isInFormerMode());
}

TEST(ConsoleTerminal, TheStopKeyRestoresTheTerminalAndKeyModeReturns) {
    if (isHeldBack(SIGTSTP))
        GTEST_SKIP() << heldBack;
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    for (int i = 0; i < 3; ++i) {
        terminal.type("\032");
        EXPECT_EQ(terminal.waitForChange().stoppedBy, SIGTSTP);
        EXPECT_TRUE(terminal.isInFormerMode());
        terminal.continueProgram();
        EXPECT_TRUE(terminal.becomes(true));
        EXPECT_EQ(terminal.answerTo("show file " + directory.write("text", "one\n")), "one\r\n");
    }
    terminal.type("quit\r");
    terminal.expectExit(0);
}

TEST(ConsoleTerminal, CanBeStoppedAtThePagePrompt) {
    if (isHeldBack(SIGTSTP))
        GTEST_SKIP() << heldBack;
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(0, 30)) + "\r");
    terminal.expect(pagePrompt);
    terminal.type("\032");
    EXPECT_EQ(terminal.waitForChange().stoppedBy, SIGTSTP);
    EXPECT_TRUE(terminal.isInFormerMode());
    terminal.continueProgram();
    EXPECT_TRUE(terminal.becomes(true));
    terminal.type(" ");
    EXPECT_EQ(terminal.untilPrompt(), removedPrompt + shown(numberedLines(24, 6)));
}

TEST(ConsoleTerminal, KeyModeReturnsAfterAStopThatCannotBeCaught) {
    if (isHeldBack(SIGCONT))
        GTEST_SKIP() << heldBack;
    Terminal terminal;
    terminal.untilPrompt();
    kill(terminal.program(), SIGSTOP);
    EXPECT_EQ(terminal.waitForChange().stoppedBy, SIGSTOP);
    terminal.continueProgram();
    EXPECT_TRUE(terminal.becomes(true));
    terminal.type("quit\r");
    terminal.expectExit(0);
}

// Control characters

// Text with control characters, and the same text as it must be shown.
const std::string unsafeText = "\033[2J\x9b"
                               "1m\xc2\x9b"
                               "2m\x7f\x80\xff\b\r\033";
const std::string unsafeTextShown = "\\x1b[2J\\x9b1m\\xc2\\x9b2m\\x7f\\x80\\xff\\x08\\x0d\\x1b";
const std::string readableText = "gr\xc3\xbcn \xe6\xbc\xa2\xe5\xad\x97 \xf0\x9f\x99\x82";

TEST(ConsoleEscapes, ControlCharactersInAFileAreEscapedAndTextStaysReadable) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", unsafeText + readableText + "\n" + std::string(1, 0) + "\n\xc3");
    Terminal terminal;
    terminal.untilPrompt();
    EXPECT_EQ(terminal.answerTo("show file " + file), unsafeTextShown + readableText + "\r\n\\x00\r\n\\xc3\r\n");
    // The history holds the escaped text too.
    terminal.type("history\r");
    terminal.expect("vx> show file " + file + "\r\n" + unsafeTextShown + readableText + "\r\n\\x00\r\n\\xc3\r\n");
}

TEST(ConsoleEscapes, TabsStayTabs) {
    TemporaryDirectory directory;
    Pty terminal(test::consoleCommand({"-c", "show file " + directory.write("text", "one\ttwo\n")}), 80, 25, [] {
        test::setConsoleEnvironment();
        termios mode = {};
        tcgetattr(STDOUT_FILENO, &mode);
        mode.c_oflag &= ~static_cast<tcflag_t>(TABDLY);
        tcsetattr(STDOUT_FILENO, TCSANOW, &mode);
    });
    EXPECT_EQ(terminal.expect("two\r\n"), "one\ttwo\r\n");
    EXPECT_EQ(terminal.waitForChange().status, 0);
}

TEST(ConsoleEscapes, ControlCharactersInNamesUrlsAndTheEnvironmentAreEscaped) {
    TemporaryDirectory directory;
    directory.write("name" + unsafeText, "abc");
    const std::string shownName = "name" + unsafeTextShown;
    setenv("VX_UNSAFE", unsafeText.c_str(), 1);
    Terminal terminal(80, 500);
    unsetenv("VX_UNSAFE");
    terminal.untilPrompt();
    const std::string listed = terminal.answerTo("ls " + directory.path());
    EXPECT_EQ(listed.substr(listed.find("name")), shownName + "\r\n");
    EXPECT_NE(terminal.answerTo("url http://host/%1b%5B2J%C2%9B").find("\\x1b[2J\\xc2\\x9b"), std::string::npos);
    terminal.type("show environment\r");
    terminal.expect("VX_UNSAFE=" + unsafeTextShown);
}

TEST(ConsoleEscapes, TheAnswerAndFailureOfASingleCommandAreEscaped) {
    TemporaryDirectory directory;
    const std::string file =
        directory.write("name" + unsafeText, std::string(16383, 'x') + "\xc3\xbc" + unsafeText + "\n");
    Pty answer(test::consoleCommand({"-c", "md5 \"" + file + "\""}), 80, 25, test::setConsoleEnvironment);
    EXPECT_NE(answer.expect("\n").find("name" + unsafeTextShown + "\r\n"), std::string::npos);
    EXPECT_EQ(answer.waitForChange().status, 0);
    Pty content(test::consoleCommand({"-c", "show file \"" + file + "\""}), 80, 25, test::setConsoleEnvironment);
    EXPECT_EQ(content.expect("\n"), std::string(16383, 'x') + "\xc3\xbc" + unsafeTextShown + "\r\n");
    EXPECT_EQ(content.waitForChange().status, 0);
    Pty failure(test::consoleCommand({"-c", "show file \"/none" + unsafeText + "\""}), 80, 25,
                test::setConsoleEnvironment);
    EXPECT_EQ(failure.expect("\n"), "show file: /none" + unsafeTextShown + ": No such file or directory\r\n");
    EXPECT_EQ(failure.waitForChange().status, 1);
}

TEST(ConsoleEscapes, CountTheirColumnsOnAPage) {
    TemporaryDirectory directory;
    std::string text;
    std::string page;
    // Thirty escapes of four columns are two rows.
    for (int i = 0; i < 13; ++i)
        text += std::string(30, '\033') + "\n";
    for (int i = 0; i < 30; ++i)
        page += "\\x1b";
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", text) + "\r");
    terminal.expect("\r\n");
    std::string pages;
    for (int i = 0; i < 12; ++i)
        pages += page + "\r\n";
    EXPECT_EQ(terminal.expect(pagePrompt), pages + pagePrompt);
    terminal.type(" ");
    EXPECT_EQ(terminal.untilPrompt(), removedPrompt + page + "\r\n");
}

// Pages

TEST(ConsolePages, ThirtyLinesAreAPageThePromptAndTheRest) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", numberedLines(0, 30));
    for (const char* key : {" ", "\r", "x", "\004", "\xc3\xbc", "\033[B", "\033[6~", "\033OB", "\033"}) {
        Terminal terminal;
        terminal.untilPrompt();
        terminal.type("show file " + file + "\r");
        terminal.expect("\r\n");
        EXPECT_EQ(terminal.expect(pagePrompt), shown(numberedLines(0, 24)) + pagePrompt);
        terminal.type(key);
        EXPECT_EQ(terminal.untilPrompt(), removedPrompt + shown(numberedLines(24, 6)));
        // No byte of the key is left for the next prompt.
        EXPECT_EQ(terminal.answerTo("bogus"), "unknown command: bogus (try help)\r\n");
    }
}

TEST(ConsolePages, AKeyOfSeveralBytesShowsOnePage) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(0, 24 * 10)) + "\r");
    terminal.expect("\r\n");
    int line = 0;
    for (const char* key :
         {"\033[6~", "\xe2\x82\xac", "\033[1;5B", "\033OP", "\xf0\x9f\x99\x82", "a", "\033", "b", "c"}) {
        EXPECT_EQ(terminal.expect(pagePrompt),
                  (line > 0 ? removedPrompt : "") + shown(numberedLines(line, 24)) + pagePrompt);
        terminal.type(key);
        line += 24;
    }
    EXPECT_EQ(terminal.untilPrompt(), removedPrompt + shown(numberedLines(line, 24)));
}

TEST(ConsolePages, AShortAnswerHasNoPrompt) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    EXPECT_EQ(terminal.answerTo("show file " + directory.write("text", numberedLines(0, 24))),
              shown(numberedLines(0, 24)));
}

TEST(ConsolePages, LongLinesAreCountedAsTheTerminalShowsThem) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    std::string text;
    for (int i = 0; i < 9; ++i)
        text += std::string(200, static_cast<char>('a' + i)) + "\n";
    terminal.type("show file " + directory.write("text", text) + "\r");
    terminal.expect("\r\n");
    EXPECT_EQ(terminal.expect(pagePrompt), shown(text.substr(0, 201 * 8)) + pagePrompt);
    terminal.type(" ");
    EXPECT_EQ(terminal.untilPrompt(), removedPrompt + shown(text.substr(201 * 8)));
}

TEST(ConsolePages, FormattedAnswersArePagedToo) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("dump " + directory.write("zeros", std::string(16 * 50, 0)) + "\r");
    terminal.expect("\r\n");
    EXPECT_EQ(linesIn(terminal.expect(pagePrompt)), 24U);
    terminal.type(" ");
    EXPECT_EQ(linesIn(terminal.expect(pagePrompt)), 24U);
    terminal.type(" ");
    EXPECT_EQ(linesIn(terminal.untilPrompt()), 2U);
}

TEST(ConsolePages, QuitDropsTheRestAndTheNextAnswerIsWhole) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", numberedLines(0, 100));
    Terminal terminal;
    terminal.untilPrompt();
    for (const char* key : {"q", "Q"}) {
        for (const char* command : {"show file ", "dump "}) {
            terminal.type(command + file + "\r");
            terminal.expect(pagePrompt);
            terminal.type(key);
            EXPECT_EQ(terminal.untilPrompt(), removedPrompt);
        }
    }
    EXPECT_EQ(terminal.answerTo("show file " + directory.write("small", "one\n")), "one\r\n");
}

TEST(ConsolePages, TheLastAnswerOfQuitIsTheEnd) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(0, 100)) + "\r");
    terminal.expect(pagePrompt);
    terminal.type("qquit\r");
    terminal.expectExit(0);
}

TEST(ConsolePages, AHugeFileQuitAfterTheFirstPageReturnsAtOnce) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", numberedLines(0, 100000));
    Terminal terminal;
    terminal.untilPrompt();
    const std::size_t before = terminal.shown();
    const auto begin = std::chrono::steady_clock::now();
    terminal.type("show file " + file + "\r");
    terminal.expect(pagePrompt);
    terminal.type("q");
    terminal.untilPrompt();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
    EXPECT_LT(terminal.shown() - before, 1000U);
}

class ConsoleEndlessAnswer : public testing::TestWithParam<const char*> {};

TEST_P(ConsoleEndlessAnswer, IsReadOnlyUntilTheUserQuits) {
    TemporaryDirectory directory;
    const std::string pipe = directory.path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    std::size_t taken = 0;
    // The writer waits until the console opens the pipe, and ends when the console closes it.
    std::thread writer([&] {
        sigset_t broken;
        sigemptyset(&broken);
        sigaddset(&broken, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &broken, nullptr);
        const std::string lines = numberedLines(0, 100);
        const int fd = open(pipe.c_str(), O_WRONLY | O_CLOEXEC);
        for (ssize_t count = 0; count >= 0 && taken < 100000000;) {
            count = write(fd, lines.data(), lines.size());
            taken += count > 0 ? static_cast<std::size_t>(count) : 0;
        }
        close(fd);
    });
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type(GetParam() + std::string(" ") + pipe + "\r");
    terminal.expect(pagePrompt);
    terminal.type("q");
    EXPECT_EQ(terminal.untilPrompt(), removedPrompt);
    writer.join();
    EXPECT_LT(taken, 1000000U);
}

INSTANTIATE_TEST_SUITE_P(Commands, ConsoleEndlessAnswer, testing::Values("show file", "dump"));

TEST(ConsolePages, ANewSizeAppliesFromTheNextPage) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(100, 80)) + "\r");
    terminal.expect("\r\n");
    EXPECT_EQ(linesIn(terminal.expect(pagePrompt)), 24U);
    terminal.resize(80, 11);
    terminal.type(" ");
    EXPECT_EQ(terminal.expect(pagePrompt), removedPrompt + shown(numberedLines(124, 10)) + pagePrompt);
    terminal.type(" ");
    EXPECT_EQ(terminal.expect(pagePrompt), removedPrompt + shown(numberedLines(134, 10)) + pagePrompt);
    // Eight characters are two rows of five columns.
    terminal.resize(5, 41);
    terminal.type(" ");
    EXPECT_EQ(terminal.expect(pagePrompt), removedPrompt + shown(numberedLines(144, 20)) + pagePrompt);
    terminal.resize(80, 25);
    terminal.type(" ");
    terminal.expect("line 164");
    EXPECT_EQ(linesIn(terminal.untilPrompt()), 16U);
}

TEST(ConsolePages, ANewSizeAtThePromptAppliesToTheNextAnswer) {
    TemporaryDirectory directory;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.resize(80, 6);
    terminal.type("show file " + directory.write("text", numberedLines(0, 10)) + "\r");
    terminal.expect("\r\n");
    EXPECT_EQ(terminal.expect(pagePrompt), shown(numberedLines(0, 5)) + pagePrompt);
}

class ConsoleNarrowTerminal : public testing::TestWithParam<int> {};

TEST_P(ConsoleNarrowTerminal, ErasesThePromptCompletely) {
    const int columns = GetParam();
    TemporaryDirectory directory;
    Terminal terminal(columns, 11);
    test::Screen screen(static_cast<std::size_t>(columns));
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(10, 25)) + "\r");
    terminal.expect("\r\n");
    for (int page = 0; page < 2; ++page) {
        screen.show(terminal.expect(pagePrompt));
        terminal.type(" ");
    }
    screen.show(terminal.untilPrompt());
    std::vector<std::string> expected;
    for (int i = 10; i < 35; ++i)
        expected.push_back("line " + std::to_string(i));
    expected.emplace_back();
    EXPECT_EQ(screen.lines(), expected);
}

INSTANTIATE_TEST_SUITE_P(Widths, ConsoleNarrowTerminal, testing::Values(10, 18, 19, 36, 37, 38, 39, 200));

TEST(ConsolePages, ATerminalWithoutASizeHasTheDefaultSize) {
    TemporaryDirectory directory;
    Terminal terminal(0, 0);
    terminal.untilPrompt();
    terminal.type("show file " + directory.write("text", numberedLines(0, 30)) + "\r");
    terminal.expect("\r\n");
    EXPECT_EQ(terminal.expect(pagePrompt), shown(numberedLines(0, 24)) + pagePrompt);
}

TEST(ConsolePages, OneCommandIsNotPaged) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", numberedLines(0, 100));
    Pty terminal(test::consoleCommand({"-c", "show file " + file}), 80, 25, test::setConsoleEnvironment);
    EXPECT_EQ(terminal.waitForChange().status, 0);
    EXPECT_EQ(terminal.pending(), shown(numberedLines(0, 100)));
    EXPECT_TRUE(terminal.isInFormerMode());
}

// The line editor

// Types keys that leave a line whose command is "bogus".
class ConsoleEditingKeys : public testing::TestWithParam<const char*> {};

TEST_P(ConsoleEditingKeys, ChangeTheLine) {
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type(GetParam());
    terminal.type("\r");
    terminal.expect("unknown command: bogus (try help)\r\n");
    terminal.untilPrompt();
}

INSTANTIATE_TEST_SUITE_P(Keys, ConsoleEditingKeys,
                         testing::Values("bogx\177us",                                // Backspace
                                         "bog\xc3\xbc\177us",                         // after a character of two bytes
                                         "bog\xe6\x97\xa5\xf0\x9f\x99\x82\x08\x08us", // after wide characters
                                         "\177\177bogus", "show \xc3\xbc\025bogus",   // Ctrl-U
                                         "ogus\001b",                                 // Ctrl-A
                                         "ogus\033[Hb", "ogus\033OHb",                // Home
                                         "gus\001bo\005",                             // Ctrl-E
                                         "bogs\033[Du", "bogs\033ODu",                // left
                                         "bogs\033[D\033[D\033[Cu",                   // right
                                         "bogxus\033[D\033[D\033[D\033[3~",           // Delete
                                         "bogus and more\001\033[1;5C\013",           // Ctrl-right, Ctrl-K
                                         "bogus and\027\177",                         // Ctrl-W
                                         "bogus\014"));                               // Ctrl-L

TEST(ConsoleEditing, ControlLClearsTheScreenAndShowsTheLineAgain) {
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("bog");
    terminal.expect("bog");
    terminal.type("\014");
    terminal.expect("\033[H\033[2J");
    terminal.expect("vx> bog");
    terminal.type("us\r");
    terminal.expect("unknown command: bogus");
}

TEST(ConsoleEditing, TheLineIsShownAgainAfterAStop) {
    if (isHeldBack(SIGTSTP))
        GTEST_SKIP() << heldBack;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("bog");
    terminal.expect("bog");
    terminal.type("\032");
    EXPECT_EQ(terminal.waitForChange().stoppedBy, SIGTSTP);
    EXPECT_TRUE(terminal.isInFormerMode());
    terminal.continueProgram();
    terminal.expect("vx> bog");
    terminal.type("us\r");
    terminal.expect("unknown command: bogus");
}

TEST(ConsoleEditing, TheLineIsShownAgainAfterAStopThatCannotBeCaught) {
    if (isHeldBack(SIGCONT))
        GTEST_SKIP() << heldBack;
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("bog");
    terminal.expect("bog");
    kill(terminal.program(), SIGSTOP);
    EXPECT_EQ(terminal.waitForChange().stoppedBy, SIGSTOP);
    terminal.continueProgram();
    terminal.expect("vx> bog");
    terminal.type("us\r");
    terminal.expect("unknown command: bogus");
}

TEST(ConsoleEditing, KeysTypedAheadAreNotLost) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", numberedLines(0, 30));
    Terminal terminal;
    terminal.type("show file " + file + "\r url a:1\rbog");
    terminal.expect(pagePrompt);
    // The first key of the second command was the key for the next page.
    terminal.expect("scheme     a");
    terminal.type("us\r");
    terminal.expect("unknown command: bogus");
}

// Recall

TEST(ConsoleRecall, UpAndControlRFindFormerLines) {
    Terminal terminal;
    terminal.untilPrompt();
    terminal.answerTo("url a:1");
    terminal.answerTo("url b:2");
    terminal.type("\033[A\033[A\r");
    terminal.expect("scheme     a");
    terminal.untilPrompt();
    terminal.type("\022b:\r");
    terminal.expect("scheme     b");
    terminal.untilPrompt();
}

// The console in a terminal, with a folder for its state.
Pty terminalWithState(const std::string& folder) {
    return Pty(test::consoleCommand({}), 80, 25, [folder] {
        test::setConsoleEnvironment();
        setenv("XDG_STATE_HOME", folder.c_str(), 1);
    });
}

TEST(ConsoleRecall, LinesAreKeptInAFileOfTheOwner) {
    TemporaryDirectory directory;
    const std::string state = directory.path("state");
    const std::string file = state + "/vxconsole/history";
    {
        Pty terminal = terminalWithState(state);
        terminal.expect("vx> ");
        for (const std::string line :
             {"url a:1", "bogus s3cret", "password root s3cret", "password root", "", "uptime"}) {
            terminal.type(line + "\r");
            terminal.expect("\r\n");
            terminal.expect("vx> ");
        }
        terminal.type("quit\r");
        EXPECT_EQ(terminal.waitForChange().status, 0);
    }
    EXPECT_EQ(directory.read("state/vxconsole/history"), "url a:1\nuptime\nquit\n");
    struct stat status = {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
    ASSERT_EQ(stat((state + "/vxconsole").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0700U);
    Pty terminal = terminalWithState(state);
    terminal.expect("vx> ");
    terminal.type("\033[A\033[A\033[A\r");
    terminal.expect("scheme     a");
}

// Completion

TEST(ConsoleCompletion, CompletesCommandsPathsSwitchesAndUsers) {
    TemporaryDirectory directory;
    directory.write("first name.txt", "one\n");
    directory.write("second.txt", "two\n");
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("sh\tfi\t");
    terminal.type(directory.path() + "/fi\t\r");
    terminal.expect("\r\none\r\n");
    terminal.untilPrompt();
    terminal.type("show file " + directory.path() + "/s\t\r");
    terminal.expect("\r\ntwo\r\n");
    terminal.untilPrompt();
    terminal.type("debug on DirIter\t\r");
    terminal.untilPrompt();
    EXPECT_NE(terminal.answerTo("debug").find("DirIterator"), std::string::npos);
    terminal.type("show user roo\t\r");
    terminal.expect("\r\nroot  ");
    terminal.untilPrompt();
    terminal.type("?\t\r");
    terminal.expect("show file, dump");
}

TEST(ConsoleCompletion, ShowsTheCandidatesAndTheLineAgain) {
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("show u\t");
    terminal.expect("ser");
    terminal.type("\t");
    terminal.expect("user   users\r");
    terminal.expect("vx> show user");
    terminal.type("xyz\t");
    terminal.expect("\007");
}

TEST(ConsoleEditing, AnOverlongLineIsReportedOnceAndTheConsoleContinues) {
    Terminal terminal;
    terminal.untilPrompt();
    terminal.type("path " + std::string(33000, 'x'));
    terminal.type("\r");
    terminal.expect("\r\nthe command is too long\r\n");
    EXPECT_EQ(terminal.untilPrompt(), "");
    EXPECT_EQ(terminal.answerTo("bogus"), "unknown command: bogus (try help)\r\n");
}

TEST(ConsoleEditing, ATerminalWithoutCursorMovementReadsPlainLines) {
    Pty terminal(test::consoleCommand({}), 80, 25, [] {
        test::setConsoleEnvironment();
        setenv("TERM", "dumb", 1);
    });
    terminal.expect("vx> ");
    terminal.type("bogus\n");
    terminal.expect("bogus\r\nunknown command: bogus (try help)\r\nvx> ");
    terminal.type("quit\n");
    EXPECT_EQ(terminal.waitForChange().status, 0);
}

TEST(ConsoleEditing, AnUnmatchedQuoteIsReportedOnceAndTheConsoleContinues) {
    Terminal terminal;
    terminal.untilPrompt();
    EXPECT_EQ(terminal.answerTo("show file \"x"), "a quote is not closed\r\n");
    EXPECT_EQ(terminal.answerTo("bogus"), "unknown command: bogus (try help)\r\n");
}

// History

TEST(ConsoleTerminalHistory, ContainsTheAnswersWithoutThePagePrompt) {
    TemporaryDirectory directory;
    const std::string file = directory.write("text", numberedLines(0, 30));
    Terminal terminal(80, 100);
    terminal.untilPrompt();
    terminal.resize(80, 25);
    terminal.type("show file " + file + "\r");
    terminal.expect(pagePrompt);
    terminal.type(" ");
    terminal.untilPrompt();
    terminal.type("show file " + file + "\r");
    terminal.expect(pagePrompt);
    terminal.type("q");
    terminal.untilPrompt();
    terminal.resize(80, 100);
    terminal.type("history\r");
    terminal.expect("history\r\n");
    const std::string answer = "show file " + file + "\r\n" + shown(numberedLines(0, 30)) + "vx> show file " + file +
                               "\r\n" + shown(numberedLines(0, 24)) + "vx> ";
    terminal.expect("vx> ");
    EXPECT_EQ(terminal.expect(shown(numberedLines(0, 24)) + "vx> "), answer);
}

} // namespace
