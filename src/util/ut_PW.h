#pragma once

#include "ut_Export.h"

#include <pwd.h>

namespace utility {

/// A user of the password file: the platform's record and room for its texts.
///
/// The record's fields point into the object, to where the platform's reader put them or to texts made with
/// `newString`; they are valid until `reset`. One thread at a time. Nothing is thrown.
///
///     utility::PW user;
///     user.m_passwd.pw_name = user.newString("monitor");
///     user.m_passwd.pw_uid = 1001;
class VXUT_EXPORT PW {
public:
    /// An empty record.
    PW();
    PW(const PW&) = delete;
    PW& operator=(const PW&) = delete;

    /// Sets every field to zero or null and forgets the texts made with `newString`.
    void reset();
    /// A copy of `s` inside the object: all texts together have room for 2,048 bytes, terminators included. Null for a
    /// null text, and, logged at level 0, for one that does not fit.
    char* newString(const char* s);

    /// The fields of the record as they are.
    char* getUserName() const {
        return m_passwd.pw_name;
    }
    char* getPassword() const {
        return m_passwd.pw_passwd;
    }
    unsigned int getUid() const {
        return m_passwd.pw_uid;
    }
    unsigned int getGid() const {
        return m_passwd.pw_gid;
    }
    char* getRealName() const {
        return m_passwd.pw_gecos;
    }
    char* getDir() const {
        return m_passwd.pw_dir;
    }
    char* getShell() const {
        return m_passwd.pw_shell;
    }
    /// How many bytes of the room for texts are taken.
    unsigned int used() const {
        return m_used;
    }

    /// Logs the fields (level 3) when debug switch 483 is on.
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
