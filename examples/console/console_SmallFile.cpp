#include "console_SmallFile.h"

#include <cerrno>
#include <cstring>

#include "ut_FileInputStream.h"

namespace console {

namespace {

constexpr std::size_t largestSize = 64U << 20;

std::string readWhole(const std::string& path, int* error) {
    utility::FileInputStream file(path.c_str());
    std::string content;
    char block[16384];
    int count = 0;
    while ((count = file.ReceiveInputStream(block, sizeof block)) > 0) {
        content.append(block, static_cast<std::size_t>(count));
        if (content.size() > largestSize) {
            *error = EFBIG;
            return "";
        }
    }
    if (count == 0)
        return content;
    *error = file.errorNumber();
    return "";
}

} // namespace

SmallFile::SmallFile(const std::string& path)
    : m_path(path),
      m_error(0),
      m_content(readWhole(m_path, &m_error)),
      m_lines(m_content.data(), static_cast<int>(m_content.size())) {
    m_lines.WriteAdvance(static_cast<int>(m_content.size()));
}

std::string SmallFile::failure() const {
    return m_path + ": " + std::strerror(m_error);
}

char* SmallFile::readLine() {
    return m_lines.ReadLine();
}

std::string trimmed(const std::string& text) {
    const std::string blanks(" \t\r\0", 4);
    const std::size_t first = text.find_first_not_of(blanks);
    return first != std::string::npos ? text.substr(first, text.find_last_not_of(blanks) - first + 1) : "";
}

} // namespace console
