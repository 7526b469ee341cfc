// Products and multiply-accumulate: the bridge between entries and kernels.
#pragma once

#include "core/scaled.hpp"
#include "zvps/types.h"

// X(slot, operation, source of the first operand, source of the second, their types, result type). An operation on
// complex data works on pairs of parts.
#define ZVPS_SCALED_PRODUCTS(X)                                                                                        \
    X(mul_8u, Mul<Zvp8u>, Vector, Vector, Zvp8u, Zvp8u, Zvp8u)                                                         \
    X(mul_16s, Mul<Zvp16s>, Vector, Vector, Zvp16s, Zvp16s, Zvp16s)                                                    \
    X(mul_16u, Mul<Zvp16u>, Vector, Vector, Zvp16u, Zvp16u, Zvp16u)                                                    \
    X(mul_16u16s, MulMixedSign, Vector, Vector, Zvp16u, Zvp16s, Zvp16s)                                                \
    X(mul_16s32s, MulWiden, Vector, Vector, Zvp16s, Zvp16s, Zvp32s)                                                    \
    X(mul_32s, Mul<Zvp32s>, Vector, Vector, Zvp32s, Zvp32s, Zvp32s)                                                    \
    X(mul_16sc, MulComplex<Zvp16s>, Vector, Vector, Zvp16s, Zvp16s, Zvp16s)                                            \
    X(mul_32sc, MulComplex<Zvp32s>, Vector, Vector, Zvp32s, Zvp32s, Zvp32s)                                            \
    X(mul_32s32sc, Mul<Zvp32s>, Duplicated, Vector, Zvp32s, Zvp32s, Zvp32s)                                            \
    X(mulC_8u, Mul<Zvp8u>, Vector, Constant, Zvp8u, Zvp8u, Zvp8u)                                                      \
    X(mulC_16s, Mul<Zvp16s>, Vector, Constant, Zvp16s, Zvp16s, Zvp16s)                                                 \
    X(mulC_16u, Mul<Zvp16u>, Vector, Constant, Zvp16u, Zvp16u, Zvp16u)                                                 \
    X(mulC_32s, Mul<Zvp32s>, Vector, Constant, Zvp32s, Zvp32s, Zvp32s)                                                 \
    X(mulC_16sc, MulComplex<Zvp16s>, Vector, Constant, Zvp16s, Zvp16s, Zvp16s)                                         \
    X(mulC_32sc, MulComplex<Zvp32s>, Vector, Constant, Zvp32s, Zvp32s, Zvp32s)

#define ZVPS_PLAIN_PRODUCTS(X)                                                                                         \
    X(mul_8u16u, PlainMul<Zvp16u>, Vector, Vector, Zvp8u, Zvp8u, Zvp16u)                                               \
    X(mul_16s32f, PlainMul<Zvp32f>, Vector, Vector, Zvp16s, Zvp16s, Zvp32f)                                            \
    X(mul_32f, PlainMul<Zvp32f>, Vector, Vector, Zvp32f, Zvp32f, Zvp32f)                                               \
    X(mul_64f, PlainMul<Zvp64f>, Vector, Vector, Zvp64f, Zvp64f, Zvp64f)                                               \
    X(mul_32fc, PlainMulComplex, Vector, Vector, Zvp32f, Zvp32f, Zvp32f)                                               \
    X(mul_64fc, PlainMulComplex, Vector, Vector, Zvp64f, Zvp64f, Zvp64f)                                               \
    X(mul_32f32fc, PlainMul<Zvp32f>, Duplicated, Vector, Zvp32f, Zvp32f, Zvp32f)                                       \
    X(mulC_32f, PlainMul<Zvp32f>, Vector, Constant, Zvp32f, Zvp32f, Zvp32f)                                            \
    X(mulC_64f, PlainMul<Zvp64f>, Vector, Constant, Zvp64f, Zvp64f, Zvp64f)                                            \
    X(mulC_32fc, PlainMulComplexConstant, Vector, Constant, Zvp32f, Zvp32f, Zvp32f)                                    \
    X(mulC_64fc, PlainMulComplexConstant, Vector, Constant, Zvp64f, Zvp64f, Zvp64f)

// The destination is the third operand: dst + a * b.
#define ZVPS_SCALED_ACCUMULATIONS(X)                                                                                   \
    X(addProduct_16s, AddProduct<Zvp16s>, Vector, Vector, Zvp16s, Zvp16s, Zvp16s)                                      \
    X(addProduct_16s32s, AddProductWiden, Vector, Vector, Zvp16s, Zvp16s, Zvp32s)                                      \
    X(addProduct_32s, AddProduct<Zvp32s>, Vector, Vector, Zvp32s, Zvp32s, Zvp32s)

#define ZVPS_PLAIN_ACCUMULATIONS(X)                                                                                    \
    X(addProduct_32f, PlainAddProduct<PlainMul<Zvp32f>>, Vector, Vector, Zvp32f, Zvp32f, Zvp32f)                       \
    X(addProduct_64f, PlainAddProduct<PlainMul<Zvp64f>>, Vector, Vector, Zvp64f, Zvp64f, Zvp64f)                       \
    X(addProduct_32fc, PlainAddProduct<PlainMulComplex>, Vector, Vector, Zvp32f, Zvp32f, Zvp32f)                       \
    X(addProduct_64fc, PlainAddProduct<PlainMulComplex>, Vector, Vector, Zvp64f, Zvp64f, Zvp64f)                       \
    X(addProductC_32f, PlainAddProduct<PlainMul<Zvp32f>>, Vector, Constant, Zvp32f, Zvp32f, Zvp32f)

namespace zvps {

struct ProductKernels {
#define ZVPS_SLOT(slot, op, source1, source2, type1, type2, result)                                                    \
    ScaledKernels<source1##Argument<type1>, source2##Argument<type2>, result> slot;
    ZVPS_SCALED_PRODUCTS(ZVPS_SLOT)
    ZVPS_SCALED_ACCUMULATIONS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, op, source1, source2, type1, type2, result)                                                    \
    BinaryKernel<source1##Argument<type1>, source2##Argument<type2>, result> slot;
    ZVPS_PLAIN_PRODUCTS(ZVPS_SLOT)
    ZVPS_PLAIN_ACCUMULATIONS(ZVPS_SLOT)
#undef ZVPS_SLOT

    // Products of floats into 16 bits, `shift` any scale factor.
    BinaryKernel<VectorArgument<Zvp32f>, ConstantArgument<Zvp32f>, Zvp16s> mulC_32f16s;
    // dst = dst * multiplier * 2^-shift in 128 bits.
    ZvpStatus (*mulC_64s)(Zvp64s multiplier, Zvp64s* dst, size_t n, int64_t shift);
};

} // namespace zvps
