#include "console_CommandTable.h"

#include <cstring>

#include "console_CommandGroups.h"

namespace console {

namespace {

const Command* const groups[] = {generalCommands, fileCommands};

/// How many of a name's words are there, and whether the words given spell it or begin it.
struct Match {
    unsigned int nameWords;
    bool begins;
    bool spells;
};

Match match(const Command& command, const utility::StringArray& words) {
    Match result = {0, true, true};
    for (const char* name = command.name; *name != 0; ++result.nameWords) {
        const std::size_t length = std::strcspn(name, " ");
        const char* word = words.ElementAt(result.nameWords);
        const std::size_t given = word != nullptr ? std::strlen(word) : 0;
        if (given == 0 || given > length || std::strncmp(name, word, given) != 0)
            result.begins = false;
        if (given != length)
            result.spells = false;
        name += length + (name[length] == ' ' ? 1 : 0);
    }
    result.spells = result.spells && result.begins;
    return result;
}

/// How well a command fits the words given; of equal beginnings none is better.
enum Fit { FIT_NONE, FIT_NAME_ALONE, FIT_BEGINNING, FIT_SPELLED, FIT_SPELLED_LONGER };

Fit fit(const Command& command, const Match& match, unsigned int wordCount) {
    if (!match.begins)
        return FIT_NONE;
    if (!match.spells)
        return FIT_BEGINNING;
    if (match.nameWords > 1)
        return FIT_SPELLED_LONGER;
    // "debug of" rather begins "debug off" than being "debug" with an argument that it does not take.
    const unsigned int arguments = wordCount - match.nameWords;
    return arguments >= command.fewest && arguments <= command.most ? FIT_SPELLED : FIT_NAME_ALONE;
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
    const Command* best = nullptr;
    Fit bestFit = FIT_NONE;
    std::string names;
    for (unsigned int i = 0; const Command* command = commandAt(i); ++i) {
        const Match matched = match(*command, words);
        const Fit found = fit(*command, matched, words.length());
        if (found == FIT_NONE || found < bestFit)
            continue;
        names = found > bestFit ? command->name : names + ", " + command->name;
        best = found > bestFit ? command : nullptr;
        bestFit = found;
        if (best != nullptr)
            *used = matched.nameWords;
    }
    if (best != nullptr)
        return best;
    if (bestFit != FIT_NONE) {
        *problem = "ambiguous command: " + names;
    } else {
        const char* word = words.ElementAt(0);
        *problem = "unknown command: " + std::string(word != nullptr ? word : "") + " (try help)";
    }
    return nullptr;
}

} // namespace console
