#include "fw_KnownTokens.h"

#include <set>
#include <string>

#include <gtest/gtest.h>

#include "fw_StableStringRepository.h"

using strings::GS;
using strings::StringRepository;

namespace {

struct FixedText {
    strings::KnownToken token;
    stringtoken number;
    const char* text;
};

// Every number once more: clients store the numbers, so none may change.
constexpr FixedText fixedTexts[] = {
    {strings::TOKEN_ARGUMENTS, 291, "Arguments"},
    {strings::TOKEN_ARRAY, 292, "Array"},
    {strings::TOKEN_BUFFER_STREAM_LIST, 300, "BufferStreamList"},
    {strings::TOKEN_DATE_TIME, 348, "DateTime"},
    {strings::TOKEN_DEBUG, 350, "Debug"},
    {strings::TOKEN_DIR_ITERATOR, 353, "DirIterator"},
    {strings::TOKEN_ENTER, 366, "Enter"},
    {strings::TOKEN_ENTITY, 367, "Entity"},
    {strings::TOKEN_ENVIRONMENT, 368, "Environment"},
    {strings::TOKEN_FALSE, 390, "false"},
    {strings::TOKEN_GET_STREAM, 410, "GetStream"},
    {strings::TOKEN_INT64_ARRAY, 441, "Int64Array"},
    {strings::TOKEN_INT_ARRAY, 442, "IntArray"},
    {strings::TOKEN_ITEM_ARRAY, 444, "ItemArray"},
    {strings::TOKEN_PW, 483, "PW"},
    {strings::TOKEN_PW_SERVICE, 484, "PWService"},
    {strings::TOKEN_PATH, 489, "Path"},
    {strings::TOKEN_SHORT_ARRAY, 566, "ShortArray"},
    {strings::TOKEN_TOKEN_ARRAY, 624, "TokenArray"},
    {strings::TOKEN_TOKEN_SET, 625, "TokenSet"},
    {strings::TOKEN_TRUE, 626, "true"},
    {strings::TOKEN_UINT64_ARRAY, 628, "UInt64Array"},
    {strings::TOKEN_UINT_ARRAY, 629, "UIntArray"},
    {strings::TOKEN_URL, 630, "URL"},
    {strings::TOKEN_USHORT_ARRAY, 634, "UShortArray"},
    {strings::TOKEN_UNDEFINED, 1153, "Undefined"},
    {strings::TOKEN_CAPI_TRACE, 1198, "CapiTrace"},
    {strings::TOKEN_CAPI_PRINT, 1199, "CapiPrint"},
    {strings::TOKEN_NORMAL, 1200, "normal"},
    {strings::TOKEN_IPV4, 1358, "IPv4"},
    {strings::TOKEN_IPV6, 1359, "IPv6"},
    {strings::TOKEN_FC, 1509, "FC"},
    {strings::TOKEN_HEADING, 1867, "heading"},
    {strings::TOKEN_ISCSI, 2152, "iSCSI"},
    {strings::TOKEN_WAITER, 2301, "Waiter"},
    {strings::TOKEN_DYNAMIC_STREAM, 4395, "DynamicStream"},
    {strings::TOKEN_PORT_ADDRESS, 4499, "PortAddress"},
    {strings::TOKEN_PORT_ADDRESS_ARRAY, 4500, "PortAddressArray"},
    {strings::TOKEN_SERIAL_NUMBER_ARRAY, 4618, "SerialNumberArray"},
    {strings::TOKEN_PAGING_VIRTUAL_PUT_STREAM, 4679, "PagingVirtualPutStream"},
    {strings::TOKEN_WWN_ARRAY, 5154, "WWNArray"},
    {strings::TOKEN_STRING_MAP, 5859, "StringMap"},
    {strings::TOKEN_UT_ARRAY, 6801, "ut_Array"},
    {strings::TOKEN_UT_BUFFER, 6802, "ut_Buffer"},
    {strings::TOKEN_UT_DATE_TIME, 6803, "ut_DateTime"},
    {strings::TOKEN_UT_ENVIRONMENT, 6804, "ut_Environment"},
    {strings::TOKEN_UT_GET_STREAM, 6805, "ut_GetStream"},
    {strings::TOKEN_UT_INT64_ARRAY, 6806, "ut_Int64Array"},
    {strings::TOKEN_UT_INT_ARRAY, 6807, "ut_IntArray"},
    {strings::TOKEN_UT_ITEM_ARRAY, 6808, "ut_ItemArray"},
    {strings::TOKEN_UT_PORT_ADDRESS_ARRAY, 6809, "ut_PortAddressArray"},
    {strings::TOKEN_UT_PUT_STREAM, 6810, "ut_PutStream"},
    {strings::TOKEN_UT_SERIAL_NUMBER_ARRAY, 6811, "ut_SerialNumberArray"},
    {strings::TOKEN_UT_SHORT_ARRAY, 6812, "ut_ShortArray"},
    {strings::TOKEN_UT_STRING_ARRAY, 6813, "ut_StringArray"},
    {strings::TOKEN_UT_TOKEN_ARRAY, 6814, "ut_TokenArray"},
    {strings::TOKEN_UT_TOKEN_SET, 6815, "ut_TokenSet"},
    {strings::TOKEN_UT_UINT64_ARRAY, 6816, "ut_UInt64Array"},
    {strings::TOKEN_UT_UINT_ARRAY, 6817, "ut_UIntArray"},
    {strings::TOKEN_UT_USHORT_ARRAY, 6818, "ut_UShortArray"},
    {strings::TOKEN_UT_VIRTUAL_GET_STREAM, 6819, "ut_VirtualGetStream"},
    {strings::TOKEN_UT_VIRTUAL_PUT_STREAM, 6820, "ut_VirtualPutStream"},
    {strings::TOKEN_UT_WWN_ARRAY, 6821, "ut_WWNArray"},
    {strings::TOKEN_EMPHASIS, 6911, "emphasis"},
    {strings::TOKEN_STRONG, 6912, "strong"},
    {strings::TOKEN_UNDERLINED, 6913, "underlined"},
    {strings::TOKEN_INVERSE, 6914, "inverse"},
    {strings::TOKEN_SUBHEADING, 6915, "subheading"},
    {strings::TOKEN_TITLE, 6916, "title"},
    {strings::TOKEN_SUBTITLE, 6917, "subtitle"},
    {strings::TOKEN_PARAGRAPH, 6918, "paragraph"},
    {strings::TOKEN_QUOTATION, 6919, "quotation"},
    {strings::TOKEN_LIST_ITEM, 6920, "listItem"},
    {strings::TOKEN_TABLE_HEADING, 6921, "tableHeading"},
    {strings::TOKEN_TABLE_CELL, 6922, "tableCell"},
    {strings::TOKEN_TABLE_TOTAL, 6923, "tableTotal"},
    {strings::TOKEN_SEPARATOR, 6924, "separator"},
    {strings::TOKEN_LABEL, 6925, "label"},
    {strings::TOKEN_VALUE, 6926, "value"},
    {strings::TOKEN_UNIT, 6927, "unit"},
    {strings::TOKEN_LINK, 6928, "link"},
    {strings::TOKEN_COMMAND, 6929, "command"},
    {strings::TOKEN_OPTION, 6930, "option"},
    {strings::TOKEN_PROMPT, 6931, "prompt"},
    {strings::TOKEN_SELECTION, 6932, "selection"},
    {strings::TOKEN_DISABLED, 6933, "disabled"},
    {strings::TOKEN_COMMENT, 6934, "comment"},
    {strings::TOKEN_SUCCESS, 6935, "success"},
    {strings::TOKEN_WARNING, 6936, "warning"},
    {strings::TOKEN_FAILURE, 6937, "failure"},
    {strings::TOKEN_CRITICAL, 6938, "critical"},
    {strings::TOKEN_RED, 6939, "red"},
    {strings::TOKEN_GREEN, 6940, "green"},
    {strings::TOKEN_YELLOW, 6941, "yellow"},
    {strings::TOKEN_BLUE, 6942, "blue"},
    {strings::TOKEN_MAGENTA, 6943, "magenta"},
    {strings::TOKEN_CYAN, 6944, "cyan"},
};

TEST(KnownTokens, EachHasItsNumberAndItsText) {
    for (const FixedText& fixed : fixedTexts) {
        EXPECT_EQ(fixed.token, fixed.number) << fixed.text;
        EXPECT_STREQ(StringRepository::toString(fixed.number), fixed.text);
        EXPECT_EQ(GS.toToken(std::string(fixed.text).c_str()), fixed.number);
    }
}

TEST(KnownTokens, NoOtherNumberBelowTheRunTimeTokensHasAText) {
    std::set<stringtoken> numbers;
    for (const FixedText& fixed : fixedTexts)
        numbers.insert(fixed.number);
    EXPECT_EQ(numbers.size(), 97U);
    for (stringtoken number = 0; number < 6945; ++number)
        EXPECT_EQ(StringRepository::toString(number) != nullptr, numbers.count(number) == 1) << number;
}

} // namespace
