// Elements of any type from the floating-point values that a generator computes.
#pragma once

#include "vector/conversion.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kDoubles = kVectorBytes / sizeof(double);
using DoubleLanes = Lanes<double, kDoubles>;
using Doubles = Vec<double, kDoubles>;

// Vectors of values of type W that fill one of elements of type T.
template <class T, class W>
inline constexpr size_t kValueVectors = sizeof(W) / sizeof(T);
template <class T, class W>
using ValuesFor = Several<Vec<W, kVectorBytes / sizeof(W)>, kValueVectors<T, W>>;

// Whether all values are numbers that the element type can represent.
enum class Values { any, representable };

// As integers of Limits, by vectors.
template <class Limits, Values values, class V>
HWY_INLINE auto roundedValues(const V& v) {
    using W = hn::TFromD<hn::DFromV<V>>;
    const hn::DFromV<V> d;
    using Result = Vec<int32_t, hn::MaxLanes(d)>;
    V number = v;
    if constexpr (values == Values::any) {
        // The minimum returns its second operand when one is a NaN, the maximum too.
        number = hn::IfThenElseZero(hn::Eq(v, v), v);
        number = hn::Max(hn::Min(number, hn::Set(d, W{Limits::kMost})), hn::Set(d, W{Limits::kLeast}));
    }
    if constexpr (sizeof(W) == 4) {
        return Result{ZVPS_INTRINSIC(cvtps_epi32)(number.raw)};
    } else {
        return Result{ZVPS_INTRINSIC(cvtpd_epi32)(number.raw)};
    }
}

// 32-bit unsigned integers from doubles.
template <Values values>
HWY_INLINE auto roundedUnsigned(Doubles v) {
    const DoubleLanes d;
    Doubles number = v;
    if constexpr (values == Values::any) {
        number = hn::IfThenElseZero(hn::Gt(v, hn::Zero(d)), hn::Min(v, hn::Set(d, 0x1.fffffffep31)));
    } else {
        number = hn::Max(v, hn::Zero(d));
    }
    // Adding 2^52 rounds to an integer and leaves it in the lowest bits.
    const Lanes<uint64_t, kDoubles> wide;
    return hn::TruncateTo(Lanes<uint32_t, kDoubles>(), hn::BitCast(wide, hn::Add(number, hn::Set(d, 0x1p52))));
}

// One vector of elements: integers rounded to nearest with ties to even, and saturated.
template <class T, Values values, class W>
HWY_INLINE auto elements(const ValuesFor<T, W>& v) {
    constexpr size_t R = kValueVectors<T, W>;
    constexpr size_t N = kVectorBytes / sizeof(T);
    const Lanes<T, N> d;
    if constexpr (std::is_same_v<T, W>) {
        return v.v[0];
    } else if constexpr (std::is_same_v<T, float>) {
        const Lanes<float, N / 2> half;
        return hn::Combine(d, hn::DemoteTo(half, v.v[1]), hn::DemoteTo(half, v.v[0]));
    } else if constexpr (std::is_same_v<T, uint32_t>) {
        static_assert(std::is_same_v<W, double>);
        return hn::Combine(d, roundedUnsigned<values>(v.v[1]), roundedUnsigned<values>(v.v[0]));
    } else if constexpr (R == 8) {
        static_assert(sizeof(T) == 1);
        const auto pack = [&](size_t first) HWY_ATTR {
            return narrowed(Lanes<int16_t, N / 2>(), several<4>([&](size_t r) HWY_ATTR {
                                return roundedValues<Range<int16_t>, values>(v.v[first + r]);
                            }));
        };
        return inOrder<2>(d, packedBlocks<T>(pack(0), pack(4)));
    } else {
        return narrowed(d, several<R>([&](size_t r) HWY_ATTR { return roundedValues<Range<T>, values>(v.v[r]); }));
    }
}

} // namespace zvps::ZVPS_LEVEL
