#include "fw_gettext.h"

#include <libintl.h>

const char* vx_gettext(const char* message) {
    // The empty text would give a catalogue's head instead of a translation.
    if (!message || *message == '\0')
        return message;
    return gettext(message);
}
