#include "ut_PWService.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include <crypt.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fw_Config.h"
#include "fw_Container.h"
#include "fw_Memory.h"
#include "internal/ut_FileDescriptor.h"
#include "internal/ut_Trace.h"
#include "ut_Environment.h"
#include "ut_TimeMeasure.h"

namespace utility {

namespace {

constexpr std::size_t longestNewName = 255;
constexpr std::size_t longestCommand = 1023;
static_assert(sizeof "cp  " + 2 * (longestNewName + sizeof "\"./\"") <= longestCommand, "every command fits");

struct FileCloser {
    void operator()(std::FILE* file) const {
        std::fclose(file);
    }
};
typedef std::unique_ptr<std::FILE, FileCloser> File;

// A deep copy of a user record.
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
        closeKeepingErrno(fd);
    return file;
}

bool syncDescriptor(int fd) {
    return TEMP_FAILURE_RETRY(fsync(fd)) == 0;
}

// Syncs the directory entry of the file `path` to disk. Returns false and sets `errno` if that fails.
bool syncFolderOf(const std::string& path) {
    const std::string folder = path.substr(0, path.rfind('/') + 1);
    int fd = openFile(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd >= 0) {
        // EINVAL: the file system does not support syncing folders.
        const bool isSynced = syncDescriptor(fd) || errno == EINVAL;
        closeKeepingErrno(fd);
        return isSynced;
    }
    // EACCES: the folder can be searched but not read. Sync the whole file system instead.
    if (errno == EACCES)
        fd = openFile(path.c_str(), O_RDONLY);
    if (fd < 0)
        return false;
    const bool isSynced = syncfs(fd) == 0;
    closeKeepingErrno(fd);
    return isSynced;
}

// Opens the file `name`, which must be a regular file, so that reading it cannot block. Returns null and sets `errno`
// if that fails.
File openRegular(const char* name) {
    struct stat status = {};
    File file = openStream(openFile(name, O_RDONLY | O_NONBLOCK), "r");
    if (file == nullptr || fstat(fileno(file.get()), &status) != 0)
        return nullptr;
    if (!S_ISREG(status.st_mode)) {
        file.reset();
        errno = EINVAL;
    }
    return file;
}

// The file with the new text of the password file. The destructor removes it unless it is complete, so that it is not
// mistaken for the password file and no hashes are left in it.
class NewFile {
public:
    explicit NewFile(std::string name) : m_name(std::move(name)) {}
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;
    ~NewFile() {
        if (m_isStarted && !m_isComplete)
            unlink(m_name.c_str());
    }

    std::FILE* stream() const {
        return m_file.get();
    }

    // Creates the file, with at most the permissions that `original` grants its owner. Its group, and
    // users to whom a default ACL of the folder grants access, may differ from those of `original`, so only the owner
    // gets access. Returns false and sets `errno` if that fails.
    bool make(std::FILE* original) {
        struct stat status = {};
        if (fstat(fileno(original), &status) != 0)
            return false;
        // A file of an earlier rewrite may be open in another process, or may be a hard or symbolic link.
        unlink(m_name.c_str());
        m_isStarted = true;
        const int fd = openFile(m_name.c_str(), O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
        m_file = openStream(fd, "w");
        return m_file != nullptr && fchmod(fd, status.st_mode & (S_IRUSR | S_IWUSR)) == 0;
    }

    // Syncs the file to disk and closes it. Returns false and sets `errno` if that fails.
    bool complete() {
        const bool isWritten = std::fflush(m_file.get()) == 0 && syncDescriptor(fileno(m_file.get()));
        const int error = errno;
        const bool isClosed = std::fclose(m_file.release()) == 0;
        if (!isWritten)
            errno = error;
        m_isComplete = isWritten && isClosed;
        return m_isComplete;
    }

private:
    std::string m_name;
    File m_file;
    bool m_isStarted = false;
    bool m_isComplete = false;
};

// Quotes `path` as one word of a command. Returns the empty text if that is not possible.
std::string quoted(const std::string& path) {
    const std::string word = path[0] == '-' ? "./" + path : path;
    const bool hasBlank = word.find_first_of(" \t\n\v\f\r") != std::string::npos;
    if (word[0] == '"' || (hasBlank && word.find('"') != std::string::npos))
        return "";
    return hasBlank ? '"' + word + '"' : word;
}

// Whether both are readable regular files with equal content.
bool haveSameContent(const char* one, const char* other) {
    const File first = openRegular(one);
    const File second = openRegular(other);
    if (first == nullptr || second == nullptr)
        return false;
    int byte = 0;
    do {
        byte = std::getc(first.get());
        if (byte != std::getc(second.get()))
            return false;
    } while (byte != EOF);
    return std::ferror(first.get()) == 0 && std::ferror(second.get()) == 0;
}

// Logs, in the name of the operation `function`, that a rewrite of `file` failed with `errno` before the copy.
void logUnchanged(const char* function, const char* file, const char* problem, const char* remedy) {
    VXUT_LOG_AS(function, framework::Logger::LOG_ERROR, "%s is unchanged: %s (%s); %s", file, problem,
                std::strerror(errno), remedy);
}

void logUnwritten(const char* function, const char* file) {
    logUnchanged(function, file, "its new file cannot be written and is removed",
                 "free disk space, or check the disk, and try again");
}

// Writes the given user to the new file of `file`. Logs the reason and returns false if that fails.
bool writeUser(const char* function, const char* file, const passwd& user, std::FILE* out) {
    if (putpwent(&user, out) == 0)
        return true;
    if (std::ferror(out) != 0)
        logUnwritten(function, file);
    else
        logUnchanged(function, file, "the given user cannot be written", "use fields without ':' and newline");
    return false;
}

// Writes `user` in place of `entry`, the entry with its name; null deletes the entry. Logs the reason and returns false
// if that fails.
bool replaceEntry(const char* function, const char* file, PW& entry, const passwd* user, std::FILE* out) {
    entry.dump();
    VXUT_TRACE_AS(function, TOKEN_PW_SERVICE, "found");
    return user == nullptr || writeUser(function, file, *user, out);
}

// Writes an entry of `file` to its new file. Logs the reason and returns false if that fails.
bool copyEntry(const char* function, const char* file, const passwd& entry, std::FILE* out) {
    if (putpwent(&entry, out) == 0)
        return true;
    if (std::ferror(out) != 0)
        logUnwritten(function, file);
    else
        logUnchanged(function, file, ("the entry of user " + std::string(entry.pw_name) + " cannot be written").c_str(),
                     "remove ':' from its fields, or delete the user");
    return false;
}

void copyOver(const char* function, const std::string& from, const std::string& to) {
    if (quoted(from).empty()) {
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR,
                    "%s is unchanged: no command can name it, because of a double quote in its path; %s holds the "
                    "complete new text: copy it by hand, or use another VX_ROOT",
                    to.c_str(), from.c_str());
        return;
    }
    const std::string command = "cp " + quoted(from) + " " + quoted(to);
    framework::Container::spawn(command.c_str(), nullptr, nullptr);
    // If the process ignores SIGCHLD, the exit status of the command is lost. Compare the files instead.
    if (!haveSameContent(from.c_str(), to.c_str()))
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR,
                    "%s may be incomplete: copying over it failed; %s holds the complete new text: copy it by hand "
                    "before the next rewrite replaces it",
                    to.c_str(), from.c_str());
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
    VXUT_TRACE(TOKEN_PW_SERVICE, "search for %s", wanted.c_str());
    VXUT_TRACE(TOKEN_PW_SERVICE, "in file: %s", getFileName());
    const File file = openRegular(getFileName());
    while (file != nullptr && readEntry(file.get())) {
        if (wanted != m_PW.getUserName())
            continue;
        m_PW.dump();
        VXUT_TRACE(TOKEN_PW_SERVICE, "found");
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
    bool isFound = false;
    while (readEntry(in)) {
        const bool isUser = std::strcmp(m_PW.getUserName(), user.pw_name) == 0;
        isFound = isFound || isUser;
        const bool isWritten = isUser ? replaceEntry(function, getFileName(), m_PW, adds ? &user : nullptr, out)
                                      : copyEntry(function, getFileName(), m_PW.m_passwd, out);
        if (!isWritten)
            return false;
    }
    if (std::ferror(in) != 0) {
        logUnchanged(function, getFileName(), "it cannot be read to its end", "check its disk");
        return false;
    }
    return isFound || !adds || writeUser(function, getFileName(), user, out);
}

void PWService::rewrite(PW* user, bool adds, const char* function) {
    if (user == nullptr || user->getUserName() == nullptr)
        return;
    if (getFileName() == nullptr) {
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR,
                    "the password file is unchanged: out of memory for its name; free memory and try again");
        return;
    }
    const OwnedUser owned(user->m_passwd);
    user->dump();
    VXUT_TRACE_AS(function, TOKEN_PW_SERVICE, "search for %s", owned.get().pw_name);
    const std::string fileName = getFileName();
    const std::string newName = fileName + ".new";
    VXUT_TRACE_AS(function, TOKEN_PW_SERVICE, "in file: %s", newName.c_str());
    if (newName.size() > longestNewName) {
        errno = ENAMETOOLONG;
        return logUnchanged(function, fileName.c_str(), "its new file cannot be made", "use a shorter VX_ROOT");
    }
    File in = openRegular(fileName.c_str());
    if (in == nullptr)
        return logUnchanged(function, fileName.c_str(), "it cannot be opened as a regular file",
                            "provide a regular file that this process can read");
    NewFile out(newName);
    if (!out.make(in.get()))
        return logUnchanged(function, fileName.c_str(), "its new file cannot be made",
                            "check the permissions and the free space of its folder");
    if (!copyEntries(in.get(), out.stream(), owned.get(), adds, function))
        return;
    if (!out.complete())
        return logUnwritten(function, fileName.c_str());
    if (std::feof(in.get()) == 0)
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR,
                    "an entry of %s cannot be read: it and all entries after it are dropped", fileName.c_str());
    in.reset();
    if (syncFolderOf(newName))
        copyOver(function, newName, fileName);
    else
        VXUT_LOG_AS(function, framework::Logger::LOG_ERROR,
                    "%s is unchanged: the folder of its new file cannot be synced to disk (%s); %s holds the complete "
                    "new text: copy it by hand, or try again",
                    fileName.c_str(), std::strerror(errno), newName.c_str());
}

char* PWService::encryptPassword(const char* plain, char* out, unsigned int outSize) {
    static constexpr char alphabet[] = "./0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
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
