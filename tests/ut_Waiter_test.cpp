#include "ut_Waiter.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <ctime>
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
#include "TraceLines.h"
#include "ut_LockScope.h"

namespace {

using framework::Logger;
using test::expectErrorWithContext;
using test::traceLine;
using utility::Waiter;
using Lines = std::vector<std::string>;
using Calls = std::vector<test::ThreadCall>;
using Clock = std::chrono::steady_clock;

constexpr unsigned int traceSwitch = 2301;
constexpr const char* constructName = "utility::Waiter::Waiter()";
constexpr const char* lockName = "void utility::Waiter::lock() const";
constexpr const char* unlockName = "void utility::Waiter::unlock() const";
constexpr const char* waitName = "bool utility::Waiter::wait(long int) const";
constexpr const char* waitMicrosecondsName = "bool utility::Waiter::waitMicroseconds(long long unsigned int) const";
constexpr const char* signalName = "void utility::Waiter::signal() const";
constexpr const char* broadcastName = "void utility::Waiter::broadcast() const";

static_assert(!std::is_polymorphic<Waiter>::value, "it has no virtual operation");
static_assert(!std::is_copy_constructible<Waiter>::value, "a mutex cannot be copied");
static_assert(!std::is_copy_assignable<Waiter>::value, "a mutex cannot be copied");

timespec now() {
    timespec time;
    clock_gettime(CLOCK_REALTIME, &time);
    return time;
}

double secondsOf(const timespec& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// A thread that calls `wait` on `waiter` with the lock held.
class WaitingThread {
public:
    template<class Wait>
    WaitingThread(Waiter& waiter, Wait wait)
        : m_result(UNKNOWN), m_thread([this, &waiter, wait] {
              waiter.lock();
              m_ready = true;
              const bool result = wait();
              waiter.unlock();
              m_result = result ? WOKEN : TIMED_OUT;
          }) {
        while (!m_ready)
            std::this_thread::yield();
        // Waits until the thread has released the lock by waiting.
        waiter.lock();
        waiter.unlock();
    }
    ~WaitingThread() {
        join();
    }

    bool isWaiting() const {
        return m_result == UNKNOWN;
    }
    void join() {
        if (m_thread.joinable())
            m_thread.join();
    }
    bool isWoken() {
        join();
        return m_result == WOKEN;
    }

private:
    enum Result { UNKNOWN, WOKEN, TIMED_OUT };

    std::atomic<bool> m_ready{false};
    std::atomic<Result> m_result;
    std::thread m_thread;
};

TEST(Waiter, UsageExample) {
    utility::Waiter waiter;
    int queued = 0;
    std::thread sender([&] {
        const utility::LockScope scope(waiter);
        queued = 4;
        waiter.signal();
    });
    int taken = 0;
    {
        const utility::LockScope scope(waiter);
        while (queued == 0)
            waiter.wait(0);
        taken = queued;
    }
    sender.join();
    EXPECT_EQ(taken, 4);
}

TEST(Waiter, HoldsItsMutexItsConditionAndItsCountInThatOrder) {
    alignas(Waiter) unsigned char storage[sizeof(Waiter)];
    std::memset(storage, 0xA5, sizeof storage);
    const Waiter* const waiter = new (storage) Waiter;
    waiter->lock();
    EXPECT_EQ(pthread_mutex_trylock(reinterpret_cast<pthread_mutex_t*>(storage)), EBUSY);
    waiter->unlock();
    int32_t waiters = -1;
    std::memcpy(&waiters, storage + sizeof(pthread_mutex_t) + sizeof(pthread_cond_t), sizeof waiters);
    EXPECT_EQ(waiters, 0);
    waiter->~Waiter();
}

TEST(Waiter, IsMadeOfAMutexAndAConditionAndDestroyedAfterABroadcast) {
    alignas(Waiter) unsigned char storage[sizeof(Waiter)] = {};
    test::ThreadCalls calls(storage, sizeof storage);
    const Waiter* const waiter = new (storage) Waiter;
    EXPECT_EQ(calls.calls(), (Calls{test::MUTEX_INIT, test::CONDITION_INIT}));
    waiter->~Waiter();
    EXPECT_EQ(calls.calls(), (Calls{test::MUTEX_INIT, test::CONDITION_INIT, test::CONDITION_BROADCAST,
                                    test::CONDITION_DESTROY, test::MUTEX_DESTROY}));
}

TEST(Waiter, LetsOneThreadInAtATime) {
    const Waiter waiter;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int step = 0; step < 5000; ++step) {
                waiter.lock();
                ++count;
                waiter.unlock();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 20000);
}

// Waking

TEST(Waiter, WaitWithoutALimitLastsUntilASignal) {
    Waiter waiter;
    WaitingThread seconds(waiter, [&] { return waiter.wait(0); });
    WaitingThread microseconds(waiter, [&] { return waiter.waitMicroseconds(0); });
    std::this_thread::sleep_for(std::chrono::milliseconds(1200));
    EXPECT_TRUE(seconds.isWaiting());
    EXPECT_TRUE(microseconds.isWaiting());
    waiter.broadcast();
    EXPECT_TRUE(seconds.isWoken());
    EXPECT_TRUE(microseconds.isWoken());
}

TEST(Waiter, TimedWaitsAreWokenBeforeTheirTimeOut) {
    Waiter waiter;
    const Clock::time_point start = Clock::now();
    WaitingThread seconds(waiter, [&] { return waiter.wait(3600); });
    waiter.signal();
    EXPECT_TRUE(seconds.isWoken());
    WaitingThread microseconds(waiter, [&] { return waiter.waitMicroseconds(3600000000ULL); });
    waiter.signal();
    EXPECT_TRUE(microseconds.isWoken());
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(60));
}

TEST(Waiter, SignalWakesOneOfTwo) {
    Waiter waiter;
    WaitingThread first(waiter, [&] { return waiter.wait(0); });
    WaitingThread second(waiter, [&] { return waiter.wait(0); });
    test::ThreadCalls calls(&waiter, sizeof waiter);
    waiter.signal();
    EXPECT_EQ(calls.calls(), Calls{test::CONDITION_SIGNAL});
    while (first.isWaiting() && second.isWaiting())
        std::this_thread::yield();
    waiter.broadcast();
    EXPECT_TRUE(first.isWoken());
    EXPECT_TRUE(second.isWoken());
}

TEST(Waiter, BroadcastWakesAll) {
    Waiter waiter;
    WaitingThread first(waiter, [&] { return waiter.wait(0); });
    WaitingThread second(waiter, [&] { return waiter.wait(3600); });
    WaitingThread third(waiter, [&] { return waiter.waitMicroseconds(0); });
    WaitingThread fourth(waiter, [&] { return waiter.waitMicroseconds(3600000000ULL); });
    waiter.broadcast();
    EXPECT_TRUE(first.isWoken());
    EXPECT_TRUE(second.isWoken());
    EXPECT_TRUE(third.isWoken());
    EXPECT_TRUE(fourth.isWoken());
}

TEST(Waiter, WaitHoldsTheLockAgainWhenItReturns) {
    Waiter waiter;
    waiter.lock();
    EXPECT_FALSE(waiter.waitMicroseconds(1));
    bool taken = true;
    std::thread([&] { taken = pthread_mutex_trylock(reinterpret_cast<pthread_mutex_t*>(&waiter)) == 0; }).join();
    EXPECT_FALSE(taken);
    waiter.unlock();
}

TEST(Waiter, DestructionWakesTheWaitingThreadsBeforeTheConditionGoes) {
    alignas(Waiter) static unsigned char storage[sizeof(Waiter)];
    Waiter* const waiter = new (storage) Waiter;
    WaitingThread first(*waiter, [=] { return waiter->wait(0); });
    WaitingThread second(*waiter, [=] { return waiter->waitMicroseconds(0); });
    test::ThreadCalls calls(storage, sizeof storage);
    calls.beforeNext(test::CONDITION_DESTROY, [&] {
        EXPECT_TRUE(first.isWoken());
        EXPECT_TRUE(second.isWoken());
    });
    waiter->~Waiter();
    EXPECT_EQ(calls.calls(), (Calls{test::CONDITION_BROADCAST, test::CONDITION_DESTROY, test::MUTEX_DESTROY}));
}

// Time-outs

// The time-out that a timed wait asks the platform for; it is answered at once.
template<class Wait>
timespec deadlineOf(const Waiter& waiter, Wait wait) {
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::CONDITION_TIMEDWAIT, ETIMEDOUT);
    EXPECT_FALSE(wait());
    EXPECT_EQ(calls.calls(), Calls{test::CONDITION_TIMEDWAIT});
    return calls.deadline();
}

TEST(Waiter, TimeOutInSecondsFallsOnAWholeSecond) {
    const Waiter waiter;
    for (const long seconds : {1L, 2L, 59L, 3600L, 1000000L}) {
        const timespec before = now();
        const timespec deadline = deadlineOf(waiter, [&] { return waiter.wait(seconds); });
        const timespec after = now();
        EXPECT_EQ(deadline.tv_nsec, 0);
        EXPECT_GE(deadline.tv_sec, before.tv_sec + seconds);
        EXPECT_LE(deadline.tv_sec, after.tv_sec + seconds);
    }
}

TEST(Waiter, TimeOutInMicrosecondsReplacesTheSubSecondPart) {
    const Waiter waiter;
    for (const unsigned long long us : {1ULL, 999999ULL, 1000000ULL, 1000001ULL, 1500000ULL, 3600000007ULL}) {
        const timespec before = now();
        const timespec deadline = deadlineOf(waiter, [&] { return waiter.waitMicroseconds(us); });
        const timespec after = now();
        const auto seconds = static_cast<time_t>(us / 1000000);
        EXPECT_EQ(deadline.tv_nsec, static_cast<long>(us % 1000000) * 1000) << us;
        EXPECT_GE(deadline.tv_sec, before.tv_sec + seconds) << us;
        EXPECT_LE(deadline.tv_sec, after.tv_sec + seconds) << us;
    }
}

TEST(Waiter, TimeOutThatThePlatformCannotExpressIsLate) {
    const Waiter waiter;
    const timespec before = now();
    EXPECT_GT(deadlineOf(waiter, [&] { return waiter.wait(LONG_MAX); }).tv_sec, before.tv_sec);
    const timespec microseconds = deadlineOf(waiter, [&] { return waiter.waitMicroseconds(ULLONG_MAX); });
    EXPECT_GT(microseconds.tv_sec, before.tv_sec);
    EXPECT_GE(microseconds.tv_nsec, 0);
    EXPECT_LT(microseconds.tv_nsec, 1000000000);
}

TEST(Waiter, TimeOutInThePastIsOverAtOnce) {
    Waiter waiter;
    const Clock::time_point start = Clock::now();
    EXPECT_FALSE(waiter.waitNoLock(-1));
    EXPECT_FALSE(waiter.waitNoLock(-1000));
    EXPECT_FALSE(waiter.waitMicrosecondsNoLock(1));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(30));
}

TEST(Waiter, WaitOfOneSecondTimesOutAtTheNextWholeSecond) {
    Waiter waiter;
    double shortest = 100;
    for (int attempt = 0; attempt < 10 && shortest >= 0.9; ++attempt) {
        const timespec time = now();
        const long wanted = 700000000;
        std::this_thread::sleep_for(std::chrono::nanoseconds((wanted - time.tv_nsec + 1000000000) % 1000000000));
        const timespec start = now();
        EXPECT_FALSE(waiter.waitNoLock(1));
        const timespec end = now();
        EXPECT_GE(end.tv_sec, start.tv_sec + 1);
        EXPECT_LT(secondsOf(end) - secondsOf(start), 60);
        shortest = std::min(shortest, secondsOf(end) - secondsOf(start));
    }
    EXPECT_LT(shortest, 0.9) << "a whole second was waited for";
}

TEST(Waiter, WaitOfOneAndAHalfSecondsTimesOutAtTheHalfOfTheNextSecond) {
    Waiter waiter;
    double shortest = 100;
    for (int attempt = 0; attempt < 10 && shortest >= 1.4; ++attempt) {
        const timespec time = now();
        const long wanted = 700000000;
        std::this_thread::sleep_for(std::chrono::nanoseconds((wanted - time.tv_nsec + 1000000000) % 1000000000));
        const timespec start = now();
        EXPECT_FALSE(waiter.waitMicrosecondsNoLock(1500000));
        const timespec end = now();
        EXPECT_GE(secondsOf(end), static_cast<double>(start.tv_sec) + 1.5);
        shortest = std::min(shortest, secondsOf(end) - secondsOf(start));
    }
    EXPECT_LT(shortest, 1.4) << "the present fraction of a second was added";
}

TEST(Waiter, TimedOutWaitIsFalseAndLogsNothing) {
    test::LogCapture log;
    Waiter waiter;
    waiter.lock();
    EXPECT_FALSE(waiter.wait(1));
    EXPECT_FALSE(waiter.waitMicroseconds(1000));
    waiter.unlock();
    EXPECT_FALSE(waiter.waitNoLock(1));
    EXPECT_FALSE(waiter.waitMicrosecondsNoLock(1000));
    EXPECT_EQ(log.count(), 0u);
}

// Without the lock

TEST(Waiter, NoLockVariantsTakeTheLockAndGiveItBack) {
    Waiter waiter;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::CONDITION_TIMEDWAIT, 0);
    EXPECT_TRUE(waiter.waitNoLock(1));
    calls.answerNext(test::CONDITION_TIMEDWAIT, ETIMEDOUT);
    EXPECT_FALSE(waiter.waitMicrosecondsNoLock(1));
    calls.answerNext(test::CONDITION_WAIT, 0);
    EXPECT_TRUE(waiter.waitNoLock(0));
    calls.answerNext(test::CONDITION_WAIT, 0);
    EXPECT_TRUE(waiter.waitMicrosecondsNoLock(0));
    EXPECT_EQ(calls.calls(), (Calls{test::MUTEX_LOCK, test::CONDITION_TIMEDWAIT, test::MUTEX_UNLOCK, //
                                    test::MUTEX_LOCK, test::CONDITION_TIMEDWAIT, test::MUTEX_UNLOCK, //
                                    test::MUTEX_LOCK, test::CONDITION_WAIT, test::MUTEX_UNLOCK,      //
                                    test::MUTEX_LOCK, test::CONDITION_WAIT, test::MUTEX_UNLOCK}));
}

TEST(Waiter, NoLockVariantsAreWokenBySignals) {
    Waiter waiter;
    std::atomic<int> woken{0};
    std::thread first([&] { woken += waiter.waitNoLock(0) ? 1 : 0; });
    std::thread second([&] { woken += waiter.waitMicrosecondsNoLock(0) ? 1 : 0; });
    while (woken < 2) {
        waiter.broadcast();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    first.join();
    second.join();
}

TEST(Waiter, PlainWaitsLeaveTheLockAlone) {
    const Waiter waiter;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::CONDITION_WAIT, 0);
    EXPECT_TRUE(waiter.wait(0));
    calls.answerNext(test::CONDITION_WAIT, 0);
    EXPECT_TRUE(waiter.waitMicroseconds(0));
    waiter.signal();
    waiter.broadcast();
    EXPECT_EQ(calls.calls(),
              (Calls{test::CONDITION_WAIT, test::CONDITION_WAIT, test::CONDITION_SIGNAL, test::CONDITION_BROADCAST}));
}

// Traces

TEST(Waiter, TracesLockAndUnlock) {
    const test::DebugSwitch traces(traceSwitch);
    test::LogCapture log;
    const Waiter waiter;
    waiter.lock();
    waiter.unlock();
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, lockName, "Locking ....."), traceLine(3, unlockName, ".....  Unlocking")}));
}

TEST(Waiter, TracesSignalButNoBroadcast) {
    const test::DebugSwitch traces(traceSwitch);
    test::LogCapture log;
    {
        const Waiter waiter;
        waiter.signal();
        waiter.broadcast();
    }
    EXPECT_EQ(test::traceLines(log), Lines{traceLine(3, signalName, "Signal")});
}

TEST(Waiter, TracesWaitsWithoutALimit) {
    const test::DebugSwitch traces(traceSwitch);
    const Waiter waiter;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    test::LogCapture log;
    calls.answerNext(test::CONDITION_WAIT, 0);
    waiter.wait(0);
    calls.answerNext(test::CONDITION_WAIT, 0);
    waiter.waitMicroseconds(0);
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, waitName, "Waiting: 0"), traceLine(3, waitName, "Wait .... (1 waiters)"),
                     traceLine(3, waitMicrosecondsName, "Waiting: 0"),
                     traceLine(3, waitMicrosecondsName, "Wait .... (1 waiters)")}));
}

TEST(Waiter, TracesTimedWaits) {
    const test::DebugSwitch traces(traceSwitch);
    const Waiter waiter;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    test::LogCapture log;
    calls.answerNext(test::CONDITION_TIMEDWAIT, ETIMEDOUT);
    waiter.wait(3600);
    calls.answerNext(test::CONDITION_TIMEDWAIT, 0);
    waiter.wait(-1);
    calls.answerNext(test::CONDITION_TIMEDWAIT, ETIMEDOUT);
    waiter.waitMicroseconds(4294967295ULL);
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(3, waitName, "Waiting: 3600"),               //
                                            traceLine(3, waitName, "timed Wait .... (1 waiters)"), //
                                            traceLine(3, waitName, "Waiting: -1"),                 //
                                            traceLine(3, waitName, "timed Wait .... (1 waiters)"), //
                                            traceLine(3, waitMicrosecondsName, "Waiting: 4294967295"),
                                            traceLine(3, waitMicrosecondsName, "timed Wait .... (1 waiters)")}));
}

TEST(Waiter, TracesTheStepsOfANoLockWait) {
    const test::DebugSwitch traces(traceSwitch);
    Waiter waiter;
    test::LogCapture log;
    EXPECT_FALSE(waiter.waitMicrosecondsNoLock(1));
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, lockName, "Locking ....."), traceLine(3, waitMicrosecondsName, "Waiting: 1"),
                     traceLine(3, waitMicrosecondsName, "timed Wait .... (1 waiters)"),
                     traceLine(3, unlockName, ".....  Unlocking")}));
    log.clear();
    EXPECT_FALSE(waiter.waitNoLock(1));
    EXPECT_EQ(
        test::traceLines(log),
        (Lines{traceLine(3, lockName, "Locking ....."), traceLine(3, waitName, "Waiting: 1"),
               traceLine(3, waitName, "timed Wait .... (1 waiters)"), traceLine(3, unlockName, ".....  Unlocking")}));
}

TEST(Waiter, CountsTheThreadsThatAreInsideAWait) {
    Waiter waiter;
    const test::DebugSwitch traces(traceSwitch);
    test::LogCapture log;
    {
        WaitingThread first(waiter, [&] { return waiter.wait(0); });
        WaitingThread second(waiter, [&] { return waiter.waitMicroseconds(3600000000ULL); });
        waiter.lock();
        waiter.waitMicroseconds(1);
        waiter.wait(-1);
        waiter.unlock();
        waiter.broadcast();
    }
    waiter.waitMicrosecondsNoLock(1);
    Lines waits;
    for (const std::string& text : log.texts()) {
        if (text.find("waiters)") != std::string::npos)
            waits.push_back(text);
    }
    EXPECT_EQ(waits, (Lines{"Wait .... (1 waiters)", "timed Wait .... (2 waiters)", "timed Wait .... (3 waiters)",
                            "timed Wait .... (3 waiters)", "timed Wait .... (1 waiters)"}));
}

TEST(Waiter, WritesNoTracesWithTheSwitchOff) {
    test::LogCapture log;
    Waiter waiter;
    waiter.lock();
    waiter.waitMicroseconds(1);
    waiter.unlock();
    waiter.waitNoLock(-1);
    waiter.signal();
    waiter.broadcast();
    EXPECT_EQ(log.count(), 0u);
}

// Errors

TEST(Waiter, FailingInitsAreLoggedAndTheZeroFilledPartsWork) {
    alignas(Waiter) unsigned char storage[sizeof(Waiter)];
    std::memset(storage, 0xA5, sizeof storage);
    test::LogCapture log;
    Waiter* waiter = nullptr;
    {
        test::ThreadCalls calls(storage, sizeof storage);
        calls.answerNext(test::MUTEX_INIT, ENOMEM);
        calls.answerNext(test::CONDITION_INIT, EAGAIN);
        waiter = new (storage) Waiter;
        EXPECT_EQ(calls.calls(), (Calls{test::MUTEX_INIT, test::CONDITION_INIT}));
    }
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, constructName, "initializing Consistency mutex 12"),
                                            traceLine(0, constructName, "initializing wait condition 11")}));
    {
        WaitingThread waiting(*waiter, [=] { return waiter->wait(0); });
        waiter->signal();
        EXPECT_TRUE(waiting.isWoken());
    }
    waiter->~Waiter();
    EXPECT_EQ(log.count(), 2u);
}

TEST(Waiter, FailingLockIsLoggedWithItsContext) {
    const Waiter waiter;
    test::LogCapture log;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::MUTEX_LOCK, EINVAL);
    waiter.lock();
    expectErrorWithContext(log, lockName, "locking consistency mutex 22");
}

TEST(Waiter, FailingUnlockIsLoggedWithItsContext) {
    const Waiter waiter;
    test::LogCapture log;
    waiter.lock();
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::MUTEX_UNLOCK, EPERM);
    waiter.unlock();
    expectErrorWithContext(log, unlockName, "unlocking consistency mutex 1");
    waiter.unlock();
}

TEST(Waiter, FailingWaitIsLoggedAndCountsAsWoken) {
    const Waiter waiter;
    test::LogCapture log;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::CONDITION_WAIT, EINVAL);
    EXPECT_TRUE(waiter.wait(0));
    calls.answerNext(test::CONDITION_WAIT, EPERM);
    EXPECT_TRUE(waiter.waitMicroseconds(0));
    calls.answerNext(test::CONDITION_TIMEDWAIT, EINVAL);
    EXPECT_TRUE(waiter.wait(1));
    calls.answerNext(test::CONDITION_TIMEDWAIT, EPERM);
    EXPECT_TRUE(waiter.waitMicroseconds(1));
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, waitName, "Wait condition error 22"),            //
                                            traceLine(0, waitMicrosecondsName, "Wait condition error 1"), //
                                            traceLine(0, waitName, "Wait condition error 22"),            //
                                            traceLine(0, waitMicrosecondsName, "Wait condition error 1")}));
}

TEST(Waiter, WaitWithoutALimitThatReportsATimeOutIsAnError) {
    const Waiter waiter;
    test::LogCapture log;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::CONDITION_WAIT, ETIMEDOUT);
    EXPECT_TRUE(waiter.wait(0));
    EXPECT_EQ(test::traceLines(log), Lines{traceLine(0, waitName, "Wait condition error 110")});
}

TEST(Waiter, FailedWaitsLeaveTheCountAsItWas) {
    const Waiter waiter;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    test::LogCapture log;
    for (const int result : {0, EINVAL, ETIMEDOUT}) {
        calls.answerNext(test::CONDITION_TIMEDWAIT, result);
        waiter.wait(1);
        calls.answerNext(test::CONDITION_TIMEDWAIT, result);
        waiter.waitMicroseconds(1);
        calls.answerNext(test::CONDITION_WAIT, result);
        waiter.wait(0);
        calls.answerNext(test::CONDITION_WAIT, result);
        waiter.waitMicroseconds(0);
    }
    log.clear();
    const test::DebugSwitch traces(traceSwitch);
    calls.answerNext(test::CONDITION_WAIT, 0);
    waiter.wait(0);
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, waitName, "Wait .... (1 waiters)"));
}

TEST(Waiter, FailingSignalAndBroadcastAreLogged) {
    const Waiter waiter;
    test::LogCapture log;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::CONDITION_SIGNAL, EINVAL);
    waiter.signal();
    calls.answerNext(test::CONDITION_BROADCAST, EPERM);
    waiter.broadcast();
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, signalName, "Signal condition error 22"),
                                            traceLine(0, broadcastName, "Broadcast condition error 1")}));
}

TEST(Waiter, TracesComeBeforeTheErrors) {
    const test::DebugSwitch traces(traceSwitch);
    const Waiter waiter;
    test::LogCapture log;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    calls.answerNext(test::CONDITION_TIMEDWAIT, EINVAL);
    waiter.wait(1);
    calls.answerNext(test::CONDITION_SIGNAL, EINVAL);
    waiter.signal();
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, waitName, "Waiting: 1"), traceLine(3, waitName, "timed Wait .... (1 waiters)"),
                     traceLine(0, waitName, "Wait condition error 22"), traceLine(3, signalName, "Signal"),
                     traceLine(0, signalName, "Signal condition error 22")}));
}

} // namespace
