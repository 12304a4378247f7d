#include "ut_NullStream.h"

#include <algorithm>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "LogCapture.h"
#include "VirtualSlot.h"

namespace {

using utility::NullStream;

static_assert(std::is_base_of<framework::InputStream, NullStream>::value, "it is read as an input");
static_assert(std::is_base_of<framework::OutputStream, NullStream>::value, "it is written as an output");
static_assert(!std::is_convertible<unsigned int, NullStream>::value, "a number is not a stream by itself");

// The result of one receive of `size` bytes; expects that the bytes are zero and that those after them are unchanged.
int receive(NullStream& stream, unsigned int size) {
    std::vector<char> data(size + 16, '\x7E');
    const int count = stream.ReceiveInputStream(data.data(), size);
    const auto end = data.begin() + std::max(count, 0);
    EXPECT_TRUE(std::all_of(data.begin(), end, [](char c) { return c == 0; }));
    EXPECT_TRUE(std::all_of(end, data.end(), [](char c) { return c == '\x7E'; }));
    return count;
}

TEST(NullStream, UsageExample) {
    utility::NullStream sink(0);
    sink.StartOutputStream();
    sink.SendOutputStream("ports", 5);
    EXPECT_EQ(sink.outputCount(), 5u);
}

TEST(NullStream, InputOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&NullStream::StartInputStream), 2);
    EXPECT_EQ(test::virtualSlot(&NullStream::EndInputStream), 3);
    EXPECT_EQ(test::virtualSlot(&NullStream::ReceiveInputStream), 4);
    EXPECT_EQ(test::virtualSlot(&NullStream::isInputStreamOpen), 5);
    EXPECT_EQ(test::virtualSlot(&NullStream::isInputStreamInError), 6);
    EXPECT_EQ(test::virtualSlot(&NullStream::isInputStreamAtEnd), 7);
    EXPECT_EQ(test::virtualSlot(&NullStream::isInputStreamGood), 8);
    EXPECT_EQ(test::virtualSlot(&NullStream::GetInputStreamSize), 9);
    EXPECT_EQ(test::virtualSlot(&NullStream::setInputMode), 10);
}

TEST(NullStream, InputBaseComesBeforeTheOutputBase) {
    NullStream stream(5);
    EXPECT_EQ(static_cast<void*>(static_cast<framework::InputStream*>(&stream)), static_cast<void*>(&stream));
    EXPECT_EQ(reinterpret_cast<char*>(static_cast<framework::OutputStream*>(&stream)),
              reinterpret_cast<char*>(&stream) + sizeof(void*));
}

TEST(NullStream, InputAndOutputAreClosedAtConstruction) {
    NullStream stream(5);
    EXPECT_FALSE(stream.isInputStreamOpen());
    EXPECT_FALSE(stream.isInputStreamInError());
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_FALSE(stream.isOutputStreamOpen());
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamAtEnd());
    EXPECT_FALSE(stream.isOutputStreamGood());
    EXPECT_EQ(stream.outputCount(), 0u);
    EXPECT_EQ(stream.inputCount(), 0u);
}

TEST(NullStream, SuppliesItsInputSizeInZeroBytes) {
    NullStream stream(5);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_TRUE(stream.isInputStreamGood());
    EXPECT_EQ(receive(stream, 3), 3);
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receive(stream, 3), 2);
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_EQ(receive(stream, 3), 0);
    EXPECT_EQ(stream.inputCount(), 5u);
    EXPECT_FALSE(stream.isInputStreamInError());
}

TEST(NullStream, InputOfExactlyOneReceiveIsAtItsEnd) {
    NullStream stream(5);
    stream.StartInputStream();
    EXPECT_EQ(receive(stream, 4), 4);
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receive(stream, 1), 1);
    EXPECT_TRUE(stream.isInputStreamAtEnd());
}

TEST(NullStream, EmptyInputIsAtItsEndAtOnce) {
    NullStream stream(0);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receive(stream, 3), 0);
    EXPECT_EQ(stream.inputCount(), 0u);
}

TEST(NullStream, EveryStartRestoresTheInputAndTheCountContinues) {
    NullStream stream(5);
    stream.StartInputStream();
    EXPECT_EQ(receive(stream, 3), 3);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receive(stream, 10), 5);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receive(stream, 1), 1);
    EXPECT_EQ(stream.inputCount(), 9u);
}

TEST(NullStream, InputIsEmptyBeforeItsStartAndAfterItsEnd) {
    NullStream stream(5);
    EXPECT_EQ(receive(stream, 3), 0);
    stream.StartInputStream();
    stream.EndInputStream();
    EXPECT_FALSE(stream.isInputStreamOpen());
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receive(stream, 3), 0);
    EXPECT_EQ(stream.inputCount(), 0u);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receive(stream, 10), 5);
}

TEST(NullStream, ReceivingZeroBytesConsumesNothing) {
    NullStream stream(5);
    stream.StartInputStream();
    EXPECT_EQ(receive(stream, 0), 0);
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_EQ(receive(stream, 10), 5);
}

TEST(NullStream, NullBufferConsumesNothing) {
    NullStream stream(5);
    stream.StartInputStream();
    EXPECT_EQ(stream.ReceiveInputStream(nullptr, 3), 0);
    EXPECT_EQ(stream.inputCount(), 0u);
    EXPECT_EQ(receive(stream, 10), 5);
}

TEST(NullStream, LargestInputIsReceivedInPieces) {
    NullStream stream(0xFFFFFFFFu);
    stream.StartInputStream();
    EXPECT_EQ(receive(stream, 100000), 100000);
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_EQ(stream.inputCount(), 100000u);
}

TEST(NullStream, InputSizeIsUnknown) {
    NullStream stream(5);
    stream.StartInputStream();
    EXPECT_EQ(stream.GetInputStreamSize(), -1);
}

TEST(NullStream, SettingAModeChangesNothing) {
    NullStream stream(5);
    stream.setInputMode(framework::InputStream::INPUT_DEFAULT);
    stream.StartInputStream();
    EXPECT_EQ(receive(stream, 10), 5);
}

TEST(NullStream, CountsOutputOnlyWhileItIsOpen) {
    NullStream stream(0);
    EXPECT_FALSE(stream.SendOutputStream("lost", 4));
    EXPECT_EQ(stream.outputCount(), 0u);
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_TRUE(stream.isOutputStreamGood());
    EXPECT_TRUE(stream.SendOutputStream("ports", 5));
    EXPECT_TRUE(stream.SendOutputStream("ports", 0));
    EXPECT_EQ(stream.outputCount(), 5u);
    stream.EndOutputStream();
    EXPECT_FALSE(stream.isOutputStreamOpen());
    EXPECT_FALSE(stream.isOutputStreamAtEnd());
    EXPECT_FALSE(stream.SendOutputStream("lost", 4));
    EXPECT_EQ(stream.outputCount(), 5u);
}

TEST(NullStream, OutputCountContinuesAcrossStarts) {
    NullStream stream(0);
    stream.StartOutputStream();
    EXPECT_TRUE(stream.SendOutputStream("ports", 5));
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_TRUE(stream.SendOutputStream("ports", 2));
    EXPECT_EQ(stream.outputCount(), 7u);
}

TEST(NullStream, OutputIsNeverReadAndTheCountWrapsAround) {
    NullStream stream(0);
    stream.StartOutputStream();
    EXPECT_TRUE(stream.SendOutputStream(nullptr, 0xFFFFFFFFu));
    EXPECT_EQ(stream.outputCount(), 0xFFFFFFFFu);
    EXPECT_TRUE(stream.SendOutputStream(nullptr, 5));
    EXPECT_EQ(stream.outputCount(), 4u);
}

TEST(NullStream, FlushDoesNothing) {
    NullStream stream(0);
    stream.FlushOutputStream();
    stream.StartOutputStream();
    stream.SendOutputStream("ports", 5);
    stream.FlushOutputStream();
    EXPECT_EQ(stream.outputCount(), 5u);
}

TEST(NullStream, AcceptsItsOwnInputAsOutput) {
    NullStream stream(40000);
    stream.StartInputStream();
    stream.StartOutputStream();
    EXPECT_TRUE(stream.TransferFromInputStream(stream));
    EXPECT_EQ(stream.inputCount(), 40000u);
    EXPECT_EQ(stream.outputCount(), 40000u);
}

TEST(NullStream, InputAndOutputAreOpenedAndClosedIndependently) {
    NullStream stream(5);
    stream.StartInputStream();
    EXPECT_FALSE(stream.isOutputStreamOpen());
    stream.StartOutputStream();
    stream.EndInputStream();
    EXPECT_TRUE(stream.isOutputStreamOpen());
    stream.StartInputStream();
    stream.EndOutputStream();
    EXPECT_TRUE(stream.isInputStreamOpen());
}

TEST(NullStream, LogsNothing) {
    test::LogCapture log;
    NullStream stream(5);
    stream.SendOutputStream("lost", 4);
    stream.StartInputStream();
    receive(stream, 10);
    stream.EndInputStream();
    EXPECT_EQ(log.count(), 0u);
}

} // namespace
