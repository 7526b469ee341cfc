// G.711 companding on 16-bit lanes. A code's magnitude is one of 8 segments of 16 steps each; from one segment to the
// next the steps become twice as wide (but for A-law's first two).
#pragma once

#include "core/rounding.hpp"

namespace zvps::ZVPS_LEVEL {

// clang-format off
// Codes with sign bit 0 as codes of the other law; the sign bit is the same in both.
alignas(16) inline constexpr uint8_t kMuLawOfALaw[128] = {
    42, 43, 40, 41, 46, 47, 44, 45, 34, 35, 32, 33, 38, 39, 36, 37,
    57, 58, 55, 56, 61, 62, 59, 60, 49, 50, 47, 48, 53, 54, 51, 52,
    10, 11, 8, 9, 14, 15, 12, 13, 2, 3, 0, 1, 6, 7, 4, 5,
    26, 27, 24, 25, 30, 31, 28, 29, 18, 19, 16, 17, 22, 23, 20, 21,
    98, 99, 96, 97, 102, 103, 100, 101, 93, 93, 92, 92, 95, 95, 94, 94,
    116, 118, 112, 114, 124, 126, 120, 122, 106, 107, 104, 105, 110, 111, 108, 109,
    72, 73, 70, 71, 76, 77, 74, 75, 64, 65, 63, 63, 68, 69, 66, 67,
    86, 87, 84, 85, 90, 91, 88, 89, 79, 79, 78, 78, 82, 83, 80, 81,
};

alignas(16) inline constexpr uint8_t kALawOfMuLaw[128] = {
    42, 43, 40, 41, 46, 47, 44, 45, 34, 35, 32, 33, 38, 39, 36, 37,
    58, 59, 56, 57, 62, 63, 60, 61, 50, 51, 48, 49, 54, 55, 52, 53,
    10, 11, 8, 9, 14, 15, 12, 13, 2, 3, 0, 1, 6, 7, 4, 26,
    27, 24, 25, 30, 31, 28, 29, 18, 19, 16, 17, 22, 23, 20, 21, 106,
    104, 105, 110, 111, 108, 109, 98, 99, 96, 97, 102, 103, 100, 101, 122, 120,
    126, 127, 124, 125, 114, 115, 112, 113, 118, 119, 116, 117, 75, 73, 79, 77,
    66, 67, 64, 65, 70, 71, 68, 69, 90, 91, 88, 89, 94, 95, 92, 93,
    82, 82, 83, 83, 80, 80, 81, 81, 86, 86, 87, 87, 84, 84, 85, 85,
};
// clang-format on

// What the laws differ in. By segment: width of a step (in the first segment's) and distance of its first value from
// zero, in half steps; 2^(8 - s), where s places right a magnitude to compress becomes 16 + step (step in A-law's first
// segment); the segment in its place in the code, with 16 for the first segment where that 16 is missing.
struct ALaw {
    alignas(16) static constexpr uint8_t kWidths[16] = {1, 1, 2, 4, 8, 16, 32, 64};
    alignas(16) static constexpr uint8_t kFirsts[16] = {1, 33, 33, 33, 33, 33, 33, 33};
    alignas(16) static constexpr uint8_t kShifts[16] = {128, 128, 64, 32, 16, 8, 4, 2};
    alignas(16) static constexpr uint8_t kPlaces[16] = {0x10, 0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0x70};
    static constexpr int kHalfStepShift = 3; // a half step of the first segment is 2^3
    static constexpr uint16_t kBias = 0;     // in half steps
    static constexpr uint8_t kInverted = 0x55;
    static constexpr uint8_t kNegative = 0x00; // the sign bit, after inversion, of a negative code
    static constexpr int kFirstSegmentBits = 5;

    // To compress: 12 bits.
    template <class D, class V>
    static HWY_INLINE V magnitude(D, V absolute) {
        return hn::ShiftRight<3>(absolute);
    }
};

struct MuLaw {
    alignas(16) static constexpr uint8_t kWidths[16] = {1, 2, 4, 8, 16, 32, 64, 128};
    alignas(16) static constexpr uint8_t kFirsts[16] = {33, 33, 33, 33, 33, 33, 33, 33};
    alignas(16) static constexpr uint8_t kShifts[16] = {128, 64, 32, 16, 8, 4, 2, 1};
    alignas(16) static constexpr uint8_t kPlaces[16] = {0x00, 0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0x70};
    static constexpr int kHalfStepShift = 2;
    static constexpr uint16_t kBias = 33;
    static constexpr uint8_t kInverted = 0xFF;
    static constexpr uint8_t kNegative = 0x80;
    static constexpr int kFirstSegmentBits = 6;

    // To compress: 13 bits.
    template <class D, class V>
    static HWY_INLINE V magnitude(D d, V absolute) {
        return hn::Min(hn::Add(hn::ShiftRight<2>(absolute), hn::Set(d, kBias)), hn::Set(d, uint16_t{8191}));
    }
};

// table[index] in the low byte of every 16-bit lane, for indices below 16; 0 in the high byte where the index has bit
// 15 set, table[0] otherwise.
template <class V>
HWY_INLINE V lookUp(const uint8_t* table, V index) {
    constexpr size_t kBytes = hn::MaxLanes(hn::DFromV<V>()) * sizeof(uint16_t);
    const Lanes<uint8_t, larger(kBytes, 16)> dTable;
    return hn::TableLookupBytesOr0(hn::LoadDup128(dTable, table), index);
}

template <class Law>
struct Expand {
    template <class D, class V>
    HWY_INLINE auto operator()(D d, V codes) const {
        return value(d, hn::PromoteTo(hn::RebindToUnsigned<D>(), uninverted(codes)));
    }

  private:
    // With bit 7 as the sign.
    template <class V>
    static HWY_INLINE V uninverted(V codes) {
        const auto flipped = hn::Set(hn::DFromV<V>(), uint8_t{Law::kInverted | 0x80});
        // All bits: not by exclusive or, of which g++ makes an instruction that waits for its target's last value.
        if constexpr ((Law::kInverted | 0x80) == 0xFF) return hn::SaturatedSub(flipped, codes);
        return hn::Xor(codes, flipped);
    }

    // Single precision: segment and step are exponent and mantissa of the interval's middle.
    template <size_t N, class V>
    static HWY_INLINE auto value(Lanes<float, N> d, V code) {
        const hn::DFromV<V> du;
        constexpr uint32_t kFirstMiddle = (127 - 8) << 23 | 1 << 18;
        const auto negative = hn::Set(du, 0x80000000u);
        const auto top = hn::ShiftLeft<24>(code);
        if constexpr (Law::kBias != 0) {
            // By an arithmetic shift the sign stays where it is.
            const Lanes<int32_t, N> di;
            const auto shifted = hn::BitCast(du, hn::ShiftRight<5>(hn::BitCast(di, top)));
            const auto place = hn::And(shifted, hn::Set(du, 0x80000000u | 0x7Fu << 19));
            const auto middle = hn::Add(place, hn::Set(du, kFirstMiddle));
            const auto bias = hn::Set(d, static_cast<float>(Law::kBias << Law::kHalfStepShift) * 0x1p-15f);
            return hn::Sub(hn::BitCast(d, middle), hn::BitCast(d, hn::OrAnd(hn::BitCast(du, bias), middle, negative)));
        } else {
            const auto place = hn::And(hn::ShiftLeft<19>(code), hn::Set(du, 0x7Fu << 19));
            const auto middle = hn::BitCast(d, hn::Add(place, hn::Set(du, kFirstMiddle)));
            // Below 2^-7, where the second segment begins, the first one goes on with the same step. All exact.
            const auto value = hn::Min(middle, hn::MulSub(middle, hn::Set(d, 2.0f), hn::Set(d, 0x1p-7f)));
            return hn::BitCast(d, hn::OrAnd(hn::BitCast(du, value), top, negative));
        }
    }

    template <size_t N, class V>
    static HWY_INLINE auto value(Lanes<int16_t, N> d, V code) {
        const hn::DFromV<V> du;
        const auto isNegative = hn::RebindMask(d, hn::Gt(code, hn::Set(du, uint16_t{0x7F})));
        const auto segment =
            hn::Or(hn::And(hn::ShiftRight<4>(code), hn::Set(du, uint16_t{7})), hn::Set(du, uint16_t{0x8000}));
        const auto step = hn::And(code, hn::Set(du, uint16_t{15}));
        const auto halfSteps =
            hn::Mul(hn::Add(hn::Add(step, step), lookUp(Law::kFirsts, segment)), lookUp(Law::kWidths, segment));
        const auto magnitude =
            hn::BitCast(d, hn::ShiftLeft<Law::kHalfStepShift>(hn::Sub(halfSteps, hn::Set(du, Law::kBias))));
        return hn::IfThenElse(isNegative, hn::Sub(hn::Zero(d), magnitude), magnitude);
    }
};

// The number of significant bits, for values below 128.
template <class D, class V>
HWY_INLINE V bitLength(D d, V v) {
    alignas(16) static constexpr uint8_t kLow[16] = {0, 1, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 4, 4, 4, 4};
    alignas(16) static constexpr uint8_t kHigh[16] = {0, 5, 6, 6, 7, 7, 7, 7};
    const auto low = lookUp(kLow, hn::And(v, hn::Set(d, uint16_t{15})));
    const auto high = lookUp(kHigh, hn::ShiftRight<4>(v));
    return hn::Max(low, high);
}

template <class Law>
struct Compress {
    template <class D, class V>
    HWY_INLINE auto operator()(D d, V source) const {
        constexpr size_t N = hn::MaxLanes(d);
        const Lanes<uint16_t, N> du;
        const auto sample = rounded(Lanes<int16_t, N>(), source);
        const auto sign = hn::BitCast(du, hn::BroadcastSignBit(sample));
        const auto magnitude = Law::magnitude(du, hn::Xor(hn::BitCast(du, sample), sign));
        const auto segment = bitLength(du, hn::ShiftRight<Law::kFirstSegmentBits>(magnitude));
        const auto step = hn::MulHigh(magnitude, hn::ShiftLeft<8>(lookUp(Law::kShifts, segment)));
        constexpr uint8_t kPositive = Law::kNegative ^ 0x80;
        const auto inverted = hn::Xor(hn::Set(du, uint16_t{Law::kInverted ^ kPositive ^ 0x10}),
                                      hn::And(sign, hn::Set(du, uint16_t{0x80})));
        return hn::TruncateTo(d, hn::Xor(hn::Xor(lookUp(Law::kPlaces, segment), step), inverted));
    }

  private:
    template <class D, class V>
    static HWY_INLINE auto rounded(D d, V v) {
        if constexpr (std::is_floating_point_v<hn::TFromV<V>>) {
            const hn::DFromV<V> df;
            const auto scaled = hn::Mul(v, hn::Set(df, 32768.0f));
            return hn::DemoteTo(d, hn::NearestInt(hn::IfThenElseZero(hn::Eq(v, v), scaled)));
        } else {
            return v;
        }
    }
};

// A code in the other law.
template <const uint8_t (&table)[128]>
struct Recode {
    template <class D, class V>
    HWY_INLINE V operator()(D d, V code) const {
        const Lanes<uint8_t, larger(hn::MaxLanes(d), 16)> dTable;
        const V low = hn::And(code, hn::Set(d, uint8_t{15}));
        const auto row = [&](size_t r) { return hn::TableLookupBytes(hn::LoadDup128(dTable, table + 16 * r), low); };
        const auto bit = [&](uint8_t place) { return hn::TestBit(code, hn::Set(d, place)); };
        const auto odd = bit(0x10), second = bit(0x20), upper = bit(0x40);
        const auto pair = [&](size_t r) { return hn::IfThenElse(odd, row(r + 1), row(r)); };
        const auto four = [&](size_t r) { return hn::IfThenElse(second, pair(r + 2), pair(r)); };
        return hn::Or(hn::IfThenElse(upper, four(4), four(0)), hn::And(code, hn::Set(d, uint8_t{0x80})));
    }
};

} // namespace zvps::ZVPS_LEVEL
