// Sums, moments and counts.
#pragma once

#include "stats/reduction.hpp"
#include "stats/totals.table.hpp"

namespace zvps::ZVPS_LEVEL {

template <class V, class R, class T>
R total(const T* src, size_t n) {
    constexpr size_t kParts = sizeof(R) / sizeof(V);
    using P = Part<T>;
    Total<V> op;
    addAll<kLanesOf<V>>(op, n * kParts, Values<P, V>{reinterpret_cast<const P*>(src)});
    return resultOf<R, V, kParts>(op.sums.template sum<kParts>());
}

// ---- 16-bit integers ----

struct Total16 {
    Partials<int32_t> sums;

    HWY_INLINE void add(size_t i, FullVec<int16_t> x) {
        sums.v[i] = hn::Add(sums.v[i], sumsOfProducts(x, hn::Set(FullLanes<int16_t>(), int16_t{1})));
    }
};

inline Zvp64s total16(const Zvp16s* src, size_t n) {
    int64_t sum = 0;
    forEachBlock(n, [&](size_t first, size_t count) {
        Total16 op;
        addAll<kLanesOf<int16_t>>(op, count, Values<int16_t>{src + first});
        sum += hn::GetLane(op.sums.sum());
    });
    return sum;
}

struct Total16Complex {
    Partials<int32_t> re;
    Partials<int32_t> im;

    HWY_INLINE void add(size_t i, FullVec<int16_t> x) {
        const FullLanes<int32_t> d;
        const auto both = hn::BitCast(d, x);
        re.v[i] = hn::Add(re.v[i], hn::ShiftRight<16>(hn::ShiftLeft<16>(both)));
        im.v[i] = hn::Add(im.v[i], hn::ShiftRight<16>(both));
    }
};

inline Zvp64sc total16Complex(const Zvp16sc* src, size_t n) {
    Zvp64sc sum = {0, 0};
    forEachBlock(n, [&](size_t first, size_t count) {
        Total16Complex op;
        addAll<kLanesOf<int16_t>>(op, 2 * count, Values<int16_t>{reinterpret_cast<const int16_t*>(src + first)});
        sum.re += hn::GetLane(op.re.sum());
        sum.im += hn::GetLane(op.im.sum());
    });
    return sum;
}

// ---- Moments ----

template <class V>
struct MomentsOf {
    Partials<V> sums;
    Partials<V> squares;

    HWY_INLINE void add(size_t i, FullVec<V> x) {
        x = inRegister(x);
        sums.v[i] = hn::Add(sums.v[i], x);
        squares.v[i] = hn::MulAdd(x, x, squares.v[i]);
    }
};

template <class T>
Moments<Zvp64f> moments(const T* src, size_t n) {
    MomentsOf<double> op;
    addAll<kLanesOf<double>>(op, n, Values<T, double>{src});
    return {hn::GetLane(op.sums.sum()), hn::GetLane(op.squares.sum())};
}

struct Moments16 {
    Total16 sums;
    SplitTotal squares;

    HWY_INLINE void add(size_t i, FullVec<int16_t> x) {
        x = inRegister(x);
        sums.add(i, x);
        squares.add(i, hn::BitCast(FullLanes<uint32_t>(), sumsOfProducts(x, x)));
    }
};

inline Moments<Zvp64s> moments16(const Zvp16s* src, size_t n) {
    Moments<Zvp64s> result = {0, 0};
    forEachBlock(n, [&](size_t first, size_t count) {
        Moments16 op;
        addAll<kLanesOf<int16_t>>(op, count, Values<int16_t>{src + first});
        result.sum += hn::GetLane(op.sums.sums.sum());
        op.squares.addTo<1>(&result.squares);
    });
    return result;
}

// ---- Counts ----

// Of the values x with x - first below count, as unsigned integers.
struct Counter {
    FullVec<uint32_t> first;
    FullVec<uint32_t> count;
    Partials<uint32_t> counts;

    HWY_INLINE void add(size_t i, FullVec<uint32_t> x) {
        const FullLanes<uint32_t> d;
        counts.v[i] = hn::Sub(counts.v[i], hn::VecFromMask(d, hn::Lt(hn::Sub(x, first), count)));
    }
};

inline size_t countBetween(const Zvp32s* src, size_t n, Zvp32s lower, Zvp32s upper) {
    const FullLanes<uint32_t> d;
    const uint32_t first = static_cast<uint32_t>(lower) + 1;
    const uint32_t count = static_cast<uint32_t>(upper) - first;
    Counter op{hn::Set(d, first), hn::Set(d, count), {}};
    addAll<kLanesOf<uint32_t>>(op, n, Values<uint32_t>{reinterpret_cast<const uint32_t*>(src)});
    // The zeros behind the last element were counted too, if they lie between the bounds.
    const size_t added = static_cast<size_t>(wholeVectors<uint32_t>(n)) - n;
    return hn::GetLane(op.counts.sum()) - (lower < 0 && upper > 0 ? added : 0);
}

} // namespace zvps::ZVPS_LEVEL
