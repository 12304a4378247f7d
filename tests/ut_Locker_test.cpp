#include "ut_Locker.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <new>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "DebugSwitch.h"
#include "ErrorContext.h"
#include "LogCapture.h"
#include "ThreadCalls.h"
#include "ut_LockScope.h"

namespace {

using framework::Logger;
using test::expectErrorWithContext;
using utility::Locker;

constexpr const char* constructName = "utility::Locker::Locker()";
constexpr const char* lockName = "void utility::Locker::lock() const";
constexpr const char* unlockName = "void utility::Locker::unlock() const";

static_assert(!std::is_polymorphic<Locker>::value, "it has no virtual operation");
static_assert(sizeof(Locker) == sizeof(pthread_mutex_t), "it is a mutex and nothing else");
static_assert(!std::is_copy_constructible<Locker>::value, "a mutex cannot be copied");
static_assert(!std::is_copy_assignable<Locker>::value, "a mutex cannot be copied");

// Returns the result of `trylock` in another thread, which unlocks at once.
bool isFreeForAnotherThread(const Locker& locker) {
    bool taken = false;
    std::thread([&] {
        taken = locker.trylock();
        if (taken)
            locker.unlock();
    }).join();
    return taken;
}

TEST(Locker, UsageExample) {
    utility::Locker locker;
    int count = 0;
    {
        const utility::LockScope scope(locker);
        ++count;
    }
    EXPECT_EQ(count, 1);
}

TEST(Locker, IsFreeAtFirstAndHeldUntilItIsUnlocked) {
    const Locker locker;
    EXPECT_TRUE(isFreeForAnotherThread(locker));
    locker.lock();
    EXPECT_FALSE(isFreeForAnotherThread(locker));
    locker.unlock();
    EXPECT_TRUE(isFreeForAnotherThread(locker));
}

TEST(Locker, TrylockTakesTheLockOnlyWhenItIsFree) {
    const Locker locker;
    EXPECT_TRUE(locker.trylock());
    EXPECT_FALSE(isFreeForAnotherThread(locker));
    EXPECT_FALSE(locker.trylock()) << "the thread that holds it does not get it again";
    locker.unlock();
    EXPECT_TRUE(isFreeForAnotherThread(locker));
}

TEST(Locker, TrylockOnAHeldLockLogsNothing) {
    test::LogCapture log;
    const Locker locker;
    locker.lock();
    EXPECT_FALSE(isFreeForAnotherThread(locker));
    locker.unlock();
    EXPECT_EQ(log.count(), 0u);
}

TEST(Locker, TrylockThatFailsOtherwiseIsFalseAndLogsNothing) {
    test::LogCapture log;
    const Locker locker;
    test::ThreadCalls calls(&locker, sizeof locker);
    calls.answerNext(test::MUTEX_TRYLOCK, EINVAL);
    EXPECT_FALSE(locker.trylock());
    EXPECT_EQ(log.count(), 0u);
    EXPECT_TRUE(isFreeForAnotherThread(locker));
}

TEST(Locker, LetsOneThreadInAtATime) {
    const Locker locker;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int step = 0; step < 5000; ++step) {
                locker.lock();
                ++count;
                locker.unlock();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 20000);
}

TEST(Locker, LockWaitsUntilTheHolderUnlocks) {
    const Locker locker;
    std::vector<std::string> order;
    locker.lock();
    std::thread waiting([&] {
        locker.lock();
        order.push_back("second");
        locker.unlock();
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    order.push_back("first");
    locker.unlock();
    waiting.join();
    EXPECT_EQ(order, (std::vector<std::string>{"first", "second"}));
}

TEST(Locker, IsMadeAndDestroyedAsAMutex) {
    alignas(Locker) unsigned char storage[sizeof(Locker)];
    std::memset(storage, 0xA5, sizeof storage);
    test::ThreadCalls calls(storage, sizeof storage);
    const Locker* const locker = new (storage) Locker;
    locker->lock();
    locker->unlock();
    EXPECT_TRUE(locker->trylock());
    locker->unlock();
    locker->~Locker();
    EXPECT_EQ(calls.calls(),
              (std::vector<test::ThreadCall>{test::MUTEX_INIT, test::MUTEX_LOCK, test::MUTEX_UNLOCK,
                                             test::MUTEX_TRYLOCK, test::MUTEX_UNLOCK, test::MUTEX_DESTROY}));
}

TEST(Locker, WritesNoTraces) {
    const test::DebugSwitch traces(2301);
    test::LogCapture log;
    const Locker locker;
    locker.lock();
    locker.unlock();
    locker.trylock();
    locker.unlock();
    EXPECT_EQ(log.count(), 0u);
}

TEST(Locker, FailingInitIsLoggedAndTheZeroFilledMutexWorks) {
    alignas(Locker) unsigned char storage[sizeof(Locker)];
    std::memset(storage, 0xA5, sizeof storage);
    test::LogCapture log;
    test::ThreadCalls calls(storage, sizeof storage);
    calls.answerNext(test::MUTEX_INIT, ENOMEM);
    const Locker* const locker = new (storage) Locker;
    EXPECT_EQ(log.count(), 1u);
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, constructName, "initializing Consistency mutex 12"));
    locker->lock();
    EXPECT_FALSE(isFreeForAnotherThread(*locker));
    locker->unlock();
    EXPECT_TRUE(isFreeForAnotherThread(*locker));
    locker->~Locker();
    EXPECT_EQ(log.count(), 1u);
}

TEST(Locker, FailingLockIsLoggedWithItsContext) {
    const Locker locker;
    test::LogCapture log;
    test::ThreadCalls calls(&locker, sizeof locker);
    calls.answerNext(test::MUTEX_LOCK, EINVAL);
    locker.lock();
    expectErrorWithContext(log, lockName, "locking consistency mutex 22");
    EXPECT_TRUE(isFreeForAnotherThread(locker));
}

TEST(Locker, FailingUnlockIsLoggedWithItsContext) {
    const Locker locker;
    test::LogCapture log;
    locker.lock();
    {
        test::ThreadCalls calls(&locker, sizeof locker);
        calls.answerNext(test::MUTEX_UNLOCK, EPERM);
        locker.unlock();
    }
    expectErrorWithContext(log, unlockName, "unlocking consistency mutex 1");
    EXPECT_FALSE(isFreeForAnotherThread(locker));
    locker.unlock();
}

} // namespace
