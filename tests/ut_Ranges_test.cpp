#include "ut_Ranges.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <future>
#include <iterator>
#include <limits>
#include <numeric>
#include <string>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "ListNumber.h"
#include "fw_FSUMemory.h"
#include "fw_Item.h"
#include "fw_StableStringRepository.h"
#include "ut_FCPortAddress.h"
#include "ut_FastSortedStringDirectory.h"
#include "ut_FastStringDirectory.h"
#include "ut_Int64Array.h"
#include "ut_IntArray.h"
#include "ut_ItemArray.h"
#include "ut_PortAddressArray.h"
#include "ut_SerialNumber.h"
#include "ut_SerialNumberArray.h"
#include "ut_ShortArray.h"
#include "ut_StringArray.h"
#include "ut_TokenArray.h"
#include "ut_TokenSet.h"
#include "ut_UInt64Array.h"
#include "ut_UIntArray.h"
#include "ut_UShortArray.h"
#include "ut_WWN.h"
#include "ut_WWNArray.h"

namespace {

using test::ListNumber;
using utility::range;

using Texts = std::vector<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

// The elements of a range, as a standard container with the iterators of the range.
template<typename Range>
auto elementsOf(Range&& range) {
    using Iterator = decltype(range.begin());
    return std::vector<typename std::iterator_traits<Iterator>::value_type>(range.begin(), range.end());
}

Texts namesOf(utility::StringDirectory& directory) {
    Texts names;
    for (const char* name : range(directory))
        names.emplace_back(name);
    return names;
}

template<typename Container, typename = void>
constexpr bool acceptsTemporary = false;
template<typename Container>
constexpr bool acceptsTemporary<Container, std::void_t<decltype(range(std::declval<Container>()))>> = true;

static_assert(!acceptsTemporary<utility::IntArray>, "the range would refer to a destroyed array");
static_assert(!acceptsTemporary<utility::FastStringDirectory>, "the range would refer to a destroyed directory");
static_assert(!acceptsTemporary<utility::ItemDirectory>, "the range would refer to a destroyed directory");
static_assert(!acceptsTemporary<utility::Map>, "the range would refer to a destroyed map");
static_assert(!acceptsTemporary<utility::Environment>, "the range would refer to destroyed variables");
static_assert(!acceptsTemporary<utility::List>, "the range would refer to a destroyed list");
static_assert(!std::is_copy_constructible<utility::ListRange>::value, "a copy would unlock the list twice");

template<typename Array>
using ElementOf = std::decay_t<decltype(*range(std::declval<const Array&>()).begin())>;

static_assert(std::is_same<ElementOf<utility::StringArray>, const char*>::value, "the array owns its texts");
static_assert(std::is_same<ElementOf<utility::ItemArray>, framework::Item*>::value, "items may be changed");
static_assert(std::is_same<decltype(*range(std::declval<const utility::IntArray&>()).begin()), int>::value,
              "a reference would dangle when the array grows");

TEST(Ranges, UsageExample) {
    utility::IntArray ports(4);
    ports.Append(7);
    ports.Append(3);
    int sum = 0;
    for (int port : utility::range(ports))
        sum += port;
    EXPECT_EQ(sum, 10);
}

template<typename Array>
class NumberRangesTest : public testing::Test {};

using NumberArrays = testing::Types<utility::IntArray, utility::Int64Array, utility::ShortArray, utility::UShortArray,
                                    utility::UIntArray, utility::UInt64Array, utility::TokenArray>;
TYPED_TEST_SUITE(NumberRangesTest, NumberArrays);

TYPED_TEST(NumberRangesTest, VisitsEachNumberInOrder) {
    TypeParam array(2);
    EXPECT_TRUE(elementsOf(range(array)).empty());
    for (int number : {3, 1, 2})
        array.Append(static_cast<ElementOf<TypeParam>>(number));
    const std::vector<ElementOf<TypeParam>> expected = {3, 1, 2};
    EXPECT_EQ(elementsOf(range(array)), expected);
}

TYPED_TEST(NumberRangesTest, KeepsTheGreatestNumber) {
    TypeParam array(2);
    const auto greatest = std::numeric_limits<ElementOf<TypeParam>>::max();
    array.Append(greatest);
    EXPECT_EQ(elementsOf(range(array)), std::vector<ElementOf<TypeParam>>{greatest});
}

TYPED_TEST(NumberRangesTest, DoesNotVisitWhatTheLoopAppends) {
    TypeParam array(2);
    array.Append(1);
    array.Append(2);
    for (auto number : range(array)) {
        for (int i = 0; i < 30; ++i)
            array.Append(number);
    }
    EXPECT_EQ(array.length(), 62U);
}

TYPED_TEST(NumberRangesTest, EndsAtTheNewLengthIfTheLoopTruncates) {
    TypeParam array(2);
    for (int number : {1, 2, 3, 4})
        array.Append(static_cast<ElementOf<TypeParam>>(number));
    int steps = 0;
    for (auto number : range(array)) {
        (void)number;
        ++steps;
        array.truncate(2);
    }
    EXPECT_EQ(steps, 2);
}

TEST(Ranges, SkipsTheElementAfterOneThatTheLoopRemoves) {
    utility::IntArray array(4);
    for (int number : {1, 2, 3, 4})
        array.Append(number);
    std::vector<int> seen;
    for (int number : range(array)) {
        seen.push_back(number);
        if (number == 2)
            array.DeleteAt(1);
    }
    EXPECT_EQ(seen, (std::vector<int>{1, 2, 4}));
}

TEST(Ranges, AnIteratorPastTheEndGivesZeroAndStays) {
    utility::IntArray array(4);
    array.Append(5);
    const auto numbers = range(array);
    auto iterator = numbers.begin();
    EXPECT_EQ(*iterator++, 5);
    EXPECT_EQ(*iterator, 0);
    ++iterator;
    EXPECT_TRUE(iterator == numbers.end());
    array.truncate(0);
    EXPECT_EQ(*numbers.begin(), 0);
    EXPECT_TRUE(numbers.begin() == numbers.end());
}

TEST(Ranges, WorkWithTheAlgorithmsOfTheStandardLibrary) {
    utility::IntArray array(4);
    for (int number : {4, 8, 15, 16, 23, 42})
        array.Append(number);
    const auto numbers = range(array);
    EXPECT_EQ(std::accumulate(numbers.begin(), numbers.end(), 0), 108);
    EXPECT_EQ(*std::find(numbers.begin(), numbers.end(), 15), 15);
    EXPECT_TRUE(std::find(numbers.begin(), numbers.end(), 7) == numbers.end());
    EXPECT_EQ(std::distance(numbers.begin(), numbers.end()), 6);
}

TEST(Ranges, VisitTextsAndNullElements) {
    utility::StringArray array(2);
    array.Append("volume");
    array.Append(nullptr);
    array.Append("port");
    Texts seen;
    for (const char* text : range(array))
        seen.emplace_back(text != nullptr ? text : "(null)");
    EXPECT_EQ(seen, (Texts{"volume", "(null)", "port"}));
}

TEST(Ranges, VisitPointersAndNullElements) {
    framework::Item item;
    utility::ItemArray items(2);
    items.Append(&item);
    items.Append(static_cast<framework::Item*>(nullptr));
    EXPECT_EQ(elementsOf(range(items)), (std::vector<framework::Item*>{&item, nullptr}));

    utility::WWNArray names(2);
    names.Append(new utility::WWN("500a09818d5f1234"));
    EXPECT_EQ(elementsOf(range(names)), (std::vector<utility::WWN*>{names[0]}));

    utility::SerialNumberArray numbers(2);
    numbers.Append(new utility::SerialNumber("00c0ff112233aabb4455667788000000"));
    EXPECT_EQ(elementsOf(range(numbers)), (std::vector<utility::SerialNumber*>{numbers[0]}));

    utility::PortAddressArray ports(2);
    ports.Append(new utility::FCPortAddress(utility::FCPortAddress::WWN_TYPE_0, "500a09818d5f1234"));
    EXPECT_EQ(elementsOf(range(ports)), (std::vector<utility::PortAddress*>{ports[0]}));
}

TEST(Ranges, VisitTheTokensOfASetInAscendingOrder) {
    utility::TokenSet set(0);
    for (stringtoken token : {30U, 10U, 20U, 10U})
        set.set(token);
    EXPECT_EQ(elementsOf(range(set)), (std::vector<stringtoken>{10, 20, 30}));
    for (stringtoken token : range(set))
        set.unset(token);
    EXPECT_EQ(elementsOf(range(set)), (std::vector<stringtoken>{20, 30}));
}

TEST(Ranges, VisitADirectoryInItsOrder) {
    utility::StringDirectory byIndex(0);
    utility::FastSortedStringDirectory sorted(0);
    for (const char* name : {"port", "volume", "host"}) {
        byIndex.Add(name);
        sorted.Add(name);
    }
    EXPECT_EQ(namesOf(byIndex), (Texts{"port", "volume", "host"}));
    EXPECT_EQ(namesOf(sorted), (Texts{"host", "port", "volume"}));
}

TEST(Ranges, SkipTheFreeSlotsOfADirectory) {
    utility::FastStringDirectory names(0);
    for (const char* name : {"a", "b", "c", "d"})
        names.Add(name);
    names.Delete("a");
    names.Delete("c");
    EXPECT_EQ(namesOf(names), (Texts{"b", "d"}));
    names.Delete("d");
    EXPECT_EQ(namesOf(names), Texts{"b"});
    names.Delete("b");
    EXPECT_EQ(namesOf(names), Texts{});
}

TEST(Ranges, ADirectoryMayBeEmptiedInTheLoop) {
    utility::FastStringDirectory slots(0);
    utility::FastSortedStringDirectory sorted(0);
    for (const char* name : {"a", "b", "c", "d"}) {
        slots.Add(name);
        sorted.Add(name);
    }
    int steps = 0;
    for (const char* name : range(slots)) {
        ++steps;
        slots.Delete(std::string(name).c_str());
    }
    EXPECT_EQ(steps, 4);
    steps = 0;
    for (const char* name : range(sorted)) {
        ++steps;
        sorted.Delete(std::string(name).c_str());
    }
    EXPECT_EQ(steps, 2);
    EXPECT_EQ(namesOf(sorted), (Texts{"b", "d"}));
}

// An item with a name.
class NamedItem : public framework::Item {
public:
    explicit NamedItem(const char* name) : m_name(name) {}
    const char* getNameString() const override {
        return m_name;
    }

private:
    const char* m_name;
};

TEST(Ranges, VisitItemsInTheOrderOfNames) {
    NamedItem volume("volume");
    NamedItem host("host");
    utility::ItemDirectory items(0);
    items.add(&volume);
    items.add(&host);
    EXPECT_EQ(elementsOf(range(items)), (std::vector<framework::Item*>{&host, &volume}));
    int steps = 0;
    for (framework::Item* item : range(items)) {
        EXPECT_EQ(item, &host);
        ++steps;
        items.removeAll();
    }
    EXPECT_EQ(steps, 1);
}

struct PooledMap {
    framework::FSUMemory pool{4096, 4};
    utility::MapEntity map{64, &pool};
};

struct PlainMap {
    utility::Map map{64};
};

template<typename Holder>
class MapRangesTest : public testing::Test {
protected:
    static void* pointer(std::uintptr_t number) {
        return reinterpret_cast<void*>(number);
    }

    std::vector<std::uintptr_t> keys() {
        std::vector<std::uintptr_t> keys;
        for (const auto& [key, value] : range(m_holder.map)) {
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(value), reinterpret_cast<std::uintptr_t>(key) + 1);
            keys.push_back(reinterpret_cast<std::uintptr_t>(key));
        }
        return keys;
    }

    void add(std::uintptr_t key) {
        m_holder.map.Add(pointer(key), pointer(key + 1));
    }

    Holder m_holder;
};

using PointerMaps = testing::Types<PlainMap, PooledMap>;
TYPED_TEST_SUITE(MapRangesTest, PointerMaps);

TYPED_TEST(MapRangesTest, VisitsEachEntryInBucketOrder) {
    EXPECT_TRUE(this->keys().empty());
    for (std::uintptr_t key : {65, 2, 1, 0})
        this->add(key);
    EXPECT_EQ(this->keys(), (std::vector<std::uintptr_t>{0, 1, 65, 2}));
}

TYPED_TEST(MapRangesTest, EndsIfTheLoopRemovesTheCurrentKey) {
    for (std::uintptr_t key : {1, 2, 3})
        this->add(key);
    int steps = 0;
    for (const utility::MapEntry& entry : range(this->m_holder.map)) {
        ++steps;
        this->m_holder.map.Delete(entry.key);
    }
    EXPECT_EQ(steps, 1);
    EXPECT_EQ(this->keys(), (std::vector<std::uintptr_t>{2, 3}));
}

TYPED_TEST(MapRangesTest, EndsAfterAsManyStepsAsThereWereEntries) {
    this->add(1);
    int steps = 0;
    for (const utility::MapEntry& entry : range(this->m_holder.map)) {
        ++steps;
        this->add(reinterpret_cast<std::uintptr_t>(entry.key) + 1);
    }
    EXPECT_EQ(steps, 1);
}

TYPED_TEST(MapRangesTest, ReadsAllEntriesAfterDeleteAll) {
    for (std::uintptr_t key : {1, 2, 3})
        this->add(key);
    this->m_holder.map.DeleteAll();
    EXPECT_TRUE(this->keys().empty());
    this->add(4);
    EXPECT_EQ(this->keys(), (std::vector<std::uintptr_t>{4}));
}

TEST(Ranges, AMapWithoutATableIsEmpty) {
    utility::Map map(3);
    EXPECT_TRUE(range(map).begin() == range(map).end());
}

TEST(Ranges, VisitTheEntriesOfAStringMap) {
    int value = 0;
    utility::StringMap map(64);
    map.Add("b", &value);
    map.Add("a", nullptr);
    const std::string longName(100, 'x');
    map.Add(longName.c_str(), &value);
    std::vector<std::pair<std::string, void*>> seen;
    for (const auto& [key, found] : range(map))
        seen.emplace_back(key, found);
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen, (std::vector<std::pair<std::string, void*>>{{"a", nullptr}, {"b", &value}, {longName, &value}}));
    EXPECT_EQ(range(map).begin()->key.size(), elementsOf(range(map))[0].key.size());
}

TEST(Ranges, TheKeyOfAStringMapStaysValidAfterItsRemoval) {
    utility::StringMap map(64);
    const std::string name(100, 'x');
    map.Add(name.c_str(), nullptr);
    map.Add("a", nullptr);
    int steps = 0;
    for (const utility::StringMapEntry& entry : range(map)) {
        ++steps;
        const std::string before = entry.key;
        map.DeleteAll();
        EXPECT_EQ(entry.key, before);
    }
    EXPECT_EQ(steps, 1);
}

TEST(Ranges, VisitVariablesWithNamesOfAnyLength) {
    utility::Environment set;
    Pairs expected;
    for (std::size_t length : {1U, 62U, 63U, 64U, 65U, 127U, 128U, 129U, 1000U}) {
        expected.emplace_back(std::string(length, 'n'), std::to_string(length));
        set.set(expected.back().first.c_str(), expected.back().second.c_str());
    }
    set.set("EMPTY", "");
    expected.emplace_back("EMPTY", "");
    Pairs seen;
    for (const auto& [name, value] : range(set))
        seen.emplace_back(name, value);
    EXPECT_EQ(seen, expected);
}

TEST(Ranges, AVariableStaysValidAfterItsRemoval) {
    utility::Environment set;
    for (const char* name : {"A", "B", "C"})
        set.set(name, "value");
    Texts seen;
    for (const utility::EnvironmentEntry& entry : range(set)) {
        set.unset(entry.name.c_str());
        EXPECT_EQ(entry.value, "value");
        seen.push_back(entry.name);
    }
    EXPECT_EQ(seen, (Texts{"A", "C"}));
}

class ListRangesTest : public testing::Test {
protected:
    ListRangesTest() {
        for (ListNumber* element : {&m_a, &m_b, &m_c})
            m_list.addLast(element);
    }

    ListNumber m_a{1};
    ListNumber m_b{2};
    ListNumber m_c{3};
    utility::List m_list;
};

TEST_F(ListRangesTest, VisitsTheElementsInBothDirections) {
    std::vector<utility::ListContainable*> seen;
    for (utility::ListContainable* element : range(m_list))
        seen.push_back(element);
    for (utility::ListContainable* element : range(m_list, utility::LAST_TO_FIRST))
        seen.push_back(element);
    EXPECT_EQ(seen, (std::vector<utility::ListContainable*>{&m_a, &m_b, &m_c, &m_c, &m_b, &m_a}));
}

TEST_F(ListRangesTest, AnIteratorPastTheEndGivesNullAndStays) {
    auto elements = range(m_list);
    auto iterator = elements.begin();
    EXPECT_EQ(*iterator++, &m_a);
    ++iterator;
    EXPECT_EQ(*iterator++, &m_c);
    EXPECT_EQ(*iterator, nullptr);
    ++iterator;
    EXPECT_TRUE(iterator == elements.end());
}

TEST_F(ListRangesTest, OtherThreadsReadAndWritersWaitUntilTheLoopIsLeft) {
    std::atomic<bool> added{false};
    std::future<void> writer;
    ListNumber d{4};
    for (utility::ListContainable* element : range(m_list)) {
        EXPECT_EQ(std::async(std::launch::async, [this] { return m_list.getFirst(); }).get(), element);
        writer = std::async(std::launch::async, [&] {
            m_list.addLast(&d);
            added = true;
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        EXPECT_FALSE(added);
        break;
    }
    writer.get();
    EXPECT_EQ(m_list.getLast(), &d);
    m_list.removeAll();
}

} // namespace
