"""usage: check_kernels.py --nm NM --objdump OBJDUMP --bits 32|64 [--unoptimised]
                        INSTRUCTION_SET OBJECT...

Object files compiled for one instruction set (baseline, pairwise, mmx, sse2, avx2, avx512) use no
registers or instructions beyond it. Those of the kernels moreover define no symbol that code for
other processors could pick up: the linker keeps one copy of an inline function for everybody, and
that could be the AVX2 one. They also run nothing at load time, before the processor is known, and
end what wide, streaming and MMX instructions begin."""
import re
import sys
from collections import defaultdict
from typing import Iterator

from binary import Binary, Instruction, Symbol, option_parser
from registers import complaint, namespace_of


def shared_symbol(symbol: Symbol, namespace: str, comdats: set[str]) -> str | None:
    if re.match(r"__x86\.get_pc_thunk\.", symbol.name):
        return None  # the compiler's own: two instructions that every processor has
    # Windows objects have no weak functions; theirs stand in sections that are linked once.
    if symbol.kind in "WVu" or (symbol.kind.isupper() and symbol.section in comdats):
        return f"{symbol.name}: weak symbol, shared with code for other processors"
    if symbol.kind.isupper() and namespace_of(symbol.name) != namespace:
        return f"{symbol.name}: global symbol outside pxb::{namespace}"
    return None


# What an instruction with its operands begins, and the instruction that must be somewhere in the same
# function: code for SSE would be slow behind it, other processors would see stores late, x87
# arithmetic would fail.
OBLIGATIONS = [
    (r"%[yz]mm", "vzeroupper"),
    (r"v?movnt(dq|q|i|p[sd]) |maskmov(q|dqu) ", "sfence"),
    (r"%mm[0-7]", "emms"),
]


def unfinished(instructions: list[Instruction], optimised: bool) -> Iterator[str]:
    """Parts that the compiler moves elsewhere (.cold) count as one with their function. It inserts
    vzeroupper only while it optimises."""
    obligations = OBLIGATIONS if optimised else OBLIGATIONS[1:]
    functions = defaultdict(list)
    for code in instructions:
        functions[re.sub(r"\.(cold|part)\b.*", "", code.function)].append(code)
    for name, codes in functions.items():
        for begun, end in obligations:
            first = next((code for code in codes
                          if re.search(begun, f"{code.mnemonic} {code.operands}")), None)
            if first and all(code.mnemonic != end for code in codes):
                yield f"{name}: {first.mnemonic} {first.operands}: and no {end}"


def faults(binary: Binary, instruction_set: str, bits: int, optimised: bool) -> Iterator[str]:
    if instruction_set != "baseline":
        comdats = binary.comdats() if binary.is_windows else set()
        for symbol in binary.symbols():
            if fault := shared_symbol(symbol, instruction_set, comdats):
                yield fault
        for section in binary.sections():
            if re.match(r"\.(ctors|(pre)?init_array)", section):
                yield f"{section}: code that runs at load time"
        yield from unfinished(list(binary.instructions()), optimised)
    rules = "baseline" if instruction_set == "pairwise" else instruction_set
    for code in binary.instructions():
        if fault := complaint(code, rules, bits):
            yield fault


def main() -> int:
    parser = option_parser()
    parser.add_argument("--unoptimised", action="store_true")
    parser.add_argument("instruction_set")
    parser.add_argument("objects", nargs="+")
    options = parser.parse_args()
    found = 0
    for path in options.objects:
        for fault in faults(Binary(path, options.nm, options.objdump), options.instruction_set,
                            options.bits, not options.unoptimised):
            print(f"{path}: {fault}")
            found += 1
    print(f"{options.instruction_set}: {len(options.objects)} objects, {found} faults")
    return found != 0


if __name__ == "__main__":
    sys.exit(main())
