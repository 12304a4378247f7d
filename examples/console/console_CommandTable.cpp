#include "console_CommandTable.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <set>

namespace console {

namespace {

const std::vector<const CommandGroup*> groups = {&generalCommands, &fileCommands, &textCommands, &systemCommands,
                                                 &machineCommands, &pathCommands, &userCommands};

std::string firstWordOf(const Command& command) {
    const std::string name = command.name;
    return name.substr(0, name.find(' '));
}

// Returns the second word of a name; empty if it has only one.
std::string secondWordOf(const Command& command) {
    const std::string name = command.name;
    const std::size_t blank = name.find(' ');
    return blank != std::string::npos ? name.substr(blank + 1) : "";
}

// Calls `take` for each command.
template<typename Take>
void forEachCommand(Take take) {
    for (const CommandGroup* group : groups)
        std::for_each(group->begin(), group->end(), take);
}

// Returns the first words of all names, each once, in alphabetical order.
std::vector<std::string> firstWords() {
    std::set<std::string> words;
    forEachCommand([&](const Command& command) { words.insert(firstWordOf(command)); });
    return {words.begin(), words.end()};
}

// Returns what follows `first` in the names that begin with it, in alphabetical order; for a name of one word, an empty
// text.
std::vector<std::string> secondWords(const std::string& first) {
    std::set<std::string> words;
    forEachCommand([&](const Command& command) {
        if (firstWordOf(command) == first)
            words.insert(secondWordOf(command));
    });
    return {words.begin(), words.end()};
}

std::string nameOf(const std::string& first, const std::string& second) {
    return second.empty() ? first : first + ' ' + second;
}

const Command* commandNamed(const std::string& name) {
    const Command* found = nullptr;
    forEachCommand([&](const Command& command) { found = name == command.name ? &command : found; });
    return found;
}

// Returns the names that the words abbreviate: for a name of one word, an argument may follow it.
std::vector<std::string> namesFor(const std::string& first, const char* second) {
    std::vector<std::string> names;
    for (const std::string& word : matches(firstWords(), first)) {
        std::vector<std::string> rest = secondWords(word);
        const bool isWhole = rest.front().empty();
        if (second != nullptr)
            rest = *second != 0 ? matches(rest, second) : std::vector<std::string>();
        if (second == nullptr && isWhole)
            rest = {""};
        if (rest.empty() && isWhole)
            rest.emplace_back();
        std::transform(rest.begin(), rest.end(), std::back_inserter(names),
                       [&](const std::string& last) { return nameOf(word, last); });
    }
    return names;
}

// Returns how many characters must be replaced, added or removed to turn one text into the other.
std::size_t distanceBetween(const std::string& one, const std::string& other) {
    std::vector<std::size_t> row(other.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t(0));
    for (std::size_t i = 0; i < one.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < other.size(); ++j) {
            const std::size_t replaced = diagonal + (one[i] == other[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

// Returns what to do about the unknown command that the first words are.
std::string suggestionFor(const std::string& first, const char* second) {
    std::string nearest = second != nullptr ? nearestCommand(first + ' ' + second) : "";
    if (nearest.empty())
        nearest = nearestCommand(first);
    return nearest.empty() ? " (try help)" : "; did you mean " + nearest + "? (try help)";
}

} // namespace

const std::vector<const CommandGroup*>& commandGroups() {
    return groups;
}

std::vector<std::string> matches(const std::vector<std::string>& names, const std::string& word) {
    std::vector<std::string> found;
    for (const std::string& name : names) {
        if (name == word)
            return {name};
        if (name.compare(0, word.size(), word) == 0)
            found.push_back(name);
    }
    return found;
}

const Command* commandAt(unsigned int i) {
    const Command* found = nullptr;
    forEachCommand([&](const Command& command) { found = i-- == 0 ? &command : found; });
    return found;
}

std::string nearestCommand(const std::string& text) {
    constexpr std::size_t mostErrors = 2;
    constexpr std::size_t longestText = 40;
    std::string nearest;
    std::size_t fewest = std::min(mostErrors, text.size() / 3) + 1;
    forEachCommand([&](const Command& command) {
        const std::size_t distance = text.size() <= longestText ? distanceBetween(text, command.name) : fewest;
        if (distance < fewest) {
            nearest = command.name;
            fewest = distance;
        }
    });
    return nearest;
}

Lookup findCommand(const utility::StringArray& words) {
    const std::string first = words.ElementAt(0) != nullptr ? words.ElementAt(0) : "";
    const char* second = words.ElementAt(1);
    const std::vector<std::string> names = first.empty() ? std::vector<std::string>() : namesFor(first, second);
    if (names.size() > 1)
        return {nullptr, 0, "ambiguous command: " + joined(names)};
    if (names.empty())
        return {nullptr, 0, "unknown command: " + first + suggestionFor(first, second)};
    const bool hasTwoWords = names[0].find(' ') != std::string::npos;
    return {commandNamed(names[0]), hasTwoWords && second != nullptr ? 2U : 1U, ""};
}

} // namespace console
