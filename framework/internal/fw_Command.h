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

    /// Whether there is at least one; not when no memory was left.
    bool any() const {
        return m_words && *m_words;
    }
    /// The words, with a null pointer behind the last; null when no memory was left.
    char* const* get() const {
        return m_words;
    }

private:
    void split();

    char* m_text;
    char** m_words;
};

/// Runs a program without a shell and waits for it. Returns whether it ran and ended with status 0. What a stream
/// throws passes through, after the program was killed.
bool runCommand(char* const* words, InputStream* in, OutputStream* out);

} // namespace framework
