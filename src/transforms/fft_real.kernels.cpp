#include "transforms/fft_real_large.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// The tables of the orders whose object has none.
template <class T, int order>
struct FixedTables {
    static constexpr RealFftPlan kPlan = realFftPlan<T>(order);
    static constexpr size_t kBlock = realFftBlock<T>(kPlan);

    alignas(64) T columns[realFftTables<T>(order).ends];
    T ends[kPlan.columns];

    constexpr FixedTables() : columns(), ends() {
        for (size_t k = 1; k < kPlan.rows / 2; ++k) {
            for (size_t n = 0; n < kPlan.columns; ++n) {
                columns[(k - 1) * 2 * kBlock + n] = static_cast<T>(cosOf32(n * k << (5 - order)));
                columns[(k - 1) * 2 * kBlock + kBlock + n] = static_cast<T>(cosOf32((n * k << (5 - order)) + 24));
            }
        }
        for (size_t k = 0; k < kPlan.columns / 2; ++k) {
            ends[k] = static_cast<T>(cosOf32(k * kPlan.rows / 2 << (5 - order)));
            ends[kPlan.columns / 2 + k] = static_cast<T>(cosOf32((k * kPlan.rows / 2 << (5 - order)) + 24));
        }
    }
};
template <class T, int order>
inline constexpr FixedTables<T, order> kFixedTables;

// The layouts and scalings of the larger ones share their code.
template <int order, FftDirection direction, class T>
HWY_NOINLINE void runShort(const T* src, T* dst, RealFftLayout layout, T factor, const T* columnTables,
                           const T* endTables) {
    constexpr RealFftPlan plan = realFftPlan<T>(order);
    constexpr size_t N = size_t{1} << order;
    if constexpr (direction == kFftForward) {
        shortRealFft<plan.rows, plan.columns>(src, Spectrum<T>(dst, layout, N), factor, columnTables, endTables);
    } else {
        shortInverseRealFft<plan.rows, plan.columns>(Spectrum<const T>(src, layout, N), dst, factor, columnTables,
                                                     endTables);
    }
}

template <class T, FftDirection direction, RealFftLayout layout, bool scales, int order>
ZvpStatus fixedReal(const T* src, T* dst, T factor) {
    constexpr size_t N = size_t{1} << order;
    if constexpr (!scales) factor = 1;
    if constexpr (order <= 3) {
        if constexpr (direction == kFftForward) {
            tinyRealFft<N, layout>(src, dst, factor);
        } else {
            tinyInverseRealFft<N, layout>(src, dst, factor);
        }
    } else {
        constexpr const FixedTables<T, order>& tables = kFixedTables<T, order>;
        runShort<order, direction>(src, dst, layout, factor, tables.columns, tables.ends);
    }
    return zvpStsOk;
}

// Of an order without a fixed routine that takes two passes.
template <FftDirection direction, class T>
HWY_INLINE void runShort(int order, const T* src, T* dst, RealFftLayout layout, T factor, const T* tables) {
    const auto run = [&](auto constant) ZVPS_INLINE_LAMBDA {
        constexpr size_t kEnds = realFftTables<T>(constant).ends;
        runShort<constant, direction>(src, dst, layout, factor, tables, tables + kEnds);
    };
    switch (order) {
    case 6:
        return run(std::integral_constant<int, 6>());
    case 7:
        return run(std::integral_constant<int, 7>());
    case 8:
        return run(std::integral_constant<int, 8>());
    default:
        return run(std::integral_constant<int, kMostShortRealOrder>());
    }
}

// Up to so many values a transform works on the stack, which is aligned better than a caller's buffer.
template <class T>
inline constexpr size_t kStackValues = 65536 / sizeof(T);

template <size_t kRows, FftDirection direction, class T>
HWY_NOINLINE void runLong(int order, const T* src, T* dst, RealFftLayout layout, T factor, const T* tables, T* work,
                          T* halves) {
    const size_t n = size_t{1} << order;
    if constexpr (direction == kFftForward) {
        longRealFft<kRows>(order, src, Spectrum<T>(dst, layout, n), factor, tables, work, halves);
    } else {
        longInverseRealFft<kRows>(order, Spectrum<const T>(src, layout, n), dst, factor, tables, work, halves);
    }
}

template <FftDirection direction, class T>
HWY_NOINLINE void runOnStack(const T* src, T* dst, RealFftLayout layout, T factor, const FftSpec<T>& spec) {
    alignas(kVectorBytes) T work[kStackValues<T>];
    alignas(kVectorBytes) T halves[kStackValues<T> / 8];
    realFft<direction>(spec.order, src, dst, layout, factor, spec.twiddles, work, halves);
}
template <FftDirection direction, class T>
HWY_NOINLINE void runInBuffer(const T* src, T* dst, RealFftLayout layout, T factor, const FftSpec<T>& spec, T* work) {
    alignas(kVectorBytes) T halves[2 * kMostRealColumns];
    realFft<direction>(spec.order, src, dst, layout, factor, spec.twiddles, work, halves);
}

template <class T, FftDirection direction, RealFftLayout layout>
ZvpStatus generalReal(const T* src, T* dst, T factor, const FftSpec<T>& spec, T* work) {
    if (spec.order <= kMostShortRealOrder) {
        runShort<direction>(spec.order, src, dst, layout, factor, spec.twiddles);
    } else if (size_t{1} << spec.order <= kStackValues<T>) {
        runOnStack<direction>(src, dst, layout, factor, spec);
    } else if (spec.order <= kMostRealOrder) {
        runInBuffer<direction>(src, dst, layout, factor, spec, work);
    } else if constexpr (direction == kFftForward) {
        largeRealFft(src, dst, layout, factor, spec, work);
    } else {
        largeInverseRealFft(src, dst, layout, factor, spec, work);
    }
    return zvpStsOk;
}

} // namespace

template <FftDirection direction, class T>
void realFft(int order, const T* src, T* dst, RealFftLayout layout, T factor, const T* tables, T* work, T* halves) {
    if (order <= kMostShortRealOrder) return runShort<direction>(order, src, dst, layout, factor, tables);
    if constexpr (sizeof(T) == 8) {
        if (longRealFftOf<T>(order).plan.rows == 16) {
            return runLong<16, direction>(order, src, dst, layout, factor, tables, work, halves);
        }
    }
    runLong<32, direction>(order, src, dst, layout, factor, tables, work, halves);
}
// Other kernels use them too.
#define ZVPS_REAL_FFT(DIRECTION, T)                                                                                    \
    template void realFft<DIRECTION>(int, const T*, T*, RealFftLayout, T, const T*, T*, T*);
ZVPS_REAL_FFT(kFftForward, float)
ZVPS_REAL_FFT(kFftForward, double)
ZVPS_REAL_FFT(kFftInverse, float)
ZVPS_REAL_FFT(kFftInverse, double)
#undef ZVPS_REAL_FFT

#define ZVPS_ORDERS(...)                                                                                               \
    {                                                                                                                  \
        fixedReal<__VA_ARGS__, 0>, fixedReal<__VA_ARGS__, 1>, fixedReal<__VA_ARGS__, 2>, fixedReal<__VA_ARGS__, 3>,    \
            fixedReal<__VA_ARGS__, 4>, fixedReal<__VA_ARGS__, 5>,                                                      \
    }
#define ZVPS_FIXED(...)                                                                                                \
    { ZVPS_ORDERS(__VA_ARGS__, false), ZVPS_ORDERS(__VA_ARGS__, true) }
#define ZVPS_FIXED_LAYOUTS(...)                                                                                        \
    { ZVPS_FIXED(__VA_ARGS__, kFftPerm), ZVPS_FIXED(__VA_ARGS__, kFftPack), ZVPS_FIXED(__VA_ARGS__, kFftCcs) }
#define ZVPS_LAYOUTS(...)                                                                                              \
    { generalReal<__VA_ARGS__, kFftPerm>, generalReal<__VA_ARGS__, kFftPack>, generalReal<__VA_ARGS__, kFftCcs> }
#define ZVPS_REAL_FFT_KERNELS(T)                                                                                       \
    {                                                                                                                  \
        {ZVPS_FIXED_LAYOUTS(T, kFftForward), ZVPS_FIXED_LAYOUTS(T, kFftInverse)},                                      \
            {ZVPS_LAYOUTS(T, kFftForward), ZVPS_LAYOUTS(T, kFftInverse)},                                              \
    }

extern const RealFftKernels<float> realFft32fKernels;
const RealFftKernels<float> realFft32fKernels = ZVPS_REAL_FFT_KERNELS(float);
extern const RealFftKernels<double> realFft64fKernels;
const RealFftKernels<double> realFft64fKernels = ZVPS_REAL_FFT_KERNELS(double);

} // namespace zvps::ZVPS_LEVEL
