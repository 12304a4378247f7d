#include "console_Completion.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <memory>

#include <pwd.h>
#include <sys/stat.h>

#include "console_CommandTable.h"
#include "fw_StableStringRepository.h"
#include "ut_Arguments.h"
#include "ut_DirIterator.h"
#include "ut_PWService.h"

namespace console {

namespace {

constexpr stringtoken lastSwitch = 8191;
constexpr std::size_t longestEntry = 2048;

using Names = std::vector<std::string>;

bool begins(const std::string& text, const std::string& beginning) {
    return text.compare(0, beginning.size(), beginning) == 0;
}

// Returns the position of the last word of `line`, which may be empty; with its quote if it is in quotes.
std::size_t startOfLastWord(const std::string& line) {
    std::size_t start = 0;
    bool isQuoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool isBlank = std::isspace(static_cast<unsigned char>(line[i])) != 0;
        const bool opens = line[i] == '"' && i == start;
        const bool closes = line[i] == '"' && isQuoted;
        if (opens && !isQuoted)
            isQuoted = true;
        else if (closes)
            isQuoted = false;
        if ((isBlank && !isQuoted) || (closes && !opens))
            start = i + 1;
    }
    return start;
}

Names switchesFor(const std::string& word) {
    Names names;
    for (stringtoken n = 0; n <= lastSwitch; ++n) {
        const char* name = strings::StringRepository::toString(n);
        const bool isWord = name != nullptr && *name != 0 && std::strpbrk(name, " \t\"%") == nullptr;
        if (isWord && begins(name, word))
            names.push_back(std::string(name) + ' ');
    }
    return names;
}

Names usersFor(const std::string& word) {
    Names names;
    const char* path = utility::PWService::getFileName();
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path != nullptr ? path : "", "re"),
                                                               std::fclose);
    passwd user = {};
    passwd* result = nullptr;
    char texts[longestEntry];
    while (file != nullptr && fgetpwent_r(file.get(), &user, texts, sizeof texts, &result) == 0) {
        if (begins(user.pw_name, word))
            names.push_back(std::string(user.pw_name) + ' ');
    }
    return names;
}

// Returns a path as a word: in quotes if it contains blanks. A folder's word stays open, so that it can go on.
std::string wordOf(const std::string& path, bool isFolder) {
    const bool needsQuotes = path.find_first_of(" \t") != std::string::npos;
    const std::string opened = (needsQuotes ? "\"" : "") + path;
    return isFolder ? opened + '/' : opened + (needsQuotes ? "\" " : " ");
}

Names pathsFor(const std::string& word) {
    Names names;
    const std::size_t slash = word.rfind('/');
    const std::string folder = slash != std::string::npos ? word.substr(0, slash + 1) : "";
    const std::string beginning = slash != std::string::npos ? word.substr(slash + 1) : word;
    utility::DirIterator entries(folder.empty() ? "." : folder.c_str(), "*");
    if (!entries.open())
        return names;
    for (const char* name = entries.getFirst(nullptr); name != nullptr; name = entries.getNext()) {
        const bool isHidden = *name == '.' && begins(name, beginning) && beginning.empty();
        const bool isSpecial = std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
        // A quote cannot be written in a word, and a control character cannot be typed.
        const bool isTypeable = std::none_of(name, name + std::strlen(name), [](char c) {
            return c == '"' || std::iscntrl(static_cast<unsigned char>(c)) != 0;
        });
        struct stat status = {};
        const std::string path = folder + name;
        if (!begins(name, beginning) || isHidden || isSpecial || !isTypeable)
            continue;
        names.push_back(wordOf(path, stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode)));
    }
    return names;
}

// Returns the words that can follow the words `before` in the names of commands.
Names namesFor(const utility::StringArray& before, const std::string& word) {
    Names names;
    const Command* command = nullptr;
    for (unsigned int i = 0; before.length() < 2 && (command = commandAt(i)) != nullptr; ++i) {
        const std::string name = command->name;
        const std::size_t blank = std::min(name.find(' '), name.size());
        const bool isSecond = before.length() == 1;
        if (isSecond && !begins(name.substr(0, blank), before[0]))
            continue;
        const std::string candidate = isSecond ? name.substr(std::min(blank + 1, name.size())) : name.substr(0, blank);
        if (!candidate.empty() && begins(candidate, word))
            names.push_back(candidate + ' ');
    }
    return names;
}

Names argumentsFor(Completed kind, const std::string& word) {
    switch (kind) {
    case COMPLETE_PATHS:
        return pathsFor(word);
    case COMPLETE_SWITCHES:
        return switchesFor(word);
    case COMPLETE_USERS:
        return usersFor(word);
    case COMPLETE_COMMANDS:
        return namesFor(utility::StringArray(0), word);
    default:
        return {};
    }
}

} // namespace

Completion complete(const std::string& line) {
    const std::size_t start = startOfLastWord(line);
    const std::string given = line.substr(start);
    const std::string word = given.empty() || given[0] != '"' ? given : given.substr(1);
    const utility::Arguments arguments(line.substr(0, start).c_str());
    utility::StringArray before(0);
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i)
        before.Append(arguments.ArgValue(i));

    Names candidates = namesFor(before, word);
    if (before.length() > 0) {
        const Lookup found = findCommand(before);
        // The words name a command, and this is one of its arguments.
        if (found.command != nullptr && before.length() - found.used < found.command->most) {
            const Names more = argumentsFor(found.command->completed, word);
            candidates.insert(candidates.end(), more.begin(), more.end());
        }
    }
    std::sort(candidates.begin(), candidates.end());
    candidates.erase(std::unique(candidates.begin(), candidates.end()), candidates.end());
    return {given.size(), candidates};
}

std::string commonBeginning(const std::vector<std::string>& candidates) {
    std::string common = candidates.empty() ? "" : candidates[0];
    for (const std::string& candidate : candidates) {
        while (!begins(candidate, common))
            common.pop_back();
    }
    const auto isContinuation = [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    };
    // The candidates differ within a character: drop its first bytes.
    if (!candidates.empty() && common.size() < candidates[0].size() && isContinuation(candidates[0][common.size()])) {
        while (!common.empty() && isContinuation(common.back()))
            common.pop_back();
        if (!common.empty())
            common.pop_back();
    }
    return common;
}

} // namespace console
