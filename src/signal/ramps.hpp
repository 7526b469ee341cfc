// Lines and the test signal of Jaehne: functions of an element's number alone.
#pragma once

#include "core/sine.hpp"
#include "signal/generated.hpp"
#include "signal/ramps.table.hpp"

namespace zvps::ZVPS_LEVEL {

// N consecutive numbers from i on, in vectors of type W.
template <class W>
HWY_INLINE Vec<W, kVectorBytes / sizeof(W)> numbersFrom(size_t i) {
    constexpr size_t N = kVectorBytes / sizeof(W);
    const Lanes<W, N> d;
    if constexpr (std::is_same_v<W, float>) {
        const Lanes<int32_t, N> di;
        return hn::ConvertTo(d, hn::Add(hn::Set(di, static_cast<int32_t>(i)), hn::Iota(di, 0)));
    } else {
        return hn::Add(hn::Set(d, static_cast<double>(i)), hn::Iota(d, 0));
    }
}

// As a source of map() gives them: the values of type W for vectors of elements of type T from a function of their
// numbers.
template <class T, class W, class Function>
struct Computed {
    Function function;

    static constexpr size_t kLaneBytes = 1;
    static constexpr size_t kReadBytes = 0;
    static constexpr size_t kPeriod = 1;

    template <size_t>
    HWY_INLINE auto load(size_t i) const {
        constexpr size_t kLanes = kVectorBytes / sizeof(W);
        return several<kValueVectors<T, W>>([&](size_t r)
                                                HWY_ATTR { return function(numbersFrom<W>(i + r * kLanes)); });
    }
    template <size_t N>
    HWY_INLINE auto loadSome(size_t i, size_t) const {
        return load<N>(i);
    }
    HWY_INLINE bool startsAt(const void*) const { return false; }
};

template <class T, Values values, class W>
struct ToElements {
    static constexpr bool kLight = sizeof(T) >= 4;

    template <class D>
    HWY_INLINE auto operator()(D, const ValuesFor<T, W>& v) const {
        return elements<T, values, W>(v);
    }
};

template <class W, Values values, class T, class Function>
HWY_INLINE ZvpStatus compute(T* dst, size_t n, const Function& function) {
    ToElements<T, values, W> op;
    map(op, dst, n, Computed<T, W, Function>{function});
    return zvpStsOk;
}

// ---- Lines ----

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

// The nearest integers, ties up. Exact: a fraction computed as 1 belongs to a number just below an integer, which 1
// more than its floor is.
template <class V>
HWY_INLINE V roundedUp(V v) {
    const hn::DFromV<V> d;
    using W = hn::TFromD<decltype(d)>;
    const V floor = hn::Floor(v);
    const auto isUp = hn::Ge(hn::Sub(v, floor), hn::Set(d, W{0.5}));
    return hn::Add(floor, hn::IfThenElseZero(isUp, hn::Set(d, W{1})));
}

struct RoundedLine {
    Line<float> line;

    template <class V>
    HWY_INLINE V operator()(V number) const {
        return roundedUp(line(number));
    }
};

// In single precision; elements that do not come from vectors of singles take vectors half as wide.
template <class Function>
struct Widened {
    Function function;

    HWY_INLINE Doubles operator()(Doubles number) const {
        const Lanes<float, kDoubles> d;
        return hn::PromoteTo(DoubleLanes(), function(hn::DemoteTo(d, number)));
    }
};

template <class T>
ZvpStatus ramp(T* dst, size_t n, float offset, float slope) {
    const Line<float> line{offset, slope};
    if constexpr (std::is_same_v<T, float>) {
        return compute<float, Values::any>(dst, n, line);
    } else if constexpr (std::is_same_v<T, double>) {
        return compute<double, Values::any>(dst, n, Widened<Line<float>>{line});
    } else if constexpr (sizeof(T) == 4) {
        return compute<double, Values::any>(dst, n, Widened<RoundedLine>{{line}});
    } else {
        return compute<float, Values::any>(dst, n, RoundedLine{line});
    }
}

template <class T>
ZvpStatus slope(T* dst, size_t n, double offset, double slope) {
    return compute<double, Values::any>(dst, n, Line<double>{offset, slope});
}

// ---- Jaehne ----

// The sine of (pi / 2) m / len for squares m, reduced modulo 4 len, a turn: exact for blocks of up to kMostNumbers.
struct Chirp {
    static constexpr size_t kMostNumbers = 1024;

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
        const auto value = sine(d, hn::Mul(folded, hn::Set(d, factor)));
        return hn::Mul(hn::Set(d, magnitude), hn::CopySignToAbs(value, rest));
    }
};

template <class T>
ZvpStatus jaehne(T* dst, size_t n, double magnitude) {
    for (size_t begin = 0; begin < n; begin += Chirp::kMostNumbers) {
        const size_t count = n - begin < Chirp::kMostNumbers ? n - begin : Chirp::kMostNumbers;
        compute<double, Values::representable>(dst + begin, count, Chirp(begin, n, magnitude));
    }
    return zvpStsOk;
}

} // namespace zvps::ZVPS_LEVEL
