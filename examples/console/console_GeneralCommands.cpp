#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

#include <unistd.h>

#include "console_CommandGroup.h"
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
        width = std::max(width, usageOf(*command).size());
    call.answer().table("commands", {left("usage", static_cast<unsigned int>(width), "  "), left("summary")});
    bool found = false;
    for (unsigned int i = 0; (command = commandAt(i)) != nullptr; ++i) {
        const std::string usage = usageOf(*command) + (*command->arguments == 0 ? " " : "");
        if (usage.compare(0, beginning.size(), beginning) != 0)
            continue;
        found = true;
        call.answer().row({usageOf(*command), command->summary});
    }
    return found || call.fail("%s: no such command (try help)", beginning.c_str());
}

bool showEnvironment(Invocation& call) {
    call.answer().table("variables", {left("name", 0, "="), left("value")});
    for (char** variable = environ; *variable != nullptr; ++variable) {
        const std::string text = *variable;
        const std::size_t end = std::min(text.find('='), text.size());
        call.answer().row({text.substr(0, end), text.substr(std::min(end + 1, text.size()))});
    }
    return true;
}

bool showSwitches(Invocation& call) {
    std::vector<std::string> names;
    for (stringtoken n = 0; n <= lastSwitch; ++n) {
        const char* name = utility::Debug::isDebugOn(n) ? strings::StringRepository::toString(n) : nullptr;
        if (name != nullptr)
            names.emplace_back(name);
    }
    const Value switches(names);
    call.answer().line("switches", names.empty() ? switches.shownAs("no debug switch is on") : switches);
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
    const std::string text = call.terminal().history().text();
    call.answer().text("text", text.data(), text.size());
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

constexpr Command commands[] = {
    {"help", "[COMMAND]", "list all commands, or those that begin with COMMAND", 0, 2, help, COMPLETE_COMMANDS},
    {"show environment", "", "show the environment of this process", 0, 0, showEnvironment},
    {"set", "NAME VALUE", "set an environment variable of this process", 2, 2, setVariable},
    {"history", "", "show the last commands and answers", 0, 0, history, COMPLETE_NOTHING, REMEMBER_NOTHING},
    {"debug", "", "show the debug switches that are on", 0, 0, showSwitches},
    {"debug on", "NAME", "turn a debug switch on", 1, 1, setSwitchOn, COMPLETE_SWITCHES},
    {"debug off", "NAME", "turn a debug switch off", 1, 1, setSwitchOff, COMPLETE_SWITCHES},
    {"?", "[COMMAND]", "do the same as help", 0, 2, help, COMPLETE_COMMANDS},
    {"quit", "", "leave the console", 0, 0, quit},
    {"exit", "", "do the same as quit", 0, 0, quit}};

} // namespace

constexpr CommandGroup generalCommands("The console", commands);

} // namespace console
