// Errors for scripts/memcheck to find before it trusts the silence of valgrind's memcheck about the tests.
//
//   memcheck_broken read | uninitialized | free | leak
//
// Built like the tests, with their replacement of the allocation functions.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "support/FailingAllocation.h"

namespace {

// The compiler must keep the errors.
char* volatile block = nullptr;

int readAfterEnd() {
    block = static_cast<char*>(std::malloc(7));
    const char value = block[7];
    std::free(block);
    return value == 0 ? 0 : 0;
}

int decideWithoutValue() {
    block = new char[7];
    const bool isSet = block[3] == 'x';
    if (isSet)
        std::puts("set");
    delete[] block;
    return 0;
}

int freeWithWrongFunction() {
    block = new char[7];
    std::free(block);
    return 0;
}

__attribute__((noinline)) int leak() {
    block = static_cast<char*>(std::calloc(7, 1));
    block = nullptr;
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const char* const error = argc == 2 ? argv[1] : "";
    if (std::strcmp(error, "read") == 0)
        return readAfterEnd();
    if (std::strcmp(error, "uninitialized") == 0)
        return decideWithoutValue();
    if (std::strcmp(error, "free") == 0)
        return freeWithWrongFunction();
    if (std::strcmp(error, "leak") == 0)
        return leak();
    if (std::strcmp(error, "none") == 0)
        return 0;
    std::fputs("usage: memcheck_broken read | uninitialized | free | leak | none\n", stderr);
    return 2;
}
