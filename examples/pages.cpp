// Shows a long report page by page, as on a terminal of 80 columns and 8 rows. The keys come from standard input: any
// key shows the next page, Q ends the report.

#include <unistd.h>

#include "ut_PagingVirtualPutStream.h"
#include "ut_TerminalConsole.h"

int main() {
    // Single keys without Enter; the terminal's mode is restored however the program ends.
    utility::TerminalConsole console(STDIN_FILENO, STDOUT_FILENO, true);
    utility::PagingVirtualPutStream out(console, 80, 8, 4096, 2048);
    for (int port = 0; port < 100 && !out.hasQuit(); ++port)
        out.PutF("port %3d  %s\n", port, port % 3 == 0 ? "offline" : "online");
    out.FlushOutputStream();
    return console.outputError() == 0 ? 0 : 1;
}
