// What the sanitizers ask a test program for at its start, so that a test behaves alike under ctest and run by hand.

#define SANITIZER_ASKS extern "C" __attribute__((visibility("default"))) const char*

// A size that cannot be had is a null pointer, as it is without a sanitizer: many tests are about exactly that.
#if defined(__SANITIZE_ADDRESS__)
SANITIZER_ASKS __asan_default_options();
SANITIZER_ASKS __asan_default_options() {
    return "allocator_may_return_null=1:detect_stack_use_after_return=1:strict_string_checks=1:"
           "check_initialization_order=1";
}

SANITIZER_ASKS __ubsan_default_options();
SANITIZER_ASKS __ubsan_default_options() {
    return "print_stacktrace=1";
}
#endif

#if defined(__SANITIZE_THREAD__)
// Handlers of fatal signals write a backtrace, which allocates: that is their purpose, and the process ends after it.
SANITIZER_ASKS __tsan_default_options();
SANITIZER_ASKS __tsan_default_options() {
    return "allocator_may_return_null=1:second_deadlock_stack=1:halt_on_error=1:report_signal_unsafe=0";
}
#endif
