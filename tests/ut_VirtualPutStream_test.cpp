#include "ut_VirtualPutStream.h"

#include <cerrno>
#include <climits>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Descriptor.h"
#include "ExpectFailure.h"
#include "FailingOperation.h"
#include "GuardedText.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "OpenDescriptors.h"
#include "RandomRun.h"
#include "RecordingOutput.h"
#include "SendText.h"
#include "TemporaryDirectory.h"
#include "TraceLines.h"
#include "VirtualSlot.h"
#include "fw_ThreadInfo.h"
#include "ut_FileOutputStream.h"
#include "ut_NullStream.h"

namespace {

using framework::Logger;
using test::heldBytes;
using test::sendText;
using test::traceLine;
using utility::VirtualPutStream;
using Lines = std::vector<std::string>;

constexpr const char* allocName = "void utility::Buffer::allocBuffer()";
constexpr const char* putBName = "virtual void utility::VirtualPutStream::PutB(const char*, int)";
constexpr const char* putFName = "void utility::PutStream::PutF(const char*, ...)";
constexpr const char* flushName = "virtual void utility::VirtualPutStream::FlushOutputStream()";
constexpr const char* destroyName = "virtual utility::VirtualPutStream::~VirtualPutStream()";

static_assert(std::is_base_of<utility::PutStream, VirtualPutStream>::value, "it is written like any text");
static_assert(!std::is_convertible<int, VirtualPutStream>::value, "a number is not a stream by itself");

void put(VirtualPutStream& stream, const std::string& data) {
    // An exact copy, so that a sanitizer detects a read past its end.
    const std::vector<char> bytes(data.begin(), data.end());
    stream.PutB(bytes.data(), static_cast<int>(bytes.size()));
}

// Runs `body` in a thread without a record; the traces show its number as 0.
template<class Body>
void inNewThread(Body body) {
    std::thread thread(body);
    thread.join();
}

TEST(VirtualPutStream, UsageExample) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.path("ports");
    {
        utility::FileOutputStream file(path.c_str(), false, 0600);
        utility::VirtualPutStream out(file, 256, 200);
        for (int i = 0; i < 1000; ++i)
            out.PutF("port %d\n", i);
        out.FlushOutputStream();
    }
    std::string expected;
    for (int i = 0; i < 1000; ++i)
        expected += "port " + std::to_string(i) + "\n";
    EXPECT_EQ(directory.read("ports"), expected);
}

TEST(VirtualPutStream, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::StartOutputStream), 2);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::EndOutputStream), 3);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::SendOutputStream), 4);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::FlushOutputStream), 5);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::TransferFromInputStream), 6);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::isOutputStreamOpen), 7);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::isOutputStreamInError), 8);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::isOutputStreamAtEnd), 9);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::isOutputStreamGood), 10);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::PutB), 11);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::Indent), 12);
    EXPECT_EQ(test::virtualSlot(&VirtualPutStream::WriteRemaining), 13);
}

// Construction

TEST(VirtualPutStream, OwnBufferHasItsFullSize) {
    test::RecordingOutput target;
    const VirtualPutStream stream(target, 16, 100);
    EXPECT_EQ(stream.Size(), 16);
    EXPECT_EQ(stream.WriteRemaining(), 16);
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_EQ(stream.transferred(), 0);
    EXPECT_FALSE(stream.isNoThrow());
    EXPECT_EQ(stream.pBuffer()[0], 0);
    EXPECT_EQ(stream.pBuffer()[16], 0);
    EXPECT_EQ(target.calls, Lines{});
}

TEST(VirtualPutStream, FailedAllocationOfTheBufferThrows1238) {
    test::RecordingOutput target;
    EXPECT_FAILURE(test::failNth(1, [&] { VirtualPutStream(target, 16, 100); }), 1238, "ut_Buffer", allocName, "");
    EXPECT_FAILURE(VirtualPutStream(target, -5, 1), 1238, "ut_Buffer", allocName, "");
    EXPECT_FAILURE(VirtualPutStream(target, INT_MIN, 1), 1238, "ut_Buffer", allocName, "");
}

TEST(VirtualPutStream, CallersArrayReservesItsLastByteForTheTerminator) {
    test::RecordingOutput target;
    test::GuardedText text(16);
    {
        VirtualPutStream stream(target, text.array(), 16, 100);
        EXPECT_EQ(stream.Size(), 15);
        EXPECT_EQ(stream.WriteRemaining(), 15);
        EXPECT_EQ(stream.pBuffer(), text.array());
        EXPECT_EQ(text.array()[0], 0);
        EXPECT_EQ(text.array()[15], 0);
        put(stream, "ports");
    }
    EXPECT_EQ(std::string(text.array(), 5), "ports");
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(VirtualPutStream, SmallestArraysAreNeverOverrun) {
    for (const int size : {0, 1, 2}) {
        for (const int threshold : {-1, 0, 1, 2, 100}) {
            test::RecordingOutput target;
            test::LogCapture log;
            test::GuardedText text(static_cast<unsigned int>(size));
            VirtualPutStream stream(target, text.array(), size, threshold);
            stream.setNoThrow(true);
            put(stream, std::string(100, 'x'));
            stream.PutF("%s", "formatted");
            stream.PutS("text");
            stream.PutC('c');
            stream.Indent(3);
            stream.setHoldOutput(true);
            sendText(stream, std::string(100, 'y'));
            stream.FlushOutputStream();
            EXPECT_TRUE(text.isGuardWhole()) << size << ", " << threshold;
            EXPECT_EQ(text.isUntouched(), size == 0);
        }
    }
}

TEST(VirtualPutStream, ArrayOfTwoBytesPassesAllOutputOn) {
    test::RecordingOutput target;
    test::GuardedText text(2);
    VirtualPutStream stream(target, text.array(), 2, 1);
    put(stream, "12345");
    EXPECT_EQ(target.calls, (Lines{"send:1", "send:2", "send:3", "send:4", "send:5"}));
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(VirtualPutStream, ArrayWithoutCapacityRefusesAWrite) {
    for (const int size : {-1, 0, 1}) {
        test::RecordingOutput target;
        test::GuardedText text(1);
        VirtualPutStream stream(target, text.array(), size, 1);
        EXPECT_FAILURE(stream.PutB("12", 2), 1239, "ut_VirtualPutStream", putBName,
                       "Didn't fit. size=2 remaining=0 msg='12'");
        EXPECT_EQ(target.calls, Lines{});
        EXPECT_TRUE(text.isGuardWhole());
    }
}

TEST(VirtualPutStream, StartsInTheSameStateWithACallersArray) {
    test::RecordingOutput target;
    test::LogCapture log;
    {
        test::GuardedText text(16);
        VirtualPutStream stream(target, text.array(), 16, 3);
        EXPECT_EQ(stream.transferred(), 0);
        EXPECT_FALSE(stream.isNoThrow());
        EXPECT_TRUE(sendText(stream, "passed by"));
        put(stream, "held");
        EXPECT_EQ(stream.transferred(), 4);
    }
    EXPECT_EQ(target.calls, (Lines{"send:passed by", "send:held"}));
    EXPECT_EQ(log.count(), 0u);
}

TEST(VirtualPutStream, WithoutATargetIsClosedAndRefusesSends) {
    VirtualPutStream stream(1);
    EXPECT_FALSE(stream.isOutputStreamOpen());
    EXPECT_FALSE(stream.isOutputStreamGood());
    EXPECT_FALSE(stream.StartOutputStream());
    EXPECT_FALSE(stream.SendOutputStream("ports", 5));
    EXPECT_FAILURE(stream.PutB("ports", 5), 1239, "ut_VirtualPutStream", putBName,
                   "Didn't fit. size=5 remaining=0 msg='ports'");
    stream.setNoThrow(true);
    test::LogCapture log;
    stream.PutB("ports", 5);
    EXPECT_EQ(log.count(), 1u);
    stream.FlushOutputStream();
    stream.EndOutputStream();
    EXPECT_EQ(stream.WriteRemaining(), 0);
    EXPECT_EQ(stream.transferred(), 0);
}

// The threshold

TEST(VirtualPutStream, BytesBelowTheThresholdStayInTheBuffer) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 256, 100);
    put(stream, std::string(99, 'x'));
    EXPECT_EQ(stream.WriteRemaining(), 157);
    EXPECT_EQ(stream.ReadAvailable(), 99);
    EXPECT_EQ(target.calls, Lines{});
}

TEST(VirtualPutStream, ByteAtTheThresholdIsFlushedByTheNextWriteRemaining) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 256, 100);
    put(stream, std::string(99, 'x'));
    stream.PutC('y');
    EXPECT_EQ(stream.ReadAvailable(), 100);
    EXPECT_EQ(target.calls, Lines{});
    EXPECT_EQ(stream.WriteRemaining(), 256);
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_EQ(target.calls, Lines{"send:" + std::string(99, 'x') + "y"});
    EXPECT_EQ(stream.transferred(), 100);
}

TEST(VirtualPutStream, PutBCallsWriteRemainingAfterEachPiece) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 256, 100);
    put(stream, std::string(100, 'x'));
    EXPECT_EQ(target.calls, Lines{"send:" + std::string(100, 'x')});
    EXPECT_EQ(stream.ReadAvailable(), 0);
}

TEST(VirtualPutStream, PutBCallsWriteRemainingBeforeItsFirstPiece) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 4);
    stream.PutS("1234");
    EXPECT_EQ(target.calls, Lines{});
    stream.PutB("5", 0);
    EXPECT_EQ(target.calls, Lines{"send:1234"});
    stream.PutS("5678");
    stream.PutB("9", 1);
    EXPECT_EQ(target.calls, (Lines{"send:1234", "send:5678"}));
    EXPECT_EQ(heldBytes(stream), "9");
}

TEST(VirtualPutStream, PutBOfNullDoesNothing) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 4);
    stream.PutS("1234");
    stream.PutB(nullptr, 5);
    EXPECT_EQ(target.calls, Lines{});
    EXPECT_EQ(heldBytes(stream), "1234");
}

TEST(VirtualPutStream, PutBOfANegativeLengthWritesNothing) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 100);
    stream.PutB("12", -1);
    stream.PutB("12", INT_MIN);
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualPutStream, LongOutputIsSentInFullBuffers) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 8);
    put(stream, "abcdefghijklmnopqrst");
    EXPECT_EQ(target.calls, (Lines{"send:abcdefgh", "send:ijklmnop"}));
    EXPECT_EQ(heldBytes(stream), "qrst");
    EXPECT_EQ(stream.transferred(), 16);
}

TEST(VirtualPutStream, AcceptsDataFromItsOwnBuffer) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 16, 4);
    stream.setHoldOutput(true);
    stream.PutS("abcdef");
    stream.PutB(stream.pTail() + 1, 5);
    EXPECT_EQ(target.calls, (Lines{"send:abcdef", "send:bcdef"}));
    stream.PutS("uvwxyz");
    EXPECT_TRUE(stream.SendOutputStream(stream.pTail() + 1, 5));
    EXPECT_EQ(target.text(), "abcdefbcdefuvwxyzvwxyz");
}

TEST(VirtualPutStream, RestAtTheThresholdIsAlsoFlushed) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 4);
    put(stream, "abcdefghijklmnopqrst");
    EXPECT_EQ(target.calls, (Lines{"send:abcdefgh", "send:ijklmnop", "send:qrst"}));
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualPutStream, ThresholdOfZeroFlushesAtEveryWriteRemaining) {
    for (const int threshold : {0, -1, INT_MIN}) {
        test::RecordingOutput target;
        VirtualPutStream stream(target, 8, threshold);
        put(stream, "abc");
        put(stream, "d");
        EXPECT_EQ(target.calls, (Lines{"send:abc", "send:d"}));
    }
}

TEST(VirtualPutStream, TextsCallWriteRemainingOnceAndMustFit) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 6);
    stream.PutF("%d", 12345);
    EXPECT_FAILURE(stream.PutF("%s", "67890"), 1239, "ut_PutStream", putFName,
                   "Didn't fit. wrote=5 remaining=3 msg='%s'");
    EXPECT_EQ(heldBytes(stream), "12345678");
    stream.PutF("%s", "next");
    EXPECT_EQ(target.calls, Lines{"send:12345678"});
    EXPECT_EQ(heldBytes(stream), "next");
}

TEST(VirtualPutStream, WithNoThrowTextsThatDoNotFitAreTruncated) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 6);
    stream.setNoThrow(true);
    test::LogCapture log;
    stream.PutF("%d", 12345);
    stream.PutF("%s", "67890");
    EXPECT_EQ(heldBytes(stream), "12345678");
    EXPECT_EQ(log.texts(), Lines{"PutStream::PutF: Didn't fit. wrote=5 remaining=3 msg='%s'"});
}

TEST(VirtualPutStream, AnyNumberOfCharactersAndBlanksIsSent) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 4, 2);
    for (int i = 0; i < 10; ++i)
        stream.PutC('x');
    stream.Indent(5);
    stream.FlushOutputStream();
    EXPECT_EQ(target.text(), "xxxxxxxxxx     ");
}

TEST(VirtualPutStream, AnyMixOfWritesArrivesInOrder) {
    test::RandomRun random;
    for (int run = 0; run < 50 && !testing::Test::HasFailure(); ++run) {
        test::RecordingOutput target;
        const unsigned int size = 9 + random.below(40);
        VirtualPutStream stream(target, static_cast<int>(size), static_cast<int>(1 + random.below(size - 8)));
        std::string expected;
        for (int step = 0; step < 200; ++step) {
            const std::string data = random.text(7, "abc\n");
            switch (random.below(5)) {
            case 0:
                stream.PutF("%s", data.c_str());
                break;
            case 1:
                put(stream, data + data + data + data + data + data + data);
                expected += data + data + data + data + data + data;
                break;
            case 2:
                stream.setHoldOutput(random.below(2) == 0);
                EXPECT_TRUE(sendText(stream, data));
                break;
            case 3:
                stream.PutS(data.c_str());
                break;
            default:
                stream.FlushOutputStream();
                put(stream, data);
            }
            expected += data;
        }
        stream.FlushOutputStream();
        EXPECT_EQ(target.text(), expected);
    }
}

// What does not fit

TEST(VirtualPutStream, UsableTargetThatIsNeverFlushedLeavesTheBufferFull) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 10, 11);
    EXPECT_FAILURE(put(stream, "abcdefghijklmno"), 1239, "ut_VirtualPutStream", putBName,
                   "Didn't fit. size=5 remaining=0 msg='klmno'");
    EXPECT_EQ(heldBytes(stream), "abcdefghij");
    EXPECT_EQ(target.calls, Lines{});
}

TEST(VirtualPutStream, OneByteLeftOverIsRefusedLikeMany) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 10, 11);
    EXPECT_FAILURE(put(stream, "abcdefghijk"), 1239, "ut_VirtualPutStream", putBName,
                   "Didn't fit. size=1 remaining=0 msg='k'");
    EXPECT_EQ(heldBytes(stream), "abcdefghij");
}

TEST(VirtualPutStream, DeadTargetThatIsNeverFlushedLeavesTheBufferFull) {
    for (const bool closed : {false, true}) {
        test::RecordingOutput target;
        target.open = !closed;
        target.error = !closed;
        VirtualPutStream stream(target, 10, 11);
        EXPECT_FAILURE(put(stream, "abcdefghijklmno"), 1239, "ut_VirtualPutStream", putBName,
                       "Didn't fit. size=5 remaining=0 msg='klmno'");
        EXPECT_EQ(heldBytes(stream), "abcdefghij");
        EXPECT_EQ(target.calls, Lines{});
    }
}

TEST(VirtualPutStream, TargetThatRefusesTwiceInARowThrows) {
    test::RecordingOutput target;
    target.refusals = 100;
    VirtualPutStream stream(target, 10, 5);
    EXPECT_FAILURE(put(stream, "abcdefghijklmno"), 1239, "ut_VirtualPutStream", putBName,
                   "Didn't fit. size=5 remaining=0 msg='klmno'");
    EXPECT_EQ(target.calls, (Lines{"refused:abcdefghij", "refused:abcdefghij"}));
    EXPECT_EQ(heldBytes(stream), "abcdefghij") << "what a live target refuses stays queued";
}

TEST(VirtualPutStream, TargetThatRefusesOnceGetsTheBufferAgain) {
    test::RecordingOutput target;
    target.refusals = 1;
    VirtualPutStream stream(target, 10, 5);
    put(stream, "abcdefghijklm");
    EXPECT_EQ(target.calls, (Lines{"refused:abcdefghij", "send:abcdefghij"}));
    EXPECT_EQ(heldBytes(stream), "klm");
}

TEST(VirtualPutStream, BufferOfOneByteIsAlsoSentAgainToATargetThatRefusesOnce) {
    test::RecordingOutput target;
    target.refusals = 1;
    VirtualPutStream stream(target, 1, 1);
    put(stream, "12");
    EXPECT_EQ(target.calls, (Lines{"refused:1", "send:1", "send:2"}));
}

TEST(VirtualPutStream, TargetThatRefusesGetsOneSendIfNoBytesAreLeftOver) {
    test::RecordingOutput target;
    target.refusals = 100;
    VirtualPutStream stream(target, 10, 5);
    put(stream, "abcdefghij");
    EXPECT_EQ(target.calls, Lines{"refused:abcdefghij"});
    EXPECT_EQ(heldBytes(stream), "abcdefghij");
}

TEST(VirtualPutStream, TargetThatDiesBetweenTheTwoFlushesGetsNothing) {
    test::RecordingOutput target;
    target.refusals = 100;
    target.afterSend = [&] {
        target.error = true;
    };
    VirtualPutStream stream(target, 10, 5);
    EXPECT_FAILURE(put(stream, "abcdefghijklmno"), 1239, "ut_VirtualPutStream", putBName,
                   "Didn't fit. size=5 remaining=0 msg='klmno'");
    EXPECT_EQ(target.calls, Lines{"refused:abcdefghij"});
}

TEST(VirtualPutStream, WithNoThrowDataThatDoesNotFitIsLoggedAndDiscarded) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 10, 11);
    stream.setNoThrow(true);
    test::LogCapture log;
    put(stream, "abcdefghijklmno");
    EXPECT_EQ(test::traceLines(log), Lines{"0 : PutStream::PutB: Didn't fit. size=5 remaining=0 msg='klmno'"});
    EXPECT_EQ(heldBytes(stream), "abcdefghij");
}

TEST(VirtualPutStream, LongRestIsTruncatedInTheMessage) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 10, 11);
    const std::string data(310, 'x');
    EXPECT_FAILURE(put(stream, data), 1239, "ut_VirtualPutStream", putBName,
                   "Didn't fit. size=300 remaining=0 msg='" + std::string(90, 'x') + "'");
    stream.setNoThrow(true);
    stream.Rewind();
    test::LogCapture log;
    put(stream, data);
    EXPECT_EQ(log.texts(),
              Lines{"PutStream::PutB: Didn't fit. size=300 remaining=0 msg='" + std::string(200, 'x') + "'"});
}

TEST(VirtualPutStream, MessageEndsAtANulOfTheRest) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 1, 2);
    EXPECT_FAILURE(put(stream, std::string("abc\0d", 5)), 1239, "ut_VirtualPutStream", putBName,
                   "Didn't fit. size=4 remaining=0 msg='bc'");
}

TEST(VirtualPutStream, OutputToADeadTargetIsDiscardedWithoutBlocking) {
    for (const bool closed : {false, true}) {
        test::RecordingOutput target;
        target.open = !closed;
        target.error = !closed;
        test::LogCapture log;
        VirtualPutStream stream(target, 10, 5);
        put(stream, std::string(1003, 'x'));
        EXPECT_EQ(heldBytes(stream), "xxx");
        EXPECT_EQ(target.calls, Lines{});
        EXPECT_EQ(stream.transferred(), 0);
        EXPECT_EQ(log.count(), 0u);
    }
}

TEST(VirtualPutStream, OutputIsDiscardedAsSoonAsTheTargetDies) {
    test::RecordingOutput target;
    target.afterSend = [&] {
        target.open = false;
    };
    VirtualPutStream stream(target, 10, 5);
    put(stream, "abcdefghijklmnopqrstuvwxyz");
    EXPECT_EQ(target.calls, Lines{"send:abcdefghij"});
    EXPECT_EQ(stream.transferred(), 10);
    EXPECT_EQ(heldBytes(stream), "");
}

// Flushing

TEST(VirtualPutStream, FlushSendsTheBufferAtOnce) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 16, 100);
    stream.PutS("one ");
    stream.PutS("two");
    stream.FlushOutputStream();
    EXPECT_EQ(target.calls, Lines{"send:one two"}) << "the target itself is not flushed";
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_EQ(stream.WritePosition(), 0);
    EXPECT_EQ(stream.transferred(), 7);
    stream.FlushOutputStream();
    EXPECT_EQ(target.calls, Lines{"send:one two"});
    stream.PutS("three");
    stream.FlushOutputStream();
    EXPECT_EQ(target.calls, (Lines{"send:one two", "send:three"}));
    EXPECT_EQ(stream.transferred(), 12);
}

TEST(VirtualPutStream, FlushSendsOnlyTheUnreadBytes) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 16, 100);
    stream.PutS("abcdef");
    stream.ReadAdvance(4);
    stream.FlushOutputStream();
    EXPECT_EQ(target.calls, Lines{"send:ef"});
    EXPECT_EQ(stream.transferred(), 2);
    EXPECT_EQ(stream.WritePosition(), 0);
}

TEST(VirtualPutStream, RefusedFlushKeepsItsBytesForALaterFlush) {
    test::RecordingOutput target;
    target.refusals = 1;
    VirtualPutStream stream(target, 16, 100);
    stream.PutS("ports");
    stream.FlushOutputStream();
    EXPECT_EQ(heldBytes(stream), "ports");
    EXPECT_EQ(stream.transferred(), 0);
    stream.PutS("!");
    stream.FlushOutputStream();
    EXPECT_EQ(target.calls, (Lines{"refused:ports", "send:ports!"}));
    EXPECT_EQ(stream.transferred(), 6);
}

// A FIFO with a capacity of one page and a non-blocking writer.
class SmallFifo {
public:
    SmallFifo()
        : m_path(makeFifo(m_directory.path("fifo"))),
          m_reader(open(m_path.c_str(), O_RDONLY | O_NONBLOCK)),
          m_writer(open(m_path.c_str(), O_WRONLY | O_NONBLOCK)) {
        setCapacity(1);
    }

    const std::string& path() const {
        return m_path;
    }
    const test::Descriptor& reader() const {
        return m_reader;
    }
    int writer() const {
        return m_writer.number();
    }
    // Sets the capacity to `size`, rounded up to whole pages, and returns it.
    std::size_t setCapacity(std::size_t size) const {
        return static_cast<std::size_t>(fcntl(m_writer.number(), F_SETPIPE_SZ, static_cast<int>(size)));
    }
    std::size_t capacity() const {
        return static_cast<std::size_t>(fcntl(m_writer.number(), F_GETPIPE_SZ));
    }

private:
    static std::string makeFifo(const std::string& path) {
        EXPECT_EQ(mkfifo(path.c_str(), 0600), 0);
        return path;
    }

    test::TemporaryDirectory m_directory;
    std::string m_path;
    test::Descriptor m_reader;
    test::Descriptor m_writer;
};

// A text of consecutive numbers, in which a repeated or missing piece shows.
std::string numbers(std::size_t size) {
    std::string text;
    for (int i = 0; text.size() < size; ++i)
        text += std::to_string(i) + " ";
    text.resize(size);
    return text;
}

TEST(VirtualPutStream, BytesAcceptedFromARefusedSendAreSentAgain) {
    const SmallFifo fifo;
    utility::FileOutputStream file(fifo.path().c_str(), false, 0600);
    for (const int fd : test::descriptorsOf(fifo.path()))
        ASSERT_EQ(fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) | O_NONBLOCK), 0);
    const std::size_t taken = fifo.capacity();
    const std::string text = numbers(taken + 1000);
    VirtualPutStream stream(file, static_cast<int>(2 * text.size()), static_cast<int>(2 * text.size()));
    put(stream, text);

    stream.FlushOutputStream();
    EXPECT_EQ(fifo.reader().readAvailable(), text.substr(0, taken));
    EXPECT_EQ(heldBytes(stream), text);
    EXPECT_EQ(stream.transferred(), 0);

    ASSERT_GT(fifo.setCapacity(4 * taken), text.size());
    stream.FlushOutputStream();
    EXPECT_EQ(fifo.reader().readAvailable(), text);
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_EQ(stream.transferred(), static_cast<int>(text.size()));
}

// Repeats short writes until a send is complete; an error ends it permanently.
class CompletingOutput : public framework::OutputStream {
public:
    explicit CompletingOutput(int fd) : m_fd(fd) {}

    bool SendOutputStream(const char* data, unsigned int size) override {
        while (size > 0 && !m_error) {
            const ssize_t count = write(m_fd, data, size);
            if (count < 0 && errno == EAGAIN) {
                pollfd writable = {m_fd, POLLOUT, 0};
                m_error = poll(&writable, 1, 60000) < 1;
            } else if (count < 0) {
                m_error = errno != EINTR;
            } else {
                ++writes;
                data += count;
                size -= static_cast<unsigned int>(count);
            }
        }
        return !m_error;
    }
    bool StartOutputStream() override {
        return true;
    }
    void EndOutputStream() override {}
    bool isOutputStreamOpen() override {
        return true;
    }
    bool isOutputStreamInError() override {
        return m_error;
    }
    bool isOutputStreamAtEnd() override {
        return false;
    }

    int writes = 0;

private:
    int m_fd;
    bool m_error = false;
};

TEST(VirtualPutStream, TargetThatCompletesEachSendGetsNoByteTwice) {
    const SmallFifo fifo;
    const std::string text = numbers(20 * fifo.capacity());
    std::string received;
    std::thread reader([&] {
        while (received.size() < text.size()) {
            pollfd readable = {fifo.reader().number(), POLLIN, 0};
            if (poll(&readable, 1, 60000) < 1)
                break;
            received += fifo.reader().readAvailable();
        }
    });
    CompletingOutput target(fifo.writer());
    VirtualPutStream stream(target, static_cast<int>(3 * fifo.capacity()), static_cast<int>(3 * fifo.capacity()));
    put(stream, text);
    stream.FlushOutputStream();
    reader.join();
    EXPECT_EQ(received, text);
    EXPECT_GE(target.writes, 20);
}

TEST(VirtualPutStream, FlushToADeadTargetDiscardsTheBuffer) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 16, 100);
    stream.PutS("ports");
    target.error = true;
    stream.FlushOutputStream();
    EXPECT_EQ(heldBytes(stream), "");
    target.error = false;
    stream.FlushOutputStream();
    EXPECT_EQ(target.calls, Lines{});
    EXPECT_EQ(stream.transferred(), 0);
}

TEST(VirtualPutStream, ThresholdCallsTheFlushOfADerivedStream) {
    struct Counting : VirtualPutStream {
        using VirtualPutStream::VirtualPutStream;
        void FlushOutputStream() override {
            ++flushes;
            Rewind();
        }
        int flushes = 0;
    };
    test::RecordingOutput target;
    Counting stream(target, 8, 4);
    put(stream, "1234");
    EXPECT_EQ(stream.flushes, 1);
    stream.EndOutputStream();
    EXPECT_EQ(stream.flushes, 2);
    EXPECT_EQ(target.calls, Lines{"end"});
}

TEST(VirtualPutStream, DestructionDoesNotFlush) {
    test::RecordingOutput target;
    {
        VirtualPutStream stream(target, 16, 100);
        stream.PutS("lost");
    }
    EXPECT_EQ(target.calls, Lines{});
}

// Sending

TEST(VirtualPutStream, SendBypassesAnEmptyBuffer) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 4);
    EXPECT_TRUE(sendText(stream, "abcdefghijklmno"));
    EXPECT_TRUE(sendText(stream, ""));
    EXPECT_EQ(target.calls, (Lines{"send:abcdefghijklmno", "send:"}));
    EXPECT_EQ(stream.transferred(), 0) << "what passes by is not counted";
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualPutStream, SendThatBypassesTheBufferReturnsTheTargetsResult) {
    test::RecordingOutput target;
    target.refusals = 1;
    VirtualPutStream stream(target, 8, 4);
    EXPECT_FALSE(sendText(stream, "abc"));
    EXPECT_EQ(target.calls, Lines{"refused:abc"});
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualPutStream, SendToADeadTargetReturnsFalseAndBuffersNothing) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 4);
    target.error = true;
    EXPECT_FALSE(sendText(stream, "abc"));
    target.error = false;
    target.open = false;
    EXPECT_FALSE(sendText(stream, "abc"));
    EXPECT_FALSE(sendText(stream, ""));
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_EQ(target.calls, Lines{});
}

TEST(VirtualPutStream, SendOfNullReturnsFalseUnlessItsSizeIsZero) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 4);
    EXPECT_FALSE(stream.SendOutputStream(nullptr, 1));
    target.error = true;
    EXPECT_FALSE(stream.SendOutputStream(nullptr, 0)) << "the target is dead";
    target.error = false;
    stream.PutS("1234");
    EXPECT_FALSE(stream.SendOutputStream(nullptr, 5));
    EXPECT_EQ(target.calls, Lines{});
    EXPECT_TRUE(stream.SendOutputStream(nullptr, 0));
    EXPECT_EQ(target.calls, Lines{"send:1234"}) << "a send calls WriteRemaining at its end";
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualPutStream, SendGoesAfterTheBytesInTheBuffer) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 6);
    stream.PutS("12");
    EXPECT_TRUE(sendText(stream, "345"));
    EXPECT_EQ(heldBytes(stream), "12345");
    EXPECT_EQ(target.calls, Lines{});
    EXPECT_TRUE(sendText(stream, "6"));
    EXPECT_EQ(target.calls, Lines{"send:123456"});
    EXPECT_EQ(stream.transferred(), 6);
    EXPECT_TRUE(sendText(stream, "7"));
    EXPECT_EQ(target.calls, (Lines{"send:123456", "send:7"})) << "nothing was held";
}

TEST(VirtualPutStream, SendIsBufferedIfOutputIsHeld) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 6);
    stream.setHoldOutput(true);
    EXPECT_TRUE(sendText(stream, "12345"));
    EXPECT_EQ(heldBytes(stream), "12345");
    stream.setHoldOutput(false);
    EXPECT_TRUE(sendText(stream, "6"));
    EXPECT_EQ(target.calls, Lines{"send:123456"});
}

TEST(VirtualPutStream, LongSendIsBufferedInFullBuffers) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 8);
    stream.setHoldOutput(true);
    EXPECT_TRUE(sendText(stream, "abcdefghijklmnopqrst"));
    EXPECT_EQ(target.calls, (Lines{"send:abcdefgh", "send:ijklmnop"}));
    EXPECT_EQ(heldBytes(stream), "qrst");
    EXPECT_TRUE(sendText(stream, "uvwx"));
    EXPECT_EQ(target.calls, (Lines{"send:abcdefgh", "send:ijklmnop", "send:qrstuvwx"}));
}

TEST(VirtualPutStream, SendThatDoesNotFitReturnsFalseAndKeepsWhatFits) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 9);
    stream.setHoldOutput(true);
    test::LogCapture log;
    EXPECT_FALSE(sendText(stream, "abcdefghij"));
    EXPECT_EQ(heldBytes(stream), "abcdefgh");
    EXPECT_FALSE(sendText(stream, "k"));
    EXPECT_TRUE(sendText(stream, ""));
    EXPECT_EQ(heldBytes(stream), "abcdefgh");
    EXPECT_EQ(target.calls, Lines{});
    EXPECT_EQ(log.count(), 0u);
}

TEST(VirtualPutStream, RefusedSendReturnsFalseOnceTheBufferIsFull) {
    test::RecordingOutput target;
    target.refusals = 100;
    VirtualPutStream stream(target, 8, 4);
    stream.setHoldOutput(true);
    EXPECT_TRUE(sendText(stream, "abcdefgh"));
    EXPECT_FALSE(sendText(stream, "i"));
    EXPECT_EQ(heldBytes(stream), "abcdefgh");
    target.refusals = 0;
    EXPECT_TRUE(sendText(stream, "i"));
    EXPECT_EQ(target.text(), "abcdefgh");
    EXPECT_EQ(heldBytes(stream), "i");
}

TEST(VirtualPutStream, SendToATargetThatDiesMidwayReturnsFalseAndDiscardsTheRest) {
    test::RecordingOutput target;
    target.afterSend = [&] {
        target.error = true;
    };
    VirtualPutStream stream(target, 8, 8);
    stream.setHoldOutput(true);
    EXPECT_FALSE(sendText(stream, "abcdefghijklmnopqrst"));
    EXPECT_EQ(target.calls, Lines{"send:abcdefgh"});
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_EQ(stream.transferred(), 8);
}

TEST(VirtualPutStream, BufferedSendToADeadTargetReturnsFalseAndDiscardsTheBufferAtTheThreshold) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 8, 4);
    stream.setHoldOutput(true);
    EXPECT_TRUE(sendText(stream, "123"));
    target.open = false;
    EXPECT_FALSE(sendText(stream, "4"));
    EXPECT_EQ(heldBytes(stream), "123");
    stream.PutC('4');
    EXPECT_FALSE(sendText(stream, "5"));
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_TRUE(sendText(stream, ""));
    EXPECT_EQ(target.calls, Lines{});
}

TEST(VirtualPutStream, ReceivesAWholeTransfer) {
    test::RecordingOutput target;
    utility::NullStream input(40000);
    input.StartInputStream();
    VirtualPutStream stream(target, 64, 64);
    stream.setHoldOutput(true);
    EXPECT_TRUE(stream.TransferFromInputStream(input));
    stream.FlushOutputStream();
    EXPECT_EQ(target.text(), std::string(40000, '\0'));
    EXPECT_EQ(stream.transferred(), 40000);
}

// Starting and ending

TEST(VirtualPutStream, StartFlushesAndEndsAnEarlierUse) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 16, 100);
    stream.PutS("abc");
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_EQ(target.calls, (Lines{"send:abc", "end", "start"}));
    EXPECT_EQ(stream.transferred(), 0);
    EXPECT_EQ(heldBytes(stream), "");
}

TEST(VirtualPutStream, StartDiscardsWhatTheTargetRefused) {
    test::RecordingOutput target;
    target.refusals = 1;
    VirtualPutStream stream(target, 16, 100);
    stream.PutS("abc");
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_EQ(target.calls, (Lines{"refused:abc", "end", "start"}));
    EXPECT_EQ(heldBytes(stream), "");
    EXPECT_EQ(stream.pBuffer()[0], 0);
}

TEST(VirtualPutStream, StartReturnsTheTargetsResult) {
    test::RecordingOutput target;
    target.starts = false;
    VirtualPutStream stream(target, 16, 100);
    EXPECT_FALSE(stream.StartOutputStream());
    EXPECT_EQ(target.calls, (Lines{"end", "start"}));
}

TEST(VirtualPutStream, EndFlushesAndEndsTheTarget) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 16, 100);
    stream.PutS("abc");
    stream.EndOutputStream();
    EXPECT_EQ(target.calls, (Lines{"send:abc", "end"}));
    EXPECT_EQ(stream.transferred(), 3);
    stream.EndOutputStream();
    EXPECT_EQ(target.calls, (Lines{"send:abc", "end", "end"}));
}

TEST(VirtualPutStream, StatesAreTheTargets) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 16, 100);
    EXPECT_TRUE(stream.isOutputStreamOpen());
    EXPECT_FALSE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamAtEnd());
    EXPECT_TRUE(stream.isOutputStreamGood());
    target.open = false;
    EXPECT_FALSE(stream.isOutputStreamOpen());
    target.open = true;
    target.error = true;
    EXPECT_TRUE(stream.isOutputStreamInError());
    EXPECT_FALSE(stream.isOutputStreamGood());
    target.error = false;
    target.atEnd = true;
    EXPECT_TRUE(stream.isOutputStreamAtEnd());
    EXPECT_FALSE(stream.isOutputStreamGood());
}

TEST(VirtualPutStream, StateOfAFullBufferIsStillTheTargets) {
    test::RecordingOutput target;
    VirtualPutStream stream(target, 4, 100);
    put(stream, "1234");
    EXPECT_TRUE(stream.isOutputStreamGood());
}

// Traces

TEST(VirtualPutStream, TracesAnAcceptedFlush) {
    inNewThread([] {
        test::LogCapture log;
        test::RecordingOutput target;
        VirtualPutStream stream(target, 16, 100);
        stream.setTrace(true);
        stream.PutS("ports");
        stream.FlushOutputStream();
        EXPECT_EQ(test::traceLines(log),
                  (Lines{traceLine(3, flushName, "(0)"), traceLine(3, flushName, "(0) [Flushed 5 bytes]\n"),
                         traceLine(3, flushName, "(0) now have 0 at tail 0 head 0\n")}));
    });
}

TEST(VirtualPutStream, TracesAFlushOfAnEmptyBuffer) {
    inNewThread([] {
        test::LogCapture log;
        test::RecordingOutput target;
        VirtualPutStream stream(target, 16, 100);
        stream.setTrace(true);
        stream.FlushOutputStream();
        target.open = false;
        stream.FlushOutputStream();
        EXPECT_EQ(test::traceLines(log),
                  (Lines{traceLine(3, flushName, "(0)"), traceLine(3, flushName, "(0) rewind\n"), //
                         traceLine(3, flushName, "(0)"), traceLine(3, flushName, "(0) rewind\n")}));
    });
}

TEST(VirtualPutStream, TracesDiscardedOutput) {
    inNewThread([] {
        test::LogCapture log;
        test::RecordingOutput target;
        VirtualPutStream stream(target, 16, 100);
        stream.setTrace(true);
        target.error = true;
        stream.PutS("ports");
        stream.FlushOutputStream();
        stream.PutC('4');
        stream.FlushOutputStream();
        EXPECT_EQ(test::traceLines(log), (Lines{traceLine(3, flushName, "(0)"),
                                                traceLine(3, flushName, "(0) discarding virtual stream output 5\n"),
                                                traceLine(3, flushName, "(0)"),
                                                traceLine(3, flushName, "(0) discarding virtual stream output 1\n")}));
    });
}

TEST(VirtualPutStream, TracesARefusedFlushWithTheStateOfTheTarget) {
    inNewThread([] {
        test::LogCapture log;
        test::RecordingOutput target;
        target.refusals = 2;
        VirtualPutStream stream(target, 16, 100);
        stream.setTrace(true);
        stream.PutS("ports");
        stream.FlushOutputStream();
        EXPECT_EQ(test::traceLines(log),
                  (Lines{traceLine(3, flushName, "(0)"),
                         traceLine(3, flushName, "(0) Failed - to flush 5 bytes, open: true, inError: false\n")}));
        log.clear();
        target.afterSend = [&] {
            target.open = false;
            target.error = true;
        };
        stream.FlushOutputStream();
        EXPECT_EQ(test::traceLines(log),
                  (Lines{traceLine(3, flushName, "(0)"),
                         traceLine(3, flushName, "(0) Failed - to flush 5 bytes, open: false, inError: true\n")}));
        EXPECT_EQ(heldBytes(stream), "ports");
    });
}

TEST(VirtualPutStream, DestructionTracesTheBytesTransferred) {
    inNewThread([] {
        test::RecordingOutput target;
        test::LogCapture log;
        {
            VirtualPutStream stream(target, 16, 100);
            stream.PutS("ports");
            stream.FlushOutputStream();
            stream.PutS("held");
            stream.setTrace(true);
        }
        EXPECT_EQ(test::traceLines(log), Lines{traceLine(3, destroyName, "(0) transferred: 5")});
    });
}

TEST(VirtualPutStream, TracesContainTheThreadNumber) {
    inNewThread([] {
        const std::string number = std::to_string(framework::ThreadInfo::MyThreadInfo()->getNum());
        test::RecordingOutput target;
        test::LogCapture log;
        {
            VirtualPutStream stream(target, 16, 100);
            stream.setTrace(true);
            stream.PutS("a");
            stream.FlushOutputStream();
        }
        EXPECT_EQ(test::traceLines(log),
                  (Lines{traceLine(3, flushName, "(" + number + ")"),
                         traceLine(3, flushName, "(" + number + ") [Flushed 1 bytes]\n"),
                         traceLine(3, flushName, "(" + number + ") now have 0 at tail 0 head 0\n"),
                         traceLine(3, destroyName, "(" + number + ") transferred: 1")}));
        EXPECT_NE(number, "0");
    });
}

TEST(VirtualPutStream, TracesNothingByDefault) {
    test::RecordingOutput target;
    test::LogCapture log;
    {
        VirtualPutStream stream(target, 16, 4);
        stream.StartOutputStream();
        put(stream, "ports");
        stream.FlushOutputStream();
        target.refusals = 1;
        stream.PutS("ports");
        stream.FlushOutputStream();
        target.error = true;
        stream.FlushOutputStream();
        stream.FlushOutputStream();
        stream.EndOutputStream();
    }
    EXPECT_EQ(log.count(), 0u);
}

// Writes that do not flush skip the virtual calls if the class does not override the position operations. The same
// random writes to a stream with a class that overrides them must have the same effect.

class OverridingStream : public VirtualPutStream {
public:
    using VirtualPutStream::VirtualPutStream;
    int WriteRemaining() const override {
        ++m_calls;
        return VirtualPutStream::WriteRemaining();
    }
    void WriteAdvance(int n) override {
        ++m_calls;
        VirtualPutStream::WriteAdvance(n);
    }
    int calls() const {
        return m_calls;
    }

private:
    mutable int m_calls = 0;
};

struct Writing {
    int kind;
    int number;
    std::string text;
};

void write(VirtualPutStream& stream, const Writing& writing) {
    switch (writing.kind) {
    case 0:
        return stream.PutC(static_cast<char>('a' + writing.number));
    case 1:
        return stream.PutS(writing.text.c_str());
    case 2:
        return stream.PutF("%s-%d", writing.text.c_str(), writing.number);
    case 3:
        return stream.PutParmUint16(static_cast<uint16_t>(writing.number));
    case 4:
        return stream.PutParmString(writing.text.c_str());
    case 5:
        return stream.Indent(writing.number);
    case 6: // bytes of its own buffer
        return stream.PutB(stream.pBuffer(), writing.number % (stream.Size() + 1));
    case 7:
        return stream.FlushOutputStream();
    default:
        return put(stream, writing.text);
    }
}

// The effect of a write that a caller can see.
Lines effectOf(VirtualPutStream& stream, test::RecordingOutput& target, const Writing& writing) {
    test::LogCapture log;
    const auto failure = CATCH_FAILURE(write(stream, writing));
    Lines effect = std::move(target.calls);
    target.calls.clear();
    for (const std::string& text : log.texts())
        effect.push_back(text);
    if (failure != nullptr)
        effect.push_back(failure->function() + std::string(": ") + failure->message());
    effect.push_back(std::to_string(stream.WritePosition()) + " " + std::to_string(stream.ReadPosition()) + " " +
                     std::to_string(stream.transferred()));
    effect.emplace_back(stream.pBuffer(), static_cast<std::size_t>(stream.Size()));
    return effect;
}

TEST(VirtualPutStream, WritesMatchThoseOfAnOverridingClass) {
    test::RandomRun random;
    while (random.steps(60)) {
        test::RecordingOutput directTarget;
        test::RecordingOutput plainTarget;
        const int size = static_cast<int>(random.below(60));
        const int threshold = static_cast<int>(random.below(70)) - 2;
        std::vector<char> direct(static_cast<std::size_t>(size) + 1);
        std::vector<char> plain(direct);
        VirtualPutStream directStream(directTarget, direct.data(), size + 1, threshold);
        OverridingStream plainStream(plainTarget, plain.data(), size + 1, threshold);
        const bool noThrow = random.below(2) == 0;
        const bool trace = random.below(4) == 0;
        for (VirtualPutStream* const stream : {&directStream, static_cast<VirtualPutStream*>(&plainStream)}) {
            stream->setNoThrow(noThrow);
            stream->setTrace(trace);
        }
        for (int step = 0; step < 100 && !testing::Test::HasFailure(); ++step) {
            const Writing writing{static_cast<int>(random.below(11)), static_cast<int>(random.below(20)),
                                  random.text(30, "ab\n\xc3\xa4")};
            directTarget.refusals = plainTarget.refusals = random.below(10) == 0 ? 1 : 0;
            directTarget.error = plainTarget.error = random.below(50) == 0;
            const Lines expected = effectOf(plainStream, plainTarget, writing);
            EXPECT_EQ(effectOf(directStream, directTarget, writing), expected) << "kind " << writing.kind;
        }
        EXPECT_GT(plainStream.calls(), 0);
        directStream.setTrace(false); // no lines from the destructors
        plainStream.setTrace(false);
    }
}

// A class of the caller that overrides something else.
class FlushCounter : public VirtualPutStream {
public:
    using VirtualPutStream::VirtualPutStream;
    void FlushOutputStream() override {
        ++flushes;
        VirtualPutStream::FlushOutputStream();
    }
    int flushes = 0;
};

TEST(VirtualPutStream, AWriteThatReachesTheThresholdCallsAnOverriddenFlush) {
    test::RecordingOutput target;
    FlushCounter stream(target, 16, 4);
    stream.PutB("abc", 3);
    EXPECT_EQ(stream.flushes, 0);
    stream.PutB("d", 1);
    EXPECT_EQ(stream.flushes, 1);
    EXPECT_EQ(target.text(), "abcd");
    stream.PutS("efgh");
    EXPECT_EQ(stream.flushes, 1);
    stream.PutS("i");
    EXPECT_EQ(stream.flushes, 2);
}

} // namespace
