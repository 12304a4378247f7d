#include "ut_HostGroupFormatter.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using utility::HostGroupFormatter;
using utility::HostGroupLevel;

static_assert(utility::HOST_GROUP_LEVEL_0 == 0 && utility::HOST_GROUP_LEVEL_1 == 1 && utility::HOST_GROUP_LEVEL_2 == 2,
              "a level is the count of marks");

struct Result {
    char name[32] = "untouched";
    HostGroupLevel level = static_cast<HostGroupLevel>(77);
    bool taken;

    explicit Result(const char* text)
        : taken(HostGroupFormatter::getHostLevelAndName(text, name, sizeof name - 1, level)) {}
};

TEST(HostGroupFormatter, UsageExample) {
    char name[32];
    utility::HostGroupLevel level;
    utility::HostGroupFormatter::getHostLevelAndName("host.*.*", name, sizeof name - 1, level);
    EXPECT_STREQ(name, "host");
    EXPECT_EQ(level, 2u);
}

TEST(HostGroupFormatter, AcceptsUpToTwoMarks) {
    const char* const texts[] = {"host", "host.*", "host.*.*"};
    for (unsigned int level = 0; level < 3; ++level) {
        const Result result(texts[level]);
        EXPECT_TRUE(result.taken);
        EXPECT_STREQ(result.name, "host");
        EXPECT_EQ(result.level, level);
    }
}

TEST(HostGroupFormatter, RefusesMoreMarksWithLevelZero) {
    for (const char* text : {"host.*.*.*", "host.*.*.*.*"}) {
        const Result result(text);
        EXPECT_FALSE(result.taken);
        EXPECT_EQ(result.level, 0u);
        EXPECT_STREQ(result.name, "host");
    }
}

TEST(HostGroupFormatter, RefusesNullAndInvalidTextsWithLevelZero) {
    for (const char* text : {static_cast<const char*>(nullptr), ".", ".*", ".*x", "a.*x", "a.*.*x"}) {
        const Result result(text);
        EXPECT_FALSE(result.taken);
        EXPECT_EQ(result.level, 0u);
        EXPECT_STREQ(result.name, "untouched");
    }
}

TEST(HostGroupFormatter, EmptyTextIsAnEmptyName) {
    const Result result("");
    EXPECT_TRUE(result.taken);
    EXPECT_EQ(result.level, 0u);
    EXPECT_STREQ(result.name, "");
}

TEST(HostGroupFormatter, LongNameIsTruncated) {
    const Result result((std::string(100000, 'n') + ".*").c_str());
    EXPECT_TRUE(result.taken);
    EXPECT_EQ(result.level, 1u);
    EXPECT_EQ(result.name, std::string(31, 'n'));
}

} // namespace
