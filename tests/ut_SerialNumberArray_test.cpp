#include "ut_SerialNumberArray.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "ArrayModel.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "HeapGrowth.h"
#include "LogCapture.h"
#include "TraceLines.h"
#include "fw_Memory.h"
#include "ut_SerialNumber.h"

namespace {

using utility::SerialNumber;
using utility::SerialNumberArray;
using Content = std::vector<SerialNumber*>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 4618;
const char* const TEXT = "00c0ff112233aabb4455667788000000";
const unsigned int NOT_FOUND = 0xFFFFFFFF;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";
const char* const APPEND = "3 void utility::SerialNumberArray::Append(utility::SerialNumber*): ";
const char* const INSERT_AT = "void utility::SerialNumberArray::InsertAt(unsigned int, utility::SerialNumber*)";
const char* const SET_AT = "void utility::SerialNumberArray::SetAt(unsigned int, utility::SerialNumber*)";
const char* const DELETE_AT = "void utility::SerialNumberArray::DeleteAt(unsigned int)";
const char* const AT = "utility::SerialNumber*& utility::SerialNumberArray::operator[](unsigned int)";
const char* const AT_CONST = "utility::SerialNumber* const& utility::SerialNumberArray::operator[](unsigned int) const";

static_assert(!std::is_copy_assignable<SerialNumberArray>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, SerialNumberArray>::value, "the constructor must be explicit");

// An array that does not delete its elements.
class Unowned : public SerialNumberArray {
public:
    using SerialNumberArray::SerialNumberArray;
    Unowned(const Unowned&) = default;
    ~Unowned() override {
        truncate(0);
    }
};

Content contentOf(const SerialNumberArray& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(SerialNumberArray& array, unsigned int count, SerialNumber* element) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(element);
}

std::string text(SerialNumber* element) {
    char result[40];
    std::snprintf(result, sizeof result, "%p", static_cast<void*>(element));
    return result;
}

std::string appending(SerialNumber* element, int index) {
    return APPEND + ("Appending [" + text(element) + "] at ") + std::to_string(index);
}

class SerialNumberArrayTest : public testing::Test {
protected:
    SerialNumber a{"01"};
    SerialNumber b{"02"};
    SerialNumber c{"03"};
    SerialNumber d{"04"};
};

TEST_F(SerialNumberArrayTest, UsageExample) {
    utility::SerialNumberArray numbers(4);
    numbers.Append(new utility::SerialNumber("00c0ff112233aabb4455667788000000"));
    EXPECT_TRUE(numbers[0]->isValid());
}

TEST_F(SerialNumberArrayTest, ACapacityOfZeroMeansTwenty) {
    const Unowned array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST_F(SerialNumberArrayTest, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    Unowned array(2);
    array.Append(&a);
    array.Append(nullptr);
    EXPECT_EQ(array.size(), 2u);
    array.Append(&c);
    EXPECT_EQ(array.size(), 22u);
    EXPECT_EQ(contentOf(array), (Content{&a, nullptr, &c}));
}

TEST_F(SerialNumberArrayTest, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    Unowned array(3);
    array.InsertAt(0, &a);
    array.InsertAt(1, &b);
    array.InsertAt(0, &c);
    array.InsertAt(2, &d);
    EXPECT_EQ(contentOf(array), (Content{&c, &a, &d, &b}));
    EXPECT_EQ(array.size(), 23u);
}

TEST_F(SerialNumberArrayTest, SetAtReplacesAndDeleteAtClosesTheGap) {
    Unowned array(3);
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

TEST_F(SerialNumberArrayTest, TheIndexOperatorReturnsAReferenceToTheSlot) {
    Unowned array(2);
    fill(array, 2, &a);
    array[1] = &b;
    const SerialNumberArray& constant = array;
    EXPECT_EQ(constant[1], &b);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST_F(SerialNumberArrayTest, BadIndicesThrowAndChangeNothing) {
    Unowned array(2);
    fill(array, 2, &a);
    const SerialNumberArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, &b), 1229, "ut_SerialNumberArray", INSERT_AT, "");
    EXPECT_FAILURE(array.SetAt(2, &b), 1229, "ut_SerialNumberArray", SET_AT, "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_SerialNumberArray", DELETE_AT, "");
    EXPECT_FAILURE(array[2], 1229, "ut_SerialNumberArray", AT, "");
    EXPECT_FAILURE(constant[2], 1229, "ut_SerialNumberArray", AT_CONST, "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_SerialNumberArray", AT_CONST, "");
    EXPECT_EQ(contentOf(array), (Content{&a, &a}));
    EXPECT_EQ(array.size(), 2u);
}

TEST_F(SerialNumberArrayTest, ACopyHasTheSameElementsAndCapacity) {
    Unowned array(7);
    array.Append(&a);
    array.Append(nullptr);
    array.Append(&c);
    Unowned copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{&a, nullptr, &c}));
    copy.SetAt(0, &d);
    EXPECT_EQ(array[0], &a);
}

TEST_F(SerialNumberArrayTest, TheDestructorDeletesTheElements) {
    EXPECT_LT(test::heapGrowth([] {
                  SerialNumberArray array(2);
                  array.Append(new SerialNumber(TEXT));
                  array.Append(nullptr);
                  array.InsertAt(0, new SerialNumber(TEXT));
              }),
              8000u);
}

TEST_F(SerialNumberArrayTest, TheDestructorDeletesTheElementsThroughTheBaseClass) {
    EXPECT_LT(test::heapGrowth([] {
                  auto array = std::make_unique<SerialNumberArray>(2);
                  array->Append(new SerialNumber(TEXT));
                  const std::unique_ptr<utility::Array> base(std::move(array));
              }),
              8000u);
}

TEST_F(SerialNumberArrayTest, ReplacedRemovedAndTruncatedElementsAreNotDeleted) {
    std::unique_ptr<SerialNumber> first(new SerialNumber(TEXT));
    std::unique_ptr<SerialNumber> second(new SerialNumber(TEXT));
    std::unique_ptr<SerialNumber> third(new SerialNumber(TEXT));
    {
        SerialNumberArray array(4);
        array.Append(first.get());
        array.Append(second.get());
        array.Append(third.get());
        array.SetAt(0, nullptr);
        array.DeleteAt(1);
        array.truncate(1);
    }
    const SerialNumber expected(TEXT);
    EXPECT_TRUE(*first == expected);
    EXPECT_TRUE(*second == expected);
    EXPECT_TRUE(*third == expected);
}

TEST_F(SerialNumberArrayTest, ACopyDeletesTheSameElementsUnlessTheyAreTruncated) {
    SerialNumberArray array(4);
    array.Append(new SerialNumber(TEXT));
    SerialNumberArray copy(array);
    EXPECT_EQ(copy[0], array[0]);
    array.truncate(0);
    EXPECT_TRUE(*copy[0] == SerialNumber(TEXT));
}

TEST_F(SerialNumberArrayTest, FindReturnsTheFirstIndexOfAnElement) {
    Unowned array(4);
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

TEST_F(SerialNumberArrayTest, AppendOfAnArrayAddsItsElementsInOrder) {
    Unowned array(20);
    array.Append(&a);
    Unowned other(4);
    other.Append(&b);
    other.Append(nullptr);
    other.Append(&c);
    array.Append(other);
    EXPECT_EQ(contentOf(array), (Content{&a, &b, nullptr, &c}));
    EXPECT_EQ(contentOf(other), (Content{&b, nullptr, &c}));
    EXPECT_EQ(array.size(), 20u);
}

TEST_F(SerialNumberArrayTest, AppendOfAnArrayGrowsOnceAsSoonAsItWouldBeFull) {
    Unowned ten(10);
    fill(ten, 10, &b);
    Unowned array(20);
    fill(array, 9, &a);
    array.Append(ten);
    EXPECT_EQ(array.length(), 19u);
    EXPECT_EQ(array.size(), 20u);

    Unowned exact(20);
    fill(exact, 10, &a);
    exact.Append(ten);
    EXPECT_EQ(exact.length(), 20u);
    EXPECT_EQ(exact.size(), 40u);
}

TEST_F(SerialNumberArrayTest, AppendOfAnArrayGrowsByItsLengthIfMoreThanTwenty) {
    Unowned many(30);
    Unowned array(5);
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

TEST_F(SerialNumberArrayTest, AppendOfAnEmptyArrayToAFullOneStillGrows) {
    Unowned none(0);
    Unowned array(2);
    fill(array, 2, &a);
    array.Append(none);
    EXPECT_EQ(contentOf(array), (Content{&a, &a}));
    EXPECT_EQ(array.size(), 22u);
}

TEST_F(SerialNumberArrayTest, AnArrayAppendedToItselfDoubles) {
    Unowned array(3);
    array.Append(&a);
    array.Append(&b);
    array.Append(&c);
    array.Append(array);
    EXPECT_EQ(contentOf(array), (Content{&a, &b, &c, &a, &b, &c}));
    EXPECT_EQ(array.size(), 23u);
}

TEST_F(SerialNumberArrayTest, AppendTraces) {
    Unowned array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(&a);
    array.Append(nullptr);
    EXPECT_EQ(test::traceLines(log), (Lines{appending(&a, 0), std::string(APPEND) + "Appending [(nil)] at 1"}));
}

TEST_F(SerialNumberArrayTest, AppendOfAnArrayTracesEachElement) {
    Unowned array(4);
    array.Append(&a);
    Unowned other(4);
    other.Append(&b);
    other.Append(&c);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(other);
    EXPECT_EQ(test::traceLines(log), (Lines{appending(&b, 1), appending(&c, 2)}));
}

TEST_F(SerialNumberArrayTest, InsertAtTracesEachMoveFromTheTopDown) {
    Unowned array(4);
    fill(array, 3, &a);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, &b);
    const std::string start = std::string("3 ") + INSERT_AT + ": ";
    EXPECT_EQ(test::traceLines(log), (Lines{std::string("4 ") + INSERT_AT + ": Enter", start + "moving from 2 to 3",
                                            start + "moving from 1 to 2", start + "setting 1 = " + text(&b)}));
}

TEST_F(SerialNumberArrayTest, ARejectedInsertAtTracesOnlyItsEntry) {
    Unowned array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, &b));
    EXPECT_EQ(test::traceLines(log), (Lines{std::string("4 ") + INSERT_AT + ": Enter"}));
}

TEST_F(SerialNumberArrayTest, OtherOperationsDoNotTrace) {
    Unowned array(4);
    array.Append(&a);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, &b);
    array.Find(&b);
    CATCH_FAILURE(array[9]);
    Unowned copy(array);
    copy.DeleteAt(0);
    copy.truncate(0);
    copy.sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST_F(SerialNumberArrayTest, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    Unowned array(1);
    fill(array, 2, &a);
    array.InsertAt(0, &b);
    array.Append(array);
    array.DeleteAt(0);
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST_F(SerialNumberArrayTest, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        Unowned array(2);
        fill(array, 50, &a);
        const std::unique_ptr<utility::Array> copy(new Unowned(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST_F(SerialNumberArrayTest, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        Unowned array(2);
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
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(Unowned(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(Unowned{array}); }, check);
        EXPECT_EQ(failures, 2);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(array.Append(array)); }, check);
        EXPECT_EQ(failures, 3);
        EXPECT_EQ(contentOf(array), (Content{&a, &b, &a, &b}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST_F(SerialNumberArrayTest, WithoutMemoryAFullArrayStaysUnchanged) {
    Unowned array(1);
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

TEST_F(SerialNumberArrayTest, BehavesAsAVectorUnderRandomOperations) {
    std::vector<SerialNumber> elements(5, SerialNumber("05"));
    const auto makeValue = [&](std::mt19937& random) {
        const size_t pick = random() % 6;
        return pick < elements.size() ? &elements[pick] : nullptr;
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<Unowned, SerialNumber*>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
