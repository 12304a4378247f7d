#pragma once

#include "fw_FSUMemory.h"
#include "fw_Item.h"
#include "ut_Export.h"

namespace utility {

/// A URL in its four parts: scheme, authority, path and query, decoded.
///
/// All texts are copies in the object's own pool and valid until it is cleared, assigned to or destroyed. An absent
/// part is null. One thread at a time. Nothing is thrown or logged; a failed allocation leaves the part absent. Syntax:
/// RFC 3986, without fragments: a "#" is an ordinary character of the part that contains it. A "+" stays a "+". Each
/// part is decoded once, so "%2541" gives "%41", and an encoded delimiter then looks like any other: "/a%2Fb" gives
/// "/a/b".
///
///     utility::URL url("abc://node:8080/a%20b?x=1");
///     url.GetPath();    // "/a b"
///     url.GetValue();   // "abc://node:8080/a b?x=1"
class VXUT_EXPORT URL : public framework::Item {
public:
    /// Sets each part that is not null, as it is.
    URL(const char* scheme, const char* authority, const char* path, const char* query);
    /// Splits `text` with `SetURL`.
    explicit URL(const char* text);
    /// Copies are whole: each URL has its own pool.
    URL(const URL& other);
    URL& operator=(const URL& other);
    ~URL() override;

    stringtoken getName() const override {
        return 630;
    }
    const char* getNameString() const override {
        return pGSURL;
    }

    /// Sets a part to a copy of the text, without decoding; null leaves it unchanged.
    void SetScheme(const char* scheme);
    void SetAuthority(const char* authority);
    void SetPath(const char* path);
    void SetQuery(const char* query);
    /// Splits and decodes `text`. Parts that it does not have keep their earlier values, one that it marks and leaves
    /// empty becomes null; a null `text` changes nothing.
    void SetURL(const char* text);

    /// The parts, or null.
    const char* GetScheme() const {
        return m_scheme;
    }
    const char* GetAuthority() const {
        return m_authority;
    }
    const char* GetPath() const {
        return m_path;
    }
    const char* GetQuery() const {
        return m_query;
    }
    /// Composes the text of the parts; null when all are absent or empty, and without memory. Nothing is encoded again,
    /// so callers see parts that contain "/", "?" or "%" change on the way back. Each call takes new memory of the
    /// pool.
    char* GetValue();
    /// Forgets all parts and frees the pool, the text of the last `GetValue` with it.
    void clear();
    /// Decodes `length` bytes of `text` into the pool: "%" and two hexadecimal digits are a byte, and an escape that
    /// the end cuts off is dropped with the rest. A character that is no digit counts as 255 there: callers see "%g1"
    /// as F1. Null for a null text, a length of 0 or from 2,147,483,647, and without memory.
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
