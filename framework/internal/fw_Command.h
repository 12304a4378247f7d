#pragma once

namespace framework {

class InputStream;
class OutputStream;

/// The words of a command text: separated by white space; a double quote at a word's start groups up to the next one,
/// or to the end.
class CommandWords {
public:
    explicit CommandWords(const char* command);
    CommandWords(const CommandWords&) = delete;
    CommandWords& operator=(const CommandWords&) = delete;
    ~CommandWords();

    /// Returns true if there is at least one word; false if an allocation failed.
    bool any() const {
        return m_words && *m_words;
    }
    /// Returns the words, followed by a null pointer, or null if an allocation failed.
    char* const* get() const {
        return m_words;
    }

private:
    void split();

    char* m_text;
    char** m_words;
};

/// Runs a program without a shell and waits for it. Returns true if it ran and exited with status 0. If a stream
/// throws, the program is killed and the exception passes through.
bool runCommand(char* const* words, InputStream* in, OutputStream* out);

} // namespace framework
