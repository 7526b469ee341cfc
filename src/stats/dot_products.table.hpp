// Dot products: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>

// X(slot, operation, first operand's type, second operand's type, type of products and sums, result type)
#define ZVPS_DOT_PRODUCTS(X)                                                                                           \
    X(dot_32f, RealDot, Zvp32f, Zvp32f, Zvp32f, Zvp32f)                                                                \
    X(dot_32f64f, RealDot, Zvp32f, Zvp32f, Zvp64f, Zvp64f)                                                             \
    X(dot_64f, RealDot, Zvp64f, Zvp64f, Zvp64f, Zvp64f)                                                                \
    X(dot_16s32s, RealDot, Zvp16s, Zvp32s, Zvp64s, Zvp64s)                                                             \
    X(dot_32s, RealDot, Zvp32s, Zvp32s, Zvp64s, Zvp64s)                                                                \
    X(dot_32f32fc, MixedDot, Zvp32f, Zvp32fc, Zvp32f, Zvp32fc)                                                         \
    X(dot_32f32fc64fc, MixedDot, Zvp32f, Zvp32fc, Zvp64f, Zvp64fc)                                                     \
    X(dot_64f64fc, MixedDot, Zvp64f, Zvp64fc, Zvp64f, Zvp64fc)                                                         \
    X(dot_32s32sc, MixedDot, Zvp32s, Zvp32sc, Zvp64s, Zvp64sc)                                                         \
    X(dot_32fc, ComplexDot, Zvp32fc, Zvp32fc, Zvp32f, Zvp32fc)                                                         \
    X(dot_32fc64fc, ComplexDot, Zvp32fc, Zvp32fc, Zvp64f, Zvp64fc)                                                     \
    X(dot_64fc, ComplexDot, Zvp64fc, Zvp64fc, Zvp64f, Zvp64fc)                                                         \
    X(dot_32sc, ComplexDot, Zvp32sc, Zvp32sc, Zvp64s, Zvp64sc)                                                         \
    X(dot_16s, RealDot16, Zvp16s, Zvp16s, Zvp64s, Zvp64s)                                                              \
    X(dot_16s16sc, MixedDot16, Zvp16s, Zvp16sc, Zvp64s, Zvp64sc)                                                       \
    X(dot_16sc, ComplexDot16, Zvp16sc, Zvp16sc, Zvp64s, Zvp64sc)

namespace zvps {

// Sums of integers beyond 64 bits wrap around.
template <class A, class B, class R>
using DotKernel = R (*)(const A* src1, const B* src2, size_t n);

struct DotKernels {
#define ZVPS_SLOT(slot, operation, type1, type2, value, result) DotKernel<type1, type2, result> slot;
    ZVPS_DOT_PRODUCTS(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
