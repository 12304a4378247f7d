#pragma once

#include "ut_Export.h"

#include <atomic>

namespace utility {

/// The size of the process's terminal, updated when its window is resized.
///
/// The single instance is never deleted. Call `instance` first in the main thread, before other threads use it; after
/// that any thread may read the size. During a resize, a reader may see the columns of one size and the rows of the
/// other. No operation fails: without a terminal the size is 80 columns by 25 rows.
///
///     int columns = utility::Terminal::instance()->width();
class VXUT_EXPORT Terminal {
public:
    /// Creates an object with a size of 80 columns by 25 rows. Programs use `instance` instead.
    Terminal();
    /// Does not uninstall the signal handler.
    ~Terminal();

    /// Returns the single instance, which the first call creates and initializes. The caller must not delete it.
    static Terminal* instance();

    /// Reads the size and installs `windowResize` as the handler of `SIGWINCH`.
    void init();
    /// Reads the size of the terminal on descriptor 1, 2 or 0, in this order. Async-signal-safe.
    void update();
    /// Returns the width in columns.
    unsigned short width() const {
        return m_width.load(std::memory_order_relaxed);
    }
    /// Returns the height in rows.
    unsigned short height() const {
        return m_height.load(std::memory_order_relaxed);
    }

    /// The single instance; null before the first call of `instance`.
    static Terminal* o_instance;

private:
    std::atomic<unsigned short> m_width;
    std::atomic<unsigned short> m_height;
};

/// Signal handler for `SIGWINCH`: updates the size of `Terminal::instance()`. Does nothing for other signals.
VXUT_EXPORT void windowResize(int signal);

} // namespace utility
