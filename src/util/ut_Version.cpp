#include "ut_Version.h"

namespace utility {

const char* version() {
    return VXUT_VERSION;
}

int versionNumber() {
    return VXUT_VERSION_NUMBER;
}

} // namespace utility
