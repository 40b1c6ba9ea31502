#!/usr/bin/python3
"""Trains the voicing decision of the second pitch stage.

  train_voicing.py FOLDER --tool build/ci/bin/pitch_accuracy [--write src/pitch/VoicingWeights.cpp]

FOLDER holds recordings NAME.wav (16 bit, one channel, 16 kHz) of one speaker each and beside each a table
NAME.csv with the columns time (s), f0 (Hz, 0 unvoiced) and weight (0: the truth is uncertain). What the net
sees of them is measured by the pitch analysis itself (pitch_accuracy --inputs), at five rates, clean and in
noise. Every speaker is scored with a net that was trained without him; the last one is trained on all and
written. The same seed gives the same net. Needs numpy.
"""

import argparse
import csv
import math
import os
import subprocess
import tempfile
import wave

import numpy as np

INPUTS, UNITS = 26, 8
MOST_DEVIATIONS = 5.0
EPOCHS, DECAY = 8, 0.01
RATES = [8000, 11025, 16000, 22050, 44100]
# name, rate, kind of noise, dB below the mean power of the voiced frames
VARIANTS = [(r, "clean", 0.0) for r in RATES] + [
    (16000, "white", 20.0), (8000, "white", 20.0), (44100, "pink", 20.0), (11025, "pink", 20.0),
    (22050, "hum", 25.0), (16000, "hum", 30.0), (16000, "white", 10.0)]


def read_wav(path):
    with wave.open(path) as f:
        return np.frombuffer(f.readframes(f.getnframes()), "<i2").astype(float), f.getframerate()


def write_wav(path, samples, rate):
    with wave.open(path, "wb") as f:
        f.setnchannels(1)
        f.setsampwidth(2)
        f.setframerate(rate)
        f.writeframes(np.clip(np.rint(samples), -32768, 32767).astype("<i2").tobytes())


def resample(samples, rate, wanted):
    """By the spectrum; the upper 5 % of a narrower one fade out."""
    if rate == wanted:
        return samples
    length = int(len(samples) * wanted / rate)
    spectrum = np.fft.rfft(samples)
    bins = length // 2 + 1
    kept = np.zeros(bins, complex)
    n = min(bins, len(spectrum))
    kept[:n] = spectrum[:n]
    fade = int(0.05 * n)
    kept[n - fade:n] *= 0.5 + 0.5 * np.cos(np.pi * np.arange(fade) / fade)
    return np.fft.irfft(kept, length) * length / len(samples)


def noise(kind, count, rate, random):
    white = random.standard_normal(count)
    if kind == "white":
        return white
    if kind == "pink":
        spectrum = np.fft.rfft(white)
        spectrum[1:] /= np.sqrt(np.arange(1, len(spectrum)))
        spectrum[:int(20 * count / rate)] = 0
        return np.fft.irfft(spectrum, count)
    mains = random.choice([50.0, 60.0])
    t = np.arange(count) / rate
    return sum(np.sin(2 * np.pi * k * mains * t + random.uniform(0, 6)) / k for k in (1, 2, 3, 5))


class Speaker:
    """A recording's truth on the analysis' frames: frame g stands for (g + 1)·10 ms."""

    def __init__(self, folder, name):
        self.name = name
        self.samples, self.rate = read_wav(os.path.join(folder, name + ".wav"))
        with open(os.path.join(folder, name + ".csv")) as f:
            rows = list(csv.DictReader(f))
        f0 = np.array([float(r["f0"]) for r in rows])
        weight = np.array([float(r["weight"]) for r in rows])
        self.truth = np.where(weight > 0, f0, -1.0)[1:]

    def variant(self, rate, kind, ratio, random):
        samples = resample(self.samples, self.rate, rate)
        if kind == "clean":
            return samples
        step = rate / 100
        voiced = [f for f in range(len(self.truth)) if self.truth[f] > 0]
        power = np.mean([np.mean(samples[int((f + 0.5) * step):int((f + 1.5) * step)] ** 2) for f in voiced
                         if int((f + 1.5) * step) < len(samples)])
        added = noise(kind, len(samples), rate, random)
        return samples + added * math.sqrt(power / np.mean(added ** 2)) * 10 ** (-ratio / 20)


def make_recordings(speakers, folder, seed):
    """(speaker, variant) -> path of the WAV file; the truth lies beside it."""
    paths = {}
    for s in speakers:
        random = np.random.default_rng([seed, sum(map(ord, s.name))])
        np.savetxt(os.path.join(folder, s.name + ".f0"), s.truth, "%.3f")
        for v in VARIANTS:
            path = os.path.join(folder, f"{s.name}_{v[0]}_{v[1]}{v[2]:.0f}.wav")
            if not os.path.exists(path):
                write_wav(path, s.variant(*v, random), v[0])
            paths[s.name, v] = path
    return paths


def measure(tool, speakers, paths):
    """(speaker, variant) -> inputs and whether the frame is voiced, without the uncertain frames."""
    for path in paths.values():
        subprocess.run([tool, "--inputs", path, path[:-4] + ".in"], check=True)
    data = {}
    for s in speakers:
        for v in VARIANTS:
            x = np.fromfile(paths[s.name, v][:-4] + ".in", "<f4").reshape(-1, INPUTS)
            n = min(len(x), len(s.truth))
            known = s.truth[:n] >= 0
            known[0] = False
            data[s.name, v] = x[:n][known], (s.truth[:n][known] > 0).astype(np.float32)
    return data


def squash(x):
    c = np.clip(x, -3, 3)
    return c * (27 + c * c) / (27 + 9 * c * c)


def squash_slope(x):
    inside = np.abs(x) < 3
    q = x * x
    return np.where(inside, 9 * (q - 9) ** 2 / (27 + 9 * q) ** 2, 0)


class Net:
    def __init__(self, x, seed, units=UNITS):
        random = np.random.default_rng(seed)
        self.mean, self.deviation = x.mean(0), np.maximum(x.std(0), 1e-3)
        n = x.shape[1]
        self.p = [random.standard_normal((n, units)).astype(np.float32) / math.sqrt(n),
                  np.zeros(units, np.float32),
                  random.standard_normal(units).astype(np.float32) / math.sqrt(units), np.zeros(1, np.float32)]

    def scaled(self, x):
        return np.clip((x - self.mean) / self.deviation, -MOST_DEVIATIONS, MOST_DEVIATIONS).astype(np.float32)

    def odds(self, z):
        return squash(z @ self.p[0] + self.p[1]) @ self.p[2] + self.p[3]

    def train(self, x, y, seed, epochs, decay, rate=0.004, batch=1024):
        """Adam on the logistic loss with decaying steps and a pull of the weights to 0."""
        random = np.random.default_rng(seed)
        z = self.scaled(x)
        first = [np.zeros_like(p) for p in self.p]
        second = [np.zeros_like(p) for p in self.p]
        steps, total = 0, epochs * (len(z) // batch)
        for _ in range(epochs):
            order = random.permutation(len(z))
            for i in range(0, len(z) - batch + 1, batch):
                take = order[i:i + batch]
                zb, yb = z[take], y[take]
                a = zb @ self.p[0] + self.p[1]
                h = squash(a)
                error = (1 / (1 + np.exp(-(h @ self.p[2] + self.p[3]))) - yb) / batch
                da = np.outer(error, self.p[2]) * squash_slope(a)
                gradients = [zb.T @ da, da.sum(0), h.T @ error, np.array([error.sum()], np.float32)]
                steps += 1
                size = rate * 0.5 * (1 + math.cos(math.pi * steps / total))
                for k, g in enumerate(gradients):
                    first[k] = 0.9 * first[k] + 0.1 * g
                    second[k] = 0.999 * second[k] + 0.001 * g * g
                    m, v = first[k] / (1 - 0.9 ** steps), second[k] / (1 - 0.999 ** steps)
                    step = m / (np.sqrt(v) + 1e-8)
                    if k in (0, 2):
                        step = step + decay * self.p[k]
                    self.p[k] = (self.p[k] - size * step).astype(np.float32)

    def fields(self):
        return [self.mean, self.deviation, *self.p]

    def save(self, path):
        with open(path, "w") as f:
            for field in self.fields():
                f.write(" ".join(f"{v:.9g}" for v in np.ravel(field)) + "\n")

    def write_source(self, path, origin):
        def rows(values, indent="    "):
            lines, line = [], indent
            for v in np.ravel(values):
                text = f"{v:.9g}"
                text += ("" if "." in text or "e" in text else ".0") + "f, "
                if len(line) + len(text) > 100:
                    lines.append(line.rstrip())
                    line = indent
                line += text
            return "\n".join(lines + [line.rstrip()])

        weights = "\n".join("        {" + rows(row, "").rstrip(",").replace("\n", "\n         ") + "}," for row in self.p[0])
        with open(path, "w") as f:
            f.write("#include \"pitch/VoicingNet.h\"\n\n")
            for line in origin:
                f.write(f"// {line}\n")
            f.write("\nnamespace parlowen {\n\nconst VoicingNet kTrainedVoicing = {\n")
            f.write("    .mean = {\n" + rows(self.mean) + "},\n")
            f.write("    .deviation = {\n" + rows(self.deviation) + "},\n")
            f.write("    .weights = {{\n" + weights + "}},\n")
            f.write("    .bias = {\n" + rows(self.p[1]) + "},\n")
            f.write("    .output = {\n" + rows(self.p[2]) + "},\n")
            f.write(f"    .outputBias = {self.p[3][0]:.9g}f,\n}};\n\n}}  // namespace parlowen\n")


def trained(data, names, seed):
    x = np.concatenate([data[n, v][0] for n in names for v in VARIANTS])
    y = np.concatenate([data[n, v][1] for n in names for v in VARIANTS])
    net = Net(x, seed)
    net.train(x, y, seed, EPOCHS, DECAY)
    return net


def scores(tool, net_path, name, path):
    """Percent of voicing errors, gross errors among the frames that are voiced in both, all errors."""
    output = subprocess.run([tool, "--net", net_path, path, os.path.join(os.path.dirname(path), name + ".f0")],
                            check=True, capture_output=True, text=True).stdout
    columns = output.splitlines()[1].split()
    return float(columns[4]), float(columns[5]), float(columns[8])


def leave_one_out(tool, speakers, paths, data, seed, folder):
    """Prints the errors of the whole analysis on every speaker with a net that never heard him."""
    variants = [v for v in VARIANTS if v[1] == "clean" or v[2] >= 20]
    print(f"{'':16}" + "".join(f"{v[0]} {v[1]}".rjust(14) for v in variants) + "   all errors, %", flush=True)
    totals = {}
    for s in speakers:
        net_path = os.path.join(folder, s.name + ".net")
        trained(data, [o.name for o in speakers if o is not s], seed).save(net_path)
        line = f"{s.name:16}"
        for v in variants:
            found = scores(tool, net_path, s.name, paths[s.name, v])
            totals.setdefault((s.name[0], v), []).append(found)
            line += f"{found[2]:14.2f}"
        print(line, flush=True)
    for group in sorted({key[0] for key in totals}):
        print(f"{'mean of ' + group + '*':16}" + "".join(
            f"{np.mean([t[2] for t in totals[group, v]]):14.2f}" for v in variants))
        for title, column in (("  voicing", 0), ("  gross", 1)):
            print(f"{title:16}" + "".join(
                f"{np.mean([t[column] for t in totals[group, v]]):14.2f}" for v in variants))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("folder")
    parser.add_argument("--tool", required=True, help="the pitch_accuracy program")
    parser.add_argument("--write", help="the source file for the weights")
    parser.add_argument("--called", default="", help="what the recordings are, for the head of that file")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--no-scores", action="store_true", help="train only")
    options = parser.parse_args()
    names = sorted(f[:-4] for f in os.listdir(options.folder) if f.endswith(".wav"))
    speakers = [Speaker(options.folder, n) for n in names]
    with tempfile.TemporaryDirectory() as folder:
        paths = make_recordings(speakers, folder, options.seed)
        data = measure(options.tool, speakers, paths)
        if not options.no_scores:
            leave_one_out(options.tool, speakers, paths, data, options.seed, folder)
        if options.write:
            frames = sum(len(data[n, v][1]) for n in names for v in VARIANTS)
            net = trained(data, names, options.seed)
            net.write_source(options.write, [
                "Written by bench/pitch_accuracy/train_voicing.py; not edited by hand.",
                f"Trained on {options.called or options.folder}.",
                f"{len(names)} speakers, {frames} frames: " + ", ".join(sorted({f'{v[0]}' for v in VARIANTS}, key=int)) + " Hz, clean, and in",
                "white and pink noise of 20 dB, white noise of 10 dB, mains hum of 25 and 30 dB.",
                f"{INPUTS} inputs, {UNITS} units, {EPOCHS} epochs of Adam, decay {DECAY}, seed {options.seed}."])
            subprocess.run(["clang-format", "-i", options.write], check=False)


if __name__ == "__main__":
    main()
