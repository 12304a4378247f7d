// Formats text into an array of the caller. Text that does not fit is a failure, which a stream can also ignore.

#include <cstdio>

#include "fw_Exception.h"
#include "ut_PutStream.h"

int main() {
    char text[24];
    utility::PutStream out(text, sizeof text);
    out.PutF("%s=%d", "ports", 4);
    out.PutC(',');
    out.PutF("state=%s", "up");
    std::printf("%s (%d bytes, space for %d)\n", text, out.ReadAvailable(), out.WriteRemaining());

    // The catcher deletes the failure. What fits is in the array.
    out.Rewind();
    try {
        out.PutF("description=%s", "controller A, left");
    } catch (framework::Exception* failure) {
        std::printf("code %u, text so far: %s\n", failure->code(), text);
        delete failure;
    }

    // With the no-throw flag, the text is truncated after a whole UTF-8 character.
    char small[8];
    utility::PutStream quiet(small, sizeof small);
    quiet.setNoThrow(true);
    quiet.PutF("M\u00fcnch\u00e9n");
    std::printf("%s\n", small);
    return 0;
}
