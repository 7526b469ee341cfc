// The natural logarithm in double precision.
#pragma once

#include "core/sine.hpp"

namespace zvps::ZVPS_LEVEL {

// ln(x) for normal x > 0, within 1 unit in the last place; the same bits on all levels.
template <size_t N>
HWY_INLINE Vec<double, N> logarithm(Lanes<double, N> d, Vec<double, N> x) {
    // x = 2^places (1 + f) with 1 + f from sqrt(1/2) to sqrt(2). Adding to 3 * 2^51 in the lowest bits converts places.
    const Lanes<int64_t, N> bits;
    constexpr int64_t kRootHalf = 0x3fe6a09e667f3bcd;
    const auto above = hn::Sub(hn::BitCast(bits, x), hn::Set(bits, kRootHalf));
    const auto exponent = hn::ShiftRight<52>(above);
    const auto rounder = hn::Set(d, 0x1.8p52);
    const auto places = hn::Sub(hn::BitCast(d, hn::Add(exponent, hn::BitCast(bits, rounder))), rounder);
    const auto mantissa = hn::And(above, hn::Set(bits, (int64_t{1} << 52) - 1));
    const auto f = hn::Sub(hn::BitCast(d, hn::Add(mantissa, hn::Set(bits, kRootHalf))), hn::Set(d, 1.0));

    // With t = f / (2 + f): ln(1 + f) = 2 artanh(t) = f - f^2/2 + t (f^2/2 + t^2 P(t^2)), where P interpolates
    // (2 artanh(t) - 2 t) / t^3 at Chebyshev's nodes: the error is 2^-57 of the result.
    static constexpr double kSeries[] = {0x1.5555555555558p-1, 0x1.99999999952d7p-2, 0x1.2492492df281ap-2,
                                         0x1.c71c62e3f11e6p-3, 0x1.7462b51cb66b1p-3, 0x1.39fe51a7c18f9p-3,
                                         0x1.2b5900de53b32p-3};
    const auto t = hn::Div(f, hn::Add(f, hn::Set(d, 2.0)));
    const auto square = hn::Mul(t, t);
    const auto half = hn::Mul(hn::Mul(f, f), hn::Set(d, 0.5));
    const auto rest = hn::Mul(t, hn::Add(half, hn::Mul(square, series(d, kSeries, square))));
    // ln 2 in two parts, the first with so few bits that its product is exact.
    const auto low = hn::Add(rest, hn::Mul(places, hn::Set(d, 0x1.a39ef35793c76p-33)));
    return hn::Add(hn::Mul(places, hn::Set(d, 0x1.62e42fee00000p-1)), hn::Sub(f, hn::Sub(half, low)));
}

} // namespace zvps::ZVPS_LEVEL
