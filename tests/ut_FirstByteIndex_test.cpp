#include "ut_FirstByteIndex.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RandomRun.h"

namespace {

using utility::FirstByteIndex;
using Names = std::vector<std::string>;

// An index over names that counts how often the index reads a name.
struct Indexed {
    explicit Indexed(const Names& given) : names(given) {
        std::sort(names.begin(), names.end());
        for (const std::string& name : names)
            index.added(FirstByteIndex::firstByte(name.c_str()));
    }
    const char* at(int position) {
        ++asked;
        return names[static_cast<std::size_t>(position)].c_str();
    }
    auto nameAt() {
        return [this](int position) {
            return at(position);
        };
    }
    int find(const std::string& name) {
        asked = 0;
        return index.find(name.c_str(), nameAt());
    }
    int findFirst(const std::string& name) {
        asked = 0;
        return index.findFirst(name.c_str(), nameAt());
    }
    int scanFirst(const std::string& name) {
        asked = 0;
        return index.scanFirst(name.c_str(), nameAt());
    }
    int insertionPoint(const std::string& name) {
        asked = 0;
        return index.insertionPoint(name.c_str(), nameAt());
    }

    Names names;
    FirstByteIndex index;
    int asked = 0;
};

TEST(FirstByteIndex, UsageExample) {
    utility::FirstByteIndex index;
    const char* names[] = {"a", "ab", "b"};
    for (const char* name : names)
        index.added(utility::FirstByteIndex::firstByte(name));
    EXPECT_EQ(index.entry('b'), 2);
    EXPECT_EQ(index.find("ab", [&](int position) { return names[position]; }), 1);
}

TEST(FirstByteIndex, ANewIndexIsAllZero) {
    const FirstByteIndex index;
    for (int byte = 0; byte <= 256; ++byte)
        EXPECT_EQ(index.entry(byte), 0);
    EXPECT_FALSE(index.isFull());
}

TEST(FirstByteIndex, EntryIsThePositionOfTheFirstNameWithThatOrAGreaterByte) {
    const Indexed names({"b", "a", "ab"});
    EXPECT_EQ(names.index.entry(0), 0);
    EXPECT_EQ(names.index.entry('a'), 0);
    EXPECT_EQ(names.index.entry('b'), 2);
    EXPECT_EQ(names.index.entry('c'), 3);
    EXPECT_EQ(names.index.entry(256), 3);
}

TEST(FirstByteIndex, BytesAbove127ComeLastOnEveryPlatform) {
    EXPECT_EQ(FirstByteIndex::firstByte("\xff"), 255);
    EXPECT_EQ(FirstByteIndex::firstByte("\x80"), 128);
    const Indexed names({"\xff", "\x80z", "z", "\xc3\xa4"});
    EXPECT_EQ(names.index.entry('z'), 0);
    EXPECT_EQ(names.index.entry(128), 1);
    EXPECT_EQ(names.index.entry(0xc3), 2);
    EXPECT_EQ(names.index.entry(255), 3);
    EXPECT_EQ(names.index.entry(256), 4);
}

TEST(FirstByteIndex, ANullNameCountsAsEmpty) {
    EXPECT_EQ(FirstByteIndex::firstByte(nullptr), 0);
    EXPECT_EQ(FirstByteIndex::firstByte(""), 0);
    const Indexed names({"", "a"});
    EXPECT_EQ(names.index.entry(0), 0);
    EXPECT_EQ(names.index.entry(1), 1);
}

TEST(FirstByteIndex, RemovedMovesTheLaterEntriesDown) {
    Indexed names({"a", "ab", "b", "c"});
    names.index.removed('a', 1);
    EXPECT_EQ(names.index.entry('a'), 0);
    EXPECT_EQ(names.index.entry('b'), 1);
    EXPECT_EQ(names.index.entry('c'), 2);
    EXPECT_EQ(names.index.entry(256), 3);
    names.index.removed('c', 2);
    EXPECT_EQ(names.index.entry('c'), 2);
    EXPECT_EQ(names.index.entry(256), 2);
    names.index.clear();
    EXPECT_EQ(names.index.entry(256), 0);
}

TEST(FirstByteIndex, FindReadsNoNameIfTheRangeIsEmpty) {
    Indexed names({"a", "c"});
    EXPECT_EQ(names.find("b"), -1);
    EXPECT_EQ(names.find(""), -1);
    EXPECT_EQ(names.find("\xff"), -1);
    EXPECT_EQ(names.asked, 0);
    EXPECT_EQ(names.insertionPoint("b"), 1);
    EXPECT_EQ(names.asked, 0);
}

TEST(FirstByteIndex, FindReadsOneNamePerStepOfTheBinarySearch) {
    Names given = {"a", "b", "y", "z"};
    for (int i = 0; i < 1000; ++i)
        given.push_back("name" + std::to_string(1000 + i));
    Indexed names(given);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(names.find("name" + std::to_string(1000 + i)), i + 2);
        EXPECT_LE(names.asked, 10);
        EXPECT_EQ(names.find("name" + std::to_string(1000 + i) + "x"), -1);
        EXPECT_LE(names.asked, 10);
        EXPECT_EQ(names.findFirst("name" + std::to_string(1000 + i)), i + 2);
        EXPECT_LE(names.asked, 10);
    }
    // The search in a range of 1000 names compares position 500 first, then 250, and so on.
    EXPECT_EQ(names.find(names.names[2 + 500]), 2 + 500);
    EXPECT_EQ(names.asked, 1);
    EXPECT_EQ(names.find(names.names[2 + 250]), 2 + 250);
    EXPECT_EQ(names.asked, 2);
    EXPECT_EQ(names.find("y"), 1002);
    EXPECT_EQ(names.asked, 1);
}

TEST(FirstByteIndex, IsFullAt32767Names) {
    FirstByteIndex index;
    for (int i = 0; i < 32766; ++i)
        index.added(static_cast<unsigned char>(i));
    EXPECT_FALSE(index.isFull());
    index.added(0);
    EXPECT_TRUE(index.isFull());
    EXPECT_EQ(index.entry(256), 32767);
    index.removed(0, 0);
    EXPECT_FALSE(index.isFull());
}

TEST(FirstByteIndex, SearchesLikeTheStandardAlgorithms) {
    test::RandomRun random;
    while (random.steps(300)) {
        Names given;
        for (unsigned int i = random.below(60); i > 0; --i)
            given.push_back(random.text(3, "ab\x7f\x80\xff"));
        Indexed names(given);
        for (int i = 0; i < 100; ++i) {
            const std::string name = random.text(3, "ab\x7f\x80\xff");
            const auto range = std::equal_range(names.names.begin(), names.names.end(), name);
            const auto position = [&](auto it) {
                return static_cast<int>(it - names.names.begin());
            };
            ASSERT_EQ(names.insertionPoint(name), position(range.second));
            const bool held = range.first != range.second;
            ASSERT_EQ(names.findFirst(name), held ? position(range.first) : -1);
            ASSERT_EQ(names.scanFirst(name), held ? position(range.first) : -1);
            const int found = names.find(name);
            ASSERT_EQ(found >= 0, held);
            if (held) {
                ASSERT_EQ(names.names[static_cast<std::size_t>(found)], name);
            }
        }
    }
}

} // namespace
