#include "fw_Exception.h"

#include "fw_StableStringRepository.h"

namespace framework {

namespace {

template<std::size_t size>
void copyCut(char (&target)[size], const char* text) {
    if (text != nullptr)
        std::memcpy(target, text, strnlen(text, size - 1));
}

} // namespace

Exception::Exception(unsigned int code, const char* file, int line, const char* function, const char* message,
                     bool flag)
    : m_words{code, strings::GS.toToken(file), static_cast<std::uint32_t>(line), flag ? 1U : 0U},
      m_function{},
      m_message{} {
    copyCut(m_function, function);
    copyCut(m_message, message);
}

const char* Exception::what() const noexcept {
    return m_message;
}

const char* Exception::file() const {
    const char* text = strings::StringRepository::toString(m_words[1]);
    return text != nullptr ? text : "";
}

} // namespace framework
