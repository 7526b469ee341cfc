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

template <class T>
const T* advanced(const T* vector, size_t n) {
    return vector + n;
}
template <class T>
Pair<T> advanced(Pair<T> constant, size_t) {
    return constant;
}

// Block by block without looking at single results, and once more with care where one does not stand. In place there is
// no second time.
template <class SourceA, class SourceB, class A, class B>
ZvpStatus complexSingleKernel(A divisors, B dividends, float* dst, size_t n, int) {
    constexpr size_t kBlock = 2048;
    DivComplexSingle careful(0);
    const bool inPlace = SourceA{divisors}.startsAt(dst) || SourceB{dividends}.startsAt(dst);
    const auto divide = [&](auto& op, size_t begin, size_t count) HWY_ATTR {
        map<2, sizeof(float), 2>(op, dst + begin, count, SourceA{advanced(divisors, begin)},
                                 SourceB{advanced(dividends, begin)});
    };
    if (inPlace || n < kVectorBytes) {
        divide(careful, 0, n);
    } else {
        for (size_t begin = 0; begin < n; begin += kBlock) {
            const size_t count = n - begin < kBlock ? n - begin : kBlock;
            DivComplexSingleFast fast;
            divide(fast, begin, count);
            if (!fast.allStand()) divide(careful, begin, count);
        }
    }
    return careful.sawZero() ? zvpStsDivByZero : zvpStsOk;
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
                complexSingleKernel<Divisors<Zvp32f>, Vector<Zvp32f>>,
    complexSingleKernel<Constant<Zvp32f>, Vector<Zvp32f>>,
};

} // namespace zvps::ZVPS_LEVEL
