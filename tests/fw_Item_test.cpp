#include "fw_Item.h"

#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/VirtualSlot.h"

using framework::Item;

namespace {

static_assert(std::is_base_of<framework::Entity, Item>::value &&
                  sizeof(Item) == sizeof(framework::Entity) + sizeof(void*),
              "an item has no data of its own");

class Volume : public framework::Item {
public:
    stringtoken getName() const override {
        return 6945;
    }
    const char* getNameString() const override {
        return "volume";
    }
};

template<class Stream>
Stream& untouched() {
    // A plain item never touches it.
    static char place[8];
    return *reinterpret_cast<Stream*>(place);
}

TEST(Item, UsageExample) {
    const Volume volume;
    EXPECT_FALSE(volume.isChanged());
    EXPECT_FALSE(volume.toFile("volume"));
}

TEST(Item, KeepsNothing) {
    Item item;
    EXPECT_FALSE(item.toStream(untouched<utility::PutStream>()));
    EXPECT_FALSE(item.toFile("/dev/null"));
    EXPECT_FALSE(item.fromStream(untouched<utility::GetStream>()));
    EXPECT_FALSE(item.fromFile("/dev/null"));
    EXPECT_FALSE(item.fromXML(untouched<utility::XMLDocument>()));
    EXPECT_EQ(item.getAccess(), 0U);
    item.information(untouched<utility::PutStream>(), 0, false);
}

TEST(Item, IsNeverChanged) {
    Item item;
    item.setChanged();
    EXPECT_FALSE(item.isChanged());
    item.clearChanged();
    item.discardChanged();
    EXPECT_FALSE(item.isChanged());
}

TEST(Item, IsAnEntity) {
    Item item;
    framework::Entity& entity = item;
    EXPECT_EQ(entity.getName(), 367U);
    EXPECT_EQ(entity.getNameString(), pGSEntity);
    EXPECT_EQ(entity.clone(), nullptr);
    item.setError("volume %d is offline", 4);
    EXPECT_TRUE(entity.inError());
    EXPECT_STREQ(entity.ErrorMessage(), "volume 4 is offline");
    entity.ClearError();
    EXPECT_FALSE(item.inError());
    EXPECT_STREQ(item.ErrorMessage(), "");
    entity.setError("through the base");
    EXPECT_STREQ(item.ErrorMessage(), "through the base");
    entity.setResources();
    EXPECT_STREQ(item.AllocString("in the pool"), "in the pool");
}

TEST(Item, DerivedClassNamesItself) {
    const std::unique_ptr<framework::Entity> entity = std::make_unique<Volume>();
    EXPECT_EQ(entity->getName(), 6945U);
    EXPECT_STREQ(entity->getNameString(), "volume");
}

TEST(Item, VirtualOperationsStandInTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&Item::getName), 2);
    EXPECT_EQ(test::virtualSlot(&Item::getNameString), 3);
    EXPECT_EQ(test::virtualSlot(&Item::information), 4);
    EXPECT_EQ(test::virtualSlot(&Item::clone), 5);
    EXPECT_EQ(test::virtualSlot(&Item::getAccess), 6);
    EXPECT_EQ(test::virtualSlot(&Item::isChanged), 7);
    EXPECT_EQ(test::virtualSlot(&Item::setChanged), 8);
    EXPECT_EQ(test::virtualSlot(&Item::clearChanged), 9);
    EXPECT_EQ(test::virtualSlot(&Item::discardChanged), 10);
    EXPECT_EQ(test::virtualSlot(&Item::toStream), 11);
    EXPECT_EQ(test::virtualSlot(&Item::toFile), 12);
    EXPECT_EQ(test::virtualSlot(&Item::fromStream), 13);
    EXPECT_EQ(test::virtualSlot(&Item::fromFile), 14);
    EXPECT_EQ(test::virtualSlot(&Item::fromXML), 15);
    EXPECT_EQ(test::virtualSlot(&Item::inError), 16);
    EXPECT_EQ(test::virtualSlot(&Item::ErrorMessage), 17);
    EXPECT_EQ(test::virtualSlot(&Item::ClearError), 18);
    EXPECT_EQ(test::virtualSlot(&Item::setResources), 19);
    EXPECT_EQ(test::virtualSlot(&Item::setError), 20);
}

} // namespace
