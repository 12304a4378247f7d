#include "ut_StringArray.h"

#include <cstddef>
#include <memory>
#include <new>
#include <optional>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "TraceLines.h"
#include "fw_Memory.h"
#include "ut_Debug.h"

namespace {

using utility::StringArray;
using Text = std::optional<std::string>;
using Content = std::vector<Text>;

constexpr const char* reallocName = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";
constexpr const char* insertAtName = "void utility::StringArray::InsertAt(unsigned int, const char*)";
constexpr const char* setAtName = "void utility::StringArray::SetAt(unsigned int, const char*)";
constexpr const char* deleteAtName = "void utility::StringArray::DeleteAt(unsigned int)";
constexpr const char* atName = "char*& utility::StringArray::operator[](unsigned int)";
constexpr const char* atConstName = "char* const& utility::StringArray::operator[](unsigned int) const";
constexpr unsigned int growthSwitch = 292;

static_assert(!std::is_copy_assignable<StringArray>::value, "assignment would share the texts");
static_assert(!std::is_convertible<unsigned int, StringArray>::value, "the constructor must be explicit");

class OpenStringArray : public StringArray {
public:
    using StringArray::StringArray;
    const char* slot(unsigned int index) const {
        return static_cast<char**>(m_block)[index];
    }
};

Text textOf(const char* text) {
    return text != nullptr ? Text(text) : std::nullopt;
}

const char* pointerOf(const Text& text) {
    return text ? text->c_str() : nullptr;
}

Content contentOf(const StringArray& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(textOf(array[index]));
    return content;
}

void fill(StringArray& array, unsigned int count) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(std::to_string(index).c_str());
}

TEST(StringArray, UsageExample) {
    utility::StringArray names(0);
    names.Append("volume");
    names.Append("portal:3260", 6);
    EXPECT_STREQ(names.ElementAt(1), "portal");
    EXPECT_EQ(names.ElementAt(2), nullptr);
}

TEST(StringArray, ACapacityOfZeroMeansTwenty) {
    const StringArray array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST(StringArray, DoublesWhenFull) {
    StringArray array(0);
    fill(array, 20);
    EXPECT_EQ(array.size(), 20u);
    array.Append("20");
    EXPECT_EQ(array.size(), 40u);
    fill(array, 20);
    EXPECT_EQ(array.size(), 80u);
    EXPECT_EQ(array.length(), 41u);
    EXPECT_STREQ(array[19], "19");
    EXPECT_STREQ(array[20], "20");
    EXPECT_STREQ(array[21], "0");
}

TEST(StringArray, DoublesTheCapacityGivenToTheConstructor) {
    StringArray array(3);
    fill(array, 3);
    EXPECT_EQ(array.size(), 3u);
    array.InsertAt(1, "x");
    EXPECT_EQ(array.size(), 6u);
    EXPECT_EQ(contentOf(array), (Content{"0", "x", "1", "2"}));
    fill(array, 2);
    array.Append("portal:3260", 6);
    EXPECT_EQ(array.size(), 12u);
    EXPECT_STREQ(array[6], "portal");
}

TEST(StringArray, KeepsPrivateCopies) {
    char text[] = "volume";
    StringArray array(4);
    array.Append(text);
    array.Append(text, 3);
    array.InsertAt(0, text);
    array.Append("x");
    array.SetAt(3, text);
    text[0] = 'V';
    EXPECT_EQ(contentOf(array), (Content{"volume", "volume", "vol", "volume"}));
    EXPECT_NE(array[0], array[1]);
}

TEST(StringArray, AppendWithALengthStopsAtTheNul) {
    StringArray array(4);
    array.Append("volume", 0);
    array.Append("volume", 5);
    array.Append("volume", 6);
    array.Append("volume", 7);
    array.Append("volume", 0xFFFFFFFF);
    array.Append("", 3);
    EXPECT_EQ(contentOf(array), (Content{"", "volum", "volume", "volume", "volume", ""}));
}

TEST(StringArray, AppendWithALengthDoesNotReadPastTheLength) {
    const char text[3] = {'a', 'b', 'c'};
    StringArray array(4);
    array.Append(text, 3);
    EXPECT_STREQ(array[0], "abc");
}

TEST(StringArray, ANullTextMakesANullElement) {
    StringArray array(4);
    array.Append(nullptr);
    array.Append(nullptr, 5);
    array.InsertAt(1, nullptr);
    array.Append("");
    EXPECT_EQ(contentOf(array), (Content{std::nullopt, std::nullopt, std::nullopt, ""}));
    EXPECT_EQ(array.ElementAt(0), nullptr);
}

TEST(StringArray, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    StringArray array(4);
    array.InsertAt(0, "a");
    array.InsertAt(1, "b");
    array.InsertAt(0, "c");
    array.InsertAt(2, "d");
    EXPECT_EQ(contentOf(array), (Content{"c", "a", "d", "b"}));
}

TEST(StringArray, SetAtReplacesTheText) {
    const long before = framework::Memory::staticOutstanding();
    {
        StringArray array(4);
        fill(array, 3);
        array.SetAt(0, "first");
        array.SetAt(2, "");
        EXPECT_EQ(contentOf(array), (Content{"first", "1", ""}));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 4);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(StringArray, SetAtOfAnEqualTextKeepsThePointer) {
    StringArray array(4);
    array.Append("volume");
    const char* const copy = array[0];
    const std::string equal = "volume";
    const unsigned long before = test::allocationCount();
    array.SetAt(0, equal.c_str());
    EXPECT_EQ(array[0], copy);
    array.SetAt(0, array[0]);
    EXPECT_EQ(array[0], copy);
    EXPECT_EQ(test::allocationCount(), before);
    EXPECT_STREQ(copy, "volume");
}

TEST(StringArray, SetAtOfNullFreesTheTextAndStoresNull) {
    StringArray array(4);
    array.Append("volume");
    const long before = framework::Memory::staticOutstanding();
    array.SetAt(0, nullptr);
    EXPECT_EQ(array[0], nullptr);
    EXPECT_EQ(array.length(), 1u);
    EXPECT_EQ(framework::Memory::staticOutstanding(), before - 1);
    array.SetAt(0, nullptr);
    EXPECT_EQ(array[0], nullptr);
    array.SetAt(0, "again");
    EXPECT_STREQ(array[0], "again");
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(StringArray, AcceptsItsOwnTextsAsArguments) {
    StringArray array(2);
    array.Append("volume");
    array.Append("portal");
    array.Append(array[0]);
    array.InsertAt(0, array[1]);
    array.Append(array[1] + 1, 3);
    EXPECT_EQ(contentOf(array), (Content{"portal", "volume", "portal", "volume", "olu"}));
    array.SetAt(0, array[0] + 3);
    array.SetAt(1, array[2]);
    EXPECT_EQ(contentOf(array), (Content{"tal", "portal", "portal", "volume", "olu"}));
    EXPECT_NE(array[1], array[2]);
}

TEST(StringArray, AcceptsItsOwnTextsAsArgumentsWhileItGrows) {
    StringArray array(1);
    array.Append("volume");
    array.Append(array[0]);
    EXPECT_EQ(array.size(), 2u);
    array.InsertAt(0, array[1] + 2);
    EXPECT_EQ(array.size(), 4u);
    array.Append("x");
    array.Append(array[1], 2);
    EXPECT_EQ(array.size(), 8u);
    EXPECT_EQ(contentOf(array), (Content{"lume", "volume", "volume", "x", "vo"}));
}

TEST(StringArray, DeleteAtFreesTheTextClosesTheGapAndClearsTheTopSlot) {
    OpenStringArray array(4);
    fill(array, 3);
    array.Append(nullptr);
    const long before = framework::Memory::staticOutstanding();
    array.DeleteAt(1);
    EXPECT_EQ(contentOf(array), (Content{"0", "2", std::nullopt}));
    EXPECT_EQ(framework::Memory::staticOutstanding(), before - 1);
    EXPECT_EQ(array.slot(3), nullptr);
    array.DeleteAt(2);
    EXPECT_EQ(framework::Memory::staticOutstanding(), before - 1);
    array.DeleteAt(1);
    EXPECT_EQ(array.slot(1), nullptr);
    array.DeleteAt(0);
    EXPECT_EQ(array.slot(0), nullptr);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(framework::Memory::staticOutstanding(), before - 3);
}

TEST(StringArray, DeleteAllFreesEveryTextAndKeepsTheBlock) {
    OpenStringArray array(4);
    const long empty = framework::Memory::staticOutstanding();
    fill(array, 2);
    array.Append(nullptr);
    array.DeleteAll();
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 4u);
    EXPECT_EQ(framework::Memory::staticOutstanding(), empty);
    for (unsigned int index = 0; index < 3; ++index)
        EXPECT_EQ(array.slot(index), nullptr);
    array.DeleteAll();
    array.Append("again");
    EXPECT_EQ(contentOf(array), (Content{"again"}));
}

TEST(StringArray, TruncateDoesNotFreeTheTexts) {
    const long before = framework::Memory::staticOutstanding();
    char* rest = nullptr;
    {
        StringArray array(4);
        fill(array, 2);
        rest = array[1];
        array.truncate(2);
        EXPECT_EQ(array.length(), 2u);
        array.truncate(1);
        EXPECT_EQ(contentOf(array), (Content{"0"}));
    }
    EXPECT_STREQ(rest, "1");
    EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
    framework::Memory::StaticFreeString(rest);
}

TEST(StringArray, ElementAtIsNullOutOfRange) {
    StringArray array(4);
    array.Append("volume");
    EXPECT_STREQ(array.ElementAt(0), "volume");
    EXPECT_EQ(array.ElementAt(0), array[0]);
    EXPECT_EQ(array.ElementAt(1), nullptr);
    EXPECT_EQ(array.ElementAt(0xFFFFFFFF), nullptr);
    array.Append("portal");
    char* const rest = array[1];
    array.truncate(1);
    EXPECT_EQ(array.ElementAt(1), nullptr) << "whatever its slot holds";
    framework::Memory::StaticFreeString(rest);
}

TEST(StringArray, TheIndexOperatorReturnsAReferenceToTheSlot) {
    const long before = framework::Memory::staticOutstanding();
    {
        StringArray array(4);
        array.Append(nullptr);
        array[0] = framework::Memory::StaticAllocString("volume");
        const StringArray& constant = array;
        EXPECT_STREQ(constant[0], "volume");
        EXPECT_EQ(&constant[0], &array[0]);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(StringArray, BadIndicesThrowAndChangeNothing) {
    StringArray array(2);
    fill(array, 2);
    const StringArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, "x"), 1229, "ut_StringArray", insertAtName, "");
    EXPECT_FAILURE(array.SetAt(2, "x"), 1229, "ut_StringArray", setAtName, "");
    EXPECT_FAILURE(array.SetAt(2, nullptr), 1229, "ut_StringArray", setAtName, "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_StringArray", deleteAtName, "");
    EXPECT_FAILURE(array[2], 1229, "ut_StringArray", atName, "");
    EXPECT_FAILURE(constant[2], 1229, "ut_StringArray", atConstName, "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, "x"), 1229, "ut_StringArray", insertAtName, "");
    EXPECT_FAILURE(array.SetAt(0xFFFFFFFF, "x"), 1229, "ut_StringArray", setAtName, "");
    EXPECT_FAILURE(array.DeleteAt(0xFFFFFFFF), 1229, "ut_StringArray", deleteAtName, "");
    EXPECT_FAILURE(array[0xFFFFFFFF], 1229, "ut_StringArray", atName, "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_StringArray", atConstName, "");
    EXPECT_EQ(contentOf(array), (Content{"0", "1"}));
    EXPECT_EQ(array.size(), 2u);
}

TEST(StringArray, AnEmptyArrayHasNoElementToSetDeleteOrRead) {
    StringArray array(2);
    const StringArray& constant = array;
    EXPECT_FAILURE(array.SetAt(0, "x"), 1229, "ut_StringArray", setAtName, "");
    EXPECT_FAILURE(array.DeleteAt(0), 1229, "ut_StringArray", deleteAtName, "");
    EXPECT_FAILURE(array[0], 1229, "ut_StringArray", atName, "");
    EXPECT_FAILURE(constant[0], 1229, "ut_StringArray", atConstName, "");
    EXPECT_EQ(array.length(), 0u);
}

TEST(StringArray, ACopyHasTheSameCapacityAndItsOwnTexts) {
    StringArray array(7);
    array.Append("volume");
    array.Append(nullptr);
    array.Append("");
    StringArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{"volume", std::nullopt, ""}));
    EXPECT_NE(copy[0], array[0]);
    array.DeleteAll();
    EXPECT_STREQ(copy[0], "volume");
}

TEST(StringArray, ACopyOfAFullArrayIsFull) {
    StringArray array(3);
    fill(array, 3);
    const StringArray copy(array);
    EXPECT_EQ(copy.size(), 3u);
    EXPECT_EQ(contentOf(copy), contentOf(array));
}

TEST(StringArray, SortDoesNotChangeTheOrder) {
    StringArray array(4);
    array.Append("b");
    array.Append("a");
    array.sort();
    EXPECT_EQ(contentOf(array), (Content{"b", "a"}));
}

TEST(StringArray, DoesNotTraceWithAnySwitchOn) {
    for (unsigned int number = 0; number < 8192; ++number) {
        if (number != growthSwitch)
            utility::Debug::setDebugOn(number);
    }
    const test::LogCapture log;
    StringArray array(1);
    fill(array, 3);
    array.InsertAt(0, "x");
    array.SetAt(0, "y");
    CATCH_FAILURE(array.InsertAt(9, "x"));
    StringArray copy(array);
    copy.DeleteAt(0);
    copy.DeleteAll();
    EXPECT_EQ(test::traceLines(log), std::vector<std::string>());
    for (unsigned int number = 0; number < 8192; ++number)
        utility::Debug::setDebugOff(number);
}

TEST(StringArray, TheDestructorFreesTextsAndBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        StringArray array(2);
        fill(array, 50);
        const std::unique_ptr<utility::Array> copy(new StringArray(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 102);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(StringArray, WithoutMemoryForABlockItThrowsAndForATextTheElementIsNull) {
    const long before = framework::Memory::staticOutstanding();
    for (unsigned long nth = 1; nth <= 2; ++nth) {
        const bool blockFails = nth == 1;
        const auto expectFailure = [&](const std::unique_ptr<framework::Exception>& failure) {
            if (blockFails)
                EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", reallocName, "", true));
            else
                EXPECT_EQ(failure, nullptr);
        };
        const auto run = [&](auto&& operation, const Content& withNull) {
            StringArray array(2);
            fill(array, 2);
            std::unique_ptr<framework::Exception> failure;
            {
                const test::FailingAllocation failing(nth);
                failure = CATCH_FAILURE(operation(array));
            }
            expectFailure(failure);
            EXPECT_EQ(contentOf(array), blockFails ? (Content{"0", "1"}) : withNull);
            EXPECT_EQ(array.size(), blockFails ? 2u : 4u);
        };
        run([](StringArray& array) { array.Append("x"); }, {"0", "1", std::nullopt});
        run([](StringArray& array) { array.Append("x", 1); }, {"0", "1", std::nullopt});
        run([](StringArray& array) { array.InsertAt(1, "x"); }, {"0", std::nullopt, "1"});
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(StringArray, EveryOperationAllocatesOnlyWhatItNeeds) {
    StringArray array(2);
    const auto allocations = [](auto&& operation) {
        const unsigned long before = test::allocationCount();
        operation();
        return test::allocationCount() - before;
    };
    EXPECT_EQ(allocations([&] { array.Append("0"); }), 1u);
    EXPECT_EQ(allocations([&] { array.Append(nullptr); }), 0u);
    EXPECT_EQ(allocations([&] { array.Append("2", 1); }), 2u);
    EXPECT_EQ(allocations([&] { array.SetAt(0, "x"); }), 1u);
    EXPECT_EQ(allocations([&] { array.DeleteAt(0); }), 0u);
    EXPECT_EQ(allocations([&] { array.InsertAt(0, "y"); }), 1u);
    EXPECT_EQ(allocations([&] { StringArray{array}; }), 3u);
    EXPECT_EQ(allocations([&] { array.DeleteAll(); }), 0u);
}

TEST(StringArray, WithoutMemorySetAtStoresNull) {
    const long before = framework::Memory::staticOutstanding();
    {
        StringArray array(2);
        fill(array, 2);
        {
            const test::FailingAllocation failing(1);
            array.SetAt(0, "x");
        }
        EXPECT_EQ(contentOf(array), (Content{std::nullopt, "1"}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(StringArray, WithoutMemoryConstructionThrowsAndDoesNotLeak) {
    StringArray array(2);
    fill(array, 2);
    const long before = framework::Memory::staticOutstanding();
    std::unique_ptr<framework::Exception> failure;
    int failures = 0;
    test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(StringArray(3)); },
                                 [&] {
                                     ++failures;
                                     EXPECT_TRUE(
                                         test::isFailure(failure.get(), 1230, "ut_Array", reallocName, "", true));
                                     EXPECT_EQ(framework::Memory::staticOutstanding(), before);
                                 });
    EXPECT_EQ(failures, 1);
}

TEST(StringArray, WithoutMemoryACopyThrowsForTheBlockAndHasNullForAText) {
    StringArray array(2);
    fill(array, 2);
    const long before = framework::Memory::staticOutstanding();
    const std::vector<Content> expected = {Content{std::nullopt, "1"}, Content{"0", std::nullopt}};
    for (unsigned long nth = 1; nth <= 3; ++nth) {
        std::unique_ptr<StringArray> copy;
        std::unique_ptr<framework::Exception> failure;
        alignas(StringArray) unsigned char storage[sizeof(StringArray)];
        StringArray* made = nullptr;
        {
            const test::FailingAllocation failing(nth);
            failure = CATCH_FAILURE(made = new (storage) StringArray(array));
        }
        if (nth == 1) {
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", reallocName, "", true));
            EXPECT_EQ(made, nullptr);
        } else {
            EXPECT_EQ(failure, nullptr);
            ASSERT_NE(made, nullptr);
            EXPECT_EQ(contentOf(*made), expected[nth - 2]);
            made->~StringArray();
        }
        EXPECT_EQ(framework::Memory::staticOutstanding(), before);
    }
}

class StringModel {
public:
    explicit StringModel(unsigned int seed) : m_random(seed), m_array(seed), m_capacity(seed) {}

    void run(int steps) {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            takeStep();
            expectEqual(m_array);
        }
    }

private:
    unsigned int below(std::size_t limit) {
        return static_cast<unsigned int>(m_random() % limit);
    }

    Text makeText() {
        if (below(8) == 0)
            return std::nullopt;
        return std::string(below(40), static_cast<char>('a' + below(26)));
    }

    void takeStep() {
        const std::size_t length = m_model.size();
        const unsigned int index = length > 0 ? below(length) : 0;
        switch (length > 0 ? below(12) : 11) {
        case 0:
            return expectEqual(StringArray(m_array));
        case 1:
            return below(20) == 0 ? clear() : replaceByOwn(index, below(length));
        case 2:
        case 3:
        case 4:
            return remove(index);
        case 5:
        case 6:
            return replace(index, makeText());
        case 7:
        case 8:
            return insert(below(length + 1), makeText());
        case 9:
            return appendPart(makeText(), below(50));
        default:
            return append(makeText());
        }
    }

    void growWhenFull() {
        if (m_model.size() == m_capacity)
            m_capacity *= 2;
    }

    void append(const Text& text) {
        growWhenFull();
        m_array.Append(pointerOf(text));
        m_model.push_back(text);
    }

    void appendPart(const Text& text, unsigned int length) {
        growWhenFull();
        m_array.Append(pointerOf(text), length);
        m_model.push_back(text ? Text(text->substr(0, length)) : text);
    }

    void insert(unsigned int index, const Text& text) {
        growWhenFull();
        m_array.InsertAt(index, pointerOf(text));
        m_model.insert(m_model.begin() + static_cast<std::ptrdiff_t>(index), text);
    }

    void replace(unsigned int index, const Text& text) {
        m_array.SetAt(index, pointerOf(text));
        m_model[index] = text;
    }

    void replaceByOwn(unsigned int index, unsigned int other) {
        m_array.SetAt(index, m_array[other]);
        m_model[index] = m_model[other];
    }

    void remove(unsigned int index) {
        m_array.DeleteAt(index);
        m_model.erase(m_model.begin() + static_cast<std::ptrdiff_t>(index));
    }

    void clear() {
        m_array.DeleteAll();
        m_model.clear();
    }

    void expectEqual(const StringArray& array) const {
        ASSERT_EQ(contentOf(array), m_model);
        ASSERT_EQ(array.size(), m_capacity);
    }

    std::mt19937 m_random;
    StringArray m_array;
    Content m_model;
    unsigned int m_capacity;
};

TEST(StringArray, BehavesAsAVectorUnderRandomOperations) {
    const long before = framework::Memory::staticOutstanding();
    for (unsigned int seed = 1; seed <= 4; ++seed)
        StringModel(seed).run(1000);
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

} // namespace
