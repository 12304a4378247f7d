#include "console_ContextFolder.h"

#include <cstdlib>

#include <unistd.h>

#include "console_Files.h"
#include "ut_Environment.h"

namespace console {

ContextFolder::ContextFolder() : m_isMade(false) {
    const char* folder = utility::Environment::GetEnv("TMPDIR");
    const char* former = utility::Environment::GetEnv("VX_MEM");
    m_hadRoot = former != nullptr;
    m_formerRoot = m_hadRoot ? former : "";
    m_root = std::string(folder != nullptr && *folder != 0 ? folder : "/tmp") + "/vxconsoleXXXXXX";
    m_isMade = mkdtemp(&m_root[0]) != nullptr;
    if (m_isMade)
        utility::Environment::SetEnv("VX_MEM", m_root.c_str());
}

ContextFolder::~ContextFolder() {
    remove();
}

bool ContextFolder::remove() {
    if (!m_isMade)
        return true;
    m_isMade = false;
    if (m_hadRoot) {
        utility::Environment::SetEnv("VX_MEM", m_formerRoot.c_str());
    } else {
        utility::Environment::UnsetEnv("VX_MEM");
    }
    std::string failure;
    for (const std::string& name : names(&failure))
        unlink((path() + '/' + name).c_str());
    rmdir(path().c_str());
    return rmdir(m_root.c_str()) == 0;
}

std::string ContextFolder::path() const {
    return m_root + "/vxconsoleContext";
}

std::vector<std::string> ContextFolder::names(std::string* failure) const {
    return namesIn(path(), failure);
}

} // namespace console
