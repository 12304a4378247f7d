#include "ut_Switches.h"

#include "ut_Debug.h"

namespace {

constexpr unsigned int CAPI_TRACE = 1198;
constexpr unsigned int CAPI_PRINT = 1199;

} // namespace

int DebugPrintEnable = 0x1FFFFFFF;

int IsDebugOn(unsigned int n) {
    return utility::Debug::isDebugOn(n) ? 1 : 0;
}

int IsCapiTraceOn(void) {
    return IsDebugOn(CAPI_TRACE);
}

int IsCapiPrintOn(void) {
    return IsDebugOn(CAPI_PRINT);
}
