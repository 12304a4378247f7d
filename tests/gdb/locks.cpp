// Starts threads that hold and wait for locks of each class. Writes to the file argv[1] what `info vxut-locks` must
// show about them: the lines about a lock, with "LWP n" for a thread.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/syscall.h>
#include <unistd.h>

#include <VXut.h>

// Where gdb stops.
extern "C" __attribute__((noinline)) void locksAreHeld() {
    asm volatile("");
}

utility::Locker heldLocker;
utility::Locker lockers[2];

namespace {

utility::Waiter freeWaiter;
utility::Waiter heldWaiter;

struct Owner {
    int number = 0;
    utility::Waiter waiter;
};

long myNumber() {
    return syscall(SYS_gettid);
}

char stateOf(long thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string text;
    std::getline(file, text);
    const std::size_t name = text.rfind(')');
    return name != std::string::npos && name + 2 < text.size() ? text[name + 2] : '?';
}

void pause() {
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

// Starts a thread that runs `operation`. Returns its number when the thread has slept for some time.
template<typename Operation>
long startBlocked(Operation operation) {
    std::atomic<long> started{0};
    std::thread([operation, &started] {
        started = myNumber();
        operation();
    }).detach();
    while (started == 0)
        pause();
    const long thread = started;
    for (int asleep = 0; asleep < 20; asleep = stateOf(thread) == 'S' ? asleep + 1 : 0)
        pause();
    return thread;
}

class Expectations {
public:
    explicit Expectations(const char* path) : m_file(path) {}

    void lock(const char* lockClass, const void* address, const std::string& state) {
        m_file << lockClass << " 0x" << std::hex << reinterpret_cast<std::uintptr_t>(address) << std::dec << state
               << '\n';
    }
    void end() {
        m_file.close();
    }
    void waiter(long thread, const char* reason) {
        m_file << "    LWP " << thread << " waits for " << reason << '\n';
    }

private:
    std::ofstream m_file;
};

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    Expectations expected(arguments[1]);
    const std::string me = "LWP " + std::to_string(myNumber());

    heldLocker.lock();
    expected.lock("utility::Locker", &heldLocker, " (heldLocker): held by " + me);
    expected.waiter(startBlocked([] { heldLocker.lock(); }), "the lock");

    lockers[1].lock();
    expected.lock("utility::Locker", &lockers[0], " ([0] of lockers): free");
    expected.lock("utility::Locker", &lockers[1], " ([1] of lockers): held by " + me);

    expected.lock("utility::Waiter", &freeWaiter, " ((anonymous namespace)::freeWaiter): free");
    expected.waiter(startBlocked([] { freeWaiter.waitNoLock(0); }), "a signal");
    expected.waiter(startBlocked([] {
                        const utility::LockScope scope(freeWaiter);
                        freeWaiter.waitMicroseconds(600000000);
                    }),
                    "a signal");

    heldWaiter.lock();
    expected.lock("utility::Waiter", &heldWaiter, " ((anonymous namespace)::heldWaiter): held by " + me);
    expected.waiter(startBlocked([] { heldWaiter.lock(); }), "the lock");

    static framework::thread::PosixRWLock* const written = new framework::thread::PosixRWLock;
    written->writeLock();
    written->readLock();
    expected.lock("framework::thread::PosixRWLock", written,
                  " (written in main): held for writing by " + me + ", 2 times");
    expected.waiter(startBlocked([] { written->readLock(); }), "the lock, to read");
    expected.waiter(startBlocked([] { written->writeLock(); }), "the lock, to write");

    framework::thread::PosixRWLock read;
    read.readLock();
    read.readLock();
    expected.lock("framework::thread::PosixRWLock", &read, " (read in main): held for reading, 2 times");

    Owner owner;
    owner.waiter.lock();
    expected.lock("utility::Waiter", &owner.waiter, " (waiter of owner in main): held by " + me);

    // Only on the heap: found by the thread that waits.
    struct Hidden {
        std::uintptr_t address;
    } hidden = {reinterpret_cast<std::uintptr_t>(new utility::BufferStreamList)};
    const auto pool = [hidden] {
        return reinterpret_cast<utility::BufferStreamList*>(hidden.address);
    };
    expected.lock("utility::BufferStreamList", reinterpret_cast<void*>(hidden.address), ": free");
    expected.waiter(startBlocked([pool] {
                        pool()->Lock();
                        pool()->Wait(0);
                    }),
                    "a signal");

    expected.end();
    locksAreHeld();
    // Threads still use the locks.
    _exit(0);
}
