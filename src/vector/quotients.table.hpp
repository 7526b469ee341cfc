// Quotients: the bridge between entries and kernels.
#pragma once

#include "core/scaled.hpp"
#include "zvps/types.h"

// X(slot, operation, source of the divisors, source of the dividends, their types, result type), and for the integers
// one kernel for each rounding mode, for results of every scale factor.
#define ZVPS_ROUNDED_QUOTIENTS(X)                                                                                      \
    X(div_8u, DivSingle, Divisors, Vector, Zvp8u, Zvp8u, Zvp8u)                                                        \
    X(div_16s, DivDouble, Divisors, Vector, Zvp16s, Zvp16s, Zvp16s)                                                    \
    X(div_16u, DivDouble, Divisors, Vector, Zvp16u, Zvp16u, Zvp16u)

// To nearest, ties to even.
#define ZVPS_NEAREST_QUOTIENTS(X)                                                                                      \
    X(div_16sc, DivComplex, Divisors, Vector, Zvp16s, Zvp16s, Zvp16s)                                                  \
    X(div_32s, DivDouble, Divisors, Vector, Zvp32s, Zvp32s, Zvp32s)                                                    \
    X(div_32sUp, DivCorrected, Divisors, Vector, Zvp32s, Zvp32s, Zvp32s)                                               \
    X(div_32s16s, DivDouble, Divisors, Vector, Zvp32s, Zvp32s, Zvp16s)                                                 \
    X(divC_8u, DivSingle, Constant, Vector, Zvp8u, Zvp8u, Zvp8u)                                                       \
    X(divC_16s, DivDouble, Constant, Vector, Zvp16s, Zvp16s, Zvp16s)                                                   \
    X(divC_16u, DivDouble, Constant, Vector, Zvp16u, Zvp16u, Zvp16u)                                                   \
    X(divC_16sc, DivComplex, Constant, Vector, Zvp16s, Zvp16s, Zvp16s)                                                 \
    X(divCRev_16u, DivDouble, Divisors, Constant, Zvp16u, Zvp16u, Zvp16u)

#define ZVPS_PLAIN_QUOTIENTS(X)                                                                                        \
    X(div_32f, PlainDiv<Zvp32f>, Divisors, Vector, Zvp32f)                                                             \
    X(div_64f, PlainDiv<Zvp64f>, Divisors, Vector, Zvp64f)                                                             \
    X(div_64fc, DivComplexDouble, Divisors, Vector, Zvp64f)                                                            \
    X(divC_32f, PlainDiv<Zvp32f>, Constant, Vector, Zvp32f)                                                            \
    X(divC_64f, PlainDiv<Zvp64f>, Constant, Vector, Zvp64f)                                                            \
    X(divC_64fc, DivComplexDouble, Constant, Vector, Zvp64f)                                                           \
    X(divCRev_32f, PlainDiv<Zvp32f>, Divisors, Constant, Zvp32f)

namespace zvps {

// Indexed by ZvpRoundMode. Kernels of quotients take any scale factor in the place of the shift.
template <class A, class B, class D>
struct RoundedQuotientKernels {
    BinaryKernel<A, B, D> byMode[3];
};

struct QuotientKernels {
#define ZVPS_SLOT(slot, op, source1, source2, type1, type2, result)                                                    \
    RoundedQuotientKernels<source1##Argument<type1>, source2##Argument<type2>, result> slot;
    ZVPS_ROUNDED_QUOTIENTS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, op, source1, source2, type1, type2, result)                                                    \
    BinaryKernel<source1##Argument<type1>, source2##Argument<type2>, result> slot;
    ZVPS_NEAREST_QUOTIENTS(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, op, source1, source2, type)                                                                    \
    BinaryKernel<source1##Argument<type>, source2##Argument<type>, type> slot;
    ZVPS_PLAIN_QUOTIENTS(ZVPS_SLOT)
#undef ZVPS_SLOT

    BinaryKernel<DivisorsArgument<Zvp32f>, VectorArgument<Zvp32f>, Zvp32f> div_32fc;
    BinaryKernel<ConstantArgument<Zvp32f>, VectorArgument<Zvp32f>, Zvp32f> divC_32fc;
};

} // namespace zvps
