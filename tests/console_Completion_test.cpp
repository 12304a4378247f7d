#include "console_Completion.h"

#include <algorithm>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "support/TemporaryDirectory.h"

namespace {

using Names = std::vector<std::string>;

Names candidatesFor(const std::string& line) {
    return console::complete(line).candidates;
}

TEST(ConsoleCompletion, UsageExample) {
    const console::Completion completion = console::complete("show f");
    EXPECT_EQ(completion.replaced, 1U);
    EXPECT_EQ(completion.candidates, Names{"file "});
}

TEST(ConsoleCompletion, OfCommandsGoesWordByWord) {
    EXPECT_EQ(candidatesFor("he"), Names{"help "});
    EXPECT_EQ(candidatesFor("sh"), Names{"show "});
    EXPECT_EQ(candidatesFor("sh f"), Names{"file "});
    EXPECT_EQ(candidatesFor("sh us"), (Names{"user ", "users "}));
    EXPECT_EQ(candidatesFor("xyz"), Names());
    EXPECT_EQ(candidatesFor("show xyz"), Names());
    EXPECT_EQ(candidatesFor("uptime x"), Names());
    EXPECT_EQ(candidatesFor("help sho"), Names{"show "});
    EXPECT_GT(candidatesFor("").size(), 15U);
}

TEST(ConsoleCompletion, OfPathsKeepsTheFolderAndQuotesBlanks) {
    test::TemporaryDirectory directory;
    const std::string folder = directory.path() + "/";
    directory.write("one.txt", "");
    directory.write("two words.txt", "");
    directory.write(".hidden", "");
    directory.write("bad\"quote", "");
    ASSERT_EQ(mkdir((folder + "folder").c_str(), 0755), 0);
    EXPECT_EQ(candidatesFor("md5 " + folder + "o"), Names{folder + "one.txt "});
    EXPECT_EQ(candidatesFor("md5 " + folder + "f"), Names{folder + "folder/"});
    EXPECT_EQ(candidatesFor("md5 " + folder + "tw"), Names{"\"" + folder + "two words.txt\" "});
    EXPECT_EQ(candidatesFor("md5 \"" + folder + "two w"), Names{"\"" + folder + "two words.txt\" "});
    EXPECT_EQ(console::complete("md5 \"" + folder + "two w").replaced, folder.size() + 6);
    EXPECT_EQ(candidatesFor("md5 " + folder + ".h"), Names{folder + ".hidden "});
    EXPECT_EQ(candidatesFor("md5 " + folder).size(), 3U);
    EXPECT_EQ(candidatesFor("md5 " + folder + "none/x"), Names());
    EXPECT_EQ(candidatesFor("show file a " + folder), Names());
}

TEST(ConsoleCompletion, OfSwitchesAndUsers) {
    EXPECT_EQ(candidatesFor("debug on DirItera"), Names{"DirIterator "});
    const Names users = candidatesFor("show user roo");
    EXPECT_NE(std::find(users.begin(), users.end(), "root "), users.end());
}

TEST(ConsoleCompletion, TheCommonBeginningEndsBetweenCharacters) {
    EXPECT_EQ(console::commonBeginning({}), "");
    EXPECT_EQ(console::commonBeginning({"abc"}), "abc");
    EXPECT_EQ(console::commonBeginning({"abc", "abd"}), "ab");
    EXPECT_EQ(console::commonBeginning({"x\xc3\xa4", "x\xc3\xb6"}), "x");
    EXPECT_EQ(console::commonBeginning({"x\xc3\xa4"
                                        "a",
                                        "x\xc3\xa4"
                                        "b"}),
              "x\xc3\xa4");
    EXPECT_EQ(console::commonBeginning({"a", "b"}), "");
}

} // namespace
