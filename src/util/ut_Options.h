#pragma once

#include "fw_FSUMemory.h"
#include "fw_StringToken.h"
#include "ut_Export.h"

namespace utility {

class PutStream;

/// Up to eight options: keys, which are string tokens, with or without a value each.
///
/// The texts are copies in a pool that `clear` frees at once; a pointer handed out is valid until then. A key may occur
/// more than once. One thread at a time. Nothing is thrown or logged, but by the stream that `toStream` writes to: what
/// is not there is null, -1 or false. A ninth option is ignored without an error; `count()` tells how many were kept.
/// Null values equal no text.
///
///     char text[] = "sort=name,size&reverse";
///     utility::Options options;
///     options.set(text);
///     options.getAsString(strings::GS.toToken("sort"), 1);   // "size"
class VXUT_EXPORT Options {
public:
    Options();
    Options(const Options&) = delete;
    Options& operator=(const Options&) = delete;
    virtual ~Options();

    /// Forgets every option.
    void clear();
    /// Adds the options of a text such as "key=value,value&key": one for each value, and one without a value for a key
    /// without "=". Empty values are kept. The text is copied first; null and the empty text add nothing.
    void set(char* text);
    /// Adds an option with a copy of `value`, or without a value when that is null.
    void addOption(unsigned int key, const char* value);
    /// Replaces the value of the option with `key` that has `index` such options before it, or adds one.
    void setOption(unsigned int key, const char* value, unsigned int index);
    /// Removes every option with `key`; the second form only those whose value equals `value`.
    void deleteOption(unsigned int key);
    void deleteOption(unsigned int key, const char* value);

    /// The value of the option with `key` that has `index` such options before it: the empty text when it has none,
    /// null when there is no such option. That empty text belongs to the library and must not be written to.
    const char* getAsString(unsigned int key, unsigned int index) const;
    char* getAsString(unsigned int key, unsigned int index);
    /// The same as a decimal number; -1 when there is no such option or it has no value.
    int getAsInt(unsigned int key, unsigned int index) const;
    /// Whether there is an option with `key`; with exactly `value`; with `value` in either case.
    bool isOption(unsigned int key) const;
    bool isOption(unsigned int key, const char* value) const;
    bool isOptionCase(unsigned int key, const char* value) const;

    /// Writes the options as a text. An option with the key 1153 continues the one before: only its value is written,
    /// behind a comma. What does not fit `out` fails as `PutStream::PutS` and `PutStream::PutF` do (code 1239).
    void toStream(PutStream& out) const;

    /// The number of options, and the key of option `i`; 0 when there is none.
    unsigned int count() const {
        return m_count;
    }
    stringtoken getKey(unsigned int i) const {
        return i < m_count ? m_keys[i] : 0;
    }

private:
    static const unsigned int largestCount = 8;

    unsigned int indexOf(unsigned int key, unsigned int index) const;
    void setItem(char* item);
    void removeAt(unsigned int i);

    framework::FSUMemory m_pool;
    unsigned int m_count;
    stringtoken m_keys[largestCount];
    char* m_values[largestCount];
};

} // namespace utility
