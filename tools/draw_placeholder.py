#!/usr/bin/env python3
"""Draws built-in picture 133, the placeholder shown for a picture that cannot be loaded.

A 320 x 240 PNG: light grey ground inside a dark grey frame, a red cross from corner to corner
("no picture") and a camera in the middle. Only the standard library is used; the output is the
same byte for byte on every run, so the resource in the tree can be checked against it.

    tools/draw_placeholder.py [resources/placeholder_133.png]
"""

import math
import struct
import sys
import zlib

WIDTH, HEIGHT = 320, 240

GROUND = (200, 200, 200)
FRAME = (96, 96, 96)
CROSS = (176, 40, 40)
BODY = (56, 56, 60)
BODY_EDGE = (24, 24, 28)
LENS_RING = (210, 210, 214)
LENS = (36, 52, 84)
GLINT = (235, 235, 240)
FLASH = (250, 220, 120)


def make_canvas():
    return [[GROUND for _ in range(WIDTH)] for _ in range(HEIGHT)]


def fill_rect(canvas, left, top, right, bottom, colour):
    """Fills columns left..right-1 and rows top..bottom-1."""
    for y in range(max(top, 0), min(bottom, HEIGHT)):
        row = canvas[y]
        for x in range(max(left, 0), min(right, WIDTH)):
            row[x] = colour


def fill_rounded_rect(canvas, left, top, right, bottom, radius, colour):
    for y in range(top, bottom):
        for x in range(left, right):
            # Distance from the nearest corner centre decides the rounded corners.
            cx = min(max(x + 0.5, left + radius), right - radius)
            cy = min(max(y + 0.5, top + radius), bottom - radius)
            if (x + 0.5 - cx) ** 2 + (y + 0.5 - cy) ** 2 <= radius * radius:
                canvas[y][x] = colour


def fill_circle(canvas, cx, cy, radius, colour):
    for y in range(int(cy - radius) - 1, int(cy + radius) + 2):
        for x in range(int(cx - radius) - 1, int(cx + radius) + 2):
            if 0 <= x < WIDTH and 0 <= y < HEIGHT:
                if (x + 0.5 - cx) ** 2 + (y + 0.5 - cy) ** 2 <= radius * radius:
                    canvas[y][x] = colour


def draw_thick_line(canvas, x0, y0, x1, y1, half_width, colour):
    """Every pixel whose centre lies within half_width of the segment."""
    dx, dy = x1 - x0, y1 - y0
    length_sq = dx * dx + dy * dy
    for y in range(HEIGHT):
        for x in range(WIDTH):
            px, py = x + 0.5 - x0, y + 0.5 - y0
            t = max(0.0, min(1.0, (px * dx + py * dy) / length_sq))
            ex, ey = px - t * dx, py - t * dy
            if ex * ex + ey * ey <= half_width * half_width:
                canvas[y][x] = colour


def draw_picture():
    canvas = make_canvas()
    border = 10
    # The frame: a dark band around the edge.
    fill_rect(canvas, 0, 0, WIDTH, border, FRAME)
    fill_rect(canvas, 0, HEIGHT - border, WIDTH, HEIGHT, FRAME)
    fill_rect(canvas, 0, 0, border, HEIGHT, FRAME)
    fill_rect(canvas, WIDTH - border, 0, WIDTH, HEIGHT, FRAME)
    # The cross, corner to corner inside the frame.
    draw_thick_line(canvas, border, border, WIDTH - border, HEIGHT - border, 3.0, CROSS)
    draw_thick_line(canvas, WIDTH - border, border, border, HEIGHT - border, 3.0, CROSS)
    # The camera: body with a dark edge, viewfinder hump, flash, lens.
    cx, cy = WIDTH // 2, HEIGHT // 2 + 6
    fill_rounded_rect(canvas, cx - 26, cy - 56, cx + 22, cy - 34, 5, BODY_EDGE)
    fill_rounded_rect(canvas, cx - 24, cy - 54, cx + 20, cy - 36, 4, BODY)
    fill_rounded_rect(canvas, cx - 72, cy - 42, cx + 72, cy + 46, 10, BODY_EDGE)
    fill_rounded_rect(canvas, cx - 69, cy - 39, cx + 69, cy + 43, 8, BODY)
    fill_rect(canvas, cx + 42, cy - 30, cx + 60, cy - 20, FLASH)
    fill_circle(canvas, cx, cy + 3, 33, BODY_EDGE)
    fill_circle(canvas, cx, cy + 3, 30, LENS_RING)
    fill_circle(canvas, cx, cy + 3, 21, LENS)
    fill_circle(canvas, cx - 8, cy - 5, 5, GLINT)
    return canvas


def png_chunk(kind, data):
    body = kind + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)


def encode_png(canvas):
    raw = bytearray()
    for row in canvas:
        raw.append(0)  # filter: none
        for red, green, blue in row:
            raw += bytes((red, green, blue))
    header = struct.pack(">IIBBBBB", WIDTH, HEIGHT, 8, 2, 0, 0, 0)  # 8-bit RGB
    return (b"\x89PNG\r\n\x1a\n" + png_chunk(b"IHDR", header) +
            png_chunk(b"IDAT", zlib.compress(bytes(raw), 9)) + png_chunk(b"IEND", b""))


def main():
    out = sys.argv[1] if len(sys.argv) > 1 else "resources/placeholder_133.png"
    with open(out, "wb") as handle:
        handle.write(encode_png(draw_picture()))
    return 0


if __name__ == "__main__":
    sys.exit(main())
