#!/usr/bin/env python3
"""Writes the seed shows of the show-reader fuzz target into fuzz/corpus/show.

Each seed is a show file laid out as the program writes it (little-endian), made good or broken
on purpose: lengths past the data, key counts of 0, 65 and 0xFFFFFFFF, NaN and infinite values in
every key field, file records without a terminator, pictures that are missing or /dev/zero.
"""
import math
import os
import struct

PICTURE = b"/tmp/parallaxotron-show-fuzz/picture.bmp"
HERE = os.path.dirname(os.path.abspath(__file__))
OUT = os.path.join(HERE, "..", "fuzz", "corpus", "show")


def fspec(path, terminated=True):
    name = path if len(path) >= 256 else path + b"\0" * (256 - len(path))
    if not terminated:
        name = (path * 256)[:256]
    return struct.pack("<hi", 9991, 9991) + name[:256]


def key(frame, x=12.0, y=8.0, width=24.0, rotation=0.0, ease=0.0, start=0.0, trans=0.0,
        show=300.0, spare=0.0, fields=None):
    values = [x, spare, y, width, 0.0, 0.0, 0.0, rotation, ease, start, trans, show]
    if fields is not None:
        values = fields
    return struct.pack("<12fihh", *values, frame, 0, 0)


def picture(path, keys, count=None, terminated=True):
    n = len(keys) if count is None else count
    return fspec(path, terminated) + struct.pack("<I", n & 0xFFFFFFFF) + b"".join(keys)


def show(records, version=110.0, length=None, trailer=True, word=12850):
    body = b"".join(records)
    if len(b"".join(records)) >= 274 and version is not None:
        # The version stamp rides in Spare1 of the first key of the first picture.
        first = bytearray(body)
        struct.pack_into("<f", first, 262 + 4 + 4, version)
        body = bytes(first)
    tail = struct.pack("<iiihH", 0x102030, 4, 1, 0, word) + b"\xAA" * 4 if trailer else b""
    total = 8 + len(body) + len(tail)
    header = struct.pack("<HHi", 0x1234, 77, total if length is None else length)
    return header + body + tail


def swapped(data):
    """The same show written in the other byte order (header, records, keys and trailer)."""
    out = bytearray(data)

    def flop(at, n):
        out[at:at + n] = out[at:at + n][::-1]

    length = struct.unpack_from("<i", data, 4)[0]
    flop(0, 2), flop(2, 2), flop(4, 4)
    at = 8
    while at + 262 <= length - 20:
        flop(at, 2), flop(at + 2, 4)
        at += 262
        count = struct.unpack_from("<I", data, at)[0]
        flop(at, 4)
        at += 4
        for _ in range(count):
            for field in range(13):
                flop(at + 4 * field, 4)
            flop(at + 52, 2), flop(at + 54, 2)
            at += 56
    for offset, n in ((0, 4), (4, 4), (8, 4), (12, 2), (14, 2)):
        flop(at + offset, n)
    return bytes(out)


def main():
    os.makedirs(OUT, exist_ok=True)
    moving = [key(0), key(40, x=16.0, width=12.0, rotation=10.0, ease=3050.0), key(90, y=4.0)]
    second = [key(0, start=100.0, trans=10.0), key(60, x=4.0)]
    good = show([picture(PICTURE, moving), picture(PICTURE, second)])
    seeds = {
        "two_pictures": good,
        "other_byte_order": swapped(good),
        "one_key": show([picture(PICTURE, [key(0)])]),
        "extra_record": show([picture(PICTURE, moving), fspec(b"/tmp/extra.aif") + b"\0\0\0\0"]),
        "length_past_buffer": show([picture(PICTURE, moving)], length=0x7FFFFFFF),
        "length_short": show([picture(PICTURE, moving)], length=300),
        "length_negative": show([picture(PICTURE, moving)], length=-5),
        "count_zero_first": show([picture(PICTURE, [], count=0)]),
        "count_65": show([picture(PICTURE, [key(i * 3) for i in range(65)])]),
        "count_65_claimed": show([picture(PICTURE, moving, count=65)]),
        "count_huge": show([picture(PICTURE, moving, count=0xFFFFFFFF)]),
        "name_unterminated": show([picture(PICTURE, moving, terminated=False)]),
        "missing_picture": show([picture(b"/tmp/parallaxotron-show-fuzz/missing.bmp", moving)]),
        "dev_zero": show([picture(b"/dev/zero", moving)]),
        "version_80": show([picture(PICTURE, moving)], version=80.0),
        "version_100": show([picture(PICTURE, moving)], version=100.0, word=0x3331),
        "no_trailer": show([picture(PICTURE, moving)], trailer=False),
        "header_only": struct.pack("<HHi", 0x1234, 1, 8),
    }
    for name, value in (("nan", math.nan), ("inf", math.inf), ("minus_inf", -math.inf)):
        odd = [key(0, fields=[value] * 12), key(30, fields=[value] * 12)]
        seeds["fields_" + name] = show([picture(PICTURE, odd), picture(PICTURE, second)])
    many = [picture(PICTURE, [key(0, start=float(i * 10)), key(5)]) for i in range(66)]
    seeds["sixty_six_pictures"] = show(many)
    for name, data in seeds.items():
        with open(os.path.join(OUT, name), "wb") as f:
            f.write(data)


if __name__ == "__main__":
    main()
