#include "ut_VirtualGetStream.h"

#include <algorithm>
#include <climits>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "FailingOperation.h"
#include "GuardedText.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "ReceiveText.h"
#include "ScriptedInput.h"
#include "TemporaryDirectory.h"
#include "TraceLines.h"
#include "VirtualSlot.h"
#include "ut_FileInputStream.h"

namespace {

using framework::Logger;
using test::heldBytes;
using test::receiveText;
using test::traceLine;
using utility::VirtualGetStream;
using Lines = std::vector<std::string>;
using Sizes = std::vector<unsigned int>;

constexpr const char* allocName = "void utility::Buffer::allocBuffer()";
constexpr const char* loadName = "void utility::VirtualGetStream::load()";
constexpr const char* receiveName = "virtual int utility::VirtualGetStream::ReceiveInputStream(char*, unsigned int)";
constexpr const char* indexName = "virtual char& utility::VirtualGetStream::operator[](unsigned int)";
constexpr const char* moveToName = "void utility::VirtualGetStream::MoveTo(unsigned int)";

static_assert(std::is_base_of<utility::GetStream, VirtualGetStream>::value, "it is read like any text");

#define EXPECT_NOT_HELD(statement, function) EXPECT_FAILURE(statement, 1240, "ut_VirtualGetStream", function, "")

TEST(VirtualGetStream, UsageExample) {
    const test::TemporaryDirectory directory;
    std::string content;
    for (int i = 0; i < 100; ++i)
        content += "10.0.0." + std::to_string(i) + " host" + std::to_string(i) + "\n";
    const std::string path = directory.write("hosts", content);
    std::string read;
    utility::FileInputStream file(path.c_str());
    utility::VirtualGetStream in(file, 256, 16, 128, nullptr);
    ASSERT_TRUE(in.StartInputStream());
    while (char* text = in.ReadLine())
        read += std::string(text) + "\n";
    EXPECT_EQ(read, content);
}

TEST(VirtualGetStream, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::StartInputStream), 2);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::EndInputStream), 3);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::ReceiveInputStream), 4);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::isInputStreamOpen), 5);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::isInputStreamInError), 6);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::isInputStreamAtEnd), 7);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::isInputStreamGood), 8);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::GetInputStreamSize), 9);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::setInputMode), 10);
    EXPECT_EQ(test::virtualSlot(&VirtualGetStream::operator[]), 11);
}

// Construction

TEST(VirtualGetStream, OwnStorageHasItsFullSizeAndReceivesNothingYet) {
    test::ScriptedInput source;
    source.give("ports");
    const VirtualGetStream stream(source, 16, 0, 0, nullptr);
    EXPECT_EQ(stream.Size(), 16);
    EXPECT_EQ(stream.WriteRemaining(), 16);
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_EQ(stream.received(), 0);
    EXPECT_EQ(stream.pBuffer()[0], 0);
    EXPECT_EQ(stream.pBuffer()[16], 0);
    EXPECT_EQ(source.asked, Sizes{});
    EXPECT_EQ(source.startCount, 0);
}

TEST(VirtualGetStream, FailedAllocationOfStorageThrows1238) {
    test::ScriptedInput source;
    EXPECT_FAILURE(test::failNth(1, [&] { VirtualGetStream(source, 16, 0, 0, nullptr); }), 1238, "ut_Buffer", allocName,
                   "");
    EXPECT_FAILURE(VirtualGetStream(source, -5, 0, 0, nullptr), 1238, "ut_Buffer", allocName, "");
    EXPECT_FAILURE(VirtualGetStream(source, INT_MIN, 0, 0, nullptr), 1238, "ut_Buffer", allocName, "");
}

TEST(VirtualGetStream, CallersArrayIsUsedCompletelyAndNeverOverrun) {
    test::ScriptedInput source;
    source.give("abcdefghijklmnop");
    test::GuardedText text(8);
    {
        VirtualGetStream stream(source, 8, 0, 0, text.array());
        EXPECT_EQ(stream.Size(), 8);
        EXPECT_EQ(stream.pBuffer(), text.array());
        EXPECT_EQ(text.array()[0], 0);
        EXPECT_EQ(text.array()[7], 0);
        EXPECT_NE(text.array()[1], 0);
        EXPECT_TRUE(stream.StartInputStream());
        EXPECT_EQ(heldBytes(stream), "abcdefgh");
        EXPECT_TRUE(text.isGuardWhole());
    }
    EXPECT_EQ(std::string(text.array(), 8), "abcdefgh");
}

TEST(VirtualGetStream, SmallestArraysAreNeverOverrun) {
    for (const int size : {0, 1, 2}) {
        for (const int lowWater : {0, 1, 2, 100}) {
            test::ScriptedInput source;
            source.give("abc\ndef\n");
            test::LogCapture log;
            test::GuardedText text(static_cast<unsigned int>(size));
            VirtualGetStream stream(source, size, 0, lowWater, text.array());
            stream.setWaitForData(false);
            EXPECT_TRUE(stream.StartInputStream());
            for (int i = 0; i < 4; ++i) {
                receiveText(stream, 3);
                stream.GetC(nullptr);
                stream.ReadLine();
                stream.GetLine();
                CATCH_FAILURE(stream[static_cast<unsigned int>(i)]);
                CATCH_FAILURE(stream.MoveTo());
                CATCH_FAILURE(stream.MoveTo(1));
                stream.load();
            }
            stream.EndInputStream();
            EXPECT_TRUE(text.isGuardWhole()) << size << ", " << lowWater;
            EXPECT_EQ(text.isUntouched(), size == 0) << size << ", " << lowWater;
        }
    }
}

TEST(VirtualGetStream, ArrayOfOneByteReadsTheInputByteByByte) {
    test::ScriptedInput source;
    source.give("abc");
    test::GuardedText text(1);
    VirtualGetStream stream(source, 1, 0, 0, text.array());
    EXPECT_EQ(text.array()[0], 0);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(receiveText(stream, 3), "a");
    EXPECT_EQ(receiveText(stream, 3), "b");
    EXPECT_EQ(receiveText(stream, 3), "c");
    EXPECT_EQ(receiveText(stream, 3), "");
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(VirtualGetStream, LastLineInAFullCallersArrayDoesNotChangeTheByteAfterIt) {
    test::ScriptedInput source;
    source.give("abcdefgh");
    test::GuardedText text(8);
    VirtualGetStream stream(source, 8, 0, 0, text.array());
    stream.StartInputStream();
    stream.ReadLine();
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(VirtualGetStream, WithoutASourceIsClosedAndEmpty) {
    test::LogCapture log;
    VirtualGetStream stream(16, 128);
    EXPECT_FALSE(stream.isInputStreamOpen());
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_FALSE(stream.isInputStreamGood());
    EXPECT_FALSE(stream.StartInputStream());
    stream.load();
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_EQ(receiveText(stream, 10), "");
    CATCH_FAILURE(stream[0]);
    EXPECT_NOT_HELD(stream[1], indexName);
    stream.MoveTo(0);
    EXPECT_NOT_HELD(stream.MoveTo(1), moveToName);
    stream.MoveTo();
    stream.EndInputStream();
}

TEST(VirtualGetStream, DerivedStreamSetsItsOwnSource) {
    struct DerivedStream : public VirtualGetStream {
        DerivedStream() : VirtualGetStream(0, 0) {
            setSize(8);
            allocBuffer();
        }
        using VirtualGetStream::setSource;
    };
    test::ScriptedInput first;
    first.give("ports");
    test::ScriptedInput second;
    second.give(" and hosts");
    DerivedStream stream;
    EXPECT_FALSE(stream.StartInputStream());
    stream.setSource(&first);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_EQ(receiveText(stream, 2), "po");
    // The unread bytes stay, and offsets continue.
    stream.setSource(&second);
    stream.load();
    EXPECT_EQ(heldBytes(stream), "rts and ");
    EXPECT_EQ(stream[2], 'r');
    EXPECT_EQ(stream.received(), 10);
    stream.setSource(nullptr);
    EXPECT_FALSE(stream.isInputStreamOpen());
    EXPECT_EQ(receiveText(stream, 16), "rts and ");
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    EXPECT_EQ(first.endCount + second.endCount, 0);
}

// Starting, ending, states

TEST(VirtualGetStream, StartStartsTheSourceAndFillsTheBufferOnce) {
    test::ScriptedInput source;
    source.give("abc").give("def");
    VirtualGetStream stream(source, 16, 0, 10, nullptr);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(source.startCount, 1);
    EXPECT_EQ(source.asked, Sizes{16});
    EXPECT_EQ(heldBytes(stream), "abc");
    EXPECT_EQ(stream.received(), 3);
}

TEST(VirtualGetStream, StartRefusedByTheSourceReceivesNothing) {
    test::ScriptedInput source;
    source.give("abc");
    source.starts = false;
    VirtualGetStream stream(source, 16, 0, 0, nullptr);
    EXPECT_FALSE(stream.StartInputStream());
    EXPECT_EQ(source.startCount, 1);
    EXPECT_EQ(source.asked, Sizes{});
}

TEST(VirtualGetStream, StartOfASourceThatIsNotGoodReturnsTrueAndReceivesNothing) {
    test::ScriptedInput source;
    VirtualGetStream stream(source, 16, 0, 0, nullptr);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(source.asked, Sizes{});
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualGetStream, SecondStartResetsTheCountAndKeepsTheBuffer) {
    test::ScriptedInput source;
    source.give("abc").give("de");
    VirtualGetStream stream(source, 16, 0, 0, nullptr);
    stream.StartInputStream();
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(heldBytes(stream), "abcde");
    EXPECT_EQ(stream.received(), 2);
}

TEST(VirtualGetStream, EndEndsTheSourceAndDiscardsTheBuffer) {
    test::ScriptedInput source;
    source.give("abcdef").give("ghijkl");
    VirtualGetStream stream(source, 6, 0, 0, nullptr);
    stream.StartInputStream();
    receiveText(stream, 4);
    stream.load();
    EXPECT_EQ(heldBytes(stream), "efghij");
    stream.EndInputStream();
    EXPECT_EQ(source.endCount, 1);
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_EQ(stream.WritePosition(), 0);
    stream.StartInputStream();
    EXPECT_EQ(stream[0], 'k') << "offsets count from 0 again";
    EXPECT_EQ(receiveText(stream, 6), "kl");
}

TEST(VirtualGetStream, EndResetsTheHighestOffset) {
    test::ScriptedInput source;
    source.give("abcdef").give("ghijkl").give("mnopqr");
    VirtualGetStream stream(source, 6, 0, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[5], 'f');
    stream.EndInputStream();
    stream.StartInputStream();
    stream.load();
    EXPECT_EQ(heldBytes(stream), "ghijkl") << "nothing was dropped";
}

TEST(VirtualGetStream, StatesAreTheSourcesButTheEndComesAfterTheUnreadBytes) {
    test::ScriptedInput source;
    source.give("ab");
    VirtualGetStream stream(source, 16, 0, 0, nullptr);
    EXPECT_TRUE(stream.isInputStreamOpen());
    EXPECT_FALSE(stream.isInputStreamInError());
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    stream.StartInputStream();
    EXPECT_TRUE(source.isInputStreamAtEnd());
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    EXPECT_TRUE(stream.isInputStreamGood());
    receiveText(stream, 1);
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    receiveText(stream, 1);
    EXPECT_TRUE(stream.isInputStreamAtEnd());
    source.endsByItself = false;
    EXPECT_FALSE(stream.isInputStreamAtEnd());
    source.open = false;
    EXPECT_FALSE(stream.isInputStreamOpen());
    source.open = true;
    source.error = true;
    EXPECT_TRUE(stream.isInputStreamInError());
    EXPECT_FALSE(stream.isInputStreamGood());
}

// Refilling

TEST(VirtualGetStream, LoadReceivesOnceForAllFreeSpace) {
    test::ScriptedInput source;
    source.give("abc").give("def").give("ghi");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.load();
    EXPECT_EQ(heldBytes(stream), "abc");
    stream.load();
    EXPECT_EQ(heldBytes(stream), "abcdef");
    stream.load();
    EXPECT_EQ(heldBytes(stream), "abcdefgh");
    EXPECT_EQ(source.asked, (Sizes{8, 5, 2}));
    EXPECT_EQ(stream.received(), 8);
    stream.load();
    EXPECT_EQ(source.asked.size(), 3u) << "a full buffer asks for nothing";
}

TEST(VirtualGetStream, LoadMovesTheUnreadBytesToTheFront) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(receiveText(stream, 5), "abcde");
    stream.load();
    EXPECT_EQ(stream.ReadPosition(), 0);
    EXPECT_EQ(heldBytes(stream), "fghijklm");
    EXPECT_EQ(stream[5], 'f');
    EXPECT_EQ(stream[12], 'm');
}

TEST(VirtualGetStream, LoadDoesNotReceiveFromASourceThatIsNotGood) {
    test::ScriptedInput source;
    source.give("abc");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    source.error = true;
    stream.load();
    source.error = false;
    source.open = false;
    stream.load();
    source.open = true;
    source.atEnd = true;
    stream.load();
    EXPECT_EQ(source.asked, Sizes{});
    source.atEnd = false;
    stream.load();
    EXPECT_EQ(source.asked, Sizes{8});
}

TEST(VirtualGetStream, ReceiveOfZeroBytesIsRepeated) {
    test::ScriptedInput source;
    source.answer(0).answer(0).answer(0).give("abc");
    test::LogCapture log;
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.load();
    EXPECT_EQ(heldBytes(stream), "abc");
    EXPECT_EQ(source.asked, (Sizes{8, 8, 8, 8}));
    EXPECT_EQ(source.endCount, 0);
    EXPECT_EQ(log.count(), 0u);
}

TEST(VirtualGetStream, WaitingEndsWhenTheSourceIsNoLongerGood) {
    test::ScriptedInput source;
    source.endsByItself = false;
    source.afterReceive = [&] {
        source.error = source.asked.size() == 3;
    };
    test::LogCapture log;
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.load();
    EXPECT_EQ(source.asked.size(), 3u);
    EXPECT_EQ(source.endCount, 0);
    EXPECT_EQ(log.count(), 0u);
}

TEST(VirtualGetStream, WithoutWaitingAReceiveOfZeroBytesEndsTheInput) {
    test::ScriptedInput source;
    source.answer(0).give("late");
    test::LogCapture log;
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.setWaitForData(false);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(log.count(), 1u);
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, "Response not received: Timed out") ||
                log.contains(Logger::LOG_ERROR, loadName, "Response not received: Timed out"));
    EXPECT_EQ(source.asked, Sizes{8});
    EXPECT_EQ(source.endCount, 1);
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualGetStream, TimeOutKeepsTheUnreadBytes) {
    test::ScriptedInput source;
    source.give("abc").answer(0).give("late");
    test::LogCapture log;
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.setWaitForData(false);
    stream.StartInputStream();
    stream.load();
    EXPECT_EQ(log.texts(), Lines{"Response not received: Timed out"});
    EXPECT_EQ(heldBytes(stream), "abc");
    EXPECT_EQ(source.endCount, 1);
}

TEST(VirtualGetStream, FailedReceiveIsRepeatedWhileTheSourceIsGood) {
    for (const bool wait : {false, true}) {
        test::ScriptedInput source;
        source.answer(-1).answer(-5).give("abc");
        test::LogCapture log;
        VirtualGetStream stream(source, 8, 0, 0, nullptr);
        stream.setWaitForData(wait);
        stream.load();
        EXPECT_EQ(heldBytes(stream), "abc");
        EXPECT_EQ(source.asked.size(), 3u);
        EXPECT_EQ(stream.received(), 3);
        EXPECT_EQ(log.count(), 0u);
    }
}

TEST(VirtualGetStream, WithoutWaitingFailedReceivesAreRepeatedAtMost1000Times) {
    struct Failing : test::ScriptedInput {
        int ReceiveInputStream(char*, unsigned int) override {
            ++receives;
            return -1;
        }
        int receives = 0;
    } failing;
    failing.endsByItself = false;
    test::LogCapture log;
    VirtualGetStream stream(failing, 8, 0, 0, nullptr);
    stream.setWaitForData(false);
    stream.load();
    EXPECT_EQ(failing.receives, 1000);
    stream.load();
    EXPECT_EQ(failing.receives, 2000) << "each refill begins anew";
    EXPECT_EQ(failing.endCount, 0);
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_EQ(log.count(), 0u);
}

TEST(VirtualGetStream, WhileWaitingFailedReceivesAreRepeatedWithoutLimit) {
    test::ScriptedInput source;
    for (int i = 0; i < 1001; ++i)
        source.answer(-1);
    source.give("abc");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.load();
    EXPECT_EQ(heldBytes(stream), "abc");
    EXPECT_EQ(source.asked.size(), 1002u);
}

TEST(VirtualGetStream, FailedReceiveOfASourceInErrorIsNotRepeated) {
    test::ScriptedInput source;
    source.answer(-1).give("abc");
    source.afterReceive = [&] {
        source.error = true;
    };
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.load();
    EXPECT_EQ(source.asked, Sizes{8});
    EXPECT_EQ(source.endCount, 0);
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualGetStream, SourceThatReportsTooManyBytesIsRefused) {
    struct Boasting : test::ScriptedInput {
        int ReceiveInputStream(char*, unsigned int size) override {
            return static_cast<int>(size) + 1;
        }
    } boasting;
    boasting.endsByItself = false;
    test::GuardedText text(8);
    VirtualGetStream stream(boasting, 8, 0, 0, text.array());
    EXPECT_FAILURE(stream.load(), 1239, "ut_Buffer", "virtual void utility::Buffer::WriteAdvance(int)", "");
    receiveText(stream, 100);
    CATCH_FAILURE(stream[8]);
    CATCH_FAILURE(stream[9]);
    CATCH_FAILURE(stream.MoveTo(9));
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(VirtualGetStream, ReadAvailableRefillsBelowTheLowWaterMark) {
    test::ScriptedInput source;
    source.give("abcde").give("fgh").give("ij");
    VirtualGetStream stream(source, 16, 0, 3, nullptr);
    EXPECT_EQ(stream.ReadAvailable(), 5);
    EXPECT_EQ(source.asked.size(), 1u);
    EXPECT_EQ(stream.ReadAvailable(), 5);
    stream.ReadAdvance(2);
    EXPECT_EQ(stream.ReadAvailable(), 3) << "as many as the mark are enough";
    EXPECT_EQ(source.asked.size(), 1u);
    stream.ReadAdvance(1);
    EXPECT_EQ(stream.ReadAvailable(), 5);
    EXPECT_EQ(source.asked.size(), 2u);
}

TEST(VirtualGetStream, ReadAvailableDoesNotRefillFromAClosedSource) {
    test::ScriptedInput source;
    source.give("abcde");
    source.open = false;
    VirtualGetStream stream(source, 16, 0, 3, nullptr);
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_EQ(source.asked, Sizes{});
}

TEST(VirtualGetStream, LowWaterMarkOfZeroNeverRefillsInReadAvailable) {
    test::ScriptedInput source;
    source.give("abcde");
    VirtualGetStream stream(source, 16, 0, 0, nullptr);
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_EQ(source.asked, Sizes{});
}

// Receiving

TEST(VirtualGetStream, ReceiveOfBytesInTheBufferDoesNotRefill) {
    test::ScriptedInput source;
    source.give("abcd").give("efgh");
    VirtualGetStream stream(source, 16, 0, 10, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(receiveText(stream, 3), "abc");
    EXPECT_EQ(receiveText(stream, 1), "d");
    EXPECT_EQ(receiveText(stream, 0), "");
    EXPECT_EQ(source.asked.size(), 1u);
}

TEST(VirtualGetStream, ReceiveOfMoreThanTheBufferRefillsOnce) {
    test::ScriptedInput source;
    source.give("abcd").give("efgh").give("ijkl");
    VirtualGetStream stream(source, 16, 0, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(receiveText(stream, 5), "abcde");
    EXPECT_EQ(source.asked.size(), 2u);
    EXPECT_EQ(receiveText(stream, 16), "fghijkl");
    EXPECT_EQ(source.asked.size(), 3u);
}

TEST(VirtualGetStream, OneReceiveReturnsAtMostOneBuffer) {
    test::ScriptedInput source;
    source.give("abcdefghijklmnopqrst");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(receiveText(stream, 100), "abcdefgh");
    EXPECT_EQ(receiveText(stream, 100), "ijklmnop");
    EXPECT_EQ(receiveText(stream, 100), "qrst");
    EXPECT_EQ(receiveText(stream, 100), "");
    EXPECT_EQ(stream.received(), 20);
}

TEST(VirtualGetStream, ReceivesIntoItsOwnBuffer) {
    test::ScriptedInput source;
    source.give("abcdefgh");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(receiveText(stream, 2), "ab");
    EXPECT_EQ(stream.ReceiveInputStream(stream.pBuffer() + 1, 4), 4);
    EXPECT_EQ(std::string(stream.pBuffer() + 1, 4), "cdef");
    EXPECT_EQ(receiveText(stream, 8), "gh");
}

TEST(VirtualGetStream, ReceiveFromAnExhaustedSourceReturnsZero) {
    test::ScriptedInput source;
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    EXPECT_EQ(receiveText(stream, 10), "");
    source.error = true;
    EXPECT_EQ(receiveText(stream, 10), "");
}

TEST(VirtualGetStream, AnyMixOfReadsReturnsTheInputInOrder) {
    test::RandomRun random;
    for (int run = 0; run < 50 && !testing::Test::HasFailure(); ++run) {
        test::ScriptedInput source;
        std::string content;
        while (content.size() < 500) {
            const std::string piece = "x" + random.text(30, "abc\n");
            content += piece;
            source.give(piece);
            if (random.below(4) == 0)
                source.answer(random.below(2) == 0 ? 0 : -1);
        }
        source.give("end");
        content += "end";
        VirtualGetStream stream(source, static_cast<int>(8 + random.below(40)), static_cast<int>(random.below(8)),
                                static_cast<int>(random.below(8)), nullptr);
        stream.StartInputStream();
        std::string read;
        for (int idle = 0; idle < 3;) {
            const std::size_t before = read.size();
            char c = 0;
            if (random.below(2) == 0)
                read += receiveText(stream, random.below(60));
            else if (stream.GetC(&c))
                read += c;
            idle = read.size() == before && stream.isInputStreamAtEnd() ? idle + 1 : 0;
            if (read.size() == before)
                stream.load();
        }
        EXPECT_EQ(read, content);
        EXPECT_EQ(stream.received(), static_cast<int>(content.size()));
    }
}

// Access by offset

TEST(VirtualGetStream, IndexReturnsTheByteAtItsOffsetInTheWholeInput) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[0], 'a');
    EXPECT_EQ(stream[7], 'h');
    EXPECT_EQ(stream[3], 'd');
    EXPECT_EQ(source.asked.size(), 1u);
    stream[3] = 'X';
    EXPECT_EQ(receiveText(stream, 8), "abcXefgh");
}

TEST(VirtualGetStream, IndexRefillsBelowTheLowWaterMarkAfterTheHighestOffset) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 2, 4, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[4], 'e') << "four bytes from there are enough";
    EXPECT_EQ(source.asked, Sizes{8});
    EXPECT_EQ(stream[5], 'f');
    EXPECT_EQ(source.asked, (Sizes{8, 3})) << "two bytes stay held before the highest offset";
    EXPECT_EQ(heldBytes(stream), "defghijk");
    EXPECT_EQ(stream[3], 'd');
    EXPECT_EQ(source.asked.size(), 2u) << "the highest offset counts";
}

TEST(VirtualGetStream, IndexOfADiscardedByteIsRefused) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 2, 4, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[5], 'f');
    test::LogCapture log;
    EXPECT_NOT_HELD(stream[2], indexName);
    EXPECT_EQ(log.texts(), Lines{"accessing offset -1, index 2 from base 3 [0/8], ReadAvail: 8, WriteRemain: 0"});
    EXPECT_EQ(log.entries()[0].type, Logger::LOG_ERROR);
    EXPECT_EQ(stream[3], 'd');
}

TEST(VirtualGetStream, IndexOfAByteThatWasReadIsRefused) {
    test::ScriptedInput source;
    source.give("abcdefgh");
    VirtualGetStream stream(source, 16, 0, 0, nullptr);
    stream.StartInputStream();
    receiveText(stream, 3);
    test::LogCapture log;
    EXPECT_NOT_HELD(stream[2], indexName);
    EXPECT_EQ(log.texts(), Lines{"accessing offset 2, index 2 from base 0 [3/8], ReadAvail: 5, WriteRemain: 8"});
    EXPECT_EQ(stream[3], 'd');
}

TEST(VirtualGetStream, IndexAtTheWritePositionIsANulAndTheNextOneIsRefused) {
    test::ScriptedInput source;
    source.give("abc");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    stream.pBuffer()[3] = 'x';
    EXPECT_EQ(stream[3], 0);
    EXPECT_EQ(&stream[3], stream.pBuffer() + 3);
    test::LogCapture log;
    EXPECT_NOT_HELD(stream[4], indexName);
    EXPECT_EQ(log.texts(), Lines{"accessing offset 4, index 4 from base 0 [0/3], ReadAvail: 3, WriteRemain: 5"});
}

TEST(VirtualGetStream, IndexAtTheEndOfAFullCallersArrayIsANul) {
    test::ScriptedInput source;
    source.give("abcdefgh");
    test::GuardedText text(8);
    VirtualGetStream stream(source, 8, 0, 0, text.array());
    stream.StartInputStream();
    EXPECT_EQ(stream[8], 0);
    stream[8] = 'x';
    EXPECT_EQ(stream[8], 0);
    EXPECT_EQ(stream[7], 'h');
    EXPECT_NOT_HELD(stream[9], indexName);
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(VirtualGetStream, IndexDoesNotReceiveFromASourceThatIsClosedOrAtItsEnd) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijkl");
    VirtualGetStream stream(source, 16, 0, 4, nullptr);
    stream.StartInputStream();
    source.atEnd = true;
    EXPECT_EQ(stream[7], 'h');
    source.atEnd = false;
    source.open = false;
    EXPECT_EQ(stream[7], 'h');
    EXPECT_EQ(source.asked.size(), 1u);
    source.open = true;
    EXPECT_EQ(stream[7], 'h');
    EXPECT_EQ(source.asked.size(), 2u);
}

TEST(VirtualGetStream, IndexFarAheadDiscardsTheBufferAndIsRefused) {
    test::ScriptedInput source;
    source.give("abcdefghijklmnopqrstuvwxyz");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    test::LogCapture log;
    EXPECT_NOT_HELD(stream[20], indexName);
    EXPECT_EQ(log.texts(), Lines{"accessing offset 12, index 20 from base 8 [0/8], ReadAvail: 8, WriteRemain: 0"});
    EXPECT_EQ(heldBytes(stream), "ijklmnop");
    EXPECT_EQ(stream.received(), 16);
}

TEST(VirtualGetStream, KeptBytesAreCountedBackFromTheHighestOffset) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 5, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[7], 'h');
    stream.load();
    EXPECT_EQ(heldBytes(stream), "cdefghij");
    EXPECT_EQ(stream[2], 'c');
    EXPECT_EQ(stream[9], 'j');
}

TEST(VirtualGetStream, OneByteMoreThanTheKeptBytesIsDiscarded) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 4, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[5], 'f');
    stream.load();
    EXPECT_EQ(heldBytes(stream), "bcdefghi");
}

TEST(VirtualGetStream, BytesAlreadyReadDoNotCountAsDiscarded) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 2, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(receiveText(stream, 2), "ab");
    EXPECT_EQ(stream[6], 'g');
    stream.load();
    EXPECT_EQ(heldBytes(stream), "efghijkl") << "from two bytes before the highest offset on";
}

TEST(VirtualGetStream, HighestOffsetIsRememberedAcrossRefills) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("i").give("j").give("k").give("l").give("m");
    VirtualGetStream stream(source, 16, 4, 4, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[7], 'h');
    EXPECT_EQ(heldBytes(stream), "defghi");
    EXPECT_EQ(source.asked.size(), 2u);
    EXPECT_EQ(stream[3], 'd') << "two bytes from the highest offset are too few";
    EXPECT_EQ(source.asked.size(), 3u);
    EXPECT_EQ(stream[3], 'd') << "so are three";
    EXPECT_EQ(source.asked.size(), 4u);
    EXPECT_EQ(stream[3], 'd') << "four are enough";
    EXPECT_EQ(source.asked.size(), 4u);
    EXPECT_EQ(heldBytes(stream), "defghijk");
}

TEST(VirtualGetStream, FewerBytesThanTheKeptBytesAreNotDiscarded) {
    test::ScriptedInput source;
    source.give("abcd").give("efgh");
    VirtualGetStream stream(source, 8, 3, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[3], 'd');
    stream.load();
    EXPECT_EQ(heldBytes(stream), "abcdefgh");
}

TEST(VirtualGetStream, ExtremeArgumentsStayInBounds) {
    for (const int keepBehind : {INT_MIN, -1, 0, INT_MAX}) {
        for (const int lowWater : {INT_MIN, -1, 0, INT_MAX}) {
            test::ScriptedInput source;
            source.give("abcdefgh").give("ijklmnop");
            test::LogCapture log;
            VirtualGetStream stream(source, 8, keepBehind, lowWater, nullptr);
            stream.StartInputStream();
            receiveText(stream, 3);
            for (const unsigned int index : {0u, 5u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
                CATCH_FAILURE(stream[index]);
                CATCH_FAILURE(stream.MoveTo(index));
                stream.ReadAvailable();
                receiveText(stream, 1);
            }
        }
    }
}

TEST(VirtualGetStream, NegativeIndexIsRefused) {
    test::ScriptedInput source;
    source.give("abc");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    test::LogCapture log;
    EXPECT_NOT_HELD(stream[0xFFFFFFFFu], indexName);
    EXPECT_EQ(log.texts(), Lines{"accessing offset -1, index -1 from base 0 [0/3], ReadAvail: 3, WriteRemain: 5"});
}

// Moving the origin

TEST(VirtualGetStream, MoveToDiscardsEarlierBytesAndCountsFromThere) {
    test::ScriptedInput source;
    source.give("abcdefgh");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    EXPECT_EQ(stream[7], 'h');
    stream.MoveTo(3);
    EXPECT_EQ(heldBytes(stream), "defgh");
    EXPECT_EQ(stream.ReadPosition(), 0);
    EXPECT_EQ(stream[0], 'd');
    EXPECT_EQ(stream[4], 'h');
    stream.MoveTo(1);
    EXPECT_EQ(stream[0], 'e');
    EXPECT_EQ(receiveText(stream, 8), "efgh");
}

TEST(VirtualGetStream, MoveToUsesOffsetsOfTheWholeInput) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    receiveText(stream, 5);
    stream.load();
    EXPECT_NOT_HELD(stream.MoveTo(4), moveToName);
    stream.MoveTo(7);
    EXPECT_EQ(heldBytes(stream), "hijklm");
    EXPECT_EQ(stream[0], 'h');
}

TEST(VirtualGetStream, MoveToTheWritePositionDiscardsAllBytes) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ij");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    stream.MoveTo(8);
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_EQ(stream.WritePosition(), 0);
    EXPECT_EQ(receiveText(stream, 8), "ij");
}

TEST(VirtualGetStream, MoveBeyondTheWritePositionIsRefusedAndChangesNothing) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ij");
    VirtualGetStream stream(source, 8, 0, 4, nullptr);
    stream.StartInputStream();
    test::LogCapture log;
    EXPECT_NOT_HELD(stream.MoveTo(9), moveToName);
    EXPECT_NOT_HELD(stream.MoveTo(0x7FFFFFFFu), moveToName);
    EXPECT_NOT_HELD(stream.MoveTo(0xFFFFFFFFu), moveToName);
    EXPECT_EQ(heldBytes(stream), "abcdefgh");
    EXPECT_EQ(source.asked.size(), 1u) << "moving asks the source for nothing";
    EXPECT_EQ(log.count(), 0u);
}

TEST(VirtualGetStream, MoveBackIsRefused) {
    test::ScriptedInput source;
    source.give("abcdefgh");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    receiveText(stream, 3);
    EXPECT_NOT_HELD(stream.MoveTo(2), moveToName);
    stream.MoveTo(3);
    EXPECT_EQ(heldBytes(stream), "defgh");
}

TEST(VirtualGetStream, MoveToWithoutOffsetMakesTheReadPositionTheOrigin) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijklmnop");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    receiveText(stream, 3);
    stream.MoveTo();
    EXPECT_EQ(stream[0], 'd');
    receiveText(stream, 2);
    stream.load();
    receiveText(stream, 1);
    stream.MoveTo();
    EXPECT_EQ(stream[0], 'g');
    EXPECT_EQ(heldBytes(stream), "ghijklm");
}

// Traces

TEST(VirtualGetStream, TracesARefill) {
    test::ScriptedInput source;
    source.give("abc").answer(0).answer(-1).give("de").give("f");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.setTrace(true);
    test::LogCapture log;
    stream.load();
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(3, loadName, "Open: true InError: false AtEnd: false"),
                                            traceLine(3, loadName, "fill at 0, for 8"), traceLine(3, loadName, "got 3"),
                                            traceLine(3, loadName, "received 3")}));
    log.clear();
    stream.load();
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, loadName, "Open: true InError: false AtEnd: false"),
                     traceLine(3, loadName, "fill at 3, for 5"), traceLine(3, loadName, "got 0"),
                     traceLine(3, loadName, "fill at 3, for 5"), traceLine(3, loadName, "got -1"),
                     traceLine(3, loadName, "fill at 3, for 5"), traceLine(3, loadName, "got 2"),
                     traceLine(3, loadName, "received 2")}));
}

TEST(VirtualGetStream, TracesTheStateOfTheSource) {
    test::ScriptedInput source;
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.setTrace(true);
    source.open = false;
    source.error = true;
    test::LogCapture log;
    stream.load();
    EXPECT_EQ(test::traceLines(log), Lines{traceLine(3, loadName, "Open: false InError: true AtEnd: true")});
}

TEST(VirtualGetStream, TracesOfATimeOutEndInTheErrorLine) {
    test::ScriptedInput source;
    source.answer(0).give("late");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.setTrace(true);
    stream.setWaitForData(false);
    test::LogCapture log;
    stream.load();
    EXPECT_EQ(log.texts(), (Lines{"Open: true InError: false AtEnd: false", "fill at 0, for 8", "got 0",
                                  "Response not received: Timed out"}));
}

TEST(VirtualGetStream, TracesAReceive) {
    test::ScriptedInput source;
    source.give("abc").give("de");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    stream.setTrace(true);
    test::LogCapture log;
    receiveText(stream, 2);
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, receiveName, "requesting 2 bytes"), traceLine(3, receiveName, "3 bytes available"),
                     traceLine(3, receiveName, "moving 2 bytes")}));
    log.clear();
    receiveText(stream, 5);
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, receiveName, "requesting 5 bytes"),
                     traceLine(3, loadName, "Open: true InError: false AtEnd: false"),
                     traceLine(3, loadName, "fill at 1, for 7"), traceLine(3, loadName, "got 2"),
                     traceLine(3, loadName, "received 2"), traceLine(3, receiveName, "3 bytes available"),
                     traceLine(3, receiveName, "moving 3 bytes")}));
    log.clear();
    receiveText(stream, 5);
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(3, receiveName, "requesting 5 bytes"),
                                            traceLine(3, loadName, "Open: true InError: false AtEnd: true"),
                                            traceLine(3, receiveName, "0 bytes available")}));
}

TEST(VirtualGetStream, TracesAnIndex) {
    test::ScriptedInput source;
    source.give("abc");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    stream.setTrace(true);
    test::LogCapture log;
    EXPECT_EQ(stream[2], 'c');
    EXPECT_EQ(test::traceLines(log), Lines{traceLine(3, indexName, "[2]")});
}

TEST(VirtualGetStream, TracesSignedNumbers) {
    test::ScriptedInput source;
    source.give("abc");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    stream.setTrace(true);
    test::LogCapture log;
    EXPECT_NOT_HELD(stream[0xFFFFFFFFu], indexName);
    EXPECT_NOT_HELD(stream.MoveTo(0xFFFFFFFEu), moveToName);
    char block[16];
    EXPECT_EQ(stream.ReceiveInputStream(block, 0x80000000u), 3);
    const Lines texts = log.texts();
    EXPECT_EQ(texts.front(), "[-1]");
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, moveToName, "[-2]"));
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, receiveName, "requesting -2147483648 bytes"));
}

TEST(VirtualGetStream, TracesARefusedIndexBeforeItsErrorLine) {
    test::ScriptedInput source;
    source.give("abc");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    stream.setTrace(true);
    test::LogCapture log;
    EXPECT_NOT_HELD(stream[9], indexName);
    EXPECT_EQ(log.texts(),
              (Lines{"[9]", "accessing offset 9, index 9 from base 0 [0/3], ReadAvail: 3, WriteRemain: 5"}));
}

TEST(VirtualGetStream, TracesAMove) {
    test::ScriptedInput source;
    source.give("abcde");
    VirtualGetStream stream(source, 8, 0, 0, nullptr);
    stream.StartInputStream();
    stream.setTrace(true);
    test::LogCapture log;
    stream.MoveTo(2);
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, moveToName, "[2]"), traceLine(3, moveToName, "at: 3 read 5 write")}));
    log.clear();
    EXPECT_NOT_HELD(stream.MoveTo(9), moveToName);
    EXPECT_EQ(test::traceLines(log), Lines{traceLine(3, moveToName, "[9]")});
    log.clear();
    stream.ReadAdvance(1);
    stream.MoveTo();
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, moveToName, "[1]"), traceLine(3, moveToName, "at: 2 read 6 write")}));
}

TEST(VirtualGetStream, TracesNothingByDefault) {
    test::ScriptedInput source;
    source.give("abcdefgh").give("ijkl");
    test::LogCapture log;
    {
        VirtualGetStream stream(source, 8, 0, 4, nullptr);
        stream.StartInputStream();
        EXPECT_EQ(stream[6], 'g');
        stream.MoveTo();
        stream.MoveTo(1);
        receiveText(stream, 100);
        stream.ReadAvailable();
        stream.EndInputStream();
    }
    EXPECT_EQ(log.count(), 0u);
}

} // namespace
