#include "transforms/dct_fft.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// Up to so many values a transform works on the stack.
template <class T>
inline constexpr size_t kStackValues = 65536 / sizeof(T);

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
    alignas(kVectorBytes) T ends[2 * plan.columns + 2];
    if constexpr (direction == kDctForward) {
        const DctBins<T, plan.rows> bins(dst, N, spec.twiddles, ends);
        shortRealFft<plan.rows, plan.columns>(DctSamples<T>{src, N}, bins, T{1}, fft.twiddles, fft.tables[0]);
        turnEnds(bins);
    } else {
        const DctBins<const T, plan.rows> bins(src, N, spec.twiddles, ends);
        turnEndsBack(bins);
        shortInverseRealFft<plan.rows, plan.columns>(bins, dst, T{1}, fft.twiddles, fft.tables[0]);
    }
}

// One that takes more, in `rows` and two arrays for the ends.
template <size_t kRows, DctDirection direction, class T>
void runLongOf(const T* src, T* dst, const DctSpec<T>& spec, const RealFftPlan& plan, T* rows, T* ends, T* pairs) {
    const FftSpec<T>& fft = fftOf(spec);
    const auto n = static_cast<size_t>(spec.length);
    if constexpr (direction == kDctForward) {
        const DctBins<T, kRows> bins(dst, n, spec.twiddles, pairs);
        longRealFft<kRows>(DctSamples<T>{src, n}, bins, T{1}, plan, fft, rows, ends);
        turnEnds(bins);
    } else {
        const DctBins<const T, kRows> bins(src, n, spec.twiddles, pairs);
        turnEndsBack(bins);
        longInverseRealFft<kRows>(bins, dst, T{1}, plan, fft, rows, ends);
    }
}

template <DctDirection direction, class T>
HWY_INLINE void runLong(const T* src, T* dst, const DctSpec<T>& spec, T* rows, T* ends, T* pairs) {
    const RealFftPlan plan = realFftPlan<T>(fftOf(spec).order);
    if (sizeof(T) == 8 && plan.rows == 16) {
        runLongOf<16, direction>(src, dst, spec, plan, rows, ends, pairs);
    } else {
        runLongOf<32, direction>(src, dst, spec, plan, rows, ends, pairs);
    }
}

template <DctDirection direction, class T>
HWY_NOINLINE void runOnStack(const T* src, T* dst, const DctSpec<T>& spec) {
    alignas(kVectorBytes) T rows[kStackValues<T>];
    alignas(kVectorBytes) T ends[kStackValues<T> / 8 + 2];
    alignas(kVectorBytes) T pairs[kStackValues<T> / 8 + 2];
    runLong<direction>(src, dst, spec, rows, ends, pairs);
}
template <DctDirection direction, class T>
HWY_NOINLINE void runInBuffer(const T* src, T* dst, const DctSpec<T>& spec, T* rows) {
    alignas(kVectorBytes) T ends[2 * kMostRealColumns + 2];
    alignas(kVectorBytes) T pairs[2 * kMostRealColumns + 2];
    runLong<direction>(src, dst, spec, rows, ends, pairs);
}

template <DctDirection direction, class T>
HWY_INLINE void runFft(const T* src, T* dst, const DctSpec<T>& spec, T* rows) {
    switch (fftOf(spec).order) {
    case 6:
        return runShort<6, direction>(src, dst, spec);
    case 7:
        return runShort<7, direction>(src, dst, spec);
    case 8:
        return runShort<8, direction>(src, dst, spec);
    case 9:
        return runShort<9, direction>(src, dst, spec);
    }
    if (static_cast<size_t>(spec.length) <= kStackValues<T>) {
        runOnStack<direction>(src, dst, spec);
    } else {
        runInBuffer<direction>(src, dst, spec, rows);
    }
}

template <class T>
void forward(const T* src, T* dst, const DctSpec<T>& spec, T*, T* rows) {
    runFft<kDctForward>(src, dst, spec, rows);
}
template <class T>
void inverse(const T* src, T* dst, const DctSpec<T>& spec, T* values, T* rows) {
    runFft<kDctInverse>(src, values, spec, rows);
    fromDftOrder(values, dst, static_cast<size_t>(spec.length));
}

} // namespace

extern const FftDctKernels<float> fftDct32fKernels;
const FftDctKernels<float> fftDct32fKernels = {{forward<float>, inverse<float>}};
extern const FftDctKernels<double> fftDct64fKernels;
const FftDctKernels<double> fftDct64fKernels = {{forward<double>, inverse<double>}};

} // namespace zvps::ZVPS_LEVEL
