#include "ut_ItemDirectory.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "RandomRun.h"
#include "Token.h"
#include "fw_Item.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"

namespace {

using test::token;
using utility::ItemDirectory;

constexpr const char* reallocName = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_constructible<ItemDirectory>::value, "directories are not copied");
static_assert(!std::is_copy_assignable<ItemDirectory>::value, "directories are not copied");

// An item with its own name; counts the calls of `getNameString` and the deletions of all items.
class NamedItem : public framework::Item {
public:
    explicit NamedItem(const std::string& name) : m_text(strings::StringRepository::toString(token(name))) {}
    explicit NamedItem(std::nullptr_t) : m_text(nullptr) {}
    ~NamedItem() override {
        ++deleted;
        if (m_onDestruction)
            m_onDestruction();
    }

    stringtoken getName() const override {
        return strings::GS.toToken(m_text);
    }
    const char* getNameString() const override {
        ++asked;
        return m_text;
    }
    void onDestruction(const std::function<void()>& action) {
        m_onDestruction = action;
    }

    static int asked;
    static int deleted;

private:
    const char* m_text;
    std::function<void()> m_onDestruction;
};

int NamedItem::asked = 0;
int NamedItem::deleted = 0;

using Items = std::vector<framework::Item*>;

Items sortedOf(const ItemDirectory& directory) {
    Items items;
    for (unsigned int i = 0; i < directory.length(); ++i)
        items.push_back(directory.getSorted(i));
    return items;
}

TEST(ItemDirectory, UsageExample) {
    utility::ItemDirectory items(0);
    framework::Item volume;
    EXPECT_EQ(items.add(&volume), 0);
    EXPECT_TRUE(items.get(volume.getName()) == &volume);
}

TEST(ItemDirectory, FindReturnsThePositionOfAnItemByName) {
    NamedItem b("b"), a("a"), ab("ab");
    ItemDirectory directory(1);
    EXPECT_EQ(directory.add(&b), 0);
    EXPECT_EQ(directory.add(&a), 1);
    EXPECT_EQ(directory.add(&ab), 2);
    EXPECT_EQ(directory.length(), 3u);
    EXPECT_EQ(directory.find(token("b")), 0);
    EXPECT_EQ(directory.find(token("a")), 1);
    EXPECT_EQ(directory.find(token("ab")), 2);
    EXPECT_EQ(directory.get(token("ab")), &ab);
    EXPECT_EQ(directory.find(token("c")), -1);
    EXPECT_EQ(directory.get(token("c")), nullptr);
    EXPECT_EQ(sortedOf(directory), (Items{&a, &ab, &b}));
}

TEST(ItemDirectory, GetSortedIsNullAfterTheLastItem) {
    NamedItem a("a");
    ItemDirectory directory(0);
    EXPECT_EQ(directory.getSorted(0), nullptr);
    directory.add(&a);
    EXPECT_EQ(directory.getSorted(directory.length()), nullptr);
    EXPECT_EQ(directory.getSorted(0xFFFFFFFF), nullptr);
}

TEST(ItemDirectory, ItemsWithTheSameNameAreInTheOrderAdded) {
    NamedItem first("same"), second("same"), third("same"), other("other");
    ItemDirectory directory(0);
    directory.add(&first);
    directory.add(&other);
    directory.add(&second);
    directory.add(&third);
    EXPECT_EQ(sortedOf(directory), (Items{&other, &first, &second, &third}));
    directory.remove(token("same"));
    EXPECT_EQ(sortedOf(directory), (Items{&other, &second, &third}));
}

TEST(ItemDirectory, AddIgnoresANullItem) {
    ItemDirectory directory(0);
    EXPECT_EQ(directory.add(nullptr), -1);
    EXPECT_EQ(directory.length(), 0u);
}

TEST(ItemDirectory, ANullNameMeansTheEmptyName) {
    NamedItem nameless(nullptr), a("a"), empty("");
    ItemDirectory directory(0);
    directory.add(&a);
    directory.add(&nameless);
    EXPECT_EQ(sortedOf(directory), (Items{&nameless, &a}));
    EXPECT_EQ(directory.get(token("")), &nameless);
    EXPECT_EQ(directory.get(0), &nameless);
    EXPECT_EQ(directory.get(0xFFFFFFFF), &nameless);
    directory.add(&empty);
    EXPECT_EQ(sortedOf(directory), (Items{&nameless, &empty, &a}));
    directory.remove(0);
    EXPECT_EQ(sortedOf(directory), (Items{&empty, &a}));
}

TEST(ItemDirectory, ATokenWithoutATextIsNotFoundIfNoNameIsEmpty) {
    NamedItem a("a");
    ItemDirectory directory(0);
    EXPECT_EQ(directory.find(0), -1);
    directory.add(&a);
    EXPECT_EQ(directory.find(0), -1);
    EXPECT_EQ(directory.find(0xFFFFFFFF), -1);
    directory.remove(0);
    EXPECT_EQ(directory.length(), 1u);
}

TEST(ItemDirectory, ReplaceKeepsThePlaceAndDeletesNothing) {
    NamedItem a("a"), b("b"), c("c"), other("b");
    ItemDirectory directory(0);
    for (NamedItem* item : {&c, &b, &a})
        directory.add(item);
    NamedItem::deleted = 0;
    directory.replace(token("b"), &other);
    EXPECT_EQ(sortedOf(directory), (Items{&a, &other, &c}));
    EXPECT_EQ(directory.find(token("b")), 1);
    EXPECT_EQ(NamedItem::deleted, 0);
}

TEST(ItemDirectory, ReplaceByNullOrOfAnAbsentNameDoesNothing) {
    NamedItem a("a"), b("b");
    ItemDirectory directory(0);
    directory.add(&a);
    directory.replace(token("a"), nullptr);
    directory.replace(token("b"), &b);
    directory.replace(0, &b);
    EXPECT_EQ(sortedOf(directory), Items{&a});
}

TEST(ItemDirectory, RemoveDecreasesTheLaterPositionsAndDeletesNothing) {
    NamedItem d("d"), b("b"), a("a"), c("c");
    ItemDirectory directory(0);
    for (NamedItem* item : {&d, &b, &a, &c})
        directory.add(item);
    NamedItem::deleted = 0;
    directory.remove(token("b"));
    EXPECT_EQ(directory.length(), 3u);
    EXPECT_EQ(directory.find(token("b")), -1);
    EXPECT_EQ(directory.find(token("d")), 0);
    EXPECT_EQ(directory.find(token("a")), 1);
    EXPECT_EQ(directory.find(token("c")), 2);
    directory.remove(token("b"));
    directory.remove(token("bb"));
    EXPECT_EQ(sortedOf(directory), (Items{&a, &c, &d}));
    directory.remove(token("d"));
    directory.remove(token("a"));
    directory.remove(token("c"));
    EXPECT_EQ(directory.length(), 0u);
    EXPECT_EQ(directory.add(&c), 0);
    EXPECT_EQ(directory.get(token("c")), &c);
    EXPECT_EQ(NamedItem::deleted, 0);
}

TEST(ItemDirectory, RemoveAllRemovesAllItemsAndDeletesNone) {
    NamedItem a("a"), b("b");
    ItemDirectory directory(0);
    directory.add(&a);
    directory.add(&b);
    NamedItem::deleted = 0;
    directory.removeAll();
    EXPECT_EQ(NamedItem::deleted, 0);
    EXPECT_EQ(directory.length(), 0u);
    EXPECT_EQ(directory.find(token("a")), -1);
    EXPECT_EQ(directory.getSorted(0), nullptr);
    EXPECT_EQ(directory.add(&b), 0);
    EXPECT_EQ(directory.get(token("b")), &b);
}

TEST(ItemDirectory, DeleteAllDeletesEveryItemOnce) {
    ItemDirectory directory(0);
    for (int i = 0; i < 50; ++i)
        directory.add(new NamedItem("item" + std::to_string(i % 20)));
    NamedItem::deleted = 0;
    directory.deleteAll();
    EXPECT_EQ(NamedItem::deleted, 50);
    EXPECT_EQ(directory.length(), 0u);
    directory.deleteAll();
    EXPECT_EQ(NamedItem::deleted, 50);
}

TEST(ItemDirectory, DeleteAllDeletesARepeatedItemOnce) {
    ItemDirectory directory(0);
    NamedItem* const a = new NamedItem("a");
    NamedItem* const b = new NamedItem("b");
    for (NamedItem* item : {a, b, a, a, b})
        directory.add(item);
    NamedItem::deleted = 0;
    directory.deleteAll();
    EXPECT_EQ(NamedItem::deleted, 2);
    EXPECT_EQ(directory.length(), 0u);
}

TEST(ItemDirectory, AnItemMayRemoveItselfInItsDestructor) {
    ItemDirectory directory(0);
    for (int i = 0; i < 5; ++i) {
        const std::string name = "item" + std::to_string(i);
        NamedItem* const item = new NamedItem(name);
        item->onDestruction([&directory, name] { directory.remove(token(name)); });
        directory.add(item);
    }
    NamedItem::deleted = 0;
    directory.deleteAll();
    EXPECT_EQ(NamedItem::deleted, 5);
    EXPECT_EQ(directory.length(), 0u);
}

TEST(ItemDirectory, DoesNotOwnItsItems) {
    NamedItem a("a");
    NamedItem::deleted = 0;
    {
        ItemDirectory directory(0);
        directory.add(&a);
    }
    EXPECT_EQ(NamedItem::deleted, 0);
}

TEST(ItemDirectory, FindReadsNoNameIfTheRangeIsEmpty) {
    NamedItem a("a"), c("c");
    ItemDirectory directory(0);
    directory.add(&a);
    directory.add(&c);
    const stringtoken absent = token("b");
    NamedItem::asked = 0;
    EXPECT_EQ(directory.find(absent), -1);
    EXPECT_EQ(NamedItem::asked, 0);
}

TEST(ItemDirectory, FindReadsOneNamePerStepOfTheBinarySearch) {
    ItemDirectory directory(0);
    for (int i = 0; i < 1000; ++i)
        directory.add(new NamedItem("item" + std::to_string(1000 + i)));
    for (int i = 0; i < 1000; ++i) {
        const stringtoken name = token("item" + std::to_string(1000 + i));
        NamedItem::asked = 0;
        EXPECT_EQ(directory.find(name), i);
        EXPECT_LE(NamedItem::asked, 10);
    }
    directory.deleteAll();
}

TEST(ItemDirectory, BytesAbove127SortAfterTheOthers) {
    NamedItem last("\xff"), z("z"), high("\x80"), ax("a\xff"), a("a");
    ItemDirectory directory(0);
    for (NamedItem* item : {&last, &z, &high, &ax, &a})
        directory.add(item);
    EXPECT_EQ(sortedOf(directory), (Items{&a, &ax, &z, &high, &last}));
    EXPECT_EQ(directory.get(token("\x80")), &high);
    directory.remove(token("\x80"));
    EXPECT_EQ(directory.get(token("\xff")), &last);
}

TEST(ItemDirectory, AcceptsANameOf100000Characters) {
    const std::string longName(100000, 'x');
    NamedItem item(longName), other(longName + "y");
    ItemDirectory directory(0);
    directory.add(&other);
    directory.add(&item);
    EXPECT_EQ(directory.find(token(longName)), 1);
    EXPECT_EQ(directory.find(token(longName + "y")), 0);
}

TEST(ItemDirectory, RejectsThe32768thItemAndChangesNothing) {
    NamedItem a("a"), b("b");
    ItemDirectory directory(40000);
    for (int i = 0; i < 32767; ++i)
        ASSERT_EQ(directory.add(&a), i);
    EXPECT_EQ(directory.add(&a), -1);
    EXPECT_EQ(directory.add(&b), -1);
    EXPECT_EQ(directory.length(), 32767u);
    EXPECT_EQ(directory.find(token("b")), -1);
    directory.remove(token("a"));
    EXPECT_EQ(directory.add(&b), 32766);
    EXPECT_EQ(directory.find(token("b")), 32766);
    EXPECT_EQ(directory.add(&b), -1);
}

TEST(ItemDirectory, ATableThatCannotGrowThrowsAndChangesNothing) {
    NamedItem a("a"), b("b");
    const long before = framework::Memory::staticOutstanding();
    {
        ItemDirectory directory(1);
        directory.add(&b);
        EXPECT_FAILURE(test::failNth(1, [&] { directory.add(&a); }), 1230, "ut_Array", reallocName, "");
        EXPECT_EQ(sortedOf(directory), Items{&b});
        EXPECT_FAILURE(test::failNth(2, [&] { directory.add(&a); }), 1230, "ut_Array", reallocName, "");
        EXPECT_EQ(sortedOf(directory), Items{&b});
        {
            // The allocation of the exception fails too.
            test::FailingAllocation failing(test::failAll);
            EXPECT_THROW(directory.add(&a), std::bad_alloc);
        }
        EXPECT_EQ(directory.length(), 1u);
        EXPECT_EQ(sortedOf(directory), Items{&b});
        EXPECT_EQ(directory.find(token("a")), -1);
        EXPECT_EQ(directory.add(&a), 1);
        EXPECT_EQ(sortedOf(directory), (Items{&a, &b}));
        for (const unsigned long nth : {1ul, 2ul}) {
            EXPECT_FAILURE(test::failNth(nth, [&] { ItemDirectory(5); }), 1230, "ut_Array", reallocName, "");
        }
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(ItemDirectory, AddDoesNotAllocatePerEntry) {
    NamedItem a("a"), b("b");
    ItemDirectory directory(10);
    const stringtoken name = token("b");
    const unsigned long before = test::allocationCount();
    EXPECT_EQ(directory.add(&b), 0);
    EXPECT_EQ(directory.add(&a), 1);
    EXPECT_EQ(directory.find(name), 0);
    directory.remove(name);
    EXPECT_EQ(test::allocationCount(), before);
}

// Reference implementation with a vector.
struct ItemModel {
    static std::string nameOf(const framework::Item* item) {
        return item->getNameString();
    }
    Items sorted() const {
        Items result = items;
        std::stable_sort(result.begin(), result.end(),
                         [](const auto* left, const auto* right) { return nameOf(left) < nameOf(right); });
        return result;
    }
    Items::iterator first(const std::string& name) {
        return std::find_if(items.begin(), items.end(), [&](const auto* item) { return nameOf(item) == name; });
    }

    Items items;
};

TEST(ItemDirectory, BehavesAsAVectorUnderRandomOperations) {
    test::RandomRun random;
    std::vector<std::unique_ptr<NamedItem>> pool;
    for (int i = 0; i < 60; ++i)
        pool.push_back(std::make_unique<NamedItem>(random.text(2, "ab\x80\xff")));
    ItemDirectory directory(random.below(30));
    ItemModel model;
    while (random.steps(100000)) {
        NamedItem* const item = pool[random.below(60)].get();
        const std::string name = item->getNameString();
        const stringtoken nameToken = item->getName();
        const auto first = model.first(name);
        const int found = directory.find(nameToken);
        ASSERT_EQ(found >= 0, first != model.items.end());
        if (found >= 0) {
            ASSERT_EQ(ItemModel::nameOf(model.items[static_cast<std::size_t>(found)]), name);
        }
        ASSERT_EQ(directory.get(nameToken), found >= 0 ? model.items[static_cast<std::size_t>(found)] : nullptr);

        const unsigned int choice = random.below(100);
        if (choice == 0) {
            directory.removeAll();
            model.items.clear();
        } else if (choice < 10) {
            directory.replace(nameToken, item);
            if (found >= 0)
                model.items[static_cast<std::size_t>(found)] = item;
        } else if (choice < (model.items.size() > 40 ? 40u : 60u)) {
            ASSERT_EQ(directory.add(item), static_cast<int>(model.items.size()));
            model.items.push_back(item);
        } else {
            // Of several items with the same name, `remove` removes the first.
            directory.remove(nameToken);
            if (first != model.items.end())
                model.items.erase(first);
        }
        ASSERT_EQ(directory.length(), model.items.size());
        if (random.below(10) == 0) {
            ASSERT_EQ(sortedOf(directory), model.sorted());
        }
    }
}

} // namespace
