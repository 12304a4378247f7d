#include "fw_Memory.h"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "support/FailingAllocation.h"

using framework::Memory;

namespace {

class Heap : public Memory {
public:
    explicit Heap(bool& destroyed) : m_destroyed(destroyed) {}
    ~Heap() override {
        m_destroyed = true;
    }
    void* allocate(unsigned long size) override {
        return std::malloc(size);
    }
    void release(const void* piece) override {
        std::free(const_cast<void*>(piece));
    }

private:
    bool& m_destroyed;
};

TEST(Memory, UsageExample) {
    const long before = Memory::staticOutstanding();
    char* copy = framework::Memory::StaticAllocString("volume");
    EXPECT_STREQ(copy, "volume");
    EXPECT_EQ(Memory::staticOutstanding(), before + 1);
    framework::Memory::StaticFreeString(copy);
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(Memory, PiecesAreAlignedAndWritable) {
    for (unsigned long size = 0; size < 100; ++size) {
        void* piece = Memory::StaticAlloc(size);
        ASSERT_NE(piece, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(piece) % alignof(std::max_align_t), 0U);
        std::memset(piece, 'x', size);
        Memory::StaticFree(piece);
    }
}

TEST(Memory, SizeThatCannotBeHadIsNull) {
    const long before = Memory::staticOutstanding();
    EXPECT_EQ(Memory::StaticAlloc(ULONG_MAX / 2 + 1), nullptr);
    EXPECT_EQ(Memory::StaticAlloc(ULONG_MAX), nullptr);
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(Memory, GlobalDeleteMayReleaseAPieceButTheCountStays) {
    const long before = Memory::staticOutstanding();
    ::operator delete(Memory::StaticAlloc(8));
    EXPECT_EQ(Memory::staticOutstanding(), before + 1);
}

TEST(Memory, ReleasingNullDoesNothing) {
    const long before = Memory::staticOutstanding();
    Memory::StaticFree(nullptr);
    Memory::StaticFreeString(nullptr);
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(Memory, NullTextHasNoCopy) {
    EXPECT_EQ(Memory::StaticAllocString(nullptr), nullptr);
    EXPECT_EQ(Memory::StaticAllocString(nullptr, 3), nullptr);
}

TEST(Memory, CopyWithALengthEndsThereOrAtTheTerminator) {
    const struct {
        unsigned int length;
        const char* copy;
    } cases[] = {{0, ""}, {1, "v"}, {5, "volum"}, {6, "volume"}, {7, "volume"}, {UINT_MAX, "volume"}};
    for (const auto& expected : cases) {
        char* copy = Memory::StaticAllocString("volume", expected.length);
        EXPECT_STREQ(copy, expected.copy);
        Memory::StaticFreeString(copy);
    }
}

TEST(Memory, CopyWithALengthReadsNothingBehindIt) {
    const std::unique_ptr<char[]> text(new char[3]);
    std::memcpy(text.get(), "abc", 3);
    char* copy = Memory::StaticAllocString(text.get(), 3);
    EXPECT_STREQ(copy, "abc");
    Memory::StaticFreeString(copy);
}

TEST(Memory, FailedAllocationIsNullAndNotCounted) {
    const long before = Memory::staticOutstanding();
    test::FailingAllocation failing(test::failAll);
    void* const piece = Memory::StaticAlloc(8);
    char* const text = Memory::StaticAllocString("text");
    char* const start = Memory::StaticAllocString("text", 2);
    failing.stop();
    EXPECT_EQ(piece, nullptr);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(start, nullptr);
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(Memory, CountsAcrossThreads) {
    const long before = Memory::staticOutstanding();
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([] {
            for (int round = 0; round < 2000; ++round)
                Memory::StaticFreeString(Memory::StaticAllocString("text"));
        });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(Memory, IsDestroyedThroughItsBase) {
    bool destroyed = false;
    std::unique_ptr<Memory> memory = std::make_unique<Heap>(destroyed);
    memory->release(memory->allocate(3));
    memory.reset();
    EXPECT_TRUE(destroyed);
}

} // namespace
