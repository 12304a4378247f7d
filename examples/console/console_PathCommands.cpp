#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "console_CommandGroup.h"
#include "ut_DirIterator.h"
#include "ut_Misc.h"
#include "ut_Path.h"
#include "ut_URL.h"

namespace console {

namespace {

const char* typeOf(mode_t mode) {
    if (S_ISREG(mode))
        return "file";
    if (S_ISDIR(mode))
        return "directory";
    if (S_ISLNK(mode))
        return "link";
    if (S_ISCHR(mode))
        return "character";
    if (S_ISBLK(mode))
        return "block";
    return S_ISFIFO(mode) ? "pipe" : "socket";
}

bool list(Invocation& call) {
    utility::DirIterator entries(call.word(0), call.wordCount() > 1 ? call.word(1) : "*");
    if (!entries.open())
        return call.fail("%s: %s", call.word(0), std::strerror(errno));
    std::vector<std::string> names;
    for (const char* name = entries.getFirst(nullptr); name != nullptr; name = entries.getNext())
        names.emplace_back(name);
    const bool isReadToEnd = !entries.inError();
    std::string failure;
    std::sort(names.begin(), names.end());
    call.answer().table("entries", {left("type", 9), right("size", 20), left("name")});
    for (const std::string& name : names) {
        struct stat status = {};
        char size[32];
        const std::string path = entries.getPath() + name;
        if (lstat(path.c_str(), &status) != 0) {
            // An entry may have been removed since the directory was read.
            if (errno != ENOENT && failure.empty())
                failure = path + ": " + std::strerror(errno);
            continue;
        }
        const long long bytes = status.st_size;
        call.answer().row(
            {typeOf(status.st_mode), Value(bytes).shownAs(utility::Misc::toDecimal(bytes, size, sizeof size)), name});
    }
    if (!isReadToEnd)
        return call.fail("%s: cannot be read to its end", call.word(0));
    return failure.empty() || call.fail("%s", failure.c_str());
}

bool showPath(Invocation& call) {
    utility::Path path(call.word(0));
    call.answer().field("directory", path.getPath());
    call.answer().field("file", path.getFile());
    call.answer().field("extension", path.getExtension());
    call.answer().table("components", {right("index", 9, "  "), left("name")});
    for (unsigned int i = 0; i < path.componentCount(); ++i)
        call.answer().row({i, path.component(i) != nullptr ? path.component(i) : ""});
    const bool leavesRoot = !path.isValid();
    const std::string normal = path.getValue();
    call.answer().field("normal", Value(normal).shownAs(normal + (leavesRoot ? " (leaves its root)" : "")));
    call.answer().detail("leavesRoot", leavesRoot);
    return true;
}

bool find(Invocation& call) {
    utility::Path path(nullptr, nullptr, nullptr);
    path.setFullFile(call.word(0));
    if (!path.find(call.word(1)))
        return call.fail("%s: not found in %s", call.word(0), call.word(1));
    call.answer().line("path", path.getValue());
    return true;
}

bool showUrl(Invocation& call) {
    utility::URL url(call.word(0));
    call.answer().field("scheme", url.GetScheme());
    call.answer().field("authority", url.GetAuthority());
    call.answer().field("path", url.GetPath());
    call.answer().field("query", url.GetQuery());
    call.answer().field("decoded", url.GetValue());
    return true;
}

constexpr Command commands[] = {
    {"ls", "DIRECTORY [PATTERN]", "list a directory", 1, 2, list, COMPLETE_PATHS},
    {"path", "TEXT", "show the parts of a path and its normal form", 1, 1, showPath},
    {"find", "FILE PATHLIST", "find a file in a colon-separated list of directories", 2, 2, find, COMPLETE_PATHS},
    {"url", "TEXT", "show the parts of a URL, decoded", 1, 1, showUrl}};

} // namespace

constexpr CommandGroup pathCommands("Paths and URLs", commands);

} // namespace console
