#include "console_Processes.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <sstream>

#include <sys/stat.h>
#include <unistd.h>

#include "console_Files.h"
#include "console_SmallFile.h"

namespace console {

namespace {

using UserNames = std::map<unsigned int, std::string>;

// Returns the names in a password file; the first name of a number counts.
UserNames userNamesIn(const std::string& path) {
    UserNames names;
    SmallFile file(path);
    while (const char* line = file.readLine()) {
        std::istringstream in(line);
        std::string name;
        std::string password;
        unsigned int user = 0;
        if (std::getline(in, name, ':') && std::getline(in, password, ':') && in >> user)
            names.emplace(user, name);
    }
    return names;
}

std::string userOf(const std::string& folder, const UserNames& names) {
    struct stat status = {};
    if (stat(folder.c_str(), &status) != 0)
        return "";
    const auto found = names.find(status.st_uid);
    return found != names.end() ? found->second : std::to_string(status.st_uid);
}

// Returns the arguments with a blank between them; each of them ends with a NUL.
std::string commandLineOf(const std::string& folder) {
    std::string text = SmallFile(folder + "/cmdline").content();
    std::replace(text.begin(), text.end(), '\0', ' ');
    return trimmed(text);
}

// Fills in what the line of the file "stat" says: "ID (NAME) STATE" and numbers. Returns false if it does not have that
// form. The name may contain blanks and parentheses.
bool parseStatistics(const std::string& line, Process* process) {
    constexpr int skippedBeforeTimes = 10;
    constexpr int skippedBeforeMemory = 8;
    const std::size_t open = line.find('(');
    const std::size_t close = line.rfind(')');
    if (open == std::string::npos || close == std::string::npos || close < open)
        return false;
    std::istringstream in(line.substr(close + 1));
    std::string skipped;
    unsigned long long userTicks = 0;
    unsigned long long systemTicks = 0;
    unsigned long long pages = 0;
    in >> process->state;
    for (int i = 0; i < skippedBeforeTimes; ++i)
        in >> skipped;
    in >> userTicks >> systemTicks;
    for (int i = 0; i < skippedBeforeMemory; ++i)
        in >> skipped;
    if (!(in >> pages))
        return false;
    process->cpuSeconds =
        static_cast<double>(userTicks + systemTicks) / static_cast<double>(std::max(sysconf(_SC_CLK_TCK), 1L));
    process->bytes = pages * static_cast<unsigned long long>(std::max(sysconf(_SC_PAGESIZE), 1L));
    process->command = '[' + line.substr(open + 1, close - open - 1) + ']';
    return true;
}

std::optional<Process> processIn(const std::string& folder, unsigned int id, const UserNames& names) {
    Process process = {};
    process.id = id;
    if (!parseStatistics(SmallFile(folder + "/stat").content(), &process))
        return std::nullopt;
    process.user = userOf(folder, names);
    const std::string commandLine = commandLineOf(folder);
    if (!commandLine.empty())
        process.command = commandLine;
    return process;
}

bool isNumber(const std::string& name) {
    return name.find_first_not_of("0123456789") == std::string::npos;
}

} // namespace

std::vector<Process> processesUnder(const std::string& root, std::string* failure) {
    const std::string folder = root + "/proc/";
    const UserNames names = userNamesIn(root + "/etc/passwd");
    std::vector<Process> processes;
    for (const std::string& name : namesIn(folder, failure)) {
        if (!isNumber(name))
            continue;
        const auto id = static_cast<unsigned int>(std::strtoul(name.c_str(), nullptr, 10));
        const std::optional<Process> process = processIn(folder + name, id, names);
        if (process)
            processes.push_back(*process);
    }
    if (processes.empty() && failure->empty())
        *failure = root + "/proc: does not describe any process";
    return processes;
}

void sortProcesses(std::vector<Process>* processes, ProcessOrder order) {
    std::sort(processes->begin(), processes->end(), [order](const Process& one, const Process& other) {
        if (order == ProcessOrder::CPU && one.cpuSeconds != other.cpuSeconds)
            return one.cpuSeconds > other.cpuSeconds;
        if (order == ProcessOrder::MEMORY && one.bytes != other.bytes)
            return one.bytes > other.bytes;
        return one.id < other.id;
    });
}

} // namespace console
