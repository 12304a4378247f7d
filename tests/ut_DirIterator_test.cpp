#include "ut_DirIterator.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <fnmatch.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "DebugSwitch.h"
#include "Descriptor.h"
#include "FailingAllocation.h"
#include "HeapGrowth.h"
#include "LogCapture.h"
#include "OpenDescriptors.h"
#include "TemporaryDirectory.h"
#include "VirtualSlot.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"

namespace {

using framework::Logger;
using test::openDescriptors;
using testing::IsEmpty;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using utility::DirIterator;
using Names = std::vector<std::string>;

constexpr unsigned int traceSwitch = 353;
constexpr const char* errorText = "DirIterator: error accessing directory ";

static_assert(std::is_base_of<utility::Path, DirIterator>::value, "an iterator is a path");
static_assert(!std::is_copy_constructible<DirIterator>::value, "a copy would share the open directory");
static_assert(!std::is_copy_assignable<DirIterator>::value, "an assignment would share the open directory");

// All matches in order; checks the state of the iterator at each of them.
Names walk(DirIterator& iterator, const char* pattern = nullptr) {
    Names names;
    for (const char* name = iterator.getFirst(pattern); name != nullptr; name = iterator.getNext()) {
        EXPECT_EQ(iterator.getIndex(), static_cast<int>(names.size()));
        names.push_back(name);
        utility::Path expected(iterator.getPath());
        expected.setFullFile(name);
        EXPECT_STREQ(iterator.getValue(), expected.getValue());
        EXPECT_STREQ(iterator.getFile(), expected.getFile());
        EXPECT_STREQ(iterator.getExtension(), expected.getExtension());
    }
    EXPECT_EQ(iterator.getIndex(), -1);
    return names;
}

Names matches(const std::string& directory, const char* pattern) {
    DirIterator iterator(directory.c_str(), pattern);
    return walk(iterator);
}

// The entries that `readdir` returns, in its order.
Names platformMatches(const std::string& directory, const char* pattern) {
    Names names;
    DIR* const stream = opendir(directory.c_str());
    if (stream == nullptr)
        throw std::string("cannot open " + directory);
    while (const dirent* const entry = readdir(stream)) {
        if (fnmatch(pattern, entry->d_name, 0) == 0)
            names.push_back(entry->d_name);
    }
    closedir(stream);
    return names;
}

void fill(const test::TemporaryDirectory& directory, const Names& names) {
    for (const std::string& name : names)
        directory.write(name, "");
}

Names textsFrom(const test::LogCapture& log) {
    Names texts;
    for (const test::LogEntry& entry : log.entries()) {
        EXPECT_EQ(entry.type, Logger::LOG_DEBUG) << entry.text;
        EXPECT_GT(entry.line, 0) << entry.text;
        EXPECT_NE(entry.function.find("utility::DirIterator::"), std::string::npos) << entry.function;
        texts.push_back(entry.text);
    }
    return texts;
}

TEST(DirIterator, UsageExample) {
    const test::TemporaryDirectory etc;
    fill(etc, {"host.conf", "nsswitch.conf", "passwd"});
    Names values;
    utility::DirIterator files(etc.path().c_str(), "*.conf");
    for (const char* name = files.getFirst(nullptr); name != nullptr; name = files.getNext())
        values.push_back(files.getValue());
    EXPECT_THAT(values, UnorderedElementsAre(etc.path("host.conf"), etc.path("nsswitch.conf")));
}

TEST(DirIterator, IteratesOverTheConfigurationOfTheSystem) {
    DirIterator iterator("/etc", "*.conf");
    EXPECT_EQ(iterator.getIndex(), -1);
    const Names expected = platformMatches("/etc", "*.conf");
    const char* const first = iterator.getFirst(nullptr);
    ASSERT_EQ(first == nullptr, expected.empty());
    EXPECT_EQ(iterator.getIndex(), expected.empty() ? -1 : 0);
    EXPECT_EQ(walk(iterator), expected);
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getIndex(), -1);
}

TEST(DirIterator, FileAndExtensionAreThoseOfEachMatch) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a.b.conf"});
    DirIterator iterator(directory.path().c_str(), "*.conf");
    EXPECT_STREQ(iterator.getPath(), (directory.path() + "/").c_str());
    EXPECT_STREQ(iterator.getFullFile(), "");
    EXPECT_STREQ(iterator.getFirst(nullptr), "a.b.conf");
    EXPECT_STREQ(iterator.getFile(), "a.b");
    EXPECT_STREQ(iterator.getExtension(), "conf");
    EXPECT_EQ(iterator.getValue(), directory.path("a.b.conf"));
    EXPECT_TRUE(iterator.exists());
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getValue(), directory.path("a.b.conf"));
}

TEST(DirIterator, EntriesAreInTheOrderOfReaddirIncludingDots) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "b.x", ".hidden", "c d", "ä", "[x]"});
    ASSERT_EQ(mkdir(directory.path("sub").c_str(), 0700), 0);
    ASSERT_EQ(symlink("nowhere", directory.path("link").c_str()), 0);
    const Names all = matches(directory.path(), "*");
    EXPECT_EQ(all, platformMatches(directory.path(), "*"));
    EXPECT_THAT(all, UnorderedElementsAre(".", "..", "a", "b.x", ".hidden", "c d", "ä", "[x]", "sub", "link"));
    EXPECT_THAT(matches(directory.path(), ".*"), UnorderedElementsAre(".", "..", ".hidden"));
    EXPECT_EQ(matches(directory.path(), "."), (Names{"."}));
    EXPECT_EQ(matches(directory.path(), ".."), (Names{".."}));
}

TEST(DirIterator, PatternsMatchAsFnmatchDoes) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "ab", "abc", "b", "B", "a.c", "[", "[a", "*", "?", "\\", "a]", "-", "!", " "});
    const std::string many(2000, '*');
    for (const char* const pattern :
         {"*",   "a*",  "?",  "??", "*b*", "[ab]", "[!ab]", "[a-c]*", "[[:upper:]]",  "a.c",       "A",     "\\*",
          "\\?", "\\[", "",   "[",  "[a",  "[!",   "[]",    "[]a]",   "[[:nosuch:]]", "[[:",       "[z-a]", "\\",
          "a\\", "**",  "*/", "/",  "a/b", " ",    "-",     "\xFF",   "[\xFF",        many.c_str()})
        EXPECT_EQ(matches(directory.path(), pattern), platformMatches(directory.path(), pattern)) << pattern;
}

TEST(DirIterator, NullPatternMatchesNothing) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a"});
    DirIterator iterator(directory.path().c_str(), nullptr);
    EXPECT_EQ(iterator.getFirst(nullptr), nullptr);
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_EQ(iterator.length(nullptr), 0U);
    EXPECT_EQ(iterator.getType(), 0);
    EXPECT_FALSE(iterator.inError());
    EXPECT_STREQ(iterator.getFirst("a"), "a");
    iterator.setPattern(nullptr);
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getFirst(nullptr), nullptr);
}

TEST(DirIterator, GetFirstReplacesThePatternUnlessNull) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a.x", "b.y"});
    DirIterator iterator(directory.path().c_str(), "*.x");
    EXPECT_STREQ(iterator.getFirst(nullptr), "a.x");
    EXPECT_STREQ(iterator.getFirst("*.y"), "b.y");
    EXPECT_EQ(iterator.getIndex(), 0);
    EXPECT_STREQ(iterator.getFirst(nullptr), "b.y");
    EXPECT_EQ(iterator.getFirst("*.z"), nullptr);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_EQ(iterator.getNext(), nullptr);
    char pattern[] = "*.x";
    iterator.setPattern(pattern);
    pattern[2] = 'y';
    EXPECT_STREQ(iterator.getFirst(nullptr), "a.x");
}

TEST(DirIterator, GetFirstStartsAgain) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "b", "c"});
    DirIterator iterator(directory.path().c_str(), "?");
    const Names first = walk(iterator);
    EXPECT_EQ(walk(iterator), first);
    iterator.getFirst(nullptr);
    iterator.getNext();
    EXPECT_EQ(iterator.getIndex(), 1);
    EXPECT_STREQ(iterator.getFirst(nullptr), first[0].c_str());
    EXPECT_EQ(iterator.getIndex(), 0);
    directory.write("d", "");
    EXPECT_EQ(walk(iterator), platformMatches(directory.path(), "?"));
}

TEST(DirIterator, GetNextBeforeTheFirstIsNull) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a"});
    DirIterator iterator(directory.path().c_str(), "a");
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_FALSE(iterator.inError());
    EXPECT_STREQ(iterator.getFirst(nullptr), "a");
}

TEST(DirIterator, LengthCountsTheMatchesToTheEnd) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a.x", "b.x", "c.y"});
    DirIterator iterator(directory.path().c_str(), "*.x");
    EXPECT_EQ(iterator.length(nullptr), 2U);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.length("*.y"), 1U);
    EXPECT_EQ(iterator.length(nullptr), 1U);
    EXPECT_EQ(iterator.length("*"), 5U);
    EXPECT_EQ(iterator.length("none"), 0U);
}

TEST(DirIterator, AcceptsItsOwnTexts) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a.x", "b.x"});
    DirIterator iterator(directory.path().c_str(), "a*");
    EXPECT_STREQ(iterator.getFirst(iterator.getFirst(nullptr)), "a.x");
    iterator.setPattern(iterator.getFullFile());
    EXPECT_EQ(iterator.length(nullptr), 1U);
    iterator.setFullFile(iterator.getFirst("b*"));
    EXPECT_EQ(iterator.getValue(), directory.path("b.x"));
    iterator.setPath(iterator.getPath());
    EXPECT_EQ(iterator.length(iterator.getFile()), 0U);
}

// Real directories

TEST(DirIterator, IteratesOverThousandsOfEntries) {
    const test::TemporaryDirectory directory;
    for (int i = 0; i < 3000; ++i)
        directory.write((i % 2 == 0 ? "even" : "odd") + std::to_string(i) + "." + std::string(1 + i % 200, 'x'), "");
    const Names odd = matches(directory.path(), "odd*");
    EXPECT_EQ(odd, platformMatches(directory.path(), "odd*"));
    EXPECT_EQ(odd.size(), 1500U);
    DirIterator iterator(directory.path().c_str(), "*");
    EXPECT_EQ(iterator.length(nullptr), 3002U);
}

TEST(DirIterator, EndsIfTheDirectoryIsRemovedDuringIteration) {
    const test::TemporaryDirectory directory;
    const std::string sub = directory.path("sub");
    ASSERT_EQ(mkdir(sub.c_str(), 0700), 0);
    const int count = 2000;
    for (int i = 0; i < count; ++i)
        directory.write("sub/" + std::to_string(i), "");
    DirIterator iterator(sub.c_str(), "*");
    ASSERT_NE(iterator.getFirst(nullptr), nullptr);
    ASSERT_NE(iterator.getNext(), nullptr);
    std::filesystem::remove_all(sub);
    ASSERT_FALSE(directory.exists("sub"));
    int seen = 2;
    while (iterator.getNext() != nullptr)
        ASSERT_LE(++seen, count + 2);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getFirst("[0-9]*"), nullptr);
    EXPECT_EQ(iterator.getType(), 0);
    EXPECT_FALSE(iterator.inError());
    iterator.close();
    EXPECT_EQ(iterator.getFirst(nullptr), nullptr);
    EXPECT_TRUE(iterator.inError());
    EXPECT_EQ(iterator.ErrorMessage(), errorText + sub + "/");
}

TEST(DirIterator, EntriesMayBeRemovedAndAddedDuringIteration) {
    const test::TemporaryDirectory directory;
    for (int i = 0; i < 2000; ++i)
        directory.write("f" + std::to_string(i), "");
    DirIterator iterator(directory.path().c_str(), "f*");
    int seen = 0;
    for (const char* name = iterator.getFirst(nullptr); name != nullptr; name = iterator.getNext()) {
        EXPECT_EQ(unlink(iterator.getValue()), 0);
        if (++seen <= 100)
            directory.write("new" + std::to_string(seen), "");
    }
    EXPECT_GE(seen, 1000);
    EXPECT_LE(seen, 2000);
    EXPECT_EQ(iterator.length("f*"), 2000U - static_cast<unsigned int>(seen));
    EXPECT_EQ(iterator.length("new*"), 100U);
}

TEST(DirIterator, DirectoryCreatedLaterIsOpenedThen) {
    const test::TemporaryDirectory directory;
    DirIterator iterator(directory.path("later").c_str(), "a");
    EXPECT_EQ(iterator.getFirst(nullptr), nullptr);
    EXPECT_TRUE(iterator.inError());
    ASSERT_EQ(mkdir(directory.path("later").c_str(), 0700), 0);
    directory.write("later/a", "");
    EXPECT_STREQ(iterator.getFirst(nullptr), "a");
}

// Directories that cannot be read

// Directories that even root cannot open.
std::vector<std::string> unreadable(const test::TemporaryDirectory& directory) {
    const std::string file = directory.write("file", "");
    if (symlink("loop", directory.path("loop").c_str()) != 0)
        throw std::string("cannot make a loop");
    return {directory.path("nowhere/"),
            file + "/",
            directory.path("loop/"),
            directory.path(std::string(300, 'x') + "/"),
            "/" + std::string(5000, 'y') + "/",
            ""};
}

TEST(DirIterator, UnreadableDirectoryReturnsNullAndIsReported) {
    const test::TemporaryDirectory directory;
    for (const std::string& path : unreadable(directory)) {
        DirIterator iterator(path.c_str(), "*");
        EXPECT_FALSE(iterator.inError());
        EXPECT_EQ(iterator.getFirst(nullptr), nullptr) << path;
        EXPECT_TRUE(iterator.inError()) << path;
        EXPECT_EQ(std::string(iterator.ErrorMessage()).substr(0, 200), (errorText + path).substr(0, 200));
        EXPECT_EQ(iterator.getIndex(), -1);
        EXPECT_EQ(iterator.getNext(), nullptr);
        EXPECT_EQ(iterator.getIndex(), -1);
        EXPECT_EQ(iterator.length("*"), 0U);
        EXPECT_EQ(iterator.getType(), 0);
        EXPECT_FALSE(iterator.open());
        iterator.close();
        EXPECT_STREQ(iterator.getFullFile(), "");
    }
}

TEST(DirIterator, ErrorIsReportedOnlyOnce) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.path("nowhere/");
    DirIterator iterator(path.c_str(), "*");
    EXPECT_FALSE(iterator.open());
    EXPECT_TRUE(iterator.inError());
    EXPECT_EQ(iterator.ErrorMessage(), errorText + path);
    iterator.ClearError();
    EXPECT_FALSE(iterator.open());
    EXPECT_EQ(iterator.getFirst(nullptr), nullptr);
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_FALSE(iterator.inError());
    EXPECT_STREQ(iterator.ErrorMessage(), "");
}

TEST(DirIterator, NullDirectoryCannotBeRead) {
    DirIterator iterator(nullptr, nullptr);
    EXPECT_STREQ(iterator.getPath(), "");
    EXPECT_FALSE(iterator.open());
    EXPECT_EQ(iterator.ErrorMessage(), std::string(errorText));
}

TEST(DirIterator, DirectoryWithoutPermissionCannotBeRead) {
    const test::TemporaryDirectory directory;
    const std::string sub = directory.path("sub/");
    ASSERT_EQ(mkdir(sub.c_str(), 0), 0);
    const test::ChildResult child = test::runInChild([&] {
        if (geteuid() == 0 && seteuid(65534) != 0)
            return 1;
        DirIterator iterator(sub.c_str(), "*");
        return !iterator.open() && iterator.ErrorMessage() == errorText + sub && iterator.getFirst("*") == nullptr ? 0
                                                                                                                   : 2;
    });
    EXPECT_TRUE(child.exited);
    EXPECT_EQ(child.status, 0) << child.err;
}

TEST(DirIterator, DirectoryCannotBeReadIfDescriptorsAreExhausted) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs descriptors of its own to check types";
#endif
    const test::TemporaryDirectory directory;
    directory.write("a", "");
    const test::ChildResult child = test::runInChild([&] {
        DirIterator iterator(directory.path().c_str(), "a");
        const rlimit none = {0, 0};
        rlimit before = {};
        getrlimit(RLIMIT_NOFILE, &before);
        const rlimit fewer = {none.rlim_cur, before.rlim_max};
        if (setrlimit(RLIMIT_NOFILE, &fewer) != 0)
            return 1;
        if (iterator.getFirst(nullptr) != nullptr || !iterator.inError())
            return 2;
        setrlimit(RLIMIT_NOFILE, &before);
        const char* const name = iterator.getFirst(nullptr);
        return name != nullptr && name[0] == 'a' ? 0 : 3;
    });
    EXPECT_TRUE(child.exited);
    EXPECT_EQ(child.status, 0) << child.err;
}

// Directories that fail during iteration

// Makes reading the open directory `path` fail with ENOTDIR, by replacing its descriptor with that of a file. Returns
// whether there was exactly one such descriptor.
bool breakOpenDirectory(const test::TemporaryDirectory& directory, const std::string& path) {
    const std::vector<int> descriptors = test::descriptorsOf(path);
    const test::Descriptor file(open(directory.write("file", "").c_str(), O_RDONLY | O_CLOEXEC));
    return descriptors.size() == 1 && dup2(file.number(), descriptors[0]) == descriptors[0];
}

TEST(DirIterator, FailureAtTheFirstEntryIsReported) {
    const test::TemporaryDirectory directory;
    const std::string sub = directory.path("sub");
    ASSERT_EQ(mkdir(sub.c_str(), 0700), 0);
    DirIterator iterator(sub.c_str(), "*");
    ASSERT_TRUE(iterator.open());
    ASSERT_TRUE(breakOpenDirectory(directory, sub));
    EXPECT_EQ(iterator.getFirst(nullptr), nullptr);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_TRUE(iterator.inError());
    EXPECT_EQ(iterator.ErrorMessage(), errorText + sub + "/");
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getType(), 0);
}

TEST(DirIterator, FailureAfterTheLastEntryIsReported) {
    const test::TemporaryDirectory directory;
    const std::string sub = directory.path("sub");
    ASSERT_EQ(mkdir(sub.c_str(), 0700), 0);
    directory.write("sub/a", "");
    DirIterator iterator(sub.c_str(), "*");
    // The platform reads all three entries with the first; only reading a fourth fails.
    ASSERT_NE(iterator.getFirst(nullptr), nullptr);
    ASSERT_TRUE(breakOpenDirectory(directory, sub));
    EXPECT_NE(iterator.getNext(), nullptr);
    EXPECT_NE(iterator.getNext(), nullptr);
    EXPECT_FALSE(iterator.inError());
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_TRUE(iterator.inError());
    EXPECT_EQ(iterator.ErrorMessage(), errorText + sub + "/");
}

TEST(DirIterator, FailureInTheMiddleOfALongDirectoryIsReported) {
    const test::TemporaryDirectory directory;
    const std::string sub = directory.path("sub");
    ASSERT_EQ(mkdir(sub.c_str(), 0700), 0);
    const unsigned int count = 3000;
    for (unsigned int i = 0; i < count; ++i)
        directory.write("sub/" + std::to_string(i) + std::string(100, 'x'), "");
    DirIterator iterator(sub.c_str(), "*");
    ASSERT_NE(iterator.getFirst(nullptr), nullptr);
    ASSERT_TRUE(breakOpenDirectory(directory, sub));
    unsigned int seen = 1;
    while (iterator.getNext() != nullptr)
        ++seen;
    EXPECT_LT(seen, count);
    EXPECT_TRUE(iterator.inError());
    EXPECT_EQ(iterator.ErrorMessage(), errorText + sub + "/");
}

TEST(DirIterator, OnlyTheFirstFailureIsReported) {
    const test::TemporaryDirectory directory;
    const std::string sub = directory.path("sub");
    DirIterator iterator(sub.c_str(), "*");
    ASSERT_FALSE(iterator.open());
    ASSERT_TRUE(iterator.inError());
    iterator.ClearError();
    ASSERT_EQ(mkdir(sub.c_str(), 0700), 0);
    ASSERT_TRUE(iterator.open());
    ASSERT_TRUE(breakOpenDirectory(directory, sub));
    EXPECT_EQ(iterator.getFirst(nullptr), nullptr);
    EXPECT_FALSE(iterator.inError());

    DirIterator other(sub.c_str(), "*");
    ASSERT_TRUE(other.open());
    ASSERT_TRUE(breakOpenDirectory(directory, sub));
    EXPECT_EQ(other.length(nullptr), 0U);
    EXPECT_TRUE(other.inError());
    other.ClearError();
    EXPECT_EQ(other.length(nullptr), 0U);
    EXPECT_FALSE(other.inError());
    other.setPath(directory.path("nowhere").c_str());
    EXPECT_FALSE(other.open());
    EXPECT_FALSE(other.inError());
}

TEST(DirIterator, EndOfDirectoryIsNotAFailureWhateverErrnoWas) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "b"});
    DirIterator iterator(directory.path().c_str(), "?");
    errno = EIO;
    for (const char* name = iterator.getFirst(nullptr); name != nullptr; name = iterator.getNext())
        errno = EIO;
    EXPECT_FALSE(iterator.inError());
}

// Opening and closing

TEST(DirIterator, NeverOpensUnderTheNumberOfAStandardStream) {
    const test::TemporaryDirectory directory;
    directory.write("a", "");
    const test::ChildResult child = test::runInChild([&] {
        test::closeStandardStreams();
        {
            DirIterator iterator(directory.path().c_str(), "a");
            if (iterator.getFirst(nullptr) == nullptr || iterator.getNext() != nullptr || iterator.inError())
                return 1;
            const std::vector<int> descriptors = test::descriptorsOf(directory.path());
            if (!test::areStandardStreamsClosed() || descriptors.size() != 1 || !test::isClosedOnExec(descriptors[0]))
                return 2;
        }
        return test::descriptorsOf(directory.path()).empty() ? 0 : 3;
    });
    EXPECT_EQ(child.status, 0);
}

TEST(DirIterator, OpensOnceAndClosesInTheDestructor) {
    const test::TemporaryDirectory directory;
    directory.write("a", "");
    const std::size_t before = openDescriptors().size();
    {
        DirIterator iterator(directory.path().c_str(), "a");
        EXPECT_EQ(openDescriptors().size(), before);
        EXPECT_TRUE(iterator.open());
        EXPECT_TRUE(iterator.open());
        iterator.getFirst(nullptr);
        iterator.length(nullptr);
        EXPECT_EQ(openDescriptors().size(), before + 1);
    }
    EXPECT_EQ(openDescriptors().size(), before);
}

TEST(DirIterator, CanBeClosedAtAnyTime) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "b"});
    const std::size_t before = openDescriptors().size();
    DirIterator iterator(directory.path().c_str(), "?");
    iterator.close();
    ASSERT_NE(iterator.getFirst(nullptr), nullptr);
    iterator.close();
    iterator.close();
    EXPECT_EQ(openDescriptors().size(), before);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_EQ(iterator.getType(), 0);
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_EQ(walk(iterator), platformMatches(directory.path(), "?"));
    iterator.close();
    EXPECT_TRUE(iterator.open());
    EXPECT_EQ(iterator.length(nullptr), 3U);
}

TEST(DirIterator, ReopeningStartsAgain) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "b"});
    DirIterator iterator(directory.path().c_str(), "?");
    ASSERT_NE(iterator.getFirst(nullptr), nullptr);
    EXPECT_TRUE(iterator.open());
    EXPECT_EQ(iterator.getIndex(), -1);
    EXPECT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(walk(iterator), platformMatches(directory.path(), "?"));
}

TEST(DirIterator, NewDirectoryIsReadAfterTheOldOneIsClosed) {
    const test::TemporaryDirectory first;
    const test::TemporaryDirectory second;
    first.write("one.x", "");
    second.write("two.x", "");
    DirIterator iterator(first.path().c_str(), "*.x");
    EXPECT_EQ(walk(iterator), (Names{"one.x"}));
    iterator.close();
    iterator.setPath(second.path().c_str());
    EXPECT_EQ(walk(iterator), (Names{"two.x"}));
    EXPECT_EQ(iterator.getValue(), second.path("two.x"));
}

// The type

TEST(DirIterator, TypeIsAlwaysZero) {
    const test::TemporaryDirectory directory;
    directory.write("file", "x");
    ASSERT_EQ(mkdir(directory.path("directory").c_str(), 0700), 0);
    ASSERT_EQ(mkfifo(directory.path("fifo").c_str(), 0600), 0);
    ASSERT_EQ(symlink("nowhere", directory.path("dangling").c_str()), 0);
    const test::ChildResult child = test::runInChild([&] {
        // Whether or not the names exist in the working directory.
        for (const std::string& working : {directory.path(), directory.path("directory")}) {
            if (chdir(working.c_str()) != 0)
                return 1;
            DirIterator iterator(directory.path().c_str(), "*");
            if (iterator.getType() != 0)
                return 2;
            unsigned int count = 0;
            for (const char* name = iterator.getFirst(nullptr); name != nullptr; name = iterator.getNext(), ++count) {
                if (iterator.getType() != 0)
                    return 3;
            }
            if (count != 6 || iterator.getType() != 0)
                return 4;
        }
        return 0;
    });
    EXPECT_TRUE(child.exited);
    EXPECT_EQ(child.status, 0) << child.err;
}

// Traces

TEST(DirIterator, OpeningIsTraced) {
    const test::TemporaryDirectory directory;
    const std::string path = directory.path() + "/";
    DirIterator iterator(path.c_str(), "*");
    const char* const openName = "bool utility::DirIterator::open()";
    const test::DebugSwitch debug(traceSwitch);
    test::LogCapture log;
    ASSERT_TRUE(iterator.open());
    ASSERT_EQ(log.count(), 1U);
    EXPECT_EQ(log.entries()[0].function, openName);
    EXPECT_THAT(textsFrom(log)[0], testing::MatchesRegex("opendir " + path + " returned \\[0x[0-9a-f]+\\]"));
    log.clear();
    DirIterator nowhere(directory.path("nowhere/").c_str(), "*");
    ASSERT_FALSE(nowhere.open());
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, openName, "opendir " + path + "nowhere/ returned [(nil)]"));
    ASSERT_FALSE(nowhere.open());
    EXPECT_EQ(textsFrom(log).size(), 2U);
}

TEST(DirIterator, ClosingIsTracedBeforeAndAfter) {
    const test::TemporaryDirectory directory;
    DirIterator iterator(directory.path().c_str(), "*");
    const test::DebugSwitch debug(traceSwitch);
    test::LogCapture log;
    iterator.close();
    EXPECT_EQ(log.count(), 0U);
    iterator.open();
    log.clear();
    iterator.close();
    EXPECT_EQ(textsFrom(log), (Names{"closedir m_pDir", "closedir m_pDir"}));
    EXPECT_EQ(log.entries()[0].function, "void utility::DirIterator::close()");
    log.clear();
    iterator.close();
    EXPECT_EQ(log.count(), 0U);
}

TEST(DirIterator, EachMatchIsTraced) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a.x", "b.y"});
    DirIterator iterator(directory.path().c_str(), "*.x");
    ASSERT_TRUE(iterator.open());
    const Names all = platformMatches(directory.path(), "*");
    Names upToTheMatch;
    Names afterTheMatch;
    for (const std::string& name : all) {
        const bool isMatch = name == "a.x";
        Names& lines =
            upToTheMatch.empty() || upToTheMatch.back() != "returning value a.x" ? upToTheMatch : afterTheMatch;
        lines.push_back("match name " + name + " to pattern *.x");
        lines.push_back("match returned " + std::to_string(isMatch ? 0 : FNM_NOMATCH));
        if (isMatch)
            lines.push_back("returning value a.x");
    }
    const test::DebugSwitch debug(traceSwitch);
    test::LogCapture log;
    ASSERT_STREQ(iterator.getFirst(nullptr), "a.x");
    EXPECT_EQ(textsFrom(log), upToTheMatch);
    log.clear();
    ASSERT_EQ(iterator.getNext(), nullptr);
    EXPECT_EQ(textsFrom(log), afterTheMatch);
}

TEST(DirIterator, MatchesAreTracedInTheNamesOfGetFirstAndGetNext) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a.x", "b.x"});
    DirIterator iterator(directory.path().c_str(), "*.x");
    ASSERT_TRUE(iterator.open());
    const test::DebugSwitch debug(traceSwitch);
    test::LogCapture log;
    const std::string first = iterator.getFirst(nullptr);
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, "const char* utility::DirIterator::getFirst(const char*)",
                             "returning value " + first));
    const std::string second = iterator.getNext();
    EXPECT_TRUE(
        log.contains(Logger::LOG_DEBUG, "const char* utility::DirIterator::getNext()", "returning value " + second));
}

TEST(DirIterator, LogsNothingWithItsSwitchOff) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "b"});
    const test::LogCapture log;
    DirIterator iterator(directory.path().c_str(), "?");
    walk(iterator);
    iterator.getType();
    iterator.close();
    DirIterator nowhere(directory.path("nowhere").c_str(), nullptr);
    nowhere.getFirst(nullptr);
    EXPECT_EQ(log.count(), 0U);
}

// Item interface

TEST(DirIterator, IsNamedAsItsDirectory) {
    const DirIterator iterator("/some/where", "*");
    const framework::Entity& entity = iterator;
    EXPECT_EQ(iterator.getName(), strings::GS.toToken("/some/where/"));
    EXPECT_STREQ(entity.getNameString(), "/some/where/");
    EXPECT_EQ(test::virtualSlot(&DirIterator::getName), 2);
    EXPECT_EQ(test::virtualSlot(&DirIterator::getFirst), -1);
}

TEST(DirIterator, CanBeDeletedAsAnEntity) {
    const test::TemporaryDirectory directory;
    const std::size_t before = openDescriptors().size();
    auto* const iterator = new DirIterator(directory.path().c_str(), "*");
    iterator->getFirst(nullptr);
    framework::Entity* const entity = iterator;
    delete entity;
    EXPECT_EQ(openDescriptors().size(), before);
}

TEST(DirIterator, LeaksNothing) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "b"});
    const long outstanding = framework::Memory::staticOutstanding();
    EXPECT_LT(test::heapGrowth([&] {
                  DirIterator iterator(directory.path().c_str(), "*");
                  iterator.length("?");
                  iterator.setPattern("b");
                  iterator.getFirst(nullptr);
                  DirIterator nowhere("/nonexistent/", "*");
                  nowhere.open();
              }),
              8000U);
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

TEST(DirIterator, ResultsAreCorrectOrNullIfMemoryIsExhausted) {
    const test::TemporaryDirectory directory;
    fill(directory, {"a", "b"});
    const std::string path = directory.path();
    const std::size_t before = openDescriptors().size();
    const long outstanding = framework::Memory::staticOutstanding();
    const unsigned long failed = test::failEachAllocationOnce(
        [&] {
            try {
                DirIterator iterator(path.c_str(), "?");
                iterator.getFirst(nullptr);
                iterator.getNext();
                iterator.length("[ab]");
                iterator.close();
            } catch (const std::bad_alloc&) {
                // The parts of a path are `std::string`s.
            }
        },
        [&] {
            EXPECT_EQ(openDescriptors().size(), before);
            EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
        });
    EXPECT_GE(failed, 3U);
}

} // namespace
