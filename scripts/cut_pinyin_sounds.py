#!/usr/bin/env python3
"""Cuts data/pinyin/NAME.wav, the recordings that the pictures of articulation play, out of the sample sounds: an initial is
its syllable up to 0.15 s into the vowel, a final its syllable from there on. The places were found by eye in waveform and
wide-band picture. ü is written as v, ê as eh. Usage: scripts/cut_pinyin_sounds.py
"""
import os
import struct
import wave

HERE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
SYLLABLES = "mandarin_initials_male_22050.wav"
MAO = "mandarin_mao_four_tones_male_44100.wav"
VOWELS = "synthetic_vowels_two_channels_16000.wav"

# Syllable: initial, final ("" where another syllable gives it), begin, begin of the vowel, end; in seconds.
CUTS = [
    ("b", "", 0.19, 0.23, 0.70), ("p", "", 0.88, 0.97, 1.24), ("f", "ei", 1.42, 1.48, 1.78),
    ("d", "u", 1.96, 2.00, 2.33), ("t", "ian", 2.51, 2.62, 2.98), ("g", "ao", 3.16, 3.20, 3.56),
    ("k", "", 3.74, 3.85, 4.15), ("h", "ua", 4.33, 4.43, 4.80), ("j", "ia", 4.98, 5.06, 5.39),
    ("q", "v", 5.57, 5.73, 5.98), ("x", "iao", 6.16, 6.31, 6.64), ("zh", "i2", 6.82, 6.95, 7.21),
    ("ch", "a", 7.39, 7.50, 7.84), ("sh", "uei", 8.02, 8.17, 8.44), ("r", "en", 8.62, 8.71, 9.12),
    ("z", "ou", 9.30, 9.40, 9.82), ("c", "ai", 10.00, 10.10, 10.33), ("s", "an", 10.51, 10.67, 11.10),
]
INTO_VOWEL = 0.15
MAO_BEGIN, MAO_VOWEL = 0.25, 0.33
# Vowels of 0.4 s, one every 0.45 s.
SYNTHETIC = {"o": 1, "e": 2, "i": 3, "eh": 6, "er": 7, "i1": 8}


def read(name):
    with wave.open(os.path.join(HERE, "sounds", name)) as sound:
        rate, count = sound.getframerate(), sound.getnframes()
        channels = sound.getnchannels()
        data = sound.readframes(count)
    # Two channels may stand under a header that says one: the block align tells them.
    with open(os.path.join(HERE, "sounds", name), "rb") as file:
        align = struct.unpack("<H", file.read(34)[32:34])[0]
    values = struct.unpack("<%dh" % (len(data) // 2), data)
    return rate, values[:: max(channels, align // 2)] if align == 4 else values


def cut(name, rate, samples, begin, end, rise, fall):
    piece = list(samples[round(begin * rate):round(end * rate)])
    count, up, down = len(piece), round(rise * rate), round(fall * rate)
    for i in range(count):
        share = min(1.0, (i + 1) / up, (count - i) / down)
        piece[i] = int(piece[i] * share)
    data = struct.pack("<%dh" % count, *piece)
    header = struct.pack("<4sI8sIHHIIHH4sI", b"RIFF", 36 + len(data), b"WAVEfmt ", 16, 1, 1, rate, 2 * rate, 2, 16,
                         b"data", len(data))
    with open(os.path.join(HERE, "data", "pinyin", name + ".wav"), "wb") as file:
        file.write(header + data)


def main():
    os.makedirs(os.path.join(HERE, "data", "pinyin"), exist_ok=True)
    rate, samples = read(SYLLABLES)
    for initial, final, begin, vowel, end in CUTS:
        cut(initial, rate, samples, begin, min(end, vowel + INTO_VOWEL), 0.002, 0.04)
        if final:
            cut(final, rate, samples, vowel, end, 0.01, 0.03)
    rate, samples = read(MAO)
    cut("m", rate, samples, MAO_BEGIN, MAO_VOWEL + INTO_VOWEL, 0.005, 0.04)
    rate, samples = read(VOWELS)
    for name, place in SYNTHETIC.items():
        cut(name, rate, samples, 0.45 * place, 0.45 * place + 0.4, 0.005, 0.02)


main()
