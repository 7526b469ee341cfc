#include "transforms/fft_real_large.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// The tables of the orders without a specification's.
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

// An order from 6 on that takes two passes.
template <int order, class From, class To, class T>
HWY_NOINLINE void runShort(From src, To dst, T factor, const FftSpec<T>& spec) {
    constexpr RealFftPlan plan = realFftPlan<T>(order);
    if constexpr (std::is_same_v<To, T*>) {
        shortInverseRealFft<plan.rows, plan.columns>(src, dst, factor, spec.twiddles, spec.tables[0]);
    } else {
        shortRealFft<plan.rows, plan.columns>(src, dst, factor, spec.twiddles, spec.tables[0]);
    }
}

template <size_t rows, class From, class To, class T>
void runLongOf(From src, To dst, T factor, const RealFftPlan& plan, const FftSpec<T>& spec, T* work, T* ends) {
    if constexpr (std::is_same_v<To, T*>) {
        longInverseRealFft<rows>(src, dst, factor, plan, spec, work, ends);
    } else {
        longRealFft<rows>(src, dst, factor, plan, spec, work, ends);
    }
}

template <class From, class To, class T>
HWY_INLINE void runLong(From src, To dst, T factor, const FftSpec<T>& spec, T* work, T* ends) {
    const RealFftPlan plan = realFftPlan<T>(spec.order);
    if (sizeof(T) == 8 && plan.rows == 16) {
        runLongOf<16>(src, dst, factor, plan, spec, work, ends);
    } else {
        runLongOf<32>(src, dst, factor, plan, spec, work, ends);
    }
}

// Up to so many values a transform works on the stack, which is aligned better than a caller's buffer.
template <class T>
inline constexpr size_t kStackValues = 65536 / sizeof(T);

template <class From, class To, class T>
HWY_NOINLINE void runOnStack(From src, To dst, T factor, const FftSpec<T>& spec) {
    alignas(kVectorBytes) T work[kStackValues<T>];
    alignas(kVectorBytes) T ends[kStackValues<T> / 8 + 2];
    runLong(src, dst, factor, spec, work, ends);
}
template <class From, class To, class T>
HWY_NOINLINE void runInBuffer(From src, To dst, T factor, const FftSpec<T>& spec, T* work) {
    alignas(kVectorBytes) T ends[2 * kMostRealColumns + 2];
    runLong(src, dst, factor, spec, work, ends);
}

template <class From, class To, class T>
void realFftOf(From src, To dst, T factor, const FftSpec<T>& spec, T* work) {
    switch (spec.order) {
    case 6:
        return runShort<6>(src, dst, factor, spec);
    case 7:
        return runShort<7>(src, dst, factor, spec);
    case 8:
        return runShort<8>(src, dst, factor, spec);
    case 9:
        return runShort<9>(src, dst, factor, spec);
    }
    if (size_t{1} << spec.order <= kStackValues<T>) {
        runOnStack(src, dst, factor, spec);
    } else {
        runInBuffer(src, dst, factor, spec, work);
    }
}

template <class T, FftDirection direction, RealFftLayout layout>
ZvpStatus realFft(const T* src, T* dst, T factor, const FftSpec<T>& spec, T* work) {
    const size_t n = size_t{1} << spec.order;
    if (spec.order > kMostRealOrder) {
        if constexpr (direction == kFftForward) {
            largeRealFft(src, dst, layout, factor, spec, work);
        } else {
            largeInverseRealFft(src, dst, layout, factor, spec, work);
        }
    } else if constexpr (direction == kFftForward) {
        realFftOf(src, Spectrum<T>(dst, layout, n), factor, spec, work);
    } else {
        realFftOf(Spectrum<const T>(src, layout, n), dst, factor, spec, work);
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
