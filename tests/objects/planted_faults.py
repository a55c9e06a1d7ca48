"""usage: planted_faults.py --nm NM --objdump OBJDUMP --bits 32|64 --exports exports.def
                         --header PxbLib.h --sources FOLDER --windows 0|1 --product PRODUCT
                         --import-libraries [LIBRARY...] -- COMPILER FLAG...

Compiles small sources, each with one fault that the checks in this folder are there to find, and
expects the check to fail and to name the culprit."""
import argparse
import subprocess
import sys
import tempfile
from pathlib import Path

from binary import option_parser

HERE = Path(__file__).parent
FLAGS = {"mmx": ["-mmmx"], "sse2": ["-msse2"], "avx2": ["-mavx2"], "avx512": ["-mavx512bw"]}

# Instruction set of the object, namespace of the code, instruction, what the check must say of it.
INSTRUCTIONS = [
    ("baseline", "plain", "vpxor %ymm0,%ymm0,%ymm0", "register %ymm in baseline"),
    ("sse2", "sse2", "vpxor %ymm0,%ymm0,%ymm0", "register %ymm in sse2"),
    ("sse2", "sse2", "vpxor %xmm0,%xmm0,%xmm0", "AVX instruction in sse2"),
    ("sse2", "sse2", "pshufb %xmm1,%xmm0", "instruction beyond sse2"),
    ("sse2", "sse2", "paddb %mm1,%mm0", "register %mm in sse2"),
    ("avx2", "avx2", "vpaddb %ymm1,%ymm2,%ymm3", "and no vzeroupper"),
    ("avx512", "avx512", "vpaddb %zmm1,%zmm2,%zmm3", "and no vzeroupper"),
    ("sse2", "sse2", "movntdq %xmm0,(%esp)", "and no sfence"),
    ("mmx", "mmx", "paddb %mm1,%mm0", "and no emms"),
    ("avx2", "avx2", "vpxord %zmm0,%zmm0,%zmm0", "register %zmm in avx2"),
    ("avx2", "avx2", "vfmadd231ps %ymm0,%ymm1,%ymm2", "instruction beyond avx2"),
    ("avx512", "avx512", "vpmullq %zmm0,%zmm1,%zmm2", "instruction beyond avx512"),
]
INSTRUCTIONS_32 = [
    ("baseline", "plain", "pxor %xmm0,%xmm0", "register %xmm in baseline"),
    ("pairwise", "pairwise", "pxor %mm0,%mm0", "register %mm in baseline"),
    ("mmx", "mmx", "pxor %xmm0,%xmm0", "register %xmm in mmx"),
    ("mmx", "mmx", "pavgb %mm1,%mm0", "instruction beyond mmx"),
]
# Instruction set of the object, source, complaint.
SYMBOLS = [
    ("avx2", """inline __attribute__((noinline)) int Twice(int x) { return 2 * x; }
                namespace pxb::avx2 { int Use(int x) { return Twice(x); } }""",
     "_Z5Twicei: weak"),
    ("sse2", """template <class T> struct Table { static int size; };
                template <class T> int Table<T>::size = 1;
                namespace pxb::sse2 { int Use() { return Table<char>::size; } }""",
     "_ZN5TableIcE4sizeE: weak"),
    ("avx2", "namespace pxb { int Stray() { return 1; } }",
     "_ZN3pxb5StrayEv: global symbol outside pxb::avx2"),
    ("mmx", "int Chance(); namespace pxb::mmx { int size = Chance(); }",
     "code that runs at load time"),
]


def function(namespace: str, instruction: str) -> str:
    return f'namespace pxb::{namespace} {{ void F() {{ asm volatile("{instruction}"); }} }}'


# Source, flags, complaint.
LIBRARIES = [
    ("", [], "PxbNew: missing from the exports"),
    ('extern "C" EXPORT void PxbExtra() {}', [], "PxbExtra: should not be in the exports"),
    (function("sse2", "vpxor %ymm0,%ymm0,%ymm0"), [], "_ZN3pxb4sse21FEv: vpxor"),
    (function("plain", "vpxor %ymm0,%ymm0,%ymm0"), [], "_ZN3pxb5plain1FEv: vpxor"),
    (function("mmx", "nop"), [], "_ZN3pxb3mmx1FEv: no call can choose"),
    ("namespace pxb { int count; int Count() { return ++count; } }", [],
     "_ZN3pxb5countE: should not be in the writable data"),
    ("namespace pxb { int Count() { static int pxb = 5; return ++pxb; } }", [],
     "_ZZN3pxb5CountEvE3pxb: should not be in the writable data"),
    ("", [], "_ZN3pxb11KernelTableE: missing from the writable data"),
    ("", ["-s"], "is the symbol table gone?"),
]
LIBRARIES_LINUX = [
    ("", ["-Wl,--no-as-needed", "-lstdc++"], "libstdc++.so.6: the library must not need it"),
    ("namespace { int count; } int Count() { return ++count; }", [],
     "_ZN12_GLOBAL__N_15countE: should not be in the writable data"),
]
LIBRARIES_WINDOWS = [
    ('extern "C" __stdcall int MessageBeep(unsigned);'
     'extern "C" EXPORT int F() { return MessageBeep(0); }', ["-luser32"],
     "USER32.dll: the library must not need it"),
    ('extern "C" EXPORT __stdcall int PxbDelete(void*) { return 0; }', [],
     "PxbDelete@4: should not be in the exports"),
    ("", ["-Wl,--no-seh"], "NO_SEH:"),
]


def outcomes(options: argparse.Namespace, folder: Path):
    """Pairs of what was expected and what the check gave."""
    def compiled(source: str, output: str, *flags: str) -> str:
        (folder / "fault.cpp").write_text(source + "\n")
        export = "__declspec(dllexport)" if options.windows else ""
        subprocess.run([*options.compiler, "-std=c++20", "-O2", f"-DEXPORT={export}",
                        str(folder / "fault.cpp"), "-o", str(folder / output), *flags], check=True)
        return str(folder / output)

    def checked(script: str, *arguments: str) -> subprocess.CompletedProcess:
        tools = ["--nm", options.nm, "--objdump", options.objdump, "--bits", str(options.bits)]
        return subprocess.run([sys.executable, "-B", str(HERE / script), *tools, *arguments],
                              text=True, capture_output=True)

    def checked_library(exports: str, *libraries: str) -> subprocess.CompletedProcess:
        return checked("check_product.py", "--exports", exports, "--header", options.header,
                       "--sources", options.sources, *libraries)

    kernels = list(SYMBOLS)
    for instruction_set, namespace, instruction, complaint in INSTRUCTIONS + (
            INSTRUCTIONS_32 if options.bits == 32 else []):
        kernels.append((instruction_set, function(namespace, instruction),
                        f"_ZN3pxb{len(namespace)}{namespace}1FEv: {instruction}: {complaint}"))
    for instruction_set, source, complaint in kernels:
        flags = FLAGS.get(instruction_set, [])
        yield complaint, checked("check_kernels.py", instruction_set,
                                 compiled(source, "fault.o", "-c", *flags))
    for source, flags, complaint in LIBRARIES + (
            LIBRARIES_WINDOWS if options.windows else LIBRARIES_LINUX):
        library = compiled(source, "fault.so", "-shared", "-fPIC", *flags)
        yield complaint, checked_library(options.exports, library)

    hidden = compiled('extern "C" int PxbResize() { return 0; }', "fault.o", "-c")
    shorter = folder / "shorter.def"
    shorter.write_text(Path(options.exports).read_text().replace("    PxbResize\n", ""))
    yield "PxbResize: exists and is declared, but not exported", checked_library(
        str(shorter), "--objects", hidden, "--", options.product)

    longer = folder / "exports.def"
    longer.write_text(Path(options.exports).read_text() + "    PxbExtra\n")
    result = checked_library(str(longer), options.product, *options.import_libraries)
    yield "PxbExtra: missing from the exports", result
    yield "PxbExtra: exported but not declared", result
    for path in options.import_libraries:
        yield f"PxbExtra: missing from {Path(path).name}", result


def main() -> int:
    parser = option_parser("--exports", "--header", "--sources", "--product")
    parser.add_argument("--windows", type=int, required=True)
    parser.add_argument("--import-libraries", nargs="*", default=[])
    parser.add_argument("compiler", nargs="+")
    options = parser.parse_args()
    missed = found = 0
    with tempfile.TemporaryDirectory() as folder:
        for expected, result in outcomes(options, Path(folder)):
            if result.returncode == 1 and expected in result.stdout:
                found += 1
            else:
                missed += 1
                print(f"expected a complaint '{expected}', got exit status {result.returncode}:\n"
                      f"{result.stdout}{result.stderr}")
    print(f"{found} planted faults found, {missed} missed")
    return missed != 0


if __name__ == "__main__":
    sys.exit(main())
