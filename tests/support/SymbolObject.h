#pragma once

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <dlfcn.h>
#include <elf.h>
#include <link.h>

#include "TemporaryDirectory.h"

namespace test {

/// A shared object that defines a single function symbol of any name, without code. It is loaded while this exists.
///
///     test::SymbolObject object("_Z4testv");
///     utility::Debug::SymbolName(object.address(), text, sizeof text);   // "test()"
class SymbolObject {
public:
    explicit SymbolObject(const std::string& symbol) : m_handle(nullptr) {
        m_directory.write("object.so", content(symbol));
        m_handle = dlopen(path().c_str(), RTLD_NOW | RTLD_LOCAL);
        if (m_handle == nullptr)
            throw std::runtime_error(dlerror());
        m_address = dlsym(m_handle, symbol.c_str());
        if (m_address == nullptr)
            throw std::runtime_error("no symbol in " + path());
    }
    SymbolObject(const SymbolObject&) = delete;
    SymbolObject& operator=(const SymbolObject&) = delete;
    ~SymbolObject() {
        dlclose(m_handle);
    }

    std::string path() const {
        return m_directory.path("object.so");
    }
    /// The address of the symbol, which is 64 bytes long.
    void* address() const {
        return m_address;
    }

private:
    typedef ElfW(Ehdr) Header;
    typedef ElfW(Phdr) Segment;
    typedef ElfW(Dyn) Dynamic;
    typedef ElfW(Sym) Symbol;

    struct Tables {
        Header header;
        Segment segments[3];
        Symbol symbols[2];
        ElfW(Word) hash[5];
        Dynamic dynamic[6];
        char function[64];
    };

    static Segment segment(unsigned int type, unsigned int flags, std::size_t offset, std::size_t size) {
        Segment result = {};
        result.p_type = type;
        result.p_flags = flags;
        result.p_offset = result.p_vaddr = result.p_paddr = static_cast<ElfW(Addr)>(offset);
        result.p_filesz = result.p_memsz = static_cast<ElfW(Addr)>(size);
        result.p_align = type == PT_LOAD ? 0x10000 : 8;
        return result;
    }

    static Dynamic entry(int tag, std::size_t value) {
        Dynamic result = {};
        result.d_tag = tag;
        result.d_un.d_ptr = static_cast<ElfW(Addr)>(value);
        return result;
    }

    // Copies the machine and its flags from the C library of this process.
    static Header runningHeader() {
        Dl_info info = {};
        if (dladdr(reinterpret_cast<void*>(&dlopen), &info) == 0)
            throw std::runtime_error("cannot find the object of dlopen");
        Header header;
        std::memcpy(&header, info.dli_fbase, sizeof header);
        return header;
    }

    static std::string content(const std::string& symbol) {
        Tables tables = {};
        const std::string names = std::string(1, '\0') + symbol + '\0';
        const std::size_t size = sizeof tables + names.size();

        tables.header = runningHeader();
        std::memset(tables.header.e_ident + EI_OSABI, 0, EI_NIDENT - EI_OSABI);
        tables.header.e_type = ET_DYN;
        tables.header.e_entry = 0;
        tables.header.e_phoff = offsetof(Tables, segments);
        tables.header.e_phnum = 3;
        tables.header.e_shoff = 0;
        tables.header.e_shnum = 0;
        tables.header.e_shstrndx = 0;

        tables.segments[0] = segment(PT_LOAD, PF_R | PF_W, 0, size);
        tables.segments[1] = segment(PT_DYNAMIC, PF_R | PF_W, offsetof(Tables, dynamic), sizeof tables.dynamic);
        tables.segments[2] = segment(PT_GNU_STACK, PF_R | PF_W, 0, 0);

        tables.symbols[1].st_name = 1;
        tables.symbols[1].st_info = ELF32_ST_INFO(STB_GLOBAL, STT_FUNC);
        tables.symbols[1].st_shndx = 1;
        tables.symbols[1].st_value = offsetof(Tables, function);
        tables.symbols[1].st_size = sizeof tables.function;

        // One bucket with a chain of one symbol.
        const ElfW(Word) hash[] = {1, 2, 1, 0, 0};
        std::memcpy(tables.hash, hash, sizeof hash);

        tables.dynamic[0] = entry(DT_HASH, offsetof(Tables, hash));
        tables.dynamic[1] = entry(DT_SYMTAB, offsetof(Tables, symbols));
        tables.dynamic[2] = entry(DT_STRTAB, sizeof tables);
        tables.dynamic[3] = entry(DT_STRSZ, names.size());
        tables.dynamic[4] = entry(DT_SYMENT, sizeof(Symbol));
        tables.dynamic[5] = entry(DT_NULL, 0);

        return std::string(reinterpret_cast<const char*>(&tables), sizeof tables) + names;
    }

    TemporaryDirectory m_directory;
    void* m_handle;
    void* m_address;
};

} // namespace test
