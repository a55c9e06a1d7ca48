#!/usr/bin/env python3
"""Files that lie, end early or are garbage, of every type, as files and through pipes: status 0 or 2,
one clean line, what was there stays, nothing is left, and little memory for little files.
Arguments: the program, which of the files to take (5: every fifth), and for Windows programs what
runs them, which gives them no standard input.
"""
import os
import random
import re
import resource
import shutil
import struct
import subprocess
import sys
import tempfile
import zlib
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

PROGRAM, EVERY, RUNNER = os.path.abspath(sys.argv[1]), int(sys.argv[2]), sys.argv[3:]
MOST_MEMORY = 64 << 20  # bytes; no file here has more than a few kilobytes
MOST_SECONDS = 20


def pxb(*arguments, **streams):
    return subprocess.Popen([*RUNNER, PROGRAM, *arguments], stderr=subprocess.PIPE,
                            stdout=subprocess.PIPE, **streams)


def types():
    text = pxb("--help").communicate()[0].decode()
    return re.findall(r"^  (\w+) ", text.split("Files:")[1].split("Examples:")[0], re.M)


def good_files(folder):
    """Small, of all types that the program writes."""
    for name in types():
        path = folder / f"card.{name}"
        if name not in ("raw", "ppm", "pgm") and pxb("testcard", str(path), "--size", "17x12").wait() == 0:
            yield name, path.read_bytes()
    yield "bmp", bitmap(8, 1, 17, 12) + b"\x11\7\0\0\0\5abcde?\0\2\3\2\4\1\0\1"
    yield "bmp", bitmap(4, 2, 17, 12) + b"\x11\x7a\0\0\0\5abc?\0\2\3\2\4\1\0\1"
    yield "bmp", bitmap(16, 0, 17, 12) + bytes(range(200)) * 3
    yield "pbm", b"P1 17 2\n" + b"0 1" * 17
    yield "pbm", b"P4 17 2\nabcdef"
    if "jpeg" in types() and shutil.which("pnmtojpeg"):
        yield "jpeg", subprocess.run(["pnmtojpeg", "-progressive", str(folder / "card.pnm")],
                                     capture_output=True).stdout


def bitmap(bits, compression, width, height):
    colors = 1 << bits if bits <= 8 else 0
    offset = 54 + 4 * colors
    return struct.pack("<2sIIIIiiHHIIIIII", b"BM", 0, 0, offset, 40, width, height, 1, bits,
                       compression, 0, 0, 0, colors, 0) + bytes(4 * colors)


def lies(good):
    """Small files that claim much, whatever they hold."""
    wide, high = b"16384", b"16383"
    for magic in (b"P1", b"P2", b"P3", b"P4", b"P5", b"P6"):
        depth = b"" if magic in (b"P1", b"P4") else b" 255"
        yield "pnm", magic + b" " + wide + b" " + high + depth + b"\n1 2 3"
    for layout in (b"420jpeg", b"422", b"444", b"mono"):
        yield "y4m", b"YUV4MPEG2 W%b H%b C%b\nFRAME\nabc" % (wide, high, layout)
        yield "y4m", b"YUV4MPEG2 W%b H%b C%b\n" % (wide, high, layout)
    for depth in (1, 4, 9):
        yield "pam", b"P7\nWIDTH %b\nHEIGHT %b\nDEPTH %d\nMAXVAL 255\nENDHDR\nabc" % (
            wide, high, depth)
    for bits, compression in ((1, 0), (4, 2), (8, 0), (8, 1), (16, 0), (24, 0), (32, 0)):
        for rest in (b"", b"\0\1", b"\xff\0\0\0"):
            yield "bmp", bitmap(bits, compression, 16384, 16383) + rest
    for color in (0, 3, 6):
        chunks = ((b"IHDR", struct.pack(">IIBBBBB", 16384, 16383, 8, color, 0, 0, 1)),
                  (b"PLTE", b"abc"), (b"iCCP", b"a\0\0" + zlib.compress(bytes(1 << 20))[:500]),
                  (b"IDAT", zlib.compress(bytes(1 << 17))), (b"IEND", b""))
        yield "png", b"\x89PNG\r\n\x1a\n" + b"".join(
            struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
            for kind, data in chunks)
    for name, data in good:
        sizes = data.find(b"\x08\0\x0c\0\x11")  # of a JPEG picture, behind the bits of a sample
        if name == "jpeg" and sizes > 0:
            yield name, data[:sizes + 1] + b"\x40\0\x3f\xff" + data[sizes + 5:]


def damaged(data, chance):
    """Variants of a good file: cut, with other numbers, with bytes that do not belong there."""
    for part in range(6):
        yield data[:len(data) * part // 6]
    yield data[:-1]
    yield data + b"\x1b[31m more"
    for number in list(re.finditer(rb"\d+", data[:100]))[:3]:
        for other in (b"0", b"65535", b"2147483647", b"99999999999999999999", b"\x1b\0\xff"):
            yield data[:number.start()] + other + data[number.end():]
    for _ in range(8):
        at = chance.randrange(min(len(data), 100))
        for other in (chance.randbytes(1), b"\xff\xff\xff\x7f"):
            yield data[:at] + other + data[at + len(other):]


def cases():
    chance = random.Random(1)
    with tempfile.TemporaryDirectory() as folder:
        good = list(good_files(Path(folder)))
    for name, data in good:
        yield name, chance.randbytes(300)
        yield from ((name, bad) for bad in damaged(data, chance))
    yield from lies(good)


def failures_of(number, name, data):
    with tempfile.TemporaryDirectory() as top:
        out = Path(top, "folder", "out.raw" if name == "y4m" else "out.bmp")
        out.parent.mkdir()
        out.write_bytes(b"old")
        path = Path(top, f"in.{name}")
        path.write_bytes(data)
        piped = number // EVERY % 2 == 1 and not RUNNER
        command = ["info"] if number // EVERY % 4 < 2 else ["convert"]
        command += ["-" if piped else str(path)] + ([str(out)] if command[0] == "convert" else [])
        process = pxb(*command, stdin=subprocess.PIPE)
        text, message = process.communicate(data if piped else None, timeout=MOST_SECONDS)
        lines = message.decode("utf-8", "backslashreplace").splitlines()
        status = process.returncode
        if status not in (0, 2):
            yield f"status {status}: {lines[:20]}"
        if len(lines) > 1 or (status == 2) != any(
                re.match("pxb: (?!note: )", line) for line in lines):
            yield f"status {status} with the lines {lines}"
        shown = (text + message).replace(b"\r\n", b"\n").decode("utf-8", "surrogateescape")
        if not shown.replace("\n", "").isprintable():
            yield f"control characters: {shown!r}"
        if os.listdir(out.parent) != [out.name]:
            yield f"left: {os.listdir(out.parent)}"
        if (out.read_bytes() == b"old") != (status == 2 or command[0] == "info"):
            yield f"status {status}, and the old file does not fit it"


def failures(case):
    number, (name, data) = case
    found = list(failures_of(number, name, data))
    return [f"{number}, {name}, {data[:80]}: {text}" for text in found]


def main():
    all_cases = list(enumerate(cases()))[::EVERY]
    with ThreadPoolExecutor(2) as pool:
        found = [line for lines in pool.map(failures, all_cases) for line in lines]
    print("\n".join(found[:20]), f"{len(all_cases)} files, {len(found)} failures", sep="\n")
    most = resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss * 1024  # of the largest program
    print(f"most memory: {most >> 20} MiB")
    sys.exit(bool(found) or most > MOST_MEMORY)


main()
