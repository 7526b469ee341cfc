// Direct filters of 16-bit data by 16-bit taps, exact: products of pairs of lanes in 32 bits, sums in 32 bits where
// they fit; others are put together from runs that do.
#pragma once

#include "core/rounding.hpp"
#include "filters/fir.hpp"
#include "filters/fir.table.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kPairLanes = kVectorBytes / sizeof(int16_t);
using Shorts = Lanes<int16_t, kPairLanes>;
using Words = Lanes<int32_t, kPairLanes / 2>;
using ShortVec = hn::Vec<Shorts>;
using WordVec = hn::Vec<Words>;

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

// Runs of sums that fit 32 bits, added up: the lower 32 bits of all, and the upper halves of each.
template <size_t kVectors>
struct CarriedSums {
    // Runs start from -1: that of a pair of the lowest taps with the lowest data, 2^31, is then the largest number.
    static constexpr int32_t kStart = -1;

    // In memory: the registers are for the runs.
    alignas(kVectorBytes) int32_t lower[2][kVectors][kPairLanes / 2] = {};
    alignas(kVectorBytes) int32_t upper[2][kVectors][kPairLanes / 2] = {};
    int32_t runs = 0;

    // Through memory, and apart, so that the compiler keeps the run in registers until then.
    HWY_INLINE void carry(PairSums<kVectors>& run) {
        alignas(kVectorBytes) int32_t stored[2][kVectors][kPairLanes / 2];
#pragma GCC unroll 16
        for (size_t i = 0; i < kVectors; ++i) {
            hn::Store(run.v[0][i], Words(), stored[0][i]);
            hn::Store(run.v[1][i], Words(), stored[1][i]);
        }
        addStored(stored[0][0]);
        run.start(kStart);
    }

  private:
    HWY_NOINLINE void addStored(const int32_t* run) {
        const Words d;
        for (size_t i = 0; i < kVectors * kPairLanes; i += kPairLanes / 2) {
            const WordVec v = hn::Load(d, run + i);
            int32_t* const low = lower[0][0] + i;
            int32_t* const up = upper[0][0] + i;
            hn::Store(hn::Add(hn::Load(d, low), v), d, low);
            hn::Store(hn::Add(hn::Load(d, up), hn::ShiftRight<16>(v)), d, up);
        }
        ++runs;
    }
};

// ---- Results ----

HWY_INLINE WordVec scaleSums(WordVec sums, int shift) {
    const Words d;
    if (shift > 0) return roundShift(d, sums, shift);
    return shift == 0 ? sums : saturatedShiftLeft(d, sums, -shift);
}

// The upper halves of the runs are less than 2^16 each below their values: with the sum modulo 2^32 they tell the whole
// sum, here as upper * 2^16 + lower.
HWY_INLINE WordVec scaleCarried(WordVec lower, WordVec upper, int32_t runs, int shift) {
    const Words d;
    const auto below = hn::Add(hn::Sub(lower, hn::ShiftLeft<16>(upper)), hn::Set(d, runs));
    upper = hn::Add(upper, hn::BitCast(d, hn::ShiftRight<16>(hn::BitCast(Lanes<uint32_t, kPairLanes / 2>(), below))));
    lower = hn::And(below, hn::Set(d, 0xffff));
    if (shift > 16) {
        // Of the lower half all that counts is whether it is 0.
        const auto rest = hn::IfThenElseZero(hn::Ne(lower, hn::Zero(d)), hn::Set(d, 1));
        return roundShift(d, hn::Or(hn::Add(upper, upper), rest), shift - 15);
    }
    // Beyond 32 bits the result is a limit of 16.
    const auto limit = hn::Xor(hn::BroadcastSignBit(upper), hn::Set(d, std::numeric_limits<int32_t>::max()));
    const auto whole = hn::Or(hn::ShiftLeft<16>(upper), lower);
    const auto fits = hn::Eq(hn::ShiftRight<16>(hn::ShiftLeft<16>(upper)), upper);
    return scaleSums(hn::IfThenElse(fits, whole, limit), shift);
}

HWY_INLINE ShortVec interleaved(WordVec even, WordVec odd) {
    // In each block of 16 bytes four even results, then four odd ones.
    const ShortVec packed = hn::ReorderDemote2To(Shorts(), even, odd);
    alignas(16) static constexpr uint8_t kOrder[16] = {0, 1, 8, 9, 2, 3, 10, 11, 4, 5, 12, 13, 6, 7, 14, 15};
    const hn::Repartition<uint8_t, Shorts> bytes;
    return hn::TableLookupBytes(packed, hn::BitCast(Shorts(), hn::LoadDup128(bytes, kOrder)));
}

// ---- Sums ----

// How products are added to a sum: by two instructions,
struct ProductsThenSum {
    static HWY_INLINE void add(WordVec& sum, ShortVec x, WordVec taps) {
        sum = hn::Add(sum, pairProducts(x, taps));
        // The compiler would add products to each other first and run out of registers.
        keepInRegister(sum);
    }
};
// or by one, which not every processor of the level has.
#if HWY_TARGET <= HWY_AVX3
struct DotProducts {
    static HWY_INLINE void add(WordVec& sum, ShortVec x, WordVec taps) {
        asm("vpdpwssd %2, %1, %0" : "+v"(sum.raw) : "v"(x.raw), "v"(taps.raw));
    }
};
#endif

// Data of which all vectors of a tile may be loaded whole.
template <class Products>
struct WholePairs {
    const int16_t* src;

    template <size_t kUnits, size_t kVectors>
    HWY_INLINE void add(PairSums<kVectors>& sums, const FirPairs& pairs, size_t unit) const {
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
                    Products::add(sums.v[0][v - q * j], x, even[j]);
                    Products::add(sums.v[1][v - q * j], x, odd[j]);
                }
            }
        }
    }
    static HWY_INLINE void store(ShortVec result, int16_t* dst) {
        hn::StoreU(result, Shorts(), dst);
    }
};

// Data of at most a vector of n results, which end after `end` lanes.
struct LastPairs {
    const int16_t* src;
    size_t end;
    size_t n;

    template <size_t kUnits>
    HWY_INLINE void add(PairSums<1>& sums, const FirPairs& pairs, size_t unit) const {
        for (size_t u = unit; u < unit + kUnits * kFirPairStride; u += kFirPairStride) {
            const size_t i = 2 * u;
            const ShortVec x =
                i + kPairLanes <= end ? hn::LoadU(Shorts(), src + i) : loadFirst(Shorts(), src + i, end - i);
            ProductsThenSum::add(sums.v[0][0], x, pairAt(pairs.even + i));
            ProductsThenSum::add(sums.v[1][0], x, pairAt(pairs.odd + i));
        }
    }
    HWY_INLINE void store(ShortVec result, int16_t* dst) const {
        if (n < kPairLanes) return storeFirst(Shorts(), result, dst, n);
        hn::StoreU(result, Shorts(), dst);
    }
};

// The results of kVectors vectors of sums that fit 32 bits,
template <size_t kVectors, class Data>
HWY_INLINE void pairsTile(const Data& data, int16_t* dst, const FirPairs& pairs, int shift) {
    PairSums<kVectors> sums;
    sums.start(0);
    const size_t columns = pairs.units < kFirPairStride ? pairs.units : kFirPairStride;
    for (size_t column = 0; column < columns; ++column) {
        size_t unit = column;
        size_t left = (pairs.units - column + kFirPairStride - 1) / kFirPairStride;
        for (; left >= 4; left -= 4, unit += 4 * kFirPairStride)
            data.template add<4>(sums, pairs, unit);
        for (; left >= 2; left -= 2, unit += 2 * kFirPairStride)
            data.template add<2>(sums, pairs, unit);
        if (left != 0) data.template add<1>(sums, pairs, unit);
    }
#pragma GCC unroll 16
    for (size_t i = 0; i < kVectors; ++i)
        data.store(interleaved(scaleSums(sums.v[0][i], shift), scaleSums(sums.v[1][i], shift)), dst + i * kPairLanes);
}

// and of longer ones.
template <size_t kVectors, class Data>
HWY_INLINE void carriedTile(const Data& data, int16_t* dst, const FirPairs& pairs, int shift) {
    PairSums<kVectors> run;
    run.start(CarriedSums<kVectors>::kStart);
    CarriedSums<kVectors> sums;
    const uint8_t* step = pairs.steps;
    const size_t columns = pairs.units < kFirPairStride ? pairs.units : kFirPairStride;
    for (size_t column = 0; column < columns; ++column) {
        size_t unit = column;
        size_t left = (pairs.units - column + kFirPairStride - 1) / kFirPairStride;
        while (left > 0) {
            const size_t units = *step % kEndsFirRun;
            if (units == 4) {
                data.template add<4>(run, pairs, unit);
            } else if (units == 2) {
                data.template add<2>(run, pairs, unit);
            } else {
                data.template add<1>(run, pairs, unit);
            }
            if (*step++ >= kEndsFirRun) sums.carry(run);
            unit += units * kFirPairStride;
            left -= units;
        }
    }
    sums.carry(run);
    const auto scaled = [&](size_t part, size_t i) HWY_ATTR {
        const Words d;
        return scaleCarried(hn::Load(d, sums.lower[part][i]), hn::Load(d, sums.upper[part][i]), sums.runs, shift);
    };
#pragma GCC unroll 16
    for (size_t i = 0; i < kVectors; ++i)
        data.store(interleaved(scaled(0, i), scaled(1, i)), dst + i * kPairLanes);
}

template <bool kCarries, size_t kVectors, class Data>
HWY_INLINE void tileOfPairs(const Data& data, int16_t* dst, const FirPairs& pairs, int shift) {
    if constexpr (kCarries) {
        carriedTile<kVectors>(data, dst, pairs, shift);
    } else {
        pairsTile<kVectors>(data, dst, pairs, shift);
    }
}

template <class Products, bool kCarries>
void pairsBlocks(const int16_t* src, size_t end, int16_t* dst, size_t n, const FirPairs& pairs, int shift) {
    constexpr size_t kTile = HWY_TARGET <= HWY_AVX3 ? 8 : 2;
    constexpr size_t kHalf = kTile / 2;
    // The last unit may reach a lane beyond what the last output needs.
    const size_t reach = 2 * (pairs.units - 1);
    const size_t whole = end - reach < n ? end - reach : n;
    using Whole = WholePairs<Products>;
    size_t i = 0;
    for (; whole - i >= kTile * kPairLanes || (whole >= kTile * kPairLanes && whole - i > kHalf * kPairLanes);
         i += kTile * kPairLanes) {
        // The last tile may overlap the one before it.
        if (whole - i < kTile * kPairLanes) i = whole - kTile * kPairLanes;
        tileOfPairs<kCarries, kTile>(Whole{src + i}, dst + i, pairs, shift);
    }
    for (; whole - i >= kHalf * kPairLanes; i += kHalf * kPairLanes)
        tileOfPairs<kCarries, kHalf>(Whole{src + i}, dst + i, pairs, shift);
    for (; i < n; i += kPairLanes) {
        const size_t rest = n - i < kPairLanes ? n - i : kPairLanes;
        tileOfPairs<kCarries, 1>(LastPairs{src + i, end - i, rest}, dst + i, pairs, shift);
    }
}

template <size_t kParts, class Products>
void integerFirBy(const int16_t* src, int16_t* dst, size_t count, const FirPairs& pairs, size_t tapsLen, int shift) {
    const size_t n = count * kParts;
    const size_t end = n + (tapsLen - 1) * kParts;
    // Carried sums stay below 2^46, others below 2^31.
    const bool carries = pairs.steps != nullptr;
    if (shift > (carries ? 46 : 31)) {
        for (size_t i = 0; i < n; ++i)
            dst[i] = 0;
    } else if (carries) {
        pairsBlocks<Products, true>(src, end, dst, n, pairs, shift < -31 ? -31 : shift);
    } else {
        pairsBlocks<Products, false>(src, end, dst, n, pairs, shift < -31 ? -31 : shift);
    }
}

template <size_t kParts>
void integerFir(const int16_t* src, int16_t* dst, size_t count, const FirPairs& pairs, size_t tapsLen, int shift) {
#if HWY_TARGET <= HWY_AVX3
    if (__builtin_cpu_supports("avx512vnni")) {
        return integerFirBy<kParts, DotProducts>(src, dst, count, pairs, tapsLen, shift);
    }
#endif
    integerFirBy<kParts, ProductsThenSum>(src, dst, count, pairs, tapsLen, shift);
}

// ---- One output ----

// The sums of the even and, where there are two, of the odd output lane of the first unit.
template <size_t kSums>
void integerFirOne(const int16_t* src, int64_t* sums, const FirPairs& pairs, size_t tapsLen) {
    const Lanes<int64_t, kPairLanes / 4> d;
    const Lanes<uint64_t, kPairLanes / 4> u;
    const size_t n = tapsLen * kSums;
    const int16_t* const taps[2] = {pairs.even, pairs.odd};
    for (size_t part = 0; part < kSums; ++part) {
        // Seen as unsigned, products lie above their true value by the bias: even that of two pairs of the lowest
        // numbers, which wraps.
        constexpr int32_t kBias = std::numeric_limits<int32_t>::max();
        auto total = hn::Zero(u);
        int64_t count = 0;
        for (size_t i = 0; i < n; i += kPairLanes, ++count) {
            const bool whole = i + kPairLanes <= n;
            const ShortVec x = whole ? hn::LoadU(Shorts(), src + i) : loadFirst(Shorts(), src + i, n - i);
            const ShortVec tap =
                whole ? hn::LoadU(Shorts(), taps[part] + i) : loadFirst(Shorts(), taps[part] + i, n - i);
            const WordVec products = pairProducts(x, hn::BitCast(Words(), tap));
            const auto both = hn::BitCast(u, hn::Add(products, hn::Set(Words(), kBias)));
            total = hn::Add(total, hn::And(both, hn::Set(u, uint64_t{0xffffffff})));
            total = hn::Add(total, hn::ShiftRight<32>(both));
        }
        alignas(kVectorBytes) int64_t lanes[kPairLanes / 4];
        hn::Store(hn::BitCast(d, total), d, lanes);
        sums[part] = -count * static_cast<int64_t>(kPairLanes / 2) * kBias;
        for (const int64_t lane : lanes)
            sums[part] += lane;
    }
}

} // namespace zvps::ZVPS_LEVEL
