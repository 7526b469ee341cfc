// Goertzel: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>

// X(slot, type of the parts, parts of an element)
#define ZVPS_GOERTZELS(X)                                                                                              \
    X(goertzel_16s, Zvp16s, 1)                                                                                         \
    X(goertzel_16sc, Zvp16s, 2)                                                                                        \
    X(goertzel_32f, Zvp32f, 1)                                                                                         \
    X(goertzel_32fc, Zvp32f, 2)                                                                                        \
    X(goertzel_64f, Zvp64f, 1)                                                                                         \
    X(goertzel_64fc, Zvp64f, 2)

namespace zvps {

// Chain j sums the elements j, j + kChains, ... of a block, the blocks' sums follow each other in a chain of their own.
inline constexpr int kGoertzelChainsLog2 = 6;
inline constexpr int kGoertzelBlockLog2 = 12;

// The factor exp(-2 pi i f m) from one element to that m places on.
struct Rotation {
    double re;
    double im;
};
struct GoertzelRotations {
    Rotation joins[kGoertzelChainsLog2]; // m = 1, 2, 4, ...
    Rotation chain;                      // m = kChains
    Rotation block;
};

// The transforms of n elements at one frequency or two into `values`, real parts before imaginary ones.
template <class T>
using GoertzelKernel = void (*)(const T* src, size_t n, const GoertzelRotations* rotations, int count, double* values);

struct GoertzelKernels {
#define ZVPS_SLOT(slot, type, parts) GoertzelKernel<type> slot;
    ZVPS_GOERTZELS(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
