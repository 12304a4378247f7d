// Has crash reports.
#include <signal.h>

#include <VXut/ut_Debug.h>

int main() {
    signal(SIGSEGV, utility::Debug::SignalCrash);
    return raise(SIGSEGV);
}
