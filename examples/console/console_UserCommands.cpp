#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <string>

#include <pwd.h>
#include <unistd.h>

#include "console_CommandGroups.h"
#include "ut_Environment.h"
#include "ut_PWService.h"

namespace console {

namespace {

// The numbers of ordinary users; system accounts such as nobody have numbers outside this range.
const unsigned int firstUserNumber = 1000;
const unsigned int lastUserNumber = 59999;
// The longest entry that the password service can read.
const std::size_t longestEntry = 2048;
const char noPassword[] = "!";
const char shell[] = "/bin/sh";

// Prevents editing the machine's own password file by accident: VX_ROOT must be set, and before the file was first
// used.
bool hasRoot(Invocation& call) {
    const char* root = utility::Environment::GetEnv("VX_ROOT");
    if (root == nullptr || *root == 0)
        return call.fail("refused: set VX_ROOT to the folder that contains etc/passwd before starting the console");
    const char* file = utility::PWService::getFileName();
    if (file == nullptr || std::string(root) + "/etc/passwd" != file)
        return call.fail("refused: %s was in use before VX_ROOT was set; set it before starting the console",
                         file != nullptr ? file : "no file");
    return true;
}

// Checks that the password file and its directory, in which a rewrite creates the new file, are writable. The service
// only logs why a rewrite failed, so the likely reasons are reported here.
bool isWritable(Invocation& call) {
    const std::string file = utility::PWService::getFileName();
    for (const std::string& place : {file, file.substr(0, file.rfind('/'))}) {
        if (access(place.c_str(), W_OK) != 0)
            return call.fail("%s: %s", place.c_str(), std::strerror(errno));
    }
    return true;
}

void putUser(utility::PutStream& out, const passwd& user) {
    out.PutF("%-16s %6u %6u %-24s %-20s %s\n", user.pw_name, user.pw_uid, user.pw_gid, user.pw_gecos, user.pw_dir,
             user.pw_shell);
}

// Passes each entry of the password file to `take`. Returns false, with the failure set, if the file cannot be read to
// its end.
template<typename Take>
bool forEachUser(Invocation& call, Take take) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(utility::PWService::getFileName(), "re"),
                                                               std::fclose);
    if (file == nullptr)
        return call.fail("%s: %s", utility::PWService::getFileName(), std::strerror(errno));
    passwd user = {};
    passwd* result = nullptr;
    char texts[longestEntry];
    int error = 0;
    while ((error = fgetpwent_r(file.get(), &user, texts, sizeof texts, &result)) == 0)
        take(user);
    if (error == ERANGE)
        return call.fail("%s: an entry does not fit into %zu bytes: shorten it", utility::PWService::getFileName(),
                         longestEntry);
    return error == ENOENT || call.fail("%s: %s", utility::PWService::getFileName(), std::strerror(error));
}

// A rewrite drops entries that cannot be read, so all of them must be readable.
bool canRewrite(Invocation& call) {
    return hasRoot(call) && isWritable(call) && forEachUser(call, [](const passwd&) {});
}

bool showUsers(Invocation& call) {
    return forEachUser(call, [&](const passwd& user) { putUser(call.out(), user); });
}

bool showUser(Invocation& call) {
    const utility::PW* user = utility::PWService::getUser(call.word(0));
    if (user == nullptr)
        return call.fail("%s: no such user in %s", call.word(0), utility::PWService::getFileName());
    putUser(call.out(), user->m_passwd);
    return true;
}

// Checks that `text` does not contain a separator of the password file.
bool isField(Invocation& call, const char* text) {
    return std::strpbrk(text, ":\n") == nullptr || call.fail("%s: must not contain ':' or a newline", text);
}

// Checks that a name can be the name of a home directory, and that no tool takes it for an option or a NIS entry.
bool isUserName(Invocation& call, const char* name) {
    if (*name == 0)
        return call.fail("the user name is empty");
    for (const char* c = name; *c != 0; ++c) {
        if (std::isalnum(static_cast<unsigned char>(*c)) == 0 && std::strchr(c == name ? "_" : "_-.$", *c) == nullptr)
            return call.fail(
                "%s: invalid user name: use letters, digits, '_' and, after the first character, '-', '.', '$'", name);
    }
    return true;
}

// Checks that the entry is short enough to be read again: an entry that is too long would also hide those after it.
bool isReadable(Invocation& call, std::initializer_list<const char*> texts) {
    const std::size_t numbersAndSeparators = 32;
    std::size_t length = numbersAndSeparators;
    for (const char* text : texts)
        length += text != nullptr ? std::strlen(text) : 0;
    return length <= longestEntry ||
           call.fail("%s: the entry does not fit into %zu bytes: use shorter texts", *texts.begin(), longestEntry);
}

// Checks that the rewritten file contains the user, or no longer contains it.
bool isStored(Invocation& call, const char* name, bool expected) {
    return (utility::PWService::getUser(name) != nullptr) == expected ||
           call.fail("%s could not be rewritten: see the log", utility::PWService::getFileName());
}

bool addUser(Invocation& call) {
    const char* name = call.word(0);
    const std::string home = std::string("/home/") + name;
    const char* realName = call.wordCount() > 1 ? call.word(1) : "";
    if (!hasRoot(call) || !isWritable(call) || !isUserName(call, name) || !isField(call, realName))
        return false;
    if (utility::PWService::getUser(name) != nullptr)
        return call.fail("user %s already exists", name);
    unsigned int number = firstUserNumber;
    const bool read = forEachUser(call, [&](const passwd& other) {
        if (other.pw_uid >= number && other.pw_uid <= lastUserNumber)
            number = other.pw_uid + 1;
    });
    if (!read)
        return false;
    if (number > lastUserNumber)
        return call.fail("%s: no user number is left: %u, the largest for an ordinary user, is in use", name,
                         lastUserNumber);
    if (!isReadable(call, {name, noPassword, realName, home.c_str(), shell}))
        return false;
    utility::PW user;
    user.m_passwd.pw_name = user.newString(name);
    user.m_passwd.pw_passwd = user.newString(noPassword);
    user.m_passwd.pw_uid = number;
    user.m_passwd.pw_gid = number;
    user.m_passwd.pw_gecos = user.newString(realName);
    user.m_passwd.pw_dir = user.newString(home.c_str());
    user.m_passwd.pw_shell = user.newString(shell);
    utility::PWService::putUser(&user);
    return isStored(call, name, true);
}

bool deleteUser(Invocation& call) {
    if (!canRewrite(call))
        return false;
    utility::PW* user = utility::PWService::getUser(call.word(0));
    if (user == nullptr)
        return call.fail("%s: no such user", call.word(0));
    utility::PWService::delUser(user);
    return isStored(call, call.word(0), false);
}

bool setPassword(Invocation& call) {
    char hash[64];
    if (!canRewrite(call))
        return false;
    utility::PW* user = utility::PWService::getUser(call.word(0));
    if (user == nullptr)
        return call.fail("%s: no such user", call.word(0));
    if (*utility::PWService::encryptPassword(call.word(1), hash, sizeof hash) == 0)
        return call.fail("this platform's crypt() does not support MD5 hashes");
    user->m_passwd.pw_passwd = hash;
    const passwd& fields = user->m_passwd;
    if (!isReadable(call, {fields.pw_name, hash, fields.pw_gecos, fields.pw_dir, fields.pw_shell}))
        return false;
    utility::PWService::putUser(user);
    user = utility::PWService::getUser(call.word(0));
    return (user != nullptr && std::strcmp(user->getPassword(), hash) == 0) ||
           call.fail("%s could not be rewritten: see the log", utility::PWService::getFileName());
}

} // namespace

const Command userCommands[] = {
    {"show users", "", "show the users of the password file", 0, 0, showUsers},
    {"show user", "NAME", "show one user", 1, 1, showUser},
    {"add user", "NAME [REALNAME]", "add a user under VX_ROOT, without a password", 1, 2, addUser},
    {"delete user", "NAME", "delete a user under VX_ROOT", 1, 1, deleteUser},
    {"password", "NAME PASSWORD", "set a user's password under VX_ROOT", 2, 2, setPassword, REMEMBER_NAME},
    {nullptr, nullptr, nullptr, 0, 0, nullptr}};

} // namespace console
