#include "console_Pager.h"

namespace console {

Pager::Pager(TerminalConsole& terminal, int width, int height, int size, int flushThreshold)
    : utility::PagingVirtualPutStream(terminal, width, height, size, flushThreshold), m_terminal(terminal) {
    m_terminal.setPager(this);
}

Pager::~Pager() {
    m_terminal.setPager(nullptr);
}

bool Pager::SendOutputStream(const char* data, unsigned int size) {
    return hasQuit() || PagingVirtualPutStream::SendOutputStream(data, size) || hasQuit();
}

void Pager::FlushOutputStream() {
    if (hasQuit()) {
        Rewind();
    } else {
        PagingVirtualPutStream::FlushOutputStream();
    }
}

bool Pager::isOutputStreamAtEnd() {
    return hasQuit();
}

} // namespace console
