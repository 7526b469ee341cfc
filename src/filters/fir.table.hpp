// Direct filters: the bridge between entries and kernels. Taps come reversed, so that output n is the sum over i of
// taps[i] * src[n + i]: `src` holds tapsLen - 1 elements more than `count`.
#pragma once

#include "zvps/types.h"

#include <cstddef>
#include <cstdint>

// X(slot, type of the parts, parts of an element)
#define ZVPS_FIRS(X)                                                                                                   \
    X(fir_32f, Zvp32f, 1)                                                                                              \
    X(fir_32fc, Zvp32f, 2)                                                                                             \
    X(fir_64f, Zvp64f, 1)                                                                                              \
    X(fir_64fc, Zvp64f, 2)

// X(slot, parts of an element)
#define ZVPS_INTEGER_FIRS(X)                                                                                           \
    X(fir_16s, 1)                                                                                                      \
    X(fir_16sc, 2)

namespace zvps {

// How taps of 16 bits meet data of 16 bits: a unit of two lanes of the data (two real samples or a complex one) is
// multiplied by a pair of `even` for the one output lane and by a pair of `odd` for the other, in 32 bits.
//   real:    even (t0, t1), (t2, t3), ..   odd (0, t0), (t1, t2), ..
//   complex: even (re, -im), ..            odd (im, re), ..
struct FirPairs {
    const int16_t* even;
    const int16_t* odd;
    size_t units;
    // Of each step how many units it adds, and whether a run of sums of 32 bits ends with it; null where all taps are
    // one run.
    const uint8_t* steps;
};

// Units u, u + kFirPairStride, .. are added in steps of four, two and one, for each u < kFirPairStride in turn. Where
// sums could pass 32 bits, in smaller ones.
inline constexpr size_t kFirPairStride = 16;
inline constexpr size_t firPairStep(size_t left) {
    return left < 2 ? 1 : left < 4 ? 2 : 4;
}
inline constexpr uint8_t kEndsFirRun = 16;
// Kernels of blocks tell the sums of fewer runs than this. More are for the kernel of one output.
inline constexpr int32_t kMostFirRuns = 1 << 14;

template <class T>
struct FirKernels {
    void (*block)(const T* src, T* dst, size_t count, const T* taps, size_t tapsLen);
    // One output, of taps in their order or from the last to the first.
    void (*one)(const T* src, T* dst, const T* taps, size_t tapsLen);
    void (*oneBackwards)(const T* src, T* dst, const T* taps, size_t tapsLen);
};

// Sums are stored times 2^-shift, rounded to nearest even and saturated.
struct IntegerFirKernels {
    void (*block)(const int16_t* src, int16_t* dst, size_t count, const FirPairs& pairs, size_t tapsLen, int shift);
    // The exact sums of one output: real, or real and imaginary part.
    void (*one)(const int16_t* src, int64_t* sums, const FirPairs& pairs, size_t tapsLen);
};

struct FilterKernels {
#define ZVPS_SLOT(slot, type, parts) FirKernels<type> slot;
    ZVPS_FIRS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, parts) IntegerFirKernels slot;
    ZVPS_INTEGER_FIRS(ZVPS_SLOT)
#undef ZVPS_SLOT
    // dst[i] = sum over k < count of taps[k] * src[i - positions[k]]
    void (*sparse_32f)(const Zvp32f* src, Zvp32f* dst, size_t n, const Zvp32f* taps, const Zvp32s* positions,
                       size_t count);
};

} // namespace zvps
