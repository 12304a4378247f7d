// What the library and the console do when a call of the platform fails, is short, or is interrupted.
//
//   faults_calls                             every failure of every call of every scenario, each in a process of its
//   own faults_calls SCENARIO                    those of one faults_calls SCENARIO CALL NTH ERRNO     one, with what
//   it gives; ERRNO 0 is a short transfer faults_calls table [SCENARIO]            what they give, as rows for
//   calls_expected.h
//
// A scenario prepares what it needs, runs one operation with its calls watched, and says what the caller can see:
// results, error states, logged lines, content of files. calls_expected.h has what it is to say. A call without an
// expectation is a finding, and so is an expectation that no call meets.

#include <cstdarg>
#include <set>
#include <sstream>

#include <dirent.h>
#include <poll.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>

#include "CallFaults.h"
#include "calls_expected.h"
#include "fw_ApplicationArguments.h"
#include "fw_Container.h"
#include "fw_Exception.h"
#include "fw_GenericServiceManager.h"
#include "fw_Logger.h"
#include "fw_PosixRWLock.h"
#include "fw_ThreadInfo.h"
#include "support/ChildProcess.h"
#include "support/ProtectedMachine.h"
#include "support/TemporaryDirectory.h"
#include "ut_BufferStream.h"
#include "ut_DateTime.h"
#include "ut_Debug.h"
#include "ut_DirIterator.h"
#include "ut_FileInputStream.h"
#include "ut_FileOutputStream.h"
#include "ut_Locker.h"
#include "ut_PWService.h"
#include "ut_Path.h"
#include "ut_Terminal.h"
#include "ut_TimeMeasure.h"
#include "ut_VirtualGetStream.h"
#include "ut_VirtualPutStream.h"
#include "ut_Waiter.h"

namespace {

using framework::Logger;
using test::Watch;
using utility::FileInputStream;
using utility::FileOutputStream;

constexpr int skipped = 77;
constexpr int ownFailure = 76;
constexpr std::chrono::seconds longest(60);

const test::TemporaryDirectory* directory = nullptr;
std::string said;

__attribute__((format(printf, 1, 2))) void say(const char* format, ...) {
    char text[8192];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    // Straight to the file: a scenario may end by a signal.
    const std::string piece = (said.empty() ? "" : " ") + std::string(text);
    said += piece;
    syscall(SYS_write, STDOUT_FILENO, piece.data(), piece.size());
}

// The name of an errno, where 0 is none.
const char* nameOf(int error) {
    return error == 0 ? "0" : strerrorname_np(error);
}

std::string path(const char* name) {
    return directory->path(name);
}

// Says the first line of what is logged at the levels 0 to 2, without the path of the directory.
void sayLogged(void*, Logger::LogType type, const char*, int, const char* text) {
    if (type > Logger::LOG_NOTICE)
        return;
    std::string line = text;
    line.erase(0, line.find_first_not_of("\r\n"));
    line.erase(std::min(line.size(), line.find_first_of("\r\n")));
    for (std::size_t at = 0; (at = line.find(directory->path())) != std::string::npos;)
        line.replace(at, directory->path().size(), "DIR");
    if (line.compare(0, 9, "Backtrace") == 0)
        line = "Backtrace";
    say("{%s}", line.c_str());
}

void sayState(FileOutputStream& out) {
    say("open=%d error=%d errno=%s", static_cast<int>(out.isOutputStreamOpen()),
        static_cast<int>(out.isOutputStreamInError()), nameOf(out.errorNumber()));
}

void sayState(FileInputStream& in) {
    say("open=%d error=%d errno=%s end=%d", static_cast<int>(in.isInputStreamOpen()),
        static_cast<int>(in.isInputStreamInError()), nameOf(in.errorNumber()),
        static_cast<int>(in.isInputStreamAtEnd()));
}

// Keeps the numbers 0 to 2 free while it lives.
class NoStandardStreams {
public:
    NoStandardStreams() {
        for (int fd = 0; fd < 3; ++fd) {
            m_kept[fd] = fcntl(fd, F_DUPFD_CLOEXEC, 100);
            close(fd);
        }
    }
    NoStandardStreams(const NoStandardStreams&) = delete;
    NoStandardStreams& operator=(const NoStandardStreams&) = delete;
    ~NoStandardStreams() {
        for (int fd = 0; fd < 3; ++fd) {
            m_isTaken = m_isTaken || fcntl(fd, F_GETFD) >= 0;
            dup2(m_kept[fd], fd);
            close(m_kept[fd]);
        }
        if (m_isTaken)
            say("a standard number is taken");
    }

private:
    int m_kept[3];
    bool m_isTaken = false;
};

// --- file streams

void outputOpen() {
    const std::string file = directory->write("file", "old");
    {
        std::unique_ptr<FileOutputStream> out;
        {
            const Watch watch;
            out = std::make_unique<FileOutputStream>(file.c_str(), false, 0600u);
        }
        sayState(*out);
        say("sent=%d", static_cast<int>(out->SendOutputStream("new", 3)));
    }
    say("content=%s", directory->read("file").c_str());
}

void outputOpenLow() {
    const std::string file = directory->write("file", "old");
    std::unique_ptr<FileOutputStream> out;
    {
        const NoStandardStreams none;
        const Watch watch;
        out = std::make_unique<FileOutputStream>(file.c_str(), true, 0600u);
    }
    sayState(*out);
    say("sent=%d", static_cast<int>(out->SendOutputStream("new", 3)));
    say("content=%s", directory->read("file").c_str());
}

void outputAdopt() {
    const int fd = open(directory->write("file", "old").c_str(), O_WRONLY);
    {
        std::unique_ptr<FileOutputStream> out;
        {
            const Watch watch;
            out = std::make_unique<FileOutputStream>(fd);
        }
        sayState(*out);
        say("sent=%d", static_cast<int>(out->SendOutputStream("new", 3)));
        say("content=%s", directory->read("file").c_str());
    }
    close(fd);
}

void outputSend() {
    FileOutputStream out(path("file").c_str(), false, 0600);
    bool first = false;
    bool second = false;
    {
        const Watch watch;
        first = out.SendOutputStream("abcd", 4);
        second = out.SendOutputStream("efgh", 4);
    }
    say("sent=%d,%d", static_cast<int>(first), static_cast<int>(second));
    sayState(out);
    say("content=%s", directory->read("file").c_str());
    say("third=%d", static_cast<int>(out.SendOutputStream("ijkl", 4)));
    say("content=%s", directory->read("file").c_str());
}

void outputStart() {
    FileOutputStream out(path("file").c_str(), false, 0600);
    out.SendOutputStream("abcd", 4);
    out.EndOutputStream();
    bool isStarted = false;
    {
        const Watch watch;
        isStarted = out.StartOutputStream();
    }
    say("started=%d end=%d", static_cast<int>(isStarted), static_cast<int>(out.isOutputStreamAtEnd()));
    sayState(out);
    say("sent=%d", static_cast<int>(out.SendOutputStream("ef", 2)));
    say("content=%s", directory->read("file").c_str());
}

void outputClose() {
    auto out = std::make_unique<FileOutputStream>(path("file").c_str(), false, 0600u);
    out->SendOutputStream("abcd", 4);
    {
        const Watch watch;
        out.reset();
    }
    say("content=%s", directory->read("file").c_str());
}

void inputOpen() {
    const std::string file = directory->write("file", "text");
    std::unique_ptr<FileInputStream> in;
    {
        const Watch watch;
        in = std::make_unique<FileInputStream>(file.c_str());
    }
    char text[5] = "";
    const int count = in->ReceiveInputStream(text, 4);
    say("received=%d %s", count, text);
    sayState(*in);
}

void inputOpenLow() {
    const std::string file = directory->write("file", "text");
    std::unique_ptr<FileInputStream> in;
    {
        const NoStandardStreams none;
        const Watch watch;
        in = std::make_unique<FileInputStream>(file.c_str());
    }
    sayState(*in);
}

void inputAdopt() {
    const int fd = open(directory->write("file", "text").c_str(), O_RDONLY);
    lseek(fd, 2, SEEK_SET);
    {
        std::unique_ptr<FileInputStream> in;
        {
            const Watch watch;
            in = std::make_unique<FileInputStream>(fd);
        }
        char text[5] = "";
        const int count = in->ReceiveInputStream(text, 4);
        say("received=%d %s open=%d errno=%s", count, text, static_cast<int>(in->isInputStreamOpen()),
            nameOf(in->errorNumber()));
    }
    close(fd);
}

void inputReopen() {
    const std::string file = directory->write("file", "text");
    FileInputStream in(file.c_str());
    char text[5] = "";
    in.ReceiveInputStream(text, 4);
    text[0] = 0;
    int reopened = 0;
    {
        const Watch watch;
        reopened = in.Reopen();
    }
    const int count = in.ReceiveInputStream(text, 4);
    say("reopened=%d received=%d %s", reopened, count, text);
    sayState(in);
}

void inputReceive() {
    const std::string file = directory->write("file", "abcdef");
    FileInputStream in(file.c_str());
    char text[16] = "";
    int first = 0;
    int second = 0;
    {
        const Watch watch;
        first = in.ReceiveInputStream(text, 4);
        second = in.ReceiveInputStream(text + 8, 4);
    }
    say("received=%d,%d %s,%s", first, second, text, text + 8);
    sayState(in);
    say("start=%d", static_cast<int>(in.StartInputStream()));
}

void inputPosition() {
    const std::string file = directory->write("file", "abcdef");
    FileInputStream in(file.c_str());
    bool isPositioned = false;
    {
        const Watch watch;
        isPositioned = in.Position(2);
    }
    char text[16] = "";
    const int count = in.ReceiveInputStream(text, 4);
    say("positioned=%d received=%d %s", static_cast<int>(isPositioned), count, text);
    sayState(in);
}

void inputAt() {
    const std::string file = directory->write("file", "abcdef");
    FileInputStream in(file.c_str());
    in.Position(3);
    unsigned int at = 0;
    {
        const Watch watch;
        at = in.At();
    }
    say("at=%d", static_cast<int>(at));
    sayState(in);
    say("again=%d", static_cast<int>(in.At()));
}

void inputStatus() {
    const std::string file = directory->write("file", "abcdef");
    FileInputStream in(file.c_str());
    int size = 0;
    unsigned int inode = 0;
    {
        const Watch watch;
        size = in.GetInputStreamSize();
        inode = in.GetInode();
    }
    say("size=%d inode=%d", size,
        inode == 0xFFFFFFFF ? -1 : static_cast<int>(inode == FileInputStream::GetInode(file.c_str())));
    sayState(in);
}

void inputInode() {
    const std::string file = directory->write("file", "abcdef");
    unsigned int inode = 0;
    {
        const Watch watch;
        inode = FileInputStream::GetInode(file.c_str());
    }
    say("inode=%d", inode == 0xFFFFFFFF ? -1 : 1);
}

void inputError() {
    const std::string file = directory->write("file", "abcdef");
    FileInputStream in(file.c_str());
    bool isInError = false;
    {
        const Watch watch;
        isInError = in.isInputStreamInError();
    }
    say("in error=%d again=%d errno=%s", static_cast<int>(isInError), static_cast<int>(in.isInputStreamInError()),
        nameOf(in.errorNumber()));
}

void inputClose() {
    const std::string file = directory->write("file", "abcdef");
    auto in = std::make_unique<FileInputStream>(file.c_str());
    const Watch watch;
    in.reset();
}

// --- virtual streams

void virtualPut() {
    FileOutputStream file(path("file").c_str(), false, 0600);
    {
        utility::VirtualPutStream out(file, 8, 4);
        out.setHoldOutput(true);
        const Watch watch;
        try {
            for (const char* piece : {"abc", "def", "ghi", "jkl"})
                out.PutS(piece);
            out.FlushOutputStream();
        } catch (framework::Exception* failure) {
            say("thrown=%u", failure->code());
            delete failure;
        }
    }
    sayState(file);
    say("content=%s", directory->read("file").c_str());
}

void virtualGet() {
    const std::string name = directory->write("file", "abcdefghijklmnopqrst");
    FileInputStream file(name.c_str());
    utility::VirtualGetStream in(file, 8, 0, 1, nullptr);
    std::string text;
    bool isStarted = false;
    {
        const Watch watch;
        isStarted = in.StartInputStream();
        char piece[8];
        for (int count; (count = in.ReceiveInputStream(piece, sizeof piece)) > 0;)
            text.append(piece, static_cast<std::size_t>(count));
    }
    say("started=%d received=%s", static_cast<int>(isStarted), text.c_str());
    sayState(file);
}

// --- directories and paths

void directoryWalk() {
    for (const char* name : {"one.walk", "two.walk"})
        directory->write(name, "");
    unsigned int count = 0;
    {
        const Watch watch;
        utility::DirIterator files(directory->path().c_str(), "*.walk");
        for (const char* name = files.getFirst(nullptr); name != nullptr; name = files.getNext())
            ++count;
        say("error=%d index=%d", static_cast<int>(files.inError()), files.getIndex());
    }
    say("count=%s", count < 2 ? "less" : "2");
}

void directoryOpenLow() {
    utility::DirIterator files(directory->path().c_str(), "*");
    bool isOpen = false;
    {
        const NoStandardStreams none;
        const Watch watch;
        isOpen = files.open();
    }
    say("open=%d error=%d", static_cast<int>(isOpen), static_cast<int>(files.inError()));
}

void directoryType() {
    directory->write("one.walk", "");
    if (chdir(directory->path().c_str()) != 0)
        _exit(ownFailure);
    utility::DirIterator files(directory->path().c_str(), "*.walk");
    files.getFirst(nullptr);
    const Watch watch;
    say("type=%d", files.getType());
}

void pathExists() {
    const utility::Path file(directory->write("file", "").c_str());
    const Watch watch;
    say("exists=%d", static_cast<int>(file.exists()));
}

void pathMakeDir() {
    utility::Path made(path("made").c_str());
    {
        const Watch watch;
        say("made=%d", static_cast<int>(made.makeDir()));
    }
    say("exists=%d", static_cast<int>(made.exists()));
}

void pathFind() {
    directory->write("file", "");
    utility::Path file("file");
    const std::string search = "/absent:" + directory->path();
    {
        const Watch watch;
        say("found=%d", static_cast<int>(file.find(search.c_str())));
    }
    say("path=%s", *file.getPath() != 0 ? "set" : "");
}

// --- commands

std::string spawn(const char* command, bool feeds, bool takes) {
    utility::BufferStream in(8192);
    utility::BufferStream out(8192);
    in.PutS("given\n");
    bool isWell = false;
    {
        const Watch watch;
        isWell = framework::Container::spawn(command, feeds ? &in : nullptr, takes ? &out : nullptr);
    }
    std::string text(out.pTail(), static_cast<std::size_t>(out.ReadAvailable()));
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    return (isWell ? "well: " : "failed: ") + text;
}

void spawnPlain() {
    say("%s", spawn("true", false, false).c_str());
}

void spawnPiped() {
    say("%s", spawn("sort", true, true).c_str());
}

void spawnPipedLow() {
    std::string result;
    {
        const NoStandardStreams none;
        result = spawn("sort", true, true);
    }
    say("%s", result.c_str());
}

// --- password file

constexpr char users[] = "root:x:0:0:Root:/root:/bin/sh\nguest:*:1002:100:Guest:/home/guest:/bin/false\n";

void enterRoot() {
    mkdir(path("etc").c_str(), 0755);
    directory->write("etc/passwd", users);
    setenv("VX_ROOT", directory->path().c_str(), 1);
    utility::PWService::getFileName();
}

void sayPasswordFile() {
    const std::string text = directory->read("etc/passwd");
    const std::string added = std::string(users) + "added:pw:7:8:Name:/:/bin/sh\n";
    say("file=%s", text == users ? "old" : text == added ? "new" : "neither");
    say("new file=%s", !directory->exists("etc/passwd.new")         ? "none"
                       : directory->read("etc/passwd.new") == added ? "whole"
                       : directory->read("etc/passwd.new").empty()  ? "empty"
                                                                    : "part");
}

void passwordGet() {
    enterRoot();
    const utility::PW* user = nullptr;
    {
        const Watch watch;
        user = utility::PWService::getUser("guest");
    }
    say("user=%s", user != nullptr ? user->getUserName() : "none");
}

void passwordHighest() {
    enterRoot();
    const Watch watch;
    say("highest=%u", utility::PWService::getHighestUID());
}

void passwordPut() {
    enterRoot();
    utility::PW user;
    user.m_passwd.pw_name = user.newString("added");
    user.m_passwd.pw_passwd = user.newString("pw");
    user.m_passwd.pw_uid = 7;
    user.m_passwd.pw_gid = 8;
    user.m_passwd.pw_gecos = user.newString("Name");
    user.m_passwd.pw_dir = user.newString("/");
    user.m_passwd.pw_shell = user.newString("/bin/sh");
    {
        const Watch watch;
        utility::PWService::putUser(&user);
    }
    sayPasswordFile();
}

// --- locks

void waiterLock() {
    std::unique_ptr<utility::Waiter> waiter;
    const Watch watch;
    waiter = std::make_unique<utility::Waiter>();
    waiter->lock();
    waiter->unlock();
    waiter->signal();
    waiter->broadcast();
    waiter.reset();
}

// Signals a waiter every 100 ms until this object is destroyed. A wait with a deadline in the past ends before the
// first signal.
class Signaller {
public:
    explicit Signaller(utility::Waiter& waiter)
        : m_thread([this, &waiter] {
              while (!m_isDone) {
                  std::this_thread::sleep_for(std::chrono::milliseconds(100));
                  waiter.lock();
                  waiter.signal();
                  waiter.unlock();
              }
          }) {}
    ~Signaller() {
        m_isDone = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_isDone{false};
    std::thread m_thread;
};

void waiterWait() {
    utility::Waiter waiter;
    const Signaller signaller(waiter);
    waiter.lock();
    {
        const Watch watch;
        say("woken=%d", static_cast<int>(waiter.wait(0)));
    }
    waiter.unlock();
}

void waiterWaitSeconds() {
    utility::Waiter waiter;
    const Signaller signaller(waiter);
    waiter.lock();
    {
        const Watch watch;
        say("woken=%d", static_cast<int>(waiter.wait(30)));
    }
    waiter.unlock();
}

void waiterWaitMicroseconds() {
    utility::Waiter waiter;
    const Signaller signaller(waiter);
    waiter.lock();
    {
        const Watch watch;
        say("woken=%d", static_cast<int>(waiter.waitMicroseconds(30000000)));
    }
    waiter.unlock();
}

void lockerLock() {
    std::unique_ptr<utility::Locker> locker;
    const Watch watch;
    locker = std::make_unique<utility::Locker>();
    locker->lock();
    locker->unlock();
    const bool isTaken = locker->trylock();
    if (isTaken)
        locker->unlock();
    locker.reset();
    say("tried=%d", static_cast<int>(isTaken));
}

void readWriteLock() {
    std::unique_ptr<framework::thread::PosixRWLock> lock;
    const Watch watch;
    lock = std::make_unique<framework::thread::PosixRWLock>();
    lock->readLock();
    lock->unlock();
    lock->writeLock();
    lock->writeLock();
    lock->unlock();
    lock->unlock();
    lock.reset();
}

void threadRecord() {
    pthread_setname_np(pthread_self(), "probe");
    const Watch watch;
    const framework::ThreadInfo* const first = framework::ThreadInfo::MyThreadInfo();
    const framework::ThreadInfo* const again = framework::ThreadInfo::MyThreadInfo();
    say("record=%d again=%d name=%s", static_cast<int>(first != nullptr), static_cast<int>(again != nullptr),
        again != nullptr ? again->getThreadName() : "");
}

void threadSignal() {
    framework::ThreadInfo::MyThreadInfo();
    static volatile sig_atomic_t arrived;
    signal(SIGUSR2, [](int) { arrived = arrived + 1; });
    {
        const Watch watch;
        framework::GenericServiceManager::SignalAllThreads(SIGUSR2);
    }
    say("arrived=%d", arrived);
}

// --- time and terminal

void timeNow() {
    timespec time = {1, 2};
    int64_t stamp = 0;
    bool isValid = false;
    {
        const Watch watch;
        stamp = utility::TimeMeasure::getTimestamp();
        isValid = utility::DateTime::Now().getEpochValid();
        utility::DateTime::ClockTime(&time);
    }
    say("stamp=%d now=%d clock=%s", static_cast<int>(stamp > 0), static_cast<int>(isValid),
        time.tv_sec > 1    ? "read"
        : time.tv_sec == 1 ? "untouched"
                           : "0");
}

void terminal() {
    const Watch watch;
    const utility::Terminal* const terminal = utility::Terminal::instance();
    say("size=%dx%d", terminal->width(), terminal->height());
}

// --- reports

void nameProcess() {
    static char name[] = "agent";
    static char* words[] = {name, nullptr};
    static framework::ApplicationArguments arguments(1, words);
    setenv("VX_MEM", directory->path().c_str(), 1);
    framework::ThreadInfo::MyThreadInfo()->setThreadName("main");
}

void contextFile() {
    nameProcess();
    mkdir(path("agentContext").c_str(), 0755);
    const std::string name = "agentContext/" + std::to_string(framework::ThreadInfo::MyThreadInfo()->getNum()) + "main";
    directory->write(name, "former content");
    errno = 4711;
    {
        const Watch watch;
        utility::Debug::SignalContext(SIGUSR2);
    }
    const bool isKept = errno == 4711;
    const std::string text = directory->read(name);
    const bool isWhole = text.compare(0, 9, "Backtrace") == 0 && text.find("<<<Backtrace End\n") != std::string::npos;
    say("content=%s errno %s",
        text.empty()               ? "none"
        : text == "former content" ? "former"
        : isWhole                  ? "whole"
                                   : "part",
        isKept ? "kept" : "changed");
    {
        // The lock is free again.
        utility::Debug::SignalContext(SIGUSR2);
    }
    say("again=%d", static_cast<int>(directory->read(name).find("<<<Backtrace End\n") != std::string::npos));
}

// Where the first look at the name fails, opening meets the link, as if somebody had just put it there.
void contextLink() {
    nameProcess();
    mkdir(path("agentContext").c_str(), 0755);
    const std::string name = "agentContext/" + std::to_string(framework::ThreadInfo::MyThreadInfo()->getNum()) + "main";
    directory->write("target", "content");
    if (symlink(path("target").c_str(), path(name.c_str()).c_str()) != 0)
        say("no link");
    {
        const Watch watch;
        utility::Debug::SignalContext(SIGUSR2);
    }
    say("content=%s", directory->read("target").c_str());
}

void contextRequest() {
    nameProcess();
    signal(SIGUSR2, [](int) { say("asked"); });
    {
        const Watch watch;
        utility::Debug::SignalThreads(SIGUSR1);
    }
    say("directory=%d", static_cast<int>(directory->exists("agentContext")));
}

void errorContext() {
    const Watch watch;
    utility::Debug::ErrorContext();
}

void threadErrorContext() {
    FileOutputStream file(path("file").c_str(), false, 0600);
    {
        const Watch watch;
        utility::Debug::ThreadErrorContext(nullptr, file);
    }
    const std::string text = directory->read("file");
    say("content=%s", text.empty() ? "none" : text.find("<<<Backtrace End\n") != std::string::npos ? "whole" : "part");
    sayState(file);
}

void crash() {
    signal(SIGSEGV, SIG_IGN);
    const Watch watch;
    utility::Debug::SignalCrash(SIGSEGV);
}

class SayingContainer : public framework::Container {
protected:
    void shutdown(bool clean) override {
        say("shutdown=%d", static_cast<int>(clean));
    }
};

void exitReport() {
    const SayingContainer container;
    const Watch watch;
    utility::Debug::SignalExit(SIGTERM);
}

void symbolName() {
    char text[256] = "";
    {
        const Watch watch;
        utility::Debug::SymbolName(reinterpret_cast<void*>(&utility::Debug::signalName), text, sizeof text);
    }
    say("name=%s", text);
}

void coreLimit() {
    test::replaceFile("/proc/sys/kernel/core_pattern", directory->write("pattern", "/var/core\n"));
    const Watch watch;
    utility::Debug::MaybeEnableCoreDump();
}

void coreLimitLow() {
    test::replaceFile("/proc/sys/kernel/core_pattern", directory->write("pattern", "core\n"));
    const NoStandardStreams none;
    const Watch watch;
    utility::Debug::MaybeEnableCoreDump();
}

void logLine() {
    Logger::setSink(nullptr, nullptr);
    dup2(STDOUT_FILENO, STDERR_FILENO);
    const Watch watch;
    Logger::StaticLog(Logger::LOG_ERROR, "one line");
}

struct Scenario {
    const char* name;
    void (*run)();
};

constexpr Scenario scenarios[] = {
    {"output open", outputOpen},
    {"output open low", outputOpenLow},
    {"output adopt", outputAdopt},
    {"output send", outputSend},
    {"output start", outputStart},
    {"output close", outputClose},
    {"input open", inputOpen},
    {"input open low", inputOpenLow},
    {"input adopt", inputAdopt},
    {"input reopen", inputReopen},
    {"input receive", inputReceive},
    {"input position", inputPosition},
    {"input at", inputAt},
    {"input status", inputStatus},
    {"input inode", inputInode},
    {"input error", inputError},
    {"input close", inputClose},
    {"virtual put", virtualPut},
    {"virtual get", virtualGet},
    {"directory walk", directoryWalk},
    {"directory open low", directoryOpenLow},
    {"directory type", directoryType},
    {"path exists", pathExists},
    {"path make", pathMakeDir},
    {"path find", pathFind},
    {"spawn", spawnPlain},
    {"spawn piped", spawnPiped},
    {"spawn piped low", spawnPipedLow},
    {"password get", passwordGet},
    {"password highest", passwordHighest},
    {"password put", passwordPut},
    {"waiter", waiterLock},
    {"waiter wait", waiterWait},
    {"waiter wait seconds", waiterWaitSeconds},
    {"waiter wait microseconds", waiterWaitMicroseconds},
    {"locker", lockerLock},
    {"read-write lock", readWriteLock},
    {"thread record", threadRecord},
    {"thread signal", threadSignal},
    {"time", timeNow},
    {"terminal", terminal},
    {"context file", contextFile},
    {"context link", contextLink},
    {"context request", contextRequest},
    {"error context", errorContext},
    {"thread error context", threadErrorContext},
    {"crash", crash},
    {"exit", exitReport},
    {"symbol name", symbolName},
    {"core limit", coreLimit},
    {"core limit low", coreLimitLow},
    {"log line", logLine},
};

// --- trials

std::set<int> openDescriptors() {
    std::set<int> open;
    for (int fd = 0; fd < 128; ++fd)
        if (fcntl(fd, F_GETFD) >= 0)
            open.insert(fd);
    return open;
}

struct Trial {
    std::string outcome; // what the scenario says, and how it ended
    bool isMet = false;  // the fault took place
    std::map<std::string, unsigned> counts;
};

Trial run(const Scenario& scenario, const test::CallFault& fault) {
    const test::TemporaryDirectory own;
    directory = &own;
    test::setFault(fault);
    const test::ChildResult child = test::runInChild(
        [&] {
            Logger::setSink(sayLogged, nullptr);
            signal(SIGALRM, SIG_DFL);
            const std::set<int> before = openDescriptors();
            scenario.run();
            if (openDescriptors() != before)
                say("A DESCRIPTOR IS LEFT OPEN");
            if (waitpid(-1, nullptr, WNOHANG) >= 0)
                say("A CHILD IS LEFT");
        },
        longest);
    Trial trial;
    trial.outcome = child.out;
    while (!trial.outcome.empty() && trial.outcome.back() == '\n')
        trial.outcome.pop_back();
    if (child.timedOut)
        trial.outcome += " HANGS";
    else if (child.signal != 0)
        trial.outcome += " ends by " + std::string(sigabbrev_np(child.signal));
    else if (child.status != 0)
        trial.outcome += " ends with " + std::to_string(child.status);
    trial.isMet = test::wasFaultMet();
    trial.counts = test::callCounts();
    return trial;
}

std::string faultName(int error) {
    return error == 0 ? "short" : nameOf(error);
}

void replaceAll(std::string* text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; !from.empty() && (at = text->find(from, at)) != std::string::npos; at += to.size())
        text->replace(at, from.size(), to);
}

// An expected outcome, with the fault's own texts in the places of %E, %S and %N.
std::string expanded(std::string outcome, int error) {
    replaceAll(&outcome, "%E", faultName(error));
    replaceAll(&outcome, "%S", strerrordesc_np(error));
    replaceAll(&outcome, "%N", std::to_string(error));
    return outcome;
}

unsigned findings = 0;
unsigned trials = 0;
// The expectations that were asked for, and for which calls.
std::set<std::pair<const Expected*, std::string>> used;

bool hasWord(const char* words, const std::string& word) {
    return (" " + std::string(words) + " ").find(" " + word + " ") != std::string::npos;
}

const Expected* findExpected(const std::string& scenario, const test::CallFault& fault) {
    const Expected* best = nullptr;
    int bestRank = -1;
    for (const Expected& row : expectations) {
        const bool isAnyFault = std::strcmp(row.fault, "*") == 0;
        const bool isFault = isAnyFault || hasWord(row.fault, faultName(fault.error));
        if (scenario != row.scenario || !hasWord(row.calls, fault.call) || (row.nth != 0 && row.nth != fault.nth) ||
            !isFault)
            continue;
        const int rank = (row.nth != 0 ? 2 : 0) + (isAnyFault ? 0 : 1);
        if (rank > bestRank) {
            best = &row;
            bestRank = rank;
        }
    }
    return best;
}

void finding(const std::string& where, const std::string& what) {
    std::printf("%s: %s\n", where.c_str(), what.c_str());
    ++findings;
}

void judge(const Scenario& scenario, const test::CallFault& fault, const Trial& trial) {
    const std::string where = fault.call.empty() ? scenario.name
                                                 : std::string(scenario.name) + ", " + fault.call + " " +
                                                       std::to_string(fault.nth) + " " + faultName(fault.error);
    const Expected* const row = findExpected(scenario.name, fault);
    if (row == nullptr) {
        finding(where, "not expected: \"" + trial.outcome + "\"");
        return;
    }
    used.insert({row, fault.call});
    const bool isSame = row->outcome == same;
    const char* const outcome = isSame ? findExpected(scenario.name, {"", 0, 0})->outcome : row->outcome;
    const std::string expected = expanded(outcome, fault.error);
    if (trial.outcome != expected)
        finding(where, "gives \"" + trial.outcome + "\" instead of \"" + expected + "\"");
}

void printRow(const Scenario& scenario, const test::CallFault& fault, const Trial& trial) {
    std::string outcome = trial.outcome;
    if (fault.error != 0) {
        replaceAll(&outcome, faultName(fault.error), "%E");
        replaceAll(&outcome, strerrordesc_np(fault.error), "%S");
    }
    replaceAll(&outcome, "\"", "\\\"");
    std::printf("{\"%s\", \"%s\", %u, \"%s\", \"%s\"},\n", scenario.name, fault.call.c_str(), fault.nth,
                fault.call.empty() ? "*" : faultName(fault.error).c_str(), outcome.c_str());
}

using Take = void (*)(const Scenario&, const test::CallFault&, const Trial&);

void runScenario(const Scenario& scenario, Take take) {
    const test::CallFault none = {"", 0, 0};
    const Trial plain = run(scenario, none);
    take(scenario, none, plain);
    for (const auto& count : plain.counts) {
        for (unsigned nth = 1; nth <= count.second; ++nth) {
            for (const int error : test::faultsOf(count.first)) {
                const test::CallFault fault = {count.first, nth, error};
                const Trial trial = run(scenario, fault);
                ++trials;
                if (!trial.isMet)
                    finding(std::string(scenario.name) + ", " + count.first, "the fault did not take place");
                take(scenario, fault, trial);
            }
        }
    }
}

int runAll(const char* name, Take take) {
    unsigned count = 0;
    for (const Scenario& scenario : scenarios) {
        if (name != nullptr && std::strcmp(name, scenario.name) != 0)
            continue;
        ++count;
        runScenario(scenario, take);
    }
    if (take != judge)
        return 0;
    for (const Expected& row : expectations) {
        if (name != nullptr && std::strcmp(name, row.scenario) != 0)
            continue;
        std::istringstream calls(row.calls);
        for (std::string call; calls >> call;)
            if (used.count({&row, call}) == 0)
                finding(std::string(row.scenario) + ", " + call + " " + row.fault, "is expected but never happens");
    }
    if (count == 0)
        finding(name != nullptr ? name : "", "no such scenario");
    std::printf("calls: %u failing calls in %u scenarios; %u findings\n", trials, count, findings);
    return findings == 0 ? 0 : 1;
}

int runOne(const char* name, const test::CallFault& fault) {
    for (const Scenario& scenario : scenarios) {
        if (std::strcmp(name, scenario.name) == 0)
            std::puts(run(scenario, fault).outcome.c_str());
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (!test::ProtectedMachine::protect()) {
        std::puts("skipped: this process can write /etc/passwd, and nothing would protect it from a fault");
        return skipped;
    }
    if (argc == 5) {
        int error = 0;
        for (int i = 1; i < 200; ++i)
            if (strerrorname_np(i) != nullptr && std::strcmp(strerrorname_np(i), argv[4]) == 0)
                error = i;
        return runOne(argv[1], {argv[2], static_cast<unsigned>(std::atoi(argv[3])), error});
    }
    const bool isTable = argc > 1 && std::strcmp(argv[1], "table") == 0;
    const char* const name = argc > (isTable ? 2 : 1) ? argv[isTable ? 2 : 1] : nullptr;
    return runAll(name, isTable ? printRow : judge);
}
