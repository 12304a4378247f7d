#include "ut_Path.h"

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "DebugSwitch.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "ReferencePath.h"
#include "TemporaryDirectory.h"
#include "TraceLines.h"
#include "Umask.h"
#include "VirtualSlot.h"
#include "fw_Entity.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"
#include "fw_StringRepository.h"

namespace {

using framework::Logger;
using testing::ElementsAre;
using testing::StartsWith;
using utility::Path;
using Texts = std::vector<std::string>;

constexpr unsigned int traceSwitch = 489;

static_assert(std::is_base_of<framework::Item, Path>::value, "a path is an item");
static_assert(std::is_convertible<Path*, framework::Entity*>::value, "and an entity");

// The three parts as "directory|file|extension".
std::string partsOf(const Path& path) {
    return std::string(path.getPath()) + "|" + path.getFile() + "|" + path.getExtension();
}

std::string partsOf(const char* value) {
    return partsOf(Path(value));
}

Texts componentsOf(const Path& path) {
    Texts components;
    for (unsigned int i = 0; i < path.componentCount(); ++i) {
        const char* const component = path.component(i);
        components.push_back(component != nullptr ? component : "(null)");
    }
    return components;
}

std::string repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += text;
    return result;
}

// The messages of one operation as "type text". Expects that all of them are from `where` and have a line.
Texts linesFrom(const test::LogCapture& log, const std::string& where) {
    Texts lines;
    for (const test::LogEntry& entry : log.entries()) {
        EXPECT_EQ(entry.type, Logger::LOG_DEBUG) << entry.text;
        EXPECT_GT(entry.line, 0) << entry.text;
        EXPECT_NE(entry.function.find("utility::Path::"), std::string::npos) << entry.function;
        if (entry.function.find(where) != std::string::npos)
            lines.push_back(entry.text);
    }
    return lines;
}

TEST(Path, UsageExample) {
    utility::Path path("/usr/lib/libx.so.1");
    EXPECT_STREQ(path.getPath(), "/usr/lib/");
    EXPECT_STREQ(path.getFile(), "libx.so");
    EXPECT_STREQ(path.getExtension(), "1");
}

// Splitting

TEST(Path, IsSplitIntoDirectoryFileAndExtension) {
    EXPECT_EQ(partsOf("/usr/lib/libx.so.1"), "/usr/lib/|libx.so|1");
    EXPECT_EQ(partsOf("name"), "|name|");
    EXPECT_EQ(partsOf("dir/"), "dir/||");
    EXPECT_EQ(partsOf("/"), "/||");
    EXPECT_EQ(partsOf("/name"), "/|name|");
    EXPECT_EQ(partsOf("a.b/c"), "a.b/|c|");
    EXPECT_EQ(partsOf("a//b"), "a//|b|");
    EXPECT_EQ(partsOf("name.txt"), "|name|txt");
    EXPECT_EQ(partsOf(" a b /c d. e"), " a b /|c d| e");
}

TEST(Path, ValuesRoundTrip) {
    for (const char* const value : {"/usr/lib/libx.so.1", "name", "dir/", "/", "a..b", ".profile", "..", "...", "..x",
                                    "/a/b.c/", "x/.y", "a.b.c", "a...b", "//", ""})
        EXPECT_STREQ(Path(value).getValue(), value);
}

TEST(Path, TrailingDotIsDropped) {
    EXPECT_EQ(partsOf("name."), "|name|");
    EXPECT_STREQ(Path("name.").getValue(), "name");
    EXPECT_EQ(partsOf("."), "||");
    EXPECT_EQ(partsOf("/a/."), "/a/||");
}

TEST(Path, NameIsSplitAtTheFirstOfItsLastAdjacentDots) {
    EXPECT_EQ(partsOf("a..b"), "|a|.b");
    EXPECT_EQ(partsOf("a...b"), "|a|..b");
    EXPECT_EQ(partsOf("a..b.c"), "|a..b|c");
    EXPECT_EQ(partsOf("a.b..c"), "|a.b|.c");
    EXPECT_EQ(partsOf("a.."), "|a|.");
    EXPECT_EQ(partsOf(".."), "||.");
    EXPECT_EQ(partsOf("..."), "||..");
    EXPECT_EQ(partsOf("..b"), "||.b");
}

TEST(Path, NameThatBeginsWithItsOnlyDotIsAnExtension) {
    EXPECT_EQ(partsOf(".profile"), "||profile");
    EXPECT_EQ(partsOf("/home/u/.profile"), "/home/u/||profile");
    EXPECT_STREQ(Path("/home/u/.profile").getFullFile(), ".profile");
    EXPECT_EQ(partsOf(".a.b"), "|.a|b");
}

TEST(Path, NullAndTheEmptyValueHaveNoParts) {
    EXPECT_EQ(partsOf(nullptr), "||");
    EXPECT_EQ(partsOf(""), "||");
    EXPECT_STREQ(Path(nullptr).getValue(), "");
    EXPECT_STREQ(Path(nullptr).getFullFile(), "");
}

TEST(Path, CanBeConstructedFromItsParts) {
    EXPECT_EQ(partsOf(Path("/a", "b", "c")), "/a/|b|c");
    EXPECT_EQ(partsOf(Path("/a/", "b.x", ".c")), "/a/|b.x|c");
    EXPECT_STREQ(Path("/a/", "b.x", ".c").getValue(), "/a/b.x.c");
    EXPECT_EQ(partsOf(Path(nullptr, nullptr, nullptr)), "||");
    EXPECT_EQ(partsOf(Path("", "", "")), "||");
    EXPECT_EQ(partsOf(Path("x", nullptr, nullptr)), "x/||");
}

// Setters

TEST(Path, SetValueReplacesTheSelectedParts) {
    Path path("/a/b.c");
    path.setValue("/x/y.z", false, false, false);
    EXPECT_EQ(partsOf(path), "/a/|b|c");
    path.setValue("/x/y.z", true, false, false);
    EXPECT_EQ(partsOf(path), "/x/|b|c");
    path.setValue("/p/q.r", false, true, false);
    EXPECT_EQ(partsOf(path), "/x/|q|c");
    path.setValue("/s/t.u", false, false, true);
    EXPECT_EQ(partsOf(path), "/x/|q|u");
    path.setValue("v", false, false, true);
    EXPECT_EQ(partsOf(path), "/x/|q|");
    path.setValue(".w", false, true, true);
    EXPECT_EQ(partsOf(path), "/x/||w");
    path.setValue("n", true, false, false);
    EXPECT_EQ(partsOf(path), "||w");
}

TEST(Path, SetValueOfNullClearsTheSelectedParts) {
    Path path("/a/b.c");
    path.setValue(nullptr, false, false, false);
    EXPECT_EQ(partsOf(path), "/a/|b|c");
    path.setValue(nullptr, false, true, false);
    EXPECT_EQ(partsOf(path), "/a/||c");
    path.setValue(nullptr, true, false, true);
    EXPECT_EQ(partsOf(path), "||");
}

TEST(Path, SetFullPathReplacesEverythingAndSetFullFileKeepsTheDirectory) {
    Path path("/a/b.c");
    path.setFullFile("x.y");
    EXPECT_EQ(partsOf(path), "/a/|x|y");
    path.setFullFile("/p/q/z");
    EXPECT_EQ(partsOf(path), "/a/|z|");
    path.setFullFile(nullptr);
    EXPECT_EQ(partsOf(path), "/a/||");
    path.setFullPath("d/e.f");
    EXPECT_EQ(partsOf(path), "d/|e|f");
    path.setFullPath("g");
    EXPECT_EQ(partsOf(path), "|g|");
    path.setFullPath(nullptr);
    EXPECT_EQ(partsOf(path), "||");
}

TEST(Path, SetPathEndsTheDirectoryWithASlash) {
    Path path("name");
    path.setPath("dir");
    EXPECT_STREQ(path.getValue(), "dir/name");
    path.setPath("dir/");
    EXPECT_STREQ(path.getPath(), "dir/");
    path.setPath("/");
    EXPECT_STREQ(path.getPath(), "/");
    path.setPath("a//");
    EXPECT_STREQ(path.getPath(), "a//");
    path.setPath("");
    EXPECT_STREQ(path.getPath(), "");
    path.setPath("x");
    path.setPath(nullptr);
    EXPECT_STREQ(path.getPath(), "");
    EXPECT_STREQ(path.getValue(), "name");
}

TEST(Path, SetPathCopiesTheFirstCharacters) {
    Path path("name");
    const std::pair<unsigned int, const char*> expected[] = {{0, ""},       {1, "/"},        {2, "/a/"},
                                                             {3, "/a/"},    {4, "/a/b/"},    {5, "/a/bc/"},
                                                             {6, "/a/bc/"}, {100, "/a/bc/"}, {0xFFFFFFFFu, "/a/bc/"}};
    for (const auto& [count, directory] : expected) {
        path.setPath("/a/bc", count);
        EXPECT_STREQ(path.getPath(), directory) << count;
    }
    path.setPath(nullptr, 5);
    EXPECT_STREQ(path.getPath(), "");
    const char unterminated[] = {'d', 'i', 'r'};
    path.setPath(unterminated, 3);
    EXPECT_STREQ(path.getPath(), "dir/");
}

TEST(Path, SetFileDoesNotSplitTheName) {
    Path path("/a/b.c");
    path.setFile("x.y/z.");
    EXPECT_EQ(partsOf(path), "/a/|x.y/z.|c");
    EXPECT_STREQ(path.getFullFile(), "x.y/z..c");
    path.setFile("");
    EXPECT_STREQ(path.getFullFile(), ".c");
    path.setFile("f");
    path.setFile(nullptr);
    EXPECT_EQ(partsOf(path), "/a/||c");
}

TEST(Path, SetExtensionRemovesOneLeadingDot) {
    Path path("/a/b");
    path.setExtension(".txt");
    EXPECT_STREQ(path.getExtension(), "txt");
    path.setExtension("txt");
    EXPECT_STREQ(path.getExtension(), "txt");
    path.setExtension("..txt");
    EXPECT_STREQ(path.getExtension(), ".txt");
    EXPECT_STREQ(path.getValue(), "/a/b..txt");
    path.setExtension("a.b.");
    EXPECT_STREQ(path.getExtension(), "a.b.");
    path.setExtension(".");
    EXPECT_STREQ(path.getExtension(), "");
    EXPECT_STREQ(path.getValue(), "/a/b");
    path.setExtension("x");
    path.setExtension(nullptr);
    EXPECT_STREQ(path.getExtension(), "");
}

TEST(Path, AcceptsItsOwnTexts) {
    Path path("/usr/local/lib/libx.so.1");
    path.setPath(path.getPath());
    path.setFile(path.getFile());
    path.setExtension(path.getExtension());
    path.setFullFile(path.getFullFile());
    path.setFullPath(path.getValue());
    EXPECT_EQ(partsOf(path), "/usr/local/lib/|libx.so|1");
    path.setPath(path.getPath() + 5);
    EXPECT_EQ(partsOf(path), "local/lib/|libx.so|1");
    path.setPath(path.getPath(), 3);
    EXPECT_STREQ(path.getPath(), "loc/");
    path.setPath(path.component(0));
    path.setFile(path.component(1));
    EXPECT_EQ(partsOf(path), "loc/|libx.so.1|1");
    path.setExtension(path.getFile() + 4);
    EXPECT_STREQ(path.getExtension(), "so.1");
    path.setFullFile(path.getPath());
    EXPECT_EQ(partsOf(path), "loc/||");
    path.setFullPath(path.getPath());
    EXPECT_EQ(partsOf(path), "loc/||");
    path.setValue(path.getPath(), false, true, true);
    path.setFullFile("a.b");
    path.setFullPath(path.getFile());
    EXPECT_EQ(partsOf(path), "|a|");
    path.setFullPath("/d/e.f");
    path.setFullPath(path.getExtension());
    EXPECT_EQ(partsOf(path), "|f|");
}

TEST(Path, TextsStayValidUntilTheNextCallOfTheSameOperation) {
    const Path path("/a/b/c.d");
    const char* const value = path.getValue();
    const char* const fullFile = path.getFullFile();
    const char* const component = path.component(1);
    path.exists();
    EXPECT_STREQ(value, "/a/b/c.d");
    EXPECT_STREQ(fullFile, "c.d");
    EXPECT_STREQ(component, "b");
}

TEST(Path, AcceptsAValueOfAMillionCharacters) {
    const std::string directory = repeated("directory/", 100000);
    const Path path((directory + "name.ext").c_str());
    EXPECT_EQ(path.getPath(), directory);
    EXPECT_STREQ(path.getFullFile(), "name.ext");
    EXPECT_EQ(path.componentCount(), 33U);
    EXPECT_FALSE(path.exists());
}

TEST(Path, IsAbsoluteIfTheDirectoryBeginsWithASlash) {
    EXPECT_TRUE(Path("/a").isAbsolute());
    EXPECT_TRUE(Path("/").isAbsolute());
    EXPECT_FALSE(Path("a/b").isAbsolute());
    EXPECT_FALSE(Path("a").isAbsolute());
    EXPECT_FALSE(Path(nullptr).isAbsolute());
    EXPECT_TRUE(Path("/a", nullptr, nullptr).isAbsolute());
    EXPECT_FALSE(Path("", "/a", nullptr).isAbsolute());
}

// The file system

TEST(Path, ExistsIfStatSucceeds) {
    const test::TemporaryDirectory directory;
    const std::string file = directory.write("file.txt", "x");
    EXPECT_TRUE(Path(file.c_str()).exists());
    EXPECT_TRUE(Path((directory.path() + "/").c_str()).exists());
    EXPECT_FALSE(Path((file + "x").c_str()).exists());
    EXPECT_FALSE(Path((file + "/").c_str()).exists());
    EXPECT_FALSE(Path(nullptr).exists());
    ASSERT_EQ(symlink("nowhere", directory.path("dangling").c_str()), 0);
    EXPECT_FALSE(Path(directory.path("dangling").c_str()).exists());
    Path path((directory.path() + "/").c_str());
    path.setFile("file");
    EXPECT_FALSE(path.exists());
    path.setExtension("txt");
    EXPECT_TRUE(path.exists());
}

TEST(Path, MakeDirCreatesOneLevelForOwnerAndGroup) {
    const test::TemporaryDirectory directory;
    const test::Umask mask(0);
    Path made(directory.path("made").c_str());
    EXPECT_TRUE(made.makeDir());
    struct stat status = {};
    ASSERT_EQ(stat(directory.path("made").c_str(), &status), 0);
    EXPECT_TRUE(S_ISDIR(status.st_mode));
    EXPECT_EQ(status.st_mode & 07777U, 0770U);
    EXPECT_FALSE(made.makeDir());
    EXPECT_FALSE(Path(directory.path("a/b").c_str()).makeDir());
    EXPECT_FALSE(directory.exists("a"));
    EXPECT_TRUE(Path((directory.path("slash") + "/").c_str()).makeDir());
    EXPECT_TRUE(directory.exists("slash"));
    EXPECT_FALSE(Path(nullptr).makeDir());
    directory.write("file", "");
    EXPECT_FALSE(Path(directory.path("file/x").c_str()).makeDir());
    EXPECT_FALSE(Path(directory.path(std::string(300, 'x')).c_str()).makeDir());
}

// Components

TEST(Path, DirectoryIsSplitIntoComponents) {
    const Path path("/a/b/c/file.txt");
    EXPECT_EQ(path.componentCount(), 4U);
    EXPECT_EQ(componentsOf(path), (Texts{"a", "b", "c", "file.txt"}));
    EXPECT_STREQ(path.component(3), "file.txt");
    EXPECT_EQ(path.component(4), nullptr);
    EXPECT_EQ(path.component(0xFFFFFFFFu), nullptr);
}

TEST(Path, RootIsNotAComponent) {
    EXPECT_EQ(componentsOf(Path("/")), Texts{});
    EXPECT_EQ(Path("/").component(0), nullptr);
    EXPECT_EQ(componentsOf(Path("/a")), (Texts{"a"}));
    EXPECT_EQ(componentsOf(Path("a/b")), (Texts{"a", "b"}));
    EXPECT_EQ(componentsOf(Path(nullptr)), Texts{});
    EXPECT_EQ(Path(nullptr).component(0), nullptr);
}

TEST(Path, FileOrExtensionIsTheLastComponent) {
    EXPECT_EQ(componentsOf(Path("a/b/")), (Texts{"a", "b"}));
    EXPECT_EQ(Path("a/b/").component(2), nullptr);
    EXPECT_EQ(componentsOf(Path("a/.x")), (Texts{"a", ".x"}));
    EXPECT_EQ(componentsOf(Path("x")), (Texts{"x"}));
    EXPECT_EQ(componentsOf(Path("a/..")), (Texts{"a", ".."}));
}

TEST(Path, ComponentsBetweenDoubledSlashesAreEmpty) {
    EXPECT_EQ(componentsOf(Path("/a//b/c")), (Texts{"a", "", "b", "c"}));
    EXPECT_EQ(componentsOf(Path("//a/")), (Texts{"", "a"}));
    EXPECT_EQ(componentsOf(Path("///")), (Texts{"", ""}));
    EXPECT_EQ(componentsOf(Path("a///b")), (Texts{"a", "", "", "b"}));
}

TEST(Path, ComponentsFollowEveryChange) {
    Path path("/a/b");
    EXPECT_EQ(componentsOf(path), (Texts{"a", "b"}));
    path.setPath("x/y/z");
    EXPECT_EQ(componentsOf(path), (Texts{"x", "y", "z", "b"}));
    path.setFile(nullptr);
    EXPECT_EQ(componentsOf(path), (Texts{"x", "y", "z"}));
    path.setExtension("e");
    EXPECT_EQ(componentsOf(path), (Texts{"x", "y", "z", ".e"}));
    path.setValue("q/r", true, false, false);
    EXPECT_EQ(componentsOf(path), (Texts{"q", ".e"}));
    path.setPath("s/t", 1);
    EXPECT_EQ(componentsOf(path), (Texts{"s", ".e"}));
    path.setFullPath(nullptr);
    EXPECT_EQ(componentsOf(path), Texts{});
}

TEST(Path, AtMost32DirectoryComponentsAreCounted) {
    for (const int count : {31, 32, 33, 40, 1000}) {
        std::string directory = "/";
        for (int i = 0; i < count; ++i)
            directory += "d" + std::to_string(i) + "/";
        const unsigned int seen = count < 32 ? static_cast<unsigned int>(count) : 32U;
        Path path((directory + "file.x").c_str());
        EXPECT_EQ(path.componentCount(), seen + 1);
        EXPECT_EQ(path.component(seen - 1), "d" + std::to_string(seen - 1));
        EXPECT_STREQ(path.component(seen), "file.x");
        EXPECT_EQ(path.component(seen + 1), nullptr);
        EXPECT_EQ(path.getValue(), directory + "file.x");
        path.removeComponent(seen);
        EXPECT_EQ(path.getValue(), directory);
        EXPECT_EQ(path.componentCount(), seen);
        EXPECT_EQ(path.component(seen), nullptr);
    }
}

TEST(Path, RemovingOneOf33ComponentsShowsTheLast) {
    Path path((repeated("x/", 32) + "last/").c_str());
    EXPECT_STREQ(path.component(31), "x");
    path.removeComponent(0);
    EXPECT_EQ(path.componentCount(), 32U);
    EXPECT_STREQ(path.component(31), "last");
    path.removeComponent(31);
    EXPECT_EQ(path.getPath(), repeated("x/", 31));
}

TEST(Path, RemoveComponentRemovesTheSlashAfterIt) {
    Path path("/a/b/c/file.txt");
    path.removeComponent(1);
    EXPECT_STREQ(path.getValue(), "/a/c/file.txt");
    EXPECT_EQ(componentsOf(path), (Texts{"a", "c", "file.txt"}));
    path.removeComponent(3);
    path.removeComponent(0xFFFFFFFFu);
    EXPECT_STREQ(path.getValue(), "/a/c/file.txt");
    path.removeComponent(2);
    EXPECT_EQ(partsOf(path), "/a/c/||");
    path.removeComponent(2);
    EXPECT_EQ(partsOf(path), "/a/c/||");
    path.removeComponent(1);
    path.removeComponent(0);
    EXPECT_EQ(partsOf(path), "/||");
    Path relative("a//b");
    relative.removeComponent(1);
    EXPECT_STREQ(relative.getValue(), "a/b");
    relative.removeComponent(0);
    EXPECT_STREQ(relative.getValue(), "b");
    relative.removeComponent(0);
    EXPECT_STREQ(relative.getValue(), "");
    relative.removeComponent(0);
    EXPECT_STREQ(relative.getValue(), "");
}

// Normalization

struct Normal {
    const char* value;
    const char* normal;
    bool valid;
};

void PrintTo(const Normal& normal, std::ostream* out) {
    *out << normal.value;
}

class PathNormal : public testing::TestWithParam<Normal> {};

TEST_P(PathNormal, IsTheResultOfIsValid) {
    Path path(GetParam().value);
    EXPECT_EQ(path.isValid(), GetParam().valid);
    EXPECT_STREQ(path.getValue(), GetParam().normal);
    EXPECT_TRUE(path.isValid());
    EXPECT_STREQ(path.getValue(), GetParam().normal);
}

INSTANTIATE_TEST_SUITE_P(
    Values, PathNormal,
    testing::Values(Normal{"/a/./b/../c/", "/a/c/", true}, Normal{"../x/", "x/", false}, Normal{"", "", true},
                    Normal{"/", "/", true}, Normal{"a", "a", true}, Normal{"a/b/c.d", "a/b/c.d", true},
                    Normal{"/..", "/", false}, Normal{"..", "", false}, Normal{"/../", "/", false},
                    Normal{"../../x", "x", false}, Normal{"/a/../../b/", "/b/", false}, Normal{"a/..", "", true},
                    Normal{"/a/b/..", "/a/", true}, Normal{"/a/b/../..", "/", true}, Normal{"a/../..", "", false},
                    Normal{"/a/b/../../c", "/c", true}, Normal{"./a/./b/.", "a/b/", true}, Normal{"/./././", "/", true},
                    Normal{"//", "/", true}, Normal{"/a//b///c", "/a/b/c", true}, Normal{"//a//", "/a/", true},
                    Normal{"a/.../b", "a/.../b", true}, Normal{"a/..b/c", "a/..b/c", true},
                    Normal{"a/b../.c/d", "a/b../.c/d", true}, Normal{"/a/..//../b", "/b", false},
                    Normal{"/x//../y", "/y", true}));

TEST(Path, IsValidLeavesARelativePathRelative) {
    for (const char* const value : {".//y/", "x/..//y/", "./..//y/", "x//..//y/"}) {
        Path path(value);
        path.isValid();
        EXPECT_STREQ(path.getValue(), "y/") << value;
        EXPECT_FALSE(path.isAbsolute()) << value;
    }
}

TEST(Path, IsValidRemovesLongChains) {
    Path chain((repeated("a/", 20) + repeated("../", 20) + "x").c_str());
    EXPECT_EQ(componentsOf(chain).size(), 33U);
    Path dots((repeated("./", 1000) + "x").c_str());
    EXPECT_TRUE(dots.isValid());
    EXPECT_STREQ(dots.getValue(), "x");
    Path above((repeated("../", 1000) + "x").c_str());
    EXPECT_FALSE(above.isValid());
    EXPECT_STREQ(above.getValue(), "x");
    Path slashes((repeated("/", 1000) + "x").c_str());
    EXPECT_TRUE(slashes.isValid());
    EXPECT_STREQ(slashes.getValue(), "/x");
}

TEST(Path, IsValidRemovesTensOfThousandsOfComponents) {
    for (const char* const chain : {"./", "d/../", "/"}) {
        Path path(("a/" + repeated(chain, 50000) + "x").c_str());
        EXPECT_TRUE(path.isValid());
        EXPECT_STREQ(path.getValue(), "a/x");
    }
}

TEST(Path, IsValidRemovesTheFileWithTheLastCountedComponent) {
    std::string directory;
    for (int i = 0; i < 33; ++i)
        directory += "d" + std::to_string(i) + "/";
    Path path((directory + "..").c_str());
    EXPECT_TRUE(path.isValid());
    EXPECT_EQ(path.getValue(), directory.substr(0, directory.size() - 8) + "d32/");
}

TEST(Path, IsValidChecksTheCountedComponents) {
    const std::string directory = repeated("d/", 32) + "../";
    Path path(directory.c_str());
    EXPECT_TRUE(path.isValid());
    EXPECT_EQ(path.getPath(), directory);
}

TEST(Path, IsValidAndFewerThan32ComponentsKeepAPathBelowItsStart) {
    bool escaped = false;
    for (const char* const root : {"", "/"}) {
        for (unsigned int depth = 0; depth < 80; ++depth) {
            Path path((root + repeated("d/", depth) + repeated("../", depth + 1) + "passwd").c_str());
            if (!path.isValid())
                continue;
            EXPECT_GE(path.componentCount(), 32U) << path.getValue();
            escaped = escaped || std::strstr(path.getValue(), "..") != nullptr;
        }
        for (unsigned int depth = 0; depth < 80; ++depth) {
            Path path((root + repeated("d/", depth) + repeated("../", depth) + "passwd").c_str());
            EXPECT_TRUE(path.isValid());
            if (path.componentCount() < 32) {
                EXPECT_EQ(path.getValue(), root + std::string("passwd"));
            }
        }
    }
    EXPECT_TRUE(escaped) << "the result alone is no check";
}

TEST(Path, RandomPathsAreNormalizedLikeTheModel) {
    test::RandomRun random;
    while (random.steps(30000)) {
        std::string value = random.text(1, "/");
        for (unsigned int count = random.below(12); count > 0; --count) {
            const char* const names[] = {"a", "bc.d", ".", "..", "", "..."};
            value += std::string(names[random.below(6)]) + (count > 1 || random.below(2) ? "/" : "");
        }
        const test::ReferenceNormalPath expected{test::ReferencePath(value)};
        Path path(value.c_str());
        ASSERT_EQ(path.isValid(), expected.valid) << value;
        ASSERT_EQ(path.getValue(), expected.value) << value;
        ASSERT_TRUE(path.isValid()) << value;
        ASSERT_EQ(path.getValue(), expected.value) << value;
    }
}

// Search paths

TEST(Path, FindSelectsTheFirstDirectoryThatContainsTheFile) {
    const test::TemporaryDirectory directory;
    for (const char* const name : {"a", "b", "c"})
        ASSERT_EQ(mkdir(directory.path(name).c_str(), 0700), 0);
    directory.write("b/f", "");
    directory.write("c/f", "");
    const std::string a = directory.path("a"), b = directory.path("b"), c = directory.path("c");
    Path path("f");
    EXPECT_TRUE(path.find(("/nonexistent:" + a + ":" + b + ":" + c).c_str()));
    EXPECT_EQ(path.getPath(), b + "/");
    EXPECT_EQ(path.getValue(), b + "/f");
    EXPECT_TRUE(path.find((c + "/:" + b).c_str()));
    EXPECT_EQ(path.getPath(), c + "/");
    EXPECT_EQ(path.component(0), std::string(c, 1, c.find('/', 1) - 1));
    EXPECT_FALSE(path.find((a + ":/nonexistent").c_str()));
    EXPECT_EQ(path.getPath(), c + "/");
    EXPECT_STREQ(path.component(path.componentCount() - 2), "c");
}

TEST(Path, FindWithoutAMatchKeepsTheDirectory) {
    const test::TemporaryDirectory directory;
    Path path("/some/where/f.x");
    EXPECT_EQ(componentsOf(path), (Texts{"some", "where", "f.x"}));
    EXPECT_FALSE(path.find(("/nonexistent:" + directory.path()).c_str()));
    EXPECT_EQ(partsOf(path), "/some/where/|f|x");
    EXPECT_EQ(componentsOf(path), (Texts{"some", "where", "f.x"}));
    EXPECT_FALSE(path.find(nullptr));
    EXPECT_FALSE(path.findFull(nullptr));
    EXPECT_FALSE(path.findFull(directory.path().c_str()));
    EXPECT_EQ(partsOf(path), "/some/where/|f|x");
}

TEST(Path, FindSearchesForADirectoryIfThereIsNoFile) {
    const test::TemporaryDirectory directory;
    Path path(nullptr);
    EXPECT_TRUE(path.find(("/nonexistent:" + directory.path()).c_str()));
    EXPECT_EQ(path.getPath(), directory.path() + "/");
}

TEST(Path, EmptyElementOfASearchPathIsAnEmptyDirectory) {
    const test::TemporaryDirectory directory;
    directory.write("f", "");
    ASSERT_EQ(mkdir(directory.path("sub").c_str(), 0700), 0);
    directory.write("sub/g", "");
    const test::ChildResult child = test::runInChild([&] {
        if (chdir(directory.path().c_str()) != 0)
            return 1;
        for (const char* const searchPath : {"", ":", "/nonexistent:", ":/nonexistent", "::"}) {
            Path path("/x/f");
            if (!path.find(searchPath) || partsOf(path) != "|f|")
                return 2;
            Path other("/x/g");
            if (other.find(searchPath) || partsOf(other) != "/x/|g|")
                return 3;
            Path relative("sub/g");
            if (!relative.findFull(searchPath) || partsOf(relative) != "sub/|g|")
                return 4;
            Path absolute((directory.path("sub") + "/g").c_str());
            if (!absolute.findFull(searchPath) || absolute.getPath() != directory.path("sub") + "/")
                return 5;
            Path none("f");
            if (!none.findFull(searchPath) || partsOf(none) != "|f|")
                return 6;
        }
        return 0;
    });
    EXPECT_TRUE(child.exited);
    EXPECT_EQ(child.status, 0) << child.err;
}

TEST(Path, FindFullAppendsTheDirectoryToEachElement) {
    const test::TemporaryDirectory directory;
    ASSERT_EQ(mkdir(directory.path("b").c_str(), 0700), 0);
    ASSERT_EQ(mkdir(directory.path("b/sub").c_str(), 0700), 0);
    directory.write("b/sub/f.x", "");
    const std::string b = directory.path("b");
    for (const std::string& element : {b, b + "/"}) {
        for (const char* const start : {"sub/f.x", "/sub/f.x"}) {
            Path path(start);
            EXPECT_TRUE(path.findFull(("/nonexistent/:" + directory.path() + ":" + element).c_str())) << start;
            EXPECT_EQ(path.getPath(), b + "/sub/") << start;
            EXPECT_EQ(path.getValue(), b + "/sub/f.x") << start;
        }
    }
    Path none("f.x");
    EXPECT_FALSE(none.findFull(b.c_str()));
    EXPECT_STREQ(none.getPath(), "");
    EXPECT_TRUE(none.findFull((b + ":" + b + "/sub").c_str()));
    EXPECT_EQ(none.getPath(), b + "/sub/");
    Path root((b + "/sub/f.x").c_str());
    EXPECT_TRUE(root.findFull("/"));
    EXPECT_EQ(root.getPath(), b + "/sub/");
}

TEST(Path, FindAcceptsItsOwnTexts) {
    const test::TemporaryDirectory directory;
    const std::string file = directory.write("f", "");
    Path path(file.c_str());
    EXPECT_TRUE(path.find(path.getPath()));
    EXPECT_EQ(path.getValue(), file);
    EXPECT_FALSE(path.find(path.getValue()));
    EXPECT_FALSE(path.findFull(path.getPath()));
    EXPECT_FALSE(path.find(path.getFile()));
    EXPECT_EQ(path.getValue(), file);
}

TEST(Path, FindAcceptsTensOfThousandsOfElements) {
    const test::TemporaryDirectory directory;
    directory.write("f", "");
    Path path("f");
    EXPECT_TRUE(path.find((repeated("/nonexistent:", 20000) + directory.path()).c_str()));
    EXPECT_EQ(path.getPath(), directory.path() + "/");
    EXPECT_FALSE(path.find(std::string(1000000, 'x').c_str()));
    EXPECT_EQ(path.getPath(), directory.path() + "/");
}

// Traces

TEST(Path, EvaluationTracesEachComponentOnce) {
    const test::DebugSwitch debug(traceSwitch);
    Path path("/a//b/c.d");
    test::LogCapture log;
    path.evaluatePath();
    const std::string where = "3 void utility::Path::evaluatePath() const: ";
    const Texts expected = {where + "Component 0: \"a\"", where + "Component 1: \"\"", where + "Component 2: \"b\""};
    EXPECT_EQ(test::traceLines(log), expected);
    path.evaluatePath();
    EXPECT_EQ(path.componentCount(), 4U);
    path.component(1);
    EXPECT_EQ(log.count(), 3U);
    path.setFile("x");
    path.setPath(path.getPath());
    path.componentCount();
    EXPECT_EQ(log.count(), 6U);
    log.clear();
    const Path other("/x/y/");
    other.componentCount();
    EXPECT_EQ(log.texts(), (Texts{"Component 0: \"x\"", "Component 1: \"y\""}));
}

TEST(Path, DumpTracesStartAndLengthOfEachComponent) {
    Path path("/ab//c/");
    {
        const test::LogCapture log;
        path.dumpComponents();
        EXPECT_EQ(log.count(), 0U);
    }
    path.evaluatePath();
    const test::DebugSwitch debug(traceSwitch);
    const test::LogCapture log;
    path.dumpComponents();
    const std::string where = "3 void utility::Path::dumpComponents(): ";
    EXPECT_EQ(test::traceLines(log), (Texts{where + "PATH=\"/ab//c/\"", where + "m_numComponents=3",
                                            where + "0: 1,2 \"ab\"", where + "1: 4,0 \"\"", where + "2: 5,1 \"c\""}));
}

TEST(Path, DumpEvaluatesFirst) {
    Path path("a/");
    const test::DebugSwitch debug(traceSwitch);
    const test::LogCapture log;
    path.dumpComponents();
    EXPECT_THAT(log.texts(), testing::UnorderedElementsAre("Component 0: \"a\"", "PATH=\"a/\"", "m_numComponents=1",
                                                           "0: 0,1 \"a\""));
}

TEST(Path, ExistenceIsTraced) {
    const test::DebugSwitch debug(traceSwitch);
    const test::LogCapture log;
    const Path path("/nonexistent/a.b");
    path.exists();
    EXPECT_EQ(test::traceLines(log),
              (Texts{"3 bool utility::Path::exists() const: checking existence of file /nonexistent/a.b"}));
}

TEST(Path, RemovalIsTraced) {
    Path path("/a/b/c/file.txt");
    path.evaluatePath();
    const test::DebugSwitch debug(traceSwitch);
    test::LogCapture log;
    const char* const where = "void utility::Path::removeComponent(unsigned int)";
    path.removeComponent(1);
    EXPECT_EQ(linesFrom(log, where), (Texts{"removing component 1"}));
    path.componentCount();
    EXPECT_THAT(log.texts(), ElementsAre("removing component 1", "Component 0: \"a\"", "Component 1: \"c\""));
    log.clear();
    path.removeComponent(2);
    EXPECT_EQ(linesFrom(log, where), (Texts{"removing file/ext"}));
    log.clear();
    path.removeComponent(2);
    EXPECT_EQ(linesFrom(log, where), (Texts{"removing file/ext"}));
    log.clear();
    path.removeComponent(3);
    EXPECT_EQ(linesFrom(log, where), (Texts{"ignoring remove"}));
}

TEST(Path, NormalizationIsTraced) {
    Path path("/a/.//b/");
    const test::DebugSwitch debug(traceSwitch);
    const test::LogCapture log;
    EXPECT_TRUE(path.isValid());
    const Texts lines = linesFrom(log, "bool utility::Path::isValid()");
    Texts steps;
    unsigned int counts = 0;
    for (const std::string& line : lines) {
        if (line.compare(0, 5, "path=") == 0 || line == "empty")
            steps.push_back(line);
        else if (line.compare(0, 15, "ComponentCount ") == 0)
            ++counts;
        else
            ADD_FAILURE() << line;
    }
    EXPECT_EQ(steps,
              (Texts{"path=\"/a/.//b/\"index=0, pComponent=\"a\"", "path=\"/a/.//b/\"index=1, pComponent=\".\"",
                     "path=\"/a//b/\"index=1, pComponent=\"\"", "empty", "path=\"/a/b/\"index=1, pComponent=\"b\""}));
    EXPECT_GE(counts, 1U);
    EXPECT_THAT(lines, testing::Contains(testing::AnyOf("ComponentCount 4", "ComponentCount 2")));
}

TEST(Path, FindTracesItsSearch) {
    const test::TemporaryDirectory directory;
    const std::string there = directory.path() + "/";
    const std::string searchPath = "/nonexistent/:" + there;
    Path path(nullptr);
    const test::DebugSwitch debug(traceSwitch);
    test::LogCapture log;
    ASSERT_TRUE(path.find(searchPath.c_str()));
    const Texts expected = {"Using search path: " + searchPath,         "Try search path: /nonexistent/",
                            "checking existence of file /nonexistent/", "Try search path: " + there,
                            "checking existence of file " + there,      "found " + there};
    EXPECT_EQ(log.texts(), expected);
    EXPECT_EQ(linesFrom(log, "utility::Path::exists() const").size(), 2U);
    log.clear();
    EXPECT_FALSE(path.find("/nonexistent/"));
    EXPECT_EQ(log.texts(), (Texts{"Using search path: /nonexistent/", "Try search path: /nonexistent/",
                                  "checking existence of file /nonexistent/"}));
    log.clear();
    EXPECT_FALSE(path.find(nullptr));
    EXPECT_EQ(log.count(), 0U);
}

TEST(Path, SearchIsTracedInTheNameOfFind) {
    Path path("/x/f");
    const test::DebugSwitch debug(traceSwitch);
    test::LogCapture log;
    path.find("/nonexistent/");
    EXPECT_TRUE(
        log.contains(Logger::LOG_DEBUG, "bool utility::Path::find(const char*)", "Using search path: /nonexistent/"));
    EXPECT_TRUE(
        log.contains(Logger::LOG_DEBUG, "bool utility::Path::find(const char*)", "Try search path: /nonexistent/"));
    log.clear();
    path.findFull("/nonexistent");
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, "bool utility::Path::findFull(const char*)",
                             "Using search path: /nonexistent"));
}

TEST(Path, LogsNothingWithItsSwitchOff) {
    const test::LogCapture log;
    Path path("/a/./b//../c.d");
    path.componentCount();
    path.component(2);
    path.removeComponent(9);
    path.removeComponent(0);
    path.isValid();
    path.dumpComponents();
    path.exists();
    path.find("/nonexistent");
    path.findFull("/nonexistent");
    EXPECT_FALSE(Path("/nonexistent/x").makeDir());
    EXPECT_EQ(log.count(), 0U);
    EXPECT_FALSE(path.inError());
}

// Item interface

TEST(Path, IsNamedAsItsDirectory) {
    Path path("/some/directory/file.x");
    const framework::Entity& entity = path;
    EXPECT_EQ(path.getName(), strings::GS.toToken("/some/directory/"));
    EXPECT_EQ(entity.getName(), path.getName());
    EXPECT_STREQ(path.getNameString(), "/some/directory/");
    EXPECT_EQ(entity.getNameString(), strings::StringRepository::toString(path.getName()));
    path.setPath("other");
    EXPECT_EQ(path.getName(), strings::GS.toToken("other/"));
    EXPECT_STREQ(path.getNameString(), "other/");
}

TEST(Path, CanBeDeletedAsAnEntity) {
    framework::Entity* const entity = new Path("/a/b.c");
    EXPECT_EQ(entity->clone(), nullptr);
    EXPECT_FALSE(entity->inError());
    entity->setError("%s", "lost");
    EXPECT_STREQ(entity->ErrorMessage(), "lost");
    delete entity;
}

TEST(Path, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&Path::getName), 2);
    EXPECT_EQ(test::virtualSlot(&Path::getNameString), 3);
    EXPECT_EQ(test::virtualSlot(&Path::setError), 20);
    EXPECT_EQ(test::virtualSlot(&Path::exists), -1);
    EXPECT_EQ(test::virtualSlot(&Path::isValid), -1);
}

// Comparison with a simple model

TEST(Path, RandomValuesAreSplitLikeTheModel) {
    test::RandomRun random;
    while (random.steps(50000)) {
        const std::string value = random.text(10, "ab..//");
        const test::ReferencePath expected(value);
        const Path path(value.c_str());
        ASSERT_EQ(partsOf(path), expected.directory + "|" + expected.file + "|" + expected.extension) << value;
        ASSERT_EQ(path.getFullFile(), expected.fullFile()) << value;
        ASSERT_EQ(path.getValue(), expected.directory + expected.fullFile()) << value;
    }
}

TEST(Path, RandomRemovalsKeepComponentsAndDirectoryTogether) {
    test::RandomRun random;
    while (random.steps(5000)) {
        Path path((random.text(1, "/") + random.text(12, "ab/")).c_str());
        Texts components = componentsOf(path);
        while (!components.empty()) {
            const unsigned int i = random.below(static_cast<unsigned int>(components.size()));
            const std::string before = path.getValue();
            path.removeComponent(i);
            components.erase(components.begin() + static_cast<std::ptrdiff_t>(i));
            // If the directory now begins with two slashes, its first component is different.
            if (componentsOf(path).size() != components.size())
                break;
            ASSERT_EQ(componentsOf(path), components) << before << " without " << i;
        }
    }
}

// Exhausted memory

// The value of `path` and as many of its components as it has.
std::string stateOf(const Path& path) {
    std::string state = partsOf(path) + "|" + path.getValue();
    for (const std::string& component : componentsOf(path))
        state += "|" + component;
    return state;
}

TEST(Path, ChangesCompletelyOrNotAtAllIfMemoryIsExhausted) {
    const test::TemporaryDirectory directory;
    const std::string file = directory.write("a file with a name that takes memory.and an extension that does", "x");
    const std::string longPath = "/a directory of fifty characters and some more/b/another that takes memory";
    const std::string searchPath = "/nonexistent/for/want/of/memory/:" + directory.path();
    // The longest text that `std::string` stores without an allocation: appending the slash allocates.
    const std::string shortPath = "123456789abcde/";
    const std::string noSlash = "123456789abcdef";
    const std::vector<std::function<void(Path&)>> operations = {
        [&](Path& path) { path.setPath(longPath.c_str()); },      [&](Path& path) { path.setPath(noSlash.c_str()); },
        [&](Path& path) { path.setPath(longPath.c_str(), 40); },  [&](Path& path) { path.setFile(longPath.c_str()); },
        [&](Path& path) { path.setExtension(longPath.c_str()); }, [&](Path& path) { path.setFullPath(file.c_str()); },
        [&](Path& path) { path.setFullFile(file.c_str()); },      [&](Path& path) { path.find(searchPath.c_str()); },
        [&](Path& path) { path.findFull(searchPath.c_str()); },   [&](Path& path) { path.removeComponent(0); },
    };
    for (const std::string& start : {file, std::string("x/y/z.w"), shortPath, longPath + "/../" + longPath + "/f"}) {
        for (std::size_t i = 0; i < operations.size(); ++i) {
            Path whole(start.c_str());
            const std::string before = stateOf(whole);
            operations[i](whole);
            const std::string after = stateOf(whole);
            unsigned long failures = 1;
            for (unsigned long nth = 1; failures > 0; ++nth) {
                ASSERT_LE(nth, 100U);
                Path path(start.c_str());
                path.evaluatePath();
                {
                    test::FailingAllocation failing(nth);
                    try {
                        operations[i](path);
                    } catch (const std::bad_alloc&) {
                        // The parts are `std::string`s.
                    }
                    failures = failing.failures();
                }
                const std::string now = stateOf(path);
                EXPECT_TRUE(now == before || now == after) << start << " " << i << " " << nth << ": " << now;
                EXPECT_TRUE(failures > 0 || now == after) << start << " " << i << ": " << now;
            }
        }
    }
}

TEST(Path, StaysUsableIfMemoryIsExhausted) {
    const std::string normal = "a directory of some length/another that takes memory/file name.extension";
    const long outstanding = framework::Memory::staticOutstanding();
    for (const std::string root : {"", "/"}) {
        const std::string value = root + (root.empty() ? ".//" : "") +
                                  "a directory of some length/./and one to go/../another that takes memory//"
                                  "file name.extension";
        const test::DebugSwitch debug(traceSwitch);
        const test::LogCapture log;
        std::unique_ptr<Path> path;
        const unsigned long failed = test::failEachAllocationOnce(
            [&] {
                try {
                    path.reset();
                    path = std::make_unique<Path>(value.c_str());
                    path->dumpComponents();
                    path->exists();
                    path->component(1);
                    path->component(5);
                    path->isValid();
                } catch (const std::bad_alloc&) {
                    // The texts are `std::string`s.
                }
            },
            [&] {
                if (path == nullptr)
                    return;
                EXPECT_TRUE(path->isValid());
                EXPECT_EQ(path->getValue(), root + normal);
                EXPECT_EQ(componentsOf(*path).size(), 3U);
            });
        EXPECT_GE(failed, 10U);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

} // namespace
