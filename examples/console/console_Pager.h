#pragma once

#include "console_TerminalConsole.h"
#include "ut_PagingVirtualPutStream.h"

namespace console {

/// Shows one answer page by page. Each page has the size of the terminal at the time the page begins.
///
/// When the user quits, the rest of the answer is dropped without another prompt.
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
