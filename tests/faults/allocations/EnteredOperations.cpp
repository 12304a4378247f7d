#include "EnteredOperations.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <set>

#include <cxxabi.h>
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <signal.h>
#include <sys/mman.h>
#include <ucontext.h>
#include <unistd.h>

#include "WithoutRow.h"

namespace faults {

namespace {

#if defined(__arm__)
using Instruction = std::uint16_t;
constexpr Instruction breakpoint = 0xde01; // Thumb: `udf #1`
constexpr std::uintptr_t addressMask = ~std::uintptr_t{1};
#else
using Instruction = std::uint8_t;
constexpr Instruction breakpoint = 0xcc; // `int3`
constexpr std::uintptr_t addressMask = ~std::uintptr_t{0};
#endif

struct Place {
    Instruction* address;
    Instruction original;
    std::vector<std::size_t> operations; // the compiler merges those with the same code
    bool isSet;
};

std::vector<Place> places; // sorted by address
std::vector<std::string> operations;
std::vector<char> entered;

void write(Place& place, Instruction instruction) {
    *place.address = instruction;
    __builtin___clear_cache(reinterpret_cast<char*>(place.address), reinterpret_cast<char*>(place.address + 1));
}

// Runs on whatever thread entered the operation: restores the instruction and lets it run.
void onBreakpoint(int number, siginfo_t*, void* context) {
    auto& machine = static_cast<ucontext_t*>(context)->uc_mcontext;
#if defined(__arm__)
    const std::uintptr_t at = machine.arm_pc & addressMask;
#else
    const std::uintptr_t at = static_cast<std::uintptr_t>(machine.gregs[REG_RIP]) - sizeof(Instruction);
#endif
    std::size_t low = 0;
    std::size_t high = places.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (reinterpret_cast<std::uintptr_t>(places[middle].address) < at)
            low = middle + 1;
        else
            high = middle;
    }
    if (low == places.size() || reinterpret_cast<std::uintptr_t>(places[low].address) != at) {
        signal(number, SIG_DFL);
        raise(number);
        return;
    }
    write(places[low], places[low].original);
    places[low].isSet = false;
    for (const std::size_t operation : places[low].operations)
        entered[operation] = 1;
#if !defined(__arm__)
    machine.gregs[REG_RIP] = static_cast<greg_t>(at);
#endif
}

// Whether `symbol` names data or code that the compiler makes: tables, type information, and thunks.
bool isOperation(const std::string& symbol) {
    for (const char* prefix : {"_ZTV", "_ZTT", "_ZTI", "_ZTS", "_ZTh", "_ZTv", "_ZTc"}) {
        if (symbol.compare(0, std::strlen(prefix), prefix) == 0)
            return false;
    }
    return true;
}

bool isFunction(const void* address) {
    Dl_info info;
    const ElfW(Sym)* symbol = nullptr;
    return dladdr1(address, &info, reinterpret_cast<void**>(const_cast<ElfW(Sym)**>(&symbol)), RTLD_DL_SYMENT) != 0 &&
           symbol != nullptr && ELF32_ST_TYPE(symbol->st_info) == STT_FUNC;
}

std::string readableName(const std::string& symbol) {
    int status = 0;
    char* name = abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status);
    std::string text = name != nullptr ? name : symbol;
    std::free(name);
    return text;
}

bool isWithoutRow(const std::string& name) {
    return std::any_of(withoutRow.begin(), withoutRow.end(),
                       [&](const WithoutRow& listed) { return listed.operation == name; });
}

void makeWritable(const void* address) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(address) / page * page;
    // An instruction may cross the end of a page.
    if (mprotect(reinterpret_cast<void*>(first), 2 * page, PROT_READ | PROT_WRITE | PROT_EXEC) != 0 &&
        mprotect(reinterpret_cast<void*>(first), page, PROT_READ | PROT_WRITE | PROT_EXEC) != 0) {
        std::perror("mprotect");
        std::exit(2);
    }
}

} // namespace

EnteredOperations::EnteredOperations(const char* list) {
    std::ifstream file(list);
    if (!file) {
        std::perror(list);
        std::exit(2);
    }
    std::map<std::string, std::size_t> numbers;
    std::map<std::uintptr_t, std::set<std::size_t>> addresses;
    std::string library;
    std::string symbol;
    while (file >> library >> symbol) {
        if (!isOperation(symbol))
            continue;
        void* const handle = dlopen(("lib" + library + ".so.1").c_str(), RTLD_NOW | RTLD_NOLOAD);
        void* const own = handle != nullptr ? dlsym(handle, symbol.c_str()) : nullptr;
        if (own == nullptr) {
            m_unknown.push_back(symbol);
            continue;
        }
        if (!isFunction(own))
            continue;
        const std::string name = readableName(symbol);
        const std::size_t number = numbers.emplace(name, operations.size()).first->second;
        if (number == operations.size())
            operations.push_back(name);
        if (isWithoutRow(name))
            continue;
        // A member that a header defines is compiled into this program too, and runs there.
        for (void* address : {own, dlsym(RTLD_DEFAULT, symbol.c_str())})
            addresses[reinterpret_cast<std::uintptr_t>(address)].insert(number);
    }
    entered.assign(operations.size(), 0);
    for (const auto& [address, merged] : addresses) {
#if defined(__arm__)
        if (address % 2 == 0)
            continue; // not Thumb
#endif
        auto* at = reinterpret_cast<Instruction*>(address & addressMask);
        makeWritable(at);
        places.push_back({at, *at, {merged.begin(), merged.end()}, false});
    }
    struct sigaction action = {};
    action.sa_sigaction = onBreakpoint;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGTRAP, &action, nullptr);
#if defined(__arm__)
    sigaction(SIGILL, &action, nullptr);
#endif
}

void EnteredOperations::watch() {
    for (Place& place : places) {
        const bool isMissing = std::any_of(place.operations.begin(), place.operations.end(),
                                           [](std::size_t operation) { return entered[operation] == 0; });
        if (isMissing) {
            place.isSet = true;
            write(place, breakpoint);
        }
    }
}

void EnteredOperations::pause() {
    for (Place& place : places) {
        if (place.isSet) {
            place.isSet = false;
            write(place, place.original);
        }
    }
}

std::size_t EnteredOperations::count() const {
    return operations.size();
}

std::vector<std::string> EnteredOperations::missing() const {
    std::vector<std::string> names;
    for (std::size_t number = 0; number < operations.size(); ++number) {
        if (entered[number] == 0)
            names.push_back(operations[number]);
    }
    return names;
}

} // namespace faults

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

// In place of the platform's, for the libraries too: a breakpoint inside a section that blocks all signals could not be
// handled.
extern "C" int pthread_sigmask(int how, const sigset_t* set, sigset_t* former) {
    typedef int SetMask(int, const sigset_t*, sigset_t*);
    static SetMask* const platform = reinterpret_cast<SetMask*>(dlsym(RTLD_NEXT, "pthread_sigmask"));
    if (set == nullptr || how == SIG_UNBLOCK)
        return platform(how, set, former);
    sigset_t without = *set;
    sigdelset(&without, SIGTRAP);
    sigdelset(&without, SIGILL);
    return platform(how, &without, former);
}

#endif
