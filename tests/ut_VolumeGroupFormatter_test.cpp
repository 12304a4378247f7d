#include "ut_VolumeGroupFormatter.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using utility::VolumeGroupFormatter;
using utility::VolumeLevel;

static_assert(utility::VOLUME_LEVEL_0 == 0 && utility::VOLUME_LEVEL_1 == 1, "a level is the count of marks");

struct Result {
    char name[32] = "untouched";
    VolumeLevel level = static_cast<VolumeLevel>(77);
    bool taken;

    explicit Result(const char* text)
        : taken(VolumeGroupFormatter::getVolumeLevelAndName(text, name, sizeof name - 1, level)) {}
};

TEST(VolumeGroupFormatter, UsageExample) {
    char name[32];
    utility::VolumeLevel level;
    utility::VolumeGroupFormatter::getVolumeLevelAndName("vg.*", name, sizeof name - 1, level);
    EXPECT_STREQ(name, "vg");
    EXPECT_EQ(level, 1u);
}

TEST(VolumeGroupFormatter, AcceptsAtMostOneMark) {
    const char* const texts[] = {"vg", "vg.*"};
    for (unsigned int level = 0; level < 2; ++level) {
        const Result result(texts[level]);
        EXPECT_TRUE(result.taken);
        EXPECT_STREQ(result.name, "vg");
        EXPECT_EQ(result.level, level);
    }
}

TEST(VolumeGroupFormatter, RefusesMoreMarksWithLevelZero) {
    for (const char* text : {"vg.*.*", "vg.*.*.*"}) {
        const Result result(text);
        EXPECT_FALSE(result.taken);
        EXPECT_EQ(result.level, 0u);
        EXPECT_STREQ(result.name, "vg");
    }
}

TEST(VolumeGroupFormatter, RefusesNullAndInvalidTextsWithLevelZero) {
    for (const char* text : {static_cast<const char*>(nullptr), ".", ".*", ".*x", "a.*x", "a.*.*x"}) {
        const Result result(text);
        EXPECT_FALSE(result.taken);
        EXPECT_EQ(result.level, 0u);
        EXPECT_STREQ(result.name, "untouched");
    }
}

TEST(VolumeGroupFormatter, EmptyTextIsAnEmptyName) {
    const Result result("");
    EXPECT_TRUE(result.taken);
    EXPECT_EQ(result.level, 0u);
    EXPECT_STREQ(result.name, "");
}

TEST(VolumeGroupFormatter, LongNameIsTruncated) {
    const Result result((std::string(100000, 'n') + ".*").c_str());
    EXPECT_TRUE(result.taken);
    EXPECT_EQ(result.level, 1u);
    EXPECT_EQ(result.name, std::string(31, 'n'));
}

} // namespace
