#include "ut_Array.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "PointerText.h"
#include "TraceLines.h"
#include "fw_Memory.h"
#include "ut_IntArray.h"

namespace {

using utility::Array;
using Lines = std::vector<std::string>;

constexpr unsigned int traceSwitch = 292;
constexpr const char* reallocName = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(std::has_virtual_destructor<Array>::value, "arrays must be deletable through the base class");
static_assert(!std::is_copy_constructible<Array>::value && !std::is_copy_assignable<Array>::value,
              "the base does not know how to copy elements");

class OpenArray : public Array {
public:
    OpenArray() : Array(20) {}
    using Array::m_block;
    using Array::m_length;
    using Array::m_size;
};

std::string bracketed(const void* pointer) {
    return "[" + test::pointerText(pointer) + "]";
}

const void* byteAfter(const void* block, size_t bytes) {
    return static_cast<const char*>(block) + bytes;
}

TEST(Array, UsageExample) {
    utility::IntArray ports(5);
    for (int port = 0; port < 6; ++port)
        ports.Append(port);
    EXPECT_EQ(ports.size(), 25u);
    ports.truncate(2);
    EXPECT_EQ(ports.length(), 2u);
}

TEST(Array, ANewArrayIsEmptyAndHasNoBlockWhateverTheArgument) {
    const Array none(0);
    EXPECT_EQ(none.length(), 0u);
    EXPECT_EQ(none.size(), 0u);
    const unsigned long before = test::allocationCount();
    const Array many(0xFFFFFFFF);
    EXPECT_EQ(many.length(), 0u);
    EXPECT_EQ(many.size(), 0u);
    EXPECT_EQ(test::allocationCount(), before);
    EXPECT_EQ(OpenArray().m_block, nullptr);
}

TEST(Array, TheMembersAreLengthSizeAndBlockInThisOrderAfterTheVirtualTable) {
    OpenArray array;
    const char* start = reinterpret_cast<const char*>(&array);
    EXPECT_EQ(reinterpret_cast<const char*>(&array.m_length) - start, static_cast<std::ptrdiff_t>(sizeof(void*)));
    EXPECT_EQ(reinterpret_cast<const char*>(&array.m_size) - start, static_cast<std::ptrdiff_t>(sizeof(void*) + 4));
    EXPECT_EQ(reinterpret_cast<const char*>(&array.m_block) - start, static_cast<std::ptrdiff_t>(sizeof(void*) + 8));
    EXPECT_EQ(sizeof(Array), 2 * sizeof(void*) + 8);
}

TEST(Array, SortIsAfterTheDestructorsInTheVirtualTable) {
    void (Array::*sort)() = &Array::sort;
    std::uintptr_t offset = 0;
    std::memcpy(&offset, &sort, sizeof offset);
    // Clear the lowest bit, which marks a pointer to a virtual member function on x86.
    EXPECT_EQ(offset & ~std::uintptr_t{1}, 2 * sizeof(void*));
}

TEST(Array, TruncateNeverLengthensAndKeepsTheBlock) {
    OpenArray array;
    array.m_length = 5;
    array.m_size = 8;
    array.truncate(6);
    EXPECT_EQ(array.length(), 5u);
    array.truncate(0xFFFFFFFF);
    EXPECT_EQ(array.length(), 5u);
    array.truncate(5);
    EXPECT_EQ(array.length(), 5u);
    array.truncate(4);
    EXPECT_EQ(array.length(), 4u);
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 8u);
}

TEST(Array, SortDoesNothing) {
    OpenArray array;
    array.m_length = 3;
    array.sort();
    EXPECT_EQ(array.length(), 3u);
}

TEST(Array, ReallocAllocatesAFirstBlockOfTheGrowthOrTwentySlots) {
    unsigned int size = 0;
    void* block = Array::realloc(nullptr, &size, 3, 8);
    EXPECT_EQ(size, 3u);
    std::memset(block, 1, 24);
    framework::Memory::StaticFree(block);
    size = 0;
    block = Array::realloc(nullptr, &size, 0, 8);
    EXPECT_EQ(size, 20u);
    std::memset(block, 1, 160);
    framework::Memory::StaticFree(block);
}

TEST(Array, ReallocKeepsTheOldSlotsClearsTheNewOnesAndFreesTheOldBlock) {
    const long before = framework::Memory::staticOutstanding();
    for (const size_t elementSize : {size_t{1}, size_t{2}, size_t{4}, size_t{8}, size_t{24}}) {
        unsigned int size = 0;
        void* block = Array::realloc(nullptr, &size, 3, elementSize);
        std::memset(block, 0x5A, 3 * elementSize);
        block = Array::realloc(block, &size, 7, elementSize);
        EXPECT_EQ(size, 10u);
        const std::string expected = std::string(3 * elementSize, 0x5A) + std::string(7 * elementSize, 0);
        EXPECT_EQ(std::string(static_cast<char*>(block), 10 * elementSize), expected);
        block = Array::realloc(block, &size, 0, elementSize);
        EXPECT_EQ(size, 30u);
        EXPECT_EQ(std::string(static_cast<char*>(block), 30 * elementSize),
                  expected + std::string(20 * elementSize, 0));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
        framework::Memory::StaticFree(block);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(Array, ReallocAddsToTheSizeAlsoWithoutAnOldBlock) {
    unsigned int size = 5;
    void* block = Array::realloc(nullptr, &size, 2, 4);
    EXPECT_EQ(size, 7u);
    framework::Memory::StaticFree(block);
}

TEST(Array, ReallocTracesTheGrowthOfAFirstBlockInOneLine) {
    const test::DebugSwitch traced(traceSwitch);
    const test::LogCapture log;
    unsigned int size = 0;
    void* block = Array::realloc(nullptr, &size, 5, 4);
    EXPECT_EQ(test::traceLines(log), (Lines{std::string("3 ") + reallocName +
                                            ": growing array from 0 to 20, old [(nil)], new " + bracketed(block)}));
    framework::Memory::StaticFree(block);
}

TEST(Array, ReallocTracesGrowthCopyAndClearing) {
    unsigned int size = 0;
    void* old = Array::realloc(nullptr, &size, 5, 4);
    const std::string oldText = bracketed(old);
    const test::DebugSwitch traced(traceSwitch);
    const test::LogCapture log;
    void* block = Array::realloc(old, &size, 3, 4);
    const std::string start = std::string("3 ") + reallocName + ": ";
    EXPECT_EQ(test::traceLines(log),
              (Lines{start + "growing array from 20 to 32, old " + oldText + ", new " + bracketed(block),
                     start + "copy from " + oldText + " to " + bracketed(block) + " of 20 bytes",
                     start + "clear memory at " + bracketed(byteAfter(block, 20)) + ", 12 bytes"}));
    framework::Memory::StaticFree(block);
}

TEST(Array, ReallocDoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    unsigned int size = 0;
    void* block = Array::realloc(nullptr, &size, 5, 4);
    block = Array::realloc(block, &size, 5, 4);
    EXPECT_EQ(log.count(), 0u);
    framework::Memory::StaticFree(block);
}

TEST(Array, ReallocWithoutMemoryThrowsAndKeepsTheOldBlock) {
    unsigned int size = 0;
    void* block = Array::realloc(nullptr, &size, 5, 4);
    std::memset(block, 0x5A, 20);
    const long outstanding = framework::Memory::staticOutstanding();
    void* grown = nullptr;
    std::unique_ptr<framework::Exception> failure;
    int failures = 0;
    test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(grown = Array::realloc(block, &size, 3, 4)); },
                                 [&] {
                                     ++failures;
                                     EXPECT_TRUE(
                                         test::isFailure(failure.get(), 1230, "ut_Array", reallocName, "", true));
                                     EXPECT_EQ(size, 5u);
                                     EXPECT_EQ(std::string(static_cast<char*>(block), 20), std::string(20, 0x5A));
                                     EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
                                 });
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(size, 8u);
    framework::Memory::StaticFree(grown);
}

TEST(Array, ReallocTracesTheFailedGrowthBeforeItThrows) {
    const test::DebugSwitch traced(traceSwitch);
    const test::LogCapture log;
    unsigned int size = 0;
    std::unique_ptr<framework::Exception> failure;
    {
        const test::FailingAllocation failing(1);
        failure = CATCH_FAILURE(Array::realloc(nullptr, &size, 5, 4));
    }
    EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", reallocName, "", true));
    EXPECT_EQ(test::traceLines(log),
              (Lines{std::string("3 ") + reallocName + ": growing array from 0 to 20, old [(nil)], new [(nil)]"}));
}

TEST(Array, AnOverflowOfTheSlotCountThrowsAndChangesNothing) {
    const unsigned long before = test::allocationCount();
    unsigned int size = 0xFFFFFFFF;
    std::unique_ptr<framework::Exception> one = CATCH_FAILURE(Array::realloc(nullptr, &size, 1, 1));
    EXPECT_EQ(size, 0xFFFFFFFFu);
    size = 0xFFFFFFFF - 19;
    std::unique_ptr<framework::Exception> twenty = CATCH_FAILURE(Array::realloc(nullptr, &size, 0, 1));
    EXPECT_EQ(size, 0xFFFFFFFFu - 19);
    EXPECT_GT(test::allocationCount(), before);
    EXPECT_TRUE(test::isFailure(one.get(), 1230, "ut_Array", reallocName, "", true));
    EXPECT_TRUE(test::isFailure(twenty.get(), 1230, "ut_Array", reallocName, "", true));
}

TEST(Array, AnOverflowOfTheByteCountThrowsAndChangesNothing) {
    unsigned int size = 0;
    void* block = Array::realloc(nullptr, &size, 1, 4);
    std::memset(block, 0x5A, 4);
    EXPECT_FAILURE(Array::realloc(block, &size, 3, SIZE_MAX / 4 + 1), 1230, "ut_Array", reallocName, "");
    EXPECT_EQ(size, 1u);
    EXPECT_EQ(std::string(static_cast<char*>(block), 4), std::string(4, 0x5A));
    framework::Memory::StaticFree(block);
}

TEST(Array, AnImpossibleAllocationThrowsAndChangesNothing) {
    unsigned int size = 0;
    EXPECT_FAILURE(Array::realloc(nullptr, &size, 4, SIZE_MAX / 4), 1230, "ut_Array", reallocName, "");
    EXPECT_EQ(size, 0u);
}

} // namespace
