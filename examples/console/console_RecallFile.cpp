#include "console_RecallFile.h"

#include <cstdio>
#include <fstream>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ut_Environment.h"

namespace console {

namespace {

constexpr mode_t onlyOwner = 0600;
constexpr mode_t onlyOwnersFolder = 0700;

void makeFolders(const std::string& path) {
    for (std::size_t at = path.find('/', 1); at != std::string::npos; at = path.find('/', at + 1))
        mkdir(path.substr(0, at).c_str(), onlyOwnersFolder);
}

// Writes `text` to the end of the file at `path` with one call, so that lines of several consoles stay whole.
bool append(const std::string& path, const std::string& text) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOFOLLOW, onlyOwner);
    if (file < 0)
        return false;
    const bool isWritten = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    close(file);
    return isWritten;
}

} // namespace

std::vector<std::string> RecallFile::lines() const {
    std::vector<std::string> all;
    std::ifstream file(m_path);
    for (std::string line; std::getline(file, line);) {
        if (!line.empty())
            all.push_back(line);
    }
    if (all.size() > most) {
        const bool isMuchLonger = all.size() > 2 * most;
        all.erase(all.begin(), all.end() - most);
        if (isMuchLonger)
            shorten(all);
    }
    return all;
}

// Replaces the file at once, so that it is whole at any time.
void RecallFile::shorten(const std::vector<std::string>& lines) const {
    std::string text;
    for (const std::string& line : lines)
        text += line + '\n';
    const std::string newPath = m_path + ".new";
    unlink(newPath.c_str());
    if (!append(newPath, text) || std::rename(newPath.c_str(), m_path.c_str()) != 0)
        unlink(newPath.c_str());
}

void RecallFile::add(const std::string& line) const {
    if (m_path.empty() || line.find('\n') != std::string::npos)
        return;
    makeFolders(m_path);
    append(m_path, line + '\n');
}

std::string RecallFile::defaultPath() {
    const char* state = utility::Environment::GetEnv("XDG_STATE_HOME");
    const char* home = utility::Environment::GetEnv("HOME");
    // Relative paths count as unset, as the XDG rules require.
    if (state != nullptr && *state == '/')
        return std::string(state) + "/vxconsole/history";
    return home != nullptr && *home == '/' ? std::string(home) + "/.local/state/vxconsole/history" : "";
}

} // namespace console
