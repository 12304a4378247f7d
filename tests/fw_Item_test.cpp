#include <gtest/gtest.h>

#include <memory>

#include "fw_Item.h"

using framework::Item;

namespace {

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

} // namespace

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
