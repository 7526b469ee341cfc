// Complex transforms of up to 256 points on interleaved values as they lie in memory: no shuffles on the way in and
// out, and between two butterflies only those that transpose. All factors are constants.
#pragma once

#include "transforms/fft_passes.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- Constants ----

// N lanes from a function of the place.
template <class T, class F, size_t N>
struct LaneValues {
    alignas(N * sizeof(T)) T values[N];

    constexpr LaneValues() : values() {
        for (size_t i = 0; i < N; ++i) {
            values[i] = static_cast<T>(F::at(i));
        }
    }
};
template <class T, class F, size_t N>
HWY_INLINE Vec<T, N> constant() {
    static constexpr LaneValues<T, F, N> kValues;
    return hn::Load(Lanes<T, N>(), kValues.values);
}

// The signs that are left of a product with -i, the inverse's with i, after the parts have changed places: from value
// kFirst on.
template <size_t kFirst, bool kInverse>
struct QuarterTurn {
    static constexpr double at(size_t i) { return i < 2 * kFirst || i % 2 == kInverse ? 1 : -1; }
};

// The factors of transforms of R1 points by R2 for each N / 2 of the R1 numbers: exp(-2 pi i number n / (R1 R2)), for
// the inverse the conjugate, as real parts and as imaginary ones with the signs for values whose parts have changed
// places. `quarter` is -i (i) in the same way.
template <class T, size_t N, size_t R1, size_t R2>
struct SmallTurns {
    alignas(N * sizeof(T)) T quarter[N];
    T re[R1 / (N / 2)][R2][N];
    T im[R1 / (N / 2)][R2][N];

    explicit constexpr SmallTurns(bool isInverse) : quarter(), re(), im() {
        constexpr size_t L = N / 2;
        for (size_t i = 0; i < N; ++i) {
            const double sign = (i % 2 == 1) == isInverse ? -1 : 1;
            quarter[i] = static_cast<T>(-sign);
            for (size_t number = i / 2; number < R1; number += L) {
                for (size_t n = 0; n < R2; ++n) {
                    const size_t turn = number * n * (256 / (R1 * R2));
                    re[number / L][n][i] = static_cast<T>(cosOf256(turn));
                    im[number / L][n][i] = static_cast<T>(sign * cosOf256(turn + 64));
                }
            }
        }
    }
};
template <class T, size_t N, size_t R1, size_t R2>
inline constexpr SmallTurns<T, N, R1, R2> kSmallTurns[] = {SmallTurns<T, N, R1, R2>(false),
                                                           SmallTurns<T, N, R1, R2>(true)};

// ---- N / 2 complex values in a register ----

// For butterflies. The signs are those of -i, or of i for the inverse, which has the two exchanged.
template <class T, size_t N>
struct InterleavedValues {
    Vec<T, N> pairs;
    Vec<T, N> signs;

    HWY_INLINE Vec<T, N> exchanged() const { return hn::Reverse2(Lanes<T, N>(), pairs); }
    HWY_INLINE InterleavedValues with(Vec<T, N> result) const { return {result, signs}; }
};

template <class T, size_t N>
HWY_INLINE auto add(InterleavedValues<T, N> a, InterleavedValues<T, N> b) {
    return a.with(hn::Add(a.pairs, b.pairs));
}
template <class T, size_t N>
HWY_INLINE auto sub(InterleavedValues<T, N> a, InterleavedValues<T, N> b) {
    return a.with(hn::Sub(a.pairs, b.pairs));
}
template <class T, size_t N>
HWY_INLINE auto addI(InterleavedValues<T, N> a, InterleavedValues<T, N> b) {
    return a.with(hn::NegMulAdd(b.exchanged(), b.signs, a.pairs));
}
template <class T, size_t N>
HWY_INLINE auto subI(InterleavedValues<T, N> a, InterleavedValues<T, N> b) {
    return a.with(hn::MulAdd(b.exchanged(), b.signs, a.pairs));
}
template <class T, size_t N>
HWY_INLINE auto add(InterleavedValues<T, N> a, InterleavedValues<T, N> b, Vec<T, N> factor) {
    return a.with(hn::MulAdd(b.pairs, factor, a.pairs));
}
template <class T, size_t N>
HWY_INLINE auto sub(InterleavedValues<T, N> a, InterleavedValues<T, N> b, Vec<T, N> factor) {
    return a.with(hn::NegMulAdd(b.pairs, factor, a.pairs));
}
template <class T, size_t N>
HWY_INLINE auto addI(InterleavedValues<T, N> a, InterleavedValues<T, N> b, Vec<T, N> factor) {
    return a.with(hn::NegMulAdd(b.exchanged(), hn::Mul(b.signs, factor), a.pairs));
}
template <class T, size_t N>
HWY_INLINE auto subI(InterleavedValues<T, N> a, InterleavedValues<T, N> b, Vec<T, N> factor) {
    return a.with(hn::MulAdd(b.exchanged(), hn::Mul(b.signs, factor), a.pairs));
}
template <class T, size_t N>
HWY_INLINE auto mulMinusI(InterleavedValues<T, N> b, Vec<T, N> factor) {
    return b.with(hn::MulAdd(b.pairs, factor, hn::Mul(b.exchanged(), b.signs)));
}

// Transposes as many vectors as they have values.
template <class T, size_t N, class In, class Out>
HWY_INLINE void transposeValues(const In& in, const Out& out) {
    if constexpr (N == 2) {
        out(Index<0>(), in(Index<0>()));
    } else if constexpr (sizeof(T) == 8) {
        transposeBlocks<T, N>(in, out);
    } else {
        const Lanes<T, N> d;
        const Lanes<double, N / 2> wide;
        transpose<double, N / 2>([&](auto row) ZVPS_INLINE_LAMBDA { return hn::BitCast(wide, in(row)); },
                                 [&](auto lane, Vec<double, N / 2> v)
                                     ZVPS_INLINE_LAMBDA { out(lane, hn::BitCast(d, v)); });
    }
}

// ---- Data ----

template <class T>
struct PairsLoader {
    const T* p;

    template <size_t N>
    HWY_INLINE Vec<T, N> load(size_t i) const {
        return hn::LoadU(Lanes<T, N>(), p + 2 * i);
    }
    // N / 4 values, twice.
    template <size_t N>
    HWY_INLINE Vec<T, N> loadTwice(size_t i) const {
        return hn::LoadDup128(Lanes<T, N>(), p + 2 * i);
    }
};
template <class T>
struct PairsStorer {
    T* p;

    template <size_t N>
    HWY_INLINE void storePairs(size_t i, Vec<T, N> x) const {
        hn::StoreU(x, Lanes<T, N>(), p + 2 * i);
    }
};

// The lanes of x at the places i...
template <size_t... i, class V>
HWY_INLINE V lanesAt(V x, std::index_sequence<i...>) {
    return V{__builtin_shufflevector(x.raw, x.raw, static_cast<int>(i)...)};
}
// Real parts and then imaginary ones to pairs, and back.
template <class T, size_t N, size_t... i>
HWY_INLINE Vec<T, N> pairsOfHalves(Vec<T, N> x, std::index_sequence<i...>) {
    return lanesAt(x, std::index_sequence<(i / 2 + i % 2 * (N / 2))...>());
}
template <class T, size_t N, size_t... i>
HWY_INLINE Vec<T, N> halvesOfPairs(Vec<T, N> x, std::index_sequence<i...>) {
    return lanesAt(x, std::index_sequence<(i % (N / 2) * 2 + i / (N / 2))...>());
}

template <class T>
struct SplitPairsLoader {
    const T* re;
    const T* im;

    template <size_t N>
    HWY_INLINE Vec<T, N> load(size_t i) const {
        const Lanes<T, N / 2> half;
        const auto x = hn::Combine(Lanes<T, N>(), hn::LoadU(half, im + i), hn::LoadU(half, re + i));
        if constexpr (N == 2) {
            return x;
        } else {
            return pairsOfHalves<T, N>(x, std::make_index_sequence<N>());
        }
    }
    template <size_t N>
    HWY_INLINE Vec<T, N> loadTwice(size_t i) const {
        // Of N / 2 in both halves those that are asked for.
        const Lanes<T, N> d;
        const size_t beyond = i % (N / 2);
        const auto first = hn::LoadDup128(d, re + i - beyond);
        const auto second = hn::LoadDup128(d, im + i - beyond);
        return beyond == 0 ? hn::InterleaveLower(d, first, second) : hn::InterleaveUpper(d, first, second);
    }
};
template <class T>
struct SplitPairsStorer {
    T* re;
    T* im;

    template <size_t N>
    HWY_INLINE void storePairs(size_t i, Vec<T, N> x) const {
        const Lanes<T, N / 2> half;
        if constexpr (N > 2) x = halvesOfPairs<T, N>(x, std::make_index_sequence<N>());
        hn::StoreU(hn::LowerHalf(half, x), half, re + i);
        hn::StoreU(hn::UpperHalf(half, x), half, im + i);
    }
};

// ---- Transforms ----

// In two registers of two values.
template <class T, bool kInverse, class Loader, class Storer>
HWY_INLINE void transformOf4(const Loader& loader, const Storer& storer) {
    const auto x01 = loader.template load<4>(0);
    const auto x23 = loader.template load<4>(2);
    const auto sum = hn::Add(x01, x23);
    const auto difference = hn::Sub(x01, x23);
    const Vec<T, 4> even = {_mm_movelh_ps(sum.raw, difference.raw)};
    const Vec<T, 4> odd = {_mm_shuffle_ps(sum.raw, difference.raw, _MM_SHUFFLE(2, 3, 3, 2))};
    const auto signs = constant<T, QuarterTurn<1, kInverse>, 4>();
    storer.template storePairs<4>(0, hn::MulAdd(odd, signs, even));
    storer.template storePairs<4>(2, hn::NegMulAdd(odd, signs, even));
}

// In two registers of four values. Loads put two points in both halves, one for sums and one for differences, so that
// no lane moves from half to half.
template <class T, bool kInverse, class Loader, class Storer>
HWY_INLINE void transformOf8(const Loader& loader, const Storer& storer) {
    struct Signs {
        static constexpr double at(size_t i) { return i < 4 ? 1 : -1; }
    };
    struct Turns {
        static constexpr double at(size_t i) { return Signs::at(i) * QuarterTurn<0, kInverse>::at(i); }
    };
    const Lanes<T, 8> d;
    const Lanes<double, 4> wide;
    const auto x01 = loader.template loadTwice<8>(0);
    const auto x23 = loader.template loadTwice<8>(2);
    const auto x45 = loader.template loadTwice<8>(4);
    const auto x67 = loader.template loadTwice<8>(6);
    const auto even = hn::BitCast(wide, hn::MulAdd(hn::Add(x23, x67), constant<T, Signs, 8>(), hn::Add(x01, x45)));
    const auto exchanged = hn::Reverse2(d, hn::Sub(x23, x67));
    const auto odd = hn::BitCast(wide, hn::MulAdd(exchanged, constant<T, Turns, 8>(), hn::Sub(x01, x45)));
    const auto first = hn::BitCast(d, hn::InterleaveLower(wide, even, odd));
    const auto second = hn::BitCast(d, hn::InterleaveUpper(wide, even, odd));
    const auto& turns = kSmallTurns<T, 8, 4, 2>[kInverse];
    const auto re = hn::Load(d, turns.re[0][1]);
    const auto im = hn::Load(d, turns.im[0][1]);
    const auto secondExchanged = hn::Reverse2(d, second);
    storer.template storePairs<8>(0, hn::MulAdd(secondExchanged, im, hn::MulAdd(second, re, first)));
    storer.template storePairs<8>(4, hn::NegMulAdd(secondExchanged, im, hn::NegMulAdd(second, re, first)));
}

// In registers of one value.
template <class T, size_t R, bool kInverse, class Loader, class Storer>
HWY_INLINE void transformInOne(const Loader& loader, const Storer& storer) {
    using Values = InterleavedValues<T, 2>;
    if constexpr (R == 1) {
        storer.template storePairs<2>(0, loader.template load<2>(0));
    } else {
        const auto signs = constant<T, QuarterTurn<0, kInverse>, 2>();
        Butterfly<T, 2, R>::run(
            [&](auto n) ZVPS_INLINE_LAMBDA {
                return Values{loader.template load<2>(n), signs};
            },
            [&](auto k, Values value) ZVPS_INLINE_LAMBDA { storer.template storePairs<2>(k, value.pairs); });
    }
}

// f(0), ..., f(count - 1), unrolled where their arrays should be in registers.
template <size_t count, bool unrolls, class F>
HWY_INLINE void forEach(const F& f) {
    if constexpr (unrolls) {
        unroll<count>(f);
    } else {
        for (size_t i = 0; i < count; ++i) {
            f(i);
        }
    }
}

// R1 points by R2, in registers of N / 2 values: of neighbouring points, then of neighbouring numbers.
template <class T, size_t N, size_t R1, size_t R2, class Loader, class Storer>
HWY_INLINE void transformInTwo(const Loader& loader, const Storer& storer, const SmallTurns<T, N, R1, R2>& turns) {
    using Values = InterleavedValues<T, N>;
    constexpr size_t L = N / 2;
    constexpr bool kUnrolls = HWY_TARGET <= HWY_AVX2 && R1 * R2 / L <= kVectorBytes;
    const Lanes<T, N> d;
    const auto signs = hn::Load(d, turns.quarter);
    Vec<T, N> x[R2 / L][R1];
    forEach<R2 / L, kUnrolls>([&](auto group) ZVPS_INLINE_LAMBDA {
        Butterfly<T, N, R1>::run(
            [&](auto n) ZVPS_INLINE_LAMBDA {
                return Values{loader.template load<N>(n * R2 + group * L), signs};
            },
            [&](auto k, Values value) ZVPS_INLINE_LAMBDA { x[group][k] = value.pairs; });
    });
    forEach<R1 / L, kUnrolls>([&](auto group) ZVPS_INLINE_LAMBDA {
        Vec<T, N> columns[R2];
        unroll<R2 / L>([&](auto block) ZVPS_INLINE_LAMBDA {
            transposeValues<T, N>([&](auto row) ZVPS_INLINE_LAMBDA { return x[block][group * L + row]; },
                                  [&](auto lane, Vec<T, N> v) ZVPS_INLINE_LAMBDA { columns[block * L + lane] = v; });
        });
        Butterfly<T, N, R2>::run(
            [&](auto n) ZVPS_INLINE_LAMBDA {
                const Values value = {columns[n], signs};
                if constexpr (n == 0) {
                    return value;
                } else {
                    const auto re = hn::Mul(value.pairs, hn::Load(d, turns.re[group][n]));
                    return value.with(hn::MulAdd(value.exchanged(), hn::Load(d, turns.im[group][n]), re));
                }
            },
            [&](auto k, Values value)
                ZVPS_INLINE_LAMBDA { storer.template storePairs<N>(k * R1 + group * L, value.pairs); });
    });
}

// The same, compiled once for both directions.
template <class T, size_t N, size_t R1, size_t R2, class Loader, class Storer>
HWY_NOINLINE void compiledInTwo(const Loader loader, const Storer storer, const SmallTurns<T, N, R1, R2>& turns) {
    transformInTwo(loader, storer, turns);
}

template <class T, int order, bool kInverse, class Loader, class Storer>
HWY_INLINE void smallTransform(const Loader& loader, const Storer& storer) {
    constexpr bool isDouble = sizeof(T) == 8;
    constexpr size_t kBytes = kVectorBytes < 32 || order > 6 ? kVectorBytes : 32;
    if constexpr (order <= (isDouble ? 3 : 1)) {
        transformInOne<T, size_t{1} << order, kInverse>(loader, storer);
    } else if constexpr (order == 2) {
        transformOf4<T, kInverse>(loader, storer);
    } else if constexpr (order == 3 && kBytes == 32) {
        transformOf8<T, kInverse>(loader, storer);
    } else {
        constexpr size_t R1 = order <= 5 ? 4 : order == 8 || (order == 7 && isDouble) ? 16 : 8;
        const auto& turns = kSmallTurns<T, kBytes / sizeof(T), R1, (size_t{1} << order) / R1>[kInverse];
        if constexpr (order <= 5) {
            transformInTwo(loader, storer, turns);
        } else {
            compiledInTwo(loader, storer, turns);
        }
    }
}

// ---- Transforms in planes ----

template <class T>
struct PlaneStorer {
    T* re;
    T* im;

    template <size_t V, size_t B>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        const Lanes<T, V> d;
        hn::StoreU(x.re, d, re + i);
        hn::StoreU(x.im, d, im + i);
    }
};

// The cosine, or with a shift of 8 the negated sine, of 2 pi step l / 32 for lane l.
template <size_t step, size_t shift>
struct LaneTurn {
    static constexpr double at(size_t i) { return cosOf32(step * i + shift); }
};

// R points by four.
template <class T, size_t R, class Storer>
HWY_INLINE void transformPlanes(const T* re, const T* im, const Storer& storer) {
    using C = ComplexVec<T, 4>;
    const Lanes<T, 4> d;
    C x[R];
    Butterfly<T, 4, R>::run(
        [&](auto n) ZVPS_INLINE_LAMBDA {
            return C{hn::LoadU(d, re + 4 * n), hn::LoadU(d, im + 4 * n)};
        },
        [&](auto k, C value) ZVPS_INLINE_LAMBDA {
            if constexpr (k != 0) {
                constexpr size_t kStep = k * (8 / R);
                value = mul(value, C{constant<T, LaneTurn<kStep, 0>, 4>(), constant<T, LaneTurn<kStep, 8>, 4>()});
            }
            x[k] = value;
        });
    unroll<R / 4>([&](auto group) ZVPS_INLINE_LAMBDA {
        C columns[4];
        transpose<T, 4>([&](auto row) ZVPS_INLINE_LAMBDA { return x[4 * group + row].re; },
                        [&](auto lane, Vec<T, 4> v) ZVPS_INLINE_LAMBDA { columns[lane].re = v; });
        transpose<T, 4>([&](auto row) ZVPS_INLINE_LAMBDA { return x[4 * group + row].im; },
                        [&](auto lane, Vec<T, 4> v) ZVPS_INLINE_LAMBDA { columns[lane].im = v; });
        Butterfly<T, 4, 4>::run([&](auto n) ZVPS_INLINE_LAMBDA { return columns[n]; },
                                [&](auto k, C value)
                                    ZVPS_INLINE_LAMBDA { storer.template store<4, 4>(k * R + 4 * group, value); });
    });
}

// Whether these are faster for data in two arrays.
template <class T>
constexpr bool areInPlanes(int order) {
    return 4 * sizeof(T) <= kVectorBytes && (order == 4 || (order == 5 && sizeof(T) == 8));
}

} // namespace zvps::ZVPS_LEVEL
