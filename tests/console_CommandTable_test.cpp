#include "console_CommandTable.h"

#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

utility::StringArray wordsOf(const std::string& text) {
    utility::StringArray words(0);
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        words.Append(text.substr(at, end - at).c_str());
        at = end + 1;
    }
    return words;
}

// Returns the name of the command found and the number of words used, as "name/words", or the problem.
std::string found(const std::string& text) {
    const console::Lookup lookup = console::findCommand(wordsOf(text));
    return lookup.command != nullptr ? lookup.command->name + std::string("/") + std::to_string(lookup.used)
                                     : lookup.problem;
}

TEST(CommandTable, UsageExample) {
    utility::StringArray words(0);
    words.Append("sh");
    words.Append("f");
    const console::Lookup found = console::findCommand(words);
    ASSERT_NE(found.command, nullptr);
    EXPECT_STREQ(found.command->name, "show file");
    EXPECT_EQ(found.used, 2U);
}

TEST(CommandTable, AnExactNameWinsElseAllThatBeginWithTheWord) {
    using Names = std::vector<std::string>;
    const Names names = {"copy", "count", "crc", "user", "users"};
    EXPECT_EQ(console::matches(names, "co"), (Names{"copy", "count"}));
    EXPECT_EQ(console::matches(names, "cr"), Names{"crc"});
    EXPECT_EQ(console::matches(names, "user"), Names{"user"});
    EXPECT_EQ(console::matches(names, "users"), Names{"users"});
    EXPECT_EQ(console::matches(names, "usersx"), Names());
    EXPECT_EQ(console::matches(names, ""), names);
}

TEST(CommandTable, EveryCommandIsFoundByItsName) {
    std::set<std::string> names;
    unsigned int i = 0;
    for (const console::Command* command = console::commandAt(i); command != nullptr;
         command = console::commandAt(++i)) {
        EXPECT_TRUE(names.insert(command->name).second) << command->name;
        const unsigned int words = std::string(command->name).find(' ') != std::string::npos ? 2 : 1;
        std::string line = command->name;
        for (unsigned int argument = 0; argument < command->fewest; ++argument)
            line += " x";
        EXPECT_EQ(found(line), command->name + std::string("/") + std::to_string(words));
        EXPECT_LE(command->fewest, command->most);
        EXPECT_NE(*command->summary, 0);
    }
    EXPECT_GE(names.size(), 29U);
    EXPECT_EQ(console::commandAt(static_cast<unsigned int>(names.size())), nullptr);
}

TEST(CommandTable, ALongerNameWinsOverAnArgument) {
    EXPECT_EQ(found("debug"), "debug/1");
    EXPECT_EQ(found("debug on Map"), "debug on/2");
    EXPECT_EQ(found("debug of Map"), "debug off/2");
    EXPECT_EQ(found("debug o Map"), "ambiguous command: debug off, debug on");
    EXPECT_EQ(found("debug x"), "debug/1");
    EXPECT_EQ(found("path show"), "path/1");
    EXPECT_EQ(found("show user"), "show user/2");
}

TEST(CommandTable, TheNearestCommandHasFewErrors) {
    EXPECT_EQ(console::nearestCommand("pasword"), "password");
    EXPECT_EQ(console::nearestCommand("sohw file"), "show file");
    EXPECT_EQ(console::nearestCommand("cpy"), "copy");
    EXPECT_EQ(console::nearestCommand("sx"), "");
    EXPECT_EQ(console::nearestCommand("bogus"), "");
    EXPECT_EQ(console::nearestCommand(""), "");
    EXPECT_EQ(console::nearestCommand(std::string(100000, 'x')), "");
}

TEST(CommandTable, AnUnknownCommandIsReported) {
    EXPECT_EQ(found(""), "unknown command:  (try help)");
    utility::StringArray words(0);
    words.Append("");
    const console::Lookup empty = console::findCommand(words);
    EXPECT_EQ(empty.command, nullptr);
    EXPECT_EQ(empty.problem, "unknown command:  (try help)");
    EXPECT_EQ(found("showfile"), "unknown command: showfile; did you mean show file? (try help)");
    EXPECT_EQ(found("\xff\x80"), "unknown command: \xff\x80 (try help)");
    EXPECT_EQ(found(std::string(100000, 's')).size(), std::string("unknown command:  (try help)").size() + 100000);
}

} // namespace
