#pragma once

#include <string>
#include <vector>

#include "console_Settings.h"

namespace console {

/// The exit statuses of the program.
enum ExitStatus : int {
    exitSuccess = 0, ///< every command succeeded
    exitFailure = 1, ///< a command failed, or its answer could not be written
    exitUsage = 2    ///< the command line is wrong; no command was run
};

/// What the command line of the program requests.
///
///     const console::CommandLine commandLine = console::parseCommandLine(argc, argv);
///     if (!commandLine.problem.empty()) usage();
struct CommandLine {
    /// Text to show instead of running commands.
    enum Asked { FOR_COMMANDS, FOR_HELP, FOR_VERSION };
    /// A command, or a file with commands; "-" is standard input.
    struct Source {
        bool isFile;
        std::string text;
    };

    Asked asks = FOR_COMMANDS;
    std::vector<Source> sources; ///< in the order of the command line; if empty, commands come from standard input
    bool stopsAtFailure = false;
    Settings settings;
    std::string problem; ///< what is wrong; empty if nothing is
};

/// Reads the options. Does not write anything.
CommandLine parseCommandLine(int argc, char** argv);

/// Returns the text of `--help`.
const char* usageText();

} // namespace console
