"""Judges what scripts/coverage measured: the JSON report of gcovr, the answers, the list to write, the test programs.

A short function of a header that the libraries do not call themselves runs as a copy in the test programs, where nothing
counts. It is left out if a test program holds such a copy, which the compiler makes for a function that is called.
"""

import json
import subprocess
import sys
from pathlib import Path

LINES_DUE = 99
BRANCHES_DUE = 95


def without_spaces(text):
    return "".join(text.split())


def functions_of_tests(programs):
    """Returns the names of the library's functions that a test program defines itself."""
    names = set()
    for program in programs:
        done = subprocess.run(["nm", "-C", "--defined-only", program], stdout=subprocess.PIPE, text=True, check=True)
        names.update(without_spaces(line.split(" ", 2)[2]) for line in done.stdout.splitlines() if " W " in line)
    return names


def read_answers(path):
    """Returns how often each line is listed, and the lines that are executed by chance. Lines with # are reasons."""
    answers = {}
    by_chance = set()
    reason = ""
    for line in path.read_text().splitlines():
        if line.startswith("#"):
            reason = line
        elif line:
            if not reason:
                sys.exit(f"{path}: no reason above: {line}")
            if line.startswith("by chance: "):
                line = line[len("by chance: ") :]
                by_chance.add(line)
            answers[line] = answers.get(line, 0) + 1
    return answers, by_chance


def main(report, answers_path, list_path, *programs):
    copies = functions_of_tests(programs)
    answers, by_chance = read_answers(Path(answers_path))
    findings = []
    listed = []
    count = {"lines": 0, "run": 0, "branches": 0, "taken": 0, "copies": 0, "answered": 0}
    for file in json.loads(Path(report).read_text())["files"]:
        name = file["file"]
        text = Path(name).read_text().splitlines()
        functions = sorted(((function["lineno"], function) for function in file["functions"]), key=lambda pair: pair[0]) if name.endswith(".h") else []
        for line in file["lines"]:
            if line.get("gcovr/noncode") or line.get("gcovr/excluded"):
                continue
            number = line["line_number"]
            around = [function for begin, function in functions if begin <= number]
            if line["count"] == 0 and around and without_spaces(around[-1]["name"]) in copies:
                count["copies"] += 1
                continue
            branches = [branch for branch in line["branches"] if not branch.get("throw")]
            missed = sum(branch["count"] == 0 for branch in branches)
            count["lines"] += 1
            count["run"] += line["count"] > 0
            count["branches"] += len(branches)
            count["taken"] += len(branches) - missed
            shown = f"{name}: {' '.join(text[number - 1].split())}"
            if line["count"] == 0:
                listed.append(f"{name}:{number}: not run: {text[number - 1].strip()}")
                if answers.get(shown, 0) > 0:
                    answers[shown] -= 1
                    count["answered"] += 1
                else:
                    findings.append(f"not run and not answered: {name}:{number}: {text[number - 1].strip()}")
            elif missed:
                listed.append(f"{name}:{number}: {missed} of {len(branches)} branches not taken: {text[number - 1].strip()}")
    findings += [f"answered, but runs or is not there: {line}" for line, left in answers.items()
                 if left > 0 and line not in by_chance]  # fmt: skip
    lines = 100 * count["run"] / count["lines"]
    branches = 100 * count["taken"] / count["branches"]
    if lines < LINES_DUE:
        findings.append(f"fewer than {LINES_DUE} % of the lines run")
    if branches < BRANCHES_DUE:
        findings.append(f"fewer than {BRANCHES_DUE} % of the branches are taken")
    Path(list_path).write_text("".join(line + "\n" for line in listed))
    for finding in findings:
        print("FOUND:", finding)
    print(f"{count['copies']} lines of headers run in their callers only; {len(listed)} lines are listed in {list_path}")
    print(f"lines: {lines:.2f} % of {count['lines']}, {count['answered']} answered; "
          f"branches: {branches:.2f} % of {count['branches']}; {len(findings)} findings")  # fmt: skip
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
