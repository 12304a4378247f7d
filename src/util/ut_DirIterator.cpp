#include "ut_DirIterator.h"

#include <cerrno>

#include <fnmatch.h>
#include <sys/stat.h>

#include "internal/ut_FileDescriptor.h"
#include "internal/ut_Trace.h"

namespace utility {

namespace {

int classify(mode_t mode) {
    if (S_ISDIR(mode))
        return 3;
    if (S_ISCHR(mode))
        return 2;
    if (S_ISBLK(mode))
        return 4;
    if (S_ISREG(mode))
        return 5;
    if (S_ISFIFO(mode))
        return 1;
    if ((mode & 0xA000) != 0)
        return 6;
    return (mode & 0xC000) == 0 ? 0 : 7;
}

} // namespace

DirIterator::DirIterator()
    : Path(nullptr), m_pDir(nullptr), m_entry(nullptr), m_pattern(nullptr), m_index(-1), m_errorReported(false) {}

// Delegates, so that the destructor runs and frees the pattern if `setPath` throws.
DirIterator::DirIterator(const char* directory, const char* pattern) : DirIterator() {
    setPattern(pattern);
    setPath(directory);
}

DirIterator::~DirIterator() {
    FreeString(m_pattern);
    close();
}

bool DirIterator::open() {
    close();
    m_pDir = openDirectory(getPath());
    VXUT_TRACE_ENTITY(TOKEN_DIR_ITERATOR, "opendir %s returned [%p]", getPath(), static_cast<void*>(m_pDir));
    if (m_pDir == nullptr)
        reportError();
    return m_pDir != nullptr;
}

void DirIterator::reportError() {
    if (!m_errorReported)
        setError("DirIterator: error accessing directory %s", getPath());
    m_errorReported = true;
}

void DirIterator::close() {
    if (m_pDir == nullptr)
        return;
    VXUT_TRACE_ENTITY(TOKEN_DIR_ITERATOR, "closedir m_pDir");
    closedir(m_pDir);
    VXUT_TRACE_ENTITY(TOKEN_DIR_ITERATOR, "closedir m_pDir");
    m_pDir = nullptr;
    end();
}

const char* DirIterator::end() {
    m_index = -1;
    m_entry = nullptr;
    return nullptr;
}

const char* DirIterator::getFirst(const char* pattern) {
    m_index = -1;
    if (pattern != nullptr)
        setPattern(pattern);
    if (m_pDir == nullptr && !open())
        return nullptr;
    rewinddir(m_pDir);
    return nextMatch(__PRETTY_FUNCTION__);
}

const char* DirIterator::getNext() {
    if ((m_pDir == nullptr && !open()) || m_entry == nullptr)
        return end();
    return nextMatch(__PRETTY_FUNCTION__);
}

const char* DirIterator::nextMatch(const char* function) {
    // `readdir` returns null for both a failure and the end of the directory; only `errno` distinguishes them.
    for (errno = 0; (m_entry = readdir(m_pDir)) != nullptr; errno = 0) {
        const char* name = m_entry->d_name;
        VXUT_TRACE_ENTITY_AS(function, TOKEN_DIR_ITERATOR, "match name %s to pattern %s", name,
                             m_pattern != nullptr ? m_pattern : "(null)");
        const int result = m_pattern != nullptr ? fnmatch(m_pattern, name, 0) : FNM_NOMATCH;
        VXUT_TRACE_ENTITY_AS(function, TOKEN_DIR_ITERATOR, "match returned %d", result);
        if (result != 0)
            continue;
        ++m_index;
        setFullFile(name);
        VXUT_TRACE_ENTITY_AS(function, TOKEN_DIR_ITERATOR, "returning value %s", name);
        return name;
    }
    if (errno != 0)
        reportError();
    return end();
}

unsigned int DirIterator::length(const char* pattern) {
    unsigned int count = 0;
    for (const char* name = getFirst(pattern); name != nullptr; name = getNext())
        ++count;
    return count;
}

void DirIterator::setPattern(const char* pattern) {
    char* copy = AllocString(pattern);
    FreeString(m_pattern);
    m_pattern = copy;
}

int DirIterator::getType() const {
    struct stat status = {};
    if (m_entry == nullptr || stat(m_entry->d_name, &status) == 0)
        return 0;
    return classify(status.st_mode);
}

} // namespace utility
