#include "ut_BufferStreamQueue.h"

#include <deque>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "CountingMemory.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "ut_BufferStreamList.h"
#include "ut_LockScope.h"

namespace {

using utility::BufferStreamElement;
using utility::BufferStreamList;
using utility::BufferStreamQueue;

static_assert(!std::is_copy_constructible<BufferStreamQueue>::value, "a copy would own the same elements");

class BufferStreamQueueTest : public testing::Test {
protected:
    ~BufferStreamQueueTest() override {
        while (queue.deQueue() != nullptr) {
        }
    }
    BufferStreamElement a{8, nullptr};
    BufferStreamElement b{8, nullptr};
    BufferStreamElement c{8, nullptr};
    BufferStreamQueue queue;
};

BufferStreamElement* takeFrom(BufferStreamList& pool) {
    pool.Lock();
    BufferStreamElement* element = pool.Allocate();
    while (element == nullptr) {
        pool.Wait(0);
        element = pool.Allocate();
    }
    pool.UnLock();
    return element;
}

void giveBack(BufferStreamList& pool, BufferStreamElement* element) {
    element->Rewind();
    pool.Lock();
    pool.Insert(element);
    pool.Signal();
    pool.UnLock();
}

void send(BufferStreamQueue& queue, BufferStreamElement* element) {
    queue.m_waiter.lock();
    queue.enQueue(element);
    queue.m_waiter.signal();
    queue.m_waiter.unlock();
}

BufferStreamElement* receive(BufferStreamQueue& queue) {
    queue.m_waiter.lock();
    while (queue.Count() == 0)
        queue.m_waiter.wait(0);
    BufferStreamElement* const element = queue.deQueue();
    queue.m_waiter.unlock();
    return element;
}

void writeRequest(BufferStreamElement& element, unsigned int number) {
    element.PutParmUint32(number);
    element.PutParmString(number % 2 == 0 ? "create volume" : "");
    element.PutParmSint16(static_cast<int16_t>(number));
}

bool isRequest(BufferStreamElement& element, unsigned int number) {
    unsigned int readNumber = 0;
    short truncated = 0;
    if (!element.GetParmUint32(&readNumber) || readNumber != number)
        return false;
    const char* const text = element.GetParmString();
    return text != nullptr && std::string(text) == (number % 2 == 0 ? "create volume" : "") &&
           element.GetParmSint16(&truncated) && truncated == static_cast<short>(number) && element.ReadAvailable() == 0;
}

TEST_F(BufferStreamQueueTest, UsageExample) {
    BufferStreamElement* const element = &a;
    const utility::LockScope scope(queue.m_waiter);
    queue.enQueue(element);
    queue.m_waiter.signal();
    EXPECT_EQ(queue.Count(), 1);
}

TEST_F(BufferStreamQueueTest, EmptyQueueReturnsNull) {
    EXPECT_EQ(queue.Count(), 0);
    EXPECT_EQ(queue.deQueue(), nullptr);
    EXPECT_EQ(queue.deQueue(), nullptr);
    EXPECT_EQ(queue.Count(), 0);
}

TEST_F(BufferStreamQueueTest, ReturnsElementsFirstInFirstOut) {
    queue.enQueue(&a);
    queue.enQueue(&b);
    queue.enQueue(&c);
    EXPECT_EQ(queue.Count(), 3);
    EXPECT_EQ(queue.deQueue(), &a);
    EXPECT_EQ(queue.deQueue(), &b);
    EXPECT_EQ(queue.Count(), 1);
    EXPECT_EQ(queue.deQueue(), &c);
    EXPECT_EQ(queue.deQueue(), nullptr);
    EXPECT_EQ(queue.Count(), 0);
}

TEST_F(BufferStreamQueueTest, ReturnsRequeuedElementsFirst) {
    queue.enQueue(&a);
    queue.enQueue(&b);
    queue.reQueue(&c);
    EXPECT_EQ(queue.Count(), 3);
    EXPECT_EQ(queue.deQueue(), &c);
    EXPECT_EQ(queue.deQueue(), &a);
    EXPECT_EQ(queue.deQueue(), &b);
}

TEST_F(BufferStreamQueueTest, NullIsIgnored) {
    queue.enQueue(nullptr);
    queue.reQueue(nullptr);
    EXPECT_EQ(queue.Count(), 0);
    queue.enQueue(&a);
    queue.enQueue(nullptr);
    queue.reQueue(nullptr);
    EXPECT_EQ(queue.Count(), 1);
    EXPECT_EQ(queue.deQueue(), &a);
}

TEST_F(BufferStreamQueueTest, RequeueingIntoAnEmptyQueueSetsHeadAndTail) {
    queue.reQueue(&a);
    EXPECT_EQ(queue.Count(), 1);
    queue.enQueue(&b);
    EXPECT_EQ(queue.deQueue(), &a);
    EXPECT_EQ(queue.deQueue(), &b);
    EXPECT_EQ(queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, CanBeReusedAfterItWasEmpty) {
    queue.enQueue(&a);
    EXPECT_EQ(queue.deQueue(), &a);
    queue.enQueue(&b);
    queue.enQueue(&a);
    EXPECT_EQ(queue.deQueue(), &b);
    EXPECT_EQ(queue.deQueue(), &a);
}

TEST_F(BufferStreamQueueTest, QueuedElementsAreChainedAndRemovedOnesAreNot) {
    queue.enQueue(&a);
    queue.enQueue(&b);
    EXPECT_EQ(a.Next(), &b);
    EXPECT_EQ(b.Next(), nullptr);
    queue.reQueue(&c);
    EXPECT_EQ(c.Next(), &a);
    queue.deQueue();
    queue.deQueue();
    EXPECT_EQ(c.Next(), nullptr);
    EXPECT_EQ(a.Next(), nullptr);
}

TEST_F(BufferStreamQueueTest, QueueingUnlinksTheElementsAfterTheQueuedOne) {
    a.Append(&b);
    queue.enQueue(&a);
    EXPECT_EQ(a.Next(), nullptr);
    EXPECT_EQ(queue.deQueue(), &a);
    EXPECT_EQ(queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, RequeueingAQueuedElementChangesNothing) {
    queue.enQueue(&a);
    queue.reQueue(&a);
    EXPECT_EQ(queue.Count(), 1);
    queue.enQueue(&b);
    queue.enQueue(&c);
    for (BufferStreamElement* const queued : {&a, &b, &c}) {
        queue.reQueue(queued);
        ASSERT_EQ(queue.Count(), 3);
        ASSERT_EQ(a.Next(), &b);
        ASSERT_EQ(b.Next(), &c);
        ASSERT_EQ(c.Next(), nullptr);
    }
    EXPECT_EQ(queue.deQueue(), &a);
    EXPECT_EQ(queue.deQueue(), &b);
    EXPECT_EQ(queue.deQueue(), &c);
    EXPECT_EQ(queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, QueueingAQueuedElementChangesNothing) {
    queue.enQueue(&a);
    queue.enQueue(&a);
    EXPECT_EQ(queue.Count(), 1);
    EXPECT_EQ(a.Next(), nullptr);
    queue.enQueue(&b);
    queue.enQueue(&c);
    for (BufferStreamElement* const queued : {&a, &b, &c}) {
        queue.enQueue(queued);
        ASSERT_EQ(queue.Count(), 3);
        ASSERT_EQ(a.Next(), &b);
        ASSERT_EQ(b.Next(), &c);
        ASSERT_EQ(c.Next(), nullptr);
    }
    EXPECT_EQ(queue.deQueue(), &a);
    EXPECT_EQ(queue.deQueue(), &b);
    EXPECT_EQ(queue.deQueue(), &c);
    EXPECT_EQ(queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, QueueingTheFirstOfAnotherChainQueuesItAlone) {
    a.Append(&b);
    queue.enQueue(&c);
    queue.enQueue(&a);
    EXPECT_EQ(queue.Count(), 2);
    EXPECT_EQ(a.Next(), nullptr);
    EXPECT_EQ(queue.deQueue(), &c);
    EXPECT_EQ(queue.deQueue(), &a);
    EXPECT_EQ(queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, RequeueingTheFirstOfAnotherChainQueuesItAlone) {
    a.Append(&b);
    queue.enQueue(&c);
    queue.reQueue(&a);
    EXPECT_EQ(queue.Count(), 2);
    EXPECT_EQ(b.Next(), nullptr);
    EXPECT_EQ(queue.deQueue(), &a);
    EXPECT_EQ(queue.deQueue(), &c);
    EXPECT_EQ(queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, OperationsNeitherLockNorLog) {
    const test::LogCapture log;
    queue.m_waiter.lock();
    queue.enQueue(&a);
    queue.reQueue(&b);
    queue.deQueue();
    queue.m_waiter.unlock();
    EXPECT_EQ(log.count(), 0u);
}

TEST(BufferStreamQueue, DestructionDeletesTheQueuedElements) {
    test::CountingMemory memory;
    std::unique_ptr<BufferStreamElement> taken;
    {
        BufferStreamQueue queue;
        for (int i = 0; i < 4; ++i)
            queue.enQueue(new BufferStreamElement(8, nullptr));
        taken.reset(queue.deQueue());
        EXPECT_EQ(memory.outstanding(), 8u);
    }
    EXPECT_EQ(memory.outstanding(), 2u);
    taken.reset();
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(BufferStreamQueue, BehavesAsADeque) {
    test::RandomRun random;
    test::CountingMemory memory;
    {
        BufferStreamQueue queue;
        std::deque<BufferStreamElement*> model;
        while (random.steps(5000)) {
            const unsigned int choice = random.below(model.size() < 50 ? 4 : 3);
            if (choice == 0) {
                model.push_front(new BufferStreamElement(4, nullptr));
                queue.reQueue(model.front());
            } else if (choice == 3) {
                model.push_back(new BufferStreamElement(4, nullptr));
                queue.enQueue(model.back());
            } else {
                BufferStreamElement* const taken = queue.deQueue();
                ASSERT_EQ(taken, model.empty() ? nullptr : model.front());
                if (taken != nullptr)
                    model.pop_front();
                delete taken;
            }
            ASSERT_EQ(queue.Count(), static_cast<int>(model.size()));
        }
    }
    EXPECT_EQ(memory.outstanding(), 0u);
}

TEST(BufferStreamQueue, AMillionRequestsArriveOnceAndInOrder) {
    const unsigned int requests = 1000000;
    BufferStreamList pool(32, 64);
    BufferStreamQueue queue;
    std::thread sender([&] {
        for (unsigned int number = 0; number < requests; ++number) {
            BufferStreamElement* const element = takeFrom(pool);
            writeRequest(*element, number);
            send(queue, element);
        }
    });
    unsigned int wrong = 0;
    for (unsigned int number = 0; number < requests; ++number) {
        BufferStreamElement* const element = receive(queue);
        wrong += isRequest(*element, number) ? 0 : 1;
        giveBack(pool, element);
    }
    sender.join();
    EXPECT_EQ(wrong, 0u);
    EXPECT_EQ(queue.Count(), 0);
    EXPECT_EQ(pool.Count(), 32);
}

} // namespace
