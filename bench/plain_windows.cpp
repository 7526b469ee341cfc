#include "peers.hpp"

#include <cmath>
#include <cstdint>
#include <type_traits>

// Compiled with the vector math library's functions in the place of the C library's.
namespace plain {
namespace {

template <class T>
using Applied = std::conditional_t<std::is_same_v<T, double>, double, float>;

template <class T>
T windowed(T x, Applied<T> w) {
    if constexpr (std::is_same_v<T, int16_t>) {
        const float value = std::nearbyint(static_cast<float>(x) * w);
        return static_cast<T>(value < -32768.0F ? -32768.0F : value > 32767.0F ? 32767.0F : value);
    } else {
        return x * w;
    }
}

template <class T>
Applied<T> angle(int n) {
    return static_cast<Applied<T>>(6.283185307179586) / static_cast<Applied<T>>(n - 1);
}

double besselI0(double x) {
    static constexpr double kSmall[] = {0.9999999985, 4.000003096,  3.9999959541, 1.777809969,
                                        0.4443189384, 0.0713758187, 0.0075942968, 0.000674193709375};
    static constexpr double kLarge[] = {0.3989422809,        0.0124667783,  0.0017623668,        0.00026,
                                        0.0022585681074049,  -0.0128314822, 0.04958113163828737, -0.1209940805,
                                        0.18954771930079328, -0.1867783276, 0.1113315511,        -0.0366694767,
                                        0.0051246015};
    double sum = 0;
    if (x < 4) {
        const double t = x / 4 * (x / 4);
        for (int i = 7; i >= 0; --i)
            sum = sum * t + kSmall[i];
        return sum;
    }
    for (int i = 12; i >= 0; --i)
        sum = sum * (4 / x) + kLarge[i];
    return std::exp(x) / std::sqrt(x) * sum;
}

} // namespace

template <class T>
void hann(const T* __restrict a, T* __restrict dst, int n) {
    using W = Applied<T>;
    const W theta = angle<T>(n);
    for (int i = 0; i < n; ++i) {
        dst[i] = windowed(a[i], static_cast<W>(0.5) - static_cast<W>(0.5) * std::cos(static_cast<W>(i) * theta));
    }
}
template <class T>
void hamming(const T* __restrict a, T* __restrict dst, int n) {
    using W = Applied<T>;
    const W theta = angle<T>(n);
    for (int i = 0; i < n; ++i) {
        dst[i] = windowed(a[i], static_cast<W>(0.54) - static_cast<W>(0.46) * std::cos(static_cast<W>(i) * theta));
    }
}
template <class T>
void blackman(const T* __restrict a, T* __restrict dst, int n) {
    using W = Applied<T>;
    const W theta = angle<T>(n);
    for (int i = 0; i < n; ++i) {
        const W cosine = std::cos(static_cast<W>(i) * theta);
        dst[i] = windowed(a[i], static_cast<W>(0.34) - (static_cast<W>(0.5) - static_cast<W>(0.16) * cosine) * cosine);
    }
}
template <class T>
void kaiser(const T* __restrict a, T* __restrict dst, int n, float alpha) {
    const double factor = 1 / besselI0(0.5 * alpha * (n - 1));
    for (int i = 0; i < n; ++i) {
        const double root = std::sqrt(static_cast<double>(i) * (n - 1 - i));
        dst[i] = windowed(a[i], static_cast<Applied<T>>(besselI0(alpha * root) * factor));
    }
}

#define WINDOWS(T)                                                                                                     \
    template void hann(const T*, T*, int);                                                                             \
    template void hamming(const T*, T*, int);                                                                          \
    template void blackman(const T*, T*, int);                                                                         \
    template void kaiser(const T*, T*, int, float);
WINDOWS(int16_t)
WINDOWS(float)
WINDOWS(double)

} // namespace plain
