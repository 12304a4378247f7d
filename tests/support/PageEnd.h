#pragma once

#include <cstddef>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>

#include <sys/mman.h>
#include <unistd.h>

namespace test {

/// Storage directly before an inaccessible page: reading past the last byte of a text placed there crashes the process.
///
///     const test::PageEnd storage(4096);
///     Misc::isStringPrintableUtf8(storage.place("0123456789"), 10, "", "");
class PageEnd {
public:
    /// Storage for texts of up to `capacity` bytes.
    explicit PageEnd(std::size_t capacity) {
        const std::size_t page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
        m_capacity = (capacity + page - 1) / page * page;
        m_mapped = m_capacity + page;
        void* const mapping = mmap(nullptr, m_mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (mapping == MAP_FAILED)
            throw std::bad_alloc();
        m_mapping = static_cast<char*>(mapping);
        if (mprotect(m_mapping + m_capacity, page, PROT_NONE) != 0)
            throw std::runtime_error("cannot protect a page");
    }
    PageEnd(const PageEnd&) = delete;
    PageEnd& operator=(const PageEnd&) = delete;
    ~PageEnd() {
        munmap(m_mapping, m_mapped);
    }

    /// Copies the bytes, without a terminating NUL, to the end of the storage, and overwrites earlier texts.
    char* place(const std::string& bytes) const {
        if (bytes.size() > m_capacity)
            throw std::length_error("more bytes than the storage was made for");
        char* const target = m_mapping + m_capacity - bytes.size();
        std::memcpy(target, bytes.data(), bytes.size());
        return target;
    }

private:
    std::size_t m_capacity;
    std::size_t m_mapped;
    char* m_mapping;
};

} // namespace test
