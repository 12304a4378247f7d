#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/// What a C program sees of the debug switches.
struct SwitchesFromC {
    int isOn;
    int isCapiTraceOn;
    int isCapiPrintOn;
    int printEnable;
};

/// Asks for switch `n` and all else there is to ask for.
struct SwitchesFromC switches_from_c(unsigned int n);

/// Sets `DebugPrintEnable`.
void set_print_enable_from_c(int value);

#ifdef __cplusplus
}
#endif
