#include "fw_GenericServiceManager.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <pthread.h>
#include <signal.h>

#include <gtest/gtest.h>

#include "fw_ThreadInfo.h"
#include "support/ChildProcess.h"

using framework::GenericServiceManager;
using framework::ThreadInfo;

namespace {

thread_local std::atomic<int> mySignals{0};
std::atomic<int> allSignals{0};

void count(int) {
    ++mySignals;
    ++allSignals;
}

class Handler {
public:
    Handler() {
        struct sigaction action = {};
        action.sa_handler = count;
        action.sa_flags = SA_RESTART;
        sigaction(SIGUSR2, &action, &m_former);
        allSignals = 0;
        mySignals = 0;
    }
    ~Handler() {
        sigaction(SIGUSR2, &m_former, nullptr);
    }

private:
    struct sigaction m_former = {};
};

bool eventually(bool (*condition)()) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!condition() && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    return condition();
}

TEST(GenericServiceManager, UsageExample) {
    const Handler handler;
    ThreadInfo::MyThreadInfo();
    framework::GenericServiceManager::SignalAllThreads(SIGUSR2);
    EXPECT_EQ(mySignals, 1);
}

TEST(GenericServiceManager, ReachesEveryThreadWithARecordAndNoOther) {
    const Handler handler;
    ThreadInfo::MyThreadInfo();
    std::atomic<int> ready{0};
    std::atomic<bool> stop{false};
    std::atomic<int> withRecord{0};
    std::atomic<int> withoutRecord{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 6; ++i)
        threads.emplace_back([&, i] {
            if (i % 2 == 0)
                ThreadInfo::MyThreadInfo();
            ++ready;
            while (!stop)
                std::this_thread::yield();
            (i % 2 == 0 ? withRecord : withoutRecord) += mySignals;
        });
    while (ready < 6)
        std::this_thread::yield();
    GenericServiceManager::SignalAllThreads(SIGUSR2);
    EXPECT_TRUE(eventually([] { return allSignals == 4; }));
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(withRecord, 3);
    EXPECT_EQ(withoutRecord, 0);
    EXPECT_EQ(mySignals, 1);
}

TEST(GenericServiceManager, CallsItFromAThreadWithoutARecord) {
    const Handler handler;
    std::thread([] {
        GenericServiceManager::SignalAllThreads(SIGUSR2);
        EXPECT_EQ(mySignals, 0);
    }).join();
}

TEST(GenericServiceManager, NeverReachesAThreadThatIsGone) {
    const Handler handler;
    std::atomic<bool> stop{false};
    std::vector<std::thread> makers;
    for (int i = 0; i < 2; ++i)
        makers.emplace_back([&] {
            while (!stop)
                std::thread([] { ThreadInfo::MyThreadInfo(); }).join();
        });
    for (int i = 0; i < 300; ++i)
        GenericServiceManager::SignalAllThreads(SIGUSR2);
    stop = true;
    for (std::thread& maker : makers)
        maker.join();
}

TEST(GenericServiceManager, SignalThatDoesNotExistReachesNobody) {
    const Handler handler;
    ThreadInfo::MyThreadInfo();
    GenericServiceManager::SignalAllThreads(-1);
    GenericServiceManager::SignalAllThreads(100000);
    EXPECT_EQ(allSignals, 0);
}

TEST(GenericServiceManager, ForkedChildReachesItselfAlone) {
    const Handler handler;
    std::atomic<bool> stop{false};
    std::atomic<bool> ready{false};
    std::thread other([&] {
        ThreadInfo::MyThreadInfo();
        ready = true;
        while (!stop)
            std::this_thread::yield();
    });
    while (!ready)
        std::this_thread::yield();
    ThreadInfo::MyThreadInfo();
    const test::ChildResult child = test::runInChild([] {
        GenericServiceManager::SignalAllThreads(SIGUSR2);
        return allSignals == 1 && mySignals == 1 ? 0 : 1;
    });
    EXPECT_EQ(child.status, 0);
    EXPECT_EQ(allSignals, 0);
    stop = true;
    other.join();
}

} // namespace
