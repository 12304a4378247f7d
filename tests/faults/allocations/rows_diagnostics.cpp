#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>

#include <sys/stat.h>

#include "TemporaryDirectory.h"
#include "Trial.h"
#include "fw_GenericServiceManager.h"
#include "fw_ThreadInfo.h"
#include "ut_BufferStream.h"
#include "ut_Debug.h"
#include "ut_FileOutputStream.h"
#include "ut_Locker.h"
#include "ut_StringArray.h"
#include "ut_Switches.h"
#include "ut_Terminal.h"
#include "ut_Try.h"
#include "ut_Version.h"
#include "ut_Waiter.h"

// Debug switches, dumps, contexts, locks and the terminal.

namespace faults {

namespace {

using utility::BufferStream;
using utility::Debug;

// A folder for context files, which the library uses for the life of the process.
struct ContextFolder {
    test::TemporaryDirectory folder;

    ContextFolder() {
        setenv("VX_MEM", folder.path().c_str(), 1);
        mkdir(folder.path("Context").c_str(), 0700);
    }
};

const ContextFolder& contextFolder() {
    static const ContextFolder made;
    return made;
}

std::vector<Row> switchRows() {
    return {
        {"Debug: setDebugOn with a new name", "same",
         [](Trial& trial) {
             static unsigned int number = 0;
             const std::string name = "faults-d" + std::to_string(++number);
             trial.run([&] { Debug::setDebugOn(name.c_str()); });
             Debug::setDebugValue(name.c_str(), false);
             FAULTS_EXPECT(!Debug::isDebugOn(name.c_str()));
         },
         "new names are kept for good"},
        {"Debug: switches, what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             utility::StringArray names(1);
             names.Append("Entity");
             BufferStream out(4096);
             trial.run([&] {
                 Debug::setDebugOn(8000u);
                 bool whole = Debug::isDebugOn(8000u) && IsDebugOn(8000u) != 0;
                 Debug::debugState(&out);
                 Debug::setDebugOff(8000u);
                 Debug::setDebugOn("Entity");
                 whole = whole && Debug::isDebugOn("Entity");
                 // Callers see it switch on.
                 Debug::setDebugOff("Entity");
                 Debug::setDebugOn(&names);
                 Debug::setDebugOff(&names);
                 Debug::setDebugValue("Entity", true);
                 Debug::setDebugValue("Entity", false);
                 IsCapiTraceOn();
                 IsCapiPrintOn();
                 return whole && !Debug::isDebugOn("Entity");
             });
         }},
    };
}

std::vector<Row> dumpRows() {
    return {
        {"Debug: hexDump", "same",
         [](Trial& trial) {
             const std::string data(4000, 'x');
             trial.run([&] { Debug::hexDump(data.c_str(), 4000); });
         }},
        {"Debug: reverseHexDump", allocatesNothing,
         [](Trial& trial) {
             const std::string data(4000, 'x');
             trial.run([&] { Debug::reverseHexDump(data.c_str(), 4000); });
         }},
        {"Debug: hexDumpFormatted", "1238 bad_alloc",
         [](Trial& trial) {
             const std::string data(100, 'x');
             trial.run([&] { Debug::hexDumpFormatted(data.c_str(), 100, 4, 16); });
         }},
        {"Debug: readableString without space", "same bad_alloc",
         [](Trial& trial) {
             BufferStream out(2);
             trial.run([&] { Debug::readableString("text", &out, 4); });
         }},
        {"Debug: SymbolName, SymbolPath", allocatesNothing,
         [](Trial& trial) {
             void* address = reinterpret_cast<void*>(&utility::windowResize);
             char name[256];
             char path[256];
             trial.run([&] {
                 Debug::SymbolName(address, name, sizeof name);
                 Debug::SymbolPath(address, path, sizeof path);
             });
             FAULTS_EXPECT(std::strstr(name, "windowResize") != nullptr &&
                           std::strstr(path, "windowResize") != nullptr);
         }},
        {"Debug: texts, what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             BufferStream out(64);
             trial.run([&] {
                 Debug::readableString("text", &out, 4);
                 return Debug::hexChar(1) == '1' && Debug::hexFromChar('1') == 1 &&
                        Debug::signalName(SIGTERM) != nullptr;
             });
         }},
    };
}

std::vector<Row> contextRows() {
    contextFolder();
    return {
        {"Debug: BackTrace", allocatesNothing,
         [](Trial& trial) {
             BufferStream out(8192);
             out.setNoThrow(true);
             trial.run([&] {
                 Debug::BackTrace(&out, 8, 0, true);
                 return out.ReadAvailable() > 0;
             });
         }},
        {"Debug: ErrorContext", allocatesNothing,
         [](Trial& trial) {
             trial.run([] { Debug::ErrorContext(); });
         }},
        {"Debug: SignalContext", allocatesNothing,
         [](Trial& trial) {
             trial.run([] { Debug::SignalContext(SIGUSR1); });
         }},
        {"Debug: ThreadErrorContext", allocatesNothing,
         [](Trial& trial) {
             utility::FileOutputStream file((contextFolder().folder.path("file")).c_str(), false, 0600);
             file.StartOutputStream();
             framework::ThreadInfo* thread = framework::ThreadInfo::MyThreadInfo();
             trial.run([&] { Debug::ThreadErrorContext(thread, file); });
             file.EndOutputStream();
         }},
        {"Debug: SignalThreads, SignalNull, SignalAllThreads", allocatesNothing,
         [](Trial& trial) {
             framework::ThreadInfo::MyThreadInfo();
             std::signal(SIGUSR1, SIG_IGN);
             std::signal(SIGUSR2, SIG_IGN);
             for (int number = SIGRTMIN; number <= SIGRTMAX; ++number)
                 std::signal(number, SIG_IGN);
             trial.run([] {
                 Debug::SignalNull(SIGTERM);
                 Debug::SignalThreads(SIGTERM);
                 framework::GenericServiceManager::SignalAllThreads(SIGUSR2);
                 Debug::MaybeEnableCoreDump();
             });
         }},
    };
}

std::vector<Row> lockRows() {
    using utility::Terminal;
    return {
        {"Locker, Waiter: all", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 const utility::Locker locker;
                 locker.lock();
                 locker.unlock();
                 const bool whole = locker.trylock();
                 locker.unlock();
                 utility::Waiter waiter;
                 waiter.lock();
                 waiter.waitMicroseconds(1);
                 waiter.wait(1);
                 waiter.unlock();
                 waiter.waitMicrosecondsNoLock(1);
                 waiter.waitNoLock(1);
                 waiter.signal();
                 waiter.broadcast();
                 return whole;
             });
         }},
        {"Terminal: instance", "bad_alloc",
         [](Trial& trial) {
             delete Terminal::o_instance;
             Terminal::o_instance = nullptr;
             trial.run([] { Terminal::instance(); });
             FAULTS_EXPECT((Terminal::o_instance == nullptr) == trial.failed());
             FAULTS_EXPECT(Terminal::instance()->width() > 0);
             delete Terminal::o_instance;
             Terminal::o_instance = nullptr;
         }},
        {"Terminal: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             Terminal::instance();
             trial.run([] {
                 Terminal terminal;
                 terminal.init();
                 terminal.update();
                 utility::windowResize(SIGWINCH);
                 return terminal.width() > 0 && terminal.height() > 0;
             });
             delete Terminal::o_instance;
             Terminal::o_instance = nullptr;
         }},
    };
}

} // namespace

std::vector<Row> failureRows() {
    using utility::Failure;
    return {
        {"Failure: current", "same",
         [](Trial& trial) {
             trial.run([] {
                 try {
                     throw 4;
                 } catch (...) {
                     const Failure failure = Failure::current(true);
                     return failure.kind() == Failure::KIND_OTHER && failure.name()[0] == 'i';
                 }
             });
         }},
        {"Failure, failureName, installTerminateHandler, version: what allocates nothing", allocatesNothing,
         [](Trial& trial) {
             trial.run([] {
                 const std::terminate_handler former = std::get_terminate();
                 utility::installTerminateHandler();
                 std::set_terminate(former);
                 return Failure().kind() == Failure::KIND_NONE && utility::failureName(1229) != nullptr &&
                        utility::version()[0] != 0 && utility::versionNumber() == VXUT_VERSION_NUMBER;
             });
         }},
    };
}

std::vector<Row> diagnosticRows() {
    std::vector<Row> rows = switchRows();
    add(rows, dumpRows());
    add(rows, contextRows());
    add(rows, lockRows());
    add(rows, failureRows());
    return rows;
}

} // namespace faults
