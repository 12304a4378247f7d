#include "console_Memory.h"

#include <map>
#include <sstream>

#include "console_SmallFile.h"

namespace console {

Memory readMemory(const std::string& path, std::string* failure) {
    constexpr unsigned long long bytesPerUnit = 1024;
    SmallFile file(path);
    if (!file.isRead()) {
        *failure = file.failure();
        return {};
    }
    Memory memory;
    const std::map<std::string, Memory::Bytes*> figures = {
        {"MemTotal:", &memory.total},   {"MemAvailable:", &memory.available}, {"MemFree:", &memory.free},
        {"Buffers:", &memory.buffers},  {"Cached:", &memory.cached},          {"SwapTotal:", &memory.swapTotal},
        {"SwapFree:", &memory.swapFree}};
    while (const char* line = file.readLine()) {
        std::istringstream in(line);
        std::string name;
        unsigned long long value = 0;
        if (!(in >> name >> value))
            continue;
        const auto found = figures.find(name);
        if (found != figures.end())
            *found->second = value * bytesPerUnit;
    }
    if (!memory.total)
        *failure = path + ": does not contain a line MemTotal";
    return memory;
}

} // namespace console
