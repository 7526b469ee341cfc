// Sums and differences: the bridge between entries and kernels.
#pragma once

#include "core/scaled.hpp"
#include "zvps/types.h"

// X(slot, operation, source of the first operand, source of the second, element type). Complex vectors go through the
// kernels of their parts, with twice the length.
#define ZVPS_SCALED_SUMS(X)                                                                                            \
    X(add_8u, Add, Vector, Vector, Zvp8u)                                                                              \
    X(add_16s, Add, Vector, Vector, Zvp16s)                                                                            \
    X(add_16u, Add, Vector, Vector, Zvp16u)                                                                            \
    X(add_32s, Add, Vector, Vector, Zvp32s)                                                                            \
    X(add_64s, Add, Vector, Vector, Zvp64s)                                                                            \
    X(addC_8u, Add, Vector, Constant, Zvp8u)                                                                           \
    X(addC_16s, Add, Vector, Constant, Zvp16s)                                                                         \
    X(addC_16u, Add, Vector, Constant, Zvp16u)                                                                         \
    X(addC_32s, Add, Vector, Constant, Zvp32s)                                                                         \
    X(sub_8u, Sub, Vector, Vector, Zvp8u)                                                                              \
    X(sub_16s, Sub, Vector, Vector, Zvp16s)                                                                            \
    X(sub_16u, Sub, Vector, Vector, Zvp16u)                                                                            \
    X(sub_32s, Sub, Vector, Vector, Zvp32s)                                                                            \
    X(subC_8u, Sub, Constant, Vector, Zvp8u)                                                                           \
    X(subC_16s, Sub, Constant, Vector, Zvp16s)                                                                         \
    X(subC_16u, Sub, Constant, Vector, Zvp16u)                                                                         \
    X(subC_32s, Sub, Constant, Vector, Zvp32s)                                                                         \
    X(subCRev_8u, Sub, Vector, Constant, Zvp8u)                                                                        \
    X(subCRev_16s, Sub, Vector, Constant, Zvp16s)                                                                      \
    X(subCRev_16u, Sub, Vector, Constant, Zvp16u)                                                                      \
    X(subCRev_32s, Sub, Vector, Constant, Zvp32s)

// X(slot, operation, source, source, first operand's type, second operand's type, result type)
#define ZVPS_PLAIN_SUMS(X)                                                                                             \
    X(add_32u, Add, Vector, Vector, Zvp32u, Zvp32u, Zvp32u)                                                            \
    X(add_8u16u, Add, Vector, Vector, Zvp8u, Zvp8u, Zvp16u)                                                            \
    X(add_16s32f, Add, Vector, Vector, Zvp16s, Zvp16s, Zvp32f)                                                         \
    X(add_16s32s, Add, Vector, Vector, Zvp16s, Zvp32s, Zvp32s)                                                         \
    X(add_32f, Add, Vector, Vector, Zvp32f, Zvp32f, Zvp32f)                                                            \
    X(add_64f, Add, Vector, Vector, Zvp64f, Zvp64f, Zvp64f)                                                            \
    X(addC_32f, Add, Vector, Constant, Zvp32f, Zvp32f, Zvp32f)                                                         \
    X(addC_64f, Add, Vector, Constant, Zvp64f, Zvp64f, Zvp64f)                                                         \
    X(sub_16s32f, Sub, Vector, Vector, Zvp16s, Zvp16s, Zvp32f)                                                         \
    X(sub_32f, Sub, Vector, Vector, Zvp32f, Zvp32f, Zvp32f)                                                            \
    X(sub_64f, Sub, Vector, Vector, Zvp64f, Zvp64f, Zvp64f)                                                            \
    X(subC_32f, Sub, Constant, Vector, Zvp32f, Zvp32f, Zvp32f)                                                         \
    X(subC_64f, Sub, Constant, Vector, Zvp64f, Zvp64f, Zvp64f)                                                         \
    X(subCRev_32f, Sub, Vector, Constant, Zvp32f, Zvp32f, Zvp32f)                                                      \
    X(subCRev_64f, Sub, Vector, Constant, Zvp64f, Zvp64f, Zvp64f)

// X(slot, element type): absolute values, saturated.
#define ZVPS_ABSOLUTES(X)                                                                                              \
    X(abs_16s, Zvp16s)                                                                                                 \
    X(abs_32s, Zvp32s)                                                                                                 \
    X(abs_32f, Zvp32f)                                                                                                 \
    X(abs_64f, Zvp64f)

namespace zvps {

struct SumKernels {
#define ZVPS_SLOT(slot, op, source1, source2, type)                                                                    \
    ScaledKernels<source1##Argument<type>, source2##Argument<type>, type> slot;
    ZVPS_SCALED_SUMS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, op, source1, source2, type1, type2, result)                                                    \
    BinaryKernel<source1##Argument<type1>, source2##Argument<type2>, result> slot;
    ZVPS_PLAIN_SUMS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, type) ZvpStatus (*slot)(const type* src, type* dst, size_t n);
    ZVPS_ABSOLUTES(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
