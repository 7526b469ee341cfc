// Complex transforms of 8, 16 and 32 points in registers of 8 lanes, 32 bytes of single precision, 64 of double; of 4
// and 8 points in registers of 16 bytes.
#pragma once

#include "transforms/fft_passes.hpp"

namespace zvps::ZVPS_LEVEL {

// Whether a transform is one of these: registers have the 8 lanes, and passes are not as fast. Eight points of double
// precision in two planes so differ from the other levels' in the last bit.
template <class T>
constexpr bool isInRegisters(int order) {
    return kVectorBytes >= 8 * sizeof(T) && order >= 3 && (sizeof(T) == 4 || order == 3);
}

// Whether interleaved values stay so.
template <class T>
constexpr bool isInPairs(int order) {
    return HWY_TARGET <= HWY_AVX2 && (order == 2 || (order == 3 && sizeof(T) == 8));
}

#if HWY_TARGET <= HWY_AVX2

// ---- Shuffles of the halves of a register, each of four lanes ----

inline constexpr size_t kEight = 8;

template <class T>
using Eight = Vec<T, kEight>;

// The lanes of x and y (from 8 on) at the places i...
#if HWY_TARGET <= HWY_AVX3
template <int... i>
HWY_INLINE __m512d lanesOf(__m512d x, __m512d y) {
    alignas(64) static constexpr int64_t kPlaces[] = {i...};
    return _mm512_permutex2var_pd(x, _mm512_load_si512(kPlaces), y);
}
template <int... i>
HWY_INLINE __m512d lanesOf(__m512d x) {
    alignas(64) static constexpr int64_t kPlaces[] = {i...};
    return _mm512_permutexvar_pd(_mm512_load_si512(kPlaces), x);
}
// In each half lanes a and b of x, then c and d of y.
template <int a, int b, int c, int d>
HWY_INLINE __m512d shuffleHalves(__m512d x, __m512d y) {
    return lanesOf<a, b, 8 + c, 8 + d, 4 + a, 4 + b, 12 + c, 12 + d>(x, y);
}
HWY_INLINE __m512d interleaveLowerOfHalves(__m512d x, __m512d y) {
    return lanesOf<0, 8, 1, 9, 4, 12, 5, 13>(x, y);
}
HWY_INLINE __m512d interleaveUpperOfHalves(__m512d x, __m512d y) {
    return lanesOf<2, 10, 3, 11, 6, 14, 7, 15>(x, y);
}
HWY_INLINE __m512d swapHalves(__m512d x) {
    return _mm512_shuffle_f64x2(x, x, 0x4E);
}
#endif
template <int... i>
HWY_INLINE __m256 lanesOf(__m256 x) {
    return _mm256_permutevar8x32_ps(x, _mm256_setr_epi32(i...));
}
template <int a, int b, int c, int d>
HWY_INLINE __m256 shuffleHalves(__m256 x, __m256 y) {
    return _mm256_shuffle_ps(x, y, a | b << 2 | c << 4 | d << 6);
}
HWY_INLINE __m256 interleaveLowerOfHalves(__m256 x, __m256 y) {
    return _mm256_unpacklo_ps(x, y);
}
HWY_INLINE __m256 interleaveUpperOfHalves(__m256 x, __m256 y) {
    return _mm256_unpackhi_ps(x, y);
}
HWY_INLINE __m256 swapHalves(__m256 x) {
    return _mm256_permute2f128_ps(x, x, 1);
}

// Rows of four lanes a half to columns: y[j] holds in each half the lanes j of the rows.
template <class W>
HWY_INLINE void transposeHalves(const W (&x)[4], W (&y)[4]) {
    const auto lower01 = interleaveLowerOfHalves(x[0].raw, x[1].raw);
    const auto lower23 = interleaveLowerOfHalves(x[2].raw, x[3].raw);
    y[0] = W{shuffleHalves<0, 1, 0, 1>(lower01, lower23)};
    y[1] = W{shuffleHalves<2, 3, 2, 3>(lower01, lower23)};
    const auto upper01 = interleaveUpperOfHalves(x[0].raw, x[1].raw);
    const auto upper23 = interleaveUpperOfHalves(x[2].raw, x[3].raw);
    y[2] = W{shuffleHalves<0, 1, 0, 1>(upper01, upper23)};
    y[3] = W{shuffleHalves<2, 3, 2, 3>(upper01, upper23)};
}

// ---- Four complex values in a register: the real parts, then the imaginary ones ----

template <class T, bool kInverse>
struct InterleavedFours {
    T* p;

    HWY_INLINE auto loadFour(size_t i) const {
        using W = Eight<std::remove_const_t<T>>;
        const W x = hn::LoadU(Lanes<std::remove_const_t<T>, kEight>(), p + 2 * i);
        if constexpr (kInverse) {
            return W{lanesOf<1, 3, 5, 7, 0, 2, 4, 6>(x.raw)};
        } else {
            return W{lanesOf<0, 2, 4, 6, 1, 3, 5, 7>(x.raw)};
        }
    }
    template <class W>
    HWY_INLINE void storeFour(size_t i, W x) const {
        if constexpr (kInverse) {
            hn::StoreU(W{lanesOf<4, 0, 5, 1, 6, 2, 7, 3>(x.raw)}, Lanes<T, kEight>(), p + 2 * i);
        } else {
            hn::StoreU(W{lanesOf<0, 4, 1, 5, 2, 6, 3, 7>(x.raw)}, Lanes<T, kEight>(), p + 2 * i);
        }
    }
};

template <class T>
struct SplitFours {
    T* re;
    T* im;

    HWY_INLINE auto loadFour(size_t i) const {
        using Value = std::remove_const_t<T>;
        const Lanes<Value, 4> half;
        return hn::Combine(Lanes<Value, kEight>(), hn::LoadU(half, im + i), hn::LoadU(half, re + i));
    }
    template <class W>
    HWY_INLINE void storeFour(size_t i, W x) const {
        const Lanes<T, 4> half;
        hn::StoreU(hn::LowerHalf(half, x), half, re + i);
        hn::StoreU(hn::UpperHalf(half, x), half, im + i);
    }
};

// Constants of N lanes from a function of the place.
template <class T, class F, size_t N>
struct LaneValues {
    alignas(64) T values[N];

    constexpr LaneValues() : values() {
        for (size_t i = 0; i < N; ++i) {
            values[i] = static_cast<T>(F::at(i));
        }
    }
};
template <class T, class F, size_t N = kEight>
HWY_INLINE Vec<T, N> constant() {
    static constexpr LaneValues<T, F, N> kValues;
    return hn::Load(Lanes<T, N>(), kValues.values);
}

// Of exp(-2 pi i step l / 32) for lanes l < 4: the real parts in both halves, and the imaginary ones, first negated.
template <size_t step>
struct TurnRe {
    static constexpr double at(size_t i) { return cosOf32(step * (i % 4)); }
};
template <size_t step>
struct TurnIm {
    static constexpr double at(size_t i) { return i < 4 ? -cosOf32(step * i + 8) : cosOf32(step * (i - 4) + 8); }
};

template <size_t step, class T>
HWY_INLINE Eight<T> turned(Eight<T> x) {
    return hn::MulAdd(Eight<T>{swapHalves(x.raw)}, constant<T, TurnIm<step>>(),
                      hn::Mul(x, constant<T, TurnRe<step>>()));
}

struct MinusI {
    static constexpr double at(size_t i) { return i < 4 ? 1 : -1; }
};

template <class W>
struct FourPoints {
    W x[4];
};

template <class T>
HWY_INLINE FourPoints<Eight<T>> fourPoints(Eight<T> x0, Eight<T> x1, Eight<T> x2, Eight<T> x3) {
    const auto sumEven = hn::Add(x0, x2);
    const auto differenceEven = hn::Sub(x0, x2);
    const auto sumOdd = hn::Add(x1, x3);
    const auto differenceOdd = Eight<T>{swapHalves(hn::Sub(x1, x3).raw)};
    const auto sign = constant<T, MinusI>();
    return {{hn::Add(sumEven, sumOdd), hn::MulAdd(differenceOdd, sign, differenceEven), hn::Sub(sumEven, sumOdd),
             hn::NegMulAdd(differenceOdd, sign, differenceEven)}};
}

// Lanes 2 and 3, the odd ones of four points, by -i.
struct MinusIOfOdd {
    static constexpr double at(size_t i) { return i < 6 ? 1 : -1; }
};

// Two points by four.
template <class T, class Source, class Result>
HWY_INLINE void transformOf8(const Source& src, const Result& dst) {
    using W = Eight<T>;
    const W a = src.loadFour(0);
    const W b = src.loadFour(4);
    const W even = hn::Add(a, b);
    const W odd = turned<4, T>(hn::Sub(a, b));
    const W first = W{shuffleHalves<0, 1, 0, 1>(even.raw, odd.raw)};
    const W second = W{shuffleHalves<2, 3, 2, 3>(even.raw, odd.raw)};
    const W sum = hn::Add(first, second);
    const W difference = hn::Sub(first, second);
    const W p = W{shuffleHalves<0, 2, 0, 2>(sum.raw, difference.raw)};
    const W q = W{shuffleHalves<1, 3, 1, 3>(sum.raw, difference.raw)};
    const W turnedQ = W{lanesOf<0, 1, 6, 7, 4, 5, 2, 3>(q.raw)};
    const W sign = constant<T, MinusIOfOdd>();
    dst.storeFour(0, hn::MulAdd(turnedQ, sign, p));
    dst.storeFour(4, hn::NegMulAdd(turnedQ, sign, p));
}

// Four points by four.
template <class T, class Source, class Result>
HWY_INLINE void transformOf16(const Source& src, const Result& dst) {
    using W = Eight<T>;
    FourPoints<W> rows = fourPoints<T>(src.loadFour(0), src.loadFour(4), src.loadFour(8), src.loadFour(12));
    rows.x[1] = turned<2, T>(rows.x[1]);
    rows.x[2] = turned<4, T>(rows.x[2]);
    rows.x[3] = turned<6, T>(rows.x[3]);
    W columns[4];
    transposeHalves(rows.x, columns);
    const FourPoints<W> result = fourPoints<T>(columns[0], columns[1], columns[2], columns[3]);
    unroll<4>([&](auto k) ZVPS_INLINE_LAMBDA { dst.storeFour(4 * k, result.x[k]); });
}

// ---- One or two complex values in a register as they lie in memory: no shuffles on the way in and out ----

// Signs that are left of a product with -i, the inverse's with i, after the parts have changed places: from pair kFirst
// on.
template <size_t kFirst, bool kInverse>
struct QuarterTurn {
    static constexpr double at(size_t i) { return i / 2 < kFirst || i % 2 == kInverse ? 1 : -1; }
};

// For butterflies. The inverse's have i and -i exchanged.
template <class T, bool kInverse>
struct InterleavedValue {
    Vec<T, 2> pair;
};

template <class T, bool kInverse>
HWY_INLINE InterleavedValue<T, kInverse> add(InterleavedValue<T, kInverse> a, InterleavedValue<T, kInverse> b) {
    return {hn::Add(a.pair, b.pair)};
}
template <class T, bool kInverse>
HWY_INLINE InterleavedValue<T, kInverse> sub(InterleavedValue<T, kInverse> a, InterleavedValue<T, kInverse> b) {
    return {hn::Sub(a.pair, b.pair)};
}
template <class T, bool kInverse>
HWY_INLINE InterleavedValue<T, kInverse> addI(InterleavedValue<T, kInverse> a, InterleavedValue<T, kInverse> b) {
    const auto turned = hn::Reverse2(Lanes<T, 2>(), b.pair);
    return {hn::NegMulAdd(turned, constant<T, QuarterTurn<0, kInverse>, 2>(), a.pair)};
}
template <class T, bool kInverse>
HWY_INLINE InterleavedValue<T, kInverse> subI(InterleavedValue<T, kInverse> a, InterleavedValue<T, kInverse> b) {
    const auto turned = hn::Reverse2(Lanes<T, 2>(), b.pair);
    return {hn::MulAdd(turned, constant<T, QuarterTurn<0, kInverse>, 2>(), a.pair)};
}
template <class T, bool kInverse>
HWY_INLINE InterleavedValue<T, kInverse> add(InterleavedValue<T, kInverse> a, InterleavedValue<T, kInverse> b,
                                             Vec<T, 2> factor) {
    return {hn::MulAdd(b.pair, factor, a.pair)};
}
template <class T, bool kInverse>
HWY_INLINE InterleavedValue<T, kInverse> sub(InterleavedValue<T, kInverse> a, InterleavedValue<T, kInverse> b,
                                             Vec<T, 2> factor) {
    return {hn::NegMulAdd(b.pair, factor, a.pair)};
}

template <class T>
struct PairsStorer {
    T* p;

    template <class W>
    HWY_INLINE void storePairs(size_t i, W x) const {
        hn::StoreU(x, hn::DFromV<W>(), p + 2 * i);
    }
};

// The lanes of x and y (from 4 on) at the places i...
template <int... i, class W>
HWY_INLINE W picked(W x, W y) {
    return W{__builtin_shufflevector(x.raw, y.raw, i...)};
}

template <class T, int order, bool kInverse, class Storer>
HWY_INLINE void transformPairs(const T* src, const Storer& storer) {
    if constexpr (sizeof(T) == 8) {
        using Value = InterleavedValue<T, kInverse>;
        Value x[size_t{1} << order];
        unroll<(size_t{1} << order)>([&](auto n)
                                         ZVPS_INLINE_LAMBDA { x[n].pair = hn::LoadU(Lanes<T, 2>(), src + 2 * n); });
        Butterfly<T, 2, (size_t{1} << order)>::run([&](auto n) ZVPS_INLINE_LAMBDA { return x[n]; },
                                                   [&](auto k, Value value)
                                                       ZVPS_INLINE_LAMBDA { storer.storePairs(k, value.pair); });
    } else {
        static_assert(order == 2);
        const Lanes<T, 4> d;
        const auto x01 = hn::LoadU(d, src);
        const auto x23 = hn::LoadU(d, src + 4);
        const auto sum = hn::Add(x01, x23);
        const auto difference = hn::Sub(x01, x23);
        const auto even = picked<0, 1, 4, 5>(sum, difference);
        const auto odd = picked<2, 3, 7, 6>(sum, difference);
        const auto signs = constant<T, QuarterTurn<1, kInverse>, 4>();
        storer.storePairs(0, hn::MulAdd(odd, signs, even));
        storer.storePairs(2, hn::NegMulAdd(odd, signs, even));
    }
}

// ---- Eight complex values in two registers ----

// The cosine, or with a shift of 8 the negated sine, of 2 pi step l / 32 for lane l; and of 2 pi step / 32 for the
// upper half, 0 for the lower.
template <size_t step, size_t shift>
struct LaneTurn {
    static constexpr double at(size_t i) { return cosOf32(step * i + shift); }
};
template <size_t step, size_t shift>
struct UpperTurn {
    static constexpr double at(size_t i) { return cosOf32((i < 4 ? 0 : step) + shift); }
};

struct SumAndDifference {
    static constexpr double at(size_t i) { return i < 4 ? 1 : -1; }
};

// Four points by eight, these as two by four.
template <class T, class Loader, class Storer>
HWY_INLINE void transformOf32(const Loader& loader, const Storer& storer) {
    using C = ComplexVec<T, kEight>;
    using W = Eight<T>;
    W re[4], im[4], columnsRe[4], columnsIm[4];
    Butterfly<T, kEight, 4>::run(
        [&](auto n) ZVPS_INLINE_LAMBDA {
            const C x = loader.template load<kEight, kEight>(8 * n);
            return C{fromBlocks<T, kEight>(x.re), fromBlocks<T, kEight>(x.im)};
        },
        [&](auto k, C x) ZVPS_INLINE_LAMBDA {
            if constexpr (k != 0) {
                x = mul(x, C{constant<T, LaneTurn<k, 0>>(), constant<T, LaneTurn<k, 8>>()});
            }
            re[k] = x.re;
            im[k] = x.im;
        });
    transposeHalves(re, columnsRe);
    transposeHalves(im, columnsIm);
    const W sign = constant<T, SumAndDifference>();
    Butterfly<T, kEight, 4>::run(
        [&](auto n) ZVPS_INLINE_LAMBDA {
            const C x = {hn::MulAdd(columnsRe[n], sign, W{swapHalves(columnsRe[n].raw)}),
                         hn::MulAdd(columnsIm[n], sign, W{swapHalves(columnsIm[n].raw)})};
            if constexpr (n == 0) {
                return x;
            } else {
                return mul(x, C{constant<T, UpperTurn<4 * n, 0>>(), constant<T, UpperTurn<4 * n, 8>>()});
            }
        },
        [&](auto k, C x) ZVPS_INLINE_LAMBDA {
            storer.template store<kEight, kEight>(8 * k, C{toBlocks<T, kEight>(x.re), toBlocks<T, kEight>(x.im)});
        });
}

template <class T, int order, class Source, class Result, class Loader, class Storer>
HWY_INLINE void transformInRegisters(const Source& src, const Result& dst, const Loader& loader, const Storer& storer) {
    if constexpr (order == 3) {
        transformOf8<T>(src, dst);
    } else if constexpr (order == 4) {
        transformOf16<T>(src, dst);
    } else {
        transformOf32<T>(loader, storer);
    }
}

#else

template <class T>
struct PairsStorer;
template <class T, int order, bool kInverse, class Storer>
void transformPairs(const T* src, const Storer& storer);
template <class T, bool kInverse>
struct InterleavedFours;
template <class T>
struct SplitFours;
template <class T, int order, class Source, class Result, class Loader, class Storer>
void transformInRegisters(const Source& src, const Result& dst, const Loader& loader, const Storer& storer);

#endif

} // namespace zvps::ZVPS_LEVEL
