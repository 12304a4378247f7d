#include "ut_ItemArray.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "ArrayModel.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "TraceLines.h"
#include "fw_Item.h"
#include "fw_Memory.h"

namespace {

using framework::Item;
using utility::ItemArray;
using Content = std::vector<Item*>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 444;
const unsigned int NOT_FOUND = 0xFFFFFFFF;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";
const char* const APPEND = "3 void utility::ItemArray::Append(framework::Item*): ";
const char* const INSERT_AT = "void utility::ItemArray::InsertAt(unsigned int, framework::Item*)";
const char* const SET_AT = "void utility::ItemArray::SetAt(unsigned int, framework::Item*)";
const char* const DELETE_AT = "void utility::ItemArray::DeleteAt(unsigned int)";
const char* const AT = "framework::Item*& utility::ItemArray::operator[](unsigned int)";
const char* const AT_CONST = "framework::Item* const& utility::ItemArray::operator[](unsigned int) const";

static_assert(!std::is_copy_assignable<ItemArray>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, ItemArray>::value, "the constructor must be explicit");

Content contentOf(const ItemArray& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(ItemArray& array, unsigned int count, Item* item) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(item);
}

std::string text(Item* item) {
    char result[40];
    std::snprintf(result, sizeof result, "%p", static_cast<void*>(item));
    return result;
}

std::string appending(Item* item, int index) {
    return APPEND + ("Appending [" + text(item) + "] at ") + std::to_string(index);
}

class ItemArrayTest : public testing::Test {
protected:
    Item a, b, c, d;
};

TEST_F(ItemArrayTest, UsageExample) {
    framework::Item volume;
    utility::ItemArray items(4);
    items.Append(&volume);
    EXPECT_EQ(items.Find(&volume), 0u);
}

TEST_F(ItemArrayTest, ACapacityOfZeroMeansTwenty) {
    const ItemArray array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST_F(ItemArrayTest, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    ItemArray array(2);
    array.Append(&a);
    array.Append(nullptr);
    EXPECT_EQ(array.size(), 2u);
    array.Append(&c);
    EXPECT_EQ(array.size(), 22u);
    EXPECT_EQ(contentOf(array), (Content{&a, nullptr, &c}));
}

TEST_F(ItemArrayTest, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    ItemArray array(3);
    array.InsertAt(0, &a);
    array.InsertAt(1, &b);
    array.InsertAt(0, &c);
    array.InsertAt(2, &d);
    EXPECT_EQ(contentOf(array), (Content{&c, &a, &d, &b}));
    EXPECT_EQ(array.size(), 23u);
}

TEST_F(ItemArrayTest, SetAtReplacesAndDeleteAtClosesTheGap) {
    ItemArray array(3);
    fill(array, 3, &a);
    array.SetAt(1, &b);
    array.SetAt(2, &c);
    EXPECT_EQ(contentOf(array), (Content{&a, &b, &c}));
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), (Content{&b, &c}));
    array.DeleteAt(1);
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
}

TEST_F(ItemArrayTest, TheIndexOperatorReturnsAReferenceToTheSlot) {
    ItemArray array(2);
    fill(array, 2, &a);
    array[1] = &b;
    const ItemArray& constant = array;
    EXPECT_EQ(constant[1], &b);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST_F(ItemArrayTest, BadIndicesThrowAndChangeNothing) {
    ItemArray array(2);
    fill(array, 2, &a);
    const ItemArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, &b), 1229, "ut_ItemArray", INSERT_AT, "");
    EXPECT_FAILURE(array.SetAt(2, &b), 1229, "ut_ItemArray", SET_AT, "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_ItemArray", DELETE_AT, "");
    EXPECT_FAILURE(array[2], 1229, "ut_ItemArray", AT, "");
    EXPECT_FAILURE(constant[2], 1229, "ut_ItemArray", AT_CONST, "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_ItemArray", AT_CONST, "");
    EXPECT_EQ(contentOf(array), (Content{&a, &a}));
    EXPECT_EQ(array.size(), 2u);
}

TEST_F(ItemArrayTest, ACopyHasTheSameItemsAndCapacity) {
    ItemArray array(7);
    array.Append(&a);
    array.Append(nullptr);
    array.Append(&c);
    ItemArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{&a, nullptr, &c}));
    copy.SetAt(0, &d);
    EXPECT_EQ(array[0], &a);
}

TEST_F(ItemArrayTest, NeverDeletesItsItems) {
    class CountedItem : public Item {
    public:
        explicit CountedItem(int& deleted) : m_deleted(deleted) {}
        ~CountedItem() override {
            ++m_deleted;
        }

    private:
        int& m_deleted;
    };
    int deleted = 0;
    const std::unique_ptr<Item> item(new CountedItem(deleted));
    {
        ItemArray array(2);
        fill(array, 3, item.get());
        array.SetAt(0, &a);
        array.DeleteAt(1);
        const ItemArray copy(array);
        array.truncate(0);
    }
    EXPECT_EQ(deleted, 0);
}

TEST_F(ItemArrayTest, FindReturnsTheFirstIndexOfAnItem) {
    ItemArray array(4);
    EXPECT_EQ(array.Find(&a), NOT_FOUND);
    EXPECT_EQ(array.Find(nullptr), NOT_FOUND);
    array.Append(&a);
    array.Append(&b);
    array.Append(nullptr);
    array.Append(&b);
    array.Append(&c);
    EXPECT_EQ(array.Find(&a), 0u);
    EXPECT_EQ(array.Find(&b), 1u);
    EXPECT_EQ(array.Find(nullptr), 2u);
    EXPECT_EQ(array.Find(&c), 4u);
    EXPECT_EQ(array.Find(&d), NOT_FOUND);
    array.truncate(4);
    EXPECT_EQ(array.Find(&c), NOT_FOUND);
}

TEST_F(ItemArrayTest, AppendOfAnArrayAddsItsItemsInOrder) {
    ItemArray array(20);
    array.Append(&a);
    ItemArray other(4);
    other.Append(&b);
    other.Append(nullptr);
    other.Append(&c);
    array.Append(other);
    EXPECT_EQ(contentOf(array), (Content{&a, &b, nullptr, &c}));
    EXPECT_EQ(contentOf(other), (Content{&b, nullptr, &c}));
    EXPECT_EQ(array.size(), 20u);
}

TEST_F(ItemArrayTest, AppendOfAnArrayGrowsOnceAsSoonAsItWouldBeFull) {
    ItemArray ten(10);
    fill(ten, 10, &b);
    ItemArray array(20);
    fill(array, 9, &a);
    array.Append(ten);
    EXPECT_EQ(array.length(), 19u);
    EXPECT_EQ(array.size(), 20u);

    ItemArray exact(20);
    fill(exact, 10, &a);
    exact.Append(ten);
    EXPECT_EQ(exact.length(), 20u);
    EXPECT_EQ(exact.size(), 40u);
}

TEST_F(ItemArrayTest, AppendOfAnArrayGrowsByItsLengthIfMoreThanTwenty) {
    ItemArray many(30);
    ItemArray array(5);
    fill(array, 5, &a);
    fill(many, 20, &b);
    array.Append(many);
    EXPECT_EQ(array.length(), 25u);
    EXPECT_EQ(array.size(), 25u);
    fill(many, 1, &c);
    array.Append(many);
    EXPECT_EQ(array.length(), 46u);
    EXPECT_EQ(array.size(), 46u);
    EXPECT_EQ(array[45], &c);
}

TEST_F(ItemArrayTest, AppendOfAnEmptyArrayToAFullOneStillGrows) {
    ItemArray none(0);
    ItemArray array(2);
    fill(array, 2, &a);
    array.Append(none);
    EXPECT_EQ(contentOf(array), (Content{&a, &a}));
    EXPECT_EQ(array.size(), 22u);
}

TEST_F(ItemArrayTest, AnArrayAppendedToItselfDoubles) {
    ItemArray array(3);
    array.Append(&a);
    array.Append(&b);
    array.Append(&c);
    array.Append(array);
    EXPECT_EQ(contentOf(array), (Content{&a, &b, &c, &a, &b, &c}));
    EXPECT_EQ(array.size(), 23u);
}

TEST_F(ItemArrayTest, AppendTraces) {
    ItemArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(&a);
    array.Append(nullptr);
    EXPECT_EQ(test::traceLines(log), (Lines{appending(&a, 0), std::string(APPEND) + "Appending [(nil)] at 1"}));
}

TEST_F(ItemArrayTest, AppendOfAnArrayTracesEachItem) {
    ItemArray array(4);
    array.Append(&a);
    ItemArray other(4);
    other.Append(&b);
    other.Append(&c);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(other);
    EXPECT_EQ(test::traceLines(log), (Lines{appending(&b, 1), appending(&c, 2)}));
}

TEST_F(ItemArrayTest, InsertAtTracesEachMoveFromTheTopDown) {
    ItemArray array(4);
    fill(array, 3, &a);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, &b);
    const std::string start = std::string("3 ") + INSERT_AT + ": ";
    EXPECT_EQ(test::traceLines(log), (Lines{std::string("4 ") + INSERT_AT + ": Enter", start + "moving from 2 to 3",
                                            start + "moving from 1 to 2", start + "setting 1 = " + text(&b)}));
}

TEST_F(ItemArrayTest, ARejectedInsertAtTracesOnlyItsEntry) {
    ItemArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, &b));
    EXPECT_EQ(test::traceLines(log), (Lines{std::string("4 ") + INSERT_AT + ": Enter"}));
}

TEST_F(ItemArrayTest, OtherOperationsDoNotTrace) {
    ItemArray array(4);
    array.Append(&a);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, &b);
    array.Find(&b);
    CATCH_FAILURE(array[9]);
    ItemArray copy(array);
    copy.DeleteAt(0);
    copy.truncate(0);
    copy.sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST_F(ItemArrayTest, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    ItemArray array(1);
    fill(array, 2, &a);
    array.InsertAt(0, &b);
    array.Append(array);
    array.DeleteAt(0);
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST_F(ItemArrayTest, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        ItemArray array(2);
        fill(array, 50, &a);
        const std::unique_ptr<utility::Array> copy(new ItemArray(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST_F(ItemArrayTest, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        ItemArray array(2);
        array.Append(&a);
        array.Append(&b);
        std::unique_ptr<framework::Exception> failure;
        int failures = 0;
        const auto check = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(array), (Content{&a, &b}));
            EXPECT_EQ(array.size(), 2u);
            EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(ItemArray(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(ItemArray{array}); }, check);
        EXPECT_EQ(failures, 2);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(array.Append(array)); }, check);
        EXPECT_EQ(failures, 3);
        EXPECT_EQ(contentOf(array), (Content{&a, &b, &a, &b}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST_F(ItemArrayTest, WithoutMemoryAFullArrayStaysUnchanged) {
    ItemArray array(1);
    array.Append(&a);
    std::unique_ptr<framework::Exception> failure;
    int failures = 0;
    const auto check = [&] {
        ++failures;
        EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
        EXPECT_EQ(array.length(), array.size());
    };
    test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(array.Append(&b)); }, check);
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(contentOf(array), (Content{&a, &b}));
    fill(array, 19, &c);
    test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(array.InsertAt(0, &d)); }, check);
    EXPECT_EQ(failures, 2);
    EXPECT_EQ(array.length(), 22u);
    EXPECT_EQ(array[0], &d);
}

TEST_F(ItemArrayTest, BehavesAsAVectorUnderRandomOperations) {
    std::array<Item, 5> items;
    const auto makeValue = [&](std::mt19937& random) {
        const size_t pick = random() % 6;
        return pick < items.size() ? &items[pick] : nullptr;
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<ItemArray, Item*>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
