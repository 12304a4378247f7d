#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "fw_KnownStrings.h"
#include "fw_StableStringRepository.h"

using strings::GS;
using strings::StringRepository;

TEST(KnownStrings, FixedTextsHaveTheirNumbers) {
    const std::vector<std::pair<stringtoken, const char*>> fixed = {
        {291, "Arguments"},
        {292, "Array"},
        {300, "BufferStreamList"},
        {348, "DateTime"},
        {350, "Debug"},
        {353, "DirIterator"},
        {366, "Enter"},
        {367, "Entity"},
        {368, "Environment"},
        {390, "false"},
        {410, "GetStream"},
        {441, "Int64Array"},
        {442, "IntArray"},
        {444, "ItemArray"},
        {483, "PW"},
        {484, "PWService"},
        {489, "Path"},
        {566, "ShortArray"},
        {624, "TokenArray"},
        {625, "TokenSet"},
        {626, "true"},
        {628, "UInt64Array"},
        {629, "UIntArray"},
        {630, "URL"},
        {634, "UShortArray"},
        {1153, "Undefined"},
        {1198, "CapiTrace"},
        {1199, "CapiPrint"},
        {1200, "normal"},
        {1358, "IPv4"},
        {1359, "IPv6"},
        {1509, "FC"},
        {1867, "heading"},
        {2152, "iSCSI"},
        {2301, "Waiter"},
        {4395, "DynamicStream"},
        {4499, "PortAddress"},
        {4500, "PortAddressArray"},
        {4618, "SerialNumberArray"},
        {4679, "PagingVirtualPutStream"},
        {5154, "WWNArray"},
        {5859, "StringMap"},
        {6801, "ut_Array"},
        {6802, "ut_Buffer"},
        {6803, "ut_DateTime"},
        {6804, "ut_Environment"},
        {6805, "ut_GetStream"},
        {6806, "ut_Int64Array"},
        {6807, "ut_IntArray"},
        {6808, "ut_ItemArray"},
        {6809, "ut_PortAddressArray"},
        {6810, "ut_PutStream"},
        {6811, "ut_SerialNumberArray"},
        {6812, "ut_ShortArray"},
        {6813, "ut_StringArray"},
        {6814, "ut_TokenArray"},
        {6815, "ut_TokenSet"},
        {6816, "ut_UInt64Array"},
        {6817, "ut_UIntArray"},
        {6818, "ut_UShortArray"},
        {6819, "ut_VirtualGetStream"},
        {6820, "ut_VirtualPutStream"},
        {6821, "ut_WWNArray"},
    };
    for (const auto& [token, text] : fixed) {
        EXPECT_STREQ(StringRepository::toString(token), text) << token;
        EXPECT_EQ(GS.toToken(std::string(text).c_str()), token) << text;
    }
}

TEST(KnownStrings, EveryFixedNumberBelongsToItsOwnText) {
    unsigned int count = 0;
    for (stringtoken token = 0; token < 6945; ++token) {
        const char* text = StringRepository::toString(token);
        if (!text)
            continue;
        ++count;
        EXPECT_EQ(GS.toToken(text), token) << text;
    }
    EXPECT_EQ(count, 97U);
}

TEST(KnownStrings, EveryDecorationHasAWord) {
    std::set<std::string> words = {StringRepository::toString(1200), StringRepository::toString(1867)};
    for (stringtoken token = 6911; token <= 6944; ++token) {
        ASSERT_NE(StringRepository::toString(token), nullptr) << token;
        words.insert(StringRepository::toString(token));
    }
    EXPECT_EQ(words.size(), 36U);
    EXPECT_EQ(words.count(""), 0U);
}

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
