// Sixteen threads use for a while what threads share: a queue, a pool, a list, a waiter with time-outs, tokens and the
// logger while its sink changes. Others fork, load and unload a module, and have every thread write its context.
//
//     soak SECONDS MODULE
//     soak stuck            threads that do nothing: the watchdog must end with 1
//
// Shows that nothing is lost (each element arrives once, each message reaches one sink, each thread writes its
// context), that no thread hangs (each makes progress and ends when asked), and that memory stays flat. Prints the
// figures last. A watchdog process looks at the progress, so that it also finds threads that are all stuck, and shows
// their stacks if gdb is installed.

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <fcntl.h>
#include <malloc.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "fw_ApplicationArguments.h"
#include "fw_Logger.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"
#include "fw_ThreadInfo.h"
#include "support/TemporaryDirectory.h"
#include "ut_BufferStreamList.h"
#include "ut_BufferStreamQueue.h"
#include "ut_Debug.h"
#include "ut_List.h"
#include "ut_ListContainable.h"
#include "ut_ListIterator.h"
#include "ut_Waiter.h"

#ifdef __SANITIZE_THREAD__
extern "C" std::size_t __sanitizer_get_current_allocated_bytes();
#endif

namespace {

using framework::Logger;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

// A thread that does nothing for so long is stuck. The machine may be busy, and a sanitizer slow.
constexpr seconds patience(60);
constexpr std::size_t flatWithin = 1 << 20;
constexpr int queueLimit = 1000;
constexpr int poolSize = 3;
constexpr int listLimit = 100;
constexpr int tokenCount = 2000;
constexpr char messageMark[] = "soak: message";

std::atomic<bool> stopping{false};
std::atomic<int> findings{0};
int realStandardError = STDERR_FILENO;

__attribute__((format(printf, 1, 2))) void report(const char* format, ...) {
    char text[512];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text - 1, format, arguments);
    va_end(arguments);
    const std::size_t shown = std::min(static_cast<std::size_t>(std::max(length, 0)), sizeof text - 2);
    text[shown] = '\n';
    // A process that finds the same again and again need not fill the disk with it.
    if (++findings <= 100 && write(realStandardError, text, shown + 1) < 0)
        std::abort();
}

void check(bool holds, const char* what) {
    if (!holds)
        report("FOUND: %s", what);
}

// --- the logger

std::atomic<unsigned long> messagesSent{0};
std::atomic<unsigned long> messagesOfSink[2] = {};
std::atomic<unsigned long> messagesOfStandardError{0};
std::atomic<unsigned long> sinkChanges{0};

void countMessage(void* context, Logger::LogType, const char*, int, const char* text) {
    if (std::strstr(text, messageMark) != nullptr)
        ++*static_cast<std::atomic<unsigned long>*>(context);
}

void logMessage(int thread) {
    ++messagesSent;
    Logger::StaticLog(Logger::LOG_NOTICE, "%s of thread %d", messageMark, thread);
}

void changeSinks(std::atomic<unsigned long>& progress) {
    for (unsigned int i = 0; !stopping; ++i, ++progress, ++sinkChanges) {
        if (i % 8 == 7)
            Logger::setSink(nullptr, nullptr);
        else
            Logger::setSink(countMessage, &messagesOfSink[i % 2]);
        std::this_thread::sleep_for(milliseconds(1));
    }
}

// Standard error is a pipe to here, so that the messages of the default sink are counted. All else is passed on.
void readStandardError(int end) {
    std::string line;
    char piece[4096];
    for (;;) {
        const ssize_t count = read(end, piece, sizeof piece);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return;
        for (ssize_t i = 0; i < count; ++i) {
            line += piece[i];
            if (piece[i] != '\n')
                continue;
            if (line.find(messageMark) != std::string::npos)
                ++messagesOfStandardError;
            else if (line.find("soak: child") == std::string::npos && line.find("SignalContext") == std::string::npos &&
                     line.find("SignalThreads") == std::string::npos &&
                     write(realStandardError, line.data(), line.size()) < 0)
                std::abort();
            line.clear();
        }
    }
}

// --- the queue: what producers put in, consumers take out

utility::BufferStreamQueue queue;
std::atomic<unsigned long> queued{0};
std::atomic<unsigned long> queuedSum{0};
std::atomic<unsigned long> dequeued{0};
std::atomic<unsigned long> dequeuedSum{0};
std::atomic<bool> queueIsEnding{false};

void fillQueue(std::atomic<unsigned long>& progress) {
    for (unsigned long i = 1; !stopping; ++progress) {
        queue.m_waiter.lock();
        const bool isFull = queue.Count() >= queueLimit;
        if (!isFull) {
            auto* const element = new utility::BufferStreamElement(32, nullptr);
            element->m_userValue = i;
            element->PutF("%lu\n", i);
            queue.enQueue(element);
            queue.m_waiter.signal();
            ++queued;
            queuedSum += i++;
        }
        queue.m_waiter.unlock();
        if (isFull)
            std::this_thread::yield();
    }
}

void emptyQueue(std::atomic<unsigned long>& progress) {
    for (unsigned long turn = 0;; ++turn, ++progress) {
        queue.m_waiter.lock();
        while (queue.Count() == 0 && !queueIsEnding)
            queue.m_waiter.wait(1);
        utility::BufferStreamElement* element = queue.deQueue();
        if (element != nullptr && turn % 16 == 0) {
            queue.reQueue(element);
            element = queue.deQueue();
        }
        queue.m_waiter.unlock();
        if (element == nullptr)
            return;
        check(element->m_userValue == std::strtoul(element->GetLine(), nullptr, 10),
              "an element of the queue has changed");
        ++dequeued;
        dequeuedSum += element->m_userValue;
        delete element;
        if (turn % 64 == 0)
            logMessage(1);
    }
}

// --- the pool: no element has two users at a time

utility::BufferStreamList pool(poolSize, 64);

void usePool(std::atomic<unsigned long>& progress) {
    for (unsigned long turn = 0; !stopping; ++turn, ++progress) {
        pool.Lock();
        utility::BufferStreamElement* element = pool.Allocate();
        while (element == nullptr && !stopping) {
            pool.Wait(1);
            element = pool.Allocate();
        }
        pool.UnLock();
        if (element == nullptr)
            return;
        check(++element->m_userWord1 == 1, "an element of the pool has two users");
        std::this_thread::yield();
        --element->m_userWord1;
        pool.Lock();
        if (turn % 2 == 0)
            pool.Append(element);
        else
            pool.Insert(element);
        pool.Signal();
        pool.UnLock();
        if (turn % 256 == 0)
            logMessage(2);
    }
}

// --- the list

std::atomic<long> numbersAlive{0};

struct Number : public utility::ListContainable {
    explicit Number(unsigned long number) : value(number) {
        ++numbersAlive;
    }
    Number(const Number&) = delete;
    Number& operator=(const Number&) = delete;
    ~Number() override {
        --numbersAlive;
    }
    bool equals(const utility::ListContainable* other) const override {
        return value == static_cast<const Number*>(other)->value;
    }

    const unsigned long value;
};

utility::List list(true);
std::atomic<unsigned long> listed{0};
std::atomic<unsigned long> listedSum{0};
std::atomic<unsigned long> unlisted{0};
std::atomic<unsigned long> unlistedSum{0};

void fillList(std::atomic<unsigned long>& progress) {
    for (unsigned long i = 1; !stopping; ++progress) {
        if (list.count() >= listLimit) {
            std::this_thread::yield();
            continue;
        }
        auto* const number = new Number(i);
        ++listed;
        listedSum += i;
        if (i++ % 3 == 0)
            list.addFirst(number);
        else
            list.addLast(number);
    }
}

void takeFromList(utility::ListContainable* element) {
    if (element == nullptr)
        return;
    ++unlisted;
    unlistedSum += static_cast<Number*>(element)->value;
    delete element;
}

void emptyList(std::atomic<unsigned long>& progress) {
    for (; !stopping; ++progress)
        takeFromList(list.removeFirst(true));
}

void walkThroughList(std::atomic<unsigned long>& progress) {
    for (unsigned long turn = 0; !stopping; ++turn, ++progress) {
        const std::unique_ptr<utility::ListIterator> iterator(
            list.iterator(turn % 2 == 0 ? utility::FIRST_TO_LAST : utility::LAST_TO_FIRST));
        int count = 0;
        while (const utility::ListContainable* element = iterator->next()) {
            check(static_cast<const Number*>(element)->value != 0, "a list shows an element without a number");
            ++count;
        }
        check(count <= listLimit + 1, "a list shows more elements than it has");
        if (turn % 256 == 0)
            logMessage(3);
    }
}

// --- a waiter with two users that wait for each other, or until a timeout

utility::Waiter waiter;
std::atomic<unsigned long> timeouts{0};
unsigned int ball = 0;

void passBall(unsigned int side, std::atomic<unsigned long>& progress) {
    waiter.lock();
    while (!stopping) {
        if (ball % 2 == side) {
            ++ball;
            waiter.broadcast();
        } else if (!(side == 0 ? waiter.wait(1) : waiter.waitMicroseconds(1000))) {
            ++timeouts;
        }
        ++progress;
        // Leaves the other one in its wait now and then.
        if (progress % 1000 == 0) {
            waiter.unlock();
            std::this_thread::sleep_for(milliseconds(5));
            waiter.lock();
        }
    }
    waiter.broadcast();
    waiter.unlock();
}

// --- tokens

std::array<std::atomic<stringtoken>, tokenCount> tokens = {};

void makeTokens(unsigned int step, std::atomic<unsigned long>& progress) {
    for (unsigned int i = 0; !stopping; i += step, ++progress) {
        const std::string text = "soak: token " + std::to_string(i % tokenCount);
        const stringtoken token = strings::GS.toToken(text.c_str());
        stringtoken expected = 0;
        check(tokens[i % tokenCount].compare_exchange_strong(expected, token) || expected == token,
              "a text has two tokens");
        const char* const back = strings::StringRepository::toString(token);
        check(back != nullptr && text == back, "a token has another text");
    }
}

// --- forks, and a module that comes and goes

std::atomic<unsigned long> forks{0};
std::atomic<unsigned long> loads{0};

// A child has one thread and may use what the others were in the middle of.
int useLibraryInChild() {
    alarm(static_cast<unsigned int>(patience.count()));
    Logger::StaticLog(Logger::LOG_NOTICE, "soak: child");
    Logger::setSink(countMessage, &messagesOfSink[0]);
    const stringtoken token = strings::GS.toToken("soak: child");
    const char* const text = strings::StringRepository::toString(token);
    framework::ThreadInfo* const me = framework::ThreadInfo::MyThreadInfo();
    return text != nullptr && std::strcmp(text, "soak: child") == 0 && me != nullptr ? 0 : 1;
}

void forkAgainAndAgain(std::atomic<unsigned long>& progress) {
    for (; !stopping; ++progress) {
        const pid_t child = fork();
        if (child == 0)
            _exit(useLibraryInChild());
        check(child > 0, "no child could be made");
        int status = 0;
        while (child > 0 && waitpid(child, &status, 0) < 0 && errno == EINTR)
            continue;
        check(!(WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM), "a child is stuck");
        check(status == 0, "a child failed");
        ++forks;
        std::this_thread::sleep_for(milliseconds(20));
    }
}

void loadAgainAndAgain(const char* path, std::atomic<unsigned long>& progress) {
    for (; !stopping; ++progress) {
        void* const module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
        if (module == nullptr) {
            report("FOUND: no module: %s", dlerror());
            return;
        }
        const auto usesLibrary = reinterpret_cast<bool (*)()>(dlsym(module, "usesLibrary"));
        check(usesLibrary != nullptr && usesLibrary(), "a module cannot use the library");
        check(dlclose(module) == 0, "a module cannot be unloaded");
        check(dlopen(path, RTLD_NOW | RTLD_NOLOAD) == nullptr, "a module stays loaded");
        ++loads;
        std::this_thread::sleep_for(milliseconds(2));
    }
}

// --- the watchdog

// What a thread shows to the watchdog, in memory that both processes map.
struct Slot {
    const char* name;
    std::atomic<unsigned long> progress;
    std::atomic<bool> hasEnded;
};

constexpr unsigned int slotCount = 32;

struct Board {
    Slot slots[slotCount];
    std::atomic<unsigned int> used;
};

Board* board = nullptr;

Slot& nextSlot(const char* name) {
    if (board->used >= slotCount)
        std::abort();
    Slot& slot = board->slots[board->used];
    slot.name = name;
    ++board->used;
    return slot;
}

void showStacks(pid_t process) {
    const std::string command = "timeout -k 5 60 gdb --batch -nx -p " + std::to_string(process) +
                                " -ex 'set pagination off' -ex 'thread apply all backtrace' 2>&1";
    if (std::system("command -v gdb >/dev/null") != 0)
        std::puts("gdb is not installed: no stacks");
    else if (std::fflush(nullptr) != 0 || std::system(command.c_str()) != 0)
        std::puts("gdb failed: no stacks");
    std::fflush(stdout);
}

// Waits for `process` and returns its exit status, or 1 if one of its threads makes no progress for `limit`.
int watch(pid_t process, seconds limit) {
    struct Seen {
        unsigned long progress = 0;
        steady_clock::time_point at = steady_clock::now();
    };
    Seen seen[slotCount];
    for (;;) {
        int status = 0;
        if (waitpid(process, &status, WNOHANG) == process) {
            if (WIFEXITED(status))
                return WEXITSTATUS(status);
            std::printf("FOUND: killed by signal %d\n", WTERMSIG(status));
            return 1;
        }
        const auto now = steady_clock::now();
        for (unsigned int i = 0; i < board->used; ++i) {
            const Slot& slot = board->slots[i];
            const unsigned long progress = slot.progress;
            if (progress != seen[i].progress || slot.hasEnded) {
                seen[i] = {progress, now};
            } else if (now - seen[i].at > limit) {
                std::printf("FOUND: thread %s is stuck after %lu turns\n", slot.name, progress);
                showStacks(process);
                kill(process, SIGKILL);
                waitpid(process, nullptr, 0);
                return 1;
            }
        }
        std::this_thread::sleep_for(milliseconds(100));
    }
}

// Runs `body` in a child process under the watchdog, and returns the exit status.
template<class Body>
int runWatched(seconds limit, Body&& body) {
    void* const memory = mmap(nullptr, sizeof(Board), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return 2;
    board = new (memory) Board();
    const pid_t process = fork();
    if (process < 0)
        return 2;
    if (process > 0)
        return watch(process, limit);
    // The child ends with the watchdog, of which the user who stops the run knows, and lets gdb attach.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY);
    return body();
}

// --- all of them

struct Worker {
    const char* name;
    std::function<void(std::atomic<unsigned long>&)> work;
    std::atomic<unsigned long>& progress;
    std::atomic<bool>& hasEnded;
    std::thread thread;

    Worker(const char* newName, std::function<void(std::atomic<unsigned long>&)> newWork)
        : Worker(newName, std::move(newWork), nextSlot(newName)) {}

    void start() {
        thread = std::thread([this] {
            framework::ThreadInfo::MyThreadInfo()->setThreadName(name);
            work(progress);
            hasEnded = true;
        });
    }

private:
    Worker(const char* newName, std::function<void(std::atomic<unsigned long>&)> newWork, Slot& slot)
        : name(newName), work(std::move(newWork)), progress(slot.progress), hasEnded(slot.hasEnded) {}
};

std::vector<std::unique_ptr<Worker>> makeWorkers() {
    std::vector<std::unique_ptr<Worker>> workers;
    const auto add = [&](const char* name, std::function<void(std::atomic<unsigned long>&)> work) {
        workers.push_back(std::make_unique<Worker>(name, std::move(work)));
    };
    add("queue_in_1", fillQueue);
    add("queue_in_2", fillQueue);
    add("queue_out_1", emptyQueue);
    add("queue_out_2", emptyQueue);
    for (const char* name : {"pool_1", "pool_2", "pool_3", "pool_4"})
        add(name, usePool);
    add("list_in", fillList);
    add("list_out", emptyList);
    add("list_walk", walkThroughList);
    add("waiter_1", [](auto& progress) { passBall(0, progress); });
    add("waiter_2", [](auto& progress) { passBall(1, progress); });
    add("tokens_1", [](auto& progress) { makeTokens(1, progress); });
    add("tokens_2", [](auto& progress) { makeTokens(7, progress); });
    add("sinks", changeSinks);
    return workers;
}

// How much the program has allocated. A sanitizer keeps freed memory for a while, which is not counted.
std::size_t allocatedBytes() {
#ifdef __SANITIZE_THREAD__
    return __sanitizer_get_current_allocated_bytes();
#else
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
#endif
}

// What the program holds varies with how full the queue and the list are; the most of each quarter of the time does
// not.
class MemoryRecord {
public:
    void sample(double partOfTime) {
        std::size_t& most = m_most[static_cast<std::size_t>(std::min(partOfTime, 0.99) * 4)];
        most = std::max(most, allocatedBytes());
    }
    bool isFlat() const {
        return m_most[3] <= m_most[1] + flatWithin;
    }
    std::string text() const {
        std::string result;
        for (const std::size_t most : m_most)
            result += (result.empty() ? "" : ", ") + std::to_string(most / 1024);
        return result + " KiB";
    }

private:
    std::array<std::size_t, 4> m_most = {};
};

// Wakes who waits until all have ended.
void endAll(const std::vector<std::unique_ptr<Worker>>& workers, std::atomic<unsigned long>& progress) {
    stopping = true;
    const auto stopped = steady_clock::now();
    for (bool allHaveEnded = false; !allHaveEnded; ++progress) {
        list.wakeAll();
        allHaveEnded = true;
        bool producersHaveEnded = true;
        for (const auto& worker : workers) {
            allHaveEnded = allHaveEnded && worker->hasEnded;
            producersHaveEnded =
                producersHaveEnded && (worker->hasEnded || std::strncmp(worker->name, "queue_in", 8) != 0);
            if (!worker->hasEnded && steady_clock::now() - stopped > patience) {
                report("FOUND: thread %s does not end", worker->name);
                _exit(1);
            }
        }
        queueIsEnding = producersHaveEnded;
        std::this_thread::sleep_for(milliseconds(1));
    }
    for (const auto& worker : workers)
        worker->thread.join();
}

unsigned long countContexts(const std::string& folder) {
    unsigned long count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder))
        count += entry.is_regular_file() && entry.file_size() > 0 ? 1 : 0;
    return count;
}

void handle(int sig, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    sigaction(sig, &action, nullptr);
}

void run(int duration, const char* module) {
    const test::TemporaryDirectory directory;
    setenv("VX_MEM", directory.path().c_str(), 1);
    const rlimit noCore = {0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    handle(SIGUSR1, utility::Debug::SignalThreads);
    handle(SIGUSR2, utility::Debug::SignalContext);
    Logger::setSink(countMessage, &messagesOfSink[0]);

    const long outstanding = framework::Memory::staticOutstanding();
    std::vector<std::unique_ptr<Worker>> workers = makeWorkers();
    const std::size_t sixteen = workers.size();
    workers.push_back(std::make_unique<Worker>("forks", forkAgainAndAgain));
    workers.push_back(std::make_unique<Worker>("loads", [&](auto& progress) { loadAgainAndAgain(module, progress); }));
    check(pool.Count() == poolSize, "the pool is not full at the beginning");
    std::atomic<unsigned long>& progress = nextSlot("main").progress;
    for (const auto& worker : workers)
        worker->start();

    MemoryRecord memory;
    unsigned long signals = 0;
    const auto begin = steady_clock::now();
    for (;;) {
        const std::chrono::duration<double> passed = steady_clock::now() - begin;
        if (passed >= seconds(duration))
            break;
        memory.sample(passed.count() / duration);
        ++progress;
        raise(SIGUSR1);
        ++signals;
        std::this_thread::sleep_for(milliseconds(100));
    }
    endAll(workers, progress);

    Logger::setSink(countMessage, &messagesOfSink[0]);
    check(queued == dequeued && queuedSum == dequeuedSum && queue.Count() == 0, "the queue lost an element");
    for (const auto& worker : workers) {
        if (worker->progress == 0)
            report("FOUND: thread %s did nothing", worker->name);
    }
    while (utility::ListContainable* const element = list.removeFirst(false))
        takeFromList(element);
    check(listed == unlisted && listedSum == unlistedSum && numbersAlive == 0, "the list lost an element");
    check(pool.Count() == poolSize, "the pool lost an element");
    const unsigned long contexts = countContexts(directory.path());
    check(contexts > workers.size(), "a thread wrote no context");
    check(memory.isFlat(), "memory grows");
    check(framework::Memory::staticOutstanding() <= outstanding, "memory of the library is not given back");

    std::printf("%zu threads, %d s: %lu through the queue, %lu through the list, %u balls, %lu time-outs\n", sixteen,
                duration, dequeued.load(), unlisted.load(), ball, timeouts.load());
    std::printf("%lu sink changes, %lu forks, %lu loads, %lu signals to all threads, %lu context files\n",
                sinkChanges.load(), forks.load(), loads.load(), signals, contexts);
    std::printf("memory at most, by quarters: %s\n", memory.text().c_str());
}

int soak(int duration, const char* module) {
    // Names the folder of the contexts, which a path would not do.
    char name[] = "soak";
    char* words[] = {name, nullptr};
    const framework::ApplicationArguments processName(1, words);
    framework::ThreadInfo::MyThreadInfo()->setThreadName("main");
    int ends[2];
    realStandardError = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
    if (realStandardError < 0 || pipe2(ends, O_CLOEXEC) != 0 || dup2(ends[1], STDERR_FILENO) < 0)
        return 2;
    close(ends[1]);
    std::thread reader(readStandardError, ends[0]);

    run(duration, module);

    dup2(realStandardError, STDERR_FILENO);
    reader.join();
    const unsigned long received = messagesOfSink[0] + messagesOfSink[1] + messagesOfStandardError;
    check(received == messagesSent, "a message was lost or came twice");
    std::printf("%lu messages, %lu to standard error; %d findings\n", received, messagesOfStandardError.load(),
                findings.load());
    return findings == 0 ? 0 : 1;
}

// Two threads, of which neither goes on.
int becomeStuck() {
    Slot& slot = nextSlot("stuck");
    std::thread other([] {
        for (;;)
            pause();
    });
    ++slot.progress;
    other.join();
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "stuck") == 0)
        return runWatched(seconds(2), becomeStuck);
    const int duration = argc == 3 ? std::atoi(argv[1]) : 0;
    if (duration < 1) {
        std::fputs("usage: soak SECONDS MODULE | soak stuck\n", stderr);
        return 2;
    }
    return runWatched(patience, [&] { return soak(duration, argv[2]); });
}
