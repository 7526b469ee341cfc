// Integer arithmetic on vectors that neither wraps nor loses a bit: averages, saturation, scaling by powers of two.
#pragma once

#include "core/simd.hpp"

namespace zvps::ZVPS_LEVEL {

template <class D>
using Element = hn::TFromD<D>;

template <class T>
inline constexpr int kBits = static_cast<int>(8 * sizeof(T));

// v in the lanes of D, the same number of them, the value unchanged (16s to 32f and 64s through 32s).
template <class D, class V>
HWY_INLINE auto widened(D d, V v) {
    using From = hn::TFromV<V>;
    using To = Element<D>;
    if constexpr (std::is_same_v<From, To>) {
        return v;
    } else if constexpr (std::is_same_v<To, double> && std::is_integral_v<From> && sizeof(From) <= 4) {
        return hn::PromoteTo(d, widened(hn::Rebind<int32_t, D>(), v));
    } else if constexpr (std::is_same_v<To, int64_t> && sizeof(From) == 2) {
        return hn::PromoteTo(d, hn::PromoteTo(hn::Rebind<int32_t, D>(), v));
    } else if constexpr (std::is_floating_point_v<To> && std::is_integral_v<From>) {
        return hn::ConvertTo(d, widened(hn::RebindToSigned<D>(), v));
    } else {
        return hn::PromoteTo(d, v);
    }
}

// v shifted by the same number of places in all lanes, from kBits<T> on by all of them. With a count per lane where
// that is one instruction: those that take one count for all lanes cost two.
template <class D, class V>
HWY_INLINE V shiftedRight([[maybe_unused]] D d, V v, int places) {
#if HWY_TARGET <= HWY_AVX3
    if constexpr (sizeof(Element<D>) >= 2) return v >> hn::Set(d, static_cast<Element<D>>(places));
#endif
    return hn::ShiftRightSame(v, places);
}

// floor((a + b) / 2) without a wider type.
template <class D, class V>
HWY_INLINE V floorAverage(D d, V a, V b) {
    using T = Element<D>;
    if constexpr (std::is_unsigned_v<T> && sizeof(T) <= 2) {
        return hn::Sub(hn::AverageRound(a, b), hn::And(hn::Xor(a, b), hn::Set(d, T{1})));
    } else {
        return hn::Add(hn::And(a, b), hn::ShiftRight<1>(hn::Xor(a, b)));
    }
}

// v * 2^-shift for 1 <= shift <= kBits<T>, less for signed T, to nearest, ties to even.
template <class D, class V>
HWY_INLINE V roundShift(D d, V v, int shift) {
    using T = Element<D>;
    const V one = hn::Set(d, T{1});
    const V bias = hn::Set(d, static_cast<T>((uint64_t{1} << (shift - 1)) - 1));
    const V odd = hn::And(shiftedRight(d, v, shift), one);
    return shiftedRight(d, floorAverage(d, v, hn::Add(bias, odd)), shift - 1);
}

// The same where v + 2^(shift - 1) fits the lanes.
template <class D, class V>
HWY_INLINE V roundShiftInRoom(D d, V v, int shift) {
    using T = Element<D>;
    const V one = hn::Set(d, T{1});
    const V bias = hn::Set(d, static_cast<T>((uint64_t{1} << (shift - 1)) - 1));
    const V odd = hn::And(shiftedRight(d, v, shift), one);
    return shiftedRight(d, hn::Add(v, hn::Add(bias, odd)), shift);
}

// (2 half + (last & 1)) / 2 and (2 half + (last & 1)) / 2^shift, for 2 <= shift <= kBits<T> + 1: to nearest, ties to
// even.
template <class D, class V>
HWY_INLINE V roundHalf(D d, V half, V last) {
    return hn::Add(half, hn::And(hn::And(half, last), hn::Set(d, Element<D>{1})));
}
template <class D, class V>
HWY_INLINE V roundHalfShift(D d, V half, V last, int shift) {
    using T = Element<D>;
    const V bias = hn::Set(d, static_cast<T>((uint64_t{1} << (shift - 2)) - 1));
    const V up = hn::And(hn::Or(last, shiftedRight(d, half, shift - 1)), hn::Set(d, T{1}));
    return shiftedRight(d, floorAverage(d, half, hn::Add(bias, up)), shift - 2);
}

// v * 2^shift, saturated.
template <class D, class V>
HWY_INLINE V saturatedShiftLeft(D d, V v, int shift) {
    using T = Element<D>;
    using Limits = std::numeric_limits<T>;
    constexpr int kMost = kBits<T> - (std::is_signed_v<T> ? 1 : 0);
    const int places = shift < kMost ? shift : kMost;
    const T high = places == kBits<T> ? T{0} : static_cast<T>(Limits::max() >> places);
    const V shifted =
        hn::IfThenElse(hn::Gt(v, hn::Set(d, high)), hn::Set(d, Limits::max()), hn::ShiftLeftSame(v, places));
    if constexpr (std::is_signed_v<T>) {
        const V low = hn::Set(d, static_cast<T>(Limits::min() >> places));
        return hn::IfThenElse(hn::Lt(v, low), hn::Set(d, Limits::min()), shifted);
    } else {
        return shifted;
    }
}

template <class D, class V>
HWY_INLINE V saturatedAdd(D d, V a, V b) {
    using T = Element<D>;
    if constexpr (sizeof(T) <= 2) {
        return hn::SaturatedAdd(a, b);
    } else {
        const V sum = hn::Add(a, b);
        if constexpr (std::is_unsigned_v<T>) {
            return hn::IfThenElse(hn::Lt(sum, a), hn::Set(d, std::numeric_limits<T>::max()), sum);
        } else {
            const V limit = hn::Xor(hn::ShiftRight<kBits<T> - 1>(a), hn::Set(d, std::numeric_limits<T>::max()));
            return hn::IfThenElse(hn::MaskFromVec(hn::BroadcastSignBit(hn::AndNot(hn::Xor(a, b), hn::Xor(a, sum)))),
                                  limit, sum);
        }
    }
}

// a - b
template <class D, class V>
HWY_INLINE V saturatedSub(D d, V a, V b) {
    using T = Element<D>;
    if constexpr (sizeof(T) <= 2) {
        return hn::SaturatedSub(a, b);
    } else {
        const V difference = hn::Sub(a, b);
        const V limit = hn::Xor(hn::ShiftRight<kBits<T> - 1>(a), hn::Set(d, std::numeric_limits<T>::max()));
        return hn::IfThenElse(hn::MaskFromVec(hn::BroadcastSignBit(hn::And(hn::Xor(a, b), hn::Xor(a, difference)))),
                              limit, difference);
    }
}

// 2^-scaleFactor, the factor limited to where every finite result has long become 0 or left the integers.
template <class Float>
HWY_INLINE Float inversePower(int scaleFactor) {
    using Bits = std::conditional_t<sizeof(Float) == 4, uint32_t, uint64_t>;
    constexpr int kLimit = sizeof(Float) == 4 ? 100 : 600;
    constexpr int kBias = std::numeric_limits<Float>::max_exponent - 1;
    constexpr int kMantissa = std::numeric_limits<Float>::digits - 1;
    const int limited = scaleFactor < -kLimit ? -kLimit : scaleFactor > kLimit ? kLimit : scaleFactor;
    const Bits bits = static_cast<Bits>(kBias - limited) << kMantissa;
    Float result;
    __builtin_memcpy(&result, &bits, sizeof(result));
    return result;
}

} // namespace zvps::ZVPS_LEVEL
