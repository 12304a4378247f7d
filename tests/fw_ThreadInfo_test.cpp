#include "fw_ThreadInfo.h"

#include <algorithm>
#include <atomic>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <limits.h>
#include <pthread.h>
#include <signal.h>

#include <gtest/gtest.h>

#include "fw_GenericServiceManager.h"
#include "support/ChildProcess.h"
#include "support/FailingAllocation.h"

using framework::ThreadInfo;

namespace {

template<class Body>
void inThread(Body body) {
    std::thread(body).join();
}

// Asks before any other thread of this program does.
const auto firstNumber = [] {
    int number = 0;
    inThread([&] { number = ThreadInfo::MyThreadInfo()->getNum(); });
    return number;
}();

ThreadInfo* volatile seenByHandler;

TEST(ThreadInfo, UsageExample) {
    inThread([] {
        framework::ThreadInfo::MyThreadInfo()->setThreadName("worker");
        EXPECT_STREQ(ThreadInfo::getMyself()->getThreadName(), "worker");
    });
}

TEST(ThreadInfo, ThreadHasNoRecordBeforeItAsksForOne) {
    inThread([] {
        EXPECT_EQ(ThreadInfo::getMyself(), nullptr);
        ThreadInfo* info = ThreadInfo::MyThreadInfo();
        ASSERT_NE(info, nullptr);
        EXPECT_EQ(ThreadInfo::getMyself(), info);
        EXPECT_EQ(ThreadInfo::MyThreadInfo(), info);
    });
}

TEST(ThreadInfo, NumbersAreNotGivenTwice) {
    std::set<int> numbers;
    int last = 0;
    for (int i = 0; i < 20; ++i)
        inThread([&] {
            const int number = ThreadInfo::MyThreadInfo()->getNum();
            EXPECT_GT(number, last);
            last = number;
            numbers.insert(number);
        });
    EXPECT_EQ(numbers.size(), 20U);
}

TEST(ThreadInfo, FirstRecordHasNumberOne) {
    EXPECT_EQ(firstNumber, 1);
}

TEST(ThreadInfo, NameIsThePlatformsNameAtFirst) {
    inThread([] {
        pthread_setname_np(pthread_self(), "poll/er");
        EXPECT_STREQ(ThreadInfo::MyThreadInfo()->getThreadName(), "poll_er");
    });
    inThread([] {
        pthread_setname_np(pthread_self(), "");
        EXPECT_STREQ(ThreadInfo::MyThreadInfo()->getThreadName(), "thread");
    });
}

TEST(ThreadInfo, NameHoldsNoSlashAndAtMost31Bytes) {
    inThread([] {
        ThreadInfo* info = ThreadInfo::MyThreadInfo();
        info->setThreadName("a/b//c");
        EXPECT_STREQ(info->getThreadName(), "a_b__c");
        info->setThreadName(std::string(31, 'x').c_str());
        EXPECT_EQ(info->getThreadName(), std::string(31, 'x'));
        info->setThreadName(std::string(32, 'y').c_str());
        EXPECT_EQ(info->getThreadName(), std::string(31, 'y'));
        info->setThreadName("short");
        EXPECT_STREQ(info->getThreadName(), "short");
        info->setThreadName(nullptr);
        EXPECT_STREQ(info->getThreadName(), "");
    });
}

TEST(ThreadInfo, TakesNoMemory) {
    inThread([] {
        test::FailingAllocation failing(test::failAll);
        ThreadInfo* const info = ThreadInfo::MyThreadInfo();
        failing.stop();
        EXPECT_NE(info, nullptr);
        EXPECT_EQ(failing.failures(), 0U);
    });
}

TEST(ThreadInfo, SignalHandlerCanAskAndMake) {
    inThread([] {
        seenByHandler = nullptr;
        struct sigaction action = {};
        struct sigaction former = {};
        action.sa_handler = [](int) {
            seenByHandler = ThreadInfo::MyThreadInfo();
        };
        sigaction(SIGUSR1, &action, &former);
        raise(SIGUSR1);
        EXPECT_NE(seenByHandler, nullptr);
        EXPECT_EQ(ThreadInfo::getMyself(), seenByHandler);
        sigaction(SIGUSR1, &former, nullptr);
    });
}

TEST(ThreadInfo, AskingKeepsTheSignalMask) {
    inThread([] {
        sigset_t wanted;
        sigset_t found;
        sigemptyset(&wanted);
        sigaddset(&wanted, SIGUSR2);
        pthread_sigmask(SIG_SETMASK, &wanted, nullptr);
        ThreadInfo::MyThreadInfo();
        pthread_sigmask(SIG_SETMASK, nullptr, &found);
        EXPECT_EQ(sigismember(&found, SIGUSR2), 1);
        EXPECT_EQ(sigismember(&found, SIGUSR1), 0);
    });
}

TEST(ThreadInfo, ThreadAtItsEndGetsARecordOnlyWhileTheRecordCanStillGoWithIt) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the thread sanitizer has left the thread before its last thread-end calls";
#endif
    static std::vector<bool> given;
    given.clear();
    pthread_key_t late;
    // Asks for a record again in each of the platform's rounds of thread-end calls.
    ASSERT_EQ(pthread_key_create(&late,
                                 [](void* key) {
                                     given.push_back(ThreadInfo::MyThreadInfo() != nullptr);
                                     pthread_setspecific(*static_cast<pthread_key_t*>(key), key);
                                 }),
              0);
    inThread([&] {
        ThreadInfo::MyThreadInfo();
        pthread_setspecific(late, &late);
    });
    pthread_key_delete(late);
    ASSERT_EQ(given.size(), static_cast<std::size_t>(PTHREAD_DESTRUCTOR_ITERATIONS));
    EXPECT_TRUE(given.front());
    EXPECT_FALSE(given.back());
    framework::GenericServiceManager::SignalAllThreads(0);
}

TEST(ThreadInfo, ManyThreadsComeAndGo) {
    std::atomic<bool> wrong{false};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round)
                inThread([&] {
                    ThreadInfo* info = ThreadInfo::MyThreadInfo();
                    if (info == nullptr || info != ThreadInfo::getMyself())
                        wrong = true;
                });
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(wrong);
}

} // namespace
