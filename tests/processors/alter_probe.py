"""usage: alter_probe.py OBJDUMP fault|no-sse2 LIBRARY PROGRAM FOLDER

Copies a library and a program that uses it into FOLDER, and alters the copied library's question
about the processor:
    fault    every CPUID instruction becomes an illegal one
    no-sse2  the mask of the features that it asks for loses SSE2"""
import re
import shutil
import subprocess
import sys
from pathlib import Path

ALTERATIONS = {  # text of the instruction, its last bytes before, and after
    "fault": (r"cpuid\s*$", bytes.fromhex("0fa2"), bytes.fromhex("0f0b")),
    "no-sse2": (r"\$0x17808010\b", bytes.fromhex("10808017"), bytes.fromhex("10808013")),
}


def run(*command: str) -> str:
    return subprocess.run(command, check=True, text=True, capture_output=True).stdout


def ends_of_instructions(objdump: str, library: Path, text: str) -> list[int]:
    """Places in the file just behind each instruction with that text."""
    rows = re.findall(r"^ *\d+ \S+ +([0-9a-f]+) +([0-9a-f]+) +[0-9a-f]+ +([0-9a-f]+) ",
                      run(objdump, "-h", str(library)), re.M)
    sections = [[int(cell, 16) for cell in row] for row in rows]
    ends = []
    for address, code, instruction in re.findall(r"^ *([0-9a-f]+):\t([0-9a-f ]+)\t(.*)$",
                                                 run(objdump, "-dw", str(library)), re.M):
        if re.search(text, instruction):
            end = int(address, 16) + len(bytes.fromhex(code))
            ends += [place + end - start for size, start, place in sections
                     if 0 < start < end <= start + size]
    return ends


def main() -> int:
    objdump, alteration, library, program, folder = sys.argv[1:]
    text, before, after = ALTERATIONS[alteration]
    content = bytearray(Path(library).read_bytes())
    ends = ends_of_instructions(objdump, Path(library), text)
    if not ends:
        sys.exit(f"{library}: no instruction '{text}'")
    for end in ends:
        if content[end - len(before):end] != before:
            sys.exit(f"{library}: the bytes before {end:#x} are not {before.hex()}")
        content[end - len(before):end] = after

    Path(folder).mkdir(exist_ok=True)
    copy = Path(shutil.copy2(library, folder))
    copy.write_bytes(content)
    if ends_of_instructions(objdump, copy, text):
        sys.exit(f"{copy}: not all of {len(ends)} places were altered")
    shutil.copy2(program, folder)
    print(f"{copy}: {len(ends)} places altered")
    return 0


if __name__ == "__main__":
    sys.exit(main())
