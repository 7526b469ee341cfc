// Multi-rate filters of floating-point elements, real and complex. Sums run in lanes that fill 64 bytes on every level,
// each a chain of fused operations in the same order wherever it stands in a block.
#pragma once

#include "filters/fir.hpp"
#include "filters/fir_multirate.table.hpp"

namespace zvps::ZVPS_LEVEL {

// A row of lanes: as many registers as 64 bytes take.
template <class T>
struct WideRow {
    static constexpr size_t kLanes = kMultirateBytes / sizeof(T);
    static constexpr size_t kWidth = kVectorBytes / sizeof(T);
    static constexpr size_t kRegisters = kLanes / kWidth;
    using D = Lanes<T, kWidth>;
    using V = Vec<T, kWidth>;
};

// Of complex elements, for each part of the taps by itself.
template <class T, size_t kParts, size_t kVectors>
struct WideSums {
    typename WideRow<T>::V v[kParts][kVectors][WideRow<T>::kRegisters];

    HWY_INLINE void start() {
#pragma GCC unroll 2
        for (size_t part = 0; part < kParts; ++part) {
#pragma GCC unroll 16
            for (size_t i = 0; i < kVectors; ++i) {
#pragma GCC unroll 4
                for (size_t h = 0; h < WideRow<T>::kRegisters; ++h)
                    v[part][i][h] = hn::Zero(typename WideRow<T>::D());
            }
        }
    }
    // The result: of complex elements re + i im.
    HWY_INLINE typename WideRow<T>::V output(size_t i, size_t h) const {
        if constexpr (kParts == 1) {
            return v[0][i][h];
        } else {
            const typename WideRow<T>::D d;
            const auto swapped = hn::Reverse2(d, v[1][i][h]);
            return hn::OddEven(hn::Add(v[0][i][h], swapped), hn::Sub(v[0][i][h], swapped));
        }
    }
};

// ---- Sums by lanes ----

// Vectors of the source: as they lie there,
template <class T>
struct WholeVectors {
    using Row = WideRow<T>;

    explicit WholeVectors(const int32_t*) {}
    HWY_INLINE typename Row::V load(const T* src, size_t h) const {
        return hn::LoadU(typename Row::D(), src + h * Row::kWidth);
    }
};

// by permutation of the vector where a register's first lane comes from,
template <class T>
struct PermutedVectors {
    using Row = WideRow<T>;
    using Index = hwy::MakeSigned<T>;

    size_t begin[Row::kRegisters];
    decltype(hn::SetTableIndices(typename Row::D(), static_cast<const Index*>(nullptr))) indices[Row::kRegisters];

    explicit PermutedVectors(const int32_t* order) {
        for (size_t h = 0; h < Row::kRegisters; ++h) {
            const int32_t first = order[h * Row::kWidth];
            Index lanes[Row::kWidth];
            for (size_t i = 0; i < Row::kWidth; ++i)
                lanes[i] = order[h * Row::kWidth + i] - first;
            begin[h] = static_cast<size_t>(first);
            indices[h] = hn::SetTableIndices(typename Row::D(), lanes);
        }
    }
    // Whether lanes come from one vector.
    static bool fit(const int32_t* order) {
        for (size_t i = 0; i < Row::kLanes; ++i) {
            if (order[i] - order[i / Row::kWidth * Row::kWidth] >= static_cast<int32_t>(Row::kWidth)) return false;
        }
        return true;
    }
    HWY_INLINE typename Row::V load(const T* src, size_t h) const {
        return hn::TableLookupLanes(hn::LoadU(typename Row::D(), src + begin[h]), indices[h]);
    }
};

// or lane by lane.
template <class T>
struct GatheredVectors {
    using Row = WideRow<T>;

    const int32_t* order;

    explicit GatheredVectors(const int32_t* lanes) : order(lanes) {}
    HWY_INLINE typename Row::V load(const T* src, size_t h) const {
        alignas(kVectorBytes) T lanes[Row::kWidth];
        for (size_t i = 0; i < Row::kWidth; ++i)
            lanes[i] = src[order[h * Row::kWidth + i]];
        return hn::Load(typename Row::D(), lanes);
    }
};

// Adds the products with the rows at `taps` and as many as kRows - 1 shared steps on.
template <size_t kRows, bool kMasked, class Vectors, size_t kParts, size_t kVectors, class T>
HWY_INLINE void addRows(WideSums<T, kParts, kVectors>& sums, const Vectors& vectors, const T* src, const T* taps,
                        const LaneTaps<T>& all) {
    using Row = WideRow<T>;
    const typename Row::D d;
    typename Row::V tap[kParts][kRows][Row::kRegisters];
#pragma GCC unroll 8
    for (size_t j = 0; j < kRows; ++j) {
#pragma GCC unroll 2
        for (size_t part = 0; part < kParts; ++part) {
#pragma GCC unroll 4
            for (size_t h = 0; h < Row::kRegisters; ++h)
                tap[part][j][h] = hn::LoadU(d, taps + (j * all.shared * kParts + part) * Row::kLanes + h * Row::kWidth);
        }
    }
#pragma GCC unroll 32
    for (size_t v = 0; v < kVectors + kRows - 1; ++v) {
#pragma GCC unroll 4
        for (size_t h = 0; h < Row::kRegisters; ++h) {
            auto x = vectors.load(src + v * all.srcStep, h);
            if (kMasked) x = hn::And(x, hn::LoadU(d, all.mask + h * Row::kWidth));
            keepInRegister(x);
#pragma GCC unroll 8
            for (size_t j = 0; j < kRows; ++j) {
                if (v >= j && v - j < kVectors) {
#pragma GCC unroll 2
                    for (size_t part = 0; part < kParts; ++part)
                        sums.v[part][v - j][h] = hn::MulAdd(x, tap[part][j][h], sums.v[part][v - j][h]);
                }
            }
        }
    }
}

// kMostRows: how many rows of taps there are registers for beside the sums.
template <size_t kParts, size_t kVectors, size_t kMostRows, class Vectors, class T>
HWY_INLINE void laneTile(const Vectors& vectors, const T* src, T* dst, const LaneTaps<T>& taps) {
    using Row = WideRow<T>;
    WideSums<T, kParts, kVectors> sums;
    sums.start();
    const size_t columns = taps.rows < taps.shared ? taps.rows : taps.shared;
    for (size_t column = 0; column < columns; ++column) {
        size_t row = column;
        size_t left = (taps.rows - column + taps.shared - 1) / taps.shared;
        const auto add = [&](auto rows, auto masked) HWY_ATTR {
            addRows<rows.value, masked.value>(sums, vectors, src + row * taps.rowStep,
                                              taps.taps + row * kParts * Row::kLanes, taps);
            row += rows.value * taps.shared;
            left -= rows.value;
        };
        const std::false_type whole;
        if (row == 0 && taps.mask != nullptr) add(std::integral_constant<size_t, 1>(), std::true_type());
        if constexpr (kMostRows >= 8) {
            while (left >= 8)
                add(std::integral_constant<size_t, 8>(), whole);
        }
        if constexpr (kMostRows >= 4) {
            while (left >= 4)
                add(std::integral_constant<size_t, 4>(), whole);
        }
        if constexpr (kMostRows >= 2) {
            while (left >= 2)
                add(std::integral_constant<size_t, 2>(), whole);
        }
        while (left >= 1)
            add(std::integral_constant<size_t, 1>(), whole);
    }
    const typename Row::D d;
#pragma GCC unroll 16
    for (size_t i = 0; i < kVectors; ++i) {
#pragma GCC unroll 4
        for (size_t h = 0; h < Row::kRegisters; ++h) {
            const size_t at = h * Row::kWidth;
            T* const to = dst + i * taps.dstStep + at;
            if (taps.width >= at + Row::kWidth) {
                hn::StoreU(sums.output(i, h), d, to);
            } else if (taps.width > at) {
                storeFirst(d, sums.output(i, h), to, taps.width - at);
            }
        }
    }
}

template <class Vectors, class T, size_t kParts>
void laneSumsOf(const T* src, T* sums, size_t n, const LaneTaps<T>& taps) {
    constexpr size_t kSums = HWY_TARGET <= HWY_AVX3 ? 16 : 8; // registers of a tile
    constexpr size_t kTile = kSums / WideRow<T>::kRegisters / kParts;
    constexpr size_t kRows = kSums / 2 / WideRow<T>::kRegisters / kParts;
    const Vectors vectors(taps.order);
    size_t i = 0;
    for (; n - i >= kTile || (n >= kTile && n - i > kTile / 2); i += kTile) {
        // The last tile may overlap the one before it.
        if (n - i < kTile) i = n - kTile;
        laneTile<kParts, kTile, kRows>(vectors, src + i * taps.srcStep, sums + i * taps.dstStep, taps);
    }
    constexpr size_t kQuarter = kTile / 4;
    if constexpr (kQuarter > 1) {
        for (; n > i && n - i >= kQuarter; i += kQuarter)
            laneTile<kParts, kQuarter, kRows>(vectors, src + i * taps.srcStep, sums + i * taps.dstStep, taps);
    }
    for (; i < n; ++i)
        laneTile<kParts, 1, 1>(vectors, src + i * taps.srcStep, sums + i * taps.dstStep, taps);
}

template <class T, size_t kParts>
void laneSums(const T* src, T* sums, size_t n, const LaneTaps<T>& taps) {
    if (taps.order == nullptr) return laneSumsOf<WholeVectors<T>, T, kParts>(src, sums, n, taps);
    if (WideRow<T>::kRegisters == 1 || PermutedVectors<T>::fit(taps.order)) {
        return laneSumsOf<PermutedVectors<T>, T, kParts>(src, sums, n, taps);
    }
    if constexpr (WideRow<T>::kRegisters > 1) laneSumsOf<GatheredVectors<T>, T, kParts>(src, sums, n, taps);
}

// ---- Sums of neighbours ----

// The sums of neighbouring elements of both vectors.
template <size_t kParts, class T, size_t N>
HWY_INLINE Vec<T, N> addNeighbours(Lanes<T, N> d, Vec<T, N> a, Vec<T, N> b) {
    if constexpr (kParts == 1) {
        return hn::Add(hn::ConcatEven(d, b, a), hn::ConcatOdd(d, b, a));
    } else {
        const Lanes<double, N / 2> pairs;
        const auto first = hn::BitCast(pairs, a), second = hn::BitCast(pairs, b);
        return hn::Add(hn::BitCast(d, hn::ConcatEven(pairs, second, first)),
                       hn::BitCast(d, hn::ConcatOdd(pairs, second, first)));
    }
}

// The sums of groups of 1, 2, 4, .. elements, a vector of them.
template <size_t kGroup, size_t kParts, class T, size_t N>
HWY_INLINE Vec<T, N> addVectors(Lanes<T, N> d, const T* sums) {
    if constexpr (kGroup == 1) {
        return hn::LoadU(d, sums);
    } else {
        return addNeighbours<kParts>(d, addVectors<kGroup / 2, kParts>(d, sums),
                                     addVectors<kGroup / 2, kParts>(d, sums + kGroup / 2 * N));
    }
}

template <size_t kGroup, size_t kParts, class T>
HWY_INLINE T addElements(const T* sums) {
    if constexpr (kGroup == 1) {
        return *sums;
    } else {
        return addElements<kGroup / 2, kParts>(sums) + addElements<kGroup / 2, kParts>(sums + kGroup / 2 * kParts);
    }
}

// The sums of n groups; may be in place.
template <size_t kGroup, size_t kParts, class T>
void addPowers(const T* sums, T* dst, size_t n) {
    constexpr size_t N = kVectorBytes / sizeof(T);
    size_t i = 0;
    if constexpr (kParts == 1 || sizeof(T) == 4) {
        for (; i + N <= n * kParts; i += N)
            hn::StoreU(addVectors<kGroup, kParts>(Lanes<T, N>(), sums + i * kGroup), Lanes<T, N>(), dst + i);
    }
    for (; i < n * kParts; i += kParts) {
        T result[kParts];
        for (size_t part = 0; part < kParts; ++part)
            result[part] = addElements<kGroup, kParts>(sums + i * kGroup + part);
        for (size_t part = 0; part < kParts; ++part)
            dst[i + part] = result[part];
    }
}

#if HWY_TARGET <= HWY_AVX3
// Lane indices[i] of low and high.
HWY_INLINE Vec<float, 16> fromTwo(Vec<float, 16> low, Vec<float, 16> high, Vec<int32_t, 16> indices) {
    return Vec<float, 16>{ZVPS_INTRINSIC(permutex2var_ps)(low.raw, indices.raw, high.raw)};
}
HWY_INLINE Vec<double, 8> fromTwo(Vec<double, 8> low, Vec<double, 8> high, Vec<int64_t, 8> indices) {
    return Vec<double, 8>{ZVPS_INTRINSIC(permutex2var_pd)(low.raw, indices.raw, high.raw)};
}
#endif

template <class T, size_t kParts>
void addGroups(T* sums, T* dst, size_t n, size_t group) {
    const size_t power = group & (~group + 1);
    const size_t odd = group / power;
    T* const to = odd == 1 ? dst : sums;
    const size_t count = n * odd;
    if (power == 2) addPowers<2, kParts>(sums, to, count);
    if (power == 4) addPowers<4, kParts>(sums, to, count);
    if (power == 8) addPowers<8, kParts>(sums, to, count);
    if (power == 16) addPowers<16, kParts>(sums, to, count);
    size_t i = 0;
#if HWY_TARGET <= HWY_AVX3
    // From two vectors at once, by permutations; the lanes behind the results are overwritten by those that follow.
    constexpr size_t N = kVectorBytes / sizeof(T);
    const size_t most = 2 * N / kParts / odd;
    const size_t outputs = most < N / kParts ? most : N / kParts;
    if (odd > 1 && (outputs > 1 || kParts == 1)) {
        using Index = hwy::MakeSigned<T>;
        const Lanes<T, N> d;
        const Lanes<Index, N> integers;
        alignas(kVectorBytes) Index first[N];
        for (size_t lane = 0; lane < N; ++lane)
            first[lane] =
                static_cast<Index>(lane / kParts < outputs ? lane / kParts * odd * kParts + lane % kParts : 0);
        for (; i + N <= n * kParts; i += outputs * kParts) {
            const T* const from = sums + i * odd;
            const auto low = hn::LoadU(d, from);
            const auto high = hn::LoadU(d, from + N);
            auto indices = hn::Load(integers, first);
            auto sum = fromTwo(low, high, indices);
            for (size_t k = 1; k < odd; ++k) {
                indices = hn::Add(indices, hn::Set(integers, static_cast<Index>(kParts)));
                sum = hn::Add(sum, fromTwo(low, high, indices));
            }
            hn::StoreU(sum, d, dst + i);
        }
    }
#endif
    for (; i < n * kParts && odd > 1; ++i) {
        const T* const first = sums + i / kParts * odd * kParts + i % kParts;
        T sum = *first;
        for (size_t k = 1; k < odd; ++k)
            sum += first[k * kParts];
        dst[i] = sum;
    }
}

// ---- Sums over sub-filters ----

// The lanes added up in halves, down to 16 bytes.
template <class T, size_t N>
HWY_INLINE auto folded(Lanes<T, N> d, Vec<T, N> v) {
    if constexpr (N * sizeof(T) == 16) {
        return v;
    } else {
        const hn::Half<decltype(d)> half;
        return folded(half, hn::Add(hn::LowerHalf(half, v), hn::UpperHalf(half, v)));
    }
}

// kOutputs outputs, one or as many as 16 bytes hold.
template <size_t kOutputs, class T, size_t kParts>
HWY_INLINE void phaseTile(const T* const* src, T* dst, const T* const* taps, const size_t* lengths, size_t least) {
    using Row = WideRow<T>;
    const typename Row::D d;
    constexpr size_t N = Row::kLanes;
    WideSums<T, kParts, kOutputs> sums;
    sums.start();
    const auto add = [&](size_t output, size_t h, auto x, auto tap) HWY_ATTR {
        if constexpr (kParts == 1) {
            sums.v[0][output][h] = hn::MulAdd(x, tap, sums.v[0][output][h]);
        } else {
            sums.v[0][output][h] = hn::MulAdd(x, hn::DupEven(tap), sums.v[0][output][h]);
            sums.v[1][output][h] = hn::MulAdd(x, hn::DupOdd(tap), sums.v[1][output][h]);
        }
    };
    size_t i = 0;
    for (; i + N <= least; i += N) {
#pragma GCC unroll 4
        for (size_t output = 0; output < kOutputs; ++output) {
#pragma GCC unroll 4
            for (size_t h = 0; h < Row::kRegisters; ++h) {
                const size_t at = i + h * Row::kWidth;
                add(output, h, hn::LoadU(d, src[output] + at), hn::LoadU(d, taps[output] + at));
            }
        }
    }
    // What is left is at most a row.
#pragma GCC unroll 4
    for (size_t output = 0; output < kOutputs; ++output) {
#pragma GCC unroll 4
        for (size_t h = 0; h < Row::kRegisters; ++h) {
            const size_t at = i + h * Row::kWidth;
            const size_t left = lengths[output] < at ? 0 : lengths[output] - at;
            const size_t n = left < Row::kWidth ? left : Row::kWidth;
            add(output, h, loadFirst(d, src[output] + (n == 0 ? 0 : at), n),
                loadFirst(d, taps[output] + (n == 0 ? 0 : at), n));
        }
    }
    constexpr size_t kLanes = 16 / sizeof(T);
    const Lanes<T, kLanes> small;
    const auto total = [&](size_t output) HWY_ATTR {
        constexpr size_t kRegisters = Row::kRegisters;
        typename Row::V v[kRegisters];
        for (size_t h = 0; h < kRegisters; ++h)
            v[h] = sums.output(output, h);
        for (size_t half = kRegisters / 2; half > 0; half /= 2) {
            for (size_t h = 0; h < half; ++h)
                v[h] = hn::Add(v[h], v[h + half]);
        }
        return folded(d, v[0]);
    };
    constexpr size_t kLast = kOutputs - 1;
    auto result = total(0);
    if constexpr (kLanes / kParts == 2) {
        result = addNeighbours<kParts>(small, result, total(kLast));
    } else if constexpr (kLanes / kParts == 4) {
        const auto second = addNeighbours<kParts>(small, total(2 % kOutputs), total(kLast));
        result = addNeighbours<kParts>(small, addNeighbours<kParts>(small, result, total(1 % kOutputs)), second);
    }
    if constexpr (kOutputs * kParts == kLanes) {
        hn::StoreU(result, small, dst);
    } else {
        storeFirst(small, result, dst, kParts);
    }
}

template <class T, size_t kParts>
void phaseSums(const T* src, T* dst, size_t n, const PhaseTaps<T>& all, size_t phase) {
    constexpr size_t kOutputs = 16 / sizeof(T) / kParts;
    const size_t least = (all.length - 1) * kParts;
    const T* inputs[kOutputs];
    const T* taps[kOutputs];
    size_t lengths[kOutputs];
    const auto next = [&](size_t output) {
        const size_t length = phase < all.fullPhases ? all.length : phase < all.phases ? all.length - 1 : 0;
        lengths[output] = length * kParts;
        inputs[output] = length == 0 ? src : src - (length - 1) * kParts;
        taps[output] = length == 0 ? all.taps : all.taps + phase * all.length * kParts;
        src += all.stepInput * kParts;
        phase += all.stepPhase;
        if (phase >= all.up) {
            phase -= all.up;
            src += kParts;
        }
    };
    size_t i = 0;
    for (; i + kOutputs <= n; i += kOutputs) {
        for (size_t output = 0; output < kOutputs; ++output)
            next(output);
        phaseTile<kOutputs, T, kParts>(inputs, dst + i * kParts, taps, lengths, least);
    }
    for (; i < n; ++i) {
        next(0);
        phaseTile<1, T, kParts>(inputs, dst + i * kParts, taps, lengths, least);
    }
}

} // namespace zvps::ZVPS_LEVEL
