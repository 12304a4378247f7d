// Debug: the switches, which need no stream. Dumps are in ut_DebugDump.cpp, crash reports in ut_DebugCrash.cpp and
// their lock in ut_DebugLock.cpp.

#include "ut_Debug.h"

#include "fw_StableStringRepository.h"

namespace utility {

std::bitset<8192> Debug::m_bits;

bool Debug::isDebugOn(const char* name) {
    return name != nullptr && isDebugOn(strings::GS.toToken(name));
}

void Debug::setDebugOn(unsigned int n) {
    if (n < m_bits.size())
        m_bits[n] = true;
}

void Debug::setDebugOff(unsigned int n) {
    if (n < m_bits.size())
        m_bits[n] = false;
}

void Debug::setDebugOn(const char* name) {
    if (name != nullptr)
        setDebugOn(strings::GS.toToken(name));
}

void Debug::setDebugOff(const char* name) {
    setDebugOn(name);
}

void Debug::setDebugValue(const char* name, bool on) {
    if (name == nullptr)
        return;
    const stringtoken token = strings::GS.toToken(name);
    if (on) {
        setDebugOn(token);
    } else {
        setDebugOff(token);
    }
}

char Debug::hexChar(char v) {
    const unsigned char value = static_cast<unsigned char>(v);
    return value < 16 ? "0123456789abcdef"[value] : '0';
}

char Debug::hexFromChar(char c) {
    if (c >= '0' && c <= '9')
        return static_cast<char>(c - '0');
    if (c >= 'A' && c <= 'F')
        return static_cast<char>(c - 'A' + 10);
    if (c >= 'a' && c <= 'f')
        return static_cast<char>(c - 'a' + 10);
    return static_cast<char>(255);
}

} // namespace utility
