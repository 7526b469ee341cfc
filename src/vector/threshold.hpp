// Elements beyond a level replaced. Comparisons with a NaN are false, which leaves NaN elements as they are.
#pragma once

#include "core/scaled.hpp"
#include "vector/quotients.hpp"

namespace zvps::ZVPS_LEVEL {

// Which elements are replaced.
enum class Side { below, above };

template <Side side, class V>
HWY_INLINE auto isBeyond(V v, V level) {
    if constexpr (side == Side::below) {
        return hn::Lt(v, level);
    } else {
        return hn::Gt(v, level);
    }
}

// ---- Real elements ----

// Of floats, the minimum and the maximum are their second operand when one is a NaN or both are zeros.
template <Side side, class T>
struct Limit {
    T level;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        const V limit = hn::Set(d, level);
        return side == Side::below ? hn::Max(limit, v) : hn::Min(limit, v);
    }
};

template <Side side, class T>
struct Replace {
    T level;
    T value;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        return hn::IfThenElse(isBeyond<side>(v, hn::Set(d, level)), hn::Set(d, value), v);
    }
};

template <class T>
struct ReplaceBoth {
    Replace<Side::below, T> below;
    Replace<Side::above, T> above;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        return hn::IfThenElse(hn::Lt(v, hn::Set(d, below.level)), hn::Set(d, below.value), above(d, v));
    }
};

template <Side side, class T>
struct LimitMagnitude {
    T level;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        const V positive = hn::Set(d, level);
        const V negative = hn::Set(d, static_cast<T>(-level));
        if constexpr (side == Side::above) return hn::Min(positive, hn::Max(negative, v));
        return hn::IfThenElse(hn::Lt(v, hn::Zero(d)), hn::Min(negative, v), hn::Max(positive, v));
    }
};

// ---- Complex elements ----

// Squared magnitudes are compared, of elements times a power of two that brings the level near 1: what then over- or
// underflows is far beyond the level.
template <Side side, class T>
class Magnitudes {
  public:
    explicit Magnitudes(T level) : m_scale(inverseExponent(level)), m_level(level * m_scale) {}

    // In both lanes of a pair.
    template <class D, class V>
    HWY_INLINE V squares(D d, V v) const {
        return squaredModulus(d, hn::Mul(v, hn::Set(d, m_scale)));
    }
    template <class D, class V>
    HWY_INLINE auto areBeyond(D d, V squares) const {
        return isBeyond<side>(squares, hn::Set(d, m_level * m_level));
    }
    // Magnitudes beyond the level, of which the squares are too far from it for the square root to be accurate.
    template <class D, class V>
    HWY_INLINE auto areFar(D d, V squares) const {
        constexpr T kFar = sizeof(T) == 4 ? T{0x1p100} : static_cast<T>(0x1p900);
        return isBeyond<side>(squares, hn::Set(d, side == Side::below ? 1 / kFar : kFar));
    }
    // level / magnitude
    template <class D, class V>
    HWY_INLINE V factors(D d, V squares) const {
        if constexpr (sizeof(T) == 4) {
            return hn::Mul(hn::Set(d, m_level), inverseRoot(d, squares));
        } else {
            return hn::Div(hn::Set(d, m_level), hn::Sqrt(squares));
        }
    }

  private:
    // 2^-e for a level of 2^e to 2^(e + 1), as far as that is a normal number.
    static HWY_INLINE T inverseExponent(T level) {
        using Bits = std::conditional_t<sizeof(T) == 4, uint32_t, uint64_t>;
        constexpr int kMantissa = std::numeric_limits<T>::digits - 1;
        constexpr Bits kLast = 2 * std::numeric_limits<T>::max_exponent - 2;
        Bits bits;
        __builtin_memcpy(&bits, &level, sizeof(bits));
        const Bits exponent = bits >> kMantissa & (kLast + 1);
        const Bits inverse = exponent == 0 ? kLast : exponent >= kLast ? 1 : kLast - exponent;
        const Bits result = inverse << kMantissa;
        T scale;
        __builtin_memcpy(&scale, &result, sizeof(scale));
        return scale;
    }

    // v^(-1/2). The processors' estimates differ, so this one starts from the bits of v: half the exponent, negated,
    // to 3.5 %; a step of third order to 2e-5, then Newton's.
    template <class D, class V>
    static HWY_INLINE V inverseRoot(D d, V v) {
        const hn::RebindToSigned<D> di;
        const V start = hn::BitCast(d, hn::Sub(hn::Set(di, 0x5F3759DF), hn::ShiftRight<1>(hn::BitCast(di, v))));
        const V ratio = hn::Mul(hn::Mul(v, start), start);
        const V correction =
            hn::Sub(hn::Set(d, 1.875f), hn::Mul(ratio, hn::Sub(hn::Set(d, 1.25f), hn::Mul(ratio, hn::Set(d, 0.375f)))));
        const V estimate = hn::Mul(start, correction);
        const V half = hn::Mul(hn::Mul(hn::Mul(v, hn::Set(d, 0.5f)), estimate), estimate);
        return hn::Mul(estimate, hn::Sub(hn::Set(d, 1.5f), half));
    }

    T m_scale;
    T m_level;
};

// (re, im) with the magnitude `level`, for any numbers but (0, 0); of an infinite element only which parts are infinite
// counts, and their signs.
template <class T>
HWY_INLINE void setMagnitude(T* pair, double level) {
    double re = pair[0];
    double im = pair[1];
    if (__builtin_isinf(re) || __builtin_isinf(im)) {
        re = __builtin_copysign(__builtin_isinf(re) ? 1.0 : 0.0, re);
        im = __builtin_copysign(__builtin_isinf(im) ? 1.0 : 0.0, im);
    }
    const double larger = __builtin_fabs(re) > __builtin_fabs(im) ? __builtin_fabs(re) : __builtin_fabs(im);
    const double scale = larger > 0x1p500 ? 0x1p-600 : larger < 0x1p-500 ? 0x1p600 : 1.0;
    re *= scale;
    im *= scale;
    const double magnitude = __builtin_sqrt(re * re + im * im);
    pair[0] = static_cast<T>(re / magnitude * level);
    pair[1] = static_cast<T>(im / magnitude * level);
}

template <Side side, class T>
class LimitComplex {
  public:
    explicit LimitComplex(T level) : m_magnitudes(level), m_level(level) {}

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        const V squares = m_magnitudes.squares(d, v);
        auto far = m_magnitudes.areFar(d, squares);
        // No part is larger than the magnitude, which matters next to the type's largest number.
        const V level = hn::Set(d, m_level);
        const V scaled = hn::Mul(v, m_magnitudes.factors(d, squares));
        V limited = hn::Min(hn::Max(scaled, hn::Neg(level)), level);
        if constexpr (side == Side::below) {
            const V magnitudes = hn::Abs(v);
            const auto zero = hn::Eq(hn::Max(magnitudes, hn::Reverse2(d, magnitudes)), hn::Zero(d));
            limited = hn::IfThenElse(zero, hn::OddEven(hn::Zero(d), level), limited);
            far = hn::AndNot(zero, far);
        }
        const auto beyond = m_magnitudes.areBeyond(d, squares);
        far = hn::And(far, beyond);
        const V result = hn::IfThenElse(beyond, limited, v);
        if (HWY_UNLIKELY(!hn::AllFalse(d, far)))
            return withFar(d, v, result, hn::IfThenElseZero(far, hn::Set(d, T{1})));
        return result;
    }

  private:
    template <class D, class V>
    HWY_NOINLINE V withFar(D d, V v, V result, V far) const {
        constexpr size_t N = hn::MaxLanes(d);
        alignas(kVectorBytes) T from[N];
        alignas(kVectorBytes) T to[N];
        alignas(kVectorBytes) T which[N];
        hn::Store(v, d, from);
        hn::Store(result, d, to);
        hn::Store(far, d, which);
        for (size_t i = 0; i < N; i += 2) {
            if (which[i] == 0) continue;
            to[i] = from[i];
            to[i + 1] = from[i + 1];
            setMagnitude(to + i, m_level);
        }
        return hn::Load(d, to);
    }

    Magnitudes<side, T> m_magnitudes;
    T m_level;
};

template <Side side, class T>
class ReplaceComplex {
  public:
    explicit ReplaceComplex(T level) : m_magnitudes(level) {}

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v, V value) const {
        return hn::IfThenElse(m_magnitudes.areBeyond(d, m_magnitudes.squares(d, v)), value, v);
    }

  private:
    Magnitudes<side, T> m_magnitudes;
};

// ---- Complex elements of 16 bits ----

template <Side side>
class LimitComplex<side, int16_t> {
  public:
    static constexpr size_t kWorkBytes = 4; // for both parts together a double

    explicit LimitComplex(int16_t level) : m_level(level) {}

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        const Lanes<int32_t, N> d32;
        const Lanes<double, N> df;
        const auto pairs = hn::BitCast(d32, v);
        const auto re = hn::PromoteTo(df, hn::ShiftRight<16>(hn::ShiftLeft<16>(pairs)));
        const auto im = hn::PromoteTo(df, hn::ShiftRight<16>(pairs));
        const auto squares = hn::Add(hn::Mul(re, re), hn::Mul(im, im)); // exact
        const auto level = hn::Set(df, static_cast<double>(m_level));
        const auto beyond = isBeyond<side>(squares, hn::Mul(level, level));
        if (hn::AllFalse(df, beyond)) return v;

        const auto root = hn::Sqrt(squares);
        auto limitedRe = hn::Div(hn::Mul(re, level), root);
        auto limitedIm = hn::Div(hn::Mul(im, level), root);
        if constexpr (side == Side::below) {
            const auto zero = hn::Eq(squares, hn::Zero(df));
            limitedRe = hn::IfThenElse(zero, level, limitedRe);
            limitedIm = hn::IfThenZeroElse(zero, limitedIm);
        }
        limitedRe = hn::IfThenElse(beyond, limitedRe, re);
        limitedIm = hn::IfThenElse(beyond, limitedIm, im);
        auto roundedRe = hn::Round(limitedRe);
        auto roundedIm = hn::Round(limitedIm);
        // So near to one half the quotient may have been rounded to the wrong side of it.
        const auto distance = hn::Max(hn::Abs(hn::Sub(limitedRe, roundedRe)), hn::Abs(hn::Sub(limitedIm, roundedIm)));
        if (HWY_UNLIKELY(!hn::AllFalse(df, hn::Gt(distance, hn::Set(df, 0.5 - 0x1p-30))))) {
            roundedRe = exact(re, squares, limitedRe, roundedRe);
            roundedIm = exact(im, squares, limitedIm, roundedIm);
        }
        const auto low = hn::And(hn::DemoteTo(d32, roundedRe), hn::Set(d32, 0xFFFF));
        return hn::BitCast(d, hn::Or(low, hn::ShiftLeft<16>(hn::DemoteTo(d32, roundedIm))));
    }

  private:
    static constexpr size_t N = kVectorBytes / 8;

    // The quotients part * level / sqrt(square), given to 30 places, rounded. Exact ones are never ties: a fraction of
    // Pythagorean numbers in lowest terms has an odd denominator.
    HWY_NOINLINE Vec<double, N> exact(Vec<double, N> parts, Vec<double, N> squares, Vec<double, N> quotients,
                                      Vec<double, N> rounded) const {
        const Lanes<double, N> d;
        alignas(kVectorBytes) double part[N];
        alignas(kVectorBytes) double square[N];
        alignas(kVectorBytes) double quotient[N];
        alignas(kVectorBytes) double result[N];
        hn::Store(parts, d, part);
        hn::Store(squares, d, square);
        hn::Store(quotients, d, quotient);
        hn::Store(rounded, d, result);
        for (size_t i = 0; i < N; ++i) {
            const double magnitude = __builtin_fabs(quotient[i]);
            const auto whole = static_cast<uint64_t>(magnitude);
            const double fraction = magnitude - static_cast<double>(whole);
            if (fraction < 0.5 - 0x1p-30 || fraction > 0.5 + 0x1p-30) continue;
            // Above whole + 1/2 if (2 part level)^2 > (2 whole + 1)^2 square, both below 2^64.
            const auto twice = static_cast<uint64_t>(2 * __builtin_fabs(part[i])) * static_cast<uint64_t>(m_level);
            const uint64_t odd = 2 * whole + 1;
            const bool isAbove = twice * twice > odd * odd * static_cast<uint64_t>(square[i]);
            result[i] = __builtin_copysign(static_cast<double>(whole + isAbove), quotient[i]);
        }
        return hn::Load(d, result);
    }

    int16_t m_level;
};

template <Side side>
class ReplaceComplex<side, int16_t> {
  public:
    explicit ReplaceComplex(int16_t level) : m_square(int32_t{level} * level) {}

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v, V value) const {
        const hn::RepartitionToWide<D> wide;
        // The largest sum, 2^31, becomes one less.
        const hn::Vec<decltype(wide)> sums{ZVPS_INTRINSIC(madd_epi16)(v.raw, v.raw)};
        const auto squares = hn::Add(sums, hn::ShiftRight<31>(sums));
        const auto beyond = isBeyond<side>(squares, hn::Set(wide, m_square));
        return hn::BitCast(d, hn::IfThenElse(beyond, hn::BitCast(wide, value), hn::BitCast(wide, v)));
    }

  private:
    int32_t m_square;
};

// ---- Reciprocals ----

template <class T>
class InvertReal : public ZeroWatch<T> {
  public:
    explicit InvertReal(T level) : m_raise{level} {}

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) {
        const V raised = m_raise(d, v);
        this->see(hn::Abs(raised));
        return hn::Div(hn::Set(d, T{1}), raised);
    }

  private:
    LimitMagnitude<Side::below, T> m_raise;
};

template <class T>
class InvertComplex : public std::conditional_t<sizeof(T) == 4, DivComplexSingle, DivComplexDouble> {
    using Division = std::conditional_t<sizeof(T) == 4, DivComplexSingle, DivComplexDouble>;

  public:
    explicit InvertComplex(T level) : Division(0), m_raise(level) {}

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) {
        return Division::operator()(d, m_raise(d, v), one(d));
    }
    template <class D, class V>
    HWY_INLINE Two<V> operator()(D d, Two<V> v) {
        return Division::operator()(d, Two<V>{m_raise(d, v.lower), m_raise(d, v.upper)}, Two<V>{one(d), one(d)});
    }

  private:
    template <class D>
    static HWY_INLINE hn::Vec<D> one(D d) {
        return hn::OddEven(hn::Zero(d), hn::Set(d, T{1}));
    }

    LimitComplex<Side::below, T> m_raise;
};

} // namespace zvps::ZVPS_LEVEL
