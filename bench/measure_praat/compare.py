#!/usr/bin/env python3
"""Our measures and Praat's on the bundled recordings, and the time both take for 98 s with 100 intervals.

    bench/measure_praat/compare.py PARLOWEN_MEASURE [FOLDER]     (needs praat)

Each recording is one interval, each synthetic vowel one of its own. Prints the tables of docs/measure.md.
"""
import csv
import pathlib
import resource
import statistics
import struct
import subprocess
import sys
import tempfile
import time
import wave

HERE = pathlib.Path(__file__).resolve().parent
SOUNDS = HERE.parent.parent / "sounds"
COLUMNS = ["voiced", "f0_mean", "f0_sd", "f0_min", "f0_max", "f0_median", "jitter", "shimmer", "hnr", "cpp", "h1_h2"]
FORMANTS = ["f1", "f2", "f3", "b1", "b2", "b3"]
VOWELS = ["a", "o", "e", "i", "u", "ü", "ê", "er", "ɿ"]


def channel_one(path):
    """Rate and samples; our two-channel files say one channel in the header and two in the block align."""
    data = path.read_bytes()
    rate, = struct.unpack_from("<I", data, 24)
    align, = struct.unpack_from("<H", data, 32)
    samples = [data[i:i + 2] for i in range(44, len(data) - 1, align)]
    return rate, samples


def write(folder, name, rate, samples, intervals):
    path = folder / (name + ".wav")
    with wave.open(str(path), "wb") as sound:
        sound.setnchannels(1)
        sound.setsampwidth(2)
        sound.setframerate(rate)
        sound.writeframes(b"".join(samples))
    end = len(samples) / rate
    grid = [0, end, "<exists>", 1, '"IntervalTier"', '"all"', 0, end, len(intervals)]
    for start, stop, label in intervals:
        grid += [start, stop, f'"{label}"']
    path.with_suffix(".TextGrid").write_text(
        'File type = "ooTextFile"\nObject class = "TextGrid"\n\n' + "\n".join(map(str, grid)) + "\n", encoding="utf-8")
    return path


def rows(path):
    with open(path, encoding="utf-8-sig", newline="") as file:
        return list(csv.DictReader(file))


def measure(program, path):
    out = path.with_suffix(".ours.csv")
    subprocess.run([program, "--output", out, "--", path], check=True)
    return rows(out)


def praat(path):
    out = path.with_suffix(".praat.csv")
    subprocess.run(["praat", "--run", HERE / "measure.praat", path, path.with_suffix(".TextGrid"), out], check=True)
    return rows(out)


def seconds(run, *arguments):
    """Processor seconds of the children and what they returned."""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    result = run(*arguments)
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime, result


def cell(row, column):
    return f"{float(row[column]):.4g}" if row[column] else "–"


def table(title, names, ours, theirs, columns):
    print(f"| {title} | " + " | ".join(columns) + " |")
    print("|---" * (len(columns) + 1) + "|")
    for name, mine, other in zip(names, ours, theirs):
        print(f"| {name} | " + " | ".join(f"{cell(mine, c)} / {cell(other, c)}" for c in columns) + " |")
    print()


def main():
    program = pathlib.Path(sys.argv[1]).resolve()
    folder = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else tempfile.mkdtemp())
    folder.mkdir(parents=True, exist_ok=True)
    names, ours, theirs = [], [], []
    for sound in sorted(SOUNDS.glob("*.wav")):
        if "synthetic" in sound.name:
            continue
        rate, samples = channel_one(sound)
        path = write(folder, sound.stem, rate, samples, [(0, len(samples) / rate, "all")])
        names.append(sound.stem)
        ours += measure(program, path)
        theirs += praat(path)
    table("recording, ours / Praat", names, ours, theirs, COLUMNS)

    rate, samples = channel_one(SOUNDS / "synthetic_vowels_two_channels_16000.wav")
    parts = [t for n in range(len(VOWELS)) for t in ((0.45 * n, 0.45 * n + 0.4, f"v{n}"), (0.45 * n + 0.4, 0.45 * n + 0.45, ""))]
    path = write(folder, "vowels", rate, samples, parts)
    mine, other = measure(program, path), praat(path)
    table("synthetic vowel, ours / Praat", VOWELS, mine, other, FORMANTS + ["jitter", "shimmer", "hnr", "h1_h2"])

    rate, samples = channel_one(SOUNDS / "english_male_sentence_16000.wav")
    samples = (samples * 14)[:98 * rate]
    path = write(folder, "s98", rate, samples, [(0.98 * n, 0.98 * (n + 1), f"a{n}") for n in range(100)])
    clock = time.monotonic()
    own, mine = seconds(measure, program, path)
    own_clock, clock = time.monotonic() - clock, time.monotonic()
    its, other = seconds(praat, path)
    its_clock = time.monotonic() - clock
    print(f"98 s, 100 intervals: ours {own:.2f} s of processor ({own_clock:.2f} s by the clock), "
          f"the Praat script {its:.2f} s ({its_clock:.2f} s)\n")
    print("| column | intervals | ours, median | Praat, median | median of differences | correlation |")
    print("|---|---|---|---|---|---|")
    for column in COLUMNS + FORMANTS:
        pairs = [(float(a[column]), float(b[column])) for a, b in zip(mine, other) if a[column] and b[column]]
        a, b = zip(*pairs)
        print(f"| {column} | {len(pairs)} | {statistics.median(a):.4g} | {statistics.median(b):.4g} | "
              f"{statistics.median(x - y for x, y in pairs):.3g} | {statistics.correlation(a, b):.2f} |")


main()
