#pragma once

#include "fw_Item.h"
#include "ut_Export.h"
#include "ut_StringArray.h"

namespace utility {

class PutStream;

/// The words of a command line, with double quotes for grouping and look-ups that ignore case.
///
/// The words are copies that the object owns; a pointer handed out is valid until its word is changed or deleted. One
/// thread at a time. What is not there is null, -1 or 0, and null words are found nowhere and added nowhere. A word
/// without memory is null and found nowhere; without memory for more words code 1230 of "ut_Array" is thrown, and
/// `std::bad_alloc` by a constructor.
///
///     utility::Arguments arguments("show file \"my notes\" -lines 20");
///     arguments.ArgValue(2);        // "my notes"
///     arguments.ArgInt("-LINES");   // 20
class VXUT_EXPORT Arguments : public framework::Item {
public:
    /// Splits `commandText` with `addArgs`; null gives no words.
    explicit Arguments(const char* commandText);
    /// Takes every entry of `argv` that is not null, the command name included, without looking for quotes.
    Arguments(int argc, char** argv);
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;
    ~Arguments() override;

    stringtoken getName() const override {
        return 291;
    }
    const char* getNameString() const override {
        return pGSArguments;
    }

    /// Adds the words of `text`, which white space separates. A double quote at the start of a word takes everything up
    /// to the next one, or to the end of the text; inside a word it is an ordinary character, and there is no escape.
    void addArgs(const char* text);
    /// The number of words.
    unsigned int ArgCount() const;
    /// Word `i`, or null.
    const char* ArgValue(unsigned int i) const;
    /// Whether some word equals `word`, ignoring case.
    bool isArg(const char* word) const;
    /// The index of the first word that equals `word`, ignoring case; all bits set when there is none.
    unsigned int ArgIndex(const char* word) const;
    /// The same with the text of `token`.
    unsigned int ArgIndexByToken(unsigned int token) const;
    /// The word behind the first that equals `word`; null when there is none.
    const char* ArgString(const char* word) const;
    /// The same as a decimal number; 0 when there is none.
    long ArgInt(const char* word) const;
    /// Adds a word as it is.
    void AddArg(const char* word);
    /// Replaces word `i`, when there is one.
    void ModifyArg(unsigned int i, const char* word);
    /// Deletes word `i`, when there is one.
    void DeleteArg(unsigned int i);
    /// Deletes every word that equals `word`, which may be one of them, ignoring case.
    void DeleteArg(const char* word);
    /// Whether a text ended inside double quotes.
    bool quoteUnmatched() const {
        return m_quoteUnmatched;
    }
    /// Writes the words from `first` on as a command text: one blank between them, quotes around those with blanks, and
    /// an open quote before the last when the text ended inside one. Returns the end of what was written, in the
    /// stream. What does not fit `out` fails as `PutStream::PutF` does (code 1239).
    char* ToString(unsigned int first, PutStream& out) const;

private:
    Arguments();

    const char* addQuotedWord(const char* start);
    const char* addPlainWord(const char* start);

    StringArray* m_words;
    bool m_quoteUnmatched;
};

} // namespace utility
