#include "ut_BufferStream.h"

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "CountingMemory.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "GuardedBytes.h"
#include "LogCapture.h"
#include "TemporaryDirectory.h"
#include "TraceLines.h"
#include "VirtualSlot.h"

namespace {

using utility::Buffer;
using utility::BufferStream;
using utility::GetStream;
using utility::PutStream;
using Lines = std::vector<std::string>;

constexpr const char* allocBufferName = "void utility::Buffer::allocBuffer()";
constexpr const char* putCName = "void utility::PutStream::PutC(char)";
constexpr const char* putSName = "void utility::PutStream::PutS(const char*)";

static_assert(std::is_base_of<PutStream, BufferStream>::value && std::is_base_of<GetStream, BufferStream>::value,
              "a buffer stream is a writer and a reader");
static_assert(!std::is_copy_constructible<BufferStream>::value, "a copy would share the storage");
static_assert(!std::is_convertible<int, BufferStream>::value, "a size is no stream");
static_assert(!std::is_convertible<const char*, BufferStream>::value, "a path is no stream");

TEST(BufferStream, UsageExample) {
    char text[32];
    utility::BufferStream stream(text, sizeof text, false);
    stream.PutF("%d ports", 4);
    EXPECT_STREQ(text, "4 ports");
}

TEST(BufferStream, BothSidesShareOneBuffer) {
    BufferStream stream(16);
    EXPECT_EQ(static_cast<Buffer*>(static_cast<PutStream*>(&stream)),
              static_cast<Buffer*>(static_cast<GetStream*>(&stream)));
    stream.PutS("ab\ncd");
    EXPECT_STREQ(stream.ReadLine(), "ab");
    stream.PutS("ef\n");
    EXPECT_STREQ(stream.GetLine(), "cdef");
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_EQ(stream.WriteRemaining(), 8);
    stream.Consolidate();
    EXPECT_EQ(stream.WriteRemaining(), 16);
}

TEST(BufferStream, OwnStorageHoldsItsSize) {
    for (const int size : {0, 1, 2, 15, 4096}) {
        test::CountingMemory memory;
        BufferStream stream(size);
        EXPECT_EQ(memory.requests(), std::vector<unsigned long>{static_cast<unsigned long>(size) + 1});
        EXPECT_EQ(stream.Size(), size);
        EXPECT_FALSE(stream.isNoThrow());
        for (int i = 0; i < size; ++i)
            stream.PutC('x');
        EXPECT_FAILURE(stream.PutC('y'), 1239, "ut_PutStream", putCName, "");
        EXPECT_EQ(std::string(stream.pBuffer()), std::string(static_cast<std::size_t>(size), 'x'));
    }
}

TEST(BufferStream, FailedAllocationOfStorageThrows1238) {
    EXPECT_FAILURE(test::failNth(1, [] { BufferStream stream(16); }), 1238, "ut_Buffer", allocBufferName, "");
    test::CountingMemory memory;
    memory.refuseAll();
    EXPECT_FAILURE(BufferStream(16), 1238, "ut_Buffer", allocBufferName, "");
    EXPECT_EQ(memory.requests(), std::vector<unsigned long>{17});
}

TEST(BufferStream, NegativeSizeThrows1238) {
    for (const int size : {-1, -2, INT_MIN})
        EXPECT_FAILURE(BufferStream{size}, 1238, "ut_Buffer", allocBufferName, "") << size;
}

TEST(BufferStream, StreamOnTheHeapIsFreedIfItsStorageCannotBeAllocated) {
    test::CountingMemory memory;
    memory.refuse(2);
    EXPECT_FAILURE(delete new BufferStream(16), 1238, "ut_Buffer", allocBufferName, "");
    EXPECT_EQ(memory.requests().size(), 2u);
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(BufferStream, FailedNewReturnsNull) {
    BufferStream* stream = nullptr;
    test::failNth(1, [&] { stream = new BufferStream(16); });
    EXPECT_EQ(stream, nullptr);
}

TEST(BufferStream, ACallersArrayOfSixteenBytesHoldsFifteenCharacters) {
    test::GuardedBytes bytes(16);
    BufferStream stream(bytes.array(), 16, false);
    EXPECT_EQ(bytes.content(), std::string(1, '\0') + std::string(14, '\x7E') + std::string(1, '\0'));
    EXPECT_EQ(stream.Size(), 15);
    for (int i = 0; i < 15; ++i)
        stream.PutC('x');
    EXPECT_FAILURE(stream.PutC('y'), 1239, "ut_PutStream", putCName, "");
    EXPECT_EQ(bytes.content(), std::string(15, 'x') + std::string(1, '\0'));
    EXPECT_TRUE(bytes.areGuardsWhole());
}

TEST(BufferStream, TheLastArgumentIsTheNoThrowFlag) {
    test::LogCapture log;
    char text[4];
    BufferStream loud(text, sizeof text, false);
    EXPECT_FALSE(loud.isNoThrow());
    EXPECT_FAILURE(loud.PutS("ports"), 1239, "ut_PutStream", putSName, "Didn't fit. remaining=3 msg='ports'");
    EXPECT_EQ(log.count(), 0u);
    BufferStream quiet(text, sizeof text, true);
    EXPECT_TRUE(quiet.isNoThrow());
    quiet.PutS("ports");
    EXPECT_STREQ(text, "por");
    EXPECT_EQ(test::traceLines(log), (Lines{"0 : PutStream::PutS: Didn't fit. remaining=3 msg='ports'"}));
}

TEST(BufferStream, NullArrayIsNotWrittenTo) {
    for (const int size : {16, 1, 0, -1}) {
        const test::LogCapture log;
        BufferStream stream(nullptr, size, true);
        EXPECT_EQ(stream.Size(), size > 0 ? size - 1 : 0);
        EXPECT_EQ(stream.pBuffer(), nullptr);
        char block[8];
        stream.PutC('a');
        stream.PutS("abc");
        stream.PutB("abc", 3);
        stream.PutF("%s", "abc");
        stream.SendOutputStream("abc", 3);
        stream.PutParmUint32(1);
        stream.PutParmString("abc");
        stream.Indent(-1);
        stream.truncatePartialUtf8();
        stream.ReadLine();
        stream.StartInputStream();
        stream.GetLine();
        stream.GetParmString();
        stream.ReceiveInputStream(block, sizeof block);
        stream.Consolidate();
        stream.Rewind();
        EXPECT_EQ(stream.ReadAvailable(), 0);
    }
}

TEST(BufferStream, ArraysOfOneAndNoBytes) {
    test::GuardedBytes one(1);
    BufferStream stream(one.array(), 1, true);
    EXPECT_EQ(stream.Size(), 0);
    EXPECT_EQ(one.content(), std::string(1, '\0'));
    const test::LogCapture log;
    stream.PutC('a');
    stream.PutF("abc");
    stream.PutS("abc");
    EXPECT_EQ(one.content(), std::string(1, '\0'));
    EXPECT_TRUE(one.areGuardsWhole());
    for (const int size : {0, -1, INT_MIN}) {
        test::GuardedBytes none(4);
        BufferStream empty(none.array(), size, true);
        EXPECT_EQ(empty.Size(), 0);
        empty.PutC('a');
        empty.PutF("abc");
        empty.PutS("abc");
        empty.PutB("abc", 3);
        empty.SendOutputStream("abc", 3);
        empty.truncatePartialUtf8();
        empty.ReadLine();
        empty.GetParmString();
        empty.Rewind();
        EXPECT_TRUE(none.isUntouched()) << size;
    }
}

TEST(BufferStream, CallersArrayOutlivesTheStream) {
    test::CountingMemory memory;
    char text[16];
    {
        BufferStream stream(text, sizeof text, false);
        stream.PutS("ports");
    }
    EXPECT_STREQ(text, "ports");
    EXPECT_TRUE(memory.requests().empty());
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(BufferStream, LoadsAFile) {
    const test::TemporaryDirectory directory;
    BufferStream stream(directory.write("file", "ports=4\nname=x").c_str());
    EXPECT_EQ(stream.Size(), 14);
    EXPECT_EQ(stream.ReadAvailable(), 14);
    EXPECT_EQ(stream.WriteRemaining(), 0);
    EXPECT_STREQ(stream.ReadLine(), "ports=4");
    EXPECT_STREQ(stream.ReadLine(), "name=x");
    EXPECT_EQ(stream.ReadLine(), nullptr);
}

TEST(BufferStream, FileThatCannotBeReadLeavesAnEmptyStream) {
    const test::TemporaryDirectory directory;
    for (const std::string& path : {directory.path("none"), directory.write("empty", ""), std::string()}) {
        BufferStream stream(path.c_str());
        EXPECT_EQ(stream.Size(), 0);
        EXPECT_EQ(stream.ReadLine(), nullptr);
        EXPECT_FAILURE(stream.PutC('a'), 1239, "ut_PutStream", putCName, "");
        stream.Rewind();
    }
}

TEST(BufferStream, LoadingWithoutMemoryThrows1238AndFreesTheStream) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.write("file", "ports");
    test::CountingMemory memory;
    memory.refuse(2);
    EXPECT_FAILURE(delete new BufferStream(path.c_str()), 1238, "ut_Buffer", allocBufferName, "");
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(BufferStream, CanBeDeletedThroughEveryBase) {
    test::CountingMemory memory;
    delete static_cast<PutStream*>(new BufferStream(8));
    delete static_cast<GetStream*>(new BufferStream(8));
    delete static_cast<Buffer*>(new BufferStream(8));
    delete static_cast<framework::OutputStream*>(new BufferStream(8));
    delete static_cast<framework::InputStream*>(new BufferStream(8));
    delete static_cast<utility::Decorator*>(new BufferStream(8));
    delete new BufferStream(8);
    EXPECT_EQ(memory.requests().size(), 14u);
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(BufferStream, WithoutAMemoryObjectNothingLeaks) {
    for (int i = 0; i < 100; ++i) {
        const std::unique_ptr<BufferStream> stream(new BufferStream(1 << 16));
        stream->PutS("ports");
    }
    const unsigned long before = test::allocationCount();
    delete new BufferStream(8);
    EXPECT_EQ(test::allocationCount(), before + 2);
}

TEST(BufferStream, CanBeFilledAndEmptiedAgainAndAgain) {
    BufferStream stream(8);
    for (int round = 0; round < 1000; ++round) {
        stream.PutF("%07d", round);
        char text[8] = {};
        EXPECT_EQ(stream.ReceiveInputStream(text, 8), 7);
        EXPECT_EQ(std::stoi(text), round);
        stream.Consolidate();
    }
}

TEST(BufferStream, StartOfOutputAndInputDiffer) {
    BufferStream stream(8);
    stream.PutS("ab");
    stream.GetC(nullptr);
    EXPECT_TRUE(stream.StartInputStream());
    EXPECT_EQ(stream.ReadAvailable(), 2);
    EXPECT_TRUE(stream.StartOutputStream());
    EXPECT_EQ(stream.ReadAvailable(), 0);
}

TEST(BufferStream, CanBeReadRewoundAndUsedAfterAnOverflow) {
    BufferStream stream(4);
    EXPECT_NE(CATCH_FAILURE(stream.PutS("abcdef")), nullptr);
    EXPECT_STREQ(stream.ReadLine(), "abcd");
    stream.Rewind();
    EXPECT_NE(CATCH_FAILURE(stream.PutS("abcd")), nullptr);
    EXPECT_EQ(stream.ReadLine(), nullptr);
    EXPECT_EQ(stream.GetLine(), nullptr);
    EXPECT_EQ(stream.GetParmString(), nullptr);
    EXPECT_FALSE(stream.GetC(nullptr));
    stream.Rewind();
    stream.PutS("xyz");
    EXPECT_STREQ(stream.ReadLine(), "xyz");
}

TEST(BufferStream, OverrunStreamIsReadWithinItsStorage) {
    test::GuardedBytes bytes(9);
    BufferStream stream(bytes.array(), 9, false);
    EXPECT_NE(CATCH_FAILURE(stream.SendOutputStream("0123456789ABCDEF", 16)), nullptr);
    EXPECT_EQ(stream.ReadAvailable(), 16);
    test::GuardedBytes block(16);
    EXPECT_LE(stream.ReceiveInputStream(block.array(), 16), 9);
    stream.StartInputStream();
    stream.GetLine();
    stream.StartInputStream();
    CATCH_FAILURE(stream.ReadLine());
    stream.StartInputStream();
    CATCH_FAILURE(stream.GetParmString());
    EXPECT_TRUE(bytes.areGuardsWhole());
    EXPECT_TRUE(block.areGuardsWhole());
}

TEST(BufferStream, SlotsAreThoseOfItsBases) {
    EXPECT_EQ(test::virtualSlot(&BufferStream::PutB), 11);
    EXPECT_EQ(test::virtualSlot(&BufferStream::Indent), 12);
}

} // namespace
