#include "ut_BufferStreamElement.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "CountingMemory.h"
#include "ExpectFailure.h"

namespace {

using utility::BufferStreamElement;
using Chain = std::vector<const BufferStreamElement*>;

static_assert(sizeof(BufferStreamElement::m_userValue) == 8 && sizeof(BufferStreamElement::m_userWord1) == 4 &&
                  sizeof(BufferStreamElement::m_userWord2) == 4,
              "owners rely on the widths");

Chain chainFrom(const BufferStreamElement* first) {
    Chain chain;
    for (const BufferStreamElement* e = first; e && chain.size() < 100; e = e->Next())
        chain.push_back(e);
    return chain;
}

// Records the bytes at `watched` when memory is next released.
class InspectingMemory : public test::CountingMemory {
public:
    void release(const void* piece) override {
        if (watched)
            std::memcpy(&seen, watched, sizeof seen);
        watched = nullptr;
        CountingMemory::release(piece);
    }
    const void* watched = nullptr;
    std::uint64_t seen = 1;
};

class BufferStreamElementTest : public testing::Test {
protected:
    BufferStreamElement a{8, nullptr};
    BufferStreamElement b{8, nullptr};
    BufferStreamElement c{8, nullptr};
    BufferStreamElement d{8, nullptr};
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
    a.Append(&b);
    a.Append(&c);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &b, &c}));
    b.Append(&d);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &b, &c, &d}));
}

TEST_F(BufferStreamElementTest, AppendUnlinksTheElementsAfterTheAppendedOne) {
    c.Append(&d);
    a.Append(&c);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &c}));
    EXPECT_EQ(d.Next(), nullptr);
}

TEST_F(BufferStreamElementTest, AppendOfNullDoesNothing) {
    a.Append(&b);
    a.Append(nullptr);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &b}));
}

TEST_F(BufferStreamElementTest, AppendOfAnElementOfTheChainCreatesNoLoop) {
    a.Append(&b);
    a.Append(&c);
    for (BufferStreamElement* e : {&a, &b, &c}) {
        a.Append(e);
        EXPECT_EQ(chainFrom(&a), (Chain{&a, &b, &c}));
    }
    d.Append(&d);
    EXPECT_EQ(chainFrom(&d), (Chain{&d}));
}

TEST_F(BufferStreamElementTest, InsertLinksBeforeAndReturnsTheNewFirst) {
    EXPECT_EQ(a.Insert(&b), &b);
    EXPECT_EQ(chainFrom(&b), (Chain{&b, &a}));
    EXPECT_EQ(b.Insert(&c), &c);
    EXPECT_EQ(chainFrom(&c), (Chain{&c, &b, &a}));
}

TEST_F(BufferStreamElementTest, InsertUnlinksTheElementsAfterTheInsertedOne) {
    c.Append(&d);
    EXPECT_EQ(a.Insert(&c), &c);
    EXPECT_EQ(chainFrom(&c), (Chain{&c, &a}));
}

TEST_F(BufferStreamElementTest, InsertOfNullOrItselfChangesNothing) {
    a.Append(&b);
    EXPECT_EQ(a.Insert(nullptr), &a);
    EXPECT_EQ(a.Insert(&a), &a);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &b}));
}

TEST_F(BufferStreamElementTest, InsertOfAnElementOfTheChainCreatesNoLoop) {
    a.Append(&b);
    a.Append(&c);
    EXPECT_EQ(a.Insert(&b), &a);
    EXPECT_EQ(a.Insert(&c), &a);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &b, &c}));
}

TEST_F(BufferStreamElementTest, RemoveOfTheFirstReturnsTheSecond) {
    a.Append(&b);
    a.Append(&c);
    EXPECT_EQ(a.Remove(&a), &b);
    EXPECT_EQ(a.Next(), nullptr);
    EXPECT_EQ(chainFrom(&b), (Chain{&b, &c}));
}

TEST_F(BufferStreamElementTest, RemoveOfTheOnlyOneReturnsNull) {
    EXPECT_EQ(a.Remove(&a), nullptr);
    EXPECT_EQ(a.Next(), nullptr);
}

TEST_F(BufferStreamElementTest, RemoveOfALaterOneLinksItsNeighbors) {
    a.Append(&b);
    a.Append(&c);
    a.Append(&d);
    EXPECT_EQ(a.Remove(&c), &a);
    EXPECT_EQ(c.Next(), nullptr);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &b, &d}));
    EXPECT_EQ(a.Remove(&d), &a);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &b}));
    EXPECT_EQ(a.Remove(&b), &a);
    EXPECT_EQ(chainFrom(&a), (Chain{&a}));
}

TEST_F(BufferStreamElementTest, RemoveOfNullOrAForeignElementChangesNothing) {
    a.Append(&b);
    c.Append(&d);
    EXPECT_EQ(a.Remove(nullptr), &a);
    EXPECT_EQ(a.Remove(&c), &a);
    EXPECT_EQ(b.Remove(&a), &b);
    EXPECT_EQ(chainFrom(&a), (Chain{&a, &b}));
    EXPECT_EQ(chainFrom(&c), (Chain{&c, &d}));
}

} // namespace
