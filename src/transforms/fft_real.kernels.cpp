#include "transforms/fft_real_large.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// The tables of the orders whose object has none.
template <class T, int order>
struct FixedTables {
    static constexpr RealFftPlan kPlan = realFftPlan<T>(order);
    static constexpr size_t kBlock = realFftBlock<T>(kPlan);

    alignas(64) T columns[realFftTables(kPlan).columns];
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
template <class T, int order>
HWY_NOINLINE void runFixed(const T* src, T* dst, RealFftLayout layout, T factor) {
    constexpr RealFftPlan plan = realFftPlan<T>(order);
    constexpr const FixedTables<T, order>& tables = kFixedTables<T, order>;
    shortRealFft<plan.rows, plan.columns>(src, Spectrum<T>(dst, layout, size_t{1} << order), factor, tables.columns,
                                          tables.ends);
}
template <class T, int order>
HWY_NOINLINE void runFixedInverse(const T* src, T* dst, RealFftLayout layout, T factor) {
    constexpr RealFftPlan plan = realFftPlan<T>(order);
    constexpr const FixedTables<T, order>& tables = kFixedTables<T, order>;
    shortInverseRealFft<plan.rows, plan.columns>(Spectrum<const T>(src, layout, size_t{1} << order), dst, factor,
                                                 tables.columns, tables.ends);
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
        if constexpr (direction == kFftForward) {
            runFixed<T, order>(src, dst, layout, factor);
        } else {
            runFixedInverse<T, order>(src, dst, layout, factor);
        }
    }
    return zvpStsOk;
}

// The spectrum is described where it is used: its description would be copied by vectors from single stores, which wait
// for each other.

// An order from 6 on that takes two passes.
template <int order, FftDirection direction, class T>
HWY_NOINLINE void runShort(const T* src, T* dst, RealFftLayout layout, T factor, const FftSpec<T>& spec) {
    constexpr RealFftPlan plan = realFftPlan<T>(order);
    constexpr size_t N = size_t{1} << order;
    if constexpr (direction == kFftForward) {
        shortRealFft<plan.rows, plan.columns>(src, Spectrum<T>(dst, layout, N), factor, spec.twiddles, spec.tables[0]);
    } else {
        shortInverseRealFft<plan.rows, plan.columns>(Spectrum<const T>(src, layout, N), dst, factor, spec.twiddles,
                                                     spec.tables[0]);
    }
}

template <size_t rows, FftDirection direction, class T>
void runLongOf(const T* src, T* dst, RealFftLayout layout, T factor, const RealFftPlan& plan, const FftSpec<T>& spec,
               T* work, T* ends) {
    const size_t n = size_t{1} << spec.order;
    if constexpr (direction == kFftForward) {
        longRealFft<rows>(src, Spectrum<T>(dst, layout, n), factor, plan, spec, work, ends);
    } else {
        longInverseRealFft<rows>(Spectrum<const T>(src, layout, n), dst, factor, plan, spec, work, ends);
    }
}

template <FftDirection direction, class T>
HWY_INLINE void runLong(const T* src, T* dst, RealFftLayout layout, T factor, const FftSpec<T>& spec, T* work,
                        T* ends) {
    const RealFftPlan plan = realFftPlan<T>(spec.order);
    if (sizeof(T) == 8 && plan.rows == 16) {
        runLongOf<16, direction>(src, dst, layout, factor, plan, spec, work, ends);
    } else {
        runLongOf<32, direction>(src, dst, layout, factor, plan, spec, work, ends);
    }
}

// Up to so many values a transform works on the stack, which is aligned better than a caller's buffer.
template <class T>
inline constexpr size_t kStackValues = 65536 / sizeof(T);

template <FftDirection direction, class T>
HWY_NOINLINE void runOnStack(const T* src, T* dst, RealFftLayout layout, T factor, const FftSpec<T>& spec) {
    alignas(kVectorBytes) T work[kStackValues<T>];
    alignas(kVectorBytes) T ends[kStackValues<T> / 8 + 2];
    runLong<direction>(src, dst, layout, factor, spec, work, ends);
}
template <FftDirection direction, class T>
HWY_NOINLINE void runInBuffer(const T* src, T* dst, RealFftLayout layout, T factor, const FftSpec<T>& spec, T* work) {
    alignas(kVectorBytes) T ends[2 * kMostRealColumns + 2];
    runLong<direction>(src, dst, layout, factor, spec, work, ends);
}

template <class T, FftDirection direction, RealFftLayout layout>
ZvpStatus realFft(const T* src, T* dst, T factor, const FftSpec<T>& spec, T* work) {
    switch (spec.order) {
    case 6:
        runShort<6, direction>(src, dst, layout, factor, spec);
        return zvpStsOk;
    case 7:
        runShort<7, direction>(src, dst, layout, factor, spec);
        return zvpStsOk;
    case 8:
        runShort<8, direction>(src, dst, layout, factor, spec);
        return zvpStsOk;
    case 9:
        runShort<9, direction>(src, dst, layout, factor, spec);
        return zvpStsOk;
    }
    if (size_t{1} << spec.order <= kStackValues<T>) {
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
    { realFft<__VA_ARGS__, kFftPerm>, realFft<__VA_ARGS__, kFftPack>, realFft<__VA_ARGS__, kFftCcs> }
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
