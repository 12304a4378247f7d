#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "console_Command.h"
#include "ut_FileInputStream.h"

namespace console {

/// Passes each block of `file`, which was opened at `path`, to `take` until `take` returns false. Returns false, with
/// the failure set, if reading fails or the user interrupts it.
template<typename Take>
bool readFile(Invocation& call, utility::FileInputStream& file, const char* path, Take take) {
    char block[16384];
    int count = 0;
    do {
        count = file.ReceiveInputStream(block, sizeof block);
        if (count < 0)
            return call.fail("%s: %s", path, std::strerror(file.errorNumber()));
    } while (count > 0 && take(block, count) && !Interruption::isRequested());
    return !Interruption::isRequested() || call.fail("%s: interrupted", path);
}

/// As the overload for an open file; opens the file at `path` first.
template<typename Take>
bool readFile(Invocation& call, const char* path, Take take) {
    utility::FileInputStream file(path);
    return readFile(call, file, path, take);
}

/// Returns the first line of a small file such as those of the system, without its end and trailing blanks; empty if
/// there is no such file, or if it cannot be read.
/// - `failure`: set to the path and the reason if the file exists but cannot be read, unless it is set already
std::string firstLineOf(const std::string& path, std::string* failure);

/// Returns the names in a directory in alphabetical order, without those that begin with a dot; none if there is no
/// such directory.
/// - `failure`: set to the path and the reason if the directory exists but cannot be read to its end, unless it is set
///   already
std::vector<std::string> namesIn(const std::string& directory, std::string* failure);

} // namespace console
