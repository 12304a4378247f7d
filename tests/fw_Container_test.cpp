#include "fw_Container.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "fw_Memory.h"
#include "support/ChildProcess.h"
#include "support/ExpectFailure.h"
#include "support/FailingAllocation.h"
#include "support/OpenDescriptors.h"
#include "support/TemporaryDirectory.h"
#include "ut_GetStream.h"
#include "ut_PutStream.h"

using framework::Container;
using framework::Memory;
using test::openDescriptors;

namespace {

// The lowest number that `pipe2` gave an end.
std::atomic<int> lowestPipeEnd{INT_MAX};
// How many of this thread's next calls of `write` return 0.
thread_local int emptyWrites = 0;

} // namespace

extern "C" {

int pipe2(int* ends, int flags) noexcept {
    const int result = static_cast<int>(syscall(SYS_pipe2, ends, flags));
    if (result == 0)
        lowestPipeEnd = std::min({lowestPipeEnd.load(), ends[0], ends[1]});
    return result;
}

ssize_t write(int fd, const void* data, std::size_t size) {
    return emptyWrites > 0 && emptyWrites-- > 0 ? 0 : syscall(SYS_write, fd, data, size);
}
}

namespace {

// Keeps what is sent.
class Collector : public utility::PutStream {
public:
    bool SendOutputStream(const char* data, unsigned int size) override {
        text.append(data, size);
        return true;
    }

    std::string text;
};

// Gives a text, at most `step` bytes at a time.
class Source : public utility::GetStream {
public:
    explicit Source(std::string text, std::size_t step = 100000) : m_text(std::move(text)), m_step(step) {}
    bool isInputStreamOpen() override {
        return true;
    }
    bool isInputStreamInError() override {
        return false;
    }
    bool isInputStreamAtEnd() override {
        return m_given == m_text.size();
    }
    int ReceiveInputStream(char* buffer, unsigned int size) override {
        const std::size_t count = std::min({std::size_t{size}, m_step, m_text.size() - m_given});
        std::memcpy(buffer, m_text.data() + m_given, count);
        m_given += count;
        return static_cast<int>(count);
    }

private:
    std::string m_text;
    std::size_t m_step;
    std::size_t m_given = 0;
};

class FailingSource : public Source {
public:
    FailingSource() : Source("text") {}
    int ReceiveInputStream(char*, unsigned int) override {
        throw new framework::Exception(1239, "ut_Buffer", __LINE__, "source", "", true);
    }
};

// Prints at the same time, as another thread could.
class PrintingSource : public Source {
public:
    PrintingSource() : Source("text") {}
    int ReceiveInputStream(char* buffer, unsigned int size) override {
        printed = write(STDOUT_FILENO, "stray", 5);
        return Source::ReceiveInputStream(buffer, size);
    }

    ssize_t printed = 0;
};

// Makes the platform refuse to wait for two descriptors at once.
class PollBreakingSource : public Source {
public:
    PollBreakingSource() : Source(std::string(1000000, 'x')) {}
    int ReceiveInputStream(char* buffer, unsigned int size) override {
        const rlimit one = {1, 1024};
        setrlimit(RLIMIT_NOFILE, &one);
        return Source::ReceiveInputStream(buffer, size);
    }
};

class BrokenSource : public Source {
public:
    BrokenSource() : Source("text") {}
    int ReceiveInputStream(char*, unsigned int) override {
        return -1;
    }
};

class FailingTarget : public utility::PutStream {
public:
    bool SendOutputStream(const char*, unsigned int) override {
        throw new framework::Exception(1239, "ut_Buffer", __LINE__, "target", "", true);
    }
};

class RefusingTarget : public utility::PutStream {
public:
    bool SendOutputStream(const char*, unsigned int) override {
        return false;
    }
};

std::string outputOf(const char* command) {
    Collector out;
    EXPECT_TRUE(Container::spawn(command, nullptr, &out)) << command;
    return out.text;
}

std::string largeText() {
    std::string text;
    for (int i = 0; text.size() < 3000000; ++i)
        text += "line " + std::to_string(i) + "\n";
    return text;
}

bool hasNoChild() {
    return waitpid(-1, nullptr, WNOHANG) < 0 && errno == ECHILD;
}

int endOf(void (*body)()) {
    const test::ChildResult child = test::runInChild(body);
    EXPECT_FALSE(child.exited);
    EXPECT_FALSE(child.timedOut);
    return child.signal;
}

void ignoreSignal(int) {}

void handleAndBlock(int sig) {
    signal(sig, ignoreSignal);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, sig);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

TEST(Container, UsageExample) {
    const test::TemporaryDirectory directory;
    const std::string command = "cp " + directory.write("passwd.new", "root") + " " + directory.path("passwd");
    EXPECT_TRUE(framework::Container::spawn(command.c_str(), nullptr, nullptr));
    EXPECT_EQ(directory.read("passwd"), "root");
}

TEST(Container, IsTheContainerOfTheProcessWhileItLives) {
    EXPECT_EQ(Container::getContainer(), nullptr);
    {
        Container container;
        EXPECT_EQ(Container::getContainer(), &container);
        EXPECT_EQ(Container::m_pMe, &container);
        {
            Container other;
            EXPECT_EQ(Container::getContainer(), &other);
        }
        EXPECT_EQ(Container::getContainer(), nullptr);
    }
    EXPECT_EQ(Container::getContainer(), nullptr);
}

TEST(Container, EndOfAFormerContainerLeavesTheLastOne) {
    auto former = std::make_unique<Container>();
    const Container last;
    former.reset();
    EXPECT_EQ(Container::getContainer(), &last);
}

TEST(Container, HasNoMemoryObjectUntilOneIsSet) {
    EXPECT_EQ(Container::getMemory(), nullptr);
    EXPECT_EQ(Container::m_pMemory, nullptr);
}

TEST(Container, SpawnSplitsWordsAtWhiteSpaceAndGroupsByQuotes) {
    EXPECT_EQ(outputOf("printf [%s] a"), "[a]");
    EXPECT_EQ(outputOf(" \t\nprintf\t[%s]\r\na \v b\f"), "[a][b]");
    EXPECT_EQ(outputOf("printf [%s] \"b c\" d"), "[b c][d]");
    EXPECT_EQ(outputOf("printf [%s] \"\" d"), "[][d]");
    EXPECT_EQ(outputOf("printf [%s] \"\"\"\""), "[][]");
    EXPECT_EQ(outputOf("printf [%s] \"a\"b\"c\" d"), "[a][b\"c\"][d]");
    EXPECT_EQ(outputOf("printf [%s] a\"b c\""), "[a\"b][c\"]");
    EXPECT_EQ(outputOf("printf [%s] x \"y z"), "[x][y z]");
    EXPECT_EQ(outputOf("printf [%s] x \""), "[x][]");
    EXPECT_EQ(outputOf("\"printf\" [%s] \\\"a"), "[\\\"a]");
}

TEST(Container, SpawnHasNoShell) {
    EXPECT_EQ(outputOf("printf [%s] $HOME * 'a b' ~ | cat > /dev/null ; &"),
              "[$HOME][*]['a][b'][~][|][cat][>][/dev/null][;][&]");
}

TEST(Container, SpawnOfNothingIsFalse) {
    for (const char* command : {static_cast<const char*>(nullptr), "", " \t\n", "\"\"", "\""})
        EXPECT_FALSE(Container::spawn(command, nullptr, nullptr));
}

TEST(Container, SpawnTellsWhetherTheCommandEndedWell) {
    EXPECT_TRUE(Container::spawn("true", nullptr, nullptr));
    EXPECT_FALSE(Container::spawn("false", nullptr, nullptr));
    EXPECT_TRUE(Container::spawn("sh -c \"exit 0\"", nullptr, nullptr));
    EXPECT_FALSE(Container::spawn("sh -c \"exit 3\"", nullptr, nullptr));
    EXPECT_FALSE(Container::spawn("sh -c \"kill -KILL $$\"", nullptr, nullptr));
    EXPECT_TRUE(hasNoChild());
}

TEST(Container, SpawnOfAProgramThatCannotRunIsFalse) {
    const test::TemporaryDirectory directory;
    EXPECT_FALSE(Container::spawn("no-such-program-anywhere", nullptr, nullptr));
    EXPECT_FALSE(Container::spawn(directory.write("plain", "text").c_str(), nullptr, nullptr));
    EXPECT_FALSE(Container::spawn(directory.path().c_str(), nullptr, nullptr));
    Collector out;
    Source in("text");
    EXPECT_FALSE(Container::spawn("no-such-program-anywhere", &in, &out));
    EXPECT_EQ(out.text, "");
    EXPECT_TRUE(hasNoChild());
}

TEST(Container, SpawnRunsNoScriptWithoutAnInterpreterLine) {
    const test::TemporaryDirectory directory;
    const std::string script = directory.write("script", "exit 0\n");
    ASSERT_EQ(chmod(script.c_str(), 0700), 0);
    EXPECT_FALSE(Container::spawn(script.c_str(), nullptr, nullptr));
}

TEST(Container, SpawnLooksUpThePath) {
    const test::TemporaryDirectory directory;
    const std::string script = directory.write("vxut-script", "#!/bin/sh\necho found $1\n");
    ASSERT_EQ(chmod(script.c_str(), 0700), 0);
    const test::ChildResult child = test::runInChild([&] {
        setenv("PATH", (directory.path() + ":" + getenv("PATH")).c_str(), 1);
        return Container::spawn("vxut-script here", nullptr, nullptr) ? 0 : 1;
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out, "found here\n");
}

TEST(Container, SpawnFeedsAndTakes) {
    Source in("some text\n");
    Collector out;
    EXPECT_TRUE(Container::spawn("cat", &in, &out));
    EXPECT_EQ(out.text, "some text\n");
}

TEST(Container, SpawnFeedsAnEmptyStream) {
    Source in("");
    Collector out;
    EXPECT_TRUE(Container::spawn("cat", &in, &out));
    EXPECT_EQ(out.text, "");
}

TEST(Container, SpawnFeedsAFile) {
    const test::TemporaryDirectory directory;
    utility::GetStream in(directory.write("input", "b\na\n").c_str());
    Collector out;
    EXPECT_TRUE(Container::spawn("sort", &in, &out));
    EXPECT_EQ(out.text, "a\nb\n");
}

TEST(Container, SpawnMovesMuchBothWays) {
    const std::string text = largeText();
    for (const std::size_t step : {std::size_t{777}, std::size_t{100000}}) {
        Source in(text, step);
        Collector out;
        EXPECT_TRUE(Container::spawn("cat", &in, &out));
        EXPECT_TRUE(out.text == text);
    }
}

TEST(Container, SpawnWithoutInputReadsNothing) {
    EXPECT_EQ(outputOf("cat"), "");
}

TEST(Container, SpawnWithoutOutputKeepsThatOfTheProcess) {
    const test::ChildResult child = test::runInChild([] {
        Source in("through");
        return Container::spawn("cat", &in, nullptr) ? 0 : 1;
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out, "through");
}

TEST(Container, SpawnKeepsStandardError) {
    const test::ChildResult child = test::runInChild([] {
        Collector out;
        return Container::spawn("sh -c \"echo problem >&2\"", nullptr, &out) && out.text.empty() ? 0 : 1;
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.err, "problem\n");
}

TEST(Container, CommandThatDoesNotReadItsInputIsNoFailure) {
    const std::string text = largeText();
    Source in(text);
    EXPECT_TRUE(Container::spawn("true", &in, nullptr));
    Source head(text);
    Collector out;
    EXPECT_TRUE(Container::spawn("head -n 2", &head, &out));
    EXPECT_EQ(out.text, "line 0\nline 1\n");
    sigset_t pending;
    sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST(Container, BrokenPipeThatWasPendingStaysPending) {
    const test::ChildResult child = test::runInChild([] {
        sigset_t signals;
        sigemptyset(&signals);
        sigaddset(&signals, SIGPIPE);
        pthread_sigmask(SIG_BLOCK, &signals, nullptr);
        raise(SIGPIPE);
        Source in(largeText());
        const bool ended = Container::spawn("true", &in, nullptr);
        sigset_t pending;
        sigpending(&pending);
        return ended && sigismember(&pending, SIGPIPE) == 1 ? 0 : 1;
    });
    EXPECT_EQ(child.status, 0);
}

TEST(Container, CommandGetsItsSignalsWhateverTheCallerBlocks) {
    const test::ChildResult child = test::runInChild([] {
        signal(SIGPIPE, SIG_IGN);
        handleAndBlock(SIGTERM);
        if (Container::spawn("sh -c \"kill -PIPE $$; exit 0\"", nullptr, nullptr))
            return 1;
        if (Container::spawn("sh -c \"kill -TERM $$; exit 0\"", nullptr, nullptr))
            return 2;
        sigset_t now;
        pthread_sigmask(SIG_SETMASK, nullptr, &now);
        return sigismember(&now, SIGTERM) == 1 && sigismember(&now, SIGPIPE) == 0 ? 0 : 3;
    });
    EXPECT_EQ(child.status, 0);
}

TEST(Container, WhatTheTargetThrowsPassesThrough) {
    const std::set<int> before = openDescriptors();
    FailingTarget out;
    Source in(largeText());
    EXPECT_FAILURE(Container::spawn("cat", &in, &out), 1239, "ut_Buffer", "target", "");
    EXPECT_FAILURE(Container::spawn("sh -c \"echo text; exec sleep 1000\"", nullptr, &out), 1239, "ut_Buffer", "target",
                   "");
    EXPECT_TRUE(hasNoChild());
    EXPECT_EQ(openDescriptors(), before);
}

TEST(Container, WhatTheSourceThrowsPassesThrough) {
    const std::set<int> before = openDescriptors();
    FailingSource in;
    EXPECT_FAILURE(Container::spawn("sleep 1000", &in, nullptr), 1239, "ut_Buffer", "source", "");
    EXPECT_TRUE(hasNoChild());
    EXPECT_EQ(openDescriptors(), before);
}

TEST(Container, SourceInErrorEndsTheInput) {
    BrokenSource in;
    Collector out;
    EXPECT_TRUE(Container::spawn("cat", &in, &out));
    EXPECT_EQ(out.text, "");
}

TEST(Container, WhatTheTargetRefusesIsDropped) {
    RefusingTarget out;
    EXPECT_TRUE(Container::spawn("head -c 1000000 /dev/zero", nullptr, &out));
}

TEST(Container, SpawnLeavesNoDescriptorAndNoChild) {
    const std::set<int> before = openDescriptors();
    for (int i = 0; i < 10; ++i) {
        Source in("text");
        Collector out;
        Container::spawn("cat", &in, &out);
        Container::spawn("no-such-program-anywhere", &in, &out);
        Container::spawn("true", nullptr, nullptr);
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_TRUE(hasNoChild());
}

TEST(Container, CommandInheritsNothingButTheStandardStreams) {
    std::set<int> expected = {0, 1, 2};
    for (const int descriptor : openDescriptors())
        if ((fcntl(descriptor, F_GETFD) & FD_CLOEXEC) == 0)
            expected.insert(descriptor);
    Source in("text");
    Collector out;
    ASSERT_TRUE(Container::spawn("ls /proc/self/fd", &in, &out));
    std::set<int> found;
    std::istringstream names(out.text);
    for (int descriptor; names >> descriptor;)
        found.insert(descriptor);
    // And the one through which the command looks.
    EXPECT_EQ(found.size(), expected.size() + 1) << out.text;
    EXPECT_TRUE(std::includes(found.begin(), found.end(), expected.begin(), expected.end())) << out.text;
}

TEST(Container, SpawnWorksWhereStandardStreamsAreClosed) {
    for (const std::set<int>& closed : {std::set<int>{0}, {1}, {0, 1}, {1, 2}, {0, 1, 2}}) {
        const test::ChildResult child = test::runInChild([&] {
            for (const int descriptor : closed)
                close(descriptor);
            Source in("text");
            Collector out;
            if (!Container::spawn("cat", &in, &out) || out.text != "text")
                return 1;
            Collector outAlone;
            if (!Container::spawn("cat", nullptr, &outAlone) || !outAlone.text.empty())
                return 2;
            for (const int descriptor : closed)
                if (fcntl(descriptor, F_GETFD) >= 0)
                    return 3;
            return 0;
        });
        EXPECT_EQ(child.status, 0);
    }
}

TEST(Container, SpawnOpensNoPipeUnderTheNumberOfAClosedStream) {
    const test::ChildResult child = test::runInChild([] {
        for (const int descriptor : {0, 1, 2})
            close(descriptor);
        lowestPipeEnd = INT_MAX;
        Source in("text");
        Collector out;
        return Container::spawn("cat", &in, &out) && out.text == "text" ? lowestPipeEnd.load() : 0;
    });
    EXPECT_TRUE(child.exited);
    EXPECT_GT(child.status, STDERR_FILENO);
}

TEST(Container, SpawnOfACommandWhoseInputTakesNothingIsFalse) {
    const test::ChildResult child = test::runInChild([] {
        alarm(60);
        Source in("text");
        Collector out;
        emptyWrites = 1;
        return !Container::spawn("cat", &in, &out) && emptyWrites == 0 && out.text.empty() ? 0 : 1;
    });
    EXPECT_EQ(child.signal, 0);
    EXPECT_EQ(child.status, 0);
}

TEST(Container, SpawnGivesACommandNoFileAsAStandardStreamThatIsClosed) {
    // The first file that a program opens takes the lowest free number: with 1 or 2, its own messages go into it.
    const test::TemporaryDirectory directory;
    const std::string command =
        "sh -c \"streams=$(readlink /proc/$$/fd/1 /proc/$$/fd/2); echo $streams >" + directory.path("streams") + "\"";
    for (const bool onExecOnly : {false, true}) {
        const test::ChildResult child = test::runInChild([&] {
            for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
                if (onExecOnly)
                    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
                else
                    close(descriptor);
            }
            return Container::spawn(command.c_str(), nullptr, nullptr) ? 0 : 1;
        });
        EXPECT_EQ(child.status, 0);
        EXPECT_EQ(directory.read("streams"), "/dev/null /dev/null\n");
    }
}

TEST(Container, WhatIsPrintedToAClosedStreamDoesNotReachTheCommand) {
    const test::ChildResult child = test::runInChild([] {
        close(STDIN_FILENO);
        close(STDOUT_FILENO);
        PrintingSource in;
        Collector out;
        return Container::spawn("cat", &in, &out) && out.text == "text" && in.printed < 0 ? 0 : 1;
    });
    EXPECT_EQ(child.status, 0);
}

TEST(Container, SpawnGoesOnAfterInterruptions) {
    struct sigaction action = {};
    struct sigaction former = {};
    action.sa_handler = ignoreSignal;
    sigaction(SIGALRM, &action, &former);
    const itimerval often = {{0, 5000}, {0, 5000}};
    const itimerval never = {};
    setitimer(ITIMER_REAL, &often, nullptr);
    Source in("text");
    Collector out;
    const bool waited = Container::spawn("sleep 0.2", nullptr, nullptr);
    const bool moved = Container::spawn("sh -c \"sleep 0.1; cat; sleep 0.1\"", &in, &out);
    setitimer(ITIMER_REAL, &never, nullptr);
    sigaction(SIGALRM, &former, nullptr);
    EXPECT_TRUE(waited);
    EXPECT_TRUE(moved);
    EXPECT_EQ(out.text, "text");
}

TEST(Container, ThreadsSpawnAtOnce) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([i] {
            const std::string text(100000, static_cast<char>('a' + i));
            for (int round = 0; round < 5; ++round) {
                Source in(text);
                Collector out;
                EXPECT_TRUE(Container::spawn("cat", &in, &out));
                EXPECT_TRUE(out.text == text);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(hasNoChild());
}

TEST(Container, SpawnWithoutMemoryIsFalseAndLeavesNothing) {
    const long outstanding = Memory::staticOutstanding();
    const std::set<int> before = openDescriptors();
    RefusingTarget out;
    bool ended = false;
    const unsigned long failures = test::failEachAllocationOnce(
        [&] { ended = Container::spawn("echo text", nullptr, &out); }, [&] { EXPECT_FALSE(ended); });
    EXPECT_GE(failures, 2U);
    EXPECT_TRUE(ended);
    EXPECT_EQ(Memory::staticOutstanding(), outstanding);
    EXPECT_EQ(openDescriptors(), before);
}

TEST(Container, SpawnWithoutDescriptorsIsFalse) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs descriptors of its own to check types";
#endif
    const test::ChildResult child = test::runInChild([] {
        for (int descriptor = 3; descriptor < 1024; ++descriptor)
            close(descriptor);
        for (rlim_t most = 3; most < 7; ++most) {
            const rlimit limit = {most, 1024};
            setrlimit(RLIMIT_NOFILE, &limit);
            Source in("text");
            Collector out;
            if (Container::spawn("cat", &in, &out))
                return 1;
        }
        const rlimit limit = {1024, 1024};
        setrlimit(RLIMIT_NOFILE, &limit);
        return openDescriptors() == std::set<int>{0, 1, 2} ? 0 : 2;
    });
    EXPECT_EQ(child.status, 0) << child.err;
}

TEST(Container, SpawnThatCannotWaitForItsPipesEndsThemAndIsFalse) {
    for (const char* command : {"cat", "sh -c \"cat > /dev/null; exit 0\""}) {
        const test::ChildResult child = test::runInChild([&] {
            PollBreakingSource in;
            Collector out;
            const bool ended = Container::spawn(command, &in, &out);
            const rlimit many = {1024, 1024};
            setrlimit(RLIMIT_NOFILE, &many);
            return !ended && hasNoChild() ? 0 : 1;
        });
        EXPECT_FALSE(child.timedOut) << command << " hung";
        EXPECT_EQ(child.status, 0) << command << child.err;
    }
}

TEST(Container, SpawnReadsTheOutputOfABackgroundProcessToItsEnd) {
    EXPECT_EQ(outputOf("sh -c \"(sleep 0.2; echo late) & echo early\""), "early\nlate\n");
}

TEST(Container, SpawnFeedsABackgroundProcessThatKeepsTheInput) {
    const test::TemporaryDirectory directory;
    const std::string whole = directory.path("whole");
    const std::string command =
        "sh -c \"exec 3<&0; (cat <&3 > " + whole + ".part; mv " + whole + ".part " + whole + ") & exit 0\"";
    const std::string text = largeText();
    Source in(text);
    EXPECT_TRUE(Container::spawn(command.c_str(), &in, nullptr));
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(40);
    while (!directory.exists("whole") && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    EXPECT_TRUE(directory.read("whole") == text);
}

TEST(Container, SpawnDoesNotWaitForABackgroundProcessOtherwise) {
    const test::TemporaryDirectory directory;
    const std::string fifo = directory.path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    // The process in the background waits for a writer.
    const std::string command = "sh -c \"cat " + fifo + " > /dev/null & echo early\"";
    for (const bool hasOutput : {false, true}) {
        const test::ChildResult child = test::runInChild([&] {
            Collector out;
            return Container::spawn(command.c_str(), nullptr, hasOutput ? &out : nullptr) ? 0 : 1;
        });
        // Opening succeeds at once because the process is there to read.
        close(open(fifo.c_str(), O_WRONLY));
        EXPECT_FALSE(child.timedOut);
        EXPECT_EQ(child.status, 0);
    }
}

TEST(Container, SpawnRunsTheCommandAndIsFalseWhereEndsOfChildrenAreIgnored) {
    const test::TemporaryDirectory directory;
    const std::string command = "sh -c \"sleep 0.1; echo text; echo done > " + directory.path("file") + "\"";
    const test::ChildResult child = test::runInChild([&] {
        signal(SIGCHLD, SIG_IGN);
        Collector out;
        return !Container::spawn(command.c_str(), nullptr, &out) && out.text == "text\n" ? 0 : 1;
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(directory.read("file"), "done\n");
}

TEST(Container, DumpEndsByTheSignalEvenWhenItIsHandledAndBlocked) {
    EXPECT_EQ(endOf([] {
                  handleAndBlock(SIGSEGV);
                  Container::dumpApplication(SIGSEGV);
              }),
              SIGSEGV);
    EXPECT_EQ(endOf([] {
                  handleAndBlock(SIGTERM);
                  Container::dumpApplication(SIGTERM);
              }),
              SIGTERM);
    EXPECT_EQ(endOf([] {
                  signal(SIGTERM, SIG_IGN);
                  Container::dumpApplication(SIGTERM);
              }),
              SIGTERM);
    EXPECT_EQ(endOf([] {
                  handleAndBlock(SIGABRT);
                  Container::dumpApplication(SIGABRT);
              }),
              SIGABRT);
    EXPECT_EQ(endOf([] { Container::dumpApplication(SIGKILL); }), SIGKILL);
}

TEST(Container, DumpEndsByTheSignalFromInsideItsHandler) {
    EXPECT_EQ(endOf([] {
                  signal(SIGBUS, [](int sig) { Container::dumpApplication(sig); });
                  raise(SIGBUS);
              }),
              SIGBUS);
}

TEST(Container, DumpEndsByTheSignalFromAnyThread) {
    EXPECT_EQ(endOf([] { std::thread([] { Container::dumpApplication(SIGFPE); }).join(); }), SIGFPE);
}

TEST(Container, DumpAbortsWhereTheSignalEndsNothing) {
    EXPECT_EQ(endOf([] {
                  handleAndBlock(SIGABRT);
                  Container::dumpApplication(SIGCHLD);
              }),
              SIGABRT);
    EXPECT_EQ(endOf([] { Container::dumpApplication(SIGURG); }), SIGABRT);
    EXPECT_EQ(endOf([] { Container::dumpApplication(0); }), SIGABRT);
    EXPECT_EQ(endOf([] { Container::dumpApplication(-5); }), SIGABRT);
    EXPECT_EQ(endOf([] { Container::dumpApplication(100000); }), SIGABRT);
}

TEST(Container, ShutdownWithoutAContainerExits) {
    for (const bool clean : {true, false}) {
        const test::ChildResult child = test::runInChild([&] {
            std::atexit([] {
                std::printf("exit handler");
                std::fflush(stdout);
                // The exit handlers of this process are not part of the test.
                if (Container::getContainer() != nullptr)
                    _exit(9);
            });
            Container::shutdownApplication(clean);
        });
        EXPECT_EQ(child.status, clean ? 0 : 1);
        EXPECT_EQ(child.out, "exit handler");
    }
}

TEST(Container, ShutdownOfAPlainContainerExits) {
    for (const bool clean : {true, false}) {
        const test::ChildResult child = test::runInChild([&] {
            static Container container;
            Container::shutdownApplication(clean);
        });
        EXPECT_TRUE(child.exited);
        EXPECT_EQ(child.status, clean ? 0 : 1);
    }
}

TEST(Container, ShutdownGoesThroughTheContainer) {
    class Application : public Container {
    public:
        int ends = 0;
        bool clean = false;

    protected:
        void shutdown(bool isClean) override {
            ++ends;
            clean = isClean;
        }
    } application;
    Container::shutdownApplication(true);
    EXPECT_EQ(application.ends, 1);
    EXPECT_TRUE(application.clean);
    Container::shutdownApplication(false);
    EXPECT_EQ(application.ends, 2);
    EXPECT_FALSE(application.clean);
}

} // namespace
