#include "vector/conversion.hpp"

#include "vector/conversion.table.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

struct Value {
    static constexpr bool kLight = true;
    static constexpr bool kShuffles = true;

    template <class D, class V>
    HWY_INLINE auto operator()(D d, V v) const {
        using From = hn::TFromV<V>;
        using To = Element<D>;
        if constexpr (std::is_integral_v<To> && sizeof(To) == sizeof(From)) {
            return hn::BitCast(d, v);
        } else if constexpr (sizeof(To) < sizeof(From)) {
            return hn::DemoteTo(d, v);
        } else {
            return widened(d, v);
        }
    }
    template <class D, class V>
    HWY_INLINE auto operator()(D d, Two<V> v) const {
        return Two<hn::Vec<D>>{(*this)(d, v.lower), (*this)(d, v.upper)};
    }
};

template <class Source, class S, class D>
ZvpStatus convert(const S* src, D* dst, size_t n) {
    Value op;
    map<1, 1, sizeof(D) < sizeof(S) ? 2 : 1>(op, dst, n, Source{src});
    return zvpStsOk;
}

template <class D>
struct ScaledValue {
    static constexpr bool kLight = true;
    static constexpr bool kShuffles = true;

    D factor;

    template <class Tag, class V>
    HWY_INLINE auto operator()(Tag d, V v) const {
        return hn::Mul(widened(d, v), hn::Set(d, factor));
    }
};

template <class Source, class S, class D>
ZvpStatus convertTimes(const S* src, D* dst, size_t n, D factor) {
    ScaledValue<D> op{factor};
    map(op, dst, n, Source{src});
    return zvpStsOk;
}

// Integers of Limits into elements of D, which are bytes for 24 bits.
template <class Limits, class Op, class Source, class D>
HWY_INLINE void narrow(Op op, D* dst, size_t n, const Source& source) {
    constexpr size_t N = kVectorBytes / sizeof(D);
    if constexpr (std::is_same_v<Limits, Range24s> || std::is_same_v<Limits, Range24u>) {
        mapTo24(op, dst, n, source);
    } else if (Op::kTakesTwo && n >= 2 * N) {
        if constexpr (Op::kTakesTwo) mapVectors<1, 2, N>(op, dst, n, InParts<Source>{source});
    } else if (n >= N && sizeof(D) < 4) {
        mapVectors<1, 1, N>(op, dst, n, InParts<Source>{source});
    } else {
        map(op, dst, n, source);
    }
}

enum class Shift { none, down, up };

template <class Limits, Shift direction>
struct Shifted {
    static constexpr bool kTakesTwo = false;
    static constexpr bool kLight = direction == Shift::none;
    static constexpr bool kShuffles = true;

    int shift;

    template <class D, class V>
    HWY_INLINE auto operator()(D d, const V& v) const {
        return narrowed(d, forEach(v, [this](auto one) HWY_ATTR { return scaled(one); }));
    }

  private:
    template <class V>
    HWY_INLINE auto scaled(V v) const {
        const hn::DFromV<V> d;
        if constexpr (direction == Shift::down) v = roundShift(d, v, shift);
        if constexpr (direction == Shift::up) v = saturatedShiftLeft(d, v, shift);
        using T = Element<decltype(d)>;
        if constexpr (std::is_same_v<Limits, Range24s>) {
            v = hn::Max(v, hn::Set(d, T{Limits::kLeast}));
        }
        if constexpr (std::is_same_v<Limits, Range24s> || std::is_same_v<Limits, Range24u>) {
            return hn::BitCast(hn::RebindToSigned<decltype(d)>(), hn::Min(v, hn::Set(d, T{Limits::kMost})));
        } else {
            return v;
        }
    }
};

template <class Limits, Shift direction, class S, class D>
ZvpStatus shift(const S* src, D* dst, size_t n, int places) {
    narrow<Limits>(Shifted<Limits, direction>{places}, dst, n, Vector<S>{src});
    return zvpStsOk;
}

template <class Limits, class S, class D>
constexpr ShiftKernels<S, D> shiftKernels() {
    return {shift<Limits, Shift::none, S, D>, shift<Limits, Shift::down, S, D>, shift<Limits, Shift::up, S, D>,
            kBits<S> - (std::is_signed_v<S> ? 1 : 0)};
}

template <class Source, class Limits, ZvpRoundMode mode, bool kTwice, class S, class F, class D>
ZvpStatus roundTo(const S* src, D* dst, size_t n, F factor, F second) {
    narrow<Limits>(RoundTo<Limits, mode, kTwice, F>{factor, second}, dst, n, Source{src});
    return zvpStsOk;
}

template <class Source, class Limits, class S, class F, class D>
constexpr RoundingKernels<S, F, D> roundingKernels() {
    return {{roundTo<Source, Limits, zvpRndZero, false, S, F, D>, roundTo<Source, Limits, zvpRndNear, false, S, F, D>,
             roundTo<Source, Limits, zvpRndFinancial, false, S, F, D>},
            {roundTo<Source, Limits, zvpRndZero, true, S, F, D>, roundTo<Source, Limits, zvpRndNear, true, S, F, D>,
             roundTo<Source, Limits, zvpRndFinancial, true, S, F, D>}};
}

template <class Source, ZvpRoundMode mode, class S>
ZvpStatus toHalf(const S* src, Zvp16f* dst, size_t n) {
    ToHalf<mode> op;
    map<1, sizeof(float)>(op, dst, n, Source{src});
    return zvpStsOk;
}

} // namespace

extern const ConversionKernels conversionKernels;
const ConversionKernels conversionKernels = {
#define ZVPS_KERNEL(slot, source, type, result) convert<source, type, result>,
    ZVPS_PLAIN_CONVERSIONS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
#define ZVPS_KERNEL(slot, source, type, result) convertTimes<source, type, result>,
        ZVPS_FACTOR_CONVERSIONS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
#define ZVPS_KERNELS(slot, type, result, range) shiftKernels<range, type, result>(),
            ZVPS_SHIFT_CONVERSIONS(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNELS(slot, source, type, working, result, range)                                                       \
    roundingKernels<source, range, type, working, result>(),
                ZVPS_ROUNDING_CONVERSIONS(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNELS(slot, source, type) {toHalf<source, zvpRndZero, type>, toHalf<source, zvpRndNear, type>},
                    ZVPS_HALF_CONVERSIONS(ZVPS_KERNELS)
#undef ZVPS_KERNELS
};

} // namespace zvps::ZVPS_LEVEL
