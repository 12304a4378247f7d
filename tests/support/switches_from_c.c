#include "switches_from_c.h"

#include "ut_Switches.h"

typedef char print_enable_has_32_bits[sizeof DebugPrintEnable == 4 ? 1 : -1];

struct SwitchesFromC switches_from_c(unsigned int n) {
    struct SwitchesFromC seen;
    seen.isOn = IsDebugOn(n);
    seen.isCapiTraceOn = IsCapiTraceOn();
    seen.isCapiPrintOn = IsCapiPrintOn();
    seen.printEnable = DebugPrintEnable;
    return seen;
}

void set_print_enable_from_c(int value) {
    DebugPrintEnable = value;
}
