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
        for (ListNumber* element : {&a, &b, &c})
            list.addLast(element);
    }

    ListNumber a{1};
    ListNumber b{2};
    ListNumber c{3};
    ListNumber d{4};
    List list;
};

TEST_F(ListIteratorTest, UsageExample) {
    std::vector<const utility::ListContainable*> shown;
    const auto show = [&shown](const utility::ListContainable& element) {
        shown.push_back(&element);
    };

    utility::ListIterator walk(list, utility::LAST_TO_FIRST);
    while (utility::ListContainable* element = walk.next())
        show(*element);

    EXPECT_EQ(shown, (std::vector<const utility::ListContainable*>{&c, &b, &a}));
}

TEST_F(ListIteratorTest, OrderZeroStartsAtTheFirstElement) {
    ListIterator iterator(list, static_cast<SortOrder>(0));
    EXPECT_EQ(walk(iterator), (std::vector<int>{1, 2, 3}));
}

TEST_F(ListIteratorTest, EveryOtherOrderStartsAtTheLastElement) {
    for (const int order : {1, 2, -1, 7, 2147483647}) {
        ListIterator iterator(list, static_cast<SortOrder>(order));
        EXPECT_EQ(walk(iterator), (std::vector<int>{3, 2, 1})) << order;
    }
}

TEST_F(ListIteratorTest, NextStaysNullAtTheEnd) {
    ListIterator iterator(list, utility::FIRST_TO_LAST);
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
    list.add(1, &d);
    ASSERT_EQ(list.count(), 3);
    ListIterator forward(list, utility::FIRST_TO_LAST);
    ListIterator backward(list, utility::LAST_TO_FIRST);
    EXPECT_EQ(walk(forward), (std::vector<int>{1, 4, 2, 3}));
    EXPECT_EQ(walk(backward), (std::vector<int>{3, 2, 4, 1}));
}

TEST_F(ListIteratorTest, TheCallerDeletesAnIteratorReturnedByAList) {
    for (const SortOrder order : {utility::FIRST_TO_LAST, utility::LAST_TO_FIRST}) {
        const std::unique_ptr<ListIterator> iterator(list.iterator(order));
        ASSERT_NE(iterator, nullptr);
        EXPECT_EQ(walk(*iterator).front(), order == utility::FIRST_TO_LAST ? 1 : 3);
    }
    list.addLast(&d);
    EXPECT_EQ(list.count(), 4);
}

TEST_F(ListIteratorTest, OtherThreadsCanRead) {
    ListIterator iterator(list, utility::FIRST_TO_LAST);
    std::thread reader([this] {
        EXPECT_EQ(list.getFirst(), &a);
        EXPECT_EQ(list.getLast(), &c);
        EXPECT_EQ(list.indexOf(&b), 1);
        EXPECT_EQ(list.count(), 3);
        ListIterator other(list, utility::LAST_TO_FIRST);
        EXPECT_EQ(walk(other), (std::vector<int>{3, 2, 1}));
    });
    reader.join();
    EXPECT_EQ(walk(iterator), (std::vector<int>{1, 2, 3}));
}

TEST_F(ListIteratorTest, WritersWaitUntilTheIteratorIsDestroyed) {
    auto iterator = std::make_unique<ListIterator>(list, utility::FIRST_TO_LAST);
    std::vector<std::future<void>> writers;
    writers.push_back(std::async(std::launch::async, [this] { list.addLast(&d); }));
    writers.push_back(std::async(std::launch::async, [this] { list.remove(&b); }));
    writers.push_back(std::async(std::launch::async, [this] { list.removeFirst(true); }));
    std::this_thread::sleep_for(shortDelay);
    for (const std::future<void>& writer : writers)
        EXPECT_EQ(writer.wait_for(std::chrono::seconds(0)), std::future_status::timeout);
    EXPECT_EQ(walk(*iterator), (std::vector<int>{1, 2, 3}));

    iterator.reset();
    for (std::future<void>& writer : writers)
        writer.get();
    EXPECT_EQ(list.count(), 2);
    EXPECT_EQ(list.getFirst(), &c);
    EXPECT_EQ(list.getLast(), &d);
}

TEST_F(ListIteratorTest, StaysValidWhileOtherThreadsTryToWrite) {
    std::atomic<bool> done(false);
    std::thread writer([this, &done] {
        while (!done) {
            list.addLast(&d);
            list.remove(&d);
        }
    });
    for (int round = 0; round < 500; ++round) {
        ListIterator iterator(list, round % 2 == 0 ? utility::FIRST_TO_LAST : utility::LAST_TO_FIRST);
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
