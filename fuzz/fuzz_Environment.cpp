// Compares variables and parameter lists with simple models, and checks the folders that VX_ROOT and VX_MEM name. The
// first byte chooses which.

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "../tests/support/OrdinaryUser.h"
#include "../tests/support/TemporaryDirectory.h"
#include "Bytes.h"
#include "fw_ApplicationArguments.h"
#include "fw_Memory.h"
#include "fw_ThreadInfo.h"
#include "ut_BufferStream.h"
#include "ut_Debug.h"
#include "ut_Environment.h"
#include "ut_PWService.h"
#include "ut_ParameterList.h"

namespace {

using fuzz::Bytes;
using fuzz::codeOf;
using fuzz::require;
using utility::Environment;

typedef std::vector<std::pair<std::string, std::string>> Variables;

void requireEqual(const Environment& set, const Variables& model) {
    std::string all;
    require(set.length() == model.size());
    for (unsigned int i = 0; i < set.length(); ++i) {
        char name[300];
        require(set.ElementAt(i, name, sizeof name) == model[i].second && name == model[i].first);
        require(set.find(name) == static_cast<int>(2 * i) && set.get(name) == model[i].second);
        require(set.getAsInt(name) == std::atoi(model[i].second.c_str()));
        all += model[i].first.substr(0, 127) + '=' + model[i].second + '\n';
    }
    utility::BufferStream out(static_cast<int>(all.size()) + 1);
    set.privateInformation(out, 0);
    require(std::string(out.pTail(), static_cast<std::size_t>(out.ReadAvailable())) == all);
    require(codeOf([&] { set.ElementAt(set.length(), nullptr, 0); }) == 1229);
}

void runVariables(Bytes& in) {
    Environment set;
    Variables model;
    while (!in.isAtEnd() && model.size() < 60) {
        const bool removes = in.below(4) == 0;
        const std::string name = in.text(in.below(16) == 0 ? 200 : 4);
        const auto place =
            std::find_if(model.begin(), model.end(), [&](const auto& variable) { return variable.first == name; });
        require(set.isSet(name.c_str()) == (place != model.end()));
        if (removes) {
            set.unset(name.c_str());
            if (place != model.end())
                model.erase(place);
        } else {
            const std::string value = in.text(30);
            set.set(name.c_str(), value.c_str());
            if (place != model.end()) {
                place->second = value;
            } else {
                model.emplace_back(name, value);
            }
        }
        requireEqual(set, model);
    }
}

void runParameters(Bytes& in) {
    const char separator = static_cast<char>(in.byte());
    const std::string text = in.restText();
    std::vector<std::string> expected;
    for (std::size_t at = 0; separator != 0 && at < text.size();) {
        const std::size_t end = std::min(text.find(separator, at), text.size());
        if (end > at)
            expected.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    if (separator == 0)
        return;
    const std::unique_ptr<char[]> exact = fuzz::exactCopy(text + '\0');
    const std::unique_ptr<char[]> token(new char[text.size() + 1]);
    utility::ParameterList list(exact.get(), separator);
    for (const std::string& next : expected)
        require(list.hasNextToken() && list.nextToken(token.get()) == token.get() && token.get() == next);
    require(list.nextToken(token.get()) == nullptr && !list.hasNextToken());
    require(exact.get() == text);
}

// Runs `body` in a child process, which has its own environment and password file name, and requires that it returns.
template<typename Body>
void requireInChild(Body body) {
    const pid_t child = fork();
    require(child >= 0);
    if (child == 0) {
        body();
        _exit(0);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    require(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

// Checks the file name only; opens no file.
void runRoot(Bytes& in) {
    const std::string root = in.restText();
    requireInChild([&] {
        setenv("VX_ROOT", root.c_str(), 1);
        require(utility::PWService::getFileName() == root + "/etc/passwd");
        // The name is computed once per process.
        setenv("VX_ROOT", "/other", 1);
        require(utility::PWService::getFileName() == root + "/etc/passwd");
    });
}

// The parent of the folders that VX_MEM names; every user may write to it.
const test::TemporaryDirectory& memoryFolder() {
    static const test::TemporaryDirectory folder;
    static const int changed = chmod(folder.path().c_str(), 0777);
    require(changed == 0);
    return folder;
}

bool isFolder(const std::string& path) {
    struct stat status = {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

// The context folder is created in the folder that VX_MEM names, and a context file in it if its name is short enough.
void runMemory(Bytes& in) {
    std::string memory = memoryFolder().path();
    const bool isBelow = in.below(4) != 0;
    const std::string name = in.restText();
    // Stay inside the temporary folder.
    if (name.find('.') != std::string::npos)
        return;
    memory += (isBelow ? "/" : "") + name;
    requireInChild([&] {
        // A library that ignores VX_MEM must not write to the machine's root folder.
        test::becomeOrdinaryUser();
        char process[] = "process";
        char* words[] = {process, nullptr};
        const framework::ApplicationArguments arguments(1, words);
        const framework::ThreadInfo* const thread = framework::ThreadInfo::MyThreadInfo();
        setenv("VX_MEM", memory.c_str(), 1);
        signal(SIGUSR2, utility::Debug::SignalContext);
        const std::string folder = memory + "/processContext";
        const std::string file = folder + '/' + std::to_string(thread->getNum()) + thread->getThreadName();
        const bool isPossible = isFolder(memory);
        utility::Debug::SignalThreads(SIGUSR1);
        require(isFolder(folder) == isPossible);
        const std::size_t longest = 127;
        const bool isMade = access(file.c_str(), F_OK) == 0;
        require(isMade == (isPossible && file.size() <= longest));
        unlink(file.c_str());
        rmdir(folder.c_str());
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    const long outstanding = framework::Memory::staticOutstanding();
    Bytes in(data, size);
    // Starting a process is slow: do it for few inputs.
    const unsigned int kind = in.below(16);
    if (kind == 0) {
        runRoot(in);
    } else if (kind == 1) {
        runMemory(in);
    } else if (kind < 8) {
        runParameters(in);
    } else {
        runVariables(in);
    }
    require(framework::Memory::staticOutstanding() == outstanding);
    return 0;
}
