// The editor's library never frees the names of functions that a program adds to it.

#define SANITIZER_HOOK extern "C" __attribute__((visibility("default"))) const char*

// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizer calls these functions.
SANITIZER_HOOK __lsan_default_suppressions();
SANITIZER_HOOK __lsan_default_suppressions() {
    return "leak:wcsdup\n";
}

SANITIZER_HOOK __lsan_default_options();
SANITIZER_HOOK __lsan_default_options() {
    return "print_suppressions=0";
}
// NOLINTEND(bugprone-reserved-identifier)
