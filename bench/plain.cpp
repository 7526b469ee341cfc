#include "peers.hpp"

#include "zvps/types.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace plain {
namespace {

Zvp32fc operator+(Zvp32fc a, Zvp32fc b) {
    return {a.re + b.re, a.im + b.im};
}
Zvp32fc operator-(Zvp32fc a, Zvp32fc b) {
    return {a.re - b.re, a.im - b.im};
}
Zvp32fc operator*(Zvp32fc a, Zvp32fc b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}
// Without care for overflow, unlike the library.
Zvp32fc operator/(Zvp32fc a, Zvp32fc b) {
    const float norm = b.re * b.re + b.im * b.im;
    return {(a.re * b.re + a.im * b.im) / norm, (a.im * b.re - a.re * b.im) / norm};
}

// The type of an exact sum or difference, and of an exact product, with its rounding bias.
template <class T>
using WideSum = std::conditional_t<sizeof(T) <= 2, int32_t, int64_t>;
template <class T>
using WideProduct = std::conditional_t<sizeof(T) == 1 || std::is_same_v<T, int16_t>, int32_t, int64_t>;

template <class T, class Wide>
T scaled(Wide v, int scaleFactor) {
    if (scaleFactor > 0) {
        v = (v + (Wide{1} << (scaleFactor - 1)) - 1 + ((v >> scaleFactor) & 1)) >> scaleFactor;
    } else if (scaleFactor < 0) {
        v *= Wide{1} << -scaleFactor;
    }
    using Limits = std::numeric_limits<T>;
    return static_cast<T>(std::min<Wide>(std::max<Wide>(v, Limits::min()), Limits::max()));
}

} // namespace

template <class T>
void add(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = a[i] + b[i];
}
template <class T>
void subtract(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = b[i] - a[i];
}
template <class T>
void multiply(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = a[i] * b[i];
}
template <class T>
void divide(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = b[i] / a[i];
}
template <class T>
void addConstant(const T* __restrict a, T val, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = a[i] + val;
}
template <class T>
void multiplyConstant(const T* __restrict a, T val, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = a[i] * val;
}
template <class T>
void addProduct(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = dst[i] + a[i] * b[i];
}
template <class T>
void absolute(const T* __restrict a, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = std::abs(a[i]);
}

template <class T, class Level>
void limitAbove(const T* __restrict a, Level level, T* __restrict dst, int n) {
    for (int i = 0; i < n; ++i) {
        if constexpr (std::is_same_v<T, Level>) {
            dst[i] = a[i] > level ? level : a[i];
        } else {
            using Work = std::conditional_t<std::is_integral_v<Level>, double, Level>;
            const Work re = a[i].re;
            const Work im = a[i].im;
            const Work square = re * re + im * im;
            const Work limit = static_cast<Work>(level);
            const Work factor = limit / std::sqrt(square);
            const bool isAbove = square > limit * limit;
            if constexpr (std::is_integral_v<Level>) {
                dst[i] = {isAbove ? static_cast<Level>(std::nearbyint(re * factor)) : a[i].re,
                          isAbove ? static_cast<Level>(std::nearbyint(im * factor)) : a[i].im};
            } else {
                dst[i] = {isAbove ? re * factor : re, isAbove ? im * factor : im};
            }
        }
    }
}

template <class T>
void addScaled(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = scaled<T>(WideSum<T>{a[i]} + b[i], scaleFactor);
}
template <class T>
void subtractScaled(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = scaled<T>(WideSum<T>{b[i]} - a[i], scaleFactor);
}
template <class T>
void multiplyScaled(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = scaled<T>(WideProduct<T>{a[i]} * b[i], scaleFactor);
}
template <class T>
void addConstantScaledInPlace(T val, T* dst, int n, int scaleFactor) {
    for (int i = 0; i < n; ++i)
        dst[i] = scaled<T>(WideSum<T>{dst[i]} + val, scaleFactor);
}

// The compiler makes this a call of memcpy.
void copy(const float* __restrict a, float* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = a[i];
}
void triad(const float* __restrict a, const float* __restrict b, float val, float* __restrict dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = a[i] + val * b[i];
}

template <class T>
T multiplyAdds(const T* a, int n) {
    constexpr int kBytes = 32;
    constexpr int kLanes = kBytes / sizeof(T);
    constexpr int kChains = 12; // more than two pipes take in the time of one operation
    using Vector [[gnu::vector_size(kBytes)]] = T;
    Vector sums[kChains];
    for (int j = 0; j < kChains; ++j)
        sums[j] = a[j] - Vector{};
    const Vector factor = a[kChains] / 4 - Vector{};
    for (int i = 0; i < n; i += kChains * kLanes) {
#pragma GCC unroll 12
        for (Vector& sum : sums)
            sum = sum * factor + factor;
    }
    Vector total{};
    for (const Vector& sum : sums)
        total += sum;
    return total[0];
}

#define PLAIN_FLOATING(T)                                                                                              \
    template void add(const T*, const T*, T*, int);                                                                    \
    template void subtract(const T*, const T*, T*, int);                                                               \
    template void multiply(const T*, const T*, T*, int);                                                               \
    template void divide(const T*, const T*, T*, int);                                                                 \
    template void addConstant(const T*, T, T*, int);                                                                   \
    template void multiplyConstant(const T*, T, T*, int);                                                              \
    template void addProduct(const T*, const T*, T*, int);
PLAIN_FLOATING(Zvp32f)
PLAIN_FLOATING(Zvp64f)
PLAIN_FLOATING(Zvp32fc)
template Zvp32f multiplyAdds(const Zvp32f*, int);
template Zvp64f multiplyAdds(const Zvp64f*, int);
template void absolute(const Zvp32f*, Zvp32f*, int);
template void absolute(const Zvp64f*, Zvp64f*, int);

template void limitAbove(const Zvp16s*, Zvp16s, Zvp16s*, int);
template void limitAbove(const Zvp32f*, Zvp32f, Zvp32f*, int);
template void limitAbove(const Zvp64f*, Zvp64f, Zvp64f*, int);
template void limitAbove(const Zvp16sc*, Zvp16s, Zvp16sc*, int);
template void limitAbove(const Zvp32fc*, Zvp32f, Zvp32fc*, int);
template void limitAbove(const Zvp64fc*, Zvp64f, Zvp64fc*, int);

#define PLAIN_INTEGER(T)                                                                                               \
    template void addScaled(const T*, const T*, T*, int, int);                                                         \
    template void subtractScaled(const T*, const T*, T*, int, int);                                                    \
    template void multiplyScaled(const T*, const T*, T*, int, int);
PLAIN_INTEGER(Zvp8u)
PLAIN_INTEGER(Zvp16s)
PLAIN_INTEGER(Zvp16u)
PLAIN_INTEGER(Zvp32s)
template void addConstantScaledInPlace(Zvp16s, Zvp16s*, int, int);

} // namespace plain
