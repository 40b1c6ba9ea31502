"""The workflow over 40 short recordings on two cores: killed and repeated, changed, with a damaged recording.

workflow_test.py PARLOWEN-MEASURE PARLOWEN-REPORT FOLDER: leaves the results of the undisturbed run in FOLDER/results.
"""

import json
import os
import shutil
import sqlite3
import subprocess
import sys
import wave

TREE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
MEASURE, REPORT, WORK = map(os.path.abspath, sys.argv[1:])
SOUNDS = os.path.join(WORK, "录 音's \"40\"")
LOG, TRAP = os.path.join(WORK, "measured"), os.path.join(WORK, "trap")
SPEAKERS = {
    "甲 male": "english_male_sentence_16000.wav",
    "it's": "mandarin_initials_male_22050.wav",
    '"q"': "english_female_prompt_8000.wav",
    "d,e": "mandarin_mao_four_tones_female_11025.wav",
}
# Notes what it is asked to measure. When it meets the name in the trap it leaves half a table and kills: the step and the
# job around it, or the whole process group with the engine and run.sh.
STEP = """#!/bin/bash
for word; do [ "$names" ] && printf '%s\\n' "$word" >> '{log}'; [ "$word" = -- ] && names=1; [ "$last" = --output ] && out=$word; last=$word; done
if [ -e '{trap}' ] && read -r how name < '{trap}' && [[ $* = *"$name"* ]]; then
  rm '{trap}'
  '{measure}' "$@"; head -c 3000 "$out" > "$out.half"; mv "$out.half" "$out"
  [ "$how" = job ] && kill -9 $PPID $$
  kill -9 0
fi
exec '{measure}' "$@"
"""


def check(condition, *facts):
    if not condition:
        raise AssertionError(facts)


def path(name):
    return os.path.join(SOUNDS, name)


def read(folder, name="corpus.csv"):
    with open(os.path.join(WORK, folder, name), "rb") as file:
        return file.read()


def write(name, data):
    with open(name, "wb") as file:
        file.write(data if isinstance(data, bytes) else data.encode())


def grid(name, seconds, labels):
    cuts = [seconds * k / len(labels) for k in range(len(labels))] + [seconds]
    rows = "".join(f'{a}\n{b}\n"{label}"\n' for a, b, label in zip(cuts, cuts[1:], labels))
    head = 'File type = "ooTextFile"\nObject class = "TextGrid"\n\n'
    write(name, f'{head}0\n{seconds}\n<exists>\n1\n"IntervalTier"\n"韵母"\n0\n{seconds}\n{len(labels)}\n{rows}')


def make_recordings():
    """Ten pieces of 0.8 to 1.25 s of each of four recordings, under the same names in four folders."""
    for speaker, sound in SPEAKERS.items():
        os.makedirs(path(speaker))
        with wave.open(os.path.join(TREE, "sounds", sound)) as source:
            rate, total = source.getframerate(), source.getnframes()
            for k in range(10):
                count = rate * (16 + k) // 20
                source.setpos((total - count) * k // 9)
                stem = path(f"{speaker}/句 {k}")
                with wave.open(stem + ".wav", "wb") as piece:
                    piece.setparams(source.getparams())
                    piece.writeframes(source.readframes(count))
                if k == 8:
                    write(stem + ".txt", f"0.1\t0.3\ta\n0.4\t{count / rate:.6f}\t男, \"nan\"\n")
                elif k != 9:  # the last has no labels
                    grid(stem + ".TextGrid", count / rate, ["a", "", "i", "u"] if k % 2 else ["i", "a", "NA"])


def run(results, expected=0, **changes):
    """Starts the workflow; returns what it said, and the recordings that were measured."""
    settings = {"program": os.path.join(WORK, "step"), "report_program": REPORT, "group": 4, **changes}
    with open(os.path.join(WORK, "config.yaml"), "w") as file:
        json.dump(settings, file)
    write(LOG, "")
    command = [os.path.join(TREE, "corpus", "run.sh"), SOUNDS, "--cores", "2"]
    command += ["--results", os.path.join(WORK, results), "--config", os.path.join(WORK, "config.yaml")]
    done = subprocess.run(
        command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, start_new_session=True, cwd="/"
    )
    check((done.returncode == 0) == (expected == 0), results, done.returncode, done.stdout)
    with open(LOG) as file:
        return done.stdout, sorted(file.read().splitlines())


def main():
    shutil.rmtree(WORK, ignore_errors=True)
    make_recordings()
    write(os.path.join(WORK, "step"), STEP.format(log=LOG, trap=TRAP, measure=MEASURE))
    os.chmod(os.path.join(WORK, "step"), 0o755)
    before = sorted(os.listdir(SOUNDS))
    everything = sorted(f"{speaker}/句 {k}.wav" for speaker in SPEAKERS for k in range(10))

    # Undisturbed: every recording once, rows in order, the same in both tables.
    said, measured = run("results")
    check(measured == everything, measured)
    rows = 4 * (8 * 3 + 2 + 1)  # empty intervals are none
    check(f"40 recordings, {rows} rows, 0 failures" in said, said)
    database = sqlite3.connect(os.path.join(WORK, "results", "corpus.db"))
    listed = database.execute('SELECT recording, "index", label, duration FROM intervals ORDER BY rowid').fetchall()
    check(len(listed) == rows and [row[0] for row in listed] == sorted(row[0] for row in listed), listed)
    check(listed[0][1:3] == (1, "i") and abs(listed[0][3] - 0.8 / 3) < 1e-3, listed[0])
    check(sum(row[2] == '男, "nan"' for row in listed) == 4, listed)
    plan = database.execute("EXPLAIN QUERY PLAN SELECT * FROM intervals WHERE label='a' AND tier='韵母'").fetchall()
    check("intervals_label_tier (label=? AND tier=?)" in plan[0][3], plan)
    table = read("results")
    check(table.startswith(b"\xef\xbb\xbfrecording,tier,") and table.count(b"\xef\xbb\xbf") == 1)
    for picture in ("duration.svg", "f0.svg", "formants.svg"):
        check(read("results/report", picture).rstrip().endswith(b"</svg>"), picture)
    check(sorted(os.listdir(SOUNDS)) == before)

    # A job killed in the middle of its table, then everything at once; afterwards only the rest is done.
    write(TRAP, "job it's/句 5.wav\n")
    _, first = run("again", expected=1)
    write(TRAP, "all it's/句 5.wav\n")
    _, second = run("again", expected=1)
    check(not os.path.exists(TRAP))
    _, third = run("again")
    check(0 < len(third) < len(everything) and third == sorted(set(third)), third)
    check(set(first + second + third) == set(everything))
    finished = len(first) + len(second) + len(third) - len(everything)
    check(0 < finished <= 16, "at most the groups under way are done twice", finished)
    check(read("again") == table)
    check(run("again")[1] == [])

    # What changes is measured again, and nothing else; the times of files prove nothing.
    changed = path("d,e/句 1.TextGrid")
    stamp = os.stat(changed)
    grid(changed, 0.85, ["a", "e", "i", "u"])
    os.utime(changed, ns=(stamp.st_atime_ns, stamp.st_mtime_ns))
    os.utime(path("d,e/句 2.TextGrid"))
    os.remove(path("d,e/句 8.txt"))
    grid(path("甲 male/句 9.TextGrid"), 1.2, ["o"])
    shutil.copy(path("it's/句 3.wav"), path("it's/句 3 新.wav"))
    os.remove(path('"q"/句 0.wav'))
    write(path("it's/句 4.wav"), b"RIFF, but cut off")
    write(path('"q"/句 6.TextGrid'), "cut off")
    said, measured = run("again")
    expected = ["d,e/句 1.wav", "d,e/句 8.wav", "甲 male/句 9.wav", "it's/句 3 新.wav", "it's/句 4.wav", '"q"/句 6.wav']
    check(measured == sorted(expected), measured)
    check("40 recordings" in said and "2 failures" in said and "  it's/句 4.wav: " in said, said)
    check("句 4.wav" in read("again/report", "index.html").decode())
    run("fresh")
    check(read("again") == read("fresh") != table)

    # A wrong option ends the run and says why; what was gathered stays.
    said, _ = run("again", expected=2, points=1)
    check("--points" in said and read("again") == read("fresh"), said)


if __name__ == "__main__":
    if not shutil.which("snakemake"):
        print("snakemake is not there")
        sys.exit(77)
    main()
