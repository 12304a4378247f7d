#include "ut_LockScope.h"

#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ThreadCalls.h"
#include "ut_BufferStreamQueue.h"
#include "ut_Locker.h"
#include "ut_Waiter.h"

namespace {

using utility::Locker;
using utility::LockScope;
using utility::Waiter;
using Calls = std::vector<test::ThreadCall>;

static_assert(std::is_same<decltype(LockScope(std::declval<const Waiter&>())), LockScope<Waiter>>::value,
              "the kind of lock need not be named");
static_assert(!std::is_copy_constructible<LockScope<Waiter>>::value, "a copy would unlock twice");
static_assert(!std::is_copy_assignable<LockScope<Waiter>>::value, "an assignment would unlock twice");
static_assert(!std::is_convertible<const Waiter&, LockScope<Waiter>>::value, "nothing is locked unasked");

template<typename Lock>
class LockScopeTest : public testing::Test {
protected:
    Lock m_lock;
};

using Locks = testing::Types<Waiter, Locker>;
TYPED_TEST_SUITE(LockScopeTest, Locks);

TYPED_TEST(LockScopeTest, LocksAtOnceAndUnlocksOnceAtTheEndOfTheScope) {
    test::ThreadCalls calls(&this->m_lock, sizeof this->m_lock);
    {
        const LockScope scope(this->m_lock);
        EXPECT_EQ(calls.calls(), Calls{test::MUTEX_LOCK});
    }
    EXPECT_EQ(calls.calls(), (Calls{test::MUTEX_LOCK, test::MUTEX_UNLOCK}));
}

TYPED_TEST(LockScopeTest, UnlocksWhenTheScopeIsLeftByAnException) {
    test::ThreadCalls calls(&this->m_lock, sizeof this->m_lock);
    EXPECT_THROW(
        {
            const LockScope scope(this->m_lock);
            throw std::runtime_error("failure");
        },
        std::runtime_error);
    EXPECT_EQ(calls.calls(), (Calls{test::MUTEX_LOCK, test::MUTEX_UNLOCK}));
}

TYPED_TEST(LockScopeTest, EachScopeUnlocksItsOwnLock) {
    TypeParam other;
    test::ThreadCalls calls(&this->m_lock, sizeof this->m_lock);
    const LockScope outer(this->m_lock);
    { const LockScope inner(other); }
    EXPECT_EQ(calls.calls(), Calls{test::MUTEX_LOCK});
}

TEST(LockScope, UsageExample) {
    utility::Waiter waiter;
    utility::BufferStreamQueue queue;
    queue.enQueue(new utility::BufferStreamElement(16, nullptr));
    utility::BufferStreamElement* element = nullptr;
    {
        const utility::LockScope scope(waiter);
        while (queue.Count() == 0)
            waiter.wait(0);
        element = queue.deQueue();
    }
    EXPECT_NE(element, nullptr);
    delete element;
}

TEST(LockScope, WaitsOnTheWaiterThatItHolds) {
    utility::Waiter waiter;
    test::ThreadCalls calls(&waiter, sizeof waiter);
    {
        const utility::LockScope scope(waiter);
        EXPECT_FALSE(waiter.waitMicroseconds(1));
    }
    EXPECT_EQ(calls.calls(), (Calls{test::MUTEX_LOCK, test::CONDITION_TIMEDWAIT, test::MUTEX_UNLOCK}));
}

} // namespace
