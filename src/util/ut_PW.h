#pragma once

#include "ut_Export.h"

#include <pwd.h>

namespace utility {

/// A user of the password file: the platform's record and storage for its texts.
///
/// `PWService` and `newString` store the texts of the record in this object. They are valid until `reset`. Not
/// thread-safe. Nothing is thrown.
///
///     utility::PW user;
///     user.m_passwd.pw_name = user.newString("monitor");
///     user.m_passwd.pw_uid = 1001;
class VXUT_EXPORT PW {
public:
    /// Creates an empty record.
    PW();
    PW(const PW&) = delete;
    PW& operator=(const PW&) = delete;

    /// Sets every field to 0 or null and frees the texts of `newString`.
    void reset();
    /// Copies `s` into this object and returns the copy. All copies together may use up to 2,048 bytes, including their
    /// terminators. Returns null if `s` is null or if the copy does not fit, which is logged at level 0.
    char* newString(const char* s);

    /// Returns the login name; may be null.
    char* getUserName() const {
        return m_passwd.pw_name;
    }
    /// Returns the password hash; may be null.
    char* getPassword() const {
        return m_passwd.pw_passwd;
    }
    /// Returns the user ID.
    unsigned int getUid() const {
        return m_passwd.pw_uid;
    }
    /// Returns the group ID.
    unsigned int getGid() const {
        return m_passwd.pw_gid;
    }
    /// Returns the real name; may be null.
    char* getRealName() const {
        return m_passwd.pw_gecos;
    }
    /// Returns the home directory; may be null.
    char* getDir() const {
        return m_passwd.pw_dir;
    }
    /// Returns the login shell; may be null.
    char* getShell() const {
        return m_passwd.pw_shell;
    }
    /// Returns the number of bytes, of 2,048, that the copies of `newString` use.
    unsigned int used() const {
        return m_used;
    }

    /// Logs the fields at level 3 if debug switch 483 is on.
    void dump() const;

    /// The platform's record.
    passwd m_passwd;

private:
    friend class PWService;

    static const unsigned int textSize = 2048;

    char m_readTexts[textSize];
    char m_ownTexts[textSize];
    unsigned int m_used;
};

} // namespace utility
