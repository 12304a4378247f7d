#include "fw_KnownStrings.h"

#include <algorithm>
#include <array>
#include <cstring>

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
    {291, textArguments},
    {292, "Array"},
    {300, "BufferStreamList"},
    {348, "DateTime"},
    {350, "Debug"},
    {353, "DirIterator"},
    {366, textEnter},
    {367, textEntity},
    {368, "Environment"},
    {390, textFalse},
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
    {626, textTrue},
    {628, "UInt64Array"},
    {629, "UIntArray"},
    {630, textURL},
    {634, "UShortArray"},
    {1153, "Undefined"},
    {1198, "CapiTrace"},
    {1199, "CapiPrint"},
    {1200, "normal"},
    {1358, "IPv4"},
    {1359, "IPv6"},
    {1509, textFC},
    {1867, "heading"},
    {2152, textISCSI},
    {2301, "Waiter"},
    {4395, "DynamicStream"},
    {4499, "PortAddress"},
    {4500, "PortAddressArray"},
    {4618, "SerialNumberArray"},
    {4679, "PagingVirtualPutStream"},
    {5154, "WWNArray"},
    {5859, "StringMap"},
    // The source files that throw: an exception for lack of memory must not allocate its file name.
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
    {6911, "emphasis"},
    {6912, "strong"},
    {6913, "underlined"},
    {6914, "inverse"},
    {6915, "subheading"},
    {6916, "title"},
    {6917, "subtitle"},
    {6918, "paragraph"},
    {6919, "quotation"},
    {6920, "listItem"},
    {6921, "tableHeading"},
    {6922, "tableCell"},
    {6923, "tableTotal"},
    {6924, "separator"},
    {6925, "label"},
    {6926, "value"},
    {6927, "unit"},
    {6928, "link"},
    {6929, "command"},
    {6930, "option"},
    {6931, "prompt"},
    {6932, "selection"},
    {6933, "disabled"},
    {6934, "comment"},
    {6935, "success"},
    {6936, "warning"},
    {6937, "failure"},
    {6938, "critical"},
    {6939, "red"},
    {6940, "green"},
    {6941, "yellow"},
    {6942, "blue"},
    {6943, "magenta"},
    {6944, "cyan"},
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

const char* const pGSArguments = strings::textArguments;
const char* const pGSEnter = strings::textEnter;
const char* const pGSEntity = strings::textEntity;
const char* const pGSFC = strings::textFC;
const char* const pGSURL = strings::textURL;
const char* const pGSfalse = strings::textFalse;
const char* const pGSiSCSI = strings::textISCSI;
const char* const pGStrue = strings::textTrue;
