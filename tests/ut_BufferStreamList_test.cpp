#include "ut_BufferStreamList.h"

#include <atomic>
#include <chrono>
#include <climits>
#include <ctime>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "CountingMemory.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "TraceLines.h"

namespace {

using utility::BufferStreamElement;
using utility::BufferStreamList;
using Chain = std::vector<const BufferStreamElement*>;
using Lines = std::vector<std::string>;

constexpr const char* waitName = "bool utility::BufferStreamList::Wait(long int)";
constexpr unsigned int waitSwitch = 300;
constexpr unsigned int waiterSwitch = 2301;

static_assert(!std::is_copy_constructible<BufferStreamList>::value, "a copy would own the same elements");

std::unique_ptr<BufferStreamElement> element() {
    return std::unique_ptr<BufferStreamElement>(new BufferStreamElement(8, nullptr));
}

timespec clockTime() {
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return now;
}

double secondsSince(const timespec& start) {
    const timespec now = clockTime();
    return static_cast<double>(now.tv_sec - start.tv_sec) + static_cast<double>(now.tv_nsec - start.tv_nsec) / 1e9;
}

std::string traced(const std::string& text) {
    return test::traceLine(3, waitName, text);
}

// A thread that waits without limit, and whether it was woken.
class WaitingThread {
public:
    explicit WaitingThread(BufferStreamList& list)
        : m_thread([this, &list] {
              list.Lock();
              m_waits = true;
              m_result = list.Wait(0);
              list.UnLock();
              m_woken = true;
          }) {}
    ~WaitingThread() {
        m_thread.join();
    }
    // Returns when the thread waits; it has released the lock by then.
    void untilItWaits(BufferStreamList& list) const {
        while (!m_waits)
            std::this_thread::yield();
        list.Lock();
        list.UnLock();
    }
    std::atomic<bool> m_woken{false};
    std::atomic<bool> m_result{false};

private:
    std::atomic<bool> m_waits{false};
    std::thread m_thread;
};

TEST(BufferStreamList, UsageExample) {
    BufferStreamList pool(1, 64);
    pool.Lock();
    utility::BufferStreamElement* element = pool.Allocate();
    while (element == nullptr && pool.Wait(5))
        element = pool.Allocate();
    pool.UnLock();
    ASSERT_NE(element, nullptr);
    pool.Insert(element);
    EXPECT_EQ(pool.Count(), 1);
}

TEST(BufferStreamList, StartsEmpty) {
    BufferStreamList list;
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Allocate(), nullptr);
    EXPECT_EQ(list.Next(nullptr), nullptr);
}

TEST(BufferStreamList, ThreeElementsAreAllocatedAndThenNoMore) {
    BufferStreamList list(3, 1024);
    EXPECT_EQ(list.Count(), 3);
    std::set<BufferStreamElement*> taken;
    for (int count = 2; count >= 0; --count) {
        BufferStreamElement* const e = list.Allocate();
        ASSERT_NE(e, nullptr);
        EXPECT_EQ(e->Size(), 1024);
        EXPECT_EQ(e->Next(), nullptr);
        taken.insert(e);
        EXPECT_EQ(list.Count(), count);
    }
    EXPECT_EQ(taken.size(), 3u);
    EXPECT_EQ(list.Allocate(), nullptr);
    EXPECT_EQ(list.Count(), 0);
    for (BufferStreamElement* e : taken)
        delete e;
}

TEST(BufferStreamList, CreatesNoElementsForACountBelowOne) {
    for (const int count : {0, -1, INT_MIN}) {
        test::CountingMemory memory;
        const BufferStreamList list(count, 64);
        EXPECT_EQ(list.Count(), 0);
        EXPECT_TRUE(memory.requests().empty());
    }
}

TEST(BufferStreamList, ElementsAreAllocatedFromTheMemoryObjectAndReturnedWithTheList) {
    test::CountingMemory memory;
    {
        const BufferStreamList list(3, 64);
        EXPECT_EQ(memory.outstanding(), 6u);
    }
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(BufferStreamList, FailedAllocationOfStorageThrows1238AndLeaksNothing) {
    for (const std::size_t storage : {2u, 4u, 6u}) {
        test::CountingMemory memory;
        memory.refuse(storage);
        EXPECT_FAILURE(BufferStreamList(3, 64), 1238, "ut_Buffer", "void utility::Buffer::allocBuffer()", "");
        EXPECT_EQ(memory.outstanding(), 0u) << storage;
    }
}

TEST(BufferStreamList, ElementThatCannotBeAllocatedIsMissing) {
    test::CountingMemory memory;
    memory.refuse(1);
    const BufferStreamList list(3, 64);
    EXPECT_EQ(list.Count(), 2);
}

TEST(BufferStreamList, SurvivesEachFailedAllocation) {
    const unsigned long failures = test::failEachAllocationOnce([] {
        try {
            BufferStreamList list(3, 64);
        } catch (framework::Exception* failure) {
            delete failure;
        }
    });
    EXPECT_EQ(failures, 6u);
}

TEST(BufferStreamList, NextReturnsTheElementsSuccessor) {
    BufferStreamList list(2, 8);
    BufferStreamElement* const first = list.Allocate();
    list.Insert(first);
    EXPECT_EQ(list.Next(first), first->Next());
    EXPECT_NE(list.Next(first), nullptr);
    EXPECT_EQ(list.Next(list.Next(first)), nullptr);
    EXPECT_EQ(list.Next(nullptr), nullptr);
}

TEST(BufferStreamList, InsertLinksAtTheHead) {
    BufferStreamList list;
    auto a = element();
    auto b = element();
    list.Insert(a.get());
    list.Insert(b.get());
    list.Insert(nullptr);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Allocate(), b.get());
    EXPECT_EQ(list.Allocate(), a.get());
}

TEST(BufferStreamList, InsertIntoAnEmptyListKeepsTheChain) {
    BufferStreamList list;
    auto a = element();
    auto b = element();
    a->Append(b.get());
    list.Insert(a.get());
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Allocate(), a.get());
    EXPECT_EQ(list.Allocate(), b.get());
}

TEST(BufferStreamList, InsertOfNullIntoAnEmptyListDoesNothing) {
    BufferStreamList list;
    list.Insert(nullptr);
    list.Append(nullptr);
    list.Remove(nullptr);
    EXPECT_EQ(list.Count(), 0);
}

TEST(BufferStreamList, AppendLinksAtTheEnd) {
    BufferStreamList list;
    auto a = element();
    auto b = element();
    list.Append(a.get());
    list.Append(b.get());
    list.Append(nullptr);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Allocate(), a.get());
    EXPECT_EQ(list.Allocate(), b.get());
}

TEST(BufferStreamList, AppendToAnEmptyListKeepsTheChain) {
    BufferStreamList list;
    auto a = element();
    auto b = element();
    a->Append(b.get());
    list.Append(a.get());
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Allocate(), a.get());
    EXPECT_EQ(list.Allocate(), b.get());
}

TEST(BufferStreamList, AppendToAListUnlinksTheChain) {
    BufferStreamList list;
    auto a = element();
    auto b = element();
    auto c = element();
    b->Append(c.get());
    list.Append(a.get());
    list.Append(b.get());
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(c->Next(), nullptr);
    EXPECT_EQ(list.Allocate(), a.get());
    EXPECT_EQ(list.Allocate(), b.get());
    EXPECT_EQ(list.Allocate(), nullptr);
}

TEST(BufferStreamList, RemoveUnlinksAnElement) {
    BufferStreamList list;
    auto a = element();
    auto b = element();
    auto c = element();
    for (auto* e : {a.get(), b.get(), c.get()})
        list.Append(e);
    list.Remove(b.get());
    EXPECT_EQ(b->Next(), nullptr);
    EXPECT_EQ(list.Count(), 2);
    list.Remove(a.get());
    EXPECT_EQ(list.Count(), 1);
    list.Remove(c.get());
    EXPECT_EQ(list.Count(), 0);
    list.Remove(c.get());
    EXPECT_EQ(list.Count(), 0);
}

TEST(BufferStreamList, RemoveOfNullOrAForeignElementChangesNothing) {
    BufferStreamList list(2, 8);
    auto stranger = element();
    list.Remove(stranger.get());
    list.Remove(nullptr);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(stranger->Next(), nullptr);
}

TEST(BufferStreamList, InitLeavesTheListEmptyWithoutDeleting) {
    BufferStreamList list;
    auto a = element();
    list.Append(a.get());
    list.init();
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Allocate(), nullptr);
    list.Lock();
    list.UnLock();
}

TEST(BufferStreamList, DestructionDeletesTheElements) {
    test::CountingMemory memory;
    BufferStreamElement* kept = nullptr;
    {
        BufferStreamList list(3, 8);
        kept = list.Allocate();
        list.Append(new BufferStreamElement(8, nullptr));
    }
    EXPECT_EQ(memory.outstanding(), 2u);
    delete kept;
    EXPECT_EQ(memory.outstanding(), 0u);
}

TEST(BufferStreamList, OperationsLogNothing) {
    test::LogCapture log;
    {
        BufferStreamList list(2, 8);
        list.Lock();
        list.Insert(list.Allocate());
        list.UnLock();
        list.Signal();
        list.Broadcast();
        list.Lock();
        list.Wait(-1);
        list.UnLock();
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST(BufferStreamList, OperationsDoNotLock) {
    BufferStreamList list(2, 8);
    list.Lock();
    BufferStreamElement* const e = list.Allocate();
    list.Append(e);
    list.Remove(e);
    list.Insert(e);
    EXPECT_EQ(list.Count(), 2);
    list.Signal();
    list.Broadcast();
    list.UnLock();
}

TEST(BufferStreamList, TheLockExcludesOtherThreads) {
    BufferStreamList list;
    long count = 0;
    const auto work = [&] {
        for (int i = 0; i < 10000; ++i) {
            list.Lock();
            ++count;
            list.UnLock();
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_EQ(count, 20000);
}

TEST(BufferStreamList, WaitTimesOutAtAWholeSecond) {
    for (const long seconds : {1L, 2L}) {
        BufferStreamList list;
        list.Lock();
        const timespec start = clockTime();
        const bool woken = list.Wait(seconds);
        const timespec end = clockTime();
        list.UnLock();
        EXPECT_FALSE(woken);
        EXPECT_GE(end.tv_sec, start.tv_sec + seconds);
    }
}

TEST(BufferStreamList, TimeOutMayComeUpToOneSecondEarly) {
    BufferStreamList list;
    double shortest = 10;
    for (int attempt = 0; attempt < 10 && shortest > 0.9; ++attempt) {
        while (clockTime().tv_nsec < 300000000 || clockTime().tv_nsec > 500000000)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        list.Lock();
        const timespec start = clockTime();
        EXPECT_FALSE(list.Wait(1));
        shortest = std::min(shortest, secondsSince(start));
        list.UnLock();
    }
    EXPECT_LE(shortest, 0.9);
}

TEST(BufferStreamList, WaitUntilThePastTimesOutAtOnce) {
    for (const long seconds : {-1L, -1000000L, LONG_MIN}) {
        BufferStreamList list;
        list.Lock();
        EXPECT_FALSE(list.Wait(seconds)) << seconds;
        list.UnLock();
    }
}

TEST(BufferStreamList, WaitOfTheLongestTimeIsWoken) {
    BufferStreamList list;
    std::atomic<bool> done{false};
    std::thread waker([&] {
        while (!done) {
            list.Lock();
            list.Signal();
            list.UnLock();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    list.Lock();
    EXPECT_TRUE(list.Wait(LONG_MAX));
    EXPECT_TRUE(list.Wait(1000000000));
    list.UnLock();
    done = true;
    waker.join();
}

TEST(BufferStreamList, WaitWithoutLimitIsWokenBySignal) {
    BufferStreamList list;
    WaitingThread thread(list);
    thread.untilItWaits(list);
    while (!thread.m_woken)
        list.Signal();
    EXPECT_TRUE(thread.m_result);
}

TEST(BufferStreamList, TimedWaitIsWokenBySignal) {
    BufferStreamList list;
    list.Lock();
    std::thread waker([&] {
        list.Lock();
        list.UnLock();
        list.Signal();
    });
    EXPECT_TRUE(list.Wait(100));
    list.UnLock();
    waker.join();
}

TEST(BufferStreamList, BroadcastWakesEveryWaitingThread) {
    BufferStreamList list;
    WaitingThread first(list);
    WaitingThread second(list);
    WaitingThread third(list);
    for (const WaitingThread* thread : {&first, &second, &third})
        thread->untilItWaits(list);
    list.Broadcast();
    while (!first.m_woken || !second.m_woken || !third.m_woken)
        std::this_thread::yield();
    EXPECT_TRUE(first.m_result && second.m_result && third.m_result);
}

TEST(BufferStreamList, WaitingIsTracedOnlyWithItsSwitch) {
    test::LogCapture log;
    BufferStreamList list;
    list.Lock();
    {
        const test::DebugSwitch waiter(waiterSwitch);
        list.Wait(-1);
        list.Signal();
        list.Broadcast();
        list.UnLock();
        list.Lock();
    }
    EXPECT_EQ(log.count(), 0u);
    const test::DebugSwitch tracing(waitSwitch);
    list.Signal();
    list.Broadcast();
    EXPECT_EQ(log.count(), 0u);
    list.Wait(-1);
    list.Wait(-2);
    list.UnLock();
    EXPECT_EQ(test::traceLines(log),
              (Lines{traced("timed Wait .... (1 waiters)"), traced("timed Wait .... (1 waiters)")}));
}

TEST(BufferStreamList, TracesShowHowManyThreadsWait) {
    const test::DebugSwitch tracing(waitSwitch);
    test::LogCapture log;
    BufferStreamList list;
    {
        WaitingThread first(list);
        first.untilItWaits(list);
        WaitingThread second(list);
        second.untilItWaits(list);
        list.Lock();
        list.Wait(-1);
        list.UnLock();
        while (!first.m_woken || !second.m_woken)
            list.Broadcast();
        list.Lock();
        list.Wait(-1);
        list.UnLock();
    }
    EXPECT_EQ(test::traceLines(log),
              (Lines{traced("Wait .... (1 waiters)"), traced("Wait .... (2 waiters)"),
                     traced("timed Wait .... (3 waiters)"), traced("timed Wait .... (1 waiters)")}));
}

TEST(BufferStreamList, ThreadsShareAPool) {
    const int rounds = 20000;
    BufferStreamList pool(2, 16);
    const auto work = [&](unsigned int number) {
        for (int i = 0; i < rounds; ++i) {
            pool.Lock();
            BufferStreamElement* e = pool.Allocate();
            while (e == nullptr) {
                pool.Wait(0);
                e = pool.Allocate();
            }
            pool.UnLock();
            e->Rewind();
            e->PutParmUint32(number);
            unsigned int value = 0;
            ASSERT_TRUE(e->GetParmUint32(&value));
            ASSERT_EQ(value, number);
            pool.Lock();
            pool.Insert(e);
            pool.UnLock();
            pool.Signal();
        }
    };
    std::vector<std::thread> threads;
    for (unsigned int number = 0; number < 4; ++number)
        threads.emplace_back(work, number);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(pool.Count(), 2);
}

} // namespace
