// Sums, moments and counts: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>

// X(slot, element type, type of the values that are added, type of the sum)
#define ZVPS_TOTALS(X)                                                                                                 \
    X(sum_32s, Zvp32s, Zvp64s, Zvp64s)                                                                                 \
    X(sum_32f, Zvp32f, Zvp64f, Zvp64f)                                                                                 \
    X(sum_32fc, Zvp32fc, Zvp64f, Zvp64fc)                                                                              \
    X(sum_64f, Zvp64f, Zvp64f, Zvp64f)                                                                                 \
    X(sum_64fc, Zvp64fc, Zvp64f, Zvp64fc)

namespace zvps {

// The sum of n elements, and that of their squares.
template <class T>
struct Moments {
    T sum;
    T squares;
};

struct TotalKernels {
#define ZVPS_SLOT(slot, type, value, result) result (*slot)(const type* src, size_t n);
    ZVPS_TOTALS(ZVPS_SLOT)
#undef ZVPS_SLOT
    Zvp64s (*sum_16s)(const Zvp16s* src, size_t n);
    Zvp64sc (*sum_16sc)(const Zvp16sc* src, size_t n);
    Moments<Zvp64s> (*moments_16s)(const Zvp16s* src, size_t n);
    Moments<Zvp64f> (*moments_32f)(const Zvp32f* src, size_t n);
    Moments<Zvp64f> (*moments_64f)(const Zvp64f* src, size_t n);
    // How many lie between the bounds, themselves excluded; lower < upper.
    size_t (*countBetween)(const Zvp32s* src, size_t n, Zvp32s lower, Zvp32s upper);
};

} // namespace zvps
