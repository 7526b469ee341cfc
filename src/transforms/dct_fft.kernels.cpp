#include "transforms/dct_fft.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class T>
const FftSpec<T>& fftOf(const DctSpec<T>& spec) {
    return *static_cast<const FftSpec<T>*>(spec.inner);
}

// An order that takes two passes; in the inverse to v.
template <int order, DctDirection direction, class T>
HWY_NOINLINE void runShort(const T* src, T* dst, const DctSpec<T>& spec) {
    constexpr RealFftPlan plan = realFftPlan<T>(order);
    constexpr size_t N = size_t{1} << order;
    const FftSpec<T>& fft = fftOf(spec);
    const T* const endTables = fft.twiddles + realFftTables<T>(order).ends;
    alignas(kVectorBytes) T ends[2 * plan.columns];
    if constexpr (direction == kDctForward) {
        const DctBins<T, plan.rows> bins(dst, N, spec.twiddles, ends);
        shortRealFft<plan.rows, plan.columns>(DctSamples<T>{src, N}, bins, T{1}, fft.twiddles, endTables);
        turnEnds(bins);
    } else {
        const DctBins<const T, plan.rows> bins(src, N, spec.twiddles, ends);
        turnEndsBack(bins);
        shortInverseRealFft<plan.rows, plan.columns>(bins, dst, T{1}, fft.twiddles, endTables);
    }
}

// One that takes more.
template <size_t kRows, DctDirection direction, class T>
HWY_NOINLINE void runLong(const T* src, T* dst, const DctSpec<T>& spec) {
    constexpr size_t kMost = size_t{1} << kLastFftDct[direction];
    alignas(kVectorBytes) T work[kMost];
    alignas(kVectorBytes) T halves[2 * kMost / kRows];
    const FftSpec<T>& fft = fftOf(spec);
    const auto n = static_cast<size_t>(spec.length);
    if constexpr (direction == kDctForward) {
        const DctBins<T, kRows> bins(dst, n, spec.twiddles, work);
        longRealFft<kRows>(fft.order, DctSamples<T>{src, n}, bins, T{1}, fft.twiddles, work, halves);
    } else {
        const DctBins<const T, kRows> bins(src, n, spec.twiddles, work);
        longInverseRealFft<kRows>(fft.order, bins, dst, T{1}, fft.twiddles, work, halves);
    }
}

template <DctDirection direction, class T>
HWY_INLINE void runFft(const T* src, T* dst, const DctSpec<T>& spec) {
    const int order = fftOf(spec).order;
    switch (order) {
    case 6:
        return runShort<6, direction>(src, dst, spec);
    case 7:
        return runShort<7, direction>(src, dst, spec);
    case 8:
        return runShort<8, direction>(src, dst, spec);
    case 9:
        return runShort<9, direction>(src, dst, spec);
    }
    constexpr size_t kRows = realFftPlan<T>(10).rows;
    static_assert(realFftPlan<T>(kLastFftDct[direction]).rows == kRows);
    runLong<kRows, direction>(src, dst, spec);
}

template <class T>
void forward(const T* src, T* dst, const DctSpec<T>& spec, T*) {
    runFft<kDctForward>(src, dst, spec);
}
template <class T>
void inverse(const T* src, T* dst, const DctSpec<T>& spec, T* values) {
    runFft<kDctInverse>(src, values, spec);
    fromDftOrder(values, dst, static_cast<size_t>(spec.length));
}

} // namespace

extern const FftDctKernels<float> fftDct32fKernels;
const FftDctKernels<float> fftDct32fKernels = {{forward<float>, inverse<float>}};
extern const FftDctKernels<double> fftDct64fKernels;
const FftDctKernels<double> fftDct64fKernels = {{forward<double>, inverse<double>}};

} // namespace zvps::ZVPS_LEVEL
