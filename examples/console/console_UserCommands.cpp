#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include <pwd.h>
#include <unistd.h>

#include "console_CommandGroup.h"
#include "console_Secret.h"
#include "console_UserEntry.h"
#include "ut_Environment.h"
#include "ut_PWService.h"

namespace console {

namespace {

// The numbers of ordinary users; system accounts such as nobody have numbers outside this range.
constexpr unsigned int firstUserNumber = 1000;
constexpr unsigned int lastUserNumber = 59999;
// The longest entry that the password service can read.
constexpr std::size_t longestEntry = 2048;
constexpr char noPassword[] = "!";
constexpr char shell[] = "/bin/sh";

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

void startUsers(Answer& answer) {
    answer.table("users", {left("name", 16), right("userId", 6), right("groupId", 6), left("realName", 24),
                           left("home", 20), left("shell")});
}

void addUserRow(Answer& answer, const passwd& user) {
    answer.row({user.pw_name, user.pw_uid, user.pw_gid, user.pw_gecos, user.pw_dir, user.pw_shell});
}

// Passes each entry of the password file `name` to `take`. Returns false and sets the failure if the file cannot be
// read to its end.
template<typename Take>
bool forEachUser(Invocation& call, const char* name, Take take) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(name, "re"), std::fclose);
    if (file == nullptr)
        return call.fail("%s: %s", name, std::strerror(errno));
    passwd user = {};
    passwd* result = nullptr;
    char texts[longestEntry];
    int error = 0;
    while ((error = fgetpwent_r(file.get(), &user, texts, sizeof texts, &result)) == 0)
        take(user);
    if (error == ERANGE)
        return call.fail("%s: an entry does not fit into %zu bytes: shorten it", name, longestEntry);
    return error == ENOENT || call.fail("%s: %s", name, std::strerror(error));
}

// The entries of a password file. The password service does not report whether a rewrite succeeded, so they are
// compared before and after.
using Entries = std::vector<UserEntry>;

bool readEntries(Invocation& call, const std::string& file, Entries* entries) {
    return forEachUser(call, file.c_str(), [&](const passwd& user) { entries->emplace_back(user); });
}

bool hasUser(const Entries& entries, const char* name) {
    return std::any_of(entries.begin(), entries.end(), [&](const UserEntry& entry) { return entry.name() == name; });
}

// Reads the entries before a rewrite. A rewrite keeps only the entries that can be read, so it must not follow if this
// fails.
bool canRewrite(Invocation& call, Entries* entries) {
    return hasRoot(call) && isWritable(call) && readEntries(call, utility::PWService::getFileName(), entries);
}

// Whether a rewrite turned the entries `before` into `expected`. If not, the failure says what the file holds.
bool isRewritten(Invocation& call, const Entries& before, const Entries& expected) {
    const std::string file = utility::PWService::getFileName();
    const std::string newFile = file + ".new";
    Entries entries;
    const bool isRead = readEntries(call, file, &entries);
    if (isRead && entries == expected)
        return true;
    if (isRead && entries == before)
        return call.fail("%s could not be rewritten: see the log", file.c_str());
    const std::string problem =
        isRead ? file + " is incomplete" : std::string(call.failure()) + "; it may be incomplete";
    Entries newEntries;
    if (readEntries(call, newFile, &newEntries) && newEntries == expected)
        return call.fail("%s; %s holds the complete new text: copy it by hand", problem.c_str(), newFile.c_str());
    return call.fail("%s; restore it by hand", problem.c_str());
}

bool showUsers(Invocation& call) {
    startUsers(call.answer());
    return forEachUser(call, utility::PWService::getFileName(),
                       [&](const passwd& user) { addUserRow(call.answer(), user); });
}

bool showUser(Invocation& call) {
    const char* const file = utility::PWService::getFileName();
    bool isFound = false;
    startUsers(call.answer());
    const bool isRead = forEachUser(call, file, [&](const passwd& user) {
        if (!isFound && std::strcmp(user.pw_name, call.word(0)) == 0) {
            addUserRow(call.answer(), user);
            isFound = true;
        }
    });
    return isFound || (isRead && call.fail("%s: no such user in %s", call.word(0), file));
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

// Returns the user `name` of the password file, of which `entries` were read; null with the failure set if there is
// none.
utility::PW* findUser(Invocation& call, const Entries& entries, const char* name) {
    if (!hasUser(entries, name)) {
        call.fail("%s: no such user", name);
        return nullptr;
    }
    utility::PW* const user = utility::PWService::getUser(name);
    if (user == nullptr)
        call.fail("%s cannot be read to its end", utility::PWService::getFileName());
    return user;
}

// Reads the entries to which a user is added, and the first number that is free for it. Returns false, with the failure
// set, if the name is in use or no number is left.
bool prepareUser(Invocation& call, Entries* before, unsigned int* number) {
    const char* name = call.word(0);
    *number = firstUserNumber;
    const bool isRead = forEachUser(call, utility::PWService::getFileName(), [&](const passwd& other) {
        before->emplace_back(other);
        if (other.pw_uid >= *number && other.pw_uid <= lastUserNumber)
            *number = other.pw_uid + 1;
    });
    if (hasUser(*before, name))
        return call.fail("user %s already exists", name);
    if (!isRead)
        return false;
    return *number <= lastUserNumber ||
           call.fail("%s: no user ID is left: %u, the largest for an ordinary user, is in use", name, lastUserNumber);
}

std::string homeOf(const char* name) {
    return std::string("/home/") + name;
}

void fillUser(utility::PW* user, const char* name, const char* realName, unsigned int number) {
    user->m_passwd.pw_name = user->newString(name);
    user->m_passwd.pw_passwd = user->newString(noPassword);
    user->m_passwd.pw_uid = number;
    user->m_passwd.pw_gid = number;
    user->m_passwd.pw_gecos = user->newString(realName);
    user->m_passwd.pw_dir = user->newString(homeOf(name).c_str());
    user->m_passwd.pw_shell = user->newString(shell);
}

// Adds `user` to the file that held `before`.
bool storeUser(Invocation& call, const Entries& before, utility::PW* user) {
    Entries expected = before;
    expected.emplace_back(user->m_passwd);
    utility::PWService::putUser(user);
    return isRewritten(call, before, expected);
}

bool addUser(Invocation& call) {
    const char* name = call.word(0);
    const char* realName = call.wordCount() > 1 ? call.word(1) : "";
    if (!hasRoot(call) || !isWritable(call) || !isUserName(call, name) || !isField(call, realName))
        return false;
    Entries before;
    unsigned int number = 0;
    const std::string home = homeOf(name);
    if (!prepareUser(call, &before, &number) || !isReadable(call, {name, noPassword, realName, home.c_str(), shell}))
        return false;
    utility::PW user;
    fillUser(&user, name, realName, number);
    return storeUser(call, before, &user);
}

bool deleteUser(Invocation& call) {
    Entries before;
    if (!canRewrite(call, &before))
        return false;
    utility::PW* user = findUser(call, before, call.word(0));
    if (user == nullptr)
        return false;
    Entries expected;
    std::copy_if(before.begin(), before.end(), std::back_inserter(expected),
                 [&](const UserEntry& entry) { return entry.name() != call.word(0); });
    utility::PWService::delUser(user);
    return isRewritten(call, before, expected);
}

// Reads the line of standard input with the password. Called before anything can fail: the line must never be taken for
// a command.
bool readPasswordLine(Invocation& call, std::string* password) {
    if (std::strcmp(call.word(1), "-") != 0)
        return call.fail("a password is not given on the command line: use \"password NAME\", which asks for it, or "
                         "\"password NAME -\", which reads a line of standard input");
    return call.terminal().readPlainLine(password) || call.fail("standard input has no line with the password");
}

// Asks twice, because the password is not shown.
bool askForPassword(Invocation& call, std::string* password) {
    std::string again;
    if (!readSecret(call, "New password: ", password) || !readSecret(call, "The same again: ", &again))
        return false;
    return *password == again || call.fail("the two passwords are different");
}

bool isPassword(Invocation& call, const std::string& password) {
    if (password.find('\0') != std::string::npos)
        return call.fail("a password must not contain a NUL byte");
    return !password.empty() || call.fail("the password is empty");
}

bool setPassword(Invocation& call) {
    char hash[64];
    std::string password;
    Entries before;
    const bool fromInput = call.wordCount() > 1;
    if ((fromInput && !readPasswordLine(call, &password)) || !canRewrite(call, &before))
        return false;
    utility::PW* user = findUser(call, before, call.word(0));
    if (user == nullptr || (!fromInput && !askForPassword(call, &password)) || !isPassword(call, password))
        return false;
    if (*utility::PWService::encryptPassword(password.c_str(), hash, sizeof hash) == 0)
        return call.fail("this platform's crypt() does not support MD5 hashes");
    user->m_passwd.pw_passwd = hash;
    const passwd& fields = user->m_passwd;
    if (!isReadable(call, {fields.pw_name, hash, fields.pw_gecos, fields.pw_dir, fields.pw_shell}))
        return false;
    Entries expected = before;
    std::replace_if(
        expected.begin(), expected.end(), [&](const UserEntry& entry) { return entry.name() == call.word(0); },
        UserEntry(fields));
    utility::PWService::putUser(user);
    return isRewritten(call, before, expected);
}

constexpr Command commands[] = {
    {"show users", "", "show the users of the password file", 0, 0, showUsers},
    {"show user", "NAME", "show one user", 1, 1, showUser, COMPLETE_USERS},
    {"add user", "NAME [REALNAME]", "add a user under VX_ROOT, without a password", 1, 2, addUser},
    {"delete user", "NAME", "delete a user under VX_ROOT", 1, 1, deleteUser, COMPLETE_USERS},
    {"password", "NAME [-]", "set a user's password under VX_ROOT", 1, 2, setPassword, COMPLETE_USERS, REMEMBER_NAME}};

} // namespace

constexpr CommandGroup userCommands("Users", commands);

} // namespace console
