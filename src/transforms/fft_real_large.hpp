// Real transforms longer than fft_real.hpp's: complex ones of half the length, and a pass that joins or parts the bins.
#pragma once

#include "transforms/fft_large_call.hpp"
#include "transforms/fft_real.hpp"

namespace zvps::ZVPS_LEVEL {

// With M pairs z[n] = x[2n] + i x[2n + 1], Z their transform and w = exp(-2 pi i / N), the bins k and M - k are
//     X[k] = (Z[k] + conj Z[M - k]) / 2 - i w^k (Z[k] - conj Z[M - k]) / 2
// and the inverse is
//     Z[k] = X[k] + conj X[M - k] + i w^-k (X[k] - conj X[M - k]).

template <class T>
struct BinBlock {
    static constexpr size_t L = kVectorBytes / sizeof(T);
    using D = Lanes<T, L>;
    using V = Vec<T, L>;

    // Pairs k, k + 1, ... from p, or M - k, M - k - 1, ... which end at p.
    static HWY_INLINE Parts<V> load(const T* p) {
        const D d;
        const V a = hn::LoadU(d, p);
        const V b = hn::LoadU(d, p + L);
        return {pickLanes<PartOfPairs<0>>(d, a, b), pickLanes<PartOfPairs<1>>(d, a, b)};
    }
    static HWY_INLINE Parts<V> loadBackward(const T* p) {
        const Parts<V> x = load(p - 2 * (L - 1));
        return {hn::Reverse(D(), x.re), hn::Reverse(D(), x.im)};
    }
    static HWY_INLINE void store(V re, V im, T* p) {
        const D d;
        hn::StoreU(pickLanes<Interleaved<0>>(d, re, im), d, p);
        hn::StoreU(pickLanes<Interleaved<1>>(d, re, im), d, p + L);
    }
    static HWY_INLINE void storeBackward(V re, V im, T* p) {
        store(hn::Reverse(D(), re), hn::Reverse(D(), im), p - 2 * (L - 1));
    }

    // cos and sin of 2 pi (1 + i + lane) / N.
    static HWY_INLINE Parts<V> twiddles(const T* table, size_t i) {
        const D d;
        constexpr size_t C = kJoinedBins<T>;
        const T* const fine = table + i % C;
        const T* const coarse = table + 2 * C + 2 * (i / C);
        return rotatedBack(hn::LoadU(d, fine), hn::LoadU(d, fine + C), hn::Set(d, coarse[0]), hn::Set(d, coarse[1]));
    }
};

// Z at dst, to X in its place in the order of Perm; of CCS with its own places of bins 0 and M.
template <class T>
HWY_NOINLINE void joinBins(T* dst, bool isCcs, size_t m, const T* table) {
    using Block = BinBlock<T>;
    const typename Block::D d;
    const auto half = hn::Set(d, T{0.5});
    const T first = dst[0];
    const T second = dst[1];
    for (size_t i = 0; i < m / 2; i += Block::L) {
        T* const lower = dst + 2 * (i + 1);
        T* const upper = dst + 2 * (m - i - 1);
        const auto a = Block::load(lower);
        const auto b = Block::loadBackward(upper);
        const auto w = Block::twiddles(table, i);
        const auto turned = rotated(hn::Mul(half, hn::Sub(a.re, b.re)), hn::Mul(half, hn::Add(a.im, b.im)), w.re, w.im);
        const auto evenRe = hn::Mul(half, hn::Add(a.re, b.re));
        const auto evenIm = hn::Mul(half, hn::Sub(a.im, b.im));
        Block::store(hn::Add(evenRe, turned.im), hn::Sub(evenIm, turned.re), lower);
        Block::storeBackward(hn::Sub(evenRe, turned.im), hn::Neg(hn::Add(evenIm, turned.re)), upper);
    }
    dst[0] = first + second;
    dst[1] = isCcs ? T{0} : first - second;
    if (isCcs) {
        dst[2 * m] = first - second;
        dst[2 * m + 1] = 0;
    }
}

// The bins of a layout to Z; src may be dst where the pairs are in the same places.
template <class T>
HWY_NOINLINE void partBins(const Spectrum<const T>& src, T* dst, size_t m, const T* table) {
    using Block = BinBlock<T>;
    const T first = src.values[0];
    const T last = src.values[src.last];
    for (size_t i = 0; i < m / 2; i += Block::L) {
        const auto a = Block::load(src.pair(i + 1));
        const auto b = Block::loadBackward(src.pair(m - i - 1));
        const auto w = Block::twiddles(table, i);
        const auto turned = rotatedBack(hn::Sub(a.re, b.re), hn::Add(a.im, b.im), w.re, w.im);
        const auto evenRe = hn::Add(a.re, b.re);
        const auto evenIm = hn::Sub(a.im, b.im);
        Block::store(hn::Sub(evenRe, turned.im), hn::Add(evenIm, turned.re), dst + 2 * (i + 1));
        Block::storeBackward(hn::Add(evenRe, turned.im), hn::Sub(turned.re, evenIm), dst + 2 * (m - i - 1));
    }
    dst[0] = first + last;
    dst[1] = first - last;
}

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
    if (layout == kFftPack && src == dst) {
        packToPerm(dst, n);
        layout = kFftPerm;
    }
    partBins(Spectrum<const T>(src, layout, n), dst, n / 2, spec.twiddles);
    largeComplexFft<T, kFftInverse>(dst, dst, factor, halfCall(spec, work));
}

} // namespace zvps::ZVPS_LEVEL
