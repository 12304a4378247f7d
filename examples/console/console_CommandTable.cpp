#include "console_CommandTable.h"

#include <algorithm>
#include <cstring>

#include "console_CommandGroups.h"
#include "ut_Arguments.h"
#include "ut_FastSortedStringDirectory.h"
#include "ut_StringMap.h"

namespace console {

namespace {

constexpr const Command* groups[] = {generalCommands, fileCommands, textCommands,
                                     systemCommands,  pathCommands, userCommands};

// The commands by name, and their names in alphabetical order.
class Index {
public:
    Index() : m_names(0), m_commands(64) {
        const Command* command = nullptr;
        for (unsigned int i = 0; (command = commandAt(i)) != nullptr; ++i) {
            m_names.Add(command->name);
            m_commands.Add(command->name, const_cast<Command*>(command));
        }
    }

    const Command* find(const std::string& name) {
        const char* found = m_names.Find(name.c_str()) >= 0 ? name.c_str() : nullptr;
        return found != nullptr ? static_cast<const Command*>(m_commands.Lookup(found)) : nullptr;
    }
    const char* nameAt(int i) {
        return m_names.ElementAt(i);
    }
    int count() {
        return m_names.NumElements();
    }

private:
    utility::FastSortedStringDirectory m_names;
    utility::StringMap m_commands;
};

Index& theIndex() {
    static Index index;
    return index;
}

unsigned int countWords(const char* name) {
    return std::strchr(name, ' ') != nullptr ? 2 : 1;
}

bool accepts(const Command& command, unsigned int arguments) {
    return arguments >= command.fewest && arguments <= command.most;
}

// Whether each of `words` is a prefix of the word of `name` at the same position.
bool isBegunBy(const char* name, const utility::StringArray& words) {
    for (unsigned int i = 0; *name != 0 && (i == 0 || i < words.length()); ++i) {
        const std::size_t length = std::strcspn(name, " ");
        const char* word = words.ElementAt(i);
        const std::size_t given = word != nullptr ? std::strlen(word) : 0;
        if (given == 0 || given > length || std::strncmp(name, word, given) != 0)
            return false;
        name += length + (name[length] == ' ' ? 1 : 0);
    }
    return true;
}

// Returns the command with exactly this name, or null. A name of two words wins over one of a single word. A single
// word counts only if the command accepts the remaining words as arguments: "debug of" abbreviates "debug off".
const Command* findSpelled(const utility::StringArray& words, unsigned int* used) {
    const char* first = words.ElementAt(0);
    const char* second = words.ElementAt(1);
    const Command* command = second != nullptr ? theIndex().find(std::string(first) + ' ' + second) : nullptr;
    *used = 2;
    if (command != nullptr || first == nullptr)
        return command;
    command = theIndex().find(first);
    *used = 1;
    return command != nullptr && accepts(*command, words.length() - 1) ? command : nullptr;
}

// The commands that match an abbreviation.
struct Candidates {
    unsigned int count = 0;
    const Command* command = nullptr;
    std::string names;
};

// Returns the commands that `words` abbreviate; with `all`, only those with every word of the name given.
Candidates findCandidates(const utility::StringArray& words, bool all) {
    Candidates candidates;
    for (int i = 0; i < theIndex().count(); ++i) {
        const char* name = theIndex().nameAt(i);
        if (!isBegunBy(name, words) || std::strcmp(name, words.ElementAt(0)) == 0)
            continue;
        if (all && countWords(name) > words.length())
            continue;
        candidates.names += (candidates.count++ > 0 ? ", " : "") + std::string(name);
        candidates.command = theIndex().find(name);
    }
    return candidates;
}

} // namespace

const Command* commandAt(unsigned int i) {
    for (const Command* group : groups) {
        for (const Command* command = group; command->name != nullptr; ++command, --i) {
            if (i == 0)
                return command;
        }
    }
    return nullptr;
}

const Command* findCommand(const utility::StringArray& words, unsigned int* used, std::string* problem) {
    const Command* command = findSpelled(words, used);
    if (command != nullptr)
        return command;
    const std::string first = words.ElementAt(0) != nullptr ? words.ElementAt(0) : "";
    Candidates candidates = findCandidates(words, true);
    // If the first word is a command's full name, but the number of arguments is wrong, the caller reports the usage.
    if (candidates.count == 0 && theIndex().find(first) == nullptr)
        candidates = findCandidates(words, false);
    if (candidates.count == 1) {
        *used = std::min(countWords(candidates.command->name), words.length());
        return candidates.command;
    }
    if (candidates.count > 1) {
        *problem = "ambiguous command: " + candidates.names;
        return nullptr;
    }
    command = theIndex().find(first);
    *used = 1;
    if (command == nullptr)
        *problem = "unknown command: " + first + " (try help)";
    return command;
}

std::string completeCommand(const std::string& line) {
    const utility::Arguments arguments(line.c_str());
    utility::StringArray words(arguments.ArgCount());
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i)
        words.Append(arguments.ArgValue(i));
    std::string common;
    unsigned int count = 0;
    for (int i = 0; words.length() > 0 && i < theIndex().count(); ++i) {
        std::string name = theIndex().nameAt(i);
        // A single word may abbreviate the first word of a name of two.
        const bool begins = words.length() == 1
                                ? name.compare(0, std::strlen(words[0]), words[0]) == 0
                                : words.length() == countWords(name.c_str()) && isBegunBy(name.c_str(), words);
        if (!begins)
            continue;
        if (count++ == 0)
            common = name;
        while (name.compare(0, common.size(), common) != 0)
            common.pop_back();
    }
    if (count == 1)
        return common + ' ';
    return common.size() > line.size() ? common : line;
}

} // namespace console
