// Crashes four calls deep. None of the four throws, so that the compiler may leave them out of the unwind tables.
#include <signal.h>

#include <VXut/ut_DateTime.h>
#include <VXut/ut_Debug.h>

static_assert(8 * sizeof(utility::DateTime) == VXUT_TIME_BITS, "the library has another layout");

extern "C" {

volatile int depth = 0;

[[gnu::noinline]] void clientFourth() noexcept {
    *reinterpret_cast<volatile int*>(0x10) = depth;
    ++depth;
}

[[gnu::noinline]] void clientThird() noexcept {
    clientFourth();
    ++depth;
}

[[gnu::noinline]] void clientSecond() noexcept {
    clientThird();
    ++depth;
}

[[gnu::noinline]] void clientFirst() noexcept {
    clientSecond();
    ++depth;
}

} // extern "C"

int main() {
    signal(SIGSEGV, utility::Debug::SignalCrash);
    clientFirst();
    return 0;
}
