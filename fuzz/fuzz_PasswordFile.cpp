// Reads any bytes as a password file and rewrites it with a user added, replaced or deleted; compares the result with
// the platform's reader and writer.
//
// Protects the machine's own files from a library that ignores VX_ROOT: /etc is read-only in a private mount namespace,
// or the target runs as an ordinary user.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <utility>

#include <pwd.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "../tests/support/OrdinaryUser.h"
#include "../tests/support/PrivateMounts.h"
#include "../tests/support/TemporaryDirectory.h"
#include "Bytes.h"
#include "ut_PW.h"
#include "ut_PWService.h"

namespace {

using fuzz::Bytes;
using fuzz::require;
using utility::PW;
using utility::PWService;

// Permanently drops the privileges that the process would need to change the machine's password file.
void protectMachine() {
    if (test::makeMountsPrivate() && mount("/etc", "/etc", nullptr, MS_BIND, nullptr) == 0)
        mount(nullptr, "/etc", nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr);
    if (access("/etc", W_OK) == 0 || access("/etc/passwd", W_OK) == 0)
        test::becomeOrdinaryUser();
    require(access("/etc", W_OK) != 0 && access("/etc/passwd", W_OK) != 0);
}

// Returns the root folder, which is created on first use.
const test::TemporaryDirectory& root() {
    static const test::TemporaryDirectory* const folder = [] {
        protectMachine();
        static const test::TemporaryDirectory made;
        require(mkdir(made.path("etc").c_str(), 0777) == 0);
        setenv("VX_ROOT", made.path().c_str(), 1);
        require(PWService::getFileName() == made.path("etc/passwd"));
        return &made;
    }();
    return *folder;
}

// The entries of a file as the platform reads them, up to the first that it cannot read.
class Entries {
public:
    explicit Entries(std::string content)
        : m_content(std::move(content)), m_file(fmemopen(&m_content[0], m_content.size(), "r")) {}
    Entries(const Entries&) = delete;
    Entries& operator=(const Entries&) = delete;
    ~Entries() {
        if (m_file != nullptr)
            std::fclose(m_file);
    }

    // Returns null at the end.
    const passwd* next() {
        passwd* entry = nullptr;
        const bool isRead = m_file != nullptr && fgetpwent_r(m_file, &m_entry, m_texts, sizeof m_texts, &entry) == 0;
        return isRead ? entry : nullptr;
    }

private:
    std::string m_content;
    std::FILE* m_file;
    passwd m_entry = {};
    char m_texts[2048];
};

std::string textOf(const char* text) {
    return text != nullptr ? text : "";
}

bool isEqual(const passwd& one, const passwd& other) {
    return textOf(one.pw_name) == textOf(other.pw_name) && textOf(one.pw_passwd) == textOf(other.pw_passwd) &&
           one.pw_uid == other.pw_uid && one.pw_gid == other.pw_gid && textOf(one.pw_gecos) == textOf(other.pw_gecos) &&
           textOf(one.pw_dir) == textOf(other.pw_dir) && textOf(one.pw_shell) == textOf(other.pw_shell);
}

void checkReading(const std::string& content, const std::string& name) {
    Entries entries(content);
    unsigned int highest = 0;
    bool isFound = false;
    while (const passwd* entry = entries.next()) {
        highest = entry->pw_uid > highest ? entry->pw_uid : highest;
        if (isFound || name != entry->pw_name)
            continue;
        isFound = true;
        const PW* const user = PWService::getUser(name.c_str());
        require(user != nullptr && isEqual(user->m_passwd, *entry));
    }
    require(isFound || PWService::getUser(name.c_str()) == nullptr);
    require(PWService::getHighestUID() == highest);
}

// Returns the expected result of a rewrite of `content`: `content` itself if an entry cannot be written.
std::string rewritten(const std::string& content, const passwd& user, bool adds) {
    char* text = nullptr;
    std::size_t size = 0;
    std::FILE* const out = open_memstream(&text, &size);
    require(out != nullptr);
    Entries entries(content);
    bool isWritten = true;
    bool isFound = false;
    while (const passwd* entry = entries.next()) {
        const bool isUser = std::strcmp(entry->pw_name, user.pw_name) == 0;
        isFound = isFound || isUser;
        if (!isUser || adds)
            isWritten = isWritten && putpwent(isUser ? &user : entry, out) == 0;
    }
    if (adds && !isFound)
        isWritten = isWritten && putpwent(&user, out) == 0;
    std::fclose(out);
    const std::string result = isWritten ? std::string(text, size) : content;
    std::free(text);
    return result;
}

// Returns a line of fields, some of them invalid.
std::string line(Bytes& in) {
    if (in.below(8) == 0)
        return in.bytes(60) + '\n';
    std::string text = in.text(6) + ':' + in.text(4) + ':';
    text += std::to_string(in.below(8) == 0 ? in.number<std::uint32_t>() : in.byte()) + ':' +
            std::to_string(in.byte()) + ':';
    return text + in.text(12) + ":/" + in.text(4) + ':' + in.text(8) + '\n';
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    const test::TemporaryDirectory& folder = root();
    Bytes in(data, size);
    const bool adds = in.flag();
    const bool rewrites = in.below(4) != 0;
    PW user;
    user.m_passwd.pw_name = user.newString(in.text(6).c_str());
    user.m_passwd.pw_passwd = user.newString(in.text(10).c_str());
    user.m_passwd.pw_uid = in.number<std::uint16_t>();
    user.m_passwd.pw_gecos = user.newString(in.text(10).c_str());
    user.m_passwd.pw_dir = user.newString(in.text(10).c_str());
    if (in.flag())
        user.m_passwd.pw_shell = user.newString(in.text(10).c_str());
    std::string content;
    for (unsigned int lines = in.below(6); lines > 0; --lines)
        content += line(in);
    content += in.rest();

    folder.write("etc/passwd", content);
    checkReading(content, user.getUserName());
    if (!rewrites)
        return 0;
    const std::string expected = rewritten(content, user.m_passwd, adds);
    adds ? PWService::putUser(&user) : PWService::delUser(&user);
    require(folder.read("etc/passwd") == expected);
    checkReading(expected, user.getUserName());
    return 0;
}
