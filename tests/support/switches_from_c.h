#pragma once

#ifdef __cplusplus
extern "C" {
#endif

/// The state of the debug switches as a C program reads it.
struct SwitchesFromC {
    int isOn;
    int isCapiTraceOn;
    int isCapiPrintOn;
    int printEnable;
};

/// Reads switch `n` and the other states.
struct SwitchesFromC switches_from_c(unsigned int n);

/// Sets `DebugPrintEnable`.
void set_print_enable_from_c(int value);

#ifdef __cplusplus
}
#endif
