#include "console_UserEntry.h"

namespace console {

namespace {

std::string textOf(const char* field) {
    return field != nullptr ? field : "";
}

} // namespace

UserEntry::UserEntry(const passwd& user) : m_name(textOf(user.pw_name)) {
    // A reference to another service has no numbers.
    const bool hasNumbers = m_name.find_first_of("+-") != 0;
    m_rest = textOf(user.pw_passwd) + ':' + (hasNumbers ? std::to_string(user.pw_uid) : "") + ':' +
             (hasNumbers ? std::to_string(user.pw_gid) : "") + ':' + textOf(user.pw_gecos) + ':' + textOf(user.pw_dir) +
             ':' + textOf(user.pw_shell);
}

} // namespace console
