#include "fw_KnownStrings.h"

#include <gtest/gtest.h>

#include "fw_StringRepository.h"

using strings::StringRepository;

namespace {

TEST(KnownStrings, NamedTextsAreTheVeryPointersOfTheRepository) {
    EXPECT_EQ(pGSArguments, StringRepository::toString(291));
    EXPECT_EQ(pGSEnter, StringRepository::toString(366));
    EXPECT_EQ(pGSEntity, StringRepository::toString(367));
    EXPECT_EQ(pGSFC, StringRepository::toString(1509));
    EXPECT_EQ(pGSURL, StringRepository::toString(630));
    EXPECT_EQ(pGSfalse, StringRepository::toString(390));
    EXPECT_EQ(pGSiSCSI, StringRepository::toString(2152));
    EXPECT_EQ(pGStrue, StringRepository::toString(626));
    EXPECT_STREQ(pGSArguments, "Arguments");
    EXPECT_STREQ(pGSEnter, "Enter");
    EXPECT_STREQ(pGSEntity, "Entity");
    EXPECT_STREQ(pGSFC, "FC");
    EXPECT_STREQ(pGSURL, "URL");
    EXPECT_STREQ(pGSfalse, "false");
    EXPECT_STREQ(pGSiSCSI, "iSCSI");
    EXPECT_STREQ(pGStrue, "true");
}

} // namespace
