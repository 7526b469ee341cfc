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

template <class T>
bool partedFft(const Spectrum<const T>& src, T* dst, T factor, const T* joining, const LargeFftCall<T>& call) {
    constexpr size_t L = LargeFft<T>::L;
    constexpr size_t kRest = 2 * (L - 1);
    const size_t m = size_t{1} << call.order;
    T first[2 * L] = {src.values[0]};
    T last[2 * L];
    __builtin_memcpy(first + 2, src.pair(1), kRest * sizeof(T));
    __builtin_memcpy(last, src.pair(m - L + 1), kRest * sizeof(T));
    last[kRest] = src.values[src.last];
    last[kRest + 1] = 0;
    return transformParted(PartedData<T>{src, m, joining, first, last}, PairData<T, true>{dst}, src.values == dst,
                           factor, call);
}

#define ZVPS_LARGE_FFT(T, direction)                                                                                   \
    template void largeComplexFft<T, direction>(const T*, T*, T, const LargeFftCall<T>&);                              \
    template void largeSplitFft<T, direction>(const T*, const T*, T*, T*, T, const LargeFftCall<T>&);
ZVPS_LARGE_FFT(float, kFftForward)
ZVPS_LARGE_FFT(float, kFftInverse)
ZVPS_LARGE_FFT(double, kFftForward)
ZVPS_LARGE_FFT(double, kFftInverse)
#undef ZVPS_LARGE_FFT

template bool partedFft(const Spectrum<const float>&, float*, float, const float*, const LargeFftCall<float>&);
template bool partedFft(const Spectrum<const double>&, double*, double, const double*, const LargeFftCall<double>&);

} // namespace zvps::ZVPS_LEVEL
