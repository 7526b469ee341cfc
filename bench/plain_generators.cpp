#include "peers.hpp"

#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <type_traits>

// Compiled with the vector math library's functions in the place of the C library's.
namespace plain {
namespace {

constexpr double kTwoPi = 6.283185307179586;

template <class T, class V>
T element(V value) {
    if constexpr (std::is_integral_v<T>) {
        constexpr V kLeast = static_cast<V>(std::numeric_limits<T>::min());
        constexpr V kMost = static_cast<V>(std::numeric_limits<T>::max());
        return static_cast<T>(std::nearbyint(value < kLeast ? kLeast : value > kMost ? kMost : value));
    } else {
        return static_cast<T>(value);
    }
}

} // namespace

template <class T>
void tone(T* dst, int n, T magnitude, T frequency, T phase) {
    const T step = static_cast<T>(kTwoPi) * frequency;
    for (int i = 0; i < n; ++i)
        dst[i] = magnitude * std::cos(step * static_cast<T>(i) + phase);
}
template void tone(float*, int, float, float, float);
template void tone(double*, int, double, double, double);

void tone(Zvp16s* dst, int n, Zvp16s magnitude, float frequency, float phase) {
    const float step = static_cast<float>(kTwoPi) * frequency;
    for (int i = 0; i < n; ++i)
        dst[i] = element<Zvp16s>(magnitude * std::cos(step * static_cast<float>(i) + phase));
}
void tone(Zvp32fc* dst, int n, float magnitude, float frequency, float phase) {
    const float step = static_cast<float>(kTwoPi) * frequency;
    for (int i = 0; i < n; ++i) {
        const float angle = step * static_cast<float>(i) + phase;
        dst[i].re = magnitude * std::cos(angle);
        dst[i].im = magnitude * std::sin(angle);
    }
}

template <class T>
void triangle(T* dst, int n, T magnitude, T frequency, T phase) {
    for (int i = 0; i < n; ++i) {
        const T turns = frequency * static_cast<T>(i) + phase;
        const T p = turns - std::floor(turns);
        dst[i] = magnitude * (1 - 4 * std::abs(p - static_cast<T>(0.5)));
    }
}
template void triangle(float*, int, float, float, float);
template void triangle(double*, int, double, double, double);

template <class T>
void jaehne(T* dst, int n, T magnitude) {
    using W = std::conditional_t<std::is_same_v<T, float>, float, double>;
    const double factor = kTwoPi / 4 / n;
    for (int i = 0; i < n; ++i) {
        const double number = i;
        dst[i] = element<T>(static_cast<W>(magnitude * std::sin(factor * number * number)));
    }
}
template void jaehne(uint8_t*, int, uint8_t);
template void jaehne(int16_t*, int, int16_t);
template void jaehne(float*, int, float);
template void jaehne(double*, int, double);

template <class T>
void ramp(T* dst, int n, float offset, float slope) {
    for (int i = 0; i < n; ++i)
        dst[i] = element<T>(offset + slope * static_cast<float>(i));
}
template <class T>
void slope(T* dst, int n, float offset, float slope) {
    for (int i = 0; i < n; ++i)
        dst[i] = element<T>(double{offset} + double{slope} * i);
}

template <class T>
void uniform(T* dst, int n, double low, double high) {
    using W = std::conditional_t<std::is_same_v<T, double>, double, float>;
    static std::mt19937 generator;
    std::uniform_real_distribution<W> distribution(static_cast<W>(low), static_cast<W>(high));
    for (int i = 0; i < n; ++i)
        dst[i] = element<T>(distribution(generator));
}
template <class T>
void gauss(T* dst, int n, double mean, double deviation) {
    using W = std::conditional_t<std::is_same_v<T, double>, double, float>;
    static std::mt19937 generator;
    std::normal_distribution<W> distribution(static_cast<W>(mean), static_cast<W>(deviation));
    for (int i = 0; i < n; ++i)
        dst[i] = element<T>(distribution(generator));
}

template <class T>
void uniformSequence(T* dst, int n, double low, double high) {
    static uint32_t l = 1, a = 2, b = 3, c = 4, borrow = 0;
    const double scale = (high - low) * 0x1p-32, middle = (low + high) / 2;
    for (int i = 0; i < n; ++i) {
        uint32_t t = b - c + borrow;
        borrow = static_cast<int32_t>(t) < 0 ? UINT32_MAX : 0;
        if (static_cast<int32_t>(t) < 0) t -= 18;
        l = l * 69069 + 1013904243;
        c = b;
        b = a;
        a = t;
        dst[i] = element<T>(static_cast<int32_t>(l + t) * scale + middle);
    }
}

#define LINES(T)                                                                                                       \
    template void ramp(T*, int, float, float);                                                                         \
    template void slope(T*, int, float, float);
LINES(uint8_t)
LINES(int16_t)
LINES(int32_t)
LINES(float)
LINES(double)

#define RANDOM(T)                                                                                                      \
    template void uniform(T*, int, double, double);                                                                    \
    template void gauss(T*, int, double, double);                                                                      \
    template void uniformSequence(T*, int, double, double);
RANDOM(uint8_t)
RANDOM(int16_t)
RANDOM(float)

} // namespace plain
