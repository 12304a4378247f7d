#pragma once

#include <cstring>

#include "console_Command.h"
#include "ut_FileInputStream.h"

namespace console {

/// Hands each block of `file`, which was opened at `path`, to `take`, until that gives false. False, with the failure
/// set, when the file cannot be read to its end.
template<typename Take>
bool readFile(Invocation& call, utility::FileInputStream& file, const char* path, Take take) {
    char block[16384];
    int count = 0;
    do {
        count = file.ReceiveInputStream(block, sizeof block);
        if (count < 0)
            return call.fail("%s: %s", path, std::strerror(file.errorNumber()));
    } while (count > 0 && take(block, count));
    return true;
}

template<typename Take>
bool readFile(Invocation& call, const char* path, Take take) {
    utility::FileInputStream file(path);
    return readFile(call, file, path, take);
}

/// The first line of a small file such as those of the system, without its end; empty when it cannot be read.
std::string firstLineOf(const std::string& path);

} // namespace console
