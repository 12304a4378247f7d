#include "ut_Buffer.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "CountedPositions.h"
#include "CountingMemory.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "GuardedBytes.h"
#include "HeapGrowth.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "OverstatedSpace.h"
#include "TraceLines.h"
#include "VirtualSlot.h"
#include "ut_BufferStream.h"

namespace {

using test::heldBytes;
using test::traceLine;
using utility::Buffer;
using Lines = std::vector<std::string>;

constexpr const char* allocBufferName = "void utility::Buffer::allocBuffer()";
constexpr const char* writeAdvanceName = "virtual void utility::Buffer::WriteAdvance(int)";
constexpr const char* readAdvanceName = "virtual void utility::Buffer::ReadAdvance(int)";
constexpr const char* copyFromName = "void utility::Buffer::CopyFrom(utility::Buffer*)";

static_assert(!std::is_copy_constructible<Buffer>::value && !std::is_copy_assignable<Buffer>::value,
              "a copy would share the storage");
static_assert(std::has_virtual_destructor<Buffer>::value, "buffers are deleted through the base");

class OpenBuffer : public Buffer {
public:
    OpenBuffer() = default;
    explicit OpenBuffer(int size, bool noThrow = false) {
        setSize(size);
        setNoThrow(noThrow);
        allocBuffer();
    }
    using Buffer::boundedReadable;
    using Buffer::boundedRoom;
    using Buffer::isTerminable;
    using Buffer::setReadPosition;
    using Buffer::setSize;
    using Buffer::setWritePosition;
    using Buffer::supplyArray;
    using Buffer::supplyStorage;
    using Buffer::terminate;
};

// The process's memory object while it exists; allocates with `malloc` and does not track the allocations.
class MallocMemory : public framework::Memory {
public:
    MallocMemory() {
        framework::Container::m_pMemory = this;
    }
    ~MallocMemory() override {
        framework::Container::m_pMemory = nullptr;
    }
    void* allocate(unsigned long size) override {
        return std::malloc(size);
    }
    void release(const void*) override {}
};

void put(Buffer& buffer, const std::string& bytes) {
    std::memcpy(buffer.pHead(), bytes.data(), bytes.size());
    buffer.WriteAdvance(static_cast<int>(bytes.size()));
}

void putText(Buffer& buffer, const std::string& text) {
    put(buffer, text);
    *buffer.pHead() = 0;
}

void expectPositions(const Buffer& buffer, int write, int read) {
    EXPECT_EQ(buffer.WritePosition(), write);
    EXPECT_EQ(buffer.ReadPosition(), read);
}

void expectInvariant(const Buffer& buffer) {
    EXPECT_LE(0, buffer.ReadPosition());
    EXPECT_LE(buffer.ReadPosition(), buffer.WritePosition());
    EXPECT_LE(buffer.WritePosition(), buffer.Size());
}

TEST(Buffer, UsageExample) {
    utility::BufferStream stream(16);
    stream.PutS("ports");
    EXPECT_EQ(stream.ReadAvailable(), 5);
}

TEST(Buffer, StartsWithoutStorage) {
    const Buffer buffer;
    EXPECT_EQ(buffer.pBuffer(), nullptr);
    EXPECT_EQ(buffer.pHead(), nullptr);
    EXPECT_EQ(buffer.pTail(), nullptr);
    EXPECT_EQ(buffer.Size(), 0);
    EXPECT_EQ(buffer.WriteRemaining(), 0);
    EXPECT_EQ(buffer.ReadAvailable(), 0);
    EXPECT_FALSE(buffer.isNoThrow());
    expectPositions(buffer, 0, 0);
}

TEST(Buffer, DeleteOperatorReleasesNothingForNull) {
    const test::CountingMemory memory;
    Buffer::operator delete(nullptr);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(Buffer, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&Buffer::WriteRemaining), 2);
    EXPECT_EQ(test::virtualSlot(&Buffer::ReadAvailable), 3);
    EXPECT_EQ(test::virtualSlot(&Buffer::WriteAdvance), 4);
    EXPECT_EQ(test::virtualSlot(&Buffer::ReadAdvance), 5);
}

TEST(Buffer, NoThrowFlagIsSetByTheOwnerOnly) {
    Buffer buffer;
    buffer.setNoThrow(true);
    EXPECT_TRUE(buffer.isNoThrow());
    buffer.setNoThrow(false);
    EXPECT_FALSE(buffer.isNoThrow());
}

TEST(Buffer, AllocBufferAllocatesCapacityPlusOneAndTerminatesBothEnds) {
    test::CountingMemory memory;
    const OpenBuffer buffer(8);
    EXPECT_EQ(memory.requests(), std::vector<unsigned long>{9});
    EXPECT_EQ(buffer.pBuffer()[0], 0);
    EXPECT_EQ(buffer.pBuffer()[8], 0);
    EXPECT_EQ(buffer.Size(), 8);
    EXPECT_EQ(buffer.WriteRemaining(), 8);
    EXPECT_EQ(buffer.pHead(), buffer.pBuffer());
    EXPECT_EQ(buffer.pTail(), buffer.pBuffer());
}

TEST(Buffer, AllocBufferWithoutMemoryObjectAlsoTerminatesBothEnds) {
    for (const int size : {0, 1, 2, 100}) {
        OpenBuffer buffer(size);
        ASSERT_NE(buffer.pBuffer(), nullptr);
        EXPECT_EQ(buffer.pBuffer()[0], 0);
        EXPECT_EQ(buffer.pBuffer()[size], 0);
        EXPECT_EQ(buffer.Size(), size);
        put(buffer, std::string(static_cast<std::size_t>(size), 'x'));
        *buffer.pHead() = 0;
        EXPECT_EQ(buffer.WriteRemaining(), 0);
    }
}

TEST(Buffer, LargestCapacityIncludesItsTerminatorInTheRequest) {
    test::CountingMemory memory;
    memory.refuseAll();
    OpenBuffer buffer;
    buffer.setSize(INT_MAX);
    EXPECT_FAILURE(buffer.allocBuffer(), 1238, "ut_Buffer", allocBufferName, "");
    EXPECT_EQ(memory.requests(), std::vector<unsigned long>{2147483648ul});
}

TEST(Buffer, NegativeCapacityCannotBeAllocated) {
    for (const int size : {-1, -2, INT_MIN}) {
        OpenBuffer buffer;
        buffer.setSize(size);
        EXPECT_FAILURE(buffer.allocBuffer(), 1238, "ut_Buffer", allocBufferName, "") << size;
        EXPECT_EQ(buffer.Size(), 0);
        EXPECT_EQ(buffer.pBuffer(), nullptr);
    }
}

TEST(Buffer, FailedMallocThrows1238AndSetsCapacityToZero) {
    OpenBuffer buffer;
    buffer.setSize(8);
    EXPECT_FAILURE(test::failNth(1, [&] { buffer.allocBuffer(); }), 1238, "ut_Buffer", allocBufferName, "");
    EXPECT_EQ(buffer.Size(), 0);
    EXPECT_EQ(buffer.pBuffer(), nullptr);
    EXPECT_EQ(buffer.WriteRemaining(), 0);
}

TEST(Buffer, RefusedMemoryThrows1238AndSetsCapacityToZero) {
    test::CountingMemory memory;
    {
        OpenBuffer buffer;
        buffer.setSize(8);
        memory.refuse(1);
        EXPECT_FAILURE(buffer.allocBuffer(), 1238, "ut_Buffer", allocBufferName, "");
        EXPECT_EQ(buffer.Size(), 0);
    }
    EXPECT_TRUE(memory.foreign().empty());
    EXPECT_EQ(memory.outstanding(), 0u);
}

TEST(Buffer, WithNoThrowFailedAllocationIsLogged) {
    test::LogCapture log;
    test::CountingMemory memory;
    memory.refuseAll();
    OpenBuffer buffer;
    buffer.setSize(8);
    buffer.setNoThrow(true);
    EXPECT_EQ(CATCH_FAILURE(buffer.allocBuffer()), nullptr);
    EXPECT_EQ(buffer.Size(), 0);
    EXPECT_EQ(buffer.pBuffer(), nullptr);
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, allocBufferName, "Buffer was not allocated")}));
}

TEST(Buffer, WithNoThrowFailedMallocIsLogged) {
    test::LogCapture log;
    OpenBuffer buffer;
    buffer.setSize(8);
    buffer.setNoThrow(true);
    EXPECT_EQ(CATCH_FAILURE(test::failNth(1, [&] { buffer.allocBuffer(); })), nullptr);
    EXPECT_EQ(buffer.Size(), 0);
    EXPECT_EQ(test::traceLines(log), (Lines{traceLine(0, allocBufferName, "Buffer was not allocated")}));
}

TEST(Buffer, AllocationCanBeRetriedAfterAFailure) {
    OpenBuffer buffer;
    buffer.setSize(8);
    EXPECT_NE(CATCH_FAILURE(test::failNth(1, [&] { buffer.allocBuffer(); })), nullptr);
    buffer.setSize(4);
    buffer.allocBuffer();
    putText(buffer, "port");
    EXPECT_STREQ(buffer.pBuffer(), "port");
}

TEST(Buffer, StorageIsReturnedToItsMemoryObject) {
    test::CountingMemory memory;
    {
        const OpenBuffer buffer(8);
        EXPECT_TRUE(memory.holds(buffer.pBuffer()));
        EXPECT_EQ(memory.outstanding(), 1u);
    }
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(Buffer, StorageIsReturnedToTheMemoryObjectCurrentAtDestruction) {
    const test::CountingMemory first;
    std::optional<OpenBuffer> buffer(8);
    const void* storage = buffer->pBuffer();
    const test::CountingMemory second;
    buffer.reset();
    EXPECT_TRUE(first.holds(storage));
    EXPECT_EQ(second.foreign(), std::vector<const void*>{storage});
}

TEST(Buffer, StorageIsLeakedIfItsMemoryObjectNoLongerExists) {
    test::CountingMemory memory;
    {
        const OpenBuffer buffer(8);
        framework::Container::m_pMemory = nullptr;
    }
    framework::Container::m_pMemory = &memory;
    EXPECT_EQ(memory.outstanding(), 1u);
}

TEST(Buffer, StorageFromMallocIsNotReturnedToALaterMemoryObject) {
    std::optional<OpenBuffer> buffer(8);
    const test::CountingMemory memory;
    buffer.reset();
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(Buffer, CallersStorageIsNeverFreed) {
    char text[8] = {};
    test::CountingMemory memory;
    {
        OpenBuffer buffer;
        buffer.supplyArray(text, sizeof text);
        putText(buffer, "ports");
    }
    EXPECT_TRUE(memory.foreign().empty());
    EXPECT_STREQ(text, "ports");
}

TEST(Buffer, NewRequestsExactlyTheObjectSizeFromTheMemoryObject) {
    test::CountingMemory memory;
    auto* const buffer = new OpenBuffer(8);
    EXPECT_EQ(memory.requests(), (std::vector<unsigned long>{sizeof(OpenBuffer), 9}));
    EXPECT_TRUE(memory.holds(buffer));
    EXPECT_EQ(memory.outstanding(), 2u);
    delete static_cast<Buffer*>(buffer);
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(Buffer, NewOfAStreamRequestsExactlyTheObjectSize) {
    test::CountingMemory memory;
    const std::unique_ptr<utility::BufferStream> stream(new utility::BufferStream(8));
    EXPECT_EQ(memory.requests(), (std::vector<unsigned long>{sizeof(utility::BufferStream), 9}));
    EXPECT_TRUE(memory.holds(stream.get()));
}

TEST(Buffer, ObjectsComeFromMallocWithoutAMemoryObject) {
    const unsigned long before = test::allocationCount();
    Buffer* const buffer = new Buffer;
    EXPECT_EQ(test::allocationCount(), before + 1);
    buffer->~Buffer();
    std::free(buffer);
}

TEST(Buffer, FailedNewReturnsNull) {
    Buffer* buffer = nullptr;
    test::failNth(1, [&] { buffer = new Buffer; });
    EXPECT_EQ(buffer, nullptr);
    test::CountingMemory memory;
    memory.refuseAll();
    EXPECT_EQ(new Buffer, nullptr);
    EXPECT_EQ(memory.requests().size(), 1u);
}

TEST(Buffer, ObjectIsFreedIfItsStorageCannotBeAllocated) {
    test::CountingMemory memory;
    memory.refuse(2);
    EXPECT_FAILURE(delete new OpenBuffer(8), 1238, "ut_Buffer", allocBufferName, "");
    EXPECT_EQ(memory.outstanding(), 0u);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(Buffer, ObjectIsReturnedToTheMemoryObjectCurrentAtDeletion) {
    Buffer* const early = new Buffer;
    const test::CountingMemory first;
    delete early;
    EXPECT_EQ(first.foreign(), std::vector<const void*>{early});
    std::free(early);

    Buffer* const late = new Buffer;
    const test::CountingMemory second;
    delete late;
    EXPECT_TRUE(first.holds(late));
    EXPECT_EQ(second.foreign(), std::vector<const void*>{late});
}

TEST(Buffer, ObjectIsFreedIfItsMemoryObjectNoLongerExists) {
    EXPECT_LT(test::heapGrowth([] {
                  Buffer* buffer = nullptr;
                  {
                      MallocMemory memory;
                      buffer = new Buffer;
                  }
                  delete buffer;
              }),
              8000u);
}

TEST(Buffer, DeletingNullDoesNothing) {
    const test::CountingMemory memory;
    delete static_cast<Buffer*>(nullptr);
    EXPECT_TRUE(memory.foreign().empty());
}

TEST(Buffer, ReportsPositionsAndDifferences) {
    OpenBuffer buffer(10);
    putText(buffer, "volumes");
    buffer.ReadAdvance(3);
    EXPECT_EQ(buffer.WriteRemaining(), 3);
    EXPECT_EQ(buffer.ReadAvailable(), 4);
    EXPECT_EQ(buffer.pHead(), buffer.pBuffer() + 7);
    EXPECT_EQ(buffer.pTail(), buffer.pBuffer() + 3);
    expectPositions(buffer, 7, 3);
}

TEST(Buffer, WriteAdvanceMovesAtMostToTheCapacity) {
    OpenBuffer buffer(8);
    buffer.WriteAdvance(0);
    buffer.WriteAdvance(8);
    expectPositions(buffer, 8, 0);
    EXPECT_FAILURE(buffer.WriteAdvance(1), 1239, "ut_Buffer", writeAdvanceName, "");
}

TEST(Buffer, RefusedWriteAdvanceLeavesThePositionMoved) {
    OpenBuffer buffer(8);
    EXPECT_FAILURE(buffer.WriteAdvance(11), 1239, "ut_Buffer", writeAdvanceName, "");
    expectPositions(buffer, 11, 0);
    EXPECT_EQ(buffer.WriteRemaining(), -3);
    EXPECT_EQ(buffer.ReadAvailable(), 11);
}

TEST(Buffer, NegativeWriteAdvanceIsRefusedEvenInRange) {
    OpenBuffer buffer(8);
    buffer.WriteAdvance(4);
    EXPECT_FAILURE(buffer.WriteAdvance(-1), 1239, "ut_Buffer", writeAdvanceName, "");
    expectPositions(buffer, 3, 0);
}

TEST(Buffer, WithNoThrowWriteAdvanceStopsAtTheCapacity) {
    test::LogCapture log;
    OpenBuffer buffer(8, true);
    buffer.WriteAdvance(9);
    expectPositions(buffer, 8, 0);
    buffer.WriteAdvance(1);
    expectPositions(buffer, 8, 0);
    EXPECT_EQ(log.count(), 0u);
}

TEST(Buffer, WithNoThrowWriteAdvanceMovesBackAtMostToTheReadPosition) {
    test::LogCapture log;
    OpenBuffer buffer(8, true);
    buffer.WriteAdvance(6);
    buffer.ReadAdvance(2);
    buffer.WriteAdvance(-1);
    expectPositions(buffer, 5, 2);
    buffer.WriteAdvance(-3);
    expectPositions(buffer, 2, 2);
    buffer.WriteAdvance(-1);
    expectPositions(buffer, 2, 2);
    EXPECT_EQ(log.count(), 0u);
}

TEST(Buffer, ReadAdvanceMovesAtMostToTheWritePosition) {
    OpenBuffer buffer(8);
    buffer.WriteAdvance(5);
    buffer.ReadAdvance(0);
    buffer.ReadAdvance(5);
    expectPositions(buffer, 5, 5);
    EXPECT_FAILURE(buffer.ReadAdvance(1), 1239, "ut_Buffer", readAdvanceName, "");
    expectPositions(buffer, 5, 6);
    EXPECT_EQ(buffer.ReadAvailable(), -1);
}

TEST(Buffer, NegativeReadAdvanceIsRefusedEvenInRange) {
    OpenBuffer buffer(8);
    buffer.WriteAdvance(5);
    buffer.ReadAdvance(3);
    EXPECT_FAILURE(buffer.ReadAdvance(-1), 1239, "ut_Buffer", readAdvanceName, "");
    expectPositions(buffer, 5, 2);
}

TEST(Buffer, WithNoThrowReadAdvanceIsClampedOnBothSides) {
    test::LogCapture log;
    OpenBuffer buffer(8, true);
    buffer.WriteAdvance(5);
    buffer.ReadAdvance(6);
    expectPositions(buffer, 5, 5);
    buffer.ReadAdvance(-2);
    expectPositions(buffer, 5, 3);
    buffer.ReadAdvance(-3);
    expectPositions(buffer, 5, 0);
    buffer.ReadAdvance(-1);
    expectPositions(buffer, 5, 0);
    EXPECT_EQ(log.count(), 0u);
}

TEST(Buffer, ExtremeAdvancesAreRefused) {
    for (const int n : {INT_MAX, INT_MIN, INT_MIN + 1}) {
        OpenBuffer buffer(8);
        buffer.WriteAdvance(5);
        buffer.ReadAdvance(2);
        EXPECT_FAILURE(buffer.WriteAdvance(n), 1239, "ut_Buffer", writeAdvanceName, "") << n;
        EXPECT_FAILURE(buffer.WriteAdvance(n), 1239, "ut_Buffer", writeAdvanceName, "") << n;
        buffer.Rewind();
        buffer.WriteAdvance(5);
        buffer.ReadAdvance(2);
        EXPECT_FAILURE(buffer.ReadAdvance(n), 1239, "ut_Buffer", readAdvanceName, "") << n;
        EXPECT_FAILURE(buffer.ReadAdvance(n), 1239, "ut_Buffer", readAdvanceName, "") << n;
        buffer.Rewind();
        putText(buffer, "volume");
        EXPECT_EQ(heldBytes(buffer), "volume");
    }
}

TEST(Buffer, WithNoThrowExtremeAdvancesStayInRange) {
    for (const int n : {INT_MAX, INT_MIN, INT_MIN + 1}) {
        OpenBuffer buffer(8, true);
        buffer.WriteAdvance(5);
        buffer.ReadAdvance(2);
        buffer.WriteAdvance(n);
        expectInvariant(buffer);
        buffer.ReadAdvance(n);
        expectInvariant(buffer);
    }
}

TEST(Buffer, WritePositionIsClampedToTheCapacityEvenIfTheReadPositionIsPastIt) {
    OpenBuffer buffer(8);
    buffer.WriteAdvance(5);
    EXPECT_NE(CATCH_FAILURE(buffer.ReadAdvance(50)), nullptr);
    buffer.setNoThrow(true);
    buffer.WriteAdvance(-1);
    EXPECT_EQ(buffer.WritePosition(), 8);
}

TEST(Buffer, CanBeQueriedRewoundAndUsedAfterARefusedAdvance) {
    OpenBuffer buffer(8);
    EXPECT_NE(CATCH_FAILURE(buffer.WriteAdvance(20)), nullptr);
    EXPECT_EQ(buffer.boundedRoom(5), 0);
    EXPECT_FALSE(buffer.isTerminable());
    buffer.terminate();
    EXPECT_LE(buffer.boundedReadable(20), 8);
    buffer.Rewind();
    expectPositions(buffer, 0, 0);
    putText(buffer, "12345678");
    EXPECT_EQ(heldBytes(buffer), "12345678");
}

TEST(Buffer, RewindDiscardsTheContent) {
    OpenBuffer buffer(8);
    putText(buffer, "volume");
    buffer.ReadAdvance(2);
    buffer.Rewind();
    expectPositions(buffer, 0, 0);
    EXPECT_EQ(buffer.pBuffer()[0], 0);
    EXPECT_EQ(buffer.pBuffer()[1], 'o');
}

TEST(Buffer, RewindWithoutStorageResetsThePositions) {
    OpenBuffer buffer;
    EXPECT_NE(CATCH_FAILURE(buffer.WriteAdvance(3)), nullptr);
    buffer.Rewind();
    expectPositions(buffer, 0, 0);
}

TEST(Buffer, ConsolidateMovesTheUnreadBytesWithoutATerminator) {
    OpenBuffer buffer(8);
    putText(buffer, "abcdefg");
    buffer.ReadAdvance(2);
    buffer.Consolidate();
    expectPositions(buffer, 5, 0);
    EXPECT_EQ(std::string(buffer.pBuffer(), 7), "cdefgfg");
}

TEST(Buffer, ConsolidateOfOneUnreadByteKeepsIt) {
    OpenBuffer buffer(4);
    putText(buffer, "abcd");
    buffer.ReadAdvance(3);
    buffer.Consolidate();
    expectPositions(buffer, 1, 0);
    EXPECT_EQ(std::string(buffer.pBuffer(), 4), "dbcd");
}

TEST(Buffer, ConsolidateWithNothingReadChangesNothing) {
    OpenBuffer buffer(8);
    putText(buffer, "abc");
    buffer.Consolidate();
    expectPositions(buffer, 3, 0);
    EXPECT_STREQ(buffer.pBuffer(), "abc");
}

TEST(Buffer, ConsolidateWithNothingUnreadRewinds) {
    OpenBuffer buffer(8);
    putText(buffer, "abc");
    buffer.ReadAdvance(3);
    buffer.Consolidate();
    expectPositions(buffer, 0, 0);
    EXPECT_EQ(buffer.pBuffer()[0], 0);
}

TEST(Buffer, ConsolidateAfterARefusedAdvanceStaysInBounds) {
    test::GuardedBytes bytes(9);
    OpenBuffer buffer;
    buffer.supplyArray(bytes.array(), bytes.size());
    EXPECT_NE(CATCH_FAILURE(buffer.WriteAdvance(100)), nullptr);
    buffer.Consolidate();
    EXPECT_TRUE(bytes.areGuardsWhole());
    buffer.Rewind();
    buffer.WriteAdvance(4);
    EXPECT_NE(CATCH_FAILURE(buffer.ReadAdvance(100)), nullptr);
    buffer.Consolidate();
    expectPositions(buffer, 0, 0);
    EXPECT_NE(CATCH_FAILURE(buffer.ReadAdvance(-100)), nullptr);
    buffer.Consolidate();
    EXPECT_TRUE(bytes.areGuardsWhole());
    OpenBuffer().Consolidate();
}

TEST(Buffer, CopyFromMovesTheReadableBytes) {
    OpenBuffer source(8);
    putText(source, "xvolume");
    source.ReadAdvance(1);
    OpenBuffer target(16);
    putText(target, "my ");
    std::memset(target.pHead(), '?', 8);
    target.CopyFrom(&source);
    EXPECT_STREQ(target.pBuffer(), "my volume");
    expectPositions(target, 9, 0);
    expectPositions(source, 7, 7);
}

TEST(Buffer, CopyFromFillsTheBufferExactly) {
    OpenBuffer source(8);
    putText(source, "volume");
    OpenBuffer target(6);
    target.CopyFrom(&source);
    EXPECT_STREQ(target.pBuffer(), "volume");
    EXPECT_EQ(target.WriteRemaining(), 0);
    EXPECT_EQ(source.ReadAvailable(), 0);
}

TEST(Buffer, CopyFromOfOneByteTooManyThrowsAndMovesNothing) {
    OpenBuffer source(8);
    putText(source, "volume");
    OpenBuffer target(5);
    EXPECT_FAILURE(target.CopyFrom(&source), 1239, "ut_Buffer", copyFromName, "");
    expectPositions(target, 0, 0);
    expectPositions(source, 6, 0);
    EXPECT_EQ(target.pBuffer()[0], 0);
}

TEST(Buffer, WithNoThrowCopyFromMovesWhatFits) {
    test::LogCapture log;
    OpenBuffer source(10);
    putText(source, "0123456789");
    OpenBuffer target(4, true);
    target.CopyFrom(&source);
    EXPECT_STREQ(target.pBuffer(), "0123");
    expectPositions(target, 4, 0);
    expectPositions(source, 10, 4);
    target.CopyFrom(&source);
    expectPositions(source, 10, 4);
    EXPECT_EQ(log.count(), 0u);
}

TEST(Buffer, CopyFromAnEmptySourceOnlyTerminates) {
    OpenBuffer source(4);
    OpenBuffer target(4);
    putText(target, "ab");
    *target.pHead() = '?';
    target.CopyFrom(&source);
    EXPECT_STREQ(target.pBuffer(), "ab");
    expectPositions(target, 2, 0);
}

TEST(Buffer, CopyFromNullOrWithoutStorageDoesNothing) {
    OpenBuffer target(4);
    target.CopyFrom(nullptr);
    OpenBuffer none;
    target.CopyFrom(&none);
    none.CopyFrom(&target);
    none.CopyFrom(&none);
    expectPositions(target, 0, 0);
    expectPositions(none, 0, 0);
}

TEST(Buffer, CopyFromItselfMovesTheBytesAfterThemselves) {
    OpenBuffer buffer(8);
    putText(buffer, "abc");
    buffer.CopyFrom(&buffer);
    expectPositions(buffer, 6, 3);
    EXPECT_EQ(heldBytes(buffer), "abc");
}

TEST(Buffer, CopyFromUsesTheVirtualPositionOperations) {
    test::CountedPositions<OpenBuffer> source(8);
    putText(source, "volume");
    test::CountedPositions<OpenBuffer> target(8);
    source.available = source.written = source.read = source.remaining = 0;
    target.CopyFrom(&source);
    EXPECT_GE(source.available, 1);
    EXPECT_EQ(source.read, 1);
    EXPECT_GE(target.remaining, 1);
    EXPECT_EQ(target.written, 1);
}

TEST(Buffer, CopyFromAfterARefusedAdvanceStaysInBounds) {
    test::GuardedBytes from(9);
    test::GuardedBytes to(9);
    OpenBuffer source;
    source.supplyArray(from.array(), from.size());
    OpenBuffer target;
    target.supplyArray(to.array(), to.size());
    EXPECT_NE(CATCH_FAILURE(source.WriteAdvance(100)), nullptr);
    CATCH_FAILURE(target.CopyFrom(&source));
    EXPECT_TRUE(to.areGuardsWhole());
    target.setNoThrow(true);
    target.CopyFrom(&source);
    EXPECT_TRUE(to.areGuardsWhole());
    expectInvariant(target);

    target.setNoThrow(false);
    source.Rewind();
    target.Rewind();
    source.WriteAdvance(4);
    EXPECT_NE(CATCH_FAILURE(target.WriteAdvance(100)), nullptr);
    CATCH_FAILURE(target.CopyFrom(&source));
    EXPECT_TRUE(to.areGuardsWhole());

    source.Rewind();
    target.Rewind();
    EXPECT_NE(CATCH_FAILURE(source.ReadAdvance(100)), nullptr);
    CATCH_FAILURE(target.CopyFrom(&source));
    EXPECT_TRUE(to.areGuardsWhole());
    EXPECT_TRUE(from.areGuardsWhole());
}

TEST(Buffer, CopyFromDoesNotReadPastTheSourcesStorage) {
    test::GuardedBytes bytes(9);
    OpenBuffer source;
    source.supplyArray(bytes.array(), bytes.size());
    std::memcpy(source.pBuffer(), "volumes", 8);
    EXPECT_NE(CATCH_FAILURE(source.WriteAdvance(30)), nullptr);
    OpenBuffer target(64);
    target.CopyFrom(&source);
    EXPECT_EQ(target.ReadAvailable(), 8);
    EXPECT_STREQ(target.pBuffer(), "volumes");
}

TEST(Buffer, CopyFromStaysInBoundsIfTheSpaceReportedIsTooLarge) {
    test::GuardedBytes bytes(5);
    OpenBuffer source(8);
    putText(source, "volumes");
    test::OverstatedSpace<OpenBuffer> target;
    target.supplyArray(bytes.array(), bytes.size());
    target.CopyFrom(&source);
    EXPECT_STREQ(target.pBuffer(), "volu");
    EXPECT_EQ(heldBytes(source), "mes");
    EXPECT_TRUE(bytes.areGuardsWhole());
}

TEST(Buffer, TruncatePartialUtf8KeepsACompleteText) {
    test::LogCapture log;
    OpenBuffer buffer(16);
    put(buffer, "caf\xC3\xA9");
    *buffer.pHead() = '?';
    EXPECT_TRUE(buffer.truncatePartialUtf8());
    EXPECT_STREQ(buffer.pBuffer(), "caf\xC3\xA9");
    expectPositions(buffer, 5, 0);
    EXPECT_EQ(log.count(), 0u);
}

TEST(Buffer, TruncatePartialUtf8RemovesAnIncompleteCharacter) {
    const test::LogCapture log;
    for (const char* partial : {"\xC3", "\xE2", "\xE2\x82", "\xF0", "\xF0\x9F", "\xF0\x9F\x98"}) {
        OpenBuffer buffer(16);
        putText(buffer, std::string("ab") + partial);
        EXPECT_TRUE(buffer.truncatePartialUtf8()) << partial;
        EXPECT_STREQ(buffer.pBuffer(), "ab");
        expectPositions(buffer, 2, 0);
    }
}

TEST(Buffer, TruncatePartialUtf8RemovesAtMostThreeBytes) {
    const test::LogCapture log;
    OpenBuffer buffer(16);
    putText(buffer, "ab\xFF\xFF\xFF");
    EXPECT_TRUE(buffer.truncatePartialUtf8());
    EXPECT_STREQ(buffer.pBuffer(), "ab");
    OpenBuffer other(16);
    putText(other, "ab\xFF\xFF\xFF\xFF");
    EXPECT_FALSE(other.truncatePartialUtf8());
    expectPositions(other, 6, 0);
    EXPECT_STREQ(other.pBuffer(), "ab\xFF\xFF\xFF\xFF");
}

TEST(Buffer, TruncatePartialUtf8PermitsOnlyTabsAndLineEndsAsControls) {
    const test::LogCapture log;
    OpenBuffer buffer(32);
    putText(buffer, "a\tb\r\nc");
    EXPECT_TRUE(buffer.truncatePartialUtf8());
    expectPositions(buffer, 6, 0);
    for (const char* control : {"\a", "\b", "\v", "\f", "\x1B", "\x7F", "\x01"}) {
        buffer.Rewind();
        putText(buffer, std::string(control) + "a~ \"'");
        EXPECT_FALSE(buffer.truncatePartialUtf8()) << control;
        expectPositions(buffer, 6, 0);
    }
}

TEST(Buffer, TruncatePartialUtf8OfAnUnprintableTextIsLoggedWithTheStorageText) {
    test::LogCapture log;
    OpenBuffer buffer(300);
    putText(buffer, "read\x01" + std::string(250, 'x'));
    buffer.ReadAdvance(4);
    EXPECT_FALSE(buffer.truncatePartialUtf8());
    expectPositions(buffer, 255, 4);
    Lines expected(4, "0 : isStringPrintableUtf8: found non-printable ASCII character 0x01\n");
    expected.push_back("0 : truncatePartialUtf8: String is not a printable UTF-8 string: 'read\x01" +
                       std::string(195, 'x') + "'");
    EXPECT_EQ(test::traceLines(log), expected);
}

TEST(Buffer, TruncatePartialUtf8OfAnEmptyTextIsTrue) {
    test::LogCapture log;
    OpenBuffer buffer(4);
    putText(buffer, "ab");
    buffer.ReadAdvance(2);
    *buffer.pHead() = '?';
    EXPECT_TRUE(buffer.truncatePartialUtf8());
    EXPECT_EQ(*buffer.pHead(), 0);
    expectPositions(buffer, 2, 2);
    EXPECT_EQ(log.count(), 0u);
}

TEST(Buffer, TruncatePartialUtf8OfFewBytesStopsAtTheStart) {
    const test::LogCapture log;
    for (const char* text : {"\xFF", "\xFF\xFF", "\xFF\xFF\xFF"}) {
        OpenBuffer buffer(4);
        putText(buffer, text);
        EXPECT_TRUE(buffer.truncatePartialUtf8());
        expectPositions(buffer, 0, 0);
        EXPECT_EQ(buffer.pBuffer()[0], 0);
    }
}

TEST(Buffer, TruncatePartialUtf8OfAFullBufferTerminatesAfterTheCapacity) {
    OpenBuffer buffer(4);
    put(buffer, "abcd");
    EXPECT_TRUE(buffer.truncatePartialUtf8());
    EXPECT_STREQ(buffer.pBuffer(), "abcd");
}

TEST(Buffer, TruncatePartialUtf8WithWriteBeforeReadPositionLogsABug) {
    test::LogCapture log;
    OpenBuffer buffer(4);
    EXPECT_NE(CATCH_FAILURE(buffer.ReadAdvance(1)), nullptr);
    EXPECT_FALSE(buffer.truncatePartialUtf8());
    EXPECT_EQ(test::traceLines(log), (Lines{"0 : truncatePartialUtf8: bug!"}));
    expectPositions(buffer, 0, 1);
}

TEST(Buffer, TruncatePartialUtf8AfterARefusedAdvanceStaysInBounds) {
    const test::LogCapture log;
    test::GuardedBytes bytes(9);
    OpenBuffer buffer;
    buffer.supplyArray(bytes.array(), bytes.size());
    EXPECT_NE(CATCH_FAILURE(buffer.WriteAdvance(30)), nullptr);
    buffer.truncatePartialUtf8();
    EXPECT_TRUE(bytes.areGuardsWhole());
    buffer.Rewind();
    EXPECT_NE(CATCH_FAILURE(buffer.WriteAdvance(-30)), nullptr);
    EXPECT_FALSE(buffer.truncatePartialUtf8());
    EXPECT_TRUE(bytes.areGuardsWhole());
    OpenBuffer().truncatePartialUtf8();
}

TEST(Buffer, TruncatePartialUtf8WithoutStorageLogsAnEmptyText) {
    test::LogCapture log;
    OpenBuffer buffer;
    buffer.supplyArray(nullptr, 9);
    buffer.WriteAdvance(4);
    EXPECT_FALSE(buffer.truncatePartialUtf8());
    EXPECT_EQ(test::traceLines(log), (Lines{"0 : truncatePartialUtf8: String is not a printable UTF-8 string: ''"}));
}

TEST(Buffer, SupplyArrayReservesTheLastByteForTheTerminator) {
    test::GuardedBytes bytes(8);
    OpenBuffer buffer;
    buffer.supplyArray(bytes.array(), bytes.size());
    EXPECT_EQ(buffer.Size(), 7);
    EXPECT_EQ(bytes.content(), std::string("\0\x7E\x7E\x7E\x7E\x7E\x7E\0", 8));
    EXPECT_TRUE(bytes.areGuardsWhole());
}

TEST(Buffer, LimitsCopiesToTheStorage) {
    OpenBuffer buffer(8);
    putText(buffer, "abcdef");
    buffer.ReadAdvance(2);
    EXPECT_EQ(buffer.boundedRoom(1), 1);
    EXPECT_EQ(buffer.boundedRoom(2), 2);
    EXPECT_EQ(buffer.boundedRoom(3), 2);
    EXPECT_EQ(buffer.boundedRoom(INT_MAX), 2);
    EXPECT_EQ(buffer.boundedRoom(-1), 0);
    EXPECT_EQ(buffer.boundedReadable(3), 3);
    EXPECT_EQ(buffer.boundedReadable(5), 4);
    EXPECT_EQ(buffer.boundedReadable(-1), 0);
    EXPECT_TRUE(buffer.isTerminable());
    EXPECT_EQ(OpenBuffer().boundedRoom(1), 0);
    EXPECT_EQ(OpenBuffer().boundedReadable(1), 0);
    EXPECT_FALSE(OpenBuffer().isTerminable());
}

} // namespace
