#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "console_CommandGroups.h"
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
        call.out().PutF("%-9s %20s %s\n", typeOf(status.st_mode),
                        utility::Misc::toDecimal(static_cast<long long>(status.st_size), size, sizeof size),
                        name.c_str());
    }
    if (!isReadToEnd)
        return call.fail("%s: cannot be read to its end", call.word(0));
    return failure.empty() || call.fail("%s", failure.c_str());
}

bool showPath(Invocation& call) {
    utility::Path path(call.word(0));
    call.out().PutF("directory  %s\nfile       %s\nextension  %s\n", path.getPath(), path.getFile(),
                    path.getExtension());
    for (unsigned int i = 0; i < path.componentCount(); ++i)
        call.out().PutF("%9u  %s\n", i, path.component(i) != nullptr ? path.component(i) : "");
    const bool valid = path.isValid();
    call.out().PutF("normal     %s%s\n", path.getValue(), valid ? "" : " (leaves its root)");
    return true;
}

bool find(Invocation& call) {
    utility::Path path(nullptr, nullptr, nullptr);
    path.setFullFile(call.word(0));
    if (!path.find(call.word(1)))
        return call.fail("%s: not found in %s", call.word(0), call.word(1));
    call.out().PutF("%s\n", path.getValue());
    return true;
}

void showPart(Invocation& call, const char* name, const char* part) {
    call.out().PutF("%-10s %s\n", name, part != nullptr ? part : "-");
}

bool showUrl(Invocation& call) {
    utility::URL url(call.word(0));
    showPart(call, "scheme", url.GetScheme());
    showPart(call, "authority", url.GetAuthority());
    showPart(call, "path", url.GetPath());
    showPart(call, "query", url.GetQuery());
    showPart(call, "decoded", url.GetValue());
    return true;
}

} // namespace

constexpr Command pathCommands[] = {
    {"ls", "DIRECTORY [PATTERN]", "list a directory", 1, 2, list},
    {"path", "TEXT", "show the parts of a path and its normal form", 1, 1, showPath},
    {"find", "FILE PATHLIST", "find a file in a colon-separated list of directories", 2, 2, find},
    {"url", "TEXT", "show the parts of a URL, decoded", 1, 1, showUrl},
    {nullptr, nullptr, nullptr, 0, 0, nullptr}};

} // namespace console
