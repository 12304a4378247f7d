#include "fw_Exception.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "fw_StableStringRepository.h"
#include "support/FailingAllocation.h"

using framework::Exception;

namespace {

TEST(Exception, UsageExample) {
    std::string file;
    int line = 0;
    try {
        throw new Exception(1239, "ut_PutStream", 77, "void utility::PutStream::PutC(char)", "", true);
    } catch (framework::Exception* failure) {
        if (failure->code() == framework::Exception::FAILURE_BUFFER) {
            file = failure->file();
            line = failure->line();
        }
        delete failure;
    }
    EXPECT_EQ(file, "ut_PutStream");
    EXPECT_EQ(line, 77);
}

TEST(Exception, AnswersWhatItWasMadeFrom) {
    const Exception failure(3591, "ut_DateTime", 12, "void f()", "Invalid Date", false);
    EXPECT_EQ(failure.code(), 3591U);
    EXPECT_STREQ(failure.file(), "ut_DateTime");
    EXPECT_EQ(failure.line(), 12);
    EXPECT_STREQ(failure.function(), "void f()");
    EXPECT_STREQ(failure.message(), "Invalid Date");
    EXPECT_STREQ(failure.what(), "Invalid Date");
    EXPECT_FALSE(failure.flag());
    EXPECT_TRUE(Exception(1, "f", 1, "f", "", true).flag());
}

TEST(Exception, CodesHaveNames) {
    EXPECT_EQ(Exception::FAILURE_INDEX, 1229U);
    EXPECT_EQ(Exception::FAILURE_ARRAY_STORAGE, 1230U);
    EXPECT_EQ(Exception::FAILURE_BUFFER_STORAGE, 1238U);
    EXPECT_EQ(Exception::FAILURE_BUFFER, 1239U);
    EXPECT_EQ(Exception::FAILURE_STREAM_INDEX, 1240U);
    EXPECT_EQ(Exception::FAILURE_DATE, 3591U);
    EXPECT_EQ(Exception(Exception::FAILURE_DATE, "f", 1, "f", "", false).code(), 3591U);
}

TEST(Exception, NullTextsCountAsEmpty) {
    const Exception failure(1, nullptr, 0, nullptr, nullptr, true);
    EXPECT_STREQ(failure.file(), "");
    EXPECT_STREQ(failure.function(), "");
    EXPECT_STREQ(failure.message(), "");
}

TEST(Exception, TextsAreCutAt255Characters) {
    const std::string fitting(255, 'x');
    const std::string tooLong(256, 'x');
    const Exception whole(1, "f", 1, fitting.c_str(), fitting.c_str(), true);
    EXPECT_EQ(whole.function(), fitting);
    EXPECT_EQ(whole.message(), fitting);
    const Exception cut(1, tooLong.c_str(), 1, tooLong.c_str(), tooLong.c_str(), true);
    EXPECT_EQ(cut.function(), fitting);
    EXPECT_EQ(cut.message(), fitting);
    EXPECT_EQ(cut.file(), tooLong);
}

TEST(Exception, CopyIsWholeAndIndependent) {
    auto failure = std::make_unique<Exception>(1230, "ut_Array", 5, "void g()", "text", false);
    const Exception copy(*failure);
    failure.reset();
    EXPECT_EQ(copy.code(), 1230U);
    EXPECT_STREQ(copy.file(), "ut_Array");
    EXPECT_EQ(copy.line(), 5);
    EXPECT_STREQ(copy.function(), "void g()");
    EXPECT_STREQ(copy.message(), "text");
    EXPECT_FALSE(copy.flag());
}

TEST(Exception, HoldsFourWordsAndTwoTextsOf256) {
    EXPECT_EQ(sizeof(Exception), sizeof(std::exception) + 4 * 4 + 256 + 256);
}

TEST(Exception, IsAStandardException) {
    const std::unique_ptr<std::exception> failure(new Exception(1, "f", 1, "f", "text", true));
    EXPECT_STREQ(failure->what(), "text");
}

TEST(Exception, WithoutMemoryForTheFileNameAllElseIsKept) {
    test::FailingAllocation failing(test::failAll);
    const Exception failure(1238, "a file that nobody named before", 9, "void h()", "text", true);
    failing.stop();
    EXPECT_STREQ(failure.file(), "");
    EXPECT_EQ(failure.code(), 1238U);
    EXPECT_STREQ(failure.function(), "void h()");
    EXPECT_STREQ(failure.message(), "text");
}

} // namespace
