// Products of two operands, and products added to a third.
#pragma once

#include "vector/binary.hpp"
#include "vector/sums.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- Exact products in lanes of twice the width ----

// The wide results that belong to one vector of narrow lanes: for 8 and 16 bits the lower and the upper half of each
// 128-bit block, for 32 bits the even and the odd lanes. narrowed() is the way back.
template <class V>
struct WidePair {
    V first;
    V second;
};

template <class V>
HWY_INLINE WidePair<V> widePair(V first, V second) {
    return {first, second};
}

template <class T>
using Wide = hwy::MakeWide<T>;

template <class D>
using WideLanes = hn::Repartition<Wide<Element<D>>, D>;

// Low and high halves of the products to products.
template <class D, class V>
HWY_INLINE auto interleavedHalves(D d, V low, V high) {
    const WideLanes<D> wide;
    return widePair(hn::BitCast(wide, hn::InterleaveLower(d, low, high)),
                    hn::BitCast(wide, hn::InterleaveUpper(d, low, high)));
}

// Saturated to the narrow lanes of D.
template <class D, class V>
HWY_INLINE hn::Vec<D> narrowed(D d, WidePair<V> v) {
    using T = Element<D>;
    using W = hn::TFromV<V>;
    const WideLanes<D> wide;
    if constexpr (sizeof(T) == 4) {
        const V low = hn::Set(wide, W{std::numeric_limits<T>::min()});
        const V high = hn::Set(wide, W{std::numeric_limits<T>::max()});
        const V even = hn::Min(hn::Max(v.first, low), high);
        const V odd = hn::Min(hn::Max(v.second, low), high);
        return hn::OddEven(hn::BitCast(d, hn::ShiftLeft<32>(odd)), hn::BitCast(d, even));
    } else if constexpr (std::is_signed_v<T>) {
        return hn::ReorderDemote2To(d, v.first, v.second);
    } else {
        // The instructions take their operands as signed.
        const V high = hn::Set(wide, W{std::numeric_limits<T>::max()});
        const auto first = hn::Min(v.first, high).raw;
        const auto second = hn::Min(v.second, high).raw;
        if constexpr (sizeof(T) == 1) {
            return hn::Vec<D>{ZVPS_INTRINSIC(packus_epi16)(first, second)};
        } else {
            return hn::Vec<D>{ZVPS_INTRINSIC(packus_epi32)(first, second)};
        }
    }
}

// Operations whose wide results `Op::wide` are rounded and narrowed. kRoomUpTo: for shifts up to it the wide lanes have
// room for the rounding.
template <class Op>
struct FromWide {
    template <class D, class... V>
    static HWY_INLINE auto exact(D d, V... operands) {
        return narrowed(d, Op::wide(d, operands...));
    }
    template <class D, class... V>
    static HWY_INLINE auto halved(D d, V... operands) {
        if constexpr (Op::kRoomUpTo >= 1) {
            return downInRoom(d, 1, operands...);
        } else {
            return down(d, 1, operands...);
        }
    }
    template <class D, class... V>
    static HWY_INLINE auto down(D d, int shift, V... operands) {
        const WideLanes<D> wide;
        const auto v = Op::wide(d, operands...);
        return narrowed(d, widePair(roundShift(wide, v.first, shift), roundShift(wide, v.second, shift)));
    }
    template <class D, class... V>
    static HWY_INLINE auto downInRoom(D d, int shift, V... operands) {
        const WideLanes<D> wide;
        const auto v = Op::wide(d, operands...);
        return narrowed(d, widePair(roundShiftInRoom(wide, v.first, shift), roundShiftInRoom(wide, v.second, shift)));
    }
};

template <class D, class V>
HWY_INLINE auto wideProducts(D d, V a, V b) {
    using T = Element<D>;
    if constexpr (sizeof(T) == 1) {
        const WideLanes<D> wide;
        const auto zero = hn::Zero(d);
        const auto lower = [&](V v) HWY_ATTR { return hn::BitCast(wide, hn::InterleaveLower(d, v, zero)); };
        const auto upper = [&](V v) HWY_ATTR { return hn::BitCast(wide, hn::InterleaveUpper(d, v, zero)); };
        return widePair(hn::Mul(lower(a), lower(b)), hn::Mul(upper(a), upper(b)));
    } else if constexpr (sizeof(T) == 2) {
        return interleavedHalves(d, hn::Mul(a, b), hn::MulHigh(a, b));
    } else {
        return widePair(hn::MulEven(a, b), hn::MulEven(hn::DupOdd(a), hn::DupOdd(b)));
    }
}

template <class T>
struct Mul : FromWide<Mul<T>> {
    static constexpr size_t kPeriod = 1;
    // The largest product is 2^(2 kBits - 2), which is a tie one place further, or (unsigned) almost 2^(2 kBits).
    static constexpr int kLastShift = 2 * kBits<T> - (std::is_signed_v<T> ? 2 : 0);
    static constexpr int kRoomUpTo = std::is_signed_v<T> ? kLastShift : kBits<T> + 1;

    template <class D, class V>
    static HWY_INLINE auto wide(D d, V a, V b) {
        return wideProducts(d, a, b);
    }
};

// 16u by 16s
struct MulMixedSign : FromWide<MulMixedSign> {
    static constexpr size_t kPeriod = 1;
    static constexpr int kLastShift = 31;
    static constexpr int kRoomUpTo = 17;

    template <class D, class A, class B>
    static HWY_INLINE auto wide(D d, A a, B b) {
        const hn::RebindToUnsigned<D> du;
        const auto bits = hn::BitCast(du, b);
        // As unsigned, a negative b is 2^16 too large.
        const auto excess = hn::And(hn::BitCast(du, hn::BroadcastSignBit(b)), a);
        return interleavedHalves(d, hn::BitCast(d, hn::Mul(a, bits)),
                                 hn::BitCast(d, hn::Sub(hn::MulHigh(a, bits), excess)));
    }
};

// 16s by 16s into 32s
struct MulWiden {
    static constexpr size_t kPeriod = 1;
    static constexpr int kLastShift = 30;

    template <class D, class V>
    static HWY_INLINE auto exact(D d, V a, V b) {
        return hn::Mul(widened(d, a), widened(d, b));
    }
    template <class D, class V>
    static HWY_INLINE auto halved(D d, V a, V b) {
        return down(d, 1, a, b);
    }
    template <class D, class V>
    static HWY_INLINE auto down(D d, int shift, V a, V b) {
        return roundShiftInRoom(d, exact(d, a, b), shift);
    }
};

// (ac - bd, ad + bc). Only the imaginary part can leave the wide lanes, by one: all parts the most negative number. The
// lanes' largest number in its place scales and saturates to the same results.
template <class T>
struct MulComplex : FromWide<MulComplex<T>> {
    static constexpr size_t kPeriod = 2;
    static constexpr int kLastShift = 2 * kBits<T> - 1;
    static constexpr int kRoomUpTo = 0;

    template <class D, class V>
    static HWY_INLINE auto wide(D d, V x, V y) {
        const WideLanes<D> dw;
        const V swapped = hn::Reverse2(d, y);
        if constexpr (sizeof(T) == 2) {
            // a c + b ~d is a c - b d - b; the sum wraps back into range.
            const auto conjugate = hn::Xor(y, hn::BitCast(d, hn::Set(dw, static_cast<int32_t>(0xFFFF0000))));
            const auto b = hn::ShiftRight<16>(hn::BitCast(dw, x));
            const auto re = hn::Add(pairSums(dw, x, conjugate), b);
            const auto im = withoutOverflow(dw, pairSums(dw, x, swapped));
            return widePair(hn::InterleaveLower(dw, re, im), hn::InterleaveUpper(dw, re, im));
        } else {
            const V odd = hn::DupOdd(x);
            const auto re = hn::Sub(hn::MulEven(x, y), hn::MulEven(odd, hn::DupOdd(y)));
            const auto im = hn::Add(hn::MulEven(x, swapped), hn::MulEven(odd, y));
            return widePair(re, withoutOverflow(dw, im));
        }
    }

  private:
    template <class D, class V>
    static HWY_INLINE hn::Vec<D> pairSums(D, V x, V y) {
        return hn::Vec<D>{ZVPS_INTRINSIC(madd_epi16)(x.raw, y.raw)};
    }
    template <class D, class V>
    static HWY_INLINE V withoutOverflow(D d, V v) {
        using W = Element<D>;
        const V wrapped = hn::Set(d, std::numeric_limits<W>::min());
        return hn::IfThenElse(hn::Eq(v, wrapped), hn::Set(d, std::numeric_limits<W>::max()), v);
    }
};

// c + a * b
template <class T>
struct AddProduct : FromWide<AddProduct<T>> {
    static constexpr size_t kPeriod = 1;
    static constexpr int kLastShift = 2 * kBits<T> - 1;
    static constexpr int kRoomUpTo = kLastShift - 1;

    template <class D, class V>
    static HWY_INLINE auto wide(D d, V a, V b, V c) {
        const auto products = wideProducts(d, a, b);
        const auto addends = wideSame(d, c);
        return widePair(hn::Add(products.first, addends.first), hn::Add(products.second, addends.second));
    }

  private:
    template <class D, class V>
    static HWY_INLINE auto wideSame(D d, V v) {
        if constexpr (sizeof(T) == 2) {
            return interleavedHalves(d, v, hn::BroadcastSignBit(v));
        } else {
            const auto both = hn::BitCast(WideLanes<D>(), v);
            return widePair(hn::ShiftRight<32>(hn::ShiftLeft<32>(both)), hn::ShiftRight<32>(both));
        }
    }
};

// 16s by 16s added to 32s
struct AddProductWiden {
    static constexpr size_t kPeriod = 1;
    static constexpr int kLastShift = Add<int32_t>::kLastShift;

    template <class D, class V, class C>
    static HWY_INLINE auto exact(D d, V a, V b, C c) {
        return Add<int32_t>::exact(d, MulWiden::exact(d, a, b), c);
    }
    template <class D, class V, class C>
    static HWY_INLINE auto halved(D d, V a, V b, C c) {
        return Add<int32_t>::halved(d, MulWiden::exact(d, a, b), c);
    }
    template <class D, class V, class C>
    static HWY_INLINE auto down(D d, int shift, V a, V b, C c) {
        return Add<int32_t>::down(d, shift, MulWiden::exact(d, a, b), c);
    }
};

// ---- Floating point, and products that fit ----

template <class T>
struct PlainMul {
    static constexpr size_t kPeriod = 1;
    static constexpr bool kLight = true;

    template <class D, class A, class B>
    static HWY_INLINE auto exact(D d, A a, B b) {
        return hn::Mul(widened(d, a), widened(d, b));
    }
};

// Even lanes a - b, odd lanes a + b.
template <class V>
HWY_INLINE V subtractAdd(V a, V b) {
#if HWY_TARGET <= HWY_AVX3
    // One rounding, that of the sum: a product by 1 is exact.
    if constexpr (sizeof(hn::TFromV<V>) == 4) {
        return V{_mm512_fmaddsub_ps(a.raw, _mm512_set1_ps(1.0f), b.raw)};
    } else {
        return V{_mm512_fmaddsub_pd(a.raw, _mm512_set1_pd(1.0), b.raw)};
    }
#else
    if constexpr (sizeof(hn::TFromV<V>) == 4) {
        return V{ZVPS_INTRINSIC(addsub_ps)(a.raw, b.raw)};
    } else {
        return V{ZVPS_INTRINSIC(addsub_pd)(a.raw, b.raw)};
    }
#endif
}

struct PlainMulComplex {
    static constexpr size_t kPeriod = 2;

    template <class D, class V>
    static HWY_INLINE auto exact(D d, V x, V y) {
        return subtractAdd(hn::Mul(x, hn::DupEven(y)), hn::Mul(hn::Reverse2(d, x), hn::DupOdd(y)));
    }
};

// The same with a constant y: minus b d is b times minus d, and a constant changes its sign once.
struct PlainMulComplexConstant {
    static constexpr size_t kPeriod = 2;

    template <class D, class V>
    static HWY_INLINE auto exact(D d, V x, V y) {
        const V im = hn::DupOdd(y);
        const V crossed = hn::Mul(hn::Reverse2(d, x), hn::OddEven(im, hn::Neg(im)));
        return hn::Add(hn::Mul(x, hn::DupEven(y)), crossed);
    }
};

template <class Product>
struct PlainAddProduct {
    static constexpr size_t kPeriod = Product::kPeriod;

    template <class D, class V>
    static HWY_INLINE auto exact(D d, V a, V b, V c) {
        return hn::Add(c, Product::exact(d, a, b));
    }
};

} // namespace zvps::ZVPS_LEVEL
