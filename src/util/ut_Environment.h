#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;
class StringArray;

/// A set of named variables, and access to the environment of the process.
///
/// The set owns copies of the names and values; a returned pointer is valid until its variable is changed. Names are
/// unique; the order is that of insertion. Not thread-safe. The static operations follow the platform's rules for the
/// process environment.
///
///     utility::Environment set;
///     set.set("PORTS", "4");
///     set.getAsInt("PORTS");   // 4
class VXUT_EXPORT Environment {
public:
    /// Creates an empty set.
    Environment();
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment();

    /// Returns the number of variables.
    unsigned int length() const;
    /// Does the same as `length()`.
    unsigned int NumElements() const;
    /// Returns twice the index of the variable `name`, or -1 if there is none. Debug switch 368 traces each step.
    int find(const char* name) const;
    /// Returns the value of `name`, or null if there is none.
    const char* get(const char* name) const;
    /// Returns the value of `name` as a decimal number, or 0 if there is none.
    int getAsInt(const char* name) const;
    /// Returns whether the value of `name` is a decimal number other than 0. Callers rely on "true" and "yes" being
    /// false.
    bool getAsBool(const char* name) const;
    /// Returns whether there is a variable `name`.
    bool isSet(const char* name) const;
    /// Adds a variable or replaces its value. Does nothing if `name` or `value` is null. If memory is exhausted, the
    /// set is unchanged; if the table of variables cannot grow, code 1230 is thrown from "ut_Array".
    void set(const char* name, const char* value);
    /// Removes the variable `name`, if there is one.
    void unset(const char* name);
    /// Copies the name of variable `i` to `nameBuffer` and returns its value. A name of `bufferSize` characters or more
    /// is truncated and not terminated. If `nameBuffer` is null, does not copy the name. Throws code 1229 if `i` is out
    /// of range.
    const char* ElementAt(unsigned int i, char* nameBuffer, unsigned int bufferSize) const;
    /// Writes each variable as "name=value" and a newline, with names truncated to 127 characters. `level` is not used.
    /// If the text does not fit, fails as `PutStream::PutF` does (code 1239).
    void privateInformation(PutStream& out, int level) const;

    /// Returns the value of a variable of the process, as `getenv` does, or null if `name` is null.
    static const char* GetEnv(const char* name);
    /// Sets or replaces a variable of the process and returns the result of `setenv`: 0, or -1 with `errno` set.
    /// Returns -1 and sets `errno` to `EINVAL` if an argument is null.
    static int SetEnv(const char* name, const char* value);
    /// Removes a variable of the process and returns the result of `unsetenv`: 0, or -1 with `errno` set. Returns -1
    /// and sets `errno` to `EINVAL` if `name` is null.
    static int UnsetEnv(const char* name);
    /// Writes each variable of the process as it is in `environ` ("name=value") and a newline. `level` is not used. If
    /// the text does not fit, fails as `PutStream::PutS` does (code 1239).
    static void globalInformation(PutStream& out, int level);

private:
    StringArray* m_variables;
};

} // namespace utility
