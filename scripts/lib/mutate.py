"""Tries small changes of the library's sources against its tests; scripts/mutate describes it and starts it.

This process keeps a copy of the tree with a build in build/mutate, chooses the changes, and starts workers. A worker is
the same program as process 1 of its own namespaces. It places the changed source over the original with a bind mount,
compiles it, links the library, places that over the built one, and runs the tests: nobody else sees any of it.
"""

import argparse
import collections
import concurrent.futures
import ctypes
import json
import os
import queue
import random
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

import mutations

ROOT = Path(__file__).resolve().parents[2]
WORK = ROOT / "build" / "mutate"
TREE = WORK / "tree"
BUILD = TREE / "build"
ANSWERS = ROOT / "scripts" / "lib" / "mutate-answers.txt"
FOLDERS = ["src/util", "framework"]
PERCENT_DUE = 97
CANNOT_RUN = 77
GIGABYTE = 1 << 30
SHARDS = 4

# The tests of a source are those of its own name, then these.
KIN = {
    "fw_Command": ["fw_Container"],
    "fw_ContainerSpawn": ["fw_Container"],
    "fw_RunTimeStrings": ["fw_StableStringRepository", "fw_StringRepository"],
    "fw_StandardNumbers": ["fw_Container", "ut_FileInputStream", "ut_FileOutputStream", "ut_PWService"],
    "fw_Text": ["fw_Config", "fw_Memory", "fw_Entity", "fw_FSUMemory"],
    "fw_KnownStrings": ["fw_KnownTokens", "fw_StableStringRepository"],
    "ut_Array": ["ut_IntArray", "ut_ParameterEncoding"],
    "ut_Deadline": ["ut_Waiter", "ut_BufferStreamList"],
    "ut_DebugDump": ["ut_Debug"],
    "ut_DebugLock": ["ut_DebugCrash"],
    "ut_Failure": ["ut_Buffer", "ut_PutStream", "ut_GetStream", "ut_Array", "ut_StringArray", "ut_Environment"],
    "ut_FileDescriptor": ["ut_FileInputStream", "ut_FileOutputStream"],
    "ut_GetStream": ["ut_ParameterEncoding"],
    "ut_HashChains": ["ut_Map", "ut_MapEntity", "ut_StringMap"],
    "ut_HexText": ["ut_Misc", "ut_SerialNumber", "ut_WWN"],
    "ut_PutStream": ["ut_ParameterEncoding"],
    "ut_PosixThreads": ["ut_Locker", "ut_Waiter", "ut_BufferStreamList"],
    "ut_TokenNames": ["ut_TokenArray", "ut_TokenSet"],
    "ut_Utf8": ["ut_MiscText", "ut_Buffer", "ut_PutStream"],
    "ut_WriteHead": ["ut_IPV6Address", "ut_PortAddress"],
}
# They only take addresses of inline members, to export them: scripts/symbols compares what they export.
WITHOUT_BEHAVIOR = {"fw_InlineMembers", "ut_InlineMembers"}


class CannotRun(Exception):
    """Mutants cannot be run safely on this machine; the text is the reason."""


# --- the worker

libc = ctypes.CDLL(None, use_errno=True)
MS_RDONLY, MS_REMOUNT, MS_BIND, MS_REC, MS_PRIVATE = 1, 32, 4096, 16384, 1 << 18


def mount(source, target, kind=None, flags=0, data=None):
    def encode(value):
        return None if value is None else os.fsencode(str(value))

    if libc.mount(encode(source), encode(target), encode(kind), ctypes.c_ulong(flags), encode(data)) != 0:
        raise CannotRun(f"cannot mount {target}: {os.strerror(ctypes.get_errno())}")


def unmount(target):
    if libc.umount2(os.fsencode(str(target)), 2) != 0:
        raise CannotRun(f"cannot unmount {target}: {os.strerror(ctypes.get_errno())}")


def flags_of_mounts():
    """Returns the flags that a remount must keep for each mount point, of its last mount."""
    known = {"ro": 1, "nosuid": 2, "nodev": 4, "noexec": 8, "noatime": 1024, "nodiratime": 2048, "relatime": 1 << 21}
    result = {}
    for line in Path("/proc/self/mountinfo").read_text().splitlines():
        fields = line.split()
        point = fields[4].encode().decode("unicode_escape")
        result[point] = sum(known.get(option, 0) for option in fields[5].split(","))
    return result


def protect_machine(folder):
    """Makes everything read-only for this process except `folder`, temporary directories and a copy of /etc."""
    mount(None, "/", None, MS_REC | MS_PRIVATE)
    mount(folder, folder, None, MS_BIND)
    mount("tmpfs", folder / "etc", "tmpfs", 0, "size=64m,mode=755")
    subprocess.run(["cp", "-a", "/etc/.", folder / "etc"], check=False, stderr=subprocess.DEVNULL)
    mount(folder / "etc", "/etc", None, MS_BIND)
    for temporary in ["/tmp", "/var/tmp", "/dev/shm"]:
        if os.path.isdir(temporary):
            mount("tmpfs", temporary, "tmpfs", 0, "size=1g,mode=1777")
    if os.access("/proc/sys", os.W_OK):
        mount("/proc/sys", "/proc/sys", None, MS_BIND | MS_REC)
    writable = {str(folder), str(folder / "etc"), "/etc", "/tmp", "/var/tmp", "/dev/shm", "/proc", "/dev", "/dev/pts"}
    for point, flags in flags_of_mounts().items():
        if point not in writable and not flags & MS_RDONLY:
            mount(None, point, None, MS_REMOUNT | MS_BIND | MS_RDONLY | flags)
    for path in ["/usr", "/var", "/root", ROOT]:
        if os.path.isdir(path) and os.access(path, os.W_OK):
            raise CannotRun(f"cannot make {path} read-only")


def reap_everything():
    """Ends all processes that a test left. This is process 1 of its namespace, so no process outside is reached."""
    try:
        os.kill(-1, signal.SIGKILL)
    except ProcessLookupError:
        pass
    while True:
        try:
            os.waitpid(-1, 0)
        except ChildProcessError:
            return
        except InterruptedError:
            pass


class Worker:
    def __init__(self, folder, user, group):
        self.folder = folder
        self.user, self.group = user, group
        self.originals = {}
        self.baselines = {}
        entries = json.loads((BUILD / "compile_commands.json").read_text())
        self.compiling = {entry["file"]: entry for entry in entries}
        self.linking = json.loads((WORK / "link.json").read_text())

    def compile(self, source, text):
        """Returns the path of the object file, or None if the text does not compile."""
        entry = self.compiling[str(TREE / source)]
        words = [word for word in shlex.split(entry["command"]) if not word.startswith(("-g", "-W"))]
        while not words[0].endswith("++"):  # a compiler cache and its settings
            words.pop(0)
        target = self.folder / "changed.o"
        words[words.index("-o") + 1] = str(target)
        changed = self.folder / "changed.cpp"
        changed.write_text(text)
        mount(changed, TREE / source, None, MS_BIND)
        try:
            done = subprocess.run(words + ["-w"], cwd=entry["directory"], stderr=subprocess.DEVNULL, check=False,
                                  timeout=300)  # fmt: skip
        finally:
            unmount(TREE / source)
        return target if done.returncode == 0 else None

    def link(self, source, target):
        library = "libVXut.so" if source.startswith("src/") else "libVXfw.so"
        linking = self.linking[library]
        original = self.compiling[str(TREE / source)]["command"].split(" -o ")[1].split()[0]
        words = [str(target) if word == original else word for word in linking["words"]]
        output = self.folder / "changed.so"
        words[words.index("-o") + 1] = str(output)
        done = subprocess.run(words + ["-Wl,-S"], cwd=BUILD, check=False, stderr=subprocess.DEVNULL)
        return (output, BUILD / linking["output"]) if done.returncode == 0 else (None, None)

    def run_test(self, program, seconds):
        """Whether a test program passes in this time. Its cases run in several processes, because some wait a lot."""

        def limit():
            resource.setrlimit(resource.RLIMIT_AS, (16 * GIGABYTE, 16 * GIGABYTE))
            resource.setrlimit(resource.RLIMIT_CORE, (0, resource.getrlimit(resource.RLIMIT_CORE)[1]))
            resource.setrlimit(resource.RLIMIT_CPU, (int(seconds) + 1, int(seconds) + 2))

        words = [str(BUILD / "tests" / program), "--gtest_fail_fast", "--gtest_brief=1"]
        if self.user != 0:
            words = ["unshare", "--user", f"--map-user={self.user}", f"--map-group={self.group}", "--"] + words
        running = set()
        for shard in range(SHARDS):
            environment = dict(os.environ, HOME="/tmp", TMPDIR="/tmp", GTEST_TOTAL_SHARDS=str(SHARDS),
                               GTEST_SHARD_INDEX=str(shard))  # fmt: skip
            running.add(subprocess.Popen(words, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                         stderr=subprocess.DEVNULL, cwd="/tmp", env=environment, preexec_fn=limit,
                                         start_new_session=True))  # fmt: skip
        end = time.monotonic() + seconds
        passed = True
        while passed and running:
            time.sleep(0.005)
            ended = {process for process in running if process.poll() is not None}
            passed = all(process.returncode == 0 for process in ended) and time.monotonic() < end
            running -= ended
        reap_everything()
        for process in running:
            process.returncode = -signal.SIGKILL
        for left in os.scandir("/tmp"):
            shutil.rmtree(left.path, ignore_errors=True) if left.is_dir(follow_symlinks=False) else os.unlink(left.path)
        return passed

    def passes(self, built, place, tests, seconds):
        mount(built, place, None, MS_BIND)
        try:
            return all(self.run_test(test, seconds(test)) for test in tests)
        finally:
            unmount(place)

    def prepare(self, source, tests):
        """Compiles the unchanged source and runs its tests, which must pass; measures the time that they take."""
        if source in self.originals:
            return
        target = self.compile(source, (TREE / source).read_text())
        if target is None:
            raise CannotRun(f"{source} does not compile as it is")
        self.originals[source] = target.read_bytes()
        built, place = self.link(source, target)
        for test in tests:
            begun = time.monotonic()
            if test not in self.baselines and not self.passes(built, place, [test], lambda _: 600):
                raise CannotRun(f"{test} fails without any change")
            self.baselines.setdefault(test, time.monotonic() - begun)

    def verdict(self, source, tests, mutation):
        self.prepare(source, tests)
        text = mutations.apply((TREE / source).read_text(), mutations.Mutation(*mutation))
        target = self.compile(source, text)
        if target is None:
            return "invalid"
        if target.read_bytes() == self.originals[source]:
            return "same"
        built, place = self.link(source, target)
        if built is None:
            return "invalid"
        # A slow machine must not look like a noticed change.
        survived = self.passes(built, place, tests, lambda test: 15 + 4 * self.baselines[test])
        return "survived" if survived else "noticed"


def worker_main(folder, user, group):
    """Answers requests, one per line of standard input, until it ends."""
    try:
        if os.getpid() != 1:
            raise CannotRun("no process namespace")
        protect_machine(folder)
        worker = Worker(folder, user, group)
        print(json.dumps({"ready": True}), flush=True)
        for line in sys.stdin:
            print(json.dumps({"verdict": worker.verdict(*json.loads(line))}), flush=True)
    except CannotRun as reason:
        print(json.dumps({"cannot": str(reason)}), flush=True)


class WorkerProcess:
    def __init__(self, number):
        folder = WORK / f"worker{number}"
        shutil.rmtree(folder, ignore_errors=True)
        (folder / "etc").mkdir(parents=True)
        user = [] if os.geteuid() == 0 else ["--user", "--map-root-user"]
        command = ["unshare", *user, "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", "--", "nice",
                   sys.executable, __file__, "--worker", str(folder), str(os.geteuid()), str(os.getegid())]  # fmt: skip
        self.process = subprocess.Popen(command, stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                        text=True)  # fmt: skip
        self.answer()

    def answer(self):
        line = self.process.stdout.readline()
        answer = json.loads(line) if line else {"cannot": self.process.stderr.read().strip() or "a worker ended"}
        if "cannot" in answer:
            raise CannotRun(answer["cannot"])
        return answer

    def verdict(self, source, tests, mutation):
        self.process.stdin.write(json.dumps([source, tests, mutation]) + "\n")
        self.process.stdin.flush()
        return self.answer()["verdict"]

    def stop(self):
        self.process.stdin.close()
        self.process.wait()


# --- the process that a person starts


def quietly(log, command):
    with open(log, "ab") as output:
        if subprocess.run(command, stdout=output, stderr=output, check=False).returncode != 0:
            sys.stderr.write(log.read_text())
            sys.exit(2)


def copy_tree():
    """Updates the copy. Unchanged files keep their times, so that they are not built again."""
    TREE.mkdir(parents=True, exist_ok=True)
    wanted = set()
    for path in sorted(ROOT.iterdir()):
        if path.name in ("build", ".git", ".cache"):
            continue
        for file in [path] if path.is_file() else sorted(item for item in path.rglob("*") if item.is_file()):
            copy = TREE / file.relative_to(ROOT)
            wanted.add(copy)
            if not copy.exists() or copy.read_bytes() != file.read_bytes():
                copy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(file, copy)
    for copy in [item for item in TREE.rglob("*") if item.is_file()]:
        if BUILD not in copy.parents and copy not in wanted:
            copy.unlink()


def build(tests):
    log = WORK / "build.log"
    log.write_bytes(b"")
    quietly(log, ["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=RelWithDebInfo",
                  "-DVXUT_WERROR=OFF", "-DVXUT_BUILD_EXAMPLES=OFF", "-DVXUT_BUILD_FUZZ=OFF"])  # fmt: skip
    quietly(log, ["ninja", "-C", BUILD, "VXut", *tests])
    linking = {}
    for library in ["libVXut.so", "libVXfw.so"]:
        output = (BUILD / library).resolve().name
        commands = subprocess.run(["ninja", "-C", BUILD, "-t", "commands", output], capture_output=True, text=True, check=True)
        words = shlex.split(commands.stdout.splitlines()[-1])
        words = [word for word in words if word not in (":", "&&")]
        linking[library] = {"output": output, "words": words}
    (WORK / "link.json").write_text(json.dumps(linking))


def tests_of(source):
    name = Path(source).stem
    own = [name] if (ROOT / "tests" / f"{name}_test.cpp").exists() else []
    tests = [f"{test}_test" for test in own + KIN.get(name, [])]
    if not tests:
        sys.exit(f"{source} has no tests: say in {Path(__file__).name} which ones are its")
    return tests


def chosen_sources(names):
    known = {path.stem: str(path.relative_to(ROOT)) for folder in FOLDERS for path in sorted((ROOT / folder).rglob("*.cpp"))}
    unknown = [name for name in names if Path(name).stem not in known]
    if unknown:
        sys.exit(f"no such source: {' '.join(unknown)}")
    if names:
        return [known[Path(name).stem] for name in names]
    return [path for name, path in known.items() if name not in WITHOUT_BEHAVIOR]


def changes_in_order(sources, seed):
    """Returns all places that can be changed, in an order chosen by the seed, each with one possible change."""
    chance = random.Random(seed)
    places = [(source, site) for source in sources for site in mutations.sites_of((TREE / source).read_text())]
    chance.shuffle(places)
    return [(source, chance.choice(site)) for source, site in places]


def describe(source, mutation):
    line, before, after = mutations.describe((TREE / source).read_text(), mutation)
    return f"{source}:{line}: {before} -> {after}", f"{source}: {before} -> {after}"


def answers():
    """Returns the known reasons by change, without its line number."""
    result, reason = {}, ""
    for line in ANSWERS.read_text().splitlines() if ANSWERS.exists() else []:
        if line.startswith("#"):
            reason = line.lstrip("# ") if not reason else f"{reason} {line.lstrip('# ')}"
        elif line:
            result[line] = reason
        else:
            reason = ""
    return result


def try_changes(changes, wanted, jobs):
    """Yields each change with its verdict, in order, until enough changes counted."""
    free = queue.SimpleQueue()
    workers = [WorkerProcess(number) for number in range(jobs)]
    for worker in workers:
        free.put(worker)

    def evaluate(change):
        worker = free.get()
        try:
            return worker.verdict(change[0], tests_of(change[0]), change[1])
        finally:
            free.put(worker)

    counted, changes, pending = 0, iter(changes), collections.deque()
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        while counted < wanted:
            for change in changes:
                pending.append((change, pool.submit(evaluate, change)))
                if len(pending) >= 2 * jobs:
                    break
            if not pending:
                break
            change, future = pending.popleft()
            verdict = future.result()
            counted += verdict in ("noticed", "survived")
            yield change, verdict
        for _, future in pending:
            future.cancel()
    for worker in workers:
        worker.stop()


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutate", usage="%(prog)s [-l] [-j JOBS] [N [SEED]] [NAME...]")
    parser.add_argument("-l", "--list", action="store_true")
    parser.add_argument("-j", "--jobs", type=int, default=os.cpu_count())
    parser.add_argument("words", nargs="*")
    options = parser.parse_args()
    numbers = [int(word) for word in options.words[:2] if word.isdigit()]
    names = options.words[len(numbers) :]
    wanted, seed = (numbers + [100, 1][len(numbers) :])[:2]

    copy_tree()
    sources = chosen_sources(names)
    changes = changes_in_order(sources, seed)
    if options.list:
        for change in changes[:wanted]:
            print(describe(*change)[0])
        return 0
    build(sorted({test for source in sources for test in tests_of(source)}))

    known = answers()
    counts = collections.Counter()
    begun = time.monotonic()
    try:
        for change, verdict in try_changes(changes, wanted, options.jobs):
            counts[verdict] += 1
            if verdict == "survived":
                shown, key = describe(*change)
                counts["answered"] += key in known
                print(f"answered: {shown}\n    {known[key]}" if key in known else f"SURVIVED: {shown}", flush=True)
    except CannotRun as reason:
        print(f"not run: {reason}")
        return CANNOT_RUN
    counted = counts["noticed"] + counts["survived"]
    percent = 100 * counts["noticed"] / counted if counted else 0
    print(f"{sum(counts.values()) - counts['answered']} changes tried in {time.monotonic() - begun:.0f} s with seed {seed}: "
          f"{counts['invalid']} did not compile, {counts['same']} gave the same code, {counts['noticed']} noticed, "
          f"{counts['survived']} survived ({counts['answered']} of them answered): {percent:.1f} % noticed")  # fmt: skip
    return 0 if percent >= PERCENT_DUE else 1


if __name__ == "__main__":
    if sys.argv[1:2] == ["--worker"]:
        worker_main(Path(sys.argv[2]), int(sys.argv[3]), int(sys.argv[4]))
    else:
        sys.exit(main())
