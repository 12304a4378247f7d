#include "fw_Config.h"

#include <cwchar>
#include <string>

#include <gtest/gtest.h>

#include "fw_Memory.h"
#include "support/FailingAllocation.h"

using framework::Config;
using framework::Memory;

namespace {

TEST(Config, UsageExample) {
    const char* root = "/mnt";
    char* name = framework::Config::generateNameString("%s%s", root, "/etc/passwd");
    EXPECT_STREQ(name, "/mnt/etc/passwd");
    framework::Memory::StaticFreeString(name);
}

TEST(Config, NamesOfAnyLengthAreWhole) {
    for (const std::size_t length : {0U, 1U, 255U, 4096U, 100000U}) {
        const std::string text(length, 'x');
        char* name = Config::generateNameString("%s", text.c_str());
        EXPECT_EQ(name, text);
        Memory::StaticFreeString(name);
    }
}

TEST(Config, NameIsAPieceOfTheStaticServices) {
    const long before = Memory::staticOutstanding();
    char* name = Config::generateNameString("%d", 4);
    EXPECT_EQ(Memory::staticOutstanding(), before + 1);
    Memory::StaticFreeString(name);
    EXPECT_EQ(Memory::staticOutstanding(), before);
}

TEST(Config, FailedAllocationIsNull) {
    test::FailingAllocation failing(test::failAll);
    char* const name = Config::generateNameString("%s", "/etc/passwd");
    failing.stop();
    EXPECT_EQ(name, nullptr);
}

TEST(Config, NoNameWithoutAFormatThatCanBeCarriedOut) {
    const char* const none = nullptr;
    EXPECT_EQ(Config::generateNameString(none), nullptr);
    // No character has this code.
    EXPECT_EQ(Config::generateNameString("%lc", static_cast<wint_t>(0x7fffffff)), nullptr);
}

} // namespace
