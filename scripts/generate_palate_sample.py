#!/usr/bin/env python3
"""Writes sounds/synthetic_palate_16000.nsp and its marker file .lbl: t s x k i a, 0.3 s each, with the contact frames of an
artificial palate at 100 a second. Everything is computed here, from a fixed seed and with integers where it counts, so
that every run gives the same bytes. Usage: scripts/generate_palate_sample.py [FOLDER]
"""
import math
import os
import random
import struct
import sys

RATE, FRAMES, FRAME = 16000, 30, 160  # samples a second; frames a sound; samples a frame
LENGTH = FRAMES * FRAME
SOUNDS = "tsxkia"

random.seed(20261121)


def noise(count):
    return [random.uniform(-1, 1) for _ in range(count)]


def resonate(signal, frequency, bandwidth):
    """A pole pair with unity gain at its frequency, about."""
    radius = math.exp(-math.pi * bandwidth / RATE)
    a1, a2 = 2 * radius * math.cos(2 * math.pi * frequency / RATE), -radius * radius
    gain = (1 - radius) * math.sqrt(1 - 2 * radius * math.cos(4 * math.pi * frequency / RATE) + radius * radius)
    out, y1, y2 = [], 0.0, 0.0
    for x in signal:
        y = gain * x + a1 * y1 + a2 * y2
        out.append(y)
        y1, y2 = y, y1
    return out


def faded(signal, rise, fall):
    count = len(signal)
    return [x * min(1, i / rise, (count - 1 - i) / fall) for i, x in enumerate(signal)]


def vowel(formants):
    """Pulses that fall from 130 to 110 Hz through resonances in parallel."""
    source, phase = [], 0.0
    for i in range(LENGTH):
        phase += (130 - 20 * i / LENGTH) / RATE
        source.append(1.0 if phase >= 1 else 0.0)
        phase %= 1
    # A glottal pulse loses 12 dB an octave; radiation gives 6 back.
    smooth, y = [], 0.0
    for x in source:
        y += 0.08 * (x - y)
        smooth.append(y)
    bands = [resonate(smooth, f, b) for f, b in formants]
    signs = [1, -1, 1, -1]
    return faded([sum(s * band[i] for s, band in zip(signs, bands)) for i in range(LENGTH)], 400, 800)


def stop(frequency, bandwidth, release):
    """Silence, a burst, and the breath that follows it."""
    burst = resonate(noise(LENGTH), frequency, bandwidth)
    out = []
    for i in range(LENGTH):
        since = i - release * FRAME
        level = 0.0 if since < 0 else math.exp(-since / 90) + 0.15 * math.exp(-since / 700)
        out.append(level * burst[i])
    return faded(out, 1, 300)


def scaled(signal, peak):
    factor = peak / max(abs(x) for x in signal)
    return [int(round(x * factor)) for x in signal]


def speech():
    return (scaled(stop(4200, 1500, 22), 9000) + scaled(faded(resonate(noise(LENGTH), 6200, 1600), 800, 800), 6000)
            + scaled(faded(resonate(noise(LENGTH), 4300, 1200), 800, 800), 7000) + scaled(stop(1900, 500, 22), 9000)
            + scaled(vowel([(290, 60), (2300, 100), (3000, 150), (3550, 200)]), 12000)
            + scaled(vowel([(760, 80), (1280, 95), (2500, 140), (3500, 200)]), 15000))


# Contact at its fullest, rows from the front; a row is its electrodes from the left.
FULL = {
    "t": ["######", "########", "########", "###..###", "##....##", "##....##", "#......#", "##....##"],
    "s": ["##..##", "###..###", "###..###", "##....##", "##....##", "##....##", "##....##", "##....##"],
    "x": ["......", "##....##", "###..###", "####.###", "###..###", "###..###", "###..###", "###..###"],
    "k": ["......", "........", "........", "........", "#......#", "##....##", "###..###", "########"],
    "i": ["......", "........", "#......#", "##....##", "###..###", "###..###", "###..###", "###..###"],
    "a": ["......", "........", "........", "........", "........", "........", "........", "#......#"],
}
RELEASE = {"t": 22, "k": 22}  # frame at which a closure opens


def frame_of(sound, number):
    """The contact spreads from the sides inwards in the first frames and draws back in the last ones."""
    last = RELEASE.get(sound, 26)
    reach = min(number + 1, 4 if number < last else 3 - (number - last) // 2)
    rows = []
    for row, cells in enumerate(FULL[sound]):
        cells = "." + cells + "." if row == 0 else cells
        byte = 0
        for column, cell in enumerate(cells):
            depth = min(column, 7 - column) + (0 if row else -1)  # from the teeth inwards
            if cell == "#" and depth < reach:
                byte |= 1 << column
        rows.append(byte)
    return bytes(rows)


def chunk(name, body):
    return name + struct.pack("<I", len(body)) + body + b"\0" * (len(body) % 2)


def nsp():
    samples = speech()
    count = len(samples)
    header = b"Nov 21 2026".ljust(20, b"\0") + struct.pack("<IIhh", RATE, count, max(map(abs, samples)), -32768)
    body = b"HEDR" + struct.pack("<I", len(header)) + header
    body += chunk(b"SDA_", struct.pack("<%dh" % count, *samples))
    body += chunk(b"PREF", bytes(392))
    body += chunk(b"PALA", b"".join(frame_of(s, i) for s in SOUNDS for i in range(FRAMES)))
    for number, sound in enumerate(SOUNDS):
        body += chunk(b"MKA_", struct.pack("<I", number * LENGTH) + sound.encode() + b"\0")
    return b"FORMDS16" + struct.pack("<I", len(body)) + body


def markers():
    """Band 1: the seven edges and a label on each of the six stretches between them."""
    edges = [number * LENGTH for number in range(len(SOUNDS) + 1)]
    data = struct.pack("<8h", len(edges), 0, 0, 0, len(SOUNDS), 0, 0, 0)
    data += struct.pack("<80i", *(edges + [0] * (80 - len(edges))))
    for number, sound in enumerate(SOUNDS):
        data += struct.pack("<ii20s", edges[number], edges[number + 1], sound.encode())
    return data.ljust(2576, b"\0")


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..", "sounds")
    with open(os.path.join(folder, "synthetic_palate_16000.nsp"), "wb") as file:
        file.write(nsp())
    with open(os.path.join(folder, "synthetic_palate_16000.lbl"), "wb") as file:
        file.write(markers())


main()
