#include "console_RecallFile.h"

#include <cstdlib>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

namespace {

TEST(ConsoleRecallFile, UsageExample) {
    test::TemporaryDirectory directory;
    const console::RecallFile file(directory.path("a/b/history"));
    EXPECT_TRUE(file.lines().empty());
    file.add("show disks");
    file.add("two\nlines");
    file.add("date");
    EXPECT_EQ(file.lines(), (std::vector<std::string>{"show disks", "date"}));
    struct stat status = {};
    ASSERT_EQ(stat(directory.path("a/b/history").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST(ConsoleRecallFile, ALongFileIsShortenedToItsLastLines) {
    test::TemporaryDirectory directory;
    std::string text;
    const std::size_t count = 2 * console::RecallFile::most + 1;
    for (std::size_t i = 0; i < count; ++i)
        text += "line " + std::to_string(i) + "\n";
    const std::string path = directory.write("history", text);
    const console::RecallFile file(path);
    EXPECT_EQ(file.lines().size(), console::RecallFile::most);
    EXPECT_EQ(file.lines().back(), "line " + std::to_string(count - 1));
    EXPECT_LT(directory.read("history").size(), text.size() / 2 + 1000);
    EXPECT_FALSE(directory.exists("history.new"));
    struct stat status = {};
    ASSERT_EQ(stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0600U);
}

TEST(ConsoleRecallFile, WithoutAPlaceNothingIsKept) {
    const console::RecallFile none("");
    none.add("date");
    EXPECT_TRUE(none.lines().empty());
    const console::RecallFile closed("/proc/nonexistent/history");
    closed.add("date");
    EXPECT_TRUE(closed.lines().empty());
}

TEST(ConsoleRecallFile, ItsPlaceFollowsTheEnvironment) {
    const auto pathWith = [](const char* state, const char* home) {
        return test::runInChild([=] {
                   unsetenv("XDG_STATE_HOME");
                   unsetenv("HOME");
                   if (state != nullptr)
                       setenv("XDG_STATE_HOME", state, 1);
                   if (home != nullptr)
                       setenv("HOME", home, 1);
                   const std::string path = console::RecallFile::defaultPath();
                   return write(STDOUT_FILENO, path.data(), path.size()) >= 0 ? 0 : 1;
               })
            .out;
    };
    EXPECT_EQ(pathWith("/state", "/home/me"), "/state/vxconsole/history");
    EXPECT_EQ(pathWith("relative", "/home/me"), "/home/me/.local/state/vxconsole/history");
    EXPECT_EQ(pathWith(nullptr, "/home/me"), "/home/me/.local/state/vxconsole/history");
    EXPECT_EQ(pathWith(nullptr, nullptr), "");
    EXPECT_EQ(pathWith("", "relative"), "");
}

} // namespace
