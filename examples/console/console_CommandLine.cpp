#include "console_CommandLine.h"

#include <getopt.h>

namespace console {

namespace {

enum LongOption { OPTION_JSON = 256, OPTION_ROOT, OPTION_VERSION };

constexpr option longOptions[] = {{"help", no_argument, nullptr, 'h'},
                                  {"json", no_argument, nullptr, OPTION_JSON},
                                  {"root", required_argument, nullptr, OPTION_ROOT},
                                  {"version", no_argument, nullptr, OPTION_VERSION},
                                  {nullptr, 0, nullptr, 0}};

void take(CommandLine* result, int letter, const char* word) {
    switch (letter) {
    case 'c':
    case 'f':
        result->sources.push_back({letter == 'f', optarg});
        break;
    case 'e':
        result->stopsAtFailure = true;
        break;
    case 'h':
        result->asks = CommandLine::FOR_HELP;
        break;
    case OPTION_JSON:
        result->settings.isJson = true;
        break;
    case OPTION_ROOT:
        result->settings.root = optarg;
        break;
    case OPTION_VERSION:
        result->asks = CommandLine::FOR_VERSION;
        break;
    default:
        if (result->problem.empty())
            result->problem = std::string(letter == ':' ? "an argument is missing after " : "unknown option ") + word;
        break;
    }
}

} // namespace

CommandLine parseCommandLine(int argc, char** argv) {
    CommandLine result;
    optind = 1;
    for (;;) {
        const int at = optind;
        // '+': the words keep their order; ':': a missing argument is not reported by getopt.
        const int letter = getopt_long(argc, argv, "+:c:ef:h", longOptions, nullptr);
        if (letter == -1)
            break;
        take(&result, letter, argv[at]);
    }
    if (result.problem.empty() && optind < argc)
        result.problem = std::string("not an option: ") + argv[optind];
    return result;
}

const char* usageText() {
    return "usage: vxconsole [-e] [--json] [--root DIR] [-c COMMAND | -f FILE]...\n"
           "  -c COMMAND  run a command; may be given several times\n"
           "  -f FILE     run each line of a file as a command; - is standard input\n"
           "  -e          stop at the first command that fails\n"
           "  --json      answer each command with a JSON object on a line of its own\n"
           "  --root DIR  read DIR/sys, DIR/proc and DIR/etc instead of those of this machine\n"
           "  --version   show the version\n"
           "Without -c and -f, commands are read from the terminal or, line by line, from standard input.\n"
           "Empty lines and lines that begin with # are skipped. Enter \"help\" for a list of all commands.\n"
           "Exit status: 0 if every command succeeded, 1 if one failed, 2 if the command line is wrong.\n";
}

} // namespace console
