// Lines and the test signal of Jaehne: functions of an element's number alone.
#pragma once

#include "core/sine.hpp"
#include "signal/generated.hpp"
#include "signal/ramps.table.hpp"

namespace zvps::ZVPS_LEVEL {

// The numbers of consecutive elements, in vectors of type W: counted in integers where W is too narrow to count in.
template <class W>
class Numbers {
  public:
    static constexpr size_t N = kVectorBytes / sizeof(W);

    HWY_INLINE explicit Numbers(size_t first)
        : v_(hn::Add(hn::Set(d_, static_cast<Count>(first)), hn::Iota(d_, Count{0}))) {}

    HWY_INLINE Vec<W, N> at(size_t vector) const {
        // Of floating-point numbers 0 is not added for nothing.
        const auto count = vector == 0 ? v_ : hn::Add(v_, hn::Set(d_, static_cast<Count>(vector * N)));
        if constexpr (std::is_same_v<W, Count>) {
            return count;
        } else {
            return hn::ConvertTo(Lanes<W, N>(), count);
        }
    }
    HWY_INLINE void advance(size_t count) { v_ = hn::Add(v_, hn::Set(d_, static_cast<Count>(count))); }

  private:
    using Count = std::conditional_t<sizeof(W) == 4, int32_t, W>;
    static constexpr Lanes<Count, N> d_{};

    Vec<Count, N> v_;
};

// dst[i] = function(i) for i < n, computed in W by vectors. The ends of a vector are computed twice rather than stored
// in parts, and the stores between them are aligned.
template <class W, Values values, class T, class Function>
HWY_INLINE void compute(T* dst, size_t n, const Function& function) {
    constexpr size_t R = kValueVectors<T, W>;
    constexpr size_t kStep = R * kVectorBytes / sizeof(W);
    const Lanes<T, kVectorBytes / sizeof(T)> d;
    const auto step = [&](const Numbers<W>& numbers) HWY_ATTR {
        return elements<T, values, W>(several<R>([&](size_t r) HWY_ATTR { return function(numbers.at(r)); }));
    };
    if (n < kStep) {
        storeFirstOf(step(Numbers<W>(0)), d, dst, n);
        return;
    }
    const size_t beyond = reinterpret_cast<uintptr_t>(dst) % kVectorBytes;
    size_t i = beyond % sizeof(T) == 0 ? (kVectorBytes - beyond) / sizeof(T) : kStep;
    storeVectors<false>(step(Numbers<W>(0)), d, dst);
    Numbers<W> numbers(i);
    for (; i + kStep <= n; i += kStep) {
        storeVectors<false>(step(numbers), d, dst + i);
        numbers.advance(kStep);
    }
    if (i < n) storeVectors<false>(step(Numbers<W>(n - kStep)), d, dst + (n - kStep));
}

// ---- Lines ----

using FloatVector = Vec<float, kLanes32>;

template <class W>
struct Line {
    W offset;
    W slope;

    template <class V>
    HWY_INLINE V operator()(V number) const {
        const hn::DFromV<V> d;
        return hn::Add(hn::Set(d, offset), hn::Mul(hn::Set(d, slope), number));
    }
};

// The nearest integers, ties up.
HWY_INLINE FloatVector roundedUp(FloatVector v) {
#if HWY_TARGET <= HWY_AVX3
    // Rounded down, the sum reaches no integer that the exact one does not.
    return hn::Floor(
        FloatVector{_mm512_add_round_ps(v.raw, _mm512_set1_ps(0.5F), _MM_FROUND_TO_NEG_INF | _MM_FROUND_NO_EXC)});
#else
    // Exact: a fraction computed as 1 belongs to a number just below an integer, which 1 more than its floor is.
    const Lanes<float, kLanes32> d;
    const auto floor = hn::Floor(v);
    const auto isUp = hn::Ge(hn::Sub(v, floor), hn::Set(d, 0.5F));
    return hn::Add(floor, hn::IfThenElseZero(isUp, hn::Set(d, 1.0F)));
#endif
}

struct RoundedLine {
    Line<float> line;

    HWY_INLINE FloatVector operator()(FloatVector number) const { return roundedUp(line(number)); }
};

// Lines do not turn back: where both ends are numbers that convert to integers of 32 bits, or to elements that are not
// saturated by narrowing, all values are.
template <class T, class W>
bool isRepresentable(W first, W last) {
    constexpr W kMost = std::is_same_v<T, uint32_t> ? W{0x1p32} : W{0x1p31};
    constexpr W kMargin = 512; // for rounding in single precision
    const auto isInside = [](W v) { return v >= kMargin - W{0x1p31} && v <= kMost - kMargin; };
    return isInside(first) && isInside(last);
}

template <class W, class T, class Function>
ZvpStatus line(T* dst, size_t n, const Line<W>& values, const Function& function) {
    if constexpr (std::is_integral_v<T>) {
        const W last = values.offset + values.slope * static_cast<W>(n - 1);
        if (HWY_LIKELY(isRepresentable<T>(values.offset, last))) {
            compute<W, Values::representable>(dst, n, function);
            return zvpStsOk;
        }
    }
    compute<W, Values::any>(dst, n, function);
    return zvpStsOk;
}

template <class T>
ZvpStatus ramp(T* dst, size_t n, float offset, float slope) {
    const Line<float> values{offset, slope};
    if constexpr (std::is_integral_v<T>) {
        return line(dst, n, values, RoundedLine{values});
    } else {
        return line(dst, n, values, values);
    }
}

template <class T>
ZvpStatus slope(T* dst, size_t n, double offset, double slope) {
    const Line<double> values{offset, slope};
    return line(dst, n, values, values);
}

// ---- Jaehne ----

// The sine of (pi / 2) m / len for squares m, reduced modulo 4 len, a turn: exact for blocks of up to kMostNumbers.
template <class T>
struct Chirp {
    static constexpr size_t kMostNumbers = 1024;

    // Elements of few bits do without the last terms.
    static constexpr size_t kTerms = sizeof(T) <= 2 || std::is_same_v<T, float> ? 6 : 8;

    double first; // the first number's square, reduced
    double twice; // two times the first number, reduced
    double turn;
    double inverse;
    double factor;
    double magnitude;

    Chirp(uint64_t begin, size_t n, double amplitude)
        : turn(4 * static_cast<double>(n)), inverse(1 / turn), factor(0x1.921fb54442d18p0 / static_cast<double>(n)),
          magnitude(amplitude) {
        const uint64_t modulus = 4 * uint64_t{n};
        first = static_cast<double>(begin * begin % modulus);
        twice = static_cast<double>(2 * begin % modulus);
    }

    HWY_INLINE Doubles operator()(Doubles j) const {
        const DoubleLanes d;
        // (begin + j)^2 modulo turn, below 2^44 and without rounding; then within half a turn of 0.
        const auto square = hn::Add(hn::Set(d, first), hn::Mul(j, hn::Add(hn::Set(d, twice), j)));
        const auto turns = hn::Round(hn::Mul(square, hn::Set(d, inverse)));
        const auto rest = hn::Sub(square, hn::Mul(turns, hn::Set(d, turn)));
        const auto length = hn::Abs(rest);
        // Beyond a quarter of a turn the sine comes back.
        const auto folded = hn::Min(length, hn::Sub(hn::Set(d, turn * 0.5), length));
        const auto value = sine<kTerms>(d, hn::Mul(folded, hn::Set(d, factor)));
        return hn::Mul(hn::Set(d, magnitude), hn::CopySignToAbs(value, rest));
    }
};

template <class T>
ZvpStatus jaehne(T* dst, size_t n, double magnitude) {
    for (size_t begin = 0; begin < n; begin += Chirp<T>::kMostNumbers) {
        const size_t count = n - begin < Chirp<T>::kMostNumbers ? n - begin : Chirp<T>::kMostNumbers;
        compute<double, Values::representable>(dst + begin, count, Chirp<T>(begin, n, magnitude));
    }
    return zvpStsOk;
}

} // namespace zvps::ZVPS_LEVEL
