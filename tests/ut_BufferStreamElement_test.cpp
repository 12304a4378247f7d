#include "ut_BufferStreamElement.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <deque>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "CountingMemory.h"
#include "ExpectFailure.h"
#include "RandomRun.h"
#include "ut_BufferStreamList.h"
#include "ut_BufferStreamQueue.h"

namespace {

using utility::BufferStreamElement;
using Chain = std::vector<const BufferStreamElement*>;

static_assert(sizeof(BufferStreamElement::m_userValue) == 8 && sizeof(BufferStreamElement::m_userWord1) == 4 &&
                  sizeof(BufferStreamElement::m_userWord2) == 4,
              "owners rely on the widths");

// Callers compile the places of their own members into their programs.
struct AfterBuffer : utility::Buffer {
    char first = 0;
};
constexpr bool is64Bit = sizeof(void*) == 8;
static_assert(sizeof(AfterBuffer) == sizeof(utility::Buffer) && sizeof(utility::Buffer) == (is64Bit ? 40 : 28),
              "the buffer's last bytes stay free for derived classes");
static_assert(sizeof(BufferStreamElement) == (is64Bit ? 96 : 72), "the size stays");

Chain chainFrom(const BufferStreamElement* first) {
    Chain chain;
    for (const BufferStreamElement* e = first; e != nullptr && chain.size() < 100; e = e->Next())
        chain.push_back(e);
    return chain;
}

// Records the bytes at `watched` when memory is next released.
class InspectingMemory : public test::CountingMemory {
public:
    void release(const void* piece) override {
        if (watched != nullptr)
            std::memcpy(&seen, watched, sizeof seen);
        watched = nullptr;
        CountingMemory::release(piece);
    }
    const void* watched = nullptr;
    std::uint64_t seen = 1;
};

class BufferStreamElementTest : public testing::Test {
protected:
    BufferStreamElement m_a{8, nullptr};
    BufferStreamElement m_b{8, nullptr};
    BufferStreamElement m_c{8, nullptr};
    BufferStreamElement m_d{8, nullptr};
};

TEST(BufferStreamElement, UsageExample) {
    utility::BufferStreamElement* chain = new utility::BufferStreamElement(64, nullptr);
    chain = chain->Insert(new utility::BufferStreamElement(64, nullptr));
    EXPECT_EQ(chainFrom(chain).size(), 2u);
    delete chain->Next();
    delete chain;
}

TEST(BufferStreamElement, StartsWithItsNextAndClearedUserFields) {
    BufferStreamElement last(8, nullptr);
    BufferStreamElement element(16, &last);
    EXPECT_EQ(last.Next(), nullptr);
    EXPECT_EQ(element.Next(), &last);
    EXPECT_EQ(element.m_userValue, 0u);
    EXPECT_EQ(element.m_userWord1, 0u);
    EXPECT_EQ(element.m_userWord2, 0u);
    EXPECT_EQ(element.Size(), 16);
    element.PutParmUint32(7);
    unsigned int value = 0;
    EXPECT_TRUE(element.GetParmUint32(&value));
    EXPECT_EQ(value, 7u);
}

TEST(BufferStreamElement, UserFieldsHaveTheirOrder) {
    const BufferStreamElement element(0, nullptr);
    const auto place = [](const void* field) {
        return static_cast<const char*>(field);
    };
    EXPECT_GE(place(&element.m_userValue), place(static_cast<const utility::BufferStream*>(&element)) + sizeof(void*));
    EXPECT_EQ(place(&element.m_userWord1), place(&element.m_userValue) + 8);
    EXPECT_EQ(place(&element.m_userWord2), place(&element.m_userWord1) + 4);
}

TEST(BufferStreamElement, UserFieldsAreNotChanged) {
    BufferStreamElement element(8, nullptr);
    BufferStreamElement other(8, nullptr);
    element.m_userValue = 0xFFFFFFFFFFFFFFFFu;
    element.m_userWord1 = 0xFFFFFFFFu;
    element.m_userWord2 = 0x80000000u;
    element.Append(&other);
    element.Insert(&other);
    element.Rewind();
    EXPECT_EQ(element.m_userValue, 0xFFFFFFFFFFFFFFFFu);
    EXPECT_EQ(element.m_userWord1, 0xFFFFFFFFu);
    EXPECT_EQ(element.m_userWord2, 0x80000000u);
}

TEST(BufferStreamElement, DestructorClearsTheUserValue) {
    InspectingMemory memory;
    auto* const element = new BufferStreamElement(8, nullptr);
    element->m_userValue = 0x1122334455667788u;
    memory.watched = &element->m_userValue;
    // The destructor releases the storage of the stream first.
    delete element;
    EXPECT_EQ(memory.seen, 0u);
    EXPECT_EQ(memory.outstanding(), 0u);
}

TEST(BufferStreamElement, FailedAllocationOfStorageThrows1238) {
    test::CountingMemory memory;
    memory.refuse(2);
    EXPECT_FAILURE(delete new BufferStreamElement(8, nullptr), 1238, "ut_Buffer", "void utility::Buffer::allocBuffer()",
                   "");
    EXPECT_EQ(memory.outstanding(), 0u);
}

TEST(BufferStreamElement, CanBeDeletedThroughItsBases) {
    test::CountingMemory memory;
    delete static_cast<utility::BufferStream*>(new BufferStreamElement(8, nullptr));
    delete static_cast<utility::Buffer*>(new BufferStreamElement(8, nullptr));
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(BufferStreamElement, DoesNotOwnTheElementsChainedAfterIt) {
    BufferStreamElement last(8, nullptr);
    delete new BufferStreamElement(8, &last);
    last.PutS("ports");
    EXPECT_STREQ(last.pTail(), "ports");
}

TEST_F(BufferStreamElementTest, AppendLinksAfterTheLast) {
    m_a.Append(&m_b);
    m_a.Append(&m_c);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b, &m_c}));
    m_b.Append(&m_d);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b, &m_c, &m_d}));
}

TEST_F(BufferStreamElementTest, AppendUnlinksTheElementsAfterTheAppendedOne) {
    m_c.Append(&m_d);
    m_a.Append(&m_c);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_c}));
    EXPECT_EQ(m_d.Next(), nullptr);
}

TEST_F(BufferStreamElementTest, AppendOfNullDoesNothing) {
    m_a.Append(&m_b);
    m_a.Append(nullptr);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b}));
}

TEST_F(BufferStreamElementTest, AppendOfAnElementOfTheChainCreatesNoLoop) {
    m_a.Append(&m_b);
    m_a.Append(&m_c);
    for (BufferStreamElement* e : {&m_a, &m_b, &m_c}) {
        m_a.Append(e);
        EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b, &m_c}));
    }
    m_d.Append(&m_d);
    EXPECT_EQ(chainFrom(&m_d), (Chain{&m_d}));
}

TEST_F(BufferStreamElementTest, InsertLinksBeforeAndReturnsTheNewFirst) {
    EXPECT_EQ(m_a.Insert(&m_b), &m_b);
    EXPECT_EQ(chainFrom(&m_b), (Chain{&m_b, &m_a}));
    EXPECT_EQ(m_b.Insert(&m_c), &m_c);
    EXPECT_EQ(chainFrom(&m_c), (Chain{&m_c, &m_b, &m_a}));
}

TEST_F(BufferStreamElementTest, InsertUnlinksTheElementsAfterTheInsertedOne) {
    m_c.Append(&m_d);
    EXPECT_EQ(m_a.Insert(&m_c), &m_c);
    EXPECT_EQ(chainFrom(&m_c), (Chain{&m_c, &m_a}));
}

TEST_F(BufferStreamElementTest, InsertOfNullOrItselfChangesNothing) {
    m_a.Append(&m_b);
    EXPECT_EQ(m_a.Insert(nullptr), &m_a);
    EXPECT_EQ(m_a.Insert(&m_a), &m_a);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b}));
}

TEST_F(BufferStreamElementTest, InsertOfAnElementOfTheChainCreatesNoLoop) {
    m_a.Append(&m_b);
    m_a.Append(&m_c);
    EXPECT_EQ(m_a.Insert(&m_b), &m_a);
    EXPECT_EQ(m_a.Insert(&m_c), &m_a);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b, &m_c}));
}

TEST_F(BufferStreamElementTest, RemoveOfTheFirstReturnsTheSecond) {
    m_a.Append(&m_b);
    m_a.Append(&m_c);
    EXPECT_EQ(m_a.Remove(&m_a), &m_b);
    EXPECT_EQ(m_a.Next(), nullptr);
    EXPECT_EQ(chainFrom(&m_b), (Chain{&m_b, &m_c}));
}

TEST_F(BufferStreamElementTest, RemoveOfTheOnlyOneReturnsNull) {
    EXPECT_EQ(m_a.Remove(&m_a), nullptr);
    EXPECT_EQ(m_a.Next(), nullptr);
}

TEST_F(BufferStreamElementTest, RemoveOfALaterOneLinksItsNeighbors) {
    m_a.Append(&m_b);
    m_a.Append(&m_c);
    m_a.Append(&m_d);
    EXPECT_EQ(m_a.Remove(&m_c), &m_a);
    EXPECT_EQ(m_c.Next(), nullptr);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b, &m_d}));
    EXPECT_EQ(m_a.Remove(&m_d), &m_a);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b}));
    EXPECT_EQ(m_a.Remove(&m_b), &m_a);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a}));
}

TEST_F(BufferStreamElementTest, RemoveOfNullOrAForeignElementChangesNothing) {
    m_a.Append(&m_b);
    m_c.Append(&m_d);
    EXPECT_EQ(m_a.Remove(nullptr), &m_a);
    EXPECT_EQ(m_a.Remove(&m_c), &m_a);
    EXPECT_EQ(m_b.Remove(&m_a), &m_b);
    EXPECT_EQ(chainFrom(&m_a), (Chain{&m_a, &m_b}));
    EXPECT_EQ(chainFrom(&m_c), (Chain{&m_c, &m_d}));
}

// What the operations do, said with plain walks over the chains.
class PlainChains {
public:
    static constexpr int none = -1;

    explicit PlainChains(int count) : m_next(static_cast<std::size_t>(count), none) {}

    int& next(int element) {
        return m_next[static_cast<std::size_t>(element)];
    }
    bool leadsTo(int from, int element) {
        while (from != none && from != element)
            from = next(from);
        return from != none;
    }
    bool isLinked(int element) const {
        return std::find(m_next.begin(), m_next.end(), element) != m_next.end();
    }
    void append(int first, int element) {
        if (leadsTo(first, element))
            return;
        while (next(first) != none)
            first = next(first);
        next(first) = element;
        next(element) = none;
    }
    int insert(int first, int element) {
        if (leadsTo(first, element))
            return first;
        next(element) = first;
        return element;
    }
    int remove(int first, int element) {
        int result = first;
        if (first == element) {
            result = next(first);
            next(first) = none;
        } else {
            while (next(first) != none && next(first) != element)
                first = next(first);
            if (next(first) == element) {
                next(first) = next(element);
                next(element) = none;
            }
        }
        return result;
    }

private:
    std::vector<int> m_next;
};

TEST(BufferStreamElement, RandomOperationsDoWhatPlainWalksDo) {
    constexpr int count = 6;
    test::RandomRun random;
    PlainChains plain(count);
    std::vector<std::unique_ptr<BufferStreamElement>> elements(count);
    const auto at = [&](int number) {
        return number == PlainChains::none ? nullptr : elements[static_cast<std::size_t>(number)].get();
    };
    for (auto& element : elements)
        element = std::make_unique<BufferStreamElement>(0, nullptr);

    while (random.steps(50000)) {
        const int first = static_cast<int>(random.below(count));
        const int other = static_cast<int>(random.below(count));
        switch (random.below(6)) {
        case 0:
        case 1:
            at(first)->Append(at(other));
            plain.append(first, other);
            break;
        case 2:
            ASSERT_EQ(at(first)->Insert(at(other)), at(plain.insert(first, other)));
            break;
        case 3:
        case 4:
            ASSERT_EQ(at(first)->Remove(at(other)), at(plain.remove(first, other)));
            break;
        default:
            // Two elements can be created with the same next one.
            if (first != other && !plain.isLinked(first)) {
                elements[static_cast<std::size_t>(first)] = std::make_unique<BufferStreamElement>(0, at(other));
                plain.next(first) = other;
                if (plain.leadsTo(other, first))
                    FAIL() << "a ring in the plain chains";
            }
        }
        for (int number = 0; number < count; ++number)
            ASSERT_EQ(at(number)->Next(), at(plain.next(number))) << number;
    }
}

TEST(BufferStreamElement, AQueueAndAPoolExchangeElementsAndRefuseTheirOwn) {
    constexpr std::size_t count = 6;
    test::RandomRun random;
    utility::BufferStreamList pool(count, 0);
    utility::BufferStreamQueue queue;
    std::deque<BufferStreamElement*> pooled;
    std::deque<BufferStreamElement*> queued;
    while (BufferStreamElement* const element = pool.Allocate()) {
        queue.enQueue(element);
        queued.push_back(element);
    }
    while (random.steps(20000)) {
        if (random.below(2) == 0 && !queued.empty()) {
            BufferStreamElement* const element = queue.deQueue();
            ASSERT_EQ(element, queued.front());
            queued.pop_front();
            if (random.below(2) == 0) {
                pool.Insert(element);
                pooled.push_front(element);
            } else {
                pool.Append(element);
                pooled.push_back(element);
            }
        } else if (!pooled.empty()) {
            const std::size_t place = random.below(static_cast<unsigned int>(pooled.size()));
            BufferStreamElement* const element = pooled[place];
            if (place == 0 && random.below(2) == 0)
                ASSERT_EQ(pool.Allocate(), element);
            else
                pool.Remove(element);
            pooled.erase(pooled.begin() + static_cast<std::ptrdiff_t>(place));
            if (random.below(2) == 0) {
                queue.reQueue(element);
                queued.push_front(element);
            } else {
                queue.enQueue(element);
                queued.push_back(element);
            }
        }
        for (BufferStreamElement* const element : pooled) {
            pool.Insert(element);
            pool.Append(element);
        }
        for (BufferStreamElement* const element : queued) {
            queue.enQueue(element);
            queue.reQueue(element);
        }
        ASSERT_EQ(pool.Count(), static_cast<int>(pooled.size()));
        ASSERT_EQ(queue.Count(), static_cast<int>(queued.size()));
        for (std::size_t place = 1; place < pooled.size(); ++place)
            ASSERT_EQ(pooled[place - 1]->Next(), pooled[place]);
        for (std::size_t place = 1; place < queued.size(); ++place)
            ASSERT_EQ(queued[place - 1]->Next(), queued[place]);
    }
}

} // namespace
