// Conversions by the compiler from plain loops, and by Eigen.
#include "peers.hpp"

#include "zvps/types.h"

#include <Eigen/Core>

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace plain {

template <class S, class D>
void convert(const S* __restrict a, D* __restrict dst, int n) {
    for (int i = 0; i < n; ++i) dst[i] = static_cast<D>(a[i]);
}

template <class S, class D>
void convertRounded(const S* __restrict a, D* __restrict dst, int n, S factor) {
    using Limits = std::numeric_limits<D>;
    for (int i = 0; i < n; ++i) {
        const S scaled = std::min(std::max(a[i] * factor, S{Limits::min()}), static_cast<S>(Limits::max()));
        dst[i] = static_cast<D>(std::nearbyint(scaled));
    }
}

template <class S, class D>
void convertSaturated(const S* __restrict a, D* __restrict dst, int n) {
    using Limits = std::numeric_limits<D>;
    for (int i = 0; i < n; ++i) dst[i] = static_cast<D>(std::min<S>(std::max<S>(a[i], Limits::min()), Limits::max()));
}

void fromHalf(const uint16_t* __restrict a, float* __restrict dst, int n) {
    for (int i = 0; i < n; ++i) {
        _Float16 half;
        __builtin_memcpy(&half, a + i, sizeof(half));
        dst[i] = static_cast<float>(half);
    }
}
void toHalf(const float* __restrict a, uint16_t* __restrict dst, int n) {
    for (int i = 0; i < n; ++i) {
        const auto half = static_cast<_Float16>(a[i]);
        __builtin_memcpy(dst + i, &half, sizeof(half));
    }
}

} // namespace plain

namespace eigen {
namespace {

template <class T>
auto map(const T* p, int n) {
    return Eigen::Map<const Eigen::Array<T, Eigen::Dynamic, 1>>(p, n);
}
template <class T>
auto map(T* p, int n) {
    return Eigen::Map<Eigen::Array<T, Eigen::Dynamic, 1>>(p, n);
}

} // namespace

template <class S, class D>
void convert(const S* a, D* dst, int n) {
    map(dst, n) = map(a, n).template cast<D>();
}
template <class S, class D>
void convertRounded(const S* a, D* dst, int n, S factor) {
    using Limits = std::numeric_limits<D>;
    map(dst, n) = (map(a, n) * factor).max(S{Limits::min()}).min(static_cast<S>(Limits::max())).rint().template cast<D>();
}
template <class S, class D>
void convertSaturated(const S* a, D* dst, int n) {
    using Limits = std::numeric_limits<D>;
    map(dst, n) = map(a, n).max(S{Limits::min()}).min(S{Limits::max()}).template cast<D>();
}
void fromHalf(const uint16_t* a, float* dst, int n) {
    map(dst, n) = map(reinterpret_cast<const Eigen::half*>(a), n).cast<float>();
}
void toHalf(const float* a, uint16_t* dst, int n) {
    map(reinterpret_cast<Eigen::half*>(dst), n) = map(a, n).cast<Eigen::half>();
}

} // namespace eigen

#define CONVERT(S, D)                                                                                                  \
    template void plain::convert(const S*, D*, int);                                                                   \
    template void eigen::convert(const S*, D*, int);
CONVERT(Zvp8s, Zvp16s)
CONVERT(Zvp8s, Zvp32f)
CONVERT(Zvp8u, Zvp32f)
CONVERT(Zvp16s, Zvp32f)
CONVERT(Zvp16s, Zvp32s)
CONVERT(Zvp16u, Zvp32f)
CONVERT(Zvp32s, Zvp32f)
CONVERT(Zvp32s, Zvp64f)
CONVERT(Zvp32f, Zvp64f)
CONVERT(Zvp64f, Zvp32f)
CONVERT(Zvp64s, Zvp64f)

#define ROUND(S, D)                                                                                                    \
    template void plain::convertRounded(const S*, D*, int, S);                                                         \
    template void eigen::convertRounded(const S*, D*, int, S);
ROUND(Zvp32f, Zvp8s)
ROUND(Zvp32f, Zvp8u)
ROUND(Zvp32f, Zvp16s)
ROUND(Zvp32f, Zvp16u)
ROUND(Zvp32f, Zvp32s)
ROUND(Zvp64f, Zvp16s)
ROUND(Zvp64f, Zvp32s)
ROUND(Zvp64f, Zvp64s)

#define SATURATE(S, D)                                                                                                 \
    template void plain::convertSaturated(const S*, D*, int);                                                          \
    template void eigen::convertSaturated(const S*, D*, int);
SATURATE(Zvp16s, Zvp8s)
SATURATE(Zvp32s, Zvp16s)
SATURATE(Zvp64s, Zvp32s)
