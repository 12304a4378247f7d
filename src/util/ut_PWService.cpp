#include "ut_PWService.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string>

#include <crypt.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fw_Config.h"
#include "fw_Container.h"
#include "fw_Memory.h"
#include "ut_Environment.h"
#include "ut_TimeMeasure.h"
#include "ut_Trace.h"

namespace utility {

namespace {

const unsigned int serviceSwitch = 484;
const std::size_t longestNewName = 255;
const std::size_t longestCommand = 1023;
static_assert(sizeof "cp  " + 2 * (longestNewName + sizeof "\"./\"") <= longestCommand, "every command fits");

struct FileCloser {
    void operator()(std::FILE* file) const {
        std::fclose(file);
    }
};
typedef std::unique_ptr<std::FILE, FileCloser> File;

/// A user whose texts depend on no other record.
class OwnedUser {
public:
    explicit OwnedUser(const passwd& user) : m_user(user) {
        own(&m_user.pw_name, &m_texts[0]);
        own(&m_user.pw_passwd, &m_texts[1]);
        own(&m_user.pw_gecos, &m_texts[2]);
        own(&m_user.pw_dir, &m_texts[3]);
        own(&m_user.pw_shell, &m_texts[4]);
    }
    OwnedUser(const OwnedUser&) = delete;
    OwnedUser& operator=(const OwnedUser&) = delete;

    const passwd& get() const {
        return m_user;
    }

private:
    static void own(char** field, std::string* text) {
        if (*field == nullptr)
            return;
        *text = *field;
        *field = &(*text)[0];
    }

    passwd m_user;
    std::string m_texts[5];
};

File openStream(int fd, const char* mode) {
    File file(fd >= 0 ? fdopen(fd, mode) : nullptr);
    if (file == nullptr && fd >= 0)
        close(fd);
    return file;
}

/// Opens the password file, which must be a regular one: anything else has no users, or keeps its reader waiting.
File openRegular(const char* name) {
    struct stat status = {};
    File file = openStream(name != nullptr ? open(name, O_RDONLY | O_NONBLOCK | O_CLOEXEC) : -1, "r");
    if (file != nullptr && (fstat(fileno(file.get()), &status) != 0 || !S_ISREG(status.st_mode)))
        return nullptr;
    return file;
}

/// Makes the file that replaces `original`, with no wider permissions; null when that fails. Its group, and the users
/// whom its directory grants access, may be others than those of `original`, so it is open to its owner alone.
File makeReplacement(const std::string& name, std::FILE* original) {
    struct stat status = {};
    if (fstat(fileno(original), &status) != 0)
        return nullptr;
    // What stands there from an earlier rewrite may be open elsewhere, or be another file under a second name.
    unlink(name.c_str());
    const int fd = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    File file = openStream(fd, "w");
    if (file != nullptr && fchmod(fd, status.st_mode & (S_IRUSR | S_IWUSR)) != 0)
        return nullptr;
    return file;
}

/// `path` as one word of a command; empty when there is no way to write it.
std::string quoted(const std::string& path) {
    const std::string word = path[0] == '-' ? "./" + path : path;
    const bool hasBlank = word.find_first_of(" \t\n\v\f\r") != std::string::npos;
    if (word[0] == '"' || (hasBlank && word.find('"') != std::string::npos))
        return "";
    return hasBlank ? '"' + word + '"' : word;
}

void copyOver(const std::string& from, const std::string& to) {
    const std::string command = "cp " + quoted(from) + " " + quoted(to);
    if (quoted(from).empty()) {
        VXUT_LOG(framework::Logger::LOG_ERROR, "cannot copy %s over %s", from.c_str(), to.c_str());
        return;
    }
    framework::Container::spawn(command.c_str(), nullptr, nullptr);
}

} // namespace

PW PWService::m_PW;
const char* PWService::m_pwFileName = nullptr;

const char* PWService::getFileName() {
    const char* file = "/etc/passwd";
    if (m_pwFileName == nullptr) {
        const char* root = Environment::GetEnv("VX_ROOT");
        m_pwFileName = root != nullptr ? framework::Config::generateNameString("%s%s", root, file)
                                       : framework::Memory::StaticAllocString(file);
    }
    return m_pwFileName;
}

bool PWService::readEntry(std::FILE* file) {
    passwd* result = nullptr;
    m_PW.reset();
    return fgetpwent_r(file, &m_PW.m_passwd, m_PW.m_readTexts, PW::textSize, &result) == 0 && result != nullptr;
}

PW* PWService::getUser(const char* name) {
    if (name == nullptr || getFileName() == nullptr)
        return nullptr;
    const std::string wanted(name);
    VXUT_TRACE(serviceSwitch, "search for %s", wanted.c_str());
    VXUT_TRACE(serviceSwitch, "in file: %s", getFileName());
    const File file = openRegular(getFileName());
    while (file != nullptr && readEntry(file.get())) {
        if (wanted != m_PW.getUserName())
            continue;
        m_PW.dump();
        VXUT_TRACE(serviceSwitch, "found");
        return &m_PW;
    }
    return nullptr;
}

unsigned int PWService::getHighestUID() {
    unsigned int highest = 0;
    const File file = openRegular(getFileName());
    while (file != nullptr && readEntry(file.get()))
        highest = std::max(highest, m_PW.getUid());
    return highest;
}

void PWService::putUser(PW* user) {
    rewrite(user, true, __PRETTY_FUNCTION__);
}

void PWService::delUser(PW* user) {
    rewrite(user, false, __PRETTY_FUNCTION__);
}

bool PWService::copyEntries(std::FILE* in, std::FILE* out, const passwd& user, bool adds, const char* function) {
    bool found = false;
    bool written = true;
    while (written && readEntry(in)) {
        if (std::strcmp(m_PW.getUserName(), user.pw_name) != 0) {
            written = putpwent(&m_PW.m_passwd, out) == 0;
            continue;
        }
        m_PW.dump();
        VXUT_TRACE_AS(function, serviceSwitch, "found");
        found = true;
        if (adds)
            written = putpwent(&user, out) == 0;
    }
    if (std::ferror(in) != 0) {
        VXUT_LOG(framework::Logger::LOG_ERROR, "cannot read %s: it stays as it was", getFileName());
        return false;
    }
    if (written && std::feof(in) == 0)
        VXUT_LOG(framework::Logger::LOG_ERROR, "an entry of %s cannot be read: it and what lies behind it is dropped",
                 getFileName());
    if (written && adds && !found)
        written = putpwent(&user, out) == 0;
    return written;
}

void PWService::rewrite(PW* user, bool adds, const char* function) {
    if (user == nullptr || user->getUserName() == nullptr || getFileName() == nullptr)
        return;
    const OwnedUser owned(user->m_passwd);
    user->dump();
    VXUT_TRACE_AS(function, serviceSwitch, "search for %s", owned.get().pw_name);
    const std::string fileName = getFileName();
    const std::string newName = fileName + ".new";
    VXUT_TRACE_AS(function, serviceSwitch, "in file: %s", newName.c_str());
    if (newName.size() > longestNewName)
        return;
    File in = openRegular(fileName.c_str());
    if (in == nullptr)
        return;
    File out = makeReplacement(newName, in.get());
    if (out == nullptr)
        return;
    const bool written = copyEntries(in.get(), out.get(), owned.get(), adds, function);
    in.reset();
    const bool closed = std::fclose(out.release()) == 0;
    if (written && closed)
        copyOver(newName, fileName);
}

char* PWService::encryptPassword(const char* plain, char* out, unsigned int outSize) {
    static const char alphabet[] = "./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    if (out == nullptr || outSize == 0)
        return out;
    char salt[] = "$1$........";
    const unsigned long long time = static_cast<unsigned long long>(TimeMeasure::getTimestamp());
    unsigned int shift = time & 7;
    for (int i = 0; i < 8; ++i) {
        const unsigned int value = static_cast<unsigned int>(time >> (shift * 8));
        salt[3 + i] = alphabet[value & 63];
        shift = value & 7;
    }
    const std::unique_ptr<crypt_data> data(plain != nullptr ? new (std::nothrow) crypt_data() : nullptr);
    const char* hash = data != nullptr ? crypt_r(plain, salt, data.get()) : nullptr;
    const bool hashed = hash != nullptr && hash[0] == '$';
    std::strncpy(out, hashed ? hash : "", outSize);
    out[outSize - 1] = 0;
    if (data != nullptr)
        explicit_bzero(data.get(), sizeof(crypt_data));
    return out;
}

} // namespace utility
