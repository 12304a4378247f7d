#include "ut_StringMap.h"

#include <cstdint>
#include <cstdio>
#include <random>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "DebugSwitch.h"
#include "HashMapSuite.h"
#include "RandomSeed.h"
#include "TraceLines.h"

using test::absent;
using test::pointer;
using utility::StringMap;

namespace {

constexpr unsigned int stringMapSwitch = 5859;

struct StringMapTraits {
    typedef StringMap Map;
    typedef const char* Key;
    typedef std::string ModelKey;

    static constexpr const char* constructorName = "utility::StringMap::StringMap(unsigned int)";
    static constexpr unsigned int piecesPerEntry = 2;
    static constexpr bool deletesOnlyTheFirst = true;

    static Key argument(const ModelKey& key) {
        return key.c_str();
    }
    static ModelKey modelKey(Key key) {
        return key;
    }
    static Key end() {
        return nullptr;
    }
    // As many of the highest byte, which adds 223, as the number contains, then the rest as one byte.
    static ModelKey key(unsigned int number) {
        std::string text(number / 223, '\xff');
        if (number % 223 != 0)
            text += static_cast<char>(number % 223 + 32);
        return text;
    }
    static std::uint32_t hash(const ModelKey& key) {
        std::uint32_t sum = 0;
        for (const char letter : key) {
            sum += static_cast<unsigned char>(letter);
            sum -= 32;
        }
        return sum;
    }
    static ModelKey randomKey(std::mt19937& random) {
        static constexpr char letters[] = {'a', 'b', 'c', 'z', '\x01', '\x7f', '\x80', '\xff'};
        std::string key(random() % 4, 'x');
        for (char& letter : key)
            letter = letters[random() % sizeof letters];
        return key;
    }
    static std::string printed(const ModelKey& key) {
        return key;
    }
    static std::string printedCount(unsigned int buckets) {
        return std::to_string(static_cast<int>(buckets));
    }
};

typedef test::HashMapTest<StringMapTraits> Tests;
typedef Tests::Entries Entries;

TEST(StringMap, UsageExample) {
    int port = 0;
    int shown = 0;
    const auto show = [&shown](int&) {
        ++shown;
    };

    utility::StringMap ports(64);
    ports.Add("CL1-A", &port);
    if (ports.Lookup("CL1-A") == &port)
        show(port);

    EXPECT_EQ(shown, 1);
}

TEST(StringMap, TracesItsSize) {
    const test::DebugSwitch traces(stringMapSwitch);
    const test::LogCapture log;
    const StringMap map(1024);
    EXPECT_EQ(test::traceLines(log), (std::vector<std::string>{"3 utility::StringMap::StringMap(unsigned int): "
                                                               "numBuckets = 1024, hashMask = 1023"}));
}

TEST(StringMap, HashIsTheMaskedSumOfTheBytesLess32Each) {
    StringMap wide(65536);
    StringMap narrow(16);
    EXPECT_EQ(wide.hash("ab"), 131u);
    EXPECT_EQ(narrow.hash("ab"), 131u & 15u);
    EXPECT_EQ(wide.hash(""), 0u);
    EXPECT_EQ(wide.hash(" "), 0u);
    EXPECT_EQ(wide.hash("\x1f"), 65535u); // the sum wraps below zero
    EXPECT_EQ(wide.hash("\x01\x01"), 65536u - 62u);
    EXPECT_EQ(wide.hash(nullptr), 0u);
}

TEST(StringMap, HashOfRandomKeysIsTheMaskedSum) {
    const unsigned int seed = test::randomSeed();
    SCOPED_TRACE(test::repeatWith(seed));
    std::mt19937 random(seed);
    StringMap map(1024);
    for (int i = 0; i < 10000; ++i) {
        const std::string key = StringMapTraits::randomKey(random);
        ASSERT_EQ(map.hash(key.c_str()), StringMapTraits::hash(key) & 1023u);
    }
}

TEST(StringMap, WithARejectedBucketCountTracesNoSizeAndHashesToZero) {
    const test::DebugSwitch traces(stringMapSwitch);
    const test::LogCapture log;
    StringMap map(1000);
    EXPECT_EQ(test::traceLines(log), (std::vector<std::string>{"0 utility::StringMap::StringMap(unsigned int): need to "
                                                               "use num buckets at power of 2 instead of 1000\n"}));
    EXPECT_EQ(map.hash("ab"), 0u);
}

TEST(StringMap, AnagramsShareABucket) {
    StringMap map(65536);
    EXPECT_EQ(map.hash("ab"), map.hash("ba"));
    EXPECT_EQ(map.hash("listen"), map.hash("silent"));
}

TEST(StringMap, AHundredThousandNumberedKeysShare46Buckets) {
    StringMap map(65536);
    std::set<uint32_t> buckets;
    for (int i = 0; i < 100000; ++i) {
        char key[16];
        std::snprintf(key, sizeof key, "port%05d", i);
        buckets.insert(map.hash(key));
    }
    EXPECT_EQ(buckets.size(), 46u);
}

TEST(StringMap, BytesAbove127HashAndSortAs128To255) {
    StringMap map(65536);
    EXPECT_EQ(map.hash("\xff"), 255u - 32u);
    EXPECT_EQ(map.hash("\x80\xc3"), 128u + 195u - 64u);

    StringMap one(2);
    one.Add("\xc3\xa4", pointer(2)); // 195 + 164 - 64: odd
    one.Add("a", pointer(1));        // 97 - 32: odd
    EXPECT_EQ(Tests::entriesOf(one), (Entries{{"a", pointer(1)}, {"\xc3\xa4", pointer(2)}}));
}

TEST(StringMap, HashTracesEachStep) {
    StringMap map(16);
    const test::DebugSwitch traces(stringMapSwitch);
    const test::LogCapture log;
    EXPECT_EQ(map.hash("ab"), 3u);
    const std::string start = "3 uint32_t utility::StringMap::hash(const char*): ";
    EXPECT_EQ(test::traceLines(log),
              (std::vector<std::string>{start + "string to hash: ab, length=2", start + "hash char a",
                                        start + "hash char b", start + "result = 131", start + "numBuckets = 16",
                                        start + "hashMask = 15", start + "final value=3"}));
}

TEST(StringMap, EveryOperationWithAKeyTracesItsHash) {
    StringMap map(16);
    const test::DebugSwitch traces(stringMapSwitch);
    test::LogCapture log;
    map.hash("ab");
    const std::vector<std::string> hashLines = test::traceLines(log);
    ASSERT_EQ(hashLines.size(), 7u);
    const auto linesOf = [&log](const auto& operation) {
        log.clear();
        operation();
        return test::traceLines(log);
    };
    void* value = nullptr;
    EXPECT_EQ(linesOf([&] { EXPECT_TRUE(map.Add("ab", pointer(1))); }), hashLines);
    EXPECT_EQ(linesOf([&] { EXPECT_EQ(map.Lookup("ab"), pointer(1)); }), hashLines);
    EXPECT_EQ(linesOf([&] { EXPECT_EQ(map.Next("ab", value), nullptr); }), hashLines);
    EXPECT_EQ(linesOf([&] { EXPECT_TRUE(map.Delete("ab")); }), hashLines);
    EXPECT_TRUE(linesOf([&] { map.First(value); }).empty());
}

TEST(StringMap, DoesNotLogWithItsSwitchOff) {
    const test::LogCapture log;
    StringMap map(16);
    map.Add("a", nullptr);
    map.Lookup("a");
    map.Delete("a");
    EXPECT_EQ(log.count(), 0u);
}

TEST(StringMap, KeepsItsOwnCopyOfAKey) {
    StringMap map(16);
    char key[] = "port";
    EXPECT_TRUE(map.Add(key, pointer(1)));
    key[0] = 'x';
    EXPECT_EQ(map.Lookup("port"), pointer(1));
    EXPECT_EQ(map.Lookup(key), absent());
    void* value = nullptr;
    EXPECT_STREQ(map.First(value), "port");
    EXPECT_NE(map.First(value), key);
}

TEST(StringMap, LookupComparesWholeTexts) {
    StringMap map(2);
    map.Add("b", nullptr);
    for (const char* other : {"", "B", "d", "bb", "bbb"})
        EXPECT_EQ(map.Lookup(other), absent()) << other;
}

TEST(StringMap, AcceptsKeysOf100000Bytes) {
    StringMap map(64);
    const std::string name(100000, 'n');
    const std::string longer = name + "m";
    EXPECT_TRUE(map.Add(name.c_str(), pointer(1)));
    EXPECT_TRUE(map.Add(longer.c_str(), pointer(2)));
    EXPECT_EQ(map.Lookup(name.c_str()), pointer(1));
    EXPECT_EQ(map.Lookup(longer.c_str()), pointer(2));
    EXPECT_EQ(map.hash(name.c_str()), (100000u * ('n' - 32u)) & 63u);
}

TEST(StringMap, ANullKeyIsNeitherFoundNorAdded) {
    StringMap map(2);
    map.Add("b", pointer(2));
    void* value = &map;
    EXPECT_FALSE(map.Add(nullptr, pointer(1)));
    EXPECT_EQ(map.Lookup(nullptr), absent());
    EXPECT_FALSE(map.Delete(nullptr));
    EXPECT_EQ(map.Next(nullptr, value), nullptr);
    EXPECT_EQ(value, &map);
    EXPECT_EQ(Tests::entriesOf(map), (Entries{{"b", pointer(2)}}));
    EXPECT_EQ(map.count(), 1u);
}

TEST(StringMap, DeleteRemovesOnlyTheFirstKeyOfABucket) {
    StringMap map(2);
    map.Add("c", pointer(2)); // 67: the same bucket as "a", 65
    map.Add("a", pointer(1));
    EXPECT_FALSE(map.Delete("c"));
    EXPECT_EQ(map.Lookup("c"), pointer(2));
    EXPECT_EQ(map.count(), 2u);
    EXPECT_TRUE(map.Delete("a"));
    EXPECT_EQ(map.Lookup("a"), absent());
    EXPECT_EQ(map.count(), 1u);
    EXPECT_TRUE(map.Delete("c"));
    EXPECT_EQ(map.count(), 0u);
    EXPECT_TRUE(Tests::entriesOf(map).empty());
}

TEST(StringMap, DeleteDoesNotRemoveTheSecondKeyOfABucket) {
    StringMap map(4096);
    map.Add("a\x02", pointer(1)); // the same sum as "b\x01"
    map.Add("b\x01", pointer(2));
    ASSERT_EQ(map.hash("a\x02"), map.hash("b\x01"));
    EXPECT_FALSE(map.Delete("b\x01"));
    EXPECT_EQ(map.Lookup("b\x01"), pointer(2));
    EXPECT_TRUE(map.Delete("a\x02"));
    EXPECT_EQ(map.Lookup("a\x02"), absent());
}

TEST(StringMap, DeleteOfAnAbsentKeyIsTrueUnlessItsBucketHasASmallerOne) {
    StringMap map(2);
    EXPECT_TRUE(map.Delete("c")); // the bucket is empty
    map.Add("c", nullptr);
    map.Add("g", nullptr);
    EXPECT_TRUE(map.Delete("a"));  // every key there is greater
    EXPECT_FALSE(map.Delete("e")); // one is smaller
    EXPECT_FALSE(map.Delete("i"));
    EXPECT_EQ(map.count(), 2u);
    EXPECT_EQ(Tests::entriesOf(map).size(), 2u);
}

TEST(StringMap, DumpPrintsALineForEachBucketInUse) {
    StringMap map(64);
    EXPECT_EQ(test::dumpOf(map), "");
    map.Add("ba", nullptr);
    map.Add("ab", nullptr);
    map.Add("!", nullptr);
    EXPECT_EQ(test::dumpOf(map), "1: ! \n3: ab ba \n");
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(StringMap, HashMapTest, StringMapTraits);
} // namespace test
