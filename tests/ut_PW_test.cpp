#include "ut_PW.h"

#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include <pwd.h>

#include <gtest/gtest.h>

#include "support/DebugSwitch.h"
#include "support/LogCapture.h"

using framework::Logger;
using utility::PW;

namespace {

constexpr unsigned int dumpSwitch = 483;

void expectEmpty(const PW& user) {
    EXPECT_EQ(user.getUserName(), nullptr);
    EXPECT_EQ(user.getPassword(), nullptr);
    EXPECT_EQ(user.getUid(), 0u);
    EXPECT_EQ(user.getGid(), 0u);
    EXPECT_EQ(user.getRealName(), nullptr);
    EXPECT_EQ(user.getDir(), nullptr);
    EXPECT_EQ(user.getShell(), nullptr);
    EXPECT_EQ(user.used(), 0u);
}

void fill(PW& user) {
    user.m_passwd.pw_name = user.newString("monitor");
    user.m_passwd.pw_passwd = user.newString("$1$salt$hash");
    user.m_passwd.pw_uid = 1001;
    user.m_passwd.pw_gid = 100;
    user.m_passwd.pw_gecos = user.newString("The Monitor");
    user.m_passwd.pw_dir = user.newString("/home/monitor");
    user.m_passwd.pw_shell = user.newString("/bin/sh");
}

TEST(PW, UsageExample) {
    utility::PW user;
    user.m_passwd.pw_name = user.newString("monitor");
    user.m_passwd.pw_uid = 1001;
    EXPECT_STREQ(user.getUserName(), "monitor");
    EXPECT_EQ(user.getUid(), 1001u);
}

TEST(PW, NewRecordIsEmpty) {
    const std::unique_ptr<PW> user(new PW);
    expectEmpty(*user);
}

TEST(PW, RecordIsEmptyInReusedMemory) {
    alignas(PW) unsigned char storage[sizeof(PW)];
    std::memset(storage, 0xA5, sizeof storage);
    PW* user = new (storage) PW;
    expectEmpty(*user);
    user->~PW();
}

TEST(PW, GettersReturnTheFields) {
    PW user;
    fill(user);
    EXPECT_STREQ(user.getUserName(), "monitor");
    EXPECT_STREQ(user.getPassword(), "$1$salt$hash");
    EXPECT_EQ(user.getUid(), 1001u);
    EXPECT_EQ(user.getGid(), 100u);
    EXPECT_STREQ(user.getRealName(), "The Monitor");
    EXPECT_STREQ(user.getDir(), "/home/monitor");
    EXPECT_STREQ(user.getShell(), "/bin/sh");
    EXPECT_EQ(user.getUserName(), user.m_passwd.pw_name);
    EXPECT_EQ(user.getPassword(), user.m_passwd.pw_passwd);
    EXPECT_EQ(user.getRealName(), user.m_passwd.pw_gecos);
    EXPECT_EQ(user.getDir(), user.m_passwd.pw_dir);
    EXPECT_EQ(user.getShell(), user.m_passwd.pw_shell);
}

TEST(PW, NumbersAreUnsigned32Bit) {
    PW user;
    user.m_passwd.pw_uid = 4294967295u;
    user.m_passwd.pw_gid = 2147483648u;
    EXPECT_EQ(user.getUid(), 4294967295u);
    EXPECT_EQ(user.getGid(), 2147483648u);
}

TEST(PW, ResetClearsEveryFieldAndTheTextArea) {
    PW user;
    fill(user);
    EXPECT_GT(user.used(), 0u);
    user.reset();
    expectEmpty(user);
    const test::LogCapture log;
    EXPECT_NE(user.newString(std::string(2047, 'n').c_str()), nullptr);
    EXPECT_EQ(log.count(), 0u);
}

TEST(PW, NewStringIsACopyInsideTheRecord) {
    PW user;
    char text[] = "storage";
    char* copy = user.newString(text);
    ASSERT_NE(copy, nullptr);
    EXPECT_STREQ(copy, "storage");
    std::memset(text, 'x', sizeof text - 1);
    EXPECT_STREQ(copy, "storage");
    EXPECT_GE(reinterpret_cast<char*>(&user + 1), copy + sizeof text);
    EXPECT_LE(reinterpret_cast<char*>(&user), copy);
}

TEST(PW, NewStringsAreAdjacent) {
    PW user;
    char* first = user.newString("abc");
    EXPECT_EQ(user.used(), 4u);
    char* second = user.newString("");
    EXPECT_EQ(user.used(), 5u);
    char* third = user.newString("de");
    EXPECT_EQ(user.used(), 8u);
    EXPECT_EQ(second, first + 4);
    EXPECT_EQ(third, first + 5);
    EXPECT_STREQ(first, "abc");
    EXPECT_STREQ(second, "");
    EXPECT_STREQ(third, "de");
    user.reset();
    EXPECT_EQ(user.newString("new"), first);
}

TEST(PW, NewStringOfNullIsNullAndUsesNoSpace) {
    PW user;
    const test::LogCapture log;
    EXPECT_EQ(user.newString(nullptr), nullptr);
    EXPECT_EQ(user.used(), 0u);
    EXPECT_EQ(log.count(), 0u);
}

TEST(PW, NewStringOf2047CharactersFillsTheAreaAndAnotherOneFails) {
    PW user;
    const std::string longest(2047, 'n');
    const test::LogCapture log;
    char* copy = user.newString(longest.c_str());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy, longest);
    EXPECT_EQ(user.used(), 2048u);
    EXPECT_EQ(log.count(), 0u);

    EXPECT_EQ(user.newString("x"), nullptr);
    EXPECT_EQ(user.newString(""), nullptr);
    EXPECT_EQ(user.newString(nullptr), nullptr);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"string wont fit x\n", "string wont fit \n"}));
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, "string wont fit x\n"));
    EXPECT_EQ(user.used(), 2048u);
    EXPECT_EQ(copy, longest);
}

TEST(PW, NewStringOf2048CharactersIsRefused) {
    PW user;
    const std::string tooLong(2048, 'n');
    const test::LogCapture log;
    EXPECT_EQ(user.newString(tooLong.c_str()), nullptr);
    EXPECT_EQ(user.used(), 0u);
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR, "string wont fit " + tooLong + "\n"));
    EXPECT_EQ(log.count(), 1u);
    EXPECT_STREQ(user.newString("still fits"), "still fits");
}

TEST(PW, RefusedStringLeavesSpaceForShorterOnes) {
    PW user;
    const std::string most(2000, 'm');
    ASSERT_NE(user.newString(most.c_str()), nullptr);
    const test::LogCapture log;
    EXPECT_EQ(user.newString(std::string(47, 'x').c_str()), nullptr);
    EXPECT_EQ(log.count(), 1u);
    EXPECT_EQ(user.used(), 2001u);
    EXPECT_NE(user.newString(std::string(46, 'x').c_str()), nullptr);
    EXPECT_EQ(user.used(), 2048u);
    EXPECT_EQ(log.count(), 1u);
}

TEST(PW, ReadTextsAndNewStringsHaveSeparateSpace) {
    EXPECT_GE(sizeof(PW), sizeof(passwd) + 2 * 2048 + sizeof(unsigned int));
}

TEST(PW, DumpLogsAllFieldsAtLevel3) {
    PW user;
    fill(user);
    const test::DebugSwitch dumps(dumpSwitch);
    const test::LogCapture log;
    user.dump();
    EXPECT_EQ(log.count(), 1u);
    EXPECT_TRUE(log.contains(Logger::LOG_DEBUG, "PW - user: monitor, pw: $1$salt$hash, uid: 1001, gid: 100, "
                                                "rn: The Monitor, dir: /home/monitor, sh: /bin/sh\n"));
}

TEST(PW, DumpLogsLargeNumbersAsNegativeOnes) {
    PW user;
    user.m_passwd.pw_uid = 4294967295u;
    user.m_passwd.pw_gid = 4294967294u;
    const test::DebugSwitch dumps(dumpSwitch);
    const test::LogCapture log;
    user.dump();
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"PW - user: (null), pw: (null), uid: -1, gid: -2, rn: (null), "
                                                     "dir: (null), sh: (null)\n"}));
}

TEST(PW, DumpOfAnEmptyRecordIsSafe) {
    const PW user;
    const test::DebugSwitch dumps(dumpSwitch);
    const test::LogCapture log;
    user.dump();
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"PW - user: (null), pw: (null), uid: 0, gid: 0, rn: (null), "
                                                     "dir: (null), sh: (null)\n"}));
}

TEST(PW, DumpLogsNothingIfItsSwitchIsOff) {
    PW user;
    fill(user);
    const test::DebugSwitch other(484);
    const test::LogCapture log;
    user.dump();
    EXPECT_EQ(log.count(), 0u);
}

} // namespace
