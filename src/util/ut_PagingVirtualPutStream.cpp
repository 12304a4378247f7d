#include "ut_PagingVirtualPutStream.h"

#include <algorithm>
#include <cstring>

#include "fw_gettext.h"
#include "internal/ut_Trace.h"

namespace utility {

namespace {

constexpr int smallestPage = 2;

} // namespace

PagingVirtualPutStream::PagingVirtualPutStream(framework::Console& console, int width, int height, int size,
                                               int flushThreshold)
    : VirtualPutStream(console.outputStream(), size, flushThreshold),
      m_width(std::max(width, smallestPage)),
      m_height(std::max(height, smallestPage)),
      m_console(&console),
      m_quit(false),
      m_column(0),
      m_line(0) {
    VXUT_TRACE(TOKEN_PAGING_VIRTUAL_PUT_STREAM, "width = %d, height = %d", width, height);
}

PagingVirtualPutStream::PagingVirtualPutStream(framework::Console& console, int width, int height, char* buffer,
                                               int size, int flushThreshold)
    : VirtualPutStream(console.outputStream(), buffer, size, flushThreshold),
      m_width(std::max(width, smallestPage)),
      m_height(std::max(height, smallestPage)),
      m_console(&console),
      m_quit(false),
      m_column(0),
      m_line(0) {
    VXUT_TRACE(TOKEN_PAGING_VIRTUAL_PUT_STREAM, "width = %d, height = %d", width, height);
}

PagingVirtualPutStream::~PagingVirtualPutStream() = default;

void PagingVirtualPutStream::setPageSize(int width, int height) {
    m_width = std::max(width, smallestPage);
    m_height = std::max(height, smallestPage);
    m_column %= m_width;
    m_line %= m_height - 1;
}

bool PagingVirtualPutStream::SendOutputStream(const char* data, unsigned int size) {
    m_quit = false;
    if (data == nullptr && size > 0)
        return false;
    while (size > 0 && isTargetUsable()) {
        const int space = WriteRemaining();
        if (m_quit)
            return false;
        const unsigned int count = std::min(size, static_cast<unsigned int>(boundedRoom(space)));
        if (count == 0)
            return false;
        std::memmove(pHead(), data, count);
        WriteAdvance(static_cast<int>(count));
        data += count;
        size -= count;
    }
    FlushOutputStream();
    return !m_quit && size == 0;
}

void PagingVirtualPutStream::FlushOutputStream() {
    if (Buffer::ReadAvailable() > 0 && isTargetUsable()) {
        while (flushPage(fillPage())) {
        }
    } else {
        VXUT_TRACE(TOKEN_PAGING_VIRTUAL_PUT_STREAM, "discarding virtual stream output\n");
    }
    Rewind();
}

// Adds the bytes of one screen line to `*taken`: up to the page width, a newline or a NUL.
void PagingVirtualPutStream::scanLine(int held, int* taken) {
    int column = m_column;
    while (column < m_width && *taken < held) {
        const char c = pTail()[(*taken)++];
        if (c == '\n' || c == 0) {
            m_column = 0;
            return;
        }
        ++column;
    }
    m_column = column % m_width;
}

// How many of the bytes in the buffer fill the rest of the page.
int PagingVirtualPutStream::fillPage() {
    const int held = boundedReadable(Buffer::ReadAvailable());
    int line = m_line;
    int taken = 0;
    while (line < m_height - 1 && taken < held) {
        scanLine(held, &taken);
        ++line;
    }
    // A partial line counts when it ends.
    if (m_column > 0)
        --line;
    m_line = std::max(line, 0) % (m_height - 1);
    return taken;
}

bool PagingVirtualPutStream::flushPage(int length) {
    VXUT_TRACE(TOKEN_PAGING_VIRTUAL_PUT_STREAM, "Attempting to flush %d bytes\n", length);
    length = boundedReadable(length);
    if (!m_target->SendOutputStream(pTail(), static_cast<unsigned int>(length))) {
        VXUT_TRACE(TOKEN_PAGING_VIRTUAL_PUT_STREAM, "couldn't send page to output stream ");
        return false;
    }
    VXUT_TRACE(TOKEN_PAGING_VIRTUAL_PUT_STREAM, "[Flushed %d bytes]\n", length);
    countTransferred(length);
    ReadAdvance(length);
    Consolidate();
    VXUT_TRACE(TOKEN_PAGING_VIRTUAL_PUT_STREAM, "now have %d at tail %d head %d\n", Buffer::ReadAvailable(),
               ReadPosition(), WritePosition());
    if (Buffer::ReadAvailable() < 1)
        return false;

    const char* prompt = vx_gettext("Press any key to continue (Q to quit)");
    m_console->outputStream().SendOutputStream(prompt, static_cast<unsigned int>(std::strlen(prompt)));
    const char key = m_console->readKey();
    m_console->removePrompt(m_width);
    if (key != 'q' && key != 'Q')
        return true;
    VXUT_TRACE(TOKEN_PAGING_VIRTUAL_PUT_STREAM, "user has requested Quit from paging");
    m_quit = true;
    return false;
}

} // namespace utility
