#include "ut_VolumeGroupFormatter.h"

#include <gtest/gtest.h>

#include "GroupFormatterSuite.h"

namespace {

static_assert(utility::VOLUME_LEVEL_0 == 0 && utility::VOLUME_LEVEL_1 == 1, "a level is the count of marks");

struct VolumeGroups {
    typedef utility::VolumeLevel Level;
    static constexpr unsigned int highest = 1;
    static bool split(const char* text, char* name, unsigned int size, Level& level) {
        return utility::VolumeGroupFormatter::getVolumeLevelAndName(text, name, size, level);
    }
};

TEST(VolumeGroupFormatter, UsageExample) {
    char name[32];
    utility::VolumeLevel level;
    utility::VolumeGroupFormatter::getVolumeLevelAndName("vg.*", name, sizeof name - 1, level);
    EXPECT_STREQ(name, "vg");
    EXPECT_EQ(level, 1u);
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(VolumeGroupFormatter, GroupFormatterTest, VolumeGroups);
} // namespace test
