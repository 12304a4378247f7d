#include "ut_DotStarFormatter.h"

#include <algorithm>
#include <cstring>

namespace utility {

namespace {

// Counts the marks in `marks`, a sequence of pairs. Returns false if a pair does not begin with '.'.
bool countMarks(const char* marks, unsigned int& level) {
    while (*marks != 0) {
        if (marks[0] != '.')
            return false;
        if (marks[1] == 0)
            return true;
        if (marks[1] == '*')
            ++level;
        marks += 2;
    }
    return true;
}

void copyName(const char* text, std::size_t length, char* name, unsigned int size) {
    if (name == nullptr)
        return;
    const std::size_t count = std::min<std::size_t>(length, size);
    std::memmove(name, text, count);
    name[count] = 0;
}

} // namespace

bool DotStarFormatter::getLevelAndName(const char* text, char* name, unsigned int size, unsigned int& level) {
    level = 0;
    if (text == nullptr)
        text = "";
    if (text[0] == '.')
        return false;
    const char* const marks = std::strstr(text, ".*");
    if (marks != nullptr && !countMarks(marks, level)) {
        level = 0;
        return false;
    }
    copyName(text, marks != nullptr ? static_cast<std::size_t>(marks - text) : std::strlen(text), name, size);
    return true;
}

} // namespace utility
