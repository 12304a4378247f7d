#pragma once

namespace utility {

/// The names in a comma-separated list.
///
/// Copies the first 8192 bytes of the list and splits them into at most 50 names. Empty names are skipped; bytes and
/// names beyond these limits are ignored. Internal.
///
///     for (const char* name : TokenNames("volume,port")) use(name);
class TokenNames {
public:
    /// Splits `list`; null counts as an empty list.
    explicit TokenNames(const char* list);
    TokenNames(const TokenNames&) = delete;
    TokenNames& operator=(const TokenNames&) = delete;

    /// Returns an iterator to the first name.
    const char* const* begin() const {
        return m_names;
    }
    /// Returns the end iterator.
    const char* const* end() const {
        return m_names + m_count;
    }

private:
    static constexpr int maxBytes = 8192;
    static constexpr int maxNames = 50;

    char m_text[maxBytes + 1];
    char* m_names[maxNames];
    int m_count;
};

} // namespace utility
