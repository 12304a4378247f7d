#include "console_Files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ut_DirIterator.h"

namespace console {

std::vector<std::string> namesIn(const std::string& directory, std::string* failure) {
    std::vector<std::string> names;
    utility::DirIterator entries(directory.c_str(), "[!.]*");
    if (!entries.open()) {
        if (errno != ENOENT && failure->empty())
            *failure = directory + ": " + std::strerror(errno);
        return names;
    }
    for (const char* name = entries.getFirst(nullptr); name != nullptr; name = entries.getNext())
        names.emplace_back(name);
    if (entries.inError() && failure->empty())
        *failure = directory + ": cannot be read to its end";
    std::sort(names.begin(), names.end());
    return names;
}

std::string firstLineOf(const std::string& path, std::string* failure) {
    utility::FileInputStream file(path.c_str());
    char block[4096];
    std::string line;
    std::size_t end = std::string::npos;
    int count = 0;
    while (end == std::string::npos && (count = file.ReceiveInputStream(block, sizeof block)) > 0) {
        line.append(block, static_cast<std::size_t>(count));
        end = line.find('\n');
    }
    if (count < 0) {
        if (file.errorNumber() != ENOENT && failure->empty())
            *failure = path + ": " + std::strerror(file.errorNumber());
        return "";
    }
    line.erase(std::min(end, line.size()));
    while (!line.empty() && line.back() == ' ')
        line.pop_back();
    return line;
}

} // namespace console
