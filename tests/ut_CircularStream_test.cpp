#include "ut_CircularStream.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "RandomRun.h"
#include "ReceiveText.h"
#include "SendText.h"

namespace {

using test::receiveText;
using test::sendText;
using utility::CircularStream;

static_assert(!std::is_copy_constructible<CircularStream>::value, "a copy would share the storage");
static_assert(!std::is_copy_assignable<CircularStream>::value, "an assignment would share the storage");

TEST(CircularStream, UsageExample) {
    utility::CircularStream history(8);
    EXPECT_TRUE(history.SendOutputStream("ABCDEFGHIJ", 10));
    EXPECT_TRUE(history.StartInputStream());
    char text[8];
    EXPECT_EQ(history.ReceiveInputStream(text, sizeof text), 7);
    EXPECT_EQ(std::string(text, 7), "DEFGHIJ");
}

TEST(CircularStream, ReadsBackDataThatFits) {
    CircularStream stream(8);
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_TRUE(sendText(stream, "ABC"));
    EXPECT_EQ(stream.ReadAvailable(), 3);
    EXPECT_TRUE(sendText(stream, "DEFG"));
    EXPECT_EQ(stream.ReadAvailable(), 7);
    EXPECT_EQ(receiveText(stream, 2), "AB");
    EXPECT_EQ(receiveText(stream, 20), "CDEFG");
    EXPECT_EQ(receiveText(stream, 20), "");
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 20), "ABCDEFG");
}

TEST(CircularStream, FillingTheLastByteWrapsAndLosesTheFirstByte) {
    CircularStream stream(8);
    EXPECT_TRUE(sendText(stream, "ABCDEFGH"));
    EXPECT_EQ(stream.WritePosition(), 0);
    EXPECT_EQ(stream.ReadAvailable(), 7);
    EXPECT_EQ(receiveText(stream, 20), "BCDEFGH");
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 20), "BCDEFGH");
}

TEST(CircularStream, KeepsTheLastBytesOfAWriteManyTimesItsCapacity) {
    CircularStream stream(8);
    std::string data;
    for (int i = 0; i < 1000; ++i)
        data += static_cast<char>('a' + i % 26);
    EXPECT_TRUE(sendText(stream, data));
    EXPECT_EQ(receiveText(stream, 20), data.substr(993));
}

TEST(CircularStream, OverrunMovesTheReaderToTheOldestByteLeft) {
    CircularStream stream(8);
    EXPECT_TRUE(sendText(stream, "ABCDEF"));
    EXPECT_EQ(receiveText(stream, 4), "ABCD");
    EXPECT_TRUE(sendText(stream, "GHIJ"));
    EXPECT_EQ(stream.ReadAvailable(), 6);
    EXPECT_TRUE(sendText(stream, "K"));
    EXPECT_EQ(stream.ReadAvailable(), 7);
    EXPECT_TRUE(sendText(stream, "L"));
    EXPECT_EQ(stream.ReadAvailable(), 7);
    EXPECT_TRUE(sendText(stream, "MN"));
    EXPECT_EQ(receiveText(stream, 20), "HIJKLMN");
}

TEST(CircularStream, ReadsAroundTheEndInPieces) {
    CircularStream stream(8);
    EXPECT_TRUE(sendText(stream, "ABCDEFGHIJ"));
    EXPECT_EQ(receiveText(stream, 1), "D");
    EXPECT_EQ(receiveText(stream, 4), "EFGH");
    EXPECT_EQ(stream.ReadPosition(), 0);
    EXPECT_EQ(receiveText(stream, 4), "IJ");
}

TEST(CircularStream, WriteRemainingIsAlwaysTheCapacity) {
    CircularStream stream(8);
    EXPECT_EQ(stream.WriteRemaining(), 8);
    EXPECT_TRUE(sendText(stream, "ABCDE"));
    EXPECT_EQ(stream.WriteRemaining(), 8);
    EXPECT_TRUE(sendText(stream, "ABCDE"));
    EXPECT_EQ(stream.WriteRemaining(), 8);
}

TEST(CircularStream, StartInputWrapsAPositionPastTheLastByteToTheFirst) {
    CircularStream stream(8);
    EXPECT_TRUE(sendText(stream, "ABCDEFGHIJKLMNO"));
    EXPECT_EQ(stream.WritePosition(), 7);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(stream.ReadPosition(), 0);
    EXPECT_EQ(receiveText(stream, 20), "IJKLMNO");
}

TEST(CircularStream, StartOutputKeepsTheWrappedState) {
    CircularStream stream(8);
    EXPECT_TRUE(sendText(stream, "ABCDEFGHIJ"));
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_EQ(stream.WritePosition(), 0);
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_TRUE(sendText(stream, "xy"));
    EXPECT_EQ(receiveText(stream, 20), "xy");
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 20), "DEFGHxy");
}

TEST(CircularStream, StartOutputOfARingThatNeverWrappedDiscardsTheContent) {
    CircularStream stream(8);
    EXPECT_TRUE(sendText(stream, "ABCDE"));
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 20), "");
    EXPECT_TRUE(sendText(stream, "xy"));
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 20), "xy");
}

TEST(CircularStream, StatesAreThoseOfAStreamThatNeverFails) {
    CircularStream stream(4);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(stream.isOutputStreamOpen());
        EXPECT_FALSE(stream.isOutputStreamInError());
        EXPECT_FALSE(stream.isOutputStreamAtEnd());
        EXPECT_TRUE(stream.isOutputStreamGood());
        EXPECT_TRUE(stream.isInputStreamOpen());
        EXPECT_FALSE(stream.isInputStreamInError());
        EXPECT_EQ(stream.GetInputStreamSize(), -1);
        EXPECT_TRUE(sendText(stream, "abc"));
        stream.EndOutputStream();
        EXPECT_FALSE(stream.isInputStreamAtEnd());
        stream.EndInputStream();
        EXPECT_FALSE(stream.isInputStreamAtEnd());
        EXPECT_EQ(receiveText(stream, 4).size(), 3u);
        EXPECT_TRUE(stream.isInputStreamAtEnd());
        EXPECT_FALSE(stream.isInputStreamGood());
    }
}

TEST(CircularStream, AdvancesBelowOneDoNothing) {
    CircularStream stream(8);
    EXPECT_TRUE(sendText(stream, "ABCDE"));
    for (const int n : {0, -1, INT_MIN}) {
        stream.WriteAdvance(n);
        stream.ReadAdvance(n);
    }
    EXPECT_EQ(stream.WritePosition(), 5);
    EXPECT_EQ(stream.ReadPosition(), 0);
}

TEST(CircularStream, ReadAdvanceIsLimitedToTheReadableBytes) {
    CircularStream stream(8);
    EXPECT_TRUE(sendText(stream, "ABCDE"));
    stream.ReadAdvance(2);
    EXPECT_EQ(receiveText(stream, 1), "C");
    stream.ReadAdvance(INT_MAX);
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_EQ(stream.ReadPosition(), 5);
    EXPECT_TRUE(sendText(stream, "FGHIJ"));
    stream.ReadAdvance(3);
    EXPECT_EQ(stream.ReadPosition(), 0);
    EXPECT_EQ(receiveText(stream, 20), "IJ");
}

TEST(CircularStream, WriteAdvanceByManyRoundsStaysInRange) {
    for (int start = 0; start < 8; ++start) {
        for (const int n : {8, 9, 20, 1001, INT_MAX}) {
            CircularStream stream(8);
            stream.WriteAdvance(start);
            stream.WriteAdvance(n);
            EXPECT_EQ(stream.WritePosition(), static_cast<int>((start + static_cast<long long>(n)) % 8));
            EXPECT_EQ(stream.ReadAvailable(), 7);
            EXPECT_EQ(receiveText(stream, 20).size(), 7u);
            stream.WriteAdvance(n);
            EXPECT_EQ(stream.ReadAvailable(), 7);
        }
    }
}

// A ring with positions up to the largest capacity, but only a few bytes of storage: only move its positions.
class LargestRing : public CircularStream {
public:
    LargestRing() : CircularStream(8) {
        setSize(INT_MAX);
    }
};

TEST(CircularStream, PositionsOfTheLargestRingWrapAroundItsEnd) {
    LargestRing stream;
    stream.WriteAdvance(INT_MAX - 1);
    stream.ReadAdvance(INT_MAX - 1);
    EXPECT_EQ(stream.ReadPosition(), INT_MAX - 1);
    stream.WriteAdvance(1000);
    EXPECT_EQ(stream.WritePosition(), 999);
    EXPECT_EQ(stream.ReadAvailable(), 1000);
    stream.ReadAdvance(600);
    EXPECT_EQ(stream.ReadPosition(), 599);
    EXPECT_EQ(stream.ReadAvailable(), 400);
    stream.WriteAdvance(INT_MAX);
    EXPECT_EQ(stream.ReadPosition(), 1000);
    EXPECT_EQ(stream.ReadAvailable(), INT_MAX - 1);
    stream.ReadAdvance(INT_MAX);
    EXPECT_EQ(stream.ReadPosition(), 999);
    EXPECT_EQ(stream.ReadAvailable(), 0);
}

TEST(CircularStream, CapacityOneAcceptsEverythingAndReturnsNothing) {
    CircularStream stream(1);
    EXPECT_TRUE(sendText(stream, "ABC"));
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 5), "");
}

TEST(CircularStream, CapacityZeroAcceptsEverythingAndStoresNothing) {
    CircularStream stream(0);
    EXPECT_TRUE(sendText(stream, "ABC"));
    stream.WriteAdvance(5);
    stream.ReadAdvance(5);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 5), "");
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_EQ(stream.WriteRemaining(), 0);
    EXPECT_TRUE(stream.isInputStreamAtEnd());
}

TEST(CircularStream, ConstructionWithoutStorageThrows1238) {
    const char* const allocate = "void utility::Buffer::allocBuffer()";
    EXPECT_FAILURE(CircularStream(-1), 1238, "ut_Buffer", allocate, "");
    EXPECT_FAILURE(test::failNth(1, [] { CircularStream(8); }), 1238, "ut_Buffer", allocate, "");
}

TEST(CircularStream, NullDataWritesNothingAndANullBufferConsumesNothing) {
    CircularStream stream(8);
    EXPECT_TRUE(stream.SendOutputStream(nullptr, 5));
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_TRUE(sendText(stream, "ABC"));
    EXPECT_EQ(stream.ReceiveInputStream(nullptr, 5), 0);
    EXPECT_EQ(receiveText(stream, 5), "ABC");
}

TEST(CircularStream, AllocatesOnlyItsStorage) {
    CircularStream stream(8);
    char text[8];
    const unsigned long before = test::allocationCount();
    EXPECT_TRUE(stream.SendOutputStream("ABCDEFGHIJ", 10));
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(stream.ReceiveInputStream(text, sizeof text), 7);
    EXPECT_EQ(test::allocationCount(), before);
}

TEST(CircularStream, ReceivesATransferFromAnotherRing) {
    CircularStream from(100);
    CircularStream to(8);
    EXPECT_TRUE(sendText(from, "ABCDEFGHIJ"));
    EXPECT_TRUE(to.TransferFromInputStream(from));
    EXPECT_EQ(receiveText(to, 20), "DEFGHIJ");
}

// A ring that counts the calls of its virtual position operations.
class CountingRing : public CircularStream {
public:
    explicit CountingRing(int capacity) : CircularStream(capacity) {}

    int ReadAvailable() const override {
        ++m_questions;
        return CircularStream::ReadAvailable();
    }
    void WriteAdvance(int n) override {
        m_written.push_back(n);
        CircularStream::WriteAdvance(n);
    }
    void ReadAdvance(int n) override {
        m_read.push_back(n);
        CircularStream::ReadAdvance(n);
    }

    mutable int m_questions = 0;
    std::vector<int> m_written;
    std::vector<int> m_read;
};

TEST(CircularStream, TransferFromItselfChangesNothing) {
    CircularStream ring(8);
    ring.SendOutputStream("ABCDEFGHIJ", 10);
    ring.StartInputStream();
    EXPECT_TRUE(ring.TransferFromInputStream(ring));
    char text[8];
    EXPECT_EQ(ring.ReceiveInputStream(text, sizeof text), 7);
    EXPECT_EQ(std::string(text, 7), "DEFGHIJ");
    EXPECT_TRUE(ring.TransferFromInputStream(ring));
}

TEST(CircularStream, SourceAndDestinationMayBeItsOwnStorage) {
    CircularStream ring(8);
    ring.SendOutputStream("ABCDEF", 6);
    ring.StartOutputStream();
    ring.SendOutputStream(ring.pBuffer() + 1, 5);
    EXPECT_EQ(std::string(ring.pBuffer(), 5), "BCDEF");
    ring.ReadAdvance(2);
    EXPECT_EQ(ring.ReceiveInputStream(ring.pBuffer() + 1, 3), 3);
    EXPECT_EQ(std::string(ring.pBuffer(), 5), "BDEFF");
}

TEST(CircularStream, ADerivedRingSeesEveryAdvance) {
    CountingRing ring(8);
    EXPECT_TRUE(sendText(ring, "ABCDEFGHIJ"));
    EXPECT_EQ(ring.m_written, (std::vector<int>{8, 2}));
    EXPECT_EQ(receiveText(ring, 20), "DEFGHIJ");
    EXPECT_EQ(ring.m_read, (std::vector<int>{5, 2}));
    EXPECT_GT(ring.m_questions, 0);
}

// The expected behavior, modeled byte by byte.
struct RingModel {
    explicit RingModel(unsigned int capacity) : ring(capacity, '\0') {}

    void send(const std::string& data) {
        for (const char c : data) {
            ring[write] = c;
            advance(1);
        }
    }
    void advance(std::size_t n) {
        wrapped = wrapped || write + n >= ring.size();
        write = (write + n) % ring.size();
        unread = std::min(unread + n, ring.size() - 1);
    }
    std::string receive(std::size_t size) {
        std::string data;
        for (; data.size() < size && unread > 0; --unread)
            data += ring[(write + ring.size() - unread) % ring.size()];
        return data;
    }
    void startOutput() {
        write = 0;
        unread = 0;
        ring[0] = '\0';
    }
    void startInput() {
        unread = wrapped ? ring.size() - 1 : write;
    }

    std::string ring;
    std::size_t write = 0;
    std::size_t unread = 0;
    bool wrapped = false;
};

void runAgainstModel(test::RandomRun& random, int steps) {
    const unsigned int capacity = 1 + random.below(40);
    CircularStream stream(static_cast<int>(capacity));
    RingModel model(capacity);
    // Advancing makes bytes readable that were not written, so fill the ring and the model with known bytes first.
    EXPECT_TRUE(sendText(stream, std::string(capacity, '.')));
    model.send(std::string(capacity, '.'));
    for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
        const unsigned int n = random.below(random.below(8) == 0 ? 200 : capacity);
        switch (random.below(20)) {
        case 0:
            EXPECT_TRUE(stream.StartOutputStream());
            model.startOutput();
            break;
        case 1:
            EXPECT_TRUE(stream.StartInputStream());
            model.startInput();
            break;
        case 2:
            stream.WriteAdvance(static_cast<int>(n));
            model.advance(n);
            break;
        case 3:
            stream.ReadAdvance(static_cast<int>(n));
            model.receive(n);
            break;
        default:
            if (random.below(2) == 0) {
                const std::string data = random.text(n, "abcdefghijklmnopqrstuvwxyz");
                EXPECT_TRUE(sendText(stream, data));
                model.send(data);
            } else {
                EXPECT_EQ(receiveText(stream, n), model.receive(n));
            }
        }
        EXPECT_EQ(stream.ReadAvailable(), static_cast<int>(model.unread));
        EXPECT_EQ(stream.WritePosition(), static_cast<int>(model.write));
        EXPECT_EQ(stream.isInputStreamAtEnd(), model.unread == 0);
        EXPECT_LT(stream.ReadPosition(), stream.Size());
    }
}

TEST(CircularStream, BehavesAsARingOfBytesUnderRandomOperations) {
    test::RandomRun random;
    while (random.steps(100))
        runAgainstModel(random, 1000);
}

} // namespace
