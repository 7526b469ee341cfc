// Complex transforms of 4 to 32 points in registers of 4 and 8 lanes, up to 32 bytes.
#pragma once

#include "transforms/fft_passes.hpp"

namespace zvps::ZVPS_LEVEL {

// Whether a transform is one of these: registers are as long, and passes are not as fast.
template <class T>
constexpr bool isInRegisters(int order) {
    return kVectorBytes >= 32 && order >= 2 && (sizeof(T) == 4 || order <= 3);
}

#if HWY_TARGET <= HWY_AVX2

// ---- Shuffles ----

// The lanes of a and b (from 4 on) at the places i...
template <int... i, class W>
HWY_INLINE W fourLanes(W a, W b) {
    return W{reinterpret_cast<decltype(a.raw)>(__builtin_shufflevector(a.raw, b.raw, i...))};
}

// Of the halves of a register, each of four lanes:

inline constexpr size_t kEight = 8;

template <class T>
using Eight = Vec<T, kEight>;

// The lanes of x at the places i...
template <int... i>
HWY_INLINE __m256 lanesOf(__m256 x) {
    return _mm256_permutevar8x32_ps(x, _mm256_setr_epi32(i...));
}
// In each half lanes a and b of x, then c and d of y.
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

// ---- Four complex values in a register, the real parts, then the imaginary ones; or two of them side by side ----

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
    HWY_INLINE auto loadTwo(size_t i) const {
        return inOrder(hn::LoadU(Lanes<std::remove_const_t<T>, 4>(), p + 2 * i));
    }
    template <class W>
    HWY_INLINE void storeTwo(size_t i, W x) const {
        hn::StoreU(inOrder(x), Lanes<T, 4>(), p + 2 * i);
    }

  private:
    template <class W>
    static HWY_INLINE W inOrder(W x) {
        return kInverse ? fourLanes<1, 0, 3, 2>(x, x) : x;
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
    HWY_INLINE auto loadTwo(size_t i) const {
        using Value = std::remove_const_t<T>;
        const Lanes<Value, 2> half;
        const auto x = hn::Combine(Lanes<Value, 4>(), hn::LoadU(half, im + i), hn::LoadU(half, re + i));
        return fourLanes<0, 2, 1, 3>(x, x);
    }
    template <class W>
    HWY_INLINE void storeTwo(size_t i, W x) const {
        const Lanes<T, 2> half;
        const W parts = fourLanes<0, 2, 1, 3>(x, x);
        hn::StoreU(hn::LowerHalf(half, parts), half, re + i);
        hn::StoreU(hn::UpperHalf(half, parts), half, im + i);
    }
};

// ---- Two complex values side by side ----

template <class T>
HWY_INLINE Vec<T, 4> fourValues(T a, T b, T c, T d) {
    alignas(32) const T values[] = {a, b, c, d};
    return hn::Load(Lanes<T, 4>(), values);
}

// The lower values of a and b, and the upper ones.
template <class W>
HWY_INLINE W lowerTwo(W a, W b) {
    return fourLanes<0, 1, 4, 5>(a, b);
}
template <class W>
HWY_INLINE W upperTwo(W a, W b) {
    return fourLanes<2, 3, 6, 7>(a, b);
}

// Calls of these after each other in place wait for little more than the additions.
template <class T, class Source, class Result>
HWY_INLINE void transformOf4(const Source& src, const Result& dst) {
    using W = Vec<T, 4>;
    const W a = src.loadTwo(0);
    const W b = src.loadTwo(2);
    const W sum = hn::Add(a, b);
    const W difference = hn::Sub(a, b);
    const W even = lowerTwo(sum, difference);
    const W odd = fourLanes<2, 3, 7, 6>(sum, difference);
    const W sign = fourValues<T>(1, 1, 1, -1);
    dst.storeTwo(0, hn::MulAdd(odd, sign, even));
    dst.storeTwo(2, hn::NegMulAdd(odd, sign, even));
}

// The transforms of the even values in the lower halves and of the odd ones in the upper halves.
template <class T, class Source, class Result>
HWY_INLINE void transformOf8ByTwo(const Source& src, const Result& dst) {
    using W = Vec<T, 4>;
    const W x01 = src.loadTwo(0);
    const W x23 = src.loadTwo(2);
    const W x45 = src.loadTwo(4);
    const W x67 = src.loadTwo(6);
    const W sumEven = hn::Add(x01, x45);
    const W differenceEven = hn::Sub(x01, x45);
    const W sumOdd = hn::Add(x23, x67);
    const W differenceOdd = hn::Sub(x23, x67);
    const W minusI = fourValues<T>(1, -1, 1, -1);
    const W turnedOdd = fourLanes<1, 0, 3, 2>(differenceOdd, differenceOdd);
    const W p0 = hn::Add(sumEven, sumOdd);
    const W p1 = hn::MulAdd(turnedOdd, minusI, differenceEven);
    const W p2 = hn::Sub(sumEven, sumOdd);
    const W p3 = hn::NegMulAdd(turnedOdd, minusI, differenceEven);
    // Of the odd ones the second by (1 - i), the third by -i and the fourth by (-1 - i).
    const W odd01 = upperTwo(p0, p1);
    const W odd23 = upperTwo(p2, p3);
    const W by01 = hn::MulAdd(fourLanes<1, 0, 3, 2>(odd01, odd01), fourValues<T>(0, 0, 1, -1), odd01);
    const W by23 = hn::MulAdd(odd23, fourValues<T>(0, 0, -1, -1), hn::Mul(fourLanes<1, 0, 3, 2>(odd23, odd23), minusI));
    const W factor = fourValues<T>(1, 1, T(kCosEighth), T(kCosEighth));
    const W even01 = lowerTwo(p0, p1);
    const W even23 = lowerTwo(p2, p3);
    dst.storeTwo(0, hn::MulAdd(by01, factor, even01));
    dst.storeTwo(2, hn::MulAdd(by23, factor, even23));
    dst.storeTwo(4, hn::NegMulAdd(by01, factor, even01));
    dst.storeTwo(6, hn::NegMulAdd(by23, factor, even23));
}

// ---- Four complex values in a register ----

// Constants of 8 lanes from a function of the place.
template <class T, class F>
struct EightValues {
    alignas(64) T values[kEight];

    constexpr EightValues() : values() {
        for (size_t i = 0; i < kEight; ++i) {
            values[i] = static_cast<T>(F::at(i));
        }
    }
};
template <class T, class F>
HWY_INLINE Eight<T> constant() {
    static constexpr EightValues<T, F> kValues;
    return hn::Load(Lanes<T, kEight>(), kValues.values);
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
    if constexpr (order == 2) {
        transformOf4<T>(src, dst);
    } else if constexpr (order == 3 && sizeof(T) == 8) {
        transformOf8ByTwo<T>(src, dst);
    } else if constexpr (order == 3) {
        transformOf8<T>(src, dst);
    } else if constexpr (order == 4) {
        transformOf16<T>(src, dst);
    } else {
        transformOf32<T>(loader, storer);
    }
}

#else

template <class T, bool kInverse>
struct InterleavedFours;
template <class T>
struct SplitFours;
template <class T, int order, class Source, class Result, class Loader, class Storer>
void transformInRegisters(const Source& src, const Result& dst, const Loader& loader, const Storer& storer);

#endif

} // namespace zvps::ZVPS_LEVEL
