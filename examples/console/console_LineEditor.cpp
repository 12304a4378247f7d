#include "console_LineEditor.h"

#include <algorithm>
#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include <histedit.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include "console_CommandTable.h"
#include "console_Completion.h"
#include "console_EscapingOutputStream.h"
#include "console_Interruption.h"
#include "ut_Arguments.h"
#include "ut_Environment.h"
#include "ut_Terminal.h"

namespace console {

namespace {

constexpr int longestHistory = RecallFile::most;
constexpr std::size_t mostCandidates = 200;

// Writes as the editor does, which is not known to the console's stream: the next answer starts in the first column.
void show(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

// The editor that an EditLine belongs to.
LineEditor* ownerOf(EditLine* editor) {
    void* owner = nullptr;
    el_get(editor, EL_CLIENTDATA, &owner);
    return static_cast<LineEditor*>(owner);
}

// Whether a line may be kept in a file: not if it is a password's command, or unknown, as it may be a mistyped one.
bool isKept(const std::string& line) {
    const utility::Arguments arguments(line.c_str());
    utility::StringArray words(0);
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i)
        words.Append(arguments.ArgValue(i));
    const Lookup found = findCommand(words);
    return found.command != nullptr && found.command->remembered != REMEMBER_NAME;
}

// Whether the words may contain a password in spite of all, as in "password NAME SECRET".
bool isSecret(const std::string& line) {
    const utility::Arguments arguments(line.c_str());
    utility::StringArray words(0);
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i)
        words.Append(arguments.ArgValue(i));
    const Lookup found = findCommand(words);
    return found.command != nullptr && found.command->remembered == REMEMBER_NAME && words.length() - found.used > 1;
}

} // namespace

bool LineEditor::isPossible() {
    const char* kind = utility::Environment::GetEnv("TERM");
    return kind != nullptr && *kind != 0 && std::strcmp(kind, "dumb") != 0;
}

LineEditor::LineEditor(TerminalConsole& terminal, const std::string& recallFile)
    : m_terminal(terminal), m_file(recallFile), m_editor(nullptr), m_history(nullptr), m_signals(), m_isDropped(false) {
    if (!isPossible())
        return;
    // The editor counts columns and takes bytes apart as the locale says.
    std::setlocale(LC_CTYPE, "C.UTF-8");
    m_editor = el_init("vxconsole", stdin, stdout, stderr);
    m_history = history_init();
    if (m_editor == nullptr || m_history == nullptr)
        return;
    HistEvent event;
    history(m_history, &event, H_SETSIZE, longestHistory);
    history(m_history, &event, H_SETUNIQUE, 1);
    for (const std::string& line : m_file.lines())
        history(m_history, &event, H_ENTER, line.c_str());
    el_set(m_editor, EL_CLIENTDATA, this);
    el_set(m_editor, EL_HIST, history, m_history);
    el_set(m_editor, EL_EDITOR, "emacs");
    el_set(m_editor, EL_PROMPT, promptOf);
    el_set(m_editor, EL_GETCFN, readCharacter);
    bindKeys();
}

LineEditor::~LineEditor() {
    if (m_editor != nullptr)
        el_end(m_editor);
    if (m_history != nullptr)
        history_end(m_history);
}

void LineEditor::bindKeys() {
    el_set(m_editor, EL_ADDFN, "vx-complete", "Complete a word", onTab);
    el_set(m_editor, EL_ADDFN, "vx-interrupt", "Drop the line", onInterrupt);
    el_set(m_editor, EL_ADDFN, "vx-stop", "Stop the console", onStop);
    el_set(m_editor, EL_ADDFN, "vx-quit", "End the console", onQuit);
    const char* const keys[][2] = {
        {"^I", "vx-complete"},
        {"^C", "vx-interrupt"},
        {"^Z", "vx-stop"},
        {"\\034", "vx-quit"},
        {"^R", "em-inc-search-prev"},
        {"^W", "ed-delete-prev-word"},
        {"^U", "em-kill-line"},
        {"\\e[3~", "ed-delete-next-char"},
        {"\\e[1;5C", "em-next-word"},
        {"\\e[1;5D", "ed-prev-word"},
    };
    for (const auto& [key, function] : keys)
        el_set(m_editor, EL_BIND, key, function, nullptr);
    // While a line is edited, the keys of signals are keys. Otherwise the terminal stays in key mode.
    el_set(m_editor, EL_SETTY, "-d", "-isig", nullptr);
    el_set(m_editor, EL_SETTY, "-x", "-icanon", "-echo", nullptr);
}

const char* LineEditor::promptOf(EditLine*) {
    return "vx> ";
}

// Shows the line again after the process was stopped, or the terminal changed.
void LineEditor::restart() {
    el_set(m_editor, EL_PREP_TERM, 0);
    el_set(m_editor, EL_PREP_TERM, 1);
    el_resize(m_editor);
    el_set(m_editor, EL_REFRESH);
}

// Reads a character in UTF-8. Bytes that are none are dropped.
int LineEditor::readCharacter(EditLine* editor, wchar_t* character) {
    LineEditor* const self = ownerOf(editor);
    mbstate_t state = {};
    for (;;) {
        pollfd request = {STDIN_FILENO, POLLIN, 0};
        char byte = 0;
        // The signals arrive here only, where they interrupt the wait: SIGCONT and SIGWINCH have changed the terminal.
        while (!Interruption::isRequested() && ppoll(&request, 1, nullptr, &self->m_signals) < 0 && errno == EINTR) {
            if (!Interruption::isRequested())
                self->restart();
        }
        if (Interruption::isRequested()) {
            *character = 3;
            Interruption::clear();
            return 1;
        }
        if (!self->m_terminal.readByte(&byte))
            return 0;
        const std::size_t length = std::mbrtowc(character, &byte, 1, &state);
        if (length == static_cast<std::size_t>(-1))
            state = {};
        else if (length != static_cast<std::size_t>(-2) && *character != 0)
            return 1;
    }
}

unsigned char LineEditor::onTab(EditLine* editor, int) {
    return ownerOf(editor)->completeWord();
}

unsigned char LineEditor::onInterrupt(EditLine* editor, int) {
    ownerOf(editor)->m_isDropped = true;
    return CC_NEWLINE;
}

unsigned char LineEditor::onStop(EditLine* editor, int) {
    el_set(editor, EL_PREP_TERM, 0);
    show("\r\n");
    // Restores the terminal's own mode, stops here, and goes on in key mode.
    raise(SIGTSTP);
    el_set(editor, EL_PREP_TERM, 1);
    return CC_REDISPLAY;
}

unsigned char LineEditor::onQuit(EditLine*, int) {
    raise(SIGQUIT);
    return CC_REDISPLAY;
}

unsigned char LineEditor::completeWord() {
    const LineInfo* info = el_line(m_editor);
    const std::string before(info->buffer, info->cursor);
    const Completion completion = complete(before);
    if (completion.candidates.empty())
        return CC_REFRESH_BEEP;
    const std::string given = before.substr(before.size() - completion.replaced);
    const std::string common = commonBeginning(completion.candidates);
    if (common.size() > given.size() || (completion.candidates.size() == 1 && common != given)) {
        // Counted in characters, not in bytes.
        const auto count = std::count_if(given.begin(), given.end(),
                                         [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
        el_deletestr(m_editor, static_cast<int>(count));
        el_insertstr(m_editor, common.c_str());
        return CC_REFRESH;
    }
    list(completion.candidates);
    return CC_REDISPLAY;
}

// Shows the candidates in columns below the line.
void LineEditor::list(const std::vector<std::string>& candidates) {
    std::size_t width = 1;
    std::vector<std::string> shown;
    for (const std::string& candidate : candidates) {
        // Of a path, only its last part; without the blank and the quote that complete a word.
        const std::size_t end = candidate.find_last_not_of(" /\"");
        const std::size_t slash = candidate.rfind('/', end);
        std::string last = candidate.substr(slash != std::string::npos ? slash + 1 : 0);
        last.erase(last.find_last_not_of(" \"") + 1);
        shown.push_back(escapedLine(last));
        width = std::max(width, shown.back().size() + 2);
    }
    const std::size_t columns = std::max<std::size_t>(utility::Terminal::instance()->width() / width, 1);
    const std::size_t count = std::min(shown.size(), mostCandidates);
    const std::size_t rows = (count + columns - 1) / columns;
    std::string text = "\r\n";
    for (std::size_t row = 0; row < rows; ++row) {
        std::string line;
        for (std::size_t i = row; i < count; i += rows)
            line += shown[i] + std::string(i + rows < count ? width - shown[i].size() : 0, ' ');
        text += line + "\r\n";
    }
    if (count < shown.size())
        text += "... and " + std::to_string(shown.size() - count) + " more\r\n";
    show(text);
}

bool LineEditor::readLine(std::string* line) {
    m_terminal.startLine();
    line->clear();
    if (m_editor == nullptr) {
        show(promptOf(nullptr));
        return m_terminal.readPlainLine(line);
    }
    m_isDropped = false;
    Interruption::clear();
    // A signal that arrives while the editor does not wait must not be missed: `readCharacter` unblocks them.
    sigset_t answered;
    sigemptyset(&answered);
    for (const int sig : {SIGINT, SIGCONT, SIGWINCH})
        sigaddset(&answered, sig);
    pthread_sigmask(SIG_BLOCK, &answered, &m_signals);
    int count = 0;
    const char* text = el_gets(m_editor, &count);
    pthread_sigmask(SIG_SETMASK, &m_signals, nullptr);
    if (m_isDropped || text == nullptr || count <= 0) {
        show(m_isDropped ? "^C\n" : "\n");
        return m_isDropped;
    }
    line->assign(text, static_cast<std::size_t>(count));
    line->erase(line->find_last_not_of("\r\n") + 1);
    add(*line);
    return true;
}

void LineEditor::add(const std::string& line) {
    HistEvent event;
    if (line.find_first_not_of(" \t") == std::string::npos || isSecret(line))
        return;
    history(m_history, &event, H_ENTER, line.c_str());
    if (isKept(line))
        m_file.add(line);
}

} // namespace console
