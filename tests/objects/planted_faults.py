"""usage: planted_faults.py --nm NM --objdump OBJDUMP --bits 32|64 --exports exports.def
                         --header PxbLib.h --windows 0|1 --library LIBRARY
                         --import-libraries [LIBRARY...] -- COMPILER FLAG...

Compiles small sources, each with one fault that the checks in this folder are there to find, and
expects the check to fail and to name the culprit."""
import argparse
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import NamedTuple

HERE = Path(__file__).parent
FLAGS = {"baseline": [], "mmx": ["-mmmx"], "sse2": ["-msse2"], "avx2": ["-mavx2"]}


class KernelFault(NamedTuple):
    instruction_set: str
    source: str
    complaint: str  # what the check must say, besides failing


class LibraryFault(NamedTuple):
    source: str
    flags: list[str]
    complaint: str


def function_with(name: str, instruction: str, namespace: str) -> str:
    return f'namespace pxb::{namespace} {{ void {name}() {{ asm volatile("{instruction}"); }} }}'


KERNEL_FAULTS = [
    KernelFault("avx2", """inline __attribute__((noinline)) int Twice(int x) { return 2 * x; }
                           namespace pxb::avx2 { int Use(int x) { return Twice(x); } }""",
                "_Z5Twicei: weak"),
    KernelFault("sse2", """template <class T> struct Table { static int size; };
                           template <class T> int Table<T>::size = 1;
                           namespace pxb::sse2 { int Use() { return Table<char>::size; } }""",
                "_ZN5TableIcE4sizeE: weak"),
    KernelFault("avx2", "namespace pxb { int Stray() { return 1; } }",
                "_ZN3pxb5StrayEv: global symbol outside pxb::avx2"),
    KernelFault("mmx", "int Chance(); namespace pxb::mmx { int size = Chance(); }",
                "code that runs at load time"),
    KernelFault("baseline", function_with("F", "vpxor %ymm0, %ymm0, %ymm0", "plain"),
                "_ZN3pxb5plain1FEv: vpxor %ymm0,%ymm0,%ymm0: register %ymm in baseline"),
    KernelFault("sse2", function_with("F", "vpxor %ymm0, %ymm0, %ymm0", "sse2"),
                "_ZN3pxb4sse21FEv: vpxor %ymm0,%ymm0,%ymm0: register %ymm in sse2"),
    KernelFault("sse2", function_with("F", "vpxor %xmm0, %xmm0, %xmm0", "sse2"),
                "_ZN3pxb4sse21FEv: vpxor %xmm0,%xmm0,%xmm0: AVX instruction in sse2"),
    KernelFault("sse2", function_with("F", "pshufb %xmm1, %xmm0", "sse2"),
                "_ZN3pxb4sse21FEv: pshufb %xmm1,%xmm0: instruction beyond sse2"),
    KernelFault("sse2", function_with("F", "paddb %mm1, %mm0", "sse2"),
                "_ZN3pxb4sse21FEv: paddb %mm1,%mm0: register %mm in sse2"),
    KernelFault("avx2", function_with("F", "vpxord %zmm0, %zmm0, %zmm0", "avx2"),
                "_ZN3pxb4avx21FEv: vpxord %zmm0,%zmm0,%zmm0: register %zmm in avx2"),
    KernelFault("avx2", function_with("F", "vfmadd231ps %ymm0, %ymm1, %ymm2", "avx2"),
                "_ZN3pxb4avx21FEv: vfmadd231ps %ymm0,%ymm1,%ymm2: instruction beyond avx2"),
]
KERNEL_FAULTS_32 = [
    KernelFault("baseline", function_with("F", "pxor %xmm0, %xmm0", "plain"),
                "_ZN3pxb5plain1FEv: pxor %xmm0,%xmm0: register %xmm in baseline"),
    KernelFault("pairwise", function_with("F", "pxor %mm0, %mm0", "pairwise"),
                "_ZN3pxb8pairwise1FEv: pxor %mm0,%mm0: register %mm in baseline"),
    KernelFault("mmx", function_with("F", "pxor %xmm0, %xmm0", "mmx"),
                "_ZN3pxb3mmx1FEv: pxor %xmm0,%xmm0: register %xmm in mmx"),
    KernelFault("mmx", function_with("F", "pavgb %mm1, %mm0", "mmx"),
                "_ZN3pxb3mmx1FEv: pavgb %mm1,%mm0: instruction beyond mmx"),
]
LIBRARY_FAULTS = [
    LibraryFault("", [], "PxbNew: missing from the exports"),
    LibraryFault('extern "C" EXPORT void PxbExtra() {}', [],
                 "PxbExtra: should not be in the exports"),
    LibraryFault(function_with("F", "vpxor %ymm0, %ymm0, %ymm0", "sse2"), [],
                 "_ZN3pxb4sse21FEv: vpxor"),
    LibraryFault(function_with("F", "vpxor %ymm0, %ymm0, %ymm0", "plain"), [],
                 "_ZN3pxb5plain1FEv: vpxor"),
    LibraryFault("", ["-s"], "is the symbol table gone?"),
]
LIBRARY_FAULTS_LINUX = [
    LibraryFault("", ["-Wl,--no-as-needed", "-lstdc++"],
                 "libstdc++.so.6: the library must not need it"),
]
LIBRARY_FAULTS_WINDOWS = [
    LibraryFault('extern "C" __stdcall int MessageBeep(unsigned);'
                 'extern "C" EXPORT int F() { return MessageBeep(0); }', ["-luser32"],
                 "USER32.dll: the library must not need it"),
    LibraryFault('extern "C" EXPORT __stdcall int PxbDelete(void*) { return 0; }', [],
                 "PxbDelete@4: should not be in the exports"),
    LibraryFault("", ["-Wl,--no-seh"], "NO_SEH:"),
]


class Bench:
    """Compiles into a scratch folder and runs the checks on the result."""

    def __init__(self, options: argparse.Namespace, folder: str):
        self.options, self.folder = options, Path(folder)
        self.tools = ["--nm", options.nm, "--objdump", options.objdump, "--bits", options.bits]

    def compile(self, source: str, output: str, *flags: str) -> str:
        path = self.folder / "fault.cpp"
        path.write_text(source + "\n")
        export = "__declspec(dllexport)" if self.options.windows else ""
        subprocess.run([*self.options.compiler, "-std=c++20", "-O2", f"-DEXPORT={export}",
                        str(path), "-o", str(self.folder / output), *flags], check=True)
        return str(self.folder / output)

    def check(self, script: str, *arguments: str) -> subprocess.CompletedProcess:
        return subprocess.run([sys.executable, "-B", str(HERE / script), *self.tools, *arguments],
                              text=True, capture_output=True)

    def check_kernel(self, fault: KernelFault) -> subprocess.CompletedProcess:
        flags = FLAGS.get(fault.instruction_set, [])
        return self.check("check_kernels.py", fault.instruction_set,
                          self.compile(fault.source, "fault.o", "-c", *flags))

    def check_library(self, *libraries: str, exports: str = "") -> subprocess.CompletedProcess:
        return self.check("check_product.py", "--exports", exports or self.options.exports,
                          "--header", self.options.header, *libraries)


def outcomes(bench: Bench):
    """Pairs of what was expected and what the check gave."""
    options = bench.options
    for fault in KERNEL_FAULTS + (KERNEL_FAULTS_32 if options.bits == "32" else []):
        yield fault.complaint, bench.check_kernel(fault)
    only_here = LIBRARY_FAULTS_WINDOWS if options.windows else LIBRARY_FAULTS_LINUX
    for fault in LIBRARY_FAULTS + only_here:
        library = bench.compile(fault.source, "fault.so", "-shared", "-fPIC", *fault.flags)
        yield fault.complaint, bench.check_library(library)

    longer = bench.folder / "exports.def"
    longer.write_text(Path(options.exports).read_text() + "    PxbExtra\n")
    checked = bench.check_library(options.library, *options.import_libraries, exports=str(longer))
    yield "PxbExtra: missing from the exports", checked
    yield "PxbExtra: exported but not declared", checked
    for path in options.import_libraries:
        yield f"PxbExtra: missing from {Path(path).name}", checked


def main() -> int:
    parser = argparse.ArgumentParser()
    for option in ("--nm", "--objdump", "--bits", "--exports", "--header", "--library"):
        parser.add_argument(option, required=True)
    parser.add_argument("--windows", type=int, required=True)
    parser.add_argument("--import-libraries", nargs="*", default=[])
    parser.add_argument("compiler", nargs="+")
    with tempfile.TemporaryDirectory() as folder:
        missed = found = 0
        for expected, checked in outcomes(Bench(parser.parse_args(), folder)):
            if checked.returncode == 1 and expected in checked.stdout:
                found += 1
            else:
                missed += 1
                print(f"expected a complaint '{expected}', got exit status {checked.returncode}:\n"
                      f"{checked.stdout}{checked.stderr}")
    print(f"{found} planted faults found, {missed} missed")
    return missed != 0


if __name__ == "__main__":
    sys.exit(main())
