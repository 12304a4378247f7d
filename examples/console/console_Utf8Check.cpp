#include "console_Utf8Check.h"

#include "ut_Misc.h"

namespace console {

namespace {

// Returns the length that the lead byte of a UTF-8 character announces; 1 for any other byte.
std::size_t announcedLength(unsigned char lead) {
    std::size_t ones = 0;
    while (ones < 8 && (lead & (0x80U >> ones)) != 0)
        ++ones;
    return ones >= 2 && ones <= 6 ? ones : 1;
}

} // namespace

bool Utf8Check::add(char c) {
    const bool continues = (static_cast<unsigned char>(c) & 0xC0) == 0x80 && m_character.size() < m_announced;
    if (!continues && !endCharacter())
        return false;
    if (!continues)
        m_announced = announcedLength(static_cast<unsigned char>(c));
    m_character += c;
    return true;
}

bool Utf8Check::endCharacter() {
    const unsigned int length = static_cast<unsigned int>(m_character.size());
    if (length > 0 &&
        (m_character[0] == 0 || !utility::Misc::isStringPrintableUtf8(m_character.data(), length, "", "\t\n\r")))
        return false;
    m_start += length;
    m_character.clear();
    m_announced = 0;
    return true;
}

} // namespace console
