#include "fw_Logger.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "fw_Exception.h"
#include "support/ChildProcess.h"
#include "support/FailingAllocation.h"
#include "support/LogCapture.h"

using framework::Logger;

namespace {

// What the next calls of the platform's functions return instead of being carried out.
struct Refusal {
    int error = 0;
    int times = 0;

    bool isNext() {
        return times > 0 && times-- > 0;
    }
};

Refusal readLocks;
Refusal writeLocks;
std::atomic<int> emptyWrites{0};

template<class Function>
Function* platform(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
    static auto* const take = platform<int(pthread_rwlock_t*)>("pthread_rwlock_rdlock");
    return readLocks.isNext() ? readLocks.error : take(lock);
}

int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
    static auto* const take = platform<int(pthread_rwlock_t*)>("pthread_rwlock_wrlock");
    return writeLocks.isNext() ? writeLocks.error : take(lock);
}

ssize_t writev(int fd, const iovec* pieces, int count) {
    return emptyWrites > 0 && emptyWrites-- > 0 ? 0 : syscall(SYS_writev, fd, pieces, count);
}
}

namespace {

// A sink that runs an action inside itself, the first time it is called.
struct ActingSink {
    void (*action)();
    std::atomic<int> calls{0};

    static void receive(void* context, Logger::LogType, const char*, int, const char*) {
        auto* self = static_cast<ActingSink*>(context);
        if (self->calls++ == 0)
            self->action();
    }
};

std::string standardErrorOf(void (*body)()) {
    const test::ChildResult child = test::runInChild(body);
    EXPECT_EQ(child.status, 0);
    return child.err;
}

std::string withSink(void (*action)()) {
    static void (*inside)();
    inside = action;
    return standardErrorOf([] {
        static ActingSink sink{inside};
        Logger::setSink(ActingSink::receive, &sink);
        Logger::StaticLog(Logger::LOG_NOTICE, "first");
        Logger::StaticLog(Logger::LOG_NOTICE, "second");
        _exit(sink.calls == 2 ? 0 : 1);
    });
}

void logOnSignal(int sig) {
    Logger::StaticLog(Logger::LOG_ERROR, "signal %d", sig);
}

unsigned long allocationsForText(std::size_t length) {
    static char text[3000];
    std::memset(text, 'x', length);
    text[length] = '\0';
    const unsigned long before = test::allocationCount();
    Logger::StaticLogMethod(Logger::LOG_ERROR, "void f()", 1, "%s", text);
    return test::allocationCount() - before;
}

int interruptions[2];

void tellInterruption(int) {
    if (write(interruptions[1], "!", 1) != 1)
        _exit(124);
}

TEST(Logger, UsageExample) {
    std::vector<std::string> lines;
    const auto collect = [](void* context, Logger::LogType, const char*, int, const char* text) {
        static_cast<std::vector<std::string>*>(context)->push_back(text);
    };
    framework::Logger::setSink(collect, &lines);
    framework::Logger::StaticLog(framework::Logger::LOG_NOTICE, "%d ports", 4);
    framework::Logger::setSink(nullptr, nullptr);
    EXPECT_EQ(lines, std::vector<std::string>{"4 ports"});
}

TEST(Logger, TypesHaveTheirNumbers) {
    EXPECT_EQ(Logger::LOG_ERROR, 0);
    EXPECT_EQ(Logger::LOG_WARNING, 1);
    EXPECT_EQ(Logger::LOG_NOTICE, 2);
    EXPECT_EQ(Logger::LOG_DEBUG, 3);
    EXPECT_EQ(Logger::LOG_ENTER, 4);
}

TEST(Logger, SinkReceivesTypeFunctionLineAndText) {
    struct Seen {
        Logger::LogType type;
        const char* function;
        int line;
        std::string text;
    } seen = {};
    Logger::setSink(
        [](void* context, Logger::LogType type, const char* function, int line, const char* text) {
            *static_cast<Seen*>(context) = {type, function, line, text};
        },
        &seen);
    const char* function = "void f(int)";
    Logger::StaticLogMethod(Logger::LOG_DEBUG, function, 33, "%s=%d\n", "ports", 4);
    EXPECT_EQ(seen.type, Logger::LOG_DEBUG);
    EXPECT_EQ(seen.function, function);
    EXPECT_EQ(seen.line, 33);
    EXPECT_EQ(seen.text, "ports=4\n");
    Logger::StaticLog(Logger::LOG_WARNING, "plain");
    EXPECT_EQ(seen.type, Logger::LOG_WARNING);
    EXPECT_EQ(seen.function, nullptr);
    EXPECT_EQ(seen.line, 0);
    EXPECT_EQ(seen.text, "plain");
    Logger::StaticLogS(Logger::LOG_ENTER, "50% of %s");
    EXPECT_EQ(seen.type, Logger::LOG_ENTER);
    EXPECT_EQ(seen.function, nullptr);
    EXPECT_EQ(seen.text, "50% of %s");
    Logger::StaticLogS(Logger::LOG_ENTER, nullptr);
    EXPECT_EQ(seen.text, "");
    Logger::setSink(nullptr, nullptr);
}

TEST(Logger, TextsOfAnyLengthAreWhole) {
    test::LogCapture log;
    for (const std::size_t length : {0U, 1U, 1022U, 1023U, 1024U, 1025U, 100000U}) {
        log.clear();
        const std::string text(length, 'x');
        Logger::StaticLog(Logger::LOG_ERROR, "%s", text.c_str());
        Logger::StaticLogS(Logger::LOG_ERROR, text.c_str());
        EXPECT_EQ(log.texts(), (std::vector<std::string>{text, text}));
    }
}

TEST(Logger, TakesNoMemoryForUpTo1023Bytes) {
    test::LogCapture log;
    EXPECT_EQ(allocationsForText(0), 0U);
    EXPECT_EQ(allocationsForText(1023), 0U);
    EXPECT_EQ(allocationsForText(1024), 1U);
    const unsigned long before = test::allocationCount();
    Logger::StaticLogS(Logger::LOG_ERROR, std::string(2000, 'x').c_str());
    EXPECT_EQ(test::allocationCount(), before + 1);
}

TEST(Logger, WithoutMemoryLongTextsAreCutAt1023Bytes) {
    test::LogCapture log;
    const std::string text = std::string(1023, 'x') + "y";
    {
        test::FailingAllocation failing(test::failAll);
        Logger::StaticLog(Logger::LOG_ERROR, "%s", text.c_str());
    }
    EXPECT_EQ(log.texts(), std::vector<std::string>{std::string(1023, 'x')});
}

TEST(Logger, KeepsErrno) {
    test::LogCapture log;
    errno = 4711;
    Logger::StaticLog(Logger::LOG_ERROR, "text");
    EXPECT_EQ(errno, 4711);
    Logger::StaticLogS(Logger::LOG_ERROR, "text");
    EXPECT_EQ(errno, 4711);
    {
        test::FailingAllocation failing(test::failAll);
        Logger::StaticLogMethod(Logger::LOG_ERROR, "f", 1, "%2000d", 1);
    }
    EXPECT_EQ(errno, 4711);
    const test::ChildResult child = test::runInChild([] {
        Logger::setSink(nullptr, nullptr);
        close(STDERR_FILENO);
        errno = 4711;
        Logger::StaticLog(Logger::LOG_ERROR, "text");
        if (errno != 4711)
            return 1;
        Logger::StaticLogS(Logger::LOG_ERROR, "text");
        return errno == 4711 ? 0 : 2;
    });
    EXPECT_EQ(child.status, 0);
}

TEST(Logger, NullFormatIsTheEmptyText) {
    test::LogCapture log;
    const char* const noFormat = nullptr;
    Logger::StaticLog(Logger::LOG_ERROR, noFormat);
    Logger::StaticLogMethod(Logger::LOG_ERROR, "f", 1, noFormat);
    Logger::StaticLogS(Logger::LOG_ERROR, noFormat);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"", "", ""}));
}

TEST(Logger, FormatThatCannotBeCarriedOutIsLoggedAsItStands) {
    test::LogCapture log;
    const wchar_t unconvertible[] = {static_cast<wchar_t>(0x20AC), 0};
    Logger::StaticLog(Logger::LOG_ERROR, "name '%ls'", unconvertible);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"name '%ls'"});
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat" // %m is the platform's own
TEST(Logger, FormatsSeeTheCallersErrno) {
    test::LogCapture log;
    errno = ENOENT;
    Logger::StaticLog(Logger::LOG_ERROR, "%m");
    errno = ENOENT;
    Logger::StaticLog(Logger::LOG_ERROR, "%2000d%m", 1);
    EXPECT_EQ(log.texts()[0], std::strerror(ENOENT));
    EXPECT_EQ(log.texts()[1].substr(2000), std::strerror(ENOENT));
}
#pragma GCC diagnostic pop

TEST(Logger, DefaultWritesOneLinePerMessage) {
    EXPECT_EQ(standardErrorOf([] {
                  Logger::StaticLog(Logger::LOG_ERROR, "%d ports", 4);
                  Logger::StaticLog(Logger::LOG_WARNING, "text\n");
                  Logger::StaticLog(Logger::LOG_NOTICE, "\n\rtext\n\r\n");
                  Logger::StaticLogMethod(Logger::LOG_DEBUG, "void f(int)", 33, "text\n");
                  Logger::StaticLogMethod(Logger::LOG_ENTER, "void g()", 4, "Enter");
                  Logger::StaticLogS(static_cast<Logger::LogType>(7), "");
              }),
              "ERROR 4 ports\n"
              "WARNING text\n"
              "NOTICE text\n"
              "DEBUG void f(int):33: text\n"
              "ENTER void g():4: Enter\n"
              "LOG \n");
}

TEST(Logger, DefaultKeepsTheLinesOfADump) {
    EXPECT_EQ(standardErrorOf([] { Logger::StaticLogS(Logger::LOG_DEBUG, "dump\n0000: 41\n      A\n\n"); }),
              "DEBUG dump\n0000: 41\n      A\n");
}

TEST(Logger, DefaultWritesTextsOfAnyLengthWithoutMemory) {
    EXPECT_EQ(standardErrorOf([] {
                  const std::string text(200000, 'x');
                  test::FailingAllocation failing(test::failAll);
                  Logger::StaticLogS(Logger::LOG_DEBUG, text.c_str());
              }),
              "DEBUG " + std::string(200000, 'x') + "\n");
}

TEST(Logger, DefaultFillsAPipeThatTakesOnlyPartOfTheMessage) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::string received;
    std::thread reader([&] {
        char piece[1000];
        for (ssize_t count; (count = read(ends[0], piece, sizeof piece)) > 0;)
            received.append(piece, static_cast<std::size_t>(count));
    });
    const test::ChildResult child = test::runInChild([&] {
        dup2(ends[1], STDERR_FILENO);
        Logger::StaticLogS(Logger::LOG_DEBUG, std::string(300000, 'x').c_str());
    });
    close(ends[1]);
    reader.join();
    close(ends[0]);
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(received, "DEBUG " + std::string(300000, 'x') + "\n");
}

TEST(Logger, DefaultContinuesAfterASignalCutTheMessage) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer holds signals back while a thread waits in write";
#endif
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ASSERT_EQ(pipe(interruptions), 0);
    std::string received;
    std::thread reader([&] {
        // Once the pipe is full the writer waits, and the second signal from then on finds it waiting.
        const auto bound = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        for (int held = 0; held < 60000 && std::chrono::steady_clock::now() < bound;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            ioctl(ends[0], FIONREAD, &held);
        }
        int earlier = 0;
        ioctl(interruptions[0], FIONREAD, &earlier);
        char piece[1000];
        for (int i = 0; i < earlier + 2; ++i)
            EXPECT_EQ(read(interruptions[0], piece, 1), 1);
        for (ssize_t count; (count = read(ends[0], piece, sizeof piece)) > 0;)
            received.append(piece, static_cast<std::size_t>(count));
    });
    const test::ChildResult child = test::runInChild([&] {
        dup2(ends[1], STDERR_FILENO);
        struct sigaction action = {};
        action.sa_handler = tellInterruption; // without SA_RESTART
        sigaction(SIGALRM, &action, nullptr);
        const itimerval every = {{0, 10000}, {0, 10000}};
        setitimer(ITIMER_REAL, &every, nullptr);
        Logger::StaticLogMethod(Logger::LOG_DEBUG, "void f()", 7, "%s", std::string(300000, 'x').c_str());
        const itimerval never = {};
        setitimer(ITIMER_REAL, &never, nullptr);
    });
    close(ends[1]);
    close(interruptions[1]);
    reader.join();
    close(ends[0]);
    close(interruptions[0]);
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(received, "DEBUG void f():7: " + std::string(300000, 'x') + "\n");
}

TEST(Logger, DefaultGivesUpWhereNothingCanBeWritten) {
    const test::ChildResult child = test::runInChild([] {
        dup2(open("/dev/full", O_WRONLY), STDERR_FILENO);
        Logger::StaticLog(Logger::LOG_ERROR, "text");
    });
    EXPECT_EQ(child.status, 0);
}

TEST(Logger, WhatASinkLogsGoesToStandardError) {
    EXPECT_EQ(withSink([] { Logger::StaticLog(Logger::LOG_ERROR, "from inside"); }), "ERROR from inside\n");
}

TEST(Logger, SinkThatAsksForAnotherSinkChangesNothing) {
    EXPECT_EQ(withSink([] { Logger::setSink(nullptr, nullptr); }), "");
}

TEST(Logger, HandlerThatInterruptsTheSinkCanLog) {
    EXPECT_EQ(withSink([] {
                  signal(SIGUSR1, logOnSignal);
                  raise(SIGUSR1);
              }),
              "ERROR signal " + std::to_string(SIGUSR1) + "\n");
}

TEST(Logger, MessageThatASinkFailedToTakeGoesToStandardError) {
    EXPECT_EQ(withSink([] { throw std::runtime_error("sink"); }), "NOTICE first\n");
    EXPECT_EQ(withSink([] { throw new framework::Exception(1, "f", 1, "f", "", true); }), "NOTICE first\n");
}

TEST(Logger, ThrowingSinkCanBeReplaced) {
    Logger::setSink([](void*, Logger::LogType, const char*, int, const char*) { throw 1; }, nullptr);
    const int saved = dup(STDERR_FILENO);
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDERR_FILENO);
    Logger::StaticLog(Logger::LOG_ERROR, "lost");
    dup2(saved, STDERR_FILENO);
    close(saved);
    close(null);
    test::LogCapture log;
    Logger::StaticLog(Logger::LOG_ERROR, "found");
    EXPECT_EQ(log.texts(), std::vector<std::string>{"found"});
}

TEST(Logger, ThreadCancelledInsideTheSinkLeavesItFree) {
    static std::atomic<bool> inside;
    inside = false;
    Logger::setSink(
        [](void*, Logger::LogType, const char*, int, const char*) {
            inside = true;
            while (true)
                pause();
        },
        nullptr);
    std::thread thread([] { Logger::StaticLog(Logger::LOG_ERROR, "text"); });
    while (!inside)
        std::this_thread::yield();
    pthread_cancel(thread.native_handle());
    thread.join();
    test::LogCapture log;
    Logger::StaticLog(Logger::LOG_ERROR, "found");
    EXPECT_EQ(log.count(), 1U);
}

TEST(Logger, ReplacingTheSinkWaitsUntilNobodyIsInside) {
    struct Slow {
        std::atomic<bool> entered{false};
        std::atomic<bool> left{false};
    } slow;
    Logger::setSink(
        [](void* context, Logger::LogType, const char*, int, const char*) {
            auto* self = static_cast<Slow*>(context);
            self->entered = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            self->left = true;
        },
        &slow);
    std::thread thread([] { Logger::StaticLog(Logger::LOG_ERROR, "text"); });
    while (!slow.entered)
        std::this_thread::yield();
    Logger::setSink(nullptr, nullptr);
    EXPECT_TRUE(slow.left);
    thread.join();
}

TEST(Logger, SeveralThreadsAreInsideTheSinkAtOnce) {
    static std::atomic<int> inside;
    inside = 0;
    Logger::setSink(
        [](void*, Logger::LogType, const char*, int, const char*) {
            ++inside;
            while (inside < 2)
                std::this_thread::yield();
        },
        nullptr);
    std::thread other([] { Logger::StaticLog(Logger::LOG_ERROR, "text"); });
    Logger::StaticLog(Logger::LOG_ERROR, "text");
    other.join();
    Logger::setSink(nullptr, nullptr);
    EXPECT_EQ(inside, 2);
}

TEST(Logger, SinkIsReplacedWhileThreadsLogWithoutAPause) {
    const auto slow = [](void*, Logger::LogType, const char*, int, const char*) {
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    };
    Logger::setSink(slow, nullptr);
    std::atomic<bool> replaced{false};
    std::atomic<bool> gaveUp{false};
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            while (!replaced && !gaveUp) {
                Logger::StaticLog(Logger::LOG_ERROR, "text");
                if (std::chrono::steady_clock::now() >= end)
                    gaveUp = true;
            }
        });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    for (int i = 0; i < 10; ++i)
        Logger::setSink(slow, nullptr);
    replaced = true;
    for (std::thread& thread : threads)
        thread.join();
    Logger::setSink(nullptr, nullptr);
    EXPECT_FALSE(gaveUp);
}

TEST(Logger, ChildForkedInsideTheSinkCanReplaceIt) {
    struct Shared {
        std::atomic<bool> entered{false};
        std::atomic<bool> leave{false};
        pid_t child = -1;
    } shared;
    Logger::setSink(
        [](void* context, Logger::LogType, const char*, int, const char* text) {
            auto* self = static_cast<Shared*>(context);
            if (std::strcmp(text, "fork") == 0) {
                self->child = fork();
                return;
            }
            self->entered = true;
            while (!self->leave)
                std::this_thread::yield();
        },
        &shared);
    std::thread other([] { Logger::StaticLog(Logger::LOG_ERROR, "stay"); });
    while (!shared.entered)
        std::this_thread::yield();
    Logger::StaticLog(Logger::LOG_ERROR, "fork");
    if (shared.child == 0) {
        alarm(60);
        Logger::setSink(nullptr, nullptr);
        _exit(0);
    }
    int status = -1;
    EXPECT_EQ(waitpid(shared.child, &status, 0), shared.child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    shared.leave = true;
    other.join();
    Logger::setSink(nullptr, nullptr);
}

TEST(Logger, ChildForkedWhileThreadsLogCanReplaceTheSink) {
    const auto ignore = [](void*, Logger::LogType, const char*, int, const char*) {
        std::this_thread::yield();
    };
    Logger::setSink(ignore, nullptr);
    std::atomic<bool> stop{false};
    std::thread busy([&] {
        while (!stop)
            Logger::StaticLog(Logger::LOG_ERROR, "text");
    });
    for (int i = 0; i < 20; ++i) {
        const test::ChildResult child = test::runInChild([] {
            Logger::setSink(nullptr, nullptr);
            Logger::StaticLog(Logger::LOG_ERROR, "in the child");
        });
        EXPECT_EQ(child.status, 0);
        EXPECT_EQ(child.err, "ERROR in the child\n");
    }
    stop = true;
    busy.join();
    Logger::setSink(nullptr, nullptr);
}

std::string standardErrorWithSink(void (*body)(std::atomic<int>& calls)) {
    static void (*inChild)(std::atomic<int>&);
    inChild = body;
    return standardErrorOf([] {
        alarm(60);
        static ActingSink sink{[] {
        }};
        Logger::setSink(ActingSink::receive, &sink);
        inChild(sink.calls);
    });
}

TEST(Logger, TriesAgainWhereTooManyThreadsAreInsideTheSink) {
    EXPECT_EQ(standardErrorWithSink([](std::atomic<int>& calls) {
                  readLocks = {EAGAIN, 3};
                  Logger::StaticLog(Logger::LOG_ERROR, "text");
                  _exit(calls == 1 && readLocks.times == 0 ? 0 : 1);
              }),
              "");
}

TEST(Logger, MessageWithoutTheLockOfTheSinkGoesToStandardError) {
    EXPECT_EQ(standardErrorWithSink([](std::atomic<int>& calls) {
                  readLocks = {EDEADLK, 1};
                  Logger::StaticLog(Logger::LOG_ERROR, "refused");
                  Logger::StaticLog(Logger::LOG_ERROR, "taken");
                  // Waits without end if a lock that was not held was released.
                  Logger::setSink(nullptr, nullptr);
                  Logger::StaticLog(Logger::LOG_ERROR, "plain");
                  _exit(calls == 1 ? 0 : 1);
              }),
              "ERROR refused\nERROR plain\n");
}

TEST(Logger, SinkStaysWhereTheLockToReplaceItIsRefused) {
    EXPECT_EQ(standardErrorWithSink([](std::atomic<int>& calls) {
                  writeLocks = {EDEADLK, 1};
                  Logger::setSink(nullptr, nullptr);
                  Logger::StaticLog(Logger::LOG_ERROR, "text");
                  Logger::setSink(nullptr, nullptr);
                  _exit(calls == 1 ? 0 : 1);
              }),
              "");
}

TEST(Logger, DefaultGivesUpWhereAWriteTakesNothing) {
    EXPECT_EQ(standardErrorOf([] {
                  emptyWrites = 1;
                  Logger::StaticLog(Logger::LOG_ERROR, "text");
                  _exit(emptyWrites == 0 ? 0 : 1);
              }),
              "");
}

} // namespace
