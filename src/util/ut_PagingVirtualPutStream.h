#pragma once

#include "ut_Export.h"

#include "fw_Console.h"
#include "ut_VirtualPutStream.h"

namespace utility {

/// Shows long output on a console one page at a time.
///
/// If more text is left after a page, the prompt "Press any key to continue (Q to quit)" is shown (translated by
/// `vx_gettext`) and one key is read; Q or q discards the rest. A page can consist of lines from several sends. The
/// console is not owned and must outlive the stream. One thread at a time. Paging itself throws nothing; text that the
/// console refuses is discarded.
///
///     utility::PagingVirtualPutStream out(console, 80, 25, 4096, 2048);
///     if (!out.SendOutputStream(text, length)) return;   // the user has quit
class VXUT_EXPORT PagingVirtualPutStream : public VirtualPutStream {
public:
    /// - `console`: shows the pages and reads the keys.
    /// - `width`: the width of a page in columns (bytes); a value below 2 counts as 2.
    /// - `height`: the height of a page in lines, including the line of the prompt; a value below 2 counts as 2.
    /// - `size`: the size in bytes of the buffer, which the stream allocates. Throws code 1238 if the allocation fails.
    /// - `flushThreshold`: writes flush the buffer when it holds this many bytes or more.
    PagingVirtualPutStream(framework::Console& console, int width, int height, int size, int flushThreshold);
    /// Uses the caller's array `buffer` of `size` bytes; the last byte is reserved for the terminating NUL. The other
    /// parameters are those of the first constructor.
    PagingVirtualPutStream(framework::Console& console, int width, int height, char* buffer, int size,
                           int flushThreshold);
    /// Does not flush: what is left in the buffer is discarded.
    ~PagingVirtualPutStream() override;

    /// Shows the content of the buffer and `size` bytes of `data` at once. Returns false if the user has quit or not
    /// all bytes were accepted.
    bool SendOutputStream(const char* data, unsigned int size) override;
    /// Shows the content of the buffer page by page; discards the rest when the user quits.
    void FlushOutputStream() override;
    /// Writes the first `length` bytes of the buffer, or all if there are fewer. If bytes are left, prompts and waits
    /// for a key. Returns true if the user wants the next page; false if no bytes are left, the console refuses the
    /// page, or the user quits.
    bool flushPage(int length);

    /// Returns whether the user has quit since the last `SendOutputStream` started.
    bool hasQuit() const {
        return m_quit;
    }
    /// Sets the page size, in columns and lines, from the next page on; values below 2 count as 2.
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
