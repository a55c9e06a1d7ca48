"""What binutils say about an object file or a library. Names are mangled C++ names, without the
underscore that 32-bit Windows puts before every name of C."""
import argparse
import re
import subprocess
from typing import Iterator, NamedTuple


class Symbol(NamedTuple):
    name: str
    kind: str  # nm's letter: upper case is global; W, V and u are weak or unique
    section: str


class Instruction(NamedTuple):
    function: str
    mnemonic: str
    operands: str


class Binary:
    def __init__(self, path: str, nm: str, objdump: str):
        self.path, self._nm, self._objdump = path, nm, objdump
        self.is_windows = re.search("file format pei?-i386", self._run(objdump, "-f")) is not None

    def _run(self, *command: str) -> str:
        return subprocess.run([*command, self.path], check=True, text=True, capture_output=True,
                              env={"PATH": "/usr/bin:/bin", "LC_ALL": "C"}).stdout

    def _plain(self, name: str) -> str:
        return name.removeprefix("_") if self.is_windows else name

    def symbols(self) -> Iterator[Symbol]:
        """Defined symbols, without those that stand for a section."""
        for line in self._run(self._nm, "--format=sysv", "--defined-only").splitlines():
            cells = [cell.strip() for cell in line.split("|")]
            if len(cells) == 7 and cells[0].partition("$")[0] != cells[6]:
                yield Symbol(self._plain(cells[0]), cells[2], cells[6])

    def comdats(self) -> set[str]:
        """Sections of which the linker keeps one of each name."""
        return set(re.findall(r"^ *\d+ (\S+) .*LINK_ONCE", self._run(self._objdump, "-wh"), re.M))

    def sections(self) -> list[str]:
        return re.findall(r"^ *\d+ (\S+) +[0-9a-f]{8}", self._run(self._objdump, "-h"), re.M)

    def instructions(self) -> Iterator[Instruction]:
        function = ""
        prefixes = "(?:(?:repz?|repnz|lock|data16|bnd|notrack|[c-g]s) )*"
        for line in self._run(self._objdump, "-d", "--no-show-raw-insn").splitlines():
            if label := re.match(r"[0-9a-f]+ <(.*)>:$", line):
                function = self._plain(label[1])
            elif code := re.match(rf" *[0-9a-f]+:\t{prefixes}(\S+) *(.*)", line):
                yield Instruction(function, code[1], code[2])

    def headers(self) -> str:
        return self._run(self._objdump, "-p")

    def exports(self) -> set[str]:
        if self.is_windows:
            names = self.headers().partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
            return set(re.findall(r"^\t\[ *\d+\] (\S+)$", names, re.M))
        return set(re.findall(r"\S+$", self._run(self._nm, "-D", "--defined-only"), re.M))

    def needed(self) -> set[str]:
        """The libraries that the loader will look for."""
        return set(re.findall(r"(?:DLL Name:|NEEDED) +(\S+)", self.headers()))

    def offers(self) -> set[str]:
        """The names that an import library offers to a linker."""
        return set(re.findall(r" I __imp__(\S+)$", self._run(self._nm), re.M))


def option_parser(*more: str) -> argparse.ArgumentParser:
    """Of what every check needs, and of options of its own."""
    parser = argparse.ArgumentParser()
    for option in ("--nm", "--objdump", *more):
        parser.add_argument(option, required=True)
    parser.add_argument("--bits", type=int, required=True)
    return parser
