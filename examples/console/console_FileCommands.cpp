#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "console_CommandGroup.h"
#include "console_Files.h"
#include "ut_Debug.h"
#include "ut_DescriptorOutputStream.h"
#include "ut_FileInputStream.h"

namespace console {

namespace {

constexpr int bytesPerLine = 16;

bool showFile(Invocation& call) {
    return readFile(call, call.word(0), [&](const char* block, int count) {
        call.answer().text("content", block, static_cast<std::size_t>(count));
        return call.isWanted();
    });
}

void addDumpLine(Answer& answer, unsigned long long offset, const char* bytes, int count) {
    char digits[17];
    std::string hex;
    std::string text;
    std::snprintf(digits, sizeof digits, "%08llx", offset);
    for (int i = 0; i < count; ++i) {
        const unsigned char byte = static_cast<unsigned char>(bytes[i]);
        hex += i > 0 ? " " : "";
        hex += utility::Debug::hexChar(static_cast<char>(byte >> 4));
        hex += utility::Debug::hexChar(static_cast<char>(byte & 15));
        text += bytes[i] >= 32 && bytes[i] <= 126 ? bytes[i] : '.';
    }
    answer.row({Value(offset).shownAs(digits), hex, text});
}

bool dump(Invocation& call) {
    unsigned long long offset = 0;
    call.answer().table("lines", {left("offset", 8, ": "), left("bytes", bytesPerLine * 3 - 1, "  "), left("text")});
    return readFile(call, call.word(0), [&](const char* block, int count) {
        for (int at = 0; at < count; at += bytesPerLine)
            addDumpLine(call.answer(), offset + static_cast<unsigned int>(at), block + at,
                        std::min(bytesPerLine, count - at));
        offset += static_cast<unsigned int>(count);
        return call.isWanted();
    });
}

// Whether `from` can be copied to `to`. Called before the target is emptied: a directory can be opened but not read,
// and a file copied to itself would be lost.
bool isCopyable(Invocation& call, const char* from, const char* to) {
    struct stat source = {};
    struct stat target = {};
    if (stat(from, &source) != 0)
        return call.fail("%s: %s", from, std::strerror(errno));
    if (S_ISDIR(source.st_mode))
        return call.fail("%s: %s", from, std::strerror(EISDIR));
    if (stat(to, &target) != 0)
        return errno == ENOENT || call.fail("%s: %s", to, std::strerror(errno));
    if (S_ISREG(source.st_mode) && source.st_dev == target.st_dev && source.st_ino == target.st_ino)
        return call.fail("%s and %s are the same file", from, to);
    return true;
}

bool copy(Invocation& call) {
    const char* from = call.word(0);
    const char* to = call.word(1);
    utility::FileInputStream in(from);
    if (!in.isInputStreamOpen())
        return call.fail("%s: %s", from, std::strerror(in.errorNumber()));
    if (!isCopyable(call, from, to))
        return false;
    const int target = open(to, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (target < 0)
        return call.fail("%s: %s", to, std::strerror(errno));
    utility::DescriptorOutputStream out(target);
    const bool read = readFile(call, in, from, [&](const char* block, int count) {
        return out.SendOutputStream(block, static_cast<unsigned int>(count));
    });
    // A file system may report a failed write only when the file is closed.
    const int closeError = close(target) == 0 ? 0 : errno;
    if (!read && Interruption::isRequested())
        return call.fail("interrupted: %s is incomplete", to);
    if (!read)
        return false;
    const int error = out.errorNumber() != 0 ? out.errorNumber() : closeError;
    if (error != 0)
        return call.fail("%s: %s", to, std::strerror(error));
    return true;
}

constexpr Command commands[] = {{"show file", "PATH", "show a text file", 1, 1, showFile, COMPLETE_PATHS},
                                {"dump", "PATH", "show a file in hexadecimal", 1, 1, dump, COMPLETE_PATHS},
                                {"copy", "FROM TO", "copy a file", 2, 2, copy, COMPLETE_PATHS}};

} // namespace

constexpr CommandGroup fileCommands("Files", commands);

} // namespace console
