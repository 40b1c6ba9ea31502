#!/usr/bin/env python3
"""Plants one-line faults, one at a time, and tells which of them the tests catch.

    scripts/plant_faults.py [--count 100] [--seed 1] [--room ROOM]... [--base REV] [--jobs 2] [--report FILE]

It works in a checkout of its own (build/faults/tree), never in this one. A fault is one changed token of one line of src/:
a comparison moved by one or turned round, a sum that became a difference, an "and" that became an "or", a number one too
large, a flag turned round, a call left out. Places are drawn by the seed, as many from each room as its share of lines
(at least two). With --base only lines that changed since that revision are drawn. A fault that does not compile is
replaced by another.

The test program of the fault's own room is built and run first, then the stories, then one after the other all the rest,
until one fails: most faults cost one compilation, one link and a second or two. The report has a line a fault: caught (by
which test) or SURVIVED, the place, the line before and after. A run that was stopped goes on where the report ends, when
it is started again with the same words at the same revision; --anew begins a new report. A survivor is a place to look:
some faults change nothing that anybody could see.
"""
import argparse
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PLACE = ROOT / "build" / "faults"
TREE = PLACE / "tree"
BUILD = TREE / "build" / "ci"  # where a compiler cache finds what other checkouts have compiled
BASELINE = PLACE / "baseline.json"
SERVER_TEST = "sound_server_test"  # needs a sound server that its script starts

# What is replaced by what; the first group of a pattern is the token.
SWAPS = [
    (re.compile(r"[^<>=!-](<=)[^<>=]"), "<"), (re.compile(r" (<) "), "<="),
    (re.compile(r"[^<>=!-](>=)[^<>=]"), ">"), (re.compile(r" (>) "), ">="),
    (re.compile(r"(==)"), "!="), (re.compile(r"(!=)"), "=="),
    (re.compile(r"(&&)"), "||"), (re.compile(r"(\|\|)"), "&&"),
    (re.compile(r"\w (\+) \w"), "-"), (re.compile(r"\w (-) \w"), "+"),
    (re.compile(r"\w (\*) \w"), "/"), (re.compile(r"\w (/) \w"), "*"),
    (re.compile(r"\b(true)\b"), "false"), (re.compile(r"\b(false)\b"), "true"),
]
NUMBER = re.compile(r"(?<![\w.\"'])(\d+)(?![\w.\"'])")
CALL = re.compile(r"^\s+[\w.>:-]+\([^;]*\);\s*$")


def code_lines(path):
    """Numbers and texts of lines that hold code: no comments, includes, literals over the whole line, declarations of headers."""
    inside = False
    for number, line in enumerate(path.read_text(encoding="utf-8").split("\n")):
        text = line.strip()
        if text.startswith("/*"):
            inside = True
        if not inside and text and not text.startswith(("//", "#", "using ", "namespace ", "static_assert")):
            yield number, line
        if text.endswith("*/"):
            inside = False


def code_part(line):
    """The line with literals and the trailing comment blanked, so that places in it keep their columns."""
    line = re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])\'', lambda m: "\0" * len(m.group()), line)
    return re.sub(r"//.*$", lambda m: "\0" * len(m.group()), line)


def faults_of(line):
    """Every way of spoiling this line."""
    code = code_part(line)
    for pattern, instead in SWAPS:
        for match in pattern.finditer(code):
            yield line[: match.start(1)] + instead + line[match.end(1):]
    for match in NUMBER.finditer(code):
        yield line[: match.start(1)] + str(int(match.group(1)) + 1) + line[match.end(1):]
    if CALL.match(code) and "return" not in code and "\0" not in code:
        yield ""


def room_of(path):
    parts = path.relative_to(TREE / "src").parts
    return "/".join(parts[:-1])


def changed_lines(base):
    """(file, line number from 0) of every line that is new since `base`."""
    out, name, found = git("diff", "-U0", base, "--", "src"), None, set()
    for line in out.split("\n"):
        if line.startswith("+++ b/"):
            name = line[6:]
        if match := re.match(r"@@ -\S+ \+(\d+)(?:,(\d+))? @@", line):
            first, count = int(match[1]), int(match[2] or 1)
            found.update((name, n - 1) for n in range(first, first + count))
    return found


def git(*words):
    return subprocess.run(["git", "-C", ROOT, *words], check=True, capture_output=True, text=True).stdout


def draw(arguments):
    """An endless list of faults: from each room its share, in any order, and so on."""
    generator = random.Random(arguments.seed)
    only = changed_lines(arguments.base) if arguments.base else None
    places = {}
    for path in sorted((TREE / "src").rglob("*.cpp")):
        room = room_of(path)
        if arguments.room and room not in arguments.room:
            continue
        name = str(path.relative_to(TREE))
        for number, line in code_lines(path):
            if (only is None or (name, number) in only) and any(faults_of(line)):
                places.setdefault(room, []).append((path, number, line))
    total = sum(len(lines) for lines in places.values())
    quota = {room: max(2, round(arguments.count * len(lines) / total)) for room, lines in places.items()}
    for lines in places.values():
        generator.shuffle(lines)
    while any(places.values()):
        some = []
        for room in sorted(places):
            some += [places[room].pop() for _ in range(min(quota[room], len(places[room])))]
        generator.shuffle(some)
        for path, number, line in some:
            yield path, number, line, generator.choice(list(faults_of(line)))


def run(words, seconds, folder=None):
    """Status and output; 124 when it took longer. Windows are drawn offscreen."""
    screenless = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    try:
        done = subprocess.run(words, cwd=folder, capture_output=True, text=True, timeout=seconds, errors="replace",
                              env={**screenless, "QT_QPA_PLATFORM": "offscreen"})
        return done.returncode, done.stdout + done.stderr
    except subprocess.TimeoutExpired:
        return 124, "timeout"


def prepare():
    """Checks out this revision and configures its build; the revision."""
    revision = git("rev-parse", "HEAD").strip()
    PLACE.mkdir(parents=True, exist_ok=True)
    if (TREE / ".git").exists():
        subprocess.run(["git", "-C", TREE, "checkout", "--quiet", "--force", "--detach", revision], check=True)
    else:
        shutil.rmtree(TREE, ignore_errors=True)
        git("worktree", "prune")
        git("worktree", "add", "--detach", str(TREE), revision)
    launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
    linker = ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=mold"] if shutil.which("mold") else []
    subprocess.run(["cmake", "--preset", "ci", *launcher, *linker], cwd=TREE, check=True, stdout=subprocess.DEVNULL)
    return revision


class Programs:
    """The test programs: what they are called, and how long each takes when nothing is wrong."""

    def __init__(self, revision, jobs):
        self.jobs = jobs
        output = run(["cmake", "--build", BUILD, "--target", "help"], 60)[1]
        self.names = sorted(set(re.findall(r"^(\w+_(?:test|fuzz)):", output, re.M)) - {SERVER_TEST})
        self.known = {"revision": revision, "seconds": {}}
        if BASELINE.exists() and (kept := json.loads(BASELINE.read_text()))["revision"] == revision:
            self.known = kept

    def seconds(self, program):
        return self.known["seconds"].get(program)

    def build(self, program):
        # A story needs the program that it drives.
        targets = [program, "parlowen-headless"] if program == "headless_test" else [program]
        return run(["cmake", "--build", BUILD, "-j", str(self.jobs), "--target", *targets], 3600)

    def measure(self, program):
        """Builds and runs it in a tree without a fault."""
        status, output = self.build(program)
        if status != 0:
            sys.exit(f"{program} does not build without a fault:\n{output[-2000:]}")
        began = time.time()
        if failing := self.failure(program, 600):
            sys.exit(f"a test fails without a fault: {failing}")
        self.known["seconds"][program] = time.time() - began
        BASELINE.write_text(json.dumps(self.known, indent=1))

    def failure(self, program, seconds):
        """The first test of the program that fails, or ""."""
        words = [BUILD / "bin" / program]
        if program.endswith("_test"):
            words += ["--gtest_fail_fast", "--gtest_brief=1"]
        status, output = run(words, seconds, BUILD)
        if status == 0:
            return ""
        match = re.search(r"\[  FAILED  \] ([\w/.]+)", output)
        return f"{program} {match[1] if match else 'hangs' if status == 124 else 'ends early'}"

    def for_room(self, room):
        """Those first that are most likely to see a fault in the room; slow ones last."""
        own = {"shell/qt": "shell_qt_test", "shell/headless": "headless_test"}.get(room, room.split("/")[0] + "_test")
        first = list(dict.fromkeys([own, "headless_test", "shell_test"]))
        rest = sorted((p for p in self.names if p not in first), key=lambda p: self.seconds(p) or 1e9)
        return [p for p in first if p in self.names] + rest


def judge(path, clean, spoiled, programs):
    """Builds and tests the planted fault: None when it does not compile, "" when nothing sees it, else who does."""
    for program in programs.for_room(room_of(path)):
        if programs.seconds(program) is None:
            path.write_text(clean, encoding="utf-8")
            programs.measure(program)
        path.write_text(spoiled, encoding="utf-8")
        status, output = programs.build(program)
        if status != 0:
            # A test program that cannot even list its tests has met the fault.
            return None if re.search(r"error:", output) else f"{program} cannot list its tests"
        if test := programs.failure(program, 20 + 5 * programs.seconds(program)):
            return test
    return ""


def done_before(report):
    """What a report says: each fault and how it ended."""
    if not report.exists():
        return {}
    lines = [line.rstrip("\n").split("\t") for line in report.open(encoding="utf-8") if not line.startswith("#")]
    return {(words[2], words[5]): words[0] for words in lines if len(words) == 6}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--room", action="append")
    parser.add_argument("--base")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--anew", action="store_true")
    parser.add_argument("--report", type=pathlib.Path, default=PLACE / "report.txt")
    arguments = parser.parse_args()
    revision = prepare()
    programs = Programs(revision, arguments.jobs)
    words = f"# {revision} seed {arguments.seed} base {arguments.base} rooms {arguments.room} count {arguments.count}\n"
    if arguments.anew or not arguments.report.exists() or arguments.report.open(encoding="utf-8").readline() != words:
        arguments.report.write_text(words, encoding="utf-8")
    before, counts, began = done_before(arguments.report), {"caught": 0, "SURVIVED": 0}, time.time()
    with open(arguments.report, "a", encoding="utf-8") as report:
        for path, number, line, spoiled in draw(arguments):
            if sum(counts.values()) >= arguments.count:
                break
            place, instead = f"{path.relative_to(TREE)}:{number + 1}", spoiled.strip() or "(left out)"
            if (word := before.get((place, instead))) is None:
                text = path.read_text(encoding="utf-8")
                lines = text.split("\n")
                lines[number] = spoiled
                try:
                    who = judge(path, text, "\n".join(lines), programs)
                finally:
                    path.write_text(text, encoding="utf-8")
                word = "no fault" if who is None else "caught" if who else "SURVIVED"
                print(f"{word}\t{who or '-'}\t{place}\t{line.strip()}\t→\t{instead}", file=report, flush=True)
            if word in counts:
                counts[word] += 1
    share = 100 * counts["caught"] / max(1, sum(counts.values()))
    print(f"{counts['caught']} of {sum(counts.values())} faults caught ({share:.0f} %), {time.time() - began:.0f} s; {arguments.report}")


if __name__ == "__main__":
    main()
