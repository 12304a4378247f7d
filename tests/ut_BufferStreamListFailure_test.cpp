#include "ut_BufferStreamList.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "LogCapture.h"
#include "TraceLines.h"

// A program of its own, as it replaces the platform's calls, and a single-threaded one: its conditions are never waited
// on.

namespace {

using test::traceLine;
using utility::BufferStreamList;
using Lines = std::vector<std::string>;

// The call that fails for the mutex and condition inside one object; calls for other objects work as usual.
struct {
    const char* call = nullptr;
    const void* object = nullptr;
    int result = 0;
} failing;

bool isIn(const void* place) {
    const auto* begin = static_cast<const char*>(failing.object);
    const auto* at = static_cast<const char*>(place);
    return begin != nullptr && at >= begin && at < begin + sizeof(BufferStreamList);
}

bool fails(const char* name, const void* place) {
    return failing.call != nullptr && std::strcmp(failing.call, name) == 0 && isIn(place);
}

int onMutex(const char* name, pthread_mutex_t* mutex) {
    if (fails(name, mutex))
        return failing.result;
    return reinterpret_cast<int (*)(pthread_mutex_t*)>(dlsym(RTLD_NEXT, name))(mutex);
}

int onCondition(const char* name, pthread_cond_t* condition) {
    return fails(name, condition) ? failing.result : 0;
}

class Failing {
public:
    Failing(const char* call, const void* object, int result) {
        failing = {call, object, result};
    }
    Failing(const Failing&) = delete;
    Failing& operator=(const Failing&) = delete;
    ~Failing() {
        failing = {};
    }
};

constexpr const char* initName = "void utility::BufferStreamList::init()";
constexpr const char* lockName = "void utility::BufferStreamList::Lock()";
constexpr const char* unlockName = "void utility::BufferStreamList::UnLock()";
constexpr const char* waitName = "bool utility::BufferStreamList::Wait(long int)";
constexpr const char* signalName = "void utility::BufferStreamList::Signal()";
constexpr const char* broadcastName = "void utility::BufferStreamList::Broadcast()";

} // namespace

extern "C" {

int pthread_mutex_init(pthread_mutex_t* mutex, const pthread_mutexattr_t* attributes) noexcept {
    if (fails("pthread_mutex_init", mutex))
        return failing.result;
    using Call = int (*)(pthread_mutex_t*, const pthread_mutexattr_t*);
    return reinterpret_cast<Call>(dlsym(RTLD_NEXT, "pthread_mutex_init"))(mutex, attributes);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
    return onMutex("pthread_mutex_lock", mutex);
}

int pthread_mutex_unlock(pthread_mutex_t* mutex) noexcept {
    return onMutex("pthread_mutex_unlock", mutex);
}

int pthread_cond_init(pthread_cond_t* condition, const pthread_condattr_t*) noexcept {
    return onCondition("pthread_cond_init", condition);
}

int pthread_cond_wait(pthread_cond_t* condition, pthread_mutex_t*) {
    return onCondition("pthread_cond_wait", condition);
}

int pthread_cond_timedwait(pthread_cond_t* condition, pthread_mutex_t*, const timespec*) {
    return onCondition("pthread_cond_timedwait", condition);
}

int pthread_cond_signal(pthread_cond_t* condition) noexcept {
    return onCondition("pthread_cond_signal", condition);
}

int pthread_cond_broadcast(pthread_cond_t* condition) noexcept {
    return onCondition("pthread_cond_broadcast", condition);
}

} // extern "C"

namespace {

TEST(BufferStreamListFailure, FailedInitializationIsLoggedAndConstructionContinues) {
    alignas(BufferStreamList) unsigned char place[sizeof(BufferStreamList)];
    test::LogCapture log;
    for (const char* call : {"pthread_mutex_init", "pthread_cond_init"}) {
        const Failing failure(call, place, EAGAIN);
        auto* const list = new (place) BufferStreamList;
        EXPECT_EQ(list->Count(), 0);
        list->~BufferStreamList();
    }
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, initName, "initializing Consistency mutex 11"),
                                            traceLine(0, initName, "initializing wait condition 11")}));
}

TEST(BufferStreamListFailure, FailedLockIsOnlyLogged) {
    test::LogCapture log;
    BufferStreamList list;
    const Failing failure("pthread_mutex_lock", &list, EINVAL);
    list.Lock();
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, lockName, "locking consistency mutex 22")}));
}

TEST(BufferStreamListFailure, FailedUnlockIsOnlyLogged) {
    test::LogCapture log;
    BufferStreamList list;
    {
        const Failing failure("pthread_mutex_unlock", &list, EPERM);
        list.Lock();
        list.UnLock();
        EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, unlockName, "unlocking consistency mutex 1")}));
    }
    list.UnLock();
    EXPECT_EQ(log.count(), 1u);
}

TEST(BufferStreamListFailure, FailedWaitIsLoggedAndCountsAsWoken) {
    test::LogCapture log;
    BufferStreamList list;
    list.Lock();
    {
        const Failing failure("pthread_cond_wait", &list, EINVAL);
        EXPECT_TRUE(list.Wait(0));
    }
    {
        const Failing failure("pthread_cond_timedwait", &list, EPERM);
        EXPECT_TRUE(list.Wait(1));
    }
    list.UnLock();
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, waitName, "Wait condition error 22"),
                                            traceLine(0, waitName, "Wait condition error 1")}));
}

TEST(BufferStreamListFailure, TimedWaitThatTimesOutIsNotAFailure) {
    test::LogCapture log;
    BufferStreamList list;
    list.Lock();
    const Failing failure("pthread_cond_timedwait", &list, ETIMEDOUT);
    EXPECT_FALSE(list.Wait(1000));
    list.UnLock();
    EXPECT_EQ(log.count(), 0u);
}

TEST(BufferStreamListFailure, FailedWakeUpsAreOnlyLogged) {
    test::LogCapture log;
    BufferStreamList list;
    {
        const Failing failure("pthread_cond_signal", &list, EINVAL);
        list.Signal();
    }
    {
        const Failing failure("pthread_cond_broadcast", &list, EINVAL);
        list.Broadcast();
    }
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, signalName, "Signal condition error 22"),
                                            traceLine(0, broadcastName, "Broadcast condition error 22")}));
}

TEST(BufferStreamListFailure, DestructorDoesNotBroadcast) {
    test::LogCapture log;
    alignas(BufferStreamList) unsigned char place[sizeof(BufferStreamList)];
    const Failing failure("pthread_cond_broadcast", place, EINVAL);
    auto* const list = new (place) BufferStreamList;
    list->~BufferStreamList();
    EXPECT_EQ(log.count(), 0u);
}

} // namespace
