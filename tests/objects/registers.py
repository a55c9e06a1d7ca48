"""Which code is meant for which instruction set, and what it may use."""
import re

from binary import Instruction

_SSE_WITHOUT_XMM = (r"p(avg[bw]|(max|min)(ub|sw)|mulhuw|sadbw|insrw|extrw|movmskb|shufw|addq|subq)"
                    r"|pmuludq|maskmovq|movnt\w+|prefetch\w+|[slm]fence|(ld|st)mxcsr")
_LATER_THAN_SSE2 = (r"h(add|sub)p[sd]|addsubp[sd]|lddqu|mov(d|sh|sl)dup|p(shufb|h(add|sub)s?[wd])"
                    r"|p(maddubsw|mulhrsw|sign[bwd]|abs[bwd]|alignr|extr[bdq]|insr[bdq]|ackusdw)"
                    r"|p(blend\w+|(max|min)(sb|ud|uw|sd)|mov[sz]x\w+|mulld|muldq|test)"
                    r"|p(cmpeqq|cmpgtq|cmp[ei]str[im]|hminposuw|clmul\w+)|blendv?p[sd]|popcnt\w?"
                    r"|round[sp][sd]|dpp[sd]|mpsadbw|movntdqa|insertps|extractps|crc32\w?|aes\w+")
_LATER_THAN_AVX2 = (r"vfn?m(add|sub)\w+|andn|bextr|bls(i|r|msk)|bzhi|mulx|pdep|pext|rorx"
                    r"|(sar|shl|shr)x|movbe\w?|lzcnt\w?|ad[co]x|x(begin|end|abort|test)")
_LATER_THAN_AVX512 = _LATER_THAN_AVX2 + (
    r"|vp(popcnt|conflict|lzcnt|sh[lr]d|compress[bw]|expand[bw])\w*|vpshufbitqmb|vgf2p8\w+"
    r"|vpmadd52\w+|vpmullq|kmovb|v(extract|insert)[fi](64x2|32x8)")

# For each instruction set: the registers that it may use, and what else marks a later one.
_RULES_32 = {
    "baseline": ((), _SSE_WITHOUT_XMM),
    "mmx": (("mm",), _SSE_WITHOUT_XMM),
    "sse2": (("xmm",), _LATER_THAN_SSE2),
    "avx2": (("xmm", "ymm"), _LATER_THAN_AVX2),
    "avx512": (("xmm", "ymm", "zmm", "k"), _LATER_THAN_AVX512),
}
# On 64 bits SSE2 belongs to the baseline, and some compilers turn MMX into SSE2.
_RULES_64 = _RULES_32 | {
    "baseline": (("xmm",), _LATER_THAN_SSE2),
    "mmx": (("mm", "xmm"), _LATER_THAN_SSE2),
}


def namespace_of(name: str) -> str | None:
    """The X of a mangled name within pxb::X."""
    inner = re.match(r"_Z(?:GV|T[VIS])?Z*NK?3pxb([0-9])(\w+)", name)
    return inner[2][:int(inner[1])] if inner else None


def complaint(code: Instruction, instruction_set: str, bits: int) -> str | None:
    """What is wrong with an instruction in code for that set; None: nothing."""
    allowed, later = (_RULES_32 if bits == 32 else _RULES_64)[instruction_set]
    used = set(re.findall(r"%([xyz]?mm|k)[0-9]", code.operands))
    where = f"{code.function}: {code.mnemonic} {code.operands}"
    if not used <= set(allowed):
        return f"{where}: register %{min(used - set(allowed))} in {instruction_set} code"
    encoded_as_avx = code.mnemonic.startswith("v") and used or code.mnemonic == "vzeroupper"
    if encoded_as_avx and not instruction_set.startswith("avx"):
        return f"{where}: AVX instruction in {instruction_set} code"
    if re.fullmatch(later, code.mnemonic):
        return f"{where}: instruction beyond {instruction_set}"
    return None
