// Conversions between element types: the bridge between entries and kernels.
#pragma once

#include "zvps/status.h"
#include "zvps/types.h"

#include <cstddef>

// X(slot, source, its type, result type): the value, in floating point rounded to nearest even.
#define ZVPS_PLAIN_CONVERSIONS(X)                                                                                      \
    X(convert_8s16s, Vector<Zvp8s>, Zvp8s, Zvp16s)                                                                     \
    X(convert_8s32f, Vector<Zvp8s>, Zvp8s, Zvp32f)                                                                     \
    X(convert_8u32f, Vector<Zvp8u>, Zvp8u, Zvp32f)                                                                     \
    X(convert_16s32f, Vector<Zvp16s>, Zvp16s, Zvp32f)                                                                  \
    X(convert_16s32s, Vector<Zvp16s>, Zvp16s, Zvp32s)                                                                  \
    X(convert_16u32f, Vector<Zvp16u>, Zvp16u, Zvp32f)                                                                  \
    X(convert_24s32f, Packed24<true>, Zvp8u, Zvp32f)                                                                   \
    X(convert_24s32s, Packed24<true>, Zvp8u, Zvp32s)                                                                   \
    X(convert_24u32f, Packed24<false>, Zvp8u, Zvp32f)                                                                  \
    X(convert_24u32u, Packed24<false>, Zvp8u, Zvp32u)                                                                  \
    X(convert_32s32f, Vector<Zvp32s>, Zvp32s, Zvp32f)                                                                  \
    X(convert_32s64f, Vector<Zvp32s>, Zvp32s, Zvp64f)                                                                  \
    X(convert_32f64f, Vector<Zvp32f>, Zvp32f, Zvp64f)                                                                  \
    X(convert_64f32f, Vector<Zvp64f>, Zvp64f, Zvp32f)                                                                  \
    X(convert_64s64f, Vector<Zvp64s>, Zvp64s, Zvp64f)                                                                  \
    X(convert_16f32f, Halves, Zvp16f, Zvp32f)

// The same, then times a factor.
#define ZVPS_FACTOR_CONVERSIONS(X)                                                                                     \
    X(scale_16s32f, Vector<Zvp16s>, Zvp16s, Zvp32f)                                                                    \
    X(scale_16s64f, Vector<Zvp16s>, Zvp16s, Zvp64f)                                                                    \
    X(scale_32s32f, Vector<Zvp32s>, Zvp32s, Zvp32f)                                                                    \
    X(scale_32s64f, Vector<Zvp32s>, Zvp32s, Zvp64f)

// X(slot, source type, result type, range of the results): integers shifted and saturated.
#define ZVPS_SHIFT_CONVERSIONS(X)                                                                                      \
    X(convert_16s8s, Zvp16s, Zvp8s, Range<Zvp8s>)                                                                      \
    X(convert_32s16s, Zvp32s, Zvp16s, Range<Zvp16s>)                                                                   \
    X(convert_32s24s, Zvp32s, Zvp8u, Range24s)                                                                         \
    X(convert_32u24u, Zvp32u, Zvp8u, Range24u)                                                                         \
    X(convert_64s32s, Zvp64s, Zvp32s, Range<Zvp32s>)

// X(slot, source, its type, type it is scaled in, result type, range of the results): scaled, rounded and saturated.
#define ZVPS_ROUNDING_CONVERSIONS(X)                                                                                   \
    X(convert_32f8s, Vector<Zvp32f>, Zvp32f, Zvp32f, Zvp8s, Range<Zvp8s>)                                              \
    X(convert_32f8u, Vector<Zvp32f>, Zvp32f, Zvp32f, Zvp8u, Range<Zvp8u>)                                              \
    X(convert_32f16s, Vector<Zvp32f>, Zvp32f, Zvp32f, Zvp16s, Range<Zvp16s>)                                           \
    X(convert_32f16u, Vector<Zvp32f>, Zvp32f, Zvp32f, Zvp16u, Range<Zvp16u>)                                           \
    X(convert_32f24s, Vector<Zvp32f>, Zvp32f, Zvp32f, Zvp8u, Range24s)                                                 \
    X(convert_32f24u, Vector<Zvp32f>, Zvp32f, Zvp32f, Zvp8u, Range24u)                                                 \
    X(convert_32f32s, Vector<Zvp32f>, Zvp32f, Zvp32f, Zvp32s, Range<Zvp32s>)                                           \
    X(convert_64f16s, Vector<Zvp64f>, Zvp64f, Zvp64f, Zvp16s, Range<Zvp16s>)                                           \
    X(convert_64f32s, Vector<Zvp64f>, Zvp64f, Zvp64f, Zvp32s, Range<Zvp32s>)                                           \
    X(convert_64f64s, Vector<Zvp64f>, Zvp64f, Zvp64f, Zvp64s, Range<Zvp64s>)                                           \
    X(convert_16f16s, Halves, Zvp16f, Zvp32f, Zvp16s, Range<Zvp16s>)

// X(slot, source, its type): to half precision.
#define ZVPS_HALF_CONVERSIONS(X)                                                                                       \
    X(convert_16s16f, Vector<Zvp16s>, Zvp16s)                                                                          \
    X(convert_32f16f, Vector<Zvp32f>, Zvp32f)

namespace zvps {

// Kernels return the entry's status, so that an entry ends in a jump to its kernel.

template <class S, class D>
using ConversionKernel = ZvpStatus (*)(const S* src, D* dst, size_t n);

template <class S, class D>
using FactorKernel = ZvpStatus (*)(const S* src, D* dst, size_t n, D factor);

template <class S, class D>
struct ShiftKernels {
    using Kernel = ZvpStatus (*)(const S* src, D* dst, size_t n, int shift);

    Kernel exact;
    Kernel down;   // 1 to lastShift places right
    Kernel up;     // places left, any number
    int lastShift; // beyond it every result rounds to 0
};

// By rounding mode. The source is multiplied by `factor`, then by `second` where one power of two cannot hold the
// scale.
template <class S, class F, class D>
struct RoundingKernels {
    using Kernel = ZvpStatus (*)(const S* src, D* dst, size_t n, F factor, F second);

    Kernel once[3];
    Kernel twice[3];
};

template <class S>
struct HalfKernels {
    ConversionKernel<S, Zvp16f> truncated;
    ConversionKernel<S, Zvp16f> nearest;
};

struct ConversionKernels {
#define ZVPS_SLOT(slot, source, type, result) ConversionKernel<type, result> slot;
    ZVPS_PLAIN_CONVERSIONS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, source, type, result) FactorKernel<type, result> slot;
    ZVPS_FACTOR_CONVERSIONS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, type, result, range) ShiftKernels<type, result> slot;
    ZVPS_SHIFT_CONVERSIONS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, source, type, working, result, range) RoundingKernels<type, working, result> slot;
    ZVPS_ROUNDING_CONVERSIONS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, source, type) HalfKernels<type> slot;
    ZVPS_HALF_CONVERSIONS(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
