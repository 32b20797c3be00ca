#!/usr/bin/env python3
"""Draws the demo show's pictures and writes the demo show, resources/demo/demo.plx.

Four scenes drawn here pixel by pixel (a lake at dusk, a city at night, a meadow, a tiled floor)
saved as PNG with the standard library only, and a show that pans, zooms, turns, tilts, eases and
dissolves over them. The show names its pictures by file name alone; they are found beside it.
"""
import math
import os
import struct
import zlib

W, H = 1200, 800
HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "..", "resources", "demo")


def png(path, width, height, pixel):
    rows = bytearray()
    for y in range(height):
        rows.append(0)
        for x in range(width):
            rows.extend(pixel(x, y))

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) +
                chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b""))


def mix(a, b, t):
    t = max(0.0, min(1.0, t))
    return tuple(int(a[i] + (b[i] - a[i]) * t) for i in range(3))


def ridge(x, base, parts):
    return base + sum(a * math.sin(x * f + p) for a, f, p in parts)


def lake(x, y):
    horizon = 520
    if y < horizon:
        sky = mix((40, 30, 90), (250, 150, 80), y / horizon)
        if (x - 800) ** 2 + (y - 430) ** 2 < 60 ** 2:
            sky = (255, 220, 150)
        for depth, (base, colour) in enumerate(((420, (90, 60, 110)), (460, (60, 45, 80)), (495, (35, 30, 50)))):
            if y > ridge(x, base, ((30, 0.006 + depth * 0.002, depth), (12, 0.031, 2 * depth))):
                sky = colour
        return sky
    mirror = 2 * horizon - y - 1
    ripple = 6 * math.sin(y * 0.35) * (y - horizon) / (H - horizon)
    r, g, b = lake(min(max(int(x + ripple), 0), W - 1), max(mirror, 0))
    return (int(r * 0.6), int(g * 0.6 + 10), int(b * 0.7 + 20))


def city(x, y):
    colour = mix((5, 5, 25), (30, 25, 70), y / H)
    if ((x * 73856093) ^ (y * 19349663)) % 1301 == 0 and y < 500:
        colour = (240, 240, 255)
    if (x - 250) ** 2 + (y - 150) ** 2 < 45 ** 2:
        colour = (235, 235, 210)
    block = x // 70
    top = 300 + (block * 137) % 260
    if y > top:
        colour = (20 + block % 3 * 8, 20, 35)
        if (x % 70) % 14 in (4, 5, 6, 7, 8) and (y - top) % 22 in range(6, 15) and (block * 31 + y // 22 + x // 14) % 3:
            colour = (250, 210, 110)
    if y > 760:
        colour = (15, 15, 20)
    return colour


def meadow(x, y):
    colour = mix((90, 150, 240), (200, 225, 250), y / 450)
    for cx, cy, rad in ((250, 140, 60), (320, 120, 70), (390, 150, 55), (850, 200, 50), (910, 180, 65)):
        if (x - cx) ** 2 + (y - cy) ** 2 < rad ** 2:
            colour = (250, 250, 250)
    hill = ridge(x, 470, ((40, 0.004, 0.0), (15, 0.013, 1.0)))
    if y > hill:
        colour = mix((110, 190, 70), (40, 110, 30), (y - hill) / 300)
        if (x * 31 + y * 17) % 53 == 0:
            colour = ((x * 3) % 200 + 55, 60, (y * 5) % 200 + 55)
    if 905 < x < 935 and 380 < y < 520:
        colour = (90, 60, 30)
    if (x - 920) ** 2 + (y - 340) ** 2 < 90 ** 2:
        colour = (30, 120 + (x + y) % 30, 40)
    return colour


def tiles(x, y):
    cell = 100
    cx, cy = x % cell - cell / 2, y % cell - cell / 2
    hue = ((x // cell) * 3 + (y // cell) * 5) % 6
    colours = ((220, 60, 60), (240, 180, 40), (60, 170, 90), (50, 120, 220), (150, 70, 200), (240, 240, 240))
    if abs(cx) + abs(cy) < 38:
        return colours[hue]
    if math.hypot(cx, cy) > 48:
        return (40, 40, 50)
    return colours[(hue + 3) % 6]


def key(frame, x, y, width, rotation=0.0, tilt=0.0, ease=0.0, start=0.0, trans=0.0, show=0.0, spare=0.0):
    return struct.pack("<12fihh", x, spare, y, width, 0.0, tilt, 0.0, rotation, ease, start, trans, show,
                       frame, 0, 0)


def record(name, keys):
    spec = struct.pack("<hi", 9991, 9991) + name.encode().ljust(256, b"\0")
    return spec + struct.pack("<i", len(keys)) + b"".join(keys)


def show():
    length = 1200.0
    records = [
        # A slow pan along the lake, easing in and out.
        record("lake.png", [key(0, 300, 400, 560, start=0, show=length, spare=110.0),
                            key(280, 880, 360, 620, ease=1100.0)]),
        # Dissolving in: a zoom into the city's lit windows.
        record("city.png", [key(0, 600, 400, 1100, start=300, trans=30, show=length),
                            key(150, 640, 420, 700),
                            key(290, 700, 450, 360, ease=3000.0)]),
        # A turn over the meadow.
        record("meadow.png", [key(0, 500, 350, 800, start=600, show=length),
                              key(290, 700, 380, 700, rotation=15.0)]),
        # A keystone tilt over the floor, slowing in.
        record("tiles.png", [key(0, 600, 400, 900, start=900, trans=20, show=length),
                             key(290, 600, 400, 700, tilt=20.0, ease=2080.0)]),
    ]
    body = b"".join(records)
    trailer = struct.pack("<iiihH", 0, 0, 0, 0, 12850) + b"\0" * 4
    total = 8 + len(body) + len(trailer)
    return struct.pack("<HHi", 0x1234, 4242, total) + body + trailer


def main():
    os.makedirs(OUT, exist_ok=True)
    for name, pixel in (("lake", lake), ("city", city), ("meadow", meadow), ("tiles", tiles)):
        png(os.path.join(OUT, name + ".png"), W, H, pixel)
    with open(os.path.join(OUT, "demo.plx"), "wb") as f:
        f.write(show())


if __name__ == "__main__":
    main()
