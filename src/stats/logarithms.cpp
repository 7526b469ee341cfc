// Sums of logarithms.
#include "stats/logarithms.table.hpp"
#include "zvps/statistics.h"

#include "core/checks.hpp"
#include "core/level.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zvps {
namespace {

// The logarithm of a product, kept as mantissa * 2^exponent with 0.5 <= mantissa < 1.
class LogSum {
  public:
    void multiply(double factor, int64_t exponent = 0) {
        // The factor by itself first: it may be subnormal.
        int factorPlaces, places;
        mantissa_ = std::frexp(mantissa_ * std::frexp(factor, &factorPlaces), &places);
        exponent_ += exponent + factorPlaces + places;
    }
    double value() const {
        // Around 1, so that products near 1 keep their precision.
        constexpr double kRootOfHalf = 0.70710678118654752440;
        constexpr double kLn2 = 0.69314718055994530942;
        const bool isLow = mantissa_ < kRootOfHalf;
        const double mantissa = isLow ? 2 * mantissa_ : mantissa_;
        return static_cast<double>(exponent_ - isLow) * kLn2 + std::log(mantissa);
    }

  private:
    double mantissa_ = 0.5;
    int64_t exponent_ = 1;
};

// Of an element at which the sum ends: its result and status.
struct End {
    double result;
    ZvpStatus status;
};
End endAt(double element) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    if (element == 0) return {kInfinity, zvpStsLnZeroArg};
    if (element < 0) return {std::copysign(kNan, -1.0), zvpStsLnNegArg};
    return {element < kInfinity ? 0 : element, zvpStsOk};
}

template <class T, class R>
ZvpStatus sumLn(LogProductKernel<T> kernel, const T* src, int len, R* result) {
    if (const ZvpStatus status = checkVectors(len, src, result)) return status;
    const size_t n = static_cast<size_t>(len);
    LogSum sum;
    size_t i = 0;
    while (i < n) {
        LogProduct product;
        i += kernel(src + i, n - i, &product);
        sum.multiply(product.mantissa, product.exponent);
        // The block that the kernel leaves, element by element.
        for (const size_t end = std::min(n, i + kLogBlock); i < end; ++i) {
            const double element = src[i];
            if (!(element > 0 && element < std::numeric_limits<double>::infinity())) {
                const End end = endAt(element);
                *result = static_cast<R>(end.result);
                return end.status;
            }
            sum.multiply(element);
        }
    }
    *result = static_cast<R>(sum.value());
    return zvpStsOk;
}

} // namespace
} // namespace zvps

#define ZVPS_SUM_LN(NAME, SRC, DST, slot)                                                                              \
    ZvpStatus zvpsSumLn_##NAME(const Zvp##SRC* pSrc, int len, Zvp##DST* pSum) {                                        \
        return zvps::sumLn(zvps::kernels().logarithms->slot, pSrc, len, pSum);                                         \
    }

ZVPS_SUM_LN(16s32f, 16s, 32f, product_16s)
ZVPS_SUM_LN(32f, 32f, 32f, product_32f)
ZVPS_SUM_LN(32f64f, 32f, 64f, product_32f)
ZVPS_SUM_LN(64f, 64f, 64f, product_64f)
