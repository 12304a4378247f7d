#pragma once

#include <string>

#include <signal.h>

#include "console_RecallFile.h"
#include "console_TerminalConsole.h"

struct editline;
struct history;

namespace console {

/// Reads the lines that a user types, with editing, recall, search and completion.
///
/// Uses standard input and output, which must be the terminal of the console that is passed; it is in key mode and
/// stays so between the lines. The console is not owned and must outlive the editor. One object at a time, in one
/// thread. On a terminal without cursor movement (TERM is "dumb" or not set), lines are read as the terminal sends
/// them.
///
///     console::LineEditor editor(terminal, console::RecallFile::defaultPath());
///     std::string line;
///     while (editor.readLine(&line)) run(line);
class LineEditor {
public:
    /// - `recallFile`: the path of the file with the lines entered before; empty for none
    LineEditor(TerminalConsole& terminal, const std::string& recallFile);
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;
    ~LineEditor();

    /// Shows the prompt and reads a line. Returns false at the end of the input. A line that the user drops is empty.
    bool readLine(std::string* line);

    /// Whether the terminal can be used for editing.
    static bool isPossible();

private:
    void add(const std::string& line);
    void bindKeys();
    void restart();
    unsigned char completeWord();
    void list(const std::vector<std::string>& candidates);

    static const char* promptOf(editline* editor);
    static int readCharacter(editline* editor, wchar_t* character);
    static unsigned char onTab(editline* editor, int key);
    static unsigned char onInterrupt(editline* editor, int key);
    static unsigned char onStop(editline* editor, int key);
    static unsigned char onQuit(editline* editor, int key);

    TerminalConsole& m_terminal;
    RecallFile m_file;
    editline* m_editor;
    struct history* m_history;
    sigset_t m_signals; // blocked outside the editor
    bool m_isDropped;
};

} // namespace console
