// Norms of vectors and of differences.
#pragma once

#include "stats/norms.table.hpp"
#include "stats/reduction.hpp"

namespace zvps::ZVPS_LEVEL {

// The largest value or magnitude, at least 0; a NaN is none: the processor's instruction gives its second operand where
// the first is a NaN.
template <class V>
struct Peak {
    Partials<V> peaks;

    HWY_INLINE void add(size_t i, FullVec<V> x) { peaks.v[i] = hn::Max(x, peaks.v[i]); }
    HWY_INLINE Vec<V, 1> result() const { return peaks.largest(); }
};

template <class V>
struct PeakOfMagnitudes : Peak<V> {
    HWY_INLINE void add(size_t i, FullVec<V> x) { Peak<V>::add(i, hn::Abs(x)); }
};

template <class Op>
HWY_INLINE auto resultOf(const Op& op) -> decltype(op.result()) {
    return op.result();
}
template <class Op>
HWY_INLINE auto resultOf(const Op& op) -> decltype(op.sums.sum()) {
    return op.sums.sum();
}

// ---- Complex elements: values from pairs of parts ----

// re^2 + im^2 of all elements of two vectors.
template <class V, class Source>
struct SquaredModuli {
    Source source;

    // In any order.
    template <size_t N>
    HWY_INLINE Vec<V, N> load(size_t i) const {
        return fromHalves<N, false>(source.template load<N>(2 * i), source.template load<N>(2 * i + N));
    }
    template <size_t N>
    HWY_INLINE Vec<V, N> loadSome(size_t i, size_t n) const {
        return someOf<N, false>(i, n);
    }

    // In the order of the elements.
    template <size_t N>
    HWY_INLINE Vec<V, N> loadInOrder(size_t i) const {
        return fromHalves<N, true>(source.template load<N>(2 * i), source.template load<N>(2 * i + N));
    }
    template <size_t N>
    HWY_INLINE Vec<V, N> loadSomeInOrder(size_t i, size_t n) const {
        return someOf<N, true>(i, n);
    }

  private:
    template <size_t N, bool isInOrder>
    HWY_INLINE Vec<V, N> someOf(size_t i, size_t n) const {
        if (2 * n < N) {
            return fromHalves<N, isInOrder>(source.template loadSome<N>(2 * i, 2 * n), hn::Zero(Lanes<V, N>()));
        }
        return fromHalves<N, isInOrder>(source.template load<N>(2 * i),
                                        source.template loadSome<N>(2 * i + N, 2 * n - N));
    }
    template <size_t N, bool isInOrder>
    static HWY_INLINE Vec<V, N> fromHalves(Vec<V, N> lower, Vec<V, N> upper) {
        const Lanes<V, N> d;
        lower = inRegister(lower);
        upper = inRegister(upper);
        if constexpr (isInOrder) {
            return sumOfSquares<N>(hn::ConcatEven(d, upper, lower), hn::ConcatOdd(d, upper, lower));
        } else {
            // Cheaper: nothing crosses the blocks of 16 bytes.
            return sumOfSquares<N>(hn::OddEven(hn::DupEven(upper), lower), hn::OddEven(upper, hn::DupOdd(lower)));
        }
    }
    template <size_t N>
    static HWY_INLINE Vec<V, N> sumOfSquares(Vec<V, N> re, Vec<V, N> im) {
        return hn::MulAdd(re, re, hn::Mul(im, im));
    }
};

template <class V, class Source>
struct Moduli {
    SquaredModuli<V, Source> squares;

    template <size_t N>
    HWY_INLINE Vec<V, N> load(size_t i) const {
        return hn::Sqrt(squares.template loadInOrder<N>(i));
    }
    template <size_t N>
    HWY_INLINE Vec<V, N> loadSome(size_t i, size_t n) const {
        return hn::Sqrt(squares.template loadSomeInOrder<N>(i, n));
    }
};

// Each part as a value of its own.
template <class V, class Source>
struct Parts : Source {
    explicit Parts(const Source& source) : Source(source) {}
};

template <template <class, class> class Work, class T>
inline constexpr size_t kValuesOf = sizeof(T) / sizeof(Part<T>);
template <class T>
inline constexpr size_t kValuesOf<SquaredModuli, T> = 1;
template <class T>
inline constexpr size_t kValuesOf<Moduli, T> = 1;

template <template <class> class Op, template <class, class> class Work, class V, class T, class Source>
HWY_INLINE V norm(const Source& source, size_t n) {
    Op<V> op;
    addAll<kLanesOf<V>>(op, n * kValuesOf<Work, T>, Work<V, Source>{source});
    return hn::GetLane(resultOf(op));
}

template <template <class> class Op, template <class, class> class Work, class D, class V, class T>
V normOf(const T* src, size_t n) {
    using P = Part<T>;
    return norm<Op, Work, V, T>(Values<P, V>{reinterpret_cast<const P*>(src)}, n);
}
template <template <class> class Op, template <class, class> class Work, class D, class V, class T>
V normOfDifference(const T* src1, const T* src2, size_t n) {
    using P = Part<T>;
    return norm<Op, Work, V, T>(
        Differences<P, D, V>{{reinterpret_cast<const P*>(src1)}, {reinterpret_cast<const P*>(src2)}}, n);
}

// ---- 16-bit integers, whose magnitudes fit 16 bits without a sign ----

struct Magnitudes16 {
    const Zvp16s* p;

    template <size_t N>
    HWY_INLINE Vec<uint16_t, N> load(size_t i) const {
        return hn::BitCast(Lanes<uint16_t, N>(), hn::Abs(hn::LoadU(Lanes<int16_t, N>(), p + i)));
    }
    template <size_t N>
    HWY_INLINE Vec<uint16_t, N> loadSome(size_t i, size_t n) const {
        return hn::BitCast(Lanes<uint16_t, N>(), hn::Abs(loadFirst(Lanes<int16_t, N>(), p + i, n)));
    }
};

struct MagnitudesOfDifferences16 {
    const Zvp16s* a;
    const Zvp16s* b;

    template <size_t N>
    HWY_INLINE Vec<uint16_t, N> load(size_t i) const {
        const Lanes<int16_t, N> d;
        return magnitudes<N>(hn::LoadU(d, a + i), hn::LoadU(d, b + i));
    }
    template <size_t N>
    HWY_INLINE Vec<uint16_t, N> loadSome(size_t i, size_t n) const {
        const Lanes<int16_t, N> d;
        return magnitudes<N>(loadFirst(d, a + i, n), loadFirst(d, b + i, n));
    }

  private:
    template <size_t N>
    static HWY_INLINE Vec<uint16_t, N> magnitudes(Vec<int16_t, N> x, Vec<int16_t, N> y) {
        x = inRegister(x);
        y = inRegister(y);
        return hn::BitCast(Lanes<uint16_t, N>(), hn::Sub(hn::Max(x, y), hn::Min(x, y)));
    }
};

template <class Source>
HWY_INLINE Zvp64s inf16(const Source& source, size_t n) {
    Peak<uint16_t> op;
    addAll<kLanesOf<uint16_t>>(op, n, source);
    return hn::GetLane(op.result());
}

// Magnitudes less 2^15, which makes signed numbers of them; added to the sum again in the end.
inline constexpr int kMiddle16 = 32768;

HWY_INLINE FullVec<int16_t> centred(FullVec<uint16_t> x) {
    const FullLanes<uint16_t> d;
    return hn::BitCast(FullLanes<int16_t>(), hn::Xor(x, hn::Set(d, static_cast<uint16_t>(kMiddle16))));
}

struct TotalOfMagnitudes16 {
    Partials<int32_t> sums;

    HWY_INLINE void add(size_t i, FullVec<uint16_t> x) {
        sums.v[i] = hn::Add(sums.v[i], sumsOfProducts(centred(x), hn::Set(FullLanes<int16_t>(), int16_t{1})));
    }
};

template <class SourceAt>
HWY_INLINE Zvp64s l1Of16(size_t n, SourceAt sourceAt) {
    int64_t sum = 0;
    forEachBlock(n, [&](size_t first, size_t count) {
        TotalOfMagnitudes16 op;
        addAll<kLanesOf<int16_t>>(op, count, sourceAt(first));
        sum += hn::GetLane(op.sums.sum()) + kMiddle16 * wholeVectors<int16_t>(count);
    });
    return sum;
}

struct TotalOfSquares16 {
    SplitTotal squares;

    HWY_INLINE void add(size_t i, FullVec<int16_t> x) {
        squares.add(i, hn::BitCast(FullLanes<uint32_t>(), sumsOfProducts(x, x)));
    }
};

// With c = m - 2^15, m^2 = c^2 + 2^16 c + 2^30.
struct TotalOfWideSquares16 {
    TotalOfMagnitudes16 sums;
    TotalOfSquares16 squares;

    HWY_INLINE void add(size_t i, FullVec<uint16_t> x) {
        sums.add(i, x);
        squares.add(i, centred(x));
    }
};

inline Zvp64s inf_16sOf(const Zvp16s* src, size_t n) {
    return inf16(Magnitudes16{src}, n);
}
inline Zvp64s inf_16sOfDifference(const Zvp16s* src1, const Zvp16s* src2, size_t n) {
    return inf16(MagnitudesOfDifferences16{src1, src2}, n);
}

inline Zvp64s l1_16sOf(const Zvp16s* src, size_t n) {
    return l1Of16(n, [&](size_t first) { return Magnitudes16{src + first}; });
}
inline Zvp64s l1_16sOfDifference(const Zvp16s* src1, const Zvp16s* src2, size_t n) {
    return l1Of16(n, [&](size_t first) { return MagnitudesOfDifferences16{src1 + first, src2 + first}; });
}

inline Zvp64s l2Squared_16sOf(const Zvp16s* src, size_t n) {
    int64_t sum = 0;
    forEachBlock(n, [&](size_t first, size_t count) {
        TotalOfSquares16 op;
        addAll<kLanesOf<int16_t>>(op, count, Values<int16_t>{src + first});
        op.squares.addTo<1>(&sum);
    });
    return sum;
}
inline Zvp64s l2Squared_16sOfDifference(const Zvp16s* src1, const Zvp16s* src2, size_t n) {
    int64_t sum = 0;
    forEachBlock(n, [&](size_t first, size_t count) {
        TotalOfWideSquares16 op;
        addAll<kLanesOf<int16_t>>(op, count, MagnitudesOfDifferences16{src1 + first, src2 + first});
        op.squares.squares.addTo<1>(&sum);
        sum += hn::GetLane(op.sums.sums.sum()) * (int64_t{1} << 16) + wholeVectors<int16_t>(count) * (int64_t{1} << 30);
    });
    return sum;
}

} // namespace zvps::ZVPS_LEVEL
