#include "ut_ReadLockGuard.h"

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

using framework::thread::ReadLockGuard;
using Calls = std::vector<std::string>;

static_assert(!std::is_polymorphic<ReadLockGuard>::value, "it has no virtual operation");
static_assert(sizeof(ReadLockGuard) == sizeof(void*), "it is a reference and nothing else");
static_assert(!std::is_copy_constructible<ReadLockGuard>::value, "a copy would unlock twice");
static_assert(!std::is_copy_assignable<ReadLockGuard>::value, "an assignment would unlock twice");

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
    void readLock() override {
        throw std::runtime_error("refused");
    }
};

TEST(ReadLockGuard, UsageExample) {
    framework::thread::PosixRWLock lock;
    { framework::thread::ReadLockGuard guard(lock); }
    lock.writeLock();
    lock.unlock();
}

TEST(ReadLockGuard, LocksWhenMadeAndUnlocksOnceAtTheEndOfTheScope) {
    RecordingLock lock;
    {
        const ReadLockGuard guard(lock);
        EXPECT_EQ(lock.calls, Calls{"readLock"});
    }
    EXPECT_EQ(lock.calls, (Calls{"readLock", "unlock"}));
}

TEST(ReadLockGuard, UnlocksWhenTheScopeIsLeftByAnException) {
    RecordingLock lock;
    EXPECT_THROW(
        {
            const ReadLockGuard guard(lock);
            throw std::runtime_error("left");
        },
        std::runtime_error);
    EXPECT_EQ(lock.calls, (Calls{"readLock", "unlock"}));
}

TEST(ReadLockGuard, DoesNotUnlockWhatItDidNotGet) {
    RefusingLock lock;
    EXPECT_THROW(ReadLockGuard guard(lock), std::runtime_error);
    EXPECT_EQ(lock.calls, Calls{});
}

TEST(ReadLockGuard, NestedGuardsUnlockOncePerGuard) {
    RecordingLock lock;
    {
        const ReadLockGuard outer(lock);
        const ReadLockGuard inner(lock);
    }
    EXPECT_EQ(lock.calls, (Calls{"readLock", "readLock", "unlock", "unlock"}));
}

TEST(ReadLockGuard, EachGuardUnlocksItsOwnLock) {
    RecordingLock first;
    RecordingLock second;
    const ReadLockGuard outer(first);
    { const ReadLockGuard inner(second); }
    EXPECT_EQ(first.calls, Calls{"readLock"});
    EXPECT_EQ(second.calls, (Calls{"readLock", "unlock"}));
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

TEST(ReadLockGuard, IsExportedByTheLibrary) {
    void* const library = dlopen("libVXut.so.1", RTLD_NOW);
    ASSERT_NE(library, nullptr);
    const std::string name = "_ZN9framework6thread13ReadLockGuard";
    EXPECT_NE(dlsym(library, (name + "C1ERNS0_8RWLockIFE").c_str()), nullptr);
    EXPECT_NE(dlsym(library, (name + "C2ERNS0_8RWLockIFE").c_str()), nullptr);
    EXPECT_NE(dlsym(library, (name + "D1Ev").c_str()), nullptr);
    EXPECT_NE(dlsym(library, (name + "D2Ev").c_str()), nullptr);
    dlclose(library);
}

} // namespace
