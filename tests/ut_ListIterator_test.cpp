#include "ut_ListIterator.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ListNumber.h"

using test::ListNumber;
using utility::List;
using utility::ListIterator;
using utility::SortOrder;

namespace {

const std::chrono::milliseconds shortDelay(100);

std::vector<int> walk(ListIterator& iterator) {
    std::vector<int> values;
    while (const utility::ListContainable* element = iterator.next())
        values.push_back(static_cast<const ListNumber*>(element)->value);
    return values;
}

class ListIteratorTest : public testing::Test {
protected:
    ListIteratorTest() {
        for (ListNumber* element : {&m_a, &m_b, &m_c})
            m_list.addLast(element);
    }

    ListNumber m_a{1};
    ListNumber m_b{2};
    ListNumber m_c{3};
    ListNumber m_d{4};
    List m_list;
};

TEST_F(ListIteratorTest, UsageExample) {
    std::vector<const utility::ListContainable*> shown;
    const auto show = [&shown](const utility::ListContainable& element) {
        shown.push_back(&element);
    };

    utility::ListIterator walk(m_list, utility::LAST_TO_FIRST);
    while (utility::ListContainable* element = walk.next())
        show(*element);

    EXPECT_EQ(shown, (std::vector<const utility::ListContainable*>{&m_c, &m_b, &m_a}));
}

TEST_F(ListIteratorTest, OrderZeroStartsAtTheFirstElement) {
    ListIterator iterator(m_list, static_cast<SortOrder>(0));
    EXPECT_EQ(walk(iterator), (std::vector<int>{1, 2, 3}));
}

TEST_F(ListIteratorTest, EveryOtherOrderStartsAtTheLastElement) {
    for (const int order : {1, 2, -1, 7, 2147483647}) {
        ListIterator iterator(m_list, static_cast<SortOrder>(order));
        EXPECT_EQ(walk(iterator), (std::vector<int>{3, 2, 1})) << order;
    }
}

TEST_F(ListIteratorTest, NextStaysNullAtTheEnd) {
    ListIterator iterator(m_list, utility::FIRST_TO_LAST);
    walk(iterator);
    EXPECT_EQ(iterator.next(), nullptr);
    EXPECT_EQ(iterator.next(), nullptr);
}

TEST_F(ListIteratorTest, NextReturnsNullForAnEmptyList) {
    const List empty;
    for (const SortOrder order : {utility::FIRST_TO_LAST, utility::LAST_TO_FIRST}) {
        ListIterator iterator(empty, order);
        EXPECT_EQ(iterator.next(), nullptr);
    }
}

TEST_F(ListIteratorTest, IteratesOverUncountedElementsToo) {
    m_list.add(1, &m_d);
    ASSERT_EQ(m_list.count(), 3);
    ListIterator forward(m_list, utility::FIRST_TO_LAST);
    ListIterator backward(m_list, utility::LAST_TO_FIRST);
    EXPECT_EQ(walk(forward), (std::vector<int>{1, 4, 2, 3}));
    EXPECT_EQ(walk(backward), (std::vector<int>{3, 2, 4, 1}));
}

TEST_F(ListIteratorTest, TheCallerDeletesAnIteratorReturnedByAList) {
    for (const SortOrder order : {utility::FIRST_TO_LAST, utility::LAST_TO_FIRST}) {
        const std::unique_ptr<ListIterator> iterator(m_list.iterator(order));
        ASSERT_NE(iterator, nullptr);
        EXPECT_EQ(walk(*iterator).front(), order == utility::FIRST_TO_LAST ? 1 : 3);
    }
    m_list.addLast(&m_d);
    EXPECT_EQ(m_list.count(), 4);
}

TEST_F(ListIteratorTest, OtherThreadsCanRead) {
    ListIterator iterator(m_list, utility::FIRST_TO_LAST);
    std::thread reader([this] {
        EXPECT_EQ(m_list.getFirst(), &m_a);
        EXPECT_EQ(m_list.getLast(), &m_c);
        EXPECT_EQ(m_list.indexOf(&m_b), 1);
        EXPECT_EQ(m_list.count(), 3);
        ListIterator other(m_list, utility::LAST_TO_FIRST);
        EXPECT_EQ(walk(other), (std::vector<int>{3, 2, 1}));
    });
    reader.join();
    EXPECT_EQ(walk(iterator), (std::vector<int>{1, 2, 3}));
}

TEST_F(ListIteratorTest, WritersWaitUntilTheIteratorIsDestroyed) {
    auto iterator = std::make_unique<ListIterator>(m_list, utility::FIRST_TO_LAST);
    std::vector<std::future<void>> writers;
    writers.push_back(std::async(std::launch::async, [this] { m_list.addLast(&m_d); }));
    writers.push_back(std::async(std::launch::async, [this] { m_list.remove(&m_b); }));
    writers.push_back(std::async(std::launch::async, [this] { m_list.removeFirst(true); }));
    std::this_thread::sleep_for(shortDelay);
    for (const std::future<void>& writer : writers)
        EXPECT_EQ(writer.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    EXPECT_EQ(walk(*iterator), (std::vector<int>{1, 2, 3}));

    iterator.reset();
    for (std::future<void>& writer : writers)
        writer.get();
    EXPECT_EQ(m_list.count(), 2);
    EXPECT_EQ(m_list.getFirst(), &m_c);
    EXPECT_EQ(m_list.getLast(), &m_d);
}

TEST_F(ListIteratorTest, StaysValidWhileOtherThreadsTryToWrite) {
    std::atomic<bool> done(false);
    std::thread writer([this, &done] {
        while (!done) {
            m_list.addLast(&m_d);
            m_list.remove(&m_d);
        }
    });
    for (int round = 0; round < 500; ++round) {
        ListIterator iterator(m_list, round % 2 == 0 ? utility::FIRST_TO_LAST : utility::LAST_TO_FIRST);
        std::vector<int> values = walk(iterator);
        if (round % 2 != 0)
            std::reverse(values.begin(), values.end());
        if (values.size() == 4) {
            EXPECT_EQ(values.back(), 4);
            values.pop_back();
        }
        ASSERT_EQ(values, (std::vector<int>{1, 2, 3}));
    }
    done = true;
    writer.join();
}

} // namespace
