// Elements of one type as elements of another: 24-bit and half-precision vectors, narrowing, rounding.
#pragma once

#include "core/rounding.hpp"
#include "zvps/types.h"

namespace zvps::ZVPS_LEVEL {

// ---- Several vectors in a step ----

// Consecutive vectors, where a whole vector of results takes R vectors of operands.
template <class V, size_t R>
struct Several {
    V v[R];
};

// make(0), ..., make(R - 1). No loop: where it is unlikely to run, g++ leaves it a loop, and the vectors in memory.
template <size_t R, class Make>
HWY_INLINE auto several(Make make) {
    static_assert(R == 1 || R == 2 || R == 4 || R == 8);
    using Result = Several<decltype(make(0)), R>;
    if constexpr (R == 1) {
        return Result{{make(0)}};
    } else if constexpr (R == 2) {
        return Result{{make(0), make(1)}};
    } else if constexpr (R == 4) {
        return Result{{make(0), make(1), make(2), make(3)}};
    } else {
        return Result{{make(0), make(1), make(2), make(3), make(4), make(5), make(6), make(7)}};
    }
}

template <class V, class Function>
HWY_INLINE auto forEach(const V& v, Function function) {
    return function(v);
}
template <class V, size_t R, class Function>
HWY_INLINE auto forEach(const Several<V, R>& list, Function function) {
    return several<R>([&](size_t r) HWY_ATTR { return function(list.v[r]); });
}

template <class Source>
struct InParts {
    Source source;

    static constexpr size_t kReadBytes = Source::kReadBytes;

    template <size_t N>
    HWY_INLINE auto load(size_t i) const {
        constexpr size_t kLanes = kVectorBytes / Source::kLaneBytes;
        return several<N / kLanes>([&](size_t r) HWY_ATTR { return source.template load<kLanes>(i + r * kLanes); });
    }
    HWY_INLINE bool startsAt(const void* address) const { return source.startsAt(address); }
};

// ---- 24-bit elements, three bytes each, least significant first ----

// A step takes a full vector of 32-bit lanes: each block of 16
// bytes holds four elements.

inline constexpr size_t kLanes32 = kVectorBytes / 4;
inline constexpr size_t kBytes24 = 3 * kLanes32;
using Bytes = Vec<uint8_t, kVectorBytes>;

// Places for a permutation of a full vector, as constants: the compiler does not make them of a loop by itself.
template <class T>
struct alignas(kVectorBytes) Places {
    T at[kVectorBytes / sizeof(T)]{};
};

template <bool kSigned>
struct Packed24 {
    const uint8_t* p;

    static constexpr size_t kReadBytes = 3;
    static constexpr size_t kLaneBytes = 4;
    static constexpr size_t kPeriod = 1;

    template <size_t N>
    HWY_INLINE Vec<int32_t, N> load(size_t i) const {
        static_assert(N == kLanes32);
        return unpacked(blocks(p + 3 * i));
    }
    template <size_t N>
    HWY_INLINE Vec<int32_t, N> loadSome(size_t i, size_t n) const {
        static_assert(N == kLanes32);
        uint8_t bytes[kBytes24] = {};
        __builtin_memcpy(bytes, p + 3 * i, 3 * n);
        return unpacked(blocks(bytes));
    }
    HWY_INLINE bool startsAt(const void* address) const { return p == address; }

  private:
    // Where the elements start in an odd block: AVX2 loads it from within the kBytes24 bytes.
    static constexpr size_t kOddStart = HWY_TARGET == HWY_AVX2 ? 4 : 0;

    static HWY_INLINE Bytes blocks(const uint8_t* from) {
#if HWY_TARGET <= HWY_AVX3
        const Lanes<uint32_t, kLanes32> d32;
        alignas(kVectorBytes) static constexpr uint32_t kOrder[] = {0, 1, 2, 3, 3, 4, 5, 6, 6, 7, 8, 9, 9, 10, 11, 11};
        const Lanes<uint8_t, kVectorBytes> d;
        const auto packed = hn::BitCast(d32, loadFirst(d, from, kBytes24));
        return hn::BitCast(d, hn::TableLookupLanes(packed, hn::SetTableIndices(d32, kOrder)));
#elif HWY_TARGET == HWY_AVX2
        const Lanes<uint8_t, 16> half;
        return hn::Combine(Lanes<uint8_t, 32>(), hn::LoadU(half, from + 8), hn::LoadU(half, from));
#else
        int64_t low;
        uint32_t high;
        __builtin_memcpy(&low, from, 8);
        __builtin_memcpy(&high, from + 8, 4);
        return Bytes{_mm_set_epi64x(high, low)};
#endif
    }
    // The elements in the upper bytes of the lanes where they are signed, else in the lower ones; 0x80 gives a zero.
    static constexpr Places<uint8_t> unpackedPlaces() {
        Places<uint8_t> places;
        for (size_t i = 0; i < kVectorBytes; ++i) {
            const size_t byte = i % 4;
            const size_t start = (i / 16 % 2 == 0 ? 0 : kOddStart) + i % 16 / 4 * 3;
            const bool isZero = byte == (kSigned ? 0 : 3);
            places.at[i] = static_cast<uint8_t>(isZero ? 0x80 : start + byte - (kSigned ? 1 : 0));
        }
        return places;
    }
    static HWY_INLINE Vec<int32_t, kLanes32> unpacked(Bytes blocks) {
        static constexpr Places<uint8_t> kPlaces = unpackedPlaces();
        const Lanes<uint8_t, kVectorBytes> d;
        const auto lanes =
            hn::BitCast(Lanes<int32_t, kLanes32>(), hn::TableLookupBytes(blocks, hn::Load(d, kPlaces.at)));
        return kSigned ? hn::ShiftRight<8>(lanes) : lanes;
    }
};

// The low 24 bits of 32-bit lanes.
struct Packed24Target {
    uint8_t* p;

    HWY_INLINE void store(Vec<int32_t, kLanes32> v, size_t i) const { write(packed(v), p + 3 * i); }
    HWY_INLINE void storeFirst(Vec<int32_t, kLanes32> v, size_t n) const {
        uint8_t bytes[kBytes24];
        write(packed(v), bytes);
        __builtin_memcpy(p, bytes, 3 * n);
    }

  private:
    static constexpr Places<uint8_t> packedPlaces() {
        Places<uint8_t> places;
        for (size_t i = 0; i < kVectorBytes; ++i)
            places.at[i] = static_cast<uint8_t>(i % 16 < 12 ? i % 16 / 3 * 4 + i % 16 % 3 : 0x80);
        return places;
    }
    // Three of four 32-bit lanes.
    static constexpr Places<uint32_t> packedOrder() {
        Places<uint32_t> order;
        for (uint32_t i = 0; i < 3 * kLanes32 / 4; ++i)
            order.at[i] = i / 3 * 4 + i % 3;
        return order;
    }
    static HWY_INLINE Bytes packed(Vec<int32_t, kLanes32> v) {
        const Lanes<uint8_t, kVectorBytes> d;
        static constexpr Places<uint8_t> kPlaces = packedPlaces();
        const Bytes blocks = hn::TableLookupBytes(hn::BitCast(d, v), hn::Load(d, kPlaces.at));
        if constexpr (kVectorBytes == 16) {
            return blocks;
        } else {
            const Lanes<uint32_t, kLanes32> d32;
            static constexpr Places<uint32_t> kOrder = packedOrder();
            return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(d32, blocks), hn::SetTableIndices(d32, kOrder.at)));
        }
    }
    static HWY_INLINE void write(Bytes v, uint8_t* to) {
#if HWY_TARGET <= HWY_AVX3
        zvps::ZVPS_LEVEL::storeFirst(Lanes<uint8_t, kVectorBytes>(), v, to, kBytes24);
#elif HWY_TARGET == HWY_AVX2
        const Lanes<uint8_t, 16> half;
        hn::StoreU(hn::LowerHalf(half, v), half, to);
        const Lanes<uint8_t, 8> quarter;
        hn::StoreU(hn::LowerHalf(quarter, hn::UpperHalf(half, v)), quarter, to + 16);
#else
        const int64_t low = _mm_cvtsi128_si64(v.raw);
        const int32_t high = _mm_extract_epi32(v.raw, 2);
        __builtin_memcpy(to, &low, 8);
        __builtin_memcpy(to + 8, &high, 4);
#endif
    }
};

// map() into 24-bit elements.
template <class Op, class Source>
HWY_INLINE void mapTo24(const Op& op, uint8_t* dst, size_t n, const Source& source) {
    constexpr size_t N = kLanes32;
    const Lanes<int32_t, N> d;
    const Packed24Target target{dst};
    if (n < N) {
        target.storeFirst(op(d, source.template loadSome<N>(0, n)), n);
        return;
    }
    const auto tail = op(d, source.template load<N>(n - N));
    for (size_t i = 0; i + N < n; i += N)
        target.store(op(d, source.template load<N>(i)), i);
    target.store(tail, n - N);
}

// ---- Half precision ----

// Half-precision elements as single-precision lanes; always exact, NaNs made quiet.
struct Halves {
    const Zvp16f* p;

    static constexpr size_t kReadBytes = 2;
    static constexpr size_t kLaneBytes = 4;
    static constexpr size_t kPeriod = 1;

    template <size_t N>
    HWY_INLINE Vec<float, N> load(size_t i) const {
        return single(hn::LoadU(Lanes<uint16_t, N>(), p + i));
    }
    template <size_t N>
    HWY_INLINE Vec<float, N> loadSome(size_t i, size_t n) const {
        return single(loadFirst(Lanes<uint16_t, N>(), p + i, n));
    }
    HWY_INLINE bool startsAt(const void* address) const { return p == address; }

  private:
    static HWY_INLINE Vec<float, kLanes32> single(Vec<uint16_t, kLanes32> halves) {
#if HWY_TARGET <= HWY_AVX2
        return Vec<float, kLanes32>{ZVPS_INTRINSIC(cvtph_ps)(halves.raw)};
#else
        const Lanes<int32_t, kLanes32> d;
        const Lanes<float, kLanes32> df;
        const auto bits = hn::PromoteTo(d, halves);
        const auto magnitude = hn::And(bits, hn::Set(d, 0x7FFF));
        const auto sign = hn::ShiftLeft<16>(hn::Xor(bits, magnitude));
        const auto shifted = hn::ShiftLeft<13>(magnitude);
        // A subnormal counts steps of 2^-24.
        const auto small = hn::BitCast(d, hn::Mul(hn::ConvertTo(df, magnitude), hn::Set(df, 0x1p-24f)));
        const auto normal = hn::Add(shifted, hn::Set(d, (127 - 15) << 23));
        const auto finite = hn::IfThenElse(hn::Lt(magnitude, hn::Set(d, 0x0400)), small, normal);
        const auto infinity = hn::Set(d, 0x7C00);
        const auto quiet = hn::IfThenElseZero(hn::Gt(magnitude, infinity), hn::Set(d, 0x00400000));
        const auto special = hn::Or(hn::Or(shifted, hn::Set(d, 0x7F800000)), quiet);
        const auto result = hn::IfThenElse(hn::Lt(magnitude, infinity), finite, special);
        return hn::BitCast(df, hn::Or(result, sign));
#endif
    }
};

template <ZvpRoundMode mode>
struct ToHalf {
    template <class D, class V>
    HWY_INLINE auto operator()(D, V v) const {
        return half(widened(Lanes<float, kLanes32>(), v));
    }

  private:
    static_assert(mode == zvpRndNear || mode == zvpRndZero);

    static HWY_INLINE Vec<uint16_t, kLanes32> half(Vec<float, kLanes32> v) {
#if HWY_TARGET <= HWY_AVX2
        constexpr int kMode = mode == zvpRndNear ? _MM_FROUND_TO_NEAREST_INT : _MM_FROUND_TO_ZERO;
        return Vec<uint16_t, kLanes32>{ZVPS_INTRINSIC(cvtps_ph)(v.raw, kMode | _MM_FROUND_NO_EXC)};
#else
        const Lanes<int32_t, kLanes32> d;
        const auto bits = hn::BitCast(d, v);
        const auto magnitude = hn::And(bits, hn::Set(d, 0x7FFFFFFF));
        const auto sign = hn::And(hn::ShiftRight<16>(bits), hn::Set(d, 0x8000));
        // Below 2^-14 in steps of 2^-24; a carry into the exponent is right. Larger magnitudes are not used.
        const auto least = hn::Set(d, 0x38800000);
        const Lanes<float, kLanes32> df;
        const auto steps = hn::Mul(hn::BitCast(df, hn::Min(magnitude, least)), hn::Set(df, 0x1p24f));
        const auto small = mode == zvpRndNear ? hn::NearestInt(steps) : hn::ConvertTo(d, steps);
        auto rebiased = hn::Sub(magnitude, hn::Set(d, (127 - 15) << 23));
        if constexpr (mode == zvpRndNear) {
            const auto odd = hn::And(hn::ShiftRight<13>(magnitude), hn::Set(d, 1));
            rebiased = hn::Add(rebiased, hn::Add(odd, hn::Set(d, 0x0FFF)));
        }
        constexpr int32_t kMost = mode == zvpRndNear ? 0x7C00 : 0x7BFF;
        const auto normal = hn::Min(hn::ShiftRight<13>(rebiased), hn::Set(d, kMost));
        const auto finite = hn::IfThenElse(hn::Lt(magnitude, least), small, normal);
        const auto infinity = hn::Set(d, 0x7F800000);
        const auto payload = hn::And(hn::ShiftRight<13>(magnitude), hn::Set(d, 0x01FF));
        const auto nan = hn::Or(payload, hn::Set(d, 0x7E00));
        const auto special = hn::IfThenElse(hn::Gt(magnitude, infinity), nan, hn::Set(d, 0x7C00));
        const auto result = hn::IfThenElse(hn::Lt(magnitude, infinity), finite, special);
        return hn::DemoteTo(Lanes<uint16_t, kLanes32>(), hn::Or(result, sign));
#endif
    }
};

// ---- Narrower integers, saturated ----

// What an integer result is limited to.
template <class T>
struct Range {
    static constexpr T kLeast = std::numeric_limits<T>::min();
    static constexpr T kMost = std::numeric_limits<T>::max();
};
struct Range24s {
    static constexpr int32_t kLeast = -(1 << 23);
    static constexpr int32_t kMost = (1 << 23) - 1;
};
struct Range24u {
    static constexpr int32_t kLeast = 0;
    static constexpr int32_t kMost = (1 << 24) - 1;
};

// One vector to as many lanes.
template <class D, class V>
HWY_INLINE auto narrowed(D d, V v) {
    using T = Element<D>;
    using W = hn::TFromV<V>;
    if constexpr (sizeof(T) == sizeof(W)) {
        return v;
#if HWY_TARGET <= HWY_AVX3
    } else if constexpr (sizeof(W) == 8) {
        return hn::Vec<D>{_mm512_cvtsepi64_epi32(v.raw)};
#else
    } else if constexpr (sizeof(W) == 8) {
        const hn::Rebind<W, D> dw;
        const auto limited = hn::Min(hn::Max(v, hn::Set(dw, W{Range<T>::kLeast})), hn::Set(dw, W{Range<T>::kMost}));
        return hn::BitCast(
            d, hn::TruncateTo(hn::RebindToUnsigned<D>(), hn::BitCast(hn::RebindToUnsigned<decltype(dw)>(), limited)));
#endif
    } else {
        return hn::DemoteTo(d, v);
    }
}

// Halves of the lanes of `a`, then those of `b`, in each block of 16 bytes. Operands count as signed.
template <class T, class V>
HWY_INLINE auto packedBlocks(V a, V b) {
    constexpr size_t N = kVectorBytes / sizeof(T);
    if constexpr (std::is_same_v<T, int16_t>) return Vec<T, N>{ZVPS_INTRINSIC(packs_epi32)(a.raw, b.raw)};
    if constexpr (std::is_same_v<T, uint16_t>) return Vec<T, N>{ZVPS_INTRINSIC(packus_epi32)(a.raw, b.raw)};
    if constexpr (std::is_same_v<T, int8_t>) return Vec<T, N>{ZVPS_INTRINSIC(packs_epi16)(a.raw, b.raw)};
    if constexpr (std::is_same_v<T, uint8_t>) return Vec<T, N>{ZVPS_INTRINSIC(packus_epi16)(a.raw, b.raw)};
}

// Blocks of 16 bytes that hold R vectors' parts in turn, put into the vectors' order.
template <size_t R>
constexpr Places<uint32_t> orderOfParts() {
    constexpr size_t kBlocks = kVectorBytes / 16;
    constexpr size_t kPart = 4 / R;
    Places<uint32_t> order;
    for (size_t i = 0; i < kLanes32; ++i) {
        const size_t vector = i / (kBlocks * kPart);
        const size_t block = i / kPart % kBlocks;
        order.at[i] = static_cast<uint32_t>(block * 4 + vector * kPart + i % kPart);
    }
    return order;
}
template <size_t R, class D, class V>
HWY_INLINE V inOrder(D d, V v) {
    if constexpr (kVectorBytes == 16) {
        return v;
    } else {
        const Lanes<uint32_t, kLanes32> d32;
        static constexpr Places<uint32_t> kOrder = orderOfParts<R>();
        return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(d32, v), hn::SetTableIndices(d32, kOrder.at)));
    }
}

template <class D, class V>
HWY_INLINE auto narrowed(D d, const Several<V, 1>& several) {
    return narrowed(d, several.v[0]);
}
template <class D, class V>
HWY_INLINE auto narrowed(D d, const Several<V, 2>& several) {
    const auto& v = several.v;
    if constexpr (sizeof(Element<D>) == 4) {
        return hn::Combine(d, narrowed(Lanes<Element<D>, kLanes32 / 2>(), v[1]),
                           narrowed(Lanes<Element<D>, kLanes32 / 2>(), v[0]));
    } else {
        return inOrder<2>(d, packedBlocks<Element<D>>(v[0], v[1]));
    }
}
template <class D, class V>
HWY_INLINE auto narrowed(D d, const Several<V, 4>& several) {
    const auto& v = several.v;
    if constexpr (sizeof(Element<D>) == 1) {
        const auto first = packedBlocks<int16_t>(v[0], v[1]);
        const auto second = packedBlocks<int16_t>(v[2], v[3]);
        return inOrder<4>(d, packedBlocks<Element<D>>(first, second));
    } else {
        // Half vectors of 32 bits, from doubles.
        const Lanes<int32_t, kLanes32> d32;
        return inOrder<2>(d, packedBlocks<Element<D>>(hn::Combine(d32, v[1], v[0]), hn::Combine(d32, v[3], v[2])));
    }
}

// ---- Rounding ----

// To integers of Limits. The scale is exact: where a product is too small to be, it is 0 by any mode. The minimum and
// the maximum return their second operand when one is a NaN. Conversions give the most negative integer for what they
// cannot represent, which is right for large negative numbers, and 0 after unsigned saturation.
template <class Limits, ZvpRoundMode mode, bool kTwice, class F>
struct RoundTo {
    // Whether a result that needs care can be told from others: tested at once for two vectors.
    static constexpr bool kTakesTwo =
        sizeof(F) == 4 && (std::is_same_v<Limits, Range<int8_t>> || std::is_same_v<Limits, Range<int16_t>> ||
                           std::is_same_v<Limits, Range<int32_t>>);

    F factor;
    F second;

    template <class D, class V>
    HWY_INLINE auto operator()(D d, const V& v) const {
        return narrowed(d, forEach(v, [this](auto one) HWY_ATTR { return integers(one); }));
    }
    template <class D, class V>
    HWY_INLINE auto operator()(D d, const Two<V>& v) const {
        const auto lower = withoutCare(d, v.lower);
        const auto upper = withoutCare(d, v.upper);
        Two<std::remove_const_t<decltype(lower)>> result{lower, upper};
        const auto least = hn::Set(d, Limits::kLeast);
        if (HWY_UNLIKELY(!hn::AllFalse(d, hn::Eq(hn::Min(lower, upper), least)))) {
            result.lower = (*this)(d, v.lower);
            result.upper = (*this)(d, v.upper);
        }
        return result;
    }

  private:
    static constexpr F kMost = static_cast<F>(Limits::kMost);
    // Whether conversion and narrowing by themselves give 0 for a negative number, and so for a NaN.
    static constexpr bool kUnsigned = Limits::kLeast == 0;

    template <class D, class V>
    HWY_INLINE V scaled(D d, V v) const {
        const V once = hn::Mul(v, hn::Set(d, factor));
        if constexpr (kTwice) return hn::Mul(once, hn::Set(d, second));
        return once;
    }
    // A result of the least signed integer may come from a number that a conversion cannot represent: without one, the
    // limits and NaNs need no care.
    template <class D, class V>
    HWY_INLINE auto withoutCare(D d, const V& v) const {
        return narrowed(d, forEach(v, [this](auto one) HWY_ATTR {
                            const hn::DFromV<decltype(one)> df;
                            return rounded32(df, scaled(df, one));
                        }));
    }
    template <class V>
    HWY_INLINE auto integers(V v) const {
        const hn::DFromV<V> d;
        auto number = scaled(d, v);
        if constexpr (!kUnsigned) number = hn::IfThenElseZero(hn::Eq(v, v), number);
        if constexpr (std::is_same_v<Limits, Range24s> || std::is_same_v<Limits, Range24u>)
            number = hn::Max(number, hn::Set(d, F{Limits::kLeast}));
        if constexpr (Limits::kMost == std::numeric_limits<int64_t>::max()) {
            return rounded64(d, number);
        } else if constexpr (Limits::kMost == std::numeric_limits<int32_t>::max() && sizeof(F) == 4) {
            const Lanes<int32_t, hn::MaxLanes(d)> di;
            const auto beyond = hn::RebindMask(di, hn::Ge(number, hn::Set(d, 0x1p31f)));
            return hn::IfThenElse(beyond, hn::Set(di, std::numeric_limits<int32_t>::max()), rounded32(d, number));
        } else {
            return rounded32(d, hn::Min(hn::Set(d, kMost), number));
        }
    }

    // Ties away from zero: the largest number below one half is added before truncation; one half would take its
    // neighbour, and large odd numbers, too far.
    template <class D, class V>
    static HWY_INLINE V beforeConversion(D d, V v) {
        constexpr F kBelowHalf = F{0.5} - std::numeric_limits<F>::epsilon() / 4;
        if constexpr (mode == zvpRndFinancial) {
            return hn::Add(v, hn::CopySign(hn::Set(d, kBelowHalf), v));
        } else {
            return v;
        }
    }
    template <class D, class V>
    static HWY_INLINE Vec<int32_t, kVectorBytes / sizeof(F)> rounded32(D d, V v) {
        const auto ready = beforeConversion(d, v).raw;
        using Result = Vec<int32_t, kVectorBytes / sizeof(F)>;
        if constexpr (sizeof(F) == 4) {
            if constexpr (mode == zvpRndNear) return Result{ZVPS_INTRINSIC(cvtps_epi32)(ready)};
            return Result{ZVPS_INTRINSIC(cvttps_epi32)(ready)};
        } else {
            if constexpr (mode == zvpRndNear) return Result{ZVPS_INTRINSIC(cvtpd_epi32)(ready)};
            return Result{ZVPS_INTRINSIC(cvttpd_epi32)(ready)};
        }
    }
    template <class D, class V>
    static HWY_INLINE auto rounded64(D d, V v) {
        const auto ready = beforeConversion(d, v);
        const auto whole = mode == zvpRndNear ? hn::Round(ready) : ready;
        const Lanes<int64_t, kVectorBytes / 8> di;
        const auto low = hn::Set(d, -0x1p63);
        return hn::ConvertTo(di, hn::Max(whole, low));
    }
};

} // namespace zvps::ZVPS_LEVEL
