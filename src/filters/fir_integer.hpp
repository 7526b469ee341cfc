// Direct filters of 16-bit data by 16-bit taps, exact: products of pairs of lanes in 32 bits, sums in 32 bits as long
// as they fit, then in 64.
#pragma once

#include "core/rounding.hpp"
#include "filters/fir.hpp"
#include "filters/fir.table.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kPairLanes = kVectorBytes / sizeof(int16_t);
using Shorts = Lanes<int16_t, kPairLanes>;
using Words = Lanes<int32_t, kPairLanes / 2>;
using LongWords = Lanes<int64_t, kPairLanes / 4>;
using ShortVec = hn::Vec<Shorts>;
using WordVec = hn::Vec<Words>;
using LongVec = hn::Vec<LongWords>;

// Sums carried over start anew from here: seen as unsigned they then lie above their true value by as much, and a pair
// of the lowest taps with the lowest data, whose true sum is 2^31, wraps to where it belongs.
inline constexpr int32_t kCarryBias = std::numeric_limits<int32_t>::max();

HWY_INLINE WordVec pairProducts(ShortVec x, WordVec taps) {
    return WordVec{ZVPS_INTRINSIC(madd_epi16)(x.raw, taps.raw)};
}
HWY_INLINE WordVec pairAt(const int16_t* taps) {
    int32_t pair;
    __builtin_memcpy(&pair, taps, sizeof(pair));
    return hn::Set(Words(), pair);
}

// Sums of the even and of the odd output lanes of kVectors vectors.
template <size_t kVectors>
struct PairSums {
    WordVec v[2][kVectors];

    HWY_INLINE void start(int32_t value) {
#pragma GCC unroll 16
        for (size_t i = 0; i < kVectors; ++i)
            v[0][i] = v[1][i] = hn::Set(Words(), value);
    }
};

// The same in 64 bits: those of every second sum beside each other.
template <size_t kVectors>
struct CarriedSums {
    alignas(kVectorBytes) int64_t v[2][kVectors][2][kPairLanes / 4] = {};
    int64_t carries = 0;

    HWY_INLINE void carry(PairSums<kVectors>& sums) {
        const LongWords d;
        const Lanes<uint64_t, kPairLanes / 4> u;
        const auto add = [&](auto addend, int64_t* p)
                             HWY_ATTR { hn::Store(hn::Add(hn::Load(d, p), hn::BitCast(d, addend)), d, p); };
#pragma GCC unroll 2
        for (size_t part = 0; part < 2; ++part) {
#pragma GCC unroll 16
            for (size_t i = 0; i < kVectors; ++i) {
                const auto both = hn::BitCast(u, sums.v[part][i]);
                add(hn::And(both, hn::Set(u, uint64_t{0xffffffff})), v[part][i][0]);
                add(hn::ShiftRight<32>(both), v[part][i][1]);
            }
        }
        sums.start(kCarryBias);
        ++carries;
    }
};

// ---- Results ----

HWY_INLINE WordVec scaleSums(WordVec sums, int shift) {
    const Words d;
    if (shift > 0) return roundShift(d, sums, shift);
    return shift == 0 ? sums : saturatedShiftLeft(d, sums, -shift);
}

// Limits that 16 bits cannot hold, shifted left or not.
HWY_INLINE LongVec withinWord(LongVec v) {
    const LongWords d;
    constexpr int64_t kLimit = int64_t{1} << 30;
    return hn::Max(hn::Min(v, hn::Set(d, kLimit)), hn::Set(d, -kLimit));
}

HWY_INLINE WordVec scaleCarried(const int64_t (*sums)[kPairLanes / 4], int64_t bias, int shift) {
    const LongWords d;
    LongVec v[2];
    for (size_t i = 0; i < 2; ++i) {
        v[i] = hn::Sub(hn::Load(d, sums[i]), hn::Set(d, bias));
        v[i] = withinWord(shift > 0 ? roundShift(d, v[i], shift) : v[i]);
    }
    const LongVec low = hn::And(v[0], hn::Set(d, int64_t{0xffffffff}));
    const WordVec words = hn::BitCast(Words(), hn::Or(low, hn::ShiftLeft<32>(v[1])));
    return shift < 0 ? saturatedShiftLeft(Words(), words, -shift) : words;
}

HWY_INLINE ShortVec interleaved(WordVec even, WordVec odd) {
    // In each block of 16 bytes four even results, then four odd ones.
    const ShortVec packed = hn::ReorderDemote2To(Shorts(), even, odd);
    alignas(16) static constexpr uint8_t kOrder[16] = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
    const hn::Repartition<uint8_t, Shorts> bytes;
    return hn::TableLookupBytes(packed, hn::BitCast(Shorts(), hn::LoadDup128(bytes, kOrder)));
}

// ---- Sums ----

template <size_t kUnits, size_t kVectors>
HWY_INLINE void addPairs(PairSums<kVectors>& sums, const int16_t* src, const FirPairs& pairs, size_t unit) {
    constexpr size_t q = 2 * kFirPairStride / kPairLanes;
    WordVec even[kUnits], odd[kUnits];
#pragma GCC unroll 4
    for (size_t j = 0; j < kUnits; ++j) {
        even[j] = pairAt(pairs.even + 2 * (unit + j * kFirPairStride));
        odd[j] = pairAt(pairs.odd + 2 * (unit + j * kFirPairStride));
    }
#pragma GCC unroll 64
    for (size_t v = 0; v < kVectors + q * (kUnits - 1); ++v) {
        auto x = hn::LoadU(Shorts(), src + 2 * unit + v * kPairLanes);
        keepInRegister(x);
#pragma GCC unroll 4
        for (size_t j = 0; j < kUnits; ++j) {
            if (v >= q * j && v - q * j < kVectors) {
                WordVec(&sum)[2][kVectors] = sums.v;
                sum[0][v - q * j] = hn::Add(sum[0][v - q * j], pairProducts(x, even[j]));
                sum[1][v - q * j] = hn::Add(sum[1][v - q * j], pairProducts(x, odd[j]));
            }
        }
    }
}

// Adds all units by calls of add(sums, unit, how many as a constant); carries them over where the pairs say so.
template <bool kCarries, size_t kVectors, class Add>
HWY_INLINE void sumPairs(PairSums<kVectors>& sums, [[maybe_unused]] CarriedSums<kVectors>* carried,
                         const FirPairs& pairs, Add add) {
    sums.start(kCarries ? kCarryBias : 0);
    size_t step = 0;
    const size_t columns = pairs.units < kFirPairStride ? pairs.units : kFirPairStride;
    for (size_t column = 0; column < columns; ++column) {
        size_t unit = column;
        size_t left = (pairs.units - column + kFirPairStride - 1) / kFirPairStride;
        while (left > 0) {
            const size_t units = firPairStep(left, kCarries && pairs.singly);
            if (units == 4) {
                add(sums, unit, std::integral_constant<size_t, 4>());
            } else if (units == 2) {
                add(sums, unit, std::integral_constant<size_t, 2>());
            } else {
                add(sums, unit, std::integral_constant<size_t, 1>());
            }
            if constexpr (kCarries) {
                if (pairs.carries[step++] != 0) carried->carry(sums);
            }
            unit += units * kFirPairStride;
            left -= units;
        }
    }
}

// The results of kVectors vectors; store(vector, index) takes them.
template <bool kCarries, size_t kVectors, class Add, class Store>
HWY_INLINE void pairsTile(const FirPairs& pairs, int shift, Add add, Store store) {
    PairSums<kVectors> sums;
    if constexpr (kCarries) {
        CarriedSums<kVectors> carried;
        sumPairs<true>(sums, &carried, pairs, add);
        carried.carry(sums);
        const int64_t bias = carried.carries * kCarryBias;
        for (size_t i = 0; i < kVectors; ++i) {
            store(interleaved(scaleCarried(carried.v[0][i], bias, shift), scaleCarried(carried.v[1][i], bias, shift)),
                  i);
        }
    } else {
        sumPairs<false, kVectors>(sums, nullptr, pairs, add);
#pragma GCC unroll 16
        for (size_t i = 0; i < kVectors; ++i)
            store(interleaved(scaleSums(sums.v[0][i], shift), scaleSums(sums.v[1][i], shift)), i);
    }
}

template <bool kCarries, size_t kVectors>
HWY_INLINE void pairsTile(const int16_t* src, int16_t* dst, const FirPairs& pairs, int shift) {
    pairsTile<kCarries, kVectors>(
        pairs, shift,
        [&](auto& sums, size_t unit, auto units) HWY_ATTR { addPairs<units.value>(sums, src, pairs, unit); },
        [&](ShortVec result, size_t i) HWY_ATTR { hn::StoreU(result, Shorts(), dst + i * kPairLanes); });
}

// At most a vector of n results, of a source that ends after `end` lanes.
template <bool kCarries>
HWY_INLINE void pairsRest(const int16_t* src, size_t end, int16_t* dst, size_t n, const FirPairs& pairs, int shift) {
    const auto load = [&](size_t i) HWY_ATTR {
        return i + kPairLanes <= end ? hn::LoadU(Shorts(), src + i) : loadFirst(Shorts(), src + i, end - i);
    };
    pairsTile<kCarries, 1>(
        pairs, shift,
        [&](auto& sums, size_t unit, auto units) HWY_ATTR {
            for (size_t u = unit; u < unit + units.value * kFirPairStride; u += kFirPairStride) {
                const ShortVec x = load(2 * u);
                sums.v[0][0] = hn::Add(sums.v[0][0], pairProducts(x, pairAt(pairs.even + 2 * u)));
                sums.v[1][0] = hn::Add(sums.v[1][0], pairProducts(x, pairAt(pairs.odd + 2 * u)));
            }
        },
        [&](ShortVec result, size_t) HWY_ATTR {
            if (n == kPairLanes) {
                hn::StoreU(result, Shorts(), dst);
            } else {
                storeFirst(Shorts(), result, dst, n);
            }
        });
}

template <bool kCarries>
void pairsBlocks(const int16_t* src, size_t end, int16_t* dst, size_t n, const FirPairs& pairs, int shift) {
    constexpr size_t kTile = HWY_TARGET <= HWY_AVX3 ? 8 : 2;
    // The last unit may reach a lane beyond what the last output needs.
    const size_t reach = 2 * (pairs.units - 1);
    const size_t whole = end - reach < n ? end - reach : n;
    size_t i = 0;
    for (; whole - i >= kTile * kPairLanes; i += kTile * kPairLanes)
        pairsTile<kCarries, kTile>(src + i, dst + i, pairs, shift);
    for (; whole - i >= kTile / 2 * kPairLanes; i += kTile / 2 * kPairLanes)
        pairsTile<kCarries, kTile / 2>(src + i, dst + i, pairs, shift);
    for (; i < n; i += kPairLanes)
        pairsRest<kCarries>(src + i, end - i, dst + i, n - i < kPairLanes ? n - i : kPairLanes, pairs, shift);
}

template <size_t kParts>
void integerFir(const int16_t* src, int16_t* dst, size_t count, const FirPairs& pairs, size_t tapsLen, int shift) {
    const size_t n = count * kParts;
    const size_t end = n + (tapsLen - 1) * kParts;
    if (pairs.carries != nullptr) {
        // No sum is beyond 2^62, none within 16 bits beyond 16 places left.
        pairsBlocks<true>(src, end, dst, n, pairs, shift > 63 ? 63 : shift < -31 ? -31 : shift);
    } else if (shift >= kBits<int32_t>) {
        for (size_t i = 0; i < n; ++i)
            dst[i] = 0;
    } else {
        pairsBlocks<false>(src, end, dst, n, pairs, shift < -31 ? -31 : shift);
    }
}

// ---- One output ----

// The sums of the even and, where there are two, of the odd output lane of the first unit.
template <size_t kSums>
void integerFirOne(const int16_t* src, int64_t* sums, const FirPairs& pairs, size_t tapsLen) {
    const LongWords d;
    const Lanes<uint64_t, kPairLanes / 4> u;
    const size_t n = tapsLen * kSums;
    const int16_t* const taps[2] = {pairs.even, pairs.odd};
    for (size_t part = 0; part < kSums; ++part) {
        auto total = hn::Zero(u);
        int64_t carries = 0;
        for (size_t i = 0; i < n; i += kPairLanes, ++carries) {
            const bool whole = i + kPairLanes <= n;
            const ShortVec x = whole ? hn::LoadU(Shorts(), src + i) : loadFirst(Shorts(), src + i, n - i);
            const ShortVec tap =
                whole ? hn::LoadU(Shorts(), taps[part] + i) : loadFirst(Shorts(), taps[part] + i, n - i);
            const WordVec products = pairProducts(x, hn::BitCast(Words(), tap));
            const auto both = hn::BitCast(u, hn::Add(products, hn::Set(Words(), kCarryBias)));
            total = hn::Add(total, hn::And(both, hn::Set(u, uint64_t{0xffffffff})));
            total = hn::Add(total, hn::ShiftRight<32>(both));
        }
        alignas(kVectorBytes) int64_t lanes[kPairLanes / 4];
        hn::Store(hn::BitCast(d, total), d, lanes);
        sums[part] = -carries * static_cast<int64_t>(kPairLanes / 2) * kCarryBias;
        for (const int64_t lane : lanes)
            sums[part] += lane;
    }
}

} // namespace zvps::ZVPS_LEVEL
