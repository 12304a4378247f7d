#pragma once

#include <string>

#include <gtest/gtest.h>

namespace test {

/// The tests of a class that splits a selector of groups. `Traits` names the class to test:
/// - `Level`, its enumeration of levels,
/// - `highest`, its highest level,
/// - `split(text, name, size, level)`, its operation.
///
///     namespace test {
///     INSTANTIATE_TYPED_TEST_SUITE_P(HostGroupFormatter, GroupFormatterTest, HostGroups);
///     }
template<typename Traits>
class GroupFormatterTest : public testing::Test {
protected:
    struct Result {
        explicit Result(const std::string& text) : Result(text.c_str()) {}
        explicit Result(const char* text) : accepted(Traits::split(text, name, sizeof name - 1, level)) {}

        char name[32] = "untouched";
        typename Traits::Level level = static_cast<typename Traits::Level>(77);
        bool accepted;
    };

    static std::string withMarks(const std::string& name, unsigned int count) {
        std::string text = name;
        for (unsigned int i = 0; i < count; ++i)
            text += ".*";
        return text;
    }
};

TYPED_TEST_SUITE_P(GroupFormatterTest);

TYPED_TEST_P(GroupFormatterTest, LevelIsTheCountOfMarks) {
    for (unsigned int level = 0; level <= TypeParam::highest; ++level) {
        const typename TestFixture::Result result(this->withMarks("group", level));
        EXPECT_TRUE(result.accepted);
        EXPECT_STREQ(result.name, "group");
        EXPECT_EQ(result.level, level);
    }
}

TYPED_TEST_P(GroupFormatterTest, MoreMarksReturnFalseWithLevelZero) {
    for (unsigned int level = TypeParam::highest + 1; level < TypeParam::highest + 4; ++level) {
        const typename TestFixture::Result result(this->withMarks("group", level));
        EXPECT_FALSE(result.accepted);
        EXPECT_EQ(result.level, 0u);
        EXPECT_STREQ(result.name, "group");
    }
}

TYPED_TEST_P(GroupFormatterTest, NullAndInvalidTextsReturnFalseWithLevelZero) {
    for (const char* text : {static_cast<const char*>(nullptr), ".", ".*", ".*x", "a.*x", "a.*.*x"}) {
        const typename TestFixture::Result result(text);
        EXPECT_FALSE(result.accepted);
        EXPECT_EQ(result.level, 0u);
        EXPECT_STREQ(result.name, "untouched");
    }
}

TYPED_TEST_P(GroupFormatterTest, EmptyTextIsAnEmptyName) {
    const typename TestFixture::Result result("");
    EXPECT_TRUE(result.accepted);
    EXPECT_EQ(result.level, 0u);
    EXPECT_STREQ(result.name, "");
}

TYPED_TEST_P(GroupFormatterTest, LongNameIsTruncated) {
    const typename TestFixture::Result result(this->withMarks(std::string(100000, 'n'), 1));
    EXPECT_TRUE(result.accepted);
    EXPECT_EQ(result.level, 1u);
    EXPECT_EQ(result.name, std::string(31, 'n'));
}

REGISTER_TYPED_TEST_SUITE_P(GroupFormatterTest, LevelIsTheCountOfMarks, MoreMarksReturnFalseWithLevelZero,
                            NullAndInvalidTextsReturnFalseWithLevelZero, EmptyTextIsAnEmptyName, LongNameIsTruncated);

} // namespace test
