#include "ut_PW.h"

#include <cstring>

#include "internal/ut_Trace.h"

namespace utility {

namespace {

const char* shown(const char* text) {
    return text != nullptr ? text : "(null)";
}

} // namespace

PW::PW() : m_passwd(), m_readTexts(), m_ownTexts(), m_used(0) {}

void PW::reset() {
    m_passwd = passwd();
    m_used = 0;
}

char* PW::newString(const char* s) {
    if (s == nullptr)
        return nullptr;
    const std::size_t size = std::strlen(s) + 1;
    if (size > textSize - m_used) {
        VXUT_LOG(framework::Logger::LOG_ERROR, "string wont fit %s\n", s);
        return nullptr;
    }
    char* copy = m_ownTexts + m_used;
    std::memmove(copy, s, size);
    m_used += static_cast<unsigned int>(size);
    return copy;
}

void PW::dump() const {
    VXUT_TRACE(TOKEN_PW, "PW - user: %s, pw: %s, uid: %d, gid: %d, rn: %s, dir: %s, sh: %s\n", shown(getUserName()),
               shown(getPassword()), getUid(), getGid(), shown(getRealName()), shown(getDir()), shown(getShell()));
}

} // namespace utility
