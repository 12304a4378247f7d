#include "fw_PosixRWLock.h"

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <dlfcn.h>
#include <pthread.h>

#include <gtest/gtest.h>

#include "fw_Logger.h"
#include "support/LogCapture.h"

using framework::Logger;
using framework::thread::PosixRWLock;

namespace {

// The call that fails, for locks within one object; the logger has a lock of its own.
struct {
    const char* call = nullptr;
    const void* object = nullptr;
    int error = 0;
    int times = 0; // how often it still fails
} failing;

void failNext(const char* call, int error, int times) {
    failing.call = call;
    failing.error = error;
    failing.times = times;
}

int platformCall(const char* name, pthread_rwlock_t* lock) {
    const auto* begin = static_cast<const char*>(failing.object);
    const auto* place = reinterpret_cast<const char*>(lock);
    if (failing.times > 0 && std::strcmp(failing.call, name) == 0 && place >= begin &&
        place < begin + sizeof(PosixRWLock)) {
        --failing.times;
        return failing.error;
    }
    return reinterpret_cast<int (*)(pthread_rwlock_t*)>(dlsym(RTLD_NEXT, name))(lock);
}

constexpr const char* readLockName = "virtual void framework::thread::PosixRWLock::readLock()";
constexpr const char* writeLockName = "virtual void framework::thread::PosixRWLock::writeLock()";
const std::chrono::milliseconds aWhile(50);
const std::chrono::seconds longEnough(60);

// Whether another thread gets the lock within `bound`, before `release`.
bool isTaken(PosixRWLock& lock, void (PosixRWLock::*take)(), std::chrono::milliseconds bound,
             const std::function<void()>& release) {
    std::atomic<bool> asked{false};
    std::atomic<bool> taken{false};
    std::thread other([&] {
        asked = true;
        (lock.*take)();
        taken = true;
        lock.unlock();
    });
    while (!asked)
        std::this_thread::yield();
    const auto end = std::chrono::steady_clock::now() + bound;
    while (!taken && std::chrono::steady_clock::now() < end)
        std::this_thread::yield();
    const bool inTime = taken;
    release();
    other.join();
    return inTime;
}

bool isFree(PosixRWLock& lock, void (PosixRWLock::*take)()) {
    return isTaken(lock, take, longEnough, [] {});
}

bool waitsFor(PosixRWLock& lock, void (PosixRWLock::*take)(), const std::function<void()>& release) {
    return !isTaken(lock, take, aWhile, release);
}

TEST(PosixRWLock, UsageExample) {
    framework::thread::PosixRWLock lock;
    lock.writeLock();
    lock.unlock();
    EXPECT_TRUE(isFree(lock, &PosixRWLock::writeLock));
}

TEST(PosixRWLock, ReadersShare) {
    PosixRWLock lock;
    lock.readLock();
    std::thread other([&] {
        lock.readLock();
        lock.unlock();
    });
    other.join();
    lock.unlock();
}

TEST(PosixRWLock, WriterWaitsForReader) {
    PosixRWLock lock;
    lock.readLock();
    EXPECT_TRUE(waitsFor(lock, &PosixRWLock::writeLock, [&] { lock.unlock(); }));
}

TEST(PosixRWLock, ReaderAndWriterWaitForWriter) {
    PosixRWLock lock;
    lock.writeLock();
    EXPECT_TRUE(waitsFor(lock, &PosixRWLock::readLock, [&] { lock.unlock(); }));
    lock.writeLock();
    EXPECT_TRUE(waitsFor(lock, &PosixRWLock::writeLock, [&] { lock.unlock(); }));
}

TEST(PosixRWLock, WriterMayTakeItAgainForBoth) {
    PosixRWLock lock;
    lock.writeLock();
    lock.writeLock();
    lock.readLock();
    lock.unlock();
    lock.unlock();
    EXPECT_TRUE(waitsFor(lock, &PosixRWLock::readLock, [&] { lock.unlock(); }));
}

TEST(PosixRWLock, EachThreadCountsForItself) {
    PosixRWLock lock;
    int value = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < 1000; ++round) {
                lock.writeLock();
                lock.readLock();
                ++value;
                lock.unlock();
                lock.unlock();
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    lock.readLock();
    EXPECT_EQ(value, 4000);
    lock.unlock();
}

TEST(PosixRWLock, FailingCallsAreLoggedWithTheirNumber) {
    test::LogCapture log;
    PosixRWLock lock;
    failing.object = &lock;
    failNext("pthread_rwlock_rdlock", EDEADLK, 1);
    lock.readLock();
    failNext("pthread_rwlock_wrlock", EDEADLK, 1);
    lock.writeLock();
    // The refused writer does not count as one.
    EXPECT_TRUE(isFree(lock, &PosixRWLock::writeLock));
    lock.readLock();
    failNext("pthread_rwlock_unlock", EPERM, 1);
    lock.unlock();
    lock.unlock();
    EXPECT_EQ(failing.times, 0);
    EXPECT_EQ(log.count(), 3U);
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, readLockName, "locking for reading " + std::to_string(EDEADLK)));
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, writeLockName, "locking for writing " + std::to_string(EDEADLK)));
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, "virtual void framework::thread::PosixRWLock::unlock()",
                             "unlocking " + std::to_string(EPERM)));
}

TEST(PosixRWLock, AReaderRefusedForTheMomentTriesAgainUntilItHoldsTheLock) {
    test::LogCapture log;
    PosixRWLock lock;
    failing.object = &lock;
    failNext("pthread_rwlock_rdlock", EAGAIN, 3);
    lock.readLock();
    EXPECT_EQ(failing.times, 0);
    EXPECT_TRUE(waitsFor(lock, &PosixRWLock::writeLock, [&] { lock.unlock(); }));
    EXPECT_EQ(log.count(), 1U);
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, readLockName, "locking for reading " + std::to_string(EAGAIN)));
}

TEST(PosixRWLock, AWriterRefusedForTheMomentTriesAgainUntilItHoldsTheLock) {
    test::LogCapture log;
    PosixRWLock lock;
    failing.object = &lock;
    failNext("pthread_rwlock_wrlock", EAGAIN, 3);
    lock.writeLock();
    EXPECT_EQ(failing.times, 0);
    lock.readLock();
    lock.unlock();
    EXPECT_TRUE(waitsFor(lock, &PosixRWLock::readLock, [&] { lock.unlock(); }));
    EXPECT_EQ(log.count(), 1U);
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, writeLockName, "locking for writing " + std::to_string(EAGAIN)));
}

} // namespace

extern "C" {

int pthread_rwlock_rdlock(pthread_rwlock_t* lock) noexcept {
    return platformCall("pthread_rwlock_rdlock", lock);
}

int pthread_rwlock_wrlock(pthread_rwlock_t* lock) noexcept {
    return platformCall("pthread_rwlock_wrlock", lock);
}

int pthread_rwlock_unlock(pthread_rwlock_t* lock) noexcept {
    return platformCall("pthread_rwlock_unlock", lock);
}

} // extern "C"
