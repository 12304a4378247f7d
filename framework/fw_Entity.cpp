#include "fw_Entity.h"

#include <new>

#include "fw_FSUMemory.h"
#include "fw_Memory.h"
#include "internal/fw_LogFormatted.h"
#include "internal/fw_Text.h"

namespace framework {

namespace {

constexpr char noMessage[] = "";
constexpr char messageWithoutMemory[] = "No memory was left for the error text";

} // namespace

Entity::Entity() : m_memory(nullptr), m_pool(nullptr), m_errorMessage(noMessage), m_inError(0) {}

Entity::Entity(const Entity& other)
    : m_memory(other.m_memory == other.m_pool ? nullptr : other.m_memory),
      m_pool(nullptr),
      m_errorMessage(noMessage),
      m_inError(0) {}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): there is nothing to assign
Entity& Entity::operator=(const Entity& /*other*/) {
    return *this;
}

Entity::~Entity() {
    dropErrorMessage();
    delete m_pool;
}

void Entity::ClearError() {
    dropErrorMessage();
    m_inError = 0;
}

void Entity::setResources() {
    if (m_memory != nullptr)
        return;
    if (m_pool == nullptr)
        m_pool = new (std::nothrow) FSUMemory(2048, 20);
    m_memory = m_pool;
}

void Entity::setError(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    setErrorFrom(format, arguments);
    va_end(arguments);
}

void Entity::setErrorFrom(const char* format, va_list arguments) {
    // Format before freeing the old text, which may be one of the arguments.
    const char* text = formatText(format != nullptr ? format : noMessage, arguments, Memory::StaticAlloc);
    dropErrorMessage();
    m_errorMessage = text != nullptr ? text : messageWithoutMemory;
    m_inError = 1;
}

// The text is allocated from the process, so that it survives a change of the entity's memory object.
void Entity::dropErrorMessage() {
    if (m_errorMessage != noMessage && m_errorMessage != messageWithoutMemory)
        Memory::StaticFreeString(m_errorMessage);
    m_errorMessage = noMessage;
}

void Entity::setMemory(Memory* memory) {
    m_memory = memory;
}

void* Entity::Alloc(unsigned long size) const {
    return m_memory != nullptr ? m_memory->allocate(size) : Memory::StaticAlloc(size);
}

void Entity::Free(const void* piece) const {
    if (piece == nullptr)
        return;
    if (m_memory != nullptr)
        m_memory->release(piece);
    else
        Memory::StaticFree(piece);
}

char* Entity::AllocString(const char* text) const {
    return copyText(text, wholeText, [this](unsigned long size) { return Alloc(size); });
}

char* Entity::AllocString(const char* text, unsigned int length) const {
    return copyText(text, length, [this](unsigned long size) { return Alloc(size); });
}

void Entity::FreeString(const void* text) const {
    Free(text);
}

void Entity::LogMethodDebug(const char* function, int line, const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    logFormatted(Logger::LOG_DEBUG, function, line, format, arguments);
    va_end(arguments);
}

void Entity::LogMethodError(const char* function, int line, const char* format, ...) const {
    va_list arguments;
    va_start(arguments, format);
    logFormatted(Logger::LOG_ERROR, function, line, format, arguments);
    va_end(arguments);
}

} // namespace framework
