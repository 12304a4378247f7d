#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;
class StringArray;

/// A private set of named variables, and the way to those of the process.
///
/// Names and values are copies that the set owns; a pointer handed out is valid until its variable is changed. The
/// order is that of insertion, and a name occurs once. One thread at a time; the static operations follow the
/// platform's rules for the process environment. Look-ups of absent names give null, 0, false or -1. `ElementAt` throws
/// code 1229. Without memory `set` leaves the set as it was: it throws code 1230 of "ut_Array" when the table cannot
/// grow, and does nothing when there is no memory for the name or the value.
///
///     utility::Environment set;
///     set.set("PORTS", "4");
///     set.getAsInt("PORTS");   // 4
class VXUT_EXPORT Environment {
public:
    Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment();

    /// Both are the number of variables.
    unsigned int length() const;
    unsigned int NumElements() const;
    /// The place of `name` among names and values, always even, or -1. Debug switch 368 traces each step.
    int find(const char* name) const;
    /// The value of `name`, or null.
    const char* get(const char* name) const;
    /// The value as a decimal number, 0 when `name` is absent.
    int getAsInt(const char* name) const;
    /// Whether the value is a number other than 0: callers see "true" and "yes" as false.
    bool getAsBool(const char* name) const;
    bool isSet(const char* name) const;
    /// Adds a variable or replaces its value; does nothing when either is null.
    void set(const char* name, const char* value);
    /// Removes a variable.
    void unset(const char* name);
    /// Copies the name of variable `i` to `nameBuffer` and returns its value. A name of `bufferSize` characters or more
    /// is cut and not terminated. Throws code 1229 when there is no such variable.
    const char* ElementAt(unsigned int i, char* nameBuffer, unsigned int bufferSize) const;
    /// Writes each variable as "name=value" and a newline; a name is cut at 127 characters. `level` is not used. What
    /// does not fit `out` fails as `PutStream::PutF` does (code 1239).
    void privateInformation(PutStream& out, int level) const;

    /// The variables of the process, as `getenv`, `setenv` (always overwriting) and `unsetenv` give and take them. A
    /// null argument finds nothing (null), or fails (-1).
    static const char* GetEnv(const char* name);
    static int SetEnv(const char* name, const char* value);
    static int UnsetEnv(const char* name);
    /// Writes each variable of the process and a newline. `level` is not used. What does not fit `out` fails as
    /// `PutStream::PutS` does (code 1239).
    static void globalInformation(PutStream& out, int level);

private:
    StringArray* m_variables;
};

} // namespace utility
