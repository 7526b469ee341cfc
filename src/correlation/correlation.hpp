// Few sums of many products: a vector or some of results, in several chains of fused operations each. Loads are most of
// the work, and fewer of 32 bytes than of 64 straddle lines of the cache.
#pragma once

#include "correlation/correlation.table.hpp"
#include "filters/fir.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kFewBytes = kVectorBytes < 32 ? kVectorBytes : 32;

// The first n lanes of kVectors vectors of results. Chain c takes the taps c, c + kChains, ..
template <class T, size_t kParts, size_t kVectors, size_t kChains>
HWY_INLINE void fewSumsTile(const T* src, T* dst, size_t n, const T* taps, size_t tapsLen) {
    using Shape = FirShape<T, kParts, kFewBytes, 64>;
    constexpr size_t N = Shape::kLanes;
    const typename Shape::D d;
    FirSums<Shape, kParts, kVectors> sums[kChains];
    const auto forAll = [&](auto action) HWY_ATTR {
#pragma GCC unroll 8
        for (size_t chain = 0; chain < kChains; ++chain) {
#pragma GCC unroll 2
            for (size_t part = 0; part < kParts; ++part) {
#pragma GCC unroll 4
                for (size_t v = 0; v < kVectors; ++v)
                    action(chain, part, v);
            }
        }
    };
    forAll([&](size_t chain, size_t part, size_t v) HWY_ATTR { sums[chain].v[part][v] = hn::Zero(d); });
    const size_t end = n + (tapsLen - 1) * kParts; // of the source
    size_t i = 0;
    for (; i + kChains <= tapsLen && (i + kChains - 1) * kParts + kVectors * N <= end; i += kChains) {
        forAll([&](size_t chain, size_t part, size_t v) HWY_ATTR {
            const T* const x = src + (i + chain) * kParts + v * N;
            const auto tap = hn::Set(d, taps[(i + chain) * kParts + part]);
            sums[chain].v[part][v] = hn::MulAdd(hn::LoadU(d, x), tap, sums[chain].v[part][v]);
        });
    }
    for (; i < tapsLen; ++i) {
        const size_t chain = i % kChains;
        for (size_t v = 0; v < kVectors && v * N < n; ++v) {
            const size_t at = i * kParts + v * N;
            const auto x = at + N <= end ? hn::LoadU(d, src + at) : loadFirst(d, src + at, end - at);
            for (size_t part = 0; part < kParts; ++part) {
                auto& sum = sums[chain].v[part][v];
                sum = hn::MulAdd(x, hn::Set(d, taps[i * kParts + part]), sum);
            }
        }
    }
    for (size_t half = kChains / 2; half > 0; half /= 2) {
        forAll([&](size_t chain, size_t part, size_t v) HWY_ATTR {
            if (chain < half) {
                sums[chain].v[part][v] = hn::Add(sums[chain].v[part][v], sums[chain + half].v[part][v]);
            }
        });
    }
    for (size_t v = 0; v < kVectors && v * N < n; ++v) {
        const auto result = firOutput(sums[0], v);
        if (n - v * N < N) return storeFirst(d, result, dst + v * N, n - v * N);
        hn::StoreU(result, d, dst + v * N);
    }
}

template <class T, size_t kParts>
void fewSums(const T* src, T* dst, size_t count, const T* taps, size_t tapsLen) {
    constexpr size_t N = kFewBytes / sizeof(T);
    constexpr size_t kChains = 4 / kParts; // as many on all levels
    const size_t n = count * kParts;
    for (size_t i = 0; i < n;) {
        const size_t left = n - i;
        if (left <= N) return fewSumsTile<T, kParts, 1, kChains>(src + i, dst + i, left, taps, tapsLen);
        const size_t some = left < 2 * N ? left : 2 * N;
        fewSumsTile<T, kParts, 2, kChains>(src + i, dst + i, some, taps, tapsLen);
        i += some;
    }
}

} // namespace zvps::ZVPS_LEVEL
