#include "ut_WriteLockGuard.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "LockGuardSuite.h"
#include "fw_PosixRWLock.h"

namespace {

using framework::thread::WriteLockGuard;

struct WriteGuards {
    typedef WriteLockGuard Guard;
    static constexpr const char* takes = "writeLock";
    static constexpr const char* mangled = "_ZN9framework6thread14WriteLockGuard";
};

TEST(WriteLockGuard, UsageExample) {
    framework::thread::PosixRWLock lock;
    { framework::thread::WriteLockGuard guard(lock); }
    lock.writeLock();
    lock.unlock();
}

TEST(WriteLockGuard, KeepsReadersAndWritersOut) {
    framework::thread::PosixRWLock lock;
    std::atomic<int> entered{0};
    std::thread reader;
    std::thread writer;
    {
        const WriteLockGuard guard(lock);
        reader = std::thread([&] {
            lock.readLock();
            ++entered;
            lock.unlock();
        });
        writer = std::thread([&] {
            const WriteLockGuard other(lock);
            ++entered;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_EQ(entered, 0);
    }
    reader.join();
    writer.join();
    EXPECT_EQ(entered, 2);
}

TEST(WriteLockGuard, LetsOneThreadInAtATime) {
    framework::thread::PosixRWLock lock;
    int count = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int step = 0; step < 2000; ++step) {
                const WriteLockGuard guard(lock);
                ++count;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 8000);
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(WriteLockGuard, LockGuardTest, WriteGuards);
} // namespace test
