#include "ut_TokenSet.h"

#include <algorithm>
#include <climits>

#include "fw_KnownStrings.h"
#include "fw_StableStringRepository.h"
#include "internal/ut_Failure.h"
#include "internal/ut_SlotMoves.h"
#include "internal/ut_TokenNames.h"
#include "internal/ut_Trace.h"
#include "ut_BufferStream.h"

namespace utility {

namespace {

constexpr unsigned int fewestToHalve = 6;

} // namespace

TokenSet::TokenSet(unsigned int capacity) : Array(capacity) {
    allocateBlock(capacity, sizeof(stringtoken));
}

TokenSet::TokenSet(const char* list, unsigned int capacity) : TokenSet(capacity) {
    SetFromStringList(list);
}

TokenSet::TokenSet(const TokenSet& other) : Array(other.size()) {
    copyBlock(other, sizeof(stringtoken));
}

TokenSet::~TokenSet() {
    freeBlock();
}

void TokenSet::SetFromStringList(const char* list) {
    const TokenNames names(list);
    m_length = 0;
    for (const char* name : names)
        set(strings::GS.toToken(name));
}

void TokenSet::toStringList(char* buffer, unsigned int size) const {
    BufferStream out(buffer, static_cast<int>(std::min<unsigned int>(size, INT_MAX)), false);
    for (unsigned int index = 0; index < m_length; ++index)
        out.PutS(strings::StringRepository::toString(slots()[index]));
    if (m_length > 0)
        out.PutC(',');
}

void TokenSet::set(stringtoken token) {
    for (unsigned int index = 0; index < m_length; ++index) {
        if (slots()[index] == token)
            return;
        if (slots()[index] > token) {
            insertAt(index, token);
            return;
        }
    }
    append(token);
}

void TokenSet::unset(stringtoken token) {
    unsigned int index = 0;
    while (index < m_length && slots()[index] > token)
        ++index;
    if (index < m_length && slots()[index] == token)
        deleteAt(index);
}

bool TokenSet::inSet(stringtoken token) const {
    if (m_length < fewestToHalve)
        return isInShortSet(token);
    return std::binary_search(slots(), slots() + m_length, token);
}

bool TokenSet::isInShortSet(stringtoken token) const {
    for (unsigned int index = 0; index < m_length && slots()[index] <= token; ++index) {
        if (slots()[index] == token)
            return true;
    }
    return false;
}

void TokenSet::mergeSet(TokenSet& other) const {
    for (unsigned int index = 0; index < m_length; ++index)
        other.set(slots()[index]);
}

void TokenSet::clearSet() {
    m_length = 0;
}

bool TokenSet::operator==(const TokenSet& other) const {
    return std::equal(slots(), slots() + m_length, other.slots(), other.slots() + other.m_length);
}

void TokenSet::append(stringtoken token) {
    growIfFull(sizeof(stringtoken));
    VXUT_TRACE(TOKEN_TOKEN_SET, "Appending [%d] at %d", token, m_length);
    slots()[m_length] = token;
    ++m_length;
}

void TokenSet::insertAt(unsigned int index, stringtoken token) {
    VXUT_TRACE_ENTER(TOKEN_TOKEN_SET);
    VXUT_CHECK_INDEX(index <= m_length);
    growIfFull(sizeof(stringtoken));
    moveSlotsUp(slots(), index, m_length, Debug::isDebugOn(strings::TOKEN_TOKEN_SET), __PRETTY_FUNCTION__);
    VXUT_TRACE(TOKEN_TOKEN_SET, "setting %d = %d", index, token);
    slots()[index] = token;
    ++m_length;
}

void TokenSet::setAt(unsigned int index, stringtoken token) {
    VXUT_CHECK_INDEX(index < m_length);
    slots()[index] = token;
}

void TokenSet::deleteAt(unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    moveSlotsDown(slots(), index, m_length);
    --m_length;
}

stringtoken& TokenSet::operator[](unsigned int index) {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

const stringtoken& TokenSet::operator[](unsigned int index) const {
    VXUT_CHECK_INDEX(index < m_length);
    return slots()[index];
}

} // namespace utility
