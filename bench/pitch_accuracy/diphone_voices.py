#!/usr/bin/env python3
"""Phrases of natural speech sounds at known pitch, for pitch_accuracy.

    apt-get install festvox-kallpc16k festvox-kdlpc16k python3-numpy python3-scipy
    diphone_voices.py FOLDER && cd FOLDER && pitch_accuracy $(for w in *.wav; do echo $w ${w%.wav}.f0; done)

The diphones of two men were recorded beside a laryngograph. Their LPC residuals are moved, period by period, to
pulses of a known contour and filtered again, so that spectra, voiced fricatives, closures and the borders of voicing
are those of speech. 14 sets of 12 phrases: plain, low, creaky, alternating ("double"), with hum, behind a microphone's
high-pass, in noise; as women and higher voices by moving the formants. The truth is written beside each file.
"""
import os
import re
import sys

import numpy as np
from scipy.io import wavfile
from scipy.signal import butter, lfilter, lfiltic, resample_poly

RATE = 16000
FRAME = RATE // 100
VOICES = '/usr/share/festival/voices/english/'
GROUPS = {'kal': 'kal_diphone/group/kallpc16k.group', 'ked': 'ked_diphone/group/kedlpc16k.group'}
HEADER_END = b'EST_Header_End\n'


def from_ulaw(data):
    """G.711 µ-law bytes as 16-bit values."""
    byte = ~data.astype(np.uint8)
    size = (((byte & 15).astype(int) << 3) + 132 << ((byte >> 4) & 7)) - 132
    return np.where(byte & 128, -size, size).astype(float)


def load_diphones(path):
    """name -> (marks in samples, predictor per mark, residual, whether a mark is a filler without voice)."""
    data = open(path, 'rb').read()
    at = data.index(HEADER_END) + len(HEADER_END)
    count = int(re.search(rb'NumEntries (\d+)', data[:at]).group(1))
    entries = []
    for _ in range(count):
        end = data.index(b'\n', at)
        entries.append(data[at:end].split())
        at = end + 1
    units = {}
    for name, track, wave, _ in entries:
        begin = at + int(track)
        body = data.index(HEADER_END, begin) + len(HEADER_END)
        header = data[begin:body].decode('latin1')
        frames, channels = (int(re.search(key + r' (\d+)', header).group(1)) for key in ('NumFrames', 'NumChannels'))
        columns = channels + 1 + ('BreaksPresent true' in header)
        values = np.frombuffer(data[body:body + 4 * frames * columns], '<f4').reshape(frames, columns).astype(float)
        begin = at + int(wave)
        offset, size, kind = np.frombuffer(data[begin + 4:begin + 16], '>u4')
        samples = data[begin + offset:begin + offset + size]
        residual = from_ulaw(np.frombuffer(samples, np.uint8)) if kind == 1 else np.frombuffer(samples, '>i2').astype(float)
        marks = values[:, 0] * RATE
        units[name.decode('latin1')] = marks, values[:, -channels + 1:], residual, find_fillers(marks)
    return units


def find_fillers(marks):
    """Marks of a voice lie on samples; those put into unvoiced stretches are equally spaced fractions."""
    steps = np.diff(np.r_[0, marks])
    if len(steps) > 1:
        steps[0] = steps[1]
    filler = np.abs(steps - np.round(steps)) >= 0.03
    for k in range(len(steps)):
        beside = [j for j in (k - 1, k + 1) if 0 <= j < len(steps) and filler[j] and abs(steps[k] - steps[j]) < 1]
        if 150 < steps[k] < 172 and beside:
            filler[k] = True
    return filler


def choose_sounds(units, random, count):
    """A walk over the diphones, vowels and consonants in turn, from pause to pause."""
    follow = {}
    for name in units:
        if '-' in name and not name.startswith('_'):
            a, b = name.split('-')[:2]
            follow.setdefault(a, []).append(b)
    sounds = ['pau']
    while len(sounds) < count:
        options = [b for b in follow.get(sounds[-1], []) if b != 'pau' and b in follow]
        vowels = [b for b in options if b[0] in 'aeiou']
        if not options:
            sounds.append('pau')
        elif vowels and sounds[-1][0] not in 'aeiou' and random.random() < .75:
            sounds.append(random.choice(vowels))
        else:
            sounds.append(random.choice(options))
    sounds.append('pau')
    return [name for name in map('-'.join, zip(sounds, sounds[1:])) if name in units]


def periods_of(units, names):
    """(period, windowed residual, predictor, voiced) of every mark."""
    periods = []
    for name in names:
        marks, predictor, residual, filler = units[name]
        places = [0] + [int(round(m)) for m in marks] + [len(residual)]
        for k in range(len(marks)):
            before, mark, after = places[k], places[k + 1], min(places[k + 2], len(residual))
            if after <= before or mark <= before:
                continue
            rise = np.sin(np.pi / 2 * np.arange(mark - before) / (mark - before)) ** 2
            fall = np.cos(np.pi / 2 * np.arange(max(after - mark, 1)) / max(after - mark, 1)) ** 2
            window = np.concatenate([rise, fall])[:after - before]
            periods.append((mark - before, residual[before:before + len(window)] * window, predictor[k], not filler[k]))
    return periods


def make_phrase(units, random, f0, tract=1.0, creak=0, alternation=0, jitter=.006, breath=0.0):
    """The wave and its F0 a frame. `creak`: Hz that the last half second falls to; `alternation`: share by which
    every other pulse is stronger, and a third of it its delay, in 0.45 s out of 1.35 s."""
    periods = periods_of(units, choose_sounds(units, random, 22))
    ends = np.cumsum([p[0] for p in periods]) / RATE
    length = ends[-1]
    knots = np.arange(0, length + .3, .18)
    f = f0 * 2 ** ((np.interp(ends, knots, random.normal(0, 2.2, len(knots))) - 3 * ends / length + 1.5) / 12)
    if creak:
        falling = np.maximum(creak, f * (1 - (ends - (length - .55)) / .3 * .45))
        f = np.where(ends > length - .55, np.minimum(f, falling), f)
    syllable = np.minimum((ends / .18).astype(int), len(knots) - 1)
    gains = 10 ** ((-8 * ends / length + random.normal(0, 1.5, len(knots))[syllable]) / 20)

    source = np.zeros(int(RATE * (length * 1.6 + 2)))
    at, spoken, i, count = .3 * RATE, 0.0, 0, 0
    marks, filters = [], []
    while i < len(periods):
        natural, residual, predictor, voiced = periods[i]
        step, gain, count = natural, gains[i], count + 1
        if voiced:
            sign = 1 if count & 1 else -1
            now = alternation if int(at / RATE / .45) % 3 == 1 else 0
            spread = jitter * (4 if creak and f[i] < creak * 1.4 else 1)
            step = RATE / f[i] * (1 + random.normal(0, spread)) * (1 + sign * now / 3)
            gain *= (1 + random.normal(0, 3 * jitter)) * (1 + sign * now)
        at += step
        pulse = residual * gain
        if voiced and breath:
            pulse = pulse + random.normal(0, breath * gain * np.sqrt(np.mean(residual ** 2) + 1e-9), len(pulse))
        begin = int(round(at)) - natural
        source[begin:begin + len(pulse)] += pulse
        marks.append((at, step, voiced))
        filters.append((int(round(at)), predictor))
        spoken += step
        while i < len(periods) and ends[i] * RATE < spoken:
            i += 1
    end = int(at + .3 * RATE)
    wave, history, begin = np.zeros(end), np.zeros(40), 0
    for k, (place, predictor) in enumerate(filters):
        until = (place + filters[k + 1][0]) // 2 if k + 1 < len(filters) else end
        recursive = np.r_[1, -predictor]
        part, _ = lfilter([1.0], recursive, source[begin:until], zi=lfiltic([1.0], recursive, history[:len(predictor)]))
        wave[begin:until] = part
        history = np.r_[part[::-1], history][:40]
        begin = until
    scale = int(round(100 * tract)) / 100
    if scale != 1:
        wave = resample_poly(np.clip(wave, -1e6, 1e6), int(round(100 * tract)), 100)
    return wave / np.max(np.abs(wave)) * 11000, contour(marks, scale, len(wave) // FRAME, alternation)


def contour(marks, scale, frames, alternation):
    places, steps, voiced = (np.array(column) for column in zip(*marks))
    places, steps = places * scale, steps * scale
    f0 = np.zeros(frames)
    for k in range(frames):
        x = (k + 1) * FRAME - FRAME // 10  # the wave follows its closure
        j = np.searchsorted(places, x)     # the period that ends at mark j
        if 0 < j < len(places) and voiced[j] and voiced[j - 1]:
            near = [steps[j], steps[j - 1]] if alternation else [
                steps[q] for q in range(max(1, np.searchsorted(places, x - FRAME)),
                                        min(len(places), np.searchsorted(places, x + FRAME) + 1))
                if voiced[q] and voiced[q - 1]]
            f0[k] = RATE / np.mean(near)
        elif 0 < j and voiced[j - 1] and x - places[j - 1] < .6 * steps[j - 1]:
            f0[k] = RATE / steps[j - 1]
    return f0


def with_room(wave, random, db):
    noise = lfilter([1], [1, -.95], random.normal(0, 1, len(wave)))
    return wave + noise / np.std(noise) * np.std(wave) * 10 ** (db / 20)


def with_hum(wave, mains, db, random):
    t = np.arange(len(wave)) / RATE
    hum = sum(a * np.sin(2 * np.pi * mains * k * t + random.random() * 6.28) for k, a in ((1, 1), (2, .2), (3, .4), (5, .15)))
    return wave + hum / np.std(hum) * np.std(wave) * 10 ** (db / 20)


def behind_microphone(wave, cutoff):
    b, a = butter(2, cutoff / (RATE / 2), 'high')
    return lfilter(b, a, wave)


def main(folder):
    os.makedirs(folder, exist_ok=True)

    def save(name, wave, f0):
        wavfile.write(f'{folder}/{name}.wav', RATE, np.round(wave / np.max(np.abs(wave)) * 12000).astype(np.int16))
        np.savetxt(f'{folder}/{name}.f0', f0, fmt='%.3f')

    for who, path in GROUPS.items():
        units = load_diphones(VOICES + path)
        man = {'kal': 105, 'ked': 125}[who]
        for i in range(6):
            pick = lambda *values: values[i % 3]
            mains = 60 if i % 2 else 50

            def phrase(seed, *arguments, **options):
                random = np.random.default_rng(seed + i)
                return random, *make_phrase(units, random, *arguments, **options)

            def four(kind, random, wave, f0, cutoff):
                save(f'{kind}-plain_{who}{i}', with_room(wave, random, -48), f0)
                save(f'{kind}-hum_{who}{i}', with_room(with_hum(wave, mains, -28, random), random, -45), f0)
                save(f'{kind}-mic_{who}{i}', behind_microphone(with_room(wave, random, -45), cutoff), f0)
                save(f'{kind}-15dB_{who}{i}', with_room(wave, random, -15), f0)

            def one(name, random, wave, f0):
                save(f'{name}_{who}{i}', with_room(wave, random, -45), f0)

            four('man', *phrase(100, man), 150)
            one('man-creak', *phrase(200, man * .9, creak=52 + 5 * (i % 3), jitter=.010))
            one('man-double', *phrase(300, man * 1.1, alternation=pick(.06, .10, .16)))
            one('man-low', *phrase(700, pick(72, 80, 88)))
            woman, high = 1 / 1.17, 1 / 1.25
            four('woman', *phrase(400, pick(190, 215, 240) * woman, tract=woman, breath=.25), 200)
            one('woman-creak', *phrase(800, pick(190, 210, 240) * woman, tract=woman, creak=pick(80, 95, 110) * woman,
                                       jitter=.01, breath=.2))
            one('woman-double', *phrase(500, pick(200, 240, 300) * woman, tract=woman, alternation=pick(.05, .09, .14),
                                        breath=.2))
            one('high-plain', *phrase(600, pick(300, 340, 380) * high, tract=high, jitter=.005, breath=.2))


if __name__ == '__main__':
    main(sys.argv[1])
