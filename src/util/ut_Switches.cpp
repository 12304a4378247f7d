#include "ut_Switches.h"

#include "fw_KnownTokens.h"
#include "ut_Debug.h"

int DebugPrintEnable = 0x1FFFFFFF;

int IsDebugOn(unsigned int n) {
    return utility::Debug::isDebugOn(n) ? 1 : 0;
}

int IsCapiTraceOn(void) {
    return IsDebugOn(strings::TOKEN_CAPI_TRACE);
}

int IsCapiPrintOn(void) {
    return IsDebugOn(strings::TOKEN_CAPI_PRINT);
}
