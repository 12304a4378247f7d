#pragma once

#include "ut_Export.h"

#include "fw_Item.h"
#include "fw_KnownTokens.h"
#include "ut_StringArray.h"

namespace utility {

class PutStream;

/// The words of a command line. Double quotes group words, and look-ups ignore case.
///
/// This object owns copies of the words; a returned pointer is valid until its word is changed or deleted. Not
/// thread-safe. Operations that add a word do nothing if it is null, and look-ups never find null. If memory is
/// exhausted, a word may be stored as null. If the table of words cannot grow, code 1230 is thrown from "ut_Array";
/// constructors may also throw `std::bad_alloc`.
///
///     utility::Arguments arguments("show file \"my notes\" -lines 20");
///     arguments.ArgValue(2);        // "my notes"
///     arguments.ArgInt("-LINES");   // 20
class VXUT_EXPORT Arguments : public framework::Item {
public:
    /// Splits `commandText` as `addArgs` does. Creates an object without words if it is null.
    explicit Arguments(const char* commandText);
    /// Copies every entry of `argv` that is not null, including the command name. Quotes are ordinary characters.
    Arguments(int argc, char** argv);
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;
    ~Arguments() override;

    stringtoken getName() const override {
        return strings::TOKEN_ARGUMENTS;
    }
    const char* getNameString() const override {
        return pGSArguments;
    }

    /// Adds the words of `text`, which are separated by white space. If a word begins with a double quote, it extends
    /// to the next double quote or the end of the text, without the quotes. Elsewhere in a word, a double quote is an
    /// ordinary character. A double quote cannot be escaped.
    void addArgs(const char* text);
    /// Returns the number of words.
    unsigned int ArgCount() const;
    /// Returns word `i`, or null if `i` is out of range.
    const char* ArgValue(unsigned int i) const;
    /// Returns whether any word equals `word`, ignoring case.
    bool isArg(const char* word) const;
    /// Returns the index of the first word that equals `word`, ignoring case, or 0xFFFFFFFF if there is none.
    unsigned int ArgIndex(const char* word) const;
    /// Returns what `ArgIndex` returns for the text of `token`.
    unsigned int ArgIndexByToken(unsigned int token) const;
    /// Returns the word after the first one that equals `word`, ignoring case, or null if there is none.
    const char* ArgString(const char* word) const;
    /// Returns the word that `ArgString` returns, as a decimal number, or 0 if there is none.
    long ArgInt(const char* word) const;
    /// Appends a word unchanged, including quotes and blanks.
    void AddArg(const char* word);
    /// Replaces word `i`. Does nothing if `i` is out of range.
    void ModifyArg(unsigned int i, const char* word);
    /// Deletes word `i`. Does nothing if `i` is out of range.
    void DeleteArg(unsigned int i);
    /// Deletes every word that equals `word`, ignoring case. `word` may point to one of them.
    void DeleteArg(const char* word);
    /// Returns whether any text given to `addArgs` ended inside double quotes.
    bool quoteUnmatched() const {
        return m_quoteUnmatched;
    }
    /// Writes the words from index `first` on as a command text, separated by single blanks. Words that contain a blank
    /// are quoted. If `quoteUnmatched()` is true, the last word has only its opening quote. Returns a pointer to the
    /// end of the text in the stream. If the text does not fit, fails as `PutStream::PutF` does (code 1239).
    char* ToString(unsigned int first, PutStream& out) const;

private:
    Arguments();

    VXUT_HIDDEN const char* addQuotedWord(const char* start);
    VXUT_HIDDEN const char* addPlainWord(const char* start);

    StringArray* m_words;
    bool m_quoteUnmatched;
};

} // namespace utility
