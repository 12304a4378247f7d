#include "ut_GetStream.h"

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "BytePattern.h"
#include "CountingMemory.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "GuardedBytes.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "OpenDescriptors.h"
#include "TemporaryDirectory.h"
#include "TraceLines.h"
#include "VirtualSlot.h"
#include "ut_BufferStream.h"
#include "ut_FileInputStream.h"

namespace {

using test::bytePattern;
using test::heldBytes;
using test::lowestFreeDescriptor;
using test::traceLine;
using utility::GetStream;
using Lines = std::vector<std::string>;

constexpr const char* atName = "virtual char& utility::GetStream::operator[](unsigned int)";
constexpr const char* readLineName = "char* utility::GetStream::ReadLine()";
constexpr const char* readAdvanceName = "virtual void utility::Buffer::ReadAdvance(int)";
constexpr const char* allocBufferName = "void utility::Buffer::allocBuffer()";
constexpr unsigned int readLineSwitch = 410;

static_assert(std::is_base_of<framework::InputStream, GetStream>::value, "a reader is a source");

// Reads a text in its own array, which has one more byte for the terminator, between guard bytes.
class Text : public GetStream {
public:
    explicit Text(const std::string& text) : Text(text, new test::GuardedBytes(text.size() + 1)) {
        WriteAdvance(static_cast<int>(text.size()));
    }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    ~Text() override {
        EXPECT_TRUE(m_bytes->areGuardsWhole());
    }
    std::string bytes() const {
        return m_bytes->content();
    }

private:
    Text(const std::string& text, test::GuardedBytes* bytes)
        : GetStream(bytes->array(), static_cast<int>(text.size())), m_bytes(bytes) {
        std::memcpy(bytes->array(), text.data(), text.size());
    }

    std::unique_ptr<test::GuardedBytes> m_bytes;
};

class Counted : public GetStream {
public:
    Counted(const char* text, int length) : GetStream(text, length) {
        WriteAdvance(length);
    }
    int ReadAvailable() const override {
        ++asked;
        return GetStream::ReadAvailable();
    }
    void ReadAdvance(int n) override {
        ++advanced;
        GetStream::ReadAdvance(n);
    }
    mutable int asked = 0;
    int advanced = 0;
};

class OpenGetStream : public GetStream {
public:
    using Buffer::setReadPosition;
    using Buffer::setWritePosition;
    using GetStream::GetStream;
};

TEST(GetStream, UsageExample) {
    const test::TemporaryDirectory directory;
    const std::string hosts = directory.write("hosts", "127.0.0.1 localhost\n10.0.0.1 array\n");
    Lines used;
    const auto use = [&](const char* line) {
        used.push_back(line);
    };

    utility::GetStream in(hosts.c_str());
    while (char* line = in.ReadLine())
        use(line);
    EXPECT_EQ(used, (Lines{"127.0.0.1 localhost", "10.0.0.1 array"}));
}

TEST(GetStream, StartsEmpty) {
    GetStream in;
    char c = '?';
    char block[4];
    EXPECT_EQ(in.pBuffer(), nullptr);
    EXPECT_EQ(in.Size(), 0);
    EXPECT_FALSE(in.isNoThrow());
    EXPECT_FALSE(in.GetC(&c));
    EXPECT_EQ(c, '?');
    EXPECT_EQ(in.GetLine(), nullptr);
    EXPECT_EQ(in.ReadLine(), nullptr);
    EXPECT_EQ(in.ReceiveInputStream(block, sizeof block), 0);
    EXPECT_TRUE(in.StartInputStream());
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_TRUE(in.isInputStreamAtEnd());
    EXPECT_FALSE(in.isInputStreamInError());
    EXPECT_FAILURE(in[0], 1240, "ut_GetStream", atName, "");
}

TEST(GetStream, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&GetStream::StartInputStream), 2);
    EXPECT_EQ(test::virtualSlot(&GetStream::EndInputStream), 3);
    EXPECT_EQ(test::virtualSlot(&GetStream::ReceiveInputStream), 4);
    EXPECT_EQ(test::virtualSlot(&GetStream::isInputStreamOpen), 5);
    EXPECT_EQ(test::virtualSlot(&GetStream::isInputStreamInError), 6);
    EXPECT_EQ(test::virtualSlot(&GetStream::isInputStreamAtEnd), 7);
    EXPECT_EQ(test::virtualSlot(&GetStream::operator[]), 11);
}

TEST(GetStream, NothingOfACallersTextIsReadableUntilTheWritePositionIsSet) {
    test::GuardedBytes bytes(6);
    GetStream in(bytes.array(), 5);
    EXPECT_EQ(in.Size(), 5);
    EXPECT_EQ(in.pBuffer(), bytes.array());
    EXPECT_EQ(in.WritePosition(), 0);
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_EQ(in.ReadLine(), nullptr);
    in.WriteAdvance(5);
    EXPECT_TRUE(in.isInputStreamOpen());
    EXPECT_EQ(in.ReadAvailable(), 5);
    EXPECT_TRUE(bytes.isUntouched());
}

TEST(GetStream, ACallersTextIsNeverFreed) {
    char text[] = "ports";
    test::CountingMemory memory;
    {
        GetStream in(text, 5);
        in.WriteAdvance(5);
    }
    EXPECT_TRUE(memory.foreign().empty());
    EXPECT_STREQ(text, "ports");
}

TEST(GetStream, NullTextOrLengthBelowOneIsEmpty) {
    char text[] = "ports";
    for (const int length : {0, -1, INT_MIN}) {
        GetStream in(text, length);
        char c;
        EXPECT_FALSE(in.GetC(&c));
        CATCH_FAILURE(in.WriteAdvance(length));
        EXPECT_FALSE(in.GetC(&c));
        EXPECT_EQ(in.ReadLine(), nullptr);
        EXPECT_EQ(in.GetLine(), nullptr);
        EXPECT_EQ(in.GetParmString(), nullptr);
        EXPECT_STREQ(text, "ports");
    }
    GetStream none(static_cast<const char*>(nullptr), 5);
    char block[8];
    none.WriteAdvance(5);
    EXPECT_EQ(none.ReceiveInputStream(block, sizeof block), 0);
    none.StartInputStream();
    EXPECT_EQ(none.ReadLine(), nullptr);
    none.StartInputStream();
    EXPECT_EQ(none.GetLine(), nullptr);
    EXPECT_EQ(none.GetParmString(), nullptr);
    EXPECT_NE(CATCH_FAILURE(none[0]), nullptr);
}

TEST(GetStream, GetCReadsByteByByte) {
    Text in(std::string("a\0\xFF", 3));
    char c = '?';
    EXPECT_TRUE(in.GetC(&c));
    EXPECT_EQ(c, 'a');
    EXPECT_TRUE(in.GetC(&c));
    EXPECT_EQ(c, '\0');
    EXPECT_TRUE(in.GetC(&c));
    EXPECT_EQ(c, '\xFF');
    EXPECT_FALSE(in.GetC(&c));
    EXPECT_EQ(c, '\xFF');
    EXPECT_EQ(in.ReadPosition(), 3);
}

TEST(GetStream, GetCIntoNullDiscardsTheByte) {
    Text in("ab");
    EXPECT_TRUE(in.GetC(nullptr));
    EXPECT_EQ(heldBytes(in), "b");
    EXPECT_TRUE(in.GetC(nullptr));
    EXPECT_FALSE(in.GetC(nullptr));
}

TEST(GetStream, ReadLineReturnsTheRestAsTheLastLine) {
    Text in("a\nb");
    EXPECT_STREQ(in.ReadLine(), "a");
    EXPECT_STREQ(in.ReadLine(), "b");
    EXPECT_EQ(in.ReadLine(), nullptr);
    EXPECT_EQ(in.ReadAvailable(), 0);
    EXPECT_EQ(in.bytes(), std::string("a\0b\0", 4));
}

TEST(GetStream, GetLineDoesNotReturnALastLineWithoutNewline) {
    Text in("a\nb");
    EXPECT_STREQ(in.GetLine(), "a");
    EXPECT_EQ(in.GetLine(), nullptr);
    EXPECT_EQ(heldBytes(in), "b");
    EXPECT_EQ(in.GetLine(), nullptr);
    EXPECT_EQ(in.bytes(), std::string("a\0b\x7E", 4));
}

TEST(GetStream, LinesAreReturnedInPlace) {
    Text in("ab\ncd\n");
    char* const start = in.pTail();
    EXPECT_EQ(in.GetLine(), start);
    EXPECT_EQ(in.ReadLine(), start + 3);
    EXPECT_EQ(in.ReadPosition(), 6);
    EXPECT_EQ(in.bytes(), std::string("ab\0cd\0\x7E", 7));
}

TEST(GetStream, EmptyLinesAreLines) {
    Text in("\n\n\n");
    EXPECT_STREQ(in.ReadLine(), "");
    EXPECT_STREQ(in.GetLine(), "");
    EXPECT_STREQ(in.ReadLine(), "");
    EXPECT_EQ(in.ReadLine(), nullptr);
    EXPECT_EQ(in.GetLine(), nullptr);
}

TEST(GetStream, LineEndedByCarriageReturnAndNewlineKeepsTheCarriageReturn) {
    Text in("x\r\ny\r\n");
    EXPECT_STREQ(in.ReadLine(), "x\r");
    EXPECT_STREQ(in.GetLine(), "y\r");
    EXPECT_EQ(in.ReadLine(), nullptr);
}

TEST(GetStream, CarriageReturnAloneDoesNotEndALine) {
    Text in("x\ry");
    EXPECT_EQ(in.GetLine(), nullptr);
    EXPECT_STREQ(in.ReadLine(), "x\ry");
    Text end("x\r");
    EXPECT_STREQ(end.ReadLine(), "x\r");
}

TEST(GetStream, NewlineAfterTheReadableBytesDoesNotEndALine) {
    char text[] = "ab\ncd\n";
    GetStream in(text, 6);
    in.WriteAdvance(2);
    EXPECT_EQ(in.GetLine(), nullptr);
    EXPECT_STREQ(in.ReadLine(), "ab");
    EXPECT_EQ(in.ReadPosition(), 2);
    EXPECT_EQ(std::string(text, 6), std::string("ab\0cd\n", 6));
}

TEST(GetStream, CarriageReturnAsLastReadableByteStaysInTheLine) {
    char text[] = "ab\r\n";
    GetStream in(text, 4);
    in.WriteAdvance(3);
    EXPECT_STREQ(in.ReadLine(), "ab\r");
    EXPECT_EQ(in.ReadPosition(), 3);
    EXPECT_EQ(std::string(text, 4), std::string("ab\r\0", 4));
}

TEST(GetStream, NewlineAsLastReadableByteEndsTheLine) {
    char text[] = "ab\nX";
    GetStream in(text, 4);
    in.WriteAdvance(3);
    EXPECT_STREQ(in.GetLine(), "ab");
    EXPECT_EQ(in.ReadAvailable(), 0);
    EXPECT_EQ(text[3], 'X');
}

TEST(GetStream, NulAmongTheBytesIsAnOrdinaryByte) {
    Text in(std::string("a\0b\nc\0d", 7));
    EXPECT_EQ(std::string(in.GetLine(), 4), std::string("a\0b\0", 4));
    EXPECT_EQ(in.ReadPosition(), 4);
    EXPECT_EQ(in.GetLine(), nullptr);
    EXPECT_EQ(std::string(in.ReadLine(), 4), std::string("c\0d\0", 4));
    EXPECT_EQ(in.ReadAvailable(), 0);
    Text other(std::string("a\0b\nc", 5));
    EXPECT_EQ(std::string(other.ReadLine(), 4), std::string("a\0b\0", 4));
    EXPECT_EQ(heldBytes(other), "c");
}

TEST(GetStream, ReadLineIsTracedOnlyWithItsSwitch) {
    test::LogCapture log;
    {
        Text in("abc\n");
        in.ReadLine();
    }
    EXPECT_EQ(log.count(), 0u);
    const test::DebugSwitch tracing(readLineSwitch);
    Text in("abc\nde");
    in.ReadLine();
    in.ReadLine();
    in.ReadLine();
    in.GetLine();
    const std::string tag = std::string("3 ") + readLineName + ": ";
    EXPECT_EQ(test::traceLines(log),
              (Lines{tag + "advancing 4, readavailable 6", tag + "advancing 2, readavailable 2"}));
}

TEST(GetStream, TracingReadLineDoesNotRefillTheBuffer) {
    test::LogCapture log;
    for (const char* const content : {"ab\ncd", "abcde"}) {
        char plain[8] = "";
        char traced[8] = "";
        std::strcpy(plain, content);
        std::strcpy(traced, content);
        Counted untraced(plain, 5);
        EXPECT_STREQ(untraced.ReadLine(), std::string(content).substr(0, std::string(content).find('\n')).c_str());
        const test::DebugSwitch tracing(readLineSwitch);
        Counted in(traced, 5);
        in.ReadLine();
        EXPECT_EQ(in.asked, untraced.asked) << content;
    }
    EXPECT_EQ(log.count(), 2u);
}

TEST(GetStream, ReadsUseTheVirtualPositionOperations) {
    char text[] = "ab\ncd\nefgh";
    Counted in(text, 10);
    char c;
    const auto counted = [&](auto&& read) {
        in.asked = in.advanced = 0;
        read();
        EXPECT_GE(in.asked, 1);
        return in.advanced;
    };
    EXPECT_EQ(counted([&] { in.GetC(&c); }), 1);
    EXPECT_EQ(counted([&] { in.GetLine(); }), 1);
    EXPECT_EQ(counted([&] { in.ReadLine(); }), 1);
    EXPECT_EQ(counted([&] { in.ReceiveInputStream(&c, 1); }), 1);
    EXPECT_EQ(counted([&] { in.isInputStreamOpen(); }), 0);
    EXPECT_EQ(counted([&] { in.isInputStreamAtEnd(); }), 0);
    unsigned short value;
    EXPECT_EQ(counted([&] { in.GetParmUint16(&value); }), 1);
    EXPECT_EQ(in.ReadAvailable(), 1);
}

TEST(GetStream, IndexesTheStorageFromReadPositionToWritePosition) {
    Text in("volume");
    in.pBuffer()[6] = 0;
    in.ReadAdvance(2);
    EXPECT_FAILURE(in[0], 1240, "ut_GetStream", atName, "");
    EXPECT_FAILURE(in[1], 1240, "ut_GetStream", atName, "");
    EXPECT_EQ(in[2], 'l');
    EXPECT_EQ(in[5], 'e');
    EXPECT_EQ(in[6], '\0');
    EXPECT_FAILURE(in[7], 1240, "ut_GetStream", atName, "");
    in[3] = 'X';
    EXPECT_EQ(heldBytes(in), "lXme");
}

TEST(GetStream, HugeIndexCountsAsNegative) {
    Text in("volume");
    for (const unsigned int index : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_FAILURE(in[index], 1240, "ut_GetStream", atName, "");
}

TEST(GetStream, IndexPastTheStorageThrows) {
    char text[] = "ab";
    utility::GetStream none(text, -1);
    EXPECT_FAILURE(none[0], 1240, "ut_GetStream", atName, "");
    utility::BufferStream empty(text, 0, true);
    EXPECT_FAILURE(empty[0], 1240, "ut_GetStream", atName, "");
    utility::BufferStream onlyTheTerminator(text, 1, true);
    EXPECT_EQ(onlyTheTerminator[0], '\0');
    EXPECT_FAILURE(onlyTheTerminator[1], 1240, "ut_GetStream", atName, "");
}

TEST(GetStream, IndexOutOfRangeThrowsEvenWithNoThrow) {
    Text in("ab");
    in.setNoThrow(true);
    EXPECT_FAILURE(in[3], 1240, "ut_GetStream", atName, "");
}

TEST(GetStream, ReceivesAtMostWhatIsReadableAndRequested) {
    Text in(std::string("ab\0de", 5));
    test::GuardedBytes block(3);
    EXPECT_EQ(in.ReceiveInputStream(block.array(), 0), 0);
    EXPECT_TRUE(block.isUntouched());
    EXPECT_EQ(in.ReceiveInputStream(block.array(), 3), 3);
    EXPECT_EQ(block.content(), std::string("ab\0", 3));
    EXPECT_EQ(in.ReceiveInputStream(block.array(), 3), 2);
    EXPECT_EQ(block.content(), std::string("de\0", 3));
    EXPECT_EQ(in.ReceiveInputStream(block.array(), 3), 0);
    EXPECT_TRUE(block.areGuardsWhole());
}

TEST(GetStream, ReceivesIntoItsOwnStorage) {
    Text in("0123456789");
    in.ReadAdvance(3);
    EXPECT_EQ(in.ReceiveInputStream(in.pBuffer(), 7), 7);
    EXPECT_EQ(in.bytes(), "3456789789\x7E");
    EXPECT_EQ(in.ReadAvailable(), 0);
}

TEST(GetStream, ReceivesWithAHugeSize) {
    for (const unsigned int size : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        Text in("abc");
        test::GuardedBytes block(3);
        EXPECT_EQ(in.ReceiveInputStream(block.array(), size), 3) << size;
        EXPECT_EQ(block.content(), "abc");
        EXPECT_TRUE(block.areGuardsWhole());
    }
}

TEST(GetStream, ReceiveIntoNullConsumesNothing) {
    Text in("abc");
    EXPECT_EQ(in.ReceiveInputStream(nullptr, 3), 0);
    EXPECT_EQ(heldBytes(in), "abc");
}

TEST(GetStream, StartReturnsToTheFirstByteAndEndDoesNothing) {
    Text in("ab");
    char c;
    in.GetC(&c);
    in.EndInputStream();
    EXPECT_EQ(heldBytes(in), "b");
    EXPECT_TRUE(in.StartInputStream());
    EXPECT_EQ(heldBytes(in), "ab");
}

TEST(GetStream, IsOpenWhileSomethingIsReadableAndNeverInError) {
    Text in("a");
    EXPECT_TRUE(in.isInputStreamOpen());
    EXPECT_FALSE(in.isInputStreamAtEnd());
    EXPECT_TRUE(in.isInputStreamGood());
    in.GetC(nullptr);
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_TRUE(in.isInputStreamAtEnd());
    EXPECT_FALSE(in.isInputStreamGood());
    EXPECT_FALSE(in.isInputStreamInError());
    EXPECT_FAILURE(in.ReadAdvance(1), 1239, "ut_Buffer", readAdvanceName, "");
    EXPECT_FALSE(in.isInputStreamInError());
}

TEST(GetStream, HasTheSizeAndModesOfAnyInput) {
    Text in("a");
    EXPECT_EQ(in.GetInputStreamSize(), -1);
    in.setInputMode(framework::InputStream::INPUT_DEFAULT);
    EXPECT_EQ(heldBytes(in), "a");
}

TEST(GetStream, CanBeQueriedStartedAndReadAfterAFailure) {
    test::GuardedBytes bytes(9);
    std::memcpy(bytes.array(), "12345678", 9);
    OpenGetStream in(bytes.array(), 8);
    test::GuardedBytes block(4);
    char c = '?';
    const auto askEverything = [&] {
        in.isInputStreamGood();
        in.GetC(&c);
        in.GetLine();
        in.ReceiveInputStream(block.array(), 4);
        in.ReadLine();
        in.GetParmString();
        CATCH_FAILURE(in[0]);
        CATCH_FAILURE(in[8]);
        CATCH_FAILURE(in[9] = 'x');
        CATCH_FAILURE(in[40] = 'x');
        CATCH_FAILURE(in[static_cast<unsigned int>(-3)] = 'x');
    };
    in.WriteAdvance(4);
    EXPECT_NE(CATCH_FAILURE(in.ReadAdvance(6)), nullptr);
    EXPECT_EQ(in.ReadAvailable(), -2);
    EXPECT_FALSE(in.GetC(&c));
    EXPECT_EQ(in.GetLine(), nullptr);
    EXPECT_EQ(in.ReadLine(), nullptr);
    EXPECT_EQ(in.ReceiveInputStream(block.array(), 4), 0);
    CATCH_FAILURE(askEverything());

    in.StartInputStream();
    EXPECT_NE(CATCH_FAILURE(in.ReadAdvance(-5)), nullptr);
    CATCH_FAILURE(askEverything());

    in.StartInputStream();
    EXPECT_NE(CATCH_FAILURE(in.WriteAdvance(50)), nullptr);
    CATCH_FAILURE(askEverything());
    in.StartInputStream();
    CATCH_FAILURE(in.ReadAdvance(30));
    CATCH_FAILURE(askEverything());

    EXPECT_TRUE(bytes.areGuardsWhole());
    EXPECT_TRUE(block.areGuardsWhole());
    in.Rewind();
    std::memcpy(bytes.array(), "12345678", 9);
    in.WriteAdvance(8);
    EXPECT_STREQ(in.ReadLine(), "12345678");
}

TEST(GetStream, LoadsAWholeFile) {
    const test::TemporaryDirectory directory;
    for (const std::size_t size : {1u, 2u, 4095u, 4096u, 1000003u}) {
        const std::string bytes = bytePattern(size);
        const std::string path = directory.write("file", bytes);
        GetStream in;
        EXPECT_TRUE(in.fromFile(path.c_str()));
        EXPECT_EQ(in.Size(), static_cast<int>(size));
        EXPECT_EQ(in.WritePosition(), static_cast<int>(size));
        EXPECT_EQ(in.ReadPosition(), 0);
        EXPECT_EQ(heldBytes(in), bytes);
        EXPECT_EQ(*in.pHead(), 0);
    }
}

TEST(GetStream, LoadsAFileOnConstruction) {
    const test::TemporaryDirectory directory;
    GetStream in(directory.write("file", "ports\n").c_str());
    EXPECT_EQ(heldBytes(in), "ports\n");
    EXPECT_EQ(in.Size(), 6);
}

TEST(GetStream, AnEmptyFileLoadsAsAnEmptyStream) {
    const test::TemporaryDirectory directory;
    GetStream in;
    EXPECT_TRUE(in.fromFile(directory.write("empty", "").c_str()));
    EXPECT_EQ(in.Size(), 0);
    EXPECT_EQ(in.pBuffer(), nullptr);
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_EQ(in.ReadLine(), nullptr);
}

TEST(GetStream, LoadingAFileThatCannotBeOpenedReturnsFalse) {
    const test::TemporaryDirectory directory;
    GetStream in;
    EXPECT_FALSE(in.fromFile(directory.path("none").c_str()));
    EXPECT_FALSE(in.fromFile(""));
    EXPECT_FALSE(in.fromFile(nullptr));
    EXPECT_EQ(in.Size(), 0);
    GetStream other(directory.path("none").c_str());
    EXPECT_FALSE(other.isInputStreamOpen());
    EXPECT_EQ(other.ReadLine(), nullptr);
    GetStream null(static_cast<const char*>(nullptr));
    EXPECT_FALSE(null.isInputStreamOpen());
}

TEST(GetStream, AFifoCannotBeLoaded) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.path("fifo");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::thread writer([&] {
        const int descriptor = open(path.c_str(), O_WRONLY);
        close(descriptor);
    });
    GetStream in;
    EXPECT_FALSE(in.fromFile(path.c_str()));
    writer.join();
    EXPECT_FALSE(in.isInputStreamOpen());
}

TEST(GetStream, ADirectoryLoadsAsAnEmptyStream) {
    const test::TemporaryDirectory directory;
    GetStream in;
    EXPECT_TRUE(in.fromFile(directory.path().c_str()));
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_EQ(in.WritePosition(), 0);
    EXPECT_EQ(in.ReadLine(), nullptr);
}

TEST(GetStream, AFileWhoseSizeIsUnknownLoadsAsAnEmptyStream) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("large", "x");
    if (truncate(path.c_str(), static_cast<off_t>(INT_MAX) + 1) != 0)
        GTEST_SKIP() << "no sparse files here";
    GetStream in;
    EXPECT_TRUE(in.fromFile(path.c_str()));
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_EQ(in.ReadLine(), nullptr);
    EXPECT_EQ(in.pBuffer(), nullptr);
    EXPECT_LT(in.WriteRemaining(), 1);
}

TEST(GetStream, AProcFileLoadsAsAnEmptyStreamAndIsReadAsAFile) {
    const char* const path = "/proc/self/status";
    utility::FileInputStream file(path);
    if (!file.isInputStreamOpen())
        GTEST_SKIP() << "no /proc here";
    GetStream in;
    EXPECT_TRUE(in.fromFile(path));
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_EQ(in.ReadLine(), nullptr);
    char block[5];
    ASSERT_EQ(file.ReceiveInputStream(block, sizeof block), 5);
    EXPECT_EQ(std::string(block, sizeof block), "Name:");
}

TEST(GetStream, LoadingClosesTheFile) {
    const test::TemporaryDirectory directory;
    const int before = lowestFreeDescriptor();
    GetStream in;
    in.fromFile(directory.write("file", "ports").c_str());
    GetStream empty(directory.write("empty", "").c_str());
    test::CountingMemory memory;
    memory.refuseAll();
    GetStream other;
    EXPECT_NE(CATCH_FAILURE(other.fromFile(directory.path("file").c_str())), nullptr);
    EXPECT_EQ(lowestFreeDescriptor(), before);
}

TEST(GetStream, LoadingAllocatesOneByteMoreThanTheFile) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("file", "ports");
    test::CountingMemory memory;
    {
        GetStream in;
        EXPECT_TRUE(in.fromFile(path.c_str()));
        ASSERT_EQ(memory.outstanding(), 1u);
        EXPECT_EQ(memory.requests().back(), 6u);
    }
    EXPECT_EQ(memory.outstanding(), 0u);
}

TEST(GetStream, LoadingWithoutMemoryThrows1238) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("file", "ports");
    test::CountingMemory memory;
    memory.refuseAll();
    GetStream in;
    EXPECT_FAILURE(in.fromFile(path.c_str()), 1238, "ut_Buffer", allocBufferName, "");
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_EQ(in.ReadLine(), nullptr);
    EXPECT_FAILURE(GetStream(path.c_str()), 1238, "ut_Buffer", allocBufferName, "");
}

TEST(GetStream, WithNoThrowLoadingWithoutMemoryReturnsTrueAndIsEmpty) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("file", "ports");
    test::LogCapture log;
    test::CountingMemory memory;
    memory.refuseAll();
    GetStream in;
    in.setNoThrow(true);
    EXPECT_TRUE(in.fromFile(path.c_str()));
    EXPECT_FALSE(in.isInputStreamOpen());
    EXPECT_EQ(in.Size(), 0);
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, allocBufferName, "Buffer was not allocated")}));
}

TEST(GetStream, LoadingSurvivesEachFailedAllocation) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("file", "ports");
    const unsigned long failures = test::failEachAllocationOnce([&] {
        try {
            GetStream in(path.c_str());
        } catch (framework::Exception* failure) {
            delete failure;
        } catch (const std::bad_alloc&) {
        }
    });
    EXPECT_GE(failures, 1u);
}

} // namespace
