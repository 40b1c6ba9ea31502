#!/bin/sh
# Draws the charts of docs/tones.md: the four tones of the two speakers in sounds/, and prints their digits.
#
#   scripts/make_tone_chart.sh [parlowen-headless]
#
# Each syllable is marked by hand from silence to silence; the tone curve finds the voice in it.
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
program=$(realpath "${1:-$root/build/release/bin/parlowen-headless}")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

chart() {  # speaker, steps that prepare the sound, sound, then start and end of every syllable in samples
  speaker=$1 prepare=$2
  shift
  {
    printf 'answer file "%s/sounds/%s"\ncommand 110\n%bcommand 220\n' "$root" "$2" "$prepare"
    printf 'answer file %s.pit\ncommand 40029\n' "$speaker"
    shift 2
    tone=1
    while [ $# -gt 0 ]; do
      printf 'select %s %s\nanswer ok 1000=T%s choose=1010\ncommand 40030\n' "$1" "$2" "$tone"
      tone=$((tone + 1))
      shift 2
    done
    printf 'command 40034\nbutton 1303\nbutton 1302\npicture tones %s.svg\nprint tones\ncommand 40031\n' "$speaker"
  } > "$work/$speaker.txt"
  (cd "$work" && "$program" --pane-width 800 "$speaker.txt" > "$speaker.jsonl")
  mkdir -p "$root/docs/images"
  cp "$work/$speaker.svg" "$root/docs/images/tones-$speaker.svg"
  printf '%s:' "$speaker"
  grep '"what":"tones"' "$work/$speaker.jsonl" | grep -o '"digits":"[0-9]*"' | grep -o '[0-9]*' | tr '\n' ' '
  echo
}

chart female '' mandarin_mao_four_tones_female_11025.wav 2200 7700 7700 13800 13800 20400 20400 26400
# A run begins below 22100 Hz: 44100 Hz becomes 16000 Hz.
chart male 'answer yes\ncommand 40102\n' mandarin_mao_four_tones_male_44100.wav \
  2400 12000 12000 23200 23200 34400 34400 43900
