#include "ut_Terminal.h"

#include <csignal>

#include <sys/ioctl.h>
#include <unistd.h>

#include "internal/fw_ErrnoGuard.h"

namespace utility {

namespace {

constexpr unsigned short defaultWidth = 80;
constexpr unsigned short defaultHeight = 25;

} // namespace

Terminal* Terminal::o_instance = nullptr;

Terminal::Terminal() : m_width(defaultWidth), m_height(defaultHeight) {}

Terminal::~Terminal() = default;

Terminal* Terminal::instance() {
    if (o_instance == nullptr) {
        o_instance = new Terminal();
        o_instance->init();
    }
    return o_instance;
}

void Terminal::init() {
    update();
    std::signal(SIGWINCH, windowResize);
}

void Terminal::update() {
    winsize size = {};
    const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 || ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 ||
                       ioctl(STDIN_FILENO, TIOCGWINSZ, &size) == 0;
    const bool usable = known && size.ws_col != 0;
    m_height.store(usable ? size.ws_row : defaultHeight, std::memory_order_relaxed);
    m_width.store(usable ? size.ws_col : defaultWidth, std::memory_order_relaxed);
}

void windowResize(int signal) {
    if (signal != SIGWINCH)
        return;
    const framework::ErrnoGuard errnoGuard;
    Terminal::instance()->update();
}

} // namespace utility
