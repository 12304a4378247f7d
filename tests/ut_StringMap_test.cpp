#include "ut_StringMap.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "DebugSwitch.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "PointerMapModel.h"
#include "RandomSeed.h"
#include "TraceLines.h"
#include "fw_Memory.h"

using test::absent;
using test::pointer;
using utility::StringMap;

namespace {

const unsigned int stringMapSwitch = 5859;

typedef std::vector<std::pair<std::string, void*>> Entries;

Entries entriesOf(StringMap& map) {
    Entries entries;
    void* value = nullptr;
    for (const char* key = map.First(value); key; key = map.Next(key, value))
        entries.emplace_back(key, value);
    return entries;
}

std::string dumpOf(StringMap& map) {
    testing::internal::CaptureStdout();
    map.dump();
    return testing::internal::GetCapturedStdout();
}

void expectStaysEmpty(StringMap& map) {
    void* value = &map;
    EXPECT_FALSE(map.Add("a", pointer(1)));
    EXPECT_EQ(map.Lookup("a"), absent());
    EXPECT_FALSE(map.Delete("a"));
    EXPECT_EQ(map.First(value), nullptr);
    EXPECT_EQ(map.Next("a", value), nullptr);
    EXPECT_EQ(value, &map);
    map.DeleteAll();
    EXPECT_EQ(dumpOf(map), "");
    EXPECT_EQ(map.count(), 0u);
}

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

TEST(StringMap, AcceptsPowersOfTwoFrom2To65536AsBucketCount) {
    const test::LogCapture log;
    for (unsigned int buckets = 2; buckets <= 65536; buckets *= 2) {
        StringMap map(buckets);
        EXPECT_TRUE(map.Add("CL1-A", pointer(1))) << buckets;
        EXPECT_EQ(map.Lookup("CL1-A"), pointer(1)) << buckets;
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST(StringMap, RejectsEveryOtherBucketCount) {
    for (const unsigned int buckets :
         {0u, 1u, 3u, 6u, 1000u, 65535u, 65537u, 131072u, 0x40000000u, 0x80000000u, 0xFFFFFFFFu}) {
        const long outstanding = framework::Memory::staticOutstanding();
        const test::DebugSwitch traces(stringMapSwitch);
        test::LogCapture log;
        StringMap map(buckets);
        EXPECT_EQ(test::traceLines(log),
                  (std::vector<std::string>{"0 utility::StringMap::StringMap(unsigned int): need to use num buckets at "
                                            "power of 2 instead of " +
                                            std::to_string(static_cast<int>(buckets)) + "\n"}));
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
        expectStaysEmpty(map);
        EXPECT_EQ(map.hash("ab"), 0u);
    }
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
    EXPECT_EQ(entriesOf(one), (Entries{{"a", pointer(1)}, {"\xc3\xa4", pointer(2)}}));
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

TEST(StringMap, AddOfAPresentKeyReplacesItsValueAndReturnsFalse) {
    StringMap map(16);
    EXPECT_TRUE(map.Add("a", pointer(1)));
    EXPECT_FALSE(map.Add("a", pointer(2)));
    EXPECT_EQ(map.Lookup("a"), pointer(2));
    EXPECT_EQ(map.count(), 1u);
}

TEST(StringMap, LookupOfAnAbsentKeyReturnsMinusOneAndNotNull) {
    StringMap map(2);
    EXPECT_EQ(map.Lookup("b"), absent());
    map.Add("b", nullptr);
    EXPECT_EQ(map.Lookup("b"), nullptr);
    EXPECT_EQ(map.Lookup("B"), absent()); // less than the key
    EXPECT_EQ(map.Lookup("d"), absent()); // greater than the key
    EXPECT_EQ(map.Lookup("bb"), absent());
}

TEST(StringMap, TheEmptyTextIsAKeyLikeAnyOther) {
    StringMap map(2);
    EXPECT_TRUE(map.Add("b", pointer(2)));
    EXPECT_TRUE(map.Add("", pointer(1)));
    EXPECT_EQ(map.Lookup(""), pointer(1));
    EXPECT_EQ(entriesOf(map), (Entries{{"", pointer(1)}, {"b", pointer(2)}}));
    EXPECT_TRUE(map.Delete(""));
    EXPECT_EQ(map.Lookup(""), absent());
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
    EXPECT_EQ(entriesOf(map), (Entries{{"b", pointer(2)}}));
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
    EXPECT_TRUE(entriesOf(map).empty());
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
    EXPECT_EQ(entriesOf(map).size(), 2u);
}

TEST(StringMap, FirstAndNextIterateInBucketOrder) {
    StringMap map(4);
    void* value = &map;
    EXPECT_EQ(map.First(value), nullptr);
    EXPECT_EQ(value, &map);
    map.Add("c", pointer(3)); // bucket 3
    map.Add("d", pointer(4)); // bucket 0
    map.Add("e", pointer(5)); // bucket 1
    map.Add("a", pointer(1)); // bucket 1
    EXPECT_EQ(entriesOf(map), (Entries{{"d", pointer(4)}, {"a", pointer(1)}, {"e", pointer(5)}, {"c", pointer(3)}}));
    value = &map;
    EXPECT_EQ(map.Next("c", value), nullptr); // the last
    EXPECT_EQ(map.Next("b", value), nullptr); // absent
    EXPECT_EQ(map.Next("A", value), nullptr);
    EXPECT_EQ(value, &map);
}

TEST(StringMap, DeleteAllRemovesAllEntriesAndKeepsTheCount) {
    const long outstanding = framework::Memory::staticOutstanding();
    {
        StringMap map(16);
        map.DeleteAll();
        for (int number = 0; number < 100; ++number)
            map.Add(std::to_string(number).c_str(), nullptr);
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 201); // entries, keys and the table
        map.DeleteAll();
        EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 1);
        void* value = nullptr;
        EXPECT_EQ(map.First(value), nullptr);
        EXPECT_EQ(map.count(), 100u);
        EXPECT_TRUE(map.Add("1", nullptr));
        EXPECT_EQ(map.count(), 101u);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

TEST(StringMap, DeleteFreesEntryAndKey) {
    const long outstanding = framework::Memory::staticOutstanding();
    StringMap map(16);
    map.Add("a", nullptr);
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 3);
    map.Delete("a");
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding + 1);
}

TEST(StringMap, DumpPrintsALineForEachBucketInUse) {
    StringMap map(64);
    EXPECT_EQ(dumpOf(map), "");
    map.Add("ba", nullptr);
    map.Add("ab", nullptr);
    map.Add("!", nullptr);
    EXPECT_EQ(dumpOf(map), "1: ! \n3: ab ba \n");
}

TEST(StringMap, PlacementTracePrintsWhereNewEntriesGo) {
    StringMap map(2);
    testing::internal::CaptureStdout();
    map.Add("b", nullptr); // not traced yet
    map.setPlacementTrace(true);
    map.Add("c", nullptr);
    map.Add("g", nullptr);
    map.Add("e", nullptr);
    map.Add("a", nullptr);
    map.Add("e", pointer(1)); // present
    map.setPlacementTrace(false);
    map.Add("i", nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "place: c @ 1\n"
                                                      "append: g @ 1\n"
                                                      "insert: e @ 1, before g\n"
                                                      "insert: a @ 1, before c\n");
}

TEST(StringMap, LookupDoesNotAllocate) {
    StringMap map(16);
    for (int number = 0; number < 200; ++number)
        map.Add(std::to_string(number).c_str(), pointer(static_cast<std::uintptr_t>(number)));
    const test::FailingAllocation failing(test::failAll);
    for (int number = 0; number < 400; ++number) {
        char key[16];
        std::snprintf(key, sizeof key, "%d", number);
        ASSERT_EQ(map.Lookup(key), number < 200 ? pointer(static_cast<std::uintptr_t>(number)) : absent());
    }
    EXPECT_FALSE(map.Add("7", pointer(8)));
    void* value = nullptr;
    EXPECT_NE(map.First(value), nullptr);
    map.Next("7", value);
    map.Delete("7");
    map.DeleteAll();
    EXPECT_EQ(failing.failures(), 0u);
}

TEST(StringMap, WithoutMemoryForEntryOrKeyAddChangesNothing) {
    StringMap map(2);
    for (const char* present : {"g", "c"}) {
        const Entries before = entriesOf(map);
        for (const char* key : {"a", "e", "i", "b"}) {
            const long outstanding = framework::Memory::staticOutstanding();
            for (const unsigned long nth : {1ul, 2ul}) {
                test::FailingAllocation failing(nth);
                EXPECT_FALSE(map.Add(key, pointer(1))) << key;
                failing.stop();
                EXPECT_EQ(failing.failures(), 1u);
                EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding) << key;
                EXPECT_EQ(entriesOf(map), before) << key;
                EXPECT_EQ(map.count(), before.size());
            }
        }
        EXPECT_TRUE(map.Add(present, pointer(1)));
    }
}

TEST(StringMap, WithoutMemoryForItsTableAMapStaysEmpty) {
    const long outstanding = framework::Memory::staticOutstanding();
    {
        test::FailingAllocation failing(1);
        StringMap map(64);
        EXPECT_EQ(failing.failures(), 1u);
        failing.stop();
        expectStaysEmpty(map);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

// Reference implementation with an ordered map: `Delete` removes only the first key of a bucket, and `DeleteAll` does
// not reset the count.
class StringMapModel {
public:
    StringMapModel(unsigned int seed, unsigned int buckets) : m_random(seed), m_map(buckets), m_mask(buckets - 1) {}

    void run(int steps) {
        for (int step = 0; step < steps && !testing::Test::HasFailure(); ++step) {
            SCOPED_TRACE(step);
            takeStep();
            EXPECT_EQ(m_map.count(), m_count);
            if (step % 64 == 0) {
                EXPECT_EQ(entriesOf(m_map), modelEntries());
            }
        }
    }

private:
    typedef std::pair<std::uint32_t, std::string> Place;

    Place somePlace() {
        static const char letters[] = {'a', 'b', 'c', 'z', '\x01', '\x7f', '\x80', '\xff'};
        std::string key(m_random() % 4, 'x');
        std::uint32_t hash = 0;
        for (char& letter : key) {
            letter = letters[m_random() % sizeof letters];
            hash += static_cast<unsigned char>(letter);
            hash -= 32;
        }
        return {hash & m_mask, key};
    }

    void takeStep() {
        const Place place = somePlace();
        const char* key = place.second.c_str();
        switch (m_random() % 10) {
        case 0:
        case 1:
        case 2:
        case 3: {
            void* value = pointer(m_random());
            const bool isNew = m_model.count(place) == 0;
            EXPECT_EQ(m_map.Add(key, value), isNew);
            m_model[place] = value;
            m_count += isNew ? 1 : 0;
            return;
        }
        case 4:
        case 5:
        case 6:
            return remove(place);
        case 7:
            return next(place);
        case 8:
            EXPECT_EQ(m_map.hash(key), place.first);
            return m_random() % 200 == 0 ? clear() : void();
        default: {
            const auto found = m_model.find(place);
            EXPECT_EQ(m_map.Lookup(key), found == m_model.end() ? absent() : found->second);
            return;
        }
        }
    }

    void remove(const Place& place) {
        const auto first = m_model.lower_bound({place.first, ""});
        const bool smallerInBucket = first != m_model.end() && first->first < place;
        EXPECT_EQ(m_map.Delete(place.second.c_str()), !smallerInBucket);
        if (!smallerInBucket)
            m_count -= static_cast<unsigned int>(m_model.erase(place));
    }

    void next(const Place& place) {
        void* value = this;
        const char* key = m_map.Next(place.second.c_str(), value);
        const auto behind = m_model.count(place) > 0 ? m_model.upper_bound(place) : m_model.end();
        if (behind == m_model.end()) {
            EXPECT_EQ(key, nullptr);
            EXPECT_EQ(value, this);
        } else {
            EXPECT_EQ(key, behind->first.second);
            EXPECT_EQ(value, behind->second);
        }
    }

    void clear() {
        m_map.DeleteAll();
        m_model.clear();
    }

    Entries modelEntries() const {
        Entries entries;
        for (const auto& entry : m_model)
            entries.emplace_back(entry.first.second, entry.second);
        return entries;
    }

    std::mt19937 m_random;
    StringMap m_map;
    std::uint32_t m_mask;
    std::map<Place, void*> m_model;
    unsigned int m_count = 0;
};

TEST(StringMap, BehavesAsAnOrderedMapUnderRandomOperations) {
    const long outstanding = framework::Memory::staticOutstanding();
    for (const unsigned int buckets : {2u, 64u, 1024u}) {
        const unsigned int seed = test::randomSeed();
        SCOPED_TRACE(test::repeatWith(seed));
        StringMapModel(seed, buckets).run(100000);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

} // namespace
