#!/usr/bin/env python3
"""Writes wave.xpm, the background picture of the "Wave" design: a white page with layered
teal waves along the top and the bottom edge, their edges smoothed by blended colours. The picture is stretched to the page, so it
keeps the A4 proportions (298 by 421 pixels, about two points each). Run it again after changing the shapes:
    python3 make-wave-image.py > wave.xpm
"""
import math

WIDTH, HEIGHT = 298, 421
SCALE = HEIGHT / 212  # the shapes below are drawn on a 212-pixel-high grid
COLOURS = {".": "#FFFFFF", "p": "#D4EEF0", "m": "#5FB8C2", "t": "#0E7C86"}


def top_edge(x, shift, phase):
    return SCALE * (27 + shift + 3.5 * math.sin(2 * math.pi * x / WIDTH * 1.5 + phase))


def bottom_edge(x, shift, phase):
    return SCALE * (187 + shift + 3 * math.sin(2 * math.pi * x / WIDTH * 1.2 + phase))


def pixel(x, y):
    if y < top_edge(x, 0, 0.0):
        return "t"
    if y < top_edge(x, 4, 1.1):
        return "m"
    if y < top_edge(x, 8, 2.0):
        return "p"
    if y >= bottom_edge(x, 0, 0.6):
        return "t"
    if y >= bottom_edge(x, -4, 1.7):
        return "m"
    if y >= bottom_edge(x, -8, 2.5):
        return "p"
    return "."


SAMPLES = 4  # per pixel side: edges get blended colours instead of steps
KEYS = ".pmtabcdefghijklnoqrsuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789"


def rgb(hex_colour):
    return tuple(int(hex_colour[i:i + 2], 16) for i in (1, 3, 5))


def palette():
    """The four colours and seven blends between every two of them."""
    base = [rgb(c) for c in COLOURS.values()]
    colours = list(base)
    for i in range(len(base)):
        for j in range(i + 1, len(base)):
            for k in range(1, 8):
                colours.append(tuple(round(base[i][c] + (base[j][c] - base[i][c]) * k / 8)
                                     for c in range(3)))
    return colours


def blended(x, y, colours):
    total = [0, 0, 0]
    for i in range(SAMPLES):
        for j in range(SAMPLES):
            key = pixel(x + (i + 0.5) / SAMPLES, y + (j + 0.5) / SAMPLES)
            sample = rgb(COLOURS[key])
            for c in range(3):
                total[c] += sample[c]
    mean = [v / SAMPLES ** 2 for v in total]
    return min(range(len(colours)), key=lambda n: sum((colours[n][c] - mean[c]) ** 2 for c in range(3)))


colours = palette()
print("/* XPM */")
print("static const char *wave[] = {")
print(f'"{WIDTH} {HEIGHT} {len(colours)} 1",')
for n, colour in enumerate(colours):
    print(f'"{KEYS[n]} c #{colour[0]:02X}{colour[1]:02X}{colour[2]:02X}",')
rows = ['"' + "".join(KEYS[blended(x, y, colours)] for x in range(WIDTH)) + '"' for y in range(HEIGHT)]
print(",\n".join(rows))
print("};")
