// Real transforms as complex ones of half the length, whose bins are joined, or parted before the inverse one.
#pragma once

#include "transforms/fft_real.hpp"

namespace zvps::ZVPS_LEVEL {

// With M pairs z[n] = x[2n] + i x[2n + 1], Z their transform and w = exp(-2 pi i / N), the bins k and M - k are
//     X[k] = (Z[k] + conj Z[M - k]) / 2 - i w^k (Z[k] - conj Z[M - k]) / 2
// and the inverse is
//     Z[k] = X[k] + conj X[M - k] + i w^-k (X[k] - conj X[M - k]).

struct Later {
    static constexpr size_t at(size_t j, size_t) { return j + 1; }
};

template <class T, size_t kLanes = kVectorBytes / sizeof(T)>
struct BinBlock {
    static constexpr size_t L = kLanes;
    using D = Lanes<T, L>;
    using V = Vec<T, L>;

    // Pairs k, k + 1, ... from p, or M - k, M - k - 1, ... which end at p.
    static HWY_INLINE Parts<V> load(const T* p) {
        const D d;
        const V a = hn::LoadU(d, p);
        const V b = hn::LoadU(d, p + L);
        return {pickLanes<PartOfPairs<0>>(d, a, b), pickLanes<PartOfPairs<1>>(d, a, b)};
    }
    static HWY_INLINE Parts<V> backward(Parts<V> x) { return {hn::Reverse(D(), x.re), hn::Reverse(D(), x.im)}; }
    static HWY_INLINE Parts<V> loadBackward(const T* p) { return backward(load(p - 2 * (L - 1))); }
    static HWY_INLINE void store(V re, V im, T* p) {
        const D d;
        hn::StoreU(pickLanes<Interleaved<0>>(d, re, im), d, p);
        hn::StoreU(pickLanes<Interleaved<1>>(d, re, im), d, p + L);
    }
    static HWY_INLINE void storeBackward(V re, V im, T* p) {
        store(hn::Reverse(D(), re), hn::Reverse(D(), im), p - 2 * (L - 1));
    }

    // cos and sin of 2 pi (k + lane) / N, k a multiple of the lanes.
    static HWY_INLINE Parts<V> twiddles(const T* table, size_t k) {
        const D d;
        constexpr size_t C = kJoinedBins<T>;
        const T* const fine = table + k % C;
        const T* const coarse = table + 4 * C + 2 * (k / C);
        const auto turned =
            rotatedABit(hn::Set(d, coarse[1]), hn::Set(d, coarse[0]), hn::LoadU(d, fine), hn::LoadU(d, fine + C));
        return {turned.im, turned.re};
    }
    // Of the lanes one further on, those of the vector behind w included.
    static HWY_INLINE Parts<V> later(Parts<V> w, Parts<V> next) {
        return {pickLanes<Later>(D(), w.re, next.re), pickLanes<Later>(D(), w.im, next.im)};
    }

    // Z[k], Z[k + 1], ..., where a are X[k], X[k + 1], ... and b X[M - k], X[M - k - 1], ...; upper are
    // Z[M - k], Z[M - k - 1], ...
    struct Parted {
        Parts<V> lower;
        Parts<V> upper;
    };
    static HWY_INLINE Parted parted(Parts<V> a, Parts<V> b, Parts<V> w) {
        const auto turned = rotatedBack(hn::Sub(a.re, b.re), hn::Add(a.im, b.im), w.re, w.im);
        const auto evenRe = hn::Add(a.re, b.re);
        const auto evenIm = hn::Sub(a.im, b.im);
        return {{hn::Sub(evenRe, turned.im), hn::Add(evenIm, turned.re)},
                {hn::Add(evenRe, turned.im), hn::Sub(turned.re, evenIm)}};
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
    constexpr size_t C = kJoinedBins<T>;
    for (size_t i = 0; i < m / 2; i += Block::L) {
        T* const lower = dst + 2 * (i + 1);
        T* const upper = dst + 2 * (m - i - 1);
        const auto a = Block::load(lower);
        const auto b = Block::loadBackward(upper);
        const T* const fine = table + 2 * C + i % C;
        const T* const coarse = table + 4 * C + 2 * (i / C);
        const auto turned =
            rotatedTwice(hn::Mul(half, hn::Sub(a.re, b.re)), hn::Mul(half, hn::Add(a.im, b.im)), hn::Set(d, coarse[0]),
                         hn::Set(d, coarse[1]), hn::LoadU(d, fine), hn::LoadU(d, fine + C));
        const auto evenRe = hn::Mul(half, hn::Add(a.re, b.re));
        const auto evenIm = hn::Mul(half, hn::Sub(a.im, b.im));
        Block::store(hn::Add(evenRe, turned.im), hn::Sub(evenIm, turned.re), lower);
        Block::storeBackward(hn::Sub(evenRe, turned.im), hn::Neg(hn::Add(evenIm, turned.re)), upper);
    }
    Spectrum<T>(dst, isCcs ? kFftCcs : kFftPerm, 2 * m).storeEnds(first + second, first - second);
}

// The bins of a layout to Z; src may be dst where the pairs are in the same places.
template <class T>
HWY_NOINLINE void partBins(const Spectrum<const T>& src, T* dst, size_t m, const T* table) {
    using Block = BinBlock<T>;
    constexpr size_t L = Block::L;
    const T first = src.values[0];
    const T last = src.values[src.last];
    auto twiddles = Block::twiddles(table, 0);
    for (size_t i = 0; i < m / 2; i += L) {
        const auto lower = Block::load(src.pair(i + 1));
        const auto upper = Block::load(src.pair(m - i - L));
        const auto next = Block::twiddles(table, i + L);
        const auto z = Block::parted(lower, Block::backward(upper), Block::later(twiddles, next));
        twiddles = next;
        Block::store(z.lower.re, z.lower.im, dst + 2 * (i + 1));
        if constexpr (sizeof(T) == 4) {
            // The same bits as PartedData's.
            const auto mirrored = Block::parted(upper, Block::backward(lower), Block::twiddles(table, m - i - L)).lower;
            Block::store(mirrored.re, mirrored.im, dst + 2 * (m - i - L));
        } else {
            Block::storeBackward(z.upper.re, z.upper.im, dst + 2 * (m - i - 1));
        }
    }
    dst[0] = first + last;
    dst[1] = first - last;
}

// A spectrum as the source of an inverse complex transform: the parts of Z exchanged.
template <class T>
struct PartedData {
    Spectrum<const T> bins;
    size_t m;
    const T* table;
    // The bins 0 .. L-1 and M-L+1 .. M as pairs.
    const T* first;
    const T* last;

    template <size_t L>
    HWY_INLINE auto load(size_t k) const {
        using Block = BinBlock<T, L>;
        const auto a = Block::load(k == 0 ? first : bins.pair(k));
        const auto b = Block::loadBackward(k == 0 ? last + 2 * (L - 1) : bins.pair(m - k));
        const auto z = Block::parted(a, b, Block::twiddles(table, k)).lower;
        return ComplexVec<T, L>{z.im, z.re};
    }
    // None: spectra that are parted so never are beyond the caches.
    template <class Step>
    HWY_INLINE void forBytes(size_t, size_t, Step) const {}
};

} // namespace zvps::ZVPS_LEVEL
