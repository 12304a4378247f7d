// Reads a file of any size through a buffer of 256 bytes, after writing one in the same way.

#include <cstdio>
#include <cstring>

#include <unistd.h>

#include "ut_FileInputStream.h"
#include "ut_FileOutputStream.h"
#include "ut_VirtualGetStream.h"
#include "ut_VirtualPutStream.h"

namespace {

bool writeReport(const char* path) {
    utility::FileOutputStream file(path, false, 0600);
    // Flushes when 200 of the 256 bytes are in use.
    utility::VirtualPutStream out(file, 256, 200);
    for (int port = 0; port < 20000; ++port)
        out.PutF("port %d is %s\n", port, port % 1000 == 0 ? "offline" : "online");
    // The destructor does not flush.
    out.EndOutputStream();
    return !file.isOutputStreamInError();
}

} // namespace

int main() {
    const char* const path = "report.txt";
    if (!writeReport(path)) {
        std::printf("cannot write %s\n", path);
        return 1;
    }
    utility::FileInputStream file(path);
    // Keeps no byte that was read, and refills when fewer than 128 are left, so each line of up to 128 is in one piece.
    utility::VirtualGetStream in(file, 256, 0, 128, nullptr);
    if (!in.StartInputStream())
        return 1;
    int lines = 0;
    int offline = 0;
    while (const char* line = in.ReadLine()) {
        ++lines;
        if (std::strstr(line, "offline") != nullptr)
            ++offline;
    }
    std::printf("%d bytes, %d lines, %d ports offline\n", in.received(), lines, offline);
    const bool failed = file.isInputStreamInError();
    unlink(path);
    return failed ? 1 : 0;
}
