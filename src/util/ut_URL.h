#pragma once

#include "ut_Export.h"

#include "fw_FSUMemory.h"
#include "fw_Item.h"
#include "fw_KnownTokens.h"

namespace utility {

/// A URL in its four parts: scheme, authority, path and query, decoded.
///
/// Texts are copies in the pool of the object, valid until it is cleared, assigned to or destroyed. A part that is not
/// present is null. Not thread-safe. Nothing is thrown or logged; if memory is exhausted, a part is null.
///
/// The syntax is that of RFC 3986 without fragments: "#" is an ordinary character. "+" is not decoded. Each part is
/// decoded once: "%2541" becomes "%41". After decoding, an encoded delimiter cannot be told from a real one: "/a%2Fb"
/// becomes "/a/b".
///
///     utility::URL url("abc://node:8080/a%20b?x=1");
///     url.GetPath();    // "/a b"
///     url.GetValue();   // "abc://node:8080/a b?x=1"
class VXUT_EXPORT URL : public framework::Item {
public:
    /// Copies each part that is not null, without decoding it.
    URL(const char* scheme, const char* authority, const char* path, const char* query);
    /// Splits and decodes `text`, as `SetURL` does.
    explicit URL(const char* text);
    /// Makes a deep copy of `other`.
    URL(const URL& other);
    /// Clears this object and makes a deep copy of `other`.
    URL& operator=(const URL& other);
    ~URL() override;

    stringtoken getName() const override {
        return strings::TOKEN_URL;
    }
    const char* getNameString() const override {
        return pGSURL;
    }

    /// Copies `scheme` without decoding it. Does nothing if it is null.
    void SetScheme(const char* scheme);
    /// Copies `authority` without decoding it. Does nothing if it is null.
    void SetAuthority(const char* authority);
    /// Copies `path` without decoding it. Does nothing if it is null.
    void SetPath(const char* path);
    /// Copies `query` without decoding it. Does nothing if it is null.
    void SetQuery(const char* query);
    /// Splits and decodes `text`. A part that `text` does not have keeps its previous value. A part that has its
    /// delimiter but is empty becomes null. Does nothing if `text` is null.
    void SetURL(const char* text);

    /// Returns the scheme without ":"; may be null.
    const char* GetScheme() const {
        return m_scheme;
    }
    /// Returns the authority without "//"; may be null.
    const char* GetAuthority() const {
        return m_authority;
    }
    /// Returns the path; may be null.
    const char* GetPath() const {
        return m_path;
    }
    /// Returns the query without "?"; may be null.
    const char* GetQuery() const {
        return m_query;
    }
    /// Returns the parts composed into one text, or null if all are null or empty or if memory is exhausted. The parts
    /// are deliberately not encoded, and callers rely on that: if one of them contains "/", "?" or "%", `SetURL` may
    /// split the text differently. Each call allocates a new text from the pool.
    char* GetValue();
    /// Sets all parts to null and frees the pool, including the texts that `GetValue` returned.
    void clear();
    /// Decodes `length` bytes of `text` and returns the NUL-terminated result, allocated from the pool. "%" and two
    /// hexadecimal digits become one byte; a truncated escape at the end is dropped. Escapes are not validated: a
    /// character that is not a hexadecimal digit has the value 255, and callers rely on "%g1" becoming the byte F1.
    /// Returns null if `text` is null, if `length` is 0 or at least 2,147,483,647, or if memory is exhausted.
    char* decodeAndAlloc(const char* text, unsigned int length);

private:
    unsigned int parseScheme(const char* text, unsigned int length);

    framework::FSUMemory m_pool;
    char* m_scheme;
    char* m_authority;
    char* m_path;
    char* m_query;
    char* m_value;
};

} // namespace utility
