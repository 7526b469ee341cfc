// Norms of vectors and of differences: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>

// X(slot, element type, result type, operation, what it works on, type in which differences are taken, type of the
// values). The squares of norms where a root would be the last step.
#define ZVPS_NORMS(X)                                                                                                  \
    X(inf_32f, Zvp32f, Zvp32f, PeakOfMagnitudes, Parts, Zvp32f, Zvp32f)                                                \
    X(infSquared_32fc, Zvp32fc, Zvp64f, Peak, SquaredModuli, Zvp32f, Zvp64f)                                           \
    X(inf_64f, Zvp64f, Zvp64f, PeakOfMagnitudes, Parts, Zvp64f, Zvp64f)                                                \
    X(infSquared_64fc, Zvp64fc, Zvp64f, Peak, SquaredModuli, Zvp64f, Zvp64f)                                           \
    X(l1_32f, Zvp32f, Zvp64f, TotalOfMagnitudes, Parts, Zvp32f, Zvp64f)                                                \
    X(l1_32fc, Zvp32fc, Zvp64f, Total, Moduli, Zvp64f, Zvp64f)                                                         \
    X(l1_64f, Zvp64f, Zvp64f, TotalOfMagnitudes, Parts, Zvp64f, Zvp64f)                                                \
    X(l1_64fc, Zvp64fc, Zvp64f, Total, Moduli, Zvp64f, Zvp64f)                                                         \
    X(l2Squared_32f, Zvp32f, Zvp32f, TotalOfSquares, Parts, Zvp32f, Zvp32f)                                            \
    X(l2Squared_32fc, Zvp32fc, Zvp64f, TotalOfSquares, Parts, Zvp64f, Zvp64f)                                          \
    X(l2Squared_64f, Zvp64f, Zvp64f, TotalOfSquares, Parts, Zvp64f, Zvp64f)                                            \
    X(l2Squared_64fc, Zvp64fc, Zvp64f, TotalOfSquares, Parts, Zvp64f, Zvp64f)

// X(slot): of 16-bit integers.
#define ZVPS_NORMS_16S(X)                                                                                              \
    X(inf_16s)                                                                                                         \
    X(l1_16s)                                                                                                          \
    X(l2Squared_16s)

namespace zvps {

// Of n elements of a vector, or of the differences between those of two.
template <class T, class R>
struct NormKernel {
    R (*of)(const T* src, size_t n);
    R (*ofDifference)(const T* src1, const T* src2, size_t n);
};

struct NormKernels {
#define ZVPS_SLOT(slot, type, result, operation, work, difference, value) NormKernel<type, result> slot;
    ZVPS_NORMS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot) NormKernel<Zvp16s, Zvp64s> slot;
    ZVPS_NORMS_16S(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
