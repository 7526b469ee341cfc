// Quotients of integers, exact through floating point, and of floats.
#pragma once

#include "core/rounding.hpp"
#include "zvps/types.h"

namespace zvps::ZVPS_LEVEL {

// Remembers whether a divisor was zero.
template <class Float>
class ZeroWatch {
  public:
    static constexpr size_t N = kVectorBytes / sizeof(Float);
    static constexpr size_t kVectors = 1;

    // Magnitudes; a NaN is none.
    HWY_INLINE void see(Vec<Float, N> magnitudes) { smallest = hn::Min(magnitudes, smallest); }
    HWY_INLINE bool sawZero() const {
        const Lanes<Float, N> d;
        return !hn::AllFalse(d, hn::Eq(smallest, hn::Zero(d)));
    }

  private:
    Vec<Float, N> smallest = hn::Set(Lanes<Float, N>(), Float{1});
};

// ---- Integers ----

// A quotient
// of 8-bit numbers in single precision, of 16-bit numbers in double and of 32-bit numbers that is not scaled up in
// double is exact where it is a tie and otherwise further from any tie than the rounding error: one rounding to the
// integer is then the rounding of the exact quotient. Divisors of 0 give infinities, which saturate.

// Limited to T's range and rounded, in lanes of 32 bits.
template <class T, ZvpRoundMode mode, class D, class V>
HWY_INLINE auto roundedTo(D d, V quotient) {
    using F = Element<D>;
    const V limited = hn::Min(hn::Max(quotient, hn::Set(d, F{std::numeric_limits<T>::min()})),
                              hn::Set(d, static_cast<F>(std::numeric_limits<T>::max())));
    const V whole = mode == zvpRndZero   ? hn::Trunc(limited)
                    : mode == zvpRndNear ? hn::Round(limited)
                                         : hn::Trunc(hn::Add(limited, hn::CopySign(hn::Set(d, F{0.5}), limited)));
    if constexpr (sizeof(F) == 4) {
        return hn::ConvertTo(hn::RebindToSigned<D>(), whole);
    } else {
        return hn::DemoteTo(Lanes<int32_t, hn::MaxLanes(d)>(), whole);
    }
}

// Integers of up to 32 bits in floating-point lanes.
template <class D, class V>
HWY_INLINE auto toFloat(D d, V v) {
    const Lanes<int32_t, hn::MaxLanes(d)> d32;
    if constexpr (sizeof(Element<D>) == 4) {
        return hn::ConvertTo(d, widened(d32, v));
    } else {
        return hn::PromoteTo(d, widened(d32, v));
    }
}

template <class D, class V>
HWY_INLINE auto fromInt32(D d, V v) {
    if constexpr (std::is_same_v<Element<D>, int32_t>) {
        return v;
    } else {
        return hn::DemoteTo(d, v);
    }
}

// An operation is called as op(d, divisors, dividends) and then knows whether a divisor was 0.
template <class Float, ZvpRoundMode mode>
class DivReal : public ZeroWatch<Float> {
  public:
    static constexpr size_t kPeriod = 1;
    static constexpr size_t kWorkBytes = sizeof(Float);

    explicit DivReal(int scaleFactor) : scale(inversePower<Float>(scaleFactor)) {}

    template <class D, class A, class B>
    HWY_INLINE auto operator()(D d, A divisor, B dividend) {
        const Lanes<Float, ZeroWatch<Float>::N> df;
        const auto x = toFloat(df, divisor);
        const auto y = toFloat(df, dividend);
        this->see(hn::Abs(x));
        const auto quotient = hn::Mul(hn::Div(y, x), hn::Set(df, scale));
        const auto defined = hn::IfThenZeroElse(hn::Eq(y, hn::Zero(df)), quotient); // 0 / 0
        return fromInt32(d, roundedTo<Element<D>, mode>(df, defined));
    }

  private:
    Float scale;
};

template <ZvpRoundMode mode>
using DivSingle = DivReal<float, mode>;
template <ZvpRoundMode mode>
using DivDouble = DivReal<double, mode>;

// x * conj(y)
template <class D, class V>
HWY_INLINE V timesConjugate(D d, V x, V y) {
    const V direct = hn::Mul(x, hn::DupEven(y));
    const V crossed = hn::Mul(hn::Reverse2(d, x), hn::DupOdd(y));
    return hn::OddEven(hn::Sub(direct, crossed), hn::Add(direct, crossed));
}

// Even and odd lanes of two vectors, within blocks of 16 bytes, so that interleaving blocks is the way back.
template <class V>
HWY_INLINE V evenOf(Two<V> v) {
    if constexpr (sizeof(hn::TFromV<V>) == 4) {
        return V{ZVPS_INTRINSIC(shuffle_ps)(v.lower.raw, v.upper.raw, 0x88)};
    } else {
        return V{ZVPS_INTRINSIC(unpacklo_pd)(v.lower.raw, v.upper.raw)};
    }
}
template <class V>
HWY_INLINE V oddOf(Two<V> v) {
    if constexpr (sizeof(hn::TFromV<V>) == 4) {
        return V{ZVPS_INTRINSIC(shuffle_ps)(v.lower.raw, v.upper.raw, 0xDD)};
    } else {
        return V{ZVPS_INTRINSIC(unpackhi_pd)(v.lower.raw, v.upper.raw)};
    }
}
template <class V>
HWY_INLINE Two<V> interleaved(V even, V odd) {
    const hn::DFromV<V> d;
    return {hn::InterleaveLower(d, even, odd), hn::InterleaveUpper(d, even, odd)};
}

// |y|^2 in both lanes of a pair
template <class D, class V>
HWY_INLINE V squaredModulus(D d, V y) {
    const V squares = hn::Mul(y, y);
    return hn::Add(squares, hn::Reverse2(d, squares));
}
// The same of two vectors, once for each pair.
template <class V>
HWY_INLINE V squaredModuli(Two<V> y) {
    const V re = evenOf(y);
    const V im = oddOf(y);
    return hn::Add(hn::Mul(re, re), hn::Mul(im, im));
}

// All sums are exact in double. A divisor of 0 divides the dividend part by part.
template <ZvpRoundMode mode>
class DivComplex : public ZeroWatch<double> {
  public:
    static constexpr size_t kPeriod = 2;
    static constexpr size_t kWorkBytes = sizeof(double);

    explicit DivComplex(int scaleFactor) : scale(inversePower<double>(scaleFactor)) {}

    template <class D, class V>
    HWY_INLINE auto operator()(D d, V divisor, V dividend) {
        const Lanes<double, N> df;
        const auto x = toFloat(df, dividend);
        const auto y = toFloat(df, divisor);
        const auto norm = squaredModulus(df, y);
        see(norm);
        const auto numerator = hn::IfThenElse(hn::Eq(norm, hn::Zero(df)), x, timesConjugate(df, x, y));
        const auto quotient = hn::Mul(hn::Div(numerator, norm), hn::Set(df, scale));
        const auto defined = hn::IfThenZeroElse(hn::Eq(numerator, hn::Zero(df)), quotient); // 0 / 0
        return fromInt32(d, roundedTo<Element<D>, mode>(df, defined));
    }

  private:
    double scale;
};

// 32-bit quotients scaled up: double precision may round one to the wrong side of a tie; the remainder, exact in 64
// bits, tells.
template <ZvpRoundMode>
class DivCorrected : public ZeroWatch<double> {
  public:
    static constexpr size_t kPeriod = 1;
    static constexpr size_t kWorkBytes = sizeof(double);

    explicit DivCorrected(int scaleFactor) : places(scaleFactor < -kMostPlaces ? kMostPlaces : -scaleFactor) {}

    template <class D, class V>
    HWY_INLINE auto operator()(D d, V divisor, V dividend) {
        const Lanes<double, N> df;
        const Lanes<int64_t, N> dw;
        const auto x = toFloat(df, divisor);
        const auto y = toFloat(df, dividend);
        see(hn::Abs(x));
        const auto quotient = hn::Mul(hn::Div(y, x), hn::Set(df, inversePower<double>(-places)));
        const auto defined = hn::IfThenZeroElse(hn::Eq(y, hn::Zero(df)), quotient); // 0 / 0
        const auto rounded = roundedTo<int32_t, zvpRndNear>(df, defined);
        const auto near = hn::PromoteTo(dw, rounded);

        const auto by = hn::PromoteTo(dw, divisor);
        const auto remainder = hn::Sub(hn::ShiftLeftSame(hn::PromoteTo(dw, dividend), places), product(near, by));
        const auto one = hn::Set(dw, 1);
        const auto excess = hn::Sub(hn::ShiftLeft<1>(hn::Abs(remainder)), hn::Abs(by));
        // Off by more than half a divisor, or by half and odd.
        const auto wrong = hn::Gt(hn::Add(excess, hn::And(near, one)), hn::Zero(dw));
        const auto towardExact = hn::Or(hn::BroadcastSignBit(hn::Xor(remainder, by)), one);
        // A saturated quotient lies further away, and its remainder may have wrapped.
        const auto distance = hn::Abs(hn::Sub(defined, hn::PromoteTo(df, rounded)));
        const auto close = hn::RebindMask(dw, hn::Le(distance, hn::Set(df, 1.0)));
        const auto corrected = hn::Add(near, hn::IfThenElseZero(hn::And(wrong, close), towardExact));
        const auto low = hn::Set(dw, int64_t{std::numeric_limits<int32_t>::min()});
        const auto high = hn::Set(dw, int64_t{std::numeric_limits<int32_t>::max()});
        const auto limited = hn::BitCast(Lanes<uint64_t, N>(), hn::Min(hn::Max(corrected, low), high));
        return hn::BitCast(d, hn::TruncateTo(hn::RebindToUnsigned<D>(), limited));
    }

  private:
    // From here on every quotient but 0 saturates.
    static constexpr int kMostPlaces = 62;

    int places;

    // Of numbers of 32 bits.
    template <class V>
    static HWY_INLINE V product(V a, V b) {
        const hn::Repartition<int32_t, hn::DFromV<V>> d32;
        return hn::MulEven(hn::BitCast(d32, a), hn::BitCast(d32, b));
    }
};

// ---- Floating point ----

template <class T>
class PlainDiv : public ZeroWatch<T> {
  public:
    static constexpr size_t kPeriod = 1;
    static constexpr size_t kWorkBytes = sizeof(T);

    explicit PlainDiv(int) {}

    template <class D, class V>
    HWY_INLINE V operator()(D, V divisor, V dividend) {
        this->see(hn::Abs(divisor));
        return hn::Div(dividend, divisor);
    }
};

// Quotients of complex doubles near 1, or of any singles, which cannot leave double's range.
class ComplexQuotient : public ZeroWatch<double> {
  protected:
    using Doubles = Vec<double, N>;

    // x / y; at a zero divisor `dividend`, x before any scaling, part by part.
    HWY_INLINE Doubles quotient(Doubles x, Doubles y, Doubles dividend) {
        const Lanes<double, N> d;
        const auto zero = hn::Zero(d);
        auto norm = squaredModulus(d, y);
        see(norm);
        const auto infinite = hn::IsInf(norm);
        if (HWY_UNLIKELY(!hn::AllFalse(d, infinite))) {
            // A finite number by an infinite one is 0: only which parts are infinite, and their signs, count.
            const auto one = hn::IfThenElseZero(hn::IsInf(y), hn::Set(d, 1.0));
            y = hn::IfThenElse(infinite, hn::CopySign(one, y), y);
            x = hn::IfThenElse(infinite, hn::Mul(x, zero), x);
            norm = squaredModulus(d, y);
        }
        const auto byZero = hn::Eq(norm, zero);
        const auto numerator = hn::IfThenElse(byZero, dividend, timesConjugate(d, x, y));
        return hn::Div(numerator, hn::IfThenElse(byZero, hn::DupEven(y), norm));
    }
};

// Doubles are brought near 1 by powers of two, which change no digit, and the quotient is taken back in two steps, so
// that only its own range limits it.
class DivComplexDouble : public ComplexQuotient {
  public:
    static constexpr size_t kPeriod = 2;
    static constexpr size_t kWorkBytes = sizeof(double);

    explicit DivComplexDouble(int) {}

    template <class D>
    HWY_INLINE Doubles operator()(D, Doubles divisor, Doubles dividend) {
        const Lanes<double, N> d;
        const Lanes<int64_t, N> di;
        const auto scaleX = exponentInverse(dividend);
        const auto scaleY = exponentInverse(divisor);
        const auto x = hn::Mul(dividend, hn::BitCast(d, scaleX));
        const auto scaled = quotient(x, hn::Mul(divisor, hn::BitCast(d, scaleY)), dividend);
        const auto difference = hn::ShiftRight<52>(hn::Sub(scaleY, scaleX));
        const auto exponent = hn::Min(hn::Max(difference, hn::Set(di, -2044)), hn::Set(di, 2044));
        const auto half = hn::ShiftRight<1>(exponent);
        return hn::Mul(hn::Mul(scaled, power(half)), power(hn::Sub(exponent, half)));
    }

  private:
    using Words = Vec<int64_t, N>;

    // The bits of the power of two that brings the larger part of a pair near 1.
    static HWY_INLINE Words exponentInverse(Doubles v) {
        const Lanes<int64_t, N> di;
        const Lanes<double, N> d;
        const auto magnitude = hn::Abs(v);
        const auto larger = hn::BitCast(di, hn::Max(magnitude, hn::Reverse2(d, magnitude)));
        const auto exponent = hn::And(larger, hn::Set(di, 0x7FF0000000000000));
        return hn::Max(hn::Sub(hn::Set(di, 0x7FE0000000000000), exponent), hn::Set(di, 0x0010000000000000));
    }

    // 2^exponent
    static HWY_INLINE Doubles power(Words exponent) {
        const Lanes<int64_t, N> di;
        return hn::BitCast(Lanes<double, N>(), hn::ShiftLeft<52>(hn::Add(exponent, hn::Set(di, 1023))));
    }
};

// Singles, in single precision with one reciprocal for both parts. Where the squared modulus or the quotient is so
// large or small that a product on the way may have left the range, the result does not stand. Real and imaginary parts
// of two vectors are worked on apart.
template <class D>
class SingleQuotients {
  public:
    using V = hn::Vec<D>;
    using Mask = hn::Mask<D>;
    using Bits = hn::Vec<hn::RebindToSigned<D>>;

    HWY_INLINE SingleQuotients(D df, Two<V> divisor, Two<V> dividend)
        : a(evenOf(dividend)), b(oddOf(dividend)), norm(squaredModuli(divisor)) {
        const V c = evenOf(divisor);
        const V d = oddOf(divisor);
        const V inverse = hn::Div(hn::Set(df, 1.0f), norm);
        re = hn::Mul(hn::Add(hn::Mul(a, c), hn::Mul(b, d)), inverse);
        im = hn::Mul(hn::Sub(hn::Mul(b, c), hn::Mul(a, d)), inverse);
    }

    HWY_INLINE Two<V> pairs() const { return interleaved(re, im); }

    // Which results stand: those with the larger part of the quotient and the squared modulus within limits. Compared
    // as integers, which leaves the multipliers free: magnitudes are ordered like their bits.
    HWY_INLINE Mask stand() const {
        const D df;
        const Bits quotient = largerPart();
        const Bits smaller = hn::Min(quotient, modulus());
        return hn::RebindMask(df, hn::And(hn::Gt(smaller, leastBits()), hn::Lt(quotient, mostBits())));
    }

    // Takes the same into account in extremes of all results so far, which are initially the limits' neighbours within.
    HWY_INLINE void keepExtremes(Bits& smallest, Bits& largest) const {
        const Bits quotient = largerPart();
        largest = hn::Max(largest, quotient);
        smallest = hn::Min(smallest, hn::Min(quotient, modulus()));
    }
    static HWY_INLINE bool areWithin(Bits smallest, Bits largest) {
        const hn::RebindToSigned<D> di;
        return hn::AllTrue(di, hn::And(hn::Gt(smallest, leastBits()), hn::Lt(largest, mostBits())));
    }
    static HWY_INLINE Bits leastBits() { return bitsOf(0x1p-50f); }
    static HWY_INLINE Bits mostBits() { return bitsOf(0x1p50f); }

    // A dividend of 0 takes no harm from small products either.
    HWY_INLINE Mask standAsZero() const {
        const D df;
        const auto isZero = hn::Eq(largerMagnitude(a, b), hn::Zero(df));
        const auto normIsFinite = hn::Le(norm, hn::Set(df, std::numeric_limits<float>::max()));
        const auto normIsLarge = hn::RebindMask(df, hn::Gt(modulus(), leastBits()));
        return hn::And(isZero, hn::And(normIsLarge, normIsFinite));
    }

  private:
    V a;
    V b;
    V norm;
    V re;
    V im;

    static HWY_INLINE Bits bitsOf(float v) { return hn::BitCast(hn::RebindToSigned<D>(), hn::Set(D(), v)); }
    HWY_INLINE Bits largerPart() const { return hn::BitCast(hn::RebindToSigned<D>(), largerMagnitude(re, im)); }
    HWY_INLINE Bits modulus() const { return hn::BitCast(hn::RebindToSigned<D>(), norm); }

    static HWY_INLINE V largerMagnitude(V v, V w) {
#if HWY_TARGET <= HWY_AVX3
        constexpr int kMaximumOfMagnitudes = 0b1011;
        return V{_mm512_range_ps(v.raw, w.raw, kMaximumOfMagnitudes)};
#else
        return hn::Max(hn::Abs(v), hn::Abs(w));
#endif
    }
};

// The results as they are; afterwards it is known whether all stand.
class DivComplexSingleFast {
  public:
    static constexpr size_t kPeriod = 2;
    static constexpr size_t kWorkBytes = sizeof(float);
    static constexpr size_t kVectors = 2;

    template <class D, class V>
    HWY_INLINE Two<V> operator()(D df, Two<V> divisor, Two<V> dividend) {
        const SingleQuotients<D> quotients(df, divisor, dividend);
        quotients.keepExtremes(smallest, largest);
        return quotients.pairs();
    }

    HWY_INLINE bool allStand() const { return Quotients::areWithin(smallest, largest); }

  private:
    using Quotients = SingleQuotients<Lanes<float, kVectorBytes / sizeof(float)>>;

    Quotients::Bits smallest = Quotients::mostBits();
    Quotients::Bits largest = Quotients::leastBits();
};

// The same, and in double where a result does not stand.
class DivComplexSingle : public ComplexQuotient {
  public:
    static constexpr size_t kPeriod = 2;
    static constexpr size_t kWorkBytes = sizeof(float);
    static constexpr size_t kVectors = 2;

    explicit DivComplexSingle(int) {}

    template <class D, class V>
    HWY_INLINE Two<V> operator()(D df, Two<V> divisor, Two<V> dividend) {
        const SingleQuotients<D> quotients(df, divisor, dividend);
        Two<V> result = quotients.pairs();
        auto stand = quotients.stand();
        if (HWY_UNLIKELY(!hn::AllTrue(df, stand))) {
            stand = hn::Or(stand, quotients.standAsZero());
            if (!hn::AllTrue(df, stand)) {
                const V mask = hn::VecFromMask(df, stand);
                result.lower = hn::IfThenElse(hn::MaskFromVec(hn::InterleaveLower(df, mask, mask)), result.lower,
                                              inDouble(df, divisor.lower, dividend.lower));
                result.upper = hn::IfThenElse(hn::MaskFromVec(hn::InterleaveUpper(df, mask, mask)), result.upper,
                                              inDouble(df, divisor.upper, dividend.upper));
            }
        }
        return result;
    }

  private:
    template <class D, class V>
    HWY_INLINE V inDouble(D df, V divisor, V dividend) {
        const Lanes<double, N> d;
        const Lanes<float, N> half;
        const auto low = hn::PromoteTo(d, hn::LowerHalf(half, dividend));
        const auto high = hn::PromoteTo(d, hn::UpperHalf(half, dividend));
        const auto lower = quotient(low, hn::PromoteTo(d, hn::LowerHalf(half, divisor)), low);
        const auto upper = quotient(high, hn::PromoteTo(d, hn::UpperHalf(half, divisor)), high);
        return hn::Combine(df, hn::DemoteTo(half, upper), hn::DemoteTo(half, lower));
    }
};

} // namespace zvps::ZVPS_LEVEL
