#include "ut_WriteLockGuard.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "fw_PosixRWLock.h"

namespace {

using framework::thread::WriteLockGuard;
using Calls = std::vector<std::string>;

static_assert(!std::is_polymorphic<WriteLockGuard>::value, "it has no virtual operation");
static_assert(sizeof(WriteLockGuard) == sizeof(void*), "it is a reference and nothing else");
static_assert(!std::is_copy_constructible<WriteLockGuard>::value, "a copy would unlock twice");
static_assert(!std::is_copy_assignable<WriteLockGuard>::value, "an assignment would unlock twice");

/// Keeps what is asked of it.
class RecordingLock : public framework::thread::RWLockIF {
public:
    void readLock() override {
        calls.push_back("readLock");
    }
    void writeLock() override {
        calls.push_back("writeLock");
    }
    void unlock() override {
        calls.push_back("unlock");
    }

    Calls calls;
};

class RefusingLock : public RecordingLock {
public:
    void writeLock() override {
        throw std::runtime_error("refused");
    }
};

TEST(WriteLockGuard, UsageExample) {
    framework::thread::PosixRWLock lock;
    { framework::thread::WriteLockGuard guard(lock); }
    lock.writeLock();
    lock.unlock();
}

TEST(WriteLockGuard, LocksWhenMadeAndUnlocksOnceAtTheEndOfTheScope) {
    RecordingLock lock;
    {
        const WriteLockGuard guard(lock);
        EXPECT_EQ(lock.calls, Calls{"writeLock"});
    }
    EXPECT_EQ(lock.calls, (Calls{"writeLock", "unlock"}));
}

TEST(WriteLockGuard, UnlocksWhenTheScopeIsLeftByAnException) {
    RecordingLock lock;
    EXPECT_THROW(
        {
            const WriteLockGuard guard(lock);
            throw std::runtime_error("left");
        },
        std::runtime_error);
    EXPECT_EQ(lock.calls, (Calls{"writeLock", "unlock"}));
}

TEST(WriteLockGuard, DoesNotUnlockWhatItDidNotGet) {
    RefusingLock lock;
    EXPECT_THROW(WriteLockGuard guard(lock), std::runtime_error);
    EXPECT_EQ(lock.calls, Calls{});
}

TEST(WriteLockGuard, NestedGuardsUnlockOncePerGuard) {
    RecordingLock lock;
    {
        const WriteLockGuard outer(lock);
        const WriteLockGuard inner(lock);
    }
    EXPECT_EQ(lock.calls, (Calls{"writeLock", "writeLock", "unlock", "unlock"}));
}

TEST(WriteLockGuard, EachGuardUnlocksItsOwnLock) {
    RecordingLock first;
    RecordingLock second;
    const WriteLockGuard outer(first);
    { const WriteLockGuard inner(second); }
    EXPECT_EQ(first.calls, Calls{"writeLock"});
    EXPECT_EQ(second.calls, (Calls{"writeLock", "unlock"}));
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

TEST(WriteLockGuard, IsExportedByTheLibrary) {
    void* const library = dlopen("libVXut.so.1", RTLD_NOW);
    ASSERT_NE(library, nullptr);
    const std::string name = "_ZN9framework6thread14WriteLockGuard";
    EXPECT_NE(dlsym(library, (name + "C1ERNS0_8RWLockIFE").c_str()), nullptr);
    EXPECT_NE(dlsym(library, (name + "C2ERNS0_8RWLockIFE").c_str()), nullptr);
    EXPECT_NE(dlsym(library, (name + "D1Ev").c_str()), nullptr);
    EXPECT_NE(dlsym(library, (name + "D2Ev").c_str()), nullptr);
    dlclose(library);
}

} // namespace
