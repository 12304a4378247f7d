#pragma once

#include "fw_Console.h"
#include "ut_Export.h"
#include "ut_VirtualPutStream.h"

namespace utility {

/// Shows long output on a console one page at a time.
///
/// When more text is waiting than a page holds, the prompt "Press any key to continue (Q to quit)" is shown (translated
/// by `vx_gettext`) and one key is read; Q or q drops the rest. Pages are counted across sends. The console is kept,
/// not owned, and must outlive the stream. One thread at a time. Nothing is thrown by the paging itself; what the
/// console refuses is dropped.
///
///     utility::PagingVirtualPutStream out(console, 80, 25, 4096, 2048);
///     if (!out.SendOutputStream(text, length)) return;   // the user has quit
class VXUT_EXPORT PagingVirtualPutStream : public VirtualPutStream {
public:
    /// Pages of `width` columns and `height` lines, the prompt's line included; below 2 counts as 2. Own buffer of
    /// `size` bytes, flushed when `flushThreshold` bytes are held. Throws code 1238 when there is no storage.
    PagingVirtualPutStream(framework::Console& console, int width, int height, int size, int flushThreshold);
    /// The same over the caller's array of `size` bytes, the last of which is kept for the terminator.
    PagingVirtualPutStream(framework::Console& console, int width, int height, char* buffer, int size,
                           int flushThreshold);
    ~PagingVirtualPutStream() override;

    /// Shows `size` bytes, and everything held before, at once. False when the user has quit or not all was taken.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Shows what is held, page by page, and drops what is left of it after the user has quit.
    void FlushOutputStream() override;
    /// Writes `length` of the held bytes, at most all; when more are held, prompts and waits for a key. True when the
    /// next page is wanted.
    bool flushPage(int length);

    /// Whether the user has quit since the last `SendOutputStream` began.
    bool hasQuit() const {
        return m_quit;
    }
    /// The page size from the next page on; below 2 counts as 2.
    void setPageSize(int width, int height);

private:
    int fillPage();
    void scanLine(int held, int* taken);

    int m_width;
    int m_height;
    framework::Console* m_console;
    bool m_quit;
    int m_column;
    int m_line;
};

} // namespace utility
