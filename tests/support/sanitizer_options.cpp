// The default options of the sanitizers, so that a test behaves the same under ctest and when run by hand.

#define SANITIZER_HOOK extern "C" __attribute__((visibility("default"))) const char*

// A failed allocation returns null, as it does without a sanitizer: many tests rely on that.
#if defined(__SANITIZE_ADDRESS__)
SANITIZER_HOOK __asan_default_options();
SANITIZER_HOOK __asan_default_options() {
    return "allocator_may_return_null=1:detect_stack_use_after_return=1:strict_string_checks=1:"
           "check_initialization_order=1";
}

SANITIZER_HOOK __ubsan_default_options();
SANITIZER_HOOK __ubsan_default_options() {
    return "print_stacktrace=1";
}
#endif

#if defined(__SANITIZE_THREAD__)
// Do not report the handlers of fatal signals: they allocate to write a backtrace just before the process ends.
SANITIZER_HOOK __tsan_default_options();
SANITIZER_HOOK __tsan_default_options() {
    return "allocator_may_return_null=1:second_deadlock_stack=1:halt_on_error=1:report_signal_unsafe=0";
}
#endif
