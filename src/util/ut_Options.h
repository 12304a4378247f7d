#pragma once

#include "ut_Export.h"

#include "fw_FSUMemory.h"
#include "fw_StringToken.h"

namespace utility {

class PutStream;

/// Up to eight options, each a key (a string token) with or without a value. A key may occur more than once.
///
/// The values are copies in a pool; a returned pointer is valid until `clear`. Not thread-safe. Only `toStream` throws
/// or logs, through its stream. A ninth option is silently ignored: check `count()` to detect that. An option without a
/// value does not match any text, not even the empty one.
///
///     char text[] = "sort=name,size&reverse";
///     utility::Options options;
///     options.set(text);
///     options.getAsString(strings::GS.toToken("sort"), 1);   // "size"
class VXUT_EXPORT Options {
public:
    /// Creates an object without options.
    Options();
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;
    virtual ~Options();

    /// Removes all options and frees their values.
    void clear();
    /// Parses a text such as "key=value,value&key" and adds one option for each value, and one without a value for each
    /// key without "=". A value may be empty. The text is copied, not modified. Does nothing if `text` is null or
    /// empty.
    void set(char* text);
    /// Adds an option with a copy of `value`, or without a value if it is null.
    void addOption(unsigned int key, const char* value);
    /// Replaces the value of option `index`, counted from 0 among the options with `key`. Adds an option if there is
    /// none.
    void setOption(unsigned int key, const char* value, unsigned int index);
    /// Removes every option with `key`.
    void deleteOption(unsigned int key);
    /// Removes every option with `key` and exactly this `value`. Does nothing if `value` is null.
    void deleteOption(unsigned int key, const char* value);

    /// Returns the value of option `index`, counted from 0 among the options with `key`, or null if there is none. For
    /// an option without a value, returns an empty text that the library owns and that must not be modified.
    const char* getAsString(unsigned int key, unsigned int index) const;
    /// Does the same as the const overload. The caller may modify the text unless the option has no value.
    char* getAsString(unsigned int key, unsigned int index);
    /// Returns the value that `getAsString` returns, as a decimal number, or -1 if the option does not exist or has no
    /// value.
    int getAsInt(unsigned int key, unsigned int index) const;
    /// Returns whether there is an option with `key`.
    bool isOption(unsigned int key) const;
    /// Returns whether there is an option with `key` and exactly this `value`, or false if `value` is null.
    bool isOption(unsigned int key, const char* value) const;
    /// Returns whether there is an option with `key` and this `value`, ignoring case, or false if `value` is null.
    bool isOptionCase(unsigned int key, const char* value) const;

    /// Writes the options in the form that `set` parses. An option with the key 1153 is another value of the option
    /// before it: a comma is written instead of its key. If the text does not fit, fails as `PutStream::PutS` and
    /// `PutStream::PutF` do (code 1239).
    void toStream(PutStream& out) const;

    /// Returns the number of options.
    unsigned int count() const {
        return m_count;
    }
    /// Returns the key of option `i`, or 0 if `i` is out of range.
    stringtoken getKey(unsigned int i) const {
        return i < m_count ? m_keys[i] : 0;
    }

private:
    static const unsigned int largestCount = 8;

    VXUT_HIDDEN unsigned int indexOf(unsigned int key, unsigned int index) const;
    void setItem(char* item);
    VXUT_HIDDEN void removeAt(unsigned int i);

    framework::FSUMemory m_pool;
    unsigned int m_count;
    stringtoken m_keys[largestCount];
    char* m_values[largestCount];
};

} // namespace utility
