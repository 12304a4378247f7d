#include "console_Session.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <string>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "console_History.h"
#include "console_SignalStack.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

namespace {

// A terminal console over two pipes.
class PipeTerminal {
public:
    PipeTerminal() {
        if (pipe(m_input) != 0 || pipe(m_output) != 0)
            throw std::runtime_error("cannot make pipes");
    }
    PipeTerminal(const PipeTerminal&) = delete;
    PipeTerminal& operator=(const PipeTerminal&) = delete;
    ~PipeTerminal() {
        for (const int fd : {m_input[0], m_output[0], m_output[1]})
            close(fd);
        closeInput();
    }

    int input() const {
        return m_input[0];
    }
    int output() const {
        return m_output[1];
    }
    void type(const std::string& keys) const {
        ASSERT_EQ(write(m_input[1], keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    void closeInput() {
        if (m_input[1] >= 0)
            close(m_input[1]);
        m_input[1] = -1;
    }
    // Returns the output so far.
    std::string shown() const {
        std::string text;
        char piece[4096];
        pollfd request = {m_output[0], POLLIN, 0};
        while (poll(&request, 1, 0) == 1) {
            const ssize_t count = read(m_output[0], piece, sizeof piece);
            if (count <= 0)
                break;
            text.append(piece, static_cast<std::size_t>(count));
        }
        return text;
    }

private:
    int m_input[2];
    int m_output[2];
};

console::Settings paged() {
    console::Settings settings;
    settings.isPaged = true;
    return settings;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

__attribute__((noinline)) unsigned int overflowTheStack(unsigned int depth) {
    volatile char frame[4096];
    frame[depth % sizeof frame] = 1;
    return depth == 0xFFFFFFFF ? 0 : overflowTheStack(depth + 1) + static_cast<unsigned int>(frame[0]);
}

void endWell(int) {
    _exit(42);
}

TEST(ConsoleSession, UsageExample) {
    test::TemporaryDirectory directory;
    const std::string file = directory.write("hosts", "localhost\n");
    PipeTerminal pipes;
    console::TerminalConsole terminal(pipes.input(), pipes.output(), false);
    console::Session session(terminal, console::Settings());
    const console::Session::Result result = session.run("show file " + file);
    EXPECT_TRUE(result.succeeded) << result.failure;
    EXPECT_EQ(pipes.shown(), "localhost\n");
}

TEST(ConsoleSession, AnswersEachRequestBeforeTheNext) {
    PipeTerminal pipes;
    console::TerminalConsole terminal(pipes.input(), pipes.output(), false);
    console::Session session(terminal, console::Settings());
    for (int i = 0; i < 500; ++i) {
        const std::string name = "n" + std::to_string(i);
        ASSERT_TRUE(session.run("url s:" + name).succeeded);
        ASSERT_NE(pipes.shown().find(name), std::string::npos);
        const console::Session::Result result = session.run("show file /nonexistent/" + name);
        ASSERT_FALSE(result.succeeded);
        ASSERT_EQ(result.failure, "show file: /nonexistent/" + name + ": No such file or directory");
        ASSERT_EQ(pipes.shown(), "");
    }
    EXPECT_FALSE(session.isEnded());
}

TEST(ConsoleSession, EndsWithAndWithoutARequest) {
    for (int i = 0; i < 100; ++i) {
        PipeTerminal pipes;
        console::TerminalConsole terminal(pipes.input(), pipes.output(), false);
        console::Session session(terminal, i % 2 == 0 ? paged() : console::Settings());
        if (i % 3 == 0) {
            EXPECT_TRUE(session.run("quit").succeeded);
        }
        EXPECT_EQ(session.isEnded(), i % 3 == 0);
    }
}

TEST(ConsoleSession, AnEmptyLineAndACommentDoNothing) {
    PipeTerminal pipes;
    console::TerminalConsole terminal(pipes.input(), pipes.output(), false);
    console::Session session(terminal, paged());
    EXPECT_TRUE(session.run("").succeeded);
    EXPECT_TRUE(session.run(" \t\r\n").succeeded);
    EXPECT_TRUE(session.run("# bogus \"").succeeded);
    EXPECT_TRUE(session.run(" \t#bogus").succeeded);
    EXPECT_EQ(terminal.history().text(), "");
    EXPECT_EQ(pipes.shown(), "");
}

TEST(ConsoleSession, TheEndOfInputAtThePagePromptCountsAsQuit) {
    test::TemporaryDirectory directory;
    PipeTerminal pipes;
    pipes.closeInput();
    console::TerminalConsole terminal(pipes.input(), pipes.output(), false);
    console::Session session(terminal, paged());
    EXPECT_TRUE(session.run("dump " + directory.write("zeros", std::string(1600, 0))).succeeded);
    const std::string shown = pipes.shown();
    EXPECT_EQ(std::count(shown.begin(), shown.end(), '\n'), 24);
    EXPECT_NE(shown.find("Press any key"), std::string::npos);
}

TEST(ConsoleTerminalConsole, UsageExample) {
    PipeTerminal pipes;
    pipes.type("date\nuptime\n");
    pipes.closeInput();
    console::TerminalConsole terminal(pipes.input(), pipes.output(), false);
    std::string line;
    std::string lines;
    while (terminal.readPlainLine(&line))
        lines += line + ";";
    EXPECT_EQ(lines, "date;uptime;");
}

TEST(ConsoleTerminalConsole, PlainLinesNeedNoNewlineAtTheEnd) {
    PipeTerminal pipes;
    pipes.type("one\n\ntwo");
    pipes.closeInput();
    console::TerminalConsole terminal(pipes.input(), pipes.output(), false);
    std::string line;
    EXPECT_TRUE(terminal.readPlainLine(&line));
    EXPECT_EQ(line, "one");
    EXPECT_TRUE(terminal.readPlainLine(&line));
    EXPECT_EQ(line, "");
    EXPECT_TRUE(terminal.readPlainLine(&line));
    EXPECT_EQ(line, "two");
    EXPECT_FALSE(terminal.readPlainLine(&line));
}

TEST(ConsoleTerminalConsole, WaitsOnANonBlockingDescriptor) {
    PipeTerminal pipes;
    ASSERT_EQ(fcntl(pipes.input(), F_SETFL, O_NONBLOCK), 0);
    console::TerminalConsole terminal(pipes.input(), pipes.output(), false);
    std::thread typist([&] {
        for (const char* part : {"o", "n", "e\n"}) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            pipes.type(part);
        }
    });
    std::string line;
    EXPECT_TRUE(terminal.readPlainLine(&line));
    EXPECT_EQ(line, "one");
    typist.join();
}

TEST(ConsoleHistory, UsageExample) {
    console::History history;
    history.add("vx> date\n");
    EXPECT_EQ(history.text(), "vx> date\n");
}

TEST(ConsoleHistory, ContainsWholeLinesOnly) {
    console::History history;
    std::string all;
    for (int i = 0; i < 30000; ++i) {
        const std::string line = "line " + std::to_string(i) + "\n";
        history.add(line);
        all += line;
        if (i % 1000 != 0 && i < 29990)
            continue;
        const std::string held = history.text();
        ASSERT_LE(held.size(), 65536U);
        ASSERT_GE(held.size(), std::min<std::size_t>(all.size(), 65500));
        ASSERT_EQ(held, all.substr(all.size() - held.size()));
        ASSERT_EQ(held.substr(0, 5), "line ");
        ASSERT_EQ(history.text(), held);
    }
}

TEST(ConsoleHistory, AddLinesAddsMissingNewlines) {
    console::History history;
    history.addLines("one");
    history.add("two");
    history.add("");
    history.addLines("three\n");
    history.addLines("");
    EXPECT_EQ(history.text(), "one\ntwo\nthree\n\n");
}

TEST(ConsoleSignalStack, AHandlerRunsOnItAfterAStackOverflow) {
    if (isSanitized)
        GTEST_SKIP() << "a sanitizer has signal stacks of its own";
    const test::ChildResult child = test::runInChild([] {
        struct sigaction action = {};
        action.sa_handler = endWell;
        action.sa_flags = SA_ONSTACK;
        sigaction(SIGSEGV, &action, nullptr);
        std::thread([] {
            const console::SignalStack stack;
            overflowTheStack(0);
        }).join();
    });
    EXPECT_EQ(child.status, 42);
}

TEST(ConsoleSignalStack, RestoresThePreviousOne) {
    stack_t before = {};
    stack_t during = {};
    stack_t after = {};
    std::thread([&] {
        sigaltstack(nullptr, &before);
        {
            const console::SignalStack stack;
            sigaltstack(nullptr, &during);
        }
        sigaltstack(nullptr, &after);
    }).join();
    EXPECT_NE(during.ss_sp, before.ss_sp);
    EXPECT_GE(during.ss_size, 65536U);
    EXPECT_EQ(after.ss_sp, before.ss_sp);
    EXPECT_EQ(after.ss_flags, before.ss_flags);
}

} // namespace
