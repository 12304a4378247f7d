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
        while (m_queue.deQueue() != nullptr) {
        }
    }
    void expectLinksFromAToC() {
        EXPECT_EQ(m_queue.Count(), 3);
        EXPECT_EQ(m_a.Next(), &m_b);
        EXPECT_EQ(m_b.Next(), &m_c);
        EXPECT_EQ(m_c.Next(), nullptr);
    }
    void expectDequeuedFromAToC() {
        EXPECT_EQ(m_queue.deQueue(), &m_a);
        EXPECT_EQ(m_queue.deQueue(), &m_b);
        EXPECT_EQ(m_queue.deQueue(), &m_c);
        EXPECT_EQ(m_queue.deQueue(), nullptr);
    }

    BufferStreamElement m_a{8, nullptr};
    BufferStreamElement m_b{8, nullptr};
    BufferStreamElement m_c{8, nullptr};
    BufferStreamQueue m_queue;
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
    BufferStreamElement* const element = &m_a;
    const utility::LockScope scope(m_queue.m_waiter);
    m_queue.enQueue(element);
    m_queue.m_waiter.signal();
    EXPECT_EQ(m_queue.Count(), 1);
}

TEST_F(BufferStreamQueueTest, EmptyQueueReturnsNull) {
    EXPECT_EQ(m_queue.Count(), 0);
    EXPECT_EQ(m_queue.deQueue(), nullptr);
    EXPECT_EQ(m_queue.deQueue(), nullptr);
    EXPECT_EQ(m_queue.Count(), 0);
}

TEST_F(BufferStreamQueueTest, ReturnsElementsFirstInFirstOut) {
    m_queue.enQueue(&m_a);
    m_queue.enQueue(&m_b);
    m_queue.enQueue(&m_c);
    EXPECT_EQ(m_queue.Count(), 3);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
    EXPECT_EQ(m_queue.deQueue(), &m_b);
    EXPECT_EQ(m_queue.Count(), 1);
    EXPECT_EQ(m_queue.deQueue(), &m_c);
    EXPECT_EQ(m_queue.deQueue(), nullptr);
    EXPECT_EQ(m_queue.Count(), 0);
}

TEST_F(BufferStreamQueueTest, ReturnsRequeuedElementsFirst) {
    m_queue.enQueue(&m_a);
    m_queue.enQueue(&m_b);
    m_queue.reQueue(&m_c);
    EXPECT_EQ(m_queue.Count(), 3);
    EXPECT_EQ(m_queue.deQueue(), &m_c);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
    EXPECT_EQ(m_queue.deQueue(), &m_b);
}

TEST_F(BufferStreamQueueTest, NullIsIgnored) {
    m_queue.enQueue(nullptr);
    m_queue.reQueue(nullptr);
    EXPECT_EQ(m_queue.Count(), 0);
    m_queue.enQueue(&m_a);
    m_queue.enQueue(nullptr);
    m_queue.reQueue(nullptr);
    EXPECT_EQ(m_queue.Count(), 1);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
}

TEST_F(BufferStreamQueueTest, RequeueingIntoAnEmptyQueueSetsHeadAndTail) {
    m_queue.reQueue(&m_a);
    EXPECT_EQ(m_queue.Count(), 1);
    m_queue.enQueue(&m_b);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
    EXPECT_EQ(m_queue.deQueue(), &m_b);
    EXPECT_EQ(m_queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, CanBeReusedAfterItWasEmpty) {
    m_queue.enQueue(&m_a);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
    m_queue.enQueue(&m_b);
    m_queue.enQueue(&m_a);
    EXPECT_EQ(m_queue.deQueue(), &m_b);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
}

TEST_F(BufferStreamQueueTest, QueuedElementsAreChainedAndRemovedOnesAreNot) {
    m_queue.enQueue(&m_a);
    m_queue.enQueue(&m_b);
    EXPECT_EQ(m_a.Next(), &m_b);
    EXPECT_EQ(m_b.Next(), nullptr);
    m_queue.reQueue(&m_c);
    EXPECT_EQ(m_c.Next(), &m_a);
    m_queue.deQueue();
    m_queue.deQueue();
    EXPECT_EQ(m_c.Next(), nullptr);
    EXPECT_EQ(m_a.Next(), nullptr);
}

TEST_F(BufferStreamQueueTest, QueueingUnlinksTheElementsAfterTheQueuedOne) {
    m_a.Append(&m_b);
    m_queue.enQueue(&m_a);
    EXPECT_EQ(m_a.Next(), nullptr);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
    EXPECT_EQ(m_queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, RequeueingAQueuedElementChangesNothing) {
    m_queue.enQueue(&m_a);
    m_queue.reQueue(&m_a);
    EXPECT_EQ(m_queue.Count(), 1);
    m_queue.enQueue(&m_b);
    m_queue.enQueue(&m_c);
    for (BufferStreamElement* const queued : {&m_a, &m_b, &m_c}) {
        m_queue.reQueue(queued);
        expectLinksFromAToC();
    }
    expectDequeuedFromAToC();
}

TEST_F(BufferStreamQueueTest, QueueingAQueuedElementChangesNothing) {
    m_queue.enQueue(&m_a);
    m_queue.enQueue(&m_a);
    EXPECT_EQ(m_queue.Count(), 1);
    EXPECT_EQ(m_a.Next(), nullptr);
    m_queue.enQueue(&m_b);
    m_queue.enQueue(&m_c);
    for (BufferStreamElement* const queued : {&m_a, &m_b, &m_c}) {
        m_queue.enQueue(queued);
        expectLinksFromAToC();
    }
    expectDequeuedFromAToC();
}

TEST_F(BufferStreamQueueTest, QueueingTheFirstOfAnotherChainQueuesItAlone) {
    m_a.Append(&m_b);
    m_queue.enQueue(&m_c);
    m_queue.enQueue(&m_a);
    EXPECT_EQ(m_queue.Count(), 2);
    EXPECT_EQ(m_a.Next(), nullptr);
    EXPECT_EQ(m_queue.deQueue(), &m_c);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
    EXPECT_EQ(m_queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, RequeueingTheFirstOfAnotherChainQueuesItAlone) {
    m_a.Append(&m_b);
    m_queue.enQueue(&m_c);
    m_queue.reQueue(&m_a);
    EXPECT_EQ(m_queue.Count(), 2);
    EXPECT_EQ(m_b.Next(), nullptr);
    EXPECT_EQ(m_queue.deQueue(), &m_a);
    EXPECT_EQ(m_queue.deQueue(), &m_c);
    EXPECT_EQ(m_queue.deQueue(), nullptr);
}

TEST_F(BufferStreamQueueTest, OperationsNeitherLockNorLog) {
    const test::LogCapture log;
    m_queue.m_waiter.lock();
    m_queue.enQueue(&m_a);
    m_queue.reQueue(&m_b);
    m_queue.deQueue();
    m_queue.m_waiter.unlock();
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
