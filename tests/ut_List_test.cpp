#include "ut_List.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cstddef>
#include <functional>
#include <future>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "DebugSwitch.h"
#include "FailingAllocation.h"
#include "ListNumber.h"
#include "LogCapture.h"
#include "RandomSeed.h"
#include "fw_Logger.h"
#include "ut_Debug.h"
#include "ut_ListIterator.h"

using test::ListNumber;
using utility::List;
using utility::ListContainable;
using utility::ListIterator;

namespace {

const std::chrono::milliseconds shortDelay(50);
const std::chrono::seconds timeout(60);
constexpr unsigned int waiterSwitch = 2301;

typedef std::vector<ListContainable*> Elements;

Elements content(const List& list) {
    Elements elements;
    ListIterator iterator(list, utility::FIRST_TO_LAST);
    while (ListContainable* element = iterator.next())
        elements.push_back(element);
    return elements;
}

Elements contentBackwards(const List& list) {
    Elements elements;
    ListIterator iterator(list, utility::LAST_TO_FIRST);
    while (ListContainable* element = iterator.next())
        elements.insert(elements.begin(), element);
    return elements;
}

bool isReady(const std::future<ListContainable*>& consumer) {
    return consumer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

std::future<ListContainable*> startConsumer(List& list) {
    return std::async(std::launch::async, [&list] { return list.removeFirst(true); });
}

// Returns how often a waiter was signaled, according to its traces.
std::ptrdiff_t signalCount(const test::LogCapture& log) {
    const std::vector<std::string> texts = log.texts();
    return std::count(texts.begin(), texts.end(), "Signal");
}

class ListTest : public testing::Test {
protected:
    void fill() {
        for (ListNumber* element : {&m_a, &m_b, &m_c})
            m_list.addLast(element);
    }

    ListNumber m_a{1};
    ListNumber m_b{2};
    ListNumber m_c{3};
    ListNumber m_d{4};
    ListNumber m_anotherB{2};
    List m_list;
};

TEST(List, UsageExample) {
    struct Port : public ListNumber {
        using ListNumber::ListNumber;
    };
    const int alive = ListNumber::alive;

    utility::List queue(true);
    std::thread consumer([&queue] { delete queue.removeFirst(true); });
    queue.addLast(new Port(4));
    consumer.join();

    EXPECT_EQ(queue.getFirst(), nullptr);
    EXPECT_EQ(ListNumber::alive, alive);
}

TEST_F(ListTest, ANewListIsEmpty) {
    EXPECT_EQ(m_list.count(), 0);
    EXPECT_EQ(m_list.getFirst(), nullptr);
    EXPECT_EQ(m_list.getLast(), nullptr);
    EXPECT_EQ(m_list.get(0), nullptr);
    EXPECT_EQ(m_list.indexOf(&m_a), -1);
    EXPECT_EQ(m_list.removeLast(), nullptr);
    EXPECT_EQ(m_list.remove(0), nullptr);
    m_list.remove(&m_a);
    m_list.removeAndDelete(0);
    m_list.removeAndDelete(&m_a);
    m_list.removeAll();
    m_list.removeAndDeleteAll();
    EXPECT_EQ(m_list.count(), 0);
}

TEST_F(ListTest, AddFirstPrependsAndAddLastAppends) {
    m_list.addFirst(&m_b);
    m_list.addFirst(&m_a);
    m_list.addLast(&m_c);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_c}));
    EXPECT_EQ(contentBackwards(m_list), (Elements{&m_a, &m_b, &m_c}));
    EXPECT_EQ(m_list.count(), 3);
    EXPECT_EQ(m_list.getFirst(), &m_a);
    EXPECT_EQ(m_list.getLast(), &m_c);
}

TEST_F(ListTest, NullIsNeitherAddedNorSignaled) {
    const test::DebugSwitch traces(waiterSwitch);
    const test::LogCapture log;
    m_list.addFirst(nullptr);
    m_list.addLast(nullptr);
    m_list.add(0, nullptr);
    m_list.add(-1, nullptr);
    EXPECT_EQ(m_list.count(), 0);
    EXPECT_EQ(m_list.getFirst(), nullptr);
    EXPECT_EQ(log.count(), 0u);
}

TEST_F(ListTest, AddingAtAnEndSignalsOnce) {
    const test::DebugSwitch traces(waiterSwitch);
    const test::LogCapture log;
    m_list.addFirst(&m_b);
    EXPECT_EQ(signalCount(log), 1);
    m_list.addLast(&m_c);
    EXPECT_EQ(signalCount(log), 2);
    m_list.add(0, &m_a);
    EXPECT_EQ(signalCount(log), 3);
    m_list.add(99, &m_d);
    EXPECT_EQ(signalCount(log), 4);
}

TEST_F(ListTest, ADuplicateIsNeitherAddedNorSignaled) {
    fill();
    const test::DebugSwitch traces(waiterSwitch);
    const test::LogCapture log;
    m_list.addFirst(&m_anotherB);
    m_list.addLast(&m_anotherB);
    for (const int index : {-1, 0, 1, 2, 3, 4})
        m_list.add(index, &m_anotherB);
    EXPECT_EQ(m_list.count(), 3);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_c}));
    EXPECT_EQ(log.count(), 0u);
}

TEST_F(ListTest, EqualElementsAreStoredWhenDuplicatesAreAllowed) {
    List duplicates(true);
    duplicates.addLast(&m_b);
    duplicates.addLast(&m_anotherB);
    duplicates.addFirst(&m_b);
    duplicates.add(1, &m_anotherB);
    EXPECT_EQ(content(duplicates), (Elements{&m_b, &m_anotherB, &m_b, &m_anotherB}));
    EXPECT_EQ(duplicates.count(), 3);
    EXPECT_EQ(duplicates.indexOf(&m_anotherB), 0);
}

TEST_F(ListTest, CallsEqualsOnTheGivenElementWithEachStoredOne) {
    struct Asked : public ListContainable {
        bool equals(const ListContainable* other) const override {
            askedWith.push_back(const_cast<ListContainable*>(other));
            return other == match;
        }
        const ListContainable* match = nullptr;
        mutable Elements askedWith;
    };
    fill();
    Asked asked;
    EXPECT_EQ(m_list.indexOf(&asked), -1);
    EXPECT_EQ(asked.askedWith, (Elements{&m_a, &m_b, &m_c}));

    asked.askedWith.clear();
    asked.match = &m_b;
    EXPECT_EQ(m_list.indexOf(&asked), 1);
    EXPECT_EQ(asked.askedWith, (Elements{&m_a, &m_b}));

    asked.askedWith.clear();
    m_list.addLast(&asked);
    EXPECT_EQ(asked.askedWith, (Elements{&m_a, &m_b}));
    EXPECT_EQ(m_list.count(), 3);

    m_list.remove(&asked);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_c}));
}

TEST_F(ListTest, AddAtOrBeyondTheCountAppends) {
    fill();
    m_list.add(5, &m_d);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_c, &m_d}));
    EXPECT_EQ(m_list.count(), 4);

    ListNumber e(5);
    m_list.add(4, &e);
    EXPECT_EQ(m_list.getLast(), &e);
    ListNumber f(6);
    m_list.add(INT_MAX, &f);
    EXPECT_EQ(m_list.getLast(), &f);
    EXPECT_EQ(m_list.count(), 6);
    m_list.removeAll();
}

TEST_F(ListTest, AddAtANegativeIndexAppends) {
    fill();
    m_list.add(-1, &m_d);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_c, &m_d}));
    ListNumber e(5);
    m_list.add(INT_MIN, &e);
    EXPECT_EQ(m_list.getLast(), &e);
    EXPECT_EQ(m_list.count(), 5);
    m_list.removeAll();
}

TEST_F(ListTest, AddAtIndexZeroPrepends) {
    fill();
    m_list.add(0, &m_d);
    EXPECT_EQ(content(m_list), (Elements{&m_d, &m_a, &m_b, &m_c}));
    EXPECT_EQ(m_list.count(), 4);
}

TEST_F(ListTest, AddAtIndexZeroOfAnEmptyListAddsItsOnlyElement) {
    m_list.add(0, &m_a);
    EXPECT_EQ(m_list.getFirst(), &m_a);
    EXPECT_EQ(m_list.getLast(), &m_a);
    EXPECT_EQ(m_list.count(), 1);
}

TEST_F(ListTest, AddInBetweenDoesNotCountOrSignal) {
    fill();
    const test::DebugSwitch traces(waiterSwitch);
    const test::LogCapture log;
    m_list.add(1, &m_d);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_d, &m_b, &m_c}));
    EXPECT_EQ(contentBackwards(m_list), (Elements{&m_a, &m_d, &m_b, &m_c}));
    EXPECT_EQ(m_list.count(), 3);
    EXPECT_EQ(m_list.get(3), &m_c);
    EXPECT_EQ(m_list.get(4), nullptr);
    EXPECT_EQ(log.count(), 0u);
}

TEST_F(ListTest, AddAtTheLastCountedPositionGoesBeforeItsElement) {
    fill();
    m_list.add(2, &m_d);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_d, &m_c}));
    ListNumber e(5);
    m_list.add(3, &e); // the count is still 3, so this appends
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_d, &m_c, &e}));
    EXPECT_EQ(m_list.count(), 4);
    m_list.removeAll();
}

TEST_F(ListTest, CountBecomesNegativeIfMoreIsRemovedThanCounted) {
    fill();
    m_list.add(1, &m_d);
    m_list.removeAll();
    EXPECT_EQ(m_list.count(), -1);
    EXPECT_EQ(m_list.getFirst(), nullptr);
    EXPECT_EQ(m_list.getLast(), nullptr);

    m_list.addLast(&m_a);
    EXPECT_EQ(m_list.count(), 0);
    EXPECT_EQ(m_list.getFirst(), &m_a);
    m_list.add(1, &m_b);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b}));
}

TEST_F(ListTest, AnElementIsRemovedFromAListWithACountOfZero) {
    fill();
    m_list.add(1, &m_d);
    for (int element = 0; element < 3; ++element)
        m_list.removeLast();
    ASSERT_EQ(m_list.count(), 0);
    EXPECT_EQ(m_list.removeFirst(true), &m_a);
}

TEST_F(ListTest, GetCountsFromZero) {
    fill();
    EXPECT_EQ(m_list.get(0), &m_a);
    EXPECT_EQ(m_list.get(1), &m_b);
    EXPECT_EQ(m_list.get(2), &m_c);
}

TEST_F(ListTest, PositionsOutOfRangeReturnNull) {
    fill();
    for (const int index : {-1, INT_MIN, 3, INT_MAX}) {
        EXPECT_EQ(m_list.get(index), nullptr) << index;
        EXPECT_EQ(m_list.remove(index), nullptr) << index;
        m_list.removeAndDelete(index);
    }
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_c}));
}

TEST_F(ListTest, IndexOfFindsTheFirstEqualElement) {
    fill();
    EXPECT_EQ(m_list.indexOf(&m_a), 0);
    EXPECT_EQ(m_list.indexOf(&m_anotherB), 1);
    EXPECT_EQ(m_list.indexOf(&m_c), 2);
    EXPECT_EQ(m_list.indexOf(&m_d), -1);
    EXPECT_EQ(m_list.indexOf(nullptr), -1);
}

TEST_F(ListTest, NullIsNeverRemoved) {
    fill();
    m_list.remove(static_cast<const ListContainable*>(nullptr));
    m_list.removeAndDelete(static_cast<ListContainable*>(nullptr));
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_c}));
}

TEST_F(ListTest, RemovesFromEitherEnd) {
    fill();
    EXPECT_EQ(m_list.removeFirst(false), &m_a);
    EXPECT_EQ(m_list.removeLast(), &m_c);
    EXPECT_EQ(m_list.count(), 1);
    EXPECT_EQ(m_list.removeLast(), &m_b);
    EXPECT_EQ(m_list.getFirst(), nullptr);
    EXPECT_EQ(m_list.getLast(), nullptr);
    EXPECT_EQ(m_list.count(), 0);
    m_list.addFirst(&m_d);
    EXPECT_EQ(m_list.getLast(), &m_d);
}

TEST_F(ListTest, RemovesByPosition) {
    fill();
    EXPECT_EQ(m_list.remove(1), &m_b);
    EXPECT_EQ(contentBackwards(m_list), (Elements{&m_a, &m_c}));
    EXPECT_EQ(m_list.remove(1), &m_c);
    EXPECT_EQ(m_list.getLast(), &m_a);
    EXPECT_EQ(m_list.remove(0), &m_a);
    EXPECT_EQ(m_list.getFirst(), nullptr);
    EXPECT_EQ(m_list.count(), 0);
}

TEST_F(ListTest, RemovesTheFirstEqualElement) {
    List duplicates(true);
    duplicates.addLast(&m_a);
    duplicates.addLast(&m_b);
    duplicates.addLast(&m_anotherB);
    duplicates.remove(&m_anotherB);
    EXPECT_EQ(content(duplicates), (Elements{&m_a, &m_anotherB}));
    duplicates.remove(&m_c);
    EXPECT_EQ(duplicates.count(), 2);
}

TEST_F(ListTest, RemoveAndDeleteByPositionDeletesTheElement) {
    const int alive = ListNumber::alive;
    m_list.addLast(&m_a);
    m_list.addLast(new ListNumber(20));
    m_list.addLast(&m_b);
    m_list.removeAndDelete(1);
    EXPECT_EQ(ListNumber::alive, alive);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b}));
    EXPECT_EQ(m_list.count(), 2);
}

TEST_F(ListTest, RemoveAndDeleteDeletesTheStoredElementNotTheOneGiven) {
    const int alive = ListNumber::alive;
    ListNumber twenty(20);
    m_list.addLast(&m_a);
    m_list.addLast(new ListNumber(20));
    m_list.removeAndDelete(&twenty);
    EXPECT_EQ(ListNumber::alive, alive + 1);
    EXPECT_EQ(content(m_list), (Elements{&m_a}));

    auto* stored = new ListNumber(30);
    m_list.addFirst(stored);
    m_list.removeAndDelete(stored);
    EXPECT_EQ(ListNumber::alive, alive + 1);
    m_list.removeAndDelete(&m_b);
    EXPECT_EQ(content(m_list), (Elements{&m_a}));
}

TEST_F(ListTest, AnElementIsDeletedBeforeItIsRemoved) {
    struct Watching : public ListContainable {
        explicit Watching(const List& watched) : list(watched) {}
        Watching(const Watching&) = delete;
        Watching& operator=(const Watching&) = delete;
        // The thread that holds the write lock may read the list.
        ~Watching() override {
            countAtEnd = list.count();
        }
        bool equals(const ListContainable* other) const override {
            return this == other;
        }
        const List& list;
        static int& lastCount() {
            static int count = 0;
            return count;
        }
        int& countAtEnd = lastCount();
    };
    m_list.addLast(new Watching(m_list));
    m_list.removeAndDelete(0);
    EXPECT_EQ(Watching::lastCount(), 1);
    EXPECT_EQ(m_list.count(), 0);
}

TEST_F(ListTest, AnElementMayRemoveItselfInItsDestructor) {
    struct Leaving : public ListNumber {
        Leaving(int number, List& left, ListContainable* put) : ListNumber(number), list(left), successor(put) {}
        Leaving(const Leaving&) = delete;
        Leaving& operator=(const Leaving&) = delete;
        ~Leaving() override {
            list.remove(static_cast<const ListContainable*>(this));
            list.addLast(successor);
        }
        List& list;
        ListContainable* successor;
    };
    m_list.addLast(&m_a);
    m_list.addLast(new Leaving(20, m_list, nullptr));
    m_list.addLast(&m_b);
    m_list.removeAndDelete(1);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b}));
    EXPECT_EQ(contentBackwards(m_list), (Elements{&m_a, &m_b}));
    EXPECT_EQ(m_list.count(), 2);

    auto* leaving = new Leaving(20, m_list, &m_c);
    m_list.addFirst(leaving);
    m_list.removeAndDelete(leaving);
    EXPECT_EQ(content(m_list), (Elements{&m_a, &m_b, &m_c}));
    EXPECT_EQ(m_list.count(), 3);

    m_list.removeAll();
    for (int number = 20; number < 23; ++number)
        m_list.addLast(new Leaving(number, m_list, nullptr));
    m_list.removeAndDeleteAll();
    EXPECT_EQ(m_list.getFirst(), nullptr);
    EXPECT_EQ(m_list.getLast(), nullptr);
    EXPECT_EQ(m_list.count(), 0);
}

TEST_F(ListTest, RemoveAllDeletesNoElement) {
    fill();
    const int alive = ListNumber::alive;
    m_list.removeAll();
    EXPECT_EQ(ListNumber::alive, alive);
    EXPECT_EQ(m_list.getFirst(), nullptr);
    EXPECT_EQ(m_list.getLast(), nullptr);
    EXPECT_EQ(m_list.count(), 0);
}

TEST_F(ListTest, RemoveAndDeleteAllDeletesEveryElementInOrder) {
    struct Ordered : public ListContainable {
        Ordered(int given, std::vector<int>& record) : number(given), deleted(record) {}
        Ordered(const Ordered&) = delete;
        Ordered& operator=(const Ordered&) = delete;
        ~Ordered() override {
            deleted.push_back(number);
        }
        bool equals(const ListContainable* other) const override {
            return this == other;
        }
        int number;
        std::vector<int>& deleted;
    };
    std::vector<int> deleted;
    for (int number = 1; number <= 3; ++number)
        m_list.addLast(new Ordered(number, deleted));
    m_list.add(1, new Ordered(4, deleted));
    m_list.removeAndDeleteAll();
    EXPECT_EQ(deleted, (std::vector<int>{1, 4, 2, 3}));
    EXPECT_EQ(m_list.getFirst(), nullptr);
    EXPECT_EQ(m_list.count(), -1);
}

TEST_F(ListTest, TheDestructorDeletesNoElement) {
    const int alive = ListNumber::alive;
    {
        List other;
        other.addLast(&m_a);
        other.addLast(&m_b);
    }
    EXPECT_EQ(ListNumber::alive, alive);
}

TEST_F(ListTest, RemoveFirstWithoutWaitReturnsNullAtOnceIfTheListIsEmpty) {
    const test::DebugSwitch traces(waiterSwitch);
    const test::LogCapture log;
    EXPECT_EQ(m_list.removeFirst(false), nullptr);
    EXPECT_EQ(log.count(), 0u);
}

TEST_F(ListTest, RemoveFirstDoesNotWaitIfTheListIsNotEmpty) {
    fill();
    const test::DebugSwitch traces(waiterSwitch);
    const test::LogCapture log;
    EXPECT_EQ(m_list.removeFirst(true), &m_a);
    EXPECT_EQ(log.count(), 0u);
}

TEST_F(ListTest, RemoveFirstWaitsWithoutATimeoutAndWithTheListUnlocked) {
    const test::DebugSwitch traces(waiterSwitch);
    const test::LogCapture log;
    std::future<ListContainable*> consumer = startConsumer(m_list);
    while (!log.contains(framework::Logger::LOG_DEBUG, "Wait .... (1 waiters)"))
        std::this_thread::yield();
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"Locking .....", "Waiting: 0", "Wait .... (1 waiters)"}));
    EXPECT_EQ(m_list.removeLast(), nullptr); // takes the write lock
    EXPECT_FALSE(isReady(consumer));
    m_list.addFirst(&m_a);
    EXPECT_EQ(consumer.get(), &m_a);
}

TEST_F(ListTest, RemoveFirstBlocksUntilAnElementIsAdded) {
    const std::function<void(ListContainable*)> additions[] = {
        [this](ListContainable* element) { m_list.addFirst(element); },
        [this](ListContainable* element) { m_list.addLast(element); },
        [this](ListContainable* element) { m_list.add(0, element); },
        [this](ListContainable* element) { m_list.add(7, element); },
    };
    for (const auto& addition : additions) {
        std::future<ListContainable*> consumer = startConsumer(m_list);
        std::this_thread::sleep_for(shortDelay);
        EXPECT_FALSE(isReady(consumer));
        addition(&m_a);
        EXPECT_EQ(consumer.get(), &m_a);
        EXPECT_EQ(m_list.count(), 0);
    }
}

TEST_F(ListTest, WakeAllMakesEveryConsumerReturnNull) {
    std::vector<std::future<ListContainable*>> consumers;
    for (int consumer = 0; consumer < 4; ++consumer)
        consumers.push_back(startConsumer(m_list));
    std::this_thread::sleep_for(shortDelay);
    for (const std::future<ListContainable*>& consumer : consumers)
        EXPECT_FALSE(isReady(consumer));
    for (std::future<ListContainable*>& consumer : consumers) {
        while (!isReady(consumer)) {
            m_list.wakeAll();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        EXPECT_EQ(consumer.get(), nullptr);
    }
}

TEST_F(ListTest, OneWakeAllWakesEveryBlockedConsumer) {
    const test::DebugSwitch traces(waiterSwitch);
    const test::LogCapture log;
    std::vector<std::future<ListContainable*>> consumers;
    for (int consumer = 0; consumer < 4; ++consumer)
        consumers.push_back(startConsumer(m_list));
    // The last consumer logs this just before it waits. It has the lock, so the others have released it by waiting.
    while (!log.contains(framework::Logger::LOG_DEBUG, "Wait .... (4 waiters)"))
        std::this_thread::yield();
    const auto readyCount = [&consumers] {
        return std::count_if(consumers.begin(), consumers.end(), isReady);
    };
    EXPECT_EQ(readyCount(), 0);

    m_list.wakeAll();
    const auto end = std::chrono::steady_clock::now() + timeout;
    while (readyCount() < 3 && std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_GE(readyCount(), 3);

    for (std::future<ListContainable*>& consumer : consumers) {
        while (!isReady(consumer))
            m_list.wakeAll();
        EXPECT_EQ(consumer.get(), nullptr);
    }
}

TEST_F(ListTest, WakeAllWithoutConsumersIsNotRemembered) {
    m_list.wakeAll();
    std::future<ListContainable*> consumer = startConsumer(m_list);
    std::this_thread::sleep_for(shortDelay);
    EXPECT_FALSE(isReady(consumer));
    m_list.addLast(&m_a);
    EXPECT_EQ(consumer.get(), &m_a);
}

// Runs `action` once, in the thread that logs `text`, from within the log call and with the traces switched off.
class Interruption {
public:
    Interruption(const char* text, std::function<void()> action) : m_text(text), m_action(std::move(action)) {
        framework::Logger::setSink(sink, this);
        utility::Debug::setDebugOn(waiterSwitch);
    }
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;
    ~Interruption() {
        utility::Debug::setDebugOff(waiterSwitch);
        framework::Logger::setSink(nullptr, nullptr);
    }

private:
    static void sink(void* context, framework::Logger::LogType, const char*, int, const char* text) {
        auto* self = static_cast<Interruption*>(context);
        if (self->m_text != text || self->m_done)
            return;
        self->m_done = true;
        utility::Debug::setDebugOff(waiterSwitch);
        self->m_action();
    }

    const std::string m_text;
    const std::function<void()> m_action;
    bool m_done = false;
};

// Returns the element that the consumer removed, or null if only `wakeAll` could end its wait.
ListContainable* resultOf(std::future<ListContainable*>& consumer, List& list) {
    if (consumer.wait_for(timeout) == std::future_status::ready)
        return consumer.get();
    while (!isReady(consumer))
        list.wakeAll();
    return nullptr;
}

TEST_F(ListTest, AnElementAddedJustBeforeAConsumerWaitsIsRemoved) {
    const Interruption interruption("Locking .....", [this] {
        std::thread producer([this] { m_list.addLast(&m_a); });
        producer.join();
    });
    std::future<ListContainable*> consumer = startConsumer(m_list);
    EXPECT_EQ(resultOf(consumer, m_list), &m_a);
}

TEST_F(ListTest, AnElementAddedWhileAConsumerBeginsToWaitIsRemoved) {
    std::thread producer;
    const Interruption interruption("Wait .... (1 waiters)", [this, &producer] {
        producer = std::thread([this] { m_list.addLast(&m_a); });
        std::this_thread::sleep_for(shortDelay);
    });
    std::future<ListContainable*> consumer = startConsumer(m_list);
    EXPECT_EQ(resultOf(consumer, m_list), &m_a);
    producer.join();
}

TEST_F(ListTest, AnEntryIsOneAllocation) {
    const unsigned long before = test::allocationCount();
    m_list.addLast(&m_a);
    EXPECT_EQ(test::allocationCount() - before, 1u);
    m_list.addFirst(&m_b);
    EXPECT_EQ(test::allocationCount() - before, 2u);
    m_list.add(1, &m_c);
    EXPECT_EQ(test::allocationCount() - before, 3u);
}

TEST_F(ListTest, WithoutMemoryAddDoesNotAddOrSignal) {
    const std::function<void()> additions[] = {
        [this] { m_list.addFirst(&m_d); }, [this] { m_list.addLast(&m_d); }, [this] { m_list.add(0, &m_d); },
        [this] { m_list.add(1, &m_d); },   [this] { m_list.add(-1, &m_d); },
    };
    for (const bool filled : {false, true}) {
        if (filled)
            fill();
        const Elements before = content(m_list);
        for (const auto& addition : additions) {
            const test::DebugSwitch traces(waiterSwitch);
            const test::LogCapture log;
            {
                test::FailingAllocation failing(1);
                addition();
                failing.stop();
                EXPECT_EQ(failing.failures(), 1u);
            }
            EXPECT_EQ(content(m_list), before);
            EXPECT_EQ(contentBackwards(m_list), before);
            EXPECT_EQ(m_list.count(), static_cast<int>(before.size()));
            EXPECT_EQ(log.count(), 0u);
        }
    }
    m_list.addLast(&m_d);
    EXPECT_EQ(m_list.getLast(), &m_d);
}

TEST_F(ListTest, ReadingAndRemovingDoNotAllocate) {
    fill();
    m_list.addLast(new ListNumber(20));
    m_list.addLast(new ListNumber(21));
    const test::FailingAllocation failing(test::failAll);
    EXPECT_EQ(m_list.getFirst(), &m_a);
    EXPECT_EQ(m_list.get(2), &m_c);
    EXPECT_EQ(m_list.indexOf(&m_b), 1);
    EXPECT_EQ(m_list.removeFirst(true), &m_a);
    EXPECT_EQ(m_list.remove(1), &m_c);
    m_list.remove(&m_b);
    m_list.removeAndDelete(0);
    m_list.wakeAll();
    m_list.removeAndDeleteAll();
    m_list.removeAll();
    EXPECT_EQ(m_list.count(), 0);
    EXPECT_EQ(failing.failures(), 0u);
}

TEST_F(ListTest, WithoutMemoryIteratorReturnsNullAndLeavesTheListUnlocked) {
    fill();
    {
        const test::FailingAllocation failing(test::failAll);
        EXPECT_EQ(m_list.iterator(utility::FIRST_TO_LAST), nullptr);
        EXPECT_EQ(m_list.iterator(utility::LAST_TO_FIRST), nullptr);
    }
    std::thread writer([this] { m_list.addLast(&m_d); });
    writer.join();
    EXPECT_EQ(m_list.count(), 4);
}

TEST(ListEntry, ANewEntryHasNoNeighbors) {
    ListNumber a(1);
    const List::ListEntry entry(&a);
    EXPECT_EQ(entry.element(), &a);
    EXPECT_EQ(entry.previous(), nullptr);
    EXPECT_EQ(entry.next(), nullptr);
}

TEST(ListEntry, InsertLinksTheNeighborsAndTheDestructorUnlinksThem) {
    ListNumber a(1);
    ListNumber b(2);
    ListNumber c(3);
    ListNumber d(4);
    List::ListEntry middle(&b);
    List::ListEntry* front = middle.insertBefore(&a);
    List::ListEntry* back = middle.insertAfter(&d);
    ASSERT_NE(front, nullptr);
    ASSERT_NE(back, nullptr);
    EXPECT_EQ(front->element(), &a);
    EXPECT_EQ(front->previous(), nullptr);
    EXPECT_EQ(front->next(), &middle);
    EXPECT_EQ(middle.previous(), front);
    EXPECT_EQ(middle.next(), back);
    EXPECT_EQ(back->previous(), &middle);
    EXPECT_EQ(back->next(), nullptr);

    List::ListEntry* third = back->insertBefore(&c);
    EXPECT_EQ(middle.next(), third);
    EXPECT_EQ(third->previous(), &middle);
    EXPECT_EQ(third->next(), back);
    EXPECT_EQ(back->previous(), third);
    List::ListEntry* second = front->insertAfter(&c);
    EXPECT_EQ(front->next(), second);
    EXPECT_EQ(second->previous(), front);
    EXPECT_EQ(second->next(), &middle);
    EXPECT_EQ(middle.previous(), second);

    delete second;
    EXPECT_EQ(front->next(), &middle);
    EXPECT_EQ(middle.previous(), front);
    delete third;
    delete front;
    EXPECT_EQ(middle.previous(), nullptr);
    delete back;
    EXPECT_EQ(middle.next(), nullptr);
}

TEST(ListEntry, InsertReturnsNullWithoutMemory) {
    ListNumber a(1);
    List::ListEntry entry(&a);
    {
        const test::FailingAllocation failing(test::failAll);
        EXPECT_EQ(entry.insertBefore(&a), nullptr);
        EXPECT_EQ(entry.insertAfter(&a), nullptr);
    }
    EXPECT_EQ(entry.previous(), nullptr);
    EXPECT_EQ(entry.next(), nullptr);
}

TEST(ListEntries, CallersCanGetAndRemoveEntries) {
    ListNumber a(1);
    ListNumber b(2);
    ListNumber c(3);
    List list;
    for (ListNumber* element : {&a, &b, &c})
        list.addLast(element);
    EXPECT_EQ(list.getEntry(-1), nullptr);
    EXPECT_EQ(list.getEntry(3), nullptr);
    EXPECT_EQ(list.getEntry(static_cast<const ListContainable*>(nullptr)), nullptr);
    EXPECT_EQ(list.getEntry(2), list.getEntry(&c));
    ASSERT_NE(list.getEntry(1), nullptr);
    EXPECT_EQ(list.getEntry(1)->element(), &b);

    list.removeEntry(nullptr);
    EXPECT_EQ(list.count(), 3);
    list.removeEntry(list.getEntry(1));
    EXPECT_EQ(list.getEntry(0)->next(), list.getEntry(1));
    list.removeEntry(list.getEntry(1));
    EXPECT_EQ(list.getLast(), &a);
    list.removeEntry(list.getEntry(&a));
    EXPECT_EQ(list.getFirst(), nullptr);
    EXPECT_EQ(list.getLast(), nullptr);
    EXPECT_EQ(list.count(), 0);
}

// Reference implementation with a vector; elements inserted in between are not counted.
class ListModel {
public:
    ListModel(unsigned int seed, bool allowDuplicates)
        : m_random(seed), m_allowDuplicates(allowDuplicates), m_list(allowDuplicates) {}
    ListModel(const ListModel&) = delete;
    ListModel& operator=(const ListModel&) = delete;
    ~ListModel() {
        m_list.removeAndDeleteAll();
    }

    void run(int steps) {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            takeStep();
            EXPECT_EQ(m_list.count(), m_count) << "step " << step;
            EXPECT_EQ(m_list.getFirst(), m_model.empty() ? nullptr : m_model.front()) << "step " << step;
            EXPECT_EQ(m_list.getLast(), m_model.empty() ? nullptr : m_model.back()) << "step " << step;
            if (step % 16 == 0) {
                EXPECT_EQ(content(m_list), m_model) << "step " << step;
                EXPECT_EQ(contentBackwards(m_list), m_model) << "step " << step;
            }
            EXPECT_EQ(ListNumber::alive - m_aliveBefore, static_cast<int>(m_model.size())) << "step " << step;
        }
    }

private:
    int below(int limit) {
        return static_cast<int>(m_random() % static_cast<unsigned int>(limit));
    }

    int someIndex() {
        return below(static_cast<int>(m_model.size()) + 6) - 3;
    }

    int positionOf(int value) const {
        const auto found = std::find_if(m_model.begin(), m_model.end(), [value](const ListContainable* element) {
            return static_cast<const ListNumber*>(element)->value == value;
        });
        return found == m_model.end() ? -1 : static_cast<int>(found - m_model.begin());
    }

    bool isInside(int index) const {
        return index >= 0 && index < static_cast<int>(m_model.size());
    }

    void takeStep() {
        switch (below(21)) {
        case 0:
        case 1:
        case 2:
            return add([this](ListContainable* element) { m_list.addFirst(element); }, 0);
        case 3:
        case 4:
        case 5:
            return add([this](ListContainable* element) { m_list.addLast(element); }, -1);
        case 6:
        case 7:
        case 8:
        case 9: {
            const int index = someIndex();
            return add([this, index](ListContainable* element) { m_list.add(index, element); }, index);
        }
        case 10:
            return expectRemoved(m_list.removeFirst(!m_model.empty()), 0);
        case 11:
            return expectRemoved(m_list.removeLast(), static_cast<int>(m_model.size()) - 1);
        case 12:
        case 13: {
            const int index = someIndex();
            return expectRemoved(m_list.remove(index), index);
        }
        case 14:
            return removeEqual();
        case 15: {
            const int index = someIndex();
            m_list.removeAndDelete(index);
            return forget(index);
        }
        case 16: {
            ListNumber wanted(below(values));
            const int index = positionOf(wanted.value);
            m_list.removeAndDelete(&wanted);
            return forget(index);
        }
        case 17: {
            const ListNumber wanted(below(values));
            EXPECT_EQ(m_list.indexOf(&wanted), positionOf(wanted.value));
            return;
        }
        case 18:
        case 19: {
            const int index = someIndex();
            EXPECT_EQ(m_list.get(index), isInside(index) ? m_model[static_cast<std::size_t>(index)] : nullptr);
            return;
        }
        default:
            return below(40) == 0 ? removeEverything() : void();
        }
    }

    template<class Add>
    void add(Add addToList, int index) {
        auto element = std::make_unique<ListNumber>(below(values));
        addToList(element.get());
        if (!m_allowDuplicates && positionOf(element->value) >= 0)
            return;
        const bool inBetween = index > 0 && index < m_count;
        const bool inFront = index == 0;
        const auto place = inFront ? m_model.begin() : inBetween ? m_model.begin() + index : m_model.end();
        m_model.insert(place, element.release());
        if (!inBetween)
            ++m_count;
    }

    void expectRemoved(ListContainable* removed, int index) {
        ASSERT_EQ(removed, isInside(index) ? m_model[static_cast<std::size_t>(index)] : nullptr);
        delete removed;
        forget(index);
    }

    void removeEqual() {
        const ListNumber wanted(below(values));
        m_list.remove(&wanted);
        const int index = positionOf(wanted.value);
        if (isInside(index))
            delete m_model[static_cast<std::size_t>(index)];
        forget(index);
    }

    void forget(int index) {
        if (!isInside(index))
            return;
        m_model.erase(m_model.begin() + index);
        --m_count;
    }

    void removeEverything() {
        m_count -= static_cast<int>(m_model.size());
        if (below(2) == 0) {
            m_list.removeAndDeleteAll();
        } else {
            m_list.removeAll();
            for (const ListContainable* element : m_model)
                delete element;
        }
        m_model.clear();
    }

    static const int values = 24;

    const int m_aliveBefore = ListNumber::alive;
    std::mt19937 m_random;
    bool m_allowDuplicates;
    List m_list;
    Elements m_model;
    int m_count = 0;
};

TEST(List, BehavesAsAVectorUnderRandomOperations) {
    for (const bool allowDuplicates : {false, true}) {
        const unsigned int seed = test::randomSeed();
        SCOPED_TRACE(test::repeatWith(seed));
        ListModel(seed, allowDuplicates).run(100000);
    }
}

TEST(List, EachOfAMillionElementsFromEightProducersReachesOneOfEightConsumers) {
    struct Parcel : public ListContainable {
        bool equals(const ListContainable* other) const override {
            return this == other;
        }
        std::atomic<unsigned int> removed{0};
    };
    const std::size_t perProducer = 125000;
    const std::size_t total = 8 * perProducer;
    std::vector<Parcel> parcels(total);
    List queue(true);
    std::atomic<std::size_t> removed(0);
    std::atomic<bool> closing(false);

    std::vector<std::future<void>> consumers;
    for (int consumer = 0; consumer < 8; ++consumer)
        consumers.push_back(std::async(std::launch::async, [&] {
            for (;;) {
                ListContainable* element = queue.removeFirst(true);
                if (element != nullptr) {
                    ++static_cast<Parcel*>(element)->removed;
                    ++removed;
                } else if (closing) {
                    return;
                }
            }
        }));
    std::vector<std::thread> producers;
    for (std::size_t producer = 0; producer < 8; ++producer)
        producers.emplace_back([&, producer] {
            for (std::size_t parcel = 0; parcel < perProducer; ++parcel)
                queue.addLast(&parcels[producer * perProducer + parcel]);
        });
    for (std::thread& producer : producers)
        producer.join();

    std::size_t seen = 0;
    auto end = std::chrono::steady_clock::now() + timeout;
    while (removed < total && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        if (removed != seen) {
            seen = removed;
            end = std::chrono::steady_clock::now() + timeout;
        }
    }
    EXPECT_EQ(removed, total) << "before anyone was woken without an element";

    closing = true;
    for (const std::future<void>& consumer : consumers)
        while (consumer.wait_for(std::chrono::milliseconds(1)) != std::future_status::ready)
            queue.wakeAll();
    EXPECT_TRUE(std::all_of(parcels.begin(), parcels.end(), [](const Parcel& parcel) { return parcel.removed == 1; }));
    EXPECT_EQ(queue.getFirst(), nullptr);
    EXPECT_EQ(queue.count(), 0);
}

} // namespace
