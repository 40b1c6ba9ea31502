#!/usr/bin/env python3
"""Plants one-line faults, one at a time, and tells which of them the tests catch.

    scripts/plant_faults.py [--count 100] [--seed 1] [--room ROOM]... [--base REV] [--again REPORT] [--jobs 2] [--report FILE]

It works in a checkout of its own (build/faults/tree), never in this one. A fault is one changed token of one line of src/:
a comparison moved by one or turned round, a sum that became a difference, an "and" that became an "or", a number one too
large, a flag turned round, a call left out. Places are drawn by the seed, as many from each room as its share of lines
(at least two). With --base only lines that changed since that revision are drawn; with --again those are planted once more
that survived by a report. A fault that does not compile, or that
compiles to the same code, is replaced by another; the few lines of the programs' main() are not drawn.

The rooms are built as shared libraries. A fault is compiled and linked beside them and laid over its room by
LD_LIBRARY_PATH, so it costs one compilation, and several are judged at once. The tests of its own room run first, then the
stories, then all the rest, until one fails; a failure counts when it is seen twice. The report has a line a fault: caught
(by which test) or SURVIVED, the place, the line before and after. A run that was stopped goes on where the report ends,
when it is started again with the same words at the same revision; --anew begins a new report. A survivor is a place to
look: some faults change nothing that anybody could see.
"""
import argparse
import concurrent.futures
import filecmp
import itertools
import json
import os
import pathlib
import random
import re
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
PLACE = ROOT / "build" / "faults"
TREE = PLACE / "tree"
BUILD = TREE / "build" / "ci"
BASELINE = PLACE / "baseline.json"
SERVER_TEST = "sound_server_test"  # of audio/qt alone; its script starts a sound server

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
        if path.name == "main.cpp" or (arguments.room and room not in arguments.room):
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


def run(words, seconds, folder=None, **environment):
    """Status and output; 124 when it took longer: it and what it started are killed then. Windows are drawn offscreen."""
    screenless = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")}
    program = subprocess.Popen(words, cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                               env={**screenless, "QT_QPA_PLATFORM": "offscreen", **environment}, start_new_session=True)
    try:
        output, _ = program.communicate(timeout=seconds)
        return program.returncode, output
    except subprocess.TimeoutExpired:
        return 124, "timeout"
    finally:
        if program.returncode is None:  # not reaped: its number is still its own, and its group's
            os.killpg(program.pid, signal.SIGKILL)
            program.wait()
        program.stdout.close()


def prepare():
    """Checks out this revision and builds it with its rooms as shared libraries; the revision."""
    revision = git("rev-parse", "HEAD").strip()
    PLACE.mkdir(parents=True, exist_ok=True)
    if (TREE / ".git").exists():
        subprocess.run(["git", "-C", TREE, "checkout", "--quiet", "--force", "--detach", revision], check=True)
    else:
        shutil.rmtree(TREE, ignore_errors=True)
        git("worktree", "prune")
        git("worktree", "add", "--detach", str(TREE), revision)
    launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
    # As in the sanitizers' build, the library tells of an index or an optional that holds nothing.
    # The linker writes RUNPATH, which LD_LIBRARY_PATH goes before; a new library asks for no new link of what uses it.
    linker = ("-fuse-ld=mold " if shutil.which("mold") else "") + "-Wl,--enable-new-dtags"
    subprocess.run(["cmake", "--preset", "ci", *launcher, "-DBUILD_SHARED_LIBS=ON", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                    "-DPARLOWEN_BENCH=OFF", "-DCMAKE_CXX_FLAGS=-D_GLIBCXX_ASSERTIONS",
                    f"-DCMAKE_EXE_LINKER_FLAGS={linker}", f"-DCMAKE_SHARED_LINKER_FLAGS={linker}"],
                   cwd=TREE, check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", BUILD], check=True, stdout=subprocess.DEVNULL)
    return revision


class Spoiler:
    """Builds a room with one line spoiled, beside the room that is built."""

    def __init__(self):
        commands = json.loads((BUILD / "compile_commands.json").read_text())
        self.compile = {command["file"]: command["command"] for command in commands}

    def build(self, path, text, folder):
        """Whether the spoiled text compiles to other code; its room's library is then in `folder`."""
        spoiled, built = folder / path.name, folder / "spoiled.o"
        spoiled.write_text(text, encoding="utf-8")
        command = self.compile[str(path)]
        original = re.search(r" -o (\S+)", command)[1]
        command = command.replace(f" -o {original}", f" -iquote {path.parent} -o {built}").replace(f" -c {path}", f" -c {spoiled}")
        if run(shlex.split(command), 600, BUILD)[0] != 0 or filecmp.cmp(BUILD / original, built, shallow=False):
            return False
        library = re.sub(r"CMakeFiles/(\w+)\.dir/.*", r"lib\1.so", original)
        link = run(["ninja", "-t", "commands", "-s", library], 60, BUILD)[1]
        beside = folder / pathlib.Path(library).name
        link = link.replace(f"-o {library}", f"-o {beside}").replace(original, str(built))
        return run(["sh", "-c", link], 600, BUILD)[0] == 0 and beside.exists()


class Programs:
    """The test programs: what they are called, and how long each takes when nothing is wrong."""

    def __init__(self, revision):
        self.names = sorted(p.name for p in (BUILD / "bin").iterdir() if re.search(r"_(test|fuzz)$", p.name))
        known = json.loads(BASELINE.read_text()) if BASELINE.exists() else {}
        self.seconds = known.get(revision, {})
        for name in self.names:
            if name not in self.seconds:
                began = time.time()
                if failing := self.failure(name, 600, ""):
                    sys.exit(f"a test fails without a fault: {failing}")
                self.seconds[name] = time.time() - began
                BASELINE.write_text(json.dumps({revision: self.seconds}, indent=1))

    def failure(self, program, seconds, libraries):
        """The first test of the program that fails, or ""."""
        words = [BUILD / "bin" / program]
        if program == SERVER_TEST:
            words.insert(0, TREE / "tests" / "audio" / "real_server_test.sh")
        elif program.endswith("_test"):
            words += ["--gtest_fail_fast", "--gtest_brief=1"]
        status, output = run(words, seconds, BUILD, LD_LIBRARY_PATH=libraries)
        if status in (0, 77):
            return ""
        match = re.search(r"\[  FAILED  \] ([\w/.]+)", output)
        return f"{program} {match[1] if match else 'hangs' if status == 124 else 'ends early'}"

    def for_room(self, room):
        """Those first that are most likely to see a fault in the room; slow ones last."""
        own = {"shell/qt": "window_story_test", "shell/headless": "headless_test"}.get(room, room.split("/")[0] + "_test")
        first = list(dict.fromkeys([own, "headless_test", "shell_test"]))
        rest = sorted((p for p in self.names if p not in first and p != SERVER_TEST), key=self.seconds.get)
        return [p for p in first if p in self.names] + rest + [SERVER_TEST] * (room == "audio/qt")

    def judge(self, room, libraries):
        """Who sees what is in `libraries`, twice; "" when nobody does."""
        for program in self.for_room(room):
            seconds = 60 + 10 * self.seconds[program]  # the other workers take their share of the machine
            if self.failure(program, seconds, libraries) and (who := self.failure(program, seconds, libraries)):
                return who
        return ""


def survivors(report):
    """The faults that survived by a report, where their line still stands in its file."""
    for words in rows_of(report):
        name, number = words[2].rsplit(":", 1)
        lines = (TREE / name).read_text(encoding="utf-8").split("\n") if (TREE / name).exists() else []
        places = [n for n, line in enumerate(lines) if line.strip() == words[3]]
        if words[0] == "SURVIVED" and places:
            at = min(places, key=lambda n: abs(n + 1 - int(number)))
            yield TREE / name, at, lines[at], "" if words[5] == "(left out)" else words[5]


def rows_of(report):
    lines = [line.rstrip("\n").split("\t") for line in report.open(encoding="utf-8") if not line.startswith("#")]
    return [words for words in lines if len(words) == 6]


def done_before(report):
    """What a report says: each fault and how it ended."""
    if not report.exists():
        return {}
    return {(words[2], words[5]): words[0] for words in rows_of(report)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--room", action="append")
    parser.add_argument("--base")
    parser.add_argument("--again", type=pathlib.Path)
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("--anew", action="store_true")
    parser.add_argument("--report", type=pathlib.Path, default=PLACE / "report.txt")
    arguments = parser.parse_args()
    revision = prepare()
    spoiler, programs = Spoiler(), Programs(revision)
    words = f"# {revision} seed {arguments.seed} base {arguments.base} rooms {arguments.room} count {arguments.count} again {arguments.again}\n"
    if arguments.anew or not arguments.report.exists() or arguments.report.open(encoding="utf-8").readline() != words:
        arguments.report.write_text(words, encoding="utf-8")
    before, counts, began = done_before(arguments.report), {"caught": 0, "SURVIVED": 0}, time.time()

    def plant(path, number, line, spoiled):
        """What is said of one fault: how it ended, and its line of the report unless that stands there."""
        place, instead = f"{path.relative_to(TREE)}:{number + 1}", spoiled.strip() or "(left out)"
        if word := before.get((place, instead)):
            return word, ""
        lines = path.read_text(encoding="utf-8").split("\n")
        lines[number] = spoiled
        with tempfile.TemporaryDirectory(dir=PLACE) as folder:
            who = programs.judge(room_of(path), folder) if spoiler.build(path, "\n".join(lines), pathlib.Path(folder)) else None
        word = "no fault" if who is None else "caught" if who else "SURVIVED"
        return word, f"{word}\t{who or '-'}\t{place}\t{line.strip()}\t→\t{instead}\n"

    with open(arguments.report, "a", encoding="utf-8") as report, \
            concurrent.futures.ThreadPoolExecutor(arguments.jobs) as workers:
        faults, under_way = survivors(arguments.again) if arguments.again else draw(arguments), set()
        while sum(counts.values()) < arguments.count:
            wanted = min(arguments.jobs, arguments.count - sum(counts.values())) - len(under_way)
            under_way |= {workers.submit(plant, *fault) for fault in itertools.islice(faults, max(0, wanted))}
            if not under_way:
                break
            done, under_way = concurrent.futures.wait(under_way, return_when=concurrent.futures.FIRST_COMPLETED)
            for word, line in (future.result() for future in done):
                report.write(line)
                report.flush()
                if word in counts:
                    counts[word] += 1
    share = 100 * counts["caught"] / max(1, sum(counts.values()))
    print(f"{counts['caught']} of {sum(counts.values())} faults caught ({share:.0f} %), {time.time() - began:.0f} s; {arguments.report}")


if __name__ == "__main__":
    main()
