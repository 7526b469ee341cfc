// Sine and cosine in double precision.
#pragma once

#include "core/simd.hpp"

namespace zvps::ZVPS_LEVEL {

// c[0] + c[1] x + c[2] x^2 + ...: even and odd powers apart, which halves the latency of one chain.
template <size_t count, class D>
HWY_INLINE hn::Vec<D> series(D d, const double (&c)[count], hn::Vec<D> x) {
    const auto square = hn::Mul(x, x);
    auto last = hn::Set(d, c[count - 1]);
    auto other = hn::Set(d, c[count - 2]);
    repeat<count - 2>([&](size_t i) HWY_ATTR {
        const auto sum = hn::Add(hn::Mul(last, square), hn::Set(d, c[count - 3 - i]));
        last = other;
        other = sum;
    });
    return hn::Add(hn::Mul(last, x), other);
}

// sin(x) for |x| <= pi / 2; the same bits on all levels. With 8 terms within 1 unit in the last place, with 6 within
// 2^-41 x.
template <size_t terms, size_t N>
HWY_INLINE Vec<double, N> sine(Lanes<double, N> d, Vec<double, N> x) {
    static_assert(terms == 6 || terms == 8);
    // (sin(x) - x) / x^3 by powers of x^2, interpolated at Chebyshev's nodes.
    static constexpr double kSix[] = {-0x1.55555555549c9p-3, 0x1.1111110fc01e7p-7,   -0x1.a01a001194bc1p-13,
                                      0x1.71dd8dd5d749ap-19, -0x1.ae20c173a995ep-26, 0x1.54e70f31da4d6p-33};
    static constexpr double kEight[] = {-0x1.5555555555555p-3,  0x1.1111111111107p-7,   -0x1.a01a01a018aaap-13,
                                        0x1.71de3a54564dfp-19,  -0x1.ae6455a1c0795p-26, 0x1.612401540ed0fp-33,
                                        -0x1.ae51366b753a9p-41, 0x1.89a43bea5b135p-49};
    const auto square = hn::Mul(x, x);
    const auto rest = terms == 6 ? series(d, kSix, square) : series(d, kEight, square);
    return hn::Add(x, hn::Mul(hn::Mul(x, square), rest));
}

template <size_t N>
struct Rotations {
    Vec<double, N> cosine;
    Vec<double, N> sine;
};

// cos(2 pi t) and sin(2 pi t) where t is in units of 2^-64, within 1 unit in the last place of 1; the same bits on all
// levels.
template <size_t N>
HWY_INLINE Rotations<N> rotations(Lanes<double, N> d, Vec<uint64_t, N> turns) {
    // For |x| <= pi / 4 as above, and (cos(x) - 1 + x^2 / 2) / x^4.
    static constexpr double kSine[] = {-0x1.5555555555555p-3, 0x1.1111111110bb2p-7,   -0x1.a01a019e83816p-13,
                                       0x1.71de379654304p-19, -0x1.ae600aca92c64p-26, 0x1.5e0b05bff20f2p-33};
    static constexpr double kCosine[] = {0x1.5555555555555p-5,   -0x1.6c16c16c16967p-10, 0x1.a01a019f4e9b4p-16,
                                         -0x1.27e4fa17bf139p-22, 0x1.1eeb68cd22f56p-29,  -0x1.907d8f29fe831p-37};
    const Lanes<uint64_t, N> bits;
    const auto quarter = hn::Set(bits, uint64_t{1} << 62);
    // The top two bits count quarters of a turn; the rest is at most an eighth away from them.
    const auto shifted = hn::Add(turns, hn::ShiftRight<1>(quarter));
    const auto quarters = hn::And(shifted, hn::Set(bits, uint64_t{3} << 62));
    const auto rest = hn::ConvertTo(d, hn::BitCast(Lanes<int64_t, N>(), hn::Sub(turns, quarters)));
    const auto x = hn::Mul(rest, hn::Set(d, 0x1.921fb54442d18p-62)); // 2 pi / 2^64
    const auto square = hn::Mul(x, x);
    const auto s = hn::Add(x, hn::Mul(hn::Mul(x, square), series(d, kSine, square)));
    const auto half = hn::Mul(square, hn::Set(d, 0.5));
    const auto c =
        hn::Sub(hn::Set(d, 1.0), hn::Sub(half, hn::Mul(hn::Mul(square, square), series(d, kCosine, square))));
    const auto isOdd = hn::RebindMask(d, hn::TestBit(quarters, quarter));
    const auto sign = hn::Set(bits, uint64_t{1} << 63);
    const auto cosineSign = hn::BitCast(d, hn::And(hn::Add(quarters, quarter), sign));
    const auto sineSign = hn::BitCast(d, hn::And(quarters, sign));
    return {hn::Xor(hn::IfThenElse(isOdd, s, c), cosineSign), hn::Xor(hn::IfThenElse(isOdd, c, s), sineSign)};
}

} // namespace zvps::ZVPS_LEVEL
