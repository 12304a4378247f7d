#include "fw_ThreadInfo.h"

#include <cstring>
#include <mutex>
#include <new>

#include <limits.h>
#include <signal.h>

#include "internal/fw_SignalSafeMutex.h"
#include "internal/fw_ThreadRecords.h"

// A record is in thread-local storage, so that a signal handler can find and even create it. The TLS model ensures
// access without an allocation.
#define IN_THREAD __attribute__((tls_model("initial-exec"))) thread_local

namespace framework {

namespace {

alignas(ThreadInfo) IN_THREAD unsigned char storage[sizeof(ThreadInfo)];
IN_THREAD ThreadInfo* myself = nullptr;
IN_THREAD int removals = 0;

using RecordsGuard = std::lock_guard<SignalSafeMutex>;

SignalSafeMutex mutex;
ThreadInfo* records = nullptr;
int lastNumber = 0;
bool prepared = false;
pthread_key_t endOfThread;

// A signal handler on a new thread must not be the first to call pthread_key_create and pthread_atfork, which are not
// async-signal-safe.
__attribute__((constructor)) void prepareAtLoad() {
    ThreadRecords::prepare();
}

} // namespace

ThreadInfo* ThreadInfo::getMyself() {
    return myself;
}

ThreadInfo* ThreadInfo::MyThreadInfo() {
    return myself != nullptr ? myself : ThreadRecords::make();
}

ThreadInfo::ThreadInfo(int number) : m_number(number), m_name(), m_thread(pthread_self()), m_next(nullptr) {
    char name[16];
    const bool isNamed = pthread_getname_np(m_thread, name, sizeof name) == 0 && name[0] != '\0';
    setThreadName(isNamed ? name : "thread");
}

ThreadInfo::~ThreadInfo() = default;

void ThreadInfo::setThreadName(const char* name) {
    const std::size_t length = name != nullptr ? strnlen(name, sizeof m_name - 1) : 0;
    for (std::size_t i = 0; i < length; ++i)
        m_name[i] = name[i] == '/' ? '_' : name[i];
    std::memset(m_name + length, 0, sizeof m_name - length);
}

ThreadInfo* ThreadRecords::make() {
    const RecordsGuard guard(mutex);
    // A signal handler may have created it since.
    if (myself != nullptr)
        return myself;
    // After the last round of thread-exit destructors nothing would remove a new record from the list.
    if (removals == PTHREAD_DESTRUCTOR_ITERATIONS - 1 || !prepare())
        return nullptr;
    if (pthread_setspecific(endOfThread, storage) != 0)
        return nullptr;
    myself = new (storage) ThreadInfo(++lastNumber);
    myself->m_next = records;
    records = myself;
    return myself;
}

bool ThreadRecords::prepare() {
    if (!prepared)
        prepared = pthread_key_create(&endOfThread, remove) == 0 &&
                   pthread_atfork([] { mutex.lock(); }, [] { mutex.unlock(); }, keepOnlyMine) == 0;
    return prepared;
}

void ThreadRecords::remove(void* /*record*/) {
    const RecordsGuard guard(mutex);
    ThreadInfo** link = &records;
    while (*link != myself)
        link = &(*link)->m_next;
    *link = myself->m_next;
    myself->~ThreadInfo();
    myself = nullptr;
    ++removals;
}

void ThreadRecords::signalAll(int sig) {
    const RecordsGuard guard(mutex);
    for (const ThreadInfo* record = records; record != nullptr; record = record->m_next)
        pthread_kill(record->m_thread, sig);
}

// The other threads do not exist in the child.
void ThreadRecords::keepOnlyMine() {
    records = myself;
    if (myself != nullptr)
        myself->m_next = nullptr;
    mutex.unlock();
}

} // namespace framework
