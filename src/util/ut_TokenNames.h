#pragma once

namespace utility {

/// The names in a comma-separated list.
///
/// Holds its own copy of the list's first 8192 bytes and at most 50 names from it. A longer list is cut, further names
/// are left out; empty ones are passed over. Not for callers of the library: it has no symbols outside it.
///
///     for (const char* name : TokenNames("volume,port")) use(name);
class TokenNames {
public:
    /// Null is an empty list.
    explicit TokenNames(const char* list);
    TokenNames(const TokenNames&) = delete;
    TokenNames& operator=(const TokenNames&) = delete;

    const char* const* begin() const {
        return m_names;
    }
    const char* const* end() const {
        return m_names + m_count;
    }

private:
    static const int maxBytes = 8192;
    static const int maxNames = 50;

    char m_text[maxBytes + 1];
    char* m_names[maxNames];
    int m_count;
};

} // namespace utility
