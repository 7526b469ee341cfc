// Sines and cosines in extended precision, from which the tables of the transforms are rounded.
#pragma once

#include <cstdint>

namespace zvps {

struct SineCosine {
    long double sine;
    long double cosine;
};

// Of 0 <= angle <= pi / 4, by their series.
constexpr SineCosine sineCosine(long double angle) {
    SineCosine sum = {0, 0};
    long double term = 1; // angle^k / k!
    for (int k = 0; k < 24; ++k) {
        long double& part = k % 2 == 0 ? sum.cosine : sum.sine;
        part += k / 2 % 2 == 0 ? term : -term;
        term *= angle / (k + 1);
    }
    return sum;
}

inline constexpr long double kTurn = 6.283185307179586476925286766559L;

// Of 2 pi k / n, n below 2^60.
constexpr SineCosine sineCosineOf(uint64_t k, uint64_t n) {
    const uint64_t eighths = k % n * 8;
    const uint64_t octant = eighths / n;
    const uint64_t beyond = eighths - octant * n;
    const uint64_t within = octant % 2 == 0 ? beyond : n - beyond;
    const SineCosine base = sineCosine(kTurn / 8 * static_cast<long double>(within) / static_cast<long double>(n));
    const bool isExchanged = octant % 4 == 1 || octant % 4 == 2;
    const long double sine = isExchanged ? base.cosine : base.sine;
    const long double cosine = isExchanged ? base.sine : base.cosine;
    return {octant >= 4 ? -sine : sine, octant >= 2 && octant < 6 ? -cosine : cosine};
}

} // namespace zvps
