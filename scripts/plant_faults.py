#!/usr/bin/env python3
"""Plants one-line faults, one at a time, and tells which of them the tests catch.

    scripts/plant_faults.py [--count 100] [--seed 1] [--room ROOM]... [--base REV] [--jobs 2] [--report FILE]

It works in a checkout of its own (build/faults/tree), never in this one. A fault is one changed token of one line of src/:
a comparison moved by one or turned round, a sum that became a difference, an "and" that became an "or", a number one too
large, a flag turned round, a call left out. Places are drawn by the seed, as many from each room as its share of lines
(at least two). With --base only lines that changed since that revision are drawn. A fault that does not compile is
replaced by another. Tests of the fault's own room run first, then the stories, then all others, until one fails.

The report has a line a fault: caught (by which test) or SURVIVED, the place, the line before and after. A survivor is a
place to look: some faults change nothing that anybody could see.
"""
import argparse
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PLACE = ROOT / "build" / "faults"
TREE, BUILD = PLACE / "tree", PLACE / "build"

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
    """An endless list of faults, room by room in turn by their shares of lines."""
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
        for room in sorted(places):
            for _ in range(quota[room]):
                if places[room]:
                    path, number, line = places[room].pop()
                    yield path, number, line, generator.choice(list(faults_of(line)))


def run(words, seconds):
    try:
        done = subprocess.run(words, capture_output=True, text=True, timeout=seconds, errors="replace")
        return done.returncode, done.stdout + done.stderr
    except subprocess.TimeoutExpired:
        return 124, "timeout"


def prepare(jobs):
    PLACE.mkdir(parents=True, exist_ok=True)
    if TREE.exists():
        subprocess.run(["git", "-C", ROOT, "worktree", "remove", "--force", TREE], check=False)
        shutil.rmtree(TREE, ignore_errors=True)
    git("worktree", "prune")
    git("worktree", "add", "--detach", TREE, "HEAD")
    launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
    linker = ["-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=mold"] if shutil.which("mold") else []
    subprocess.run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=", "-DCMAKE_CXX_FLAGS=-O1",
                    "-DPARLOWEN_BENCH=OFF", *launcher, *linker], check=True, stdout=subprocess.DEVNULL)
    if subprocess.run(["cmake", "--build", BUILD, "-j", str(jobs)], stdout=subprocess.DEVNULL).returncode != 0:
        sys.exit("the tree does not build")
    if failing := first_failure([], jobs):
        sys.exit(f"a test fails before any fault is planted: {failing}")


def first_failure(words, jobs):
    """The first test that fails among those that the words choose, or ""."""
    command = ["ctest", "--test-dir", BUILD, "-j", str(jobs), "--stop-on-failure", "--timeout", "120", *words]
    if shutil.which("xvfb-run"):
        command = ["xvfb-run", "-a", "-s", "-screen 0 1920x1080x24", *command]
    status, output = run(command, 900)
    if status == 0:
        return ""
    match = re.search(r"Test +#\d+: (\S+) \.*.*(?:Failed|Exception|Timeout)", output)
    return match[1] if match else "timeout"


def judge(path, jobs):
    """Builds and tests the planted fault: None when it does not compile, "" when nothing sees it, else who does."""
    status, output = run(["cmake", "--build", BUILD, "-j", str(jobs)], 900)
    if status != 0:
        # A test program that cannot even list its tests has met the fault.
        return "the listing of tests" if "error:" not in output else None
    room = room_of(path).replace("/", "_")
    for words in (["-R", f"^{room}\\."], ["-R", "^headless\\."], ["-E", f"^({room}|headless)\\."]):
        if test := first_failure([*words, "--no-tests=ignore"], jobs):
            return test
    return ""


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--room", action="append")
    parser.add_argument("--base")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--report", default=str(PLACE / "report.txt"))
    arguments = parser.parse_args()
    prepare(arguments.jobs)
    counts, began = {"caught": 0, "SURVIVED": 0}, time.time()
    with open(arguments.report, "w", encoding="utf-8") as report:
        for path, number, line, spoiled in draw(arguments):
            text = path.read_text(encoding="utf-8")
            lines = text.split("\n")
            lines[number] = spoiled
            path.write_text("\n".join(lines), encoding="utf-8")
            who = judge(path, arguments.jobs)
            path.write_text(text, encoding="utf-8")
            if who is None:
                continue
            word = "caught" if who else "SURVIVED"
            counts[word] += 1
            place = f"{path.relative_to(TREE)}:{number + 1}"
            print(f"{word}\t{who or '-'}\t{place}\t{line.strip()}\t→\t{spoiled.strip() or '(left out)'}", file=report, flush=True)
            if sum(counts.values()) >= arguments.count:
                break
    share = 100 * counts["caught"] / max(1, sum(counts.values()))
    print(f"{counts['caught']} of {sum(counts.values())} faults caught ({share:.0f} %), {time.time() - began:.0f} s; {arguments.report}")


if __name__ == "__main__":
    main()
