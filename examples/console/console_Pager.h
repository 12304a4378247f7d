#pragma once

#include "console_TerminalConsole.h"
#include "ut_PagingVirtualPutStream.h"

namespace console {

/// Shows one answer a page at a time, in the size that the terminal has when the page begins.
///
/// After the user has quit, the rest of the answer is dropped without asking again.
///
///     console::Pager out(terminal, 80, 25, 65536, 16384);
///     out.PutF("%d ports\n", 4);
///     out.FlushOutputStream();
class Pager : public utility::PagingVirtualPutStream {
public:
    Pager(TerminalConsole& terminal, int width, int height, int size, int flushThreshold);
    ~Pager() override;

    bool SendOutputStream(const char* data, unsigned int size) override;
    void FlushOutputStream() override;
    /// Whether the user has quit.
    bool isOutputStreamAtEnd() override;

private:
    TerminalConsole& m_terminal;
};

} // namespace console
