#pragma once

#include <string>
#include <vector>

namespace test {

/// The names in a directory of texts in the order of their indexes; "(free)" for an index without a name.
template<typename Directory>
std::vector<std::string> contentOf(Directory& directory) {
    std::vector<std::string> names;
    for (int index = 0; index < directory.NumElements(); ++index) {
        const char* const name = directory.ElementAt(index);
        names.push_back(name != nullptr ? name : "(free)");
    }
    return names;
}

/// Adds `names` to a directory of texts.
template<typename Directory>
void fill(Directory& directory, const std::vector<std::string>& names) {
    for (const std::string& name : names)
        directory.Add(name.c_str());
}

} // namespace test
