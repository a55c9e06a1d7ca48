"""usage: check_product.py --nm NM --objdump OBJDUMP --bits 32|64 --exports exports.def
                        --header PxbLib.h --sources FOLDER --objects OBJECT... --
                        PRODUCT [IMPORT_LIBRARY...]

The linked library: every function keeps to the registers of its namespace, linked-in run-time
libraries included; it holds no kernel that no call can choose; exactly the listed names leave it,
undecorated and declared in the header, and every declared function is among them that the objects
hold; nothing in it can change while it runs but what is known to; it needs nothing but the system's
own libraries; its import libraries offer the same names."""
import re
import sys
from pathlib import Path
from typing import Iterator

from binary import Binary, option_parser
from registers import complaint, namespace_of

WIDE = {"mmx", "sse2", "avx2", "avx512"}
SYSTEM_LIBRARIES = r"(?i:kernel32|msvcrt)\.dll|lib[cm]\.so\.6|ld-linux(-x86-64)?\.so\.2"

# All of our own that is neither code nor constant. Only load-time code writes it, so that threads may
# share the library.
WRITABLE = {
    "_ZN3pxb11KernelTableE",
    "_ZN3pxb12_GLOBAL__N_19processorE",
}
WRITABLE_LINUX = {  # while a call is guarded: the signal handlers that were there
    "_ZN12_GLOBAL__N_18recoveryE",
    "_ZN12_GLOBAL__N_114guarded_threadE",
    "_ZN12_GLOBAL__N_112previous_illE",
    "_ZN12_GLOBAL__N_113previous_segvE",
}
# Linked-in run-time libraries have their own. On Windows they are too many to list, so that only names
# with "pxb" are looked at there.
RUNTIME_LINUX = (r"DW\.ref\..*|_ZN10__cxxabiv1.*|_ZZ?N9__gnu_cxx.*|__TMC_END__|__dso_handle"
                 r"|_ZZ?N12_GLOBAL__N_1(13__new_handlerE|14emergency_poolE|10get_globalEvE6global)"
                 r"|completed\.\d+|(any_objects_registered|dwarf_reg_size_table|marker|object_mutex"
                 r"|once_regsizes|(un)?seen_objects)(\.\d+)?")


def register_faults(library: Binary, bits: int) -> Iterator[str]:
    seen = set()
    for code in library.instructions():
        namespace = namespace_of(code.function)
        instruction_set = namespace if namespace in WIDE else "baseline"
        seen.add(instruction_set)
        if fault := complaint(code, instruction_set, bits):
            yield fault
    if missing := WIDE - seen:
        yield f"no functions of {', '.join(sorted(missing))} seen: is the symbol table gone?"


def unreachable_kernels(library: Binary, sources: Path) -> Iterator[str]:
    """Of the two instruction sets that kernels are compiled for without all being wanted."""
    text = "".join(path.read_text() for path in sources.glob("*/*.[hc]*"))
    wanted = {"mmx": set(re.findall(r"PXB_VARIANTS_FROM_MMX\((\w+)\)", text)),
              "pairwise": set(re.findall(r"\bpairwise::(\w+)", text))}
    for symbol in library.symbols():
        kernel = re.match(r"_ZN3pxb\d(mmx|pairwise)\d+([A-Z][A-Za-z0-9]*?)E", symbol.name)
        if kernel and kernel[2] not in wanted[kernel[1]]:
            yield f"{symbol.name}: no call can choose this kernel"


def differences(wanted: set[str], found: set[str], where: str) -> Iterator[str]:
    for name in sorted(wanted - found):
        yield f"{name}: missing from {where}"
    for name in sorted(found - wanted):
        yield f"{name}: should not be in {where}"


def writable_faults(library: Binary) -> Iterator[str]:
    writable = {symbol.name for symbol in library.symbols()
                if symbol.section in (".data", ".bss", ".tdata", ".tbss", ".tls")}
    if library.is_windows:
        known = WRITABLE
        found = {name for name in writable if re.search("pxb", name, re.I)}
    else:
        known = WRITABLE | WRITABLE_LINUX
        found = {name for name in writable if not re.fullmatch(RUNTIME_LINUX, name)}
    yield from differences(known, found, "the writable data")


def hidden_functions(objects: list[Binary], listed: set[str], declared: set[str]) -> Iterator[str]:
    defined = {symbol.name for binary in objects for symbol in binary.symbols()}
    for name in sorted((declared - listed) & {name.partition("@")[0] for name in defined}):
        yield f"{name}: exists and is declared, but not exported"


def interface_faults(library: Binary, listed: set[str], declared: set[str]) -> Iterator[str]:
    yield from differences(listed, library.exports(), "the exports")
    for name in sorted(listed - declared):
        yield f"{name}: exported but not declared in the header"
    for name in sorted(library.needed()):
        if not re.fullmatch(SYSTEM_LIBRARIES, name):
            yield f"{name}: the library must not need it"
    if re.search(r"^\s+NO_SEH$", library.headers(), re.M):
        yield "NO_SEH: the handler that guards the processor probe would be ignored"


def main() -> int:
    parser = option_parser("--exports", "--header", "--sources")
    parser.add_argument("--objects", nargs="*", default=[])
    parser.add_argument("product")
    parser.add_argument("import_libraries", nargs="*")
    options = parser.parse_args()

    listed = set(re.findall(r"^\s+(\w+)$", Path(options.exports).read_text(), re.M))
    declared = set(re.findall(r"^PXB_API .*\bPXB_CALL (\w+)\(", Path(options.header).read_text(),
                              re.M))
    library, *import_libraries = [Binary(path, options.nm, options.objdump)
                                  for path in [options.product, *options.import_libraries]]
    objects = [Binary(path, options.nm, options.objdump) for path in options.objects]
    found = [*register_faults(library, options.bits), *writable_faults(library),
             *unreachable_kernels(library, Path(options.sources)),
             *interface_faults(library, listed, declared),
             *hidden_functions(objects, listed, declared)]
    for binary in import_libraries:
        found += differences(listed, binary.offers(), Path(binary.path).name)
    print(*found, f"{options.product}: {len(listed)} names, {len(found)} faults", sep="\n")
    return bool(found)


if __name__ == "__main__":
    sys.exit(main())
