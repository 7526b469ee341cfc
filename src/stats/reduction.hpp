// Reductions: sources of values, sums in many lanes, and the loop that keeps several vectors of them in flight.
#pragma once

#include "core/elements.hpp"
#include "core/rounding.hpp"

namespace zvps::ZVPS_LEVEL {

// Vectors of partial results, so many that no operation waits for the one before. As v3 and v4 have the same number of
// lanes in flight, value i goes to the same lane on both, and sums of floating-point numbers are the same bits.
inline constexpr size_t kInFlight = kVectorBytes == 32 ? 8 : kVectorBytes == 64 ? 4 : 8;

template <class T>
inline constexpr size_t kLanesOf = kVectorBytes / sizeof(T);
template <class T>
using FullLanes = Lanes<T, kLanesOf<T>>;
template <class T>
using FullVec = Vec<T, kLanesOf<T>>;

// For values that are used twice: g++ would load them twice, and loads are what a reduction waits for.
template <class V>
HWY_INLINE V inRegister(V v) {
    __asm__("" : "+v"(v.raw));
    return v;
}

// ---- Sources of values ----

// Elements of type T as values of type V. Behind a partial vector follow zeros.
template <class T, class V = T>
struct Values {
    const T* p;

    template <size_t N>
    HWY_INLINE Vec<V, N> load(size_t i) const {
        return widened(Lanes<V, N>(), hn::LoadU(Lanes<T, N>(), p + i));
    }
    template <size_t N>
    HWY_INLINE Vec<V, N> loadSome(size_t i, size_t n) const {
        return widened(Lanes<V, N>(), loadFirst(Lanes<T, N>(), p + i, n));
    }
};

// a - b, subtracted in type D.
template <class T, class D, class V>
struct Differences {
    Values<T, D> a;
    Values<T, D> b;

    template <size_t N>
    HWY_INLINE Vec<V, N> load(size_t i) const {
        return widened(Lanes<V, N>(), hn::Sub(a.template load<N>(i), b.template load<N>(i)));
    }
    template <size_t N>
    HWY_INLINE Vec<V, N> loadSome(size_t i, size_t n) const {
        return widened(Lanes<V, N>(), hn::Sub(a.template loadSome<N>(i, n), b.template loadSome<N>(i, n)));
    }
};

// ---- The loop ----

// The n < kInFlight vectors' values from i on.
template <size_t N, size_t v = 0, class Op, class... Sources>
HWY_INLINE void addRest(Op& op, size_t i, size_t n, const Sources&... sources) {
    if constexpr (v < kInFlight) {
        if (n - i >= N) {
            op.add(v, sources.template load<N>(i)...);
            addRest<N, v + 1>(op, i + N, n, sources...);
        } else if (i != n) {
            op.add(v, sources.template loadSome<N>(i, n - i)...);
        }
    }
}

// op.add(i / N % kInFlight, N values from i on) for all of n values. op is a local variable of a function that this is
// inlined into, or g++ keeps its vectors in memory.
template <size_t N, class Op, class... Sources>
HWY_INLINE void addAll(Op& op, size_t n, const Sources&... sources) {
    size_t i = 0;
    for (; n - i >= kInFlight * N; i += kInFlight * N) {
        repeat<kInFlight>([&](size_t v) { op.add(v, sources.template load<N>(i + v * N)...); });
    }
    addRest<N>(op, i, n, sources...);
}

// ---- Partial results ----

template <class T, size_t N>
HWY_INLINE Vec<T, N / 2> upperHalf(Lanes<T, N> d, Vec<T, N> v) {
    constexpr size_t kBytes = N * sizeof(T);
    if constexpr (kBytes < 16) {
        // What lies above the N lanes moves down behind the half, without harm.
        const Lanes<T, 16 / sizeof(T)> full;
        const Lanes<uint8_t, 16> bytes;
        const auto all = hn::BitCast(bytes, Vec<T, 16 / sizeof(T)>{v.raw});
        return Vec<T, N / 2>{hn::BitCast(full, hn::ShiftRightBytes<kBytes / 2>(bytes, all)).raw};
    } else {
        return hn::UpperHalf(hn::Half<decltype(d)>(), v);
    }
}

// Lanes i, i + kTo, i + 2 kTo, ... joined into one by halves.
template <size_t kTo, class T, size_t N, class Join>
HWY_INLINE Vec<T, kTo> foldLanes(Lanes<T, N> d, Vec<T, N> v, Join join) {
    if constexpr (N == kTo) {
        return v;
    } else {
        const hn::Half<decltype(d)> half;
        return foldLanes<kTo>(half, join(hn::LowerHalf(half, v), upperHalf(d, v)), join);
    }
}

template <class T>
struct Partials {
    FullVec<T> v[kInFlight];

    HWY_INLINE Partials(T value = 0) {
        repeat<kInFlight>([&](size_t i) { v[i] = hn::Set(FullLanes<T>(), value); });
    }

    template <class Join>
    HWY_INLINE FullVec<T> joined(Join join) const {
        FullVec<T> half[kInFlight / 2];
        repeat<kInFlight / 2>([&](size_t i) { half[i] = join(v[i], v[i + kInFlight / 2]); });
        if constexpr (kInFlight == 8) {
            repeat<2>([&](size_t i) { half[i] = join(half[i], half[i + 2]); });
        }
        return join(half[0], half[1]);
    }
    template <size_t kTo, class Join>
    HWY_INLINE Vec<T, kTo> folded(Join join) const {
        return foldLanes<kTo>(FullLanes<T>(), joined(join), join);
    }
    template <size_t kTo = 1>
    HWY_INLINE Vec<T, kTo> sum() const {
        return folded<kTo>([](auto a, auto b) HWY_ATTR { return hn::Add(a, b); });
    }
    HWY_INLINE Vec<T, 1> product() const {
        return folded<1>([](auto a, auto b) HWY_ATTR { return hn::Mul(a, b); });
    }
    HWY_INLINE Vec<T, 1> largest() const {
        return folded<1>([](auto a, auto b) HWY_ATTR { return hn::Max(a, b); });
    }
};

// One number, or the two parts of a complex one.
template <class R, class T, size_t N>
HWY_INLINE R resultOf(Vec<T, N> v) {
    static_assert(sizeof(R) == N * sizeof(T));
    T lanes[N];
    hn::StoreU(v, Lanes<T, N>(), lanes);
    R result;
    __builtin_memcpy(&result, lanes, sizeof(R));
    return result;
}

// ---- Sums ----

template <class V>
struct Total {
    Partials<V> sums;

    HWY_INLINE void add(size_t i, FullVec<V> x) { sums.v[i] = hn::Add(sums.v[i], x); }
};

template <class V>
struct TotalOfMagnitudes {
    Partials<V> sums;

    HWY_INLINE void add(size_t i, FullVec<V> x) { sums.v[i] = hn::Add(sums.v[i], hn::Abs(x)); }
};

template <class V>
struct TotalOfSquares {
    Partials<V> sums;

    HWY_INLINE void add(size_t i, FullVec<V> x) { sums.v[i] = hn::MulAdd(x, x, sums.v[i]); }
};

// ---- 16-bit integers ----

// So many that the sum of their values fits 32 bits.
inline constexpr size_t kBlock16 = 32768;

// a[0] b[0] + a[1] b[1] and so on, which wraps where all four are -32768.
HWY_INLINE FullVec<int32_t> sumsOfProducts(FullVec<int16_t> a, FullVec<int16_t> b) {
    return FullVec<int32_t>{ZVPS_INTRINSIC(madd_epi16)(a.raw, b.raw)};
}

// The exact sum of up to 2^16 unsigned 32-bit integers in each lane, and in all lanes together: what is left of it in
// 32 bits, and the sum of the upper halves.
struct SplitTotal {
    Partials<uint32_t> wrapped;
    Partials<uint32_t> upper;

    HWY_INLINE void add(size_t i, FullVec<uint32_t> x) {
        wrapped.v[i] = hn::Add(wrapped.v[i], x);
        upper.v[i] = hn::Add(upper.v[i], hn::ShiftRight<16>(x));
    }
    // sums[k]: of the lanes k, k + kTo, ...
    template <size_t kTo>
    HWY_INLINE void addTo(int64_t* sums) const {
        uint32_t low[kTo];
        uint32_t high[kTo];
        hn::StoreU(wrapped.sum<kTo>(), Lanes<uint32_t, kTo>(), low);
        hn::StoreU(upper.sum<kTo>(), Lanes<uint32_t, kTo>(), high);
        for (size_t k = 0; k < kTo; ++k)
            sums[k] += (int64_t{high[k]} << 16) + static_cast<uint32_t>(low[k] - (high[k] << 16));
    }
};

// step(first, count) for all blocks of n elements.
template <class Step>
HWY_INLINE void forEachBlock(size_t n, Step step) {
    for (size_t first = 0; first < n; first += kBlock16)
        step(first, n - first < kBlock16 ? n - first : kBlock16);
}

// The elements that whole vectors of n of them have, with the zeros behind the last.
template <class T>
HWY_INLINE int64_t wholeVectors(size_t n) {
    return static_cast<int64_t>((n + kLanesOf<T> - 1) / kLanesOf<T> * kLanesOf<T>);
}

} // namespace zvps::ZVPS_LEVEL
