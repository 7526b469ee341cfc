// Direct filters of floating-point elements. An output is one chain of fused operations over the taps i = r + stride *
// j, for each r in turn over j, wherever it stands in a vector or a block, so that no cut of a signal changes a bit.
//
// Taps a stride apart meet the same vectors of the source, if the stride is a multiple of the vector: a tile of outputs
// loads each vector once for several taps.
#pragma once

#include "core/simd.hpp"
#include "filters/fir.table.hpp"

namespace zvps::ZVPS_LEVEL {

// kParts: lanes of an element. kBytes: of a vector. kStrideBytes: between taps that share vectors.
template <class T, size_t kParts, size_t kBytes, size_t kStrideBytes>
struct FirShape {
    static constexpr size_t kLanes = kBytes / sizeof(T);
    static constexpr size_t kVectorsAStride = kStrideBytes / kBytes;
    static constexpr size_t kStride = kStrideBytes / sizeof(T) / kParts; // in taps
    using D = Lanes<T, kLanes>;
    using V = Vec<T, kLanes>;
};

// Holds v in its register: the compiler would load it again for each of its uses.
template <class V>
HWY_INLINE void keepInRegister(V& v) {
#if HWY_TARGET <= HWY_AVX3
    asm("" : "+v"(v.raw));
#else
    asm("" : "+x"(v.raw));
#endif
}

// Sums of kVectors vectors of outputs; of complex elements for each part of the taps by itself.
template <class Shape, size_t kParts, size_t kVectors>
struct FirSums {
    typename Shape::V v[kParts][kVectors];
};

// Adds the products with the taps 0, stride, .., kTaps - 1 strides on.
template <size_t kTaps, class Shape, size_t kParts, size_t kVectors, class T>
HWY_INLINE void addTaps(FirSums<Shape, kParts, kVectors>& sums, const T* src, const T* taps) {
    constexpr size_t q = Shape::kVectorsAStride;
    const typename Shape::D d;
    typename Shape::V tap[kParts][kTaps];
#pragma GCC unroll 8
    for (size_t j = 0; j < kTaps; ++j) {
#pragma GCC unroll 2
        for (size_t part = 0; part < kParts; ++part)
            tap[part][j] = hn::Set(d, taps[j * Shape::kStride * kParts + part]);
    }
#pragma GCC unroll 64
    for (size_t v = 0; v < kVectors + q * (kTaps - 1); ++v) {
        auto x = hn::LoadU(d, src + v * Shape::kLanes);
        keepInRegister(x);
#pragma GCC unroll 8
        for (size_t j = 0; j < kTaps; ++j) {
            if (v >= q * j && v - q * j < kVectors) {
#pragma GCC unroll 2
                for (size_t part = 0; part < kParts; ++part)
                    sums.v[part][v - q * j] = hn::MulAdd(x, tap[part][j], sums.v[part][v - q * j]);
            }
        }
    }
}

// The outputs from the sums: those of real elements as they are, of complex ones re + i im, im multiplied by i.
template <class Shape, size_t kVectors>
HWY_INLINE typename Shape::V firOutput(const FirSums<Shape, 1, kVectors>& sums, size_t v) {
    return sums.v[0][v];
}
template <class Shape, size_t kVectors>
HWY_INLINE typename Shape::V firOutput(const FirSums<Shape, 2, kVectors>& sums, size_t v) {
    const typename Shape::D d;
    const auto swapped = hn::Reverse2(d, sums.v[1][v]);
    return hn::OddEven(hn::Add(sums.v[0][v], swapped), hn::Sub(sums.v[0][v], swapped));
}

// kMostTaps: how many taps' registers there is room for beside the sums'.
template <class Shape, size_t kParts, size_t kVectors, size_t kMostTaps, class T>
HWY_INLINE void firTile(const T* src, T* dst, const T* taps, size_t tapsLen) {
    constexpr size_t S = Shape::kStride;
    FirSums<Shape, kParts, kVectors> sums;
#pragma GCC unroll 16
    for (size_t v = 0; v < kVectors; ++v) {
#pragma GCC unroll 2
        for (size_t part = 0; part < kParts; ++part)
            sums.v[part][v] = hn::Zero(typename Shape::D());
    }
    const size_t columns = tapsLen < S ? tapsLen : S;
    for (size_t r = 0; r < columns; ++r) {
        size_t i = r;
        size_t left = (tapsLen - r + S - 1) / S;
        const auto add = [&](auto step) HWY_ATTR {
            addTaps<step.value>(sums, src + i * kParts, taps + i * kParts);
            i += step.value * S;
            left -= step.value;
        };
        if constexpr (kMostTaps >= 8) {
            while (left >= 8)
                add(std::integral_constant<size_t, 8>());
        }
        if constexpr (kMostTaps >= 4) {
            while (left >= 4)
                add(std::integral_constant<size_t, 4>());
        }
        if constexpr (kMostTaps >= 2) {
            while (left >= 2)
                add(std::integral_constant<size_t, 2>());
        }
        while (left >= 1)
            add(std::integral_constant<size_t, 1>());
    }
#pragma GCC unroll 16
    for (size_t v = 0; v < kVectors; ++v)
        hn::StoreU(firOutput(sums, v), typename Shape::D(), dst + v * Shape::kLanes);
}

// Fewer outputs than a vector holds: n < kLanes of them.
template <class Shape, size_t kParts, class T>
HWY_INLINE void firRest(const T* src, T* dst, size_t n, const T* taps, size_t tapsLen) {
    constexpr size_t S = Shape::kStride;
    const typename Shape::D d;
    FirSums<Shape, kParts, 1> sums;
    for (size_t part = 0; part < kParts; ++part)
        sums.v[part][0] = hn::Zero(d);
    const size_t end = n + (tapsLen - 1) * kParts;
    const size_t columns = tapsLen < S ? tapsLen : S;
    for (size_t r = 0; r < columns; ++r) {
        for (size_t i = r * kParts; i < tapsLen * kParts; i += S * kParts) {
            const auto x = i + Shape::kLanes <= end ? hn::LoadU(d, src + i) : loadFirst(d, src + i, end - i);
            for (size_t part = 0; part < kParts; ++part)
                sums.v[part][0] = hn::MulAdd(x, hn::Set(d, taps[i + part]), sums.v[part][0]);
        }
    }
    storeFirst(d, firOutput(sums, 0), dst, n);
}

// kVectors: of the largest tile. The last tile may overlap the one before it.
template <class Shape, size_t kParts, size_t kVectors, size_t kMostTaps, class T>
HWY_INLINE void firBlocks(const T* src, T* dst, size_t n, const T* taps, size_t tapsLen) {
    constexpr size_t N = Shape::kLanes;
    constexpr size_t kTile = kVectors * N;
    constexpr size_t kQuarter = kTile / 4;
    size_t i = 0;
    for (; n - i >= kTile || (n >= kTile && n - i > kTile / 2); i += kTile) {
        if (n - i < kTile) i = n - kTile;
        firTile<Shape, kParts, kVectors, kMostTaps>(src + i, dst + i, taps, tapsLen);
    }
    for (; n > i && n >= kQuarter; i += kQuarter) {
        if (n - i < kQuarter) i = n - kQuarter;
        firTile<Shape, kParts, kVectors / 4, kMostTaps>(src + i, dst + i, taps, tapsLen);
    }
    for (; n - i >= N; i += N)
        firTile<Shape, kParts, 1, 1>(src + i, dst + i, taps, tapsLen);
    if (i < n) firRest<Shape, kParts>(src + i, dst + i, n - i, taps, tapsLen);
}

// From here on taps fill whole vectors of 64 bytes. Fewer share loads only among vectors of 32.
inline constexpr size_t kLongBytes = 256;

// dst[n] = sum over i < tapsLen of taps[i] * src[n + i] for n < count.
template <class T, size_t kParts>
void fir(const T* src, T* dst, size_t count, const T* taps, size_t tapsLen) {
    constexpr size_t kRegisters = HWY_TARGET <= HWY_AVX3 ? 32 : 16;
    constexpr size_t kShort = kVectorBytes < 32 ? kVectorBytes : 32;
    const size_t n = count * kParts;
    if (tapsLen * kParts * sizeof(T) < kLongBytes) {
        firBlocks<FirShape<T, kParts, kShort, 32>, kParts, kRegisters / 2 / kParts, kRegisters / 4 / kParts>(
            src, dst, n, taps, tapsLen);
    } else {
        firBlocks<FirShape<T, kParts, kVectorBytes, 64>, kParts, kRegisters / 2 / kParts, kRegisters / 4 / kParts>(
            src, dst, n, taps, tapsLen);
    }
}

// ---- One output ----

// Lanes of running sums, as many on all levels: four, or a cache line of complex or double elements.
template <class T, size_t kParts>
inline constexpr size_t kOneLanes = sizeof(T) * kParts == 4 ? 4 : 8;

// Sums of the products of lanes, real or by each part of the taps.
template <class T, size_t kParts>
struct OneSums {
    static constexpr size_t N = kOneLanes<T, kParts>;
    static constexpr size_t kWidth = N * sizeof(T) < kVectorBytes ? N : kVectorBytes / sizeof(T);
    using D = Lanes<T, kWidth>;

    Vec<T, kWidth> v[kParts][N / kWidth];

    // The elements at src and their taps, these backwards from taps + N or on from taps.
    template <bool kBackwards>
    HWY_INLINE void add(const T* src, const T* taps) {
        const D d;
#pragma GCC unroll 4
        for (size_t i = 0; i < N / kWidth; ++i) {
            const auto x = hn::LoadU(d, src + i * kWidth);
            auto tap = hn::LoadU(d, taps + (kBackwards ? N - (i + 1) * kWidth : i * kWidth));
            if constexpr (kBackwards) {
                tap = hn::Reverse(d, tap);
                if constexpr (kParts == 2) tap = hn::Reverse2(d, tap);
            }
            if constexpr (kParts == 1) {
                v[0][i] = hn::MulAdd(x, tap, v[0][i]);
            } else {
                v[0][i] = hn::MulAdd(x, hn::DupEven(tap), v[0][i]);
                v[1][i] = hn::MulAdd(x, hn::DupOdd(tap), v[1][i]);
            }
        }
    }
    // The sum of one part of the taps, real or real and imaginary lanes.
    HWY_INLINE void total(size_t part, T* sum) const {
        T lanes[N];
        for (size_t i = 0; i < N / kWidth; ++i)
            hn::StoreU(v[part][i], D(), lanes + i * kWidth);
        if constexpr (N == 4) {
            sum[0] = lanes[0] + lanes[2] + lanes[1] + lanes[3];
        } else {
            for (size_t half = N / 2; half >= kParts; half /= 2) {
                for (size_t i = 0; i < half; ++i)
                    lanes[i] += lanes[i + half];
            }
            for (size_t i = 0; i < kParts; ++i)
                sum[i] = lanes[i];
        }
    }
};

// Real filters shorter than this take one running sum.
inline constexpr size_t kOneLanesFrom = 12;

// dst[0] = sum over i < tapsLen of taps[i] * src[i], or of taps[tapsLen - 1 - i] * src[i].
template <class T, size_t kParts, bool kBackwards>
void firOne(const T* src, T* dst, const T* taps, size_t tapsLen) {
    if constexpr (kParts == 1) {
        if (tapsLen < kOneLanesFrom) {
            const Lanes<T, 1> d;
            auto sum = hn::Zero(d);
            for (size_t i = 0; i < tapsLen; ++i)
                sum = hn::MulAdd(hn::LoadU(d, src + i), hn::LoadU(d, taps + (kBackwards ? tapsLen - 1 - i : i)), sum);
            hn::StoreU(sum, d, dst);
            return;
        }
    }
    constexpr size_t N = kOneLanes<T, kParts>;
    OneSums<T, kParts> sums;
    for (auto& part : sums.v) {
        for (auto& v : part)
            v = hn::Zero(typename OneSums<T, kParts>::D());
    }
    const size_t n = tapsLen * kParts;
    size_t i = 0;
    for (; i + N <= n; i += N)
        sums.template add<kBackwards>(src + i, kBackwards ? taps + n - i - N : taps + i);
    if (i < n) {
        T lastSrc[N] = {};
        T lastTaps[N] = {};
        for (size_t k = 0; k < n - i; ++k) {
            lastSrc[k] = src[i + k];
            if (kBackwards) {
                lastTaps[N - 1 - k] = taps[n - i - 1 - k];
            } else {
                lastTaps[k] = taps[i + k];
            }
        }
        sums.template add<kBackwards>(lastSrc, lastTaps);
    }
    if constexpr (kParts == 1) {
        sums.total(0, dst);
    } else {
        T re[2], im[2];
        sums.total(0, re);
        sums.total(1, im);
        dst[0] = re[0] - im[1];
        dst[1] = re[1] + im[0];
    }
}

// ---- Sparse taps ----

// kVectors vectors of outputs; or the first n of one.
template <size_t kVectors>
HWY_INLINE void sparseTile(const float* src, float* dst, size_t n, const float* taps, const int32_t* positions,
                           size_t count) {
    constexpr size_t N = kVectorBytes / sizeof(float);
    const Lanes<float, N> d;
    Vec<float, N> sums[kVectors];
#pragma GCC unroll 8
    for (size_t v = 0; v < kVectors; ++v)
        sums[v] = hn::Zero(d);
    for (size_t k = 0; k < count; ++k) {
        const auto tap = hn::Set(d, taps[k]);
        const float* const x = src - positions[k];
#pragma GCC unroll 8
        for (size_t v = 0; v < kVectors; ++v) {
            const auto inputs = n < N ? loadFirst(d, x, n) : hn::LoadU(d, x + v * N);
            sums[v] = hn::MulAdd(inputs, tap, sums[v]);
        }
    }
    if (n < N) return storeFirst(d, sums[0], dst, n);
#pragma GCC unroll 8
    for (size_t v = 0; v < kVectors; ++v)
        hn::StoreU(sums[v], d, dst + v * N);
}

// dst[i] = sum over k < count of taps[k] * src[i - positions[k]] for i < n.
inline void sparseFir(const float* src, float* dst, size_t n, const float* taps, const int32_t* positions,
                      size_t count) {
    constexpr size_t N = kVectorBytes / sizeof(float);
    size_t i = 0;
    for (; n - i >= 8 * N; i += 8 * N)
        sparseTile<8>(src + i, dst + i, N, taps, positions, count);
    for (; n - i >= N; i += N)
        sparseTile<1>(src + i, dst + i, N, taps, positions, count);
    if (i < n) sparseTile<1>(src + i, dst + i, n - i, taps, positions, count);
}

} // namespace zvps::ZVPS_LEVEL
