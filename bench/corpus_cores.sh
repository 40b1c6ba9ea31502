#!/usr/bin/env bash
# How much faster two cores measure a corpus than one: bench/corpus_cores.sh [RECORDINGS]
# Makes RECORDINGS (200) times 98 s of the English sentence with 100 labelled intervals, runs the whole workflow with one and
# with two cores in turn, twice, and prints seconds and the load of the machine before. Aim: 1.8 times on a free machine.
set -euo pipefail
here=$(dirname "$(readlink -f "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
python3 - "$here/../sounds/english_male_sentence_16000.wav" "$work/sounds" "${1:-200}" <<'PYTHON'
import os, sys, wave
source, folder, count = sys.argv[1], sys.argv[2], int(sys.argv[3])
os.mkdir(folder)
with wave.open(source) as sentence:
    samples, size = sentence.readframes(sentence.getnframes()), 98 * sentence.getframerate() * 2
    with wave.open(f"{folder}/000.wav", "wb") as sound:
        sound.setparams(sentence.getparams())
        sound.writeframes((samples * (size // len(samples) + 1))[:size])
rows = "".join(f'{k * 0.98:.2f}\n{(k + 1) * 0.98:.2f}\n"s{k % 7}"\n' for k in range(100))
with open(f"{folder}/000.TextGrid", "w") as labels:
    labels.write(f'File type = "ooTextFile"\nObject class = "TextGrid"\n\n0\n98\n<exists>\n1\n"IntervalTier"\n"w"\n0\n98\n100\n{rows}')
for k in range(1, count):
    for ending in (".wav", ".TextGrid"):
        os.link(f"{folder}/000{ending}", f"{folder}/{k:03}{ending}")
PYTHON
exec 2>&1
TIMEFORMAT='%R s by the clock, %U s of processor'
for cores in 1 2 1 2; do
  echo "load $(cut -d' ' -f1 /proc/loadavg), cores $cores:"
  time "$here/../corpus/run.sh" "$work/sounds" --cores "$cores" --results "$work/results" >"$work/log" 2>&1 || cat "$work/log"
  grep 'recordings,' "$work/log"
  rm -rf "$work/results"
done
