// Sums and differences of two operands.
#pragma once

#include "vector/binary.hpp"

namespace zvps::ZVPS_LEVEL {

// Integer sums of elements of one type T. Scaling works in T's own lanes on the sum's half h = floor((a + b) / 2) and
// its last bit, which is that of a ^ b.
template <class T>
struct Add {
    static constexpr size_t kPeriod = 1;
    static constexpr bool kLight = sizeof(T) <= 2;
    static constexpr int kLastShift = kBits<T> + (std::is_unsigned_v<T> ? 1 : 0);

    template <class D, class V>
    static HWY_INLINE V exact(D d, V a, V b) {
        return saturatedAdd(d, a, b);
    }
    template <class D, class V>
    static HWY_INLINE V halved(D d, V a, V b) {
        return roundHalf(d, floorAverage(d, a, b), hn::Xor(a, b));
    }
    template <class D, class V>
    static HWY_INLINE V down(D d, int shift, V a, V b) {
        return roundHalfShift(d, floorAverage(d, a, b), hn::Xor(a, b), shift);
    }
};

// Differences b - a. An unsigned difference is never below 0 after rounding, so it saturates first.
template <class T>
struct Sub {
    static constexpr size_t kPeriod = 1;
    static constexpr bool kLight = sizeof(T) <= 2;
    static constexpr int kLastShift = kBits<T>;

    template <class D, class V>
    static HWY_INLINE V exact(D d, V a, V b) {
        return saturatedSub(d, b, a);
    }
    template <class D, class V>
    static HWY_INLINE V halved(D d, V a, V b) {
        if constexpr (std::is_unsigned_v<T>) {
            return roundShift(d, exact(d, a, b), 1);
        } else {
            // The largest difference rounds to one more than the largest number.
            const V half = halfDifference(a, b);
            const V rounded = roundHalf(d, half, hn::Xor(a, b));
            return hn::IfThenElse(hn::Eq(half, hn::Set(d, std::numeric_limits<T>::max())), half, rounded);
        }
    }
    template <class D, class V>
    static HWY_INLINE V down(D d, int shift, V a, V b) {
        if constexpr (std::is_unsigned_v<T>) {
            return roundShift(d, exact(d, a, b), shift);
        } else {
            return roundHalfShift(d, halfDifference(a, b), hn::Xor(a, b), shift);
        }
    }

  private:
    // floor((b - a) / 2): b - a is b + ~a + 1, so this is the rounded-up average of b and ~a.
    template <class V>
    static HWY_INLINE V halfDifference(V a, V b) {
        const V inverted = hn::Not(a);
        return hn::Sub(hn::Or(b, inverted), hn::ShiftRight<1>(hn::Xor(b, inverted)));
    }
};

} // namespace zvps::ZVPS_LEVEL
