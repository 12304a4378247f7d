#include "ut_Debug.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <mutex>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <sys/auxv.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/un.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "fw_ApplicationArguments.h"
#include "fw_Container.h"
#include "fw_Logger.h"
#include "fw_ThreadInfo.h"
#include "support/ChildProcess.h"
#include "support/CrashingAllocation.h"
#include "support/DebugSwitch.h"
#include "support/Descriptor.h"
#include "support/ExpectFailure.h"
#include "support/GuardedText.h"
#include "support/LogCapture.h"
#include "support/PermissionsOf.h"
#include "support/ProtectedMachine.h"
#include "support/SymbolObject.h"
#include "support/SymbolText.h"
#include "support/TemporaryDirectory.h"
#include "support/TextLines.h"
#include "ut_BufferStream.h"
#include "ut_FileOutputStream.h"
#include "ut_Locker.h"

using framework::Logger;
using framework::ThreadInfo;
using test::linesOf;
using test::permissionsOf;
using test::symbolName;
using test::symbolPath;
using utility::BufferStream;
using utility::Debug;

// What a process reports before it ends is seen from outside: every crash happens in a child.

namespace {

const testing::Environment* const machine = test::protectMachine();

constexpr unsigned int hangBound = 40;

// --- what a child logs, seen by its parent

struct Line {
    int type;
    std::string text;

    bool operator==(const Line& other) const {
        return type == other.type && text == other.text;
    }
};

std::ostream& operator<<(std::ostream& out, const Line& line) {
    return out << line.type << " '" << line.text << "'";
}

// A sink without allocation and locking: each message is one write to standard error.
void writeLine(void*, Logger::LogType type, const char*, int, const char* text) {
    char head[] = {'\1', static_cast<char>('0' + static_cast<int>(type))};
    char tail[] = {'\2'};
    iovec pieces[] = {{head, sizeof head}, {const_cast<char*>(text), std::strlen(text)}, {tail, sizeof tail}};
    EXPECT_GT(writev(STDERR_FILENO, pieces, 3), 0);
}

std::vector<Line> linesIn(const std::string& err) {
    std::vector<Line> lines;
    for (std::size_t at = 0; (at = err.find('\1', at)) != std::string::npos;) {
        const std::size_t end = err.find('\2', at);
        if (end == std::string::npos || end < at + 2)
            break;
        lines.push_back({err[at + 1] - '0', err.substr(at + 2, end - at - 2)});
        at = end;
    }
    return lines;
}

// --- children

void install(int sig, void (*handler)(int), int flags = 0) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    sigemptyset(&action.sa_mask);
    EXPECT_EQ(sigaction(sig, &action, nullptr), 0);
}

constexpr int crashSignals[] = {SIGSEGV, SIGABRT, SIGBUS, SIGFPE, SIGILL};

// Runs `body` in a child that handles fatal signals with `SignalCrash`; an alarm limits its time.
test::ChildResult crash(const std::function<void()>& body, int flags = 0) {
    return test::runInChild(
        [&] {
            prctl(PR_SET_DUMPABLE, 0);
            alarm(hangBound);
            Logger::setSink(writeLine, nullptr);
            for (const int sig : crashSignals)
                install(sig, Debug::SignalCrash, flags);
            body();
            return 99;
        },
        std::chrono::seconds(2 * hangBound));
}

// Runs `scenario` in a child; its failed expectations are failures here.
void inChild(const std::function<void()>& scenario) {
    const test::ChildResult child = test::runInChild(
        [&] {
            alarm(2 * hangBound);
            const testing::TestResult* const result = testing::UnitTest::GetInstance()->current_test_info()->result();
            const int before = result->total_part_count();
            scenario();
            return result->total_part_count() == before ? 0 : 1;
        },
        std::chrono::seconds(3 * hangBound));
    EXPECT_TRUE(child.exited) << "ended by signal " << child.signal << "\n" << child.out << child.err;
    EXPECT_EQ(child.status, 0) << child.out << child.err;
}

// Ways to die.
int* volatile invalidAddress = reinterpret_cast<int*>(16);

__attribute__((noinline, no_sanitize("address", "undefined"))) void writeToInvalidAddress() {
    *invalidAddress = 1;
}

__attribute__((noinline)) void readBehindTheEndOfAFile() {
    void* mapped = mmap(nullptr, 4096, PROT_READ, MAP_SHARED, fileno(std::tmpfile()), 0);
    const volatile char* text = static_cast<char*>(mapped);
    std::printf("%d", text[0]);
}

__attribute__((noinline, no_sanitize("address", "undefined"))) void divideByZero() {
#if defined(__x86_64__)
    volatile int zero = 0;
    volatile int quotient = 7 / zero;
    std::printf("%d", quotient);
#else
    raise(SIGFPE); // the division gives a number here
#endif
}

__attribute__((noinline)) void runInvalidInstruction() {
    __builtin_trap();
}

void abortProcess() {
    std::abort();
}

struct Death {
    int signal;
    const char* name;
    void (*die)();
};

std::ostream& operator<<(std::ostream& out, const Death& death) {
    return out << "signal " << death.signal;
}

constexpr Death deaths[] = {{SIGSEGV, "SIGSEGV", writeToInvalidAddress},
                            {SIGABRT, "SIGABRT", abortProcess},
                            {SIGBUS, "unknown", readBehindTheEndOfAFile},
                            {SIGFPE, "SIGFPE", divideByZero},
                            {SIGILL, "SIGILL", runInvalidInstruction}};

// --- core dumps

std::string corePattern() {
    std::ifstream file("/proc/sys/kernel/core_pattern");
    std::string line;
    std::getline(file, line);
    return line.substr(0, 131);
}

bool isCorePath(const std::string& pattern) {
    return pattern.find('/') != std::string::npos && pattern[0] != '|';
}

bool mayRaiseHardLimit() {
    const test::ChildResult child = test::runInChild([] {
        const rlimit none = {0, 0};
        const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_CORE, &none);
        return setrlimit(RLIMIT_CORE, &unlimited) == 0 ? 1 : 0;
    });
    return child.status == 1;
}

// The log messages about core dumps in a child with a limit of 0.
std::vector<Line> expectedCoreLines() {
    std::vector<Line> lines;
    if (isCorePath(corePattern()))
        lines.push_back({2, "Enabling Core Dump...\n"});
    if (isCorePath(corePattern()) && !mayRaiseHardLimit())
        lines.push_back({0, std::string("setrlimit: ") + std::strerror(EPERM) +
                                "\nWarning: core dumps may be truncated or non-existent\n"});
    return lines;
}

// --- back traces

struct Frame {
    unsigned int index = 0;
    bool hasSymbol = false;
    std::string object;
    std::string base;
    std::string name;
    std::string offset;
    std::string address;
};

struct Trace {
    bool isWhole = false; // has exactly the shape of a back trace
    unsigned int announced = 0;
    std::vector<Frame> frames;

    bool names(const std::string& name) const {
        return std::any_of(frames.begin(), frames.end(), [&](const Frame& frame) { return frame.name == name; });
    }
};

Trace parse(const std::string& text, unsigned int skip) {
    static const std::regex first("Backtrace of ([0-9]+) stack frames");
    static const std::regex object("\\(([0-9]+)\\) (.+): @(0x[0-9a-f]+|\\(nil\\))");
    static const std::regex symbol("    (.*)\\+0x([0-9A-F]+) \\[(0x[0-9a-f]+)\\]");
    static const std::regex address("\\(([0-9]+)\\) \\[(0x[0-9a-f]+) *\\]");
    Trace trace;
    const std::vector<std::string> lines = linesOf(text);
    std::smatch match;
    if (lines.size() < 3 || !std::regex_match(lines[0], match, first))
        return trace;
    trace.announced = static_cast<unsigned int>(std::stoul(match[1]));
    if (lines[1] != "Backtrace Start>>>" || lines.back() != "<<<Backtrace End" || text.back() != '\n')
        return trace;
    for (std::size_t at = 2; at + 1 < lines.size(); ++at) {
        Frame frame;
        if (std::regex_match(lines[at], match, object)) {
            frame.index = static_cast<unsigned int>(std::stoul(match[1]));
            frame.hasSymbol = true;
            frame.object = match[2];
            frame.base = match[3];
            if (++at + 1 >= lines.size() || !std::regex_match(lines[at], match, symbol))
                return trace;
            frame.name = match[1];
            frame.offset = match[2];
            frame.address = match[3];
        } else if (std::regex_match(lines[at], match, address)) {
            frame.index = static_cast<unsigned int>(std::stoul(match[1]));
            frame.address = match[2];
        } else {
            return trace;
        }
        if (frame.index != skip + trace.frames.size())
            return trace;
        trace.frames.push_back(frame);
    }
    trace.isWhole = trace.announced == trace.frames.size() && trace.announced + skip <= 40;
    return trace;
}

// A sanitizer takes the back trace in a function of its own, which is its first frame then.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t ownFrame = 1;
#else
constexpr std::size_t ownFrame = 0;
#endif

constexpr const char* crashFrame = "utility::Debug::SignalCrash(int)";

Line signalLine(int type, const std::string& handler, const std::string& name, int number) {
    return {type, "\nstatic void utility::Debug::" + handler + "(int): Received SIGNAL " + name + "(" +
                      std::to_string(number) + ")"};
}

// Expects that the child logged the whole report and nothing else, and died of the signal. Returns the back trace.
Trace expectReport(const test::ChildResult& child, int sig, const std::string& name) {
    EXPECT_EQ(child.signal, sig) << (child.signal == SIGALRM ? "the child hung" : "") << child.err;
    EXPECT_FALSE(child.timedOut);
    std::vector<Line> lines = linesIn(child.err);
    std::vector<Line> expected = {signalLine(0, "SignalCrash", name, sig)};
    const std::vector<Line> core = expectedCoreLines();
    expected.insert(expected.end(), core.begin(), core.end());
    expected.push_back({0, "ErrorContext - for diagnostic purposes."});
    if (lines.size() != expected.size() + 1) {
        ADD_FAILURE() << lines.size() << " messages instead of " << expected.size() + 1 << "\n" << child.err;
        return Trace();
    }
    const Line last = lines.back();
    lines.pop_back();
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(last.type, 0);
    const Trace trace = parse(last.text, 2);
    EXPECT_TRUE(trace.isWhole) << last.text;
    return trace;
}

// The least that is asked of a crash in a place where little works.
void expectEnd(const test::ChildResult& child) {
    EXPECT_EQ(child.signal, SIGSEGV) << (child.signal == SIGALRM || child.timedOut ? "the child hung" : "")
                                     << child.status << child.err;
    EXPECT_FALSE(child.timedOut);
}

void expectEndWithFirstLine(const test::ChildResult& child) {
    expectEnd(child);
    const std::vector<Line> lines = linesIn(child.err);
    EXPECT_TRUE(!lines.empty() && lines[0] == signalLine(0, "SignalCrash", "SIGSEGV", SIGSEGV)) << child.err;
}

// --- names

TEST(DebugSignalName, OfEveryNumber) {
    for (int number = -1; number <= 65; ++number) {
        const char* expected = "unknown";
        switch (number) {
        case 1:
            expected = "SIGHUP";
            break;
        case 2:
            expected = "SIGINT";
            break;
        case 3:
            expected = "SIGQUIT";
            break;
        case 4:
            expected = "SIGILL";
            break;
        case 5:
            expected = "SIGTRAP";
            break;
        case 6:
            expected = "SIGABRT";
            break;
        case 8:
            expected = "SIGFPE";
            break;
        case 9:
            expected = "SIGKILL";
            break;
        case 10:
            expected = "SIGUSR1";
            break;
        case 11:
            expected = "SIGSEGV";
            break;
        case 12:
            expected = "SIGUSR2";
            break;
        case 13:
            expected = "SIGPIPE";
            break;
        case 14:
            expected = "SIGALRM";
            break;
        case 15:
            expected = "SIGTERM";
            break;
        case 17:
            expected = "SIGCHLD";
            break;
        case 18:
            expected = "SIGCONT";
            break;
        case 19:
            expected = "SIGSTOP";
            break;
        case 20:
            expected = "SIGTSTP";
            break;
        case 21:
            expected = "SIGTTIN";
            break;
        case 22:
            expected = "SIGTTOU";
            break;
        case 42:
            expected = "SIGWBISTOP";
            break;
        case 43:
            expected = "SIGQUIESCEFLASH";
            break;
        case 44:
            expected = "SIGNONESSENTIALEVENT";
            break;
        case 45:
            expected = "SIGSVCEVENT";
            break;
        default:
            break;
        }
        EXPECT_STREQ(Debug::signalName(number), expected) << number;
    }
}

TEST(DebugSignalName, OfNumbersThatAreNoSignals) {
    for (const int number : {INT_MIN, -44, 128, 256 + 11, 65536 + 11, INT_MAX})
        EXPECT_STREQ(Debug::signalName(number), "unknown") << number;
}

// --- crashes

class DebugSignalCrash : public testing::TestWithParam<Death> {};

TEST_P(DebugSignalCrash, ReportsAndEndsByTheSignal) {
    const Death& death = GetParam();
    const test::ChildResult child = crash(death.die);
    const Trace trace = expectReport(child, death.signal, death.name);
    ASSERT_GT(trace.frames.size(), ownFrame);
    EXPECT_EQ(trace.frames[ownFrame].name, crashFrame);
    EXPECT_NE(trace.frames[ownFrame].object.find("libVXut.so"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Signals, DebugSignalCrash, testing::ValuesIn(deaths),
                         [](const auto& death) { return "Number" + std::to_string(death.param.signal); });

TEST(DebugCrash, CalledDirectlyEndsTheProcessByTheSignal) {
    const test::ChildResult child = crash([] { Debug::SignalCrash(SIGTERM); });
    expectReport(child, SIGTERM, "SIGTERM");
}

TEST(DebugCrash, OfASignalThatStopsNothingByDefaultStillEndsTheProcess) {
    const test::ChildResult child = crash([] { Debug::SignalCrash(SIGCHLD); });
    EXPECT_EQ(child.signal, SIGABRT);
    EXPECT_EQ(linesIn(child.err).at(0), signalLine(0, "SignalCrash", "SIGCHLD", SIGCHLD));
}

TEST(DebugCrash, InTheLibraryNamesItsFunction) {
    const test::ChildResult child = crash([] {
        // In the first page no address is valid.
        Debug::reverseHexDump(reinterpret_cast<const char*>(16), 16);
    });
    const Trace trace = expectReport(child, SIGSEGV, "SIGSEGV");
    EXPECT_TRUE(trace.names("utility::Debug::reverseHexDump(char const*, int)")) << child.err;
}

TEST(DebugCrash, GoesToStandardErrorWithoutASink) {
    const test::ChildResult child = crash([] {
        Logger::setSink(nullptr, nullptr);
        writeToInvalidAddress();
    });
    EXPECT_EQ(child.signal, SIGSEGV);
    for (const char* text : {"static void utility::Debug::SignalCrash(int): Received SIGNAL SIGSEGV(11)\n",
                             "ErrorContext - for diagnostic purposes.\n", "Backtrace of ", "Backtrace Start>>>\n",
                             "utility::Debug::SignalCrash(int)+0x", "<<<Backtrace End\n"})
        EXPECT_NE(child.err.find(text), std::string::npos) << text << "\n" << child.err;
}

TEST(DebugCrash, InAThreadWithoutARecord) {
    const test::ChildResult child = crash([] {
        std::thread([] {
            EXPECT_EQ(ThreadInfo::getMyself(), nullptr);
            writeToInvalidAddress();
        }).join();
    });
    const Trace trace = expectReport(child, SIGSEGV, "SIGSEGV");
    EXPECT_TRUE(trace.names(crashFrame)) << child.err;
}

TEST(DebugCrash, InSeveralThreadsAtOnce) {
    const test::ChildResult child = crash([] {
        std::atomic<int> ready{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&] {
                ++ready;
                while (ready < 8)
                    std::this_thread::yield();
                writeToInvalidAddress();
            });
        for (std::thread& thread : threads)
            thread.join();
    });
    expectEndWithFirstLine(child);
}

void takeMemory() {
    void* volatile piece = std::malloc(100);
    std::free(piece);
}

void expectReportNamingTheHandler(const test::ChildResult& child) {
    const Trace trace = expectReport(child, SIGSEGV, "SIGSEGV");
    EXPECT_TRUE(trace.names(crashFrame)) << child.err;
}

TEST(DebugCrash, InTheAllocator) {
    const test::ChildResult child = crash([] {
        test::allocatorState = test::CRASH_ONCE;
        takeMemory();
    });
    expectReportNamingTheHandler(child);
}

TEST(DebugCrash, InTheAllocatorThatGivesNothingFromThenOn) {
    const test::ChildResult child = crash([] {
        test::allocatorState = test::CRASH_ONCE_REFUSE;
        takeMemory();
    });
    expectReportNamingTheHandler(child);
}

TEST(DebugCrash, InTheAllocatorThatHoldsItsLock) {
    const test::ChildResult child = crash([] {
        test::allocatorState = test::CRASH_LOCKED;
        takeMemory();
    });
    expectReportNamingTheHandler(child);
}

TEST(DebugCrash, InTheAllocatorThatHoldsItsLockInAThreadWithARecord) {
    const test::ChildResult child = crash([] {
        ThreadInfo::MyThreadInfo();
        test::allocatorState = test::CRASH_LOCKED;
        takeMemory();
    });
    expectReportNamingTheHandler(child);
}

void allocatingSink(void*, Logger::LogType type, const char* function, int line, const char* text) {
    void* volatile piece = std::malloc(100);
    writeLine(nullptr, type, function, line, text);
    std::free(piece);
}

TEST(DebugCrash, InTheAllocatorThatHoldsItsLockWithASinkThatTakesMemory) {
    const test::ChildResult child = crash([] {
        ThreadInfo::MyThreadInfo();
        Logger::setSink(allocatingSink, nullptr);
        test::allocatorState = test::CRASH_LOCKED;
        takeMemory();
    });
    expectEnd(child);
}

TEST(DebugCrash, InTheAllocatorThatCrashesAgain) {
    const test::ChildResult child = crash([] {
        test::allocatorState = test::CRASH_ALWAYS;
        takeMemory();
    });
    expectReportNamingTheHandler(child);
}

TEST(DebugCrash, InTheAllocatorInAnotherThreadThatHoldsItsLock) {
    const test::ChildResult child = crash([] {
        std::thread([] {
            test::allocatorState = test::CRASH_LOCKED;
            takeMemory();
        }).join();
    });
    expectReportNamingTheHandler(child);
}

void crashingSink(void*, Logger::LogType type, const char* function, int line, const char* text) {
    if (std::strcmp(text, "crash") == 0)
        writeToInvalidAddress();
    writeLine(nullptr, type, function, line, text);
}

std::mutex sinkMutex;

void lockingCrashingSink(void*, Logger::LogType type, const char* function, int line, const char* text) {
    const std::lock_guard<std::mutex> guard(sinkMutex);
    crashingSink(nullptr, type, function, line, text);
}

TEST(DebugCrash, InsideTheSink) {
    for (const Logger::Sink sink : {crashingSink, lockingCrashingSink}) {
        const test::ChildResult child = crash([&] {
            Logger::setSink(sink, nullptr);
            Logger::StaticLog(Logger::LOG_ERROR, "crash");
        });
        expectEnd(child);
        for (const char* text : {"Received SIGNAL SIGSEGV(11)", "ErrorContext - for diagnostic purposes.",
                                 "Backtrace of ", "utility::Debug::SignalCrash(int)+0x", "<<<Backtrace End"})
            EXPECT_NE(child.err.find(text), std::string::npos) << text << "\n" << child.err;
    }
}

std::atomic<bool> threadIsInSink{false};

void holdingSink(void* mutex, Logger::LogType type, const char* function, int line, const char* text) {
    std::unique_lock<std::mutex> guard;
    if (mutex != nullptr)
        guard = std::unique_lock<std::mutex>(*static_cast<std::mutex*>(mutex));
    if (std::strcmp(text, "hold") == 0) {
        threadIsInSink = true;
        for (;;)
            pause();
    }
    writeLine(nullptr, type, function, line, text);
}

void holdSinkInAThread(void* mutex) {
    Logger::setSink(holdingSink, mutex);
    std::thread([] { Logger::StaticLog(Logger::LOG_ERROR, "hold"); }).detach();
    while (!threadIsInSink)
        std::this_thread::yield();
}

TEST(DebugCrash, WhileAnotherThreadIsInTheSink) {
    const test::ChildResult child = crash([] {
        holdSinkInAThread(nullptr);
        writeToInvalidAddress();
    });
    expectReport(child, SIGSEGV, "SIGSEGV");
}

TEST(DebugCrash, WhileAnotherThreadHoldsTheLockOfTheSink) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer holds signals back while a thread waits for a lock";
#endif
    const test::ChildResult child = crash([] {
        holdSinkInAThread(&sinkMutex);
        writeToInvalidAddress();
    });
    expectEnd(child);
}

TEST(DebugCrash, WhileAnotherThreadWaitsToReplaceTheSink) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer holds signals back while a thread waits for a lock";
#endif
    const test::ChildResult child = crash([] {
        holdSinkInAThread(nullptr);
        std::thread([] { Logger::setSink(writeLine, nullptr); }).detach();
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        writeToInvalidAddress();
    });
    expectEnd(child);
}

TEST(DebugCrash, WhileAnotherThreadHoldsTheLockOfTheLoader) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the thread sanitizer holds signals back while a thread waits for a lock";
#endif
    const test::TemporaryDirectory directory;
    const std::string pipe = directory.path("object.so");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const test::ChildResult child = crash([&] {
        // Opening a pipe without a writer never returns.
        std::thread([&] { dlopen(pipe.c_str(), RTLD_NOW); }).detach();
        std::this_thread::sleep_for(std::chrono::milliseconds(500));
        writeToInvalidAddress();
    });
    expectEndWithFirstLine(child);
}

// Makes a signal stack followed by a guard page: an access to it ends the process.
void useSignalStack(std::size_t size) {
    const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t pages = (size + page - 1) / page * page;
    char* storage =
        static_cast<char*>(mmap(nullptr, page + pages, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(storage, MAP_FAILED);
    ASSERT_EQ(mprotect(storage, page, PROT_NONE), 0);
    stack_t stack = {};
    stack.ss_sp = storage + page;
    stack.ss_size = size;
    ASSERT_EQ(sigaltstack(&stack, nullptr), 0) << std::strerror(errno);
}

std::size_t smallestSignalStack() {
    return std::max<std::size_t>(static_cast<std::size_t>(MINSIGSTKSZ), getauxval(AT_MINSIGSTKSZ));
}

__attribute__((noinline, no_sanitize("address", "undefined"))) int recurseWithoutEnd(int depth) {
    volatile char room[1024];
    room[0] = static_cast<char>(depth);
    return depth < 0 ? 0 : recurseWithoutEnd(depth + 1) + room[0];
}

TEST(DebugCrash, OnTheSmallestSignalStack) {
    const test::ChildResult child = crash(
        [] {
            useSignalStack(smallestSignalStack());
            writeToInvalidAddress();
        },
        SA_ONSTACK);
    expectEnd(child);
}

TEST(DebugCrash, OnAnOrdinarySignalStack) {
    const test::ChildResult child = crash(
        [] {
            useSignalStack(std::max<std::size_t>(static_cast<std::size_t>(SIGSTKSZ), smallestSignalStack()));
            writeToInvalidAddress();
        },
        SA_ONSTACK);
    expectEnd(child);
}

TEST(DebugCrash, OnALargeSignalStack) {
    const test::ChildResult child = crash(
        [] {
            useSignalStack(std::size_t{1} << 20);
            writeToInvalidAddress();
        },
        SA_ONSTACK);
    const Trace trace = expectReport(child, SIGSEGV, "SIGSEGV");
    EXPECT_TRUE(trace.names(crashFrame)) << child.err;
}

TEST(DebugCrash, OfAStackThatIsUsedUp) {
    const test::ChildResult child = crash(
        [] {
            useSignalStack(std::size_t{1} << 20);
            std::printf("%d", recurseWithoutEnd(0));
        },
        SA_ONSTACK);
    const Trace trace = expectReport(child, SIGSEGV, "SIGSEGV");
    EXPECT_TRUE(trace.names(crashFrame)) << child.err;
}

TEST(DebugCrash, OfAStackThatIsUsedUpWithoutASignalStack) {
    const test::ChildResult child = crash([] {
        stack_t none = {};
        none.ss_flags = SS_DISABLE;
        sigaltstack(&none, nullptr);
        std::printf("%d", recurseWithoutEnd(0));
    });
    expectEnd(child);
}

// --- an orderly stop

void exitWith(void (*handler)(int), int sig) {
    Logger::setSink(writeLine, nullptr);
    install(sig, handler);
    raise(sig);
    _exit(99);
}

void expectExitReport(const test::ChildResult& child, const std::string& name, int sig) {
    const std::vector<Line> lines = linesIn(child.err);
    ASSERT_EQ(lines.size(), 4u) << child.err;
    EXPECT_EQ(lines[0], signalLine(2, "SignalExit", name, sig));
    EXPECT_EQ(lines[1], (Line{0, "ErrorContext - for diagnostic purposes."}));
    EXPECT_EQ(lines[2].type, 0);
    const Trace trace = parse(lines[2].text, 2);
    EXPECT_TRUE(trace.isWhole) << lines[2].text;
    EXPECT_TRUE(trace.names("utility::Debug::SignalExit(int)")) << lines[2].text;
    EXPECT_EQ(lines[3], (Line{2, "proceeding with clean application shutdown ...\n"}));
}

class RecordingContainer : public framework::Container {
protected:
    void shutdown(bool clean) override {
        _exit(clean ? 42 : 43);
    }
};

TEST(DebugSignalExit, ReportsAndEndsWithStatus0) {
    const struct {
        int signal;
        const char* name;
    } signals[] = {{SIGTERM, "SIGTERM"}, {SIGINT, "SIGINT"}, {SIGQUIT, "SIGQUIT"}, {SIGHUP, "SIGHUP"}};
    for (const auto& each : signals) {
        const test::ChildResult child = test::runInChild([&] {
            alarm(hangBound);
            exitWith(Debug::SignalExit, each.signal);
        });
        EXPECT_TRUE(child.exited);
        EXPECT_EQ(child.status, 0) << child.err;
        expectExitReport(child, each.name, each.signal);
    }
}

TEST(DebugSignalExit, ShutsTheContainerDownCleanly) {
    const test::ChildResult child = test::runInChild([] {
        alarm(hangBound);
        RecordingContainer container;
        exitWith(Debug::SignalExit, SIGTERM);
    });
    EXPECT_EQ(child.status, 42) << child.err;
    expectExitReport(child, "SIGTERM", SIGTERM);
}

TEST(DebugSignalExit, RunsTheExitHandlers) {
    const test::ChildResult child = test::runInChild([] {
        alarm(hangBound);
        std::atexit([] { static_cast<void>(write(STDOUT_FILENO, "handler", 7) == 0); });
        exitWith(Debug::SignalExit, SIGTERM);
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(child.out, "handler");
}

// --- signals that are ignored

TEST(DebugSignalNull, SaysNothingWhenItsSwitchIsOff) {
    const test::LogCapture log;
    const test::DebugSwitch other(351);
    for (int number = -1; number <= 65; ++number)
        Debug::SignalNull(number);
    EXPECT_EQ(log.count(), 0u);
}

TEST(DebugSignalNull, LogsTheSignalWhenItsSwitchIsOn) {
    const test::DebugSwitch traces(350);
    const test::LogCapture log;
    Debug::SignalNull(SIGPIPE);
    Debug::SignalNull(7);
    Debug::SignalNull(45);
    const std::string start = "\n\rstatic void utility::Debug::SignalNull(int): Received SIGNAL ";
    EXPECT_EQ(log.texts(), (std::vector<std::string>{start + "SIGPIPE(13)\n\r", start + "unknown(7)\n\r",
                                                     start + "SIGSVCEVENT(45)\n\r"}));
    for (const test::LogEntry& entry : log.entries())
        EXPECT_EQ(entry.type, Logger::LOG_DEBUG);
}

TEST(DebugSignalNull, LetsTheProcessGoOn) {
    inChild([] {
        test::LogCapture log;
        install(SIGTERM, Debug::SignalNull);
        raise(SIGTERM);
        EXPECT_EQ(log.count(), 0u);
        const test::DebugSwitch traces(350);
        raise(SIGTERM);
        EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, "\n\rstatic void utility::Debug::SignalNull(int): "
                                                    "Received SIGNAL SIGTERM(15)\n\r"));
    });
}

// --- contexts of threads

// The command line of a process that is called `name`.
class ProcessName {
public:
    explicit ProcessName(const char* name) : m_name(name), m_words{m_name.data(), nullptr}, m_arguments(1, m_words) {}

private:
    std::string m_name;
    char* m_words[2];
    framework::ApplicationArguments m_arguments;
};

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

bool isWholeContext(const std::string& path) {
    const Trace trace = parse(contentOf(path), 2);
    return trace.isWhole && !trace.frames.empty();
}

std::set<std::string> filesIn(const std::string& directory) {
    std::set<std::string> names;
    if (std::filesystem::is_directory(directory))
        for (const auto& entry : std::filesystem::directory_iterator(directory))
            names.insert(entry.path().filename().string());
    return names;
}

std::string myContextFile() {
    const ThreadInfo* myself = ThreadInfo::MyThreadInfo();
    return std::to_string(myself->getNum()) + myself->getThreadName();
}

std::atomic<int> contextsDone{0};

void writeContextAndCount(int sig) {
    Debug::SignalContext(sig);
    ++contextsDone;
}

bool waitFor(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(hangBound);
    while (!condition() && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    return condition();
}

// The thread sanitizer may lose a signal that comes while a thread waits for its first time.
void waitOnce() {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// 31 threads with records beside the main one, which has a record too, that live until the end.
class Threads {
public:
    Threads() {
        ThreadInfo::MyThreadInfo()->setThreadName("main");
        addFile(myContextFile());
        for (int i = 0; i < 31; ++i)
            m_threads.emplace_back([this, i] { live(i); });
        while (m_ready < 31)
            std::this_thread::yield();
    }
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;
    ~Threads() {
        m_stop = true;
        for (std::thread& thread : m_threads)
            thread.join();
        EXPECT_EQ(m_ended, 31);
    }

    const std::set<std::string>& files() const {
        return m_files;
    }

private:
    void live(int number) {
        ThreadInfo::MyThreadInfo()->setThreadName(("worker" + std::to_string(number)).c_str());
        addFile(myContextFile());
        waitOnce();
        ++m_ready;
        while (!m_stop)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        ++m_ended;
    }
    void addFile(const std::string& name) {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_files.insert(name);
    }

    std::mutex m_mutex;
    std::set<std::string> m_files;
    std::vector<std::thread> m_threads;
    std::atomic<int> m_ready{0};
    std::atomic<int> m_ended{0};
    std::atomic<bool> m_stop{false};
};

// Expects that no lock was left held and that contexts can still be written.
void expectContextStillWorks() {
    const test::TemporaryDirectory good;
    std::filesystem::create_directory(good.path("agentContext"));
    setenv("VX_MEM", good.path().c_str(), 1);
    Debug::SignalContext(SIGUSR2);
    EXPECT_TRUE(isWholeContext(good.path("agentContext/" + myContextFile())));
}

// Asks 32 threads for their contexts where none can be written.
void expectNoThreadIsLost(const std::string& memory) {
    setenv("VX_MEM", memory.c_str(), 1);
    const ProcessName name("agent");
    contextsDone = 0;
    install(SIGUSR2, writeContextAndCount, SA_RESTART);
    const Threads threads;
    Debug::SignalThreads(SIGUSR1);
    EXPECT_TRUE(waitFor([] { return contextsDone == 32; })) << contextsDone;
    expectContextStillWorks();
}

TEST(DebugSignalThreads, LeavesAWholeContextFileOfEachOf32Threads) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        umask(0);
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        const std::string directory = memory.path("agentContext");
        install(SIGUSR1, Debug::SignalThreads);
        install(SIGUSR2, writeContextAndCount, SA_RESTART);
        const Threads threads;
        raise(SIGUSR1);
        EXPECT_TRUE(waitFor([] { return contextsDone == 32; })) << contextsDone;
        EXPECT_EQ(threads.files().size(), 32u);
        EXPECT_EQ(filesIn(directory), threads.files());
        EXPECT_EQ(permissionsOf(directory), 0770u);
        for (const std::string& file : threads.files()) {
            EXPECT_TRUE(isWholeContext(directory + "/" + file)) << contentOf(directory + "/" + file);
            EXPECT_EQ(permissionsOf(directory + "/" + file), 0666u);
        }
    });
}

TEST(DebugSignalThreads, ReplacesTheFilesOfAnEarlierRequest) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        const std::string directory = memory.path("agentContext");
        install(SIGUSR2, writeContextAndCount, SA_RESTART);
        const Threads threads;
        std::filesystem::create_directory(directory);
        for (const std::string& file : threads.files())
            memory.write("agentContext/" + file, std::string(100000, 'x'));
        for (int round = 1; round <= 5; ++round) {
            Debug::SignalThreads(SIGUSR1);
            EXPECT_TRUE(waitFor([&] { return contextsDone == 32 * round; })) << contextsDone;
            EXPECT_EQ(filesIn(directory), threads.files());
            for (const std::string& file : threads.files())
                EXPECT_TRUE(isWholeContext(directory + "/" + file)) << contentOf(directory + "/" + file);
        }
    });
}

TEST(DebugSignalThreads, LosesNoThreadWithoutTheDirectory) {
    const test::TemporaryDirectory memory;
    inChild([&] { expectNoThreadIsLost(memory.path("missing")); });
    EXPECT_FALSE(memory.exists("missing"));
}

TEST(DebugSignalThreads, LosesNoThreadWhenTheDirectoryIsAFile) {
    const test::TemporaryDirectory memory;
    memory.write("file", "content");
    inChild([&] { expectNoThreadIsLost(memory.path("file")); });
    memory.write("agentContext", "content");
    inChild([&] { expectNoThreadIsLost(memory.path()); });
    EXPECT_EQ(memory.read("file"), "content");
    EXPECT_EQ(memory.read("agentContext"), "content");
}

TEST(DebugSignalThreads, LosesNoThreadWhereNobodyMayWrite) {
    inChild([] { expectNoThreadIsLost("/proc"); });
    const test::TemporaryDirectory memory;
    ASSERT_EQ(chmod(memory.path().c_str(), 0555), 0);
    inChild([&] {
        if (getuid() == 0) {
            ASSERT_EQ(setgid(65534), 0);
            ASSERT_EQ(setuid(65534), 0);
        }
        expectNoThreadIsLost(memory.path());
    });
    EXPECT_TRUE(filesIn(memory.path()).empty());
}

TEST(DebugSignalThreads, LosesNoThreadWhenTheNameDoesNotFit) {
    const test::TemporaryDirectory memory;
    const std::string deep = memory.path(std::string(200, 'd'));
    std::filesystem::create_directory(deep);
    inChild([&] { expectNoThreadIsLost(deep); });
    inChild([&] { expectNoThreadIsLost(std::string(100000, 'd')); });
    for (const auto& entry : std::filesystem::recursive_directory_iterator(memory.path()))
        EXPECT_FALSE(entry.is_regular_file()) << entry.path();
}

// Takes and gives back memory of sizes that need the allocator's lock.
void useTheAllocator(const std::atomic<bool>& stop) {
    std::array<std::unique_ptr<char[]>, 16> pieces;
    for (std::size_t i = 0; !stop; ++i)
        pieces[i % pieces.size()].reset(new char[1100 + i * 523 % 4096]);
}

TEST(DebugSignalThreads, MakesNoDirectoryOfATruncatedName) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        const ProcessName name("agent");
        // The longest name that fits in 4,096 bytes would end in "agentCon".
        const std::string fitting = "/agentCon";
        std::string root = memory.path();
        while (root.size() + fitting.size() < 4095)
            root += root.size() + fitting.size() == 4094 ? "/" : "/.";
        setenv("VX_MEM", root.c_str(), 1);
        signal(SIGUSR2, SIG_IGN);
        Debug::SignalThreads(SIGUSR1);
        EXPECT_TRUE(std::filesystem::is_empty(memory.path()));
    });
}

TEST(DebugSignalThreads, MeetsThreadsInsideTheAllocator) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        install(SIGUSR2, writeContextAndCount, SA_RESTART);
        ThreadInfo::MyThreadInfo();
        std::atomic<bool> stop{false};
        std::atomic<int> ready{0};
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([&] {
                ThreadInfo::MyThreadInfo();
                waitOnce();
                ++ready;
                useTheAllocator(stop);
            });
        while (ready < 8)
            std::this_thread::yield();
        for (int round = 1; round <= 20 && !testing::Test::HasFailure(); ++round) {
            Debug::SignalThreads(SIGUSR1);
            EXPECT_TRUE(waitFor([&] { return contextsDone == 9 * round; })) << contextsDone << " in round " << round;
        }
        // Threads that wait for themselves could not be joined.
        if (testing::Test::HasFailure())
            _exit(1);
        stop = true;
        for (std::thread& thread : threads)
            thread.join();
    });
    EXPECT_EQ(filesIn(memory.path("agentContext")).size(), 9u);
}

TEST(DebugSignalThreads, WithoutAnyRecordSignalsNobody) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::thread([] {
            install(SIGUSR2, writeContextAndCount, SA_RESTART);
            Debug::SignalThreads(SIGUSR1);
        }).join();
        const int expected = ThreadInfo::getMyself() != nullptr ? 1 : 0;
        EXPECT_TRUE(waitFor([&] { return contextsDone == expected; }));
    });
    EXPECT_TRUE(std::filesystem::is_directory(memory.path("agentContext")));
}

TEST(DebugSignalContext, WritesTheBackTraceOfItsThread) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        const test::LogCapture log;
        std::thread([&] {
            ThreadInfo::MyThreadInfo()->setThreadName("worker/1");
            install(SIGUSR2, Debug::SignalContext);
            raise(SIGUSR2);
            const std::string file = std::to_string(ThreadInfo::MyThreadInfo()->getNum()) + "worker_1";
            EXPECT_EQ(filesIn(memory.path("agentContext")), std::set<std::string>{file});
            const std::string content = contentOf(memory.path("agentContext/" + file));
            const Trace trace = parse(content, 2);
            EXPECT_TRUE(trace.isWhole) << content;
            EXPECT_TRUE(trace.names("utility::Debug::SignalContext(int)")) << content;
        }).join();
        EXPECT_EQ(log.count(), 0u);
    });
}

TEST(DebugSignalContext, MakesARecordForAThreadWithoutOne) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        std::thread([&] {
            EXPECT_EQ(ThreadInfo::getMyself(), nullptr);
            Debug::SignalContext(SIGUSR2);
            ASSERT_NE(ThreadInfo::getMyself(), nullptr);
            EXPECT_EQ(filesIn(memory.path("agentContext")), std::set<std::string>{myContextFile()});
            EXPECT_TRUE(isWholeContext(memory.path("agentContext/" + myContextFile())));
        }).join();
    });
}

TEST(DebugSignalContext, HasNoProcessNameWithoutACommandLine) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        framework::ApplicationArguments::m_singleton = nullptr;
        install(SIGUSR2, Debug::SignalContext);
        ThreadInfo::MyThreadInfo();
        Debug::SignalThreads(SIGUSR1);
        EXPECT_TRUE(isWholeContext(memory.path("Context/" + myContextFile())));
    });
}

TEST(DebugSignalContext, HasNoProcessNameWithAnEmptyCommandLine) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        char* noWords[] = {nullptr};
        const framework::ApplicationArguments arguments(0, noWords);
        install(SIGUSR2, Debug::SignalContext);
        ThreadInfo::MyThreadInfo();
        Debug::SignalThreads(SIGUSR1);
        EXPECT_TRUE(isWholeContext(memory.path("Context/" + myContextFile())));
    });
}

TEST(DebugSignalContext, LiesInTheRootDirectoryWithoutVxMem) {
    const test::TemporaryDirectory root;
    const test::ChildResult probe = test::runInChild([&] { return chroot(root.path().c_str()) == 0 ? 0 : 1; });
    if (probe.status != 0)
        GTEST_SKIP() << "this user may not have another root directory (chroot)";
    inChild([&] {
        ASSERT_EQ(chroot(root.path().c_str()), 0);
        ASSERT_EQ(chdir("/"), 0);
        unsetenv("VX_MEM");
        const ProcessName name("agent");
        install(SIGUSR2, Debug::SignalContext);
        ThreadInfo::MyThreadInfo();
        Debug::SignalThreads(SIGUSR1);
        EXPECT_TRUE(isWholeContext("/agentContext/" + myContextFile()));
    });
    EXPECT_EQ(filesIn(root.path()), std::set<std::string>{"agentContext"});
}

TEST(DebugSignalContext, LiesInTheRootDirectoryWithAnEmptyVxMem) {
    const test::TemporaryDirectory root;
    const test::ChildResult probe = test::runInChild([&] { return chroot(root.path().c_str()) == 0 ? 0 : 1; });
    if (probe.status != 0)
        GTEST_SKIP() << "this user may not have another root directory (chroot)";
    inChild([&] {
        ASSERT_EQ(chroot(root.path().c_str()), 0);
        ASSERT_EQ(chdir("/"), 0);
        setenv("VX_MEM", "", 1);
        const ProcessName name("agent");
        install(SIGUSR2, Debug::SignalContext);
        ThreadInfo::MyThreadInfo();
        Debug::SignalThreads(SIGUSR1);
        EXPECT_TRUE(isWholeContext("/agentContext/" + myContextFile()));
    });
}

TEST(DebugSignalContext, NameOf127CharactersFitsAndALongerOneMakesNoFile) {
    for (const std::size_t length :
         {std::size_t{126}, std::size_t{127}, std::size_t{128}, std::size_t{129}, std::size_t{150}, std::size_t{300}}) {
        SCOPED_TRACE(length);
        const test::TemporaryDirectory memory;
        inChild([&] {
            const ProcessName name("agent");
            ThreadInfo::MyThreadInfo()->setThreadName("t");
            const std::string tail = "/agentContext/" + myContextFile();
            const std::string start = memory.path() + "/";
            ASSERT_LT(start.size() + tail.size(), length);
            std::string filler(length - start.size() - tail.size(), 'd');
            if (filler.size() > 200)
                filler[100] = '/';
            const std::string directory = start + filler;
            std::filesystem::create_directories(directory + "/agentContext");
            ASSERT_EQ((directory + tail).size(), length);
            setenv("VX_MEM", directory.c_str(), 1);
            Debug::SignalContext(SIGUSR2);
            EXPECT_EQ(isWholeContext(directory + tail), length <= 127);
            for (const auto& entry : std::filesystem::recursive_directory_iterator(memory.path()))
                EXPECT_TRUE(!entry.is_regular_file() || length <= 127) << entry.path();
            expectContextStillWorks();
        });
    }
}

TEST(DebugSignalContext, LogsNothingIfItsDirectoryIsMissing) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        const test::LogCapture log;
        Debug::SignalContext(SIGUSR2);
        EXPECT_EQ(log.count(), 0u);
        EXPECT_TRUE(std::filesystem::is_empty(memory.path()));
    });
}

TEST(DebugSignalContext, LeavesNoLockHeldWhenTheFileCannotBeOpened) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directories(memory.path("agentContext/" + myContextFile()));
        Debug::SignalContext(SIGUSR2);
        EXPECT_TRUE(std::filesystem::is_directory(memory.path("agentContext/" + myContextFile())));
        expectContextStillWorks();
    });
}

TEST(DebugSignalContext, LeavesNoLockHeldWhenTheFileCannotBeWritten) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        rlimit size = {};
        ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &size), 0);
        const rlimit none = {0, size.rlim_max};
        signal(SIGXFSZ, SIG_IGN);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
        Debug::SignalContext(SIGUSR2);
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &size), 0);
        EXPECT_EQ(filesIn(memory.path("agentContext")), std::set<std::string>{myContextFile()});
        EXPECT_EQ(memory.read("agentContext/" + myContextFile()), "");
        expectContextStillWorks();
    });
}

// The parts of a back trace that do not depend on where in its caller it was taken.
std::vector<std::string> framesFrom(const Trace& trace, std::size_t first) {
    std::vector<std::string> frames;
    for (std::size_t i = first; i < trace.frames.size(); ++i)
        frames.push_back(std::to_string(trace.frames[i].index) + " " + trace.frames[i].object + " " +
                         trace.frames[i].base + " " + trace.frames[i].name + " " + trace.frames[i].address);
    return frames;
}

// Writes a context and then, from the same function, the back trace that has a frame less.
__attribute__((noinline)) void writeContextAndTrace(const std::string& traceFile) {
    Debug::SignalContext(SIGUSR2);
    utility::FileOutputStream file(traceFile.c_str(), false, 0600);
    Debug::ThreadErrorContext(nullptr, file);
}

TEST(DebugSignalContext, StartsWithItsOwnFrameAndGoesOnWithItsCallers) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        writeContextAndTrace(memory.path("trace"));
        const std::string content = memory.read("agentContext/" + myContextFile());
        const Trace context = parse(content, 2);
        ASSERT_TRUE(context.isWhole) << content;
        ASSERT_GT(context.frames.size(), ownFrame + 2);
        EXPECT_EQ(context.frames[ownFrame].name, "utility::Debug::SignalContext(int)") << content;
        EXPECT_EQ(context.frames[ownFrame].index, 2 + ownFrame);
        EXPECT_NE(context.frames[ownFrame].object.find("libVXut.so"), std::string::npos);
        // The other trace lacks the handler's frame, so its numbers are lower by one.
        Trace direct = parse(memory.read("trace"), 2);
        ASSERT_TRUE(direct.isWhole);
        for (Frame& frame : direct.frames)
            ++frame.index;
        EXPECT_EQ(framesFrom(context, ownFrame + 2), framesFrom(direct, ownFrame + 1)) << content;
    });
}

int bytesIn(const test::Descriptor& fifo) {
    int count = -1;
    EXPECT_EQ(ioctl(fifo.number(), FIONREAD, &count), 0);
    return count;
}

TEST(DebugSignalContext, MeetsAThreadInsideDlopen) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer delivers no signal inside dlopen";
#endif
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        install(SIGUSR2, writeContextAndCount, SA_RESTART);
        const std::string object = memory.path("object.so");
        ASSERT_EQ(mkfifo(object.c_str(), 0600), 0);
        test::Descriptor fifo(open(object.c_str(), O_RDWR));

        std::atomic<bool> isReady{false};
        std::atomic<bool> stop{false};
        std::thread other([&] {
            ThreadInfo::MyThreadInfo();
            isReady = true;
            while (!stop)
                std::this_thread::yield();
        });
        while (!isReady)
            std::this_thread::yield();

        // The loader waits for the rest of the object while it holds its lock; no thread can be created until then.
        std::thread loading([&] {
            ThreadInfo::MyThreadInfo();
            EXPECT_EQ(dlopen(object.c_str(), RTLD_NOW), nullptr);
        });
        ASSERT_EQ(write(fifo.number(), "\177", 1), 1);
        EXPECT_TRUE(waitFor([&] { return bytesIn(fifo) == 0; }));

        // Neither a thread whose back trace looks up symbols nor the loading one waits for the loader.
        pthread_kill(other.native_handle(), SIGUSR2);
        EXPECT_TRUE(waitFor([] { return contextsDone == 1; })) << "the thread waits for the loader";
        pthread_kill(loading.native_handle(), SIGUSR2);
        EXPECT_TRUE(waitFor([] { return contextsDone == 2; })) << "the loading thread waits";
        // Threads that wait for each other could not be joined.
        if (testing::Test::HasFailure())
            _exit(1);
        fifo.close();
        loading.join();
        stop = true;
        other.join();
        EXPECT_EQ(contextsDone, 2);
        const std::set<std::string> files = filesIn(memory.path("agentContext"));
        EXPECT_EQ(files.size(), 2u);
        for (const std::string& file : files)
            EXPECT_TRUE(isWholeContext(memory.path("agentContext/" + file))) << memory.read("agentContext/" + file);
    });
}

TEST(DebugSignalContext, MeetsItselfInItsOwnThread) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        install(SIGUSR2, writeContextAndCount, SA_RESTART);
        std::atomic<bool> isReady{false};
        std::atomic<bool> stop{false};
        std::thread writing([&] {
            ThreadInfo::MyThreadInfo();
            waitOnce();
            isReady = true;
            while (!stop)
                Debug::SignalContext(SIGUSR2);
        });
        while (!isReady)
            std::this_thread::yield();
        for (int round = 1; round <= 100 && !testing::Test::HasFailure(); ++round) {
            pthread_kill(writing.native_handle(), SIGUSR2);
            EXPECT_TRUE(waitFor([&] { return contextsDone == round; })) << "in round " << round;
        }
        // A thread that waits for itself could not be joined.
        if (testing::Test::HasFailure())
            _exit(1);
        stop = true;
        writing.join();
        for (const std::string& file : filesIn(memory.path("agentContext")))
            EXPECT_TRUE(isWholeContext(memory.path("agentContext/" + file))) << memory.read("agentContext/" + file);
    });
}

TEST(DebugSignalContext, WorksInAChildForkedWhileAnotherThreadHeldTheLock) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        const auto* const locker =
            static_cast<const utility::Locker*>(dlsym(RTLD_DEFAULT, "_ZN7utility5Debug8m_lockerE"));
        ASSERT_NE(locker, nullptr);
        std::atomic<bool> isHeld{false};
        std::atomic<bool> stop{false};
        std::thread holder([&] {
            locker->lock();
            isHeld = true;
            while (!stop)
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            locker->unlock();
        });
        while (!isHeld)
            std::this_thread::yield();
        const test::ChildResult child = test::runInChild([&] {
            alarm(hangBound);
            Debug::SignalContext(SIGUSR2);
            return isWholeContext(memory.path("agentContext/" + myContextFile())) ? 0 : 1;
        });
        EXPECT_EQ(child.signal, 0) << "the child hung";
        EXPECT_EQ(child.status, 0) << child.err;
        // The lock of this process is still held.
        EXPECT_FALSE(locker->trylock());
        stop = true;
        holder.join();
        expectContextStillWorks();
    });
}

// --- what else may have the name of a context file

// Has a context written where `path` is something else than a context file; expects one line and nothing more.
void expectLeftAlone(const std::string& memory, const std::string& path) {
    setenv("VX_MEM", memory.c_str(), 1);
    const test::LogCapture log;
    Debug::SignalContext(SIGUSR2);
    EXPECT_EQ(log.count(), 1u);
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR,
                             "no context written: " + path + " is not a regular file with one link, remove it"));
    expectContextStillWorks();
}

// Makes something at the path it is given, and says whether that is as it was made.
struct Obstacle {
    const char* name;
    std::function<void(const test::TemporaryDirectory&, const std::string&)> make;
    std::function<bool(const test::TemporaryDirectory&, const std::string&)> isUntouched;
};

std::ostream& operator<<(std::ostream& out, const Obstacle& obstacle) {
    return out << obstacle.name;
}

void makeSocket(const std::string& path) {
    const test::Descriptor file(socket(AF_UNIX, SOCK_STREAM, 0));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    ASSERT_EQ(bind(file.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
}

const Obstacle obstacles[] = {
    {"LinkToAFile",
     [](const test::TemporaryDirectory& memory, const std::string& path) {
         std::filesystem::create_symlink(memory.write("target", "content"), path);
     },
     [](const test::TemporaryDirectory& memory, const std::string& path) {
         return std::filesystem::is_symlink(path) && memory.read("target") == "content";
     }},
    {"LinkToNothing",
     [](const test::TemporaryDirectory& memory, const std::string& path) {
         std::filesystem::create_symlink(memory.path("target"), path);
     },
     [](const test::TemporaryDirectory& memory, const std::string& path) {
         return std::filesystem::is_symlink(path) && !memory.exists("target");
     }},
    {"FileWithTwoLinks",
     [](const test::TemporaryDirectory& memory, const std::string& path) {
         std::filesystem::create_hard_link(memory.write("target", "content"), path);
     },
     [](const test::TemporaryDirectory& memory, const std::string& path) {
         return std::filesystem::hard_link_count(path) == 2 && memory.read("target") == "content";
     }},
    {"Fifo", [](const test::TemporaryDirectory&, const std::string& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); },
     [](const test::TemporaryDirectory&, const std::string& path) {
         return std::filesystem::is_fifo(path);
     }},
    {"Directory",
     [](const test::TemporaryDirectory&, const std::string& path) { std::filesystem::create_directory(path); },
     [](const test::TemporaryDirectory&, const std::string& path) {
         return std::filesystem::is_empty(path);
     }},
    {"Socket", [](const test::TemporaryDirectory&, const std::string& path) { makeSocket(path); },
     [](const test::TemporaryDirectory&, const std::string& path) {
         return std::filesystem::is_socket(path);
     }},
};

class DebugContextObstacle : public testing::TestWithParam<Obstacle> {};

TEST_P(DebugContextObstacle, IsLeftAloneWithOneLine) {
    const Obstacle& obstacle = GetParam();
    const test::TemporaryDirectory memory;
    inChild([&] {
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        const std::string path = memory.path("agentContext/" + myContextFile());
        obstacle.make(memory, path);
        ASSERT_TRUE(obstacle.isUntouched(memory, path));
        expectLeftAlone(memory.path(), path);
        EXPECT_TRUE(obstacle.isUntouched(memory, path));
    });
}

INSTANTIATE_TEST_SUITE_P(Kinds, DebugContextObstacle, testing::ValuesIn(obstacles),
                         [](const auto& obstacle) { return std::string(obstacle.param.name); });

TEST(DebugSignalContext, DoesNotOpenAFifoThatHasAReader) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        const std::string path = memory.path("agentContext/" + myContextFile());
        ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
        const test::Descriptor reader(open(path.c_str(), O_RDONLY | O_NONBLOCK));
        expectLeftAlone(memory.path(), path);
        // A writer that came and went would show as a hang-up.
        pollfd end = {reader.number(), POLLIN, 0};
        EXPECT_EQ(poll(&end, 1, 0), 0);
    });
}

TEST(DebugSignalContext, LeavesNoDescriptorOpen) {
    const test::TemporaryDirectory memory;
    inChild([&] {
        setenv("VX_MEM", memory.path().c_str(), 1);
        const ProcessName name("agent");
        std::filesystem::create_directory(memory.path("agentContext"));
        const int before = dup(STDERR_FILENO);
        close(before);
        for (int i = 0; i < 10; ++i)
            Debug::SignalContext(SIGUSR2);
        const int after = dup(STDERR_FILENO);
        EXPECT_EQ(after, before);
        close(after);
    });
}

TEST(DebugThreadErrorContext, WritesTheBackTraceToTheFile) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.path("context");
    for (ThreadInfo* thread : {ThreadInfo::MyThreadInfo(), static_cast<ThreadInfo*>(nullptr)}) {
        utility::FileOutputStream file(path.c_str(), false, 0600);
        Debug::ThreadErrorContext(thread, file);
        EXPECT_FALSE(file.isOutputStreamInError());
        const Trace trace = parse(directory.read("context"), 2);
        EXPECT_TRUE(trace.isWhole) << directory.read("context");
        EXPECT_FALSE(trace.frames.empty());
    }
}

TEST(DebugThreadErrorContext, AddsToWhatTheFileHolds) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.path("context");
    {
        utility::FileOutputStream file(path.c_str(), false, 0600);
        file.SendOutputStream("head\n", 5);
        Debug::ThreadErrorContext(ThreadInfo::MyThreadInfo(), file);
    }
    const std::string content = directory.read("context");
    EXPECT_EQ(content.substr(0, 5), "head\n");
    EXPECT_TRUE(parse(content.substr(5), 2).isWhole) << content;
}

TEST(DebugThreadErrorContext, FileThatTakesNothingIsInErrorAfterwards) {
    utility::FileOutputStream full("/dev/full", false, 0600);
    Debug::ThreadErrorContext(ThreadInfo::MyThreadInfo(), full);
    EXPECT_TRUE(full.isOutputStreamInError());
    EXPECT_EQ(full.errorNumber(), ENOSPC);
    utility::FileOutputStream missing("/nonexistent/context", false, 0600);
    Debug::ThreadErrorContext(ThreadInfo::MyThreadInfo(), missing);
    EXPECT_TRUE(missing.isOutputStreamInError());
}

TEST(DebugErrorContext, LogsTheBackTraceOfItsCaller) {
    const test::LogCapture log;
    Debug::ErrorContext();
    const std::vector<test::LogEntry> entries = log.entries();
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_EQ(entries[0].type, Logger::LOG_ERROR);
    EXPECT_EQ(entries[0].text, "ErrorContext - for diagnostic purposes.");
    EXPECT_EQ(entries[1].type, Logger::LOG_ERROR);
    EXPECT_EQ(entries[1].function, "");
    const Trace trace = parse(entries[1].text, 2);
    EXPECT_TRUE(trace.isWhole) << entries[1].text;
    ASSERT_GT(trace.frames.size(), ownFrame);
    Dl_info mine = {};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&writeToInvalidAddress), &mine), 0);
    EXPECT_EQ(trace.frames[ownFrame].object, mine.dli_fname);
}

TEST(DebugErrorContext, MakesTheRecordOfTheThread) {
    const test::LogCapture log;
    std::thread([] {
        EXPECT_EQ(ThreadInfo::getMyself(), nullptr);
        Debug::ErrorContext();
        EXPECT_NE(ThreadInfo::getMyself(), nullptr);
    }).join();
    EXPECT_EQ(log.count(), 2u);
}

// --- back traces

std::string backTrace(unsigned int depth, unsigned int skip, bool flag = true) {
    std::vector<char> text(65535);
    BufferStream out(text.data(), static_cast<int>(text.size()), false);
    Debug::BackTrace(&out, depth, skip, flag);
    return text.data();
}

__attribute__((noinline)) std::string deepBackTrace(int levels, unsigned int depth, unsigned int skip) {
    if (levels == 0)
        return backTrace(depth, skip);
    const std::string text = deepBackTrace(levels - 1, depth, skip);
    return text.empty() ? "none" : text;
}

std::string hexOf(const void* address) {
    char text[32];
    std::snprintf(text, sizeof text, "%p", address);
    return text;
}

// The expected text of a frame at `address`, from the platform's own texts.
std::string expectedFrame(unsigned int index, void* address) {
    char text[4096];
    Dl_info info = {};
    if (dladdr(address, &info) == 0) {
        std::snprintf(text, sizeof text, "(%u) [%-10p]\n", index, address);
        return text;
    }
    char** symbols = backtrace_symbols(&address, 1);
    std::string symbol = symbols[0];
    std::free(symbols);
    const std::size_t open = symbol.find('(');
    const std::size_t plus = symbol.find('+', open);
    const std::string mangled = symbol.substr(open + 1, plus - open - 1);
    const long offset = std::strtol(symbol.c_str() + plus + 1, nullptr, 0);
    int status = -1;
    char* demangled = abi::__cxa_demangle(mangled.c_str(), nullptr, nullptr, &status);
    std::snprintf(text, sizeof text, "(%u) %s: @%p\n    %s+0x%lX [%p]\n", index, info.dli_fname, info.dli_fbase,
                  status == 0 ? demangled : mangled.c_str(), static_cast<unsigned long>(offset), address);
    std::free(demangled);
    return text;
}

std::string expectedTrace(const Trace& trace) {
    std::string text = "Backtrace of " + std::to_string(trace.frames.size()) + " stack frames\nBacktrace Start>>>\n";
    for (const Frame& frame : trace.frames)
        text += expectedFrame(frame.index, reinterpret_cast<void*>(std::stoul(frame.address, nullptr, 16)));
    return text + "<<<Backtrace End\n";
}

TEST(DebugBackTrace, ShowsWhatThePlatformKnowsOfEachFrame) {
    for (const unsigned int skip : {0u, 1u, 2u, 3u}) {
        const std::string text = backTrace(40, skip);
        const Trace trace = parse(text, skip);
        EXPECT_TRUE(trace.isWhole) << text;
        ASSERT_GT(trace.frames.size(), 2u) << text;
        EXPECT_EQ(text, expectedTrace(trace));
    }
}

TEST(DebugBackTrace, StartsWithItself) {
    const std::string text = backTrace(40, 0);
    const Trace trace = parse(text, 0);
    ASSERT_TRUE(trace.isWhole) << text;
    ASSERT_GT(trace.frames.size(), 2u);
    EXPECT_EQ(trace.frames[ownFrame].name,
              "utility::Debug::BackTrace(utility::BufferStream*, unsigned int, unsigned int, bool)");
    EXPECT_NE(trace.frames[ownFrame].object.find("libVXut.so"), std::string::npos);
    Dl_info mine = {};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&writeToInvalidAddress), &mine), 0);
    EXPECT_EQ(trace.frames[ownFrame + 1].object, mine.dli_fname);
    EXPECT_EQ(trace.frames[ownFrame + 1].base, hexOf(mine.dli_fbase));
}

TEST(DebugBackTrace, HasNoMoreThan40Frames) {
    for (const unsigned int depth : {40u, 41u, 100u, 0x80000000u, UINT_MAX}) {
        const std::string text = deepBackTrace(60, depth, 0);
        const Trace trace = parse(text, 0);
        EXPECT_TRUE(trace.isWhole) << text;
        EXPECT_EQ(trace.frames.size(), 40u) << depth;
        EXPECT_EQ(trace.announced, 40u) << depth;
    }
    const Trace skipping = parse(deepBackTrace(60, 100, 5), 5);
    EXPECT_TRUE(skipping.isWhole);
    EXPECT_EQ(skipping.announced, 35u);
}

TEST(DebugBackTrace, HasNoMoreFramesThanItsDepth) {
    for (const unsigned int depth : {1u, 2u, 5u, 39u}) {
        const Trace trace = parse(deepBackTrace(60, depth, 0), 0);
        EXPECT_TRUE(trace.isWhole);
        EXPECT_EQ(trace.frames.size(), depth);
    }
    const Trace skipping = parse(deepBackTrace(60, 5, 3), 3);
    EXPECT_TRUE(skipping.isWhole);
    EXPECT_EQ(skipping.frames.size(), 2u);
}

TEST(DebugBackTrace, OfNoDepthHasNoFrames) {
    for (const unsigned int skip : {0u, 1u, 2u, UINT_MAX})
        EXPECT_EQ(backTrace(0, skip), "Backtrace of 0 stack frames\nBacktrace Start>>>\n<<<Backtrace End\n") << skip;
}

TEST(DebugBackTrace, SkippingAllFramesOrMoreShowsNone) {
    for (const unsigned int skip : {40u, 41u, 42u, 1000u, 0x7FFFFFFFu, 0x80000000u, UINT_MAX})
        EXPECT_EQ(deepBackTrace(60, 40, skip), "Backtrace of 0 stack frames\nBacktrace Start>>>\n<<<Backtrace End\n")
            << skip;
    EXPECT_EQ(deepBackTrace(60, 7, 7), "Backtrace of 0 stack frames\nBacktrace Start>>>\n<<<Backtrace End\n");
    const Trace last = parse(deepBackTrace(60, 40, 39), 39);
    EXPECT_TRUE(last.isWhole);
    EXPECT_EQ(last.frames.size(), 1u);
}

TEST(DebugBackTrace, LastArgumentHasNoEffect) {
    std::string texts[2];
    for (const bool flag : {false, true})
        texts[flag] = backTrace(40, 0, flag);
    EXPECT_EQ(texts[0], texts[1]);
}

TEST(DebugBackTrace, WithoutAStreamDoesNothing) {
    const test::LogCapture log;
    Debug::BackTrace(nullptr, 40, 0, true);
    EXPECT_EQ(log.count(), 0u);
}

TEST(DebugBackTrace, GoesBehindWhatTheStreamHolds) {
    std::vector<char> text(65535);
    BufferStream out(text.data(), static_cast<int>(text.size()), false);
    out.PutS("before ");
    Debug::BackTrace(&out, 0, 0, true);
    EXPECT_STREQ(text.data(), "before Backtrace of 0 stack frames\nBacktrace Start>>>\n<<<Backtrace End\n");
}

TEST(DebugBackTrace, ThatDoesNotFitFailsAsTheStreamDoes) {
    for (const int size : {1, 10, 60, 100, 300}) {
        std::vector<char> text(static_cast<std::size_t>(size));
        BufferStream throwing(text.data(), size, false);
        const std::unique_ptr<framework::Exception> failure = CATCH_FAILURE(Debug::BackTrace(&throwing, 40, 0, true));
        ASSERT_NE(failure, nullptr) << size;
        EXPECT_EQ(failure->code(), 1239u);
    }
}

TEST(DebugBackTrace, ThatDoesNotFitAQuietStreamIsCut) {
    const test::LogCapture log;
    test::GuardedText text(100);
    BufferStream quiet(text.array(), static_cast<int>(text.size()), true);
    Debug::BackTrace(&quiet, 40, 0, true);
    EXPECT_TRUE(text.isTerminated());
    EXPECT_TRUE(text.isGuardWhole());
    EXPECT_EQ(text.text().substr(0, 13), "Backtrace of ");
}

TEST(DebugBackTrace, FramesWithoutSymbolTextShowTheirAddress) {
    std::vector<char> text(65535);
    BufferStream out(text.data(), static_cast<int>(text.size()), true);
    test::allocatorState = test::REFUSE;
    Debug::BackTrace(&out, 40, 1, true);
    test::allocatorState = test::ALLOCATE;
    const Trace trace = parse(text.data(), 1);
    EXPECT_TRUE(trace.isWhole) << text.data();
    ASSERT_FALSE(trace.frames.empty());
    for (const Frame& frame : trace.frames) {
        if (frame.hasSymbol)
            continue;
        char expected[64];
        std::snprintf(expected, sizeof expected, "\n(%u) [%-10p]\n", frame.index,
                      reinterpret_cast<void*>(std::stoul(frame.address, nullptr, 16)));
        EXPECT_NE(std::strstr(text.data(), expected), nullptr) << expected << text.data();
    }
}

// A function of many parameters with a name of `length` characters: its mangled and its demangled name.
struct LongName {
    explicit LongName(int length) {
        // fff...(aaa..., aaa..., ...)
        const std::string function(static_cast<std::size_t>(length), 'f');
        const std::string type(98, 'a');
        mangled = "_Z" + std::to_string(length) + function + "98" + type;
        demangled = function + "(" + type;
        for (int i = 1; i < 15; ++i) {
            mangled += "S_";
            demangled += ", " + type;
        }
        demangled += ")";
    }

    std::string mangled;
    std::string demangled;
};

} // namespace

#if defined(__x86_64__)
namespace {

// The back trace of a call through a function without unwind tables that is put at `place`, a page of its own; its
// frame has the address of `place` plus 6.
std::string backTraceThrough(void* place) {
    // sub rsp, 8; call rdi; add rsp, 8; ret
    const unsigned char code[] = {0x48, 0x83, 0xEC, 0x08, 0xFF, 0xD7, 0x48, 0x83, 0xC4, 0x08, 0xC3};
    void* page = reinterpret_cast<void*>(reinterpret_cast<std::uintptr_t>(place) & ~std::uintptr_t{4095});
    static std::string text;
    text.clear();
    std::memcpy(place, code, sizeof code);
    EXPECT_EQ(mprotect(page, 4096, PROT_READ | PROT_EXEC), 0);
    reinterpret_cast<void (*)(void (*)())>(place)([] { text = backTrace(40, 0); });
    EXPECT_EQ(mprotect(page, 4096, PROT_READ | PROT_WRITE), 0);
    return text;
}

Frame frameAt(const Trace& trace, const std::string& address) {
    const auto found = std::find_if(trace.frames.begin(), trace.frames.end(),
                                    [&](const Frame& frame) { return frame.address == address; });
    return found != trace.frames.end() ? *found : Frame();
}

TEST(DebugBackTrace, FrameOfAnUnknownObjectIsWrittenAsOneWithoutSymbolText) {
    void* page = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(page, MAP_FAILED);
    const std::string text = backTraceThrough(page);
    const Trace trace = parse(text, 0);
    EXPECT_TRUE(trace.isWhole) << text;
    const std::string address = hexOf(static_cast<char*>(page) + 6);
    const Frame frame = frameAt(trace, address);
    ASSERT_EQ(frame.address, address) << text;
    EXPECT_FALSE(frame.hasSymbol);
    EXPECT_EQ(text, expectedTrace(trace));
    munmap(page, 4096);
}

TEST(DebugBackTrace, FrameShowsANameOfAnyLengthAsAProgrammerWroteIt) {
    for (const int length : {1, 600, 800}) {
        const LongName name(length);
        const test::SymbolObject object(name.mangled);
        const std::string text = backTraceThrough(object.address());
        const Trace trace = parse(text, 0);
        EXPECT_TRUE(trace.isWhole) << text;
        const std::string address = hexOf(static_cast<char*>(object.address()) + 6);
        const Frame frame = frameAt(trace, address);
        ASSERT_EQ(frame.address, address) << text;
        EXPECT_EQ(frame.name, name.demangled);
        EXPECT_EQ(frame.offset, "6");
        EXPECT_EQ(frame.object, object.path());
    }
}

} // namespace

#endif

// --- symbols

namespace {

char* functionOfTheLibrary() {
    return reinterpret_cast<char*>(&Debug::signalName);
}

Dl_info infoOf(void* address) {
    Dl_info info = {};
    EXPECT_NE(dladdr(address, &info), 0);
    return info;
}

TEST(DebugSymbol, OfAFunctionOfTheLibraryIsDemangled) {
    const std::string object = infoOf(functionOfTheLibrary()).dli_fname;
    EXPECT_NE(object.find("libVXut.so"), std::string::npos);
    for (const int distance : {0, 1, 4}) {
        EXPECT_EQ(symbolName(functionOfTheLibrary() + distance), "utility::Debug::signalName(int)");
        EXPECT_EQ(symbolPath(functionOfTheLibrary() + distance),
                  "[" + object + "] utility::Debug::signalName(int)+" + std::to_string(distance));
    }
}

TEST(DebugSymbol, OfAPlainFunctionIsItsRawName) {
    char* address = static_cast<char*>(dlsym(RTLD_DEFAULT, "md5_append"));
    ASSERT_NE(address, nullptr);
    EXPECT_EQ(symbolName(address), "md5_append");
    EXPECT_EQ(symbolPath(address + 2), "[" + std::string(infoOf(address).dli_fname) + "] md5_append+2");
}

TEST(DebugSymbol, OfAFunctionOfThePlatform) {
    char* address = static_cast<char*>(dlsym(RTLD_DEFAULT, "qsort"));
    ASSERT_NE(address, nullptr);
    const Dl_info info = infoOf(address);
    ASSERT_NE(info.dli_sname, nullptr);
    EXPECT_EQ(symbolName(address), info.dli_sname);
    EXPECT_EQ(symbolPath(address), "[" + std::string(info.dli_fname) + "] " + info.dli_sname + "+0");
}

TEST(DebugSymbol, OfAFunctionWithoutASymbolIsTwoDashes) {
    void* address = reinterpret_cast<void*>(&writeToInvalidAddress);
    const Dl_info info = infoOf(address);
    ASSERT_EQ(info.dli_sname, nullptr);
    EXPECT_EQ(symbolName(address), "--");
    const std::string start = "[" + std::string(info.dli_fname) + "] --+";
    EXPECT_EQ(symbolPath(address).substr(0, start.size()), start);
}

TEST(DebugSymbol, OfAnUnknownAddressIsEmpty) {
    int local = 0;
    for (void* address : {static_cast<void*>(&local), static_cast<void*>(nullptr), reinterpret_cast<void*>(1),
                          reinterpret_cast<void*>(~std::uintptr_t{0})}) {
        EXPECT_EQ(symbolPath(address), "");
        EXPECT_EQ(symbolName(address), "");
    }
}

TEST(DebugSymbol, IsCutQuietlyToTheRoom) {
    const std::string path = symbolPath(functionOfTheLibrary());
    const std::string name = symbolName(functionOfTheLibrary());
    const test::LogCapture log;
    for (unsigned int size = 1; size <= path.size() + 3; ++size) {
        SCOPED_TRACE(size);
        test::GuardedText pathText(size);
        Debug::SymbolPath(functionOfTheLibrary(), pathText.array(), size);
        EXPECT_TRUE(pathText.isTerminated());
        EXPECT_TRUE(pathText.isGuardWhole());
        EXPECT_EQ(pathText.text(), path.substr(0, pathText.text().size()));
        EXPECT_GE(pathText.text().size() + 2, std::min<std::size_t>(size, path.size() + 2));

        test::GuardedText nameText(size);
        Debug::SymbolName(functionOfTheLibrary(), nameText.array(), size);
        EXPECT_TRUE(nameText.isTerminated());
        EXPECT_TRUE(nameText.isGuardWhole());
        EXPECT_EQ(nameText.text(), name.substr(0, nameText.text().size()));
        EXPECT_GE(nameText.text().size() + 2, std::min<std::size_t>(size, name.size() + 2));
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST(DebugSymbol, WritesNothingWithoutRoom) {
    test::GuardedText text(16);
    Debug::SymbolPath(functionOfTheLibrary(), text.array(), 0);
    Debug::SymbolName(functionOfTheLibrary(), text.array(), 0);
    EXPECT_TRUE(text.isUntouched());
    EXPECT_TRUE(text.isGuardWhole());
    Debug::SymbolPath(functionOfTheLibrary(), nullptr, 0);
    Debug::SymbolName(functionOfTheLibrary(), nullptr, 0);
    Debug::SymbolPath(functionOfTheLibrary(), nullptr, 16);
    Debug::SymbolName(functionOfTheLibrary(), nullptr, 16);
}

TEST(DebugSymbol, RoomOfAnySizeIsNotWrittenBeyond) {
    test::GuardedText text(4096);
    Debug::SymbolPath(functionOfTheLibrary(), text.array(), UINT_MAX);
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(DebugSymbol, OfTheMainProgramItself) {
    void* address = reinterpret_cast<void*>(&std::malloc);
    const Dl_info info = infoOf(address);
    ASSERT_NE(info.dli_sname, nullptr);
    EXPECT_EQ(symbolName(address), info.dli_sname);
}

TEST(DebugSymbol, WhoseDemangledNameFillsTheRoomOrDoesNotFit) {
    for (const int length : {1, 500, 538, 539, 540, 541, 542, 543, 544, 545, 546, 547, 548, 600, 900}) {
        SCOPED_TRACE(length);
        const LongName function(length);
        const test::SymbolObject object(function.mangled);
        const std::string name = symbolName(object.address());
        EXPECT_EQ(name, function.demangled.size() < 2048 ? function.demangled : function.mangled);
        EXPECT_EQ(symbolPath(static_cast<char*>(object.address()) + 3), "[" + object.path() + "] " + name + "+3");
    }
}

TEST(DebugSymbol, WithALongNameThatIsNotMangled) {
    for (const std::size_t length : {std::size_t{2047}, std::size_t{2048}, std::size_t{4000}, std::size_t{100000}}) {
        SCOPED_TRACE(length);
        const std::string symbol(length, 'X');
        const test::SymbolObject object(symbol);
        const std::string name = symbolName(object.address());
        EXPECT_GE(name.size(), 2047u);
        EXPECT_EQ(name, symbol.substr(0, name.size()));
    }
}

TEST(DebugSymbol, WithANameThatOnlyLooksMangled) {
    for (const char* symbol : {"_Z", "_ZN", "_Z3fooX", "_Z99foo", "%s%n", "plain name"}) {
        const test::SymbolObject object(symbol);
        EXPECT_EQ(symbolName(object.address()), symbol);
    }
    const test::SymbolObject object("_ZN3abc3defEiPKc");
    EXPECT_EQ(symbolName(object.address()), "abc::def(int, char const*)");
}

// --- core dumps

rlimit coreLimit() {
    rlimit limit = {};
    EXPECT_EQ(getrlimit(RLIMIT_CORE, &limit), 0);
    return limit;
}

// Runs `scenario` in a child with the soft core limit `soft` and this process's hard limit; no dump is written.
void inChildWithCoreLimit(rlim_t soft, const std::function<void()>& scenario) {
    std::fflush(nullptr);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        prctl(PR_SET_DUMPABLE, 0);
        alarm(hangBound);
        const testing::TestResult* const result = testing::UnitTest::GetInstance()->current_test_info()->result();
        const int before = result->total_part_count();
        const rlimit limit = {soft, coreLimit().rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_CORE, &limit), 0);
        scenario();
        std::fflush(nullptr);
        _exit(result->total_part_count() == before ? 0 : 1);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "the child's failures stand above";
}

// In a child: puts `text` in place of the system's pattern, for this process alone. False where that is not allowed.
bool replaceCorePattern(const test::TemporaryDirectory& directory, const std::string& text) {
    const std::string file = directory.write("pattern", text);
    return unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount(file.c_str(), "/proc/sys/kernel/core_pattern", nullptr, MS_BIND, nullptr) == 0;
}

bool mayReplaceCorePattern() {
    const test::TemporaryDirectory directory;
    return test::runInChild([&] { return replaceCorePattern(directory, "probe") ? 1 : 0; }).status == 1;
}

constexpr const char* noReplacing = "this user may not mount another core_pattern";
constexpr const char* noRaising = "this user has a limit on core dumps and may not raise it";

void expectCorePattern(const std::string& pattern, bool raises) {
    SCOPED_TRACE(pattern);
    const test::TemporaryDirectory directory;
    inChildWithCoreLimit(0, [&] {
        ASSERT_TRUE(replaceCorePattern(directory, pattern));
        ASSERT_EQ(contentOf("/proc/sys/kernel/core_pattern"), pattern);
        const rlimit before = coreLimit();
        const test::LogCapture log;
        Debug::MaybeEnableCoreDump();
        EXPECT_EQ(coreLimit().rlim_cur, raises ? RLIM_INFINITY : 0);
        EXPECT_EQ(coreLimit().rlim_max, raises ? RLIM_INFINITY : before.rlim_max);
        EXPECT_EQ(log.texts(),
                  raises ? std::vector<std::string>{"Enabling Core Dump...\n"} : std::vector<std::string>{});
        EXPECT_EQ(log.contains(Logger::LOG_NOTICE, "Enabling Core Dump...\n"), raises);
    });
}

TEST(DebugMaybeEnableCoreDump, FollowsThePatternOfTheMachine) {
    const std::vector<Line> expected = expectedCoreLines();
    const bool raises = expected.size() == 1;
    inChild([&] {
        const rlimit before = coreLimit();
        const test::LogCapture log;
        Debug::MaybeEnableCoreDump();
        std::vector<Line> lines;
        for (const test::LogEntry& entry : log.entries())
            lines.push_back({static_cast<int>(entry.type), entry.text});
        EXPECT_EQ(lines, expected);
        EXPECT_EQ(coreLimit().rlim_cur, raises ? RLIM_INFINITY : before.rlim_cur);
        EXPECT_EQ(coreLimit().rlim_max, raises ? RLIM_INFINITY : before.rlim_max);
    });
}

TEST(DebugMaybeEnableCoreDump, RaisesTheLimitsWhenThePatternIsAPath) {
    if (!mayReplaceCorePattern())
        GTEST_SKIP() << noReplacing;
    if (coreLimit().rlim_max != RLIM_INFINITY && !mayRaiseHardLimit())
        GTEST_SKIP() << noRaising;
    expectCorePattern("/var/cores/core.%p\n", true);
    expectCorePattern("/var/cores/core.%p", true);
    expectCorePattern("cores/core", true);
    expectCorePattern("/", true);
    expectCorePattern("core.%p/", true);
}

TEST(DebugMaybeEnableCoreDump, LeavesTheLimitsWhenThePatternIsNoPath) {
    if (!mayReplaceCorePattern())
        GTEST_SKIP() << noReplacing;
    expectCorePattern("core\n", false);
    expectCorePattern("core", false);
    expectCorePattern("", false);
    expectCorePattern("\n", false);
    expectCorePattern("|/usr/lib/handler %p %s\n", false);
    expectCorePattern("|handler", false);
    expectCorePattern("core\n/second/line\n", false);
}

TEST(DebugMaybeEnableCoreDump, ReadsTheFirst131CharactersOfThePattern) {
    if (!mayReplaceCorePattern())
        GTEST_SKIP() << noReplacing;
    if (coreLimit().rlim_max != RLIM_INFINITY && !mayRaiseHardLimit())
        GTEST_SKIP() << noRaising;
    expectCorePattern(std::string(130, 'c') + "/\n", true);
    expectCorePattern(std::string(131, 'c') + "/\n", false);
    expectCorePattern(std::string(1000, 'c') + "/\n", false);
}

TEST(DebugMaybeEnableCoreDump, ReportsALimitThatCannotBeRaised) {
    if (!mayReplaceCorePattern())
        GTEST_SKIP() << noReplacing;
    const test::TemporaryDirectory directory;
    ASSERT_EQ(chmod(directory.path().c_str(), 0755), 0);
    inChild([&] {
        ASSERT_TRUE(replaceCorePattern(directory, "/cores/core\n"));
        if (getuid() == 0) {
            ASSERT_EQ(setgid(65534), 0);
            ASSERT_EQ(setuid(65534), 0);
        }
        const test::LogCapture log;
        Debug::MaybeEnableCoreDump();
        const std::string failed = std::string("setrlimit: ") + std::strerror(EPERM) +
                                   "\nWarning: core dumps may be truncated or non-existent\n";
        EXPECT_EQ(log.texts(), (std::vector<std::string>{"Enabling Core Dump...\n", failed}));
        EXPECT_TRUE(log.contains(Logger::LOG_NOTICE, "Enabling Core Dump...\n"));
        EXPECT_TRUE(log.contains(Logger::LOG_ERROR, failed));
        EXPECT_EQ(coreLimit().rlim_max, 0u);
    });
}

} // namespace
