#include "internal/ut_SymbolLookup.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <elf.h>
#include <link.h>

namespace utility {

// The macro comes with `_dl_find_object`, which is async-signal-safe.
#ifdef DLFO_STRUCT_HAS_EH_DBASE

namespace {

typedef ElfW(Addr) Address;
typedef ElfW(Dyn) DynamicEntry;
typedef ElfW(Sym) Symbol;
typedef ElfW(Word) Word;

// The name of the main program: the dynamic linker keeps an empty one.
char** programWords = nullptr;

__attribute__((constructor)) void keepProgramWords(int /*count*/, char** words) {
    programWords = words;
}

Address numberOf(const void* address) {
    return reinterpret_cast<Address>(address);
}

// The dynamic symbols of a loaded object. A process that crashed may have overwritten the tables, so each access is
// checked against the bounds of the object's mapping.
class DynamicSymbols {
public:
    explicit DynamicSymbols(const dl_find_object& object)
        : m_mapStart(numberOf(object.dlfo_map_start)),
          m_mapEnd(numberOf(object.dlfo_map_end)),
          m_bias(object.dlfo_link_map->l_addr) {
        const Address section = numberOf(object.dlfo_link_map->l_ld);
        const DynamicEntry* entry = nullptr;
        for (std::uint64_t i = 0; (entry = elementAt<DynamicEntry>(section, i)) != nullptr; ++i) {
            if (entry->d_tag == DT_NULL)
                break;
            note(*entry);
        }
        if (m_gnuHash != 0)
            countByGnuHash();
        else if (m_hash != 0)
            countByHash();
    }

    // Returns the global symbol that contains `address`; of several, the first one with the highest start.
    const Symbol* symbolAt(Address address) const {
        const Symbol* const symbols = arrayAt<Symbol>(m_symbols, m_end);
        const Symbol* best = nullptr;
        for (std::uint64_t i = m_first; symbols != nullptr && i < m_end; ++i) {
            const Symbol& symbol = symbols[i];
            const bool contains = address - startOf(symbol) < std::max<Address>(symbol.st_size, 1);
            if (contains && isNamedPlace(symbol) && (best == nullptr || best->st_value < symbol.st_value))
                best = &symbol;
        }
        return best;
    }
    Address startOf(const Symbol& symbol) const {
        return m_bias + symbol.st_value;
    }
    const char* nameOf(const Symbol& symbol) const {
        return arrayAt<char>(m_names, m_namesSize) + symbol.st_name;
    }

private:
    void note(const DynamicEntry& entry) {
        switch (entry.d_tag) {
        case DT_SYMTAB:
            m_symbols = relocated(entry);
            break;
        case DT_STRTAB:
            m_names = relocated(entry);
            break;
        case DT_STRSZ:
            m_namesSize = entry.d_un.d_val;
            break;
        case DT_GNU_HASH:
            m_gnuHash = relocated(entry);
            break;
        case DT_HASH:
            m_hash = relocated(entry);
            break;
        default:
            break;
        }
    }

    // The dynamic linker relocates the entries in place, except in objects with a read-only dynamic section.
    Address relocated(const DynamicEntry& entry) const {
        const Address address = entry.d_un.d_ptr;
        return address >= m_mapStart && address < m_mapEnd ? address : m_bias + address;
    }

    // Returns null unless the object contains all of the `count` elements.
    template<typename Element>
    const Element* arrayAt(Address address, std::uint64_t count) const {
        const bool isInside = address >= m_mapStart && address < m_mapEnd && address % alignof(Element) == 0 &&
                              count <= (m_mapEnd - address) / sizeof(Element);
        return isInside ? reinterpret_cast<const Element*>(address) : nullptr;
    }
    template<typename Element>
    const Element* elementAt(Address address, std::uint64_t index) const {
        const Element* const array = arrayAt<Element>(address, index + 1);
        return array != nullptr ? array + index : nullptr;
    }

    // The table starts with the number of buckets, the first symbol in a bucket, the number of Bloom filter words, and
    // a shift count. The buckets follow the filter; each has the number of its first symbol. Then follows one word per
    // symbol, whose lowest bit marks the last symbol of a bucket. The last symbol of all is in the bucket that starts
    // last.
    void countByGnuHash() {
        const Word* const header = arrayAt<Word>(m_gnuHash, 4);
        if (header == nullptr)
            return;
        const Address bucketsStart = m_gnuHash + 4 * sizeof(Word) + Address{header[2]} * sizeof(Address);
        const Word* const buckets = arrayAt<Word>(bucketsStart, header[0]);
        if (buckets == nullptr || header[0] == 0)
            return;
        const Word lastBucket = *std::max_element(buckets, buckets + header[0]);
        if (lastBucket < header[1])
            return;
        m_first = header[1];
        m_end = lastBucket;
        const Address chains = bucketsStart + Address{header[0]} * sizeof(Word);
        while (const Word* const link = elementAt<Word>(chains, m_end - m_first)) {
            ++m_end;
            if ((*link & 1) != 0)
                break;
        }
    }

    // The second word is the number of all symbols. Symbol 0 is a placeholder.
    void countByHash() {
        const Word* const header = arrayAt<Word>(m_hash, 2);
        if (header == nullptr)
            return;
        m_first = 1;
        m_end = header[1];
    }

    bool isNamedPlace(const Symbol& symbol) const {
        const unsigned int type = symbol.st_info & 0xFU;
        const unsigned int binding = symbol.st_info >> 4U;
        const bool isDefined = symbol.st_shndx != SHN_UNDEF || symbol.st_value != 0;
        if (!isDefined || symbol.st_shndx == SHN_ABS || type == STT_TLS || binding == STB_LOCAL)
            return false;
        const char* const names = arrayAt<char>(m_names, m_namesSize);
        return names != nullptr && symbol.st_name < m_namesSize &&
               std::memchr(names + symbol.st_name, 0, m_namesSize - symbol.st_name) != nullptr;
    }

    Address m_mapStart;
    Address m_mapEnd;
    Address m_bias; // what is added to an address in the file
    Address m_symbols = 0;
    Address m_names = 0;
    Address m_gnuHash = 0;
    Address m_hash = 0;
    std::size_t m_namesSize = 0;
    std::uint64_t m_first = 0; // the range of the symbols
    std::uint64_t m_end = 0;
};

} // namespace

bool findSymbol(const void* address, Dl_info& found) {
    dl_find_object object = {};
    if (_dl_find_object(const_cast<void*>(address), &object) != 0)
        return false;
    const char* const name = object.dlfo_link_map->l_name;
    const bool isMainProgram = *name == '\0' && programWords != nullptr;
    const DynamicSymbols symbols(object);
    const Symbol* const symbol = symbols.symbolAt(numberOf(address));
    found.dli_fname = isMainProgram ? programWords[0] : name;
    found.dli_fbase = object.dlfo_map_start;
    found.dli_sname = symbol != nullptr ? symbols.nameOf(*symbol) : nullptr;
    found.dli_saddr = symbol != nullptr ? reinterpret_cast<void*>(symbols.startOf(*symbol)) : nullptr;
    return true;
}

#else

bool findSymbol(const void* address, Dl_info& found) {
    return dladdr(address, &found) != 0;
}

#endif

} // namespace utility
