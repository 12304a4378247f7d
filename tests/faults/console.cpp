// What the console does when a system call fails, is short, or is interrupted while it runs a command.
//
//   faults_console VXCONSOLE                each failure of each call under each command, each in a console of its own
//   faults_console VXCONSOLE short          one failure of the first call of each kind under a few commands
//   faults_console VXCONSOLE only COMMAND   each failure under the commands that begin so
//
// After each:
// - The console has ended by itself with status 0 or 1, within the time limit.
// - With status 0, the answer and the files are those of a run without a failure.
// - With status 1, standard error says what failed. If a command changed the password file, it says so.
// - The next command of the session was carried out, and no descriptor was left open.

#include <cstdlib>
#include <regex>
#include <sstream>

#include <sys/stat.h>

#include "TracedCalls.h"
#include "support/ProtectedMachine.h"
#include "support/TemporaryDirectory.h"

namespace {

constexpr int skipped = 77;
// `context` waits up to 20 s for threads that do not answer.
constexpr int longestSeconds = 180;

enum Answer {
    EXACT,       // the same in each run
    NUMBERS,     // the same but for its numbers
    BACK_TRACES, // back traces: the addresses vary
};

struct Scenario {
    const char* command; // %D is the directory of the trial
    Answer answer;
    bool isShort = false; // among those of a short run
};

constexpr Scenario scenarios[] = {
    {"ls %D/folder", EXACT, true},
    {"show file %D/text", EXACT},
    {"dump %D/text", EXACT},
    {"copy %D/text %D/target", EXACT, true},
    {"copy %D/text %D/text", EXACT},
    {"count words %D/text", EXACT},
    {"md5 %D/text %D/folder/one", EXACT},
    {"crc %D/text %D/folder/one", EXACT},
    {"check utf8 %D/text", EXACT},
    {"path /a/b.c", EXACT},
    {"find one /absent:%D/folder", EXACT},
    {"url http://host/path?query", EXACT},
    {"show users", EXACT, true},
    {"show user guest", EXACT},
    {"add user new \"Real Name\"", EXACT},
    {"delete user guest", EXACT, true},
    {"password guest -\nsecret", EXACT},
    {"show ports", EXACT},
    {"show disks", EXACT},
    {"date", NUMBERS},
    {"uptime", NUMBERS},
    {"context", BACK_TRACES},
    {"help ls", EXACT},
    {"show environment", EXACT},
    {"set NAME VALUE", EXACT},
    {"history", EXACT},
    {"debug on DirIterator", EXACT},
};

// Shows the open descriptors of the console.
constexpr const char* nextCommand = "ls /proc/self/fd";

const std::string users = "root:x:0:0:Root:/root:/bin/sh\nguest:*:1002:100:Guest:/home/guest:/bin/false\n";

unsigned findings = 0;

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

// What a run leaves.
struct Outcome {
    test::Traced traced;
    std::string out;
    std::string err;
    std::string users;  // the password file, with each hash as HASH
    std::string target; // the target of a copy
    std::string text;   // the source of a copy
};

class Runner {
public:
    explicit Runner(std::string program) : m_program(std::move(program)) {
        for (const char* folder : {"etc", "folder", "tmp"})
            mkdir(m_directory.path(folder).c_str(), 0755);
        m_directory.write("folder/one", "1\n");
        m_directory.write("folder/two", "22\n");
    }

    Outcome run(const Scenario& scenario, const std::string& commands, const test::Fault& fault) const {
        std::string text;
        for (int i = 0; i < 3000; ++i)
            text += "word" + std::to_string(i % 7) + (i % 10 == 9 ? '\n' : ' ');
        m_directory.write("text", text);
        m_directory.write("target", "former");
        m_directory.write("etc/passwd", users);
        unlink(m_directory.path("etc/passwd.new").c_str());
        m_directory.write("in", replaced(commands, "%D", m_directory.path()));
        m_directory.write("out", "");
        m_directory.write("err", "");
        Outcome outcome;
        outcome.traced =
            test::TracedRun([this] { return become(); }, fault, test::TracedRun::WHOLE_PROGRAM, longestSeconds)
                .result();
        outcome.out = masked(scenario, m_directory.read("out"));
        outcome.err = m_directory.read("err");
        outcome.users = std::regex_replace(m_directory.read("etc/passwd"), std::regex("\\$1\\$[^:]*:"), "HASH:");
        outcome.target = m_directory.read("target");
        outcome.text = m_directory.read("text");
        return outcome;
    }

private:
    int become() const {
        const char* const names[] = {"in", "out", "err"};
        for (int fd = 0; fd < 3; ++fd) {
            const int file = open(m_directory.path(names[fd]).c_str(), fd == 0 ? O_RDONLY : O_WRONLY | O_APPEND);
            if (file < 0 || dup2(file, fd) != fd)
                return skipped;
            if (file > 2)
                close(file);
        }
        for (int fd = 3; fd < 1024; ++fd)
            close(fd);
        const std::string root = "VX_ROOT=" + m_directory.path();
        const std::string temporary = "TMPDIR=" + m_directory.path("tmp");
        const char* const environment[] = {"PATH=/usr/bin:/bin", "TZ=UTC0", root.c_str(), temporary.c_str(), nullptr};
        const char* const words[] = {m_program.c_str(), nullptr};
        execve(words[0], const_cast<char**>(words), const_cast<char**>(environment));
        return skipped;
    }

    static std::string masked(const Scenario& scenario, const std::string& text) {
        if (scenario.answer == NUMBERS)
            return std::regex_replace(text, std::regex("[0-9]+"), "0");
        if (scenario.answer == EXACT)
            return text;
        // The reports of each thread, without their frames.
        std::string kept;
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            if (line.find("Backtrace End") != std::string::npos || line.find("  ") == 9 ||
                line.compare(0, 4, "link") == 0)
                kept += line + '\n';
        return kept;
    }

    const std::string m_program;
    const test::TemporaryDirectory m_directory;
};

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// What is wrong with the outcome of a failure, or nothing. `plain` is that of a run without a failure, `next` the
// answer to the next command.
std::string judge(const Outcome& outcome, const Outcome& plain, const std::string& next) {
    const int status = outcome.traced.status;
    if (outcome.traced.hasHung)
        return "hangs";
    if (WIFSIGNALED(status))
        return "ends by signal " + std::to_string(WTERMSIG(status));
    const int code = WEXITSTATUS(status);
    if (code != 0 && code != 1)
        return "ends with status " + std::to_string(code);
    if (outcome.text != plain.text)
        return "has changed the file to copy";
    const bool isChanged = outcome.users != users;
    const bool isUsersWhole = !isChanged || outcome.users == plain.users;
    if (!isUsersWhole && outcome.err.find("incomplete") == std::string::npos)
        return "does not say that the password file is incomplete";
    if (isChanged && outcome.err.find("could not be rewritten") != std::string::npos)
        return "says that the password file could not be rewritten";
    if (code == 1 && outcome.err.empty())
        return "fails without an error";
    if (code == 0 && code != WEXITSTATUS(plain.traced.status))
        return "succeeds, but does not without the failure";
    if (code == 0 && outcome.out != plain.out)
        return "gives another answer without an error";
    if (code == 0 && (outcome.users != plain.users || outcome.target != plain.target))
        return "leaves other files without an error";
    const bool isNextFailed = std::regex_search(
        outcome.err, std::regex("(^|\n)(ls: /proc/self/fd|standard (in|out)put: |cannot start the thread)"));
    if (!isNextFailed && !endsWith(outcome.out, next))
        return "leaves a descriptor open, or does not go on";
    return "";
}

unsigned run(const Runner& runner, const Scenario& scenario, bool isShort) {
    const test::Fault none = {0, 0, 0, false};
    const std::string commands = std::string(scenario.command) + '\n' + nextCommand + '\n';
    const Outcome plain = runner.run(scenario, commands, none);
    const std::string next = runner.run(scenario, std::string(nextCommand) + '\n', none).out;
    const auto finding = [&](const std::string& where, const std::string& what, const Outcome& outcome) {
        std::printf("%s, %s: %s\n  out: %s\n  err: %s\n", scenario.command, where.c_str(), what.c_str(),
                    outcome.out.substr(0, 300).c_str(), outcome.err.substr(0, 3000).c_str());
        std::fflush(stdout);
        ++findings;
    };
    const std::string problem = judge(plain, plain, next);
    if (!problem.empty() || next.empty())
        finding("no failure", problem, plain);
    return test::failEachCall(plain.traced.counts, isShort, [&](const test::Fault& fault) {
        const Outcome outcome = runner.run(scenario, commands, fault);
        const std::string what = judge(outcome, plain, next);
        if (!what.empty())
            finding(nameOf(fault), what, outcome);
        return outcome.traced.wasHit;
    });
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("usage: faults_console VXCONSOLE [short | only COMMAND]\n", stderr);
        return 2;
    }
    const bool isShort = argc > 2 && std::strcmp(argv[2], "short") == 0;
    const char* const only = argc > 3 ? argv[3] : "";
    if (!test::ProtectedMachine::protect()) {
        std::puts("skipped: this process can write /etc/passwd, and nothing would protect it from a fault");
        return skipped;
    }
    if (!test::TracedRun::isPossible()) {
        std::puts("skipped: system calls cannot be traced here");
        return skipped;
    }
    const Runner runner(argv[1]);
    unsigned count = 0;
    unsigned trials = 0;
    for (const Scenario& scenario : scenarios) {
        if (std::strncmp(scenario.command, only, std::strlen(only)) != 0 || (isShort && !scenario.isShort))
            continue;
        ++count;
        const unsigned failures = run(runner, scenario, isShort);
        if (failures < 10) {
            std::printf("%s: too few calls failed\n", scenario.command);
            ++findings;
        }
        trials += failures;
        std::printf("%s: %u failing calls; %u findings so far\n", scenario.command, failures, findings);
        std::fflush(stdout);
    }
    if (count == 0)
        ++findings;
    std::printf("console: %u failing calls under %u commands; %u findings\n", trials, count, findings);
    return findings == 0 ? 0 : 1;
}
