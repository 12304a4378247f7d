#include "ut_MessageChannel.h"

#include <atomic>
#include <chrono>
#include <climits>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "LogCapture.h"

namespace {

using utility::MessageChannel;
using Clock = std::chrono::steady_clock;
using Message = MessageChannel::Message;

static_assert(!std::is_copy_constructible<MessageChannel>::value, "a copy would return messages twice");
static_assert(std::is_nothrow_move_constructible<Message>::value, "a message is handed over");

// Expects that no test logs anything.
class MessageChannelTest : public testing::Test {
protected:
    ~MessageChannelTest() override {
        EXPECT_EQ(m_log.texts(), std::vector<std::string>());
    }

    test::LogCapture m_log;
};

bool sendText(MessageChannel& channel, const std::string& text) {
    Message message = channel.allocate();
    if (message == nullptr)
        return false;
    message->PutF("%s\n", text.c_str());
    return channel.send(std::move(message));
}

std::string textOf(const Message& message) {
    return message != nullptr ? message->GetLine() : "(null)";
}

long millisecondsSince(Clock::time_point start) {
    return static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count());
}

void sleepMilliseconds(int count) {
    std::this_thread::sleep_for(std::chrono::milliseconds(count));
}

TEST_F(MessageChannelTest, UsageExample) {
    std::string received;
    utility::MessageChannel channel(8, 256);
    std::thread consumer([&] {
        while (auto message = channel.receive())
            received += message->GetLine();
    });
    auto message = channel.allocate();
    message->PutF("port %d is offline\n", 4);
    channel.send(std::move(message));
    channel.close();
    consumer.join();
    EXPECT_EQ(received, "port 4 is offline");
}

TEST_F(MessageChannelTest, MessagesArriveInOrder) {
    MessageChannel channel(3, 64);
    for (const char* text : {"one", "two", "three"})
        EXPECT_TRUE(sendText(channel, text));
    EXPECT_EQ(channel.count(), 3);
    EXPECT_EQ(textOf(channel.receive()), "one");
    EXPECT_EQ(textOf(channel.receive(0)), "two");
    EXPECT_EQ(textOf(channel.receive(1000)), "three");
    EXPECT_EQ(channel.count(), 0);
    EXPECT_FALSE(channel.isAtEnd());
}

TEST_F(MessageChannelTest, AReturnedMessageIsAsNew) {
    MessageChannel channel(1, 16);
    Message message = channel.allocate(0);
    const void* const storage = message.get();
    message->PutF("text\n");
    message->setNoThrow(true);
    message->m_userValue = 1;
    message->m_userWord1 = 2;
    message->m_userWord2 = 3;
    message.reset();
    message = channel.allocate(0);
    ASSERT_EQ(message.get(), storage);
    EXPECT_EQ(message->ReadAvailable(), 0);
    EXPECT_FALSE(message->isNoThrow());
    EXPECT_EQ(message->m_userValue, 0U);
    EXPECT_EQ(message->m_userWord1, 0U);
    EXPECT_EQ(message->m_userWord2, 0U);
}

TEST_F(MessageChannelTest, UserFieldsAreSent) {
    MessageChannel channel(1, 16);
    Message message = channel.allocate();
    message->m_userValue = 7;
    channel.send(std::move(message));
    EXPECT_EQ(channel.receive()->m_userValue, 7U);
}

TEST_F(MessageChannelTest, ATimeLimitIsNeverEarly) {
    MessageChannel channel(1, 16);
    for (const long limit : {1L, 30L, 120L}) {
        Clock::time_point start = Clock::now();
        EXPECT_EQ(channel.receive(limit), nullptr);
        EXPECT_GE(millisecondsSince(start), limit);
        const Message held = channel.allocate();
        start = Clock::now();
        EXPECT_EQ(channel.allocate(limit), nullptr);
        EXPECT_GE(millisecondsSince(start), limit);
    }
    EXPECT_FALSE(channel.isAtEnd());
}

TEST_F(MessageChannelTest, ATimeLimitOfZeroDoesNotWait) {
    MessageChannel channel(1, 16);
    EXPECT_EQ(channel.receive(0), nullptr);
    const Message held = channel.allocate(0);
    EXPECT_NE(held, nullptr);
    EXPECT_EQ(channel.allocate(0), nullptr);
}

TEST_F(MessageChannelTest, HugeAndNegativeTimeLimitsWait) {
    for (const long limit : {LONG_MAX, -1L, LONG_MIN}) {
        MessageChannel channel(1, 16);
        std::thread producer([&] {
            sleepMilliseconds(20);
            sendText(channel, "late");
        });
        EXPECT_EQ(textOf(channel.receive(limit)), "late");
        producer.join();
    }
}

TEST_F(MessageChannelTest, ProducersWaitForAFreeMessage) {
    MessageChannel channel(1, 16);
    Message held = channel.allocate();
    std::thread other([&] {
        sleepMilliseconds(20);
        held.reset();
    });
    EXPECT_NE(channel.allocate(60000), nullptr);
    other.join();
}

TEST_F(MessageChannelTest, ConsumersDrainAClosedChannelAndThenEnd) {
    MessageChannel channel(3, 16);
    sendText(channel, "one");
    sendText(channel, "two");
    Message late = channel.allocate();
    EXPECT_FALSE(channel.isClosed());
    channel.close();
    channel.close();
    EXPECT_TRUE(channel.isClosed());
    EXPECT_FALSE(channel.send(std::move(late)));
    EXPECT_EQ(late, nullptr);
    EXPECT_EQ(channel.allocate(), nullptr);
    EXPECT_FALSE(channel.isAtEnd());
    EXPECT_EQ(textOf(channel.receive()), "one");
    EXPECT_EQ(textOf(channel.receive()), "two");
    EXPECT_TRUE(channel.isAtEnd());
    EXPECT_EQ(channel.receive(), nullptr);
}

TEST_F(MessageChannelTest, CloseWakesEveryWaitingThread) {
    MessageChannel channel(1, 16);
    const Message held = channel.allocate();
    std::atomic<int> ended(0);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] { ended += channel.receive() == nullptr ? 1 : 0; });
        threads.emplace_back([&] { ended += channel.allocate() == nullptr ? 1 : 0; });
    }
    sleepMilliseconds(30);
    EXPECT_EQ(ended, 0);
    channel.close();
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(ended, 8);
}

TEST_F(MessageChannelTest, AMessageOfAnotherChannelOrNoneIsRefused) {
    MessageChannel channel(1, 16);
    MessageChannel other(1, 16);
    EXPECT_FALSE(channel.send(other.allocate()));
    EXPECT_FALSE(channel.send(nullptr));
    EXPECT_EQ(channel.count(), 0);
    EXPECT_NE(other.allocate(0), nullptr);
}

TEST_F(MessageChannelTest, AMessageMayOutliveItsChannel) {
    std::optional<MessageChannel> channel(std::in_place, 3, 16);
    Message first = channel->allocate();
    Message second = channel->allocate();
    sendText(*channel, "never received");
    channel.reset();
    first->PutF("text\n");
    EXPECT_EQ(textOf(first), "text");
    first.reset();
    second.reset();
}

TEST_F(MessageChannelTest, AChannelHasAtLeastOneMessage) {
    for (const int count : {0, -1, INT_MIN}) {
        MessageChannel channel(count, 16);
        EXPECT_TRUE(sendText(channel, "one"));
        EXPECT_EQ(channel.allocate(0), nullptr);
    }
}

TEST_F(MessageChannelTest, ANegativeSizeIsAFailure) {
    bool isThrown = false;
    try {
        const MessageChannel channel(2, -1);
    } catch (framework::Exception* failure) {
        isThrown = failure->code() == 1238;
        delete failure;
    }
    EXPECT_TRUE(isThrown);
}

// Numbers of producers, consumers and messages in the pool.
struct Load {
    int producers;
    int consumers;
    int pool;
};

class MessageChannelLoad : public testing::TestWithParam<Load> {};

TEST_P(MessageChannelLoad, EveryMessageIsReceivedOnceAndInTheOrderOfItsProducer) {
    constexpr unsigned int messagesEach = 2000;
    const Load load = GetParam();
    MessageChannel channel(load.pool, 16);
    std::vector<std::vector<std::uint64_t>> received(static_cast<std::size_t>(load.consumers));
    std::vector<std::thread> consumers;
    for (auto& mine : received) {
        consumers.emplace_back([&] {
            for (;;) {
                // Time-outs and endings mix with messages.
                const Message message = channel.receive(mine.size() % 2 == 0 ? 1 : -1);
                if (message != nullptr)
                    mine.push_back(message->m_userValue);
                else if (channel.isAtEnd())
                    return;
            }
        });
    }
    std::vector<std::thread> producers;
    for (int producer = 0; producer < load.producers; ++producer) {
        producers.emplace_back([&channel, producer] {
            for (unsigned int i = 0; i < messagesEach; ++i) {
                Message message;
                while (message == nullptr)
                    message = channel.allocate(i % 2 == 0 ? 1 : -1);
                message->m_userValue = static_cast<std::uint64_t>(producer) * messagesEach + i;
                EXPECT_TRUE(channel.send(std::move(message)));
            }
        });
    }
    for (std::thread& thread : producers)
        thread.join();
    channel.close();
    for (std::thread& thread : consumers)
        thread.join();

    std::vector<int> counts(static_cast<std::size_t>(load.producers) * messagesEach);
    for (const auto& mine : received) {
        std::vector<std::int64_t> last(static_cast<std::size_t>(load.producers), -1);
        for (const std::uint64_t sent : mine) {
            const auto value = static_cast<std::size_t>(sent);
            ++counts[value];
            EXPECT_GT(static_cast<std::int64_t>(value), last[value / messagesEach]);
            last[value / messagesEach] = static_cast<std::int64_t>(value);
        }
    }
    EXPECT_EQ(counts, std::vector<int>(counts.size(), 1));
}

INSTANTIATE_TEST_SUITE_P(Loads, MessageChannelLoad,
                         testing::Values(Load{1, 1, 1}, Load{1, 1, 8}, Load{4, 1, 2}, Load{1, 4, 2}, Load{4, 4, 3},
                                         Load{8, 8, 64}));

TEST_F(MessageChannelTest, CanBeClosedWhileAllAreBusy) {
    for (int round = 0; round < 50; ++round) {
        MessageChannel channel(2, 16);
        std::atomic<int> sent(0);
        std::atomic<int> received(0);
        std::vector<std::thread> threads;
        for (int i = 0; i < 2; ++i) {
            threads.emplace_back([&] {
                while (sendText(channel, "x"))
                    ++sent;
            });
            threads.emplace_back([&] {
                while (channel.receive() != nullptr)
                    ++received;
            });
        }
        std::this_thread::sleep_for(std::chrono::microseconds(200));
        channel.close();
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(sent, received);
        EXPECT_TRUE(channel.isAtEnd());
    }
}

} // namespace
