#pragma once

#include <string>

#include <pwd.h>

namespace console {

/// A copy of an entry of a password file, to be compared with others.
///
///     console::UserEntry(before) == console::UserEntry(after)
class UserEntry {
public:
    explicit UserEntry(const passwd& user);

    const std::string& name() const {
        return m_name;
    }
    bool operator==(const UserEntry& other) const {
        return m_name == other.m_name && m_rest == other.m_rest;
    }

private:
    std::string m_name;
    std::string m_rest;
};

} // namespace console
