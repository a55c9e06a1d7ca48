#!/usr/bin/env python3
"""Pictures of every type beside what netpbm makes of the same files, pixel by pixel.
Argument: the program. Works in a folder of its own."""
import os
import random
import struct
import subprocess
import sys
import tempfile

PROGRAM = os.path.abspath(sys.argv[1])
WIDTH, HEIGHT = 67, 45
failures = []


def run(command):
    """The output of a pipeline of programs."""
    script = "set -eo pipefail; " + command
    return subprocess.run(["bash", "-c", script], check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, env={**os.environ, "PXB": PROGRAM}).stdout


def compare(name, ours, theirs):
    if run(ours) != run(theirs):
        failures.append(f"{ours} differs from {theirs}")
    print(name)


def bmp(name, bits, compression, rest, colors, pixels):
    offset = 54 + len(rest)
    header = struct.pack("<2sIIIIiiHHIIIIII", b"BM", offset + len(pixels), 0, offset, 40, WIDTH,
                         HEIGHT, 1, bits, compression, len(pixels), 0, 0, colors, 0)
    with open(name, "wb") as file:
        file.write(header + rest + pixels)


def runs(chance, bits):
    """Complete rows, others netpbm does not read."""
    data = b""
    for _ in range(HEIGHT):
        left = WIDTH
        while left:
            count = min(left, chance.randrange(1, 20))
            left -= count
            if count > 2 and chance.random() < 0.5:
                used = count * bits // 8 + (count * bits % 8 > 0)
                data += bytes([0, count]) + chance.randbytes(used) + bytes(used % 2)
            else:
                data += bytes([count]) + chance.randbytes(1)
        data += b"\0\0"
    return data + b"\0\1"


def bitmaps():
    chance = random.Random(5)
    palette = bytearray(chance.randbytes(1024))
    palette[3::4] = bytes(256)
    for bits in (1, 4, 8):
        run(f"pnmquant {2 ** bits} card.ppm | ppmtobmp -bpp={bits} >packed{bits}.bmp")
    run("ppmtobmp -bpp=24 card.ppm >packed24.bmp")
    bmp("packed16.bmp", 16, 0, b"", 0, chance.randbytes((WIDTH + 1) // 2 * 4 * HEIGHT))
    for bits, compression in ((8, 1), (4, 2)):
        bmp(f"runs{bits}.bmp", bits, compression, palette[:4 << bits], 1 << bits,
            runs(chance, bits))
    for name in ("packed1", "packed4", "packed8", "packed16", "packed24", "runs8", "runs4"):
        compare(name, f"$PXB convert {name}.bmp - --type ppm --to RGB24", f"bmptopnm {name}.bmp")


def netpbm():
    run("ppmtopgm card.ppm >grey.pgm")
    run("pamditherbw grey.pgm | pamtopnm >bits.pbm; pnmtoplainpnm bits.pbm >text.pbm")
    for name in ("bits", "text"):
        compare(name, f"$PXB convert {name}.pbm - --type pgm",
                f"pamdepth 255 {name}.pbm | pamtopnm")
    run("pnmtopng -alpha=grey.pgm card.ppm >alpha.png; pngtopam -alphapam alpha.png >alpha.pam")
    run("pnmtopng -alpha=grey.pgm grey.pgm | pngtopam -alphapam >grey.pam")
    if b"PNG" in run("$PXB --help"):
        compare("alpha.png", "$PXB convert alpha.png - --type pam", "cat alpha.pam")
    compare("alpha.pam", "$PXB convert alpha.pam - --type pam", "cat alpha.pam")
    grey = "<(pamchannel -infile grey.pam 0)"
    compare("grey.pam", "$PXB convert grey.pam - --type pam",
            f"pamstack -tupletype=RGB_ALPHA {grey} {grey} grey.pam")


def jpegs():
    for options in ("", "-progressive", "-sample=1x1", "-grayscale", "-restart=2 -sample=2x1"):
        name = "card" + options.replace(" ", "") + ".jpg"
        run(f"pnmtojpeg {options} card.ppm >{name}")
        compare(name, f"$PXB convert {name} - --type pnm", f"jpegtopnm {name}")
    run("$PXB convert card.ppm ours.jpg --quality 100")
    compare("ours.jpg", "$PXB convert ours.jpg - --type ppm", "jpegtopnm ours.jpg")


def videos():
    samples = random.Random(7).randbytes(3 * WIDTH * HEIGHT)
    with open("planes.y4m", "wb") as file:
        file.write(b"YUV4MPEG2 W%d H%d C444\nFRAME\n" % (WIDTH, HEIGHT) + samples)
    planes = zip(*(samples[i * WIDTH * HEIGHT:][:WIDTH * HEIGHT] for i in range(3)))
    if run("$PXB convert planes.y4m - --type raw") != b"".join(b"\xff" + bytes(p) for p in planes):
        failures.append("planes.y4m")


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    run(f"$PXB testcard card.ppm --size {WIDTH}x{HEIGHT}")
    bitmaps()
    netpbm()
    if b"JPEG" in run("$PXB --help"):
        jpegs()
    videos()
    os.chdir("/")
print("\n".join(failures))
sys.exit(bool(failures))
