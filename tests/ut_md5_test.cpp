#include "ut_md5.h"

#include <climits>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "RandomBytes.h"
#include "TemporaryDirectory.h"
#include "md5_from_c.h"

namespace {

using test::randomBytes;

std::string asHex(const unsigned char (&digest)[16]) {
    std::string text;
    for (const unsigned char byte : digest) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        text += digits;
    }
    return text;
}

void append(md5_state_t& state, const std::string& bytes) {
    md5_append(&state, reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<int>(bytes.size()));
}

std::string finish(md5_state_t& state) {
    unsigned char digest[16];
    md5_finish(&state, digest);
    return asHex(digest);
}

std::string md5(const std::string& bytes) {
    md5_state_t state;
    md5_init(&state);
    append(state, bytes);
    return finish(state);
}

// The digests that one run of the program md5sum prints for `contents`, written to files.
std::vector<std::string> md5sum(const std::vector<std::string>& contents) {
    const test::TemporaryDirectory directory;
    for (std::size_t i = 0; i < contents.size(); ++i)
        directory.write("f" + std::to_string(i), contents[i]);
    const std::string command = "cd '" + directory.path() + "' && find . -name 'f*' -print0 | xargs -0 md5sum >sums";
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::istringstream lines(directory.read("sums"));
    std::vector<std::string> sums(contents.size());
    for (std::string sum, name; lines >> sum >> name;)
        sums.at(std::stoul(name.substr(3))) = sum;
    return sums;
}

TEST(md5, UsageExample) {
    md5_state_t state;
    unsigned char digest[16];
    md5_init(&state);
    md5_append(&state, (const unsigned char*)"abc", 3);
    md5_finish(&state, digest);
    EXPECT_EQ(asHex(digest).substr(0, 8), "90015098");
}

TEST(md5, PassesTheTestSuiteOfRfc1321) {
    EXPECT_EQ(md5(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(md5("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(md5("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(md5("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(md5("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(md5("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
              "d174ab98d277d9f5a5611c2c9f419d9f");
    EXPECT_EQ(md5("12345678901234567890123456789012345678901234567890123456789012345678901234567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(md5, StateHasItsDocumentedLayout) {
    EXPECT_EQ(offsetof(md5_state_t, count), 0U);
    EXPECT_EQ(offsetof(md5_state_t, abcd), 8U);
    EXPECT_EQ(offsetof(md5_state_t, buf), 24U);
    EXPECT_EQ(sizeof(md5_state_t), 88U);
}

TEST(md5, InitSetsTheValuesOfRfc1321) {
    md5_state_t state;
    std::memset(&state, 0x5a, sizeof state);
    md5_init(&state);
    EXPECT_EQ(state.count[0], 0U);
    EXPECT_EQ(state.count[1], 0U);
    EXPECT_EQ(state.abcd[0], 0x67452301U);
    EXPECT_EQ(state.abcd[1], 0xefcdab89U);
    EXPECT_EQ(state.abcd[2], 0x98badcfeU);
    EXPECT_EQ(state.abcd[3], 0x10325476U);
}

TEST(md5, AppendCountsBitsAndBuffersAPartialBlock) {
    md5_state_t state;
    md5_init(&state);
    append(state, "abc");
    EXPECT_EQ(state.count[0], 24U);
    EXPECT_EQ(state.count[1], 0U);
    EXPECT_EQ(std::memcmp(state.buf, "abc", 3), 0);
    EXPECT_EQ(state.abcd[0], 0x67452301U);
    append(state, std::string(64, 'x') + "yz");
    EXPECT_EQ(state.count[0], 69U * 8);
    EXPECT_NE(state.abcd[0], 0x67452301U);
    EXPECT_EQ(std::memcmp(state.buf, "xxxyz", 5), 0);
}

TEST(md5, AppendCarriesIntoTheHighWord) {
    md5_state_t state;
    md5_init(&state);
    state.count[0] = 0xfffffe00;
    append(state, std::string(63, 'x'));
    EXPECT_EQ(state.count[0], 0xfffffff8U);
    EXPECT_EQ(state.count[1], 0U);
    append(state, "y");
    EXPECT_EQ(state.count[0], 0U);
    EXPECT_EQ(state.count[1], 1U);
}

TEST(md5, AppendOfNoBytesLeavesTheStateUnchanged) {
    md5_state_t state;
    md5_init(&state);
    append(state, "abc");
    md5_state_t before;
    std::memcpy(&before, &state, sizeof state);
    const unsigned char byte = 1;
    md5_append(&state, &byte, 0);
    md5_append(&state, &byte, -1);
    md5_append(&state, &byte, INT_MIN);
    md5_append(&state, nullptr, 5);
    EXPECT_EQ(std::memcmp(&before, &state, sizeof state), 0);
}

TEST(md5, AppendInPiecesGivesTheSameDigest) {
    std::mt19937 random(7);
    const std::string bytes = randomBytes(random, 1000);
    const std::string whole = md5(bytes);
    for (std::size_t piece = 1; piece < 200; ++piece) {
        md5_state_t state;
        md5_init(&state);
        for (std::size_t at = 0; at < bytes.size(); at += piece)
            append(state, bytes.substr(at, piece));
        EXPECT_EQ(finish(state), whole) << piece;
    }
    for (int i = 0; i < 200; ++i) {
        md5_state_t state;
        md5_init(&state);
        for (std::size_t at = 0; at < bytes.size();) {
            const std::size_t piece = random() % 150;
            append(state, bytes.substr(at, piece));
            at += piece;
        }
        EXPECT_EQ(finish(state), whole);
    }
}

TEST(md5, DataMayBeUnaligned) {
    std::mt19937 random(8);
    const std::string bytes = randomBytes(random, 333);
    const std::string whole = md5(bytes);
    for (std::size_t offset = 0; offset < 16; ++offset) {
        std::unique_ptr<char[]> copy(new char[offset + bytes.size()]);
        std::memcpy(copy.get() + offset, bytes.data(), bytes.size());
        md5_state_t state;
        md5_init(&state);
        md5_append(&state, reinterpret_cast<const unsigned char*>(copy.get()) + offset, 333);
        EXPECT_EQ(finish(state), whole) << offset;
    }
}

TEST(md5, CopiedStateIsIndependent) {
    md5_state_t state;
    md5_init(&state);
    append(state, "abc");
    md5_state_t other = state;
    append(other, "d");
    EXPECT_EQ(finish(state), md5("abc"));
    EXPECT_EQ(finish(other), md5("abcd"));
}

TEST(md5, AgreesWithMd5sumOverRandomContents) {
    std::mt19937 random(9);
    std::vector<std::string> contents;
    for (std::size_t size = 0; size < 300; ++size)
        contents.push_back(randomBytes(random, size));
    while (contents.size() < 9998)
        contents.push_back(randomBytes(random, random() % 500));
    contents.push_back(randomBytes(random, 100000));
    contents.push_back(randomBytes(random, 1048576));
    const std::vector<std::string> sums = md5sum(contents);
    for (std::size_t i = 0; i < contents.size(); ++i)
        ASSERT_EQ(md5(contents[i]), sums[i]) << contents[i].size();
}

TEST(md5, CanBeCalledFromC) {
    unsigned char digest[16];
    md5_from_c(reinterpret_cast<const unsigned char*>("message digest"), 14, digest);
    EXPECT_EQ(asHex(digest), "f96b697d7cb7938d525a2f31aaf161d0");
}

} // namespace
