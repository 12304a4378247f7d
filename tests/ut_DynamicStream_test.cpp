#include "ut_DynamicStream.h"

#include <algorithm>
#include <climits>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "BytePattern.h"
#include "DebugSwitch.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "ReceiveText.h"
#include "SendText.h"
#include "TraceLines.h"
#include "fw_Memory.h"

namespace {

using test::bytePattern;
using test::receiveText;
using test::sendText;
using test::traceLine;
using utility::DynamicStream;
using Lines = std::vector<std::string>;

constexpr unsigned int traceSwitch = 4395;
constexpr const char* constructName = "utility::DynamicStream::DynamicStream(int)";
constexpr const char* sendName = "virtual bool utility::DynamicStream::SendOutputStream(const char*, unsigned int)";
constexpr const char* receiveName = "virtual int utility::DynamicStream::ReceiveInputStream(char*, unsigned int)";

static_assert(!std::is_copy_constructible<DynamicStream>::value, "a copy would share the pages");
static_assert(!std::is_copy_assignable<DynamicStream>::value, "an assignment would share the pages");
static_assert(std::is_base_of<framework::InputStream, DynamicStream>::value, "it is read as an input");
static_assert(std::is_base_of<framework::OutputStream, DynamicStream>::value, "it is written as an output");

unsigned int footprint(unsigned int slots, unsigned int pages) {
    return slots * 4 + pages * 4096 + 32;
}

TEST(DynamicStream, UsageExample) {
    utility::DynamicStream stream(10000);
    EXPECT_TRUE(stream.SendOutputStream("ports", 5));
    char text[8];
    EXPECT_EQ(stream.ReceiveInputStream(text, sizeof text), 5);
    EXPECT_EQ(std::string(text, 5), "ports");
    EXPECT_EQ(stream.ReceiveInputStream(text, sizeof text), -1);
}

TEST(DynamicStream, HasOnePageSlotMoreThanTheFullPagesOfItsMaximum) {
    EXPECT_EQ(DynamicStream(10000).getSize(), footprint(3, 0));
    EXPECT_EQ(DynamicStream(8192).getSize(), footprint(3, 0));
    EXPECT_EQ(DynamicStream(8191).getSize(), footprint(2, 0));
    EXPECT_EQ(DynamicStream(4095).getSize(), footprint(1, 0));
    EXPECT_EQ(DynamicStream(0).getSize(), footprint(1, 0));
    EXPECT_EQ(DynamicStream(INT_MAX).getSize(), footprint(524288, 0));
}

TEST(DynamicStream, RefusesEveryWriteIfItsMaximumIsBelowOne) {
    for (const int maxSize : {0, -1, -4097, INT_MIN}) {
        DynamicStream stream(maxSize);
        test::LogCapture log;
        EXPECT_FALSE(sendText(stream, "x"));
        EXPECT_FALSE(sendText(stream, ""));
        EXPECT_EQ(test::traceLines(log),
                  (Lines{traceLine(0, sendName, "not enough room"), traceLine(0, sendName, "not enough room")}));
        EXPECT_EQ(stream.GetInputStreamSize(), 0);
        EXPECT_EQ(stream.getSize(), footprint(1, 0));
    }
}

TEST(DynamicStream, WriteLongerThanTheSpaceStoresWhatFitsAndFailsWithoutALogLine) {
    DynamicStream stream(10000);
    const std::string data = bytePattern(12000);
    test::LogCapture log;
    EXPECT_FALSE(sendText(stream, data));
    EXPECT_EQ(log.count(), 0u);
    EXPECT_EQ(stream.GetInputStreamSize(), 10000);
    EXPECT_EQ(stream.getSize(), footprint(3, 3));
    EXPECT_EQ(receiveText(stream, 20000), data.substr(0, 10000));
}

TEST(DynamicStream, WriteToAFullStreamIsLogged) {
    DynamicStream stream(5);
    test::LogCapture log;
    EXPECT_TRUE(sendText(stream, "ports"));
    EXPECT_EQ(log.count(), 0u);
    EXPECT_FALSE(sendText(stream, "x"));
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, sendName, "not enough room")}));
    EXPECT_EQ(receiveText(stream, 10), "ports");
}

TEST(DynamicStream, AllocatesAPageWhenItsFirstByteIsWritten) {
    const long before = framework::Memory::staticOutstanding();
    {
        DynamicStream stream(10000);
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
        EXPECT_TRUE(sendText(stream, ""));
        EXPECT_EQ(stream.getSize(), footprint(3, 0));
        EXPECT_TRUE(sendText(stream, bytePattern(4095)));
        EXPECT_EQ(stream.getSize(), footprint(3, 1));
        EXPECT_TRUE(sendText(stream, "x"));
        EXPECT_EQ(stream.getSize(), footprint(3, 1));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
        EXPECT_TRUE(sendText(stream, "y"));
        EXPECT_EQ(stream.getSize(), footprint(3, 2));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 3);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(DynamicStream, MaximumOfWholePagesFillsThemToTheLastByte) {
    DynamicStream stream(8192);
    const std::string data = bytePattern(8192);
    EXPECT_TRUE(sendText(stream, data));
    EXPECT_EQ(stream.getSize(), footprint(3, 2));
    test::LogCapture log;
    EXPECT_FALSE(sendText(stream, "x"));
    EXPECT_TRUE(log.contains(framework::Logger::LOG_ERROR, sendName, "not enough room"));
    EXPECT_EQ(receiveText(stream, 8192), data);
}

TEST(DynamicStream, ReadsAcrossPagesInPiecesOfAnySize) {
    const std::string data = bytePattern(10000);
    for (const unsigned int piece : {1u, 1000u, 4095u, 4096u, 4097u, 10000u, 12000u}) {
        DynamicStream stream(20000);
        EXPECT_TRUE(sendText(stream, data));
        std::string all;
        while (!stream.isInputStreamAtEnd())
            all += receiveText(stream, piece);
        EXPECT_EQ(all, data) << piece;
        char byte;
        EXPECT_EQ(stream.ReceiveInputStream(&byte, 1), -1);
    }
}

TEST(DynamicStream, ReceivesMinusOneAtTheEndAndZeroForASizeOfZero) {
    DynamicStream stream(10);
    char byte = 'z';
    EXPECT_EQ(stream.ReceiveInputStream(&byte, 1), -1);
    EXPECT_EQ(stream.ReceiveInputStream(&byte, 0), -1);
    EXPECT_TRUE(sendText(stream, "ab"));
    EXPECT_EQ(stream.ReceiveInputStream(&byte, 0), 0);
    EXPECT_EQ(byte, 'z');
    EXPECT_EQ(receiveText(stream, 10), "ab");
    EXPECT_EQ(stream.ReceiveInputStream(&byte, 1), -1);
    EXPECT_TRUE(sendText(stream, "c"));
    EXPECT_EQ(receiveText(stream, 10), "c");
}

TEST(DynamicStream, StartInputReadsFromTheFirstByteAgain) {
    DynamicStream stream(100);
    EXPECT_TRUE(sendText(stream, "ports"));
    EXPECT_EQ(receiveText(stream, 3), "por");
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 10), "ports");
}

TEST(DynamicStream, EndInputSkipsTheUnreadBytes) {
    DynamicStream stream(100);
    EXPECT_TRUE(sendText(stream, "ports"));
    EXPECT_EQ(receiveText(stream, 1), "p");
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    stream.EndInputStream();
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receiveText(stream, 10), "-1");
    EXPECT_TRUE(sendText(stream, "4"));
    EXPECT_EQ(receiveText(stream, 10), "4");
    EXPECT_EQ(stream.GetInputStreamSize(), 6);
}

TEST(DynamicStream, StartOutputWritesFromTheStartAndKeepsThePages) {
    DynamicStream stream(10000);
    EXPECT_TRUE(sendText(stream, bytePattern(5000)));
    const long before = framework::Memory::staticOutstanding();
    EXPECT_EQ(receiveText(stream, 4), bytePattern(4));
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_EQ(stream.GetInputStreamSize(), 0);
    EXPECT_EQ(stream.getSize(), footprint(3, 2));
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(sendText(stream, "por"));
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(sendText(stream, "ts"));
    EXPECT_EQ(receiveText(stream, 10), "s");
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 10), "ports");
    EXPECT_TRUE(sendText(stream, bytePattern(8000)));
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
    stream.EndOutputStream();
    EXPECT_EQ(stream.GetInputStreamSize(), 8005);
}

TEST(DynamicStream, ResetFreesAllPagesAndTheStreamIsReusable) {
    DynamicStream stream(10000);
    const long before = framework::Memory::staticOutstanding();
    EXPECT_TRUE(sendText(stream, bytePattern(10000)));
    EXPECT_EQ(receiveText(stream, 5).size(), 5u);
    stream.reset();
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
    EXPECT_EQ(stream.getSize(), footprint(3, 0));
    EXPECT_EQ(stream.GetInputStreamSize(), 0);
    EXPECT_EQ(receiveText(stream, 5), "-1");
    EXPECT_TRUE(sendText(stream, "ports"));
    EXPECT_EQ(receiveText(stream, 10), "ports");
    stream.reset();
    stream.reset();
}

TEST(DynamicStream, IsAlwaysOpenAndNeverInError) {
    DynamicStream stream(1);
    test::LogCapture log;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(stream.isOutputStreamOpen());
        EXPECT_FALSE(stream.isOutputStreamInError());
        EXPECT_TRUE(stream.isInputStreamOpen());
        EXPECT_FALSE(stream.isInputStreamInError());
        EXPECT_EQ(stream.SendOutputStream("x", 1), i == 0);
    }
}

TEST(DynamicStream, OutputIsAtItsEndFromTheStartButAcceptsData) {
    DynamicStream stream(5);
    EXPECT_TRUE(stream.isOutputStreamAtEnd());
    EXPECT_FALSE(stream.isOutputStreamGood());
    EXPECT_TRUE(sendText(stream, "por"));
    EXPECT_TRUE(stream.isOutputStreamAtEnd());
    EXPECT_TRUE(sendText(stream, "ts"));
    EXPECT_TRUE(stream.isOutputStreamAtEnd());
}

TEST(DynamicStream, CanBeTargetAndSourceOfATransfer) {
    DynamicStream from(50000);
    DynamicStream to(50000);
    const std::string data = bytePattern(40000);
    EXPECT_TRUE(sendText(from, data));
    EXPECT_TRUE(to.TransferFromInputStream(from));
    EXPECT_EQ(receiveText(to, 50000), data);
    EXPECT_TRUE(from.isInputStreamAtEnd());

    DynamicStream small(20000);
    EXPECT_TRUE(from.StartInputStream());
    test::LogCapture log;
    EXPECT_FALSE(small.TransferFromInputStream(from));
    EXPECT_EQ(log.count(), 0u);
    EXPECT_EQ(small.GetInputStreamSize(), 20000);
}

TEST(DynamicStream, NullDataStoresNothingAndANullBufferConsumesNothing) {
    DynamicStream stream(100);
    EXPECT_TRUE(stream.SendOutputStream(nullptr, 0));
    EXPECT_FALSE(stream.SendOutputStream(nullptr, 5));
    EXPECT_EQ(stream.GetInputStreamSize(), 0);
    EXPECT_EQ(stream.ReceiveInputStream(nullptr, 5), -1);
    EXPECT_TRUE(sendText(stream, "ports"));
    EXPECT_EQ(stream.ReceiveInputStream(nullptr, 5), 0);
    EXPECT_EQ(receiveText(stream, 5), "ports");
}

TEST(DynamicStream, TracesEachStepOfAWriteThatCrossesAPage) {
    test::DebugSwitch trace(traceSwitch);
    test::LogCapture log;
    DynamicStream stream(5000);
    const std::string data = bytePattern(4095);
    EXPECT_TRUE(sendText(stream, data));
    EXPECT_FALSE(sendText(stream, bytePattern(1000)));
    EXPECT_EQ(
        test::traceLines(log),
        (Lines{traceLine(3, constructName, "maxPages: 2"), traceLine(3, sendName, "size: 4095"),
               traceLine(3, sendName, "available: 5000"), traceLine(3, sendName, "page: 0, offset: 0, length: 4096"),
               traceLine(3, sendName, "allocating page: 0"),
               traceLine(3, sendName,
                         "transfer: 4095, page: 0, offset: 0, length: 4096, size: 4095, inputCount: 0, outputCount: "
                         "0"),
               traceLine(3, sendName, "size: 1000"), traceLine(3, sendName, "available: 905"),
               traceLine(3, sendName, "page: 0, offset: 4095, length: 1"),
               traceLine(3, sendName,
                         "transfer: 1, page: 0, offset: 4095, length: 1, size: 1000, inputCount: 0, outputCount: "
                         "4095"),
               traceLine(3, sendName, "available: 904"), traceLine(3, sendName, "page: 1, offset: 0, length: 4096"),
               traceLine(3, sendName, "allocating page: 1"),
               traceLine(3, sendName,
                         "transfer: 904, page: 1, offset: 0, length: 4096, size: 999, inputCount: 0, outputCount: "
                         "4096"),
               traceLine(3, sendName, "available: 0")}));
}

TEST(DynamicStream, TracesEachStepOfAReadThatCrossesAPage) {
    DynamicStream stream(5000);
    EXPECT_TRUE(sendText(stream, bytePattern(4100)));
    EXPECT_EQ(receiveText(stream, 4090).size(), 4090u);
    test::DebugSwitch trace(traceSwitch);
    test::LogCapture log;
    EXPECT_EQ(receiveText(stream, 20).size(), 10u);
    EXPECT_EQ(receiveText(stream, 20), "-1");
    EXPECT_EQ(
        test::traceLines(log),
        (Lines{traceLine(3, receiveName, "size: 20"), traceLine(3, receiveName, "page: 0, offset: 4090, length: 6"),
               traceLine(3, receiveName,
                         "transfer: 6, page: 0, offset: 4090, length: 6, size: 20, inputCount: 4090, outputCount: "
                         "4100"),
               traceLine(3, receiveName, "page: 1, offset: 0, length: 4096"),
               traceLine(3, receiveName,
                         "transfer: 4, page: 1, offset: 0, length: 4096, size: 14, inputCount: 4096, outputCount: "
                         "4100"),
               traceLine(3, receiveName, "size: 20")}));
}

TEST(DynamicStream, TracesNothingIfTheSwitchIsOff) {
    test::LogCapture log;
    DynamicStream stream(5000);
    EXPECT_TRUE(sendText(stream, bytePattern(5000)));
    EXPECT_EQ(receiveText(stream, 5000).size(), 5000u);
    EXPECT_EQ(log.count(), 0u);
}

TEST(DynamicStream, AllocatesOnlyItsPages) {
    DynamicStream stream(100000);
    const std::string data = bytePattern(50000);
    std::string back(50000, '\0');
    const unsigned long before = test::allocationCount();
    EXPECT_TRUE(stream.SendOutputStream(data.data(), 50000));
    EXPECT_EQ(test::allocationCount() - before, 13u);
    EXPECT_EQ(stream.ReceiveInputStream(back.data(), 50000), 50000);
    EXPECT_EQ(test::allocationCount() - before, 13u);
    EXPECT_EQ(back, data);
}

TEST(DynamicStream, FailedPageAllocationFailsTheWriteAndKeepsTheContent) {
    DynamicStream stream(10000);
    const std::string data = bytePattern(10000);
    test::LogCapture log;
    {
        test::FailingAllocation failing(2);
        EXPECT_FALSE(stream.SendOutputStream(data.data(), 10000));
    }
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, sendName, "no memory for page: 1")}));
    EXPECT_EQ(stream.GetInputStreamSize(), 4096);
    EXPECT_EQ(stream.getSize(), footprint(3, 1));
    EXPECT_TRUE(sendText(stream, data.substr(4096)));
    EXPECT_EQ(receiveText(stream, 10000), data);
}

TEST(DynamicStream, RefusesEveryWriteWithoutItsPageTable) {
    const long before = framework::Memory::staticOutstanding();
    {
        test::FailingAllocation failing(1);
        DynamicStream stream(10000);
        failing.stop();
        test::LogCapture log;
        EXPECT_FALSE(sendText(stream, "ports"));
        EXPECT_EQ(test::traceLines(log),
                  (Lines{traceLine(0, sendName, "tried to write past the end of the max for a dynamic stream")}));
        EXPECT_EQ(stream.getSize(), footprint(0, 0));
        EXPECT_EQ(receiveText(stream, 5), "-1");
        stream.reset();
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

// The expected behavior, modeled with a string.
struct DynamicModel {
    std::string stored;
    std::size_t read = 0;
    std::size_t maximum;

    bool send(const std::string& data) {
        if (stored.size() >= maximum)
            return false;
        const std::size_t count = std::min(data.size(), maximum - stored.size());
        stored.append(data, 0, count);
        return count == data.size();
    }
    int receive(unsigned int size, std::string& data) {
        data.clear();
        if (read >= stored.size())
            return -1;
        data = stored.substr(read, size);
        read += data.size();
        return static_cast<int>(data.size());
    }
};

TEST(DynamicStream, BehavesAsAStringUnderRandomOperations) {
    test::RandomRun random;
    test::LogCapture log;
    const unsigned int maximum = 1 + random.below(20000);
    DynamicStream stream(static_cast<int>(maximum));
    DynamicModel model;
    model.maximum = maximum;
    while (random.steps(100000)) {
        const unsigned int size = random.below(random.below(4) == 0 ? 9000 : 300);
        switch (random.below(40)) {
        case 0:
            stream.StartOutputStream();
            model.stored.clear();
            break;
        case 1:
            stream.StartInputStream();
            model.read = 0;
            break;
        case 2:
            stream.EndInputStream();
            model.read = model.stored.size();
            break;
        case 3:
            stream.reset();
            model.stored.clear();
            model.read = 0;
            break;
        default:
            if (random.below(2) == 0) {
                const std::string data(size, static_cast<char>(random.below(256)));
                ASSERT_EQ(sendText(stream, data), model.send(data));
            } else {
                std::string data(size, '\0');
                std::string expected;
                const int count = stream.ReceiveInputStream(data.data(), size);
                ASSERT_EQ(count, model.receive(size, expected));
                ASSERT_EQ(data.compare(0, expected.size(), expected), 0);
            }
        }
        ASSERT_EQ(stream.GetInputStreamSize(), static_cast<int>(model.stored.size()));
        ASSERT_EQ(stream.isInputStreamAtEnd(), model.read >= model.stored.size());
        if (log.count() > 1000)
            log.clear();
    }
}

} // namespace
