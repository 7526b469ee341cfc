#include "vector/threshold.hpp"

#include "vector/threshold.table.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class Op, class T, class... Parameters>
ZvpStatus real(const T* src, T* dst, size_t n, Parameters... parameters) {
    Op op{parameters...};
    map(op, dst, n, Vector<T>{src});
    return zvpStsOk;
}

template <class T>
ZvpStatus replaceBoth(const T* src, T* dst, size_t n, T below, T valueBelow, T above, T valueAbove) {
    ReplaceBoth<T> op{{below, valueBelow}, {above, valueAbove}};
    map(op, dst, n, Vector<T>{src});
    return zvpStsOk;
}

template <class T>
constexpr RealThresholds<T> realThresholds() {
    return {
        real<Limit<Side::below, T>, T, T>,
        real<Limit<Side::above, T>, T, T>,
        real<Replace<Side::below, T>, T, T, T>,
        real<Replace<Side::above, T>, T, T, T>,
        replaceBoth<T>,
        real<LimitMagnitude<Side::below, T>, T, T>,
        real<LimitMagnitude<Side::above, T>, T, T>,
    };
}

template <Side side, class T>
ZvpStatus limitComplex(const T* src, T* dst, size_t n, T level) {
    LimitComplex<side, T> op(level);
    map<2, sizeof(T), op.kVectors>(op, dst, n, Vector<T>{src});
    return zvpStsOk;
}

template <Side side, class T>
ZvpStatus replaceComplex(const T* src, T* dst, size_t n, T level, Pair<T> value) {
    ReplaceComplex<side, T> op(level);
    map<2>(op, dst, n, Vector<T>{src}, Constant<T>{value});
    return zvpStsOk;
}

template <class T>
constexpr ComplexThresholds<T> complexThresholds() {
    return {limitComplex<Side::below, T>, limitComplex<Side::above, T>, replaceComplex<Side::below, T>,
            replaceComplex<Side::above, T>};
}

template <class Op, size_t kPeriod, class T>
ZvpStatus invert(const T* src, T* dst, size_t n, T level) {
    Op op(level);
    map<kPeriod, sizeof(T), Op::kVectors>(op, dst, n, Divisors<T>{src});
    return op.sawZero() ? zvpStsDivByZero : zvpStsOk;
}

} // namespace

extern const ThresholdKernels thresholdKernels;
const ThresholdKernels thresholdKernels = {
    realThresholds<Zvp16s>(),
    realThresholds<Zvp32s>(),
    realThresholds<Zvp32f>(),
    realThresholds<Zvp64f>(),
    complexThresholds<Zvp16s>(),
    complexThresholds<Zvp32f>(),
    complexThresholds<Zvp64f>(),
    invert<InvertReal<Zvp32f>, 1, Zvp32f>,
    invert<InvertReal<Zvp64f>, 1, Zvp64f>,
    invert<InvertComplex<Zvp32f>, 2, Zvp32f>,
    invert<InvertComplex<Zvp64f>, 2, Zvp64f>,
};

} // namespace zvps::ZVPS_LEVEL
