// The exponential function in double precision.
#pragma once

#include "core/simd.hpp"

namespace zvps::ZVPS_LEVEL {

// exp(x) for |x| <= 708, within 1 unit in the last place; the same bits on all levels. NaN stays NaN.
template <size_t N>
HWY_INLINE Vec<double, N> exponential(Lanes<double, N> d, Vec<double, N> x) {
    const Lanes<int64_t, N> bits;
    // x = places ln 2 + r with |r| <= ln 2 / 2. Adding 3 * 2^51 rounds to an integer and leaves it in the lowest bits.
    // The high part of ln 2 has so few bits that its product with places is exact.
    const auto rounder = hn::Set(d, 0x1.8p52);
    const auto shifted = hn::Add(hn::Mul(x, hn::Set(d, 0x1.71547652b82fep0)), rounder);
    const auto places = hn::Sub(shifted, rounder);
    const auto reduced = hn::Sub(x, hn::Mul(places, hn::Set(d, 0x1.62e42fee00000p-1)));
    const auto r = hn::Sub(reduced, hn::Mul(places, hn::Set(d, 0x1.a39ef35793c76p-33)));

    // 1/2! + r/3! + ... to r^13, where the remainder is 0.04 units in the last place.
    constexpr double kFactorials[] = {2,      6,       24,       120,       720,       5040,
                                      40320., 362880., 3628800., 39916800., 479001600, 6227020800.};
    // Even and odd powers apart: half the latency of one chain.
    const auto square = hn::Mul(r, r);
    auto even = hn::Set(d, 1 / kFactorials[10]);
    auto odd = hn::Set(d, 1 / kFactorials[11]);
    for (int i = 8; i >= 0; i -= 2) {
        even = hn::Add(hn::Mul(even, square), hn::Set(d, 1 / kFactorials[i]));
        odd = hn::Add(hn::Mul(odd, square), hn::Set(d, 1 / kFactorials[i + 1]));
    }
    const auto series = hn::Add(hn::Mul(odd, r), even);
    const auto power = hn::Add(hn::Add(hn::Mul(square, series), r), hn::Set(d, 1.0));
    const auto exponent = hn::ShiftLeft<52>(hn::BitCast(bits, shifted));
    return hn::BitCast(d, hn::Add(hn::BitCast(bits, power), exponent));
}

} // namespace zvps::ZVPS_LEVEL
