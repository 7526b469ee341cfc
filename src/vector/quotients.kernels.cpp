#include "vector/quotients.hpp"

#include "vector/quotients.table.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class Op, class SourceA, class SourceB, class A, class B, class D>
ZvpStatus quotientKernel(A divisors, B dividends, D* dst, size_t n, int scaleFactor) {
    Op op(scaleFactor);
    map<Op::kPeriod, Op::kWorkBytes, Op::kVectors>(op, dst, n, SourceA{divisors}, SourceB{dividends});
    return op.sawZero() ? zvpStsDivByZero : zvpStsOk;
}

} // namespace

extern const QuotientKernels quotientKernels;
const QuotientKernels quotientKernels = {
#define ZVPS_KERNELS(slot, op, source1, source2, type1, type2, result)                                                 \
    {{quotientKernel<op<zvpRndZero>, source1<type1>, source2<type2>, source1##Argument<type1>,                         \
                     source2##Argument<type2>, result>,                                                                \
      quotientKernel<op<zvpRndNear>, source1<type1>, source2<type2>, source1##Argument<type1>,                         \
                     source2##Argument<type2>, result>,                                                                \
      quotientKernel<op<zvpRndFinancial>, source1<type1>, source2<type2>, source1##Argument<type1>,                    \
                     source2##Argument<type2>, result>}},
    ZVPS_ROUNDED_QUOTIENTS(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNEL(slot, op, source1, source2, type1, type2, result)                                                  \
    quotientKernel<op<zvpRndNear>, source1<type1>, source2<type2>, source1##Argument<type1>, source2##Argument<type2>, \
                   result>,
        ZVPS_NEAREST_QUOTIENTS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
#define ZVPS_KERNEL(slot, op, source1, source2, type)                                                                  \
    quotientKernel<op, source1<type>, source2<type>, source1##Argument<type>, source2##Argument<type>, type>,
            ZVPS_PLAIN_QUOTIENTS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
