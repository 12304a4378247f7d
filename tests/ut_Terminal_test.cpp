#include "ut_Terminal.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>

#include <fcntl.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "ChildProcess.h"
#include "LogCapture.h"

namespace {

using utility::Terminal;

static_assert(!std::is_polymorphic<Terminal>::value, "it has no virtual operation");
static_assert(sizeof(Terminal) == 4, "it is two numbers of 16 bits");
static_assert(std::is_same<decltype(std::declval<Terminal>().width()), unsigned short>::value, "columns have 16 bits");
static_assert(std::is_same<decltype(std::declval<Terminal>().height()), unsigned short>::value, "rows have 16 bits");

std::string sizeOf(const Terminal& terminal) {
    return std::to_string(terminal.width()) + "x" + std::to_string(terminal.height());
}

// A pseudo-terminal of a given size.
class PseudoTerminal {
public:
    PseudoTerminal(unsigned short columns, unsigned short rows) {
        const winsize size = {rows, columns, 0, 0};
        if (openpty(&m_master, &m_slave, nullptr, nullptr, &size) != 0)
            throw std::runtime_error("cannot open a pseudo-terminal");
    }
    ~PseudoTerminal() {
        close(m_master);
        close(m_slave);
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    int slave() const {
        return m_slave;
    }
    void resize(unsigned short columns, unsigned short rows) const {
        const winsize size = {rows, columns, 0, 0};
        if (ioctl(m_master, TIOCSWINSZ, &size) != 0)
            throw std::runtime_error("cannot resize a pseudo-terminal");
    }
    // Makes it the controlling terminal, which sends this process its signals; ignores SIGHUP when it closes.
    void control() const {
        std::signal(SIGHUP, SIG_IGN);
        if (setsid() < 0 || ioctl(m_slave, TIOCSCTTY, 0) != 0)
            throw std::runtime_error("cannot get a controlling terminal");
    }

private:
    int m_master = -1;
    int m_slave = -1;
};

// Redirects descriptor `number` (0, 1 or 2) to `fd`, or to /dev/null if `fd` is -1.
void put(int number, int fd) {
    const int null = open("/dev/null", O_RDWR);
    if (dup2(fd >= 0 ? fd : null, number) != number)
        throw std::runtime_error("cannot redirect a descriptor");
    close(null);
}

void put012(int in, int out, int error) {
    put(0, in);
    put(1, out);
    put(2, error);
}

// The result of `body`, run in a child process so that it can change its descriptors and terminal.
template<class Body>
std::string inChild(Body body) {
    const test::ChildResult child = test::runInChild([&] {
        const int out = dup(1);
        const std::string answer = body();
        dprintf(out, "%s", answer.c_str());
    });
    if (child.exited && child.status == 0)
        return child.out;
    return "ended by signal " + std::to_string(child.signal) + ", status " + std::to_string(child.status) + ": " +
           child.err;
}

std::string instanceSizeOn(int in, int out, int error) {
    put012(in, out, error);
    return sizeOf(*Terminal::instance());
}

TEST(Terminal, UsageExample) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal terminal(132, 50);
                  put(1, terminal.slave());
                  int columns = utility::Terminal::instance()->width();
                  return std::to_string(columns);
              }),
              "132");
}

TEST(Terminal, IsEightyByTwentyFiveUntilItIsUpdated) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal terminal(132, 50);
                  put012(terminal.slave(), terminal.slave(), terminal.slave());
                  Terminal own;
                  const std::string before = sizeOf(own);
                  own.update();
                  return before + " " + sizeOf(own);
              }),
              "80x25 132x50");
}

TEST(Terminal, InstanceIsCreatedOnFirstUseAndKept) {
    EXPECT_EQ(inChild([] {
                  const bool none = Terminal::o_instance == nullptr;
                  Terminal* const first = Terminal::instance();
                  const bool kept = first != nullptr && Terminal::o_instance == first && Terminal::instance() == first;
                  return std::string(none && kept ? "kept" : "lost");
              }),
              "kept");
}

TEST(Terminal, InstanceReadsTheSizeOnceAndNotAtEachUse) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal terminal(132, 50);
                  put(1, terminal.slave());
                  const std::string before = sizeOf(*Terminal::instance());
                  terminal.resize(100, 40);
                  return before + " " + sizeOf(*Terminal::instance());
              }),
              "132x50 132x50");
}

TEST(Terminal, QueriesDescriptorOneThenTwoThenZero) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal in(10, 11);
                  const PseudoTerminal out(20, 21);
                  const PseudoTerminal error(30, 31);
                  return instanceSizeOn(in.slave(), out.slave(), error.slave());
              }),
              "20x21");
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal in(10, 11);
                  const PseudoTerminal error(30, 31);
                  return instanceSizeOn(in.slave(), -1, error.slave());
              }),
              "30x31");
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal in(10, 11);
                  return instanceSizeOn(in.slave(), -1, -1);
              }),
              "10x11");
}

TEST(Terminal, IsEightyByTwentyFiveWithoutATerminal) {
    EXPECT_EQ(inChild([] { return instanceSizeOn(-1, -1, -1); }), "80x25");
    EXPECT_EQ(inChild([] {
                  close(0);
                  close(1);
                  close(2);
                  return sizeOf(*Terminal::instance());
              }),
              "80x25");
}

TEST(Terminal, TerminalWithZeroColumnsIsEightyByTwentyFive) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal in(10, 11);
                  const PseudoTerminal out(0, 50);
                  return instanceSizeOn(in.slave(), out.slave(), in.slave());
              }),
              "80x25")
        << "the next descriptor is asked only when asking fails";
}

TEST(Terminal, TerminalWithZeroRowsHasHeightZero) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal out(132, 0);
                  return instanceSizeOn(-1, out.slave(), -1);
              }),
              "132x0");
}

TEST(Terminal, SmallestAndLargestSizesAreReported) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal out(1, 1);
                  return instanceSizeOn(-1, out.slave(), -1);
              }),
              "1x1");
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal out(65535, 65535);
                  return instanceSizeOn(-1, out.slave(), -1);
              }),
              "65535x65535");
}

TEST(Terminal, UpdateReadsTheSizeAgainAndFallsBackWithoutATerminal) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal out(132, 50);
                  std::string sizes = instanceSizeOn(-1, out.slave(), -1);
                  out.resize(100, 40);
                  Terminal::instance()->update();
                  sizes += " " + sizeOf(*Terminal::instance());
                  put(1, -1);
                  Terminal::instance()->update();
                  return sizes + " " + sizeOf(*Terminal::instance());
              }),
              "132x50 100x40 80x25");
}

TEST(Terminal, InitInstallsTheHandler) {
    EXPECT_EQ(inChild([] {
                  struct sigaction before;
                  sigaction(SIGWINCH, nullptr, &before);
                  Terminal::instance();
                  struct sigaction after;
                  sigaction(SIGWINCH, nullptr, &after);
                  const bool installed = before.sa_handler == SIG_DFL && after.sa_handler == &utility::windowResize;
                  return std::string(installed ? "installed" : "not installed");
              }),
              "installed");
}

TEST(Terminal, InitOfASeparateObjectReadsTheSizeAndInstallsTheHandler) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal out(132, 50);
                  put012(-1, out.slave(), -1);
                  Terminal own;
                  own.init();
                  struct sigaction after;
                  sigaction(SIGWINCH, nullptr, &after);
                  const bool installed = after.sa_handler == &utility::windowResize;
                  return sizeOf(own) + (installed ? " installed" : " not installed");
              }),
              "132x50 installed");
}

TEST(Terminal, UpdateDoesNotInstallTheHandler) {
    EXPECT_EQ(inChild([] {
                  Terminal own;
                  own.update();
                  struct sigaction after;
                  sigaction(SIGWINCH, nullptr, &after);
                  return std::string(after.sa_handler == SIG_DFL ? "default" : "installed");
              }),
              "default");
}

TEST(Terminal, ResizingTheWindowChangesTheSize) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal terminal(132, 50);
                  terminal.control();
                  std::string sizes = instanceSizeOn(terminal.slave(), terminal.slave(), terminal.slave());
                  for (const unsigned short columns : std::initializer_list<unsigned short>{100, 90, 60}) {
                      terminal.resize(columns, 40);
                      const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
                      while (Terminal::instance()->width() != columns && std::chrono::steady_clock::now() < end)
                          std::this_thread::sleep_for(std::chrono::milliseconds(1));
                      sizes += " " + sizeOf(*Terminal::instance());
                  }
                  return sizes;
              }),
              "132x50 100x40 90x40 60x40")
        << "every time, not only the first";
}

TEST(Terminal, RaisedSignalAlsoUpdatesTheSize) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal terminal(132, 50);
                  std::string sizes = instanceSizeOn(-1, terminal.slave(), -1);
                  terminal.resize(100, 40);
                  raise(SIGWINCH);
                  return sizes + " " + sizeOf(*Terminal::instance());
              }),
              "132x50 100x40");
}

TEST(Terminal, WindowResizeIgnoresOtherSignals) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal terminal(132, 50);
                  std::string sizes = instanceSizeOn(-1, terminal.slave(), -1);
                  terminal.resize(100, 40);
                  for (const int signal : {0, SIGINT, SIGALRM, SIGCONT, -1, 1000})
                      utility::windowResize(signal);
                  sizes += " " + sizeOf(*Terminal::instance());
                  utility::windowResize(SIGWINCH);
                  return sizes + " " + sizeOf(*Terminal::instance());
              }),
              "132x50 132x50 100x40");
}

TEST(Terminal, WindowResizePreservesErrno) {
    EXPECT_EQ(inChild([] {
                  std::string size = instanceSizeOn(-1, -1, -1);
                  errno = ERANGE;
                  utility::windowResize(SIGWINCH);
                  return size + (errno == ERANGE ? " kept" : " changed");
              }),
              "80x25 kept");
}

TEST(Terminal, WindowResizeCreatesTheInstanceIfThereIsNone) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal terminal(132, 50);
                  put(1, terminal.slave());
                  utility::windowResize(SIGINT);
                  const bool none = Terminal::o_instance == nullptr;
                  utility::windowResize(SIGWINCH);
                  if (!none || Terminal::o_instance == nullptr)
                      return std::string("not made by the right signal");
                  return sizeOf(*Terminal::o_instance);
              }),
              "132x50");
}

TEST(Terminal, DestructionChangesNothing) {
    EXPECT_EQ(inChild([] {
                  const PseudoTerminal terminal(132, 50);
                  std::string sizes = instanceSizeOn(-1, terminal.slave(), -1);
                  { const Terminal other; }
                  return sizes + " " + sizeOf(*Terminal::instance());
              }),
              "132x50 132x50");
}

TEST(Terminal, LogsNothing) {
    EXPECT_EQ(inChild([] {
                  test::LogCapture log;
                  put012(-1, -1, -1);
                  Terminal::instance()->update();
                  utility::windowResize(SIGWINCH);
                  return std::to_string(log.count());
              }),
              "0");
}

} // namespace
