#include "fw_gettext.h"

#include <libintl.h>

const char* vx_gettext(const char* message) {
    // `gettext("")` returns the catalog's header entry.
    if (message == nullptr || *message == '\0')
        return message;
    return gettext(message);
}
