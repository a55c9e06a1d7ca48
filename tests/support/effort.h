// How much the sweeps try. Everything in optimised 64-bit builds; elsewhere the code is the same
// but slower, and samples are enough.
#pragma once

namespace pxb::test {

#if defined(NDEBUG) && defined(__x86_64__) && !defined(PXB_SANITIZED)
constexpr bool kThorough = true;
#else
constexpr bool kThorough = false;
#endif

// For one sample value of a sweep over all colours: whether it is tried in this build.
constexpr bool IsTried(int sample) {
    return kThorough || sample % 51 == 0 || sample == 16 || (sample >= 127 && sample <= 129);
}

}  // namespace pxb::test
