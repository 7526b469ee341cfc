// DCTs of powers of two: real FFTs that read their samples in the order of the DCT and turn their bins as they store
// them, or turn them as they load them.
#pragma once

#include "transforms/dct.hpp"
#include "transforms/fft_real.hpp"

namespace zvps::ZVPS_LEVEL {

// v[i] of x, where v[i] = x[2 i] and v[n - 1 - i] = x[2 i + 1].
template <class T>
struct DctSamples {
    const T* x;
    size_t n;
};

template <bool isUpper, class T, size_t L>
HWY_INLINE Vec<T, L> loadSamples(Lanes<T, L> d, DctSamples<T> src, size_t i) {
    const T* const p = src.x + (isUpper ? 2 * (src.n - i - L) : 2 * i);
    const auto a = hn::LoadU(d, p);
    const auto b = hn::LoadU(d, p + L);
    if constexpr (isUpper) {
        return pickLanes<ReversedPart>(d, a, b);
    } else {
        return pickLanes<PartOfPairs<0>>(d, a, b);
    }
}

// The spectrum of v by what it is made of or gives: X. The ends, the bins k kRows / 2, go through an array that holds
// them in Perm layout.
template <class T, size_t kRows>
struct DctBins {
    using Value = std::remove_const_t<T>;

    T* x;
    size_t n;
    const Value* cosines;
    const Value* sines;
    Value* values;
    static constexpr size_t last = 1;

    HWY_INLINE DctBins(T* p, size_t length, const Value* twiddles, Value* ends)
        : x(p), n(length), cosines(twiddles), sines(twiddles + dctBins(length)), values(ends) {}

    HWY_INLINE Value* pair(size_t k) const { return values + 2 * (k / (kRows / 2)); }

    HWY_INLINE void storeEnds(Value first, Value middle) const {
        values[0] = first;
        values[last] = middle;
    }
};

// The places of the bins k, k + 1, ... of a group, or of their mirrors n - k, n - k - 1, ..., which are in the lower
// half if the bins are not.
template <size_t kRows, bool kIsUpper>
HWY_INLINE size_t lowerBin(size_t columns, size_t k2, size_t group, size_t lanes) {
    return kIsUpper ? kRows * (columns - k2) - (group + 1) * lanes + 1 : kRows * k2 + group * lanes;
}

template <size_t kRows, bool kIsUpper, class T, class V>
HWY_INLINE void storeBins(const DctBins<T, kRows>& dst, size_t columns, size_t k2, size_t group, V re, V im) {
    using Row = RowLanes<T, kRows>;
    constexpr size_t L = Row::kLanes;
    const typename Row::D d;
    const size_t k = lowerBin<kRows, kIsUpper>(columns, k2, group, L);
    const V c = hn::LoadU(d, dst.cosines + k);
    const V s = hn::LoadU(d, dst.sines + k);
    if constexpr (kIsUpper) {
        const auto turned = reflected(hn::Reverse(d, re), hn::Neg(hn::Reverse(d, im)), c, s);
        hn::StoreU(turned.re, d, dst.x + k);
        hn::StoreU(hn::Reverse(d, turned.im), d, dst.x + dst.n - k - L + 1);
    } else {
        const auto turned = reflected(re, im, c, s);
        hn::StoreU(turned.re, d, dst.x + k);
        const V mirrored = hn::Reverse(d, turned.im);
        if (HWY_UNLIKELY(k == 0)) {
            storeFirst(d, mirrored, dst.x + dst.n - L + 1, L - 1);
        } else {
            hn::StoreU(mirrored, d, dst.x + dst.n - k - L + 1);
        }
    }
}

// Parts exchanged, as the passes of the inverse want them.
template <size_t kRows, bool kIsUpper, class T>
HWY_INLINE auto loadBins(const DctBins<const T, kRows>& src, size_t columns, size_t k2, size_t group) {
    using Row = RowLanes<T, kRows>;
    constexpr size_t L = Row::kLanes;
    using V = Vec<T, L>;
    const typename Row::D d;
    const size_t k = lowerBin<kRows, kIsUpper>(columns, k2, group, L);
    const T* const mirror = src.x + src.n - k - L + 1;
    const V lower = hn::LoadU(d, src.x + k);
    const V upper = !kIsUpper && HWY_UNLIKELY(k == 0) ? loadFirst(d, mirror, L - 1) : hn::LoadU(d, mirror);
    const auto turned =
        reflected(lower, hn::Reverse(d, upper), hn::LoadU(d, src.cosines + k), hn::LoadU(d, src.sines + k));
    if constexpr (kIsUpper) {
        return ComplexVec<T, L>{hn::Neg(hn::Reverse(d, turned.im)), hn::Reverse(d, turned.re)};
    } else {
        return ComplexVec<T, L>{turned.im, turned.re};
    }
}

// The ends between their pairs and X.
template <size_t kRows, class T>
HWY_INLINE void turnEnds(const DctBins<T, kRows>& bins) {
    const size_t n = bins.n;
    for (size_t k = kRows / 2; k < n / 2; k += kRows / 2) {
        const T* const p = bins.pair(k);
        bins.x[k] = p[0] * bins.cosines[k] + p[1] * bins.sines[k];
        bins.x[n - k] = p[0] * bins.sines[k] - p[1] * bins.cosines[k];
    }
    bins.x[0] = bins.values[0] * bins.cosines[0];
    bins.x[n / 2] = bins.values[bins.last] * bins.cosines[n / 2];
}
template <size_t kRows, class T>
HWY_INLINE void turnEndsBack(const DctBins<const T, kRows>& bins) {
    const size_t n = bins.n;
    for (size_t k = kRows / 2; k < n / 2; k += kRows / 2) {
        T* const p = bins.pair(k);
        p[0] = bins.x[k] * bins.cosines[k] + bins.x[n - k] * bins.sines[k];
        p[1] = bins.x[k] * bins.sines[k] - bins.x[n - k] * bins.cosines[k];
    }
    bins.storeEnds(bins.x[0] * bins.cosines[0], bins.x[n / 2] * bins.cosines[n / 2]);
}

// Those of long transforms, whose array is the one that the bins name.
template <size_t kRows, class T>
HWY_INLINE void storeJoinedEnds(const DctBins<T, kRows>& dst, const T*, size_t) {
    turnEnds(dst);
}
template <size_t kRows, class T>
HWY_INLINE void loadJoinedEnds(const DctBins<const T, kRows>& src, T*, size_t) {
    turnEndsBack(src);
}

} // namespace zvps::ZVPS_LEVEL
