// Dot products.
#pragma once

#include "stats/dot_products.table.hpp"
#include "stats/reduction.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- Products and sums in type V ----

// sum + a b: floating-point numbers fused where the level has it, 64-bit integers from values of 32 bits.
template <class V, size_t N>
HWY_INLINE Vec<V, N> plusProduct(Lanes<V, N>, Vec<V, N> sum, Vec<V, N> a, Vec<V, N> b) {
    if constexpr (std::is_integral_v<V>) {
        const Lanes<int32_t, 2 * N> d;
        return hn::Add(sum, hn::MulEven(hn::BitCast(d, a), hn::BitCast(d, b)));
    } else {
        return hn::MulAdd(a, b, sum);
    }
}

// Every one of N / 2 elements twice.
template <class T, size_t N>
HWY_INLINE Vec<T, N> duplicated(Lanes<T, N> d, Vec<T, N / 2> v) {
    using Index = std::conditional_t<sizeof(T) == 8, int64_t, int32_t>;
    alignas(kVectorBytes) Index indices[N];
    for (size_t i = 0; i < N; ++i)
        indices[i] = static_cast<Index>(i / 2);
    return hn::TableLookupLanes(hn::ZeroExtendVector(d, v), hn::SetTableIndices(d, indices));
}

// Real elements beside the pairs of complex ones: each group of kTogether of them twice; indices count lanes.
template <class T, class V, size_t kTogether = 1>
struct TwiceEach {
    const T* p;

    template <size_t N>
    HWY_INLINE Vec<V, N> load(size_t i) const {
        return twice<N>(hn::LoadU(Lanes<T, N / 2>(), p + i / 2));
    }
    template <size_t N>
    HWY_INLINE Vec<V, N> loadSome(size_t i, size_t n) const {
        return twice<N>(loadFirst(Lanes<T, N / 2>(), p + i / 2, n / 2));
    }

  private:
    template <size_t N>
    static HWY_INLINE Vec<V, N> twice(Vec<T, N / 2> v) {
        const Lanes<V, N> d;
        if constexpr (kTogether == 2) {
            static_assert(sizeof(T) == 2 && sizeof(V) == 2);
            return hn::BitCast(d, duplicated(Lanes<int32_t, N / 2>(), hn::BitCast(Lanes<int32_t, N / 4>(), v)));
        } else if constexpr (N == 2) {
            return hn::Set(d, hn::GetLane(widened(Lanes<V, 1>(), v)));
        } else {
            return duplicated(d, widened(Lanes<V, N / 2>(), v));
        }
    }
};

template <class V>
struct Dot {
    Partials<V> sums;

    HWY_INLINE void add(size_t i, FullVec<V> a, FullVec<V> b) {
        sums.v[i] = plusProduct(FullLanes<V>(), sums.v[i], a, b);
    }
};

template <class V, class R, class A, class B>
R RealDot(const A* src1, const B* src2, size_t n) {
    Dot<V> op;
    addAll<kLanesOf<V>>(op, n, Values<A, V>{src1}, Values<B, V>{src2});
    return hn::GetLane(op.sums.sum());
}

template <class V, class R, class A, class B>
R MixedDot(const A* src1, const B* src2, size_t n) {
    Dot<V> op;
    addAll<kLanesOf<V>>(op, 2 * n, TwiceEach<A, V>{src1}, Values<Part<B>, V>{reinterpret_cast<const Part<B>*>(src2)});
    return resultOf<R, V, 2>(op.sums.template sum<2>());
}

// Lane by lane, re re and im im go to one sum, re im and im re to the other.
template <class V>
struct CrossedDot {
    Partials<V> straight;
    Partials<V> crossed;

    HWY_INLINE void add(size_t i, FullVec<V> a, FullVec<V> b) {
        const FullLanes<V> d;
        a = inRegister(a);
        b = inRegister(b);
        straight.v[i] = plusProduct(d, straight.v[i], a, b);
        crossed.v[i] = plusProduct(d, crossed.v[i], a, hn::Reverse2(d, b));
    }
};

template <class V, class R, class T>
R ComplexDot(const T* src1, const T* src2, size_t n) {
    using Source = Values<Part<T>, V>;
    CrossedDot<V> op;
    addAll<kLanesOf<V>>(op, 2 * n, Source{reinterpret_cast<const Part<T>*>(src1)},
                        Source{reinterpret_cast<const Part<T>*>(src2)});
    const auto squares = resultOf<R, V, 2>(op.straight.template sum<2>());
    const auto products = resultOf<R, V, 2>(op.crossed.template sum<2>());
    if constexpr (std::is_integral_v<V>) {
        using Unsigned = std::make_unsigned_t<V>;
        return {static_cast<V>(static_cast<Unsigned>(squares.re) - static_cast<Unsigned>(squares.im)),
                static_cast<V>(static_cast<Unsigned>(products.re) + static_cast<Unsigned>(products.im))};
    } else {
        return {squares.re - squares.im, products.re + products.im};
    }
}

// ---- 16-bit integers ----

// Sums of two products lie between -2^31 + 2^15, where one is subtracted, and 2^31: with this more they are unsigned
// numbers of 32 bits.
inline constexpr uint32_t kOffset16 = 0x7FFF8000;

struct OffsetTotal {
    SplitTotal total;

    HWY_INLINE void add(size_t i, FullVec<int32_t> x) {
        const FullLanes<uint32_t> d;
        total.add(i, hn::Add(hn::BitCast(d, x), hn::Set(d, kOffset16)));
    }
    // sums[k]: of the lanes k, k + kTo, ... of so many vectors' elements of 16 bits.
    template <size_t kTo>
    HWY_INLINE void addTo(int64_t* sums, int64_t elements) const {
        total.addTo<kTo>(sums);
        for (size_t k = 0; k < kTo; ++k)
            sums[k] -= elements / (2 * int64_t{kTo}) * kOffset16;
    }
};

struct Dot16 {
    OffsetTotal sums;

    HWY_INLINE void add(size_t i, FullVec<int16_t> a, FullVec<int16_t> b) { sums.add(i, sumsOfProducts(a, b)); }
};

template <class, class R>
R RealDot16(const Zvp16s* src1, const Zvp16s* src2, size_t n) {
    int64_t sum = 0;
    forEachBlock(n, [&](size_t first, size_t count) {
        Dot16 op;
        addAll<kLanesOf<int16_t>>(op, count, Values<int16_t>{src1 + first}, Values<int16_t>{src2 + first});
        op.sums.addTo<1>(&sum, wholeVectors<int16_t>(count));
    });
    return sum;
}

// Pairs of complex elements as their two real parts, then their two imaginary parts.
struct MixedDot16Sums {
    OffsetTotal sums;

    HWY_INLINE void add(size_t i, FullVec<int16_t> a, FullVec<int16_t> b) {
        alignas(16) static constexpr uint8_t kOrder[16] = {0, 1, 4, 5, 2, 3, 6, 7, 8, 9, 12, 13, 10, 11, 14, 15};
        const FullLanes<uint8_t> bytes;
        const auto sorted = hn::TableLookupBytes(hn::BitCast(bytes, b), hn::LoadDup128(bytes, kOrder));
        sums.add(i, sumsOfProducts(a, hn::BitCast(FullLanes<int16_t>(), sorted)));
    }
};

template <class, class R>
R MixedDot16(const Zvp16s* src1, const Zvp16sc* src2, size_t n) {
    int64_t sums[2] = {0, 0};
    forEachBlock(n, [&](size_t first, size_t count) {
        MixedDot16Sums op;
        addAll<kLanesOf<int16_t>>(op, 2 * count, TwiceEach<int16_t, int16_t, 2>{src1 + first},
                                  Values<int16_t>{reinterpret_cast<const int16_t*>(src2 + first)});
        op.sums.addTo<2>(sums, wholeVectors<int16_t>(2 * count));
    });
    return {sums[0], sums[1]};
}

struct ComplexDot16Sums {
    OffsetTotal re;
    OffsetTotal im;

    HWY_INLINE void add(size_t i, FullVec<int16_t> a, FullVec<int16_t> b) {
        const FullLanes<int32_t> d;
        const FullLanes<uint32_t> unsignedLanes;
        const FullLanes<int16_t> parts;
        a = inRegister(a);
        b = inRegister(b);
        const auto pairs = hn::BitCast(unsignedLanes, b);
        // re re - im im as re re + im (~im) + im, whose last sum takes a wrapped one before it back.
        const auto conjugates = hn::BitCast(parts, hn::Xor(pairs, hn::Set(unsignedLanes, 0xFFFF0000)));
        re.add(i, hn::Add(sumsOfProducts(a, conjugates), hn::ShiftRight<16>(hn::BitCast(d, a))));
        im.add(i, sumsOfProducts(a, hn::BitCast(parts, hn::RotateRight<16>(pairs))));
    }
};

template <class, class R>
R ComplexDot16(const Zvp16sc* src1, const Zvp16sc* src2, size_t n) {
    using Source = Values<int16_t>;
    Zvp64sc sum = {0, 0};
    forEachBlock(n, [&](size_t first, size_t count) {
        ComplexDot16Sums op;
        addAll<kLanesOf<int16_t>>(op, 2 * count, Source{reinterpret_cast<const int16_t*>(src1 + first)},
                                  Source{reinterpret_cast<const int16_t*>(src2 + first)});
        op.re.addTo<1>(&sum.re, wholeVectors<int16_t>(2 * count));
        op.im.addTo<1>(&sum.im, wholeVectors<int16_t>(2 * count));
    });
    return sum;
}

} // namespace zvps::ZVPS_LEVEL
