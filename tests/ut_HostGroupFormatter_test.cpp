#include "ut_HostGroupFormatter.h"

#include <gtest/gtest.h>

#include "GroupFormatterSuite.h"

namespace {

static_assert(utility::HOST_GROUP_LEVEL_0 == 0 && utility::HOST_GROUP_LEVEL_1 == 1 && utility::HOST_GROUP_LEVEL_2 == 2,
              "a level is the count of marks");

struct HostGroups {
    typedef utility::HostGroupLevel Level;
    static constexpr unsigned int highest = 2;
    static bool split(const char* text, char* name, unsigned int size, Level& level) {
        return utility::HostGroupFormatter::getHostLevelAndName(text, name, size, level);
    }
};

TEST(HostGroupFormatter, UsageExample) {
    char name[32];
    utility::HostGroupLevel level;
    utility::HostGroupFormatter::getHostLevelAndName("host.*.*", name, sizeof name - 1, level);
    EXPECT_STREQ(name, "host");
    EXPECT_EQ(level, 2u);
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(HostGroupFormatter, GroupFormatterTest, HostGroups);
} // namespace test
