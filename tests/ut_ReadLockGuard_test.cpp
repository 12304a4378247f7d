#include "ut_ReadLockGuard.h"

#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

#include "LockGuardSuite.h"
#include "fw_PosixRWLock.h"

namespace {

using framework::thread::ReadLockGuard;

struct ReadGuards {
    typedef ReadLockGuard Guard;
    static constexpr const char* takes = "readLock";
    static constexpr const char* mangled = "_ZN9framework6thread13ReadLockGuard";
};

TEST(ReadLockGuard, UsageExample) {
    framework::thread::PosixRWLock lock;
    { framework::thread::ReadLockGuard guard(lock); }
    lock.writeLock();
    lock.unlock();
}

TEST(ReadLockGuard, LetsOtherReadersInAndKeepsWritersOut) {
    framework::thread::PosixRWLock lock;
    std::atomic<bool> written{false};
    std::thread writer;
    {
        const ReadLockGuard guard(lock);
        std::thread([&] { const ReadLockGuard other(lock); }).join();
        writer = std::thread([&] {
            lock.writeLock();
            written = true;
            lock.unlock();
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        EXPECT_FALSE(written);
    }
    writer.join();
    EXPECT_TRUE(written);
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ReadLockGuard, LockGuardTest, ReadGuards);
} // namespace test
