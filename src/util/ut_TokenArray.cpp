#include "ut_TokenArray.h"

#include <cstring>

#include "fw_KnownStrings.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"
#include "ut_Failure.h"
#include "ut_TokenNames.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int traceSwitch = 624;
const unsigned int growth = 20;

} // namespace

TokenArray::TokenArray(unsigned int capacity) : Array(growth) {
    m_block = realloc(nullptr, &m_size, capacity, sizeof(stringtoken));
}

TokenArray::TokenArray(const char* list, unsigned int capacity) : TokenArray(capacity) {
    SetFromStringList(list);
}

TokenArray::TokenArray(const TokenArray& other) : Array(growth) {
    m_block = realloc(nullptr, &m_size, other.size(), sizeof(stringtoken));
    std::memcpy(m_block, other.m_block, other.length() * sizeof(stringtoken));
    m_length = other.length();
}

TokenArray::~TokenArray() {
    framework::Memory::StaticFree(m_block);
}

void TokenArray::SetFromStringList(const char* list) {
    const TokenNames names(list);
    m_length = 0;
    for (const char* name : names)
        Append(strings::GS.toToken(name));
}

void TokenArray::growWhenFull() {
    if (m_length >= m_size)
        m_block = realloc(m_block, &m_size, growth, sizeof(stringtoken));
}

void TokenArray::Append(stringtoken token) {
    growWhenFull();
    VXUT_TRACE(traceSwitch, "Appending [%d] at %d", token, m_length);
    slots()[m_length] = token;
    ++m_length;
}

void TokenArray::InsertAt(unsigned int index, stringtoken token) {
    VXUT_TRACE_ENTER(traceSwitch);
    if (index > m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    growWhenFull();
    for (unsigned int to = m_length; to > index; --to) {
        VXUT_TRACE(traceSwitch, "moving from %d to %d", to - 1, to);
        slots()[to] = slots()[to - 1];
    }
    VXUT_TRACE(traceSwitch, "setting %d = %d", index, token);
    slots()[index] = token;
    ++m_length;
}

void TokenArray::SetAt(unsigned int index, stringtoken token) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    slots()[index] = token;
}

void TokenArray::DeleteAt(unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    --m_length;
    for (unsigned int to = index; to < m_length; ++to)
        slots()[to] = slots()[to + 1];
}

stringtoken& TokenArray::operator[](unsigned int index) {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

const stringtoken& TokenArray::operator[](unsigned int index) const {
    if (index >= m_length)
        VXUT_THROW(FAILURE_INDEX, "");
    return slots()[index];
}

} // namespace utility
