#!/usr/bin/python3 -B
"""usage: mutate.py [FILE...] [--count N] [--seed N] [--from N]

Plants one fault at a time, each in a single line of the library, and tells which of them no test
finds: constants off by one, operators and comparisons exchanged, steps left out. Without FILE the
lines of all of the library may be hit. The same seed chooses the same faults as long as the sources
stay the same; --from begins at a later one of them.

All work is done in a copy in build/mutate, so the sources are safe, also from an interruption.
Faults that change nothing callers could see are in tools/equivalent_faults.txt, each as it is
printed here, with " -- " and the reason; they are not planted.
"""
import argparse
import collections
import os
import random
import re
import resource
import shutil
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
WORK = ROOT / "build/mutate"
COPY, BUILD, CLEAN = WORK / "source", WORK / "build", WORK / "clean"
COMPLETE = WORK / "complete"  # exists while CLEAN is what a build without a fault left
EQUIVALENT = ROOT / "tools/equivalent_faults.txt"
FOLDERS = ("core", "convert", "scale", "transform", "blend")
SLOW = "*AllColors:*EveryValue:LargeImages*"
# Quickest first: the name, what to build, the program and its arguments, and the folders in which it
# may find what those before it have not.
SUITES = (
    ("manifest", "manifest_test",
     ["tests/manifest/manifest_test", COPY / "tests/manifest/manifest.txt"], FOLDERS),
    ("tests", "pxb_tests",
     ["tests/pxb_tests", "--gtest_fail_fast", f"--gtest_filter=-{SLOW}"], FOLDERS),
    ("sweeps", "pxb_tests",
     ["tests/pxb_tests", "--gtest_fail_fast", f"--gtest_filter={SLOW}"], ("core", "convert", "blend")),
    ("processors", "processors_test",
     ["tests/processors/processors_test", "sse2"], ("core", "convert")),
)
LONGEST_RUN = 180  # seconds; what takes longer does not end
MEMORY = 8 << 30

EXCHANGED = {
    " + ": " - ", " - ": " + ", " * ": " + ", " / ": " * ", " % ": " / ", " << ": " >> ",
    " >> ": " << ", " & ": " | ", " | ": " & ", " && ": " || ", " || ": " && ", " < ": " <= ",
    " <= ": " < ", " > ": " >= ", " >= ": " > ", " == ": " != ", " != ": " == ", " += ": " -= ",
    " -= ": " += ", "++": "--", "--": "++",
}
OPERATOR = re.compile("|".join(re.escape(text) for text in sorted(EXCHANGED, key=len, reverse=True)))
NUMBER = re.compile(r"(?<![\w.\"'])(0x[0-9A-Fa-f]+|\d+)(?![\w.\"'])")
STEP = re.compile(r"\s+(?!return|using|const|auto|static|break|continue|default|else|if|for|while)"
                  r"[\w:.\->\[\]()*+]+(\(.*\)| [-+|&^*/<>]*= .*|\+\+)?;$")
NO_CODE = re.compile(r"\s*(//|#|static_assert|using |namespace|template|extern|\}|$)")

Fault = collections.namedtuple("Fault", "file number before after")


def runs_avx512():
    flags = set(Path("/proc/cpuinfo").read_text().split())
    return {"avx512vl", "avx512bw", "avx512_vbmi", "avx512_vnni"} <= flags


def avx512_lines(path):
    """Numbers, from 1 on, of the lines that are compiled for AVX-512 alone."""
    inside, numbers = path.name == "avx512.h", set()
    for number, line in enumerate((ROOT / path).read_text().splitlines(), 1):
        if line.startswith(("#if", "#el", "#endif")) and path.name != "avx512.h":
            inside = line.endswith(" defined(PXB_TARGET_AVX512)") and "||" not in line
        if inside:
            numbers.add(number)
    return numbers


def faults_of(path):
    """Every fault of one file; what does not compile is dropped later."""
    faults = []
    left_out = set() if runs_avx512() else avx512_lines(path)
    for number, line in enumerate((COPY / path).read_text().splitlines()):
        code = line.split("//")[0].rstrip()
        if NO_CODE.match(line) or '"' in code or code.endswith("\\") or number + 1 in left_out:
            continue
        def add(start, end, text):
            faults.append(Fault(path, number, line.strip(), code[:start] + text + code[end:]))
        for match in NUMBER.finditer(code):
            value = int(match[1], 0)
            add(*match.span(1), str(value + 1))
            if value > 0:
                add(*match.span(1), str(value - 1))
        for match in OPERATOR.finditer(code):
            add(*match.span(), EXCHANGED[match[0]])
        if STEP.match(code):
            add(len(code) - len(code.lstrip()), len(code), ";")
    return faults


def shown(fault):
    return f"{fault.file}: {fault.before}  ->  {fault.after.strip()}"


def copied_text(path):
    text = (ROOT / path).read_bytes()
    if path.name == "PxbSimd.cmake" and not runs_avx512():  # then it costs only time to compile
        upper = b"    string(TOUPPER ${simd} upper)\n"
        assert upper in text
        text = text.replace(upper, upper + b"    if(simd STREQUAL avx512)\n        set(upper SSE2)\n"
                                           b"        set(PXB_SIMD_FLAGS_avx512)\n    endif()\n")
    return text


def update_copy():
    """Rewrites only what differs, so that little is compiled again; whether anything did."""
    changed = False
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout.split("\n")
    wanted = {Path(name) for name in listed if name and (ROOT / name).is_file()}
    for path in [p.relative_to(COPY) for p in COPY.rglob("*") if p.is_file()]:
        if path not in wanted:
            (COPY / path).unlink()
            changed = True
    for path in wanted:
        text, copy = copied_text(path), COPY / path
        if not copy.exists() or copy.read_bytes() != text:
            copy.parent.mkdir(parents=True, exist_ok=True)
            copy.write_bytes(text)
            shutil.copymode(ROOT / path, copy)
            changed = True
    return changed


def sync(source, target):
    """Makes files of one tree those of another, times included: builds go on from there."""
    wanted = {p.relative_to(source): p.stat() for p in source.rglob("*") if p.is_file()}
    for path in [p.relative_to(target) for p in target.rglob("*") if p.is_file()]:
        if path not in wanted:
            (target / path).unlink()
    for path, stat in wanted.items():
        copy = target / path
        if copy.exists() and copy.stat().st_mtime_ns == stat.st_mtime_ns:
            continue
        copy.parent.mkdir(parents=True, exist_ok=True)
        shutil.copy2(source / path, copy)


def build(target, **options):
    return subprocess.run(["ninja", "-j", str(os.cpu_count()), "-C", BUILD, target],
                          stdout=subprocess.DEVNULL, **options).returncode == 0


def limit_memory():
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))


def passes(command):
    try:
        return subprocess.run([BUILD / command[0], *command[1:]], preexec_fn=limit_memory,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                              timeout=LONGEST_RUN).returncode == 0
    except subprocess.TimeoutExpired:
        return False


def prepare():
    COPY.mkdir(parents=True, exist_ok=True)
    complete = COMPLETE.exists()
    if complete:  # an interrupted run may have left objects with a fault
        sync(CLEAN, BUILD)
    COMPLETE.unlink(missing_ok=True)
    if not update_copy() and complete:
        return COMPLETE.touch()
    # Little optimisation: more time goes into compiling than into running.
    subprocess.run(["cmake", "-S", COPY, "-B", BUILD, "-G", "Ninja", "--log-level=WARNING",
                    "-DCMAKE_BUILD_TYPE=Release", "-DCMAKE_CXX_FLAGS_RELEASE=-O1 -DNDEBUG"],
                   check=True, stdout=subprocess.DEVNULL)
    for name, target, command, _ in SUITES:
        if not build(target):
            sys.exit(f"mutate: {target} does not build")
        if not passes(command):
            sys.exit(f"mutate: {name} does not pass without a fault")
    CLEAN.mkdir(exist_ok=True)
    sync(BUILD, CLEAN)
    COMPLETE.touch()


def finder_of(fault):
    """The name of the suite that finds it; None: nothing does; "compiler": it is no fault, or in a
    line that this build leaves out."""
    path = COPY / fault.file
    text, stat = path.read_text(), path.stat()
    lines = text.splitlines()
    suites = [suite for suite in SUITES if fault.file.parts[0] in suite[3]]

    def plant(line):
        lines[fault.number] = line
        path.write_text("\n".join(lines) + "\n")

    def builds(target):
        return build(target, stderr=subprocess.DEVNULL)

    try:
        plant(fault.after)
        for name, target, command, _ in suites:
            if not builds(target):
                return "compiler"
            if not passes(command):
                return name
        plant("#error")
        return "compiler" if all(builds(target) for _, target, _, _ in suites) else None
    finally:
        path.write_text(text)
        os.utime(path, ns=(stat.st_atime_ns, stat.st_mtime_ns))
        sync(CLEAN, BUILD)


def main():
    parser = argparse.ArgumentParser(usage=__doc__.split("\n")[0][7:])
    parser.add_argument("files", nargs="*", type=Path)
    parser.add_argument("--count", type=int, default=100)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--from", type=int, default=0, dest="first")
    options = parser.parse_args()
    files = [file.resolve().relative_to(ROOT) for file in options.files] or [
        path.relative_to(ROOT) for folder in FOLDERS for path in sorted((ROOT / folder).rglob("*"))
        if path.suffix in (".h", ".cpp")]
    prepare()
    equivalent = {line.rsplit(" -- ", 1)[0] for line in EQUIVALENT.read_text().splitlines()}
    faults = [fault for file in files for fault in faults_of(file)]
    random.Random(options.seed).shuffle(faults)
    found, survivors, tried = collections.Counter(), [], 0
    try:
        for number, fault in enumerate(faults):
            if number < options.first or shown(fault) in equivalent:
                continue
            if tried == options.count:
                break
            begin = time.monotonic()
            finder = finder_of(fault)
            if finder == "compiler":
                continue
            tried += 1
            found[finder] += 1
            if not finder:
                survivors.append(fault)
            print(f"{tried}/{options.count} (fault {number}, {time.monotonic() - begin:.0f} s) "
                  f"{finder or 'SURVIVES'}: {fault.file}:{fault.number + 1}: {fault.before}"
                  f"  ->  {fault.after.strip()}", flush=True)
    except KeyboardInterrupt:
        print("interrupted")
    by_suite = ", ".join(f"{name} {found[name]}" for name, *_ in SUITES)
    print(f"{tried} faults of {len(faults)} that could be planted: {tried - len(survivors)} found "
          f"({100 * (tried - len(survivors)) / max(tried, 1):.0f} %): {by_suite}")
    for fault in survivors:
        print("survivor:", shown(fault))


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        sys.exit("interrupted")
