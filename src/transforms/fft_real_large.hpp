// Real transforms longer than fft_real.hpp's: complex ones of half the length.
#pragma once

#include "transforms/fft_joining.hpp"
#include "transforms/fft_large_call.hpp"

namespace zvps::ZVPS_LEVEL {

template <class T>
HWY_NOINLINE void permToPack(T* p, size_t n) {
    const T last = p[1];
    __builtin_memmove(p + 1, p + 2, (n - 2) * sizeof(T));
    p[n - 1] = last;
}
template <class T>
HWY_NOINLINE void packToPerm(T* p, size_t n) {
    const T last = p[n - 1];
    __builtin_memmove(p + 2, p + 1, (n - 2) * sizeof(T));
    p[1] = last;
}

template <class T>
LargeFftCall<T> halfCall(const FftSpec<T>& spec, T* work) {
    return {spec.order - 1, spec.tables[0], work, static_cast<size_t>(spec.workSize) / sizeof(T)};
}

template <class T>
void largeRealFft(const T* src, T* dst, RealFftLayout layout, T factor, const FftSpec<T>& spec, T* work) {
    const size_t n = size_t{1} << spec.order;
    largeComplexFft<T, kFftForward>(src, dst, factor, halfCall(spec, work));
    joinBins(dst, layout == kFftCcs, n / 2, spec.twiddles);
    if (layout == kFftPack) permToPack(dst, n);
}

template <class T>
void largeInverseRealFft(const T* src, T* dst, RealFftLayout layout, T factor, const FftSpec<T>& spec, T* work) {
    const size_t n = size_t{1} << spec.order;
    const Spectrum<const T> bins(src, layout, n);
    const LargeFftCall<T> call = halfCall(spec, work);
    if constexpr (sizeof(T) == 4) {
        if (partedFft(bins, dst, factor, spec.twiddles, call)) return;
    }
    if (layout == kFftPack && src == dst) {
        packToPerm(dst, n);
        partBins(Spectrum<const T>(dst, kFftPerm, n), dst, n / 2, spec.twiddles);
    } else {
        partBins(bins, dst, n / 2, spec.twiddles);
    }
    largeComplexFft<T, kFftInverse>(dst, dst, factor, call);
}

} // namespace zvps::ZVPS_LEVEL
