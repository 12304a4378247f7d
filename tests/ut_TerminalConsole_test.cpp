#include "ut_TerminalConsole.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Descriptor.h"
#include "HeldBackSignals.h"
#include "Pty.h"
#include "ut_PagingVirtualPutStream.h"

namespace {

using utility::TerminalConsole;

static_assert(std::is_base_of<framework::Console, TerminalConsole>::value, "a paging stream uses it");
static_assert(!std::is_copy_constructible<TerminalConsole>::value, "a copy would restore the mode twice");

// A console over two pipes.
struct PipeConsole {
    test::Pipe keys;
    test::Pipe shown;
    TerminalConsole console{keys.reader.number(), shown.writer.number(), true};

    void type(const std::string& text) const {
        ASSERT_EQ(write(keys.writer.number(), text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void show(const std::string& text) {
        console.outputStream().SendOutputStream(text.data(), static_cast<unsigned int>(text.size()));
    }
};

// Runs `body` with a console in key mode in a terminal of its own; exits with status 7 after it.
test::Pty inTerminal(const std::function<void(TerminalConsole&)>& body) {
    return test::Pty({}, 80, 25, [&body] {
        {
            TerminalConsole console(STDIN_FILENO, STDOUT_FILENO, true);
            body(console);
        }
        _exit(7);
    });
}

void say(const char* text) {
    utility::DescriptorOutputStream out(STDOUT_FILENO);
    out.SendOutputStream(text, static_cast<unsigned int>(std::strlen(text)));
}

void showAndWait(TerminalConsole& console) {
    say("ready");
    console.readKey();
}

TEST(TerminalConsole, UsageExample) {
    PipeConsole pipes;
    pipes.type(" q");
    utility::TerminalConsole& console = pipes.console;
    utility::PagingVirtualPutStream out(console, 80, 25, 4096, 2048);
    for (int i = 0; i < 100; ++i)
        out.PutF("port %d\n", i);
    out.FlushOutputStream();
    const std::string shown = pipes.shown.reader.readAvailable();
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 48);
}

TEST(TerminalConsole, PipesHaveNoKeyMode) {
    const PipeConsole pipes;
    EXPECT_FALSE(pipes.console.hasKeyMode());
    EXPECT_FALSE(pipes.console.isShownByTerminal());
    TerminalConsole::restoreMode();
}

TEST(TerminalConsole, ReadsKeysOfSeveralBytesAsOne) {
    PipeConsole pipes;
    pipes.type("a\033[1;5AbC\033OPd\xC3\xA4"
               "e\xF0\x9F\x98\x80"
               "f");
    std::string keys;
    for (int i = 0; i < 9; ++i)
        keys += pipes.console.readKey();
    EXPECT_EQ(keys, "a\033bC\033d\xC3"
                    "e\xF0");
    EXPECT_EQ(pipes.console.readKey(), 'f');
}

TEST(TerminalConsole, TheEndOfInputIsQ) {
    PipeConsole pipes;
    pipes.keys.writer.close();
    char byte = 'x';
    EXPECT_EQ(pipes.console.readKey(), 'q');
    EXPECT_FALSE(pipes.console.readByte(&byte));
    EXPECT_EQ(pipes.console.inputError(), 0);
}

TEST(TerminalConsole, AFailedReadIsTheEndWithAnError) {
    TerminalConsole console(-1, -1, true);
    char byte = 'x';
    EXPECT_EQ(console.readKey(), 'q');
    EXPECT_FALSE(console.readByte(&byte));
    EXPECT_EQ(console.inputError(), EBADF);
    EXPECT_EQ(console.outputError(), 0);
    console.removePrompt(80);
    EXPECT_EQ(console.outputError(), EBADF);
}

TEST(TerminalConsole, WaitsOnANonBlockingDescriptor) {
    PipeConsole pipes;
    ASSERT_EQ(fcntl(pipes.keys.reader.number(), F_SETFL, O_NONBLOCK), 0);
    std::thread typist([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        pipes.type("k");
    });
    EXPECT_EQ(pipes.console.readKey(), 'k');
    typist.join();
}

TEST(TerminalConsole, ErasesAPromptOfAnyWidth) {
    PipeConsole pipes;
    const auto erased = [&](std::size_t size, int width) {
        pipes.show(std::string(size, 'x'));
        pipes.shown.reader.readAvailable();
        pipes.console.removePrompt(width);
        return pipes.shown.reader.readAvailable();
    };
    EXPECT_EQ(erased(0, 10), "\r\r");
    EXPECT_EQ(erased(3, 10), "\r   \r");
    EXPECT_EQ(erased(9, 10), "\r         \r");
    EXPECT_EQ(erased(10, 10), "\r\033[J\r");
    EXPECT_EQ(erased(11, 10), "\r\033[A\033[J\r");
    EXPECT_EQ(erased(21, 10), "\r\033[A\033[A\033[J\r");
    EXPECT_EQ(erased(2, 0), "\r\033[A\033[J\r");
    EXPECT_EQ(erased(2, -5), "\r\033[A\033[J\r");
}

TEST(TerminalConsole, TheDestructorRestoresTheTerminalAndTheSignals) {
    test::Pty terminal = inTerminal([](TerminalConsole&) {
        struct sigaction action = {};
        {
            TerminalConsole second(STDIN_FILENO, STDOUT_FILENO, true);
            say(second.hasKeyMode() ? "two" : "one");
        }
        say("ready");
        char byte = 0;
        if (read(STDIN_FILENO, &byte, 1) != 1 || byte != 'k')
            _exit(1);
        sigaction(SIGTERM, nullptr, &action);
        if (action.sa_handler == SIG_DFL)
            _exit(2);
    });
    terminal.expect("oneready");
    EXPECT_TRUE(terminal.isInKeyMode());
    terminal.type("k");
    EXPECT_EQ(terminal.waitForChange().status, 7);
    EXPECT_TRUE(terminal.isInFormerMode());
}

TEST(TerminalConsole, SignalsHaveTheirFormerActionsAfterwards) {
    test::Pty terminal({}, 80, 25, [] {
        signal(SIGHUP, SIG_IGN);
        signal(SIGUSR2, [](int) {});
        { const TerminalConsole console(STDIN_FILENO, STDOUT_FILENO, true); }
        for (int sig = 1; sig < 32; ++sig) {
            struct sigaction action = {};
            sigaction(sig, nullptr, &action);
            const bool isDefault = action.sa_handler == SIG_DFL;
            if (isDefault == (sig == SIGHUP || sig == SIGUSR2))
                _exit(sig);
        }
        // The terminal can be used again.
        const TerminalConsole again(STDIN_FILENO, STDOUT_FILENO, true);
        _exit(again.hasKeyMode() ? 0 : 100);
    });
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    EXPECT_EQ(terminal.waitForChange().status, 0);
#else
    // The sanitizers handle some signals themselves.
    EXPECT_GE(terminal.waitForChange().status, 0);
#endif
}

TEST(TerminalConsole, AnExceptionThatPassesItRestoresTheTerminal) {
    test::Pty terminal({}, 80, 25, [] {
        try {
            TerminalConsole console(STDIN_FILENO, STDOUT_FILENO, true);
            showAndWait(console);
            throw std::runtime_error("failed");
        } catch (const std::runtime_error&) {
            say("caught");
        }
        _exit(0);
    });
    terminal.expect("ready");
    EXPECT_TRUE(terminal.isInKeyMode());
    terminal.type("k");
    terminal.expect("caught");
    EXPECT_TRUE(terminal.isInFormerMode());
}

// Ways out that run no destructor.
struct WayOut {
    const char* name;
    void (*leave)();
};

void fail() {
    throw std::runtime_error("nobody catches this");
}

void failUncaught() noexcept {
    fail();
}

class TerminalConsoleWayOut : public testing::TestWithParam<WayOut> {};

TEST_P(TerminalConsoleWayOut, RestoresTheTerminal) {
    test::Pty terminal = inTerminal([](TerminalConsole& console) {
        showAndWait(console);
        GetParam().leave();
    });
    terminal.expect("ready");
    EXPECT_TRUE(terminal.isInKeyMode());
    terminal.type("k");
    const test::Pty::Change change = terminal.waitForChange();
    EXPECT_NE(change.status, 7);
    EXPECT_TRUE(terminal.isInFormerMode());
}

const WayOut waysOut[] = {
    {"exit",
     [] {
         std::exit(3);
     }},
    {"quick_exit",
     [] {
         std::quick_exit(3);
     }},
    {"abort",
     [] {
         std::abort();
     }},
    {"uncaught", failUncaught},
    {"restoreMode",
     [] {
         TerminalConsole::restoreMode();
         _exit(3);
     }},
};

INSTANTIATE_TEST_SUITE_P(All, TerminalConsoleWayOut, testing::ValuesIn(waysOut),
                         [](const testing::TestParamInfo<WayOut>& way) { return std::string(way.param.name); });

class TerminalConsoleSignal : public testing::TestWithParam<int> {};

TEST_P(TerminalConsoleSignal, RestoresTheTerminalAndEndsTheProcess) {
    if (test::isHeldBack(GetParam()))
        GTEST_SKIP() << test::heldBack;
    test::Pty terminal = inTerminal(showAndWait);
    terminal.expect("ready");
    EXPECT_TRUE(terminal.isInKeyMode());
    ASSERT_EQ(kill(terminal.program(), GetParam()), 0);
    EXPECT_EQ(terminal.waitForChange().signal, GetParam());
    EXPECT_TRUE(terminal.isInFormerMode());
}

INSTANTIATE_TEST_SUITE_P(All, TerminalConsoleSignal,
                         testing::Values(SIGHUP, SIGINT, SIGQUIT, SIGABRT, SIGTERM, SIGUSR1, SIGPIPE, SIGALRM, SIGXCPU,
                                         SIGSYS));

TEST(TerminalConsole, AHandlerOfTheProgramStaysAndIgnoredSignalsStayIgnored) {
    test::Pty terminal({}, 80, 25, [] {
        static int count;
        signal(SIGUSR1, [](int) { ++count; });
        signal(SIGHUP, SIG_IGN);
        TerminalConsole console(STDIN_FILENO, STDOUT_FILENO, true);
        raise(SIGUSR1);
        raise(SIGHUP);
        showAndWait(console);
        _exit(count);
    });
    terminal.expect("ready");
    EXPECT_TRUE(terminal.isInKeyMode());
    terminal.type("k");
    EXPECT_EQ(terminal.waitForChange().status, 1);
}

TEST(TerminalConsole, TheStopKeyRestoresTheTerminalAndKeyModeReturns) {
    if (test::isHeldBack(SIGTSTP))
        GTEST_SKIP() << test::heldBack;
    test::Pty terminal = inTerminal(showAndWait);
    terminal.expect("ready");
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(terminal.becomes(true));
        terminal.type("\032");
        EXPECT_EQ(terminal.waitForChange().stoppedBy, SIGTSTP);
        EXPECT_TRUE(terminal.isInFormerMode());
        terminal.continueProgram();
    }
    ASSERT_TRUE(terminal.becomes(true));
    terminal.type("k");
    EXPECT_EQ(terminal.waitForChange().status, 7);
    EXPECT_TRUE(terminal.isInFormerMode());
}

TEST(TerminalConsole, AForkedProcessDoesNotChangeTheTerminal) {
    test::Pty terminal = inTerminal([](TerminalConsole& console) {
        for (const bool isKilled : {false, true}) {
            const pid_t child = fork();
            if (child == 0) {
                if (isKilled)
                    raise(SIGTERM);
                std::exit(0);
            }
            waitpid(child, nullptr, 0);
        }
        showAndWait(console);
    });
    terminal.expect("ready");
    EXPECT_TRUE(terminal.isInKeyMode());
    terminal.type("k");
    EXPECT_EQ(terminal.waitForChange().status, 7);
    EXPECT_TRUE(terminal.isInFormerMode());
}

TEST(TerminalConsole, TellsThePagerTheSizeOfTheTerminal) {
    test::Pty terminal({}, 80, 6, [] {
        TerminalConsole console(STDIN_FILENO, STDOUT_FILENO, true);
        utility::PagingVirtualPutStream out(console, 80, 6, 4096, 2048);
        console.setPager(&out);
        for (int i = 0; i < 20; ++i)
            out.PutF("port %d\n", i);
        out.FlushOutputStream();
        _exit(0);
    });
    const std::string prompt = "(Q to quit)";
    std::string page = terminal.expect(prompt);
    EXPECT_EQ(std::count(page.begin(), page.end(), '\n'), 5);
    terminal.resize(80, 11);
    terminal.type(" ");
    page = terminal.expect(prompt);
    EXPECT_EQ(std::count(page.begin(), page.end(), '\n'), 10);
    terminal.type("q");
    EXPECT_EQ(terminal.waitForChange().status, 0);
}

} // namespace
