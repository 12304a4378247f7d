#pragma once

#include "ut_Export.h"

#include <atomic>

namespace utility {

/// The size of the process's terminal, kept up to date while its window changes.
///
/// The instance lives for the process and is never deleted. Its first use belongs in the main thread, before others use
/// it; from then on any thread may ask, and may see columns and rows of two sizes for an instant. It never fails:
/// without a terminal the size is 80 columns by 25 rows.
///
///     int columns = utility::Terminal::instance()->width();
class VXUT_EXPORT Terminal {
public:
    /// 80 columns by 25 rows.
    Terminal();
    ~Terminal();

    /// The one terminal, made on first use.
    static Terminal* instance();

    /// Reads the size and follows `SIGWINCH` from now on.
    void init();
    /// Reads the size of the terminal on descriptor 1, else 2, else 0. Safe in a signal handler.
    void update();
    /// Columns.
    unsigned short width() const {
        return m_width.load(std::memory_order_relaxed);
    }
    /// Rows.
    unsigned short height() const {
        return m_height.load(std::memory_order_relaxed);
    }

    static Terminal* o_instance;

private:
    std::atomic<unsigned short> m_width;
    std::atomic<unsigned short> m_height;
};

/// Signal handler for `SIGWINCH`: reads the terminal's size again. Ignores other signals.
VXUT_EXPORT void windowResize(int signal);

} // namespace utility
