#include "ut_Switches.h"

#include <cstdio>

#include <dlfcn.h>

#include <gtest/gtest.h>

#include "DebugSwitch.h"
#include "switches_from_c.h"

namespace {

TEST(Switches, UsageExample) {
    testing::internal::CaptureStdout();
    if (IsCapiTraceOn() != 0)
        std::puts("entered");
    const test::DebugSwitch capiTrace(1198);
    if (IsCapiTraceOn() != 0)
        std::puts("entered");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "entered\n");
}

TEST(Switches, IsDebugOnAnswersForEachSwitch) {
    EXPECT_EQ(IsDebugOn(8191), 0);
    const test::DebugSwitch last(8191);
    EXPECT_EQ(IsDebugOn(8191), 1);
    EXPECT_EQ(IsDebugOn(8190), 0);
    EXPECT_EQ(IsDebugOn(8192), 0);
    EXPECT_EQ(IsDebugOn(0xFFFFFFFFu), 0);
}

TEST(Switches, CapiTraceIsSwitch1198) {
    EXPECT_EQ(IsCapiTraceOn(), 0);
    const test::DebugSwitch capiTrace(1198);
    EXPECT_EQ(IsCapiTraceOn(), 1);
    EXPECT_EQ(IsCapiPrintOn(), 0);
}

TEST(Switches, CapiPrintIsSwitch1199) {
    EXPECT_EQ(IsCapiPrintOn(), 0);
    const test::DebugSwitch capiPrint(1199);
    EXPECT_EQ(IsCapiPrintOn(), 1);
    EXPECT_EQ(IsCapiTraceOn(), 0);
}

TEST(Switches, NamesAreNotMangled) {
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "IsDebugOn"), reinterpret_cast<void*>(&IsDebugOn));
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "IsCapiTraceOn"), reinterpret_cast<void*>(&IsCapiTraceOn));
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "IsCapiPrintOn"), reinterpret_cast<void*>(&IsCapiPrintOn));
    EXPECT_EQ(dlsym(RTLD_DEFAULT, "DebugPrintEnable"), static_cast<void*>(&DebugPrintEnable));
}

TEST(Switches, DebugPrintEnableIsThereForClients) {
    static_assert(sizeof DebugPrintEnable == 4, "clients take it for 32 bits");
    EXPECT_EQ(DebugPrintEnable, 0x1FFFFFFF);
}

TEST(Switches, ServeCPrograms) {
    SwitchesFromC seen = switches_from_c(2301);
    EXPECT_EQ(seen.isOn, 0);
    EXPECT_EQ(seen.isCapiTraceOn, 0);
    EXPECT_EQ(seen.isCapiPrintOn, 0);
    EXPECT_EQ(seen.printEnable, 0x1FFFFFFF);

    {
        const test::DebugSwitch waiter(2301);
        const test::DebugSwitch capiTrace(1198);
        seen = switches_from_c(2301);
    }
    EXPECT_EQ(seen.isOn, 1);
    EXPECT_EQ(seen.isCapiTraceOn, 1);
    EXPECT_EQ(seen.isCapiPrintOn, 0);

    const test::DebugSwitch capiPrint(1199);
    seen = switches_from_c(2301);
    EXPECT_EQ(seen.isOn, 0);
    EXPECT_EQ(seen.isCapiTraceOn, 0);
    EXPECT_EQ(seen.isCapiPrintOn, 1);
}

TEST(Switches, CProgramsAndTheLibraryShareDebugPrintEnable) {
    set_print_enable_from_c(7);
    EXPECT_EQ(DebugPrintEnable, 7);
    set_print_enable_from_c(0x1FFFFFFF);
    EXPECT_EQ(DebugPrintEnable, 0x1FFFFFFF);
}

} // namespace
