// Sines and cosines in extended precision, also for tables that are made while the library is compiled.
#pragma once

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

} // namespace zvps
