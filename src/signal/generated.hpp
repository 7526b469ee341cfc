// Elements of any type from the floating-point values that a generator computes.
#pragma once

#include "vector/conversion.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kDoubles = kVectorBytes / sizeof(double);
using DoubleLanes = Lanes<double, kDoubles>;
using Doubles = Vec<double, kDoubles>;

// Vectors of values of type W for one of elements of type T; elements wider than the values fill two.
template <class T, class W>
inline constexpr size_t kValueVectors = sizeof(W) < sizeof(T) ? 1 : sizeof(W) / sizeof(T);

// Whether all values are numbers that the element type can represent.
enum class Values { any, representable };

// As 32-bit integers, saturated: narrowing saturates further.
template <Values values, class V>
HWY_INLINE auto roundedValues(V v) {
    const hn::DFromV<V> d;
    using W = hn::TFromD<decltype(d)>;
    constexpr size_t N = hn::MaxLanes(d);
    const Lanes<int32_t, N> di;
    using Result = Vec<int32_t, N>;
    if constexpr (values == Values::any) v = hn::IfThenElseZero(hn::Eq(v, v), v);
    if constexpr (sizeof(W) == 8) {
        if constexpr (values == Values::any) {
            v = hn::Max(hn::Min(v, hn::Set(d, 0x1.fffffffcp30)), hn::Set(d, -0x1p31));
        }
        return Result{ZVPS_INTRINSIC(cvtpd_epi32)(v.raw)};
    } else {
        // What is too large is converted to the least integer.
        const Result result{ZVPS_INTRINSIC(cvtps_epi32)(v.raw)};
        if constexpr (values == Values::representable) return result;
        const auto isBeyond = hn::RebindMask(di, hn::Ge(v, hn::Set(d, 0x1p31F)));
        return hn::IfThenElse(isBeyond, hn::Set(di, std::numeric_limits<int32_t>::max()), result);
    }
}

// As unsigned integers.
template <Values values, class V>
HWY_INLINE auto roundedUnsigned(V v) {
    const hn::DFromV<V> d;
    constexpr size_t N = hn::MaxLanes(d);
    const Lanes<uint32_t, N> du;
    using W = hn::TFromD<decltype(d)>;
    // The minimum and the maximum return their second operand when one is a NaN.
    const V number = hn::Max(v, hn::Zero(d));
    if constexpr (sizeof(W) == 8) {
        // Adding 2^52 rounds to an integer and leaves it in the lowest bits.
        const V limited = values == Values::any ? hn::Min(number, hn::Set(d, 0x1.fffffffep31)) : number;
        const Lanes<uint64_t, N> wide;
        return hn::TruncateTo(du, hn::BitCast(wide, hn::Add(limited, hn::Set(d, 0x1p52))));
    } else {
        // The upper half of the range by way of the lower.
        const V half = hn::Set(d, 0x1p31F);
        const auto isUpper = hn::Ge(number, half);
        const V lower = hn::Sub(number, hn::IfThenElseZero(isUpper, half));
        const Vec<uint32_t, N> bits{ZVPS_INTRINSIC(cvtps_epi32)(lower.raw)};
        const auto top = hn::IfThenElseZero(hn::RebindMask(du, isUpper), hn::Set(du, uint32_t{1} << 31));
        const auto result = hn::Add(bits, top);
        if constexpr (values == Values::representable) return result;
        const auto isBeyond = hn::RebindMask(du, hn::Ge(lower, half));
        return hn::IfThenElse(isBeyond, hn::Set(du, std::numeric_limits<uint32_t>::max()), result);
    }
}

// One vector of elements: integers rounded to nearest with ties to even, and saturated. Elements wider than the values
// come as two vectors.
template <class T, Values values, class W, class V, size_t R>
HWY_INLINE auto elements(const Several<V, R>& v) {
    static_assert(R == kValueVectors<T, W>);
    constexpr size_t N = kVectorBytes / sizeof(T);
    const Lanes<T, N> d;
    if constexpr (std::is_same_v<T, W>) {
        return v.v[0];
    } else if constexpr (std::is_same_v<T, double>) {
        const Lanes<float, N> half;
        return Two<Vec<double, N>>{hn::PromoteTo(d, hn::LowerHalf(half, v.v[0])),
                                   hn::PromoteTo(d, hn::UpperHalf(half, v.v[0]))};
    } else if constexpr (std::is_same_v<T, float>) {
        const Lanes<float, N / 2> half;
        return hn::Combine(d, hn::DemoteTo(half, v.v[1]), hn::DemoteTo(half, v.v[0]));
    } else if constexpr (std::is_same_v<T, uint32_t>) {
        const auto rounded = forEach(v, [](auto one) HWY_ATTR { return roundedUnsigned<values>(one); });
        if constexpr (R == 1) {
            return rounded.v[0];
        } else {
            return hn::Combine(d, rounded.v[1], rounded.v[0]);
        }
    } else if constexpr (R == 8) {
        static_assert(sizeof(T) == 1);
        const auto pack = [&](size_t first) HWY_ATTR {
            return narrowed(Lanes<int16_t, N / 2>(),
                            several<4>([&](size_t r) HWY_ATTR { return roundedValues<values>(v.v[first + r]); }));
        };
        return inOrder<2>(d, packedBlocks<T>(pack(0), pack(4)));
    } else {
        return narrowed(d, forEach(v, [](auto one) HWY_ATTR { return roundedValues<values>(one); }));
    }
}

} // namespace zvps::ZVPS_LEVEL
