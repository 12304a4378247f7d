#pragma once

namespace framework {

class InputStream;
class OutputStream;

/// The words of a command text, which are separated by white space. If a word begins with a double quote, it extends to
/// the next double quote or to the end of the text.
class CommandWords {
public:
    /// Copies `command` and splits the copy.
    explicit CommandWords(const char* command);
    CommandWords(const CommandWords&) = delete;
    CommandWords& operator=(const CommandWords&) = delete;
    ~CommandWords();

    /// Returns whether there is at least one word. Returns false if an allocation failed.
    bool any() const {
        return m_words != nullptr && *m_words != nullptr;
    }
    /// Returns the words, followed by a null pointer, or null if an allocation failed. This object owns them.
    char* const* get() const {
        return m_words;
    }

private:
    void split();

    char* m_text;
    char** m_words;
};

/// Runs a program without a shell and waits for it. Returns true if it ran and exited with status 0. If a stream
/// throws, kills the program and rethrows.
bool runCommand(char* const* words, InputStream* in, OutputStream* out);

} // namespace framework
