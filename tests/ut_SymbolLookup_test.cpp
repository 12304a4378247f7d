#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include <cxxabi.h>
#include <dlfcn.h>
#include <elf.h>
#include <link.h>
#include <signal.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "fw_StableStringRepository.h"
#include "fw_ThreadInfo.h"
#include "support/ChildProcess.h"
#include "support/SymbolObject.h"
#include "support/SymbolText.h"
#include "support/TemporaryDirectory.h"
#include "ut_Debug.h"

using test::symbolName;
using test::symbolPath;
using utility::Debug;

// Finding the symbol of an address without the lock of the dynamic linker.

namespace {

std::string demangled(const char* name) {
    int status = -1;
    char* const text = abi::__cxa_demangle(name, nullptr, nullptr, &status);
    const std::string result = status == 0 && std::strlen(text) < 2048 ? text : name;
    std::free(text);
    return result;
}

// The text of `address` from what the platform says.
std::string expectedPath(const void* address) {
    Dl_info info = {};
    if (dladdr(address, &info) == 0)
        return "";
    const char* const start = static_cast<char*>(info.dli_saddr != nullptr ? info.dli_saddr : info.dli_fbase);
    return "[" + std::string(info.dli_fname) + "] " + (info.dli_sname != nullptr ? demangled(info.dli_sname) : "--") +
           "+" + std::to_string(static_cast<const char*>(address) - start);
}

// Addresses all over the loaded objects: the bounds of each segment, and the bounds of symbols in between.
std::vector<const char*> addressesOfAllObjects() {
    std::vector<const char*> addresses;
    const auto take = [](dl_phdr_info* object, std::size_t, void* context) {
        auto& taken = *static_cast<std::vector<const char*>*>(context);
        for (int i = 0; i < object->dlpi_phnum; ++i) {
            const ElfW(Phdr)& segment = object->dlpi_phdr[i];
            if (segment.p_type != PT_LOAD || segment.p_memsz == 0)
                continue;
            const auto* const start = reinterpret_cast<const char*>(object->dlpi_addr + segment.p_vaddr);
            const std::size_t last = segment.p_memsz - 1;
            for (std::size_t part = 0; part <= 100; ++part)
                taken.push_back(start + last / 100 * part);
            taken.push_back(start + last);
        }
        return 0;
    };
    dl_iterate_phdr(take, &addresses);
    const std::vector<const char*> inside = addresses;
    for (const char* const address : inside) {
        Dl_info info = {};
        const ElfW(Sym)* symbol = nullptr;
        if (dladdr1(address, &info, reinterpret_cast<void**>(const_cast<ElfW(Sym)**>(&symbol)), RTLD_DL_SYMENT) == 0 ||
            symbol == nullptr)
            continue;
        const auto* const start = static_cast<const char*>(info.dli_saddr);
        addresses.insert(addresses.end(), {start - 1, start, start + symbol->st_size - 1, start + symbol->st_size});
    }
    return addresses;
}

TEST(SymbolLookup, AgreesWithThePlatformAllOverTheLoadedObjects) {
    unsigned int named = 0;
    for (const char* const address : addressesOfAllObjects()) {
        const std::string expected = expectedPath(address);
        ASSERT_EQ(symbolPath(address), expected) << static_cast<const void*>(address);
        named += expected.empty() || expected.find("] --+") != std::string::npos ? 0 : 1;
    }
    EXPECT_GT(named, 1000u);
}

// --- damaged tables

// A loaded object whose tables can be damaged; they are restored at the end.
class DamagedObject {
public:
    DamagedObject() : m_object("_Z6victimv"), m_map(nullptr) {
        Dl_info info = {};
        if (dladdr1(m_object.address(), &info, reinterpret_cast<void**>(&m_map), RTLD_DL_LINKMAP) == 0)
            throw std::runtime_error("unknown object");
    }
    DamagedObject(const DamagedObject&) = delete;
    DamagedObject& operator=(const DamagedObject&) = delete;
    ~DamagedObject() {
        for (; !m_changes.empty(); m_changes.pop_back())
            std::memcpy(m_changes.back().place, m_changes.back().former.data(), m_changes.back().former.size());
    }

    std::string name() const {
        return symbolName(m_object.address());
    }
    ElfW(Dyn) & entry(ElfW(Sxword) tag) {
        ElfW(Dyn)* found = m_map->l_ld;
        while (found->d_tag != tag && found->d_tag != DT_NULL)
            ++found;
        EXPECT_EQ(found->d_tag, tag);
        return *found;
    }
    ElfW(Addr) & table(ElfW(Sxword) tag) {
        return entry(tag).d_un.d_ptr;
    }
    ElfW(Sym) & symbol() {
        return reinterpret_cast<ElfW(Sym)*>(table(DT_SYMTAB))[1];
    }
    ElfW(Word) * hash() {
        return reinterpret_cast<ElfW(Word)*>(table(DT_HASH));
    }
    template<typename Value, typename NewValue>
    void set(Value& place, NewValue value) {
        m_changes.push_back({&place, std::string(reinterpret_cast<const char*>(&place), sizeof place)});
        place = static_cast<Value>(value);
    }

    struct GnuHash {
        ElfW(Word) buckets = 1;
        ElfW(Word) firstSymbol = 1;
        ElfW(Word) filterWords = 1;
        ElfW(Word) shift = 0;
        ElfW(Addr) filter = 0;
        ElfW(Word) bucket = 1;
        ElfW(Word) chain = 1;
    };
    // Gives the object a GNU hash table, in place of the other one.
    GnuHash& useGnuHash() {
        auto& table = *static_cast<GnuHash*>(m_object.address());
        set(table, GnuHash());
        ElfW(Dyn)& former = entry(DT_HASH);
        set(former.d_un.d_ptr, reinterpret_cast<ElfW(Addr)>(&table));
        set(former.d_tag, DT_GNU_HASH);
        return table;
    }

private:
    struct Change {
        void* place;
        std::string former;
    };

    test::SymbolObject m_object;
    link_map* m_map;
    std::vector<Change> m_changes;
};

constexpr const char* whole = "victim()";
constexpr const char* unknown = "--";

TEST(SymbolLookup, OfAnObjectWithAWholeTableHasAName) {
    EXPECT_EQ(DamagedObject().name(), whole);
    DamagedObject object;
    object.useGnuHash();
    EXPECT_EQ(object.name(), whole);
}

TEST(SymbolLookup, OfATableOutsideTheObjectHasNoName) {
    for (const int tag : {DT_SYMTAB, DT_STRTAB, DT_HASH})
        for (const int distance : {-0x100000, 0x100000, 0x10000000}) {
            DamagedObject object;
            object.set(object.table(tag), object.table(tag) + static_cast<ElfW(Addr)>(distance));
            EXPECT_EQ(object.name(), unknown) << tag << " " << distance;
        }
}

TEST(SymbolLookup, OfAMisplacedTableHasNoName) {
    for (const int tag : {DT_SYMTAB, DT_HASH}) {
        DamagedObject object;
        object.set(object.table(tag), object.table(tag) + 1);
        EXPECT_EQ(object.name(), unknown);
    }
}

TEST(SymbolLookup, OfANameThatDoesNotEndInTheTableHasNoName) {
    for (const int less : {1, 2, 10, 11}) {
        DamagedObject object;
        object.set(object.entry(DT_STRSZ).d_un.d_val, object.entry(DT_STRSZ).d_un.d_val - static_cast<unsigned>(less));
        EXPECT_EQ(object.name(), unknown) << less;
    }
    DamagedObject object;
    object.set(object.entry(DT_STRSZ).d_un.d_val, ~ElfW(Addr){0});
    EXPECT_EQ(object.name(), unknown);
}

TEST(SymbolLookup, OfADamagedSymbolHasNoName) {
    {
        DamagedObject object;
        object.set(object.symbol().st_name, ~ElfW(Word){0});
        EXPECT_EQ(object.name(), unknown);
    }
    {
        DamagedObject object;
        object.set(object.symbol().st_value, ~ElfW(Addr){0});
        EXPECT_EQ(object.name(), unknown);
    }
    {
        DamagedObject object;
        object.set(object.symbol().st_size, 0);
        EXPECT_EQ(object.name(), whole) << "at its first byte";
    }
    for (const int info : {ELF32_ST_INFO(STB_GLOBAL, STT_TLS), ELF32_ST_INFO(STB_LOCAL, STT_FUNC)}) {
        DamagedObject object;
        object.set(object.symbol().st_info, info);
        EXPECT_EQ(object.name(), unknown) << info;
    }
    DamagedObject object;
    object.set(object.symbol().st_shndx, SHN_ABS);
    EXPECT_EQ(object.name(), unknown);
}

TEST(SymbolLookup, OfAnImpossibleNumberOfSymbolsHasNoName) {
    for (const ElfW(Word) count : {ElfW(Word){0}, ElfW(Word){1}, ElfW(Word){0x10000}, ~ElfW(Word){0}}) {
        DamagedObject object;
        object.set(object.hash()[1], count);
        EXPECT_EQ(object.name(), unknown) << count;
    }
}

TEST(SymbolLookup, OfADamagedGnuHashTableHasNoName) {
    typedef DamagedObject::GnuHash Table;
    struct Damage {
        ElfW(Word) Table::*word;
        ElfW(Word) value;
    };
    const ElfW(Word) all = ~ElfW(Word){0};
    const Damage damages[] = {{&Table::buckets, 0},       {&Table::buckets, 0x10000}, {&Table::buckets, all},
                              {&Table::firstSymbol, 2},   {&Table::firstSymbol, all}, {&Table::filterWords, 0x10000},
                              {&Table::filterWords, all}, {&Table::bucket, 0},        {&Table::bucket, 0x10000},
                              {&Table::bucket, all},      {&Table::chain, 0}};
    for (const Damage& damage : damages) {
        SCOPED_TRACE(&damage - damages);
        DamagedObject object;
        Table& table = object.useGnuHash();
        object.set(table.*damage.word, damage.value);
        const std::string name = object.name();
        // Words that follow may happen to end the chain, after the symbol's own.
        EXPECT_TRUE(name == unknown || (damage.word == &Table::chain && name == whole)) << name;
    }
}

TEST(SymbolLookup, OfADynamicSectionWithoutAnEndHasAnEnd) {
    DamagedObject object;
    object.set(object.entry(DT_NULL).d_tag, DT_DEBUG);
    EXPECT_EQ(object.name(), whole);
}

} // namespace

// --- a lock that an interrupted thread holds

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace {

// Runs once, inside the next `calloc` of the thread that sets it.
__attribute__((tls_model("initial-exec"))) thread_local void (*inCalloc)() = nullptr;

} // namespace

extern "C" {

void* __libc_calloc(std::size_t count, std::size_t size) noexcept;

void* calloc(std::size_t count, std::size_t size) noexcept {
    if (inCalloc != nullptr) {
        void (*const run)() = inCalloc;
        inCalloc = nullptr;
        run();
    }
    return __libc_calloc(count, size);
}
}

namespace {

int holderPipe[2];
int modulePipe[2];

void tell(const int (&ends)[2]) {
    if (write(ends[1], "!", 1) != 1)
        _exit(3);
}

void waitFor(const int (&ends)[2]) {
    char byte = 0;
    if (read(ends[0], &byte, 1) != 1)
        _exit(4);
}

TEST(SymbolLookup, DoesNotWaitForAStaticConstructorThatWaitsForTheInterruptedThread) {
    const test::TemporaryDirectory memory;
    std::filesystem::create_directory(memory.path("Context"));
    const test::ChildResult child = test::runInChild([&] {
        alarm(40);
        setenv("VX_MEM", memory.path().c_str(), 1);
        signal(SIGUSR2, Debug::SignalContext);
        if (pipe(holderPipe) != 0 || pipe(modulePipe) != 0)
            return 2;
        setenv("VXTEST_MODULE_PIPE", std::to_string(modulePipe[1]).c_str(), 1);
        std::thread holder([] {
            framework::ThreadInfo::MyThreadInfo();
            // A new token is allocated with the lock of the token table held.
            inCalloc = [] {
                tell(holderPipe);
                waitFor(modulePipe);
                raise(SIGUSR2);
            };
            strings::GS.toToken("a token that interrupts its thread");
        });
        waitFor(holderPipe);
        void* const module = dlopen(VXTEST_TOKEN_MODULE, RTLD_NOW | RTLD_LOCAL);
        holder.join();
        return module != nullptr && inCalloc == nullptr ? 0 : 1;
    });
    EXPECT_EQ(child.signal, 0) << (child.signal == SIGALRM ? "the threads wait for each other" : "") << child.err;
    EXPECT_EQ(child.status, 0) << child.err;
    unsigned int contexts = 0;
    for (const auto& entry : std::filesystem::directory_iterator(memory.path("Context")))
        contexts += entry.file_size() > 0 ? 1 : 0;
    EXPECT_EQ(contexts, 1u);
}

} // namespace

#endif
