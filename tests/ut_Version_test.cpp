#include "ut_Version.h"

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace {

TEST(Version, UsageExample) {
    testing::internal::CaptureStdout();
    std::printf("compiled with %s, running with %s\n", VXUT_VERSION, utility::version());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "compiled with " VXUT_PROJECT_VERSION ", running with " VXUT_PROJECT_VERSION "\n");
}

TEST(Version, AllFormsAreThoseOfTheProject) {
    EXPECT_STREQ(VXUT_VERSION, VXUT_PROJECT_VERSION);
    EXPECT_EQ(std::to_string(VXUT_VERSION_MAJOR) + "." + std::to_string(VXUT_VERSION_MINOR) + "." +
                  std::to_string(VXUT_VERSION_PATCH),
              VXUT_PROJECT_VERSION);
    EXPECT_EQ(utility::versionNumber(), VXUT_VERSION_NUMBER);
    EXPECT_EQ(VXUT_VERSION_NUMBER, VXUT_VERSION_MAJOR * 10000 + VXUT_VERSION_MINOR * 100 + VXUT_VERSION_PATCH);
}

#if VXUT_VERSION_NUMBER < 10000
#error "the preprocessor can compare versions"
#endif

} // namespace
