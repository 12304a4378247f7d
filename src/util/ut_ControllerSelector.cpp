#include "ut_ControllerSelector.h"

namespace utility {

char decodeControllerSelector(ControllerSelector selector) {
    switch (selector) {
    case CONTROLLER_B:
        return 'B';
    case CONTROLLER_A:
        return 'A';
    case CONTROLLER_ANY:
        return '*';
    case CONTROLLER_UNKNOWN:
        return '?';
    default:
        return '-';
    }
}

} // namespace utility
