#!/usr/bin/env python3
"""Reads back what the desktop program has exported, with readers that aren't the program's.

read_back.py FOLDER holds production.sv, production.json (sorvel info), production/ (its ticks by sorvel play) and
production.html, .gif, .png, -durations.txt and -00001.png and so on, made of the same film. Pictures are read by
ImageMagick and ffmpeg, times from the files. Each must show the film's picture at the film's time.
"""

import base64
import json
import pathlib
import re
import struct
import subprocess
import sys
from fractions import Fraction

folder = pathlib.Path(sys.argv[1])
failures = []


def check(holds, text):
    if not holds:
        failures.append(text)


def run(*words):
    return subprocess.run(words, check=True, capture_output=True).stdout


def grey_map(data):
    """The pixels of binary grey maps that follow each other."""
    pictures = []
    while data:
        head = re.match(rb"P5\s+(\d+)\s+(\d+)\s+255\s", data)
        size = int(head[1]) * int(head[2])
        pictures.append(data[head.end() : head.end() + size])
        data = data[head.end() + size :]
    return pictures


def film():
    """Each tick's picture with its exact start and end."""
    info = json.loads((folder / "production.json").read_text())
    (rate,) = {cut["fps"] for cut in info["cuts"]}
    ticks = []
    for i in range(LENGTH):
        path = folder / "production" / f"tick-{i:05}.pgm"
        # A tick that shows what the one before shows has no file.
        picture = grey_map(path.read_bytes())[0] if path.exists() else ticks[-1][0]
        ticks.append((picture, Fraction(i, rate), Fraction(i + 1, rate)))
    return ticks


def same(name, shown, ticks, place):
    """`shown` are pictures with start and end; `place` gives the start or end of a tick in the same unit."""
    check(shown and place(ticks[-1][2]) == shown[-1][2], f"{name} is of another length")
    for picture, start, end in ticks:
        for first, begin, stop in shown:
            if begin < place(end) and stop > place(start):
                check(first == picture, f"{name} shows another picture at {float(start):.3f} s")


def timed(pictures, durations):
    now = 0
    shown = []
    for picture, duration in zip(pictures, durations, strict=True):
        shown.append((picture, now, now + duration))
        now += duration
    return shown


# What the test makes: five ticks of a fade, five of a pan, two of a drawing, a dissolve of four and the last two.
LENGTH = 18
ticks = film()
page = (folder / "production.html").read_text()
stream = re.search(r'id="stream">([^<]*)<', page)
check(stream and base64.b64decode(stream[1]) == (folder / "production.sv").read_bytes(), "the page holds another film")


def hundredths(time):
    return int(time * 100 + Fraction(1, 2))


gif = folder / "production.gif"
delays = [int(word) for word in run("identify", "-format", "%T\n", gif).split()]
same("the GIF", timed(grey_map(run("convert", gif, "-coalesce", "-depth", "8", "pgm:-")), delays), ticks, hundredths)


def control_chunks(path):
    data = path.read_bytes()
    at = 8
    while at < len(data):
        length, kind = struct.unpack_from(">I4s", data, at)
        if kind == b"fcTL":
            yield Fraction(*struct.unpack_from(">HH", data, at + 8 + 20))
        at += 12 + length


animation = folder / "production.png"
frames = run("ffmpeg", "-v", "error", "-i", animation, "-fps_mode", "passthrough", "-c:v", "pgm", "-f", "image2pipe", "-pix_fmt", "gray", "-")
same("the animated PNG", timed(grey_map(frames), control_chunks(animation)), ticks, lambda time: time)

numbered = sorted(folder.glob("production-0*.png"))
pictures = [grey_map(run("convert", path, "-depth", "8", "pgm:-"))[0] for path in numbered]
durations = re.findall(r"^# (\d+)/(\d+) s$", (folder / "production-durations.txt").read_text(), re.MULTILINE)
same("the folder", timed(pictures, [Fraction(int(a), int(b)) for a, b in durations]), ticks, lambda time: time)

for failure in failures[:10]:
    print(f"read_back.py: {failure}", file=sys.stderr)
print(f"read back: page, GIF of {len(delays)} pictures, PNG of {len(pictures)}, {len(ticks)} ticks")
sys.exit(1 if failures else 0)
