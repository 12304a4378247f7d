#include "ut_ItemArray.h"

#include <array>
#include <memory>

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "PointerArraySuite.h"
#include "TypedArraySuite.h"
#include "fw_Item.h"

namespace {

using framework::Item;
using utility::ItemArray;

struct ItemArrayTraits : test::ArrayTraits {
    using ArrayType = ItemArray;
    using Value = Item*;
    static constexpr const char* className = "ItemArray";
    static constexpr const char* valueName = "framework::Item*";
    static constexpr unsigned int traceSwitch = 444;
    static Item* element(unsigned int index) {
        static std::array<Item, 50> items;
        return &items.at(index);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(ItemArray, TypedArray, ItemArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(ItemArray, ArrayCopy, ItemArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(ItemArray, PointerArray, ItemArrayTraits);

TEST(ItemArray, UsageExample) {
    framework::Item volume;
    utility::ItemArray items(4);
    items.Append(&volume);
    EXPECT_EQ(items.Find(&volume), 0u);
}

TEST(ItemArray, NeverDeletesItsItems) {
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
        array.Append(item.get());
        array.Append(item.get());
        array.Append(item.get());
        array.SetAt(0, nullptr);
        array.DeleteAt(1);
        const ItemArray copy(array);
        array.truncate(0);
    }
    EXPECT_EQ(deleted, 0);
}

} // namespace
