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

// Shows the names of all commands, by group; the text fits a screen.
void showGroups(Answer& answer) {
    answer.table("groups", {left("title", 20), left("commands")});
    for (const CommandGroup* group : commandGroups()) {
        std::string shown;
        std::vector<std::string> names;
        for (const Command& command : *group) {
            names.emplace_back(command.name);
            shown += (shown.empty() ? "" : ", ") + names.back();
        }
        answer.row({group->title(), Value(names).shownAs(shown)});
    }
    answer.remark("help WORD shows how commands are used. Words in double quotes may contain blanks; single quotes");
    answer.remark("and backslashes are ordinary characters.");
}

// Shows the commands that begin with the given words, or else those with the text anywhere in their names or summaries;
// without words, the names of all commands.
bool help(Invocation& call) {
    std::string text;
    for (unsigned int i = 0; i < call.wordCount(); ++i)
        text += (i > 0 ? " " : "") + std::string(call.word(i));
    if (text.empty()) {
        showGroups(call.answer());
        return true;
    }
    std::vector<const Command*> begun;
    std::vector<const Command*> others;
    const Command* command = nullptr;
    for (unsigned int i = 0; (command = commandAt(i)) != nullptr; ++i) {
        const std::string usage = usageOf(*command) + (*command->arguments == 0 ? " " : "");
        if (usage.compare(0, text.size(), text) == 0)
            begun.push_back(command);
        else if ((usage + command->summary).find(text) != std::string::npos)
            others.push_back(command);
    }
    const std::vector<const Command*>& found = begun.empty() ? others : begun;
    std::size_t width = 0;
    for (const Command* each : found)
        width = std::max(width, usageOf(*each).size());
    call.answer().table("commands", {left("usage", static_cast<unsigned int>(width), "  "), left("summary")});
    for (const Command* each : found)
        call.answer().row({usageOf(*each), each->summary});
    return !found.empty() || call.fail("%s: no such command (try help)", text.c_str());
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
    {"help", "[WORD]", "list all commands, or show those that begin with WORD or mention it", 0, 2, help,
     COMPLETE_COMMANDS},
    {"show environment", "", "show the environment of this process", 0, 0, showEnvironment},
    {"set", "NAME VALUE", "set an environment variable of this process", 2, 2, setVariable},
    {"history", "", "show the last commands and answers", 0, 0, history, COMPLETE_NOTHING, REMEMBER_NOTHING},
    {"debug", "", "show the debug switches that are on", 0, 0, showSwitches},
    {"debug on", "NAME", "turn a debug switch on", 1, 1, setSwitchOn, COMPLETE_SWITCHES},
    {"debug off", "NAME", "turn a debug switch off", 1, 1, setSwitchOff, COMPLETE_SWITCHES},
    {"?", "[WORD]", "do the same as help", 0, 2, help, COMPLETE_COMMANDS},
    {"quit", "", "leave the console", 0, 0, quit},
    {"exit", "", "do the same as quit", 0, 0, quit}};

} // namespace

constexpr CommandGroup generalCommands("The console", commands);

} // namespace console
