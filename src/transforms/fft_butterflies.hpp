// Butterflies and transpositions of the FFT kernels, on vectors of complex values in two planes.
#pragma once

#include "core/simd.hpp"
#include "transforms/sines.hpp"

#include <utility>

namespace zvps::ZVPS_LEVEL {

// ---- Loops unrolled before the compiler looks for arrays to keep in registers ----

template <size_t i>
using Index = std::integral_constant<size_t, i>;

template <class F, size_t... i>
HWY_INLINE void unrollOver(const F& f, std::index_sequence<i...>) {
    (f(Index<i>()), ...);
}

// f(Index<0>()), ..., f(Index<n - 1>()).
template <size_t n, class F>
HWY_INLINE void unroll(const F& f) {
    unrollOver(f, std::make_index_sequence<n>());
}

// For the lambdas that unroll() and the butterflies call.
#define ZVPS_INLINE_LAMBDA __attribute__((always_inline))

// Keeps a value that is read from memory in a register: the compiler would rather fold a load of its own into every
// operation that uses it, and the passes are short of loads.
template <class W>
HWY_INLINE W inRegister(W v) {
#if HWY_TARGET <= HWY_AVX3
    asm("" : "+v"(v.raw));
#else
    asm("" : "+x"(v.raw));
#endif
    return v;
}

// ---- Complex arithmetic ----

// V complex values: real parts and imaginary parts.
template <class T, size_t V>
struct ComplexVec {
    Vec<T, V> re;
    Vec<T, V> im;
};

template <class C>
HWY_INLINE C add(C a, C b) {
    return {hn::Add(a.re, b.re), hn::Add(a.im, b.im)};
}
template <class C>
HWY_INLINE C sub(C a, C b) {
    return {hn::Sub(a.re, b.re), hn::Sub(a.im, b.im)};
}
// a + i b, a - i b
template <class C>
HWY_INLINE C addI(C a, C b) {
    return {hn::Sub(a.re, b.im), hn::Add(a.im, b.re)};
}
template <class C>
HWY_INLINE C subI(C a, C b) {
    return {hn::Add(a.re, b.im), hn::Sub(a.im, b.re)};
}

// The same with b multiplied by a real factor.
template <class C, class W>
HWY_INLINE C add(C a, C b, W factor) {
    return {hn::MulAdd(b.re, factor, a.re), hn::MulAdd(b.im, factor, a.im)};
}
template <class C, class W>
HWY_INLINE C sub(C a, C b, W factor) {
    return {hn::NegMulAdd(b.re, factor, a.re), hn::NegMulAdd(b.im, factor, a.im)};
}
template <class C, class W>
HWY_INLINE C addI(C a, C b, W factor) {
    return {hn::NegMulAdd(b.im, factor, a.re), hn::MulAdd(b.re, factor, a.im)};
}
template <class C, class W>
HWY_INLINE C subI(C a, C b, W factor) {
    return {hn::MulAdd(b.im, factor, a.re), hn::NegMulAdd(b.re, factor, a.im)};
}

// b (factor - i)
template <class C, class W>
HWY_INLINE C mulMinusI(C b, W factor) {
    return {hn::MulAdd(b.re, factor, b.im), hn::MulSub(b.im, factor, b.re)};
}

template <class C>
HWY_INLINE C mul(C a, C b) {
    return {hn::NegMulAdd(a.im, b.im, hn::Mul(a.re, b.re)), hn::MulAdd(a.im, b.re, hn::Mul(a.re, b.im))};
}

// ---- Butterflies ----

inline constexpr double kCosEighth = 0.70710678118654752440; // of the circle, cos and sin alike
inline constexpr double kCosSixteenth = 0.92387953251128675613;
inline constexpr double kTanSixteenth = 0.41421356237309504880;

// cos(2 pi k / 256) for k = 0..64
struct Cosines {
    double values[65];

    constexpr Cosines() : values() {
        for (uint64_t k = 0; k <= 64; ++k) {
            values[k] = static_cast<double>(sineCosineOf(k, 256).cosine);
        }
    }
};
inline constexpr Cosines kCosines;

constexpr double cosOf256(size_t k) {
    k %= 256;
    return k <= 64 ? kCosines.values[k] : k <= 128 ? -kCosines.values[128 - k] : cosOf256(256 - k);
}
constexpr double cosOf32(size_t k) {
    return cosOf256(8 * k);
}

// The second half of a butterfly of four points: sums and differences of the even ones, and of the odd ones with a
// factor they have in common.
template <class C, class Out, class... Factor>
HWY_INLINE void combineFour(C sumEven, C differenceEven, C sumOdd, C differenceOdd, const Out& out, Factor... factor) {
    out(Index<0>(), add(sumEven, sumOdd, factor...));
    out(Index<1>(), subI(differenceEven, differenceOdd, factor...));
    out(Index<2>(), sub(sumEven, sumOdd, factor...));
    out(Index<3>(), addI(differenceEven, differenceOdd, factor...));
}

// Whether additions take their share of the pipes that multiply, where these have nothing else to do: between shuffles,
// which take those that add. The result is the same.
enum AdditionPipes { kAdders, kMultipliersToo };

// The forward transform of R points: reads in(Index<n>()) once for every n, then calls out(Index<k>(), X[k]). Up to 16
// points may be of any type that has the arithmetic above.
template <class T, size_t V, size_t R, AdditionPipes pipes = kAdders>
struct Butterfly;

template <class T, size_t V, AdditionPipes pipes>
struct Butterfly<T, V, 2, pipes> {
    template <class In, class Out>
    static HWY_INLINE void run(const In& in, const Out& out) {
        const auto a = in(Index<0>());
        const auto b = in(Index<1>());
        out(Index<0>(), add(a, b));
        out(Index<1>(), sub(a, b));
    }
};

template <class T, size_t V, AdditionPipes pipes>
struct Butterfly<T, V, 4, pipes> {
    template <class In, class Out>
    static HWY_INLINE void run(const In& in, const Out& out) {
        using C = decltype(in(Index<0>()));
        const C x0 = in(Index<0>());
        const C x2 = in(Index<2>());
#if HWY_TARGET <= HWY_AVX2
        if constexpr (pipes == kMultipliersToo) {
            const auto one = hn::Set(Lanes<T, V>(), T{1});
            const C sumEven = add(x0, x2, one);
            const C differenceEven = sub(x0, x2, one);
            const C x1 = in(Index<1>());
            const C x3 = in(Index<3>());
            combineFour(sumEven, differenceEven, add(x1, x3, one), sub(x1, x3, one), out);
            return;
        }
#endif
        const C sumEven = add(x0, x2);
        const C differenceEven = sub(x0, x2);
        const C x1 = in(Index<1>());
        const C x3 = in(Index<3>());
        combineFour(sumEven, differenceEven, add(x1, x3), sub(x1, x3), out);
    }
};

template <class T, size_t V, AdditionPipes pipes>
struct Butterfly<T, V, 8, pipes> {
    template <class In, class Out>
    static HWY_INLINE void run(const In& in, const Out& out) {
        using C = decltype(in(Index<0>()));
        const Lanes<T, V> d;
        C even[4], odd[4];
        Butterfly<T, V, 4, pipes>::run([&](auto n) ZVPS_INLINE_LAMBDA { return in(Index<2 * n>()); },
                                       [&](auto q, C x) ZVPS_INLINE_LAMBDA { even[q] = x; });
        Butterfly<T, V, 4, pipes>::run([&](auto n) ZVPS_INLINE_LAMBDA { return in(Index<2 * n + 1>()); },
                                       [&](auto q, C x) ZVPS_INLINE_LAMBDA { odd[q] = x; });
        const auto c = hn::Set(d, T(kCosEighth));
        out(Index<0>(), add(even[0], odd[0]));
        out(Index<4>(), sub(even[0], odd[0]));
        const C once = subI(odd[1], odd[1]); // by (1 - i)
        out(Index<1>(), add(even[1], once, c));
        out(Index<5>(), sub(even[1], once, c));
        out(Index<2>(), subI(even[2], odd[2]));
        out(Index<6>(), addI(even[2], odd[2]));
        const C thrice = addI(odd[3], odd[3]); // by (1 + i), that is -(-1 - i)
        out(Index<3>(), sub(even[3], thrice, c));
        out(Index<7>(), add(even[3], thrice, c));
    }
};

template <class T, size_t V, AdditionPipes pipes>
struct Butterfly<T, V, 16, pipes> {
    template <class In, class Out>
    static HWY_INLINE void run(const In& in, const Out& out) {
        using C = decltype(in(Index<0>()));
        const Lanes<T, V> d;
        C a[4][4];
        unroll<4>([&](auto n) ZVPS_INLINE_LAMBDA {
            Butterfly<T, V, 4, pipes>::run([&](auto j) ZVPS_INLINE_LAMBDA { return in(Index<n + 4 * j>()); },
                                           [&](auto q, C x) ZVPS_INLINE_LAMBDA { a[n][q] = x; });
        });
        const auto c = hn::Set(d, T(kCosEighth));
        const auto cos = hn::Set(d, T(kCosSixteenth));
        const auto tan = hn::Set(d, T(kTanSixteenth));
        combineFour(add(a[0][0], a[2][0]), sub(a[0][0], a[2][0]), add(a[1][0], a[3][0]), sub(a[1][0], a[3][0]),
                    [&](auto p, C x) ZVPS_INLINE_LAMBDA { out(Index<4 * p>(), x); });
        // W = exp(-2 pi i / 16). The second and the fourth input of each further column are left without the cosine
        // that their factors have in common.
        {
            const C w2 = subI(a[2][1], a[2][1]);
            const C w1 = subI(a[1][1], a[1][1], tan);
            const C w3 = mulMinusI(a[3][1], tan);
            combineFour(
                add(a[0][1], w2, c), sub(a[0][1], w2, c), add(w1, w3), sub(w1, w3),
                [&](auto p, C x) ZVPS_INLINE_LAMBDA { out(Index<4 * p + 1>(), x); }, cos);
        }
        {
            const C w2 = subI(a[1][2], a[1][2]);
            const C w6 = addI(a[3][2], a[3][2]); // by -W^6
            combineFour(
                subI(a[0][2], a[2][2]), addI(a[0][2], a[2][2]), sub(w2, w6), add(w2, w6),
                [&](auto p, C x) ZVPS_INLINE_LAMBDA { out(Index<4 * p + 2>(), x); }, c);
        }
        {
            const C w6 = addI(a[2][3], a[2][3]); // by -W^6
            const C w3 = mulMinusI(a[1][3], tan);
            const C w9 = subI(a[3][3], a[3][3], tan); // by -W^9
            combineFour(
                sub(a[0][3], w6, c), add(a[0][3], w6, c), sub(w3, w9), add(w3, w9),
                [&](auto p, C x) ZVPS_INLINE_LAMBDA { out(Index<4 * p + 3>(), x); }, cos);
        }
    }
};

// Eight points by four.
template <class T, size_t V, AdditionPipes pipes>
struct Butterfly<T, V, 32, pipes> {
    using C = ComplexVec<T, V>;
    template <class In, class Out>
    static HWY_INLINE void run(const In& in, const Out& out) {
        const Lanes<T, V> d;
        C a[4][8];
        unroll<4>([&](auto n) ZVPS_INLINE_LAMBDA {
            Butterfly<T, V, 8, pipes>::run([&](auto j) ZVPS_INLINE_LAMBDA { return in(Index<n + 4 * j>()); },
                                           [&](auto q, C x) ZVPS_INLINE_LAMBDA { a[n][q] = x; });
        });
        unroll<8>([&](auto q) ZVPS_INLINE_LAMBDA {
            const auto turned = [&](auto n) ZVPS_INLINE_LAMBDA {
                constexpr size_t kIndex = n * q;
                const auto re = hn::Set(d, T(cosOf32(kIndex)));
                const auto im = hn::Set(d, T(cosOf32(kIndex + 8)));
                return mul(a[n][q], C{re, im});
            };
            const auto store = [&](auto p, C x) ZVPS_INLINE_LAMBDA { out(Index<8 * p + q>(), x); };
            if constexpr (q == 0) {
                combineFour(add(a[0][0], a[2][0]), sub(a[0][0], a[2][0]), add(a[1][0], a[3][0]), sub(a[1][0], a[3][0]),
                            store);
            } else if constexpr (q == 4) {
                const auto c = hn::Set(d, T(kCosEighth));
                const C w4 = subI(a[1][4], a[1][4]);
                const C w12 = addI(a[3][4], a[3][4]); // by -W^12
                combineFour(subI(a[0][4], a[2][4]), addI(a[0][4], a[2][4]), sub(w4, w12), add(w4, w12), store, c);
            } else {
                const C x1 = turned(Index<1>());
                const C x2 = turned(Index<2>());
                const C x3 = turned(Index<3>());
                combineFour(add(a[0][q], x2), sub(a[0][q], x2), add(x1, x3), sub(x1, x3), store);
            }
        });
    }
};

// ---- Transposition in registers ----

// The two vectors of V / 2 lanes each that interleave() makes of the lower (upper) halves of 128-bit blocks.
template <size_t kLanesTogether, class T, size_t V>
HWY_INLINE Vec<T, V> blockLower(Lanes<T, V> d, Vec<T, V> a, Vec<T, V> b) {
    if constexpr (kLanesTogether * sizeof(T) == 8 && sizeof(T) == 4) {
        const Lanes<double, V / 2> wide;
        return hn::BitCast(d, hn::InterleaveLower(wide, hn::BitCast(wide, a), hn::BitCast(wide, b)));
    } else {
        return hn::InterleaveLower(d, a, b);
    }
}
template <size_t kLanesTogether, class T, size_t V>
HWY_INLINE Vec<T, V> blockUpper(Lanes<T, V> d, Vec<T, V> a, Vec<T, V> b) {
    if constexpr (kLanesTogether * sizeof(T) == 8 && sizeof(T) == 4) {
        const Lanes<double, V / 2> wide;
        return hn::BitCast(d, hn::InterleaveUpper(wide, hn::BitCast(wide, a), hn::BitCast(wide, b)));
    } else {
        return hn::InterleaveUpper(d, a, b);
    }
}

// Transposes the blocks of 128 bits among as many vectors as a vector has blocks.
template <class T, size_t V, class In, class Out>
HWY_INLINE void transposeBlocks(const In& in, const Out& out) {
    const Lanes<T, V> d;
    constexpr size_t kBlocks = V * sizeof(T) / 16;
    if constexpr (kBlocks == 1) {
        out(Index<0>(), in(Index<0>()));
    } else if constexpr (kBlocks == 2) {
        out(Index<0>(), hn::ConcatLowerLower(d, in(Index<1>()), in(Index<0>())));
        out(Index<1>(), hn::ConcatUpperUpper(d, in(Index<1>()), in(Index<0>())));
    } else {
#if HWY_TARGET <= HWY_AVX3
        const auto shuffle = [&](Vec<T, V> a, Vec<T, V> b, auto pattern) ZVPS_INLINE_LAMBDA {
            const Lanes<float, 16> f;
            return hn::BitCast(
                d, Vec<float, 16>{_mm512_shuffle_f32x4(hn::BitCast(f, a).raw, hn::BitCast(f, b).raw, int{pattern})});
        };
        const std::integral_constant<int, 0x44> lower;
        const std::integral_constant<int, 0xEE> upper;
        const std::integral_constant<int, 0x88> even;
        const std::integral_constant<int, 0xDD> odd;
        const auto lower01 = shuffle(in(Index<0>()), in(Index<1>()), lower);
        const auto lower23 = shuffle(in(Index<2>()), in(Index<3>()), lower);
        out(Index<0>(), shuffle(lower01, lower23, even));
        out(Index<1>(), shuffle(lower01, lower23, odd));
        const auto upper01 = shuffle(in(Index<0>()), in(Index<1>()), upper);
        const auto upper23 = shuffle(in(Index<2>()), in(Index<3>()), upper);
        out(Index<2>(), shuffle(upper01, upper23, even));
        out(Index<3>(), shuffle(upper01, upper23, odd));
#endif
    }
}

// Reads V rows, in(Index<row>()), and calls out(Index<column>(), vector of the column) for all V columns.
template <class T, size_t V, class In, class Out>
HWY_INLINE void transpose(const In& in, const Out& out) {
    const Lanes<T, V> d;
    constexpr size_t kLanes = 16 / sizeof(T); // of a block of 128 bits
    constexpr size_t kBlocks = V / kLanes;
    Vec<T, V> t[kBlocks][kLanes];
    unroll<kBlocks>([&](auto g) ZVPS_INLINE_LAMBDA {
        if constexpr (kLanes == 2) {
            const auto a = in(Index<2 * g>());
            const auto b = in(Index<2 * g + 1>());
            t[g][0] = hn::InterleaveLower(d, a, b);
            t[g][1] = hn::InterleaveUpper(d, a, b);
        } else {
            const auto r0 = in(Index<4 * g>());
            const auto r1 = in(Index<4 * g + 1>());
            const auto r2 = in(Index<4 * g + 2>());
            const auto r3 = in(Index<4 * g + 3>());
            const auto lower01 = blockLower<1>(d, r0, r1);
            const auto lower23 = blockLower<1>(d, r2, r3);
            t[g][0] = blockLower<2>(d, lower01, lower23);
            t[g][1] = blockUpper<2>(d, lower01, lower23);
            const auto upper01 = blockUpper<1>(d, r0, r1);
            const auto upper23 = blockUpper<1>(d, r2, r3);
            t[g][2] = blockLower<2>(d, upper01, upper23);
            t[g][3] = blockUpper<2>(d, upper01, upper23);
        }
    });
    unroll<kLanes>([&](auto j) ZVPS_INLINE_LAMBDA {
        transposeBlocks<T, V>([&](auto g) ZVPS_INLINE_LAMBDA { return t[g][j]; },
                              [&](auto block, Vec<T, V> v) ZVPS_INLINE_LAMBDA { out(Index<block * kLanes + j>(), v); });
    });
}

} // namespace zvps::ZVPS_LEVEL
