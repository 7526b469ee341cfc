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

#define ZVPS_LARGE_FFT(T, direction)                                                                                   \
    template void largeComplexFft<T, direction>(const T*, T*, T, const LargeFftCall<T>&);                              \
    template void largeSplitFft<T, direction>(const T*, const T*, T*, T*, T, const LargeFftCall<T>&);
ZVPS_LARGE_FFT(float, kFftForward)
ZVPS_LARGE_FFT(float, kFftInverse)
ZVPS_LARGE_FFT(double, kFftForward)
ZVPS_LARGE_FFT(double, kFftInverse)
#undef ZVPS_LARGE_FFT

} // namespace zvps::ZVPS_LEVEL
