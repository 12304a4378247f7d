#include "ut_DotStarFormatter.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "GuardedText.h"

namespace {

using utility::DotStarFormatter;

constexpr unsigned int bad = 999;

struct Split {
    bool taken;
    std::string name;
    unsigned int level;

    bool operator==(const Split& other) const {
        return taken == other.taken && name == other.name && level == other.level;
    }
};

void PrintTo(const Split& split, std::ostream* out) {
    *out << (split.taken ? "taken '" : "refused '") << split.name << "' " << split.level;
}

// The parts of `text`; the name is "untouched" if it was not written.
Split split(const char* text) {
    char name[200001] = "untouched";
    unsigned int level = bad;
    const bool taken = DotStarFormatter::getLevelAndName(text, name, sizeof name - 1, level);
    return {taken, name, level};
}

Split taken(const char* name, unsigned int level) {
    return {true, name, level};
}

const Split refused = {false, "untouched", 0};

TEST(DotStarFormatter, UsageExample) {
    char name[32];
    unsigned int level;
    utility::DotStarFormatter::getLevelAndName("host.*.*", name, sizeof name - 1, level);
    EXPECT_STREQ(name, "host");
    EXPECT_EQ(level, 2u);
}

TEST(DotStarFormatter, CountsTheMarksAfterTheName) {
    EXPECT_EQ(split("host"), taken("host", 0));
    EXPECT_EQ(split("host.*"), taken("host", 1));
    EXPECT_EQ(split("host.*.*"), taken("host", 2));
    EXPECT_EQ(split("host.*.*.*.*.*"), taken("host", 5));
}

TEST(DotStarFormatter, NullOrEmptyTextIsAnEmptyName) {
    EXPECT_EQ(split(nullptr), taken("", 0));
    EXPECT_EQ(split(""), taken("", 0));
}

TEST(DotStarFormatter, LeadingDotIsRefused) {
    EXPECT_EQ(split("."), refused);
    EXPECT_EQ(split(".*"), refused);
    EXPECT_EQ(split(".*x"), refused);
    EXPECT_EQ(split(".host"), refused);
    EXPECT_EQ(split("..*"), refused);
}

TEST(DotStarFormatter, DotWithoutAStarBelongsToTheName) {
    EXPECT_EQ(split("a.b"), taken("a.b", 0));
    EXPECT_EQ(split("a.b.*"), taken("a.b", 1));
    EXPECT_EQ(split("a."), taken("a.", 0));
    EXPECT_EQ(split("a.."), taken("a..", 0));
    EXPECT_EQ(split("a..*"), taken("a.", 1));
    EXPECT_EQ(split("a*"), taken("a*", 0));
    EXPECT_EQ(split("*"), taken("*", 0));
    EXPECT_EQ(split("*.*"), taken("*", 1));
    EXPECT_EQ(split("a*.b*.*"), taken("a*.b*", 1));
}

TEST(DotStarFormatter, PairsAfterTheFirstMarkMustBeginWithADot) {
    EXPECT_EQ(split("a.*x"), refused);
    EXPECT_EQ(split("a.*x.*"), refused);
    EXPECT_EQ(split("a.**"), refused);
    EXPECT_EQ(split("a.*.*x"), refused);
    EXPECT_EQ(split("a.*.xx"), refused);
    EXPECT_EQ(split("a.* "), refused);
}

TEST(DotStarFormatter, PairThatIsNotAMarkIsIgnored) {
    EXPECT_EQ(split("a.*.x"), taken("a", 1));
    EXPECT_EQ(split("a.*.x.*"), taken("a", 2));
    EXPECT_EQ(split("a.*.x.y.*.z"), taken("a", 2));
    EXPECT_EQ(split("a.*.."), taken("a", 1));
    EXPECT_EQ(split("a.*..*"), refused);
}

TEST(DotStarFormatter, SingleDotAtTheEndIsIgnored) {
    EXPECT_EQ(split("a.*."), taken("a", 1));
    EXPECT_EQ(split("a.*.*."), taken("a", 2));
}

TEST(DotStarFormatter, AcceptsAnyOtherBytes) {
    EXPECT_EQ(split("\xC3\xA9\x01 .*"), taken("\xC3\xA9\x01 ", 1));
    EXPECT_EQ(split("\xFF"), taken("\xFF", 0));
}

TEST(DotStarFormatter, AcceptsTextsOfAnyLength) {
    const std::string name(100000, 'n');
    EXPECT_EQ(split(name.c_str()), taken(name.c_str(), 0));
    EXPECT_EQ(split((name + ".*").c_str()), taken(name.c_str(), 1));
    std::string marks = "n";
    for (int i = 0; i < 50000; ++i)
        marks += ".*";
    EXPECT_EQ(split(marks.c_str()), taken("n", 50000));
    EXPECT_EQ(split((marks + "x").c_str()), refused);
}

TEST(DotStarFormatter, LongNameIsTruncatedAndTerminatedAfterItsSize) {
    for (const char* text : {"12345", "12345.*"}) {
        for (unsigned int size = 0; size < 8; ++size) {
            test::GuardedText name(size + 1);
            unsigned int level = bad;
            EXPECT_TRUE(DotStarFormatter::getLevelAndName(text, name.array(), size, level));
            EXPECT_EQ(name.text(), std::string("12345").substr(0, size));
            EXPECT_TRUE(name.isTerminated());
            EXPECT_TRUE(name.isGuardWhole());
            EXPECT_EQ(level, text[5] == 0 ? 0u : 1u);
        }
    }
}

TEST(DotStarFormatter, ShortNameUsesOnlyItsOwnLength) {
    test::GuardedText name(6);
    unsigned int level = bad;
    EXPECT_TRUE(DotStarFormatter::getLevelAndName("12345", name.array(), 6, level));
    EXPECT_EQ(name.text(), "12345");
    EXPECT_TRUE(name.isTerminated());
    EXPECT_TRUE(name.isGuardWhole());
}

TEST(DotStarFormatter, NullNameIsNotWritten) {
    unsigned int level = bad;
    EXPECT_TRUE(DotStarFormatter::getLevelAndName("host.*.*", nullptr, 8, level));
    EXPECT_EQ(level, 2u);
    EXPECT_TRUE(DotStarFormatter::getLevelAndName(nullptr, nullptr, 0, level));
    EXPECT_EQ(level, 0u);
    EXPECT_FALSE(DotStarFormatter::getLevelAndName("host.*x", nullptr, 8, level));
    EXPECT_EQ(level, 0u);
}

TEST(DotStarFormatter, TextCanBeSplitInPlace) {
    char text[] = "host.*.*";
    unsigned int level = bad;
    EXPECT_TRUE(DotStarFormatter::getLevelAndName(text, text, 8, level));
    EXPECT_STREQ(text, "host");
    EXPECT_EQ(level, 2u);
}

} // namespace
