#!/usr/bin/env python3
"""Writes wave.xpm, the background picture of the "Wave" design: a white page with layered
teal waves along the top and the bottom edge. The picture is stretched to the page, so it
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


print("/* XPM */")
print("static const char *wave[] = {")
print(f'"{WIDTH} {HEIGHT} {len(COLOURS)} 1",')
for key, value in COLOURS.items():
    print(f'"{key} c {value}",')
rows = ['"' + "".join(pixel(x, y) for x in range(WIDTH)) + '"' for y in range(HEIGHT)]
print(",\n".join(rows))
print("};")
