// Complex transforms of few points, in registers, on interleaved values as they lie in memory: no shuffles on the way
// in and out. They have no tables.
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

// exp(-2 pi i t / 64) for turns t of the values in a vector, their conjugates for the inverse: x times the real parts
// plus x with its parts exchanged times the imaginary ones, first negated.
template <class Turns>
struct TurnRe {
    static constexpr double at(size_t i) { return cosOf64(Turns::at(i / 2)); }
};
template <class Turns, bool kInverse>
struct TurnIm {
    static constexpr double at(size_t i) { return (i % 2 == kInverse ? -1 : 1) * cosOf64(Turns::at(i / 2) + 16); }
};

// Turns of equal steps, from the one of value kFirst on.
template <size_t kStep, size_t kFirst>
struct TurnsBy {
    static constexpr size_t at(size_t value) { return kStep * (kFirst + value); }
};
// By -i.
struct QuarterTurns {
    static constexpr size_t at(size_t) { return 16; }
};

// ---- N / 2 complex values in a register ----

// For butterflies. The inverse's have i and -i exchanged.
template <class T, size_t N, bool kInverse>
struct InterleavedValues {
    Vec<T, N> pairs;

    // By -i, but for the signs.
    HWY_INLINE Vec<T, N> exchanged() const { return hn::Reverse2(Lanes<T, N>(), pairs); }
    static HWY_INLINE Vec<T, N> signs() { return constant<T, TurnIm<QuarterTurns, kInverse>, N>(); }

    template <class Turns>
    HWY_INLINE InterleavedValues turned() const {
        const auto re = hn::Mul(pairs, constant<T, TurnRe<Turns>, N>());
        return {hn::MulAdd(exchanged(), constant<T, TurnIm<Turns, kInverse>, N>(), re)};
    }
};

template <class T, size_t N, bool kInverse>
HWY_INLINE auto add(InterleavedValues<T, N, kInverse> a, InterleavedValues<T, N, kInverse> b) {
    return InterleavedValues<T, N, kInverse>{hn::Add(a.pairs, b.pairs)};
}
template <class T, size_t N, bool kInverse>
HWY_INLINE auto sub(InterleavedValues<T, N, kInverse> a, InterleavedValues<T, N, kInverse> b) {
    return InterleavedValues<T, N, kInverse>{hn::Sub(a.pairs, b.pairs)};
}
template <class T, size_t N, bool kInverse>
HWY_INLINE auto addI(InterleavedValues<T, N, kInverse> a, InterleavedValues<T, N, kInverse> b) {
    return InterleavedValues<T, N, kInverse>{hn::NegMulAdd(b.exchanged(), b.signs(), a.pairs)};
}
template <class T, size_t N, bool kInverse>
HWY_INLINE auto subI(InterleavedValues<T, N, kInverse> a, InterleavedValues<T, N, kInverse> b) {
    return InterleavedValues<T, N, kInverse>{hn::MulAdd(b.exchanged(), b.signs(), a.pairs)};
}
template <class T, size_t N, bool kInverse>
HWY_INLINE auto add(InterleavedValues<T, N, kInverse> a, InterleavedValues<T, N, kInverse> b, Vec<T, N> factor) {
    return InterleavedValues<T, N, kInverse>{hn::MulAdd(b.pairs, factor, a.pairs)};
}
template <class T, size_t N, bool kInverse>
HWY_INLINE auto sub(InterleavedValues<T, N, kInverse> a, InterleavedValues<T, N, kInverse> b, Vec<T, N> factor) {
    return InterleavedValues<T, N, kInverse>{hn::NegMulAdd(b.pairs, factor, a.pairs)};
}

// Complex values of 16 / sizeof(T) bytes as single lanes: transposes as many vectors as they have values.
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
    struct Signs {
        static constexpr double at(size_t i) { return i < 2 ? 1 : TurnIm<QuarterTurns, kInverse>::at(i); }
    };
    const auto x01 = loader.template load<4>(0);
    const auto x23 = loader.template load<4>(2);
    const auto sum = hn::Add(x01, x23);
    const auto difference = hn::Sub(x01, x23);
    const Vec<T, 4> even = {_mm_movelh_ps(sum.raw, difference.raw)};
    const Vec<T, 4> odd = {_mm_shuffle_ps(sum.raw, difference.raw, _MM_SHUFFLE(2, 3, 3, 2))};
    const auto signs = constant<T, Signs, 4>();
    storer.template storePairs<4>(0, hn::MulAdd(odd, signs, even));
    storer.template storePairs<4>(2, hn::NegMulAdd(odd, signs, even));
}

// In two registers of four values. The loads put pairs of points in both halves, one for the sums with the points four
// places after the next but one, one for the differences: no lane moves between the halves.
template <class T, bool kInverse, class Loader, class Storer>
HWY_INLINE void transformOf8(const Loader& loader, const Storer& storer) {
    using Values = InterleavedValues<T, 8, kInverse>;
    struct Signs {
        static constexpr double at(size_t i) { return i < 4 ? 1 : -1; }
    };
    struct Turns {
        static constexpr double at(size_t i) { return Signs::at(i) * TurnIm<QuarterTurns, kInverse>::at(i); }
    };
    const Lanes<double, 4> wide;
    const Lanes<T, 8> d;
    const auto x01 = loader.template loadTwice<8>(0);
    const auto x23 = loader.template loadTwice<8>(2);
    const auto x45 = loader.template loadTwice<8>(4);
    const auto x67 = loader.template loadTwice<8>(6);
    const Values difference = {hn::Sub(x23, x67)};
    const auto even = hn::BitCast(wide, hn::MulAdd(hn::Add(x23, x67), constant<T, Signs, 8>(), hn::Add(x01, x45)));
    const auto odd = hn::BitCast(wide, hn::MulAdd(difference.exchanged(), constant<T, Turns, 8>(), hn::Sub(x01, x45)));
    const auto first = hn::BitCast(d, hn::InterleaveLower(wide, even, odd));
    const Values second = {hn::BitCast(d, hn::InterleaveUpper(wide, even, odd))};
    const auto re = constant<T, TurnRe<TurnsBy<8, 0>>, 8>();
    const auto im = constant<T, TurnIm<TurnsBy<8, 0>, kInverse>, 8>();
    storer.template storePairs<8>(0, hn::MulAdd(second.exchanged(), im, hn::MulAdd(second.pairs, re, first)));
    storer.template storePairs<8>(4, hn::NegMulAdd(second.exchanged(), im, hn::NegMulAdd(second.pairs, re, first)));
}

// R1 points by R2, in registers of N / 2 values: of neighbouring points, then of neighbouring results.
template <class T, size_t N, size_t R1, size_t R2, bool kInverse, class Loader, class Storer>
HWY_INLINE void transformInTwo(const Loader& loader, const Storer& storer) {
    using Values = InterleavedValues<T, N, kInverse>;
    constexpr size_t L = N / 2;
    Values x[R1][R2 / L];
    unroll<R2 / L>([&](auto group) ZVPS_INLINE_LAMBDA {
        Butterfly<T, N, R1>::run([&](auto n)
                                     ZVPS_INLINE_LAMBDA { return Values{loader.template load<N>(n * R2 + group * L)}; },
                                 [&](auto k, Values value) ZVPS_INLINE_LAMBDA { x[k][group] = value; });
    });
    unroll<R1 / L>([&](auto group) ZVPS_INLINE_LAMBDA {
        Values columns[R2];
        unroll<R2 / L>([&](auto block) ZVPS_INLINE_LAMBDA {
            transposeValues<T, N>([&](auto row) ZVPS_INLINE_LAMBDA { return x[group * L + row][block].pairs; },
                                  [&](auto lane, Vec<T, N> v)
                                      ZVPS_INLINE_LAMBDA { columns[block * L + lane].pairs = v; });
        });
        Butterfly<T, N, R2>::run(
            [&](auto n) ZVPS_INLINE_LAMBDA {
                if constexpr (n == 0) {
                    return columns[n];
                } else {
                    return columns[n].template turned<TurnsBy<n*(64 / (R1 * R2)), group * L>>();
                }
            },
            [&](auto k, Values value)
                ZVPS_INLINE_LAMBDA { storer.template storePairs<N>(k * R1 + group * L, value.pairs); });
    });
}

// In registers of one value.
template <class T, size_t R, bool kInverse, class Loader, class Storer>
HWY_INLINE void transformInOne(const Loader& loader, const Storer& storer) {
    using Values = InterleavedValues<T, 2, kInverse>;
    if constexpr (R == 1) {
        storer.template storePairs<2>(0, loader.template load<2>(0));
    } else {
        Butterfly<T, 2, R>::run([&](auto n) ZVPS_INLINE_LAMBDA { return Values{loader.template load<2>(n)}; },
                                [&](auto k, Values value)
                                    ZVPS_INLINE_LAMBDA { storer.template storePairs<2>(k, value.pairs); });
    }
}

template <class T, int order, bool kInverse, class Loader, class Storer>
HWY_INLINE void smallTransform(const Loader& loader, const Storer& storer) {
    constexpr bool isDouble = sizeof(T) == 8;
    constexpr size_t kBytes = kVectorBytes < 32 ? kVectorBytes : 32;
    if constexpr (order <= (isDouble ? 3 : 1)) {
        transformInOne<T, size_t{1} << order, kInverse>(loader, storer);
    } else if constexpr (order == 2) {
        transformOf4<T, kInverse>(loader, storer);
    } else if constexpr (order == 3 && kBytes == 32) {
        transformOf8<T, kInverse>(loader, storer);
    } else {
        constexpr size_t R1 = order == 6 ? 8 : 4;
        transformInTwo<T, kBytes / sizeof(T), R1, (size_t{1} << order) / R1, kInverse>(loader, storer);
    }
}

} // namespace zvps::ZVPS_LEVEL
