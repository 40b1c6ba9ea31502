#!/usr/bin/env python3
"""Writes a story that nobody would think of: a walk at random through the program.

    scripts/make_walk.py SEED STEPS [PROGRAM] > tests/headless/stories/walk-SEED.walk

Each step is drawn by the seed from what the program offers just then: commands that are enabled,
keys, clicks, controls of the tool window on top, selections. A command that asks is cancelled the first time, and
then chosen again with answers of the kinds that it asked for. A step that is an error of the script is taken back.
PROGRAM is parlowen-headless, else that of build/ci. The program may change under a walk that is kept: it stays the same
steps. One that has become an error of the script is made anew.
"""
import contextlib
import json
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
SOUNDS = ["synthetic_palate_16000.nsp", "synthetic_vowels_two_channels_16000.wav", "mandarin_initials_male_22050.wav",
          "english_male_sentence_16000.wav", "mandarin_mao_four_tones_female_11025.wav", "english_female_prompt_8000.wav"]
# Not "labels", and no Tab among the keys: whether the label pane gets them is up to a window manager.
PANES = ["amplitude", "pitch", "analysis", "waveform"]
DRAWN = ["markers", "vowels", "resynthesis", "degree", "tones", "intonation", "glottal", "palate", "articulation"]
KEYS = ["Left", "Right", "Up", "Down", "Home", "End", "PageUp", "PageDown", "Space", "Escape", "Enter", "Delete",
        *"ABCDFLMPQRSXZ12345", *(f"F{n}" for n in range(1, 9))]
BUTTONS = {"markers": [1, *range(1048, 1056)], "resynthesis": [1, 1034, 1036, 1101, 1102, 1103], "channels": [1, 2, *range(1201, 1207)],
           "tones": range(1301, 1307), "degree": [1351, 1352], "intonation": range(1401, 1407), "glottal": [1501, 1502, 1503],
           "palate": [1601, 1602, 1603], "articulation": [1701, 1702, 1703], "lta": ["保存此LTA谱", "LTA谱比较"]}
PRINTS = ["state", "pitch 0 40", "annotations", "markers", "vowels", "degree", "tones", "intonation", "articulation", "lta",
          "nasalance", "frame", "compare", "consonant", "glottal", "palate", "commands"]
TEXTS = ["a", "阴平", "ma1", "i", "长", "b组"]
QUIT, STOPS = 140, (274, 40025)  # a stop behind a play is another step than one behind a "print"


class Program:
    """parlowen-headless at the other end of two pipes, in a folder with the sounds; `steps` is what it was told and keeps."""

    def __init__(self, path):
        self.path, self.steps, self.open = path, [], []
        self.begin()

    def begin(self):
        self.folder = tempfile.TemporaryDirectory()
        for name in SOUNDS:
            shutil.copy(ROOT / "sounds" / name, self.folder.name)
        self.process = subprocess.Popen([self.path, "-"], cwd=self.folder.name, stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.DEVNULL, text=True, env={"HOME": self.folder.name})

    def tell(self, lines):
        """The events of these steps, or nothing when they are an error: then all is as it was."""
        try:
            events = self.send(lines)
        except (BrokenPipeError, EOFError):
            self.end()
            self.begin()
            self.send([step for steps in self.steps for step in steps])
            return None
        self.steps.append(lines)
        for event in events:
            if event["event"] == "window":
                self.open = [name for name in self.open if name != event["name"]]
                self.open += [event["name"]] * (event["state"] == "open")
        return events

    def send(self, lines):
        # A step that cannot be ends the script; the empty range of samples tells that all were taken.
        self.process.stdin.write("\n".join([*lines, "print state", "print samples 0 0\n"]))
        self.process.stdin.flush()
        events = []
        while line := self.process.stdout.readline():
            event = json.loads(line)
            if event["event"] == "value" and event["what"] == "samples":
                self.state = events.pop()
                return events
            events.append(event)
        raise EOFError

    def enabled(self):
        self.process.stdin.write("print commands\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())["enabled"]

    def end(self):
        with contextlib.suppress(BrokenPipeError):
            self.process.stdin.close()
        self.process.stdout.close()
        self.process.wait()


class Walk:
    def __init__(self, seed, program):
        self.random, self.program, self.made, self.tried, self.last = random.Random(seed), program, 0, {}, 0

    def one(self, items):
        return self.random.choice(list(items))

    def quoted(self, word):
        return f'"{word}"' if " " in word or not word else word

    def answer(self, asked):
        """One to the question of this event."""
        chance = self.random.random()
        if asked["event"] == "message":
            return "answer yes" if chance < 0.6 else "answer no"
        if chance < 0.05:
            return "answer cancel"
        if asked["kind"] == "input":
            return " ".join(["answer ok", *self.entries(asked["fields"])])
        endings = [pattern[1:] for _, patterns in asked["filter"] for pattern in patterns.split(";")]
        names = sorted(path.name for path in pathlib.Path(self.program.folder.name).iterdir() if path.is_file())
        fitting = [name for name in names if any(name.endswith(ending) for ending in endings)]
        if asked["kind"] == "open" and fitting and chance < 0.9:
            return f"answer file {self.quoted(self.one(fitting))}"
        if asked["kind"] == "open" and chance < 0.95:
            return f"answer file {self.quoted(self.one(names))}"
        self.made += 1
        return f"answer file new{self.made if chance < 0.8 else 1}{self.one(endings) if chance > 0.3 else ''}"

    def entries(self, fields):
        for name, value in fields.items():
            if isinstance(value, list):
                value = self.one(value)
            if self.random.random() < 0.3:
                continue
            if name == "choose":
                if value.isdigit():
                    yield f"choose={int(value) + self.one([-1, 0, 0, 1, 1, 2])}"
                continue
            try:
                number = float(value)
                text = f"{number * self.one([0.5, 0.9, 1, 1.1, 2]) + self.one([0, 0, 1]):g}"
            except ValueError:
                text = self.one(TEXTS) if self.random.random() < 0.7 or not value else value
            yield f"{name}={self.quoted(text)}"

    def place(self):
        count = self.program.state["sampleCount"]
        return round(self.random.random() * count) + self.one([0, 0, 0, -1, 1])

    def draw(self):
        """What is done next."""
        chance, state, tool = self.random.random(), self.program.state, self.program.open[-1:] or [""]
        if chance < 0.50 or not state["sampleCount"]:
            enabled = [number for number in self.program.enabled() if number != QUIT and number not in STOPS]
            # Rather what was chosen seldom, and what stands near the last one in the menu, so that one leads to another.
            near = lambda number: 30 if abs(number - self.last) < 9 else 1
            weights = [near(number) / (1 + self.tried.get(number, 0)) ** 2 for number in enabled]
            number = self.last = self.random.choices(enabled, weights)[0]
            self.tried[number] = self.tried.get(number, 0) + 1
            return [f"command {number}"]
        if chance < 0.60:
            first, last = sorted((self.place(), self.place()))
            if self.random.random() < 0.3:
                return [f"click {self.one(PANES[1:])} {self.random.randrange(20, 400)} 50",
                        f"click waveform {self.random.randrange(400, 1000)} 50 right"]
            if self.random.random() < 0.5:
                last = min(last, first + round(state["sampleRate"] * self.one([0.02, 0.2, 0.5])))
            return [f"select {first} {last}"]
        if chance < 0.72:
            drawn = tool[0] in DRAWN and self.random.random() < 0.7
            pane = tool[0] if drawn else self.one(PANES)
            at = f"{self.random.randrange(900)} {self.random.randrange(100 if pane == 'amplitude' else 160)}"
            return [f"click {pane} {at}" + self.one(["", "", " right", " shift"])]
        if chance < 0.84:
            return [f"key {self.one(KEYS)}"] * self.one([1, 1, 1, 2])
        if chance < 0.96 and tool[0]:
            if tool[0] in PRINTS and self.random.random() < 0.2:
                return [f"print {tool[0]}"]
            if tool[0] in BUTTONS and self.random.random() < 0.8:
                return [f"button {self.quoted(str(self.one(BUTTONS[tool[0]])))}"]
            return ["close"]
        return [f"print {self.one(PRINTS)}"]

    def step(self):
        step = self.draw()
        answers = []
        for attempt in range(3):
            events = self.program.tell([*answers, *step])
            asked = [event for event in events or [] if event["event"] == "dialog" or "answer" in event]
            if len(asked) <= len(answers):
                return
            answers = [self.answer(event) for event in asked]


def main():
    seed, count = int(sys.argv[1]), int(sys.argv[2])
    program = Program(sys.argv[3] if len(sys.argv) > 3 else ROOT / "build/ci/bin/parlowen-headless")
    walk = Walk(seed, program)
    program.tell(["print clip"])
    program.tell([f"answer file {walk.one(SOUNDS[1:])}", "answer no", "command 110"])
    program.tell(["command 220"])
    program.tell(["sound-input mandarin_mao_four_tones_female_11025.wav 6"])
    while len(program.steps) < count:
        walk.step()
    program.tell(["print state"])
    program.end()
    print("# status: 2")
    print("\n".join(step for steps in program.steps for step in steps))


main()
