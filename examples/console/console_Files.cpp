#include "console_Files.h"

#include <cstring>

namespace console {

std::string firstLineOf(const std::string& path) {
    utility::FileInputStream file(path.c_str());
    char block[4096];
    const int count = file.ReceiveInputStream(block, sizeof block);
    const std::string text(block, static_cast<std::size_t>(count > 0 ? count : 0));
    const std::size_t end = text.find('\n');
    std::string line = text.substr(0, end);
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

} // namespace console
