// Takes a command line apart and works on the path that it names.

#include <cstdio>

#include "ut_Arguments.h"
#include "ut_Environment.h"
#include "ut_Path.h"
#include "ut_Ranges.h"
#include "ut_Text.h"

int main() {
    const utility::Arguments command("copy \"/srv/my reports/../today.txt\" -lines 20 -quiet");
    std::printf("%u words, %ld lines%s\n", command.ArgCount(), command.ArgInt("-LINES"),
                command.isArg("-quiet") ? ", quiet" : "");

    utility::Path path(command.ArgValue(1));
    std::printf("directory '%s', name '%s', extension '%s'\n", path.getPath(), path.getFile(), path.getExtension());
    // Removes "..": the path could otherwise lead out of its directory.
    if (!path.isValid())
        return 1;
    path.setExtension("bak");
    std::printf("%s\n", utility::toText(path).c_str());

    utility::Environment settings;
    settings.set("LINES", "20");
    settings.set("TARGET", path.getValue());
    for (const auto& [name, value] : utility::range(settings))
        std::printf("%s=%s\n", name.c_str(), value.c_str());
    return 0;
}
