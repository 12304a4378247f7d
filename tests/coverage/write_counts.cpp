// Part of each library of a coverage build: writes the library's counts. Processes that end without exit handlers call
// it.

extern "C" void __gcov_dump();
extern "C" __attribute__((visibility("default"))) void VXUT_WRITE_COUNTS();

void VXUT_WRITE_COUNTS() {
    __gcov_dump();
}
