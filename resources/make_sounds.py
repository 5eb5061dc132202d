#!/usr/bin/env python3
"""Makes the sounds in resources/beside: nine short ones for what the user does, three tones for alarms.

Mono, 16 bit, 44100 Hz. Every sound begins and ends at silence, so that none of them clicks, and its peak lies 9 dB under
full scale or lower.
"""
import array
import math
import pathlib
import random
import sys
import wave

OUT = pathlib.Path(__file__).resolve().parent / "beside"
RATE = 44100
PEAK = 10 ** (-9 / 20)

C5, E5, G5, A5, B5, C6, D6, E6, G6 = 523.25, 659.26, 783.99, 880.0, 987.77, 1046.5, 1174.66, 1318.51, 1567.98
G4, C4 = 392.0, 261.63


def silence(seconds):
    return [0.0] * round(seconds * RATE)


def add(target, part, at=0.0):
    """Mixes part into target from a time on; target grows as needed."""
    start = round(at * RATE)
    target.extend([0.0] * (start + len(part) - len(target)))
    for i, v in enumerate(part):
        target[start + i] += v
    return target


def attack(t, seconds):
    return 1.0 if t >= seconds else 0.5 - 0.5 * math.cos(math.pi * t / seconds)


def struck(pitch, seconds, partials, decay, soft=0.004, gain=1.0):
    """A struck bar or bell: partials as (ratio, loudness, how much faster than the first it dies)."""
    out = []
    for i in range(round(seconds * RATE)):
        t = i / RATE
        v = sum(a * math.exp(-t * k / decay) * math.sin(2 * math.pi * pitch * r * t) for r, a, k in partials)
        out.append(gain * v * attack(t, soft))
    return out


def glide(low, high, seconds, gain=1.0, soft=0.012):
    """A soft tone that slides from one pitch to the other."""
    out, phase = [], 0.0
    for i in range(round(seconds * RATE)):
        t = i / RATE
        x = t / seconds
        phase += 2 * math.pi * (low * (high / low) ** x) / RATE
        out.append(gain * (math.sin(phase) + 0.18 * math.sin(2 * phase)) * attack(t, soft) * (1 - x) ** 1.4)
    return out


def rustle(seconds, bright, seed, bumps, gain=1.0):
    """Paper: filtered noise in a few short bursts, given as (time, length, loudness)."""
    dice = random.Random(seed)
    out, low, slow = [], 0.0, 0.0
    for i in range(round(seconds * RATE)):
        t = i / RATE
        low += bright * (dice.uniform(-1, 1) - low)
        slow += 0.02 * (low - slow)
        level = sum(a * math.exp(-((t - at) / length) ** 2) for at, length, a in bumps)
        out.append(gain * level * (low - slow) * attack(t, 0.006))
    return out


MARIMBA = ((1, 1.0, 1.0), (3.93, 0.28, 3.2), (9.2, 0.06, 8.0))
BELL = ((0.5, 0.22, 0.6), (1, 1.0, 1.0), (2.0, 0.35, 1.5), (2.99, 0.24, 2.1), (4.16, 0.13, 3.0), (5.43, 0.07, 4.2))
CHIME = ((1, 1.0, 1.0), (2.76, 0.3, 2.2), (5.4, 0.09, 4.5))
TICK = ((1, 1.0, 1.0), (2.4, 0.2, 3.0))


def chime():
    out = silence(0)
    for i, pitch in enumerate((G5, E5, C5, G5, C6)):
        add(out, struck(pitch, 1.5, CHIME, 0.42, gain=0.9 if i < 4 else 1.1), 0.19 * i)
    return out


def marimba():
    out = silence(0)
    for at, pitch in ((0, C5), (0.15, E5), (0.3, G5), (0.45, C6), (0.75, G5), (0.9, C6)):
        add(out, struck(pitch, 0.8, MARIMBA, 0.2), at)
    return out


def bell():
    out = silence(0)
    for at, gain in ((0, 1.0), (0.62, 0.8)):
        add(out, struck(C6 / 1.5, 1.7, BELL, 0.55, gain=gain), at)
    return out


SOUNDS = {
    "add": lambda: add(struck(E5, 0.2, MARIMBA, 0.06), struck(A5, 0.18, MARIMBA, 0.06), 0.06),
    "move": lambda: add(glide(300, 620, 0.16), rustle(0.16, 0.2, 3, ((0.06, 0.035, 0.8),))),
    "copy": lambda: add(struck(A5, 0.15, MARIMBA, 0.045), struck(A5, 0.15, MARIMBA, 0.045), 0.075),
    "delete": lambda: add(struck(G5, 0.2, MARIMBA, 0.05), struck(C5, 0.18, MARIMBA, 0.06), 0.07),
    "bindel": lambda: add(rustle(0.25, 0.26, 5, ((0.03, 0.014, 1.4), (0.075, 0.02, 1.8), (0.12, 0.016, 1.2))),
                          struck(G4 / 2, 0.12, TICK, 0.035, gain=0.9), 0.13),
    "open": lambda: glide(420, 760, 0.15),
    "close": lambda: glide(700, 400, 0.14),
    "select": lambda: struck(B5, 0.07, TICK, 0.016, soft=0.003),
    "chpane": lambda: add(glide(900, 240, 0.24, gain=0.7), rustle(0.24, 0.18, 9, ((0.1, 0.06, 0.9),))),
    "Chime": chime, "Marimba": marimba, "Bell": bell,
}


def finish(samples):
    """Fades the last part out, takes an offset away and scales to the peak."""
    tail = min(len(samples), round(0.03 * RATE))
    for i in range(tail):
        samples[len(samples) - tail + i] *= 0.5 + 0.5 * math.cos(math.pi * (i + 1) / tail)
    loudest = max(abs(v) for v in samples)
    return array.array("h", (round(v / loudest * PEAK * 32767) for v in samples))


def main():
    for name, play in SOUNDS.items():
        data = finish(play())
        if sys.byteorder == "big":
            data.byteswap()
        with wave.open(str(OUT / f"{name}.wav"), "wb") as file:
            file.setnchannels(1)
            file.setsampwidth(2)
            file.setframerate(RATE)
            file.writeframes(data.tobytes())


if __name__ == "__main__":
    main()
