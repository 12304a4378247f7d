#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>

#include "console_CommandGroups.h"
#include "console_CommandTable.h"
#include "fw_StableStringRepository.h"
#include "ut_Debug.h"
#include "ut_Environment.h"

namespace console {

namespace {

constexpr stringtoken lastSwitch = 8191;

// Lists the commands that begin with the given words; without words, all commands.
bool help(Invocation& call) {
    std::string beginning;
    for (unsigned int i = 0; i < call.wordCount(); ++i)
        beginning += (i > 0 ? " " : "") + std::string(call.word(i));
    std::size_t width = 0;
    const Command* command = nullptr;
    for (unsigned int i = 0; (command = commandAt(i)) != nullptr; ++i)
        width = std::max(width, std::strlen(command->name) + 1 + std::strlen(command->arguments));
    bool found = false;
    for (unsigned int i = 0; (command = commandAt(i)) != nullptr; ++i) {
        const std::string usage = std::string(command->name) + " " + command->arguments;
        if (usage.compare(0, beginning.size(), beginning) != 0)
            continue;
        found = true;
        call.out().PutF("%-*s  %s\n", static_cast<int>(width), usage.c_str(), command->summary);
    }
    return found || call.fail("%s: no such command (try help)", beginning.c_str());
}

bool showEnvironment(Invocation& call) {
    utility::Environment::globalInformation(call.out(), 0);
    return true;
}

bool isAnySwitchOn() {
    stringtoken n = 0;
    while (n <= lastSwitch && !utility::Debug::isDebugOn(n))
        ++n;
    return n <= lastSwitch;
}

bool showSwitches(Invocation& call) {
    if (!isAnySwitchOn())
        call.out().PutS("no debug switch is on");
    utility::Debug::debugState(&call.out());
    call.out().PutC('\n');
    return true;
}

bool setSwitch(Invocation& call, bool on) {
    if (strings::GS.toToken(call.word(0)) > lastSwitch)
        return call.fail("%s: all debug switches for new names are in use", call.word(0));
    utility::Debug::setDebugValue(call.word(0), on);
    return true;
}

bool setSwitchOn(Invocation& call) {
    return setSwitch(call, true);
}

bool setSwitchOff(Invocation& call) {
    return setSwitch(call, false);
}

bool history(Invocation& call) {
    const std::string text = call.history().text();
    call.out().SendOutputStream(text.data(), static_cast<unsigned int>(text.size()));
    return true;
}

bool setVariable(Invocation& call) {
    if (utility::Environment::SetEnv(call.word(0), call.word(1)) != 0)
        return call.fail("%s: %s", call.word(0), std::strerror(errno));
    return true;
}

bool quit(Invocation& call) {
    call.end();
    return true;
}

} // namespace

constexpr Command generalCommands[] = {
    {"help", "[COMMAND]", "list all commands, or those that begin with COMMAND", 0, 2, help},
    {"show environment", "", "show the environment of this process", 0, 0, showEnvironment},
    {"set", "NAME VALUE", "set an environment variable of this process", 2, 2, setVariable},
    {"history", "", "show the last commands and answers", 0, 0, history, REMEMBER_NOTHING},
    {"debug", "", "show the debug switches that are on", 0, 0, showSwitches},
    {"debug on", "NAME", "turn a debug switch on", 1, 1, setSwitchOn},
    {"debug off", "NAME", "turn a debug switch off", 1, 1, setSwitchOff},
    {"quit", "", "leave the console", 0, 0, quit},
    {nullptr, nullptr, nullptr, 0, 0, nullptr}};

} // namespace console
