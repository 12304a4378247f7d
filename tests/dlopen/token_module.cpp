// The static constructor of this module makes a token while its loading thread holds the lock of the dynamic linker.

#include <cstdlib>

#include <unistd.h>

#include "fw_StableStringRepository.h"

namespace {

struct AtLoad {
    AtLoad() {
        // Tells the test that loads this that the constructor runs.
        const char* const descriptor = std::getenv("VXTEST_MODULE_PIPE");
        if (descriptor != nullptr && write(std::atoi(descriptor), "!", 1) != 1)
            std::abort();
        strings::GS.toToken("a token made while a module is loaded");
    }
};

const AtLoad atLoad;

} // namespace
