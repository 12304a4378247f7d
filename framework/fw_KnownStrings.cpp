#include "fw_KnownStrings.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "fw_KnownTokens.h"
#include "internal/fw_KnownStringTable.h"

namespace strings {

namespace {

struct KnownString {
    stringtoken token;
    const char* text;
};

// The texts that code refers to by name; the table holds these very pointers.
constexpr char textArguments[] = "Arguments";
constexpr char textEnter[] = "Enter";
constexpr char textEntity[] = "Entity";
constexpr char textFC[] = "FC";
constexpr char textURL[] = "URL";
constexpr char textFalse[] = "false";
constexpr char textISCSI[] = "iSCSI";
constexpr char textTrue[] = "true";

constexpr KnownString knownStrings[] = {
    {TOKEN_ARGUMENTS, textArguments},
    {TOKEN_ARRAY, "Array"},
    {TOKEN_BUFFER_STREAM_LIST, "BufferStreamList"},
    {TOKEN_DATE_TIME, "DateTime"},
    {TOKEN_DEBUG, "Debug"},
    {TOKEN_DIR_ITERATOR, "DirIterator"},
    {TOKEN_ENTER, textEnter},
    {TOKEN_ENTITY, textEntity},
    {TOKEN_ENVIRONMENT, "Environment"},
    {TOKEN_FALSE, textFalse},
    {TOKEN_GET_STREAM, "GetStream"},
    {TOKEN_INT64_ARRAY, "Int64Array"},
    {TOKEN_INT_ARRAY, "IntArray"},
    {TOKEN_ITEM_ARRAY, "ItemArray"},
    {TOKEN_PW, "PW"},
    {TOKEN_PW_SERVICE, "PWService"},
    {TOKEN_PATH, "Path"},
    {TOKEN_SHORT_ARRAY, "ShortArray"},
    {TOKEN_TOKEN_ARRAY, "TokenArray"},
    {TOKEN_TOKEN_SET, "TokenSet"},
    {TOKEN_TRUE, textTrue},
    {TOKEN_UINT64_ARRAY, "UInt64Array"},
    {TOKEN_UINT_ARRAY, "UIntArray"},
    {TOKEN_URL, textURL},
    {TOKEN_USHORT_ARRAY, "UShortArray"},
    {TOKEN_UNDEFINED, "Undefined"},
    {TOKEN_CAPI_TRACE, "CapiTrace"},
    {TOKEN_CAPI_PRINT, "CapiPrint"},
    {TOKEN_NORMAL, "normal"},
    {TOKEN_IPV4, "IPv4"},
    {TOKEN_IPV6, "IPv6"},
    {TOKEN_FC, textFC},
    {TOKEN_HEADING, "heading"},
    {TOKEN_ISCSI, textISCSI},
    {TOKEN_WAITER, "Waiter"},
    {TOKEN_DYNAMIC_STREAM, "DynamicStream"},
    {TOKEN_PORT_ADDRESS, "PortAddress"},
    {TOKEN_PORT_ADDRESS_ARRAY, "PortAddressArray"},
    {TOKEN_SERIAL_NUMBER_ARRAY, "SerialNumberArray"},
    {TOKEN_PAGING_VIRTUAL_PUT_STREAM, "PagingVirtualPutStream"},
    {TOKEN_WWN_ARRAY, "WWNArray"},
    {TOKEN_STRING_MAP, "StringMap"},
    // The source files that throw: an exception for lack of memory must not allocate its file name.
    {TOKEN_UT_ARRAY, "ut_Array"},
    {TOKEN_UT_BUFFER, "ut_Buffer"},
    {TOKEN_UT_DATE_TIME, "ut_DateTime"},
    {TOKEN_UT_ENVIRONMENT, "ut_Environment"},
    {TOKEN_UT_GET_STREAM, "ut_GetStream"},
    {TOKEN_UT_INT64_ARRAY, "ut_Int64Array"},
    {TOKEN_UT_INT_ARRAY, "ut_IntArray"},
    {TOKEN_UT_ITEM_ARRAY, "ut_ItemArray"},
    {TOKEN_UT_PORT_ADDRESS_ARRAY, "ut_PortAddressArray"},
    {TOKEN_UT_PUT_STREAM, "ut_PutStream"},
    {TOKEN_UT_SERIAL_NUMBER_ARRAY, "ut_SerialNumberArray"},
    {TOKEN_UT_SHORT_ARRAY, "ut_ShortArray"},
    {TOKEN_UT_STRING_ARRAY, "ut_StringArray"},
    {TOKEN_UT_TOKEN_ARRAY, "ut_TokenArray"},
    {TOKEN_UT_TOKEN_SET, "ut_TokenSet"},
    {TOKEN_UT_UINT64_ARRAY, "ut_UInt64Array"},
    {TOKEN_UT_UINT_ARRAY, "ut_UIntArray"},
    {TOKEN_UT_USHORT_ARRAY, "ut_UShortArray"},
    {TOKEN_UT_VIRTUAL_GET_STREAM, "ut_VirtualGetStream"},
    {TOKEN_UT_VIRTUAL_PUT_STREAM, "ut_VirtualPutStream"},
    {TOKEN_UT_WWN_ARRAY, "ut_WWNArray"},
    {TOKEN_EMPHASIS, "emphasis"},
    {TOKEN_STRONG, "strong"},
    {TOKEN_UNDERLINED, "underlined"},
    {TOKEN_INVERSE, "inverse"},
    {TOKEN_SUBHEADING, "subheading"},
    {TOKEN_TITLE, "title"},
    {TOKEN_SUBTITLE, "subtitle"},
    {TOKEN_PARAGRAPH, "paragraph"},
    {TOKEN_QUOTATION, "quotation"},
    {TOKEN_LIST_ITEM, "listItem"},
    {TOKEN_TABLE_HEADING, "tableHeading"},
    {TOKEN_TABLE_CELL, "tableCell"},
    {TOKEN_TABLE_TOTAL, "tableTotal"},
    {TOKEN_SEPARATOR, "separator"},
    {TOKEN_LABEL, "label"},
    {TOKEN_VALUE, "value"},
    {TOKEN_UNIT, "unit"},
    {TOKEN_LINK, "link"},
    {TOKEN_COMMAND, "command"},
    {TOKEN_OPTION, "option"},
    {TOKEN_PROMPT, "prompt"},
    {TOKEN_SELECTION, "selection"},
    {TOKEN_DISABLED, "disabled"},
    {TOKEN_COMMENT, "comment"},
    {TOKEN_SUCCESS, "success"},
    {TOKEN_WARNING, "warning"},
    {TOKEN_FAILURE, "failure"},
    {TOKEN_CRITICAL, "critical"},
    {TOKEN_RED, "red"},
    {TOKEN_GREEN, "green"},
    {TOKEN_YELLOW, "yellow"},
    {TOKEN_BLUE, "blue"},
    {TOKEN_MAGENTA, "magenta"},
    {TOKEN_CYAN, "cyan"},
};

constexpr std::size_t knownCount = sizeof knownStrings / sizeof *knownStrings;

constexpr bool isSortedByToken() {
    for (std::size_t i = 1; i < knownCount; ++i)
        if (knownStrings[i - 1].token >= knownStrings[i].token)
            return false;
    return true;
}

constexpr bool isLess(const char* left, const char* right) {
    while (*left != '\0' && *left == *right) {
        ++left;
        ++right;
    }
    return *left < *right;
}

constexpr std::array<KnownString, knownCount> sortedByText() {
    std::array<KnownString, knownCount> sorted = {};
    for (std::size_t i = 0; i < knownCount; ++i) {
        std::size_t place = i;
        for (; place > 0 && isLess(knownStrings[i].text, sorted[place - 1].text); --place)
            sorted[place] = sorted[place - 1];
        sorted[place] = knownStrings[i];
    }
    return sorted;
}

constexpr std::array<KnownString, knownCount> knownStringsByText = sortedByText();

constexpr bool isEachTextOnce() {
    for (std::size_t i = 1; i < knownCount; ++i)
        if (!isLess(knownStringsByText[i - 1].text, knownStringsByText[i].text))
            return false;
    return true;
}

static_assert(isSortedByToken(), "each number stands once, in order");
static_assert(isEachTextOnce(), "each text has one number");

} // namespace

stringtoken knownToken(const char* text) {
    const auto found = std::lower_bound(
        knownStringsByText.begin(), knownStringsByText.end(), text,
        [](const KnownString& known, const char* sought) { return std::strcmp(known.text, sought) < 0; });
    return found != knownStringsByText.end() && std::strcmp(found->text, text) == 0 ? found->token : 0;
}

const char* knownText(stringtoken token) {
    const KnownString* end = knownStrings + knownCount;
    const KnownString* found = std::lower_bound(
        knownStrings, end, token, [](const KnownString& known, stringtoken sought) { return known.token < sought; });
    return found != end && found->token == token ? found->text : nullptr;
}

} // namespace strings

constexpr const char* pGSArguments = strings::textArguments;
constexpr const char* pGSEnter = strings::textEnter;
constexpr const char* pGSEntity = strings::textEntity;
constexpr const char* pGSFC = strings::textFC;
constexpr const char* pGSURL = strings::textURL;
constexpr const char* pGSfalse = strings::textFalse;
constexpr const char* pGSiSCSI = strings::textISCSI;
constexpr const char* pGStrue = strings::textTrue;
