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
    static constexpr bool kLight = true;

    T level;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        const V limit = hn::Set(d, level);
        return side == Side::below ? hn::Max(limit, v) : hn::Min(limit, v);
    }
};

template <Side side, class T>
struct Replace {
    static constexpr bool kLight = true;

    T level;
    T value;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        return hn::IfThenElse(isBeyond<side>(v, hn::Set(d, level)), hn::Set(d, value), v);
    }
};

template <class T>
struct ReplaceBoth {
    static constexpr bool kLight = true;

    Replace<Side::below, T> below;
    Replace<Side::above, T> above;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        return hn::IfThenElse(hn::Lt(v, hn::Set(d, below.level)), hn::Set(d, below.value), above(d, v));
    }
};

template <Side side, class T>
struct LimitMagnitude {
    static constexpr bool kLight = true;

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
    explicit Magnitudes(T level) : m_scale(inverseExponent(level)), m_level(level * m_scale) {
        constexpr T kFar = sizeof(T) == 4 ? T{0x1p100} : static_cast<T>(0x1p900);
        if (level > std::numeric_limits<T>::max() / 2) {
            m_far = side == Side::below ? std::numeric_limits<T>::infinity() : T{0};
        } else {
            m_far = side == Side::below ? 1 / kFar : kFar;
        }
        // Of (1 - x)^(-1/2) for |x| <= 0.07, to 25 places.
        constexpr T kSeries[kTerms] = {T(0.49999828155561593), T(0.37499899760596744), T(0.31395609469709035),
                                       T(0.27452941002773246)};
        for (size_t i = 0; i < kTerms; ++i)
            m_series[i] = m_level * kSeries[i];
    }

    // In both lanes of a pair; of two vectors, once for each pair.
    template <class D, class V>
    HWY_INLINE V squares(D d, V v) const {
        return squaredModulus(d, hn::Mul(v, hn::Set(d, m_scale)));
    }
    template <class D, class V>
    HWY_INLINE V squares(D d, Two<V> v) const {
        const V scale = hn::Set(d, m_scale);
        return squaredModuli(Two<V>{hn::Mul(v.lower, scale), hn::Mul(v.upper, scale)});
    }
    template <class D, class V>
    HWY_INLINE auto areBeyond(D d, V squares) const {
        return isBeyond<side>(squares, hn::Set(d, m_level * m_level));
    }
    // Magnitudes of which the squares are too far from the level for the square root to be accurate. Next to the type's
    // largest number all are: rounding must not take a part beyond it.
    template <class D, class V>
    HWY_INLINE auto areFar(D d, V squares) const {
        return isBeyond<side>(squares, hn::Set(d, m_far));
    }
    // level / magnitude
    template <class D, class V>
    HWY_INLINE V factors(D d, V squares) const {
        if constexpr (sizeof(T) == 4) {
            // The processors' estimates of the inverse square root differ, so this one starts from the bits: half the
            // exponent, negated, to 3.5 %. A step of fifth order from there.
            const hn::RebindToSigned<D> di;
            const V estimate =
                hn::BitCast(d, hn::Sub(hn::Set(di, 0x5F3759DF), hn::ShiftRight<1>(hn::BitCast(di, squares))));
            const V ratio = hn::Mul(hn::Mul(squares, estimate), estimate);
            const V error = hn::Sub(hn::Set(d, 1.0F), ratio);
            V series = hn::Set(d, m_series[kTerms - 1]);
            for (size_t i = kTerms - 1; i != 0; --i)
                series = hn::Add(hn::Mul(series, error), hn::Set(d, m_series[i - 1]));
            const V level = hn::Set(d, m_level);
            return hn::Mul(estimate, hn::Add(hn::Mul(series, error), level));
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

    static constexpr size_t kTerms = 4;

    T m_scale;
    T m_level;
    T m_far;
    T m_series[kTerms]; // times the level
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
    static constexpr size_t kVectors = 2;

    explicit LimitComplex(T level) : m_magnitudes(level), m_level(level) {}

    template <class D, class V>
    HWY_INLINE Two<V> operator()(D d, Two<V> v) const {
        const V squares = m_magnitudes.squares(d, v);
        const auto beyond = m_magnitudes.areBeyond(d, squares);
        if (hn::AllFalse(d, beyond)) return v;
        // 0 for elements that stay.
        const V factors = hn::IfThenElseZero(beyond, m_magnitudes.factors(d, squares));
        const Two<V> byPart = interleaved(factors, factors);
        const Two<V> result{times(d, v.lower, byPart.lower), times(d, v.upper, byPart.upper)};
        const auto far = hn::And(beyond, m_magnitudes.areFar(d, squares));
        if (HWY_UNLIKELY(!hn::AllFalse(d, far))) return withFar(d, v, result, far);
        return result;
    }

  private:
    template <class D, class V>
    static HWY_INLINE V times(D d, V v, V factors) {
        return hn::IfThenElse(hn::Gt(factors, hn::Zero(d)), hn::Mul(v, factors), v);
    }

    template <class D, class V, class M>
    HWY_INLINE Two<V> withFar(D d, Two<V> v, Two<V> result, M far) const {
        if constexpr (side == Side::below) {
            const V zero = hn::Zero(d);
            const auto isZero = hn::And(far, hn::Eq(hn::Max(hn::Abs(evenOf(v)), hn::Abs(oddOf(v))), zero));
            const V levels = hn::IfThenElseZero(isZero, hn::Set(d, m_level));
            const Two<V> pairs = interleaved(levels, zero);
            const Two<V> which = interleaved(levels, levels);
            result.lower = hn::IfThenElse(hn::Gt(which.lower, zero), pairs.lower, result.lower);
            result.upper = hn::IfThenElse(hn::Gt(which.upper, zero), pairs.upper, result.upper);
            far = hn::AndNot(isZero, far);
            if (hn::AllFalse(d, far)) return result;
        }
        const V flags = hn::IfThenElseZero(far, hn::Set(d, T{1}));
        const Two<V> byPart = interleaved(flags, flags);
        return {oneByOne(d, v.lower, result.lower, byPart.lower), oneByOne(d, v.upper, result.upper, byPart.upper)};
    }
    template <class D, class V>
    HWY_NOINLINE V oneByOne(D d, V v, V result, V which) const {
        constexpr size_t N = hn::MaxLanes(d);
        alignas(kVectorBytes) T from[N];
        alignas(kVectorBytes) T to[N];
        alignas(kVectorBytes) T flags[N];
        hn::Store(v, d, from);
        hn::Store(result, d, to);
        hn::Store(which, d, flags);
        for (size_t i = 0; i < N; i += 2) {
            if (flags[i] == 0) continue;
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

// Squared magnitudes; the largest one, 2^31, becomes one less, which no level tells apart.
template <class V>
HWY_INLINE auto squares16(V v) {
    const Lanes<int32_t, kVectorBytes / 4> d;
    const hn::Vec<decltype(d)> sums{ZVPS_INTRINSIC(madd_epi16)(v.raw, v.raw)};
    return hn::Add(sums, hn::ShiftRight<31>(sums));
}

template <Side side>
class LimitComplex<side, int16_t> {
  public:
    static constexpr size_t kVectors = 1;

    explicit LimitComplex(int16_t level) : m_level(level) {}

    template <class D, class V>
    HWY_INLINE V operator()(D d, V v) const {
        const Lanes<int32_t, 2 * N> wide;
        const auto squares = squares16(v);
        const auto beyond = isBeyond<side>(squares, hn::Set(wide, int32_t{m_level} * m_level));
        if (hn::AllFalse(wide, beyond)) return v;
        const auto pairs = hn::BitCast(wide, v);
        const auto re = hn::ShiftRight<16>(hn::ShiftLeft<16>(pairs));
        const auto im = hn::ShiftRight<16>(pairs);
        const auto roots = inverseRoots(hn::ConvertTo(Lanes<float, 2 * N>(), squares));
        const Lanes<int32_t, N> di;
        const Lanes<float, N> df;
        const auto lower = withLevel(hn::LowerHalf(di, re), hn::LowerHalf(di, im), hn::LowerHalf(df, roots));
        const auto upper = withLevel(hn::UpperHalf(di, re), hn::UpperHalf(di, im), hn::UpperHalf(df, roots));
        return hn::BitCast(d, hn::IfThenElse(beyond, hn::Combine(wide, upper, lower), pairs));
    }

  private:
    static constexpr size_t N = kVectorBytes / 8;
    static constexpr double kNearTie = 0.5 - 0x1p-24;

    // v^(-1/2) to 20 places, by the processor's estimate and a step of Newton's.
    template <class V>
    static HWY_INLINE V inverseRoots(V v) {
        const hn::DFromV<V> d;
        const V estimate = hn::ApproximateReciprocalSqrt(v);
        const V half = hn::Mul(hn::Mul(v, hn::Set(d, 0.5F)), hn::Mul(estimate, estimate));
        return hn::Mul(estimate, hn::Sub(hn::Set(d, 1.5F), half));
    }

    // re + i im with the magnitude m_level, given the inverse of its magnitude to 20 places.
    HWY_INLINE Vec<int32_t, N> withLevel(Vec<int32_t, N> re32, Vec<int32_t, N> im32, Vec<float, N> inverse) const {
        const Lanes<double, N> d;
        const auto re = hn::PromoteTo(d, re32);
        const auto im = hn::PromoteTo(d, im32);
        const auto root = hn::PromoteTo(d, inverse);
        const auto squares = hn::Add(hn::Mul(re, re), hn::Mul(im, im)); // exact
        // level times Newton's next step
        const auto level = hn::Set(d, static_cast<double>(m_level));
        const auto half = hn::Mul(hn::Mul(squares, hn::Set(d, 0.5 * m_level)), hn::Mul(root, root));
        const auto factor = hn::Mul(root, hn::Sub(hn::Set(d, 1.5 * m_level), half));
        auto quotientRe = hn::Mul(re, factor);
        auto quotientIm = hn::Mul(im, factor);
        if constexpr (side == Side::below) {
            const auto zero = hn::Eq(squares, hn::Zero(d));
            quotientRe = hn::IfThenElse(zero, level, quotientRe);
            quotientIm = hn::IfThenZeroElse(zero, quotientIm);
        }
        // Adding 3 * 2^51 rounds to an integer and leaves it in the lowest bits.
        const auto rounder = hn::Set(d, 0x1.8p52);
        auto shiftedRe = hn::Add(quotientRe, rounder);
        auto shiftedIm = hn::Add(quotientIm, rounder);
        // So near to one half the quotient may have been rounded to the wrong side of it.
        const auto distanceRe = hn::Abs(hn::Sub(hn::Sub(shiftedRe, rounder), quotientRe));
        const auto distanceIm = hn::Abs(hn::Sub(hn::Sub(shiftedIm, rounder), quotientIm));
        const auto isNear = hn::Gt(hn::Max(distanceRe, distanceIm), hn::Set(d, kNearTie));
        if (HWY_UNLIKELY(!hn::AllFalse(d, isNear))) {
            shiftedRe = hn::Add(exact(re, squares, quotientRe), rounder);
            shiftedIm = hn::Add(exact(im, squares, quotientIm), rounder);
        }
        const Lanes<uint64_t, N> bits;
        const auto low = hn::And(hn::BitCast(bits, shiftedRe), hn::Set(bits, uint64_t{0xFFFF}));
        const auto high = hn::ShiftLeft<16>(hn::BitCast(bits, shiftedIm));
        return hn::BitCast(Lanes<int32_t, N>(), hn::TruncateTo(Lanes<uint32_t, N>(), hn::Or(low, high)));
    }

    // The quotients part * level / sqrt(square), given to 24 places behind the point, rounded where they are near a
    // tie. Exact ones are never ties: a fraction of Pythagorean numbers in lowest terms has an odd denominator.
    HWY_NOINLINE Vec<double, N> exact(Vec<double, N> parts, Vec<double, N> squares, Vec<double, N> quotients) const {
        const Lanes<double, N> d;
        alignas(kVectorBytes) double part[N];
        alignas(kVectorBytes) double square[N];
        alignas(kVectorBytes) double quotient[N];
        hn::Store(parts, d, part);
        hn::Store(squares, d, square);
        hn::Store(quotients, d, quotient);
        for (size_t i = 0; i < N; ++i) {
            const double magnitude = __builtin_fabs(quotient[i]);
            const auto whole = static_cast<uint64_t>(magnitude);
            const double fraction = magnitude - static_cast<double>(whole);
            if (fraction < kNearTie || fraction > 1 - kNearTie) continue;
            // Above whole + 1/2 if (2 part level)^2 > (2 whole + 1)^2 square, both below 2^64.
            const auto twice = static_cast<uint64_t>(2 * __builtin_fabs(part[i])) * static_cast<uint64_t>(m_level);
            const uint64_t odd = 2 * whole + 1;
            const bool isAbove = twice * twice > odd * odd * static_cast<uint64_t>(square[i]);
            quotient[i] = __builtin_copysign(static_cast<double>(whole + isAbove), quotient[i]);
        }
        return hn::Load(d, quotient);
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
        const auto beyond = isBeyond<side>(squares16(v), hn::Set(wide, m_square));
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
    static constexpr size_t kVectors = 2;

    explicit InvertComplex(T level) : Division(0), m_raise(level) {}

    template <class D, class V>
    HWY_INLINE Two<V> operator()(D d, Two<V> v) {
        const V one = hn::OddEven(hn::Zero(d), hn::Set(d, T{1}));
        const Two<V> raised = m_raise(d, v);
        if constexpr (Division::kVectors == 2) {
            return Division::operator()(d, raised, Two<V>{one, one});
        } else {
            return {Division::operator()(d, raised.lower, one), Division::operator()(d, raised.upper, one)};
        }
    }

  private:
    LimitComplex<Side::below, T> m_raise;
};

} // namespace zvps::ZVPS_LEVEL
