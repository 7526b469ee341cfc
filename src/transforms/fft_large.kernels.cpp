#include "transforms/fft_large.hpp"

namespace zvps::ZVPS_LEVEL {

template <class T, FftDirection direction>
void largeComplexFft(const T* src, T* dst, T factor, const LargeFftCall<T>& call) {
    constexpr bool kInverse = direction == kFftInverse;
    transformLarge(PairData<const T, kInverse>{src}, PairData<T, kInverse>{dst}, src == dst, factor, call);
}

template <class T, FftDirection direction>
void largeSplitFft(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor, const LargeFftCall<T>& call) {
    const bool isInPlace = srcRe == dstRe || srcIm == dstIm;
    if constexpr (direction == kFftForward) {
        transformLarge(SplitData<const T>{srcRe, srcIm}, SplitData<T>{dstRe, dstIm}, isInPlace, factor, call);
    } else {
        transformLarge(SplitData<const T>{srcIm, srcRe}, SplitData<T>{dstIm, dstRe}, isInPlace, factor, call);
    }
}

// Up to this number of bytes parting bins twice, where they are read, takes less time than a trip of its own.
constexpr size_t kMostPartedBytes = size_t{2} << 20;

bool partedFft(const Spectrum<const float>& src, float* dst, float factor, const float* joining,
               const LargeFftCall<float>& call) {
    const LargeFft<float> fft(call.tables, call.order);
    const size_t m = fft.n1 * fft.n2;
    if (2 * sizeof(float) * m > kMostPartedBytes || src.values == dst) return false;
    constexpr size_t L = LargeFft<float>::L;
    constexpr size_t kRest = 2 * (L - 1);
    float first[2 * L] = {src.values[0]};
    float last[2 * L] = {};
    __builtin_memcpy(first + 2, src.pair(1), kRest * sizeof(float));
    __builtin_memcpy(last, src.pair(m - L + 1), kRest * sizeof(float));
    last[kRest] = src.values[src.last];
    transformThroughResults(fft, PartedData<float>{src, m, joining, first, last}, PairData<float, true>{dst}, factor,
                            call);
    return true;
}

#define ZVPS_LARGE_FFT(T, direction)                                                                                   \
    template void largeComplexFft<T, direction>(const T*, T*, T, const LargeFftCall<T>&);                              \
    template void largeSplitFft<T, direction>(const T*, const T*, T*, T*, T, const LargeFftCall<T>&);
ZVPS_LARGE_FFT(float, kFftForward)
ZVPS_LARGE_FFT(float, kFftInverse)
ZVPS_LARGE_FFT(double, kFftForward)
ZVPS_LARGE_FFT(double, kFftInverse)
#undef ZVPS_LARGE_FFT

} // namespace zvps::ZVPS_LEVEL
