#pragma once

#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "fw_RWLockIF.h"

namespace test {

typedef std::vector<std::string> LockCalls;

/// A lock that records its calls.
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

    LockCalls calls;
};

/// A lock that cannot be taken for reading or writing.
class RefusingLock : public RecordingLock {
public:
    void readLock() override {
        throw std::runtime_error("refused");
    }
    void writeLock() override {
        throw std::runtime_error("refused");
    }
};

/// The tests of a class that holds a lock until the end of its scope. `Traits` names the class to test:
/// - `Guard`, the class,
/// - `takes`, the operation of the lock that it calls,
/// - `mangled`, its name in the symbols of the library.
///
///     namespace test {
///     INSTANTIATE_TYPED_TEST_SUITE_P(ReadLockGuard, LockGuardTest, ReadGuards);
///     }
template<typename Traits>
class LockGuardTest : public testing::Test {
protected:
    typedef typename Traits::Guard Guard;

    static_assert(!std::is_polymorphic<Guard>::value, "it has no virtual operation");
    static_assert(sizeof(Guard) == sizeof(void*), "it is a reference and nothing else");
    static_assert(!std::is_copy_constructible<Guard>::value, "a copy would unlock twice");
    static_assert(!std::is_copy_assignable<Guard>::value, "an assignment would unlock twice");
};

TYPED_TEST_SUITE_P(LockGuardTest);

TYPED_TEST_P(LockGuardTest, LocksWhenConstructedAndUnlocksOnceAtTheEndOfTheScope) {
    RecordingLock lock;
    {
        const typename TypeParam::Guard guard(lock);
        EXPECT_EQ(lock.calls, LockCalls{TypeParam::takes});
    }
    EXPECT_EQ(lock.calls, (LockCalls{TypeParam::takes, "unlock"}));
}

TYPED_TEST_P(LockGuardTest, UnlocksIfAnExceptionLeavesTheScope) {
    RecordingLock lock;
    EXPECT_THROW(
        {
            const typename TypeParam::Guard guard(lock);
            throw std::runtime_error("left");
        },
        std::runtime_error);
    EXPECT_EQ(lock.calls, (LockCalls{TypeParam::takes, "unlock"}));
}

TYPED_TEST_P(LockGuardTest, DoesNotUnlockALockThatItCouldNotTake) {
    RefusingLock lock;
    EXPECT_THROW(typename TypeParam::Guard guard(lock), std::runtime_error);
    EXPECT_TRUE(lock.calls.empty());
}

TYPED_TEST_P(LockGuardTest, NestedGuardsUnlockOncePerGuard) {
    RecordingLock lock;
    {
        const typename TypeParam::Guard outer(lock);
        const typename TypeParam::Guard inner(lock);
    }
    EXPECT_EQ(lock.calls, (LockCalls{TypeParam::takes, TypeParam::takes, "unlock", "unlock"}));
}

TYPED_TEST_P(LockGuardTest, EachGuardUnlocksItsOwnLock) {
    RecordingLock first;
    RecordingLock second;
    const typename TypeParam::Guard outer(first);
    { const typename TypeParam::Guard inner(second); }
    EXPECT_EQ(first.calls, LockCalls{TypeParam::takes});
    EXPECT_EQ(second.calls, (LockCalls{TypeParam::takes, "unlock"}));
}

TYPED_TEST_P(LockGuardTest, IsExportedByTheLibrary) {
    void* const library = dlopen("libVXut.so.1", RTLD_NOW);
    ASSERT_NE(library, nullptr);
    for (const char* operation : {"C1ERNS0_8RWLockIFE", "C2ERNS0_8RWLockIFE", "D1Ev", "D2Ev"}) {
        const std::string symbol = std::string(TypeParam::mangled) + operation;
        EXPECT_NE(dlsym(library, symbol.c_str()), nullptr) << symbol;
    }
    dlclose(library);
}

REGISTER_TYPED_TEST_SUITE_P(LockGuardTest, LocksWhenConstructedAndUnlocksOnceAtTheEndOfTheScope,
                            UnlocksIfAnExceptionLeavesTheScope, DoesNotUnlockALockThatItCouldNotTake,
                            NestedGuardsUnlockOncePerGuard, EachGuardUnlocksItsOwnLock, IsExportedByTheLibrary);

} // namespace test
