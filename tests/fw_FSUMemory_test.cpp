#include "fw_FSUMemory.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/FailingAllocation.h"

using framework::FSUMemory;
using framework::Memory;

namespace {

// Fills pieces of many sizes, then finds each as it was left.
void expectPiecesApart(FSUMemory& pool) {
    std::vector<std::pair<unsigned char*, unsigned long>> pieces;
    for (unsigned long size = 0; size < 300; size += 7) {
        void* piece = pool.Alloc(size);
        ASSERT_NE(piece, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece) % alignof(std::max_align_t), 0U);
        std::memset(piece, static_cast<int>(size % 251), size);
        pieces.emplace_back(static_cast<unsigned char*>(piece), size);
    }
    for (const auto& [piece, size] : pieces)
        for (unsigned long i = 0; i < size; ++i)
            ASSERT_EQ(piece[i], size % 251);
}

TEST(FSUMemory, UsageExample) {
    framework::FSUMemory pool(2048, 20);
    char* copy = pool.AllocString("volume");
    EXPECT_STREQ(copy, "volume");
}

TEST(FSUMemory, AnyBlockSizeGivesPiecesOfAnySize) {
    for (const unsigned int blockSize : {0U, 1U, 15U, 16U, 17U, 100U, 2048U, 100000U, UINT_MAX - 15, UINT_MAX}) {
        FSUMemory pool(blockSize, 0);
        expectPiecesApart(pool);
    }
}

TEST(FSUMemory, EmptyPiecesAreDistinct) {
    FSUMemory pool(2048, 20);
    void* first = pool.Alloc(0);
    EXPECT_NE(first, nullptr);
    EXPECT_NE(pool.Alloc(0), first);
}

TEST(FSUMemory, SizesThatCannotBeHadAreNull) {
    for (const unsigned int blockSize : {0U, 2048U}) {
        FSUMemory pool(blockSize, 20);
        for (const unsigned long size : {ULONG_MAX, ULONG_MAX - 1, ULONG_MAX - 15, ULONG_MAX - 63, ULONG_MAX / 2 + 1,
                                         ULONG_MAX / 2, ULONG_MAX / 2 - 15})
            EXPECT_EQ(pool.Alloc(size), nullptr) << size;
        EXPECT_NE(pool.Alloc(10), nullptr);
    }
}

TEST(FSUMemory, SmallPiecesShareABlock) {
    FSUMemory pool(2048, 20);
    const long before = Memory::staticOutstanding();
    pool.Alloc(100);
    pool.Alloc(100);
    EXPECT_EQ(Memory::staticOutstanding(), before + 1); // the first block is small
    for (int i = 0; i < 18; ++i)
        pool.Alloc(100);
    EXPECT_EQ(Memory::staticOutstanding(), before + 2);
}

TEST(FSUMemory, LargePieceLeavesTheRoomOfTheCurrentBlockInUse) {
    FSUMemory pool(2048, 20);
    const long before = Memory::staticOutstanding();
    pool.Alloc(100);
    pool.Alloc(5000);
    pool.Alloc(100);
    EXPECT_EQ(Memory::staticOutstanding(), before + 2);
}

TEST(FSUMemory, StringsAreCopied) {
    FSUMemory pool(64, 1);
    char text[] = "volume";
    char* whole = pool.AllocString(text);
    char* start = pool.AllocString(text, 3);
    char* beyond = pool.AllocString(text, UINT_MAX);
    text[0] = 'X';
    EXPECT_STREQ(whole, "volume");
    EXPECT_STREQ(start, "vol");
    EXPECT_STREQ(beyond, "volume");
    EXPECT_STREQ(pool.AllocString(whole), "volume");
    EXPECT_STREQ(pool.AllocString("", 0), "");
    EXPECT_EQ(pool.AllocString(nullptr), nullptr);
    EXPECT_EQ(pool.AllocString(nullptr, 4), nullptr);
}

TEST(FSUMemory, ResetAndDestructionFreeEverything) {
    const long before = Memory::staticOutstanding();
    {
        FSUMemory pool(128, 1);
        pool.reset();
        expectPiecesApart(pool);
        EXPECT_GT(Memory::staticOutstanding(), before);
        pool.reset();
        EXPECT_EQ(Memory::staticOutstanding(), before);
        expectPiecesApart(pool);
    }
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(FSUMemory, AsMemoryItGivesPiecesThatGoWithThePool) {
    FSUMemory pool(2048, 20);
    Memory& memory = pool;
    char* piece = static_cast<char*>(memory.allocate(4));
    ASSERT_NE(piece, nullptr);
    std::strcpy(piece, "abc");
    memory.release(piece);
    memory.release(nullptr);
    memory.allocate(4);
    EXPECT_STREQ(piece, "abc");
}

TEST(FSUMemory, FailedAllocationIsNullAndThePoolGoesOn) {
    FSUMemory pool(64, 1);
    void* small = nullptr;
    void* large = nullptr;
    char* text = nullptr;
    {
        test::FailingAllocation failing(test::failAll);
        small = pool.Alloc(10);
        large = pool.Alloc(1000);
        text = pool.AllocString("text");
    }
    EXPECT_EQ(small, nullptr);
    EXPECT_EQ(large, nullptr);
    EXPECT_EQ(text, nullptr);
    expectPiecesApart(pool);
}

} // namespace
