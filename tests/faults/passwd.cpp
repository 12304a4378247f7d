// What is left of a password file when its rewrite is killed, runs out of disk, or has a system call fail.
//
//   faults_passwd           500 kills of rewrites of 20,000 entries; a full disk at every block; each failing call
//   faults_passwd short     the same with less of everything
//   faults_passwd KILLS SEED
//   faults_passwd stopped   shows that a run that is stopped by a signal leaves no file
//
// After each, the password file or the `.new` file beside it holds one whole text. Where the process lives, a log line
// of level 0 says so unless the password file holds the new text, and what the line says is true.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <thread>

#include <dirent.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include "TracedCalls.h"
#include "support/PrivateMounts.h"
#include "support/ProtectedMachine.h"
#include "support/TemporaryDirectory.h"
#include "ut_PWService.h"

namespace {

using Clock = std::chrono::steady_clock;
using utility::PW;
using utility::PWService;

constexpr int skipped = 77;
constexpr int leaked = 3;
constexpr int longestSeconds = 60;
constexpr int addedEntries = 16;

constexpr unsigned trialsPerLine = 50;

unsigned findings = 0;

// Shows that a long run goes on.
void showProgress(const char* what, unsigned done) {
    if (done % trialsPerLine == 0) {
        std::printf("%s: %u so far; %u findings\n", what, done, findings);
        std::fflush(stdout);
    }
}

void report(const std::string& trial, const std::string& finding) {
    std::printf("%s: %s\n", trial.c_str(), finding.c_str());
    ++findings;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

std::string usersText(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        std::string line = "user" + std::to_string(10000 + i) + ":x:" + std::to_string(10000 + i) +
                           ":100:A user of them:/home/user" + std::to_string(10000 + i) + ":/bin/sh";
        line.resize(63, '/');
        text += line + '\n';
    }
    return text;
}

// Long, so that a file with several entries of the user grows by pages.
const std::string realName(1500, 'N');

std::string addedLine() {
    return "added:pw:2000:2001:" + realName + ":/home:/bin/sh\n";
}

void putAdded() {
    PW user;
    user.m_passwd.pw_name = user.newString("added");
    user.m_passwd.pw_passwd = user.newString("pw");
    user.m_passwd.pw_uid = 2000;
    user.m_passwd.pw_gid = 2001;
    user.m_passwd.pw_gecos = user.newString(realName.c_str());
    user.m_passwd.pw_dir = user.newString("/home");
    user.m_passwd.pw_shell = user.newString("/bin/sh");
    PWService::putUser(&user);
}

// A password file and what it may become.
class Scene {
public:
    // The file has `text`, and then `entries` entries of the user that a rewrite puts, or none.
    Scene(const std::string& root, const std::string& text, int entries = 0)
        : m_root(root), m_before(text), m_after(text) {
        for (int i = 0; i < entries; ++i) {
            m_before += "added:x:1:1::/:/bin/sh\n";
            m_after += addedLine();
        }
        if (entries == 0)
            m_after += addedLine();
    }

    std::string file() const {
        return m_root + "/etc/passwd";
    }
    std::string newFile() const {
        return file() + ".new";
    }
    std::string log() const {
        return m_root + ".log";
    }
    std::size_t size() const {
        return m_before.size();
    }

    // Puts everything back; false if it does not fit.
    bool reset() const {
        mkdir(m_root.c_str(), 0755);
        mkdir((m_root + "/etc").c_str(), 0755);
        unlink(newFile().c_str());
        std::ofstream(log()).flush();
        std::ofstream file(this->file(), std::ios::binary | std::ios::trunc);
        file.write(m_before.data(), static_cast<std::streamsize>(m_before.size()));
        file.close();
        return file.good();
    }

    // Turns the process into one that rewrites the file.
    void enter() const {
        setenv("VX_ROOT", m_root.c_str(), 1);
        const int fd = open(log().c_str(), O_WRONLY | O_APPEND);
        dup2(fd, STDERR_FILENO);
        close(fd);
    }

    bool isBefore() const {
        return contentOf(file()) == m_before;
    }
    bool isAfter() const {
        return contentOf(file()) == m_after;
    }
    bool isNewComplete() const {
        return contentOf(newFile()) == m_after;
    }

    // Reports what must not be, and counts what is.
    void judge(const std::string& trial, bool hasLived) {
        const std::string text = contentOf(file());
        const bool before = text == m_before;
        const bool after = text == m_after;
        const bool complete = isNewComplete();
        ++(before ? m_unchanged : after ? m_rewritten : m_partial);
        if (!before && !after && !complete)
            report(trial, "neither " + file() + " nor its .new file holds a whole text");
        if (hasLived)
            judgeLog(trial, before, after, complete);
    }

    std::string figures() const {
        return std::to_string(m_unchanged) + " unchanged, " + std::to_string(m_rewritten) + " rewritten, " +
               std::to_string(m_partial) + " with the whole text in the .new file alone";
    }

private:
    void judgeLog(const std::string& trial, bool before, bool after, bool complete) const {
        const std::string lines = contentOf(log());
        const auto says = [&](const char* text) {
            return lines.find(text) != std::string::npos;
        };
        const bool isNamed = says((file() + " is unchanged").c_str()) || says((file() + " may be incomplete").c_str());
        if (!after && !isNamed)
            report(trial, "no log line says that " + file() + " is not rewritten: " + lines);
        if (says(" is unchanged") && !before)
            report(trial, "not true: " + lines);
        if (says("holds the complete new text") && !complete)
            report(trial, "not true: " + lines);
        if (!before && !after && !says("may be incomplete"))
            report(trial, "not said that the file is incomplete: " + lines);
        if (isNamed && !says("holds the complete new text") && access(newFile().c_str(), F_OK) == 0 && !isUnlinkKept)
            report(trial, "the incomplete .new file is left: " + lines);
    }

public:
    bool isUnlinkKept = false; // the `.new` file could not be removed

private:
    std::string m_root;
    std::string m_before;
    std::string m_after;
    unsigned m_unchanged = 0;
    unsigned m_rewritten = 0;
    unsigned m_partial = 0;
};

unsigned openDescriptors() {
    unsigned count = 0;
    for (int fd = 0; fd < 256; ++fd)
        count += fcntl(fd, F_GETFD) >= 0 ? 1 : 0;
    return count;
}

// One rewrite; the result is an exit status.
int rewriteOnce() {
    const unsigned before = openDescriptors();
    test::TracedRun::mark();
    putAdded();
    test::TracedRun::mark();
    const bool isChildLeft = waitpid(-1, nullptr, WNOHANG) >= 0;
    return openDescriptors() == before && !isChildLeft ? 0 : leaked;
}

// Waits for all children, of killed ones as well; false if that takes too long.
bool reapAll() {
    const auto end = Clock::now() + std::chrono::seconds(longestSeconds);
    for (;;) {
        const pid_t pid = waitpid(-1, nullptr, WNOHANG);
        if (pid < 0 && errno == ECHILD)
            return true;
        if (Clock::now() > end)
            return false;
        if (pid == 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

pid_t startRewrite(const Scene& scene) {
    const pid_t child = fork();
    if (child != 0)
        return child;
    setpgid(0, 0);
    scene.enter();
    _exit(rewriteOnce());
}

// How long a rewrite takes that nothing disturbs.
std::chrono::microseconds measureRewrite(Scene& scene) {
    scene.reset();
    const auto begun = Clock::now();
    waitpid(startRewrite(scene), nullptr, 0);
    const auto time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begun);
    if (!scene.isAfter())
        report("no kill", "the file is not rewritten: " + contentOf(scene.log()));
    return time;
}

// Kills rewrites until `kills` of them were under way. Under load a rewrite takes longer or, when the load has ended,
// less long than before: moments are chosen within the shortest of the last ones that were measured.
void killAtRandom(Scene& scene, unsigned kills, unsigned seed) {
    constexpr std::size_t measuredAtOnce = 5;
    constexpr unsigned triesPerMeasurement = 20;
    std::mt19937 random(seed);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    std::vector<std::chrono::microseconds> measured;
    for (std::size_t i = 0; i < measuredAtOnce; ++i)
        measured.push_back(measureRewrite(scene));
    unsigned hits = 0;
    unsigned tries = 0;
    while (hits < kills && tries < 20 * kills) {
        if (++tries % triesPerMeasurement == 0) {
            measured.erase(measured.begin());
            measured.push_back(measureRewrite(scene));
        }
        const auto shortest = *std::min_element(measured.begin(), measured.end());
        std::uniform_int_distribution<long> moment(0, static_cast<long>(shortest.count()));
        scene.reset();
        const long wait = moment(random);
        const bool isGroup = hits % 2 == 1;
        const pid_t child = startRewrite(scene);
        setpgid(child, child);
        std::this_thread::sleep_for(std::chrono::microseconds(wait));
        kill(isGroup ? -child : child, SIGKILL);
        int status = 0;
        waitpid(child, &status, 0);
        const std::string trial =
            std::string(isGroup ? "group" : "process") + " killed after " + std::to_string(wait) + " us";
        if (!reapAll())
            report(trial, "a process is left that does not end");
        if (!WIFSIGNALED(status))
            continue;
        ++hits;
        scene.judge(trial, false);
        showProgress("kills", hits);
    }
    std::printf("kills: %u of rewrites that were under way, in %u tries, within %ld us at the end, seed %u; %s\n", hits,
                tries, static_cast<long>(std::min_element(measured.begin(), measured.end())->count()), seed,
                scene.figures().c_str());
    if (hits < kills)
        report("kills", "too few hit a rewrite: " + std::to_string(hits) + " of " + std::to_string(kills));
}

// Runs one rewrite on a disk of `pages` pages that the password file fills in part; false if it does not hold even
// that.
int rewriteOnDisk(const std::string& directory, const std::string& text, int pages, const std::string& log) {
    if (!test::mountSmallDisk(directory, pages))
        return skipped;
    Scene scene(directory + "/root", text, addedEntries);
    // The log is on another disk.
    if (!scene.reset() || !scene.isBefore())
        return 4;
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        const int fd = open(log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        scene.enter();
        dup2(fd, STDERR_FILENO);
        close(fd);
        _exit(rewriteOnce());
    }
    int status = 0;
    waitpid(child, &status, 0);
    const std::string trial = "disk of " + std::to_string(pages) + " pages";
    if (status != 0)
        report(trial, "the process ended with wait status " + std::to_string(status));
    // Read there what was logged.
    unlink(scene.log().c_str());
    if (symlink(log.c_str(), scene.log().c_str()) != 0)
        report(trial, "cannot link the log");
    const unsigned before = findings;
    scene.judge(trial, true);
    if (findings != before)
        return 1;
    return scene.isAfter() ? 0 : scene.isBefore() ? 5 : 6;
}

void fillDisks(const test::TemporaryDirectory& directory, int entries) {
    const std::string disk = directory.path("disk");
    mkdir(disk.c_str(), 0755);
    const std::string text = usersText(entries);
    const int pages = static_cast<int>(text.size()) / getpagesize();
    std::map<int, unsigned> outcomes;
    for (int size = pages; size <= 2 * pages + 16; ++size) {
        std::fflush(nullptr);
        const pid_t child = fork();
        if (child == 0) {
            alarm(longestSeconds);
            const int outcome = rewriteOnDisk(disk, text, size, directory.path("log"));
            std::fflush(nullptr);
            _exit(outcome);
        }
        int status = 0;
        waitpid(child, &status, 0);
        const int outcome = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        ++outcomes[outcome];
        showProgress("full disk", static_cast<unsigned>(size - pages + 1));
        if (outcome == -1 || outcome == 1)
            report("disk of " + std::to_string(size) + " pages", "see above; wait status " + std::to_string(status));
        if (outcome == skipped) {
            std::puts("full disk: skipped: this user must not mount a small disk");
            return;
        }
    }
    std::printf("full disk: sizes from %d to %d pages of %d bytes: %u too small for the password file, %u unchanged, "
                "%u with the whole text in the .new file alone, %u rewritten\n",
                pages, 2 * pages + 16, getpagesize(), outcomes[4], outcomes[5], outcomes[6], outcomes[0]);
    if (outcomes[5] == 0 || outcomes[6] == 0 || outcomes[0] == 0)
        report("full disk", "not every outcome was met");
}

void failCalls(Scene& scene, bool isShort) {
    if (!test::TracedRun::isPossible()) {
        std::puts("failing calls: skipped: system calls cannot be traced here");
        return;
    }
    const auto rewrite = [&] {
        scene.enter();
        return rewriteOnce();
    };
    scene.reset();
    const test::Traced dry = test::TracedRun(rewrite, {0, 0, 0, false}).result();
    if (dry.status != 0 || !scene.isAfter())
        report("no fault", "the file is not rewritten: " + contentOf(scene.log()));
    unsigned done = 0;
    const unsigned trials = test::failEachCall(dry.counts, isShort, [&](const test::Fault& fault) {
        showProgress("failing calls", ++done);
        scene.reset();
        const test::Traced traced =
            test::TracedRun(rewrite, fault, test::TracedRun::WHERE_MARKED, longestSeconds).result();
        if (traced.hasHung)
            report(nameOf(fault), "hangs");
        else if (traced.status != 0)
            report(nameOf(fault), "wait status " + std::to_string(traced.status) +
                                      (traced.status == leaked << 8 ? ": a descriptor or a process is left" : ""));
        scene.isUnlinkKept = fault.number == SYS_unlink;
        scene.judge(nameOf(fault), true);
        return traced.wasHit;
    });
    std::printf("failing calls: %u, of the rewrite and of the command that it runs; %s\n", trials,
                scene.figures().c_str());
    if (trials < 20)
        report("failing calls", "too few took place");
}

int runAll(const test::TemporaryDirectory& directory, bool isShort, unsigned kills, unsigned seed) {
    Scene large(directory.path("large"), usersText(isShort ? 2000 : 20000));
    killAtRandom(large, kills, seed);
    fillDisks(directory, isShort ? 200 : 20000);
    Scene small(directory.path("small"), usersText(isShort ? 60 : 400));
    failCalls(small, isShort);
    std::printf("password file: %u findings\n", findings);
    std::fflush(stdout);
    return findings == 0 ? 0 : 1;
}

volatile sig_atomic_t stopSignal = 0;
volatile sig_atomic_t worker = 0;

void stopWorker(int sig) {
    stopSignal = sig;
    kill(worker, SIGKILL);
}

// Runs `body` in a child process and returns its exit status. A signal that stops this process ends the child first
// and is left in `stopSignal`. All processes that the child started have then ended and use no file any more.
template<class Body>
int runStoppable(Body&& body) {
    sigset_t stops;
    sigset_t former;
    sigemptyset(&stops);
    for (const int sig : {SIGHUP, SIGINT, SIGTERM})
        sigaddset(&stops, sig);
    sigprocmask(SIG_BLOCK, &stops, &former);
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    const pid_t child = fork();
    if (child == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        sigprocmask(SIG_SETMASK, &former, nullptr);
        _exit(body());
    }
    if (child < 0)
        return 2;
    worker = child;
    for (const int sig : {SIGHUP, SIGINT, SIGTERM})
        signal(sig, stopWorker);
    sigprocmask(SIG_SETMASK, &former, nullptr);
    int result = 2;
    int status = 0;
    for (pid_t ended; (ended = waitpid(-1, &status, 0)) >= 0 || errno == EINTR;)
        if (ended == child && WIFEXITED(status))
            result = WEXITSTATUS(status);
    // The number of an ended process may be in use again.
    for (const int sig : {SIGHUP, SIGINT, SIGTERM})
        signal(sig, SIG_DFL);
    return result;
}

int runIn(const std::string& parent, bool isShort, unsigned kills, unsigned seed) {
    if (!parent.empty())
        setenv("TMPDIR", parent.c_str(), 1);
    int result = 0;
    {
        const test::TemporaryDirectory directory;
        result = runStoppable([&] { return runAll(directory, isShort, kills, seed); });
    }
    if (stopSignal != 0)
        raise(stopSignal);
    return result;
}

// Stops a run in the middle of its rewrites.
int showStop() {
    namespace fs = std::filesystem;
    const test::TemporaryDirectory directory;
    unsigned left = 0;
    for (const int sig : {SIGTERM, SIGINT}) {
        const pid_t child = fork();
        if (child == 0)
            _exit(runIn(directory.path(), false, 500, 1));
        const auto end = Clock::now() + std::chrono::seconds(longestSeconds);
        bool hasBegun = false;
        while (!hasBegun && Clock::now() < end) {
            for (const auto& entry : fs::directory_iterator(directory.path()))
                hasBegun = hasBegun || access((entry.path() / "large/etc/passwd.new").c_str(), F_OK) == 0;
        }
        if (!hasBegun)
            report("stop", "no rewrite has begun");
        kill(child, sig);
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFSIGNALED(status) || WTERMSIG(status) != sig)
            report("stop", "wait status " + std::to_string(status));
        for (const auto& entry : fs::directory_iterator(directory.path())) {
            report("stop", "left: " + entry.path().string());
            ++left;
        }
    }
    std::printf("stopped runs: 2; %u files left; %u findings\n", left, findings);
    return findings == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 1 ? argv[1] : "";
    const bool isShort = mode == "short";
    const unsigned kills = isShort ? 10 : argc > 1 ? static_cast<unsigned>(std::atoi(argv[1])) : 500;
    const unsigned seed = argc > 2 ? static_cast<unsigned>(std::atoi(argv[2])) : std::random_device()();
    if (!test::ProtectedMachine::protect()) {
        std::puts("skipped: this process can write /etc/passwd, and nothing would protect it from a fault");
        return skipped;
    }
    return mode == "stopped" ? showStop() : runIn("", isShort, kills, seed);
}
