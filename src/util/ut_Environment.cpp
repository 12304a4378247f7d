#include "ut_Environment.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <unistd.h>

#include "fw_Memory.h"
#include "internal/ut_Failure.h"
#include "internal/ut_Trace.h"
#include "ut_PutStream.h"
#include "ut_StringArray.h"

namespace utility {

namespace {

constexpr unsigned int initialCapacity = 20;

// Appends a pair, or nothing if memory is exhausted. The table has an even number of slots, so only the first of the
// two `Append` calls can throw.
void append(StringArray& variables, const char* name, const char* value) {
    const unsigned int place = variables.length();
    variables.Append(name);
    if (variables.ElementAt(place) != nullptr) {
        variables.Append(value);
        if (variables.ElementAt(place + 1) != nullptr)
            return;
        variables.DeleteAt(place + 1);
    }
    variables.DeleteAt(place);
}

// Unlike `StringArray::SetAt`, keeps the old text if memory is exhausted.
void replace(char*& slot, const char* text) {
    // Callers rely on pointers to a value remaining valid if it is set to an equal text.
    if (std::strcmp(slot, text) == 0)
        return;
    char* const copy = framework::Memory::StaticAllocString(text);
    if (copy == nullptr)
        return;
    framework::Memory::StaticFreeString(slot);
    slot = copy;
}

} // namespace

Environment::Environment() : m_variables(new StringArray(initialCapacity)) {}

Environment::~Environment() {
    delete m_variables;
}

unsigned int Environment::length() const {
    return m_variables->length() / 2;
}

unsigned int Environment::NumElements() const {
    return length();
}

int Environment::find(const char* name) const {
    if (name == nullptr)
        return -1;
    for (unsigned int i = 0; i < m_variables->length(); i += 2) {
        const char* stored = m_variables->ElementAt(i);
        VXUT_TRACE(TOKEN_ENVIRONMENT, "check %u", i);
        VXUT_TRACE(TOKEN_ENVIRONMENT, "%s == %s", name, stored);
        if (stored != nullptr && std::strcmp(name, stored) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

const char* Environment::get(const char* name) const {
    const int index = find(name);
    return index >= 0 ? m_variables->ElementAt(static_cast<unsigned int>(index) + 1) : nullptr;
}

int Environment::getAsInt(const char* name) const {
    const char* value = get(name);
    return value != nullptr ? static_cast<int>(std::strtol(value, nullptr, 10)) : 0;
}

bool Environment::getAsBool(const char* name) const {
    return getAsInt(name) != 0;
}

bool Environment::isSet(const char* name) const {
    return find(name) >= 0;
}

void Environment::set(const char* name, const char* value) {
    if (name == nullptr || value == nullptr)
        return;
    const int index = find(name);
    if (index >= 0) {
        replace((*m_variables)[static_cast<unsigned int>(index) + 1], value);
    } else {
        append(*m_variables, name, value);
    }
}

void Environment::unset(const char* name) {
    const int index = find(name);
    if (index < 0)
        return;
    m_variables->DeleteAt(static_cast<unsigned int>(index));
    m_variables->DeleteAt(static_cast<unsigned int>(index));
}

const char* Environment::ElementAt(unsigned int i, char* nameBuffer, unsigned int bufferSize) const {
    const unsigned int count = m_variables->length();
    const bool exists = i < count / 2 && m_variables->ElementAt(i * 2) != nullptr;
    if (!exists)
        VXUT_THROW(FAILURE_INDEX, "");
    if (nameBuffer != nullptr)
        memccpy(nameBuffer, m_variables->ElementAt(i * 2), 0, bufferSize);
    return m_variables->ElementAt(i * 2 + 1);
}

void Environment::privateInformation(PutStream& out, int) const {
    for (unsigned int i = 0; i < length(); ++i) {
        char name[128];
        const char* value = ElementAt(i, name, sizeof name);
        name[sizeof name - 1] = 0;
        if (value != nullptr)
            out.PutF("%s=%s\n", name, value);
    }
}

const char* Environment::GetEnv(const char* name) {
    return name != nullptr ? std::getenv(name) : nullptr;
}

int Environment::SetEnv(const char* name, const char* value) {
    if (name != nullptr && value != nullptr)
        return setenv(name, value, 1);
    errno = EINVAL;
    return -1;
}

int Environment::UnsetEnv(const char* name) {
    if (name != nullptr)
        return unsetenv(name);
    errno = EINVAL;
    return -1;
}

void Environment::globalInformation(PutStream& out, int) {
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable) {
        out.PutS(*variable);
        out.PutS("\n");
    }
}

} // namespace utility
