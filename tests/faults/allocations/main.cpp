// Runs every operation of the libraries with its 1st, 2nd, ... allocation failing, and with all from there on.
//
//     faults_allocations [LIST]
//
// LIST names the exported symbols, as the files in tests/symbols do: every operation in it has to run in some row, or
// to be listed in `withoutRow`. Prints each finding and, last, the figures. Exits with 1 after a finding.

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "EnteredOperations.h"
#include "FailingAllocation.h"
#include "ProtectedMachine.h"
#include "Trial.h"
#include "WithoutRow.h"
#include "fw_Container.h"
#include "fw_Logger.h"
#include "fw_Memory.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace faults {

namespace {

// Which allocations fail, and which memory object the process uses at the time.
enum Door {
    HEAP,         // `malloc` and its family and `operator new`; no memory object
    HEAP_BENEATH, // the same, with a memory object that takes its pieces there
    MEMORY_OBJECT // the memory object alone
};

constexpr const char* doorNames[] = {"heap", "heap beneath a memory object", "memory object"};

// More allocations than any row makes.
constexpr unsigned long endless = 5000;

// A memory object that fails on request, and notices what is released to it but was not taken from it.
class ArmedMemory : public framework::Memory {
public:
    void* allocate(unsigned long size) override {
        ++m_count;
        if (m_armed && (m_count == m_failAt || (m_failAll && m_count > m_failAt))) {
            ++m_failures;
            return nullptr;
        }
        for (void*& slot : m_pieces) {
            if (slot == nullptr) {
                slot = std::malloc(size);
                return slot;
            }
        }
        std::abort();
    }
    void release(const void* piece) override {
        if (piece == nullptr)
            return;
        for (void*& slot : m_pieces) {
            if (slot == piece) {
                std::free(slot);
                slot = nullptr;
                return;
            }
        }
        ++m_foreign;
    }

    void arm(unsigned long nth, bool all) {
        m_failAt = m_count + nth;
        m_failAll = all;
        m_failures = 0;
        m_armed = nth != 0;
    }
    void disarm() {
        m_armed = false;
    }
    unsigned long count() const {
        return m_count;
    }
    unsigned long failures() const {
        return m_failures;
    }
    unsigned long takeForeign() {
        const unsigned long foreign = m_foreign;
        m_foreign = 0;
        return foreign;
    }
    unsigned long outstanding() const {
        unsigned long pieces = 0;
        for (const void* slot : m_pieces)
            pieces += slot != nullptr ? 1 : 0;
        return pieces;
    }

private:
    void* m_pieces[256] = {};
    unsigned long m_count = 0;
    unsigned long m_failAt = 0;
    unsigned long m_failures = 0;
    unsigned long m_foreign = 0;
    bool m_failAll = false;
    bool m_armed = false;
};

// While it exists and is enabled, the sanitizer does not report allocated blocks as leaks.
class UnwatchedLeaks {
public:
    explicit UnwatchedLeaks([[maybe_unused]] bool wanted) {
#if defined(__SANITIZE_ADDRESS__)
        if (m_wanted = wanted; m_wanted)
            __lsan_disable();
#endif
    }
    UnwatchedLeaks(const UnwatchedLeaks&) = delete;
    UnwatchedLeaks& operator=(const UnwatchedLeaks&) = delete;
#if defined(__SANITIZE_ADDRESS__)
    ~UnwatchedLeaks() {
        if (m_wanted)
            __lsan_enable();
    }
#endif

private:
    [[maybe_unused]] bool m_wanted = false;
};

// Where findings go: the operations that print to standard output print to nowhere.
std::FILE* output = nullptr;

void openOutput() {
    output = fdopen(dup(STDOUT_FILENO), "w");
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (output == nullptr || nowhere < 0 || dup2(nowhere, STDOUT_FILENO) < 0)
        std::exit(2);
    close(nowhere);
}

void dropLine(void*, framework::Logger::LogType, const char*, int, const char*) {}

} // namespace

// Runs rows, counts, and reports what is wrong.
class Runner {
public:
    explicit Runner(EnteredOperations* entered) : m_entered(entered) {}

    void runRow(const Row& row);
    void checkOperations();
    int finish();

    // What the trial calls.
    void begin();
    void end();
    [[gnu::format(printf, 2, 3)]] void report(const char* format, ...);

private:
    unsigned long runAll(Door door, bool all);
    void runOnce(Door door, unsigned long nth, bool all);
    void judge();
    void checkStated();
    bool isStated(const char* outcome) const;

    EnteredOperations* m_entered;
    const Row* m_row = nullptr;
    Trial m_trial;
    ArmedMemory m_memory;
    Door m_door = HEAP;
    unsigned long m_nth = 0;
    bool m_all = false;
    bool m_watching = false;
    unsigned long m_fired = 0;
    unsigned long m_asked = 0;
    std::string m_seen;

    unsigned long m_rows = 0;
    unsigned long m_allocatingRows = 0;
    unsigned long m_trials = 0;
    unsigned long m_failures = 0;
    unsigned long m_findings = 0;
};

namespace {

Runner* runner = nullptr;
test::FailingAllocation* failing = nullptr;
alignas(test::FailingAllocation) char failingStorage[sizeof(test::FailingAllocation)];

} // namespace

void Trial::begin() {
    m_ran = true;
    runner->begin();
}

void Trial::end() {
    runner->end();
}

void Trial::setOutcome(const char* text) {
    std::snprintf(m_outcome.text, sizeof m_outcome.text, "%s", text);
    if (!m_isNormalKnown) {
        m_normal = m_outcome;
        m_isNormalKnown = true;
    }
}

void Trial::setOutcome(long long number) {
    char text[32];
    std::snprintf(text, sizeof text, "%lld", number);
    setOutcome(text);
}

bool Trial::failed() const {
    return std::strcmp(m_outcome.text, m_normal.text) != 0;
}

void Trial::expect(bool holds, const char* condition, int line) {
    if (!holds)
        runner->report("line %d: does not hold afterwards: %s", line, condition);
}

void Runner::begin() {
    m_asked = m_door == MEMORY_OBJECT ? m_memory.count() : test::allocationCount();
    if (m_watching)
        m_entered->watch();
    if (m_nth == 0)
        return;
    if (m_door == MEMORY_OBJECT)
        m_memory.arm(m_nth, m_all);
    else if (m_all)
        failing = new (failingStorage) test::FailingAllocation(m_nth, test::failAll);
    else
        failing = new (failingStorage) test::FailingAllocation(m_nth);
}

void Runner::end() {
    m_memory.disarm();
    if (failing != nullptr) {
        failing->stop();
        m_fired = failing->failures();
        failing->~FailingAllocation();
        failing = nullptr;
    } else {
        m_fired = m_nth != 0 ? m_memory.failures() : 0;
    }
    m_asked = (m_door == MEMORY_OBJECT ? m_memory.count() : test::allocationCount()) - m_asked;
    if (m_watching)
        m_entered->pause();
}

void Runner::report(const char* format, ...) {
    ++m_findings;
    std::fprintf(output, "%s", m_row != nullptr ? m_row->name.c_str() : "table");
    if (m_nth != 0)
        std::fprintf(output, " [%s, allocation %lu%s]", doorNames[m_door], m_nth, m_all ? " and all later" : "");
    std::fprintf(output, ": ");
    va_list arguments;
    va_start(arguments, format);
    std::vfprintf(output, format, arguments);
    va_end(arguments);
    std::fprintf(output, "\n");
    std::fflush(output);
}

bool Runner::isStated(const char* outcome) const {
    if (m_row->onFailure == allocatesNothing)
        return false;
    const std::string stated = std::string(" ") + m_row->onFailure + " ";
    return stated.find(std::string(" ") + outcome + " ") != std::string::npos;
}

void Runner::runOnce(Door door, unsigned long nth, bool all) {
    m_door = door;
    m_nth = nth;
    m_all = all;
    m_trial.m_ran = false;
    framework::Container::m_pMemory = door == HEAP ? nullptr : &m_memory;
    const long services = framework::Memory::staticOutstanding();
    const unsigned long taken = m_memory.outstanding();
    const long pieces = test::outstandingAllocations();
    {
        const UnwatchedLeaks unwatched(m_row->keeps != nullptr);
        m_row->body(m_trial);
    }
    const long left = test::outstandingAllocations() - pieces;
    framework::Container::m_pMemory = nullptr;
    ++m_trials;
    if (!m_trial.m_ran)
        report("ran nothing");
    if (const unsigned long foreign = m_memory.takeForeign(); foreign != 0)
        report("%lu pieces released to the memory object that are not its own", foreign);
    if (m_row->keeps != nullptr)
        return;
    if (left != 0)
        report("%ld pieces left behind", left);
    if (m_memory.outstanding() != taken)
        report("%lu pieces of the memory object left behind", m_memory.outstanding() - taken);
    if (m_row->miscounts == nullptr && framework::Memory::staticOutstanding() != services)
        report("%ld pieces of the static services left behind", framework::Memory::staticOutstanding() - services);
}

void Runner::judge() {
    const char* outcome = m_trial.failed() ? m_trial.m_outcome.text : "same";
    if (!isStated(outcome))
        report("outcome %s, stated: %s", m_trial.m_outcome.text, m_row->onFailure);
    const std::string word = std::string(" ") + outcome + " ";
    if (m_seen.find(word) == std::string::npos)
        m_seen += word;
}

unsigned long Runner::runAll(Door door, bool all) {
    for (unsigned long nth = 1; nth < endless; ++nth) {
        runOnce(door, nth, all);
        if (m_fired == 0)
            return nth - 1;
        ++m_failures;
        judge();
    }
    report("more than %lu allocations", endless);
    return endless;
}

// A row that states what never happens says less than it seems to.
void Runner::checkStated() {
    std::string stated = m_row->onFailure;
    stated += ' ';
    for (std::size_t from = 0, to = stated.find(' '); to != std::string::npos; to = stated.find(' ', from = to + 1)) {
        const std::string word = stated.substr(from, to - from);
        if (m_seen.find(" " + word + " ") == std::string::npos)
            report("stated outcome %s never occurs", word.c_str());
    }
}

void Runner::runRow(const Row& row) {
    m_row = &row;
    m_trial = Trial();
    m_seen.clear();
    m_nth = 0;
    ++m_rows;

    // Fills the caches of the platform, and those that a process fills once.
    framework::Container::m_pMemory = nullptr;
    m_door = HEAP;
    {
        const UnwatchedLeaks unwatched(row.keeps != nullptr);
        row.body(m_trial);
    }
    m_watching = m_entered != nullptr;
    runOnce(HEAP, 0, false);
    m_watching = false;
    unsigned long asked = m_asked;
    runOnce(MEMORY_OBJECT, 0, false);
    asked += m_asked;

    if (row.onFailure == allocatesNothing) {
        if (asked != 0)
            report("allocates, %lu times, though it is stated not to", asked);
        if (m_trial.m_threw || std::strcmp(m_trial.m_outcome.text, "false") == 0)
            report("outcome %s of an operation that allocates nothing", m_trial.m_outcome.text);
        return;
    }
    ++m_allocatingRows;
    unsigned long failed = 0;
    for (const Door door : {HEAP, HEAP_BENEATH, MEMORY_OBJECT}) {
        failed += runAll(door, false);
        failed += runAll(door, true);
    }
    m_nth = 0;
    if (failed == 0)
        report("allocates nothing, though outcomes of a failing allocation are stated: %s", row.onFailure);
    else
        checkStated();
#if defined(__SANITIZE_ADDRESS__)
    if (row.keeps == nullptr && __lsan_do_recoverable_leak_check() != 0)
        report("leaks");
#endif
}

void Runner::checkOperations() {
    m_row = nullptr;
    if (m_entered == nullptr)
        return;
    for (const std::string& symbol : m_entered->unknown())
        report("the libraries do not export %s", symbol.c_str());
    std::vector<std::string> missing = m_entered->missing();
    for (const WithoutRow& exempt : withoutRow) {
        bool found = false;
        for (std::string& name : missing) {
            if (name == exempt.operation) {
                name.clear();
                found = true;
            }
        }
        if (!found)
            report("%s is listed as an operation without a row, though nothing exports it", exempt.operation);
    }
    for (const std::string& name : missing) {
        if (!name.empty())
            report("no row runs %s", name.c_str());
    }
}

int Runner::finish() {
    if (m_entered != nullptr) {
        std::fprintf(output, "%zu exported operations, %zu of them run, %zu listed with the reason\n",
                     m_entered->count(), m_entered->count() - m_entered->missing().size(), withoutRow.size());
    }
    std::fprintf(output, "%lu rows (%lu allocate), %lu trials, %lu of them with a failed allocation, %lu findings\n",
                 m_rows, m_allocatingRows, m_trials, m_failures, m_findings);
    return m_findings == 0 ? 0 : 1;
}

} // namespace faults

int main(int argc, char** argv) {
    // Without it, the platform allocates in every `mktime`.
    setenv("TZ", "UTC0", 1);
    // Every rewrite of the password file is synced, which takes its time on a disk.
    if (access("/dev/shm", W_OK) == 0)
        setenv("TMPDIR", "/dev/shm", 0);
    using test::ProtectedMachine;
    if (!ProtectedMachine::isOutOfReach() &&
        !(ProtectedMachine::enterNamespace() && ProtectedMachine::isOutOfReach()) &&
        !(ProtectedMachine::becomeNobody() && ProtectedMachine::isOutOfReach())) {
        std::printf("all rows: Skipped\nthe machine's own files cannot be protected\n\n[  SKIPPED ] all rows\n");
        return 77;
    }
    faults::openOutput();
    framework::Logger::setSink(faults::dropLine, nullptr);
    std::unique_ptr<faults::EnteredOperations> entered;
    if (argc > 1)
        entered = std::make_unique<faults::EnteredOperations>(argv[1]);
    faults::Runner runner(entered.get());
    faults::runner = &runner;
    for (const auto table : {faults::arrayRows, faults::containerRows, faults::streamRows, faults::textRows,
                             faults::environmentRows, faults::frameworkRows, faults::diagnosticRows}) {
        for (const faults::Row& row : table())
            runner.runRow(row);
    }
    runner.checkOperations();
    return runner.finish();
}
